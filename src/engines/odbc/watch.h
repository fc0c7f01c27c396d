#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

#include "engines/odbc/handle.h"

namespace ledgertree::engines::odbc {

/// Watches the running statement of one connection from its own thread: interrupts it at its deadline, for
/// drivers that don't, or when it is cancelled. The thread starts with the first statement.
class Watch {
 public:
  using Clock = std::chrono::steady_clock;

  Watch() = default;
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  /// Scope of one command on one statement; the statement outlives it.
  class Command {
   public:
    Command(Watch& watch, const Handle& statement, Clock::time_point deadline,
            const std::function<bool()>* cancelled = nullptr);
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command();

    /// Time between these two doesn't count; it may be longer than the command's time-out.
    void pause();
    void resume();
    /// Whether the command was interrupted.
    [[nodiscard]] bool stopped();
    /// Throws the reason why the command was stopped; returns if it wasn't. `ended`: the server has confirmed
    /// that it stopped.
    void rethrowStop(std::string_view statement, bool ended);

   private:
    Watch& watch_;
  };

 private:
  enum class Stop { None, TimeOut, Cancelled };

  void keep();
  void decide();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::thread thread_;
  bool over_ = false;
  SQLHANDLE statement_ = SQL_NULL_HANDLE;  ///< the running one
  Clock::time_point deadline_;
  std::optional<Clock::time_point> pausedSince_;
  const std::function<bool()>* cancelled_ = nullptr;
  Stop stop_ = Stop::None;
  std::exception_ptr failure_;  ///< what `cancelled` threw
};

}  // namespace ledgertree::engines::odbc
