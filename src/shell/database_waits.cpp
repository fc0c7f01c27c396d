#include "shell/database_waits.h"

#include <string>
#include <utility>

namespace ledgertree::shell {
namespace {

using Reason = data::DataError::Reason;
using Clock = std::chrono::steady_clock;

constexpr const char* kNotSent =
    "پايگاه داده پاسخ نميدهد و اين کار به آن فرستاده نشد. شبکه را بررسي نماييد و دوباره تلاش نماييد.";
constexpr const char* kInTheMiddle =
    "برنامه منتظر پاسخ پايگاه داده است. پس از رسيدن پاسخ دوباره تلاش نماييد.";

}  // namespace

DatabaseWaits::Wait::~Wait() {
  if (shown_) waits_.desktop_.endWait();
}

bool DatabaseWaits::Wait::goesOn(bool wayOut) {
  const auto waited = Clock::now() - begun_;
  if (waited < kBeforeShowing) return false;
  shown_ = true;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
  return waits_.desktop_.keepWaiting("در انتظار پاسخ پايگاه داده (" + std::to_string(seconds) + " ثانيه)",
                                     wayOut ? "انصراف" : "");
}

data::Waiting DatabaseWaits::shown() {
  return {.givesUp =
              [this](bool wayOut) {
                if (!wait_) wait_.emplace(*this, Clock::now());
                return wait_->goesOn(wayOut);
              },
          .over = [this] { wait_.reset(); }};
}

Clock::duration DatabaseWaits::waited() const {
  return desktop_.procedure() != 0 && waitedIn_ == desktop_.procedure() ? waited_ : Clock::duration();
}

void DatabaseWaits::noteWaited(Clock::duration time) {
  waited_ = waited() + time;
  waitedIn_ = desktop_.procedure();
}

bool DatabaseWaits::inOutage() const {
  return outage_ && desktop_.procedure() != 0 && outage_->procedure == desktop_.procedure();
}

void DatabaseWaits::require(bool onlyReads) const {
  if (desktop_.waiting()) throw data::DataError(Reason::Busy, 0, kInTheMiddle);
  if (!inOutage() || !outage_->slow || (outage_->givenUp && !onlyReads)) return;
  throw data::DataError(outage_->givenUp ? Reason::Cancelled : Reason::Connection, 0,
                        outage_->givenUp ? data::kGivenUp : kNotSent)
      .undone()
      .repeated();
}

data::DataError DatabaseWaits::noted(data::DataError failure, Clock::duration waited) {
  const Reason reason = failure.reason();
  const bool givenUp = reason == Reason::Cancelled;
  const bool noAnswer = reason == Reason::Connection || reason == Reason::TimeOut;
  if (!givenUp && !noAnswer) return failure;
  const bool again = inOutage();
  outage_ = {
      .procedure = desktop_.procedure(), .slow = givenUp || waited > patience / 10, .givenUp = givenUp};
  return again ? std::move(failure).repeated() : failure;
}

}  // namespace ledgertree::shell
