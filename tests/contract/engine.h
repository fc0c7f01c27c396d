#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "support/failure.h"
#include "support/temporary_database.h"

namespace ledgertree::testing {

/// A connection of the product to the database of a test, whichever engine that has, and another program
/// beside it.
class Engine : public ::testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<data::Connection> connect() {
    return providers().open(database.connectionText());
  }
  [[nodiscard]] static const data::Providers& providers() {
    static const data::Providers all = [] {
      data::Providers known;
      engines::sqlite::registerEmbedded(known);
      engines::odbc::registerOdbc(known);
      return known;
    }();
    return all;
  }

  [[nodiscard]] std::int64_t number(const std::string& statement) {
    return connection->run(statement)->value(0, 0).toInt64();
  }

  TemporaryDatabase database;
  std::unique_ptr<data::Connection> connection = connect();
};

}  // namespace ledgertree::testing
