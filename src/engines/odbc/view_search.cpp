#include "engines/odbc/view_search.h"

#include <algorithm>

#include "data/data_error.h"
#include "data/search_rank.h"
#include "data/view_name.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/result_sets.h"
#include "engines/odbc/search_conditions.h"
#include "engines/odbc/search_position.h"
#include "text/characters.h"

namespace ledgertree::engines::odbc {
namespace {

using data::SearchRank;

constexpr std::size_t kGreatestBatch = 2000;

Pass next(Pass pass) { return static_cast<Pass>(static_cast<char>(pass) + 1); }

/// Reads the rows of a view from a position on, batch by batch, until the page is full. A batch is one round
/// trip: the statements of all remaining passes, each for as many rows as the earlier ones left room for.
class Search {
 public:
  Search(Session& session, const data::SearchRequest& request)
      : session_(session),
        request_(request),
        rank_(request),
        isClean_(text::isCleanText(request.text)),
        limit_(std::max<std::size_t>(request.limit, 1)),
        position_(Position::parse(request.continuation)) {
    const auto plain = data::plainViewName(request.view);
    if (!plain)
      throw data::DataError(data::DataError::Reason::Statement, 0,
                            "This is no name of a view: " + request.view);
    view_ = *plain;
    if (!request.columns.empty() && request.order != data::SearchOrder::Key)
      first_ = quotedName(request.columns.front());
    const bool inPasses = !first_.empty() && !rank_.text().empty();
    byCode_ = inPasses && request.order == data::SearchOrder::Code;
    const Pass start = byCode_ ? Pass::Whole : inPasses ? Pass::Names : Pass::Holds;
    if (request.continuation.empty()) position_.pass = start;
    if (position_.pass < start) refuseContinuation();
    if (isClean_) conditions_.emplace(request, rank_);
    page_.rows.addColumn("ID");
    for (const std::string& column : request.columns) page_.rows.addColumn(column);
  }

  data::SearchPage page() {
    // No row can hold a text that isn't clean.
    if (!isClean_) return std::move(page_);
    const Watch::Clock::time_point begun = Watch::Clock::now();
    std::size_t size = limit_;
    bool atEnd = false;
    while (!atEnd && !isFull()) {
      if (request_.cancelled && request_.cancelled()) throw cancelledError();
      atEnd = takeBatch(size + position_.passed);
      size = std::min(size * 4, kGreatestBatch);
      if (request_.slice.count() > 0 && Watch::Clock::now() - begun >= request_.slice) break;
    }
    if (!atEnd) page_.continuation = position_.toContinuation();
    return std::move(page_);
  }

 private:
  [[nodiscard]] bool isFull() const { return page_.rows.count() >= limit_; }

  [[nodiscard]] std::string batch(std::size_t size) const {
    const std::string& patterns = conditions_->patterns();
    if (patterns.empty()) return statement(position_, std::to_string(size));
    std::string text = "declare @n int = " + std::to_string(size) + ", " + patterns + "; ";
    text += statement(position_, "@n");
    for (Pass pass = position_.pass; pass != Pass::Holds;) {
      pass = next(pass);
      text += "; set @n = @n - @@rowcount; if @n > 0 ";
      // Sends what the index has found now, not when the packet is full.
      if (byCode_ && pass == Pass::Names) text += "begin raiserror(N'', 0, 1) with nowait; ";
      text += statement(Position(pass), "@n");
      if (byCode_ && pass == Pass::Names) text += "; end";
    }
    return text;
  }

  /// The rows of a pass from a position on.
  [[nodiscard]] std::string statement(const Position& position, const std::string& size) const {
    std::string text = "select top (" + size + ") [ID]";
    for (const std::string& column : request_.columns) text += ", " + quotedName(column);
    text += " from " + view_;
    const std::string narrow = narrowing(position.pass);
    const std::string from = position.condition(first_);
    if (!narrow.empty() || !from.empty()) text += " where " + narrow;
    if (!narrow.empty() && !from.empty()) text += " and ";
    return text + from + " order by " + (first_.empty() ? "" : first_ + ", ") + "[ID]";
  }

  /// A condition that all rows of the pass fulfil, and a few others; empty for all rows.
  [[nodiscard]] std::string narrowing(Pass pass) const {
    const SearchConditions& is = *conditions_;
    if (pass == Pass::Whole) return is.isCode();
    if (pass == Pass::Begins) return "(" + is.beginsCode() + ") and not " + is.isCode();
    std::string narrow = pass == Pass::Names ? is.begins() : is.holds();
    if (pass == Pass::Holds && !is.surelyBegins().empty()) narrow += " and not " + is.surelyBegins();
    if (byCode_)
      narrow += " and (" + first_ + " is null or not (" + is.isCode() + " or " + is.beginsCode() + "))";
    return narrow;
  }

  /// Adds the hits of one batch. Returns whether the view has no more rows.
  bool takeBatch(std::size_t size) {
    const std::string text = batch(size);
    std::size_t seen = 0;
    bool isFirst = true;
    Execution execution(session_, text, true, &request_.cancelled);
    for (bool result = execution.send(text); result && !isFull(); result = execution.nextResult()) {
      ResultSet set(execution);
      if (set.columns() == 0) continue;
      if (!isFirst) position_ = Position(next(position_.pass));
      isFirst = false;
      seen += take(set);
      if (position_.pass == Pass::Begins && request_.early && page_.rows.count() != 0 && seen < size)
        request_.early(page_.rows);
    }
    const bool atEnd = !isFull() && seen < size;
    execution.finish();
    return atEnd;
  }

  /// Adds the hits of one statement. Returns the number of its rows.
  std::size_t take(ResultSet& set) {
    const Position from = position_;
    std::size_t behind = from.passed;
    std::size_t seen = 0;
    data::Rows row = set.emptyRows();
    while (!isFull() && set.next()) {
      row.clearRows();
      if (!set.addCells(row)) break;
      ++seen;
      if (behind != 0 && from.id == idOf(row)) {
        --behind;
        continue;
      }
      behind = 0;
      goPast(row, set);
      if (isOfPass(row)) copy(row, page_.rows);
    }
    return seen;
  }

  static std::optional<std::int64_t> idOf(const data::Rows& row) {
    if (row.isNull(0, 0)) return std::nullopt;
    return row.value(0, 0).toInt64();
  }

  void goPast(const data::Rows& row, const ResultSet& set) {
    const auto id = idOf(row);
    position_.passed =
        position_.kind != Position::Kind::Start && id == position_.id ? position_.passed + 1 : 1;
    position_.id = id;
    if (first_.empty()) {
      position_.kind = Position::Kind::Key;
      return;
    }
    const data::Value first = row.value(0, 1);
    const bool whole = std::holds_alternative<std::int64_t>(first.variant());
    position_.kind = first.isNull()        ? Position::Kind::Null
                     : whole               ? Position::Kind::Integer
                     : set.isNarrowText(1) ? Position::Kind::Narrow
                                           : Position::Kind::Wide;
    position_.value = first.toText();
  }

  bool isOfPass(const data::Rows& row) {
    const SearchRank::Rank rank =
        rank_.of([&row](std::size_t column) { return row.value(0, column + 1).toText(); });
    // Only the server knows which rows its statements for codes returned.
    if (position_.pass < Pass::Names) return rank != SearchRank::None;
    return position_.pass == Pass::Names ? rank < SearchRank::Holds : rank == SearchRank::Holds;
  }

  static void copy(const data::Rows& row, data::Rows& rows) {
    for (std::size_t column = 0; column < row.columns().size(); ++column) rows.addValue(row.value(0, column));
  }

  Session& session_;
  const data::SearchRequest& request_;
  SearchRank rank_;
  bool isClean_;
  std::size_t limit_;
  Position position_;
  std::string view_;
  std::string first_;    ///< empty: rows are ordered by key
  bool byCode_ = false;  ///< codes come before names
  std::optional<SearchConditions> conditions_;
  data::SearchPage page_;
};

}  // namespace

data::SearchPage searchView(Session& session, const data::SearchRequest& request) {
  return Search(session, request).page();
}

}  // namespace ledgertree::engines::odbc
