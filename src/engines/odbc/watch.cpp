#include "engines/odbc/watch.h"

#include <algorithm>
#include <utility>

#include "engines/odbc/errors.h"

namespace ledgertree::engines::odbc {
namespace {

constexpr std::chrono::milliseconds kBetweenQuestions{5};
/// An interruption before the call that it is meant for is lost, and has to be repeated.
constexpr std::chrono::milliseconds kBetweenInterruptions{200};
/// Checking now and then whether a pause is over costs less than waking up at each row.
constexpr std::chrono::milliseconds kBetweenLooks{200};

}  // namespace

Watch::~Watch() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

Watch::Command::Command(Watch& watch, const Handle& statement, Clock::time_point deadline,
                        const std::function<bool()>* cancelled)
    : watch_(watch) {
  {
    const std::lock_guard lock(watch_.mutex_);
    watch_.statement_ = statement.get();
    watch_.deadline_ = deadline;
    watch_.pausedSince_.reset();
    watch_.cancelled_ = cancelled != nullptr && *cancelled ? cancelled : nullptr;
    watch_.stop_ = Stop::None;
    watch_.failure_ = nullptr;
    if (!watch_.thread_.joinable()) watch_.thread_ = std::thread([&watch] { watch.keep(); });
  }
  watch_.changed_.notify_one();
}

Watch::Command::~Command() {
  const std::lock_guard lock(watch_.mutex_);
  watch_.statement_ = SQL_NULL_HANDLE;
}

void Watch::Command::pause() {
  const std::lock_guard lock(watch_.mutex_);
  watch_.pausedSince_ = Clock::now();
}

void Watch::Command::resume() {
  const std::lock_guard lock(watch_.mutex_);
  if (!watch_.pausedSince_) return;
  watch_.deadline_ += Clock::now() - *watch_.pausedSince_;
  watch_.pausedSince_.reset();
}

bool Watch::Command::stopped() {
  const std::lock_guard lock(watch_.mutex_);
  return watch_.stop_ != Stop::None;
}

void Watch::Command::rethrowStop(std::string_view statement, bool ended) {
  const std::lock_guard lock(watch_.mutex_);
  if (watch_.failure_) std::rethrow_exception(std::exchange(watch_.failure_, nullptr));
  if (watch_.stop_ == Stop::TimeOut) throw timeOutError(statement, ended);
  if (watch_.stop_ == Stop::Cancelled) throw cancelledError();
}

void Watch::decide() {
  if (Clock::now() >= deadline_) {
    stop_ = Stop::TimeOut;
  } else if (cancelled_ != nullptr) {
    try {
      if ((*cancelled_)()) stop_ = Stop::Cancelled;
    } catch (...) {
      failure_ = std::current_exception();
      stop_ = Stop::Cancelled;
    }
  }
}

void Watch::keep() {
  std::unique_lock lock(mutex_);
  while (!over_) {
    if (statement_ == SQL_NULL_HANDLE) {
      changed_.wait(lock);
      continue;
    }
    if (stop_ == Stop::None && !pausedSince_) decide();
    Clock::time_point next = pausedSince_ ? Clock::now() + kBetweenLooks : deadline_;
    if (stop_ != Stop::None) {
      // The statement can't be freed meanwhile: its command waits for the lock.
      SQLCancel(statement_);
      next = Clock::now() + kBetweenInterruptions;
    } else if (cancelled_ != nullptr) {
      next = std::min(next, Clock::now() + kBetweenQuestions);
    }
    changed_.wait_until(lock, next);
  }
}

}  // namespace ledgertree::engines::odbc
