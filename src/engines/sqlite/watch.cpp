#include "engines/sqlite/watch.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <thread>
#include <utility>

#include "engines/sqlite/errors.h"

namespace ledgertree::engines::sqlite {
namespace {

/// SQLite virtual-machine steps between two looks at the clock: some tens of microseconds.
constexpr int kStepsBetweenLooks = 1000;
constexpr std::chrono::milliseconds kBetweenQuestions{2};
constexpr std::chrono::milliseconds kLongestWait{50};

}  // namespace

void Watch::attach(sqlite3* handle) {
  sqlite3_progress_handler(handle, kStepsBetweenLooks, &Watch::onProgress, this);
  sqlite3_busy_handler(handle, &Watch::onBusy, this);
}

bool Watch::mustStop(Clock::time_point now) {
  if (stop_ != Stop::None) return true;
  if (now >= deadline_) {
    stop_ = Stop::TimeOut;
  } else if (cancelled_ != nullptr && *cancelled_ && now >= nextQuestion_) {
    nextQuestion_ = now + kBetweenQuestions;
    try {
      if ((*cancelled_)()) stop_ = Stop::Cancelled;
    } catch (...) {
      failure_ = std::current_exception();
      stop_ = Stop::Cancelled;
    }
  }
  return stop_ != Stop::None;
}

void Watch::rethrowStop(std::string_view statement) {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (stop_ == Stop::TimeOut) throw timeOutError(statement);
  if (stop_ == Stop::Cancelled) throw cancelledError();
  if (stop_ == Stop::GivenUp)
    throw data::DataError(data::DataError::Reason::Cancelled, SQLITE_INTERRUPT, data::kGivenUp,
                          std::string(statement));
}

void Watch::whileWaiting(const data::Waiting& waiting, bool onlyReads, Clock::time_point now) {
  waiting_ = &waiting;
  onlyReads_ = onlyReads;
  nextLook_ = now + kLongestWait;
}

int Watch::onProgress(void* watch) {
  Watch& self = *static_cast<Watch*>(watch);
  const Clock::time_point now = Clock::now();
  if (self.mustStop(now)) return 1;
  if (now < self.nextLook_) return 0;
  self.nextLook_ = now + kLongestWait;
  if (self.givesUp(self.onlyReads_)) self.stop_ = Stop::GivenUp;
  return self.stop_ == Stop::None ? 0 : 1;
}

/// An exception counts as no: none may pass through SQLite, and the wait ends
/// anyway. The callback may be replaced while it runs.
bool Watch::givesUp(bool harmless) {
  if (waiting_ == nullptr || !waiting_->givesUp) return false;
  const auto question = waiting_->givesUp;
  asking_ = asked_ = true;
  bool givesUp = false;
  try {
    givesUp = question(harmless);
  } catch (...) {
    givesUp = false;
  }
  asking_ = false;
  return givesUp;
}

void Watch::endWait() {
  asked_ = false;
  if (waiting_->over) waiting_->over();
}

int Watch::onBusy(void* watch, int attempts) {
  Watch& self = *static_cast<Watch*>(watch);
  const Clock::time_point now = Clock::now();
  if (self.mustStop(now)) {
    // What ran out is the wait for the other program: SQLite's own error is kept.
    if (self.stop_ == Stop::TimeOut) self.stop_ = Stop::None;
    return 0;
  }
  if (self.givesUp(true)) return 0;
  const std::chrono::milliseconds wait = std::min(std::chrono::milliseconds(1 + attempts), kLongestWait);
  std::this_thread::sleep_for(std::min<Clock::duration>(wait, self.deadline_ - now));
  return 1;
}

}  // namespace ledgertree::engines::sqlite
