#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "text/fold.h"
#include "text/search_words.h"

namespace ledgertree::data {

/// How near a row is to what a person typed, letters folded: what comes first in a search. The words may
/// stand in any order and in any columns; "is" and "begins" are said of all of them in one piece, as typed.
class SearchRank {
 public:
  enum Rank {
    Whole,   ///< SearchOrder::Code: the first column is the text
    Begins,  ///< the first column begins with it
    Beside,  ///< SearchOrder::Code: another column does
    Holds,   ///< every word stands somewhere
    None     ///< one doesn't
  };

  explicit SearchRank(const SearchRequest& request);

  [[nodiscard]] const text::SearchWords& words() const { return words_; }
  /// What was typed, in one piece.
  [[nodiscard]] const std::string& text() const { return words_.whole; }
  /// Whether a row ranks by the beginning of a column, the place counted within SearchRequest::columns.
  [[nodiscard]] bool ranksBeginningOf(std::size_t column) const {
    return order_ == SearchOrder::Code || (order_ == SearchOrder::Name && column == 0);
  }
  /// The rank of a row by `textOf(column)`. A blank text is held by every row.
  template <typename TextOf>
  [[nodiscard]] Rank of(TextOf textOf) {
    if (text().empty()) return Holds;
    if (isSeveral()) missing_.assign(words_.words.begin(), words_.words.end());
    Rank rank = None;
    for (std::size_t column = 0; column < columns_; ++column) {
      if (rank != None && rank <= bestOf(column)) break;
      text::fold(textOf(column), folded_);
      const std::size_t place = folded_.find(text());
      if (place == 0 && ranksBeginningOf(column))
        rank = std::min(rank, ofBeginning(column));
      else if (place != std::string::npos || (isSeveral() && rank == None && holdsTheRest()))
        rank = std::min(rank, Holds);
    }
    return rank;
  }

 private:
  /// Not where one word was typed once.
  [[nodiscard]] bool isSeveral() const { return words_.words.front().size() != text().size(); }
  /// Whether no word is missing any more, with those of this column.
  [[nodiscard]] bool holdsTheRest();
  /// The best that a row can still become from a column on.
  [[nodiscard]] Rank bestOf(std::size_t column) const;
  /// The rank by a column that begins with the text.
  [[nodiscard]] Rank ofBeginning(std::size_t column) const;

  SearchOrder order_;
  std::size_t columns_;
  text::SearchWords words_;
  std::vector<std::string_view> missing_;
  std::string folded_;
};

}  // namespace ledgertree::data
