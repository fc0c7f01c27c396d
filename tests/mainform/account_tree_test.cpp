#include "mainform/account_tree.h"

#include "data/data_error.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

using mainform::AccountTree;
using mainform::MainScreen;

class TreeStory : public FaultyHouse {
 protected:
  TreeStory() {
    // 11 has two children and 12 none; 113 is in both periods, its sibling only in the second; 14 lost its
    // parent's code.
    database.execute(
        "insert into tblAccountPeriod values (1, '1402', '2023-03-21', '2024-03-19', '1402/01/01', "
        "'1402/12/29'),"
        " (2, '1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30'),"
        " (3, '1401', '2022-03-21', '2023-03-20', '1401/01/01', '1401/12/29');"
        "insert into tblAccount (ID, ParentID, Code, Title, AccountNatureID, IsClosed) values"
        " (12, null, '12', 'بدهي', 1, 0), (11, null, '11', 'دارايي', 0, 1), (13, null, null, null, null, "
        "null),"
        " (113, 11, '1103', 'صندوق', 2, 1), (112, 11, '1102', 'بانک', 2, 0), (114, 113, '9', 'کوتاه', 0, 0),"
        " (115, 113, 'ابپچگ', 'نشانه', 0, 0);"
        "insert into tblAccountPeriodAccount (PeriodID, AccountID) values (1, 11), (1, 113), (2, 11), (2, "
        "112), (2, 113),"
        " (2, 114), (2, 12), (3, 114)");
    desktop.show(screen);
    person.acts["refresh"] = [this](auto&) { tree.refreshTree(); };
    person.acts["again"] = [this](auto&) { tree.readAgain(); };
    person.acts["record"] = [this](auto& id) { screen.AccountOnRecord = std::stoi(id); };
    person.acts["show"] = [this](auto& id) { clicks = tree.showAccount(std::stoi(id)) ? "" : "not there"; };
    person.acts["fill"] = [this](auto& key) { tree.fillNodeChildren(key); };
    person.acts["mode"] = [this](auto& mode) {
      screen.formMode = static_cast<mainform::FormMode>(std::stoi(mode));
    };
    tree.onAccountClick = [this](std::int32_t account) { clicks = "account " + std::to_string(account); };
    tree.onOtherClick = [this] { clicks = "no account"; };
  }

  [[nodiscard]] ui::NodeId node(std::string_view key) const { return screen.treeAccount.find(key); }
  [[nodiscard]] std::size_t below(std::string_view key) const {
    return screen.treeAccount.children(node(key)).size();
  }
  /// A section of mainform/tree.txt. Seen is the whole tree: of each node key, text and picture, "@" if it is
  /// selected, and its children in parentheses, "..." for those that aren't read and a leading "+" if it is
  /// closed. Told are the clicks.
  void walk(const std::string& section) {
    person.go(
        "mainform/tree.txt", section, [this] { return shown(screen.treeAccount.roots()); },
        [&] { return std::exchange(clicks, {}); });
  }
  [[nodiscard]] std::string shown(const std::vector<ui::NodeId>& nodes) const {
    const ui::Tree& all = screen.treeAccount;
    std::string text;
    for (const ui::NodeId one : nodes) {
      if (all.key(one).find("Dummy") != std::string::npos) return "...";
      text += (text.empty() ? "" : ", ") + all.key(one) + " " + all.text(one) + " #" +
              std::to_string(all.image(one)) + (all.selected() == one ? " @" : "");
      if (all.children(one).empty()) continue;
      text += (all.expanded(one) ? " (" : " +(") + shown(all.children(one)) + ")";
    }
    return text;
  }

  MainScreen screen{shell};
  AccountTree tree{screen, shell};
  std::string clicks;
};

TEST_F(TreeStory, TheIntegratedTreeOpensLevelByLevel) {
  walk("the integrated tree");
  walk("an account that somebody moved");
}

TEST_F(TreeStory, ThePeriodViewShowsEachPeriodWithItsOwnAccounts) {
  walk("the view of the periods");
  EXPECT_NE(node("-1:2!$@Dummy@$!"), ui::kNoNode);
  walk("each period with its own accounts");
}

TEST_F(TreeStory, ShortLabelsLoseAsManyCharactersAsTheParentsCodeHas) {
  screen.settings.ShowCompleteCode = false;
  walk("short labels");
  database.execute("update tblAccount set Code = null where ID = 11");
  EXPECT_EQ(tree.stripParentCode(112, "1102"), "1102");
  EXPECT_EQ(tree.stripParentCode(-5, "x'y"), "x'y");
}

TEST_F(TreeStory, ItKeepsItsPlaceWhereTheHostOffersIt) {
  shell.offers = {Offer::KeptPlace};
  walk("a place that is kept by periods");
  walk("a place that is kept");
  screen.settings.ShowCompleteCode = false;
  static_cast<void>(faults.take());
  tree.readAgain();
  EXPECT_EQ(faults.take().size(), 2U * 3) << "two for each level that is open";
  EXPECT_EQ(screen.treeAccount.text(node("-1:117")), "01 ... وام");
  const std::string before = shown(screen.treeAccount.roots());
  database.execute("delete from tblAccount where ID = 116");
  faults.failWhere("ParentID,-1)=12");
  EXPECT_THROW(tree.readAgain(), data::DataError);
  EXPECT_EQ(shown(screen.treeAccount.roots()), before) << "nothing of it goes ahead of a failure";
}

struct Restarts : ui::FormObserver {
  int count = 0;
  void controlChanged(ui::Control&, ui::Change) override {}
  void treeChanged(ui::Tree&, const ui::TreeChange&) override {}
  void formChanged(ui::FormChange) override {}
  void timerRestarted(ui::Timer&) override { ++count; }
};

TEST_F(TreeStory, KeysSayWhatAClickMeans) {
  EXPECT_EQ(mainform::makeNodeKey(-1, 7), "-1:7");
  EXPECT_EQ(mainform::parseNodeKey("3:-1"), (mainform::NodeKey{3, -1}));
  EXPECT_EQ(mainform::parseNodeKey(":"), (mainform::NodeKey{-1, -1}));
  EXPECT_EQ(mainform::parseNodeKey("-1:2!$@Dummy@$!"), (mainform::NodeKey{-1, 2}));
  EXPECT_EQ(mainform::parseNodeKey("root"), std::nullopt);
  EXPECT_FALSE(tree.nodeHasChildren("root"));
  EXPECT_TRUE(tree.nodeHasChildren("2:11"));

  walk("what a click means");
  Restarts rests;
  screen.addObserver(rests);
  for (const ui::Key key : {ui::Key::Home, ui::Key::Down}) screen.treeAccount.press(key);
  EXPECT_EQ(rests.count, 2) << "a key that is held down never rests";
  screen.removeObserver(rests);
}

TEST_F(TreeStory, ALevelOfAnySizeIsThreeQuestions) {
  // A third of 300 accounts has a child. The even ones are in period 2, and every second of their children.
  // Of the last three, period 2 has the first child, the last one, and neither, beside others between them.
  std::string accounts =
      "(1997, 12, '1997', 'x'), (1998, 12, '1998', 'x'), (1999, 12, '1999', 'x'), (900, 1997, 'x', 'x'),"
      " (2900, 1997, 'x', 'x'), (901, 1998, 'x', 'x'), (2901, 1998, 'x', 'x'), (902, 1999, 'x', 'x'), (2902, "
      "1999, 'x', 'x')";
  std::string members = "(2, 1997), (2, 1998), (2, 1999), (2, 900), (2, 2901)";
  for (int i = 0; i < 300; ++i) {
    const std::string id = std::to_string(1000 + i);
    const std::string child = std::to_string(2000 + i);
    accounts.append(", (").append(id).append(", 12, '").append(id).append("', 'x')");
    if (i % 2 == 0) members.append(", (2, ").append(id).append(")");
    if (i % 3 != 0) continue;
    accounts.append(", (").append(child).append(", ").append(id).append(", 'x', 'x')");
    members.append(i % 12 == 0 ? ", (2, " : ", (1, ").append(child).append(")");
  }
  database.execute("insert into tblAccount (ID, ParentID, Code, Title) values " + accounts);
  database.execute("insert into tblAccountPeriodAccount (PeriodID, AccountID) values " + members);
  const auto open = [this](const std::string& key) {
    static_cast<void>(faults.take());
    screen.treeAccount.expand(node(key));
    const std::size_t questions = faults.take().size();
    std::size_t boxes = 0;
    for (const ui::NodeId child : screen.treeAccount.children(node(key))) {
      const std::string& own = screen.treeAccount.key(child);
      EXPECT_EQ(below(own) == 1, tree.nodeHasChildren(own)) << own;
      boxes += below(own);
    }
    return std::to_string(questions) + " for " + std::to_string(below(key)) + ", " + std::to_string(boxes) +
           " with children";
  };
  tree.refreshTree();
  EXPECT_EQ(open("-1:12"), "2 for 303, 103 with children");
  screen.settings.ShowCompleteCode = false;
  tree.refreshTree();
  EXPECT_EQ(open("-1:12"), "3 for 303, 103 with children");
  screen.optPeriodic.setValue(true);
  static_cast<void>(faults.take());
  tree.refreshTree();
  EXPECT_EQ(faults.take().size(), 2U);
  EXPECT_EQ(open("2:-1"), "3 for 2, 2 with children");
  EXPECT_EQ(open("2:12"), "3 for 153, 27 with children");
}

TEST_F(TreeStory, ALevelThatFailsCanBeOpenedAgain) {
  tree.refreshTree();
  for (const char* failing : {"Order by Code", "and exists", "select Code from"}) {
    screen.settings.ShowCompleteCode = false;
    faults.failWhere(failing);
    screen.treeAccount.expand(node("-1:11"));
    faults.heal();
    EXPECT_EQ(notices.taken(), "خطا|" + std::string(Faults::kMessage)) << failing;
    EXPECT_FALSE(screen.treeAccount.expanded(node("-1:11")));
    EXPECT_EQ(below("-1:11"), 1U) << "the opening box is back";
    screen.treeAccount.expand(node("-1:11"));
    EXPECT_EQ(below("-1:11"), 2U);
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    tree.refreshTree();
  }
  // Nor is a period, whose expander is the one that it had, nor the whole tree.
  screen.optPeriodic.setValue(true);
  tree.refreshTree();
  faults.failWhere("Order by Code");
  screen.treeAccount.expand(node("2:-1"));
  faults.heal();
  EXPECT_NE(notices.taken(), "");
  EXPECT_NE(node("-1:2!$@Dummy@$!"), ui::kNoNode);
  screen.optPeriodic.setValue(false);
  faults.onCommand = [](const std::string&) {
    throw data::DataError(data::DataError::Reason::Connection, 0, "پايگاه گم شد");
  };
  EXPECT_THROW(tree.refreshTree(), data::DataError);
  faults.onCommand = nullptr;
  screen.treeAccount.expand(node("-1:-1"));
  EXPECT_EQ(below("-1:-1"), 3U);
}

}  // namespace
}  // namespace ledgertree::testing
