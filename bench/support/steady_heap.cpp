#include <cstdlib>  // for the name of the C library

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ledgertree::bench {
namespace {

/// The allocator gives the top of the heap back to the system and takes it again in the midst of the work of
/// the one side or the other, as chance has it: for a save that is a fifth of the time, which belongs to
/// neither. So it keeps what it has. To say so fixes its bound for blocks that are mapped by themselves too:
/// it is put where it would go by itself.
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
