#include "shell/lookup/lookup_reader.h"

#include <algorithm>
#include <set>
#include <utility>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/characters.h"
#include "text/fold.h"

namespace ledgertree::shell {

namespace {

/// No code is longer.
constexpr std::size_t kLongestCode = 20;
/// The accounts that come first for the code that they begin with.
constexpr std::size_t kCodesFirst = 20;

std::string replaced(std::string text, std::string_view from, std::string_view by) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + by.size()))
    text.replace(at, from.size(), by);
  return text;
}

/// A code that isn't of digits alone, in every spelling in which it is the same code: a comparison by itself
/// would tell the forms of yeh and kaf apart, and one of folded codes would find no index through a view.
std::string spellingsCondition(const std::string& folded, const std::string& typed) {
  const std::string yeh = replaced(folded, "ی", "ي");
  const std::set<std::string> spellings{folded, typed, yeh, replaced(folded, "ک", "ك"),
                                        replaced(yeh, "ک", "ك")};
  std::string condition;
  for (const std::string& code : spellings)
    condition.append(condition.empty() ? "Code=" : " or Code=").append(data::quoteText(code));
  return condition;
}

/// The codes that begin with some digits, as a range of the index; for any other text the code itself.
std::string codeCondition(const std::string& code, const std::string& typed) {
  if (code.find_first_not_of("0123456789") != std::string::npos) return spellingsCondition(code, typed);
  std::string behind = code;
  while (!behind.empty() && behind.back() == '9') behind.pop_back();
  if (!behind.empty()) ++behind.back();
  return "Code>=" + data::quoteText(code) + (behind.empty() ? "" : " and Code<" + data::quoteText(behind));
}

/// The text of a cell; empty where it is NULL or the column isn't there.
std::string textAt(const data::Rows& rows, std::size_t row, std::string_view name) {
  const auto column = rows.column(name);
  return column ? rows.value(row, *column).toText() : std::string();
}

/// The row as the list shows it; id -1 for one without a key, which can't be picked.
ui::LookupRow lookupRow(const data::Rows& rows, std::size_t row) {
  const auto key = rows.column("ID");
  if (!key || rows.isNull(row, *key)) return {};
  const std::int32_t id = rows.value(row, *key).toInt32();
  return {.id = id == 0 ? -1 : id, .text = textAt(rows, row, "Name"), .code = textAt(rows, row, "Code")};
}

/// A row of which there should be no other.
struct Single {
  ui::LookupRow row;
  int count = 0;
  void meet(const ui::LookupRow& met) {
    if (count++ == 0) row = met;
  }
  [[nodiscard]] ui::LookupRow get() const { return count == 1 ? row : ui::LookupRow(); }
};

/// What a text is compared by as a whole.
std::string whole(std::string_view text) { return std::string(text::trimmed(text::fold(text))); }

data::Rows rowsOf(data::Connection& connection, std::string_view top, std::string_view view,
                  const std::string& condition) {
  std::string statement = "Select ";
  statement.append(top).append(top.empty() ? "" : " ").append("* From ").append(view);
  auto rows = connection.run(statement.append(" Where ").append(condition));
  if (!rows) throw data::DataError(data::DataError::Reason::Statement, 0, "پاسخي از پايگاه داده نيامد.");
  return std::move(*rows);
}

}  // namespace

void LookupReader::learnColumns(const std::string& view, const data::Rows& rows) {
  if (!columns_.empty() && view_ == view) return;
  if (!rows.column("ID") || !rows.column("Name"))
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          "نماي «" + view + "» ستونهاي ID و Name را ندارد.");
  view_ = view;
  columns_.clear();
  if (rows.column("Code")) columns_.emplace_back("Code");
  columns_.emplace_back("Name");
}

ui::LookupRow LookupReader::read(data::Connection& connection, const std::string& view, std::int32_t id) {
  const data::Rows rows = rowsOf(connection, {}, view, "ID=" + std::to_string(id));
  learnColumns(view, rows);
  return rows.count() == 0 ? ui::LookupRow() : lookupRow(rows, 0);
}

std::string LookupReader::nameOf(data::Connection& connection, std::string_view view, std::int32_t id) {
  const data::Rows rows = rowsOf(connection, {}, view, "ID=" + std::to_string(id));
  return rows.count() == 0 ? std::string() : textAt(rows, 0, "Name");
}

LookupAnswer LookupReader::answer(data::Connection& connection, const LookupQuestion& question) {
  if (columns_.empty() || view_ != question.view)
    learnColumns(question.view, rowsOf(connection, {}, question.view, "ID=-1"));
  LookupAnswer answer;
  answer.first = question.first;
  if (question.codeFirst) findCodes(connection, question, answer);
  const data::SearchPage page = connection.search({.view = question.view,
                                                   .columns = columns_,
                                                   .text = question.text,
                                                   .continuation = question.continuation,
                                                   .limit = question.limit,
                                                   .slice = question.slice,
                                                   .cancelled = question.cancelled});
  answer.continuation = page.continuation;
  answer.found = page.rows.count();
  for (std::size_t row = 0; row < page.rows.count(); ++row) {
    ui::LookupRow hit = lookupRow(page.rows, row);
    const bool ahead = std::find(answer.first.begin(), answer.first.end(), hit.id) != answer.first.end();
    if (hit.id != -1 && !ahead) answer.hits.push_back(std::move(hit));
  }
  return answer;
}

ui::LookupRow LookupReader::one(data::Connection& connection, LookupQuestion question, bool first,
                                std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  const auto late = [end] { return std::chrono::steady_clock::now() > end; };
  question.cancelled = late;
  const std::string wanted = whole(question.text);
  question.text = std::string(text::trimmed(question.text));
  Single ofCode;
  Single ofText;
  Single hit;
  do {
    LookupAnswer found;
    try {
      found = answer(connection, question);
    } catch (const data::DataError& failure) {
      if (failure.reason() != data::DataError::Reason::Cancelled) throw;
      break;
    }
    for (const ui::LookupRow& row : found.hits) {
      if (first) return row;
      hit.meet(row);
      if (whole(row.code) == wanted) ofCode.meet(row);
      if (whole(row.text) == wanted) ofText.meet(row);
    }
    // The index gave all rows of that code.
    if (question.codeFirst && ofCode.count == 1) break;
    question.codeFirst = false;
    question.first = std::move(found.first);
    question.continuation = std::move(found.continuation);
    if (question.continuation.empty() && ofCode.count + ofText.count == 0) return hit.get();
  } while (!question.continuation.empty() && !late());
  return ofCode.count > 0 ? ofCode.get() : ofText.get();
}

void LookupReader::findCodes(data::Connection& connection, const LookupQuestion& question,
                             LookupAnswer& answer) {
  const std::string code = whole(question.text);
  const std::string typed(text::trimmed(question.text));
  if (code.empty() || text::characterCount(code) > kLongestCode || !text::isCleanText(typed)) return;
  const data::Rows rows = rowsOf(connection, "top " + std::to_string(kCodesFirst), question.view,
                                 codeCondition(code, typed) + " Order by Code");
  for (std::size_t row = 0; row < rows.count(); ++row) {
    ui::LookupRow hit = lookupRow(rows, row);
    if (hit.id == -1 || !text::fold(hit.code).starts_with(code)) continue;
    answer.first.push_back(hit.id);
    answer.hits.push_back(std::move(hit));
  }
}

}  // namespace ledgertree::shell
