#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "data/connection.h"
#include "data/data_error.h"
#include "ui/desktop.h"

namespace ledgertree::shell {

/// What the connections of one desktop have in common while they keep a person waiting: what the person sees,
/// the way out, and that one outage is met once. Belongs to the user-interface thread.
class DatabaseWaits {
 public:
  static constexpr std::chrono::milliseconds kBeforeShowing{500};
  static constexpr std::chrono::milliseconds kBetweenPaints{50};

  explicit DatabaseWaits(ui::Desktop& desktop) : desktop_(desktop) {}
  DatabaseWaits(const DatabaseWaits&) = delete;
  DatabaseWaits& operator=(const DatabaseWaits&) = delete;

  /// The longest that a command of an engine that answers late is waited for: its time-out, and a moment for
  /// the server to say that it stopped.
  std::chrono::milliseconds patience = data::kCommandTimeOut + std::chrono::seconds(1);

  /// How long nobody asks anything on a connection to an engine that answers late before it gives back what
  /// it holds there; the next command takes it again, unnoticed but for the time. Counts for those made
  /// later.
  std::chrono::milliseconds restAfter = std::chrono::minutes(5);

  /// What the procedure that runs has waited for answers so far: many short commands are a long wait, too.
  [[nodiscard]] std::chrono::steady_clock::duration waited() const;
  void noteWaited(std::chrono::steady_clock::duration time);

  /// Something was written, or may have been, by a screen of this desktop or by what it called: from then on
  /// a read that may be of a moment before would show an older state than the person's own.
  void noteWrite() { wrote_ = true; }
  [[nodiscard]] bool wrote() const { return wrote_; }

  /// One wait. It shows nothing for half a second.
  class Wait {
   public:
    Wait(DatabaseWaits& waits, std::chrono::steady_clock::time_point begun) : waits_(waits), begun_(begun) {}
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait();
    /// Called again and again while the wait lasts. May paint, while nothing else works; gives whether the
    /// person gave up, where `wayOut` offers that.
    [[nodiscard]] bool goesOn(bool wayOut);

   private:
    DatabaseWaits& waits_;
    std::chrono::steady_clock::time_point begun_;
    bool shown_ = false;
  };

  /// For an engine that waits on the thread of the user interface.
  [[nodiscard]] data::Waiting shown();

  /// Ahead of a command. Throws where a wait is being shown, in the middle of which nothing is asked, and
  /// where the procedure that runs has met an outage already, which this command would only wait for again.
  void require(bool onlyReads) const;
  /// A command failed after `waited`. Gives what is told of it: a further failure of one outage, in the same
  /// procedure, is marked so.
  [[nodiscard]] data::DataError noted(data::DataError failure, std::chrono::steady_clock::duration waited);

 private:
  struct Outage {
    std::uint64_t procedure = 0;
    bool slow = false;     ///< a command that follows might wait as long
    bool givenUp = false;  ///< by the person, who didn't mean what writes
  };

  [[nodiscard]] bool inOutage() const;

  ui::Desktop& desktop_;
  bool wrote_ = false;
  std::uint64_t waitedIn_ = 0;  ///< the procedure
  std::chrono::steady_clock::duration waited_{};
  std::optional<Outage> outage_;
  std::optional<Wait> wait_;  ///< of an engine on this thread
};

}  // namespace ledgertree::shell
