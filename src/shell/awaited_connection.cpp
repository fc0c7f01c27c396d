#include "shell/awaited_connection.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "data/catalogue.h"
#include "data/data_error.h"

namespace ledgertree::shell {
namespace {

using Reason = data::DataError::Reason;
using Clock = std::chrono::steady_clock;

/// How long a server has to say that it stopped what was given up.
constexpr std::chrono::milliseconds kToStop{300};
/// The rows of a walk that are handed over at a time.
constexpr std::size_t kPiece = 500;

/// What a task came to; neither while it is under way.
template <typename Result>
struct Answer {
  std::optional<Result> result;
  std::exception_ptr failure;

  template <typename Work>
  void take(Work& work, data::Connection& engine) {
    try {
      result.emplace(work(engine));
    } catch (...) {
      failure = std::current_exception();
    }
  }
};

/// Shows the rows one by one; false where `visit` wants no more.
bool showRows(const data::Rows& rows, const std::function<bool(const data::Rows& row)>& visit) {
  data::Rows row = rows;
  for (std::size_t place = 0; place < rows.count(); ++place) {
    row.clearRows();
    for (std::size_t column = 0; column < rows.columns().size(); ++column)
      row.addValue(rows.value(place, column));
    if (!visit(row)) return false;
  }
  return true;
}

}  // namespace

void AwaitedConnection::leave() {
  if (line_) line_->leave();
  line_.reset();
}

ConnectionLine& AwaitedConnection::ready(const Manner& manner) {
  waits_.require(manner.onlyReads);
  if (!manner.onlyReads) waits_.noteWrite();
  if (!line_) {
    auto line = std::make_shared<ConnectionLine>(make_(), waits_.restAfter);
    line->begin(background_);
    line_ = std::move(line);
  }
  return *line_;
}

void AwaitedConnection::await(const Manner& manner, const std::exception_ptr& failure) {
  const auto begun = Clock::now();
  bool gaveUp = false;
  try {
    gaveUp = waitFor(manner, begun);
    if (failure) std::rethrow_exception(failure);
  } catch (const data::DataError& told) {
    // A search that ran out of its own time was given up by whoever asked, and by no person.
    if (told.reason() == Reason::Cancelled && !gaveUp) throw;
    const bool cancelled = told.reason() == Reason::Cancelled;
    throw waits_.noted(cancelled ? data::DataError(Reason::Cancelled, 0, data::kGivenUp) : told,
                       Clock::now() - begun);
  }
}

bool AwaitedConnection::waitFor(const Manner& manner, Clock::time_point begun) {
  struct Noted {
    DatabaseWaits& waits;
    Clock::time_point begun;
    ~Noted() { waits.noteWaited(Clock::now() - begun); }
  } const noted{waits_, begun};
  const auto unseen =
      std::chrono::duration_cast<std::chrono::milliseconds>(DatabaseWaits::kBeforeShowing - waits_.waited());
  return !line_->idleWithin(std::max(unseen, DatabaseWaits::kBetweenPaints)) && waitLonger(manner, begun);
}

bool AwaitedConnection::waitLonger(const Manner& manner, Clock::time_point begun) {
  DatabaseWaits::Wait wait(waits_, begun - waits_.waited());
  std::optional<Clock::time_point> stopped;
  bool gaveUp = false;
  while (!line_->idleWithin(DatabaseWaits::kBetweenPaints)) {
    if (wait.goesOn(manner.onlyReads)) gaveUp = true;
    const auto now = Clock::now();
    if (now - begun >= waits_.patience) {
      leave();
      throw manner.onlyReads ? data::DataError(Reason::TimeOut, 0, data::kStopped).undone()
                             : data::DataError(Reason::TimeOut, 0, data::kUnanswered);
    }
    if (!stopped && (gaveUp || (manner.cancelled && manner.cancelled()))) {
      stopped = now;
      line_->giveUp();
    }
    if (stopped && now - *stopped >= kToStop) {
      leave();
      const data::DataError given(Reason::Cancelled, 0, data::kGivenUp);
      throw gaveUp ? waits_.noted(given, now - begun) : given;
    }
  }
  return gaveUp;
}

template <typename Work>
auto AwaitedConnection::ask(const Manner& manner, Work work) {
  const auto answer = std::make_shared<Answer<std::invoke_result_t<Work, data::Connection&>>>();
  auto read = std::exchange(read_, std::nullopt);
  ready(manner).post([answer, read = std::move(read), work = std::move(work)](data::Connection& engine) {
    if (read) engine.handOver(*read);
    answer->take(work, engine);
  });
  await(manner, answer->failure);
  return std::move(*answer->result);
}

std::optional<data::Rows> AwaitedConnection::run(std::string_view statement) {
  return ask({.onlyReads = data::onlyReads(statement)},
             [text = std::string(statement)](data::Connection& engine) { return engine.run(text); });
}

std::int32_t AwaitedConnection::call(const data::Procedure& procedure, std::span<const data::Value> values) {
  return ask({.onlyReads = procedure.onlyReads},
             [procedure, kept = std::vector(values.begin(), values.end())](data::Connection& engine) {
               return engine.call(procedure, kept);
             });
}

data::Answers AwaitedConnection::runTogether(std::span<const data::Command> commands) {
  const auto begun = Clock::now();
  data::Answers answers;
  try {
    answers = ask({.onlyReads = data::onlyRead(commands)},
                  [kept = std::vector(commands.begin(), commands.end())](data::Connection& engine) {
                    return engine.runTogether(kept);
                  });
    if (answers.failure) std::rethrow_exception(answers.failure);
  } catch (const data::DataError& failure) {
    // What the wait itself came to was noted, and gave no answers.
    const bool ofEngine = answers.failure != nullptr;
    const bool given = ofEngine && failure.reason() == Reason::Cancelled;
    const data::DataError told = given ? data::DataError(Reason::Cancelled, 0, data::kGivenUp) : failure;
    answers.failure = std::make_exception_ptr(ofEngine ? waits_.noted(told, Clock::now() - begun) : told);
  } catch (...) {
    answers.failure = std::current_exception();
  }
  return answers;
}

data::SearchPage AwaitedConnection::search(const data::SearchRequest& request) {
  data::SearchRequest asked = request;
  // Nobody on this thread could do anything with them ahead of the page.
  asked.early = nullptr;
  return ask({.cancelled = request.cancelled},
             [asked](data::Connection& engine) { return engine.search(asked); });
}

std::vector<std::string> AwaitedConnection::takeNews() {
  return ask({}, [](data::Connection& engine) { return engine.takeNews(); });
}

void AwaitedConnection::walk(std::string_view statement,
                             const std::function<bool(const data::Rows& row)>& visit) {
  ConnectionLine& line = ready({});
  const std::shared_ptr<ConnectionLine> kept = line_;
  const auto piece = std::make_shared<data::Rows>();
  const auto answer = std::make_shared<Answer<bool>>();
  line.post([&line, piece, answer, text = std::string(statement)](data::Connection& engine) {
    const auto show = [&](const data::Rows& row) {
      if (piece->columns().empty())
        for (const std::string& column : row.columns()) piece->addColumn(column);
      for (std::size_t column = 0; column < row.columns().size(); ++column)
        piece->addValue(row.value(0, column));
      return piece->count() < kPiece || line.pause();
    };
    const auto walked = [&](data::Connection& on) { return on.walk(text, show), true; };
    answer->take(walked, engine);
  });
  const auto resume = [&](bool goesOn) {
    if (answer->result) return;
    // A command between two rows may have been left, and this line with it.
    if (line_ != kept) throw data::DataError(Reason::TimeOut, 0, data::kStopped).undone();
    line.resume(goesOn);
    await({}, answer->failure);
  };
  await({}, answer->failure);
  bool goesOn = true;
  while (goesOn && piece->count() != 0) {
    try {
      goesOn = showRows(*piece, visit);
    } catch (...) {
      try {
        if (line_ == kept) resume(false);
      } catch (const data::DataError&) {
        // What the visitor threw comes first.
      }
      throw;
    }
    piece->clearRows();
    resume(goesOn);
  }
}

}  // namespace ledgertree::shell
