#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/data_error.h"
#include "support/server_chart.h"

namespace ledgertree::testing {

/// Sits between the product and the engine: records every command (a statement, a procedure, a search) and
/// fails those that it is told to, like an engine that fails before changing anything.
class Faults {
 public:
  static constexpr std::string_view kMessage = "the disk gave up";

  /// Affects the connections that `provider` opens from now on; must outlive the last one.
  void putInto(data::Providers& providers, std::string provider = testProvider());

  /// Fails only the n-th command from now, 1 being the next.
  void failAt(int n);
  /// Fails each command whose text contains this exactly; empty stops.
  void failWhere(std::string text, data::DataError::Reason reason = data::DataError::Reason::Storage);
  /// Stops all failures.
  void heal();

  /// The number of failed commands since the last heal(), or since the beginning.
  [[nodiscard]] int failures() const;
  /// Makes any engine count as remote. The callbacks below then run on the connection's
  /// thread.
  std::atomic<bool> late = false;
  /// The number of round trips since the last call; a packet is one.
  [[nodiscard]] int trips() { return trips_.exchange(0); }
  /// The commands since the last call: statements, procedure names, "search " and a view.
  [[nodiscard]] std::vector<std::string> take();

  /// Called before each command; what it throws is the command's failure. For single-threaded stories.
  std::function<void(const std::string& command)> onCommand;
  /// Called with the result of each statement; a procedure has none.
  std::function<void(const std::string& command, const std::optional<data::Rows>& rows)> onAnswer;

 private:
  friend class FaultyConnection;
  /// Throws data::DataError if the command is to fail.
  void pass(const std::string& command);
  void answered(const std::string& command, const std::optional<data::Rows>& rows) const {
    if (onAnswer) onAnswer(command, rows);
  }

  mutable std::mutex lock_;
  std::vector<std::string> commands_;
  std::string failing_;
  data::DataError::Reason reason_ = data::DataError::Reason::Storage;
  int countdown_ = 0;
  int failures_ = 0;
  std::atomic<int> trips_ = 0;
};

}  // namespace ledgertree::testing
