#pragma once

#include <QKeyEvent>
#include <string>
#include <string_view>

namespace ledgertree::qt {

/// A keyboard layout that a screen asks for. `Own` is whatever the person's desktop has on.
enum class KeyboardLayout { Own, Persian, Arabic };

/// "00000429" is Persian, "00000401" Arabic; every other name is `Own`.
[[nodiscard]] KeyboardLayout keyboardLayoutOf(std::string_view name);

/// The characters that a key puts into a field under a layout; empty for a key that puts none.
///
/// Under Persian (the standard ISIRI 9147) and Arabic the keys of a Latin layout give the letter that stands
/// at their place. Digits stay digits, and a key that gives a letter of another script already is left alone,
/// so that a person who has switched the desktop's own layout isn't translated twice.
[[nodiscard]] std::u32string typedCharacters(const QKeyEvent& event, KeyboardLayout layout);

/// The Latin capital or digit of a key, also where the desktop's layout is Persian: 'S' for the key of "س".
/// 0 for other keys. Shortcuts are told by it.
[[nodiscard]] char latinKey(const QKeyEvent& event);

}  // namespace ledgertree::qt
