#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "shell/shell.h"

namespace ledgertree::shell {

/// The rows of a list that a screen has read and writes by statements of its own, each final when it ends.
/// Nothing compares there by itself: what somebody else made of the list meanwhile is told ahead of the first
/// statement, and what came in between behind the last one.
class RowsAsRead {
 public:
  /// The words for a row, by its key.
  using Rows = std::map<std::string, std::string>;

  explicit RowsAsRead(Shell& shell) : shell_(shell) {}

  /// What is stored, as a handle on its rows gives it: a key and the words for it. The handle is closed
  /// again. Throws data::DataError.
  [[nodiscard]] static Rows rowsOf(data::RecordHandle& handle, std::string_view statement,
                                   std::string_view keyColumn, std::string_view wordsColumn);

  void keep(Rows rows) { read_ = std::move(rows); }
  /// Nobody knows what is stored, as behind a write that failed half-way: nothing is compared with it.
  void forget() { read_.reset(); }
  /// Whether the screen may write, with `now` stored: where that isn't what was read, the person is told what
  /// the other has made of it, and decides. What is stored counts as read from then on.
  [[nodiscard]] bool mayWrite(const Rows& now);
  /// Tells where `now`, behind the writes, isn't what they should have left. `meant` says of a key whether it
  /// should be there; of one that the writes had nothing to do with, as it was; nothing where nobody can say.
  /// Counts as read then.
  enum class Meant { There, Gone, AsItWas, Unknown };
  void tellBehind(const Rows& now, const std::function<Meant(const std::string& key)>& meant);

 private:
  Shell& shell_;
  std::optional<Rows> read_;
};

}  // namespace ledgertree::shell
