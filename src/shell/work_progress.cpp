#include "shell/work_progress.h"

#include <string>

#include "ui/desktop.h"

namespace ledgertree::shell {

WorkProgress::WorkProgress(ui::Form& form, ui::ProgressBar& bar, std::int32_t all, WayOut wayOut)
    : form_(form), bar_(bar), all_(all), wayOut_(wayOut) {}

WorkProgress::~WorkProgress() {
  if (bar_.visible()) bar_.setVisible(false);
}

void WorkProgress::advance(std::int32_t done) {
  if (Clock::now() < nextPaint_) return;
  const bool out = wayOut_ == WayOut::Escape;
  bar_.setProgress(done, all_,
                   std::to_string(done) + " از " + std::to_string(all_) + (out ? " (توقف: Esc)" : ""));
  if (!bar_.visible()) bar_.setVisible(true);
  if (!out) {
    form_.desktop().repaint(form_);
  } else if (form_.desktop().repaintAndHearEscape(form_)) {
    givenUp_ = true;
  }
  nextPaint_ = Clock::now() + kBetweenPaints;
}

}  // namespace ledgertree::shell
