// Both databases are one: what the scripts of SQL Server make is held against the embedded one and against
// the catalogue, and does the same.

#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "data/data_error.h"
#include "data/embedded/embedded_connection.h"
#include "db/schema.h"
#include "db/server_on_sqlite.h"
#include "db/server_schema.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

using data::DataError;
using data::Value;

void nobody(std::string_view) {}

std::multiset<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::multiset<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.insert(line);
  return lines;
}

std::string missingIn(const std::string& other, const std::string& text) {
  const std::multiset<std::string> there = linesOf(other);
  std::string missing;
  for (const std::string& line : linesOf(text)) missing += there.contains(line) ? "" : line + "\n";
  return missing;
}

/// Columns, references, indexes, conditions and comparisons, one a line.
std::string described(SQLite::Database& database) {
  std::string text = testing::allRows(database, R"(
    select m.name || '.' || c.name || iif(m.type = 'view', '', ' ' || replace(replace(lower(c.type), ' ', ''), 'integer', 'int')
        || iif(c."notnull" or c.pk, ' not null', '') || iif(c.pk, ' key ' || c.pk, '') || ifnull(' default ' || trim(c.dflt_value, '()'), ''))
      from sqlite_schema m, pragma_table_xinfo(m.name) c where m.name not like 'sqlite%' and m.type in ('table', 'view')
    union all select m.name || '.' || f."from" || ' of ' || f."table" || '.' || f."to" || ' ' || f.on_delete
      from sqlite_schema m, pragma_foreign_key_list(m.name) f where m.type = 'table'
    union all select m.tbl_name || ' ' || m.name || ' ' || (select group_concat(ifnull(x.name, '?')) from pragma_index_xinfo(m.name) x where x.key)
      from sqlite_schema m where m.type = 'index' and m.name not like 'sqlite%')");
  SQLite::Statement tables(database, "select name, sql from sqlite_schema where type = 'table'");
  while (tables.executeStep()) {
    const Words words = wordsOf(tables.getColumn(1).getString());
    for (std::size_t at = 0; at < words.size(); ++at) {
      std::size_t end = at + 1;
      for (int depth = 0; words[at] == "check"; ++end) {
        depth += words[end] == "(" ? 1 : words[end] == ")" ? -1 : 0;
        if (depth == 0) break;
      }
      if (words[at] == "check")
        text += "\n" + tables.getColumn(0).getString() + joined(words, at + 1, end) + ")";
      if (words[at] == "collate")
        text += "\n" + tables.getColumn(0).getString() + "." + words[at - 5] + " as people read";
    }
  }
  return text;
}

class ServerScripts : public ::testing::Test {
 protected:
  ServerScripts() { installServerSchema(server, nobody); }

  std::string both(const std::string& query) {
    const std::string here = embedded.rows(query);
    EXPECT_EQ(testing::allRows(server.database, query), here) << query;
    return here;
  }

  ServerOnSqlite server;
  testing::TemporaryDatabase embedded;
};

TEST_F(ServerScripts, MakeTheTablesViewsAndIndexesOfTheEmbeddedDatabase) {
  const std::string here = described(embedded.other());
  std::string there = described(server.database);
  // What the types of a server refuse by themselves.
  there += "\n" + testing::allRows(server.database, R"(
    select m.name || ' ' || iif(c.type = 'money', '(typeof (' || c.name || ')' || iif(c."notnull", ' = ''integer'')', ' in (''integer'', ''null''))'),
        iif(c.name = 'ID', '(ID between 1 and 2147483647)', '(length (' || c.name || ') <= ' || substr(c.type, instr(c.type, '(') + 1)))
      from sqlite_schema m, pragma_table_info(m.name) c
      where m.type = 'table' and (c.type = 'money' or c.type like '%varchar%' or c.name = 'ID' and c.pk and m.sql not like '%check (ID%'))");
  EXPECT_EQ(missingIn(here, there), R"(tblAccount ixAccountLevel NoLevel,Code
tblAccount ixAccountTree TreeParentID,Code
tblAccount.FarsiCreateDate as people read
tblAccount.TreeParentID int
tblAccountClass.Name nvarchar(100) not null
tblAccountClass.ViewMajor as people read
tblAccountClass.ViewMinor as people read
tblAccountDocument.FarsiDocumentDate as people read
tblAccountParent (ID between 1 and 2147483647)
tblAccountPeriod.FarsiBeginDate as people read
tblAccountPeriod.FarsiEndDate as people read
tblAccountPeriodAccount.AccountID of tblAccount.ID CASCADE
tblAccountRelatedClasses.AccountID of tblAccount.ID CASCADE
tblAccountRelatedClassesDetail.AccountID of tblAccount.ID CASCADE
tblAccountRelatedObjects.AccountID of tblAccount.ID CASCADE
tblTarvoBasePath (length (BasePath) <= 250)
tblTarvoBasePath.BasePath as people read
tblTarvoSystemParameters (ID between 1 and 2147483647)
tblTarvoSystemParameters (length (Value) <= 250)
)");
  EXPECT_EQ(missingIn(there, here), R"(tblAccount ixAccountLevel NoLevel,?
tblAccount ixAccountTree ?,Code
tblAccountClass.Name varchar(100) not null
tblAccountRelatedObjects.AccountID of tblAccount.ID NO ACTION
tblUserPermission.UserID of tblUser.ID CASCADE
vwAccountBranch.ID
vwAccountBranch.ParentID
)");
  EXPECT_EQ(testing::allRows(server.database,
                             "select m.name from sqlite_schema m, pragma_table_info(m.name) c where m.type = "
                             "'table' and lower(c.type) = 'integer' order by 1"),
            "tblAccCostCenter\ntblAccount\ntblAccountDocumentDetail");
}

TEST_F(ServerScripts, ShowTheSameChartInEveryTableAndView) {
  createDemoChart(embedded.other());
  installServerDemo(server, nobody);
  std::multiset<std::string> names =
      linesOf(embedded.rows("select name from sqlite_schema where type in ('table', 'view') and name not "
                            "like 'sqlite%' and name <> 'vwAccountBranch'"));
  for (const std::string& name : names) {
    const std::string columns = embedded.rows(
        "select group_concat(iif(type = 'money', name || ' * 1.0 / @', name)) from pragma_table_info('" +
        name + "')");
    const auto rowsOf = [&](SQLite::Database& database, const char* unit) {
      return linesOf(testing::allRows(
          database, "select " + std::regex_replace(columns, std::regex("@"), unit) + " from " + name));
    };
    EXPECT_EQ(rowsOf(server.database, "1"), rowsOf(embedded.other(), "10000")) << name;
  }
}

const data::Procedure* const kProcedures[] = {
    &data::procedures::spAccountInsertAccount,       &data::procedures::spAccountUpdateAccounts,
    &data::procedures::spAccountInsertRelatedObject, &data::procedures::spAccountDeleteAccount,
    &data::procedures::spTarvoHasPermission,         &data::procedures::spAccountGetCurrentUserPeriod};

TEST_F(ServerScripts, TakeTheParametersOfTheCatalogue) {
  for (const data::Procedure* procedure : kProcedures) {
    std::string head;
    for (const auto& [name, type, width] : procedure->parameters) {
      constexpr const char* kTypes[] = {" int", " money", " datetime", " varchar ("};
      head += (head.empty() ? "" : ", ") + std::string(name) + kTypes[static_cast<int>(type)];
      if (width != 0) head += std::to_string(width) + ")";
    }
    EXPECT_EQ(server.heads.at(std::string(procedure->name)), head);
  }
}

/// Values for any parameters: of accounts and codes that are there, and of others.
class RandomCalls {
 public:
  [[nodiscard]] int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }
  std::vector<Value> valuesFor(const data::Procedure& procedure) {
    std::vector<Value> values;
    for (const data::Parameter& parameter : procedure.parameters) {
      if (parameter.type == data::ParameterType::DateTime) {
        values.emplace_back(data::DateTime{.year = 2000 + below(20)});
      } else if (parameter.type == data::ParameterType::Money) {
        values.push_back(below(4) == 0 ? Value() : Value(data::Money::fromTenThousandths(below(100000))));
      } else if (parameter.name == "@Code") {
        values.emplace_back((below(2) == 0 ? "A" : "a") + std::to_string(below(12)));
      } else if (parameter.type == data::ParameterType::Text) {
        values.emplace_back(
            std::string(1 + static_cast<std::size_t>(below(9)), static_cast<char>('a' + below(26))));
      } else if (parameter.name == "@FormPermissionID") {
        values.emplace_back(300 + below(4));
      } else if (parameter.name.find("ID") == 1 || parameter.name == "@ParentID" ||
                 parameter.name == "@AccountID") {
        values.emplace_back(below(9) == 0 ? 99 : below(8) == 0 ? -1 : below(12));
      } else {
        values.emplace_back(below(6) - 1);
      }
    }
    return values;
  }

 private:
  std::mt19937 random_{7};
};

TEST_F(ServerScripts, DoWhatTheEmbeddedProceduresDo) {
  data::embedded::EmbeddedConnection connection(embedded.file().string());
  for (const std::string statement :
       {"insert into tblUser (ID, Name, PeriodID) values (1, 'a', 4), (2, 'b', null)",
        "insert into tblUserPermission values (1, 301), (2, 302)",
        "insert into tblAccount (ID, ParentID, Code) values (1, null, 'A1'), (2, 1, 'A2'), (3, 2, 'A3')",
        "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01')",
        "insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 1, 3)",
        "create table tblOfTheHost (AccountID int references tblAccount (ID))"}) {
    server.run(statement);
    embedded.execute(statement);
  }
  RandomCalls random;
  std::set<std::string> outcomes;
  for (int round = 0; round < 700; ++round) {
    const int which = random.below(8);
    const data::Procedure& procedure = *kProcedures[which < 6 ? which : which - 6];
    const std::vector<Value> values = random.valuesFor(procedure);
    const auto outcome = [&](data::Connection& database) {
      try {
        return std::to_string(database.call(procedure, values));
      } catch (const DataError& failure) {
        return std::string(failure.what());
      }
    };
    const std::string here = outcome(connection);
    // A missing parent and a code that exists: each engine tells of the one that it meets first.
    const std::string there = outcome(server);
    if (here == "0" && there.size() > 3) continue;
    ASSERT_EQ(there, here) << procedure.name << " in round " << round;
    outcomes.insert(std::string(procedure.name).substr(2, 20) + " " +
                    (here.size() < 3 ? here == "0" ? "0" : "1" : here.substr(0, 20)));
    both(
        "select ID, ParentID, Code, Title, NoLevel, GroupID, BranchID, PositionID, CreateDate, "
        "FarsiCreateDate, Notes, AccountNatureID, IsPermanent, "
        "IsClosed, MaxDebit, MaxCredit from tblAccount order by ID");
    both("select * from tblAccountRelatedObjects order by 1, 2, 3, 4");
    both("select * from tblAccountParent order by 1, 2");
    if (round == 350) {
      server.run("insert into tblOfTheHost select max(ID) from tblAccount");
      embedded.execute("insert into tblOfTheHost select max(ID) from tblAccount");
    }
  }
  EXPECT_EQ(outcomes.size(), 16U) << "each way in which each procedure can end";
  for (const char* name : {"spAccountInsertAccount", "spAccountUpdateAccounts",
                           "spAccountInsertRelatedObject", "spAccountDeleteAccount"})
    EXPECT_EQ(joined(server.bodies.at(name), 0, 9), "begin set nocount on; set xact_abort on;") << name;
  EXPECT_GT(server.locks.size(), 200U);
  for (std::size_t lock = 1; lock < server.locks.size(); ++lock)
    EXPECT_EQ(server.locks[lock],
              "@Resource = 'LedgerTree chart', @LockMode = 'Exclusive', @LockOwner = 'Transaction'");
}

TEST_F(ServerScripts, KeepTheTreeAsTheEmbeddedTriggersDo) {
  const auto write = [this](const std::string& statement) {
    const auto failure = [](const auto& work) -> std::string {
      try {
        work();
      } catch (const std::exception& told) {
        return told.what();
      }
      return "";
    };
    const std::string here = failure([&] { embedded.execute(statement); });
    EXPECT_EQ(failure([&] { server.run(statement); }).substr(0, here.empty() ? 99 : here.size()), here)
        << statement;
    both("select ID, ParentID, NoLevel from tblAccount order by 1");
    for (const char* table :
         {"Parent", "PeriodAccount", "RelatedObjects", "RelatedClasses", "RelatedClassesDetail"})
      both("select * from tblAccount" + std::string(table) + " order by 1, 2");
  };
  write(
      "insert into tblAccount (ID, ParentID, Code) values (1, null, '1'), (2, 1, '11'), (3, 2, '111'), (4, "
      "null, '2'), (5, 3, '1111')");
  RandomCalls random;
  for (int round = 0; round < 150; ++round) {
    const auto id = [&] { return std::to_string(1 + random.below(14)); };
    switch (random.below(4)) {
      case 0:
        write("insert into tblAccount (ID, ParentID, NoLevel) values (" + id() + ", " + id() + ", 7)");
        break;
      case 1:
        write("update tblAccount set ParentID = " + id() + " where ID in (" + id() + ", " + id() + ")");
        break;
      case 2:
        write("update tblAccount set NoLevel = 9, ParentID = null where ID = " + id());
        break;
      default:
        write("update tblAccount set NoLevel = 3 where ID < " + id());
    }
  }
  write("insert into tblAccountPeriodAccount values (1, 1), (5, 2), (4, 2)");
  write("insert into tblAccountRelatedObjects values (5, -1, 3, 8), (1, 2, 0, -1), (4, null, 7, 9)");
  write("insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (5, 1, 1)");
  write("insert into tblAccountRelatedClassesDetail values (5, 1, 10)");
  write("insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01')");
  write("insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 1, 4)");
  // As where the tables of a host declare no references.
  server.database.exec("pragma foreign_keys = off");
  for (int id = 1; id < 15; ++id) write("delete from tblAccount where ID = " + std::to_string(id));
}

TEST_F(ServerScripts, LeaveWhatTheHostHasAndMakeTheChartsOwnAnew) {
  const std::string made = described(server.database);
  const std::map<std::string, Words> bodies = server.bodies;
  for (const std::string& view : linesOf(server.listOf("view")))
    server.run("drop view dbo." + view + "; create view dbo." + view + " as select 'host' as Host;");
  const Words hosts = wordsOf("begin return 7; end;");
  for (auto& [name, body] : server.bodies) body = hosts;
  installServerSchema(server, nobody);
  EXPECT_EQ(
      linesOf(testing::allRows(server.database,
                               "select name from sqlite_schema where type = 'view' and sql like '%host%'"))
          .size(),
      17U);
  for (const char* ours : {"vwAccount", "vwAccountRelatedObjects", "vwAccountMajor", "vwAccountMinor"})
    EXPECT_THROW(server.run("select Host from " + std::string(ours) + ";"), DataError) << ours;
  for (const auto& [name, body] : bodies) {
    const bool stays = name == "spTarvoHasPermission" || name == "spAccountGetCurrentUserPeriod";
    EXPECT_EQ(server.bodies.at(name), stays ? hosts : body) << name;
  }
  ServerOnSqlite asked;
  asked.run("create procedure dbo.spTarvoHasPermission as begin return 7; end;");
  asked.run("create procedure dbo.spAccountGetCurrentUserPeriod as begin return 7; end;");
  asked.run("create view dbo.vwTarvoBasePath as select '/' as BasePath;");
  installServerSchema(asked, nobody);
  EXPECT_EQ(missingIn(asked.listOf("table"), server.listOf("table")),
            "tblTarvoBasePath\ntblUser\ntblUserPermission\n");
}

TEST_F(ServerScripts, GiveAPersonTheLeastThatTheScreensNeed) {
  std::string grants;
  for (const std::string& grant : server.grants) grants += grant + "\n";
  std::string expected = R"(select on tblAccount
select on tblAccountParent
select on tblAccountPeriod
select on tblAccountDocument
select on tblAccountDocumentDetail
select on tblAccountClass
select on tblTarvoSystemParameters
update on tblAccount (Code, GroupID, AccountNatureID, IsPermanent, IsClosed)
delete on tblAccount
select, insert, delete on tblAccountPeriodAccount
select, insert, delete on tblAccountRelatedObjects
select, insert, update, delete on tblAccountRelatedClasses
select, insert, delete on tblAccountRelatedClassesDetail
)";
  for (const std::string& view : linesOf(server.listOf("view"))) expected += "select on " + view + "\n";
  for (const data::Procedure* procedure : kProcedures)
    expected += "execute on " + std::string(procedure->name) + "\n";
  expected = std::regex_replace(expected, std::regex("\n"), " to LedgerTreeUsers\n");
  EXPECT_EQ(missingIn(expected, grants), "");
  EXPECT_EQ(missingIn(grants, expected), "");
}

TEST(ServerSchema, IsInstalledWholeOrNotAtAll) {
  const struct {
    const char* said;
    const char* otherwise;
    const char* told;
  } cases[] = {
      {"<> N'بدهكار'", "= N'بدهكار'",
       "db/sqlserver/000_database.sql, the batch at line 1: The code page of this database has no Persian"},
      {"'CodePage') = 65001", "'CodePage') <> 65001", "stores Persian letters as several bytes"},
      {"'a' <> 'A'", "'a' = 'a'", "tells capital from small letters"},
      {"create index ixAccountTitle on", "create indices ixAccountTitle on",
       "db/sqlserver/030_indexes.sql, the batch at line 13: "},
      {"@Got < 0", "@Got = 0", "Another installation of the schema is at work"},
  };
  for (const auto& [said, otherwise, told] : cases) {
    ServerOnSqlite server;
    server.saidOtherwise[said] = otherwise;
    try {
      installServerSchema(server, nobody);
      ADD_FAILURE() << told;
    } catch (const DataError& failure) {
      EXPECT_NE(std::string(failure.what()).find(told), std::string::npos) << failure.what();
    }
    EXPECT_EQ(server.listOf("table"), "");
  }
}

}  // namespace
}  // namespace ledgertree::db
