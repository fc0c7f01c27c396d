#include "shell/lookup/lookup_reader.h"

#include <algorithm>
#include <utility>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/characters.h"
#include "text/fold.h"

namespace ledgertree::shell {

namespace {

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

data::Rows rowsOf(data::Connection& connection, std::string_view view, std::int32_t id) {
  auto rows = connection.run(LookupReader::rowStatement(view, id));
  if (!rows) throw data::DataError(data::DataError::Reason::Statement, 0, "پاسخي از پايگاه داده نيامد.");
  return std::move(*rows);
}

}  // namespace

std::string LookupReader::rowStatement(std::string_view view, std::int32_t id) {
  return "Select * From " + std::string(view) + " Where ID=" + std::to_string(id);
}

void LookupReader::learnColumns(const std::string& view, const data::Rows& rows) {
  if (!columns_.empty() && view_ == view) return;
  if (!rows.column("ID") || !rows.column("Name"))
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          "نماي «" + view + "» ستونهاي ID و Name را ندارد.");
  view_ = view;
  columns_.clear();
  columns_.emplace_back("Name");
  if (rows.column("Code")) columns_.emplace_back("Code");
}

ui::LookupRow LookupReader::read(data::Connection& connection, const std::string& view, std::int32_t id) {
  return readIn(rowsOf(connection, view, id), view);
}

ui::LookupRow LookupReader::readIn(const data::Rows& rows, const std::string& view) {
  learnColumns(view, rows);
  return rows.count() == 0 ? ui::LookupRow() : lookupRow(rows, 0);
}

std::string LookupReader::nameOf(data::Connection& connection, std::string_view view, std::int32_t id) {
  const data::Rows rows = rowsOf(connection, view, id);
  return rows.count() == 0 ? std::string() : textAt(rows, 0, "Name");
}

LookupAnswer LookupReader::answer(data::Connection& connection, const LookupQuestion& question) {
  if (columns_.empty() || view_ != question.view)
    learnColumns(question.view, rowsOf(connection, question.view, -1));
  const bool byCode = question.order == data::SearchOrder::Code;
  const data::SearchPage page =
      connection.search({.view = question.view,
                         .columns = byCode ? std::vector(columns_.rbegin(), columns_.rend()) : columns_,
                         .order = question.order,
                         .text = question.text,
                         .continuation = question.continuation,
                         .limit = question.limit,
                         .slice = question.slice,
                         .cancelled = question.cancelled});
  LookupAnswer answer{.hits = {}, .continuation = page.continuation, .found = page.rows.count()};
  for (std::size_t row = 0; row < page.rows.count(); ++row) {
    ui::LookupRow hit = lookupRow(page.rows, row);
    if (hit.id != -1) answer.hits.push_back(std::move(hit));
  }
  return answer;
}

ui::LookupRow LookupReader::one(data::Connection& connection, LookupQuestion question, bool first,
                                std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  const auto late = [end] { return std::chrono::steady_clock::now() > end; };
  question.cancelled = late;
  const std::string wanted = whole(question.text);
  const bool byCode = question.order == data::SearchOrder::Code;
  // Where all hits count, none has to come ahead of another.
  if (!byCode && !first) question.order = data::SearchOrder::Key;
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
      const bool ofThatCode = whole(row.code) == wanted;
      if (byCode && !ofThatCode && ofCode.count != 0) return ofCode.get();
      hit.meet(row);
      if (ofThatCode) ofCode.meet(row);
      if (whole(row.text) == wanted) ofText.meet(row);
    }
    question.continuation = std::move(found.continuation);
    if (question.continuation.empty() && ofCode.count + ofText.count == 0) return hit.get();
  } while (!question.continuation.empty() && !late());
  return ofCode.count > 0 ? ofCode.get() : ofText.get();
}

}  // namespace ledgertree::shell
