#include "shell/lookup/lookup_thread.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace ledgertree::shell {
namespace {

/// A server that honours a cancellation does so sooner.
constexpr std::chrono::milliseconds kPatience{300};

}  // namespace

struct LookupThread::State {
  struct Asked {
    LookupQuestion question;
    Done done;
  };

  void stop() {
    {
      const std::lock_guard lock(mutex);
      over = true;
      next.reset();
    }
    changed.notify_all();
  }

  [[nodiscard]] bool isOver() {
    const std::lock_guard lock(mutex);
    return over;
  }

  explicit State(std::chrono::milliseconds rest) : restAfter(rest) {}

  /// Waits for the next question, as a spare thread only for one that no other thread has taken within
  /// `patience`; nothing if this thread is no longer needed.
  std::optional<Asked> take(data::Connection& connection, bool spare) {
    std::unique_lock lock(mutex);
    if (spare && changed.wait_for(lock, kPatience, [this] { return over || !next; })) {
      --threads;
      return std::nullopt;
    }
    const auto asked = [this] { return over || next; };
    if (!changed.wait_for(lock, restAfter, asked)) {
      lock.unlock();
      connection.rest();
      lock.lock();
      changed.wait(lock, asked);
    }
    if (over) return std::nullopt;
    ++busy;
    return std::exchange(next, std::nullopt);
  }

  /// A thread whose question was cancelled leaves further ones to the thread that has taken over meanwhile.
  /// Without one it continues: its connection is open.
  bool goOn(bool givenUp) {
    const std::lock_guard lock(mutex);
    --busy;
    if (!givenUp || threads == 1 || next) return !over;
    --threads;
    return false;
  }

  void work(data::Connection& connection, bool spare) {
    LookupReader reader;
    while (auto asked = take(connection, spare)) {
      spare = false;
      changed.notify_all();
      const auto givenUp = [this, cancelled = asked->question.cancelled] { return cancelled() || isOver(); };
      asked->question.cancelled = givenUp;
      asked->question.early = [&](LookupAnswer first) {
        if (!givenUp()) asked->done(std::move(first), nullptr);
      };
      LookupAnswer answer;
      std::exception_ptr failure;
      try {
        answer = reader.answer(connection, asked->question);
      } catch (...) {
        failure = std::current_exception();
      }
      const bool unwanted = givenUp();
      if (!unwanted) asked->done(std::move(answer), failure);
      if (!goOn(unwanted)) return;
    }
  }

  const std::chrono::milliseconds restAfter;
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<Asked> next;
  int threads = 0;  ///< working or waiting for work
  int busy = 0;     ///< working
  bool over = false;
};

LookupThread::LookupThread(Background& background, Connect connect, std::chrono::milliseconds restAfter)
    : background_(background), connect_(std::move(connect)), state_(std::make_shared<State>(restAfter)) {}

LookupThread::~LookupThread() { state_->stop(); }

void LookupThread::ask(LookupQuestion question, Done done) {
  bool another = false;
  bool spare = false;
  {
    const std::lock_guard lock(state_->mutex);
    spare = state_->threads != 0;
    another = state_->threads == state_->busy && state_->threads < kMostThreads;
  }
  std::shared_ptr<data::Connection> connection = another ? connect_() : nullptr;
  {
    const std::lock_guard lock(state_->mutex);
    state_->next = State::Asked{std::move(question), std::move(done)};
    if (another) ++state_->threads;
  }
  state_->changed.notify_all();
  if (!another) return;
  // The thread keeps the state and its connection alive while it needs them.
  try {
    background_.run(
        [state = state_, connection = std::move(connection), spare] { state->work(*connection, spare); },
        [state = std::weak_ptr<State>(state_)] {
          if (const auto still = state.lock()) still->stop();
        });
  } catch (...) {
    // A thread that never started mustn't be waited for.
    const std::lock_guard lock(state_->mutex);
    --state_->threads;
    throw;
  }
}

}  // namespace ledgertree::shell
