#include "text/search_words.h"

#include <algorithm>

#include "text/fold.h"
#include "text/utf8.h"

namespace ledgertree::text {
namespace {

/// A folded text with the origin of each byte.
struct Traced {
  explicit Traced(std::string_view text) {
    std::string letter;
    for (std::size_t place = 0; place < text.size();) {
      const std::size_t begin = place;
      static_cast<void>(nextCharacter(text, place));
      fold(text.substr(begin, place - begin), letter);
      folded += letter;
      origins.insert(origins.end(), letter.size(), {begin, place});
    }
  }

  /// Adds every occurrence of a word.
  void find(std::string_view word, std::vector<Stretch>& found) const {
    for (std::size_t at = folded.find(word); at != std::string::npos;
         at = folded.find(word, at + word.size()))
      found.push_back({origins[at].begin, origins[at + word.size() - 1].end});
  }

  std::string folded;
  std::vector<Stretch> origins;  ///< of each byte
};

}  // namespace

SearchWords::SearchWords(std::string_view typed) {
  std::string word;
  std::size_t begin = 0;
  for (std::size_t place = 0; begin < typed.size(); begin = place) {
    std::size_t end = begin;
    while (place < typed.size() && !isBlank(nextCharacter(typed, place))) end = place;
    fold(typed.substr(begin, end - begin), word);
    if (!word.empty()) words.push_back(word);
    whole += word;
  }
  std::sort(words.begin(), words.end(),
            [](auto& a, auto& b) { return a.size() != b.size() ? a.size() > b.size() : a < b; });
  words.erase(std::unique(words.begin(), words.end()), words.end());
}

std::vector<Stretch> stretchesOf(const SearchWords& words, std::string_view text) {
  const Traced traced(text);
  std::vector<Stretch> found;
  if (!words.whole.empty()) traced.find(words.whole, found);
  if (!found.empty()) return found;
  for (const std::string& word : words.words) traced.find(word, found);
  std::sort(found.begin(), found.end(), [](auto& a, auto& b) { return a.begin < b.begin; });
  std::vector<Stretch> apart;
  for (const Stretch& next : found) {
    if (!apart.empty() && next.begin <= apart.back().end)
      apart.back().end = std::max(apart.back().end, next.end);
    else
      apart.push_back(next);
  }
  return apart;
}

}  // namespace ledgertree::text
