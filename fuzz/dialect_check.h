#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "db/schema.h"
#include "engines/sqlite/dialect.h"
#include "engines/sqlite/persian_order.h"
#include "engines/sqlite/plans.h"
#include "engines/sqlite/sum.h"
#include "tsql/parser.h"
#include "tsql/statement_shape.h"

namespace ledgertree::fuzz {

/// Translates any text, and runs the result in SQLite. A fault of the dialect throws std::logic_error; a text
/// may only be refused by a DataError.
class DialectCheck {
 public:
  DialectCheck() : database_(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE) {
    sqlite3_db_config(database_.getHandle(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    engines::sqlite::addSumFunction(database_.getHandle());
    engines::sqlite::addPersianOrder(database_.getHandle());
    db::openSchema(database_);
    database_.exec(
        "insert into tblAccount (ID, ParentID, Code, Title) values (1, null, '1', 'Cash'), (2, 1, '101', "
        "'till '),"
        " (3, 1, '102', 'TILL'), (4, 3, '10201', null), (5, null, '2', 'x');"
        "insert into tblAccountPeriod values (1, 'a', '2024-03-20', '2025-03-20', '1403/01/01', "
        "'1403/12/30'),"
        " (2, 'b', '2025-03-21', '2026-03-20', '1404/01/01', '1404/12/29');"
        "insert into tblAccountPeriodAccount values (1, 1), (2, 1), (3, 2), (5, 2);"
        "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1403/01/01'), (2, '1404/12/29');"
        "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 4), (2, 2), (2, 4);"
        "insert into tblAccountClass values (1, '01', 'Persons', 'vwEntityPerson', 'vwEntityPersonMinor', "
        "null);"
        "insert into tblAccountRelatedClasses values (4, 1, 1, null)");
    sqlite3_progress_handler(
        database_.getHandle(), 20000, [](void*) { return 1; }, nullptr);
  }

  void operator()(std::string_view text) {
    namespace engine = engines::sqlite;
    tsql::StatementShape shape;
    tsql::ParsedStatement parsed;
    engine::Translation translation;
    try {
      shape.read(text);
      parsed = tsql::parseStatement(text);
      translation = engine::translate(text, tables_);
    } catch (const data::DataError&) {
      return;
    }
    require(shape.literals().size() == parsed.literals.size(), "the two readers see different literals");
    for (const engine::Binding& binding : translation.bindings) {
      require(binding.literal < shape.literals().size(), "a parameter without a literal");
    }
    const engine::Translation plain = engine::translate(text, tables_, engine::Form::Plain);
    const Outcome expected = run(plain, shape.literals(), text);
    const Outcome found = run(translation, shape.literals(), text);
    // With a row limit any rows may come; next to an aggregate only the number is determined.
    const bool limited = plain.sql.find("LIMIT") != std::string::npos;
    const bool counts =
        plain.sql.find("count(") != std::string::npos || plain.sql.find("max(") != std::string::npos ||
        plain.sql.find("min(") != std::string::npos || plain.sql.find("sum(") != std::string::npos;
    if (expected.complete && found.complete && !limited) {
      require(counts ? expected.rows.size() == found.rows.size() : expected.rows == found.rows,
              "the rewritten form has another result");
    }
    require(!expected.complete || found.complete || found.interrupted, "SQLite refuses the rewritten form");
  }

 private:
  struct Outcome {
    bool complete = false;
    bool interrupted = false;
    std::vector<std::string> rows;
  };

  static void require(bool holds, const char* fault) {
    if (!holds) throw std::logic_error(fault);
  }

  Outcome run(const engines::sqlite::Translation& translation, const std::vector<tsql::Literal>& literals,
              std::string_view text) {
    Outcome outcome;
    database_.exec("savepoint one");
    try {
      auto plan = std::make_shared<engines::sqlite::Plan>(database_.getHandle(), translation, text);
      engines::sqlite::Plan::Run run(plan, literals);
      int result = run.step();
      data::Rows rows = run.emptyRows();
      for (; result == SQLITE_ROW; result = run.step()) run.addCells(rows);
      outcome.complete = result == SQLITE_DONE;
      outcome.interrupted = result == SQLITE_INTERRUPT;
      if (plan->writes()) rows = changed();
      for (std::size_t row = 0; row < rows.count(); ++row) {
        std::string line;
        for (std::size_t column = 0; column < rows.columns().size(); ++column) {
          line += rows.value(row, column).toText() + "|";
        }
        outcome.rows.push_back(line);
      }
    } catch (const data::DataError& error) {
      const std::string_view message = error.what();
      const std::string_view cause = message.substr(std::min(message.find(" (") + 2, message.size()));
      for (const char* const fault : {"near ", "unrecognized token", "incomplete input"}) {
        require(!cause.starts_with(fault), "the translation isn't a statement");
      }
    }
    database_.exec("rollback to one; release one");
    std::sort(outcome.rows.begin(), outcome.rows.end());
    return outcome;
  }

  /// The tables that a statement may have changed, as far as the two forms can differ.
  data::Rows changed() {
    data::Rows rows;
    rows.addColumn("Row");
    for (const char* const query :
         {"select ID || '|' || ifnull(ParentID, '') || '|' || ifnull(Code, '') from tblAccount",
          "select AccountID || '|' || PeriodID from tblAccountPeriodAccount"}) {
      SQLite::Statement statement(database_, query);
      while (statement.executeStep()) rows.addText(statement.getColumn(0).getText());
    }
    return rows;
  }

  SQLite::Database database_;
  engines::sqlite::Tables tables_{database_.getHandle()};
};

}  // namespace ledgertree::fuzz
