#include "engines/sqlite/view_search.h"

#include <algorithm>
#include <span>
#include <utility>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "data/search_rank.h"
#include "data/view_name.h"
#include "engines/sqlite/errors.h"
#include "engines/sqlite/persian_order.h"
#include "text/characters.h"
#include "text/folded_beginning.h"
#include "tsql/tokens.h"

namespace ledgertree::engines::sqlite {
namespace {

using Pass = Position::Pass;
using data::SearchOrder;
using data::SearchRank;

constexpr std::size_t kRowsBetweenLooks = 32;
/// Prefix of the continuation of a gathered page.
constexpr char kBest = 'g';
constexpr const char* kKey = "\"ID\"";

std::string quotedName(std::string_view name) { return data::quoted(name, '"', '"'); }

/// The plain name of a view; a schema before it is ignored here.
std::string viewName(std::string_view text) {
  const auto plain = data::plainViewName(text);
  if (!plain) tsql::refuse(text, 0, "not the name of a view");
  tsql::Tokens tokens(*plain);
  tsql::Token name;
  // The last name is the view's.
  for (tsql::Token token = tokens.next(); token.kind != tsql::Token::Kind::End; token = tokens.next())
    name = token;
  return std::string(name.text);
}

/// Compares two codes as the index orders them.
int compareCodes(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  const int order = shorter == 0 ? 0 : sqlite3_strnicmp(a.data(), b.data(), static_cast<int>(shorter));
  return order != 0 || a.size() == b.size() ? order : a.size() < b.size() ? -1 : 1;
}

std::string codeOrder(const std::string& column) { return quotedName(column) + " COLLATE NOCASE"; }

/// A query for a view sorted by an expression, starting at the first parameter if `from` is set.
std::string searchStatement(const std::string& view, std::span<const std::string> columns,
                            const std::string& order, bool from) {
  std::string sql = "SELECT \"ID\"";
  for (const std::string& column : columns) sql += ", " + quotedName(column);
  sql += " FROM " + view;
  if (from) sql += " WHERE " + order + " >= ?1";
  return sql + " ORDER BY " + order;
}

/// Whether there are blobs among the names that a statement reads from its parameter on. They sort after all
/// texts, whatever they begin with.
bool hasBlobs(sqlite3_stmt* names) {
  sqlite3_bind_zeroblob(names, 1, 0);
  const bool found = sqlite3_step(names) == SQLITE_ROW;
  sqlite3_reset(names);
  return found;
}

Pass passBehind(Pass pass) {
  return pass == Pass::Whole ? Pass::Begins : pass == Pass::Begins ? Pass::Beside : Pass::Holds;
}

SearchRank::Rank rankOf(Pass pass) {
  if (pass == Pass::Whole) return SearchRank::Whole;
  if (pass == Pass::Begins) return SearchRank::Begins;
  return pass == Pass::BesideByCode ? SearchRank::Beside : SearchRank::Holds;
}

/// The position after which a page begins, from the
/// continuation of a gathered page, where it follows a number.
std::string placeIn(std::string_view continuation) {
  if (continuation.empty()) return {};
  std::uint64_t number = 0;
  continuation.remove_prefix(1);
  takeNumber(continuation, number);
  return std::string(continuation);
}

std::optional<BestRows::Place> readPlace(std::string_view text) {
  if (text.empty()) return std::nullopt;
  int rank = 0;
  BestRows::Place place;
  takeNumber(text, rank);
  takeNumber(text, place.id);
  if (rank < SearchRank::Whole || rank > SearchRank::Holds) refuseContinuation();
  place.rank = static_cast<SearchRank::Rank>(rank);
  place.text = text;
  return place;
}

}  // namespace

/// The state of one call: the request, its progress, and the result.
struct ViewSearch::Call {
  Call(const data::SearchRequest& asked, Watch& watchOver)
      : request(asked),
        watch(watchOver),
        view(quotedName(viewName(asked.view))),
        rank(asked),
        limit(std::max<std::size_t>(asked.limit, 1)) {
    page.rows.addColumn("ID");
    for (const std::string& column : asked.columns) page.rows.addColumn(column);
  }

  [[nodiscard]] std::string statement(const std::string& order, bool from) const {
    return searchStatement(view, request.columns, order, from);
  }
  [[nodiscard]] bool isFull() const { return page.rows.count() >= limit; }
  void add(sqlite3_stmt* row) {
    for (int column = 0; column < sqlite3_column_count(row); ++column)
      page.rows.addValue(cellValue(row, column));
  }
  SearchRank::Rank rankOf(sqlite3_stmt* row) {
    return rank.of([row](std::size_t column) { return cellText(row, static_cast<int>(column) + 1); });
  }
  /// A slice's time counts from its first rows. The work before that, sorting without an index or skipping
  /// rows already returned, recurs in every slice, and would leave no time for progress.
  bool isSliceOver(Watch::Clock::time_point now) {
    if (request.slice.count() <= 0) return false;
    if (!sliceEnd) sliceEnd = now + request.slice;
    return now >= *sliceEnd;
  }

  const data::SearchRequest& request;
  Watch& watch;
  std::string view;
  SearchRank rank;
  std::size_t limit;
  std::optional<Watch::Clock::time_point> sliceEnd;
  std::size_t seen = 0;
  data::SearchPage page;
};

/// One scan over a view's rows, from a position on.
class ViewSearch::Scan {
 public:
  /// `column` is the one that the statement sorts by; 0 is the ID.
  Scan(Call& call, Position& position, sqlite3_stmt* statement, int column)
      : call_(call), position_(position), statement_(statement), orderColumn_(column) {
    skip_ = std::exchange(position_.passed, 0);
    position_.bind(statement_);
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;
  ~Scan() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }

  /// Passes the rows to `take` until it returns false or the slice is over:
  /// SQLITE_ROW then; otherwise SQLite's final result code. With a beginning, only
  /// rows that begin with it are passed, found by the index.
  template <typename Take>
  int run(Take take, text::FoldedBeginning* beginning = nullptr) {
    if (beginning != nullptr && !start(*beginning)) return SQLITE_DONE;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement_)) == SQLITE_ROW) {
      if (beginning != nullptr && !isAt(*beginning)) {
        if (!leapTo(*beginning)) return SQLITE_DONE;
        if (call_.watch.mustStop()) return SQLITE_INTERRUPT;
        continue;
      }
      if (isBehind()) continue;
      if (!take(statement_)) break;
      if (++call_.seen % kRowsBetweenLooks != 0) continue;
      const auto now = Watch::Clock::now();
      if (call_.watch.mustStop(now)) return SQLITE_INTERRUPT;
      if (call_.isSliceOver(now)) break;
    }
    return result;
  }

 private:
  using Place = text::FoldedBeginning::Place;

  /// False if nothing begins with it.
  bool start(text::FoldedBeginning& beginning) {
    if (position_.type != 0) return true;
    place_ = beginning.look({});
    return leapTo(beginning);
  }
  bool isAt(text::FoldedBeginning& beginning) {
    const bool isName = sqlite3_column_type(statement_, orderColumn_) == SQLITE_TEXT;
    place_ = isName ? beginning.look(cellText(statement_, orderColumn_)) : Place::Nowhere;
    return place_ == Place::Here;
  }
  bool leapTo(const text::FoldedBeginning& beginning) {
    if (place_ == Place::Nowhere) return false;
    const std::string& seek = beginning.seek();
    sqlite3_reset(statement_);
    sqlite3_bind_text(statement_, 1, seek.data(), static_cast<int>(seek.size()), SQLITE_TRANSIENT);
    return true;
  }
  /// Advances to the current row; true if the previous page contained it.
  bool isBehind() {
    // After the last row with the previous page's value, nothing more needs to be skipped.
    if (!position_.goPast(statement_, orderColumn_)) skip_ = 0;
    return position_.passed <= skip_;
  }

  Call& call_;
  Position& position_;
  sqlite3_stmt* statement_;
  int orderColumn_;
  std::int64_t skip_ = 0;
  Place place_ = Place::Here;
};

ViewSearch::Gathering::Gathering(const data::SearchRequest& request)
    : view(request.view),
      text(request.text),
      behind(placeIn(request.continuation)),
      best(std::max<std::size_t>(request.limit, 1),
           request.order == SearchOrder::Code ? compareCodes : compareNames, readPlace(behind)) {}

data::SearchPage ViewSearch::page(const data::SearchRequest& request, Watch& watch) {
  Call call(request, watch);
  const std::string& continuation = request.continuation;
  const bool begins = continuation.empty();
  const bool byKey = request.order == SearchOrder::Key || request.columns.empty();
  const bool byCode = request.order == SearchOrder::Code;
  if (begins ? !byKey && (!byCode || sorts(call.statement(codeOrder(request.columns.front()), false)))
             : continuation.front() == kBest) {
    readBest(call);
    return std::move(call.page);
  }
  Position position;
  if (!begins)
    position = Position::parse(continuation);
  else if (!byKey)
    position.pass = call.rank.text().empty() ? Pass::Holds : Pass::Whole;
  if ((position.pass == Pass::Key) != byKey) refuseContinuation();
  while (readPass(call, position)) {
    if (position.pass == Pass::Key || position.pass == Pass::Holds) return std::move(call.page);
    position = Position(passBehind(position.pass));
  }
  call.page.continuation = position.toContinuation();
  return std::move(call.page);
}

bool ViewSearch::readPass(Call& call, Position& position) {
  if (call.isFull()) return false;
  if (position.pass == Pass::Beside) {
    if (readFewBeside(call)) return true;
    position.pass = Pass::BesideByCode;
  }
  const bool byKey = position.pass == Pass::Key;
  std::optional<text::FoldedBeginning> beginning;
  if (position.pass == Pass::Whole || position.pass == Pass::Begins)
    beginning.emplace(call.rank.text(), position.pass == Pass::Whole);
  // NULL sorts before every value, so after a NULL no value can be skipped.
  const bool from = beginning || (position.type != 0 && position.type != SQLITE_NULL);
  const std::string sql = call.statement(byKey ? kKey : codeOrder(call.request.columns.front()), from);
  Scan scan(call, position, prepared(sql), byKey ? 0 : 1);
  const SearchRank::Rank wanted = rankOf(position.pass);
  const auto take = [&call, &position, wanted](sqlite3_stmt* row) {
    SearchRank::Rank rank = call.rankOf(row);
    // A blob isn't text, and is elsewhere in the index.
    if (rank < SearchRank::Beside && position.type != SQLITE_TEXT) rank = SearchRank::Holds;
    if (rank == wanted) call.add(row);
    return !call.isFull();
  };
  return isOver(call, scan.run(take, beginning ? &*beginning : nullptr), sql);
}

bool ViewSearch::readFewBeside(Call& call) {
  if (call.request.columns.size() != 2) return false;
  const std::string order = codeOrder(call.request.columns.back());
  // The index alone shows how many there are.
  const std::string names = searchStatement(call.view, std::span(call.request.columns).last(1), order, true);
  if (sorts(names) || hasBlobs(prepared(names))) return false;
  const std::size_t room = call.limit - call.page.rows.count();
  text::FoldedBeginning beginning(call.rank.text(), false);
  std::size_t met = 0;
  const auto count = [&](sqlite3_stmt*) { return ++met <= room; };
  if (!walk(call, names, 1, beginning, count)) return false;
  BestRows few(room, compareCodes);
  const auto take = [&](sqlite3_stmt* row) {
    const SearchRank::Rank rank = call.rankOf(row);
    if (rank == SearchRank::Beside) few.meet(rank, row);
    return true;
  };
  if (met != 0 && !walk(call, call.statement(order, true), 2, beginning, take)) return false;
  few.copyTo(call.page.rows);
  return true;
}

template <typename Take>
bool ViewSearch::walk(Call& call, const std::string& sql, int column, text::FoldedBeginning& beginning,
                      Take take) {
  Position start;
  Scan scan(call, start, prepared(sql), column);
  return isOver(call, scan.run(take, &beginning), sql);
}

void ViewSearch::readBest(Call& call) {
  const data::SearchRequest& request = call.request;
  const bool goesOn = gathering_ && gathering_->given == request.continuation &&
                      gathering_->view == request.view && gathering_->text == request.text;
  Gathering gathering = goesOn ? std::move(*gathering_) : Gathering(request);
  gathering_.reset();
  const bool from = gathering.at.type != 0 && gathering.at.type != SQLITE_NULL;
  const std::string sql = call.statement(kKey, from);
  Scan scan(call, gathering.at, prepared(sql), 0);
  const auto take = [&call, &gathering](sqlite3_stmt* row) {
    const SearchRank::Rank rank = call.rankOf(row);
    if (rank != SearchRank::None) gathering.best.meet(rank, row);
    return true;
  };
  if (!isOver(call, scan.run(take), sql)) {
    gathering.given = kBest + std::to_string(++gatherings_) + " " + gathering.behind;
    call.page.continuation = gathering.given;
    gathering_.emplace(std::move(gathering));
    return;
  }
  gathering.best.copyTo(call.page.rows);
  if (!gathering.best.isFull()) return;
  const BestRows::Place& last = gathering.best.last();
  call.page.continuation =
      kBest + ("0 " + std::to_string(last.rank) + " " + std::to_string(last.id) + " ") + last.text;
}

bool ViewSearch::isOver(Call& call, int result, const std::string& sql) {
  if (result == SQLITE_ROW || result == SQLITE_DONE) return result == SQLITE_DONE;
  call.watch.rethrowStop(sql);
  throw lastError(database_, sql);
}

bool ViewSearch::sorts(const std::string& sql) {
  const auto known = sorts_.find(sql);
  if (known != sorts_.end()) return known->second;
  constexpr int kDetail = 3;
  const auto plan = prepare("EXPLAIN QUERY PLAN " + sql);
  bool found = false;
  int result = SQLITE_OK;
  while (!found && (result = sqlite3_step(plan.get())) == SQLITE_ROW)
    found = cellText(plan.get(), kDetail).find("FOR ORDER BY") != std::string_view::npos;
  if (!found && result != SQLITE_DONE) throw lastError(database_, sql);
  if (sorts_.size() >= kMostStatements) sorts_.clear();
  return sorts_[sql] = found;
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
  // A search nested in a search of the same view would share its position.
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
