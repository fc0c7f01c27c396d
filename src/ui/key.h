#pragma once

#include <string>

namespace ledgertree::ui {

/// The keys that do more than put in a character.
enum class Key {
  None,
  Enter,
  Escape,
  Tab,
  Backspace,
  Delete,
  Left,
  Right,
  Up,
  Down,
  Home,
  End,
  PageUp,
  PageDown,
  Space,
  F1,
  F2,
  F3,
  F4,
  F5,
  F6,
  F7,
  F8,
  F9,
  F10,
  F11,
  F12,
};

/// The numbers by which event procedures know the keys.
inline constexpr int kKeyCodeEnter = 13;
inline constexpr int kKeyCodeDelete = 46;
inline constexpr char32_t kBackspaceCharacter = 8;

/// A key, or the Latin letter of one, with Ctrl, Alt or Shift: the shortcut of a command.
struct KeyChord {
  bool ctrl = false;
  bool alt = false;
  bool shift = false;
  char letter = 0;  ///< 'A' to 'Z' or '0' to '9'; 0 where `key` counts
  Key key = Key::None;

  [[nodiscard]] static KeyChord of(Key key) { return {.key = key}; }
  [[nodiscard]] static KeyChord ctrlAnd(char letter) { return {.ctrl = true, .letter = letter}; }
  [[nodiscard]] bool empty() const { return letter == 0 && key == Key::None; }
  /// "Ctrl+S", "F5": as shown in a tooltip, and as every toolkit parses it.
  [[nodiscard]] std::string text() const;
  bool operator==(const KeyChord&) const = default;
};

/// Turns Persian and Arabic digits into 0 to 9, and leaves all other characters.
[[nodiscard]] char32_t latinDigit(char32_t character);

}  // namespace ledgertree::ui
