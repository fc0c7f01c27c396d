#include <functional>
#include <stdexcept>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

/// Writes down what whoever draws the form is told.
struct Ear : ui::FormObserver {
  void controlChanged(ui::Control& control, ui::Change change) override {
    static const char* const names[] = {"Caption", "Text",  "Caret",     "Value", "Enabled", "Visible",
                                        "Bounds",  "Items", "Selection", "List",  "Hint"};
    heard += control.name() + "." + names[static_cast<int>(change)] + " ";
  }
  void treeChanged(ui::Tree&, const ui::TreeChange& change) override {
    static const char* const names[] = {"Cleared",   "ChildrenAdded", "AboutToRemove",
                                        "Removed",   "NodeChanged",   "Expanded",
                                        "Collapsed", "EnsureVisible", "Selected"};
    heard += names[static_cast<int>(change.kind)];
    const std::string node = change.node == ui::kNoNode ? "-" : std::to_string(change.node);
    heard += "(" + node + "," + std::to_string(change.first) + "," + std::to_string(change.count) + ") ";
  }
  void formChanged(ui::FormChange change) override {
    static const char* const names[] = {"Caption", "Size", "Menu"};
    heard += std::string("form.") + names[static_cast<int>(change)] + " ";
  }
  void timerChanged(ui::Timer& changed) override { heard += changed.name() + " "; }
  std::string take() { return std::exchange(heard, {}); }
  std::string heard;
};

class Changes : public FormStory {
 protected:
  Changes() { form->addObserver(ear); }
  struct Case {
    std::function<void()> act;
    const char* told;
    const char* again;  ///< what the same act tells a second time
  };
  Ear ear;
};

TEST_F(Changes, AreToldOnceAndOnlyWhereSomethingIsAnotherWay) {
  SmallForm& f = *form;
  const ui::Bounds place{1, 2, 3, 4};
  const std::vector<ui::GridColumn> columns{{"رديف", 600}};
  const std::vector<std::string> cells{"1", "2"};
  const std::vector<ui::LookupRow> rows{{8, "م", ""}};
  const ui::LookupRow row{7, "مهر", "70"};
  const ui::Size size{7000, 4000};
  const Case cases[] = {
      {[&] { f.text.setBounds(place); }, "text.Bounds ", ""},
      {[&] { f.text.setVisible(false); }, "text.Visible ", ""},
      {[&] { f.text.setVisible(true); }, "text.Visible ", ""},
      {[&] { f.text.setEnabled(false); }, "text.Enabled ", ""},
      {[&] { f.text.setEnabled(true); }, "text.Enabled ", ""},
      {[&] { f.text.setLocked(true); }, "text.Enabled ", ""},
      {[&] { f.text.setLocked(false); }, "text.Enabled ", ""},
      {[&] { f.text.setHint("راهنما"); }, "text.Hint ", "text.Hint "},
      {[&] { f.text.setText("یک"); }, "text.Text ", ""},
      {[&] { f.text.setCaret(1); }, "text.Caret ", "text.Caret "},
      {[&] { f.text.type("a"); }, "text.Text ", "text.Text "},
      {[&] { f.text.press(Key::Backspace); }, "text.Text ", "text.Text "},
      {[&] { f.text.paste("b"); }, "text.Text ", "text.Text "},
      {[&] { f.text.edited("c", 1); }, "", ""},
      {[&] { f.label.setCaption("ديگر"); }, "label.Caption ", ""},
      {[&] { f.progress.setProgress(1, 2, "نيم"); }, "progress.Value ", "progress.Value "},
      {[&] { f.one.setValue(true); }, "one.Value ", ""},
      {[&] { f.two.click(); }, "one.Value two.Value ", ""},
      {[&] { f.two.setValue(false); }, "two.Value ", ""},
      {[&] { f.check.setValue(7); }, "check.Value ", ""},
      {[&] { f.check.click(); }, "check.Value ", "check.Value "},
      {[&] { f.list.addItem("الف", 5); }, "list.Items ", "list.Items "},
      {[&] { f.list.setItemText(1, "ب"); }, "list.Items ", "list.Items "},
      {[&] { f.list.choose(1); }, "list.Selection ", "list.Selection "},
      {[&] { f.list.removeItem(0); }, "list.Items ", "list.Items "},
      {[&] { f.list.clearItems(); }, "list.Items ", "list.Items "},
      {[&] { f.grid.setColumns(columns); }, "grid.Items ", "grid.Items "},
      {[&] { f.grid.addRow(cells); }, "grid.Items ", "grid.Items "},
      {[&] { f.grid.selectRow(1); }, "grid.Selection ", "grid.Selection "},
      {[&] { f.grid.extendTo(0); }, "grid.Selection ", "grid.Selection "},
      {[&] { f.grid.clearRows(); }, "grid.Items ", "grid.Items "},
      {[&] { f.field.hold(row); }, "field.Text ", "field.Text "},
      {[&] { f.field.setDetail("ديگر"); }, "field.Hint ", ""},
      {[&] { f.field.setTitle("فهرست"); }, "field.Caption ", "field.Caption "},
      {[&] { f.field.openList(); }, "field.List ", ""},
      {[&] { f.field.showRows(rows, false, true, false); }, "field.List ", "field.List "},
      {[&] { f.field.press(Key::Down); }, "field.Selection field.List ", "field.Selection "},
      {[&] { f.field.showRows({}, true, true, false); }, "field.List ", "field.List "},
      {[&] { f.field.reachedEnd(); }, "field.List ", ""},
      {[&] { f.field.type("آ"); }, "field.List field.Text ", "field.List field.Text "},
      {[&] { f.field.press(Key::Backspace); }, "field.List field.Text ", "field.List field.Text "},
      {[&] { f.field.press(Key::Escape); }, "field.List field.Text ", ""},
      {[&] { f.field.setActive(false); }, "field.Enabled ", ""},
      {[&] { f.field.setActive(true); }, "field.Enabled ", ""},
      {[&] { f.menu.setVisible(false); }, "form.Menu ", ""},
      {[&] { f.menu.setEnabled(false); }, "form.Menu ", ""},
      {[&] { f.menu.setChecked(true); }, "form.Menu ", ""},
      {[&] { f.setCaption("ديگر"); }, "form.Caption ", "form.Caption "},
      {[&] { f.resize(size); }, "form.Size ", ""},
      {[&] { f.tree.add(ui::kNoNode, "a", "الف"); }, "ChildrenAdded(-,0,1) ", nullptr},
      {[&] { f.tree.add(0, "", "ب"); }, "ChildrenAdded(0,0,1) ", "ChildrenAdded(0,1,1) "},
      {[&] { f.tree.setImage(1, 3); }, "NodeChanged(1,0,0) ", "NodeChanged(1,0,0) "},
      {[&] { f.tree.setChecked(1, true); }, "NodeChanged(1,0,0) ", ""},
      {[&] { f.tree.ensureVisible(1); }, "Expanded(0,0,0) EnsureVisible(1,0,0) ", "EnsureVisible(1,0,0) "},
      {[&] { f.tree.setExpanded(0, false); }, "Collapsed(0,0,0) ", ""},
      {[&] { f.tree.click(1); }, "Selected(1,0,0) ", "Selected(1,0,0) "},
      {[&] { f.tree.remove(1); }, "AboutToRemove(1,0,0) Removed(0,0,1) ", nullptr},
      {[&] { f.tree.clear(); }, "Cleared(-,0,0) ", "Cleared(-,0,0) "},
  };
  for (const Case& one : cases) {
    const auto index = &one - cases;
    one.act();
    EXPECT_EQ(ear.take(), one.told) << "act " << index;
    if (one.again == nullptr) continue;
    one.act();
    EXPECT_EQ(ear.take(), one.again) << "act " << index << ", again";
  }
  EXPECT_EQ(form->resizes, 1);
  form->removeObserver(ear);
  form->setCaption("نه");
  EXPECT_EQ(ear.take(), "");
}

TEST_F(Changes, OfALevelOfTheTreeAreToldAsOne) {
  ui::Tree& tree = form->tree;
  const ui::NodeId root = tree.add(ui::kNoNode, "root", "ريشه");
  const ui::NodeId old = tree.add(root, "old", "قديم");
  ear.take();
  {
    const ui::Tree::Batch batch(tree);
    for (int i = 0; i < 100; ++i) tree.add(tree.add(root, "n" + std::to_string(i), "گره"), "", "!");
    tree.add(old, "late", "دير");
    tree.setChecked(tree.addNew(root, "last", "آخر"), true);
  }
  EXPECT_EQ(ear.take(), "ChildrenAdded(0,1,100) ChildrenAdded(1,0,1) ChildrenAdded(0,101,1) ");
  EXPECT_EQ(tree.count(), 204U);
  for (const char* key : {"n5", "last"})
    EXPECT_THROW(tree.add(root, key, "دوباره"), std::invalid_argument) << key;
  const ui::NodeId fifth = tree.find("n5");
  tree.select(fifth);
  tree.remove(fifth);
  EXPECT_EQ(tree.find("n5"), ui::kNoNode);
  EXPECT_EQ(tree.selected(), ui::kNoNode);
  EXPECT_EQ(tree.place(tree.find("n6")), 6U);
  EXPECT_EQ(tree.count(), 202U);
  EXPECT_THROW(static_cast<void>(tree.text(fifth)), std::out_of_range);
}

}  // namespace
}  // namespace ledgertree::testing
