#include "engines/sqlite/tables.h"

#include <algorithm>
#include <initializer_list>

#include "engines/sqlite/errors.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {

using tsql::ValueType;
namespace {

/// More names than this aren't used by legitimate statements.
constexpr std::size_t kMostNames = 256;

constexpr const char* kDatabase = "main";

constexpr const char* kColumns = "SELECT name, type FROM pragma_table_xinfo(?1)";

std::string cell(sqlite3_stmt* row, int column) {
  const unsigned char* const text = sqlite3_column_text(row, column);
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

char small(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 0x20) : letter; }

std::string inSmallLetters(std::string_view name) {
  std::string result(name);
  std::transform(result.begin(), result.end(), result.begin(), small);
  return result;
}

/// SQLite's rules for a column's affinity, and the other types whose values are numbers here.
ValueType typeOfDeclared(std::string_view declared) {
  const std::string type = inSmallLetters(declared);
  const auto says = [&type](std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(),
                       [&type](const char* word) { return type.find(word) != std::string::npos; });
  };
  if (says({"int"})) return ValueType::Number;
  if (says({"char", "clob", "text"})) return ValueType::Text;
  return says({"real", "floa", "doub", "num", "dec", "money", "bit", "date"}) ? ValueType::Number
                                                                              : ValueType::Unknown;
}

bool isAmong(std::string_view name, const std::vector<std::string_view>& columns) {
  return std::any_of(columns.begin(), columns.end(),
                     [name](std::string_view column) { return text::equalsIgnoringCase(column, name); });
}

}  // namespace

std::optional<ValueType> Tables::typeOf(std::string_view name, std::string_view column) {
  const std::string table(name);
  const char* declared = nullptr;
  const int result =
      sqlite3_table_column_metadata(database_, kDatabase, table.c_str(), std::string(column).c_str(),
                                    &declared, nullptr, nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) return typeOfDeclared(declared == nullptr ? "" : declared);
  if (result != SQLITE_ERROR) throw lastError(database_, table);
  if (isTable(table)) return std::nullopt;
  const auto& columns = kept(views_, name, &Tables::readColumns);
  const auto found = std::find_if(columns.begin(), columns.end(), [column](const Column& one) {
    return text::equalsIgnoringCase(one.name, column);
  });
  return found == columns.end() ? std::nullopt : std::optional(found->type);
}

bool Tables::isKey(std::string_view name, const std::vector<std::string_view>& columns) {
  const auto& indexes = kept(indexes_, name, &Tables::readIndexes);
  return std::any_of(indexes.begin(), indexes.end(), [&columns](const Index& index) {
    return index.isUnique && std::all_of(index.columns.begin(), index.columns.end(),
                                         [&](const std::string& one) { return isAmong(one, columns); });
  });
}

bool Tables::isLookUp(std::string_view name, std::string_view column,
                      const std::vector<std::string_view>& fixed) {
  const auto& indexes = kept(indexes_, name, &Tables::readIndexes);
  return std::any_of(indexes.begin(), indexes.end(), [&](const Index& index) {
    const auto other = std::find_if(index.columns.begin(), index.columns.end(),
                                    [&](const std::string& one) { return !isAmong(one, fixed); });
    return std::any_of(index.columns.begin(), other == index.columns.end() ? other : other + 1,
                       [&](const std::string& one) { return text::equalsIgnoringCase(one, column); });
  });
}

bool Tables::renew() {
  if (!probe_) probe_ = prepare("SELECT 1 FROM sqlite_schema LIMIT 1");
  letGo();
  step(probe_);
  // The step detects a schema change, and re-prepares the statement.
  const int preparations = sqlite3_stmt_status(probe_.get(), SQLITE_STMTSTATUS_REPREPARE, 1);
  if (preparations == 0) return false;
  views_.clear();
  indexes_.clear();
  return true;
}

bool Tables::isTable(const std::string& name) {
  return sqlite3_table_column_metadata(database_, kDatabase, name.c_str(), nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr) == SQLITE_OK;
}

template <typename Thing>
const std::vector<Thing>& Tables::kept(ByName<Thing>& things, std::string_view name,
                                       std::vector<Thing> (Tables::*read)(const std::string& name)) {
  std::string key = inSmallLetters(name);
  const auto known = things.find(key);
  if (known != things.end()) return known->second;
  if (things.size() == kMostNames) things.clear();
  auto found = (this->*read)(key);
  return things.emplace(std::move(key), std::move(found)).first->second;
}

std::vector<Tables::Column> Tables::readColumns(const std::string& view) {
  std::vector<Column> found;
  const Query columns = prepare(kColumns);
  sqlite3_bind_text(columns.get(), 1, view.c_str(), -1, SQLITE_TRANSIENT);
  while (step(columns)) found.push_back({cell(columns.get(), 0), typeOfDeclared(cell(columns.get(), 1))});
  return found;
}

std::vector<Tables::Index> Tables::readIndexes(const std::string& table) {
  std::vector<Index> found;
  if (!isTable(table)) return found;
  std::vector<std::string> key;
  for (const Query columns = ask("table_xinfo", table); step(columns);)
    if (sqlite3_column_int(columns.get(), 5) != 0) key.push_back(cell(columns.get(), 1));
  // A one-column key may have no index besides the table itself; a longer one always has one.
  if (key.size() == 1) found.push_back({std::move(key), true});
  for (const Query indexes = ask("index_list", table); step(indexes);) {
    const bool isPartial = sqlite3_column_int(indexes.get(), 4) != 0;
    if (isPartial) continue;
    Index& index = found.emplace_back();
    index.isUnique = sqlite3_column_int(indexes.get(), 2) != 0;
    for (const Query columns = ask("index_info", cell(indexes.get(), 1)); step(columns);)
      index.columns.push_back(cell(columns.get(), 2));
  }
  return found;
}

/// The pragma itself: the equivalent table-valued function takes several times as long, on every connection's
/// first statement about a period.
Tables::Query Tables::ask(const char* pragma, const std::string& name) {
  const std::unique_ptr<char, decltype(&sqlite3_free)> sql(
      sqlite3_mprintf("PRAGMA %s.%s(%Q)", kDatabase, pragma, name.c_str()), sqlite3_free);
  return prepare(sql.get());
}

Tables::Query Tables::prepare(const char* sql) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database_, sql, -1, &prepared, nullptr);
  Query query(prepared);
  if (result != SQLITE_OK) throw lastError(database_, sql);
  return query;
}

/// Advances to the next row; false after the last. A view that SQLite can't read, such as one on a missing
/// table, has no columns: a statement that names it fails by itself, with a reason.
bool Tables::step(const Query& query) {
  const int result = sqlite3_step(query.get());
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE || result == SQLITE_ERROR) return false;
  const data::DataError failure = lastError(database_, sqlite3_sql(query.get()));
  sqlite3_reset(query.get());
  throw failure;
}

}  // namespace ledgertree::engines::sqlite
