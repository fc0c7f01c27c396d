#pragma once

#include <filesystem>

namespace ledgertree::testing {

/// A storage layer for SQLite, to be used in a separate process, that knows what a power cut loses: besides
/// each file it keeps what was synced. At the cut, every later write is lost, kept, or partly kept, in any
/// order and at random, and the process ends immediately.
class PowerCutStorage {
 public:
  /// Installs the storage in this process.
  static void putIn();
  /// Cuts the power before the n-th write, sync or truncation from now.
  static void cutAt(int n, unsigned seed);
  /// The number of writes, syncs and truncations so far.
  [[nodiscard]] static int operations();
  /// The exit code of the process at the cut.
  static constexpr int kExitCode = 77;
  /// Copies what the disk holds after a cut into an empty folder, under the original file names.
  static void recover(const std::filesystem::path& from, const std::filesystem::path& to);
};

}  // namespace ledgertree::testing
