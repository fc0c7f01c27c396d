#include "shell/lookup/lookup_search.h"

#include <atomic>
#include <chrono>
#include <utility>

#include "data/view_name.h"
#include "text/characters.h"

namespace ledgertree::shell {

namespace {

/// How long a slice may block the user-interface thread: less than a frame.
constexpr std::chrono::milliseconds kSlice{8};
/// How long leaving a field waits for the meaning of its text.
constexpr std::chrono::milliseconds kPatience{1000};

/// IDs that need no look-up.
bool isNone(std::int32_t id) { return id == -1 || id == 0; }

ui::LookupRow unlisted(std::int32_t id) {
  return {.id = id, .text = unlistedText(id), .code = {}, .listed = false};
}

}  // namespace

std::string unlistedText(std::int32_t id) { return std::to_string(id) + " (در فهرست نيست)"; }

std::string acceptedView(Shell& shell, std::string_view name) {
  if (name.empty()) return {};
  const auto plain = data::plainViewName(name);
  if (!plain)
    shell.showErrorNotice(kTitleError, "نام نماي اين فهرست پذيرفتني نيست؛ تعريف موجوديت را اصلاح کنيد.");
  return std::string(plain.value_or(std::string_view()));
}

/// One search from its first slice to its end, unless a newer one replaces it.
struct LookupSearch::Run {
  LookupSearch* search = nullptr;
  std::string text;
  std::string continuation;
  std::size_t found = 0;                 ///< rows of the current page
  bool shown = false;                    ///< the list has rows of this search
  bool waiting = false;                  ///< an answer is pending
  std::vector<std::int32_t> parentless;  ///< hits whose parents aren't shown yet
  /// Cancelled for a newer search; read by a thread.
  std::shared_ptr<std::atomic<bool>> givenUp = std::make_shared<std::atomic<bool>>(false);
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
}

void LookupSearch::close() {
  stop();
  thread_.reset();
  connection_.reset();
}

data::Connection& LookupSearch::connection() {
  if (!connection_) connection_ = shell_.connectionTo(connectionText_);
  return *connection_;
}

ui::LookupRow LookupSearch::readRow(std::int32_t id) {
  if (shell_.hasDtEn()) {
    const auto rows =
        shell_.dtEn()->cnMainData.askedAhead(connectionText_, LookupReader::rowStatement(view_, id));
    if (rows) return reader_.readIn(*rows, view_);
  }
  return reader_.read(connection(), view_, id);
}

void LookupSearch::addQuestion(std::int32_t id, std::vector<data::Command>& questions) const {
  if (!isNone(id) && ready()) questions.push_back({.statement = LookupReader::rowStatement(view_, id)});
}

ui::LookupRow LookupSearch::read(std::int32_t id) {
  unread_ = false;
  if (isNone(id)) return {};
  if (ready()) {
    try {
      ui::LookupRow row = readRow(id);
      told_.clear();
      return row.id == -1 && id > 0 ? unlisted(id) : row;
    } catch (const std::exception& failure) {
      failed(failure);
    }
  }
  unread_ = true;
  return view_.empty() && id > 0 ? unlisted(id) : ui::LookupRow{.id = id, .text = {}, .code = {}};
}

std::string LookupSearch::nameIn(std::string_view view, std::int32_t id) {
  if (connectionText_.empty() || view.empty()) return {};
  try {
    return LookupReader::nameOf(connection(), view, id);
  } catch (const std::exception&) {
    // It only explains the selected row; the failure will be reported when the user next uses the field.
    connection_.reset();
    return {};
  }
}

ui::LookupRow LookupSearch::one(std::string text, bool first) {
  stop();
  if (!ready()) return {};
  try {
    ui::LookupRow row = reader_.one(connection(), question(std::move(text)), first, kPatience);
    told_.clear();
    return row;
  } catch (const std::exception& failure) {
    failed(failure);
  }
  return {};
}

void LookupSearch::search(std::string text) {
  stop();
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

void LookupSearch::stop() {
  if (run_) *run_->givenUp = true;
  run_.reset();
}

void LookupSearch::later(std::function<void()> procedure) {
  shell_.desktop().whenIdle([life = std::weak_ptr<bool>(life_), procedure = std::move(procedure)] {
    if (!life.expired()) procedure();
  });
}

void LookupSearch::schedule() {
  run_->waiting = true;
  shell_.desktop().whenIdle([waiting = std::weak_ptr<Run>(run_)] {
    // The user's reaction to the rows may destroy the search during the slice.
    const auto run = waiting.lock();
    if (run) run->search->advance(run);
  });
}

LookupQuestion LookupSearch::question(std::string text) const {
  return {.view = view_,
          .order = order_,
          .text = std::move(text),
          .continuation = {},
          .limit = kPageRows,
          .slice = kSlice,
          .cancelled = {},
          .accounts = {},
          .early = {},
          .columns = reader_.columnsOf(view_)};
}

LookupQuestion LookupSearch::question(const Run& run) const {
  LookupQuestion next = question(run.text);
  next.continuation = run.continuation;
  next.limit = kPageRows - run.found;
  return next;
}

void LookupSearch::advance(const std::shared_ptr<Run>& run) {
  run->waiting = false;
  LookupAnswer answer;
  try {
    if (ready() && connection().isRemote()) {
      run->waiting = true;
      return ask(run, question(*run), &LookupSearch::answered);
    }
    if (ready()) answer = reader_.answer(connection(), question(*run));
  } catch (const std::exception& failure) {
    return fail(failure);
  }
  take(*run, std::move(answer));
}

void LookupSearch::rested() {
  if (!run_ || run_->waiting || run_->parentless.empty()) return;
  LookupQuestion asked = question(run_->text);
  asked.accounts = std::exchange(run_->parentless, {});
  try {
    if (connection().isRemote()) return ask(run_, std::move(asked), &LookupSearch::parentsAnswered);
    parentsAnswered(*run_, reader_.answer(connection(), asked), nullptr);
  } catch (const std::exception&) {
    // The hits are shown without them; the failure will be reported when the user next uses the field.
  }
}

void LookupSearch::ask(const std::shared_ptr<Run>& run, LookupQuestion question, Answered taken) {
  const bool secondary = shell_.mayAskSecondary(connectionText_);
  // What has been written since may not have arrived there.
  if (asksSecondary_ && !secondary) thread_.reset();
  asksSecondary_ = secondary;
  if (!thread_)
    thread_.emplace(
        shell_.background,
        [this] {
          return shell_.providers.open(connectionText_ +
                                       (asksSecondary_ ? ";ApplicationIntent=ReadOnly" : ""));
        },
        shell_.waits.restAfter);
  question.slice = {};
  question.cancelled = [givenUp = run->givenUp] { return givenUp->load(); };
  thread_->ask(std::move(question), [&desktop = shell_.desktop(), asking = std::weak_ptr<Run>(run), taken](
                                        LookupAnswer answer, const std::exception_ptr& failure) {
    auto kept = std::make_shared<LookupAnswer>(std::move(answer));
    desktop.whenIdle([asking, kept, failure, taken] {
      const auto asker = asking.lock();
      if (asker) (asker->search->*taken)(*asker, std::move(*kept), failure);
    });
  });
}

void LookupSearch::answered(Run& run, LookupAnswer answer, const std::exception_ptr& failure) {
  run.waiting = answer.early;
  try {
    if (failure) std::rethrow_exception(failure);
  } catch (const std::exception& told) {
    return fail(told);
  }
  take(run, std::move(answer));
}

void LookupSearch::parentsAnswered(Run&, LookupAnswer answer, const std::exception_ptr& failure) {
  if (failure) return;
  // As in take().
  const ShowPlaces show = showPlaces_;
  show(std::move(answer.hits));
}

void LookupSearch::take(Run& run, LookupAnswer answer) {
  told_.clear();
  run.continuation = std::move(answer.continuation);
  run.found += answer.found;
  const bool more = !run.continuation.empty();
  const bool searching = answer.early || (more && run.found < kPageRows);
  if (searching && !run.waiting) schedule();
  // The list keeps the previous search's rows until there is a hit, or certainly none.
  if (searching && answer.hits.empty()) return;
  if (showPlaces_ && text::trimmed(run.text) != "")
    for (const ui::LookupRow& hit : answer.hits) run.parentless.push_back(hit.id);
  const bool append = std::exchange(run.shown, true);
  // The user's reaction to the rows may destroy this search: don't touch it after the call.
  const Show show = show_;
  show(std::move(answer.hits), append, more, searching);
}

void LookupSearch::fail(const std::exception& failure) {
  // So may a form under a notice.
  const std::weak_ptr<bool> life = life_;
  const Show show = show_;
  stop();
  show({}, false, false, false);
  if (!life.expired()) failed(failure);
}

void LookupSearch::failed(const std::exception& failure) {
  connection_.reset();
  if (told_ == failure.what()) return;
  told_ = failure.what();
  shell_.reportFailure(failure);
}

}  // namespace ledgertree::shell
