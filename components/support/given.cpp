#include "support/given.h"

#include <atomic>
#include <memory>

#include "data/connection_text.h"
#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_connection.h"

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
  // The chart had its file open before it called a component: a missing file has been lost.
  providers.add("SQLite", [](const data::ConnectionText& text) {
    return std::make_unique<engines::sqlite::EmbeddedConnection>(
        text.require("Data Source"), engines::sqlite::TimeOuts{}, std::make_shared<std::atomic<bool>>(true));
  });
  engines::odbc::registerOdbc(providers);
  return providers;
}

}  // namespace ledgertree::components
