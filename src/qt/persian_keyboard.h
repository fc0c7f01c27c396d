#pragma once

#include <QKeyEvent>
#include <string>
#include <string_view>

namespace ledgertree::qt {

/// A keyboard layout that a screen asks for. `Own` is the one that the user's desktop has active.
enum class KeyboardLayout { Own, Persian, Arabic };

/// "00000429" is Persian, "00000401" Arabic; any other name is `Own`.
[[nodiscard]] KeyboardLayout keyboardLayoutOf(std::string_view name);

/// The characters that a key inserts under a layout; empty for a key that inserts none.
///
/// Under Persian (the standard ISIRI 9147) and Arabic, keys of a Latin layout give the letter of their
/// position. Digits stay digits, and a key that already gives a letter of another script is left alone, so
/// that nothing is translated twice for a user whose desktop has that layout active.
[[nodiscard]] std::u32string typedCharacters(const QKeyEvent& event, KeyboardLayout layout);

/// The Latin capital or digit of a key, even if the desktop's layout is Persian: 'S' for the key of "س". 0
/// for other keys. Shortcuts are matched by it.
[[nodiscard]] char latinKey(const QKeyEvent& event);

}  // namespace ledgertree::qt
