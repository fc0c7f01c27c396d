#include "support/given.h"

#include "data/embedded/embedded_engine.h"

namespace ledgertree::components {

bool Given::set(std::string_view member, const data::Value& value) {
  if (member == "OLEConnectionString") {
    OLEConnectionString = value.toText();
    return true;
  }
  std::int32_t* number = nullptr;
  if (member == "UserID") number = &UserID;
  if (member == "PositionID") number = &PositionID;
  if (member == "EmployeeID") number = &EmployeeID;
  if (number == nullptr) return false;
  *number = value.toInt32();
  return true;
}

data::Providers engines() {
  data::Providers providers;
  data::embedded::registerEmbedded(providers);
  return providers;
}

}  // namespace ledgertree::components
