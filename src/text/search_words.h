#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::text {

/// What a user typed to search for: words, in any order, letters folded (see fold.h).
struct SearchWords {
  SearchWords() = default;
  explicit SearchWords(std::string_view typed);

  std::string whole;               ///< the whole text as typed
  std::vector<std::string> words;  ///< each once, the longest first
};

/// A piece of a text, in bytes.
struct Stretch {
  std::size_t begin;
  std::size_t end;

  bool operator==(const Stretch&) const = default;
};

/// Where the words occur in a text, in order, without overlaps: the typed text as a whole if it occurs,
/// otherwise each word. Characters that folding drops inside a word belong to its stretch.
[[nodiscard]] std::vector<Stretch> stretchesOf(const SearchWords& words, std::string_view text);

}  // namespace ledgertree::text
