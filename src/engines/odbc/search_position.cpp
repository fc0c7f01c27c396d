#include "engines/odbc/search_position.h"

#include <charconv>

#include "data/data_error.h"
#include "data/quote_text.h"

namespace ledgertree::engines::odbc {
namespace {

std::string_view takeWord(std::string_view& text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) refuseContinuation();
  const std::string_view word = text.substr(0, blank);
  text.remove_prefix(blank + 1);
  return word;
}

template <typename Number>
void readNumber(std::string_view digits, Number& number) {
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc{} || read.ptr != digits.data() + digits.size()) refuseContinuation();
}

}  // namespace

void refuseContinuation() {
  throw data::DataError(data::DataError::Reason::Misuse, 0, "No page of a search has this continuation.");
}

std::string Position::toContinuation() const {
  return std::string{static_cast<char>(pass), static_cast<char>(kind), ' '} + std::to_string(passed) + ' ' +
         (id ? std::to_string(*id) : "-") + ' ' + value;
}

Position Position::parse(std::string_view continuation) {
  Position position;
  if (continuation.empty()) return position;
  const auto isOneOf = [&continuation](std::size_t place, std::string_view letters) {
    return letters.find(continuation[place]) != std::string_view::npos;
  };
  if (continuation.size() < 3 || !isOneOf(0, "0123") || !isOneOf(1, "snivwk")) refuseContinuation();
  position.pass = static_cast<Pass>(continuation[0]);
  position.kind = static_cast<Kind>(continuation[1]);
  continuation.remove_prefix(3);
  readNumber(takeWord(continuation), position.passed);
  const std::string_view key = takeWord(continuation);
  if (key != "-") readNumber(key, position.id.emplace());
  position.value = continuation;
  std::int64_t number = 0;
  if (position.kind == Kind::Integer) readNumber(position.value, number);
  return position;
}

std::string Position::condition(const std::string& column) const {
  std::string from = id ? "[ID] >= " + std::to_string(*id) : "";
  if (kind == Kind::Start) return {};
  if (kind == Kind::Key) return from;
  // NULL sorts before every value.
  if (kind == Kind::Null) return id ? "(" + column + " is not null or " + from + ")" : "";
  const std::string literal =
      kind == Kind::Integer ? value : (kind == Kind::Wide ? "N" : "") + data::quoteText(value);
  const std::string atLeast = column + " >= " + literal;
  return id ? atLeast + " and (" + column + " > " + literal + " or " + from + ")" : atLeast;
}

}  // namespace ledgertree::engines::odbc
