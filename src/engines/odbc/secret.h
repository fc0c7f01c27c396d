#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace ledgertree::engines::odbc {

/// Overwrites a text that is about to be freed.
template <typename Text>
void wipe(Text& text) {
  // A compiler may drop plain writes to memory that isn't read again.
  volatile auto* place = text.data();
  for (std::size_t left = text.size(); left != 0; --left) *place++ = {};
}

/// A text that may hold a password: it leaves no copy in memory, neither when it grows nor when it is
/// destroyed.
template <typename Letter>
class Secret {
 public:
  Secret() = default;
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;
  Secret(Secret&& other) noexcept : letters_(std::move(other.letters_)) { other.letters_.clear(); }
  Secret& operator=(Secret&& other) noexcept {
    letters_.swap(other.letters_);
    return *this;
  }
  ~Secret() { wipe(letters_); }

  Secret& operator+=(Letter letter) {
    makeRoom(1);
    letters_.push_back(letter);
    return *this;
  }
  Secret& operator+=(std::basic_string_view<Letter> text) {
    makeRoom(text.size());
    letters_.insert(letters_.end(), text.begin(), text.end());
    return *this;
  }

  [[nodiscard]] std::basic_string_view<Letter> view() const { return {letters_.data(), letters_.size()}; }

 private:
  void makeRoom(std::size_t count) {
    if (letters_.capacity() - letters_.size() >= count) return;
    std::vector<Letter> larger;
    larger.reserve((letters_.size() + count) * 2);
    larger.assign(letters_.begin(), letters_.end());
    letters_.swap(larger);
    wipe(larger);
  }

  std::vector<Letter> letters_;
};

}  // namespace ledgertree::engines::odbc
