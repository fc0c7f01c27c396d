#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <thread>

namespace ledgertree::shell {

/// Threads whose work may outlive the one who began it: a call to a server that doesn't answer can't be left
/// before its time-out, and no form waits for it. Only the end does. Belongs to the user-interface thread.
class Background {
 public:
  Background() = default;
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;
  /// Stops and awaits what still runs.
  ~Background();

  /// Runs `work` on a thread of its own. `stop` tells it to end soon, from another thread; it may be called
  /// though the work has ended. Neither throws.
  void run(std::function<void()> work, std::function<void()> stop);

 private:
  struct Running {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> ended;
    std::function<void()> stop;
  };
  std::list<Running> running_;
};

}  // namespace ledgertree::shell
