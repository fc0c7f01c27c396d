#include "mainform/form/secondary_screens.h"

#include "mainform/screen_story.h"
#include "support/steps.h"

namespace ledgertree::testing {
namespace {

class SecondaryScreensStory : public ScreenStory {
 protected:
  SecondaryScreensStory() {
    database.execute(
        "insert into tblUserPermission (UserID, FormPermissionID) values (1, 30110), (1, 30111), (1, 30112);"
        "insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values"
        " (5, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30')");
    // "in FormPeriodBranch cmdAdd, cmdExit" is for when that screen opens.
    person.acts["in"] = [this](auto& about) {
      const auto [name, steps] = cut(about);
      desktop.inModal(name, [this, steps = steps](ui::Form&) {
        for (std::size_t begin = 0; begin < steps.size();) {
          const std::size_t end = std::min(steps.find(", ", begin), steps.size());
          person.act(steps.substr(begin, end - begin));
          begin = end + 2;
        }
      });
    };
    person.acts["about"] = [this](auto& id) {
      const ui::Control* const account = desktop.shownForms.back()->find("sltAccount");
      EXPECT_EQ(dynamic_cast<const shell::Selector&>(*account).SelectedID(), std::stoi(id));
    };
  }
  /// Seen are the account and the mode, and the open nodes of the tree.
  void walk(const std::string& section) {
    start();
    person.go("mainform/steps.txt", section, [this] {
      std::string text = form->txtID.text() + " " + form->txtTitle.text() + ", mode " +
                         std::to_string(static_cast<int>(form->formMode)) + ":";
      addOpen(form->treeAccount.roots().front(), text);
      return text;
    });
  }

 private:
  void addOpen(ui::NodeId node, std::string& text) const {
    const ui::Tree& tree = form->treeAccount;
    text += " " + tree.key(node);
    if (!tree.expanded(node)) return;
    for (const ui::NodeId child : tree.children(node)) addOpen(child, text);
  }
};

TEST_F(SecondaryScreensStory, TheTreeByPeriodsFollowsWhatChangedInAPeriod) {
  walk("what changed in a period");
}

TEST_F(SecondaryScreensStory, NoScreenOpensOnAQuestionThatFails) { walk("a screen whose question fails"); }

TEST_F(SecondaryScreensStory, TheClassesOfAnAccountLeaveTheRecordAlone) {
  database.execute("insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
  walk("the classes of an account");
}

}  // namespace
}  // namespace ledgertree::testing
