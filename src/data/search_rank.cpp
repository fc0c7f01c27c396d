#include "data/search_rank.h"

namespace ledgertree::data {

SearchRank::SearchRank(const SearchRequest& request)
    : order_(request.order), columns_(request.columns.size()), words_(request.text) {}

bool SearchRank::holdsTheRest() {
  std::erase_if(missing_, [this](std::string_view word) { return folded_.find(word) != std::string::npos; });
  return missing_.empty();
}

SearchRank::Rank SearchRank::bestOf(std::size_t column) const {
  if (!ranksBeginningOf(column)) return Holds;
  if (order_ == SearchOrder::Name) return Begins;
  return column == 0 ? Whole : Beside;
}

SearchRank::Rank SearchRank::ofBeginning(std::size_t column) const {
  if (column != 0) return Beside;
  return order_ == SearchOrder::Code && folded_.size() == text().size() ? Whole : Begins;
}

}  // namespace ledgertree::data
