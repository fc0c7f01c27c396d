#pragma once

#include <filesystem>

namespace ledgertree::testing {

/// A storage layer for SQLite, for a process of its own, that knows what a power cut loses: beside each file
/// it keeps what was synced. At the cut, every later write is lost, kept, or kept in part, in any order and
/// at random, and the process ends on the spot.
class PowerCutStorage {
 public:
  /// The storage of this process from now on.
  static void putIn();
  /// Cuts the power ahead of the n-th write, sync or change of a size from now.
  static void cutAt(int n, unsigned seed);
  /// The writes, syncs and changes of a size so far.
  [[nodiscard]] static int operations();
  /// With what the process ends at the cut.
  static constexpr int kExitCode = 77;
  /// Puts what the disk holds after a cut into an empty folder, under the files' own names.
  static void recover(const std::filesystem::path& from, const std::filesystem::path& to);
};

}  // namespace ledgertree::testing
