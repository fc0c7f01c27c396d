#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/temporary_database.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// Whether a column of tblAccount is one that only the server has, and computes from the others.
[[nodiscard]] inline bool isComputed(const std::string& column) {
  return column == "TreeParentID" || column == "CodeKey";
}

/// Looks at all tables of a database but the counter of its changes, and tells what is another way than when
/// it looked last.
class TableWatch {
 public:
  explicit TableWatch(TemporaryDatabase& database) : database_(database) { static_cast<void>(changes()); }

  /// The changes since the last call, a line for each table with any: "tblAccountPeriodAccount: -12|2 +10|2".
  /// A row with an ID goes and comes by that, and another value of one that stays is "3.Code=1108".
  [[nodiscard]] std::string changes();

 private:
  /// A row by its ID, with its values as "Column=value"; without an ID, by all that is in it.
  using Table = std::multimap<std::string, std::vector<std::string>>;

  [[nodiscard]] Table read(const std::string& table) const;
  [[nodiscard]] static std::string difference(const Table& before, const Table& now);

  TemporaryDatabase& database_;
  std::map<std::string, Table> seen_;
};

/// A house in which a story tells of every row that it changes: what it didn't ask for with changes() until
/// its end, it didn't expect.
class WatchedHouse : public FaultyHouse {
 protected:
  WatchedHouse() {
    person.acts["sql"] = [this](auto& statements) { given(statements); };
  }
  /// Puts rows there past the product.
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
