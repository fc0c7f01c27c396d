#pragma once

#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace ledgertree::testing {

/// A nearly full disk: a small file system if that is allowed, otherwise a file size limit.
class SmallDisk {
 public:
  explicit SmallDisk(const std::filesystem::path& folder) : folder_(folder) {
    mounted_ = ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=1m") == 0;
    if (mounted_) return;
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    before_ = limit.rlim_cur;
    limit.rlim_cur = 1 << 20;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (mounted_) ::umount2(folder_.c_str(), MNT_DETACH);
    if (!mounted_) grow();
  }
  void grow() {
    if (mounted_) {
      ::mount("tmpfs", folder_.c_str(), "tmpfs", MS_REMOUNT, "size=16m");
      return;
    }
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = before_;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  [[nodiscard]] bool mounted() const { return mounted_; }

 private:
  std::filesystem::path folder_;
  bool mounted_ = false;
  rlim_t before_ = RLIM_INFINITY;
};

}  // namespace ledgertree::testing
