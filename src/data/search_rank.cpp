#include "data/search_rank.h"

#include "text/characters.h"

namespace ledgertree::data {

SearchRank::SearchRank(const SearchRequest& request)
    : order_(request.order), columns_(request.columns.size()) {
  text::fold(text::trimmed(request.text), text_);
}

SearchRank::Rank SearchRank::bestOf(std::size_t column) const {
  if (order_ == SearchOrder::Key) return Holds;
  if (order_ == SearchOrder::Name) return column == 0 ? Begins : Holds;
  return column == 0 ? Whole : Beside;
}

SearchRank::Rank SearchRank::ofPlace(std::size_t column, std::size_t place) const {
  if (place != 0 || order_ == SearchOrder::Key) return Holds;
  if (column != 0) return order_ == SearchOrder::Code ? Beside : Holds;
  const bool whole = order_ == SearchOrder::Code && text::trimmed(folded_).size() == text_.size();
  return whole ? Whole : Begins;
}

}  // namespace ledgertree::data
