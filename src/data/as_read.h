#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "data/account.h"
#include "data/rows.h"

namespace ledgertree::data {

/// The account and its chosen parent as the user read them. Passed before a write
/// (Connection::handOver), it is what the database must still hold: otherwise the write fails with one
/// of the numbers below, and nothing of it is done.
struct AsRead {
  std::optional<Account> account = {};  ///< nothing before an insert; the creation date isn't compared
  std::int32_t parentID = -1;           ///< below 1: none, or its code is unknown
  std::string parentCode = {};
  /// That parent's own parent: its ID, below 1 at the top; nothing if unknown.
  std::optional<std::int32_t> parentsParent = {};
};

/// Somebody else changed the account, or its relation.
inline constexpr int kAccountChanged = 51011;
/// Somebody else moved the parent, or changed its code.
inline constexpr int kParentChanged = 51012;

/// Whether an edit writes the field. Those fields are compared and merged.
[[nodiscard]] constexpr bool isEdited(const AccountField& field) {
  return field.update != kNotTaken && !(field.member == AccountMember(&Account::id));
}
[[nodiscard]] bool sameIn(const AccountMember& member, const Account& one, const Account& other);

/// An account as it will be read after the write: -1 for none wherever null is stored.
[[nodiscard]] Account asStored(Account account);

/// Compares what was read with the rows that `rowsOf` returns for a statement, for an engine that compares by
/// itself; a deleted account or parent is left to the write to report. Throws DataError(Reason::Constraint)
/// with one of the numbers, and what `rowsOf` throws.
void requireAsRead(const AsRead& read, const std::function<Rows(const std::string& statement)>& rowsOf);

}  // namespace ledgertree::data
