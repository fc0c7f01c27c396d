#pragma once

namespace ledgertree::qt {

/// Shows the hourglass over the whole application. However often it is shown and hidden, it is on Qt's stack
/// of cursors at most once, so that the host's own cursors under it are unaffected.
void showHourglass(bool show);

/// Hides the hourglass during its lifetime, because a dialog waits for the user and not the user for the
/// program. Afterwards the cursor is whatever the program asked for last.
class HourglassPause {
 public:
  HourglassPause();
  HourglassPause(const HourglassPause&) = delete;
  HourglassPause& operator=(const HourglassPause&) = delete;
  ~HourglassPause();
};

}  // namespace ledgertree::qt
