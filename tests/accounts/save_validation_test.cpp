#include "accounts/save_validation.h"

#include "accounts/account_story.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;

constexpr const char* kCodeStays =
    "عدم امکان تغيير کد|به دليل اينکه سرفصل حساب گردش داشته است، امکان تغيير کد آن وجود ندارد.";
constexpr const char* kOwnParent =
    "خطا در ثبت|شما نميتوانيد خود حساب را به عنوان حساب مادر خودش انتخاب نماييد";
constexpr const char* kParentIsBelow =
    "خطا در ثبت|از آنجايي كه مادر انتخاب شده خود زير شاخه حساب فوق ميباشد امكان ثبت وحود ندارد";
constexpr const char* kParentHasDocuments =
    "خطا در ثبت|از  انجايي كه حسابي را كه براي مادر حساب فوق در نظر گرفتهايد سند دارد نمي تواند به عنوان "
    "حساب مادر در نظر گرفته شود";

/// A chart of four: 1 with 2 and 3 below it, 4 below 3; 2 and 5 have documents, and 6 is below 5.
class ValidationStory : public AccountStory {
 protected:
  ValidationStory() {
    accounts({{1, 0, "1", "دارايي"},
              {2, 1, "101", "بانک"},
              {3, 1, "102", "صندوق"},
              {4, 3, "10201", "تنخواه"},
              {5, 0, "5", "فروش"},
              {6, 5, "501", "داخلي"}});
    documentOn(2);
    documentOn(5);
  }
  /// Presses save, and gives what was told; nothing is written, and the form stays as it was typed.
  std::string refusal() {
    TableWatch tables(database);
    const FormMode modeBefore = mode();
    const std::string typed = record();
    form->cmdSave.click();
    EXPECT_EQ(tables.changes(), "");
    EXPECT_EQ(mode(), modeBefore);
    EXPECT_EQ(record(), typed);
    return notices.taken();
  }
  /// So it is told, and the person is led to the field.
  void expectRefusal(const std::string& told, const ui::Control& field) {
    EXPECT_EQ(refusal(), told);
    EXPECT_EQ(form->focused(), &field);
  }
  bool asked(const std::string& words) {
    const auto commands = faults.take();
    return std::any_of(commands.begin(), commands.end(),
                       [&](const std::string& one) { return one.find(words) != std::string::npos; });
  }
};

TEST_F(ValidationStory, WhatIsMissingIsToldOneByOne) {
  start();
  form->datCreate.setVisible(true);  // hidden, it could take no focus
  for (const bool isNew : {true, false}) {
    if (isNew) form->cmdNew.click();
    if (!isNew) edit(6);
    form->datCreate.Clear();
    form->txtCode.paste("   ");
    form->txtTitle.paste(" ");
    expectRefusal("اشکال|کد وارد نشده است!", form->txtCode);
    form->txtCode.paste(" 7 ");
    expectRefusal("اشکال|عنوان وارد نشده است!", form->txtTitle);
    form->txtTitle.paste(" تنخواه  ");
    expectRefusal("اشکال|تاريخ وارد نشده است!", form->datCreate);
    form->datCreate.setToday(shell.clock);
    for (ui::LookupField* field : std::initializer_list<ui::LookupField*>{
             &form->sltParent, &form->sltGroup, &form->sltBranch, &form->sltPosition, &form->sltEntityType})
      expectUnchosen(*field, form->cmdSave);
    if (!isNew) pickParent(-1);
    if (!isNew) form->txtCode.paste(" 9 ");
    EXPECT_EQ(stored(save(), "Code, Title, ParentID"), isNew ? "7|تنخواه|null" : "9|تنخواه|null");
  }
  // Where nobody types, a save does nothing.
  TableWatch tables(database);
  form->cmdSave.onClick();
  EXPECT_EQ(tables.changes() + notices.taken(), "");
}

TEST_F(ValidationStory, TheCodeOfAnAccountWithMovementStays) {
  start();
  edit(2);
  static_cast<void>(faults.take());
  form->txtTitle.paste("بانک ملي");
  form->txtCode.paste(" 01  ");
  save();
  EXPECT_EQ(stored(2, "Code, Title"), "101|بانک ملي") << "blanks at the ends are no change";
  EXPECT_FALSE(asked("Select top 1 * from tblAccountDocumentDetail")) << "the same code asks for no movement";

  edit(2);
  form->txtCode.paste("02x");
  EXPECT_EQ(refusal(), kCodeStays);
  form->txtCode.paste("01");
  form->txtMotherCode.paste("2");
  EXPECT_EQ(refusal(), kCodeStays) << "either part counts";
  // A move rewrites the code, so that it is the code that is told of, not the parent with documents.
  pickParent(5);
  EXPECT_EQ(refusal(), kCodeStays);
  EXPECT_EQ(form->sltParent.AccountID(), 5) << "what was typed stays";
  database.execute("update tblAccount set Code = '101A' where ID = 2");
  edit(2);
  form->txtCode.paste("01a");
  EXPECT_EQ(refusal(), kCodeStays) << "letter case counts";

  form->settings.EditCodeAllowed = true;
  static_cast<void>(faults.take());
  save();
  EXPECT_EQ(stored(2, "Code"), "101a");
  EXPECT_FALSE(asked("Select isnull(Code,'')"));
  // Documents below an account don't count.
  form->settings.EditCodeAllowed = false;
  edit(1);
  form->txtCode.paste("8");
  save();
  EXPECT_EQ(stored(1, "Code"), "8");
}

TEST_F(ValidationStory, AParentIsNeitherTheAccountNorBelowItNorInUse) {
  start();
  edit(3);
  static_cast<void>(faults.take());
  pickParent(3);
  static_cast<void>(faults.take());
  EXPECT_EQ(refusal(), kOwnParent);
  EXPECT_FALSE(asked("Select * From tblAccountParent")) << "ahead of every look-up";
  pickParent(4);
  EXPECT_EQ(refusal(), kParentIsBelow);
  documentOn(4);
  EXPECT_EQ(refusal(), kParentIsBelow) << "the branch is told first";
  pickParent(5);
  EXPECT_EQ(refusal(), kParentHasDocuments);
  EXPECT_EQ(form->sltParent.AccountID(), 5);
  pickParent(-1);
  save();
  EXPECT_EQ(stored(3, "ParentID, NoLevel"), "null|1");
  EXPECT_EQ(stored(4, "NoLevel"), "2");

  // The parent that an account has already is looked at like any other.
  edit(6);
  form->txtTitle.paste("صادراتي");
  EXPECT_EQ(refusal(), kParentHasDocuments);
}

TEST_F(ValidationStory, UnderTheParentOfTheLastNewAccountNothingIsLookedUp) {
  start();
  // Also a new account that is refused is remembered, and -1 stands for the top.
  typeNew(-1, "تکراري", "1");
  form->cmdSave.click();
  EXPECT_EQ(notices.taken(), "خطا در ثبت|عمليات ثبت بدليل وحود حسابي با كد مورد نظر با موفقيت انجام نشد");
  EXPECT_EQ(mode(), FormMode::ModeNew);
  EXPECT_EQ(form->LastNewParentID, -1);
  giveUp();
  edit(1);
  form->txtNotes.paste("يادداشت");
  static_cast<void>(faults.take());
  save();
  EXPECT_FALSE(asked("Select * From tblAccountDocumentDetail"));
}

TEST_F(ValidationStory, AMoveBelowItselfOnAPlainEditIsRefusedByTheDatabase) {
  start();
  ASSERT_GT(saveNew(4, "خرد"), 0);
  edit(3);
  pickParent(4);
  const std::string told = refusal();
  EXPECT_NE(told.find("خطا در ثبت|حساب نميتواند زير خودش"), std::string::npos) << told;
  EXPECT_NE(told.find("\nچيزي ثبت نشد."), std::string::npos) << told;
  pickParent(1);
  EXPECT_EQ(save(), 3);
}

TEST_F(ValidationStory, WhatTheDatabaseCantKeepIsToldAheadOfTheFirstWrite) {
  start();
  const auto letters = [](std::size_t count) {
    std::string text;
    for (; count > 0; --count) text += "ش";
    return text;
  };
  typeNew(1, letters(51), "88");
  expectRefusal("خطا در ثبت|عنوان بايد حداکثر 50 نويسه باشد و اکنون 51 نويسه است. آن را کوتاهتر کنيد.",
                form->txtTitle);
  form->txtTitle.paste(letters(50));
  form->txtNotes.paste(letters(10000));
  expectRefusal("خطا در ثبت|توضيحات بايد حداکثر 250 نويسه باشد و اکنون 10000 نويسه است. آن را کوتاهتر کنيد.",
                form->txtNotes);
  form->txtNotes.paste(letters(250));
  form->txtCode.paste(std::string(20, '7'));
  expectRefusal("خطا در ثبت|کد کامل حساب بايد حداکثر 20 نويسه باشد و اکنون 21 نويسه است. آن را کوتاهتر کنيد.",
                form->txtCode);
  form->txtCode.paste(std::string(19, '7'));
  form->txtMaxDebit.type("922337203685478");
  form->txtMaxCredit.type("99999999999999999999");
  expectRefusal("خطا در ثبت|سقف بدهکاري بايد حداکثر 922/337/203/685/477 باشد. مبلغ کوچکتري وارد کنيد.",
                form->txtMaxDebit);
  form->txtMaxDebit.press(ui::Key::Backspace);
  expectRefusal("خطا در ثبت|سقف بستانکاري بايد حداکثر 922/337/203/685/477 باشد. مبلغ کوچکتري وارد کنيد.",
                form->txtMaxCredit);
  form->txtMaxCredit.paste("");
  const std::int32_t saved = save();
  EXPECT_EQ(stored(saved, "length(Title), length(Notes), length(Code), MaxDebit, MaxCredit"),
            "50|250|20|922337203685470000|0");

  // An edit takes a longer title, and every letter but those that no database keeps.
  edit(saved);
  form->txtTitle.paste(letters(101));
  EXPECT_EQ(refusal(),
            "خطا در ثبت|عنوان بايد حداکثر 100 نويسه باشد و اکنون 101 نويسه است. آن را کوتاهتر کنيد.");
  const std::string hostile = "O'Brien's; drop table tblAccount --\n";
  form->txtTitle.paste(hostile + "😀");
  if (onServer()) {
    const std::string told = refusal();
    EXPECT_NE(told.find("😀"), std::string::npos) << "no letter of the server's code page: " << told;
    form->txtTitle.paste(hostile + "ژ");
  }
  const std::string title = form->txtTitle.text();
  for (const auto& [field, name] : {std::pair<ui::TextField*, const char*>{&form->txtCode, "کد کامل حساب"},
                                    {&form->txtTitle, "عنوان"},
                                    {&form->txtNotes, "توضيحات"}}) {
    const std::string before = field->text();
    field->setText("\xff\xfe");
    EXPECT_EQ(refusal(), "خطا در ثبت|در " + std::string(name) +
                             " نويسه ناخوانا وجود دارد. آن را پاک کنيد و دوباره بنويسيد.");
    EXPECT_EQ(form->focused(), field);
    field->setText(before);
  }
  form->txtNotes.setText("  ' two blanks  ");
  save();
  EXPECT_EQ(stored(saved, "Title, Notes"), title + "|  ' two blanks  ");
}

TEST_F(ValidationStory, AGroupBeyondSixteenBitsIsNeverAnotherGroup) {
  if (onServer()) GTEST_SKIP() << "its views belong to all the stories";
  database.execute(
      "drop view vwAccountGroup; create view vwAccountGroup as"
      " select 5 as ID, 'نزديک' as Name union select 65541, 'دور'");
  start();
  typeNew(-1, "تازه", "9");
  pick(form->sltGroup, 65541);
  const std::string told = refusal();
  EXPECT_NE(told.find("65541"), std::string::npos) << told;
  EXPECT_NE(told.find("\nچيزي ثبت نشد."), std::string::npos) << told;
  pick(form->sltGroup, 5);
  EXPECT_EQ(stored(save(), "GroupID"), "5");
}

TEST_F(ValidationStory, WhatAnotherUserDeletedMeanwhileIsTold) {
  start();
  typeNew(6, "تازه");
  database.execute("delete from tblAccount where ID = 6");
  std::string told = refusal();
  EXPECT_NE(told.find("حساب مادر ديگر وجود ندارد"), std::string::npos) << told;
  pickParent(1);
  EXPECT_EQ(stored(save(), "ParentID, Code"), "1|103");

  edit(4);
  database.execute("delete from tblAccount where ID = 4");
  told = refusal();
  EXPECT_NE(told.find("اين حساب ديگر وجود ندارد"), std::string::npos) << told;
  notices.answer(1);
  form->cmdCancel.click();
  EXPECT_EQ(mode(), FormMode::ModeView);
  EXPECT_EQ(form->sltAccount.text() + form->txtCode.text(), "");
  EXPECT_EQ(notices.take().size(), 1U);
}

}  // namespace
}  // namespace ledgertree::testing
