#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "data/dten.h"

namespace ledgertree::accounts {

/// A new account whose insert the database never answered. It may be there: saved again under another code it
/// would be there twice. The look goes by what was sent, and only tells of an account that is there; one that
/// isn't may still be on its way.
class UnansweredSave {
 public:
  struct Sent {
    std::uint32_t record = 0;  ///< the RecordTurn of the screen that it was typed on
    std::string code;          ///< the whole one
    std::string title;
    std::int32_t parentID = -1;  ///< -1 for none
  };

  /// Whether a failed write may have been carried out all the same.
  [[nodiscard]] static bool mayBeDone(const std::exception& failure);

  void remember(Sent sent) { sent_ = std::move(sent); }
  void forget() { sent_.reset(); }
  /// Whether an account is the one in doubt, with its code or its title typed over at most. One that was
  /// begun after the record was left is another, even of the same title: going on with the one in doubt would
  /// write over it.
  [[nodiscard]] bool isAbout(const Sent& now) const;
  /// The ID of the account in doubt, if it is there now. Throws data::DataError.
  [[nodiscard]] std::optional<std::int32_t> find(data::DtEn& gateway) const;

 private:
  std::optional<Sent> sent_;
};

}  // namespace ledgertree::accounts
