#include "engines/odbc/view_search.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "data/view_name.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/result_sets.h"
#include "text/characters.h"
#include "text/fold.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

/// More letters than these narrow a search no further.
constexpr std::size_t kLettersOfPattern = 40;
constexpr std::size_t kGreatestBatch = 20000;

using Forms = std::map<std::string, std::string, std::less<>>;

/// All letters that fold to a letter, by that letter.
Forms formsOfLetters() {
  Forms forms;
  const auto add = [&forms](char16_t first, char16_t last) {
    for (char32_t letter = first; letter <= last; ++letter) {
      const std::string form = text::textOf(std::u32string_view(&letter, 1));
      const std::string folded = text::fold(form);
      if (!folded.empty()) forms[folded] += form;
    }
  };
  add(u' ', u'\u07FF');
  add(u'\u1E00', u'\u1EFF');
  add(u'\uFF21', u'\uFF5A');
  return forms;
}

[[noreturn]] void refuseContinuation() {
  throw data::DataError(data::DataError::Reason::Misuse, 0, "No page of a search has this continuation.");
}

std::string quotedName(std::string_view name) {
  std::string quoted = "[";
  for (const char letter : name) {
    quoted += letter;
    if (letter == ']') quoted += ']';
  }
  return quoted += ']';
}

/// Where a search stands: behind the last row that was looked at.
struct Position {
  enum class Kind : char { Start = 's', Null = 'n', Integer = 'i', Narrow = 'v', Wide = 'w', Key = 'k' };

  Kind kind = Kind::Start;  ///< of the first column; Key: only the ID counts
  std::optional<std::int64_t> id;
  std::size_t passed = 0;  ///< rows with this ID, one behind the other
  std::string value;       ///< of the first column

  [[nodiscard]] std::string toContinuation() const {
    return std::string(1, static_cast<char>(kind)) + ' ' + std::to_string(passed) + ' ' +
           (id ? std::to_string(*id) : "-") + ' ' + value;
  }

  static Position parse(std::string_view continuation) {
    Position position;
    if (continuation.empty()) return position;
    if (continuation.size() < 2 ||
        std::string_view("nivwk").find(continuation.front()) == std::string_view::npos) {
      refuseContinuation();
    }
    position.kind = static_cast<Kind>(continuation.front());
    continuation.remove_prefix(2);
    readNumber(takeWord(continuation), position.passed);
    const std::string_view key = takeWord(continuation);
    if (key != "-") readNumber(key, position.id.emplace());
    position.value = continuation;
    std::int64_t number = 0;
    if (position.kind == Kind::Integer) readNumber(position.value, number);
    return position;
  }

  /// What the rows from this position on fulfil; empty for all.
  [[nodiscard]] std::string condition(const std::string& column) const {
    std::string from = id ? "[ID] >= " + std::to_string(*id) : "";
    if (kind == Kind::Start) return {};
    if (kind == Kind::Key) return from;
    // NULL comes ahead of every value.
    if (kind == Kind::Null) return id ? "(" + column + " is not null or " + from + ")" : "";
    const std::string literal =
        kind == Kind::Integer ? value : (kind == Kind::Wide ? "N" : "") + data::quoteText(value);
    const std::string atLeast = column + " >= " + literal;
    return id ? atLeast + " and (" + column + " > " + literal + " or " + from + ")" : atLeast;
  }

 private:
  static std::string_view takeWord(std::string_view& text) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) refuseContinuation();
    const std::string_view word = text.substr(0, blank);
    text.remove_prefix(blank + 1);
    return word;
  }
  template <typename Number>
  static void readNumber(std::string_view digits, Number& number) {
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc{} || read.ptr != digits.data() + digits.size()) refuseContinuation();
  }
};

/// The rows of a view from a position on, batch by batch, until the page is full.
class Search {
 public:
  Search(Session& session, const data::SearchRequest& request)
      : session_(session), request_(request), position_(Position::parse(request.continuation)) {
    const auto plain = data::plainViewName(request.view);
    if (!plain)
      throw data::DataError(data::DataError::Reason::Statement, 0,
                            "This is no name of a view: " + request.view);
    view_ = *plain;
    byKey_ = request.columns.empty() || text::equalsIgnoringCase(request.columns.front(), "ID");
    text::fold(text::trimmed(request.text), needle_);
    if (!byKey_) first_ = quotedName(request.columns.front());
  }

  data::SearchPage page() {
    data::SearchPage page;
    page.rows.addColumn("ID");
    for (const std::string& column : request_.columns) page.rows.addColumn(column);
    // What isn't clean can't stand in a row.
    if (!text::isCleanText(needle_)) return page;
    const std::size_t limit = std::max<std::size_t>(request_.limit, 1);
    const Watch::Clock::time_point begun = Watch::Clock::now();
    std::size_t size = limit;
    bool atEnd = false;
    while (!atEnd && page.rows.count() < limit) {
      if (request_.cancelled && request_.cancelled()) throw cancelledError();
      atEnd = takeBatch(page.rows, size + position_.passed, limit);
      size = std::min(size * 4, kGreatestBatch);
      if (request_.slice.count() > 0 && Watch::Clock::now() - begun >= request_.slice) break;
    }
    if (!atEnd) page.continuation = position_.toContinuation();
    return page;
  }

 private:
  [[nodiscard]] std::string statement(std::size_t size) const {
    std::string text = "select top (" + std::to_string(size) + ") [ID]";
    for (const std::string& column : request_.columns) text += ", " + quotedName(column);
    text += " from " + view_;
    const std::string narrow = narrowing();
    const std::string from = position_.condition(first_);
    if (!narrow.empty() || !from.empty()) text += " where " + narrow;
    if (!narrow.empty() && !from.empty()) text += " and ";
    return text + from + " order by " + (byKey_ ? "" : first_ + ", ") + "[ID]";
  }

  [[nodiscard]] std::string narrowing() const {
    if (needle_.empty() || request_.columns.empty()) return {};
    const std::string like = " collate Latin1_General_BIN2 like N" + data::quoteText(likePattern(needle_));
    std::string either;
    for (const std::string& column : request_.columns) {
      either += either.empty() ? "(" : " or ";
      either += "convert(nvarchar(max), " + quotedName(column) + ")" + like;
    }
    return either + ")";
  }

  /// Adds the hits of one batch. True where the view has no rows behind it.
  bool takeBatch(data::Rows& rows, std::size_t size, std::size_t limit) {
    const std::string text = statement(size);
    const Position from = position_;
    std::size_t behind = from.passed;
    std::size_t seen = 0;
    Execution execution(session_, text, &request_.cancelled);
    bool atEnd = false;
    for (bool result = execution.send(text); result; result = execution.nextResult()) {
      ResultSet set(execution.statement());
      if (set.columns() == 0) continue;
      data::Rows row = set.emptyRows();
      while (rows.count() < limit && set.next()) {
        row.clearRows();
        if (!set.addCells(row)) {
          execution.noteFailure();
          break;
        }
        ++seen;
        if (behind != 0 && from.id == idOf(row)) {
          --behind;
          continue;
        }
        behind = 0;
        pass(row, set);
        if (isHit(row)) copy(row, rows);
      }
      if (set.failed()) execution.noteFailure();
      atEnd = rows.count() < limit && seen < size;
      break;
    }
    execution.finish();
    return atEnd;
  }

  static std::optional<std::int64_t> idOf(const data::Rows& row) {
    if (row.isNull(0, 0)) return std::nullopt;
    return row.value(0, 0).toInt64();
  }

  void pass(const data::Rows& row, const ResultSet& set) {
    const auto id = idOf(row);
    position_.passed =
        position_.kind != Position::Kind::Start && id == position_.id ? position_.passed + 1 : 1;
    position_.id = id;
    if (byKey_) {
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

  bool isHit(const data::Rows& row) {
    if (needle_.empty()) return true;
    for (std::size_t column = 1; column < row.columns().size(); ++column) {
      text::fold(row.value(0, column).toText(), folded_);
      if (folded_.find(needle_) != std::string::npos) return true;
    }
    return false;
  }

  static void copy(const data::Rows& row, data::Rows& rows) {
    for (std::size_t column = 0; column < row.columns().size(); ++column) rows.addValue(row.value(0, column));
  }

  Session& session_;
  const data::SearchRequest& request_;
  Position position_;
  std::string view_;
  bool byKey_ = false;
  std::string first_;
  std::string needle_;
  std::string folded_;
};

}  // namespace

std::string likePattern(std::string_view folded) {
  static const Forms kForms = formsOfLetters();
  std::string pattern = "%";
  for (std::size_t count = 0; !folded.empty() && count < kLettersOfPattern; ++count) {
    const std::string_view letter = folded.substr(0, text::characterLength(folded));
    folded.remove_prefix(letter.size());
    const auto forms = kForms.find(letter);
    const bool several = forms != kForms.end() && forms->second.size() > letter.size();
    const bool special = letter == "%" || letter == "_" || letter == "[";
    if (several || special) pattern += '[';
    pattern += several ? std::string_view(forms->second) : letter;
    if (several || special) pattern += ']';
    // Between two letters may stand what folding drops: a joiner, a sign above a letter.
    pattern += '%';
  }
  return pattern;
}

data::SearchPage searchView(Session& session, const data::SearchRequest& request) {
  return Search(session, request).page();
}

}  // namespace ledgertree::engines::odbc
