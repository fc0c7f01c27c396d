#pragma once

#include <cstdint>
#include <string>

#include "data/dten.h"

namespace ledgertree::accounts {

/// What keeps an account from being deleted, as far as the chart and the documents know.
struct Dependants {
  std::int64_t children = 0;
  std::int32_t firstChild = -1;  ///< the child of the least code
  std::string firstChildCode = {};
  std::string firstChildTitle = {};
  std::int64_t lines = 0;          ///< document lines on the account
  std::string firstDocument = {};  ///< the least ID of a document among those
  std::string firstDate = {};      ///< its date
};

/// One question for the numbers, and one for the first of each kind that there is. Throws data::DataError.
[[nodiscard]] Dependants dependantsOf(data::DtEn& gateway, std::int32_t account);

/// The same for a person, a line for each kind.
[[nodiscard]] std::string inWords(const Dependants& dependants);

}  // namespace ledgertree::accounts
