#include "db/server_on_sqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <regex>
#include <stdexcept>

#include "data/characters.h"
#include "data/data_error.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

using data::DataError;

struct Returned {
  std::int32_t number;
};

bool isText(const std::string& word) { return word.starts_with('\''); }

std::size_t endOf(const Words& words, std::size_t at) {
  return static_cast<std::size_t>(
      std::find(words.begin() + static_cast<std::ptrdiff_t>(at), words.end(), ";") - words.begin());
}

/// The first word outside parentheses that is one of these.
std::size_t find(const Words& words, std::size_t at, const Words& wanted) {
  for (int depth = 0; at < words.size(); ++at) {
    depth += words[at] == "(" ? 1 : words[at] == ")" ? -1 : 0;
    if (depth == 0 && std::find(wanted.begin(), wanted.end(), words[at]) != wanted.end()) break;
  }
  return at;
}

std::string literal(const data::Value& value) {
  if (value.isNull()) return "null";
  if (const auto* amount = std::get_if<data::Money>(&value.variant()))
    return std::to_string(amount->tenThousandths());
  if (std::holds_alternative<std::int64_t>(value.variant())) return value.toText();
  return data::quoteText(value.toText());
}

}  // namespace

Words wordsOf(const std::string& script) {
  static const std::regex word(R"(--[^\n]*|N?'(?:[^']|'')*'|@{0,2}\w+|<>|<=|>=|\|\||\S)");
  Words words;
  for (auto match = std::sregex_iterator(script.begin(), script.end(), word); match != std::sregex_iterator();
       ++match) {
    const std::string text = match->str();
    if (text.starts_with("--")) continue;
    if (text == "." && words.back() == "dbo") {
      words.pop_back();
    } else {
      words.push_back(text.starts_with("N'") ? text.substr(1) : text);
    }
  }
  return words;
}

std::string joined(const Words& words, std::size_t from, std::size_t to) {
  std::string text;
  for (; from < to; ++from) {
    const bool close =
        words[from].find_first_of("(),.;") == 0 || text.empty() || text.ends_with('(') || text.ends_with('.');
    text += (close && words[from] != "(" ? "" : " ") + words[from];
  }
  return text;
}

ServerOnSqlite::ServerOnSqlite()
    : saidOtherwise{
          {"collationproperty(cast(databasepropertyex(db_name(), 'Collation') as varchar(128)), 'CodePage')",
           "1256"},
          {"'a' <> 'A'", "'a' <> 'a'"},
          {"columnproperty(object_id(N'dbo.tblAccount'), N'TreeParentID', 'ColumnId')",
           "(select 1 from pragma_table_xinfo('tblAccount') where name = 'TreeParentID')"},
          {"TreeParentID as isnull(ParentID, -1)", "TreeParentID int as (ifnull(ParentID, -1))"},
          {"right(BasePath, 1)", "substr(BasePath, -1)"},
          {"dateadd(day, x.Day, p.BeginDate)", "datetime(p.BeginDate, '+' || x.Day || ' days')"}} {
  database.exec("pragma foreign_keys = on; create temp table known (name text)");
}

std::string ServerOnSqlite::listOf(const std::string& type) {
  return testing::allRows(database, "select name from sqlite_schema where type = '" + type +
                                        "' and name not like 'sqlite%' order by name");
}

std::optional<data::Rows> ServerOnSqlite::run(std::string_view batch) {
  std::string text(batch);
  for (const auto& [said, other] : saidOtherwise) {
    if (const std::size_t place = text.find(said); place != std::string::npos)
      text.replace(place, said.size(), other);
  }
  const Words words = wordsOf(text);
  for (std::size_t at = 0; at < words.size();) at = statement(words, at, true);
  return std::nullopt;
}

std::int32_t ServerOnSqlite::call(const data::Procedure& procedure, std::span<const data::Value> values) {
  Frame frame;
  const Words head = wordsOf(heads.at(std::string(procedure.name)));
  std::size_t place = 0;
  for (const std::string& word : head) {
    if (word.starts_with('@')) frame.variables[word] = literal(values[place++]);
  }
  try {
    perform(bodies.at(std::string(procedure.name)), std::move(frame));
  } catch (const Returned& result) {
    if (transactions_ != 0) throw std::logic_error("a transaction is left open");
    return result.number;
  } catch (const DataError&) {
    if (transactions_ != 0) transaction("rollback");
    throw;
  }
  throw std::logic_error("no return value");
}

void ServerOnSqlite::perform(const Words& body, Frame frame) {
  std::swap(frame_, frame);
  try {
    statement(body, 0, true);
  } catch (...) {
    std::swap(frame_, frame);
    throw;
  }
  std::swap(frame_, frame);
}

std::size_t ServerOnSqlite::statement(const Words& words, std::size_t at, bool live) {
  static const Words kStarts{"begin", "return", "throw",  "drop",   "create",   "exec",
                             "set",   "insert", "update", "delete", "rollback", "alter"};
  const std::string& first = words.at(at);
  const std::string second = at + 1 < words.size() ? words[at + 1] : "";
  if (first == "if" || first == "while") {
    const std::size_t body = find(words, at + 1, kStarts);
    const auto holds = [&] { return live && value(words, at + 1, body) == "1"; };
    if (first == "if") return statement(words, body, holds());
    while (holds()) statement(words, body, true);
    return statement(words, body, false);
  }
  if (first == "begin" && second == "try") return guarded(words, at + 2, live);
  if (first == "begin" && second != "transaction") return block(words, at + 1, live);
  if (first == "create") return create(words, at, live);
  const std::size_t end = endOf(words, at);
  if (live && end != at)
    simple(
        {words.begin() + static_cast<std::ptrdiff_t>(at), words.begin() + static_cast<std::ptrdiff_t>(end)});
  return end + 1;
}

std::size_t ServerOnSqlite::block(const Words& words, std::size_t at, bool live) {
  while (words.at(at) != "end") at = statement(words, at, live);
  return at + 1;
}

/// "begin try … end try begin catch … end catch"
std::size_t ServerOnSqlite::guarded(const Words& words, std::size_t at, bool live) {
  const std::size_t handler = block(words, at, false) + 3;
  const std::size_t end = block(words, handler, false) + 1;
  try {
    if (live) block(words, at, true);
  } catch (const DataError& failure) {
    frame_.failure = failure;
    block(words, handler, true);
  }
  return end;
}

std::size_t ServerOnSqlite::create(const Words& words, std::size_t at, bool live) {
  const std::string kind = words[at + 1];
  const std::string name = words[at + 2];
  if (kind == "role" || kind == "procedure" || kind == "trigger") {
    const std::size_t head = kind == "role" ? at + 3 : find(words, at, {"as"});
    if (!live) return words.size();
    heads[name] = joined(words, at + 3, head);
    if (kind != "role")
      bodies[name] = Words(words.begin() + static_cast<std::ptrdiff_t>(head) + 1, words.end());
    execute("insert into known values ('" + name + "')");
    return kind == "role" ? head + 1 : words.size();
  }
  const std::size_t end = endOf(words, at);
  // The comparison of texts that SQL Server takes from the database.
  static const std::regex text(R"(n?varchar \(\d+\))");
  std::string sql = written(words, at, end);
  static const std::regex key(R"(integer not null constraint \w+ primary key)");
  if (kind == "table")
    sql = std::regex_replace(std::regex_replace(sql, text, "$& collate nocase"), key, "$& autoincrement");
  if (live) execute(sql);
  return end + 1;
}

void ServerOnSqlite::simple(const Words& words) {
  const std::string& first = words.front();
  const bool ofOurs = words.size() > 2 && (words[1] == "procedure" || words[1] == "trigger");
  if (first == "declare") {
    declare(words);
  } else if (first == "exec") {
    call(words);
  } else if (first == "set") {
    if (words[1].starts_with('@')) frame_.variables[words[1]] = value(words, 3, words.size());
  } else if (first == "return") {
    throw Returned{words.size() == 1 ? 0 : std::stoi(value(words, 1, words.size()))};
  } else if (first == "throw") {
    if (words.size() == 1) throw DataError(frame_.failure.value());
    throw DataError(DataError::Reason::Constraint, std::stoi(words[1]),
                    words[3].substr(1, words[3].size() - 2));
  } else if (first == "begin" || first == "commit" || first == "rollback") {
    transaction(first);
  } else if (first == "grant") {
    grants.push_back(joined(words, 1, words.size()));
  } else if (first == "drop" && ofOurs) {
    heads.erase(words[2]);
    execute("delete from known where name = '" + words[2] + "'");
  } else if (first == "insert" || first == "update" || first == "delete") {
    change(words);
  } else {
    execute(written(words, 0, words.size()));
  }
}

void ServerOnSqlite::declare(const Words& words) {
  if (words[2] == "table") {
    const std::string name = "temp.\"" + words[1] + "\"";
    execute("drop table if exists " + name + "; create table " + name + written(words, 3, words.size()));
  } else {
    const bool given = words.size() > 4;
    frame_.variables[words[1]] = given ? value(words, 4, words.size()) : "null";
  }
}

void ServerOnSqlite::call(const Words& words) {
  if (words[1] == "(") {
    static_cast<void>(
        run(std::regex_replace(words[2].substr(1, words[2].size() - 2), std::regex("''"), "'")));
  } else if (words.size() > 3 && words[3] == "sp_getapplock") {
    locks.push_back(joined(words, 4, words.size()));
    frame_.variables[words[1]] = locked ? "-1" : "0";
  } else {
    perform(bodies.at(words[1]), {});
  }
}

void ServerOnSqlite::transaction(const std::string& act) {
  const int before = transactions_;
  transactions_ = act == "begin" ? before + 1 : act == "commit" ? before - 1 : 0;
  if ((before == 0) != (transactions_ == 0)) execute(act);
}

/// A statement that writes, as SQLite says it, and the triggers behind it.
void ServerOnSqlite::change(const Words& words) {
  std::string table = words[words[0] == "update" ? 1 : 2];
  std::string sql = written(words, 0, words.size());
  if (const std::size_t from = find(words, 0, {"from"}); words[0] == "update" && from < words.size()) {
    // "update a set Column = … from Table a join …"
    const std::size_t where = find(words, from, {"where"});
    const std::string row = table + ".rowid";
    const std::string rows =
        " from " + written(words, from + 1, where) + " where " +
        (where == words.size() ? "1" : "(" + written(words, where + 1, words.size()) + ")");
    table = written(words, from + 1, from + 2);
    sql = "update " + table + " set " + words[3] + " = (select " + written(words, 5, from) + rows + " and " +
          row + " = " + table + ".rowid) where rowid in (select " + row + rows + ")";
  }
  const auto fires = [&](const std::string& head) {
    return head.starts_with("on " + table + " ") && head.find(words[0]) != std::string::npos;
  };
  if (firing_ || std::none_of(heads.begin(), heads.end(), [&](const auto& one) { return fires(one.second); }))
    return execute(sql);
  execute("savepoint work");
  try {
    for (const std::string side : {"inserted", "deleted"})
      execute("drop table if exists temp." + side + "; create temp table " + side + " as select * from " +
              table + " where 0");
    for (const auto& [when, row] : {std::pair<std::string, std::string>{"after insert", "inserted"},
                                    {"after update", "inserted"},
                                    {"before update", "deleted"},
                                    {"before delete", "deleted"}})
      execute("create temp trigger \"" + when + "\" " + when + " on " + table + " begin insert into " + row +
              " select * from " + table + " where rowid = " + (row == "inserted" ? "new" : "old") +
              ".rowid; end");
    execute(sql);
    identity_ = database.getLastInsertRowid();
    for (const char* when : {"after insert", "after update", "before update", "before delete"})
      execute("drop trigger temp.\"" + std::string(when) + "\"");
    firing_ = true;
    for (const auto& [name, head] : heads) {
      if (fires(head)) perform(bodies.at(name), {});
    }
  } catch (const Returned&) {
  } catch (...) {
    firing_ = false;
    if (sqlite3_get_autocommit(database.getHandle()) == 0) execute("rollback to work; release work");
    throw;
  }
  firing_ = false;
  execute("release work");
}

std::string ServerOnSqlite::value(const Words& words, std::size_t from, std::size_t to) {
  try {
    return database.execAndGet("select quote(" + written(words, from, to) + ")").getString();
  } catch (const SQLite::Exception& failure) {
    throw DataError(DataError::Reason::Statement, 0, joined(words, from, to) + ": " + failure.what());
  }
}

std::string ServerOnSqlite::written(const Words& words, std::size_t from, std::size_t to) const {
  static const std::map<std::string, std::pair<std::string, std::size_t>> kOthers{
      {"isnull", {"ifnull", 0}},
      {"getdate", {"(datetime('now', 'localtime'))", 2}},
      {"with", {"", 5}},  // (updlock, holdlock)
      {"sys", {"(select name, tbl_name as object_id from sqlite_schema where type = 'index')", 2}},
  };
  Words said;
  for (; from < to; ++from) {
    const std::string& word = words[from];
    const std::string next = from + 1 < to ? words[from + 1] : "";
    const auto other = kOthers.find(word);
    const auto variable = frame_.variables.find(word);
    if (other != kOthers.end() && (word != "with" || next == "(")) {
      said.push_back(other->second.first);
      from += other->second.second;
    } else if (word == "int" && next == "identity") {
      said.emplace_back("integer");
      from += 6;
    } else if ((word == "object_id" || word == "database_principal_id") && next == "(") {
      const std::string name = word == "object_id" ? "'" + words[from + 2].substr(5) : words[from + 2];
      said.push_back(
          "(select name from (select name from sqlite_schema union all select name from known) where name "
          "= " +
          name + ")");
      from += 3;
    } else if (word == "error_number" || word == "scope_identity") {
      said.push_back(word == "scope_identity" ? std::to_string(identity_)
                                              : std::to_string(frame_.failure.value().number()));
      from += 2;
    } else if (word == "+" && (isText(next) || isText(words[from - 1]))) {
      said.emplace_back("||");
    } else if (word.starts_with("@@")) {
      said.push_back(std::to_string(word == "@@rowcount" ? changed_ : transactions_));
    } else if (word.starts_with('@')) {
      said.push_back(variable == frame_.variables.end() ? "\"" + word + "\"" : variable->second);
    } else {
      said.push_back(word);
    }
  }
  return joined(said, 0, said.size());
}

void ServerOnSqlite::execute(const std::string& sql) {
  try {
    database.exec(sql);
    changed_ = sqlite3_changes(database.getHandle());
  } catch (const SQLite::Exception& failure) {
    const bool reference = failure.getExtendedErrorCode() == SQLITE_CONSTRAINT_FOREIGNKEY;
    throw DataError(reference ? DataError::Reason::Constraint : DataError::Reason::Statement,
                    reference ? 547 : 0, std::string(failure.what()) + ": " + sql.substr(0, 300));
  }
}

}  // namespace ledgertree::db
