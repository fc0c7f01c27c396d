#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>

#include "data/connection.h"
#include "shell/background.h"
#include "shell/lookup/lookup_reader.h"

namespace ledgertree::shell {

/// Answers questions beside the user-interface thread, over a connection of its own, the newest only. It can
/// be left at any moment: what still runs then finishes unobserved, and its answer is dropped. Where a server
/// goes on with a question that was given up, a second thread with a second connection takes over after a
/// moment; never more than kMostThreads.
class LookupThread {
 public:
  /// Called on the thread, with an early answer ahead of the whole one; with a failure the answer is empty.
  using Done = std::function<void(LookupAnswer answer, const std::exception_ptr& failure)>;
  /// Makes a connection, on the thread of the owner. It isn't open yet.
  using Connect = std::function<std::unique_ptr<data::Connection>()>;
  static constexpr int kMostThreads = 3;

  /// A connection on which nobody searched for `restAfter` gives back what it holds, until the next question.
  LookupThread(Background& background, Connect connect, std::chrono::milliseconds restAfter);
  LookupThread(const LookupThread&) = delete;
  LookupThread& operator=(const LookupThread&) = delete;
  ~LookupThread();

  /// Takes the place of a question that isn't begun. One that runs ends by its own `cancelled`, and a
  /// question that was cancelled gets no answer. Throws what making a connection throws.
  void ask(LookupQuestion question, Done done);

 private:
  struct State;
  Background& background_;
  Connect connect_;
  std::shared_ptr<State> state_;
};

}  // namespace ledgertree::shell
