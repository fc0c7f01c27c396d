#include <cstddef>
#include <cstdint>

#include "connection_text_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ledgertree::fuzz::checkConnectionText({reinterpret_cast<const char*>(data), size});
  return 0;
}
