#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ledgertree::data {

/// An OLE DB connection text, taken apart: "Provider=SQLite;Data Source=/srv/books.db".
///
/// Keys compare without regard to letter case and to blanks around and inside them being doubled; the last of
/// several equal keys counts. A value may stand in double or single quotes, in which the quote is written
/// twice; unquoted values lose the blanks at their ends. An empty value is a value. "==" inside a key stands
/// for "=".
class ConnectionText {
 public:
  /// Throws DataError(Reason::Connection) that says at which character the text is malformed and never
  /// repeats a value: a key without "=", an empty key, a quote without its end, text behind a closing quote,
  /// a NUL.
  explicit ConnectionText(std::string_view text);

  /// The value of a key; nothing where the key isn't there.
  [[nodiscard]] std::optional<std::string> find(std::string_view key) const;
  /// The value of a key that has to be there and not be empty; throws DataError(Reason::Connection) naming
  /// the key.
  [[nodiscard]] std::string require(std::string_view key) const;
  /// The provider without its version: "SQLOLEDB" for "SQLOLEDB.1".
  [[nodiscard]] std::string provider() const;

  [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& pairs() const { return pairs_; }

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

/// Whether two texts lead to the same database for certain: they are equal, or hold the same values under the
/// same keys.
[[nodiscard]] bool sameDatabase(std::string_view text, std::string_view other);

/// A value as it has to stand in a connection text: quoted where it needs quotes.
[[nodiscard]] std::string quoteConnectionValue(std::string_view value);

}  // namespace ledgertree::data
