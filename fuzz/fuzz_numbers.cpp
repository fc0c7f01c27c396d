#include <cstddef>
#include <cstdint>

#include "numbers_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ledgertree::fuzz::checkNumbers({reinterpret_cast<const char*>(data), size});
  return 0;
}
