#include "support/given.h"

#include <atomic>
#include <memory>

#include "data/connection_text.h"
#include "data/embedded/embedded_connection.h"
#include "data/odbc/odbc_engine.h"

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
  // The chart had its file open before it called a component: one that isn't there now has been lost.
  providers.add("SQLite", [](const data::ConnectionText& text) {
    return std::make_unique<data::embedded::EmbeddedConnection>(
        text.require("Data Source"), data::embedded::TimeOuts{}, std::make_shared<std::atomic<bool>>(true));
  });
  data::odbc::registerOdbc(providers);
  return providers;
}

}  // namespace ledgertree::components
