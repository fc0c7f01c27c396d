#include "accounts/account_saving.h"

#include "accounts/account_story.h"
#include "data/data_error.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;

constexpr const char* kCodeExists =
    "خطا در ثبت|عمليات ثبت بدليل وحود حسابي با كد مورد نظر با موفقيت انجام نشد";

class SavingStory : public AccountStory {
 protected:
  /// The labels of the first level of the tree.
  std::string firstLevel() {
    std::string labels;
    const ui::Tree& tree = form->treeAccount;
    for (const ui::NodeId child : tree.children(tree.find("-1:-1"))) labels += tree.text(child) + "\n";
    return labels;
  }
  /// Everything that a save may change.
  std::string chart() {
    return database.rows(
               "select ID, ParentID, Code, Title, NoLevel, IsClosed, GroupID, MaxDebit from tblAccount order "
               "by ID") +
           "#" + database.rows("select * from tblAccountParent order by 1, 2") + "#" +
           database.rows("select * from tblAccountRelatedObjects order by 1, 2, 3, 4");
  }
};

TEST_F(SavingStory, ANewAccountIsStoredWithEverythingThatWasTyped) {
  account(1, 0, "11", "دارايي");
  start();
  typeNew(1, "  مشتريان ");
  pick(form->sltGroup, 2);
  pick(form->sltBranch, 1);
  pick(form->sltPosition, 2);
  pick(form->sltEntityType, 1);
  pick(form->sltEntity, 2);
  form->txtNotes.paste(" يادداشت ");
  form->txtMaxDebit.type("1234567");
  form->txtMaxCredit.paste("۰۰۱٢.34567");
  form->OptDebitAndCredit.click();
  form->OptNotReg.click();
  form->OptClose.click();
  const std::int32_t saved = save();
  EXPECT_EQ(
      database.rows("select ParentID, Code, Title, NoLevel, GroupID, BranchID, PositionID, CreateDate, "
                    "FarsiCreateDate, Notes, AccountNatureID, IsPermanent, IsClosed, MaxDebit, MaxCredit "
                    "from tblAccount where ID = " +
                    std::to_string(saved)),
      "1|1101|مشتريان|2|2|1|2|2026-11-22 00:00:00|1405/09/01| يادداشت |2|1|1|12345670000|123457");
  EXPECT_EQ(relations(saved), "2|1|2");
  EXPECT_EQ(database.number("select count(*) from tblAccountPeriodAccount"), 0) << "it is in no period";

  // The form shows what the database holds, and the tree starts over.
  EXPECT_EQ(mode(), FormMode::ModeView);
  EXPECT_EQ(form->sltAccount.AccountTitle(), "مشتريان");
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "11+01");
  EXPECT_EQ(form->txtMaxDebit.text(), "1234567");
  EXPECT_EQ(firstLevel(), "11 ... دارايي\n");
  EXPECT_EQ(form->treeAccount.selected(), ui::kNoNode);
  EXPECT_EQ(form->focused(), &form->cmdNew);

  // Nothing carries over to the next account.
  EXPECT_EQ(stored(saveNew(-1, "بدهي", "2"),
                   "ParentID, GroupID, BranchID, PositionID, AccountNatureID, "
                   "IsPermanent, IsClosed, MaxDebit, MaxCredit, Notes"),
            "null|null|0|0|0|0|0|0|0|");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(SavingStory, ACodeThatExistsIsRefusedAndTheFormGoesOn) {
  account(1, 0, "Ab1", "دارايي");
  account(2, 0, "2", "بدهي");
  start();
  static_cast<void>(faults.take());
  const std::string before = chart();
  EXPECT_EQ(saveNew(-1, "تازه", "aB1 "), -1);
  EXPECT_EQ(notices.taken(), kCodeExists);
  EXPECT_EQ(mode(), FormMode::ModeNew);
  EXPECT_EQ(form->txtTitle.text(), "تازه");
  EXPECT_EQ(chart(), before);
  form->txtCode.paste("3");
  ASSERT_GT(save(), 2);

  edit(2);
  form->txtCode.paste("AB1");
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(notices.taken(), kCodeExists);
  EXPECT_EQ(mode(), FormMode::ModeEdit);
  form->txtCode.paste("20");
  EXPECT_EQ(save(), 2);
  EXPECT_EQ(stored(2, "Code"), "20");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(SavingStory, AnEditMovesABranchAndOpensOrClosesAllOfIt) {
  account(1, 0, "1", "دارايي");
  account(2, 1, "101", "جاري");
  account(3, 2, "10101", "بانک");
  account(4, 3, "1010101", "ملي");
  account(5, 0, "5", "انتظامي");
  database.execute(
      "update tblAccount set IsClosed = 1 where ID in (3, 5);"
      "update tblAccount set CreateDate = '2020-01-01 00:00:00'");
  start();
  edit(2);
  EXPECT_EQ(form->FrameAccountStatus.withinReach(), true);
  form->OptClose.click();
  save();
  EXPECT_EQ(database.rows("select ID from tblAccount where IsClosed = 1 order by ID"), "2\n3\n4\n5");

  // Reopening opens what was closed on its own before, too; what isn't below stays.
  edit(2);
  form->OptOpen.click();
  pickParent(5);
  save();
  EXPECT_EQ(database.rows("select ID from tblAccount where IsClosed = 1 order by ID"), "5");
  EXPECT_EQ(database.rows("select ID, Code, NoLevel from tblAccount where ID in (2, 3, 4)"),
            "2|501|2\n3|10101|3\n4|1010101|4")
      << "the codes below stay as they are";
  EXPECT_EQ(database.rows("select ID from tblAccountParent where ChildID = 4 order by ID"), "2\n3\n5");
  // An edit never changes the day of creation.
  EXPECT_EQ(database.number("select count(*) from tblAccount where CreateDate > '2020-01-02'"), 0);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "5+01");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(SavingStory, WhatTheHostShowsMeanwhileChangesNothingOfASave) {
  account(1, 0, "1", "دارايي");
  account(2, 1, "101", "بانک");
  account(3, 0, "3", "بدهي");
  database.execute(
      "update tblAccount set IsClosed = 1 where ID = 3;"
      "insert into tblAccountRelatedObjects values (3, 1, null, null)");
  start();
  edit(1);
  pick(form->sltGroup, 1);
  notices.onShow = [this](const Notice&) { form->View(3); };
  EXPECT_EQ(save(), 1);
  EXPECT_EQ(notices.take().size(), 1U) << "the place is taken";
  EXPECT_EQ(stored(2, "IsClosed"), "0") << "3 is closed, 1 isn't";
}

/// What a save came to, as the notice says it.
enum class Told { Nothing, Account, Relation, All };
Told toldOf(const std::string& message) {
  if (message.find("چيزي ثبت نشد") != std::string::npos) return Told::Nothing;
  if (message.find("کامل ثبت نشد") != std::string::npos) return Told::Account;
  if (message.find("وضعيت زيرشاخه هاي آن تغيير نکرد") != std::string::npos) return Told::Relation;
  EXPECT_NE(message.find("بطور کامل ثبت شد"), std::string::npos) << message;
  return Told::All;
}

/// Each statement of a save fails once. Whatever was written by then, the notice says so, the form goes on,
/// and pressing save again ends where a save without a failure would have.
class FailingSaves : public SavingStory, public ::testing::WithParamInterface<int> {
 protected:
  enum Way { NewAccount, GuardedEdit, PlainEdit };

  FailingSaves() {
    setting(210, "1");
    fill();
    start();
    const std::int32_t first = saveNew(-1, "نخست", "9");
    database.execute("delete from tblAccount where ID = " + std::to_string(first));
  }
  void fill() {
    account(1, 0, "1", "دارايي");
    account(2, 1, "101", "جاري");
    account(3, 2, "10101", "بانک");
    account(4, 0, "4", "بدهي");
    database.execute("insert into tblAccountRelatedObjects values (2, 2, 2, 1), (1, 2, 2, 1)");
  }
  /// Types all there is to a save that writes a relation and has something below it.
  void typeAll(Way way) {
    if (way == NewAccount) typeNew(-1, "تازه", "7");
    if (way == GuardedEdit) {
      edit(2);
      pickParent(4);
    }
    if (way == PlainEdit) edit(1);
    form->txtTitle.paste("عنوان تازه");
    pick(form->sltGroup, 1);
    pick(form->sltEntityType, 1);
    pick(form->sltEntity, 1);
    pick(form->sltPosition, 1);
    form->OptClose.click();
  }
  std::int32_t target(Way way) {
    if (way == GuardedEdit) return 2;
    return way == PlainEdit ? 1
                            : static_cast<std::int32_t>(database.number("select max(ID) from tblAccount"));
  }
  std::string outcome(Way way) {
    const std::int32_t id = target(way);
    return stored(id, "ParentID, Code, Title, GroupID, PositionID, IsClosed, NoLevel") + "#" + relations(id) +
           "#" + database.rows("select Code, IsClosed, NoLevel from tblAccount order by Code");
  }
};

TEST_P(FailingSaves, CanBeSavedAgain) {
  const Way way = static_cast<Way>(GetParam());
  const auto reset = [&] {
    if (mode() == FormMode::ModeEdit || mode() == FormMode::ModeNew) {
      notices.answer(1);
      form->cmdCancel.click();
    }
    database.execute(
        "delete from tblAccountRelatedObjects; update tblAccount set ParentID = null;"
        "delete from tblAccount");
    fill();
    static_cast<void>(notices.take());
  };

  typeAll(way);
  const std::string before = chart();
  static_cast<void>(faults.take());
  ASSERT_GT(save(), 0);
  const auto commands = faults.take();
  const std::string whole = outcome(way);
  EXPECT_EQ(notices.taken(), "");

  for (std::size_t failing = 1; failing <= commands.size(); ++failing) {
    SCOPED_TRACE(commands[failing - 1]);
    reset();
    typeAll(way);
    faults.failAt(static_cast<int>(failing));
    form->cmdSave.click();
    ASSERT_EQ(faults.failures(), 1);
    faults.heal();
    EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
    for (const data::RecordHandle* handle : shell.dtEn()->handles()) EXPECT_EQ(handle->State(), 0);

    const auto told = notices.take();
    ASSERT_EQ(told.size(), 1U);
    const bool fromSelector = told[0].title != "خطا در ثبت";
    if (fromSelector) {
      // A picker that couldn't read its row says so itself; the save isn't hurt by it.
      EXPECT_EQ(outcome(way), whole);
      continue;
    }
    EXPECT_NE(told[0].message.find(Faults::kMessage), std::string::npos);
    switch (toldOf(told[0].message)) {
      case Told::Nothing:
        EXPECT_EQ(chart(), before);
        EXPECT_EQ(mode(), way == NewAccount ? FormMode::ModeNew : FormMode::ModeEdit);
        break;
      case Told::Account:
      case Told::Relation:
        EXPECT_EQ(mode(), FormMode::ModeEdit);
        EXPECT_EQ(form->txtID.text(), std::to_string(target(way)));
        EXPECT_EQ(stored(target(way), "Title"), "عنوان تازه");
        break;
      case Told::All:
        EXPECT_EQ(mode(), FormMode::ModeView);
        EXPECT_EQ(outcome(way), whole);
        continue;
    }
    // What was typed is still there: once more.
    const std::int32_t saved = save();
    ASSERT_EQ(saved, target(way));
    EXPECT_EQ(outcome(way), whole);
    EXPECT_EQ(notices.taken(), "");
  }
}

INSTANTIATE_TEST_SUITE_P(EachWay, FailingSaves, ::testing::Values(0, 1, 2));

TEST_F(SavingStory, ABrokenConnectionLeavesOpenWhetherTheAccountIsThere) {
  start();
  typeNew(-1, "تازه", "7");
  faults.onCommand = [](const std::string& command) {
    if (command == "spAccountInsertAccount")
      throw data::DataError(data::DataError::Reason::Connection, 0, "ارتباط قطع شد");
  };
  form->cmdSave.click();
  faults.onCommand = nullptr;
  const auto told = notices.take();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].message.find("معلوم نيست"), std::string::npos) << told[0].message;
  EXPECT_EQ(mode(), FormMode::ModeNew);
  EXPECT_GT(save(), 0);
}

}  // namespace
}  // namespace ledgertree::testing
