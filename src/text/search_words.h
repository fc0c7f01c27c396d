#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::text {

/// What a person typed to search for: words, in any order, letters folded (see fold.h).
struct SearchWords {
  SearchWords() = default;
  explicit SearchWords(std::string_view typed);

  std::string whole;               ///< all of it in one piece, as it was typed
  std::vector<std::string> words;  ///< each once, the longest first
};

/// A piece of a text, in bytes.
struct Stretch {
  std::size_t begin;
  std::size_t end;

  bool operator==(const Stretch&) const = default;
};

/// Where the words stand in a text, in its order and without overlaps: what was typed in one piece where the
/// text has it so, else each word wherever it is. What folding drops inside a word belongs to its stretch.
[[nodiscard]] std::vector<Stretch> stretchesOf(const SearchWords& words, std::string_view text);

}  // namespace ledgertree::text
