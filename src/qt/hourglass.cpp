#include "qt/hourglass.h"

#include <QApplication>
#include <QCursor>

namespace ledgertree::qt {

namespace {

struct HourglassState {
  bool wanted = false;
  bool shown = false;
  int pauses = 0;

  void follow() {
    const bool show = wanted && pauses == 0;
    if (show == shown) return;
    shown = show;
    if (show) {
      QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    } else {
      QApplication::restoreOverrideCursor();
    }
  }
};

HourglassState& state() {
  static HourglassState state;
  return state;
}

}  // namespace

void showHourglass(bool show) {
  state().wanted = show;
  state().follow();
}

HourglassPause::HourglassPause() {
  ++state().pauses;
  state().follow();
}

HourglassPause::~HourglassPause() {
  --state().pauses;
  state().follow();
}

}  // namespace ledgertree::qt
