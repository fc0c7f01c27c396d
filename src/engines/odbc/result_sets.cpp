#include "engines/odbc/result_sets.h"

#include <array>
#include <charconv>

#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "text goes to a driver and comes from it as UTF-16");

/// The letters of a text that are read at a time.
constexpr std::size_t kPiece = 2048;

/// The server's own types, unknown to ODBC, are read as text.
constexpr SQLSMALLINT kNarrow[] = {SQL_CHAR, SQL_VARCHAR, SQL_LONGVARCHAR};

/// Adds a decimal number as an integer or an amount of money, or, if neither can hold it, as its digits.
void addDecimalText(data::Rows& rows, std::string text) {
  // Some drivers write ".5" for a half.
  const std::size_t point = text.find('.');
  if (point == 0 || (point == 1 && text.front() == '-')) text.insert(point, "0");
  std::int64_t whole = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, whole);
  if (read.ptr == end && read.ec == std::errc{}) return rows.addInteger(whole);
  if (const auto amount = data::Money::parse(text)) return rows.addMoney(*amount);
  rows.addText(text);
}

}  // namespace

ResultSet::ResultSet(Execution& execution) : execution_(execution) {
  const SQLHSTMT statement = execution.statement().get();
  SQLSMALLINT count = 0;
  bool told = SQL_SUCCEEDED(SQLNumResultCols(statement, &count));
  std::array<char16_t, 512> name{};
  for (SQLSMALLINT place = 1; told && place <= count; ++place) {
    Column column;
    SQLSMALLINT length = 0;
    SQLULEN size = 0;
    SQLSMALLINT decimals = 0;
    SQLSMALLINT nullable = 0;
    name[0] = u'\0';
    told = SQL_SUCCEEDED(SQLDescribeColW(
        statement, static_cast<SQLUSMALLINT>(place), reinterpret_cast<SQLWCHAR*>(name.data()),
        static_cast<SQLSMALLINT>(name.size()), &length, &column.type, &size, &decimals, &nullable));
    column.name = text::utf8Text(std::u16string(name.data()));
    column.kind = kindOf(column.type);
    columns_.push_back(std::move(column));
  }
  if (told) return;
  execution.noteFailure();
  columns_.clear();
}

ResultSet::Kind ResultSet::kindOf(SQLSMALLINT type) {
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Kind::Integer;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return Kind::Decimal;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return Kind::Double;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return Kind::DateTime;
    default:
      return Kind::Text;
  }
}

bool ResultSet::isNarrowText(std::size_t column) const {
  for (const SQLSMALLINT type : kNarrow) {
    if (columns_[column].type == type) return true;
  }
  return false;
}

data::Rows ResultSet::emptyRows() const {
  data::Rows rows;
  for (const Column& column : columns_) rows.addColumn(column.name);
  return rows;
}

bool ResultSet::next() {
  const SQLRETURN result = SQLFetch(execution_.statement().get());
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) execution_.noteFailure();
  return SQL_SUCCEEDED(result);
}

bool ResultSet::addCells(data::Rows& rows) {
  for (std::size_t place = 0; place < columns_.size(); ++place) {
    if (addCell(rows, static_cast<SQLUSMALLINT>(place + 1), columns_[place].kind)) continue;
    execution_.noteFailure();
    return false;
  }
  return true;
}

void ResultSet::addRows(data::Rows& rows) {
  while (next() && addCells(rows)) continue;
}

bool ResultSet::addCell(data::Rows& rows, SQLUSMALLINT place, Kind kind) {
  SQLLEN length = 0;
  const auto read = [&](SQLSMALLINT type, SQLPOINTER into, std::size_t size) {
    return SQL_SUCCEEDED(
        SQLGetData(execution_.statement().get(), place, type, into, static_cast<SQLLEN>(size), &length));
  };
  switch (kind) {
    case Kind::Integer: {
      SQLBIGINT number = 0;
      if (!read(SQL_C_SBIGINT, &number, sizeof number)) return false;
      if (length == SQL_NULL_DATA) rows.addNull();
      if (length != SQL_NULL_DATA) rows.addInteger(number);
      return true;
    }
    case Kind::Double: {
      double number = 0;
      if (!read(SQL_C_DOUBLE, &number, sizeof number)) return false;
      if (length == SQL_NULL_DATA) rows.addNull();
      if (length != SQL_NULL_DATA) rows.addDouble(number);
      return true;
    }
    case Kind::DateTime: {
      SQL_TIMESTAMP_STRUCT time{};
      if (!read(SQL_C_TYPE_TIMESTAMP, &time, sizeof time)) return false;
      if (length == SQL_NULL_DATA) rows.addNull();
      if (length != SQL_NULL_DATA)
        rows.addDateTime({time.year, time.month, time.day, time.hour, time.minute, time.second});
      return true;
    }
    case Kind::Decimal:
      return addDecimal(rows, place);
    case Kind::Text:
      break;
  }
  return addText(rows, place);
}

bool ResultSet::addDecimal(data::Rows& rows, SQLUSMALLINT place) {
  std::array<char, 128> digits{};
  SQLLEN length = 0;
  if (!SQL_SUCCEEDED(SQLGetData(execution_.statement().get(), place, SQL_C_CHAR, digits.data(),
                                static_cast<SQLLEN>(digits.size()), &length))) {
    return false;
  }
  if (length == SQL_NULL_DATA) {
    rows.addNull();
  } else {
    addDecimalText(rows, digits.data());
  }
  return true;
}

bool ResultSet::addText(data::Rows& rows, SQLUSMALLINT place) {
  wide_.clear();
  std::array<char16_t, kPiece> piece{};
  while (true) {
    SQLLEN left = 0;
    const SQLRETURN result =
        SQLGetData(execution_.statement().get(), place, SQL_C_WCHAR, piece.data(), sizeof piece, &left);
    if (result == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(result)) return false;
    if (left == SQL_NULL_DATA) {
      rows.addNull();
      return true;
    }
    // If more is left than fits, the piece is full except for the closing NUL.
    const auto bytes = static_cast<std::size_t>(left);
    const bool more = left == SQL_NO_TOTAL || bytes > sizeof piece - sizeof(char16_t);
    wide_.append(piece.data(), more ? kPiece - 1 : bytes / sizeof(char16_t));
    if (!more) break;
  }
  text_.clear();
  text::appendUtf8(wide_, text_);
  rows.addText(text_);
  return true;
}

}  // namespace ledgertree::engines::odbc
