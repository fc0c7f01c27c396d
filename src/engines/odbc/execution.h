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
/// Whether a statement returns no rows, whatever its triggers select.
[[nodiscard]] bool changesRows(std::string_view statement);

/// One command on an open session, from sending it to its last result. The server may return several results,
/// with failures among them; all of them belong to the command.
class Execution {
 public:
  /// `name` is the command's name in errors: the statement, or the procedure. It outlives the execution.
  /// `longest` replaces the session's time-out.
  Execution(Session& session, std::string_view name, bool onlyReads,
            const std::function<bool()>* cancelled = nullptr,
            std::optional<std::chrono::milliseconds> longest = {});
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  [[nodiscard]] const Handle& statement() const { return statement_; }
  /// Sends a statement in UTF-8. Returns whether there is a result.
  [[nodiscard]] bool send(std::string_view text);
  /// Moves to the next result; the rest of this one is skipped.
  [[nodiscard]] bool nextResult();
  /// The following results belong to another command of a packet.
  void goOnWith(std::string_view name) { name_ = name; }
  /// Records that a call on this statement failed; the first failure counts.
  void noteFailure();
  [[nodiscard]] bool failed() const { return failure_.has_value(); }
  /// Reads to the end and throws the command's failure, if any.
  void finish();
  /// Time between these two doesn't count towards the time-out.
  void pause() { watched_.pause(); }
  void resume() { watched_.resume(); }

 private:
  Session& session_;
  std::string_view name_;
  bool onlyReads_;
  std::function<bool()> givenUp_;  ///< empty if nothing can cancel it
  Handle statement_;
  Watch::Command watched_;
  std::optional<std::vector<Record>> failure_;
  bool over_ = false;
};

}  // namespace ledgertree::engines::odbc
