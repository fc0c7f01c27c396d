#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::text {

/// Finds the texts whose folded form begins with a folded text, in a list in byte order (ASCII letters in
/// lower case), without looking at all the texts between them.
class FoldedBeginning {
 public:
  enum class Place {
    Here,    ///< the text begins with it
    Behind,  ///< the next match is at seek() or later
    Nowhere  ///< there is no further match
  };

  /// `whole`: only characters that folding drops may follow the beginning.
  FoldedBeginning(std::string_view folded, bool whole);
  /// Where the next match is, from a text of the list on.
  [[nodiscard]] Place look(std::string_view text);
  /// Where to continue reading, always after the text last looked at.
  [[nodiscard]] const std::string& seek() const { return seek_; }

 private:
  using Forms = std::vector<std::string>;
  /// A matched character of the text.
  struct Step {
    std::size_t place;   ///< its first byte
    std::size_t length;  ///< its length in bytes
    std::size_t letter;  ///< the number of letters of the beginning before it
  };

  /// Where the next match is, after a mismatch at a position.
  [[nodiscard]] Place goBehind(std::size_t letter, std::size_t place);

  std::vector<Forms> letters_;  ///< in all their forms; empty at the end
  bool whole_;
  std::string text_;
  std::vector<Step> steps_;
  std::string seek_;
};

}  // namespace ledgertree::text
