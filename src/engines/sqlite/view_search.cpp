#include "engines/sqlite/view_search.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "data/data_error.h"
#include "data/view_name.h"
#include "engines/sqlite/errors.h"
#include "engines/sqlite/persian_order.h"
#include "text/characters.h"
#include "text/fold.h"
#include "tsql/tokens.h"

namespace ledgertree::engines::sqlite {
namespace {

constexpr std::size_t kRowsBetweenLooks = 32;

std::string quotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char letter : name) {
    quoted += letter;
    if (letter == '"') quoted += '"';
  }
  return quoted += '"';
}

/// The plain name of a view; a schema ahead of it means nothing here.
std::string viewName(std::string_view text) {
  const auto plain = data::plainViewName(text);
  if (!plain) tsql::refuse(text, 0, "it is no name of a view");
  tsql::Tokens tokens(*plain);
  tsql::Token name;
  // The last name is the view's.
  for (tsql::Token token = tokens.next(); token.kind != tsql::Token::Kind::End; token = tokens.next())
    name = token;
  return std::string(name.text);
}

using Order = ViewSearch::Order;

/// Where a scan stands: the value of the ordering column in the last row, and how many rows with that value
/// are behind. Rows that are equal there come in the order of their index.
struct Position {
  Order order = Order::Written;
  int type = 0;  ///< SQLITE_INTEGER, ...; 0 ahead of the first row
  std::string text;
  std::int64_t integer = 0;
  double real = 0;
  std::int64_t passed = 0;

  /// Takes in the present row. False where its value is another one than that of the row before.
  bool pass(sqlite3_stmt* row, int column);
  void bind(sqlite3_stmt* statement) const;

  [[nodiscard]] std::string toContinuation() const;
  /// Throws data::DataError(Misuse) for a text that no page gave.
  static Position parse(std::string_view continuation);

 private:
  [[nodiscard]] bool isAt(sqlite3_stmt* row, int column, int type) const;
};

std::string_view cellText(sqlite3_stmt* row, int column) {
  const unsigned char* const text = sqlite3_column_text(row, column);
  if (text == nullptr) return {};
  const int size = sqlite3_column_bytes(row, column);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

bool Position::isAt(sqlite3_stmt* row, int column, int rowType) const {
  if (rowType != type) return false;
  if (type == SQLITE_INTEGER) return sqlite3_column_int64(row, column) == integer;
  if (type == SQLITE_FLOAT)
    return !(sqlite3_column_double(row, column) < real) && !(sqlite3_column_double(row, column) > real);
  if (type == SQLITE_NULL) return true;
  const std::string_view cell = cellText(row, column);
  const bool asName = order == Order::Names && type == SQLITE_TEXT;
  return asName ? isSameName(cell, text) : text::equalsIgnoringCase(cell, text);
}

bool Position::pass(sqlite3_stmt* row, int column) {
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

/// "<type> <passed> <value>", behind a letter for an order other than the written one.
std::string Position::toContinuation() const {
  const std::string mark = order == Order::Key ? "k" : order == Order::Names ? "n" : "";
  std::string result = mark + std::to_string(type) + " " + std::to_string(passed) + " ";
  if (type == SQLITE_INTEGER) return result + std::to_string(integer);
  if (type != SQLITE_FLOAT) return type == SQLITE_NULL ? result : result + text;
  char digits[64];
  const auto written = std::to_chars(std::begin(digits), std::end(digits), real);
  return result.append(digits, written.ptr);
}

Position Position::parse(std::string_view continuation) {
  Position position;
  if (continuation.empty()) return position;
  const char mark = continuation.front();
  if (mark == 'k') position.order = Order::Key;
  if (mark == 'n') position.order = Order::Names;
  if (position.order != Order::Written) continuation.remove_prefix(1);
  const char* const last = continuation.data() + continuation.size();
  const auto read = [last](const char* from, auto& number, bool toEnd) -> const char* {
    const auto result = std::from_chars(from, last, number);
    const bool whole = toEnd ? result.ptr == last : result.ptr != last && *result.ptr == ' ';
    if (result.ec != std::errc{} || !whole) {
      throw data::DataError(data::DataError::Reason::Misuse, 0, "No page of a search has this continuation.");
    }
    return toEnd ? result.ptr : result.ptr + 1;
  };
  const char* place = read(continuation.data(), position.type, false);
  place = read(place, position.passed, false);
  if (position.type == SQLITE_INTEGER) read(place, position.integer, true);
  if (position.type == SQLITE_FLOAT) read(place, position.real, true);
  position.text.assign(place, last);
  if (position.type < SQLITE_INTEGER || position.type > SQLITE_NULL) read(last, position.type, false);
  return position;
}

std::string searchStatement(const data::SearchRequest& request, const Position& from) {
  std::string sql = "SELECT \"ID\"";
  for (const std::string& column : request.columns) sql += ", " + quotedName(column);
  sql += " FROM " + quotedName(viewName(request.view));
  std::string order = "\"ID\"";
  if (from.order != Order::Key) {
    order = quotedName(request.columns.front()).append(" COLLATE ");
    order.append(from.order == Order::Names ? kPersianOrder : "NOCASE");
  }
  // NULL comes ahead of every value, so that after a NULL nothing can be left out by its value.
  if (from.type != 0 && from.type != SQLITE_NULL) sql += " WHERE " + order + " >= ?1";
  return sql + " ORDER BY " + order;
}

void addCell(data::Rows& rows, sqlite3_stmt* row, int column) {
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
      return rows.addInteger(sqlite3_column_int64(row, column));
    case SQLITE_FLOAT:
      return rows.addDouble(sqlite3_column_double(row, column));
    case SQLITE_NULL:
      return rows.addNull();
    default:
      return rows.addText(cellText(row, column));
  }
}

/// One scan over the rows of a view, until the page is full, the slice is over or the rows are.
class Scan {
 public:
  Scan(const data::SearchRequest& request, Position from, sqlite3_stmt* statement, std::string& folded)
      : request_(request), position_(std::move(from)), statement_(statement), folded_(folded) {
    text::fold(text::trimmed(request.text), needle_);
    skip_ = position_.passed;
    position_.passed = 0;
    orderColumn_ = position_.order == Order::Key ? 0 : 1;
    columns_ = static_cast<int>(request.columns.size()) + 1;
    position_.bind(statement_);
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;
  ~Scan() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }

  /// Gives the code with which SQLite ended: SQLITE_ROW where there may be more rows.
  int run(data::SearchPage& page, Watch& watch) {
    page.rows.addColumn("ID");
    for (const std::string& column : request_.columns) page.rows.addColumn(column);
    const std::size_t limit = std::max<std::size_t>(request_.limit, 1);
    std::size_t hits = 0;
    std::size_t seen = 0;
    int result = SQLITE_ROW;
    while (hits < limit && (result = sqlite3_step(statement_)) == SQLITE_ROW) {
      if (isBehind()) continue;
      if (isHit()) {
        for (int column = 0; column < columns_; ++column) addCell(page.rows, statement_, column);
        ++hits;
      }
      if (++seen % kRowsBetweenLooks != 0) continue;
      const auto now = Watch::Clock::now();
      if (watch.mustStop(now)) return SQLITE_INTERRUPT;
      if (isSliceOver(now)) break;
    }
    if (result == SQLITE_ROW) page.continuation = position_.toContinuation();
    return result;
  }

 private:
  /// Takes in the present row; true for one that the page before has had.
  bool isBehind() {
    // Behind the last row that has the value of the page before, nothing more is to be passed over.
    if (!position_.pass(statement_, orderColumn_)) skip_ = 0;
    return position_.passed <= skip_;
  }

  /// A slice counts from its first rows on. What comes ahead of them, an order without an index or the rows
  /// that are behind, comes in every slice, and would leave no time to get on.
  bool isSliceOver(Watch::Clock::time_point now) {
    if (request_.slice.count() <= 0) return false;
    if (!sliceEnd_) sliceEnd_ = now + request_.slice;
    return now >= *sliceEnd_;
  }

  bool isHit() {
    if (needle_.empty()) return true;
    for (int column = 1; column < columns_; ++column) {
      text::fold(cellText(statement_, column), folded_);
      if (folded_.find(needle_) != std::string::npos) return true;
    }
    return false;
  }

  const data::SearchRequest& request_;
  Position position_;
  sqlite3_stmt* statement_;
  std::string& folded_;
  std::string needle_;
  std::int64_t skip_ = 0;
  std::optional<Watch::Clock::time_point> sliceEnd_;
  int orderColumn_ = 1;
  int columns_ = 1;
};

}  // namespace

data::SearchPage ViewSearch::page(const data::SearchRequest& request, Watch& watch) {
  Position from = Position::parse(request.continuation);
  if (request.columns.empty()) {
    from.order = Order::Key;
  } else if (request.continuation.empty()) {
    from.order = orderOf(request);
  }
  const std::string sql = searchStatement(request, from);
  data::SearchPage page;
  Scan scan(request, std::move(from), prepared(sql), folded_);
  const int result = scan.run(page, watch);
  if (result == SQLITE_ROW || result == SQLITE_DONE) return page;
  watch.rethrowStop(sql);
  throw lastError(database_, sql);
}

ViewSearch::Order ViewSearch::orderOf(const data::SearchRequest& request) {
  Position start;
  const std::string written = searchStatement(request, start);
  const auto known = orders_.find(written);
  if (known != orders_.end()) return known->second;
  start.order = Order::Key;
  const std::string byKey = searchStatement(request, start);
  Order order = Order::Written;
  if (!text::equalsIgnoringCase(request.columns.front(), "Code") && !isLonger(request.view, kMostNames)) {
    order = Order::Names;
  } else if (sorts(written) && !sorts(byKey) && isLonger(request.view, kLongestSorted)) {
    order = Order::Key;
  }
  if (orders_.size() >= kMostStatements) orders_.clear();
  return orders_[written] = order;
}

bool ViewSearch::sorts(const std::string& sql) {
  constexpr int kDetail = 3;
  const auto plan = prepare("EXPLAIN QUERY PLAN " + sql);
  bool found = false;
  int result = SQLITE_OK;
  while (!found && (result = sqlite3_step(plan.get())) == SQLITE_ROW)
    found = cellText(plan.get(), kDetail).find("FOR ORDER BY") != std::string_view::npos;
  if (!found && result != SQLITE_DONE) throw lastError(database_, sql);
  return found;
}

bool ViewSearch::isLonger(std::string_view view, int rows) {
  const std::string sql = "SELECT count(*) FROM (SELECT 1 FROM " + quotedName(viewName(view)) + " LIMIT " +
                          std::to_string(rows + 1) + ")";
  const auto count = prepare(sql);
  if (sqlite3_step(count.get()) != SQLITE_ROW) throw lastError(database_, sql);
  return sqlite3_column_int(count.get(), 0) > rows;
}

ViewSearch::Statement ViewSearch::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v3(database_, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  Statement owned(statement);
  if (result != SQLITE_OK) throw lastError(database_, sql);
  return owned;
}

sqlite3_stmt* ViewSearch::prepared(const std::string& sql) {
  const auto known = statements_.find(sql);
  if (known != statements_.end() && sqlite3_stmt_busy(known->second.get()) == 0) return known->second.get();
  // A search inside a search of the same view would share its place.
  if (known != statements_.end()) {
    throw data::DataError(data::DataError::Reason::Misuse, 0,
                          "A search of this view is running on this connection.");
  }
  if (statements_.size() >= kMostStatements) {
    const auto idle = std::find_if(statements_.begin(), statements_.end(), [](const auto& entry) {
      return sqlite3_stmt_busy(entry.second.get()) == 0;
    });
    if (idle != statements_.end()) statements_.erase(idle);
  }
  return statements_.emplace(sql, prepare(sql)).first->second.get();
}

}  // namespace ledgertree::engines::sqlite
