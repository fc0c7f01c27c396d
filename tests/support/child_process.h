#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace ledgertree::testing {

/// A child process that reports its progress to its parent through a pipe; start it before the parent opens a
/// database, since SQLite connections don't survive a fork.
class Child {
 public:
  explicit Child(const std::function<void(int pipe)>& work) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
      ::close(ends[0]);
      work(ends[1]);
      ::_exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    ::close(ends[1]);
    pipe_ = ends[0];
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    ::close(pipe_);
    if (!ended_) static_cast<void>(end());
  }

  /// The next progress character; nothing at the end.
  std::optional<char> hear() {
    char letter = 0;
    return ::read(pipe_, &letter, 1) == 1 ? std::optional(letter) : std::nullopt;
  }
  std::string hearAll() {
    std::string text;
    while (const auto letter = hear()) text += *letter;
    return text;
  }
  std::string hearLine() {
    std::string line;
    for (auto letter = hear(); letter && *letter != '\n'; letter = hear()) line += *letter;
    return line;
  }
  /// Kills it a moment after it has reported so much; returns how much it had reported by then.
  std::size_t killBehind(std::size_t letters, std::chrono::microseconds moment = {}) {
    std::size_t told = 0;
    while (told < letters && hear()) ++told;
    std::this_thread::sleep_for(moment);
    ::kill(process_, SIGKILL);
    told += hearAll().size();
    EXPECT_NE(end(), 1) << "it failed on its own";
    return told;
  }
  /// The exit code; -1 if it was killed.
  int end() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    ended_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t process_ = 0;
  int pipe_ = -1;
  bool ended_ = false;
};

inline void tell(int pipe, const std::string& text) {
  if (::write(pipe, text.data(), text.size()) != static_cast<ssize_t>(text.size())) ::_exit(2);
}

/// The folder left by a worker that can't remove it.
struct LeftFolder {
  std::filesystem::path file;
  ~LeftFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(file.parent_path(), ignored);
  }
};

}  // namespace ledgertree::testing
