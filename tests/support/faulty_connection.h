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

/// Stands between the product and the engine: it writes down every command (a statement, a procedure, a
/// search) and fails those that it is told to, as an engine does that gives up before it changed anything.
class Faults {
 public:
  static constexpr std::string_view kMessage = "the disk gave up";

  /// The connections that `provider` opens from now on; the faults outlive the providers' last connection.
  void putInto(data::Providers& providers, std::string provider = testProvider());

  /// Fails the n-th command from now, 1 being the next, and no other.
  void failAt(int n);
  /// Fails each command whose text holds this, letter by letter; empty stops.
  void failWhere(std::string text, data::DataError::Reason reason = data::DataError::Reason::Storage);
  /// Nothing fails any more.
  void heal();

  /// The commands that failed since the last heal(), or since the beginning.
  [[nodiscard]] int failures() const;
  /// Answers count as late, as over a network, on whichever engine. What is heard below is heard on the
  /// connection's thread then.
  std::atomic<bool> late = false;
  /// How often the engines were asked since the last call; a packet is one question.
  [[nodiscard]] int trips() { return trips_.exchange(0); }
  /// The commands since the last call: statements, names of procedures, "search " and a view.
  [[nodiscard]] std::vector<std::string> take();

  /// Hears each command ahead of its run; what it throws is the command's failure. For stories on one thread.
  std::function<void(const std::string& command)> onCommand;
  /// Hears what each statement that ran gave; a procedure gives nothing.
  std::function<void(const std::string& command, const std::optional<data::Rows>& rows)> onAnswer;

 private:
  friend class FaultyConnection;
  /// Throws data::DataError where the command is to fail.
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
