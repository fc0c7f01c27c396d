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

/// What makes several statements one, prepared once.
struct Transaction {
  explicit Transaction(SQLite::Database& database)
      : begin(database, "begin immediate"), commit(database, "commit"), rollback(database, "rollback") {}

  SQLite::Statement begin;
  SQLite::Statement commit;
  SQLite::Statement rollback;
};

/// A database file that is open, and opened as one that nobody vouches for: it has the present schema, if
/// need be since it was taken up, writes ahead to a log, and is on the disk when a statement returns.
class Session {
 public:
  /// Refuse: the file was open before in this process, so that its tree needs no look again either.
  enum class Missing { Create, Refuse };

  /// Opens a file; one that isn't there is created or refused, its folder has to be there. Throws
  /// data::DataError that names the file: no such folder, a folder in the place of the file, no database, a
  /// newer schema, another program's database, read-only, or held by another program past `timeOut`.
  Session(std::string path, Missing missing, std::chrono::milliseconds timeOut);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Throws data::DataError(Connection) where the file has been deleted or replaced by another one. The
  /// session is of no use then. Asks the file system where the last look is some time ago, or `always`.
  void requireFile(Watch::Clock::time_point now, bool always);

  [[nodiscard]] SQLite::Database& database() { return database_; }
  [[nodiscard]] sqlite3* handle() { return database_.getHandle(); }
  [[nodiscard]] Watch& watch() { return watch_; }
  [[nodiscard]] Plans& plans() { return plans_; }
  [[nodiscard]] Transaction& transaction() { return transaction_; }
  [[nodiscard]] ProcedureRunner& procedures() { return procedures_; }
  [[nodiscard]] OperationMarks& marks() { return marks_; }
  [[nodiscard]] ViewSearch& searches() { return searches_; }
  /// What there is to tell a person about a file that was taken up, once.
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
