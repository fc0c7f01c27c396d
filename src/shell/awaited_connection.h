#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/as_read.h"
#include "data/connection.h"
#include "shell/background.h"
#include "shell/connection_line.h"
#include "shell/database_waits.h"

namespace ledgertree::shell {

/// The user-interface thread's connection to a remote engine. Commands run on a thread of
/// the connection's own; this thread waits, repaints meanwhile, and lets the user cancel
/// reads. Nothing else runs until the command has ended.
///
/// A command that exceeds DatabaseWaits::patience fails; so does a cancelled one. If the
/// server doesn't acknowledge that, the thread and its engine connection are abandoned
/// until they end, and the next command opens a new one.
class AwaitedConnection final : public data::Connection {
 public:
  /// Creates an engine connection, without opening it.
  using Make = std::function<std::unique_ptr<data::Connection>()>;

  /// `waits` and `background` outlive the connection.
  AwaitedConnection(DatabaseWaits& waits, Background& background, Make make)
      : waits_(waits), background_(background), make_(std::move(make)) {}
  ~AwaitedConnection() override { leave(); }

  std::optional<data::Rows> run(std::string_view statement) override;
  /// Passes the rows on this thread, some hundreds at a time.
  void walk(std::string_view statement, const std::function<bool(const data::Rows& row)>& visit) override;
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override;
  data::Answers runTogether(std::span<const data::Command> commands) override;
  void handOver(const data::AsRead& read) override { read_ = read; }
  data::SearchPage search(const data::SearchRequest& request) override;
  [[nodiscard]] std::vector<std::string> takeNews() override;
  [[nodiscard]] bool isRemote() const override { return true; }

 private:
  struct Manner {
    bool onlyReads = true;
    std::function<bool()> cancelled = {};  ///< checked here too: the engine may not notice
  };

  /// Runs `work` on the engine's thread; it is copied there, and may outlive the call.
  template <typename Work>
  auto ask(const Manner& manner, Work work);
  [[nodiscard]] ConnectionLine& ready(const Manner& manner);
  /// Waits until the line is idle. Throws `failure`, which the work may have set by then, and if the line is
  /// abandoned.
  void await(const Manner& manner, const std::exception_ptr& failure);
  /// Shows nothing until the procedure has waited long enough. Returns whether the user cancelled.
  [[nodiscard]] bool waitFor(const Manner& manner, std::chrono::steady_clock::time_point begun);
  /// The visible part of the wait. Returns whether the user cancelled.
  [[nodiscard]] bool waitLonger(const Manner& manner, std::chrono::steady_clock::time_point begun);
  void leave();

  DatabaseWaits& waits_;
  Background& background_;
  Make make_;
  std::optional<data::AsRead> read_;  ///< handed over, until the next command
  std::shared_ptr<ConnectionLine> line_;
};

}  // namespace ledgertree::shell
