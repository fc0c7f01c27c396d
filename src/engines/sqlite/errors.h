#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string_view>

#include "data/data_error.h"

namespace ledgertree::engines::sqlite {

/// A failure of SQLite as the product tells it: what a person may meet in Persian, saying what to do next,
/// what only a developer meets in SQLite's own words. `code` is an extended one.
[[nodiscard]] data::DataError engineError(int code, std::string_view engineText, std::string_view statement);
[[nodiscard]] data::DataError engineError(const SQLite::Exception& failure, std::string_view statement);
/// The failure that a connection holds.
[[nodiscard]] data::DataError lastError(sqlite3* handle, std::string_view statement);

/// A command that ran past its time-out.
[[nodiscard]] data::DataError timeOutError(std::string_view statement);
/// A search that was given up.
[[nodiscard]] data::DataError cancelledError();

}  // namespace ledgertree::engines::sqlite
