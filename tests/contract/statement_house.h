#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "db/schema.h"
#include "engines/sqlite/embedded_connection.h"
#include "engines/sqlite/persian_order.h"
#include "shell/control/control_house.h"
#include "support/text_table.h"
#include "text/fold.h"

namespace ledgertree::testing {

/// Every table that the screens write.
inline constexpr const char* kTables[] = {
    "select ID, ParentID, Code, Title, NoLevel, GroupID, BranchID, PositionID, Notes, AccountNatureID, "
    "IsPermanent, IsClosed, MaxDebit, MaxCredit from tblAccount",
    "select * from tblAccountParent",
    "select * from tblAccountPeriodAccount",
    "select * from tblAccountRelatedObjects",
    "select * from tblAccountRelatedClasses",
    "select * from tblAccountRelatedClassesDetail",
};

/// The rows of a text, one per line, with the letters that a server's code page can distinguish.
inline std::vector<std::string> lines(const std::string& text, bool sorted) {
  std::vector<std::string> found;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t end = std::min(text.find('\n', place), text.size());
    const std::string line = text.substr(place, end - place);
    found.push_back(onServer() ? text::fold(line) : line);
    place = end + 1;
  }
  if (sorted) std::sort(found.begin(), found.end());
  return found;
}

/// SQLite's columns for a statement, from the engine's rows; a server's table may have more.
inline data::Rows columnsOf(const data::Rows& byHand, const data::Rows& rows) {
  data::Rows picked;
  for (const std::string& name : byHand.columns()) picked.addColumn(name);
  for (std::size_t row = 0; row < rows.count(); ++row)
    for (const std::string& name : picked.columns())
      picked.addValue(rows.value(row, rows.column(name).value()));
  return picked;
}

/// A statement without its numbers, except -1, which means none or all.
inline std::string kindOf(const std::string& statement) {
  std::string kind;
  for (const char sign : statement)
    if (sign < '0' || sign > '9' || kind.ends_with('-'))
      kind += sign;
    else if (!kind.ends_with('#'))
      kind += '#';
  return kind;
}

inline std::string withNumberOf(const std::string& sent, std::string byHand) {
  const std::size_t end = sent.find_last_of("0123456789") + 1;
  const std::size_t begin = sent.find_last_not_of("0123456789", end - 1) + 1;
  const std::size_t place = byHand.find('#');
  return place == std::string::npos ? byHand : byHand.replace(place, 1, sent.substr(begin, end - begin));
}

/// A user of all the screens on the demo chart, with the engine's answers recorded; and the same chart in a
/// model, which SQLite reads and changes directly.
class StatementHouse : public ControlHouse {
 protected:
  StatementHouse() {
    engines::sqlite::addPersianOrder(model.getHandle());
    db::openSchema(model);
    db::createDemoChart(model);
    database.fillWithDemoChart();
    if (!onServer()) embedded.emplace(database.file().string());
    shell.offers = {Offer::HiddenCommands, Offer::Export};
    faults.onAnswer = [this](const std::string& statement, const auto& rows) {
      // Queries for a permission, for a period, for the columns of a view alone, or for the place of an
      // account found are tested elsewhere.
      const bool elsewhere = statement.starts_with("spTarvo") || statement.starts_with("spAccountGet") ||
                             statement.ends_with(" Where ID=-1") ||
                             statement.starts_with("Select p.ChildID, a.Title");
      if (!recording || elsewhere) return;
      if ((rows ? asked : written).insert(kindOf(statement)).second) answers.push_back({statement, rows});
    };
  }

  /// A user action sends what statements.txt has under its name: the queries that haven't been made before,
  /// and the first writing statement of each kind, with everything that it and the others of its kind change.
  void expect(const std::string& what, const std::function<void()>& acts) {
    ASSERT_FALSE(recording);
    SCOPED_TRACE(what);
    const std::vector<std::string> byHand = linesOf("contract/statements.txt", what);
    answers.clear();
    written.clear();
    recording = true;
    acts();
    recording = false;
    std::string sent;
    for (const Answer& answer : answers) sent += answer.statement + "\n";
    ASSERT_EQ(answers.size(), byHand.size()) << sent;
    for (std::size_t i = 0; i < byHand.size(); ++i) compare(answers[i], byHand[i]);
    for (const char* table : kTables)
      EXPECT_EQ(lines(database.rows(table), true), lines(allRows(model, table), true)) << table << " behind\n"
                                                                                       << sent;
  }
  /// Queries made there are tested elsewhere.
  void learn(const std::function<void()>& acts) {
    recording = true;
    acts();
    recording = false;
  }
  void both(const std::string& statements) {
    database.execute(statements);
    model.exec(statements);
  }

  SQLite::Database model{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};

 private:
  struct Answer {
    std::string statement;
    std::optional<data::Rows> rows;
  };

  void compare(const Answer& answer, const std::string& byHand) {
    SCOPED_TRACE(answer.statement);
    const std::size_t end = std::min(byHand.find(" -- scans "), byHand.size());
    expectPlan(answer.statement, byHand.substr(end) + " ");
    const std::string statement = withNumberOf(answer.statement, byHand.substr(0, end));
    if (!answer.rows) {
      EXPECT_FALSE(statement.starts_with("select"));
      return static_cast<void>(model.exec(statement));
    }
    const data::Rows expected = readRows(model, statement);
    EXPECT_TRUE(onServer() || answer.rows->columns().size() == expected.columns().size());
    // Names sort by the database's collation.
    const bool ordered = statement.find(onServer() ? "order by Code" : "order by") != std::string::npos;
    EXPECT_EQ(lines(allRows(columnsOf(expected, *answer.rows)), !ordered),
              lines(allRows(expected), !ordered));
  }
  /// No table is scanned except those named, "once" means no look-up for each row, and the accounts of a
  /// period are iterated only for their own sake.
  void expectPlan(const std::string& statement, const std::string& scans) {
    if (!embedded || statement.starts_with("sp")) return;
    for (const std::string& step : embedded->queryPlan(statement)) {
      EXPECT_FALSE(step.starts_with("CORRELATED") && scans.find(" once ") != std::string::npos) << step;
      // Under another name they would pass for a list of a membership test.
      const bool isPeriod = step.ends_with("(PeriodID=?)");
      EXPECT_TRUE(!isPeriod || step.starts_with("SEARCH tblAccountPeriodAccount ")) << step;
      if (!step.starts_with("SCAN ")) continue;
      const std::string table = step.substr(4, step.find(' ', 5) - 4);
      EXPECT_TRUE(table == " CONSTANT" || scans.find(table + " ") != std::string::npos) << step;
    }
  }

  std::optional<engines::sqlite::EmbeddedConnection> embedded;
  std::set<std::string> asked;
  std::set<std::string> written;
  std::vector<Answer> answers;
  bool recording = false;
};

}  // namespace ledgertree::testing
