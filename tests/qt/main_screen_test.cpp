#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include "demo_chart_screen.h"
#include "qt/tree_model.h"
#include "support/scripted_notices.h"

namespace ledgertree::test {
namespace {

class MainScreen : public DemoChartScreen {
 protected:
  MainScreen() : DemoChartScreen({1360, 760}) {}

  [[nodiscard]] QWidget& widget(const ui::Control& control) const { return *window().widgetOf(control); }
  void press(const ui::Control& control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&widget(control), key, modifiers);
  }
  /// Lets what a timer or a search does happen.
  template <typename Condition>
  [[nodiscard]] static bool soon(Condition condition) {
    return QTest::qWaitFor(condition, 30000);
  }

  ::ledgertree::testing::ScriptedNotices notices{shell.components};
};

TEST_F(MainScreen, AnAccountantFindsAnAccountChangesItAndLeavesByTheKeyboard) {
  // To the picker, a piece of a title by the keys of a Latin keyboard, and the first hit.
  press(form->treeAccount, Qt::Key_F, Qt::ControlModifier);
  ASSERT_EQ(form->focused(), &form->sltAccount);
  press(form->sltAccount, Qt::Key_F8);
  QTest::keyClicks(&widget(form->sltAccount), "wkn,r");
  EXPECT_EQ(form->sltAccount.text(), "صندوق");
  ASSERT_TRUE(soon([&] { return form->sltAccount.highlighted() >= 0; }));
  press(form->sltAccount, Qt::Key_Down);
  press(form->sltAccount, Qt::Key_Up);
  press(form->sltAccount, Qt::Key_Return);
  ASSERT_FALSE(form->sltAccount.IsEmpty());
  const std::string found = form->sltAccount.text();
  EXPECT_NE(found.find("صندوق"), std::string::npos);

  // A node of the tree by its keys, then the mode by its shortcut, also with a Persian layout on.
  auto& tree = form->treeAccount;
  tree.focus();
  press(tree, Qt::Key_Home);
  press(tree, Qt::Key_Down);
  press(tree, Qt::Key_Left);
  press(tree, Qt::Key_Down);
  press(tree, Qt::Key_Return);
  const std::string title = form->sltAccount.text();
  ASSERT_TRUE(soon([&] { return form->cmdEdit.enabled(); }));
  QTest::sendKeyEvent(QTest::Click, &widget(tree), static_cast<Qt::Key>(0x062B), QString(),
                      Qt::ControlModifier);
  ASSERT_EQ(form->formMode, mainform::FormMode::ModeEdit);
  EXPECT_TRUE(widget(form->txtTitle).isVisible() && !widget(form->sltAccount).isVisible());
  EXPECT_FALSE(widget(tree).isEnabled());

  // The title in Persian by Latin keys; the ceiling in threes while it is typed.
  form->txtTitle.focus();
  press(form->txtTitle, Qt::Key_End);
  QTest::keyClicks(&widget(form->txtTitle), " kv");
  EXPECT_EQ(form->txtTitle.text(), title + " نر");
  form->txtMaxDebit.focus();
  QTest::keyClick(&widget(form->txtMaxDebit), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&widget(form->txtMaxDebit), "1500000");
  EXPECT_EQ(dynamic_cast<QLineEdit&>(widget(form->txtMaxDebit)).text(), QStringLiteral("1/500/000"));

  // Escape asks whether the typing may go; the record comes back as it was.
  notices.answer(1);
  press(form->txtTitle, Qt::Key_Escape);
  EXPECT_EQ(form->formMode, mainform::FormMode::ModeView);
  EXPECT_EQ(form->sltAccount.text(), title);
  press(tree, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(form, nullptr);
}

TEST_F(MainScreen, TheLayoutFollowsTheWindowAndNothingIsCut) {
  const auto right = [&](const ui::Control& control) {
    const QWidget& drawn = widget(control);
    return drawn.mapTo(&window(), QPoint(drawn.width(), 0)).x();
  };
  const int before = right(form->treeAccount);
  window().resize(1860, 960);
  QTest::qWait(1);
  EXPECT_NEAR(right(form->treeAccount) - before, 500, 2);
  EXPECT_NEAR(right(form->cmdRefreshAccountTree), right(form->treeAccount), 2);
  // Every caption has the room that it needs, in every mode.
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
