#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QTextEdit>
#include <QWheelEvent>

#include "screen.h"

namespace ledgertree::test {
namespace {

/// Three choices in a frame, and one outside it.
struct Choices : ui::Form {
  explicit Choices(ui::Surroundings surroundings)
      : Form(std::move(surroundings), "Choices", "", {.width = 9000, .height = 1200}) {}
  ui::Frame frame{*this, "frame", {0, 0, 7000, 600}};
  ui::RadioButton a{*this, "a", {4800, 60, 2000, 300}, "a", &frame};
  ui::RadioButton b{*this, "b", {2500, 60, 2000, 300}, "b", &frame};
  ui::RadioButton c{*this, "c", {200, 60, 2000, 300}, "c", &frame};
  ui::RadioButton outside{*this, "outside", {7100, 60, 1800, 300}, "d"};
};

TEST(Controls, ArrowsGoRoundAGroupPastWhatIsOutOfReach) {
  Screen screen;
  Choices form(screen.surroundings());
  screen.desktop.show(form);
  Screen::settle();
  std::string clicked;
  for (ui::RadioButton* one : {&form.a, &form.b, &form.c, &form.outside})
    one->onClick = [&clicked, one] { clicked += one->name() + " "; };
  screen.go(form, "arrows in a group", [&] { return std::exchange(clicked, {}); });
}

TEST(Controls, TheWheelPassesOverADropDownList) {
  Screen screen;
  screen.form->lstPeriod.select(1);
  screen.show();
  auto& combo = screen.widget<QComboBox>(screen.form->lstPeriod);
  const QPoint place = combo.rect().center();
  for (const int turn : {-120, 120}) {
    QWheelEvent wheel(place, combo.mapToGlobal(place), {}, {0, turn}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&combo, &wheel);
    EXPECT_FALSE(wheel.isAccepted());
    EXPECT_EQ(screen.form->lstPeriod.selected(), 1);
  }
}

TEST(Controls, ATextAtRestShowsItsBeginningAndIsGoneOnWithWhereItWasLeft) {
  Screen screen;
  auto& form = *screen.form;
  form.setFirstFocus(form.cmdNew);
  screen.show();
  screen.go("texts at rest");
  // Tab selects the whole line.
  form.txtCode.setText("1234");
  form.txtTitle.focus();
  screen.press(form.txtTitle, Qt::Key_Tab);
  EXPECT_EQ(screen.widget<QLineEdit>(form.txtCode).selectedText(), "1234");
  // The row that a look-up holds after it is left.
  const auto& field = screen.widget<QLineEdit>(form.sltParent);
  form.sltParent.all.push_back({99, std::string(300, 'x'), "9999"});
  form.sltParent.focus();
  screen.type(form.sltParent, "9999\r");
  EXPECT_EQ(field.selectedText().size(), 300);
  form.cmdNew.focus();
  EXPECT_EQ(field.cursorPosition(), 0);
  EXPECT_FALSE(field.hasSelectedText());
}

TEST(Controls, TheFocusGoesOnFromWhatIsTakenOutOfReach) {
  Screen screen;
  auto& form = *screen.form;
  for (ui::Control* control : form.controls()) {
    control->onGotFocus = [&form, control] { form.said.push_back(control->name()); };
    control->onLostFocus = [&form, control] { form.said.push_back("-" + control->name()); };
  }
  form.setFirstFocus(form.cmdExit);
  screen.show();
  form.lstPeriod.select(0);
  screen.go("taken out of reach");
  // The form is notified of the move when the program is done.
  form.record.setEnabled(false);
  EXPECT_TRUE(form.said.empty() && form.focused() == &form.txtNotes);
  Screen::settle();
  EXPECT_EQ(form.said, (std::vector<std::string>{"-txtNotes", "cmdExit"}));
  // By then the form may be hidden, and has no focus.
  form.record.setEnabled(true);
  form.txtNotes.focus();
  form.record.setEnabled(false);
  form.hide();
  form.said.clear();
  Screen::settle();
  EXPECT_TRUE(form.said.empty()) << form.said.front();
}

TEST(Controls, NothingHappensToAFormInTheMiddleOfItsWork) {
  Screen screen;
  ui::Timer timer(*screen.form, "Timer1", std::chrono::milliseconds(1));
  int ticks = 0;
  timer.onTick = [&] { ++ticks; };
  screen.show();
  int worked = 0;
  screen.form->cmdNew.onClick = [&] {
    QTimer::singleShot(0, &screen.window(), [&] { screen.window().close(); });
    screen.desktop.whenIdle([&] { ticks += 100; });
    ticks = 0;
    QTest::qSleep(5);
    for (; worked < 5; ++worked) {
      screen.form->progress.setProgress(worked, 5, "حساب");
      screen.desktop.repaint(*screen.form);
    }
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(screen.form->isShown());
    EXPECT_EQ(screen.widget<QProgressBar>(screen.form->progress).value(), 4);
  };
  screen.click(screen.form->cmdNew);
  EXPECT_EQ(worked, 5);
  screen.form->progress.setProgress(0, 0, "");
  EXPECT_EQ(screen.widget<QProgressBar>(screen.form->progress).maximum(), 1) << "0 would run to and fro";
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 100; }, 30000));
  screen.window().close();
  EXPECT_FALSE(screen.form->isShown());
}

}  // namespace
}  // namespace ledgertree::test
