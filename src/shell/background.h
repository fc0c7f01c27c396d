#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <thread>

namespace ledgertree::shell {

/// Threads that may outlive their starter: a call to an unresponsive server can't be left before its
/// time-out, and no form waits for it. Only shutdown does. For the user-interface thread.
class Background {
 public:
  Background() = default;
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;
  /// Stops and joins all running threads.
  ~Background();

  /// Runs `work` on a thread of its own. `stop` is called from another thread to end it soon, perhaps after
  /// it has ended. Neither throws.
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
