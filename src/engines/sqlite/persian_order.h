#pragma once

#include <sqlite3.h>

#include <string_view>

namespace ledgertree::engines::sqlite {

/// The collation by which names are put in order: as a Persian dictionary does, where ي and ك are ی and ک,
/// and joiners, letter case and the kind of digits don't count.
///
/// No table, index, view or trigger of a file is to name it. Other programs, which lack it, couldn't write to
/// that file.
inline constexpr std::string_view kPersianOrder = "persian_order";

/// Gives a connection that collation as soon as a statement names it. Throws data::DataError where SQLite
/// refuses that. Where ICU lacks what it takes those statements fail.
void addPersianOrder(sqlite3* database);

/// Below 0 where that collation has `a` ahead of `b`, 0 where they are in the same place. Throws
/// std::runtime_error where ICU lacks what it takes.
[[nodiscard]] int compareNames(std::string_view a, std::string_view b);

}  // namespace ledgertree::engines::sqlite
