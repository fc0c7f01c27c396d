#include "ui/form.h"

#include "small_form.h"

namespace ledgertree::testing {
namespace {

TEST_F(FormStory, AFailureEndsTheProcedureAndTheFormGoesOn) {
  form->cmdOk.onClick = [] { throw std::runtime_error("شکست"); };
  form->cmdOk.click();
  form->text.onKeyPress = [](ui::KeyPress&) { throw std::runtime_error("کليد"); };
  form->text.type("a");
  EXPECT_EQ(failures, (std::vector<std::string>{"شکست", "کليد"}));
  EXPECT_EQ(form->text.text(), "a");
  form->cmdOk.onClick = [] { throw 7; };
  form->cmdOk.click();
  EXPECT_EQ(failures.size(), 3U) << "what a component throws that keeps to no convention";
}

TEST_F(FormStory, AFormMayEndItselfOrBeDestroyedInTheMiddleOfAnything) {
  form->cmdOk.onClick = [&] {
    form->close();
    EXPECT_EQ(form->unloads, 0) << "not while the procedure runs";
    form->cmdCancel.click();
    EXPECT_EQ(form->unloads, 0);
  };
  int unloads = 0;
  form->onClosed = [&] {
    unloads = form->unloads;
    form.reset();
  };
  EXPECT_TRUE(form->press(ui::KeyChord::of(ui::Key::Enter)) == false);
  form->setDefaultButton(form->cmdOk);
  EXPECT_TRUE(form->press(ui::KeyChord::of(ui::Key::Enter)));
  EXPECT_FALSE(form.has_value());
  EXPECT_EQ(unloads, 1);
  EXPECT_TRUE(desktop.shownForms.empty());

  for (int way = 0; way < 4; ++way) {
    form.emplace(surroundings);
    desktop.show(*form);
    const auto destroy = [&] { form.reset(); };
    form->text.onKeyUp = form->cmdOk.onClick = form->one.onClick = form->timer.onTick = destroy;
    if (way == 0) form->text.type("ابپ");
    if (way == 1) form->cmdOk.press(ui::Key::Space);
    if (way == 2) form->one.click();
    if (way == 3) desktop.tick();
    EXPECT_FALSE(form.has_value()) << way;
  }
  EXPECT_TRUE(failures.empty());
}

TEST_F(FormStory, AFormKnowsItsControlsKeysAndFocus) {
  std::string heard;
  for (ui::Control* control : std::initializer_list<ui::Control*>{&form->text, &form->cmdOk}) {
    control->onGotFocus = [&heard, control] { heard += "+" + control->name() + " "; };
    control->onLostFocus = [&heard, control] { heard += "-" + control->name() + " "; };
  }
  form->label.focus();
  EXPECT_EQ(form->focused(), nullptr);
  form->text.focus();
  form->cmdOk.focus();
  form->cmdOk.focus();
  EXPECT_EQ(heard, "+text -text +cmdOk ");
  EXPECT_TRUE(form->cmdOk.hasFocus() && !form->text.hasFocus());
  // Whoever loses the focus may take it elsewhere: then nobody is told that it came.
  form->cmdOk.onLostFocus = [&] { form->alone.focus(); };
  form->text.focus();
  EXPECT_EQ(form->focused(), &form->alone);
  EXPECT_EQ(heard, "+text -text +cmdOk -text ");
  {
    ui::PushButton guest(*form, "guest", {}, "مهمان");
    EXPECT_EQ(form->find("guest"), &guest);
    guest.focus();
  }
  EXPECT_EQ(form->find("guest"), nullptr);
  EXPECT_EQ(form->focused(), nullptr);

  form->setCaption("نام ديگر");
  EXPECT_EQ(form->caption(), "نام ديگر");
  const auto escape = ui::KeyChord::of(ui::Key::Escape);
  const auto enter = ui::KeyChord::of(ui::Key::Enter);
  const auto find = ui::KeyChord::ctrlAnd('F');
  form->cmdOk.onClick = [&] { heard += "ok "; };
  form->cmdCancel.onClick = [&] { heard += "cancel "; };
  heard.clear();
  for (const auto& chord : {escape, enter, find, ui::KeyChord()}) EXPECT_FALSE(form->press(chord));
  form->setDefaultButton(form->cmdOk);
  form->setCancelButton(form->cmdCancel);
  form->addShortcut(find, [&] { heard += "find "; });
  EXPECT_TRUE(form->hasShortcut(find) && !form->hasShortcut(escape));
  for (const auto& chord : {escape, enter, find}) EXPECT_TRUE(form->press(chord));
  EXPECT_EQ(heard, "cancel ok find ");
  form->frame.setEnabled(false);
  for (const auto& chord : {escape, enter}) EXPECT_FALSE(form->press(chord));
  form->cmdOk.setShortcut(find);
  EXPECT_TRUE(form->press(find)) << "the button that bears the key is out of reach";
  form->frame.setEnabled(true);
  EXPECT_TRUE(form->press(find));
  EXPECT_EQ(heard, "cancel ok find find ok ");
  EXPECT_FALSE(form->hasShortcut(ui::KeyChord()));

  // A tick in the middle of a procedure is dropped.
  int ticks = 0;
  form->timer.onTick = [&] { ++ticks; };
  form->cmdOk.onClick = [&] { form->timer.tick(); };
  form->cmdOk.click();
  EXPECT_EQ(ticks, 0);
  form->timer.tick();
  EXPECT_EQ(ticks, 1);
  form->text.focus();
  form->hide();
  EXPECT_FALSE(form->isShown());
  EXPECT_EQ(form->focused(), nullptr);
  form->text.focus();
  EXPECT_EQ(form->focused(), nullptr) << "nobody sees it";
  desktop.show(*form);
  form.reset();
  EXPECT_TRUE(desktop.shownForms.empty());
}

TEST_F(FormStory, NothingOutOfReachCanBeUsed) {
  int clicks = 0;
  form->cmdOk.onClick = form->one.onClick = form->entry.onClick = [&] { ++clicks; };
  form->menu.add(form->entry);
  form->frame.setEnabled(false);
  form->menu.setEnabled(false);
  form->cmdOk.click();
  form->one.click();
  form->entry.click();
  form->text.type("x");
  form->text.focus();
  EXPECT_EQ(form->focused(), nullptr);
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(form->text.text(), "");

  form->frame.setEnabled(true);
  form->menu.setEnabled(true);
  form->cmdOk.setShortcut(ui::KeyChord::ctrlAnd('S'));
  EXPECT_TRUE(form->press(ui::KeyChord::ctrlAnd('S')));
  form->one.click();
  form->entry.click();
  EXPECT_EQ(clicks, 3);
  form->alone.setValue(true);
  form->two.click();
  EXPECT_FALSE(form->one.value());
  EXPECT_TRUE(form->two.value());
  EXPECT_TRUE(form->alone.value()) << "another group";
}

TEST_F(FormStory, TypingCountsCharactersAndGoesThroughTheFilter) {
  form->text.setMaximumLength(4);
  form->text.setLatinDigits(true);
  std::u32string asked;
  int changes = 0;
  form->text.onKeyPress = [&](ui::KeyPress& press) {
    asked += press.character;
    if (press.character == U'x') press.character = 0;
  };
  form->text.onChange = [&] { ++changes; };
  form->text.type("۱xپ٣");
  EXPECT_EQ(asked, U"1xپ3");
  EXPECT_EQ(form->text.text(), "1پ3");
  form->text.press(ui::Key::Left);
  form->text.type("ab");
  EXPECT_EQ(form->text.text(), "1پa3") << "no more than four";
  EXPECT_EQ(form->text.caret(), 3U);
  form->text.press(ui::Key::Backspace);
  form->text.press(ui::Key::Backspace);
  EXPECT_EQ(form->text.text(), "13");
  EXPECT_EQ(form->text.caret(), 1U);
  form->text.press(ui::Key::Delete);
  EXPECT_EQ(form->text.text(), "1");
  EXPECT_EQ(changes, 7);
  form->text.setLocked(true);
  form->text.type("9");
  form->text.press(ui::Key::Backspace);
  EXPECT_EQ(form->text.text(), "1");
  form->text.setLocked(false);
  form->text.setText("");
  form->text.type("\xC3(\xF0\x9F\x98\x80");
  EXPECT_EQ(form->text.text(), "\xEF\xBF\xBD(\xF0\x9F\x98\x80") << "what is no UTF-8 is shown as such";
}

struct TreeEar : ui::FormObserver {
  void controlChanged(ui::Control&, ui::Change) override {}
  void treeChanged(ui::Tree&, const ui::TreeChange& change) override { changes.push_back(change); }
  void formChanged(ui::FormChange) override {}
  void timerChanged(ui::Timer&) override {}
  std::vector<ui::TreeChange> changes;
};

TEST_F(FormStory, ATreeTellsALevelAsOneChange) {
  TreeEar ear;
  form->addObserver(ear);
  ui::Tree& tree = form->tree;
  const ui::NodeId root = tree.add(ui::kNoNode, "root", "ريشه");
  const ui::NodeId old = tree.add(root, "old", "قديم");
  ear.changes.clear();
  {
    const ui::Tree::Batch batch(tree);
    for (int i = 0; i < 100; ++i) {
      const ui::NodeId node = tree.add(root, "n" + std::to_string(i), "گره");
      tree.add(node, "", "!");
    }
    tree.add(old, "late", "دير");
    tree.add(root, "last", "آخر");
  }
  ASSERT_EQ(ear.changes.size(), 3U);
  EXPECT_EQ(ear.changes[0].node, root);
  EXPECT_EQ(ear.changes[0].first, 1U);
  EXPECT_EQ(ear.changes[0].count, 100U);
  EXPECT_EQ(ear.changes[1].node, old);
  EXPECT_EQ(tree.count(), 204U);

  EXPECT_THROW(tree.add(root, "n5", "دوباره"), std::invalid_argument);
  tree.select(tree.find("n5"));
  const ui::NodeId fifth = tree.find("n5");
  tree.remove(fifth);
  EXPECT_EQ(tree.find("n5"), ui::kNoNode);
  EXPECT_EQ(tree.selected(), ui::kNoNode);
  EXPECT_EQ(tree.place(tree.find("n6")), 6U);
  EXPECT_EQ(tree.count(), 202U);
  EXPECT_THROW(static_cast<void>(tree.text(fifth)), std::out_of_range);
  form->removeObserver(ear);
}

}  // namespace
}  // namespace ledgertree::testing
