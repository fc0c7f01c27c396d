#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "data/rows.h"
#include "data/search_rank.h"

namespace ledgertree::engines::sqlite {

/// A cell of the present row.
[[nodiscard]] data::Value cellValue(sqlite3_stmt* row, int column);

/// The first of many rows in an order that no index has: only as many are kept as a page takes. The order is
/// that of their rank, then of their first column behind the ID, then of the ID; rows that agree in all three
/// are one.
class BestRows {
 public:
  using Compare = int (*)(std::string_view a, std::string_view b);
  using Rank = data::SearchRank::Rank;

  /// The place of a row.
  struct Place {
    Rank rank = Rank::None;
    std::string text;
    std::int64_t id = 0;
  };

  /// `behind`: only rows behind this place count.
  BestRows(std::size_t limit, Compare compare, std::optional<Place> behind = std::nullopt)
      : limit_(limit), behind_(std::move(behind)), rows_(Less{compare}) {}

  /// Takes in the present row of a statement, whose first column is the ID.
  void meet(Rank rank, sqlite3_stmt* row);
  [[nodiscard]] bool isFull() const { return rows_.size() == limit_; }
  /// The place of the last one. Not without rows.
  [[nodiscard]] const Place& last() const { return rows_.rbegin()->place; }
  void copyTo(data::Rows& rows) const;

 private:
  struct Row {
    Place place;
    std::vector<data::Value> cells;
  };
  struct View {
    Rank rank;
    std::string_view text;
    std::int64_t id;
    View(const Place& place)
        : View(place.rank, place.text, place.id) {}  // NOLINT(google-explicit-constructor)
    View(const Row& row) : View(row.place) {}        // NOLINT(google-explicit-constructor)
    View(Rank of, std::string_view at, std::int64_t key) : rank(of), text(at), id(key) {}
  };
  struct Less {
    using is_transparent = void;
    Compare compare;
    bool operator()(const View& a, const View& b) const;
  };

  std::size_t limit_;
  std::optional<Place> behind_;
  std::set<Row, Less> rows_;
};

}  // namespace ledgertree::engines::sqlite
