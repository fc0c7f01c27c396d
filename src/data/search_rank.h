#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "text/fold.h"
#include "text/search_words.h"

namespace ledgertree::data {

/// How well a row matches what the user typed, letters folded: better matches come first. The words may be in
/// any order and in any columns; "is" and "begins" refer to all of them in one piece, as typed.
class SearchRank {
 public:
  enum Rank {
    Whole,   ///< SearchOrder::Code: the first column is the text
    Begins,  ///< the first column begins with it
    Beside,  ///< SearchOrder::Code: another column does
    Holds,   ///< every word occurs somewhere
    None     ///< one doesn't
  };

  explicit SearchRank(const SearchRequest& request);

  [[nodiscard]] const text::SearchWords& words() const { return words_; }
  /// The typed text as a whole.
  [[nodiscard]] const std::string& text() const { return words_.whole; }
  /// Whether a row can rank by the beginning of a column, indexed within SearchRequest::columns.
  [[nodiscard]] bool ranksBeginningOf(std::size_t column) const {
    return order_ == SearchOrder::Code || (order_ == SearchOrder::Name && column == 0);
  }
  /// The rank of a row by `textOf(column)`. Every row matches a blank text.
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
  /// False if just one word was typed.
  [[nodiscard]] bool isSeveral() const { return words_.words.front().size() != text().size(); }
  /// Whether this column provides all words still missing.
  [[nodiscard]] bool holdsTheRest();
  /// The best rank that a row can still reach from a column on.
  [[nodiscard]] Rank bestOf(std::size_t column) const;
  /// The rank for a column that begins with the text.
  [[nodiscard]] Rank ofBeginning(std::size_t column) const;

  SearchOrder order_;
  std::size_t columns_;
  text::SearchWords words_;
  std::vector<std::string_view> missing_;
  std::string folded_;
};

}  // namespace ledgertree::data
