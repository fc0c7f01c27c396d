#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/catalogue.h"
#include "data/connection.h"
#include "data/connection_text.h"
#include "data/data_error.h"

namespace ledgertree::data {

/// A database of a few prepared answers, by statement. It records the statements.
struct FakeDatabase {
  std::map<std::string, Rows, std::less<>> answers;  ///< any other statement fails
  DataError::Reason failure = DataError::Reason::Statement;
  std::vector<std::string> asked;
  std::function<std::int32_t(const Procedure&, std::span<const Value>)> procedure;
  int opened = 0;

  /// One column of values.
  void answer(const std::string& statement, const std::string& column, const std::vector<Value>& values) {
    Rows rows;
    rows.addColumn(column);
    for (const Value& value : values) rows.addValue(value);
    answers[statement] = std::move(rows);
  }
};

class FakeConnection : public Connection {
 public:
  explicit FakeConnection(FakeDatabase& database) : database_(database) { ++database_.opened; }

  std::optional<Rows> run(std::string_view statement) override {
    database_.asked.emplace_back(statement);
    if (statement.starts_with("Delete")) return std::nullopt;
    const auto found = database_.answers.find(statement);
    if (found == database_.answers.end())
      throw DataError(database_.failure, 208, "no such table", std::string(statement));
    return found->second;
  }
  void walk(std::string_view /*statement*/, const std::function<bool(const Rows&)>& /*visit*/) override {}
  std::int32_t call(const Procedure& procedure, std::span<const Value> values) override {
    checkArguments(procedure, values);
    return database_.procedure(procedure, values);
  }
  void handOver(const AsRead& /*read*/) override {}
  SearchPage search(const SearchRequest& /*request*/) override { return {}; }

 private:
  FakeDatabase& database_;
};

inline Providers fakeProviders(FakeDatabase& database) {
  Providers providers;
  providers.add("Fake",
                [&database](const ConnectionText&) { return std::make_unique<FakeConnection>(database); });
  return providers;
}

}  // namespace ledgertree::data
