#include "engines/sqlite/best_rows.h"

#include <iterator>
#include <utility>

#include "engines/sqlite/search_position.h"

namespace ledgertree::engines::sqlite {

data::Value cellValue(sqlite3_stmt* row, int column) {
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(row, column)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(row, column);
    case SQLITE_NULL:
      return data::Null{};
    default:
      return cellText(row, column);
  }
}

bool BestRows::Less::operator()(const View& a, const View& b) const {
  if (a.rank != b.rank) return a.rank < b.rank;
  const int order = compare(a.text, b.text);
  return order != 0 ? order < 0 : a.id < b.id;
}

void BestRows::meet(Rank rank, sqlite3_stmt* row) {
  const Less less = rows_.key_comp();
  const View place(rank, cellText(row, 1), sqlite3_column_int64(row, 0));
  if (isFull() && !less(place, *rows_.rbegin())) return;
  if (after_ && !less(*after_, place)) return;
  const auto next = rows_.lower_bound(place);
  if (next != rows_.end() && !less(place, *next)) return;
  Row kept{{place.rank, std::string(place.text), place.id}, {}};
  for (int column = 0; column < sqlite3_column_count(row); ++column)
    kept.cells.push_back(cellValue(row, column));
  rows_.insert(next, std::move(kept));
  if (rows_.size() > limit_) rows_.erase(std::prev(rows_.end()));
}

void BestRows::copyTo(data::Rows& rows) const {
  for (const Row& row : rows_)
    for (const data::Value& cell : row.cells) rows.addValue(cell);
}

}  // namespace ledgertree::engines::sqlite
