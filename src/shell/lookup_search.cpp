#include "shell/lookup_search.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <utility>

#include "data/characters.h"
#include "data/data_error.h"
#include "data/fold.h"
#include "data/view_name.h"

namespace ledgertree::shell {

namespace {

/// How long a slice keeps the user-interface thread: below one frame of the screen.
constexpr std::chrono::milliseconds kSlice{8};
/// No code is longer.
constexpr std::size_t kLongestCode = 20;
/// The accounts that come first for the code that they begin with.
constexpr std::size_t kCodesFirst = 20;

/// The codes that begin with some digits, as a range of the index; for any other text the code itself.
std::string codeCondition(const std::string& code) {
  if (code.find_first_not_of("0123456789") != std::string::npos) return "Code=" + data::quoteText(code);
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

}  // namespace

std::string acceptedView(Shell& shell, std::string_view name) {
  if (name.empty()) return {};
  const auto plain = data::plainViewName(name);
  if (!plain)
    shell.showErrorNotice(kTitleError, "نام نماي اين فهرست پذيرفتني نيست؛ تعريف موجوديت را اصلاح کنيد.");
  return std::string(plain.value_or(std::string_view()));
}

/// One search from its first slice to its end; a newer one takes its place.
struct LookupSearch::Run {
  LookupSearch* search = nullptr;
  std::string text;
  std::string continuation;
  std::size_t found = 0;            ///< rows of the present page
  bool begun = false;               ///< the first slice is behind it
  bool shown = false;               ///< the list has rows of this search
  bool waiting = false;             ///< a slice waits for idleness
  std::vector<std::int32_t> first;  ///< the rows of the typed code, which came ahead of their turn
};

LookupSearch::LookupSearch(Shell& shell, Show show) : shell_(shell), show_(std::move(show)) {}

void LookupSearch::setConnectionText(std::string_view text) {
  if (connectionText_ == text) return;
  close();
  connectionText_ = text;
}

void LookupSearch::setView(std::string view) {
  stop();
  view_ = std::move(view);
  columns_.clear();
}

void LookupSearch::close() {
  stop();
  connection_.reset();
}

data::Connection& LookupSearch::connection() {
  if (!connection_) connection_ = shell_.providers.open(connectionText_);
  return *connection_;
}

data::Rows LookupSearch::rowsOf(std::string_view top, std::string_view view, const std::string& condition) {
  std::string statement = "Select ";
  statement.append(top).append(top.empty() ? "" : " ").append("* From ").append(view);
  auto rows = connection().run(statement.append(" Where ").append(condition));
  if (!rows) throw data::DataError(data::DataError::Reason::Statement, 0, "پاسخي از پايگاه داده نيامد.");
  return std::move(*rows);
}

void LookupSearch::learnColumns(const data::Rows& rows) {
  if (!columns_.empty()) return;
  if (!rows.column("ID") || !rows.column("Name"))
    throw data::DataError(data::DataError::Reason::Statement, 0,
                          "نماي «" + view_ + "» ستونهاي ID و Name را ندارد.");
  if (rows.column("Code")) columns_.emplace_back("Code");
  columns_.emplace_back("Name");
}

ui::LookupRow LookupSearch::read(std::int32_t id) {
  unread_ = false;
  if (id == -1 || id == 0) return {};
  if (ready()) {
    try {
      const data::Rows rows = rowsOf({}, view_, "ID=" + std::to_string(id));
      learnColumns(rows);
      told_.clear();
      return rows.count() == 0 ? ui::LookupRow() : lookupRow(rows, 0);
    } catch (const std::exception& failure) {
      failed(failure);
    }
  }
  unread_ = true;
  return {.id = id, .text = {}, .code = {}};
}

std::string LookupSearch::nameIn(std::string_view view, std::int32_t id) {
  if (connectionText_.empty() || view.empty()) return {};
  try {
    const data::Rows rows = rowsOf({}, view, "ID=" + std::to_string(id));
    return rows.count() == 0 ? std::string() : textAt(rows, 0, "Name");
  } catch (const std::exception&) {
    // It only explains the row held; whatever the person does next with the field tells of the failure.
    connection_.reset();
    return {};
  }
}

void LookupSearch::search(std::string text) {
  run_ = std::make_shared<Run>();
  run_->search = this;
  run_->text = std::move(text);
  schedule();
}

void LookupSearch::more() {
  if (!run_ || run_->waiting || run_->continuation.empty()) return;
  run_->found = 0;
  schedule();
}

void LookupSearch::stop() { run_.reset(); }

void LookupSearch::later(std::function<void()> procedure) {
  shell_.desktop().whenIdle([life = std::weak_ptr<bool>(life_), procedure = std::move(procedure)] {
    if (!life.expired()) procedure();
  });
}

void LookupSearch::schedule() {
  run_->waiting = true;
  shell_.desktop().whenIdle([waiting = std::weak_ptr<Run>(run_)] {
    // The search may be destroyed in the middle of the slice, by what the person does with its rows.
    const auto run = waiting.lock();
    if (run) run->search->slice(*run);
  });
}

void LookupSearch::slice(Run& run) {
  run.waiting = false;
  std::vector<ui::LookupRow> hits;
  // What the person does with the rows, or a form behind a notice, may destroy this search: after each of the
  // calls out of it nothing of it is touched.
  const Show show = show_;
  const std::weak_ptr<bool> life = life_;
  try {
    if (ready()) advance(run, hits);
    told_.clear();
  } catch (const std::exception& failure) {
    stop();
    show({}, false, false, false);
    if (!life.expired()) failed(failure);
    return;
  }
  const bool more = !run.continuation.empty();
  const bool searching = more && run.found < kPageRows;
  const bool append = std::exchange(run.shown, true);
  if (searching) schedule();
  show(std::move(hits), append, more, searching);
}

void LookupSearch::advance(Run& run, std::vector<ui::LookupRow>& hits) {
  if (columns_.empty()) learnColumns(rowsOf({}, view_, "ID=-1"));
  if (!run.begun && codeFirst_) findCodes(run, hits);
  const data::SearchPage page = connection().search({.view = view_,
                                                     .columns = columns_,
                                                     .text = run.text,
                                                     .continuation = run.continuation,
                                                     .limit = kPageRows - run.found,
                                                     .slice = kSlice,
                                                     .cancelled = {}});
  run.begun = true;
  run.continuation = page.continuation;
  run.found += page.rows.count();
  for (std::size_t row = 0; row < page.rows.count(); ++row) {
    ui::LookupRow hit = lookupRow(page.rows, row);
    const bool ahead = std::find(run.first.begin(), run.first.end(), hit.id) != run.first.end();
    if (hit.id != -1 && !ahead) hits.push_back(std::move(hit));
  }
}

void LookupSearch::findCodes(Run& run, std::vector<ui::LookupRow>& hits) {
  const std::string code(data::trimmed(data::fold(run.text)));
  if (code.empty() || data::characterCount(code) > kLongestCode || !data::isCleanText(code)) return;
  const data::Rows rows =
      rowsOf("top " + std::to_string(kCodesFirst), view_, codeCondition(code) + " Order by Code");
  for (std::size_t row = 0; row < rows.count(); ++row) {
    ui::LookupRow hit = lookupRow(rows, row);
    if (hit.id == -1 || !data::fold(hit.code).starts_with(code)) continue;
    run.first.push_back(hit.id);
    hits.push_back(std::move(hit));
  }
}

void LookupSearch::failed(const std::exception& failure) {
  connection_.reset();
  if (told_ == failure.what()) return;
  told_ = failure.what();
  shell_.reportFailure(failure);
}

}  // namespace ledgertree::shell
