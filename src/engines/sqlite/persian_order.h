#pragma once

#include <sqlite3.h>

#include <string_view>

namespace ledgertree::engines::sqlite {

/// The collation for sorting names: in the order of a Persian dictionary, where ي and ك equal ی and ک, and
/// joiners, letter case and the kind of digits don't count.
///
/// No table, index, view or trigger of a file may name it: other
/// programs, which lack it, couldn't write to that file.
inline constexpr std::string_view kPersianOrder = "persian_order";

/// Provides a connection with that collation once a statement names it. Throws data::DataError if SQLite
/// refuses. If ICU lacks the data, those statements fail.
void addPersianOrder(sqlite3* database);

/// Negative if that collation sorts `a` before `b`, 0 if they are equal in it.
/// Throws std::runtime_error if ICU lacks the data.
[[nodiscard]] int compareNames(std::string_view a, std::string_view b);

}  // namespace ledgertree::engines::sqlite
