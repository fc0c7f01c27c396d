#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::text {

/// Finds the texts whose folded form begins with a folded text, in a list that is in the order of the bytes
/// (ASCII letters in small ones), without a look at all that lie between them.
class FoldedBeginning {
 public:
  enum class Place {
    Here,    ///< the text begins so
    Behind,  ///< the next one that does isn't ahead of seek()
    Nowhere  ///< none is behind the text
  };

  /// `whole`: nothing stands behind the beginning but what folding drops.
  FoldedBeginning(std::string_view folded, bool whole);
  /// Where the first of them is, from a text of the list on.
  [[nodiscard]] Place look(std::string_view text);
  /// From where to read on, always behind the text that was looked at.
  [[nodiscard]] const std::string& seek() const { return seek_; }

 private:
  using Forms = std::vector<std::string>;
  /// A character of the text that fits.
  struct Step {
    std::size_t place;   ///< its first byte
    std::size_t length;  ///< its bytes
    std::size_t letter;  ///< the letters of the beginning that are ahead of it
  };

  /// Where the next one is behind a place at which what is there doesn't fit.
  [[nodiscard]] Place goBehind(std::size_t letter, std::size_t place);

  std::vector<Forms> letters_;  ///< in all their forms; none at the end
  bool whole_;
  std::string text_;
  std::vector<Step> steps_;
  std::string seek_;
};

}  // namespace ledgertree::text
