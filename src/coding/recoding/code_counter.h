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
/// Internally a digit 1 is put before the number and never shown. A number past its width starts again from
/// zeros (98, 99, 00), since only that leading digit changes; after nine such rounds the number grows by one
/// digit.
class CodeCounter {
 public:
  static constexpr std::size_t kLongestSample = 14;

  /// Nothing for a sample with anything but digits, an empty one, or one of more than kLongestSample digits.
  [[nodiscard]] static std::optional<CodeCounter> startingAt(std::string_view sample);

  /// The number as it is put into a code.
  [[nodiscard]] std::string number() const;
  void raise() { ++count_; }

 private:
  explicit CodeCounter(std::int64_t count) : count_(count) {}

  std::int64_t count_;  ///< including the leading 1
};

}  // namespace ledgertree::coding
