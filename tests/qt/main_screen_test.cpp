#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>

#include "demo_chart_screen.h"
#include "support/scripted_notices.h"

namespace ledgertree::test {
namespace {

class MainScreen : public DemoChartScreen {
 protected:
  MainScreen() : DemoChartScreen({1360, 760}) {}

  ::ledgertree::testing::ScriptedNotices notices{shell.components};
};

TEST_F(MainScreen, AnAccountantFindsAnAccountChangesItAndLeavesByTheKeyboard) {
  go(*form, "to an account by the keyboard");
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeEdit);
  EXPECT_TRUE(widget(form->txtTitle).isVisible() && !widget(form->sltAccount).isVisible());
  EXPECT_FALSE(widget(form->treeAccount).isEnabled());
  notices.answer(1);
  go(*form, "changing an account by the keyboard");
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeView);
  press(form->treeAccount, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(form, nullptr);
}

TEST_F(MainScreen, TheLayoutFollowsTheWindowAndNothingIsCut) {
  const auto right = [&](const ui::Control& control) {
    const QWidget& drawn = widget(control);
    return drawn.mapTo(&window(), QPoint(drawn.width(), 0)).x();
  };
  const int before = right(form->treeAccount);
  window().resize(1860, 960);
  settle();
  EXPECT_NEAR(right(form->treeAccount) - before, 500, 2);
  EXPECT_NEAR(right(form->cmdRefreshAccountTree), right(form->treeAccount), 2);
  // No caption is cut off in any mode.
  for (ui::PushButton* command : {&form->cmdNew, &form->cmdCancel}) {
    for (const auto* button : window().findChildren<QAbstractButton*>()) {
      if (!button->isVisible() || button->text().isEmpty()) continue;
      EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()))
          << button->text().toStdString();
    }
    for (const auto* label : window().findChildren<QLabel*>()) {
      if (!label->isVisible() || label->text().isEmpty()) continue;
      EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
    }
    notices.answer(1);
    command->click();
  }
}

}  // namespace
}  // namespace ledgertree::test
