#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "data/connection.h"
#include "data/connection_text.h"
#include "data/operation.h"
#include "engines/odbc/code_page.h"
#include "engines/odbc/driver_text.h"
#include "engines/odbc/errors.h"
#include "engines/odbc/handle.h"
#include "engines/odbc/watch.h"

namespace ledgertree::engines::odbc {

/// The schema versions that a connection accepts: the program's own, or, for the installer, any.
enum class Versions { Present, Any };

/// An open connection, in UTF-16, with each statement its own transaction.
class Session {
 public:
  /// Throws DataError(Reason::Connection), never with the password, if the server can't be reached or refuses
  /// the user, and for a chart of another version. `command` is the time-out of every statement.
  Session(const data::ConnectionText& text, std::chrono::milliseconds command, Versions versions);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  [[nodiscard]] const Handle& connection() const { return connection_; }
  [[nodiscard]] Watch& watch() { return watch_; }
  [[nodiscard]] Dialect dialect() const { return dialect_; }
  [[nodiscard]] CodePage codePage() const { return codePage_; }
  [[nodiscard]] std::chrono::milliseconds commandTimeOut() const { return command_; }
  /// Whether the connection is unusable, as far as the driver knows or after giveUp().
  [[nodiscard]] bool dead() const;
  void giveUp() { givenUp_ = true; }
  /// Whether the chart keeps a history, as last seen.
  [[nodiscard]] bool keepsHistory() const { return keepsHistory_; }
  void seeHistory(bool keeps) { keepsHistory_ = keeps; }
  /// Whether the server's session context holds the operation; null: none.
  [[nodiscard]] bool knows(const std::shared_ptr<data::Operation>& operation) const {
    return isOperationKnown_ && operation_ == operation;
  }
  void knowOperation(std::shared_ptr<data::Operation> operation) {
    operation_ = std::move(operation);
    isOperationKnown_ = true;
  }
  void forgetOperation() { isOperationKnown_ = false; }
  /// The one waiting for the commands; it outlives them.
  void whileWaiting(const data::Waiting& waiting) { waiting_ = &waiting; }
  [[nodiscard]] const data::Waiting* waiting() const { return waiting_; }

 private:
  void open(const data::ConnectionText& text);
  /// Returns the failure.
  [[nodiscard]] std::optional<data::DataError> connect(const data::ConnectionText& text,
                                                       const DriverText& driver);
  void prepareServer(Versions versions);

  Environment environment_;
  Handle connection_;
  Watch watch_;
  Dialect dialect_ = Dialect::Other;
  CodePage codePage_ = CodePage::Unicode;
  std::chrono::milliseconds command_;
  bool givenUp_ = false;
  const data::Waiting* waiting_ = nullptr;
  bool keepsHistory_ = false;
  bool isOperationKnown_ = true;
  std::shared_ptr<data::Operation> operation_;  ///< the one in the server's session context
};

}  // namespace ledgertree::engines::odbc
