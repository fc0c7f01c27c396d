#pragma once

#include <QKeyEvent>

#include "ui/key.h"

namespace ledgertree::qt {

/// The key of an event; None for a key that only inserts a character.
[[nodiscard]] ui::Key keyOf(const QKeyEvent& event);
/// The chord of an event, by the Latin letter of the key in every keyboard layout; empty for a letter without
/// modifiers.
[[nodiscard]] ui::KeyChord chordOf(const QKeyEvent& event);

}  // namespace ledgertree::qt
