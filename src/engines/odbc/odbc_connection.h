#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "data/as_read.h"
#include "data/connection.h"
#include "data/connection_text.h"
#include "data/operation.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// A connection to Microsoft SQL Server, or to any other engine that `ODBC Driver` names in the connection
/// text. Statements are sent unchanged, except for letters that the columns can't hold (see code_page.h).
///
/// If the connection breaks, the current statement fails with data::DataError::Reason::Connection. The next
/// one reopens it (as after a rest), and keeps trying for the connection time-out, since the database may be
/// failing over to another server. A command that may have been carried out is never sent twice. A command
/// refused because of a deadlock, a lock or a version conflict wrote nothing: it is tried kTries times in
/// all, within its time-out.
class OdbcConnection final : public data::Connection {
 public:
  static constexpr int kTries = 4;

  explicit OdbcConnection(data::ConnectionText text,
                          std::chrono::milliseconds command = data::kCommandTimeOut,
                          Versions versions = Versions::Present);
  ~OdbcConnection() override;

  std::optional<data::Rows> run(std::string_view statement) override;
  data::Answers runTogether(std::span<const data::Command> commands) override;
  void walk(std::string_view statement, const std::function<bool(const data::Rows& row)>& visit) override;
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override;
  void handOver(const data::AsRead& read) override { read_ = read; }
  void belongTo(std::shared_ptr<data::Operation> operation) override { operation_ = std::move(operation); }
  data::Rows takeBack(std::int64_t operation) override;
  data::SearchPage search(const data::SearchRequest& request) override;
  void rest() override {
    if (walk_ == nullptr) session_.reset();
  }
  [[nodiscard]] bool isRemote() const override { return true; }
  void whileWaiting(data::Waiting waiting) override { waiting_ = std::move(waiting); }

 private:
  class Walk;

  /// Runs a command on the session, opening it if needed, and closes a broken session afterwards. A command
  /// that lost against another program, and so wrote nothing, is run again, unless its rows have been `shown`
  /// or part of it is done.
  template <typename Work>
  auto command(Work work, const bool* shown = nullptr);
  void open();
  [[nodiscard]] bool mayComeAgain(const data::DataError& failure) const;
  /// Rethrows the failure being handled, with the lock's holder if the server tells it.
  [[noreturn]] void tell(const data::DataError& failure);

  data::ConnectionText text_;
  std::chrono::milliseconds command_;
  Versions versions_;
  std::unique_ptr<Session> session_;
  data::Waiting waiting_;
  bool wasOpen_ = false;
  std::optional<data::AsRead> read_;            ///< passed for the next command
  std::shared_ptr<data::Operation> operation_;  ///< the commands' operation; null: none
  Walk* walk_ = nullptr;                        ///< the innermost one running
};

}  // namespace ledgertree::engines::odbc
