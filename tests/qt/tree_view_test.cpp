#include "qt/tree_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QTreeView>

#include "screen.h"

namespace ledgertree::test {
namespace {

constexpr const char* kPlaceholder = "!$@Dummy@$!";

/// A tree that reads a level of three when its parent is first opened, as the screens do.
class TreeScreen : public Screen {
 public:
  TreeScreen() {
    auto& tree = form->tree;
    tree.onExpand = [this](ui::NodeId node) { fill(node); };
    tree.onNodeClick = [this](ui::NodeId node) { form->said.push_back("click " + form->tree.key(node)); };
    addRoot();
    form->setFirstFocus(form->cmdNew);
    show();
    view = &widget<QTreeView>(tree);
  }

  void addRoot() {
    const ui::NodeId root = form->tree.add(ui::kNoNode, "r", "r", 1);
    form->tree.add(root, "r!", kPlaceholder);
    form->tree.setExpanded(root, true);
    fill(root);
  }
  void fill(ui::NodeId node) {
    auto& tree = form->tree;
    if (tree.children(node).empty() || tree.text(tree.children(node).front()) != kPlaceholder) return;
    tree.remove(tree.children(node).front());
    const ui::Tree::Batch batch(tree);
    const std::string key = tree.key(node);
    for (int place = 1; place <= width; ++place) {
      const std::string own = key + "." + std::to_string(place);
      tree.add(tree.add(node, own, own, place % 6 + 1), own + "!", kPlaceholder);
    }
  }

  [[nodiscard]] QModelIndex at(const char* key) const {
    return static_cast<qt::TreeModel*>(view->model())->indexOf(form->tree.find(key));
  }
  /// The position of a node's expander, on its right.
  [[nodiscard]] QPoint mark(const char* key) const {
    const QRect item = view->visualRect(at(key));
    return {item.right() + view->indentation() / 2, item.center().y()};
  }
  void mouse(const QPoint& place) const { QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place); }
  int width = 3;
  QTreeView* view = nullptr;
};

TEST(TreeView, MarksPointToTheLeftOrDownAndStandWhereSomethingIsBelow) {
  TreeScreen screen;
  auto& tree = screen.form->tree;
  tree.remove(tree.children(tree.find("r.3")).front());
  const auto mark = [&](const char* key) {
    return painted(*screen.view->viewport(), QRect(screen.mark(key) - QPoint(7, 7), QSize(15, 15)));
  };
  EXPECT_TRUE(ink(mark("r.3"), {0, 0, 15, 15}).isEmpty());
  const QImage closed = mark("r.1");
  const QRect whole = ink(closed, {0, 0, 15, 15});
  ASSERT_GT(whole.width(), 2);
  const QRect tip(whole.left(), 0, 1, 15);
  const QRect end(whole.right(), 0, 1, 15);
  EXPECT_LT(ink(closed, tip).height(), ink(closed, end).height()) << "it points to the left";
  screen.mouse(screen.mark("r.1"));
  const QRect open = ink(mark("r.1"), {0, 0, 15, 15});
  EXPECT_GT(open.width(), open.height());
}

TEST(TreeView, ABranchIsReadWhenAPersonOpensIt) {
  TreeScreen screen;
  EXPECT_EQ(screen.view->iconSize(), QSize(16, 16));
  EXPECT_EQ(screen.at("r.1").data(Qt::ToolTipRole).toString(), QStringLiteral("<span>r.1</span>"));
  EXPECT_NEAR(screen.view->indentation() * 3, screen.view->fontMetrics().height() * 4, 2);
  EXPECT_GT(screen.mark("r.1").x(), screen.view->width() * 3 / 4) << "the tree grows from the right";
  screen.go("keys in a tree");

  // A double click opens and closes too, with the click that it begins with.
  const QPoint third = screen.view->visualRect(screen.at("r.3")).center();
  QTest::mouseClick(screen.view->viewport(), Qt::RightButton, {}, third);
  EXPECT_TRUE(screen.form->said.empty());
  // The context menu opens at the mouse, or by keyboard at the selected row.
  screen.form->tree.onMenu = [&](ui::Twips left, ui::Twips top) {
    const double dots = screen.view->width() / static_cast<double>(screen.form->tree.bounds().width);
    const QPoint place(static_cast<int>(left * dots), static_cast<int>(top * dots));
    screen.form->said.push_back("menu " +
                                screen.view->indexAt(place - QPoint(0, 4)).data().toString().toStdString());
  };
  QContextMenuEvent asked(QContextMenuEvent::Mouse, third, screen.view->viewport()->mapToGlobal(third));
  QApplication::sendEvent(screen.view->viewport(), &asked);
  screen.press(screen.form->tree, Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(std::exchange(screen.form->said, {}),
            (std::vector<std::string>{"click r.3", "menu r.3", "menu r.3"}));
  screen.mouse(third);
  QTest::mouseDClick(screen.view->viewport(), Qt::LeftButton, {}, third);
  screen.go("a tree out of reach");
}

TEST(TreeView, AProgramsChangesReachTheScreen) {
  TreeScreen screen;
  auto& tree = screen.form->tree;
  for (const char* node : {"r.1", "r.1.2"}) screen.mouse(screen.mark(node));
  tree.remove(tree.find("r.1.1"));
  EXPECT_EQ(screen.seen(tree), "r r.1 r.1.2 r.1.2.1 r.1.2.2 r.1.2.3 r.1.3 r.2 r.3");
  tree.ensureVisible(tree.find("r.1.2.3"));
  tree.select(tree.find("r.1.2.3"));
  EXPECT_TRUE(screen.view->selectionModel()->isSelected(screen.at("r.1.2.3")));
  tree.remove(tree.find("r.1.2.3"));
  EXPECT_FALSE(screen.view->selectionModel()->hasSelection()) << "nobody chose its neighbour";
  tree.setImage(tree.find("r.2"), 6);

  // A refresh: everything is removed, and the tree is built again with reused node numbers.
  {
    tree.remove(tree.find("r"));
    EXPECT_EQ(screen.seen(tree), "");
    const ui::Tree::Batch batch(tree);
    screen.addRoot();
    tree.remove(tree.find("r.2"));
  }
  EXPECT_EQ(screen.seen(tree), "r r.1 r.3");
  EXPECT_FALSE(screen.view->currentIndex().isValid());
  tree.focus();
  QTest::keyClick(screen.view, Qt::Key_Tab);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(screen.view->currentIndex(), screen.at("r")) << "the keyboard came backwards";
  tree.clear();
  EXPECT_EQ(screen.seen(tree), "");

  // Rebuilt with other nodes above: the visible rows, open nodes and selection stay.
  screen.width = 100;
  screen.addRoot();
  tree.select(tree.find("r.2"));
  const auto topRow = [&] { return screen.view->indexAt({screen.view->width() / 2, 0}).data().toString(); };
  screen.view->scrollTo(screen.at("r.50"), QTreeView::PositionAtTop);
  {
    const ui::Tree::Renewal renewal(tree);
    EXPECT_EQ(screen.view->model()->rowCount(), 0) << "the view is told of nothing in between";
    screen.addRoot();
    tree.remove(tree.find("r.4"));
    tree.setExpanded(tree.find("r.3"), true);
    tree.select(tree.find("r.2"));
  }
  EXPECT_EQ(topRow(), "r.50");
  EXPECT_EQ(screen.view->currentIndex(), screen.at("r.2"));
  EXPECT_TRUE(screen.view->isExpanded(screen.at("r.3")));
}

TEST(TreeView, CheckBoxesAreTickedByThePerson) {
  TreeScreen screen;
  auto& tree = screen.form->tree;
  tree.setCheckBoxes(true);
  tree.onNodeCheck = [&](ui::NodeId node) { screen.form->said.push_back("tick " + tree.key(node)); };
  screen.view->viewport()->update();
  Screen::settle();
  const QRect line = screen.view->visualRect(screen.at("r.1"));
  screen.mouse({line.right() - 8, line.center().y()});
  EXPECT_TRUE(tree.checked(tree.find("r.1")));
  screen.mouse({line.center().x(), line.center().y()});
  screen.press(tree, Qt::Key_Space);
  EXPECT_FALSE(tree.checked(tree.find("r.1")));
  EXPECT_EQ(screen.form->said, (std::vector<std::string>{"tick r.1", "click r.1", "tick r.1"}));
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(screen.view)->child(1)->state().checkable);
  // Two quick clicks are two.
  screen.mouse({line.right() - 8, line.center().y()});
  QTest::mouseDClick(screen.view->viewport(), Qt::LeftButton, {}, {line.right() - 8, line.center().y()});
  EXPECT_EQ(screen.form->said.size(), 5U);
}

TEST(TreeView, ALevelOfAHundredThousandAccountsIsOneInsertion) {
  TreeScreen screen;
  screen.width = 100'000;
  int insertions = 0;
  QObject::connect(screen.view->model(), &QAbstractItemModel::rowsInserted, [&] { ++insertions; });
  QElapsedTimer timer;
  timer.start();
  screen.mouse(screen.mark("r.2"));
  Screen::settle();
  RecordProperty("milliseconds", static_cast<int>(timer.elapsed()));
  EXPECT_EQ(insertions, 1);
  EXPECT_EQ(screen.view->model()->rowCount(screen.at("r.2")), 100'000);
  EXPECT_EQ(screen.view->indexBelow(screen.at("r.2.100000")), screen.at("r.3"));
}

}  // namespace
}  // namespace ledgertree::test
