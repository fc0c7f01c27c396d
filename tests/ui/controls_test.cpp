#include <functional>
#include <initializer_list>
#include <stdexcept>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

TEST_F(FormStory, KeysLeadThroughAList) {
  ui::ListBox& list = form->list;
  int selections = 0;
  list.onSelect = [&] { ++selections; };
  list.press(Key::Down);
  for (const char* line : {"1", "2", "3"}) list.addItem(line, 10 * (line[0] - '0'));
  EXPECT_EQ(list.items()[1].data, 20);
  go(
      "keys in a list", [&](auto& chord) { list.press(chord.key); },
      [&] { return std::to_string(list.selected()); });
  EXPECT_EQ(selections, 7) << "also where it is selected already";
  for (const int none : {3, -1}) list.choose(none);
  EXPECT_EQ(list.selectedText(), "1");
  list.setItemText(0, "یک");
  EXPECT_EQ(list.selectedText(), "یک");
  list.select(2);
  list.removeItem(0);
  EXPECT_EQ(list.selectedText(), "3") << "the same line, at another place";
  list.select(0);
  list.removeItem(1);
  EXPECT_EQ(list.selectedText(), "2");
  list.removeItem(0);
  EXPECT_EQ(list.selected(), ui::ListBox::kNone);
  EXPECT_EQ(list.selectedText(), "");
  list.addItem("4");
  list.select(0);
  for (const int none : {1, -1}) {
    list.select(none);
    EXPECT_EQ(list.selected(), ui::ListBox::kNone);
  }
  list.select(0);
  list.clearItems();
  EXPECT_EQ(list.selected(), ui::ListBox::kNone);
  list.addItem("5");
  list.setEnabled(false);
  list.press(Key::Home);
  EXPECT_EQ(selections, 7);
}

TEST_F(FormStory, KeysLeadThroughAGrid) {
  ui::Grid& grid = form->grid;
  int selections = 0;
  grid.onSelectionChange = [&] { ++selections; };
  grid.setColumns({{"رديف", 600}, {"سال", 2000}});
  grid.press(Key::Down);
  EXPECT_EQ(grid.currentRow(), ui::Grid::kNone);
  for (int row = 0; row < 30; ++row) grid.addRow({std::to_string(row), "1403", "past the columns"});
  grid.addRow({"30"});
  EXPECT_EQ(grid.text(29, 1) + grid.text(30, 0) + grid.text(30, 1), "140330");
  EXPECT_THROW(static_cast<void>(grid.text(31, 0)), std::out_of_range);
  EXPECT_THROW(static_cast<void>(grid.text(0, 2)), std::out_of_range);
  go(
      "keys in a grid", [&](auto& chord) { grid.press(chord.key, chord.shift); },
      [&] { return std::to_string(grid.currentRow()) + ".." + std::to_string(grid.selectionEnd()); });
  EXPECT_EQ(selections, 12);
  for (const int none : {-1, 31}) {
    grid.selectRow(none);
    grid.extendTo(none);
  }
  grid.setEnabled(false);
  grid.selectRow(3);
  grid.extendTo(3);
  EXPECT_EQ(grid.currentRow() + selections, 12);
  grid.clearRows();
  EXPECT_EQ(grid.currentRow() + grid.selectionEnd() + grid.rowCount(), -2);
}

TEST_F(FormStory, KeysLeadThroughATree) {
  ui::Tree& tree = form->tree;
  tree.onExpand = [&](ui::NodeId node) { told += "open " + tree.key(node) + " "; };
  tree.onNodeClick = [&](ui::NodeId node) { told += "click " + tree.key(node) + " "; };
  tree.onNodeCheck = [&](ui::NodeId node) { told += "tick " + tree.key(node) + " "; };
  tree.press(Key::Down);
  for (const char* key : {"a", "b"}) tree.add(ui::kNoNode, key, key);
  for (const char* key : {"a1", "a2"}) tree.add(tree.find("a"), key, key);
  tree.add(tree.find("a2"), "a21", "a21");
  const auto at = [&] { return tree.selected() == ui::kNoNode ? "" : tree.key(tree.selected()); };
  go(
      "keys in a tree", [&](auto& chord) { tree.press(chord.key); }, at);
  told.clear();
  tree.tick(tree.find("b"));
  EXPECT_FALSE(tree.checked(tree.find("b"))) << "without check boxes";
  tree.setCheckBoxes(true);
  tree.press(Key::Space);
  EXPECT_TRUE(tree.checked(tree.find("b")));
  tree.tick(tree.find("b"));
  EXPECT_EQ(told, "tick b tick b ");
  EXPECT_FALSE(tree.checked(tree.find("b")));

  // What isn't there, what has nothing below it, what is open, and what is out of reach.
  told.clear();
  tree.setExpanded(tree.find("a2"), true);
  for (const char* key : {"none", "a1", "a2"}) tree.expand(tree.find(key));
  tree.click(ui::kNoNode);
  tree.tick(ui::kNoNode);
  tree.collapse(ui::kNoNode);
  tree.setEnabled(false);
  for (const Key key : {Key::Enter, Key::Space, Key::Home, Key::Left}) tree.press(key);
  for (const char* key : {"a", "b"}) {
    tree.expand(tree.find(key));
    tree.click(tree.find(key));
    tree.tick(tree.find(key));
  }
  tree.collapse(tree.find("a2"));
  EXPECT_EQ(told + at(), "b");
  EXPECT_TRUE(tree.expanded(tree.find("a2")));

  // A selection below what was closed counts from the top.
  tree.setEnabled(true);
  tree.select(tree.find("a21"));
  tree.collapse(tree.find("a"));
  tree.press(Key::Down);
  EXPECT_EQ(at(), "b");
  tree.setTag(tree.find("b"), "نشان");
  EXPECT_EQ(tree.tag(tree.find("b")), "نشان");
  tree.setImage(tree.find("b"), 2);
  EXPECT_EQ(tree.picture(tree.find("b")), 2) << "without a list the number itself";
  tree.setPictures({7, 8});
  for (const auto& [image, picture] : {std::pair{0, 0}, {1, 7}, {2, 8}, {3, 0}}) {
    tree.setImage(tree.find("b"), image);
    EXPECT_EQ(tree.picture(tree.find("b")), picture);
  }
  EXPECT_THROW(static_cast<void>(tree.add(99, "x", "x")), std::out_of_range);
  tree.clear();
  EXPECT_EQ(tree.selected(), ui::kNoNode);
}

TEST_F(FormStory, TheCaretStaysInTheText) {
  ui::TextField& text = form->text;
  int ups = 0;
  int changes = 0;
  text.onKeyUp = [&] { ++ups; };
  text.onChange = [&] { ++changes; };
  text.setText("سلام");
  const auto at = [&] { return text.text() + std::to_string(text.caret()); };
  EXPECT_EQ(at(), "سلام4");
  go(
      "keys in a text", [&](auto& chord) { text.press(chord.key); }, at);
  EXPECT_EQ(ups, 11) << "every key comes up again";
  EXPECT_EQ(changes, 2);
  text.setCaret(9);
  EXPECT_EQ(at(), "سل2");
  text.setCaret(1);
  text.type("ی");
  EXPECT_EQ(at(), "سیل2");
  text.setMaximumLength(4);
  text.paste("12345");
  EXPECT_EQ(at(), "12344") << "1234 and its end";
  text.setText("123456");
  EXPECT_EQ(at(), "1234566") << "a program's text isn't cut";
  text.type("7");
  EXPECT_EQ(at(), "1234566");
  text.edited("ab", 9);
  EXPECT_EQ(at(), "ab2");
  changes = ups = 0;
  text.edited("ab", 1);
  EXPECT_EQ(at() + std::to_string(changes), "ab10");
  text.setLocked(true);
  text.edited("x", 1);
  text.paste("x");
  text.type("x");
  text.keyUp();
  EXPECT_EQ(text.filter(U'x'), U'\0');
  for (const Key key : {Key::Delete, Key::Backspace, Key::Home}) text.press(key);
  EXPECT_EQ(at() + std::to_string(changes + ups), "ab00") << "a locked field is only read";
  text.setLocked(false);
  form->frame.setEnabled(false);
  text.edited("x", 1);
  text.type("x");
  text.keyUp();
  EXPECT_EQ(at() + std::to_string(changes + ups), "ab00");
}

TEST_F(FormStory, ButtonsBoxesAndBarsKeepWithinTheirBounds) {
  int clicks = 0;
  form->cmdOk.onClick = form->check.onClick = [&] { ++clicks; };
  for (const Key key : {Key::Tab, Key::Enter, Key::Escape, Key::Space}) form->cmdOk.press(key);
  EXPECT_EQ(clicks, 2);
  form->check.click();
  EXPECT_EQ(form->check.value(), 1);
  form->check.click();
  EXPECT_EQ(form->check.value(), 0);
  form->check.setValue(-3);
  EXPECT_EQ(form->check.value(), 1);
  form->frame.setEnabled(false);
  form->check.click();
  EXPECT_EQ(form->check.value() * 10 + clicks, 14);
  struct Progress {
    int value, maximum, shown, of;
  };
  for (const Progress& one :
       std::initializer_list<Progress>{{3, 10, 3, 10}, {11, 10, 10, 10}, {-1, 10, 0, 10}, {5, -1, 0, 0}}) {
    form->progress.setProgress(one.value, one.maximum, "متن");
    EXPECT_EQ(form->progress.value(), one.shown);
    EXPECT_EQ(form->progress.maximum(), one.of);
    EXPECT_EQ(form->progress.text(), "متن");
  }
  EXPECT_TRUE(form->text.shown());
  form->frame.setVisible(false);
  EXPECT_FALSE(form->text.shown());
  EXPECT_TRUE(form->alone.shown());
  form->alone.setVisible(false);
  EXPECT_FALSE(form->alone.shown());
}

TEST(Keys, AreNamedAsATooltipShowsThemAndDigitsAreTold) {
  using ui::KeyChord;
  EXPECT_EQ(KeyChord::ctrlAnd('S').text(), "Ctrl+S");
  EXPECT_EQ((KeyChord{.ctrl = true, .alt = true, .shift = true, .key = Key::Delete}).text(),
            "Ctrl+Alt+Shift+Del");
  std::string all;
  for (int key = 0; key <= static_cast<int>(Key::F12); ++key)
    all += KeyChord::of(static_cast<Key>(key)).text() + " ";
  EXPECT_EQ(
      all,
      " Enter Esc Tab Backspace Del Left Right Up Down Home End PgUp PgDown Space F1 F2 F3 F4 F5 F6 F7 F8 F9 "
      "F10 F11 F12 ");
  EXPECT_TRUE(KeyChord().empty());
  EXPECT_FALSE(KeyChord::ctrlAnd('S').empty() || KeyChord::of(Key::F1).empty());
  std::u32string digits = U"ۯ۰۹ۺٟ٠٩٪5x";
  for (char32_t& digit : digits) digit = ui::latinDigit(digit);
  EXPECT_EQ(digits, U"ۯ09ۺٟ09٪5x");
}

}  // namespace
}  // namespace ledgertree::testing
