#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "data/data_error.h"
#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
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

  /// The failure of some work, which has to fail.
  static data::DataError failureOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const data::DataError& error) {
      return error;
    }
    ADD_FAILURE() << "nothing failed";
    return {data::DataError::Reason::Misuse, 0, ""};
  }

  TemporaryDatabase database;
  std::unique_ptr<data::Connection> connection = connect();
};

}  // namespace ledgertree::testing
