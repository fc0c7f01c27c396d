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

/// What a recoding makes of an account.
struct NewCode {
  std::int32_t account = 0;
  std::string old;
  std::string title;
  std::string code;
  bool operator==(const NewCode&) const = default;
};

/// Whether the code has no room in its column.
[[nodiscard]] bool isTooLong(const NewCode& account);

/// A recoding that a person asks for: which accounts get which codes. What a preview shows and what is
/// written are both worked out by `codes`.
struct Numbering {
  std::string_view question;  ///< ahead of the work
  std::string command;        ///< what was asked for, so that the same is known again
  std::string accounts;       ///< the condition that its accounts meet, beside which others may
  /// Asks the database which codes the accounts would get now, in the order of their writing. Throws
  /// data::DataError.
  std::function<std::vector<NewCode>(data::DtEn& gateway)> codes;
  bool ofMother = false;  ///< the mother account on the screen may be one of them
};

/// Numbers the children of an account (-1: the top level) in the order of their codes, each with the mother's
/// code in front.
[[nodiscard]] Numbering numberingOfChildren(std::int32_t mother, const std::string& motherCode,
                                            CodeCounter counter);
/// Numbers the second level of the chart with one series of six digits, each behind its parent's code; an
/// account whose parent is gone keeps its own and uses up no number.
[[nodiscard]] Numbering numberingOfSecondLevel();

}  // namespace ledgertree::coding
