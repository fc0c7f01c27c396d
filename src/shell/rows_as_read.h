#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "shell/shell.h"

namespace ledgertree::shell {

/// The rows of a list that a screen has read and writes with several statements, each final when it ends. The
/// database doesn't compare these by itself: changes by others are reported before the first statement, and
/// those that came in between after the last one.
class RowsAsRead {
 public:
  /// The description of each row, by key.
  using Rows = std::map<std::string, std::string>;

  explicit RowsAsRead(Shell& shell) : shell_(shell) {}

  /// The stored rows, read through a handle: keys and descriptions. The
  /// handle is closed again. Throws data::DataError.
  [[nodiscard]] static Rows rowsOf(data::RecordHandle& handle, std::string_view statement,
                                   std::string_view keyColumn, std::string_view wordsColumn);

  void keep(Rows rows) { read_ = std::move(rows); }
  /// The stored state is unknown, as after a write that failed half-way: no comparison until the next read.
  void forget() { read_.reset(); }
  /// Whether the screen may write, given that `now` is stored: if that differs from what was read, the user
  /// is told what has changed, and decides. `now` counts as read from then on.
  [[nodiscard]] bool mayWrite(const Rows& now);
  /// Reports where `now`, read after the writes, differs from what they should have left. `meant` tells what
  /// is expected of a key: that it exists; that it is unchanged, if the writes didn't concern it; nothing if
  /// unknown. `now` counts as read then.
  enum class Meant { There, Gone, AsItWas, Unknown };
  void tellBehind(const Rows& now, const std::function<Meant(const std::string& key)>& meant);

 private:
  Shell& shell_;
  std::optional<Rows> read_;
};

}  // namespace ledgertree::shell
