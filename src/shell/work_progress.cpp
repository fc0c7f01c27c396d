#include "shell/work_progress.h"

#include <string>

#include "ui/desktop.h"

namespace ledgertree::shell {

WorkProgress::WorkProgress(ui::Form& form, ui::ProgressBar& bar, std::int32_t all)
    : form_(form), bar_(bar), all_(all) {}

WorkProgress::~WorkProgress() {
  if (bar_.visible()) bar_.setVisible(false);
}

void WorkProgress::advance(std::int32_t done) {
  if (Clock::now() < nextPaint_) return;
  bar_.setProgress(done, all_, std::to_string(done) + " از " + std::to_string(all_));
  if (!bar_.visible()) bar_.setVisible(true);
  form_.desktop().repaint(form_);
  nextPaint_ = Clock::now() + kBetweenPaints;
}

}  // namespace ledgertree::shell
