#include "mainform/form/form_main.h"

#include <thread>

#include "mainform/screen_story.h"
#include "periods/period_branch.h"
#include "support/first_version.h"

namespace ledgertree::testing {
namespace {

using namespace std::chrono_literals;
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
};

TEST_F(FormMainStory, TheFirstScreenIsTheWholeTreeAndABlankRecord) {
  start();
  EXPECT_EQ(form->formMode, FormMode::ModeIdle);
  EXPECT_EQ(record(), "");
  EXPECT_TRUE(form->treeAccount.expanded(form->treeAccount.find("-1:-1")));
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000429");

  // The keyboard layout follows the system's version; a version without one leaves it.
  desktop.version = 4;
  start();
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000401");
  desktop.version = 10;
  start();
  EXPECT_EQ(shell.context.gKeyboardLayout, "00000401");
}

TEST_F(FormMainStory, ParametersAreReadAtEachLoad) {
  /// Settings that aren't at their defaults.
  const auto settings = [this] {
    const data::SystemParameters& read = form->settings;
    std::string text = read.BasePath;
    for (const auto& [name, value] : {std::pair{"CodeIsNumeric", read.CodeIsNumeric},
                                      {"PositionInEntityTest", read.PositionInEntityTest},
                                      {"CodingMode", read.CodingMode}})
      if (value != 0) text += std::string(name) + std::to_string(value);
    if (read.MultiEntityMode) text += "MultiEntityMode";
    if (read.EditCodeAllowed) text += "EditCodeAllowed";
    return read.ShowCompleteCode ? text : text + "short codes";
  };
  start();
  EXPECT_EQ(settings(), "");
  const std::pair<int, std::string> ones[] = {{301, "CodeIsNumeric1"},  {210, "PositionInEntityTest1"},
                                              {307, "CodingMode1"},     {311, "MultiEntityMode"},
                                              {319, "EditCodeAllowed"}, {302, ""}};
  for (const auto& [number, name] : ones) {
    for (const bool on : {true, false}) {
      setParameter(number, on ? "'1 of these'" : "'letters'");
      if (on && name.back() != '1') setParameter(number, "'1'");
      EXPECT_EQ(settings(), on ? "" : name) << "a change waits for the next load";
      form->close();
      start();
      EXPECT_EQ(settings(), on ? name : number == 302 ? "short codes" : "");
      const bool several = on && number == 311;
      EXPECT_EQ(form->cmdRelClasses.visible(), several);
      for (const ui::Control* control : std::initializer_list<const ui::Control*>{
               &form->lblBranch, &form->lblPosition, &form->lblRelClass, &form->lblRelObject,
               &form->sltPosition, &form->sltBranch, &form->sltEntityType, &form->sltEntity})
        EXPECT_EQ(control->visible(), !several) << control->name();
    }
  }
  setParameter(302, "'1'");
  database.execute("insert into tblTarvoBasePath (ID, BasePath) values (1, 'C:\\Host\\')");
  form->close();
  start();
  EXPECT_EQ(settings(), "C:\\Host\\");
  setParameter(307, "'70000'");
  EXPECT_THROW(FormMain(shell).load(), std::range_error);
}

TEST_F(FormMainStory, EachSelectorStandsOnItsViews) {
  database.execute(
      "update tblAccountBranch set Address = 'شيراز'; update tblAccountGroup set Description = 'بدهکاران';"
      "update tblAccountClass set Description = 'کسان'; update tblAccCostCenter set Description = 'خط يک'");
  start();
  form->View(2);
  for (const auto& [selector, detail] : {std::pair{&form->sltBranch, "vwAccountBranchMajor شيراز"},
                                         {&form->sltGroup, "vwAccountGroup بدهکاران"},
                                         {&form->sltEntityType, "vwAccountClass کسان"},
                                         {&form->sltPosition, "vwPosition_Employee_Special3 خط يک"}}) {
    selector->lookCloser();
    desktop.settle();
    EXPECT_EQ(selector->MajorView() + " " + selector->detail(), detail);
  }
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
  EXPECT_EQ(record(), "");
  pickFirst(form->sltAccount, "بانک");
  EXPECT_EQ(form->txtID.text(), "3") << "the pickers work again";

  // The caller is told of a load that fails, and the next one is complete again.
  form->close();
  shell.resetDataConnection();
  for (int command = 1; command <= 9; ++command) {
    faults.failAt(command);
    EXPECT_ANY_THROW(FormMain(shell).load()) << command;
    faults.heal();
  }
  start();
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

TEST_F(FormMainStory, AFormThatWasTooSmallTakesTheWholeDifferenceAtOnce) {
  start();
  const Bounds before = form->treeAccount.bounds();
  form->resize({.width = 6000, .height = 9000});
  form->resize({.width = 7000, .height = 6000});
  EXPECT_EQ(form->treeAccount.bounds(), before);
  const Bounds larger{before.left, before.top, before.width + 1000, before.height + 6001 - 4560};
  form->resize({.width = 14620, .height = 6001});
  EXPECT_EQ(form->treeAccount.bounds(), larger);
  form->resize(form->designSize());
  EXPECT_EQ(form->treeAccount.bounds(), larger) << "the design itself is too low to follow";
  form->resize({.width = 13620, .height = 6002});
  EXPECT_EQ(form->treeAccount.bounds(), (Bounds{before.left, before.top, before.width, larger.height + 1}));
}

/// Controls that overlap, or extend past the right edge.
std::string clashesOn(const FormMain& form) {
  std::string found;
  std::vector<const ui::Control*> seen;
  for (const ui::Control* control : form.controls()) {
    if (!control->shown() || control == &form.Frame1) continue;
    const Bounds& at = control->bounds();
    const ui::Control* around = control->frame();
    const int width =
        around != nullptr && around != &form.Frame1 ? around->bounds().width : form.size().width;
    const bool scrolls = around == &form.frameMain && form.frameMain.scrolledWidth() > 0;
    const int shift = around == &form.Frame1 ? form.Frame1.bounds().left : 0;
    if (!scrolls && (at.left + shift < 0 || at.left + shift + at.width > width))
      found += " " + control->name();
    for (const ui::Control* other : seen) {
      const Bounds& there = other->bounds();
      if (other->frame() == around && at.left < there.left + there.width && there.left < at.left + at.width &&
          at.top < there.top + there.height && there.top < at.top + at.height)
        found += " " + control->name() + "/" + other->name();
    }
    seen.push_back(control);
  }
  return found;
}

TEST_F(FormMainStory, RecordAndTreeStandBesideOneAnotherAtEveryWidth) {
  shell.offers = {Offer::HiddenCommands, Offer::Divider, Offer::OthersChanges};
  setParameter(311, "'1'");
  start();
  EXPECT_EQ(form->lblMaxDebit.bounds().top - form->lblGroup.bounds().top, 3 * 330 - 2 * 330)
      << "rows without a field are closed";
  for (const int width : {13619, 11006, form->smallestSize().width, 13620, 20000}) {
    form->resize({width, 7000});
    EXPECT_EQ(clashesOn(*form), "") << width;
    EXPECT_GT(form->lblOthers.bounds().width, 1290) << "no room to tell of others at " << width;
    EXPECT_EQ(form->treeAccount.bounds().left + form->treeAccount.bounds().width, width - 60);
  }
  EXPECT_EQ(form->cmdDeletePeriod.bounds(), (Bounds{7680 + 6380, 1140, 1920, 360}));
  const Bounds tree = form->treeAccount.bounds();
  form->divider.press(Key::Left);
  EXPECT_EQ(form->treeAccount.bounds(), (Bounds{tree.left - 150, 1530, tree.width + 150, tree.height}));
  form->divider.moveTo(-5000);
  EXPECT_EQ(form->frameMain.bounds().width, 4590) << "what the record has to keep";
  EXPECT_EQ(form->frameMain.scrolledWidth(), 7560);
  EXPECT_EQ(clashesOn(*form), "");
  start();
  EXPECT_EQ(form->frameMain.bounds().width, 4590) << "it stays for the next opening";
  shell.offers.clear();
  setParameter(311, "'0'");
  start();
  EXPECT_EQ(form->frameMain.bounds().width, 7560);
  EXPECT_EQ(form->lblMaxDebit.bounds().top, 2130);
}

TEST_F(FormMainStory, AHostCanOfferTheHiddenCommands) {
  setParameter(302, "'0'");
  start();
  shell.offers = {Offer::HiddenCommands, Offer::Export};
  EXPECT_FALSE(form->cmdOperations.visible()) << "at the next load";
  walk("nobody can press what is hidden");
  form->close();
  start();
  EXPECT_TRUE(form->mnuExcelCode.visible() && form->i342.visible() && !form->mnuExcelLevel.visible());
  walk("the commands that a host can offer");
  form->close();
  shell.offers = {Offer::Export};
  start();
  EXPECT_TRUE(form->mnuExcelCode.visible() && form->i342.visible() && !form->cmdOperations.visible());
}

TEST_F(FormMainStory, WhatOthersChangeIsReadOnlyThenAndOnlyWhileTheScreenRests) {
  int questions = 0;
  int levels = 0;
  faults.onCommand = [&](const std::string& command) {
    questions += command.ends_with("vwLedgerTreeChanges") ? 1 : 0;
    levels += command.starts_with("Select ID,ParentID") ? 1 : 0;
  };
  // Waits for an answer; returns the message, and how many levels were read for it.
  person.acts["rest"] = [&](auto&) {
    levels = 0;
    const int before = questions;
    for (int ticks = onServer() ? 100 : 2; ticks > 0 && questions < before + 2; --ticks) {
      desktop.tick();
      desktop.settle();
      std::this_thread::sleep_for(onServer() ? 20ms : 0ms);
    }
    return form->lblOthers.caption() + " " + std::to_string(levels);
  };
  start();
  desktop.tick();
  EXPECT_TRUE(questions == 0 && !form->lblOthers.visible()) << "nobody has offered it";
  form->close();
  shell.offers = {Offer::OthersChanges};
  start();
  EXPECT_TRUE(form->lblOthers.visible());
  walk("what others change");
}

TEST_F(FormMainStory, TheKeyboardAloneIsEnough) {
  start();
  walk("the keyboard alone");
}

TEST_F(FormMainStory, NothingActsOnAnotherAccountThanTheHighlightedOne) {
  start();
  walk("the highlighted account");
  desktop.inModal("FormPeriodBranch", [](ui::Form& screen) {
    EXPECT_TRUE(dynamic_cast<periods::FormPeriodBranch&>(screen).sltAccount.IsEmpty()) << "a blank record";
  });
  database.execute("insert into tblUserPermission (UserID, FormPermissionID) values (1, 30110)");
  form->cmdPeriodBranch.click();

  walk("whatever else shows an account takes the highlight off");
  EXPECT_EQ(database.number("select sum(ID) from tblAccount"), 1 + 2);
}

}  // namespace
}  // namespace ledgertree::testing
