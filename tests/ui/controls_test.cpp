#include <stdexcept>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

TEST_F(ToolkitStory, KeysLeadThroughAList) { go("a list"); }

TEST_F(ToolkitStory, KeysLeadThroughAGrid) {
  go("an empty grid");
  ui::Grid& grid = form->grid;
  for (int row = 0; row < 30; ++row) grid.addRow({"x", "1403", "past the columns"});
  go("a grid");
  EXPECT_EQ(grid.text(29, 1) + grid.text(30, 0) + grid.text(30, 1), "140330");
  EXPECT_THROW(static_cast<void>(grid.text(31, 0)), std::out_of_range);
  EXPECT_THROW(static_cast<void>(grid.text(0, 2)), std::out_of_range);
}

TEST_F(ToolkitStory, KeysLeadThroughATree) {
  go("a tree");
  ui::Tree& tree = form->tree;
  EXPECT_THROW(static_cast<void>(tree.add(99, "x", "x")), std::out_of_range);
  const ui::NodeId node = tree.find("b");
  tree.setTag(node, "نشان");
  EXPECT_EQ(tree.tag(node), "نشان");
  tree.setImage(node, 2);
  EXPECT_EQ(tree.picture(node), 2) << "without a list the number itself";
  tree.setPictures({7, 8});
  for (const auto& [image, picture] : {std::pair{0, 0}, {1, 7}, {2, 8}, {3, 0}}) {
    tree.setImage(node, image);
    EXPECT_EQ(tree.picture(node), picture);
  }
  told.clear();
  go("typing in a tree");
}

TEST_F(ToolkitStory, ALevelOfTheTreeIsToldAsOne) {
  ui::Tree& tree = form->tree;
  const ui::NodeId root = tree.add(ui::kNoNode, "root", "ريشه");
  const ui::NodeId old = tree.add(root, "old", "قديم");
  told.clear();
  {
    const ui::Tree::Batch batch(tree);
    for (int i = 0; i < 100; ++i) tree.add(tree.add(root, "n" + std::to_string(i), "گره"), "", "!");
    tree.add(old, "late", "دير");
    tree.setChecked(tree.addNew(root, "last", "آخر"), true);
  }
  EXPECT_EQ(told, "ChildrenAdded(root,1,100) ChildrenAdded(old,0,1) ChildrenAdded(root,101,1) ");
  EXPECT_EQ(tree.count(), 204U);
  EXPECT_THROW(tree.add(root, "last", "دوباره"), std::invalid_argument);
  const ui::NodeId fifth = tree.find("n5");
  tree.remove(fifth);
  EXPECT_EQ(tree.indexOf(tree.find("n6")), 6U);
  EXPECT_EQ(tree.count(), 202U);
  EXPECT_THROW(static_cast<void>(tree.text(fifth)), std::out_of_range);
}

TEST_F(ToolkitStory, TheCaretStaysInTheText) { go("a text"); }

TEST_F(ToolkitStory, TypingGoesThroughTheFilterCharacterByCharacter) {
  form->text.setLatinDigits(true);
  std::u32string asked;
  form->text.onKeyPress = [&](ui::KeyPress& press) {
    asked += press.character;
    if (press.character == U'x') press.character = 0;
  };
  go("typing through a filter");
  EXPECT_EQ(asked, U"1xپ3");
  form->text.setText("");
  form->text.type("\xC3(\xF0\x9F\x98\x80");
  EXPECT_EQ(form->text.text(), "\xEF\xBF\xBD(\xF0\x9F\x98\x80") << "what is no UTF-8 is shown as such";
}

TEST_F(ToolkitStory, ButtonsBoxesAndBarsKeepWithinTheirBounds) { go("buttons, boxes and bars"); }

TEST_F(ToolkitStory, ChangesAreToldOnceAndOnlyWhereSomethingIsAnotherWay) {
  go("changes");
  EXPECT_EQ(form->resizes, 1);
  form->removeObserver(*this);
  form->setCaption("نه");
  EXPECT_EQ(told, "");
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
