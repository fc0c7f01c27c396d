#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/temporary_database.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// Whether a column of tblAccount exists only on the server, computed from the others.
[[nodiscard]] inline bool isComputed(const std::string& column) {
  return column == "TreeParentID" || column == "CodeKey";
}

/// Reads all tables of a database except the change counter,
/// and reports the differences from the previous read.
class TableWatch {
 public:
  explicit TableWatch(TemporaryDatabase& database) : database_(database) { static_cast<void>(changes()); }

  /// The changes since the last call, one line per changed table: "tblAccountPeriodAccount: -12|2 +10|2". A
  /// row with an ID is identified by it, and a changed value of one that stays is "3.Code=1108".
  [[nodiscard]] std::string changes();

 private:
  /// Rows by ID, with their values as "Column=value"; without an ID, by the whole contents.
  using Table = std::multimap<std::string, std::vector<std::string>>;

  [[nodiscard]] Table read(const std::string& table) const;
  [[nodiscard]] static std::string difference(const Table& before, const Table& now);

  TemporaryDatabase& database_;
  std::map<std::string, Table> seen_;
};

/// A house whose story must account for every changed row: changes not
/// queried by changes() until its end are unexpected.
class WatchedHouse : public FaultyHouse {
 protected:
  WatchedHouse() {
    person.acts["sql"] = [this](auto& statements) { given(statements); };
  }
  /// Adds rows bypassing the product.
  void given(const std::string& statements) {
    EXPECT_EQ(changes(), "") << "ahead of " << statements;
    database.execute(statements);
    static_cast<void>(changes());
  }
  [[nodiscard]] std::string changes() { return tables_.changes(); }
  void TearDown() override {
    EXPECT_EQ(changes(), "");
    FaultyHouse::TearDown();
  }

 private:
  TableWatch tables_{database};
};

}  // namespace ledgertree::testing
