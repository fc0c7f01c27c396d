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

/// A cell of the current row.
[[nodiscard]] data::Value cellValue(sqlite3_stmt* row, int column);

/// Keeps the first of many rows in an order that no index has: only as many as a page takes. The
/// order is by rank, then by the first column after the ID, then by ID; rows equal in all three are
/// one.
class BestRows {
 public:
  using Compare = int (*)(std::string_view a, std::string_view b);
  using Rank = data::SearchRank::Rank;

  /// The sort position of a row.
  struct Place {
    Rank rank = Rank::None;
    std::string text;
    std::int64_t id = 0;
  };

  /// Only rows after this position count.
  BestRows(std::size_t limit, Compare compare, std::optional<Place> after = std::nullopt)
      : limit_(limit), after_(std::move(after)), rows_(Less{compare}) {}

  /// Adds the current row of a statement, whose first column is the ID.
  void meet(Rank rank, sqlite3_stmt* row);
  [[nodiscard]] bool isFull() const { return rows_.size() == limit_; }
  /// The position of the last row kept. There must be one.
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
  std::optional<Place> after_;
  std::set<Row, Less> rows_;
};

}  // namespace ledgertree::engines::sqlite
