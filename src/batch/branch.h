#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "data/dten.h"
#include "shell/preview.h"

namespace ledgertree::batch {

/// The accounts below one, summed by the database.
struct Branch {
  std::int64_t accounts = 0;
  std::int64_t newest = 0;         ///< the greatest ID among them
  std::int64_t inUse = 0;          ///< how many of them have a document line
  std::int64_t lines = 0;          ///< the document lines on them
  std::int64_t firstDocument = 0;  ///< the least ID of a document among those; 0: there is none
  std::string firstDate = {};      ///< its date
  std::int64_t periods = 0;        ///< their rows in tblAccountPeriodAccount
  std::int64_t relations = 0;      ///< in tblAccountRelatedObjects, tblAccountRelatedClasses and its details
  bool operator==(const Branch&) const = default;
};

/// Two questions, whatever the branch holds. Throws data::DataError.
[[nodiscard]] Branch branchBelow(data::DtEn& gateway, std::int32_t account);

/// What a deletion of the accounts below one would do, account by account in the order of their IDs, each
/// page asked for when it is looked at. `mother` names that account. Throws data::DataError.
[[nodiscard]] shell::Preview previewOf(std::shared_ptr<data::DtEn> gateway, std::int32_t account,
                                       const std::string& mother, const Branch& branch);

}  // namespace ledgertree::batch
