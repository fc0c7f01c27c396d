#include <cstddef>
#include <cstdint>

#include "component_registration_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ledgertree::fuzz::checkComponentRegistration({reinterpret_cast<const char*>(data), size});
  return 0;
}
