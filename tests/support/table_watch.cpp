#include "support/table_watch.h"

#include <sstream>

namespace ledgertree::testing {

std::string TableWatch::changes() {
  std::string text;
  std::istringstream names(database_.rows(
      onServer()
          ? "select name from sys.tables where name not in ('tblLedgerTreeStories', 'tblLedgerTreeChanges') "
            "order by 1"
          : "select name from sqlite_master where type = 'table' and name not like 'sqlite%' and name <> "
            "'tblLedgerTreeChanges' order by 1"));
  for (std::string name; std::getline(names, name);) {
    Table now = read(name);
    const std::string found = difference(seen_[name], now);
    if (!found.empty()) text += (text.empty() ? "" : "\n") + name + ":" + found;
    seen_[name] = std::move(now);
  }
  return text;
}

TableWatch::Table TableWatch::read(const std::string& table) const {
  Table found;
  const data::Rows rows = database_.read("select * from " + table);
  // Ancestor rows have the ancestor's ID in the first column, which isn't unique.
  const bool byID = rows.columns().front() == "ID" && table != "tblAccountParent";
  for (std::size_t row = 0; row < rows.count(); ++row) {
    std::string key;
    std::vector<std::string> values;
    for (std::size_t column = 0; column < rows.columns().size(); ++column) {
      const std::string text = cellText(rows.value(row, column));
      if (!byID || column == 0) key += (column == 0 ? "" : "|") + text;
      if (byID && !isComputed(rows.columns()[column])) values.push_back(rows.columns()[column] + "=" + text);
    }
    found.emplace(std::move(key), std::move(values));
  }
  return found;
}

std::string TableWatch::difference(const Table& before, const Table& now) {
  std::string gone;
  std::string come;
  std::string other;
  auto old = before.begin();
  const auto goUpTo = [&](const std::string* key) {
    for (; old != before.end() && (key == nullptr || old->first < *key); ++old) gone += " -" + old->first;
  };
  for (const auto& [key, values] : now) {
    goUpTo(&key);
    if (old == before.end() || old->first != key) {
      come += " +" + key;
      continue;
    }
    for (std::size_t column = 0; column < values.size(); ++column)
      if (values[column] != old->second[column])
        other.append(" ").append(key).append(".").append(values[column]);
    ++old;
  }
  goUpTo(nullptr);
  return gone + come + other;
}

}  // namespace ledgertree::testing
