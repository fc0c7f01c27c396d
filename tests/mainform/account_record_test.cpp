#include "mainform/account_record.h"

#include <algorithm>

#include "mainform/screen_story.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;
using mainform::SplitCode;
using ui::Key;

constexpr const char* kReceivables =
    "txtID=2\ntxtMotherCode=11\ntxtCode=01\ntxtTitle=دريافتني ها\ntxtNotes=خط اول\nخط دوم\ntxtMaxDebit=1500\n"
    "txtMaxCredit=1234.5678\nsltAccount=2 دريافتني ها\nsltParent=1 دارايي\nsltGroup=4 مشتريان\n"
    "sltBranch=2 کارخانه\nsltPosition=9 مونتاژ\nsltEntityType=11 01_اشخاص\nsltEntity=7 بام\n"
    "datCreate=1403/01/01\nFrameRemanedType=2 OptDebitAndCredit\nFrameAccountType=1 OptNotReg\n"
    "FrameAccountStatus=1 OptClose\n";
/// The choices of a new account, and those of the receivables.
constexpr const char* kFirstChoices =
    "FrameRemanedType=0 optDebit\nFrameAccountType=0 OptReg\nFrameAccountStatus=0 OptOpen\n";
constexpr const char* kLastChoices =
    "FrameRemanedType=2 OptDebitAndCredit\nFrameAccountType=1 OptNotReg\nFrameAccountStatus=1 OptClose\n";
constexpr const char* kGiveUpNew = "انصراف از ثبت حساب | آيا مطمئن هستيد؟";
constexpr const char* kGiveUpEdit = "انصراف از ثبت تغييرات حساب | آيا مطمئن هستيد؟ ";

class RecordStory : public ScreenStory {
 protected:
  RecordStory() { start(); }

  void showReceivables() {
    form->treeAccount.expand(form->treeAccount.find("-1:1"));
    clickInTree("-1:2");
  }
};

TEST_F(RecordStory, AClickInTheTreeShowsAllThatIsKnownOfAnAccount) {
  showReceivables();
  EXPECT_EQ(record(), kReceivables);
  EXPECT_EQ(form->formMode, FormMode::ModeView);
  EXPECT_EQ(form->datCreate.englishdate(), (data::DateTime{.year = 2024, .month = 3, .day = 20}));

  // What the database doesn't know is blank; a radio group stays where no button stands for the value.
  clickInTree("-1:3");
  EXPECT_EQ(record(),
            "txtID=3\ntxtMotherCode=11\ntxtCode=02\ntxtTitle=بانک\ntxtMaxDebit=0\ntxtMaxCredit=0\n"
            "sltAccount=3 بانک\nsltParent=1 دارايي\ndatCreate=1403/01/01\n" +
                std::string(kLastChoices));
  clickInTree("-1:1");
  EXPECT_EQ(record(), "txtID=1\ntxtCode=11\ntxtTitle=دارايي\nsltAccount=1 دارايي\ndatCreate=1402/01/01\n" +
                          std::string(kFirstChoices));
  const std::string shown = record();
  for (const char* const none : {"3, IsPermanent = 2, IsClosed = 2", "-1, IsPermanent = -1, IsClosed = -1"}) {
    database.execute("update tblAccount set AccountNatureID = " + std::string(none) + " where ID = 1");
    form->View(1);
    EXPECT_EQ(record(), shown) << none;
  }
  database.execute("update tblAccount set AccountNatureID = 1, IsPermanent = 1, IsClosed = 0 where ID = 1");
  form->View(1);
  EXPECT_TRUE(form->OptCredit.value() && form->OptNotReg.value() && form->OptOpen.value());
  EXPECT_EQ(form->NatureValue, 1);

  // The root has no record, and keeps the ID, the parent's code and the ceilings of the last one.
  showReceivables();
  clickInTree("-1:-1");
  EXPECT_EQ(form->formMode, FormMode::ModeIdle);
  EXPECT_EQ(record(), "txtID=2\ntxtMotherCode=11\ntxtMaxDebit=1500\ntxtMaxCredit=1234.5678\n" +
                          std::string(kLastChoices));
}

TEST_F(RecordStory, ANewAccountTakesNothingOfTheLastOne) {
  showReceivables();
  form->cmdNew.click();
  EXPECT_EQ(record(), "txtID=2\n" + std::string(kFirstChoices));
  EXPECT_EQ(form->sltEntity.SelectedID(), -1);

  // The parent's code follows the picker, also to none.
  pickFirst(form->sltParent, "1101");
  EXPECT_EQ(form->txtMotherCode.text(), "1101");
  form->sltParent.press(Key::Delete);
  EXPECT_EQ(form->txtMotherCode.text(), "");
}

TEST_F(RecordStory, CancelAsksAndGoesBackToTheLastAccount) {
  form->cmdNew.click();
  form->txtTitle.type("صندوق");
  answer(false);
  form->press(ui::KeyChord::of(Key::Escape));
  EXPECT_EQ(notices.taken(), kGiveUpNew);
  EXPECT_EQ(form->formMode, FormMode::ModeNew);
  EXPECT_EQ(form->txtTitle.text(), "صندوق");
  notices.answer(5);  // an answer that is neither
  form->cmdCancel.click();
  EXPECT_EQ(form->formMode, FormMode::ModeNew);
  answer(true);
  form->cmdCancel.click();
  EXPECT_EQ(form->formMode, FormMode::ModeIdle) << "there was no account before";
  EXPECT_EQ(form->sltAccount.text(), "");

  showReceivables();
  database.execute("update tblAccount set Notes = 'تازه' where ID = 2");
  notices.take();
  form->cmdEdit.click();
  EXPECT_EQ(form->txtNotes.text(), "تازه") << "an edit starts from what is stored";
  const std::string stored = record();
  form->txtMotherCode.paste("9");
  for (const mainform::TypedField& field : mainform::typedFields()) ((*form).*field.control).paste("9");
  for (ui::LookupField* field : std::initializer_list<ui::LookupField*>{
           &form->sltEntity, &form->sltEntityType, &form->sltGroup, &form->sltBranch, &form->sltPosition})
    field->press(Key::Delete);
  form->optDebit.click();
  form->OptReg.click();
  form->OptOpen.click();
  answer(true);
  form->cmdCancel.click();
  EXPECT_EQ(notices.taken(), kGiveUpEdit);
  EXPECT_EQ(form->formMode, FormMode::ModeView);
  EXPECT_EQ(record(), stored);
}

TEST_F(RecordStory, ExitAsksOnlyWhereSomethingIsTyped) {
  form->cmdNew.click();
  answer(false);
  form->cmdExit.click();
  EXPECT_EQ(notices.taken(), "خروج از سرفصل حسابها | آيا از ثبت  حساب جديد منصرف شدهايد ؟ ");
  ASSERT_TRUE(form);
  answer(true);
  form->cmdCancel.click();
  showReceivables();
  form->cmdEdit.click();
  notices.take();
  answer(true);
  form->cmdExit.click();
  EXPECT_EQ(notices.taken(), "خروج از سرفصل حسابها| آيا از ثبت  تغييرات منصرف شدهايد ؟ ");
  EXPECT_FALSE(form);

  // Without typing, by the menu in the middle of it, and by the frame, the form just goes.
  start();
  form->cmdExit.click();
  EXPECT_FALSE(form);
  start();
  form->cmdNew.click();
  form->mnuFonc9.click();
  EXPECT_FALSE(form);
  start();
  form->cmdNew.click();
  form->closeByPerson();
  EXPECT_FALSE(form);
}

TEST_F(RecordStory, CommandsGoDarkWithTheRecordAndComeBackWithIt) {
  form->View(2);
  EXPECT_EQ(record(), kReceivables);
  database.execute("delete from tblAccountRelatedObjects; delete from tblAccount where ID = 2");
  form->cmdNew.click();
  answer(true);
  form->cmdCancel.click();
  EXPECT_EQ(notices.taken(), kGiveUpNew);
  EXPECT_EQ(form->formMode, FormMode::ModeView) << "the ID of an account that is gone";
  EXPECT_EQ(form->sltAccount.text() + form->txtCode.text() + form->txtNotes.text(), "");
  EXPECT_EQ(form->txtID.text(), "2");
  desktop.tick();
  for (const bool enabled : {form->cmdEdit.enabled(), form->cmdDelete.enabled(), form->mnuFonc2.enabled(),
                             form->mnuFonc4.enabled()})
    EXPECT_FALSE(enabled);
  EXPECT_TRUE(form->mnuFonc1.enabled());

  form->View(3);
  desktop.tick();
  EXPECT_TRUE(form->cmdEdit.enabled());
  form->View(2147483647);
  desktop.tick();
  EXPECT_FALSE(form->cmdEdit.enabled());
  EXPECT_EQ(form->txtID.text(), "3");

  // A blank title counts as nothing on the screen, and in other modes the tick leaves everything alone.
  database.execute("update tblAccount set Title = '   ' where ID = 3");
  form->View(3);
  desktop.tick();
  EXPECT_FALSE(form->cmdEdit.enabled());
  form->View(0);
  EXPECT_EQ(form->formMode, FormMode::ModeIdle);
  desktop.tick();
  EXPECT_TRUE(form->mnuFonc4.enabled());
}

TEST_F(RecordStory, APickInTheTitleLoadsTheAccountAndKeepsTheMode) {
  form->press(ui::KeyChord::ctrlAnd('F'));
  ASSERT_TRUE(form->sltAccount.hasFocus());
  pickFirst(form->sltAccount, "دریافتنی");
  EXPECT_EQ(record(), kReceivables);
  EXPECT_EQ(form->formMode, FormMode::ModeIdle);
  desktop.tick();
  EXPECT_FALSE(form->cmdEdit.enabled());
  EXPECT_FALSE(form->sltParent.IsActive());

  // By its code; what the picked account hasn't stays as the last one left it.
  form->View(2);
  pickFirst(form->sltAccount, "1102");
  EXPECT_EQ(form->txtID.text(), "3");
  EXPECT_EQ(form->sltEntity.text(), "بام");
  EXPECT_EQ(form->sltGroup.text(), "");

  form->cmdNew.click();
  form->press(ui::KeyChord::ctrlAnd('F'));
  EXPECT_FALSE(form->sltAccount.hasFocus()) << "there is no title to pick while one types";
}

TEST_F(RecordStory, ACodeIsSplitBehindItsParents) {
  const struct {
    const char *code, *parent, *mother, *own;
  } splits[] = {{"1101", "11", "11", "01"},     {"11", "", "", "11"},     {"11", "11", "11", ""},
                {"12345", "0012", "12", "345"}, {"12", "0012", "12", ""}, {"1", "0012", "", "1"},
                {"9901", "11", "", "9901"},     {"", "11", "", ""}};
  for (const auto& [code, parent, mother, own] : splits)
    EXPECT_EQ(mainform::splitCode(code, parent), (SplitCode{mother, own})) << code;
  // Whatever stands in them, the parts joined are the code.
  for (const char* parent : {"A", "00", "1E999", "-1", "1.50", "00123456789012345678", "۱۲"}) {
    for (const char* code : {"XYZ", "05", "1E999", " 12", "-15", "1.51", "12345678901234567899", "۱۲۳"}) {
      const SplitCode split = mainform::splitCode(code, parent);
      EXPECT_EQ(split.mother + split.own, code) << parent;
    }
  }

  database.execute(
      "insert into tblAccount (ID, ParentID, Code, Title) values (20, null, '0012', 'مادر'),"
      " (21, 20, '12345', 'فرزند')");
  form->View(21);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "12+345");
}

TEST_F(RecordStory, AReadThatFailsLeavesNoMixtureOfTwoAccounts) {
  showReceivables();
  for (const char* failing :
       {"From vwAccount where", "from tblAccountRelatedObjects", "from tblAccountClass"}) {
    faults.failWhere(failing);
    form->cmdEdit.click();
    EXPECT_NE(notices.taken(), "") << failing;
    faults.heal();
    EXPECT_EQ(form->formMode, FormMode::ModeView);
    EXPECT_EQ(form->sltAccount.text() + form->txtCode.text() + form->sltGroup.text(), "");
    EXPECT_FALSE(form->cmdSave.enabled());
    EXPECT_TRUE(form->treeAccount.enabled());
    clickInTree("-1:2");
    EXPECT_EQ(record(), kReceivables) << "the next click is as good as the first";
  }
  // No answer is no right.
  faults.failWhere("spTarvoHasPermission");
  form->cmdNew.click();
  EXPECT_NE(notices.taken(), "");
  EXPECT_EQ(form->formMode, FormMode::ModeView);
  // A pick that fails leaves the account that was there.
  faults.heal();
  form->View(3);
  const std::string shown = record();
  for (const char* failing : {"from tblAccountRelatedObjects", "from tblAccountClass"}) {
    faults.failWhere(failing);
    pickFirst(form->sltAccount, "دریافتنی");
    EXPECT_NE(notices.taken(), "");
    EXPECT_EQ(record(), shown) << failing;
  }
}

TEST_F(RecordStory, AnAnswerThatComesLateLeavesTheOtherRecordAlone) {
  form->settings.CodingMode = 1;
  form->cmdNew.click();
  pickFirst(form->sltParent, "11");
  form->txtTitle.paste("بانک");
  notices.onShow = [this](const Notice&) { form->View(1); };
  answer(true);
  form->cmdAutoCode.click();
  EXPECT_EQ(notices.take().size(), 1U);
  EXPECT_EQ(form->txtCode.text(), "11") << "the host's account, not the proposal";
}

}  // namespace
}  // namespace ledgertree::testing
