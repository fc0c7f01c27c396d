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

/// What a recoding would do to the chart, computed before the first row is written.
struct Outlook {
  /// The document lines of an account, written under its old code.
  struct Documents {
    std::int64_t lines = 0;
    std::int64_t first = 0;  ///< the lowest ID of a document with such a line
  };

  std::vector<NewCode> codes = {};
  std::map<std::size_t, std::string> collisions = {};  ///< by index in `codes`: what else has the code
  std::map<std::int32_t, Documents> documents = {};    ///< by account ID
  bool tooLong = false;                                ///< some code is, so no code may be written

  /// Whether the accounts and their collisions are the same. Documents are ignored: new ones arrive all the
  /// time.
  [[nodiscard]] bool sameChart(const Outlook& other) const {
    return codes == other.codes && collisions == other.collisions;
  }
};

/// Looks for accounts outside the series that have a code which is about to be given, and for codes that the
/// series gives twice: 200 codes per query, and up to a hundred queries per round trip. Throws
/// data::DataError.
[[nodiscard]] std::map<std::size_t, std::string> collisionsOf(data::DtEn& gateway,
                                                              const std::vector<NewCode>& codes);
/// The outlook for these codes. Throws data::DataError.
[[nodiscard]] Outlook outlookOf(data::DtEn& gateway, const Numbering& numbering, std::vector<NewCode> codes);

/// The outlook as shown to the user; `outlook` outlives the returned preview. Throws data::DataError.
[[nodiscard]] shell::Preview previewOf(data::DtEn& gateway, const Outlook& outlook, std::string command);

}  // namespace ledgertree::coding
