#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "data/connection.h"
#include "shell/background.h"

namespace ledgertree::shell {

/// A connection of an engine and the thread that uses it; they hold each other until the thread ends. There
/// is one task at a time, but a task that pauses lets others run in its middle. Where there is none for
/// `restAfter` the connection gives back what it holds, once, and takes it again with the next task.
class ConnectionLine : public std::enable_shared_from_this<ConnectionLine> {
 public:
  /// Runs on the thread, and throws nothing.
  using Task = std::function<void(data::Connection&)>;

  ConnectionLine(std::unique_ptr<data::Connection> engine, std::chrono::milliseconds restAfter);

  /// Once, ahead of the first task. Throws what making a thread throws.
  void begin(Background& background);
  void post(Task task);
  /// Whether the task ended or pauses, at the latest after that time.
  [[nodiscard]] bool idleWithin(std::chrono::milliseconds time);
  void giveUp() { givenUp_ = true; }
  /// Nobody waits any more: the thread ends with what it is at.
  void leave();
  [[nodiscard]] bool left() const;
  /// In the middle of a task, on its thread; gives whether the task shall go on.
  [[nodiscard]] bool pause();
  void resume(bool goesOn);

 private:
  template <typename Change>
  void change(Change change);
  bool serve();

  std::unique_ptr<data::Connection> engine_;
  std::chrono::milliseconds restAfter_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Task task_;
  std::optional<bool> resumed_;
  bool idle_ = true;
  bool over_ = false;
  std::atomic<bool> givenUp_ = false;
};

}  // namespace ledgertree::shell
