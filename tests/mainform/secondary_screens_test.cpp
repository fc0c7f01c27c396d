#include "mainform/form/secondary_screens.h"

#include "entities/rel_classes.h"
#include "mainform/screen_story.h"
#include "periods/copy_period.h"
#include "periods/delete_period.h"
#include "periods/period_branch.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

class SecondaryScreensStory : public ScreenStory {
 protected:
  SecondaryScreensStory() {
    database.execute(
        "insert into tblUserPermission (UserID, FormPermissionID) values (1, 30110), (1, 30111), (1, 30112);"
        "insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values"
        " (5, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30')");
  }

  /// Presses a command and lets the person work in the screen that it opens.
  template <typename Screen>
  void inScreenOf(ui::PushButton& command, const std::string& name, const std::function<void(Screen&)>& act) {
    inScreen(name, act);
    command.click();
  }
  void pickPeriod(shell::Selector& selector) {
    pickFirst(selector, "1403");
    ASSERT_EQ(selector.SelectedID(), 5);
  }
  /// The accounts below a node of the tree, once it is open.
  std::string below(const std::string& key) {
    form->treeAccount.expand(form->treeAccount.find(key));
    std::string accounts;
    for (const ui::NodeId child : form->treeAccount.children(form->treeAccount.find(key)))
      accounts += form->treeAccount.key(child) + " ";
    return accounts;
  }
  [[nodiscard]] bool inTree(const std::string& key) const {
    return form->treeAccount.find(key) != ui::kNoNode;
  }
};

TEST_F(SecondaryScreensStory, TheTreeByPeriodsFollowsWhatChangedInAPeriod) {
  start();
  form->View(1);
  EXPECT_EQ(below("-1:1"), "-1:2 -1:3 ");
  inScreenOf<periods::FormPeriodBranch>(form->cmdPeriodBranch, "FormPeriodBranch", [&](auto& screen) {
    EXPECT_EQ(screen.sltAccount.SelectedID(), 1);
    pickPeriod(screen.sltPeriod);
    screen.cmdAdd.click();
  });
  EXPECT_TRUE(inTree("-1:2")) << "the tree of all accounts shows no periods, and stays as it is";

  form->optPeriodic.click();
  EXPECT_EQ(below("5:-1"), "5:1 ");
  inScreenOf<periods::FormPeriodBranch>(form->cmdPeriodBranch, "FormPeriodBranch",
                                        [](auto& screen) { screen.cmdExit.click(); });
  EXPECT_TRUE(inTree("5:1")) << "nothing changed, nothing is read anew";
  inScreenOf<periods::FormPeriodBranch>(form->cmdPeriodBranch, "FormPeriodBranch",
                                        [](auto& screen) { screen.cmdDel.click(); });
  EXPECT_EQ(below("5:-1"), "");

  inScreenOf<periods::FormCopyPeriodAccount>(form->cmdCopyPeriod, "FormCopyPeriodAccount", [&](auto& screen) {
    pickPeriod(screen.sltPeriodTo);
    notices.answer(1);
    screen.cmdAutoCodding.click();
  });
  EXPECT_EQ(below("5:-1"), "5:1 ");
  EXPECT_EQ(below("5:1"), "5:2 5:3 ");
  inScreenOf<periods::FormDeletePeriod>(form->cmdDeletePeriod, "FormDeletePeriod", [&](auto& screen) {
    pickPeriod(screen.sltPeriodFrom);
    notices.answer(1);
    screen.cmdDelete.click();
  });
  EXPECT_EQ(below("5:-1"), "");
  EXPECT_EQ(form->txtID.text(), "1") << "the record stays through all of it";
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeView);
  EXPECT_EQ(notices.take().size(), 2U);
}

TEST_F(SecondaryScreensStory, NoScreenOpensOnAQuestionThatFails) {
  start();
  form->View(1);
  faults.failWhere("spTarvoHasPermission");
  for (ui::PushButton* command : {&form->cmdPeriodBranch, &form->cmdCopyPeriod, &form->cmdDeletePeriod}) {
    command->click();
    EXPECT_EQ(notices.taken(), "خطا|" + std::string(Faults::kMessage));
  }
  faults.failWhere("PeriodName");
  form->cmdPeriodBranch.click();
  EXPECT_EQ(notices.taken(), "خطا|" + std::string(Faults::kMessage));
  EXPECT_EQ(desktop.showings.size(), 1U);
}

TEST_F(SecondaryScreensStory, TheClassesOfAnAccountLeaveTheRecordAlone) {
  database.execute("insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
  start();
  form->cmdRelClasses.click();
  EXPECT_EQ(desktop.showings.size(), 1U) << "there is no account on the screen";
  form->View(2);
  form->cmdEdit.click();
  form->txtTitle.paste("نام ديگر");
  inScreenOf<entities::frmAccountRelClasses>(form->cmdRelClasses, "frmAccountRelClasses", [&](auto& screen) {
    EXPECT_EQ(screen.sltAccount.SelectedID(), 2);
    screen.cmdOk.click();
  });
  EXPECT_EQ(notices.taken(), "اتمام عمليات|عمليات ثبت با موفقيت انجام شد.");
  EXPECT_EQ(form->txtTitle.text(), "نام ديگر");
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeEdit);
}

}  // namespace
}  // namespace ledgertree::testing
