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

/// An engine connection and the thread that uses it; they keep each other alive until the thread ends. There
/// is one task at a time, but a paused task lets others run. After `restAfter` without one, the connection
/// releases its resources, and reacquires them for the next task.
class ConnectionLine : public std::enable_shared_from_this<ConnectionLine> {
 public:
  /// Runs on the thread, and must not throw.
  using Task = std::function<void(data::Connection&)>;

  ConnectionLine(std::unique_ptr<data::Connection> engine, std::chrono::milliseconds restAfter);

  /// Call once, before the first task. Throws what creating a thread throws.
  void begin(Background& background);
  void post(Task task);
  /// Waits at most that long; returns whether the task ended or paused.
  [[nodiscard]] bool idleWithin(std::chrono::milliseconds time);
  void giveUp() { givenUp_ = true; }
  /// Nobody waits for it any longer: the thread ends after its current work.
  void leave();
  [[nodiscard]] bool left() const;
  /// Called by a task, on its thread; returns whether it should continue.
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
