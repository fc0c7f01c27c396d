#pragma once

#include <sqlite3.h>

#include <string_view>

namespace ledgertree::engines::sqlite {

/// The function for "+" when the types don't tell whether it joins or adds.
inline constexpr std::string_view kSumFunction = "sum_or_join";

/// Adds that function to a connection: if one of two values is text it joins them, two numbers it adds, null
/// gives null. Throws data::DataError if SQLite refuses it.
void addSumFunction(sqlite3* database);

}  // namespace ledgertree::engines::sqlite
