#include "shell/lookup/lookup_reader.h"

#include <algorithm>
#include <map>
#include <utility>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "text/fold.h"

namespace ledgertree::shell {

namespace {

/// The text of a cell; empty if it is NULL or the column doesn't exist.
std::string textAt(const data::Rows& rows, std::size_t row, std::string_view name) {
  const auto column = rows.column(name);
  return column ? rows.value(row, *column).toText() : std::string();
}

/// The row as shown in the list; id -1 if it has no key and can't be picked.
ui::LookupRow lookupRow(const data::Rows& rows, std::size_t row) {
  const auto key = rows.column("ID");
  if (!key || rows.isNull(row, *key)) return {};
  const std::int32_t id = rows.value(row, *key).toInt32();
  return {.id = id == 0 ? -1 : id, .text = textAt(rows, row, "Name"), .code = textAt(rows, row, "Code")};
}

/// A row that should be unique.
struct Single {
  ui::LookupRow row;
  int count = 0;
  void meet(const ui::LookupRow& met) {
    if (count++ == 0) row = met;
  }
  [[nodiscard]] ui::LookupRow get() const { return count == 1 ? row : ui::LookupRow(); }
};

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

std::vector<ui::LookupRow> LookupReader::parentsOf(data::Connection& connection,
                                                   const std::vector<std::int32_t>& accounts) {
  std::string ids;
  for (const std::int32_t id : accounts) ids += (ids.empty() ? "" : ",") + std::to_string(id);
  const auto rows = connection.run(
      "Select p.ChildID, a.Title From tblAccountParent p inner join tblAccount a on a.ID = p.ID Where "
      "p.ChildID "
      "in (" +
      ids + ") Order by a.NoLevel desc");
  std::map<std::int32_t, std::string> parents;
  for (std::size_t row = 0; rows && row < rows->count(); ++row) {
    std::string& text = parents[rows->value(row, 0).toInt32()];
    text += (text.empty() ? "" : " / ") + rows->value(row, 1).toText();
  }
  std::vector<ui::LookupRow> answer;
  answer.reserve(parents.size());
  for (auto& [id, text] : parents) answer.push_back({.id = id, .text = std::move(text), .code = {}});
  return answer;
}

LookupAnswer LookupReader::answer(data::Connection& connection, const LookupQuestion& question) {
  if (!question.accounts.empty())
    return {.hits = parentsOf(connection, question.accounts), .continuation = {}};
  // Views sorted by code have one: no query needed.
  const bool byCode = question.order == data::SearchOrder::Code;
  if (!byCode && (columns_.empty() || view_ != question.view)) {
    if (question.columns.empty()) learnColumns(question.view, rowsOf(connection, question.view, -1));
    if (!question.columns.empty()) columns_ = question.columns;
    view_ = question.view;
  }
  std::size_t given = 0;
  const auto answerOf = [&given](const data::Rows& rows) {
    LookupAnswer answer{.hits = {}, .continuation = {}, .found = rows.count() - given};
    for (; given < rows.count(); ++given) {
      ui::LookupRow hit = lookupRow(rows, given);
      if (hit.id != -1) answer.hits.push_back(std::move(hit));
    }
    return answer;
  };
  data::SearchRequest request{.view = question.view,
                              .columns = byCode ? std::vector<std::string>{"Code", "Name"} : columns_,
                              .order = question.order,
                              .text = question.text,
                              .continuation = question.continuation,
                              .limit = question.limit,
                              .slice = question.slice,
                              .cancelled = question.cancelled,
                              .early = {}};
  if (question.early) {
    request.early = [&](const data::Rows& rows) {
      LookupAnswer first = answerOf(rows);
      first.early = true;
      question.early(std::move(first));
    };
  }
  const data::SearchPage page = connection.search(request);
  LookupAnswer answer = answerOf(page.rows);
  answer.continuation = page.continuation;
  return answer;
}

ui::LookupRow LookupReader::one(data::Connection& connection, LookupQuestion question, bool first,
                                std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  const auto late = [end] { return std::chrono::steady_clock::now() > end; };
  question.cancelled = late;
  const std::string wanted = text::fold(question.text);
  const bool byCode = question.order == data::SearchOrder::Code;
  // If all hits count, their order doesn't matter.
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
      const bool ofThatCode = text::fold(row.code) == wanted;
      if (byCode && !ofThatCode && ofCode.count != 0) return ofCode.get();
      hit.meet(row);
      if (ofThatCode) ofCode.meet(row);
      if (text::fold(row.text) == wanted) ofText.meet(row);
    }
    question.continuation = std::move(found.continuation);
    if (question.continuation.empty() && ofCode.count + ofText.count == 0) return hit.get();
  } while (!question.continuation.empty() && !late());
  return ofCode.count > 0 ? ofCode.get() : ofText.get();
}

}  // namespace ledgertree::shell
