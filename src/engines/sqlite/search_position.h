#pragma once

#include <sqlite3.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace ledgertree::engines::sqlite {

/// The text of a cell; empty for NULL. Valid until the next step.
[[nodiscard]] std::string_view cellText(sqlite3_stmt* row, int column);

/// Throws data::DataError(Misuse): no page returned this continuation.
[[noreturn]] void refuseContinuation();

/// Parses a complete text as a number.
template <typename Number>
void readNumber(std::string_view digits, Number& number) {
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc{} || read.ptr != digits.data() + digits.size()) refuseContinuation();
}

/// Removes a number and the blank after it from the front of a continuation.
template <typename Number>
void takeNumber(std::string_view& continuation, Number& number) {
  const std::size_t blank = continuation.find(' ');
  if (blank == std::string_view::npos) refuseContinuation();
  readNumber(continuation.substr(0, blank), number);
  continuation.remove_prefix(blank + 1);
}

/// The position of a scan: its pass, the value of its column, and how many rows with that value are done.
/// Rows with equal values come in index order.
struct Position {
  /// The passes of a search; those from Whole to Holds follow one another, without repeating rows.
  enum class Pass : char {
    Key = 'k',           ///< all hits, by ID
    Whole = 'w',         ///< codes that are the text
    Begins = 'b',        ///< codes that begin with it
    Beside = 's',        ///< names that do, if few: all of them at once
    BesideByCode = 'c',  ///< names that do, if many
    Holds = 'h',         ///< the rest
  };

  explicit Position(Pass of = Pass::Key) : pass(of) {}

  Pass pass;
  int type = 0;  ///< SQLITE_INTEGER, ...; 0 before the first row
  std::string text;
  std::int64_t integer = 0;
  double real = 0;
  std::int64_t passed = 0;

  /// Advances to the current row. False if its value differs from that of the row before.
  bool goPast(sqlite3_stmt* row, int column);
  /// Binds the value as the first parameter, if there is one.
  void bind(sqlite3_stmt* statement) const;

  /// "<pass><type> <passed> <value>".
  [[nodiscard]] std::string toContinuation() const;
  /// Throws data::DataError(Misuse) for a text that no page returned.
  static Position parse(std::string_view continuation);

 private:
  [[nodiscard]] bool isAt(sqlite3_stmt* row, int column, int type) const;
};

}  // namespace ledgertree::engines::sqlite
