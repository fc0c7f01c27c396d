#include "engines/odbc/odbc_connection.h"

#include <exception>
#include <thread>
#include <utility>

#include "data/catalogue.h"
#include "engines/odbc/errors.h"
#include "engines/odbc/execution.h"
#include "engines/odbc/lock_holder.h"
#include "engines/odbc/packet.h"
#include "engines/odbc/procedure_call.h"
#include "engines/odbc/result_sets.h"
#include "engines/odbc/told_write.h"
#include "engines/odbc/view_search.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;

/// Doubled before each further try: 20, 40, 80 milliseconds.
constexpr std::chrono::milliseconds kFirstPause{10};
/// Between two attempts to reopen a connection.
constexpr std::chrono::milliseconds kBetweenOpenings{500};

}  // namespace

/// A walk over the rows of a statement. A connection runs one statement at a time: before another command
/// runs between two rows, the remaining rows are read into memory.
class OdbcConnection::Walk {
 public:
  explicit Walk(OdbcConnection& connection)
      : connection_(connection), outer_(std::exchange(connection.walk_, this)) {}
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk() { connection_.walk_ = outer_; }

  void start(Session& session, std::string_view statement) {
    execution_.emplace(session, statement, data::onlyReads(statement));
    bool result = execution_->send(statement);
    for (; result; result = execution_->nextResult()) {
      set_.emplace(*execution_);
      if (set_->columns() != 0) return;
    }
    set_.reset();
  }

  void show(const std::function<bool(const data::Rows& row)>& visit) {
    data::Rows row = set_ ? set_->emptyRows() : data::Rows();
    while (next(row)) {
      if (execution_) execution_->pause();
      if (!visit(row)) return;
      if (execution_) execution_->resume();
    }
    if (failure_) std::rethrow_exception(failure_);
    if (execution_) execution_->finish();
  }

  /// Reads the remaining rows, and frees the connection for others.
  void keepRest() noexcept {
    if (!execution_) return;
    execution_->resume();
    try {
      if (set_) {
        rest_ = set_->emptyRows();
        set_->addRows(rest_);
      }
      execution_->finish();
    } catch (...) {
      failure_ = std::current_exception();
    }
    set_.reset();
    execution_.reset();
  }

 private:
  bool next(data::Rows& row) {
    row.clearRows();
    if (!execution_) {
      if (place_ == rest_.count()) return false;
      for (std::size_t column = 0; column < rest_.columns().size(); ++column) {
        row.addValue(rest_.value(place_, column));
      }
      ++place_;
      return true;
    }
    return set_ && set_->next() && set_->addCells(row);
  }

  OdbcConnection& connection_;
  Walk* outer_;
  std::optional<Execution> execution_;
  std::optional<ResultSet> set_;
  data::Rows rest_;
  std::size_t place_ = 0;
  std::exception_ptr failure_;
};

OdbcConnection::OdbcConnection(data::ConnectionText text, std::chrono::milliseconds command,
                               Versions versions)
    : text_(std::move(text)), command_(command), versions_(versions) {}

OdbcConnection::~OdbcConnection() = default;

template <typename Work>
auto OdbcConnection::command(Work work, const bool* shown) {
  if (walk_ != nullptr) walk_->keepRest();
  if (!session_) open();
  session_->whileWaiting(waiting_);
  const auto end = Watch::Clock::now() + command_;
  for (int tried = 1;; ++tried) {
    const auto begun = Watch::Clock::now();
    try {
      return work(*session_);
    } catch (const data::DataError& failure) {
      // A statement that timed out may still run on the server.
      const bool unsure = failure.reason() == Reason::Connection || failure.reason() == Reason::TimeOut;
      if (unsure || (session_ && session_->dead())) session_.reset();
      const auto pause = kFirstPause * (1 << tried);
      // After one wait for a lock, a second one would take as long.
      const auto now = Watch::Clock::now();
      const bool late = tried == kTries || now + pause + (now - begun) >= end;
      if (late || (shown != nullptr && *shown) || !mayComeAgain(failure)) tell(failure);
      std::this_thread::sleep_for(pause);
    }
  }
}

void OdbcConnection::open() {
  const auto end = Watch::Clock::now() + data::kConnectTimeOut;
  for (;;) {
    try {
      session_ = std::make_unique<Session>(text_, command_, versions_);
      wasOpen_ = true;
      return;
    } catch (const data::DataError& failure) {
      // An unopened connection has done nothing; a schema of another version won't change by waiting.
      const bool comesBack = wasOpen_ && !failure.leavesOpen() && servesElsewhere(failure.number());
      if (!comesBack || Watch::Clock::now() + kBetweenOpenings >= end) throw;
    }
    if (waiting_.givesUp && waiting_.givesUp(true)) throw cancelledError();
    std::this_thread::sleep_for(kBetweenOpenings);
  }
}

bool OdbcConnection::mayComeAgain(const data::DataError& failure) const {
  // An installer's transaction ended with the refusal, and its earlier statements are rolled back.
  return session_ && failure.reason() == Reason::Busy && versions_ == Versions::Present;
}

void OdbcConnection::tell(const data::DataError& failure) {
  if (!session_) throw;
  const auto told = toldWithHolder(*session_, failure);
  if (session_->dead()) session_.reset();
  if (told) throw *told;
  throw;
}

std::optional<data::Rows> OdbcConnection::run(std::string_view statement) {
  const auto read = std::exchange(read_, std::nullopt);
  return command([this, statement, &read](Session& session) -> std::optional<data::Rows> {
    const bool reads = !changesRows(statement);
    Belonging belonging(session, operation_, !reads);
    if (session.dialect() != Dialect::Other && (read || belonging.isTold())) {
      runSaid(session, {read ? &*read : nullptr, belonging}, statement);
      return std::nullopt;
    }
    Execution execution(session, statement, data::onlyReads(statement));
    std::optional<data::Rows> rows;
    bool result = execution.send(statement);
    for (; result; result = execution.nextResult()) {
      if (!reads || rows) continue;
      ResultSet set(execution);
      if (set.columns() == 0) continue;
      rows = set.emptyRows();
      set.addRows(*rows);
    }
    execution.finish();
    return rows;
  });
}

data::Answers OdbcConnection::runTogether(std::span<const data::Command> commands) {
  if (commands.size() < 2 || read_) return Connection::runTogether(commands);
  data::Answers answers;
  try {
    bool begun = false;
    command(
        [this, commands, &answers, &begun](Session& session) {
          try {
            const bool takesBatches = session.dialect() != Dialect::Other;
            Belonging belonging(session, operation_, !data::onlyRead(commands));
            if (takesBatches) sendPacket(session, belonging, commands, answers.ran);
            if (!takesBatches) answers = Connection::runTogether(commands);
          } catch (...) {
            begun = !answers.ran.empty();
            throw;
          }
        },
        &begun);
  } catch (...) {
    answers.failure = std::current_exception();
  }
  return answers;
}

void OdbcConnection::walk(std::string_view statement,
                          const std::function<bool(const data::Rows& row)>& visit) {
  bool shown = false;
  const auto show = [&](const data::Rows& row) {
    shown = true;
    return visit(row);
  };
  command(
      [this, statement, &show](Session& session) {
        Walk walk(*this);
        walk.start(session, statement);
        walk.show(show);
      },
      &shown);
}

std::int32_t OdbcConnection::call(const data::Procedure& procedure, std::span<const data::Value> values) {
  const auto read = std::exchange(read_, std::nullopt);
  data::checkArguments(procedure, values);
  return command([this, &procedure, values, &read](Session& session) {
    Belonging belonging(session, operation_, !procedure.onlyReads);
    if (session.dialect() != Dialect::Other && (read || belonging.isTold()))
      return callSaid(session, {read ? &*read : nullptr, belonging}, procedure, values);
    return callProcedure(session, procedure, values);
  });
}

data::Rows OdbcConnection::takeBack(std::int64_t operation) {
  data::requireToTakeBack(operation_.get(), operation);
  return command([this, operation](Session& session) {
    if (session.dialect() == Dialect::Other) return Connection::takeBack(operation);
    // The history may have been switched on since the session was opened.
    session.seeHistory(true);
    Belonging belonging(session, operation_, true);
    try {
      return takeBackThere(session, belonging, operation);
    } catch (const data::DataError& failure) {
      constexpr int kNoProcedure = 2812;
      if (failure.number() != kNoProcedure) throw;
      session.seeHistory(false);
      return Connection::takeBack(operation);
    }
  });
}

data::SearchPage OdbcConnection::search(const data::SearchRequest& request) {
  return command([&request](Session& session) { return searchView(session, request); });
}

}  // namespace ledgertree::engines::odbc
