#pragma once

#include <memory>
#include <string>

#include "support/failure.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// A connection of the product to a test's database on either engine, and another program next to it.
class Engine : public TestHouse {
 protected:
  [[nodiscard]] std::unique_ptr<data::Connection> connect() {
    return shell.providers.open(database.connectionText());
  }
  [[nodiscard]] std::int64_t number(const std::string& statement) {
    return connection->run(statement)->value(0, 0).toInt64();
  }

  std::unique_ptr<data::Connection> connection = connect();
};

}  // namespace ledgertree::testing
