#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <vector>

namespace ledgertree::bench {

/// The shape of a generated chart. The accounts get the IDs 1, 2, 3, … level by
/// level: the top level first, then the children of account 1, of account 2 and so
/// on, with `fanOut` children each while accounts are left.
///
///   flat:      topLevel = accounts
///   two wide:  topLevel = 10, fanOut = accounts
///   even:      topLevel = 10, fanOut = 10 (six levels at a million)
///   deep:      topLevel = 4, fanOut = 2 (18 levels at a million)
struct ChartShape {
  std::int32_t accounts = 1000;
  std::int32_t topLevel = 10;
  std::int32_t fanOut = 10;
  /// One period per number, the first being 1402: the accounts 1 to that number are members of it.
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
  /// The first account without children: none of those after the last account's parent has any.
  [[nodiscard]] std::int32_t firstLeaf() const { return accounts <= topLevel ? 1 : parentOf(accounts) + 1; }
};

/// Fills a database that has the schema, no accounts and no other open connection. User 1 has all
/// rights and works in the first period. A million accounts take some ten seconds, since the
/// tables are filled in key order and the indexes built afterwards. Throws std::invalid_argument
/// for a shape whose codes would exceed 20 characters.
void generateChart(SQLite::Database& database, const ChartShape& shape);

}  // namespace ledgertree::bench
