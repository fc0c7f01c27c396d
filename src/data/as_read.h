#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "data/account.h"
#include "data/rows.h"

namespace ledgertree::data {

/// What a person has read of an account and of the parent that was chosen for it. Handed over ahead of a
/// write (Connection::handOver), it is what the database has to hold still: else the write fails, with one of
/// the numbers below, and nothing of it is done.
struct AsRead {
  std::optional<Account> account = {};  ///< nothing ahead of an insert; the day of creation isn't compared
  std::int32_t parentID = -1;           ///< below 1: there is none, or nobody knows its code
  std::string parentCode = {};
  /// Where that parent stood: the ID of its own parent, below 1 at the top; nothing where nobody knows.
  std::optional<std::int32_t> parentsParent = {};
};

/// Somebody else changed the account, or its relation.
inline constexpr int kAccountChanged = 51011;
/// Somebody else moved the parent, or gave it another code.
inline constexpr int kParentChanged = 51012;

/// Whether an edit writes the field. These are the fields that are compared and merged.
[[nodiscard]] constexpr bool isEdited(const AccountField& field) {
  return field.update != kNotTaken && !(field.member == AccountMember(&Account::id));
}
[[nodiscard]] bool sameIn(const AccountMember& member, const Account& one, const Account& other);

/// An account as a reading behind its write gives it: none is -1 wherever it is stored as null.
[[nodiscard]] Account asStored(Account account);

/// Compares what was read with what `rowsOf` gives for a statement, for an engine that compares by itself; an
/// account or a parent that is gone is left to the write. Throws DataError(Reason::Constraint) with one of
/// the numbers, and what `rowsOf` throws.
void requireAsRead(const AsRead& read, const std::function<Rows(const std::string& statement)>& rowsOf);

}  // namespace ledgertree::data
