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

TEST_F(ToolkitStory, AKeyThatNobodyWantsIsAShortcutOrPressesAButton) {
  const auto find = ui::KeyChord::ctrlAnd('F');
  go("a form without keys");
  form->setDefaultButton(form->cmdOk);
  form->setCancelButton(form->cmdCancel);
  form->cmdCancel.onClick = [&] { told += "cancel "; };
  form->addShortcut(find, [&] { told += "find "; });
  EXPECT_TRUE(form->hasShortcut(find) && !form->hasShortcut(ui::KeyChord::of(ui::Key::Escape)));
  go("the keys of a form");
  form->cmdOk.setShortcut(find);
  EXPECT_FALSE(form->hasShortcut(ui::KeyChord()));
  go("a key that a button bears too");
}

TEST_F(FormStory, AFormKnowsItsControlsAndFocus) {
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
  // A control that loses the focus may move it elsewhere: then no gain is reported.
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

  // A tick during a procedure is dropped.
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

}  // namespace
}  // namespace ledgertree::testing
