#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "coding/recoding/numbering.h"
#include "data/dten.h"
#include "shell/preview.h"

namespace ledgertree::coding {

/// What a recoding would do to the chart, ahead of its first row.
struct Outlook {
  /// The lines of documents of an account, which were written while it had its old code.
  struct Documents {
    std::int64_t lines = 0;
    std::int64_t first = 0;  ///< the least ID of a document among them
  };

  std::vector<NewCode> codes = {};
  std::map<std::size_t, std::string> collisions = {};  ///< by the place in `codes`: who else has the code
  std::map<std::int32_t, Documents> documents = {};    ///< by the account
  bool tooLong = false;                                ///< a code is, so that none is written

  /// Whether the accounts and those that collide with them are the same. Documents come all the time.
  [[nodiscard]] bool sameChart(const Outlook& other) const {
    return codes == other.codes && collisions == other.collisions;
  }
};

/// Looks for accounts outside the series, and earlier ones in it, that have a code which is about to be
/// given: a few hundred codes a question, a hundred questions a packet. Throws data::DataError.
[[nodiscard]] std::map<std::size_t, std::string> collisionsOf(data::DtEn& gateway,
                                                              const std::vector<NewCode>& codes);
/// The outlook of these codes. Throws data::DataError.
[[nodiscard]] Outlook outlookOf(data::DtEn& gateway, const Numbering& numbering, std::vector<NewCode> codes);

/// As a person sees it; `outlook` outlives what is given. Throws data::DataError.
[[nodiscard]] shell::Preview previewOf(data::DtEn& gateway, const Outlook& outlook, std::string command);

}  // namespace ledgertree::coding
