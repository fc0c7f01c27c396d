#include <cstddef>
#include <cstdint>

#include "dialect_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static ledgertree::fuzz::DialectCheck check;
  check({reinterpret_cast<const char*>(data), size});
  return 0;
}
