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

/// A connection of the user-interface thread to an engine that answers late. A command runs on a thread that
/// the connection has for itself; this thread waits for it, paints meanwhile, and takes the way out of what
/// only reads. Nothing else works until the command has ended.
///
/// A command that doesn't end within DatabaseWaits::patience fails; so does one that was given up. Where the
/// server doesn't acknowledge that, the thread is left alone with the connection of the engine until it ends,
/// and the next command opens another one.
class AwaitedConnection final : public data::Connection {
 public:
  /// Makes a connection of the engine; it opens nothing.
  using Make = std::function<std::unique_ptr<data::Connection>()>;

  /// `waits` and `background` outlive the connection.
  AwaitedConnection(DatabaseWaits& waits, Background& background, Make make)
      : waits_(waits), background_(background), make_(std::move(make)) {}
  ~AwaitedConnection() override { leave(); }

  std::optional<data::Rows> run(std::string_view statement) override;
  /// The rows are shown on this thread, some hundreds at a time.
  void walk(std::string_view statement, const std::function<bool(const data::Rows& row)>& visit) override;
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override;
  data::Answers runTogether(std::span<const data::Command> commands) override;
  void handOver(const data::AsRead& read) override { read_ = read; }
  data::SearchPage search(const data::SearchRequest& request) override;
  [[nodiscard]] std::vector<std::string> takeNews() override;
  [[nodiscard]] bool answersLate() const override { return true; }

 private:
  struct Manner {
    bool onlyReads = true;
    std::function<bool()> cancelled = {};  ///< asked here too: the engine may not hear it
  };

  /// Has `work` done on the thread of the engine; it is copied there, and may outlive the call.
  template <typename Work>
  auto ask(const Manner& manner, Work work);
  [[nodiscard]] ConnectionLine& ready(const Manner& manner);
  /// Waits until the line has done what it is at. Throws `failure`, which it may have come to by then, and
  /// where the line isn't waited for any longer.
  void await(const Manner& manner, const std::exception_ptr& failure);
  /// Shows nothing until the procedure has waited for so long. Gives whether the person gave up.
  [[nodiscard]] bool waitFor(const Manner& manner, std::chrono::steady_clock::time_point begun);
  /// The part of the wait that shows. Gives whether the person gave up.
  [[nodiscard]] bool waitLonger(const Manner& manner, std::chrono::steady_clock::time_point begun);
  void leave();

  DatabaseWaits& waits_;
  Background& background_;
  Make make_;
  std::optional<data::AsRead> read_;  ///< handed over, until the next command
  std::shared_ptr<ConnectionLine> line_;
};

}  // namespace ledgertree::shell
