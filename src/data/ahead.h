#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <vector>

#include "data/dten.h"

namespace ledgertree::data {

/// Announces the commands that a block is about to give to the gateway, in order, as far as they are known
/// beforehand. On a remote connection, the first of them to be given is sent together with the following
/// ones, which are then answered from that packet; on a local one this does nothing.
///
/// Nothing else changes: each command is still given on its handle, in its turn, letter by letter; one
/// that failed in the packet fails then, and those after it are sent together once more, or fail in the
/// same way if the server didn't answer. But a command may run that is never given, so only read-only
/// commands may be announced. Any writing command discards the answers, and what is given afterwards is
/// sent again.
///
/// Blocks may nest; a command already answered for an outer block isn't sent again for the inner one.
class Ahead {
 public:
  /// `connection` outlives the block.
  Ahead(MainConnection& connection, std::vector<Command> commands);
  Ahead(const Ahead&) = delete;
  Ahead& operator=(const Ahead&) = delete;
  ~Ahead();

 private:
  friend class MainConnection;

  enum class State { Waiting, Answered, Given };
  struct Asked {
    Command command;
    State state = State::Waiting;
    Answer answer = {};
    std::exception_ptr failure = nullptr;  ///< instead of an answer
  };

  [[nodiscard]] Asked* find(const Command& command, State state);
  /// Sends the pending commands from this one on.
  void send(const Asked& first);

  MainConnection& connection_;
  std::vector<Asked> commands_;
  std::size_t given_ = 0;  ///< how many have been given, from the front
};

}  // namespace ledgertree::data
