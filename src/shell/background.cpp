#include "shell/background.h"

#include <utility>

namespace ledgertree::shell {

Background::~Background() {
  for (const Running& one : running_) one.stop();
  for (Running& one : running_) one.thread.join();
}

void Background::run(std::function<void()> work, std::function<void()> stop) {
  running_.remove_if([](Running& one) {
    if (!*one.ended) return false;
    one.thread.join();
    return true;
  });
  auto ended = std::make_shared<std::atomic<bool>>(false);
  std::thread thread([work = std::move(work), ended]() mutable {
    work();
    // Destroys its captures on this thread too: closing a connection may take time.
    work = nullptr;
    *ended = true;
  });
  running_.push_back({std::move(thread), std::move(ended), std::move(stop)});
}

}  // namespace ledgertree::shell
