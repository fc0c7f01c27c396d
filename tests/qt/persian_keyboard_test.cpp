#include "qt/persian_keyboard.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>

#include "screen.h"

namespace ledgertree::test {
namespace {

/// A key event as a keyboard sends it, with its scan code.
void key(QWidget& widget, int code, const char* text, unsigned place, Qt::KeyboardModifiers modifiers = {}) {
  QKeyEvent press(QEvent::KeyPress, code, modifiers, place, 0, 0, QString::fromUtf8(text));
  QApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, code, modifiers, place, 0, 0, QString::fromUtf8(text));
  QApplication::sendEvent(&widget, &release);
}

class KeyboardScreen : public Screen {
 public:
  explicit KeyboardScreen(const char* layout = "00000429") {
    for (ui::Control* field :
         {static_cast<ui::Control*>(&form->txtTitle), static_cast<ui::Control*>(&form->sltParent)})
      field->onGotFocus = [this, layout] { desktop.chooseKeyboardLayout(layout); };
    show();
    form->txtTitle.focus();
  }
};

TEST(PersianKeyboard, LatinKeysWritePersianLetters) {
  KeyboardScreen screen;
  auto& title = screen.form->txtTitle;
  screen.go("Latin keys");

  // Letters that are already Persian, and marks that a Persian layout has on other keys, are left alone.
  title.setText("");
  auto& line = screen.widget(title);
  key(line, 0x0633, "س", 39);
  key(line, Qt::Key_BracketLeft, "[", 33, Qt::ShiftModifier);
  key(line, Qt::Key_Minus, "-", 61);
  EXPECT_EQ(title.text(), "س[-");
  // A German keyboard has Z in the place of Y: the position counts.
  title.setText("");
  key(line, Qt::Key_Z, "z", 29);
  key(line, Qt::Key_A, "A", 38);
  key(line, Qt::Key_Space, " ", 65, Qt::ShiftModifier);
  EXPECT_EQ(title.text(), "غش\u200C")
      << "the capitals lock isn't Shift, and Shift with the space bar joins words";
}

TEST(PersianKeyboard, OneKeySwitchesAndTheFieldSaysWhichLanguageIsOn) {
  KeyboardScreen screen;
  auto& form = *screen.form;
  screen.go("another language");
  // A field without a layout keeps the previous one's; a field with one uses it.
  form.txtCode.focus();
  EXPECT_EQ(screen.seen(form.txtTitle), "Kasraی^");
  EXPECT_EQ(screen.seen(form.txtCode), "فا: ^");
  auto& line = screen.widget<QLineEdit>(form.txtCode);
  const bool rightToLeft = line.layoutDirection() == Qt::RightToLeft;
  EXPECT_EQ(line.textMargins().left() > 0, rightToLeft) << "the tag stands where the text ends";
  EXPECT_EQ(line.textMargins().right() > 0, !rightToLeft);
  const QPoint corner = line.findChild<QLabel*>()->pos();
  EXPECT_EQ(painted(line).pixelColor(corner + QPoint(1, 1)), QColor(0x2F, 0x6F, 0xB7));
  screen.go("a field that asks for no language");
  form.sltParent.focus();
  screen.go("a field that asks for its own");
}

TEST(PersianKeyboard, TheArabicLayoutWritesLigaturesAsTwoLetters) {
  KeyboardScreen screen("00000401");
  screen.go("the Arabic layout");
}

}  // namespace
}  // namespace ledgertree::test
