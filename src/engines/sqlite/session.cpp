#include "engines/sqlite/session.h"

#include <sqlite3.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "data/data_error.h"
#include "db/schema.h"
#include "engines/sqlite/errors.h"
#include "engines/sqlite/persian_order.h"
#include "engines/sqlite/sum.h"

namespace ledgertree::engines::sqlite {
namespace {

using Reason = data::DataError::Reason;

/// A vanished file is noticed at the next write, and by a read after this time at the latest.
constexpr std::chrono::milliseconds kBetweenLooks{100};

/// The time limit for upgrading a file. If it stopped
/// earlier, each opening would start over and never finish.
constexpr std::chrono::hours kTakeUp{1};

[[noreturn]] void refuseFile(Reason reason, int code, const std::string& what, const std::string& path) {
  throw data::DataError(reason, code, what + " (" + path + ")");
}

std::filesystem::path fileSystemPath(const std::string& path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

/// SQLite gives some names a special meaning: a database in memory, a URI with options.
std::string plainName(const std::string& path) {
  const bool special = path.starts_with(":") || path.starts_with("file:");
  return special ? "./" + path : path;
}

void requirePlace(const std::string& path, bool create) {
  std::error_code failure;
  const std::filesystem::path file = fileSystemPath(path);
  const auto status = std::filesystem::status(file, failure);
  if (std::filesystem::is_directory(status)) {
    refuseFile(Reason::Connection, SQLITE_CANTOPEN,
               "نشاني پايگاه داده يک پوشه است. نشاني فايل را وارد نماييد.", path);
  }
  if (std::filesystem::exists(status)) return;
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, failure)) {
    refuseFile(Reason::Connection, SQLITE_CANTOPEN,
               "پوشه فايل پايگاه داده وجود ندارد. نشاني فايل را اصلاح نماييد.", path);
  }
  if (create) return;
  refuseFile(Reason::Connection, SQLITE_CANTOPEN,
             "فايل پايگاه داده ديگر وجود ندارد. فايل را به جاي خود برگردانيد و دوباره تلاش نماييد.", path);
}

SQLite::Database openFile(const std::string& path, Session::Missing missing) {
  const bool create = missing == Session::Missing::Create;
  requirePlace(path, create);
  // One thread uses a connection at a time, so SQLite needs no lock around every call.
  const int flags = SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX | (create ? SQLite::OPEN_CREATE : 0);
  try {
    return {plainName(path), flags};
  } catch (const SQLite::Exception& failure) {
    const data::DataError told = engineError(failure, {});
    refuseFile(told.reason(), told.number(), told.what(), path);
  }
}

/// A file may come from anywhere. Its contents (views, triggers, defaults) may call only what SQLite
/// considers harmless, can't reach SQLite's own tables, and can't blow up a value, a statement or a program.
/// The depth of triggers isn't limited further: a tree of accounts may be that deep.
///
/// Functions that the product adds to a connection are created with
/// SQLITE_DIRECTONLY, so that no file can call them.
void mistrust(SQLite::Database& database) {
  struct Limit {
    int kind;
    int greatest;
  };
  constexpr Limit kLimits[] = {{SQLITE_LIMIT_LENGTH, 16'000'000},
                               {SQLITE_LIMIT_SQL_LENGTH, 1'000'000},
                               {SQLITE_LIMIT_VDBE_OP, 250'000},
                               {SQLITE_LIMIT_ATTACHED, 0},
                               {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 500}};
  sqlite3* const handle = database.getHandle();
  for (const Limit& limit : kLimits) sqlite3_limit(handle, limit.kind, limit.greatest);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
  // Keeps partial indexes (CREATE INDEX ... WHERE) from having a statement re-prepared for each new parameter
  // value: the schema would seem to have changed every time (see Plans::firstStep), without end.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
  // An unknown column name is an error, never a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  // Every page is checked whenever it is read. SQLite's default cache of 2 MB rereads the pages of a large
  // chart so often that the checks would take an eighth of a deletion, and one of 4 MB a third of a tree
  // level with a million accounts below it; with 16 MB they aren't noticeable.
  database.exec("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA cache_size = -16000");
}

}  // namespace

Session::Session(std::string path, Missing missing, std::chrono::milliseconds timeOut)
    : path_(std::move(path)),
      database_(openFile(path_, missing)),
      plans_(database_.getHandle()),
      transaction_(database_),
      procedures_(database_),
      marks_(database_),
      searches_(database_.getHandle()),
      identity_(fileIdentity(path_)) {
  try {
    configure(missing, timeOut);
  } catch (const SQLite::Exception& failure) {
    const data::DataError told = engineError(failure, {});
    refuseFile(told.reason(), told.number(), told.what(), path_);
  } catch (const data::DataError& failure) {
    refuseFile(failure.reason(), failure.number(), failure.what(), path_);
  }
}

void Session::configure(Missing missing, std::chrono::milliseconds timeOut) {
  const Watch::Clock::time_point deadline = Watch::Clock::now() + timeOut;
  Watch::Command command(watch_, deadline);
  watch_.attach(handle());
  addSumFunction(handle());
  addPersianOrder(handle());
  while (true) {
    try {
      mistrust(database_);
      if (sqlite3_db_readonly(handle(), "main") == 1) throw engineError(SQLITE_READONLY, {}, {});
      database_.exec("PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL");
      // Inspects the file before writing anything to it.
      const auto mend = missing == Missing::Create ? db::Mend::WhatLooksWrong : db::Mend::Nothing;
      auto news = db::openSchema(
          database_, [&command] { command.extend(kTakeUp); }, mend);
      if (!news.empty()) news_ = std::move(news);
      database_.exec("PRAGMA journal_mode = WAL");
      return;
    } catch (const SQLite::Exception& failure) {
      // If two programs create a file at once, SQLite gives up on some of the locks immediately.
      if (failure.getErrorCode() != SQLITE_BUSY || Watch::Clock::now() >= deadline) throw;
      sqlite3_sleep(5);
    }
  }
}

void Session::requireFile(Watch::Clock::time_point now, bool always) {
  if (!always && !lost_ && now - lastLook_ < kBetweenLooks) return;
  lastLook_ = now;
  if (fileIdentity(path_) == identity_) return;
  lost_ = true;
  refuseFile(Reason::Connection, SQLITE_READONLY_DBMOVED,
             "فايل پايگاه داده حذف يا جابجا شده است. فايل را به جاي خود برگردانيد و دوباره تلاش نماييد.",
             path_);
}

}  // namespace ledgertree::engines::sqlite
