#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string_view>

#include "data/data_error.h"

namespace ledgertree::engines::sqlite {

/// An SQLite failure as a DataError: in Persian, with advice, if a user can cause it, otherwise in SQLite's
/// own words for developers. `code` is an extended one.
[[nodiscard]] data::DataError engineError(int code, std::string_view engineText, std::string_view statement);
[[nodiscard]] data::DataError engineError(const SQLite::Exception& failure, std::string_view statement);
/// The last failure on a connection.
[[nodiscard]] data::DataError lastError(sqlite3* handle, std::string_view statement);

/// A command that timed out.
[[nodiscard]] data::DataError timeOutError(std::string_view statement);
/// A search that was cancelled.
[[nodiscard]] data::DataError cancelledError();

}  // namespace ledgertree::engines::sqlite
