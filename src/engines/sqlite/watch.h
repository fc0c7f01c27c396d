#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <string_view>

struct sqlite3;

namespace ledgertree::engines::sqlite {

/// Keeps an eye on the running command of one SQLite connection: interrupts it at its deadline or when it was
/// given up, and lets it wait for another program's lock until then.
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
      watch.stop_ = Stop::None;
    }
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command() {
      watch_.deadline_ = deadlineBefore_;
      watch_.cancelled_ = cancelledBefore_;
    }
    /// Time that isn't the engine's.
    void extend(Clock::duration time) { watch_.deadline_ += time; }

   private:
    Watch& watch_;
    Clock::time_point deadlineBefore_;
    const std::function<bool()>* cancelledBefore_;
  };

  /// Asked while a command waits for a lock; true gives the wait up. It outlives the command.
  void whileWaiting(const std::function<bool()>& givesUp) { givesUpWaiting_ = &givesUp; }

  /// Whether that question is being put: SQLite is in the middle of a step, and takes no other command.
  [[nodiscard]] bool asking() const { return asking_; }

  /// Whether the running command has to stop, asked between two rows.
  [[nodiscard]] bool mustStop() { return mustStop(Clock::now()); }
  [[nodiscard]] bool mustStop(Clock::time_point now);
  /// Throws the reason for which a command was stopped; returns where it wasn't.
  void rethrowStop(std::string_view statement);

 private:
  enum class Stop { None, TimeOut, Cancelled };

  static int onProgress(void* watch);
  static int onBusy(void* watch, int attempts);
  [[nodiscard]] bool givesUpWaiting();

  Clock::time_point deadline_ = Clock::time_point::max();
  const std::function<bool()>* cancelled_ = nullptr;
  const std::function<bool()>* givesUpWaiting_ = nullptr;
  bool asking_ = false;
  Clock::time_point nextQuestion_{};
  Stop stop_ = Stop::None;
  std::exception_ptr failure_;  ///< what `cancelled` threw, which mustn't pass through SQLite
};

}  // namespace ledgertree::engines::sqlite
