#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "coding/recoding/code_counter.h"
#include "data/account.h"
#include "data/dten.h"

namespace ledgertree::coding {

inline constexpr std::size_t kLongestCode = data::kCodeLength;
inline constexpr std::string_view kNoWayBack =
    "پس از انجام اين عمليات، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";

/// An account's old and new code in a recoding.
struct NewCode {
  std::int32_t account = 0;
  std::string old;
  std::string title;
  std::string code;
  bool operator==(const NewCode&) const = default;
};

/// Whether the code is too long for its column.
[[nodiscard]] bool isTooLong(const NewCode& account);

/// A recoding requested by the user: which accounts get which codes. Both what a preview shows and what is
/// written come from `codes`.
struct Numbering {
  std::string_view question;  ///< to confirm before the work
  std::string command;        ///< identifies the request, to recognise a repeated one
  std::string accounts;       ///< a condition that is true for its accounts, and possibly for others
  /// Asks the database which codes the accounts would get now, in the order of writing. Throws
  /// data::DataError.
  std::function<std::vector<NewCode>(data::DtEn& gateway)> codes;
  bool ofMother = false;  ///< the mother account on the screen may be one of them
};

/// Numbers the children of an account (-1: the top level) in the order of their codes, with the mother's code
/// in front.
[[nodiscard]] Numbering numberingOfChildren(std::int32_t mother, const std::string& motherCode,
                                            CodeCounter counter);
/// Numbers the second level of the chart with one series of six digits, each after its parent's code; an
/// account whose parent is missing keeps its code and uses no number.
[[nodiscard]] Numbering numberingOfSecondLevel();

}  // namespace ledgertree::coding
