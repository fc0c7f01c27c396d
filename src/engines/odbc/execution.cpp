#include "engines/odbc/execution.h"

#include <algorithm>

#include "text/characters.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

/// Drivers count in seconds. A driver that watches the time itself ends a statement more gently than an
/// interruption does.
constexpr std::chrono::milliseconds kGrace{500};

/// Whether the caller of a command, or the user waiting for it, has cancelled it.
std::function<bool()> questionOf(const data::Waiting* waiting, bool onlyReads,
                                 const std::function<bool()>* cancelled) {
  const bool cancels = cancelled != nullptr && *cancelled;
  if (waiting == nullptr || !waiting->givesUp) return cancels ? *cancelled : nullptr;
  return [waiting, onlyReads, cancelled = cancels ? *cancelled : nullptr] {
    return waiting->givesUp(onlyReads) || (cancelled && cancelled());
  };
}

}  // namespace

void requireCleanStatement(std::string_view text) {
  if (text::isCleanText(text)) return;
  throw data::DataError(data::DataError::Reason::Misuse, 0,
                        "متن نويسه ناخوانا دارد. آن را پاک کنيد و دوباره بنويسيد.");
}

bool changesRows(std::string_view statement) {
  constexpr std::string_view kWords[] = {"insert", "update", "delete", "merge", "truncate"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [statement](std::string_view word) { return beginsWithWord(statement, word); });
}

Execution::Execution(Session& session, std::string_view name, bool onlyReads,
                     const std::function<bool()>* cancelled, std::optional<std::chrono::milliseconds> longest)
    : session_(session),
      name_(name),
      onlyReads_(onlyReads),
      givenUp_(questionOf(session.waiting(), onlyReads, cancelled)),
      statement_(SQL_HANDLE_STMT, session.connection().get()),
      watched_(session.watch(), statement_,
               Watch::Clock::now() + longest.value_or(session.commandTimeOut()) + kGrace, &givenUp_) {
  const auto seconds = (longest.value_or(session.commandTimeOut()).count() + 999) / 1000;
  SQLSetStmtAttrW(statement_.get(), SQL_ATTR_QUERY_TIMEOUT,
                  reinterpret_cast<SQLPOINTER>(static_cast<std::size_t>(seconds)), 0);  // NOLINT
}

bool Execution::send(std::string_view text) {
  requireCleanStatement(text);
  std::u16string wide = text::wideText(foldStatement(text, session_.codePage()));
  const SQLRETURN result = SQLExecDirectW(statement_.get(), reinterpret_cast<SQLWCHAR*>(wide.data()),
                                          static_cast<SQLINTEGER>(wide.size()));
  // SQL_NO_DATA: the statement changed no row.
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return true;
  noteFailure();
  return false;
}

bool Execution::nextResult() {
  for (int failures = 0; !over_ && failures < 2; ++failures) {
    const SQLRETURN result = SQLMoreResults(statement_.get());
    if (SQL_SUCCEEDED(result)) return true;
    if (result == SQL_NO_DATA) break;
    noteFailure();
  }
  over_ = true;
  return false;
}

void Execution::noteFailure() {
  if (!failure_) failure_ = records(statement_);
}

void Execution::finish() {
  while (nextResult()) continue;
  if (!failure_) return;
  // After an interruption that the server didn't acknowledge, the state of the connection is unknown.
  const bool acknowledged = std::any_of(failure_->begin(), failure_->end(),
                                        [](const Record& record) { return record.state == "HY008"; });
  if (watched_.stopped() && !acknowledged) session_.giveUp();
  watched_.rethrowStop(name_, onlyReads_ || !session_.dead());
  const data::DataError failure = callError(*failure_, name_, onlyReads_);
  if (failure.reason() != data::DataError::Reason::Connection && session_.dead())
    throw brokenError(*failure_, name_, onlyReads_);
  throw failure;
}

}  // namespace ledgertree::engines::odbc
