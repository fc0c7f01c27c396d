#include "engines/sqlite/search_position.h"

#include <iterator>

#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {

std::string_view cellText(sqlite3_stmt* row, int column) {
  const unsigned char* const text = sqlite3_column_text(row, column);
  if (text == nullptr) return {};
  const int size = sqlite3_column_bytes(row, column);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

void refuseContinuation() {
  throw data::DataError(data::DataError::Reason::Misuse, 0, "This isn't a continuation of a search.");
}

bool Position::isAt(sqlite3_stmt* row, int column, int rowType) const {
  if (rowType != type) return false;
  if (type == SQLITE_INTEGER) return sqlite3_column_int64(row, column) == integer;
  if (type == SQLITE_FLOAT)
    return !(sqlite3_column_double(row, column) < real) && !(sqlite3_column_double(row, column) > real);
  if (type == SQLITE_NULL) return true;
  return text::equalsIgnoringCase(cellText(row, column), text);
}

bool Position::goPast(sqlite3_stmt* row, int column) {
  const int rowType = sqlite3_column_type(row, column);
  if (isAt(row, column, rowType)) {
    ++passed;
    return true;
  }
  type = rowType;
  passed = 1;
  if (type == SQLITE_INTEGER) integer = sqlite3_column_int64(row, column);
  if (type == SQLITE_FLOAT) real = sqlite3_column_double(row, column);
  if (type == SQLITE_TEXT || type == SQLITE_BLOB) text.assign(cellText(row, column));
  return false;
}

void Position::bind(sqlite3_stmt* statement) const {
  if (type == SQLITE_INTEGER) sqlite3_bind_int64(statement, 1, integer);
  if (type == SQLITE_FLOAT) sqlite3_bind_double(statement, 1, real);
  const int size = static_cast<int>(text.size());
  if (type == SQLITE_TEXT) sqlite3_bind_text(statement, 1, text.data(), size, SQLITE_TRANSIENT);
  if (type == SQLITE_BLOB) sqlite3_bind_blob(statement, 1, text.data(), size, SQLITE_TRANSIENT);
}

std::string Position::toContinuation() const {
  std::string result(1, static_cast<char>(pass));
  result += std::to_string(type) + " " + std::to_string(passed) + " ";
  if (type == SQLITE_INTEGER) return result + std::to_string(integer);
  if (type != SQLITE_FLOAT) return type == SQLITE_NULL ? result : result + text;
  char digits[64];
  const auto written = std::to_chars(std::begin(digits), std::end(digits), real);
  return result.append(digits, written.ptr);
}

Position Position::parse(std::string_view continuation) {
  if (continuation.empty() || std::string_view("kwbsch").find(continuation.front()) == std::string_view::npos)
    refuseContinuation();
  Position position(static_cast<Pass>(continuation.front()));
  continuation.remove_prefix(1);
  takeNumber(continuation, position.type);
  takeNumber(continuation, position.passed);
  if (position.type == SQLITE_INTEGER) readNumber(continuation, position.integer);
  if (position.type == SQLITE_FLOAT) readNumber(continuation, position.real);
  position.text = continuation;
  if (position.type < 0 || position.type > SQLITE_NULL || position.passed < 0) refuseContinuation();
  return position;
}

}  // namespace ledgertree::engines::sqlite
