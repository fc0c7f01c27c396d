#pragma once

#include <algorithm>
#include <atomic>
#include <charconv>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/connection.h"
#include "data/connection_text.h"
#include "data/data_error.h"
#include "text/characters.h"
#include "text/fold.h"

namespace ledgertree::testing {

/// Views in memory whose connection can be cut, and whose searches run as slowly as a story wants.
struct LookupDatabase {
  struct Row {
    int id;
    std::string code;
    std::string name;
  };
  std::map<std::string, std::vector<Row>, std::less<>> views;
  std::size_t rowsOfSlice = 1000;  ///< how many rows one slice reads
  bool broken = false;
  std::atomic<int> opened = 0;
  std::atomic<int> open = 0;
  std::vector<std::string> statements;
  std::vector<std::string> searches;  ///< the text of each slice; those of a picker search by code
};

class LookupConnection : public data::Connection {
 public:
  explicit LookupConnection(LookupDatabase& database) : database_(database) {
    ++database_.opened;
    ++database_.open;
  }
  ~LookupConnection() override { --database_.open; }

  /// "Select * From VIEW Where ID=N".
  std::optional<data::Rows> run(std::string_view statement) override {
    database_.statements.emplace_back(statement);
    const std::string_view rest = statement.substr(statement.find(" From ") + 6);
    const std::size_t where = rest.find(" Where ");
    const std::string condition(rest.substr(where + 7));
    data::Rows rows = columns();
    for (const auto& row : view(rest.substr(0, where)))
      if (condition == "ID=" + std::to_string(row.id)) add(rows, row);
    return rows;
  }

  void handOver(const data::AsRead& /*read*/) override {}
  data::SearchPage search(const data::SearchRequest& request) override {
    const bool byCode = request.order == data::SearchOrder::Code;
    database_.searches.push_back((byCode ? "by code: " : "") + request.text);
    const auto& all = view(request.view);
    data::SearchPage page{.rows = columns(), .continuation = {}};
    std::size_t place = request.continuation.empty() ? 0 : std::stoul(request.continuation);
    const bool inSlices = request.slice.count() > 0;
    const std::size_t end = inSlices ? std::min(all.size(), place + database_.rowsOfSlice) : all.size();
    for (; place < end && page.rows.count() < request.limit; ++place) {
      const std::string text = text::fold(all[place].code + '\n' + all[place].name);
      if (text.find(text::fold(text::trimmed(request.text))) != std::string::npos) add(page.rows, all[place]);
    }
    if (place < all.size()) page.continuation = std::to_string(place);
    return page;
  }

  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  std::int32_t call(const data::Procedure&, std::span<const data::Value>) override { return 0; }

 private:
  const std::vector<LookupDatabase::Row>& view(std::string_view name) {
    using data::DataError;
    if (database_.broken) throw DataError(DataError::Reason::Connection, 0, "the line is cut");
    const auto found = database_.views.find(name);
    if (found == database_.views.end()) throw DataError(DataError::Reason::Statement, 208, "no such view");
    return found->second;
  }
  static data::Rows columns() {
    data::Rows rows;
    for (const char* name : {"ID", "Code", "Name"}) rows.addColumn(name);
    return rows;
  }
  static void add(data::Rows& rows, const LookupDatabase::Row& row) {
    rows.addInteger(row.id);
    rows.addText(row.code);
    rows.addText(row.name);
  }

  LookupDatabase& database_;
};

inline void provide(data::Providers& providers, LookupDatabase& database) {
  providers.add("Memory", [&database](const data::ConnectionText&) {
    return std::make_unique<LookupConnection>(database);
  });
}

}  // namespace ledgertree::testing
