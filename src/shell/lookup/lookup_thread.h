#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>

#include "data/connection.h"
#include "shell/background.h"
#include "shell/lookup/lookup_reader.h"

namespace ledgertree::shell {

/// Answers questions off the user-interface thread, over its own connection, only the newest one. It can be
/// left at any moment: a running question finishes unobserved, and its answer is dropped. If a server
/// continues with a cancelled question, a second thread with a second connection takes over after a moment;
/// never more than kMostThreads.
class LookupThread {
 public:
  /// Called on the thread, with an early answer before the whole one; after a failure the answer is empty.
  using Done = std::function<void(LookupAnswer answer, const std::exception_ptr& failure)>;
  /// Creates an unopened connection, on the owner's thread.
  using Connect = std::function<std::unique_ptr<data::Connection>()>;
  static constexpr int kMostThreads = 3;

  /// A connection idle for `restAfter` releases its resources, until the next question.
  LookupThread(Background& background, Connect connect, std::chrono::milliseconds restAfter);
  LookupThread(const LookupThread&) = delete;
  LookupThread& operator=(const LookupThread&) = delete;
  ~LookupThread();

  /// Replaces a question not yet started. A running one ends by its own `cancelled`, and a cancelled question
  /// gets no answer. Throws what creating a connection throws.
  void ask(LookupQuestion question, Done done);

 private:
  struct State;
  Background& background_;
  Connect connect_;
  std::shared_ptr<State> state_;
};

}  // namespace ledgertree::shell
