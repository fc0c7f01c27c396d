#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace ledgertree::testing {

/// A file of tests/db/versions. A test that uses it gets the folder as LEDGERTREE_VERSIONS.
inline std::string keptVersion(const std::string& name) {
  std::ifstream file(LEDGERTREE_VERSIONS "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A database of the first version, with the rows and objects that a host and other programs left in it.
inline SQLite::Database firstVersion(const std::filesystem::path& file) {
  SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 10000);
  database.exec("pragma journal_mode = wal");
  database.exec("begin; " + keptVersion("embedded-1.sql") + "; commit; pragma wal_checkpoint(truncate)");
  return database;
}

}  // namespace ledgertree::testing
