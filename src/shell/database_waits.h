#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "data/connection.h"
#include "data/data_error.h"
#include "ui/desktop.h"

namespace ledgertree::shell {

/// What one desktop's connections share while the user waits for them: what the user sees, the way to cancel,
/// and that an outage is waited for only once. For the user-interface thread.
class DatabaseWaits {
 public:
  static constexpr std::chrono::milliseconds kBeforeShowing{500};
  static constexpr std::chrono::milliseconds kBetweenPaints{50};

  explicit DatabaseWaits(ui::Desktop& desktop) : desktop_(desktop) {}
  DatabaseWaits(const DatabaseWaits&) = delete;
  DatabaseWaits& operator=(const DatabaseWaits&) = delete;

  /// The longest wait for a command of a remote engine: its time-out,
  /// plus a moment for the server to report the abort.
  std::chrono::milliseconds patience = data::kCommandTimeOut + std::chrono::seconds(1);

  /// The idle time after which a connection to a remote engine releases its resources there;
  /// the next command reacquires them, which costs only time. Applies to connections made
  /// later.
  std::chrono::milliseconds restAfter = std::chrono::minutes(5);

  /// How long the running procedure has waited for answers so far: many short commands are a long wait, too.
  [[nodiscard]] std::chrono::steady_clock::duration waited() const;
  void noteWaited(std::chrono::steady_clock::duration time);

  /// Something was written, or may have been, by a screen of this desktop or on its behalf: from then on a
  /// read from a lagging replica could show a state older than the user's own.
  void noteWrite() { wrote_ = true; }
  [[nodiscard]] bool wrote() const { return wrote_; }

  /// One wait. Invisible for the first half second.
  class Wait {
   public:
    Wait(DatabaseWaits& waits, std::chrono::steady_clock::time_point begun) : waits_(waits), begun_(begun) {}
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait();
    /// Called repeatedly during the wait. May repaint, while nothing else works; returns whether the user
    /// cancelled, if `wayOut` allows that.
    [[nodiscard]] bool goesOn(bool wayOut);

   private:
    DatabaseWaits& waits_;
    std::chrono::steady_clock::time_point begun_;
    bool shown_ = false;
  };

  /// For an engine that blocks the user-interface thread.
  [[nodiscard]] data::Waiting shown();

  /// Called before a command. Throws if a wait is being shown, during which no command may run, and if the
  /// running procedure has already hit an outage, which this command would only wait for again.
  void require(bool onlyReads) const;
  /// A command failed after `waited`. Returns the failure to report: another failure of one outage, in the
  /// same procedure, is marked as repeated.
  [[nodiscard]] data::DataError noted(data::DataError failure, std::chrono::steady_clock::duration waited);

 private:
  struct Outage {
    std::uint64_t procedure = 0;
    bool slow = false;     ///< a command that follows might wait as long
    bool givenUp = false;  ///< by the user, who can't cancel writes
  };

  [[nodiscard]] bool inOutage() const;

  ui::Desktop& desktop_;
  bool wrote_ = false;
  std::uint64_t waitedIn_ = 0;  ///< the procedure
  std::chrono::steady_clock::duration waited_{};
  std::optional<Outage> outage_;
  std::optional<Wait> wait_;  ///< for an engine on this thread
};

}  // namespace ledgertree::shell
