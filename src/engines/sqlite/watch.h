#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <string_view>

#include "data/connection.h"

struct sqlite3;

namespace ledgertree::engines::sqlite {

/// Watches the running command of one SQLite connection: interrupts it at its deadline or when cancelled,
/// lets it wait for another program's lock until then, and calls the user-interface callback meanwhile.
class Watch {
 public:
  using Clock = std::chrono::steady_clock;

  Watch() = default;
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// Makes `handle` use this watch, which must outlive it.
  void attach(sqlite3* handle);

  /// The scope of one command. Commands nest: a walk passes a row, and the visitor runs a statement.
  class Command {
   public:
    Command(Watch& watch, Clock::time_point deadline, const std::function<bool()>* cancelled = nullptr)
        : watch_(watch), deadlineBefore_(watch.deadline_), cancelledBefore_(watch.cancelled_) {
      watch.deadline_ = deadline;
      watch.cancelled_ = cancelled;
      watch.nextQuestion_ = {};  // even a short command asks once
      watch.stop_ = Stop::None;
    }
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command() {
      watch_.deadline_ = deadlineBefore_;
      watch_.cancelled_ = cancelledBefore_;
      if (watch_.asked_) watch_.endWait();
    }
    /// Adds time that the engine didn't use.
    void extend(Clock::duration time) { watch_.deadline_ += time; }

   private:
    Watch& watch_;
    Clock::time_point deadlineBefore_;
    const std::function<bool()>* cancelledBefore_;
  };

  /// Called from a moment on while the command that starts at `now` runs. `waiting` outlives the command.
  void whileWaiting(const data::Waiting& waiting, bool onlyReads, Clock::time_point now);

  /// Whether that callback is running: SQLite is in the middle of a step, and takes no other command.
  [[nodiscard]] bool asking() const { return asking_; }

  /// Whether the running command must stop; check between two rows.
  [[nodiscard]] bool mustStop() { return mustStop(Clock::now()); }
  [[nodiscard]] bool mustStop(Clock::time_point now);
  /// Throws the reason why a command was stopped; returns if it wasn't.
  void rethrowStop(std::string_view statement);

 private:
  enum class Stop { None, TimeOut, Cancelled, GivenUp };

  static int onProgress(void* watch);
  static int onBusy(void* watch, int attempts);
  [[nodiscard]] bool givesUp(bool harmless);
  void endWait();

  Clock::time_point deadline_ = Clock::time_point::max();
  const std::function<bool()>* cancelled_ = nullptr;
  const data::Waiting* waiting_ = nullptr;
  bool onlyReads_ = false;
  bool asking_ = false;
  bool asked_ = false;  ///< during this command
  Clock::time_point nextLook_{};
  Clock::time_point nextQuestion_{};
  Stop stop_ = Stop::None;
  std::exception_ptr failure_;  ///< thrown by `cancelled`; mustn't pass through SQLite
};

}  // namespace ledgertree::engines::sqlite
