#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <vector>

namespace ledgertree::bench {

/// What a generated chart looks like. The accounts get the IDs 1, 2, 3, … level by level: the top level
/// first, then the children of account 1, of account 2 and so on, each with `fanOut` children as long as
/// accounts are left.
///
///   flat:      topLevel = accounts
///   two wide:  topLevel = 10, fanOut = accounts
///   even:      topLevel = 10, fanOut = 10 (six levels at a million)
///   deep:      topLevel = 4, fanOut = 2 (18 levels at a million)
struct ChartShape {
  std::int32_t accounts = 1000;
  std::int32_t topLevel = 10;
  std::int32_t fanOut = 10;
  /// One period for each number, the first being 1402: the accounts 1 to that number are shown in it.
  std::vector<std::int32_t> periods = {};
  /// Documents of two lines each, dated in the first period, on accounts without children.
  std::int32_t documents = 0;
  /// The accounts 1 to this number have a relation to group 1, class 1 and an object of their own.
  std::int32_t relations = 0;
  /// Objects of class 1, a tree of ten children a node.
  std::int32_t objects = 0;

  [[nodiscard]] std::int32_t parentOf(std::int32_t id) const {
    return id <= topLevel ? -1 : (id - topLevel - 1) / fanOut + 1;
  }
  /// An account without children: the last one has none, and neither has any behind its parent.
  [[nodiscard]] std::int32_t firstLeaf() const { return accounts <= topLevel ? 1 : parentOf(accounts) + 1; }
};

/// Fills a database that has the schema and no account, and that nobody else has open. User 1 has all rights
/// and works in the first period. A million accounts take some ten seconds, since the tables are filled in
/// the order of their keys and the indexes made afterwards. Throws std::invalid_argument for a shape whose
/// codes would pass 20 characters.
void generateChart(SQLite::Database& database, const ChartShape& shape);

}  // namespace ledgertree::bench
