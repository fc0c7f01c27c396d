#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <vector>

#include "data/dten.h"

namespace ledgertree::data {

/// The commands that a block is about to give to the gateway, in their order, as far as it knows them
/// beforehand. Where an answer takes long, the first of them that is given takes those behind it along, and
/// they are answered from that packet when they are given; elsewhere this does nothing.
///
/// Nothing else changes by it: each command is still given on its handle, in its turn, letter by letter; one
/// that failed in the packet fails then, and those behind it go together once more, or fail in the same way
/// where the server didn't answer. But a command may run that isn't given in the end, so that only what
/// writes nothing stands here. Any command that writes makes the answers void, and what is then given is
/// asked anew.
///
/// Blocks may nest; a command that an outer block has an answer to isn't asked again for the inner one.
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
    std::exception_ptr failure = nullptr;  ///< in the place of the answer
  };

  [[nodiscard]] Asked* find(const Command& command, State state);
  /// Sends what waits from this command on.
  void send(const Asked& first);

  MainConnection& connection_;
  std::vector<Asked> commands_;
  std::size_t given_ = 0;  ///< how many at the beginning were given
};

}  // namespace ledgertree::data
