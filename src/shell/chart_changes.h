#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "data/rows.h"
#include "shell/connection_line.h"
#include "shell/shell.h"

namespace ledgertree::shell {

/// Whether the accounts, their periods or their relations were changed, by whomever: one cheap question to
/// vwLedgerTreeChanges, which lines of documents don't move. What isn't committed counts as no change.
///
/// On an engine that answers late it is asked beside the user-interface thread, over a connection of its own,
/// so that nobody waits for it; while nothing is asked it rests as others do. A failure tells nobody
/// anything: the next questions come more rarely, until one is answered.
class ChartChanges {
 public:
  /// `onMoved` is called when an answer that came later says so, on the user-interface thread.
  ChartChanges(Shell& shell, std::function<void()> onMoved) : shell_(shell), onMoved_(std::move(onMoved)) {}
  ChartChanges(const ChartChanges&) = delete;
  ChartChanges& operator=(const ChartChanges&) = delete;
  ~ChartChanges() { leave(); }

  /// Whatever is read from here on is behind the changes that are known. What is stored by now is asked over
  /// the gateway; where that fails, the first answer counts as a change.
  void begin();
  /// Asks, unless an answer is still to come or a failure lets the question rest. Call it every few seconds.
  void ask();
  /// Whether the last answer tells of changes that nobody has looked at.
  [[nodiscard]] bool moved() const { return moved_; }
  /// What the last answer told was read.
  void seen();
  /// What was to be read couldn't be. The question rests for a while, and its answer counts as a change
  /// again.
  void failed();
  /// What was read is old, whatever was seen: the next answer counts as a change.
  void forget() { known_.reset(); }

 private:
  /// How often each session has written.
  using Counts = std::map<std::int64_t, std::int64_t>;

  [[nodiscard]] static Counts countsOf(data::Connection& connection);
  void take(Counts counts);
  void askAside(const std::string& connectionText);
  void leave();

  Shell& shell_;
  std::function<void()> onMoved_;
  std::optional<Counts> known_;
  Counts found_;
  bool moved_ = false;
  bool asking_ = false;
  int failures_ = 0;
  int rests_ = 0;  ///< questions to be left out
  std::string connectionText_;
  std::shared_ptr<ConnectionLine> line_;
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ledgertree::shell
