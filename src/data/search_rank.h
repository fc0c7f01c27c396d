#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "text/fold.h"

namespace ledgertree::data {

/// How near a row is to what a person typed, letters folded: what comes first in a search.
class SearchRank {
 public:
  enum Rank {
    Whole,   ///< SearchOrder::Code: the first column is the text
    Begins,  ///< the first column begins with it
    Beside,  ///< SearchOrder::Code: another column does
    Holds,   ///< it stands somewhere
    None     ///< it doesn't
  };

  explicit SearchRank(const SearchRequest& request);

  /// What was typed, folded, without the blanks around it.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// The rank of a row by `textOf(column)`, the place counted within SearchRequest::columns. A blank text is
  /// held by every row.
  template <typename TextOf>
  [[nodiscard]] Rank of(TextOf textOf) {
    if (text_.empty()) return Holds;
    Rank rank = None;
    for (std::size_t column = 0; column < columns_; ++column) {
      if (rank != None && rank <= bestOf(column)) break;
      text::fold(textOf(column), folded_);
      const std::size_t place = folded_.find(text_);
      if (place != std::string::npos) rank = std::min(rank, ofPlace(column, place));
    }
    return rank;
  }

 private:
  /// The best that a row can still become from a column on.
  [[nodiscard]] Rank bestOf(std::size_t column) const;
  /// The rank by one column, where the text stands at a place of it.
  [[nodiscard]] Rank ofPlace(std::size_t column, std::size_t place) const;

  SearchOrder order_;
  std::size_t columns_;
  std::string text_;
  std::string folded_;
};

}  // namespace ledgertree::data
