#pragma once

#include <QKeyEvent>

#include "ui/key.h"

namespace ledgertree::qt {

/// The key of an event; None for a key that only puts a character.
[[nodiscard]] ui::Key keyOf(const QKeyEvent& event);
/// The chord of an event, by the Latin letter of its key whatever the keyboard's layout is; empty for a bare
/// letter.
[[nodiscard]] ui::KeyChord chordOf(const QKeyEvent& event);

}  // namespace ledgertree::qt
