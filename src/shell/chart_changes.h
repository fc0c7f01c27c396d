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

/// Detects whether the accounts, their periods or relations were changed, by anybody: with one cheap query of
/// vwLedgerTreeChanges, which document lines don't affect. Uncommitted changes don't count.
///
/// On a remote engine the query runs off the user-interface thread, over its own connection, so that nobody
/// waits for it; the connection rests between queries like others. A failure isn't reported: the next queries
/// come less often, until one succeeds.
class ChartChanges {
 public:
  /// `onMoved` is called on the user-interface thread when a late answer shows changes.
  ChartChanges(Shell& shell, std::function<void()> onMoved) : shell_(shell), onMoved_(std::move(onMoved)) {}
  ChartChanges(const ChartChanges&) = delete;
  ChartChanges& operator=(const ChartChanges&) = delete;
  ~ChartChanges() { leave(); }

  /// Call before reading: everything read afterwards includes the changes known. The current state is queried
  /// over the gateway; if that fails, the first answer counts as a change.
  void begin();
  /// Queries, unless an answer is pending or a failure suspended it. Call every few seconds.
  void ask();
  /// Whether the last answer showed changes not yet looked at.
  [[nodiscard]] bool moved() const { return moved_; }
  /// The changes of the last answer have been read.
  void seen();
  /// Reading the changes failed. Queries pause for a while, and the next answer counts as a change
  /// again.
  void failed();
  /// What was read is outdated, whatever was seen: the next answer counts as a change.
  void forget() { known_.reset(); }

 private:
  /// The number of writes of each session.
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
  int rests_ = 0;  ///< queries to skip
  std::string connectionText_;
  std::shared_ptr<ConnectionLine> line_;
  std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace ledgertree::shell
