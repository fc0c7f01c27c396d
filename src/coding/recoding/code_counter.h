#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ledgertree::coding {

/// The running number of a recoding. It starts at a sample of the first number, whose leading zeros and width
/// it keeps: 098, 099, 100.
///
/// A digit 1 stands ahead of the number in the arithmetic and never leaves this class. A number that is past
/// its width starts again from zeros (98, 99, 00), since only that leading digit moves on; after nine such
/// rounds the number grows by one digit.
class CodeCounter {
 public:
  static constexpr std::size_t kLongestSample = 14;

  /// Nothing for a sample that isn't made of digits alone, or of more than kLongestSample of them.
  [[nodiscard]] static std::optional<CodeCounter> startingAt(std::string_view sample);

  /// The number as it goes into a code.
  [[nodiscard]] std::string number() const;
  void raise() { ++count_; }

 private:
  explicit CodeCounter(std::int64_t count) : count_(count) {}

  std::int64_t count_;  ///< with the digit ahead of the number
};

}  // namespace ledgertree::coding
