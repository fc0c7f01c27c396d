#include "engines/sqlite/embedded_connection.h"

#include <sqlite3.h>

#include <utility>

#include "data/catalogue.h"
#include "engines/sqlite/errors.h"
#include "engines/sqlite/take_back.h"

namespace ledgertree::engines::sqlite {
namespace {

using Clock = Watch::Clock;

[[noreturn]] void fail(Session& open, std::string_view statement) {
  open.watch().rethrowStop(statement);
  throw lastError(open.handle(), statement);
}

/// A run of a statement after its first step. A write checks the file before and after it: a row written into
/// a file that has been moved away would be lost silently.
class Started {
 public:
  Started(Session& open, std::string_view statement)
      : Started(open, statement, open.plans().find(statement)) {}
  /// Runs a plan for the statement; the plans' current literals must be those of the statement.
  Started(Session& open, std::string_view statement, std::shared_ptr<Plan> plan)
      : open_(open), statement_(statement), writes_(plan->writes()) {
    const LetGo behind{open_.plans()};
    if (writes_) open_.requireFile(Clock::now(), true);
    while (!step(plan)) plan = open_.plans().find(statement_);
    // Letting go makes SQLite forget why it failed.
    if (result_ != SQLITE_ROW && result_ != SQLITE_DONE) fail(open_, statement_);
  }

  [[nodiscard]] Plan::Run& run() { return *run_; }
  /// The first step's result.
  [[nodiscard]] int result() const { return result_; }
  /// Call after the last step, which returned `result`.
  void end(int result) {
    if (result != SQLITE_DONE) fail(open_, statement_);
    if (writes_) open_.requireFile(Clock::now(), true);
  }

 private:
  struct LetGo {
    Plans& plans;
    ~LetGo() { plans.letGo(); }
  };

  /// Makes the first step. False if SQLite had to prepare the plan again because of a schema change: the
  /// statement starts over, a write after having been undone.
  bool step(const std::shared_ptr<Plan>& plan) {
    Plans& plans = open_.plans();
    run_.emplace(plan, plans.literals());
    // A transaction that begins with a read can't wait for another program's write.
    if (writes_) plans.letGo();
    result_ = plans.firstStep(*run_);
    if (!run_->isPreparedAnew()) return true;
    const bool renewed = plans.renew();
    run_->takePreparedAnew();
    return !renewed && !writes_;
  }

  Session& open_;
  std::string_view statement_;
  bool writes_;
  std::optional<Plan::Run> run_;
  int result_ = SQLITE_DONE;
};

/// Reads all rows of a run, which has then ended.
data::Rows readAll(Started& started) {
  Plan::Run& run = started.run();
  int result = started.result();
  data::Rows rows = run.emptyRows();
  for (; result == SQLITE_ROW; result = run.step()) run.addCells(rows);
  started.end(result);
  return rows;
}

/// A transaction for a write and what belongs to it. Rolls back unless committed.
class Together {
 public:
  explicit Together(Session& open) : open_(open) {
    // Pending reads would prevent the write lock.
    open.plans().letGo();
    execute(open.transaction().begin);
  }
  Together(const Together&) = delete;
  Together& operator=(const Together&) = delete;
  ~Together() {
    if (!ended_) undo();
  }
  /// Tells the triggers of the memory of the chart which operation the write belongs to.
  void mark(const data::Operation& operation) {
    // From here on, no statement may have to be prepared again: it couldn't be undone alone.
    open_.plans().renew();
    open_.plans().letGo();
    open_.marks().set(operation);
  }
  void end() {
    execute(open_.transaction().commit);
    ended_ = true;
  }

 private:
  void execute(SQLite::Statement& statement) {
    const int result = statement.tryExecuteStep();
    // The reset returns the step's error again, which has been reported.
    statement.tryReset();
    if (result != SQLITE_DONE) fail(open_, statement.getQuery());
  }
  void undo() {
    open_.transaction().rollback.tryExecuteStep();
    open_.transaction().rollback.tryReset();
  }

  Session& open_;
  bool ended_ = false;
};

}  // namespace

/// Counts the running commands, and cleans up after the outermost.
class EmbeddedConnection::Running {
 public:
  explicit Running(EmbeddedConnection& connection) : connection_(connection) { ++connection.commands_; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() {
    if (--connection_.commands_ != 0 || !connection_.session_) return;
    if (connection_.session_->lost()) connection_.session_.reset();
  }

 private:
  EmbeddedConnection& connection_;
};

template <typename Work>
auto EmbeddedConnection::command(bool onlyReads, const std::function<bool()>* cancelled, Work work) {
  Session& open = session();
  if (open.watch().asking()) throw engineError(SQLITE_BUSY, {}, {});
  const Running running(*this);
  const Clock::time_point now = Clock::now();
  Watch::Command watched(open.watch(), now + timeOuts_.command, cancelled);
  open.watch().whileWaiting(waiting_, onlyReads, now);
  open.requireFile(now, false);
  return work(open, watched);
}

template <typename Work>
auto EmbeddedConnection::write(bool onlyReads, const std::optional<data::AsRead>& read, Work work) {
  return command(onlyReads, nullptr, [&](Session& open, Watch::Command&) {
    // Reads belong to no operation, and need no lock.
    const auto operation = onlyReads || !open.marks().areKept() ? nullptr : operation_;
    if (!read && !operation) return work(open);
    Together together(open);
    if (read) {
      data::requireAsRead(*read, [&open](const std::string& statement) {
        Started started(open, statement);
        return readAll(started);
      });
    }
    if (operation) together.mark(*operation);
    auto result = work(open);
    const std::int64_t number = operation ? open.marks().clear() : 0;
    together.end();
    if (operation) operation->number = number;
    return result;
  });
}

std::optional<data::Rows> EmbeddedConnection::run(std::string_view statement) {
  return write(data::onlyReads(statement), std::exchange(read_, std::nullopt),
               [statement](Session& open) -> std::optional<data::Rows> {
                 Started started(open, statement);
                 data::Rows rows = readAll(started);
                 if (rows.columns().empty()) return std::nullopt;
                 return rows;
               });
}

void EmbeddedConnection::walk(std::string_view statement,
                              const std::function<bool(const data::Rows& row)>& visit) {
  command(true, nullptr, [statement, &visit](Session& open, Watch::Command& watched) {
    Started started(open, statement);
    Plan::Run& run = started.run();
    int result = started.result();
    data::Rows row = run.emptyRows();
    for (; result == SQLITE_ROW; result = run.step()) {
      row.clearRows();
      run.addCells(row);
      const Clock::time_point shown = Clock::now();
      if (!visit(row)) return;
      // The time-out applies to the engine, not to what is done with its rows.
      watched.extend(Clock::now() - shown);
    }
    started.end(result);
  });
}

void EmbeddedConnection::readTogether(const std::function<void()>& work) {
  command(true, nullptr, [&work](Session& open, Watch::Command&) {
    // While a statement is on a row, which always exists, reads take no lock of their own.
    const Started onRow(open, "select name from sqlite_schema");
    work();
  });
}

std::int32_t EmbeddedConnection::call(const data::Procedure& procedure, std::span<const data::Value> values) {
  const auto read = std::exchange(read_, std::nullopt);
  data::checkArguments(procedure, values);
  return write(procedure.onlyReads, read, [&procedure, values](Session& open) {
    open.requireFile(Clock::now(), true);
    try {
      const std::int32_t result = open.procedures().call(procedure, values);
      open.requireFile(Clock::now(), true);
      return result;
    } catch (const SQLite::Exception& failure) {
      open.watch().rethrowStop(procedure.name);
      throw engineError(failure, procedure.name);
    }
  });
}

data::Rows EmbeddedConnection::takeBack(std::int64_t operation) {
  return command(false, nullptr, [this, operation](Session& open, Watch::Command& watched) {
    data::requireToTakeBack(operation_.get(), operation);
    if (!open.marks().areKept()) return Connection::takeBack(operation);
    // It can be cancelled at any time.
    watched.extend(data::kLongestTakingBack);
    const auto held = operation_;
    Together together(open);
    try {
      together.mark(*held);
      TakeBack work(open.database(), operation);
      data::Rows obstacles = work.run();
      if (obstacles.count() != 0) return obstacles;
      const std::int64_t number = open.marks().clear();
      together.end();
      held->number = number;
      return obstacles;
    } catch (const SQLite::Exception& failure) {
      open.watch().rethrowStop("takeBack");
      throw engineError(failure, "takeBack");
    }
  });
}

data::SearchPage EmbeddedConnection::search(const data::SearchRequest& request) {
  return command(true, &request.cancelled, [&request](Session& open, Watch::Command&) {
    return open.searches().page(request, open.watch());
  });
}

std::vector<std::string> EmbeddedConnection::takeNews() {
  return session_ ? session_->takeNews() : std::vector<std::string>();
}

std::vector<std::string> EmbeddedConnection::queryPlan(std::string_view statement) {
  return command(true, nullptr, [statement](Session& open, Watch::Command&) {
    // Makes its literals those of the statement.
    static_cast<void>(open.plans().find(statement));
    open.plans().letGo();
    Translation translation = translate(statement, open.plans().tables());
    translation.sql.insert(0, "EXPLAIN QUERY PLAN ");
    Started started(open, statement, std::make_shared<Plan>(open.handle(), translation, statement));
    const data::Rows rows = readAll(started);
    std::vector<std::string> steps;
    for (std::size_t row = 0; row < rows.count(); ++row) {
      steps.emplace_back(rows.text(row, rows.columns().size() - 1));
    }
    return steps;
  });
}

Session& EmbeddedConnection::session() {
  if (!session_) {
    const auto missing = *wasOpen_ ? Session::Missing::Refuse : Session::Missing::Create;
    session_ = std::make_unique<Session>(path_, missing, timeOuts_.connect);
    *wasOpen_ = true;
  }
  return *session_;
}

}  // namespace ledgertree::engines::sqlite
