#include "shell/connection_line.h"

#include <utility>

namespace ledgertree::shell {

ConnectionLine::ConnectionLine(std::unique_ptr<data::Connection> engine, std::chrono::milliseconds restAfter)
    : engine_(std::move(engine)), restAfter_(restAfter) {
  engine_->whileWaiting({.givesUp = [this](bool) { return givenUp_.load(); }, .over = {}});
}

void ConnectionLine::begin(Background& background) {
  background.run([line = shared_from_this()] { line->serve(); },
                 [line = weak_from_this()] {
                   if (const auto still = line.lock()) still->leave();
                 });
}

template <typename Change>
void ConnectionLine::change(Change change) {
  {
    const std::lock_guard lock(mutex_);
    change();
  }
  changed_.notify_all();
}

void ConnectionLine::post(Task task) {
  change([&] {
    task_ = std::move(task);
    idle_ = givenUp_ = false;
  });
}

bool ConnectionLine::idleWithin(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, time, [this] { return idle_; });
}

void ConnectionLine::leave() {
  change([this] { over_ = givenUp_ = true; });
}

bool ConnectionLine::left() const {
  const std::lock_guard lock(mutex_);
  return over_;
}

bool ConnectionLine::pause() {
  change([this] { idle_ = true; });
  return serve();
}

void ConnectionLine::resume(bool goesOn) {
  change([&] {
    resumed_ = goesOn;
    idle_ = givenUp_ = false;
  });
}

bool ConnectionLine::serve() {
  std::unique_lock lock(mutex_);
  const auto asked = [this] { return over_ || resumed_ || task_; };
  for (;;) {
    if (!changed_.wait_for(lock, restAfter_, asked)) {
      lock.unlock();
      engine_->rest();
      lock.lock();
      changed_.wait(lock, asked);
    }
    if (over_) return false;
    if (resumed_) return *std::exchange(resumed_, std::nullopt);
    Task task = std::exchange(task_, nullptr);
    lock.unlock();
    task(*engine_);
    task = nullptr;
    lock.lock();
    idle_ = true;
    changed_.notify_all();
  }
}

}  // namespace ledgertree::shell
