#pragma once

namespace ledgertree::qt {

/// The hourglass over the whole application. However often it is set and taken off, Qt's stack of pointers
/// holds it once or not at all, so that the host's own pointers under it come back untouched.
void showHourglass(bool show);

/// While one stands the hourglass is off the screen, because a dialog waits for the person and not the person
/// for the program; afterwards the pointer is what the program wishes by then.
class HourglassPause {
 public:
  HourglassPause();
  HourglassPause(const HourglassPause&) = delete;
  HourglassPause& operator=(const HourglassPause&) = delete;
  ~HourglassPause();
};

}  // namespace ledgertree::qt
