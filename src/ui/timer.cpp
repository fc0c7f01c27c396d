#include "ui/timer.h"

namespace ledgertree::ui {

void Timer::tick() {
  if (!onTick || form_.inAct() || form_.desktop().waiting()) return;
  const auto procedure = onTick;
  form_.call(procedure);
}

}  // namespace ledgertree::ui
