#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "data/dten.h"
#include "shell/preview.h"

namespace ledgertree::batch {

/// Totals over the descendants of an account, computed by the database.
struct Branch {
  std::int64_t accounts = 0;
  std::int64_t newest = 0;         ///< the greatest ID of them
  std::int64_t inUse = 0;          ///< how many of them have a document line
  std::int64_t lines = 0;          ///< the document lines on them
  std::int64_t firstDocument = 0;  ///< the lowest ID of a document with such a line; 0: none
  std::string firstDate = {};      ///< its date
  std::int64_t periods = 0;        ///< their rows in tblAccountPeriodAccount
  std::int64_t relations = 0;      ///< in tblAccountRelatedObjects, tblAccountRelatedClasses and its details
  bool operator==(const Branch&) const = default;
};

/// At most two queries, whatever the size of the branch. Throws data::DataError.
[[nodiscard]] Branch branchBelow(data::DtEn& gateway, std::int32_t account);

/// What deleting the descendants of `account` would do, account by account in order of ID; each page is read
/// when it is shown. `mother` names the account. Throws data::DataError.
[[nodiscard]] shell::Preview previewOf(std::shared_ptr<data::DtEn> gateway, std::int32_t account,
                                       const std::string& mother, const Branch& branch);

}  // namespace ledgertree::batch
