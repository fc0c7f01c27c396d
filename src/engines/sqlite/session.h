#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engines/sqlite/file_identity.h"
#include "engines/sqlite/operation_marks.h"
#include "engines/sqlite/plans.h"
#include "engines/sqlite/procedures.h"
#include "engines/sqlite/view_search.h"
#include "engines/sqlite/watch.h"

namespace ledgertree::engines::sqlite {

/// The statements of a transaction, prepared once.
struct Transaction {
  explicit Transaction(SQLite::Database& database)
      : begin(database, "begin immediate"), commit(database, "commit"), rollback(database, "rollback") {}

  SQLite::Statement begin;
  SQLite::Statement commit;
  SQLite::Statement rollback;
};

/// An open database file, treated as untrusted: it has the present schema, after an upgrade if necessary,
/// uses write-ahead logging, and its changes are on disk when a statement returns.
class Session {
 public:
  /// Refuse: the file was already open in this process, so its tree needs no further check either.
  enum class Missing { Create, Refuse };

  /// Opens a file; a missing one is created or refused, its folder must exist. Throws data::DataError naming
  /// the file: no such folder, a folder instead of a file, no database, a newer schema, another program's
  /// database, read-only, or locked by another program for longer than `timeOut`.
  Session(std::string path, Missing missing, std::chrono::milliseconds timeOut);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Throws data::DataError(Connection) if the file has been deleted or replaced; the session is then
  /// useless. Checks the file system if the last check was some time ago, or if `always`.
  void requireFile(Watch::Clock::time_point now, bool always);

  [[nodiscard]] SQLite::Database& database() { return database_; }
  [[nodiscard]] sqlite3* handle() { return database_.getHandle(); }
  [[nodiscard]] Watch& watch() { return watch_; }
  [[nodiscard]] Plans& plans() { return plans_; }
  [[nodiscard]] Transaction& transaction() { return transaction_; }
  [[nodiscard]] ProcedureRunner& procedures() { return procedures_; }
  [[nodiscard]] OperationMarks& marks() { return marks_; }
  [[nodiscard]] ViewSearch& searches() { return searches_; }
  /// What to tell the user about a file that was upgraded, once.
  [[nodiscard]] std::vector<std::string> takeNews() { return std::exchange(news_, {}); }
  /// Whether requireFile has failed.
  [[nodiscard]] bool lost() const { return lost_; }

 private:
  void configure(Missing missing, std::chrono::milliseconds timeOut);

  std::string path_;
  Watch watch_;
  SQLite::Database database_;
  Plans plans_;
  Transaction transaction_;
  ProcedureRunner procedures_;
  OperationMarks marks_;
  ViewSearch searches_;
  std::optional<FileIdentity> identity_;
  std::vector<std::string> news_;
  Watch::Clock::time_point lastLook_{};
  bool lost_ = false;
};

}  // namespace ledgertree::engines::sqlite
