#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "data/dten.h"

namespace ledgertree::accounts {

/// A new account whose insert the database never answered. It may exist: saving it again under another code
/// would duplicate it. The search goes by what was sent, and is conclusive only if it finds the account:
/// otherwise the insert may still be pending.
class UnansweredSave {
 public:
  struct Sent {
    std::uint32_t record = 0;  ///< the RecordTurn of the screen that it was typed on
    std::string code;          ///< the whole code
    std::string title;
    std::int32_t parentID = -1;  ///< -1 for none
  };

  /// Whether a failed write may nevertheless have been carried out.
  [[nodiscard]] static bool mayBeDone(const std::exception& failure);

  void remember(Sent sent) { sent_ = std::move(sent); }
  void forget() { sent_.reset(); }
  /// Whether an account is the one in doubt, with at most its code or its title retyped. One that was begun
  /// after the user left the record is another, even with the same title: treating it as the one in doubt
  /// would overwrite that.
  [[nodiscard]] bool isAbout(const Sent& now) const;
  /// The ID of the account in doubt if it exists by now. Throws data::DataError.
  [[nodiscard]] std::optional<std::int32_t> find(data::DtEn& gateway) const;

 private:
  std::optional<Sent> sent_;
};

}  // namespace ledgertree::accounts
