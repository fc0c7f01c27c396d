#include "db/check.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "data/data_error.h"
#include "db/history.h"
#include "db/schema.h"
#include "db/scripts.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

/// The most accounts named in a line.
constexpr std::size_t kNamed = 20;

/// Passes the rows of a query one by one.
using Walk = std::function<void(std::string_view query, const std::function<void(const data::Rows&)>& visit)>;

class Check {
 public:
  Check(Walk walk, std::string_view engine, const Findings& told)
      : walk_(std::move(walk)), engine_(engine), told_(told) {}

  /// Reports a trigger of the memory of the chart that is missing or differs.
  void addTrigger(const std::string& name) {
    add("a trigger of the memory that is missing or differs", "", name);
  }

  std::size_t run() {
    for (const std::string_view script : scriptsWithOwn("db/checks/", engine_)) {
      ask(embeddedText(script));
      // A circle makes at least one level wrong: each can't be one more than the one before.
      if (script.ends_with("_levels.sql") && !found_.empty()) findCircles();
    }
    checkObjects();
    for (const auto& [fault, found] : found_) {
      std::string line = fault + ": " + std::to_string(found.count) + " -";
      line.append(found.named).append(found.count > kNamed ? " and others" : "");
      told_(line);
    }
    return found_.size();
  }

 private:
  struct Found {
    std::size_t count = 0;
    std::string named;
  };

  void ask(std::string_view query) {
    walk_(query, [this](const data::Rows& row) {
      add(row.value(0, 0).toText(), row.value(0, 1).toText(), row.value(0, 2).toText());
    });
  }

  void add(const std::string& fault, const std::string& id, const std::string& code) {
    Found& found = found_[fault];
    if (++found.count > kNamed) return;
    if (!id.empty()) found.named += " " + id;
    if (!code.empty()) found.named += " (" + code + ")";
  }

  /// Follows each account upwards until it reaches the top, a circle, or an account already followed.
  void findCircles() {
    std::unordered_map<std::int32_t, std::int32_t> parents;
    walk_("select ID, ParentID from tblAccount where ParentID is not null",
          [&parents](const data::Rows& row) {
            parents[row.value(0, 0).toInt32()] = row.value(0, 1).toInt32();
          });
    std::unordered_map<std::int32_t, std::int32_t> followedFrom;
    std::vector<std::int32_t> below;
    for (const auto& [start, unused] : parents) {
      std::int32_t account = start;
      auto parent = parents.find(account);
      while (parent != parents.end() && followedFrom.emplace(account, start).second) {
        account = parent->second;
        parent = parents.find(account);
      }
      if (parent == parents.end() || followedFrom[account] != start) continue;
      const std::int32_t first = account;
      do below.push_back(std::exchange(account, parents[account]));
      while (account != first);
    }
    std::sort(below.begin(), below.end());
    for (const std::int32_t account : below) add("an account below itself", std::to_string(account), "");
  }

  void checkObjects() {
    std::vector<std::pair<std::string, std::string>> classes;
    walk_("select ID, ViewMajor from tblAccountClass order by ID", [&classes](const data::Rows& row) {
      classes.emplace_back(row.value(0, 0).toText(), row.value(0, 1).toText());
    });
    for (const auto& [id, view] : classes) {
      if (!isName(view)) {
        add("a class whose view has no plain name", id, "");
        continue;
      }
      const std::string gone = " and not exists (select 1 from " + view + " v where v.ID = r.";
      std::string question =
          "select 'a relation to an object that has no row' as Fault, r.AccountID, null as Code "
          "from tblAccountRelatedObjects r where r.RelatedClassID = ";
      question.append(id).append(" and r.RelatedObjectID is not null").append(gone);
      question.append(
          "RelatedObjectID) union all select 'a chosen object that has no row', r.AccountID, null "
          "from tblAccountRelatedClassesDetail r where r.ClassID = ");
      question.append(id).append(gone).append("ObjectID)");
      try {
        ask(question);
      } catch (const data::DataError& failure) {
        if (failure.reason() != data::DataError::Reason::Statement) throw;
        add("a class whose view can't be read", id, view);
      }
    }
  }

  /// What a statement may contain unquoted: letters of any script, digits, "_", brackets and dots.
  static bool isName(std::string_view view) {
    return !view.empty() && std::none_of(view.begin(), view.end(), [](char letter) {
      return static_cast<unsigned char>(letter) <= ' ' ||
             std::string_view("'\"();,-/*").find(letter) != std::string_view::npos;
    });
  }

  Walk walk_;
  std::string_view engine_;
  const Findings& told_;
  std::map<std::string, Found> found_;
};

void walkFile(SQLite::Database& database, std::string_view query,
              const std::function<void(const data::Rows&)>& visit) {
  try {
    SQLite::Statement statement(database, std::string(query));
    data::Rows row;
    for (int column = 0; column < statement.getColumnCount(); ++column)
      row.addColumn(statement.getColumnName(column));
    while (statement.executeStep()) {
      row.clearRows();
      for (int column = 0; column < statement.getColumnCount(); ++column) {
        if (statement.isColumnNull(column))
          row.addNull();
        else if (statement.getColumn(column).isInteger())
          row.addInteger(statement.getColumn(column).getInt64());
        else
          row.addText(statement.getColumn(column).getString());
      }
      visit(row);
    }
  } catch (const SQLite::Exception& failure) {
    constexpr int kStatement = 1;  // SQLITE_ERROR: no such view, no such column
    throw data::DataError(failure.getErrorCode() == kStatement ? data::DataError::Reason::Statement
                                                               : data::DataError::Reason::Storage,
                          failure.getErrorCode(), failure.what(), std::string(query));
  }
}

}  // namespace

std::size_t checkChart(data::Connection& connection, const Findings& told) {
  const Walk walk = [&connection](std::string_view query, const auto& visit) {
    connection.walk(query, [&visit](const data::Rows& row) {
      visit(row);
      return true;
    });
  };
  Check check(walk, "sqlserver", told);
  for (const std::string& trigger : historyFaults(connection)) check.addTrigger(trigger);
  return check.run();
}

std::size_t checkChart(SQLite::Database& database, const Findings& told) {
  // With a cache large enough for a large chart, each page is read once.
  database.exec("pragma cache_size = -262144");
  SQLite::Transaction atOneMoment(database);
  requireChart(database);
  const Walk walk = [&database](std::string_view query, const auto& visit) {
    walkFile(database, query, visit);
  };
  Check check(walk, "embedded", told);
  for (const std::string& trigger : historyFaults(database)) check.addTrigger(trigger);
  return check.run();
}

}  // namespace ledgertree::db
