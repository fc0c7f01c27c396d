#include "mainform/form_main.h"

#include <map>

#include "mainform/screen_story.h"
#include "support/first_version.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMain;
using mainform::FormMode;
using ui::Bounds;
using ui::Key;
using ui::KeyChord;

class FormMainStory : public ScreenStory {
 protected:
  void setParameter(int number, const char* value) {
    database.execute("delete from tblTarvoSystemParameters where ID = " + std::to_string(number) +
                     "; insert into tblTarvoSystemParameters (ID, Value) values (" + std::to_string(number) +
                     ", " + value + ")");
  }
  [[nodiscard]] std::string firstLabel() const {
    const ui::Tree& tree = form->treeAccount;
    return tree.text(tree.children(tree.find("-1:1")).front());
  }
  [[nodiscard]] std::string marks() const {
    std::string names;
    for (const ui::MenuEntry* entry :
         {&form->mnuView1, &form->mnuView2, &form->mnuViewCode, &form->mnuViewCodeComplete})
      if (entry->checked()) names += entry->name() + " ";
    return names;
  }
};

TEST_F(FormMainStory, TheFirstScreenIsTheWholeTreeAndABlankRecord) {
  start();
  EXPECT_EQ(form->formMode, FormMode::ModeIdle);
  EXPECT_EQ(record(), "||||||||||1405/09/01||||  |");
  EXPECT_TRUE(form->treeAccount.expanded(form->treeAccount.find("-1:-1")));
  EXPECT_FALSE(form->optPeriodic.value() || form->optPeriodAll.value());
  EXPECT_TRUE(form->wantsMaximised());
  EXPECT_EQ(form->caption(), "سرفصل حسابها");
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000429");

  // The layout follows the version of the system; a version without one of its own leaves it.
  desktop.version = 4;
  start();
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000401");
  desktop.version = 10;
  start();
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000401");
}

TEST_F(FormMainStory, ParametersAreReadAtEachLoad) {
  start();
  const data::SystemParameters standard = form->settings;
  EXPECT_EQ(standard.CodeIsNumeric + standard.PositionInEntityTest + standard.CodingMode, 0);
  EXPECT_FALSE(standard.MultiEntityMode || standard.EditCodeAllowed);
  EXPECT_TRUE(standard.ShowCompleteCode);
  EXPECT_EQ(standard.BasePath, "");
  EXPECT_FALSE(form->cmdRelClasses.visible());
  EXPECT_TRUE(form->sltEntity.visible() && form->lblBranch.visible());

  for (const int number : {301, 210, 307}) setParameter(number, "'1 of these'");
  for (const int number : {311, 319, 302}) setParameter(number, "'1'");
  database.execute("insert into tblTarvoBasePath (ID, BasePath) values (1, 'C:\\Host\\')");
  EXPECT_EQ(form->settings.CodingMode, 0) << "a change waits for the next load";
  form->close();
  start();
  EXPECT_EQ(form->settings.CodeIsNumeric + form->settings.PositionInEntityTest + form->settings.CodingMode,
            3);
  EXPECT_TRUE(form->settings.EditCodeAllowed && form->settings.ShowCompleteCode);
  EXPECT_EQ(form->settings.BasePath, "C:\\Host\\");
  EXPECT_TRUE(form->cmdRelClasses.visible());
  for (const ui::Control* control : std::initializer_list<const ui::Control*>{
           &form->lblBranch, &form->lblPosition, &form->lblRelClass, &form->lblRelObject, &form->sltPosition,
           &form->sltBranch, &form->sltEntityType, &form->sltEntity})
    EXPECT_FALSE(control->visible()) << control->name();

  for (const int number : {301, 210, 307}) setParameter(number, "'letters'");
  for (const int number : {311, 319, 302}) setParameter(number, "'0'");
  form->close();
  start();
  EXPECT_EQ(form->settings.CodeIsNumeric + form->settings.PositionInEntityTest + form->settings.CodingMode,
            0);
  EXPECT_FALSE(form->settings.MultiEntityMode || form->settings.EditCodeAllowed ||
               form->settings.ShowCompleteCode);

  setParameter(307, "'70000'");
  EXPECT_THROW(FormMain(shell).load(), std::range_error);
}

TEST_F(FormMainStory, TheEndClosesTheConnectionAndANewStartIsWhole) {
  start();
  clickInTree("-1:1");
  FormMain* const first = form.get();
  bool ended = false;
  first->onClosed = [&] {
    ended = !shell.hasDtEn() && first->sltParent.ClosingFlag();
    form.reset();
  };
  form->closeByPerson();
  EXPECT_TRUE(ended);
  EXPECT_EQ(desktop.shownForms.size(), 0U);
  EXPECT_EQ(shell.context.gUserID, 1) << "the host's values outlive the form";

  start();
  EXPECT_EQ(record(), "||||||||||1405/09/01||||  |");
  form->sltAccount.type("بانک");
  form->sltAccount.press(Key::Enter);
  desktop.settle();
  EXPECT_EQ(form->txtID.text(), "3") << "the pickers work again";

  // A load that fails says so to whoever asked for the form, and the next one is whole again.
  form->close();
  shell.resetDataConnection();
  for (int command = 1; command <= 9; ++command) {
    faults.failAt(command);
    EXPECT_ANY_THROW(FormMain(shell).load()) << command;
    faults.heal();
  }
  start();
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(FormMainStory, CodesThatAnOlderFileSharesAreToldOnceAndItsAccountsAreThere) {
  if (onServer()) GTEST_SKIP() << "a server's database isn't taken up here";
  const TemporaryFolder folder;
  static_cast<void>(firstVersion(folder.path() / "older.db"));
  shell.context.gConnectionString = "Provider=SQLite;Data Source=" + (folder.path() / "older.db").string();
  shell.resetDataConnection();
  start();
  EXPECT_NE(notices.taken().find("«9Ak»، «9ك»، «حي1»"), std::string::npos);
  form->View(901);
  EXPECT_EQ(form->txtCode.text(), "حی1");
  start();
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(FormMainStory, ExtraSpaceGoesToTheTree) {
  start();
  const auto follows = [this](ui::Control& control, Bounds before, int left, int top, int width, int height) {
    EXPECT_EQ(control.bounds(),
              (Bounds{before.left + left, before.top + top, before.width + width, before.height + height}))
        << control.name();
  };
  std::map<ui::Control*, Bounds> before;
  for (ui::Control* control : form->controls()) before[control] = control->bounds();

  // Too small to follow, then larger: the whole difference to the design comes at once.
  form->resize({.width = 5000, .height = 9000});
  form->resize({.width = 7000, .height = 6000});
  form->resize({.width = 14620, .height = 6560});
  for (ui::Control* control : form->controls()) {
    const Bounds& old = before[control];
    const std::string& name = control->name();
    const bool travels = name == "cmdRefreshAccountTree" || name == "cmdCopyPeriod" ||
                         name == "cmdDeletePeriod" || name == "optPeriodAll" || name == "optPeriodic";
    if (name == "treeAccount") {
      follows(*control, old, 0, 0, 1000, 2000);
    } else if (name == "ProgressBar" || name == "FrameViewType") {
      follows(*control, old, 0, 0, 1000, 0);
    } else if (name == "frameMain") {
      follows(*control, old, 0, 0, 0, 2000);
    } else if (name == "lblMessage") {
      follows(*control, old, 1000, 2000, 0, 0);
    } else if (name == "Frm7") {
      follows(*control, old, 0, 2000, 0, 0);
    } else {
      follows(*control, old, travels ? 1000 : 0, 0, 0, 0);
    }
  }
  form->resize(form->designSize());
  EXPECT_EQ(form->treeAccount.bounds().height, before[&form->treeAccount].height + 2000)
      << "the design itself is too low to follow";
}

TEST_F(FormMainStory, TheMenusLeadToTheirCommands) {
  start();
  form->cmdTools.click();
  EXPECT_EQ(desktop.poppedUp, &form->i12);
  EXPECT_EQ(desktop.poppedUpLeft, form->cmdTools.bounds().left);
  EXPECT_EQ(desktop.poppedUpTop, form->cmdTools.bounds().top);
  desktop.poppedUp = nullptr;
  form->cmdi12.click();
  form->cmdOperations.click();
  EXPECT_EQ(desktop.poppedUp, nullptr) << "nobody can press what is hidden";
  form->mnuViewCode.click();
  EXPECT_EQ(marks(), "mnuView1 mnuViewCodeComplete ");
  EXPECT_FALSE(form->mnuExcelCode.visible());

  // The second roads.
  form->mnuFonc1.click();
  EXPECT_EQ(form->formMode, FormMode::ModeNew);
  form->cmdCopyPeriod.click();
  EXPECT_EQ(notices.taken(), "اشکال|شما به انجام اين عمليات مجاز نيستيد.");
}

TEST_F(FormMainStory, AHostCanOfferTheHiddenCommands) {
  setParameter(302, "'0'");
  start();
  shell.offersHiddenCommands = true;
  EXPECT_FALSE(form->cmdOperations.visible()) << "at the next load";
  form->close();
  start();
  EXPECT_TRUE(form->mnuExcelCode.visible());
  form->cmdOperations.click();
  EXPECT_EQ(desktop.poppedUp, &form->mnuOperations);

  // The parameter cuts the codes, and moves no mark.
  form->treeAccount.expand(form->treeAccount.find("-1:1"));
  EXPECT_EQ(firstLabel(), "01 ... دريافتني ها");
  EXPECT_EQ(marks(), "mnuView1 mnuViewCodeComplete ");
  form->mnuViewCodeComplete.click();
  form->treeAccount.expand(form->treeAccount.find("-1:1"));
  EXPECT_EQ(firstLabel(), "1101 ... دريافتني ها");
  form->mnuViewCode.click();
  form->treeAccount.expand(form->treeAccount.find("-1:1"));
  EXPECT_EQ(firstLabel(), "01 ... دريافتني ها");
  EXPECT_EQ(marks(), "mnuView1 mnuViewCode ");

  // Without the details the tree takes the form's height; with them again it keeps it.
  form->mnuView2.click();
  EXPECT_EQ(form->treeAccount.bounds().height, form->size().height - 1825);
  EXPECT_EQ(marks(), "mnuView2 mnuViewCode ");
  form->mnuView1.click();
  EXPECT_EQ(form->treeAccount.bounds().height, form->size().height - 1825);
  EXPECT_EQ(marks(), "mnuView1 mnuViewCode ");
}

TEST_F(FormMainStory, TheKeyboardAloneIsEnough) {
  start();
  ui::Tree& tree = form->treeAccount;
  tree.focus();
  tree.press(Key::Home);
  tree.press(Key::Down);
  EXPECT_EQ(form->txtID.text(), "") << "moving the selection shows nothing yet";
  tree.press(Key::Enter);
  EXPECT_EQ(form->txtID.text(), "1");
  EXPECT_TRUE(form->press(KeyChord::ctrlAnd('E')));
  EXPECT_EQ(form->formMode, FormMode::ModeEdit);
  answer(true);
  EXPECT_TRUE(form->press(KeyChord::of(Key::Escape)));
  EXPECT_EQ(form->formMode, FormMode::ModeView);
  EXPECT_FALSE(form->press(KeyChord::of(Key::Escape))) << "there is nothing to cancel";

  database.execute("insert into tblAccount (ID, Code, Title) values (50, '10', 'تازه')");
  EXPECT_TRUE(form->press(KeyChord::of(Key::F5)));
  EXPECT_NE(tree.find("-1:50"), ui::kNoNode);
  form->optPeriodic.click();
  EXPECT_EQ(tree.text(tree.find("-1:-1")), "سرفصل حسابها");
  EXPECT_TRUE(form->press(KeyChord::of(Key::F10)));
  EXPECT_EQ(desktop.poppedUp, &form->i12);
  answer(true);
  form->press(KeyChord::ctrlAnd('N'));
  form->press(KeyChord::ctrlAnd('Q'));
  EXPECT_FALSE(form);
}

}  // namespace
}  // namespace ledgertree::testing
