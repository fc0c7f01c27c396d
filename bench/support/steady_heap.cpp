#include <cstdlib>  // defines __GLIBC__

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ledgertree::bench {
namespace {

/// By default the allocator returns the top of the heap to the system and takes it back at
/// random points of either side's work: for a save, a fifth of the time that belongs to
/// neither. So trimming is turned off. Setting that also fixes the otherwise dynamic mmap
/// threshold, which is set to where it would settle anyway.
bool keepHeap() {
#ifdef __GLIBC__
  mallopt(M_TRIM_THRESHOLD, -1);
  mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);
#endif
  return true;
}

[[maybe_unused]] const bool kept = keepHeap();

}  // namespace
}  // namespace ledgertree::bench
