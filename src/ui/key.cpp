#include "ui/key.h"

#include <array>
#include <string_view>

namespace ledgertree::ui {

std::string KeyChord::text() const {
  static constexpr std::array<std::string_view, 27> kNames = {
      "",     "Enter", "Esc", "Tab",  "Backspace", "Del",   "Left", "Right", "Up",
      "Down", "Home",  "End", "PgUp", "PgDown",    "Space", "F1",   "F2",    "F3",
      "F4",   "F5",    "F6",  "F7",   "F8",        "F9",    "F10",  "F11",   "F12"};
  std::string text;
  if (ctrl) text += "Ctrl+";
  if (alt) text += "Alt+";
  if (shift) text += "Shift+";
  if (letter != 0) return text + letter;
  return text.append(kNames.at(static_cast<std::size_t>(key)));
}

char32_t latinDigit(char32_t character) {
  if (character >= U'\u06F0' && character <= U'\u06F9') return U'0' + (character - U'\u06F0');
  if (character >= U'\u0660' && character <= U'\u0669') return U'0' + (character - U'\u0660');
  return character;
}

}  // namespace ledgertree::ui
