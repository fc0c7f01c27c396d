#include "mainform/account_tree.h"

#include "data/data_error.h"
#include "support/faulty_connection.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

using mainform::AccountTree;
using mainform::MainScreen;

class TreeStory : public TestHouse {
 protected:
  TreeStory() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    // 11 has two children and 12 none; 113 is in both periods, its sister in the second alone; 14 lost its
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
  }

  [[nodiscard]] ui::NodeId node(std::string_view key) const { return screen.treeAccount.find(key); }
  /// The children of a node, each as "key text image", placeholders as "+" behind.
  [[nodiscard]] std::vector<std::string> level(std::string_view key) const {
    std::vector<std::string> lines;
    const ui::Tree& shown = screen.treeAccount;
    for (const ui::NodeId child : shown.children(node(key))) {
      std::string line =
          shown.key(child) + " " + shown.text(child) + " " + std::to_string(shown.image(child));
      if (!shown.children(child).empty()) line += " +";
      lines.push_back(std::move(line));
    }
    return lines;
  }
  using Lines = std::vector<std::string>;

  Faults faults;
  MainScreen screen{shell};
  AccountTree tree{screen, shell};
};

TEST_F(TreeStory, TheIntegratedTreeOpensLevelByLevel) {
  tree.refreshTree();
  EXPECT_EQ(screen.treeAccount.text(node("-1:-1")), "درخت حسابها در همه دوره ها بصورت يکپارچه");
  EXPECT_TRUE(screen.treeAccount.expanded(node("-1:-1")));
  EXPECT_EQ(level("-1:-1"), (Lines{"-1:13  ...  1", "-1:11 11 ... دارايي 4 +", "-1:12 12 ... بدهي 2"}));
  EXPECT_EQ(screen.treeAccount.selected(), ui::kNoNode);

  screen.treeAccount.expand(node("-1:11"));
  EXPECT_EQ(level("-1:11"), (Lines{"-1:112 1102 ... بانک 3", "-1:113 1103 ... صندوق 6 +"}));
  screen.treeAccount.expand(node("-1:113"));
  EXPECT_EQ(level("-1:113").size(), 2U);

  // A node is read once: what another program adds comes with the next refresh, which closes everything.
  database.execute("insert into tblAccount (ParentID, Code, Title) values (11, '1104', 'تازه')");
  screen.treeAccount.collapse(node("-1:11"));
  screen.treeAccount.expand(node("-1:11"));
  EXPECT_EQ(level("-1:11").size(), 2U);
  tree.refreshTree();
  EXPECT_EQ(node("-1:113"), ui::kNoNode);
  screen.treeAccount.expand(node("-1:11"));
  EXPECT_EQ(level("-1:11").size(), 3U);
  EXPECT_GE(desktop.hourglasses, 5);
}

TEST_F(TreeStory, AnAccountThatSomebodyMovedStandsWhereItIsNow) {
  tree.refreshTree();
  for (const char* key : {"-1:11", "-1:113"}) screen.treeAccount.expand(node(key));
  screen.treeAccount.click(node("-1:114"));
  database.execute("update tblAccount set ParentID = 12 where ID = 114");
  tree.fillNodeChildren("-1:12");
  EXPECT_EQ(level("-1:12"), (Lines{"-1:114 9 ... کوتاه 1"}));
  EXPECT_EQ(level("-1:113").size(), 1U);
  EXPECT_EQ(screen.treeAccount.selected(), ui::kNoNode);

  // The other way round: 12 stands below what is opened now.
  database.execute("update tblAccount set ParentID = null where ID = 114");
  database.execute("update tblAccount set ParentID = 114 where ID = 12");
  tree.fillNodeChildren("-1:114");
  EXPECT_EQ(notices.taken(), "");
  EXPECT_EQ(level("-1:-1").size(), 3U) << "all of it is read anew";
  screen.treeAccount.expand(node("-1:114"));
  EXPECT_EQ(level("-1:114"), (Lines{"-1:12 12 ... بدهي 2"}));
}

TEST_F(TreeStory, ThePeriodViewShowsEachPeriodWithItsOwnAccounts) {
  screen.optPeriodic.setValue(true);
  tree.refreshTree();
  EXPECT_EQ(screen.treeAccount.text(node("-1:-1")), "سرفصل حسابها");
  // The latest first; 1401 holds an account whose parents it lacks, and so stays closed.
  EXPECT_EQ(level("-1:-1"), (Lines{"2:-1 1403 1 +", "1:-1 1402 1 +", "3:-1 1401 1"}));
  EXPECT_NE(node("-1:2!$@Dummy@$!"), ui::kNoNode);

  screen.treeAccount.expand(node("1:-1"));
  screen.treeAccount.expand(node("2:-1"));
  EXPECT_EQ(level("2:-1"), (Lines{"2:11 11 ... دارايي 4 +", "2:12 12 ... بدهي 2"}));
  screen.treeAccount.expand(node("1:11"));
  screen.treeAccount.expand(node("2:11"));
  EXPECT_EQ(level("1:11"), (Lines{"1:113 1103 ... صندوق 6"}))
      << "its children belong to the other period only";
  EXPECT_EQ(level("2:11").size(), 2U);
}

TEST_F(TreeStory, ShortLabelsLoseAsManyCharactersAsTheParentsCodeHas) {
  screen.settings.ShowCompleteCode = false;
  tree.refreshTree();
  EXPECT_EQ(level("-1:-1")[1], "-1:11 11 ... دارايي 4 +");
  screen.treeAccount.expand(node("-1:11"));
  EXPECT_EQ(level("-1:11")[0], "-1:112 02 ... بانک 3");
  screen.treeAccount.expand(node("-1:113"));
  EXPECT_EQ(level("-1:113"), (Lines{"-1:114  ... کوتاه 1", "-1:115 گ ... نشانه 1"}))
      << "characters, not bytes";
  database.execute("update tblAccount set Code = null where ID = 11");
  EXPECT_EQ(tree.stripParentCode(112, "1102"), "1102");
  EXPECT_EQ(tree.stripParentCode(-5, "x'y"), "x'y");
}

TEST_F(TreeStory, KeysSayWhatAClickMeans) {
  EXPECT_EQ(mainform::makeNodeKey(-1, 7), "-1:7");
  EXPECT_EQ(mainform::parseNodeKey("3:-1"), (mainform::NodeKey{3, -1}));
  EXPECT_EQ(mainform::parseNodeKey(":"), (mainform::NodeKey{-1, -1}));
  EXPECT_EQ(mainform::parseNodeKey("-1:2!$@Dummy@$!"), (mainform::NodeKey{-1, 2}));
  EXPECT_EQ(mainform::parseNodeKey("root"), std::nullopt);
  EXPECT_FALSE(tree.nodeHasChildren("root"));
  EXPECT_TRUE(tree.nodeHasChildren("2:11"));

  std::vector<std::int32_t> accounts;
  int others = 0;
  tree.onAccountClick = [&](std::int32_t account) { accounts.push_back(account); };
  tree.onOtherClick = [&] { ++others; };
  screen.optPeriodic.setValue(true);
  tree.refreshTree();
  screen.treeAccount.expand(node("2:-1"));
  screen.treeAccount.click(node("-1:-1"));
  screen.treeAccount.click(node("2:-1"));
  screen.treeAccount.click(node("2:11"));
  screen.formMode = mainform::FormMode::ModeView;
  screen.treeAccount.click(node("2:12"));
  for (const auto mode : {mainform::FormMode::ModeEdit, mainform::FormMode::ModeNew}) {
    screen.formMode = mode;
    screen.treeAccount.click(node("2:11"));
  }
  EXPECT_EQ(accounts, (std::vector<std::int32_t>{11, 12}));
  EXPECT_EQ(others, 2);
  tree.fillNodeChildren("no key");
  tree.fillNodeChildren("77:77");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(TreeStory, ALevelThatFailsCanBeOpenedAgain) {
  tree.refreshTree();
  for (const char* failing : {"Order by Code", "as cnt", "select Code from"}) {
    screen.settings.ShowCompleteCode = false;
    int before = std::string(failing) == "as cnt" ? 1 : 0;  // the second count of the level
    faults.onCommand = [&](const std::string& statement) {
      if (statement.find(failing) != std::string::npos && before-- == 0)
        throw data::DataError(data::DataError::Reason::Storage, 10, "ديسک پر است");
    };
    screen.treeAccount.expand(node("-1:11"));
    faults.onCommand = nullptr;
    EXPECT_EQ(notices.taken(), "خطا|ديسک پر است") << failing;
    EXPECT_FALSE(screen.treeAccount.expanded(node("-1:11")));
    EXPECT_EQ(level("-1:11").size(), 1U) << "the opening box is back";
    screen.treeAccount.expand(node("-1:11"));
    EXPECT_EQ(level("-1:11").size(), 2U);
    EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
    tree.refreshTree();
  }
  // So can a period, whose opening box is the one that it had, and the whole tree.
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
  EXPECT_EQ(level("-1:-1").size(), 3U);
}

}  // namespace
}  // namespace ledgertree::testing
