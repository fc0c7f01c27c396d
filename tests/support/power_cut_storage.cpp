#include "support/power_cut_storage.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace ledgertree::testing {

namespace {

constexpr const char* kOnDisk = ".on-disk";
/// The unit that a disk writes atomically.
constexpr std::size_t kSector = 512;

/// An unsynced change of a file.
struct Change {
  std::size_t offset = 0;
  std::string bytes;
  bool cutsOff = false;  ///< the file ends at the offset
};

struct DiskFile {
  bool exists = false;   ///< since its first sync
  bool removed = false;  ///< not certain before the next sync of any file
  std::string synced;
  std::vector<Change> since;
};

void apply(std::string& image, const Change& change, std::size_t length) {
  if (change.cutsOff) return image.resize(std::min(image.size(), change.offset));
  image.resize(std::max(image.size(), change.offset + length));
  std::copy_n(change.bytes.begin(), length, image.begin() + static_cast<std::ptrdiff_t>(change.offset));
}

/// One per process; SQLite calls it from any thread.
class Disk {
 public:
  void change(const std::string& path, Change change) {
    const std::lock_guard guard(lock_);
    count();
    if (files_[path].removed) files_[path] = {};  // another file of the same name
    files_[path].since.push_back(std::move(change));
  }
  void sync(const std::string& path) {
    const std::lock_guard guard(lock_);
    count();
    DiskFile& file = files_[path];
    for (const Change& one : file.since) apply(file.synced, one, one.bytes.size());
    file.since.clear();
    file.exists = true;
    std::erase_if(files_, [](const auto& one) { return one.second.removed; });
  }
  void remove(const std::string& path, bool forCertain) {
    const std::lock_guard guard(lock_);
    if (forCertain) files_.erase(path);
    if (!forCertain) files_[path].removed = true;
  }
  void cutAt(int n, unsigned seed) {
    const std::lock_guard guard(lock_);
    left_ = n;
    dice_.seed(seed);
  }
  int operations() {
    const std::lock_guard guard(lock_);
    return operations_;
  }

 private:
  void count() {
    ++operations_;
    if (left_ > 0 && --left_ == 0) cut();
  }
  [[noreturn]] void cut() {
    for (auto& [path, file] : files_) {
      if (!file.exists || (file.removed && dice_() % 2 == 0)) continue;
      for (const Change& one : file.since) {
        const auto fate = dice_() % 4;
        if (fate == 0) apply(file.synced, one, one.bytes.size());
        if (fate == 1) apply(file.synced, one, one.bytes.size() / 2 / kSector * kSector);
      }
      std::ofstream(path + kOnDisk, std::ios::binary) << file.synced;
    }
    ::_exit(PowerCutStorage::kExitCode);
  }

  std::mutex lock_;
  std::map<std::string, DiskFile> files_;
  std::mt19937 dice_;
  int operations_ = 0;
  int left_ = 0;
};

Disk& disk() {
  static Disk only;
  return only;
}

// SQLite's C interface: this layer's file is followed in memory by that of the layer below.

sqlite3_vfs* below = nullptr;

struct File {
  sqlite3_file base;
  std::string* path;
  [[nodiscard]] sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

File* of(sqlite3_file* file) { return reinterpret_cast<File*>(file); }
sqlite3_file* real(sqlite3_file* file) { return of(file)->real(); }
const sqlite3_io_methods& methods(sqlite3_file* file) { return *real(file)->pMethods; }

int close(sqlite3_file* file) {
  const int result = methods(file).xClose(real(file));
  delete of(file)->path;
  return result;
}
/// Forwards a call to the layer below.
template <auto kMethod, typename... Arguments>
auto passOn(sqlite3_file* file, Arguments... arguments) {
  return (methods(file).*kMethod)(real(file), arguments...);
}
int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
  disk().change(*of(file)->path,
                {.offset = static_cast<std::size_t>(offset),
                 .bytes = std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(count))});
  return methods(file).xWrite(real(file), bytes, count, offset);
}
int truncate(sqlite3_file* file, sqlite3_int64 size) {
  disk().change(*of(file)->path, {.offset = static_cast<std::size_t>(size), .bytes = {}, .cutsOff = true});
  return methods(file).xTruncate(real(file), size);
}
int sync(sqlite3_file* file, int) {
  disk().sync(*of(file)->path);
  return SQLITE_OK;
}
using Calls = sqlite3_io_methods;
constexpr sqlite3_io_methods kMethods{2,
                                      close,
                                      passOn<&Calls::xRead>,
                                      write,
                                      truncate,
                                      sync,
                                      passOn<&Calls::xFileSize>,
                                      passOn<&Calls::xLock>,
                                      passOn<&Calls::xUnlock>,
                                      passOn<&Calls::xCheckReservedLock>,
                                      passOn<&Calls::xFileControl>,
                                      passOn<&Calls::xSectorSize>,
                                      passOn<&Calls::xDeviceCharacteristics>,
                                      passOn<&Calls::xShmMap>,
                                      passOn<&Calls::xShmLock>,
                                      passOn<&Calls::xShmBarrier>,
                                      passOn<&Calls::xShmUnmap>,
                                      nullptr,
                                      nullptr};

int open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* given) {
  const int result = below->xOpen(below, name, real(file), flags, given);
  file->pMethods = nullptr;
  if (real(file)->pMethods == nullptr) return result;
  of(file)->path = new std::string(name == nullptr ? "" : name);
  file->pMethods = &kMethods;
  return result;
}
int removeFile(sqlite3_vfs*, const char* name, int syncFolder) {
  disk().remove(name, syncFolder != 0);
  return below->xDelete(below, name, syncFolder);
}

}  // namespace

void PowerCutStorage::putIn() {
  below = sqlite3_vfs_find(nullptr);
  static sqlite3_vfs layer = *below;
  layer.zName = "power-cut";
  layer.szOsFile = static_cast<int>(sizeof(File)) + below->szOsFile;
  layer.pNext = nullptr;
  layer.xOpen = open;
  layer.xDelete = removeFile;
  sqlite3_vfs_register(&layer, 1);
}

void PowerCutStorage::cutAt(int n, unsigned seed) { disk().cutAt(n, seed); }

int PowerCutStorage::operations() { return disk().operations(); }

void PowerCutStorage::recover(const std::filesystem::path& from, const std::filesystem::path& to) {
  for (const auto& entry : std::filesystem::directory_iterator(from))
    if (entry.path().extension() == kOnDisk)
      std::filesystem::copy_file(entry.path(), to / entry.path().stem());
}

}  // namespace ledgertree::testing
