#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ledgertree::data {

/// A parsed OLE DB connection text: "Provider=SQLite;Data Source=/srv/books.db".
///
/// Keys are compared ignoring letter case, surrounding blanks and repeated blanks inside; of
/// equal keys the last one counts. A value may be in double or single quotes, with the quote
/// inside doubled; unquoted values are trimmed. An empty value is a value. "==" inside a key
/// means "=".
class ConnectionText {
 public:
  /// Throws DataError(Reason::Connection) naming the character position of the error, never repeating
  /// a value: a key without "=", an empty key, an unterminated quote, text after a closing quote, a
  /// NUL.
  explicit ConnectionText(std::string_view text);

  /// The value of a key; nothing if the key is missing.
  [[nodiscard]] std::optional<std::string> find(std::string_view key) const;
  /// The value of a key that must be present and not empty;
  /// throws DataError(Reason::Connection) naming the key.
  [[nodiscard]] std::string require(std::string_view key) const;
  /// The provider without its version: "SQLOLEDB" for "SQLOLEDB.1".
  [[nodiscard]] std::string provider() const;

  [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& pairs() const { return pairs_; }

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

/// Whether two texts certainly lead to the same database: they are
/// equal, or have the same values under the same keys.
[[nodiscard]] bool sameDatabase(std::string_view text, std::string_view other);

/// A value for use in a connection text, quoted if necessary.
[[nodiscard]] std::string quoteConnectionValue(std::string_view value);

}  // namespace ledgertree::data
