#include "engines/odbc/view_search.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "data/view_name.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/result_sets.h"
#include "text/characters.h"
#include "text/fold.h"
#include "text/fold_forms.h"

namespace ledgertree::engines::odbc {
namespace {

/// More letters than these narrow a search no further.
constexpr std::size_t kLettersOfPattern = 40;
constexpr std::size_t kGreatestBatch = 20000;

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

/// The passes of a search, one behind the other. What the statement of a pass takes is left out by those of
/// the later ones, so that every hit comes once.
enum class Pass : char {
  Whole = '0',   ///< codes that are the text
  Begins = '1',  ///< codes that begin with it
  Names = '2',   ///< names that do
  Holds = '3'    ///< the rest
};

/// Where a search stands: behind the last row that was looked at.
struct Position {
  enum class Kind : char { Start = 's', Null = 'n', Integer = 'i', Narrow = 'v', Wide = 'w', Key = 'k' };

  explicit Position(Pass of = Pass::Holds) : pass(of) {}

  Pass pass;
  Kind kind = Kind::Start;  ///< of the first column; Key: only the ID counts
  std::optional<std::int64_t> id;
  std::size_t passed = 0;  ///< rows with this ID, one behind the other
  std::string value;       ///< of the first column

  [[nodiscard]] std::string toContinuation() const {
    return std::string{static_cast<char>(pass), static_cast<char>(kind), ' '} + std::to_string(passed) + ' ' +
           (id ? std::to_string(*id) : "-") + ' ' + value;
  }

  static Position parse(std::string_view continuation) {
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

Pass next(Pass pass) { return static_cast<Pass>(static_cast<char>(pass) + 1); }

template <typename Words, typename Change>
std::string joined(const Words& words, const std::string& between, Change change) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : between) + change(word);
  return text;
}

std::string replaced(std::string text, std::string_view from, std::string_view by) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + by.size()))
    text.replace(at, from.size(), by);
  return text;
}

/// A folded code in every spelling in which it is the same code and a collation may tell it from itself.
std::set<std::string> spellings(const std::string& folded) {
  const std::string yeh = replaced(folded, "ی", "ي");
  return {folded, yeh, replaced(folded, "ک", "ك"), replaced(yeh, "ک", "ك")};
}

std::string anyOf(const std::vector<std::string>& letters) {
  return joined(letters, "", [](auto& letter) { return letter; });
}

/// The codes that begin so, as a range of their index where it can be. Digits have one that ends; letters
/// come behind them in every collation.
std::string beginning(const std::string& column, const std::string& code) {
  const std::string literal = data::quoteText(code);
  std::string condition = column + " >= " + literal;
  std::string behind = code.find_first_not_of("0123456789") == std::string::npos ? code : "";
  while (!behind.empty() && behind.back() == '9') behind.pop_back();
  if (!behind.empty()) ++behind.back();
  if (!behind.empty()) condition += " and " + column + " < " + data::quoteText(behind);
  return condition + " and left(" + column + ", " + std::to_string(text::characterCount(code)) +
         ") = " + literal;
}

/// A pattern for the texts that begin with what folding drops.
std::string droppedFirst() { return "[" + anyOf(text::foldForms().at("")) + "]%"; }

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
    byKey_ = request.columns.empty() || request.order == data::SearchOrder::Key;
    text::fold(text::trimmed(request.text), needle_);
    if (!byKey_) first_ = quotedName(request.columns.front());
    inPasses_ = !byKey_ && !needle_.empty();
    byCode_ = inPasses_ && request.order == data::SearchOrder::Code;
    if (byCode_) {
      const auto codes = spellings(needle_);
      isCode_ =
          first_ + " in (" + joined(codes, ", ", [](auto& code) { return data::quoteText(code); }) + ")";
      beginsCode_ = joined(codes, " or ", [this](auto& code) { return "(" + beginning(first_, code) + ")"; });
      nameColumn_ = std::min<std::size_t>(1, request.columns.size() - 1);
    }
    const Pass start = byCode_ ? Pass::Whole : inPasses_ ? Pass::Names : Pass::Holds;
    if (request.continuation.empty()) position_.pass = start;
    if (position_.pass < start) refuseContinuation();
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
      if (atEnd && position_.pass != Pass::Holds) {
        position_ = Position(next(position_.pass));
        size = limit;
        atEnd = false;
      }
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

  /// What the rows of the pass fulfil, and a few others; empty for all.
  [[nodiscard]] std::string narrowing() const {
    if (needle_.empty() || request_.columns.empty()) return {};
    if (position_.pass == Pass::Whole) return isCode_;
    if (position_.pass == Pass::Begins) return "(" + beginsCode_ + ") and not " + isCode_;
    std::string other;
    if (byCode_) other = "(" + first_ + " is null or not (" + isCode_ + " or " + beginsCode_ + ")) and ";
    const std::string pattern = likePattern(needle_);
    if (position_.pass == Pass::Names) {
      const std::string& name = request_.columns[nameColumn_];
      return other + "(" + like(name, pattern.substr(1)) + " or " + like(name, droppedFirst()) + ")";
    }
    return other + "(" +
           joined(request_.columns, " or ", [&](auto& column) { return like(column, pattern); }) + ")";
  }

  static std::string like(const std::string& column, const std::string& pattern) {
    return "convert(nvarchar(max), " + quotedName(column) + ") collate Latin1_General_BIN2 like N" +
           data::quoteText(pattern);
  }

  /// Adds the hits of one batch. True where the view has no rows behind it.
  bool takeBatch(data::Rows& rows, std::size_t size, std::size_t limit) {
    const std::string text = statement(size);
    const Position from = position_;
    std::size_t behind = from.passed;
    std::size_t seen = 0;
    Execution execution(session_, text, true, &request_.cancelled);
    bool atEnd = false;
    for (bool result = execution.send(text); result; result = execution.nextResult()) {
      ResultSet set(execution);
      if (set.columns() == 0) continue;
      data::Rows row = set.emptyRows();
      while (rows.count() < limit && set.next()) {
        row.clearRows();
        if (!set.addCells(row)) break;
        ++seen;
        if (behind != 0 && from.id == idOf(row)) {
          --behind;
          continue;
        }
        behind = 0;
        pass(row, set);
        if (isOfPass(row)) copy(row, rows);
      }
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

  bool isOfPass(const data::Rows& row) {
    if (needle_.empty()) return true;
    bool holds = false;
    bool begins = false;
    for (std::size_t column = 0; column < request_.columns.size(); ++column) {
      text::fold(row.value(0, column + 1).toText(), folded_);
      const std::size_t place = folded_.find(needle_);
      holds = holds || place != std::string::npos;
      begins = begins || (column == nameColumn_ && place == 0);
    }
    // The server alone knows which rows its statements for codes have taken.
    const bool ofNames = inPasses_ && position_.pass >= Pass::Names;
    return holds && (!ofNames || begins == (position_.pass == Pass::Names));
  }

  static void copy(const data::Rows& row, data::Rows& rows) {
    for (std::size_t column = 0; column < row.columns().size(); ++column) rows.addValue(row.value(0, column));
  }

  Session& session_;
  const data::SearchRequest& request_;
  Position position_;
  std::string view_;
  bool byKey_ = false;
  bool inPasses_ = false;  ///< what begins with the text comes first
  bool byCode_ = false;    ///< and codes come ahead of names
  std::string first_;
  std::string isCode_;
  std::string beginsCode_;
  std::size_t nameColumn_ = 0;
  std::string needle_;
  std::string folded_;
};

}  // namespace

std::string likePattern(std::string_view folded) {
  const text::FoldForms& all = text::foldForms();
  std::string pattern = "%";
  for (std::size_t count = 0; !folded.empty() && count < kLettersOfPattern; ++count) {
    const std::string_view letter = folded.substr(0, text::characterLength(folded));
    folded.remove_prefix(letter.size());
    const auto forms = all.find(letter);
    const bool several = forms != all.end() && forms->second.size() > 1;
    const bool special = letter == "%" || letter == "_" || letter == "[";
    if (several || special) pattern += '[';
    pattern += several ? anyOf(forms->second) : std::string(letter);
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
