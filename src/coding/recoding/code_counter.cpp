#include "coding/recoding/code_counter.h"

#include <algorithm>

#include "text/characters.h"

namespace ledgertree::coding {

std::optional<CodeCounter> CodeCounter::startingAt(std::string_view sample) {
  if (sample.empty() || sample.size() > kLongestSample) return std::nullopt;
  if (!std::all_of(sample.begin(), sample.end(), text::isDigit)) return std::nullopt;
  return CodeCounter(std::stoll("1" + std::string(sample)));
}

std::string CodeCounter::number() const { return std::to_string(count_).substr(1); }

}  // namespace ledgertree::coding
