#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/odbc/errors.h"
#include "engines/odbc/handle.h"
#include "engines/odbc/session.h"
#include "engines/odbc/watch.h"

namespace ledgertree::engines::odbc {

/// Throws data::DataError(Misuse) for a statement that isn't clean (see characters.h).
void requireCleanStatement(std::string_view text);
/// Statements that give no rows, whatever their triggers select.
[[nodiscard]] bool changesRows(std::string_view statement);

/// One command on an open session, from its sending to its last result. The server may send several results,
/// with failures among them: what comes later is as much a part of the command as what comes first.
class Execution {
 public:
  /// `name` is what an error calls the command: the statement, or the procedure. It outlives the
  /// execution. `longest` takes the place of the session's time-out.
  Execution(Session& session, std::string_view name, bool onlyReads,
            const std::function<bool()>* cancelled = nullptr,
            std::optional<std::chrono::milliseconds> longest = {});
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  [[nodiscard]] const Handle& statement() const { return statement_; }
  /// Sends a statement in UTF-8. True where there is a result to look at.
  [[nodiscard]] bool send(std::string_view text);
  /// Goes to the next result; what is left of this one is passed over.
  [[nodiscard]] bool nextResult();
  /// The results from here on belong to another command of a packet.
  void goOnWith(std::string_view name) { name_ = name; }
  /// Notes that a call on this statement failed; the first failure is the command's.
  void noteFailure();
  [[nodiscard]] bool failed() const { return failure_.has_value(); }
  /// Reads to the end and throws the failure of the command, where there was one.
  void finish();
  /// The time between these two isn't the server's.
  void pause() { watched_.pause(); }
  void resume() { watched_.resume(); }

 private:
  Session& session_;
  std::string_view name_;
  bool onlyReads_;
  std::function<bool()> givenUp_;  ///< empty where nobody would
  Handle statement_;
  Watch::Command watched_;
  std::optional<std::vector<Record>> failure_;
  bool over_ = false;
};

}  // namespace ledgertree::engines::odbc
