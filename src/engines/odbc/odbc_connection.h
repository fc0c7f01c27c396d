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

/// A connection to a database of Microsoft SQL Server, or of any other engine that `ODBC Driver` names in the
/// connection text. Statements go as they are, but for letters that the columns can't hold (see code_page.h).
///
/// A connection that breaks fails the statement that met it, with data::DataError::Reason::Connection; the
/// next one opens it anew (as it does behind a rest), and goes on trying for as long as connecting may take,
/// since a database may be on its way from one server to another. Nothing of which nobody knows whether it
/// was carried out is sent twice. What was refused for a deadlock, a lock or a conflict of versions wrote
/// nothing: it is tried kTries times in all, as long as its time-out isn't over.
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

  /// Carries out a command on the session, opened if need be. A session that broke is closed behind it. What
  /// lost against another program, and so wrote nothing, is carried out again, unless its rows are `shown` or
  /// a part of it is done.
  template <typename Work>
  auto command(Work work, const bool* shown = nullptr);
  void open();
  [[nodiscard]] bool mayComeAgain(const data::DataError& failure) const;
  /// Throws the failure that is being handled, with who holds what it wanted where the server says so.
  [[noreturn]] void tell(const data::DataError& failure);

  data::ConnectionText text_;
  std::chrono::milliseconds command_;
  Versions versions_;
  std::unique_ptr<Session> session_;
  data::Waiting waiting_;
  bool wasOpen_ = false;
  std::optional<data::AsRead> read_;            ///< handed over, until the next command
  std::shared_ptr<data::Operation> operation_;  ///< what the commands belong to; null: nothing
  Walk* walk_ = nullptr;                        ///< the innermost that runs
};

}  // namespace ledgertree::engines::odbc
