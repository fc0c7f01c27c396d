#pragma once

#include <sqlite3.h>

#include <string_view>

namespace ledgertree::engines::sqlite {

/// The function that "+" becomes where no type tells whether it joins or adds.
inline constexpr std::string_view kSumFunction = "sum_or_join";

/// Gives a connection that function: of two values of which one is text it makes a text, of two numbers their
/// sum, of null null. Throws data::DataError where SQLite refuses it.
void addSumFunction(sqlite3* database);

}  // namespace ledgertree::engines::sqlite
