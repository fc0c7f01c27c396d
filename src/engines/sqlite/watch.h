#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <string_view>

#include "data/connection.h"

struct sqlite3;

namespace ledgertree::engines::sqlite {

/// Keeps an eye on the running command of one SQLite connection: interrupts it at its deadline or when it was
/// given up, lets it wait for another program's lock until then, and asks who keeps the person company.
class Watch {
 public:
  using Clock = std::chrono::steady_clock;

  Watch() = default;
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// From now on `handle` asks this watch. The watch has to outlive it.
  void attach(sqlite3* handle);

  /// The length of one command. Commands nest: a walk shows a row, and the visitor runs a statement.
  class Command {
   public:
    Command(Watch& watch, Clock::time_point deadline, const std::function<bool()>* cancelled = nullptr)
        : watch_(watch), deadlineBefore_(watch.deadline_), cancelledBefore_(watch.cancelled_) {
      watch.deadline_ = deadline;
      watch.cancelled_ = cancelled;
      watch.nextQuestion_ = {};  // a short command is asked once at least
      watch.stop_ = Stop::None;
    }
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command() {
      watch_.deadline_ = deadlineBefore_;
      watch_.cancelled_ = cancelledBefore_;
      if (watch_.asked_) watch_.endWait();
    }
    /// Time that isn't the engine's.
    void extend(Clock::duration time) { watch_.deadline_ += time; }

   private:
    Watch& watch_;
    Clock::time_point deadlineBefore_;
    const std::function<bool()>* cancelledBefore_;
  };

  /// Asked while the command that begins `now` lasts, from a moment on. It outlives the command.
  void whileWaiting(const data::Waiting& waiting, bool onlyReads, Clock::time_point now);

  /// Whether that question is being put: SQLite is in the middle of a step, and takes no other command.
  [[nodiscard]] bool asking() const { return asking_; }

  /// Whether the running command has to stop, asked between two rows.
  [[nodiscard]] bool mustStop() { return mustStop(Clock::now()); }
  [[nodiscard]] bool mustStop(Clock::time_point now);
  /// Throws the reason for which a command was stopped; returns where it wasn't.
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
  bool asked_ = false;  ///< in the course of this command
  Clock::time_point nextLook_{};
  Clock::time_point nextQuestion_{};
  Stop stop_ = Stop::None;
  std::exception_ptr failure_;  ///< what `cancelled` threw, which mustn't pass through SQLite
};

}  // namespace ledgertree::engines::sqlite
