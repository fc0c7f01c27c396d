#include "qt/keys.h"

#include "qt/persian_keyboard.h"

namespace ledgertree::qt {

ui::Key keyOf(const QKeyEvent& event) {
  const int key = event.key();
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
    return static_cast<ui::Key>(static_cast<int>(ui::Key::F1) + key - Qt::Key_F1);
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return ui::Key::Enter;
    case Qt::Key_Escape:
      return ui::Key::Escape;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return ui::Key::Tab;
    case Qt::Key_Backspace:
      return ui::Key::Backspace;
    case Qt::Key_Delete:
      return ui::Key::Delete;
    case Qt::Key_Left:
      return ui::Key::Left;
    case Qt::Key_Right:
      return ui::Key::Right;
    case Qt::Key_Up:
      return ui::Key::Up;
    case Qt::Key_Down:
      return ui::Key::Down;
    case Qt::Key_Home:
      return ui::Key::Home;
    case Qt::Key_End:
      return ui::Key::End;
    case Qt::Key_PageUp:
      return ui::Key::PageUp;
    case Qt::Key_PageDown:
      return ui::Key::PageDown;
    case Qt::Key_Space:
      return ui::Key::Space;
    default:
      return ui::Key::None;
  }
}

ui::KeyChord chordOf(const QKeyEvent& event) {
  ui::KeyChord chord;
  chord.ctrl = event.modifiers().testFlag(Qt::ControlModifier);
  chord.alt = event.modifiers().testFlag(Qt::AltModifier);
  chord.shift = event.modifiers().testFlag(Qt::ShiftModifier);
  chord.key = keyOf(event);
  if (chord.key == ui::Key::None && (chord.ctrl || chord.alt)) chord.letter = latinKey(event);
  return chord;
}

}  // namespace ledgertree::qt
