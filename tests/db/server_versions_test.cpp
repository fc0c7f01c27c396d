#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "data/data_error.h"
#include "data/odbc/odbc_engine.h"
#include "db/scripts.h"
#include "db/server_schema.h"
#include "ledgertree_scripts.h"
#include "support/faulty_connection.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

using data::DataError;

std::string firstVersion() {
  std::ifstream file(LEDGERTREE_VERSIONS "/sqlserver-1.sql");
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const DataError& failure) {
    return failure.what();
  }
  return "nothing failed";
}

/// What the scripts of SQL Server make, read from their text: columns, constraints, indexes, and what is made
/// anew as a whole. It knows the guards of the scripts, since that is where a database that exists parts from
/// a new one.
class Catalogue {
 public:
  using Objects = std::map<std::string, std::string>;

  void run(std::string_view script) {
    static const std::regex comments("--[^\n]*");
    static const std::regex blanks("\\s+");
    for (const Batch& batch : batchesOf(script))
      runBatch(std::regex_replace(std::regex_replace(std::string(batch.text), comments, ""), blanks, " "));
  }
  [[nodiscard]] const Objects& objects() const { return objects_; }

 private:
  void runBatch(const std::string& batch) {
    static const std::regex work("create |alter table ");
    std::smatch begin;
    if (!std::regex_search(batch, begin, work) || isThere(begin.prefix())) return;
    static const std::regex made("create (table|index|view|trigger|procedure) (?:dbo\\.)?(\\w+)(.*)");
    static const std::regex altered(
        "alter table dbo\\.(\\w+) (add|alter column|drop column|drop constraint) (.*?)[; ]*$");
    std::smatch parts;
    if (std::regex_search(batch, parts, altered)) {
      const std::string item = parts[3];
      if (parts[2].str().starts_with("drop")) {
        objects_.erase(parts[1].str() + "." + item);
      } else {
        addItem(parts[1], item);
      }
    } else if (std::regex_search(batch, parts, made)) {
      const std::string rest = parts[3];
      objects_[parts[2]] = parts[1] == "table" ? "table" : rest;
      if (parts[1] == "table") addItems(parts[2], rest);
    }
  }

  /// Whether a guard finds what its batch would make.
  [[nodiscard]] bool isThere(const std::string& guard) const {
    static const std::regex names(
        "object_id\\(N'dbo\\.(\\w+)'\\)(?:, N'(\\w+)', 'ColumnId'\\))? is null|name like N'(\\w+)%'");
    for (std::sregex_iterator name(guard.begin(), guard.end(), names), end; name != end; ++name) {
      const std::string object = (*name)[3].matched ? (*name)[3].str() : (*name)[1].str();
      if ((*name)[2].matched ? objects_.contains(object + "." + (*name)[2].str()) : objects_.contains(object))
        return true;
    }
    return false;
  }

  void addItems(const std::string& table, const std::string& list) {
    int depth = 0;
    std::string item;
    for (const char sign : list) {
      if (sign == ')' && --depth == 0) break;
      if (sign == ',' && depth == 1) addItem(table, std::exchange(item, {}));
      if (depth > 0 && !(sign == ',' && depth == 1)) item += sign;
      if (sign == '(') ++depth;
    }
    addItem(table, item);
  }
  void addItem(const std::string& table, std::string item) {
    static const std::regex named("^ *(?:constraint )?(\\w+)");
    static const std::regex blanks(" ");
    std::smatch name;
    std::regex_search(item, name, named);
    objects_[table + "." + name[1].str()] = std::regex_replace(item, blanks, "");
  }

  Objects objects_;
};

TEST(ServerVersions, TheStepsLeadToWhatTheScriptsMakeAnew) {
  Catalogue fresh;
  Catalogue stepped;
  stepped.run(firstVersion());
  EXPECT_EQ(stepped.objects().count("tblAccount.Code"), 1U);
  EXPECT_EQ(stepped.objects().count("ixAccountTree"), 1U);
  for (const Step& step : stepsBehind(1, "db/sqlserver/steps/")) stepped.run(embeddedText(step.script));
  for (const std::string_view path : scriptsIn("db/sqlserver/")) {
    fresh.run(embeddedText(path));
    stepped.run(embeddedText(path));
  }
  EXPECT_EQ(stepped.objects(), fresh.objects());
}

TEST(ServerVersions, BothEnginesAndTheScriptsCountAlike) {
  std::vector<std::vector<int>> numbers;
  for (const char* const folder : {"db/embedded/steps/", "db/sqlserver/steps/"}) {
    numbers.emplace_back();
    for (const Step& step : stepsBehind(1, folder)) numbers.back().push_back(step.version);
  }
  EXPECT_EQ(numbers[0], numbers[1]);
  for (std::size_t place = 0; place < numbers[0].size(); ++place)
    EXPECT_EQ(numbers[0][place], static_cast<int>(place) + 2);
  EXPECT_EQ(schemaVersion(), static_cast<int>(numbers[0].size()) + 1);
  EXPECT_NE(embeddedText("db/sqlserver/001_version.sql")
                .find("@Version int = " + std::to_string(schemaVersion()) + ";"),
            std::string_view::npos);
}

/// A server that does what it is told, and fails at the n-th batch.
class ObedientServer : public data::Connection {
 public:
  explicit ObedientServer(int version, std::size_t failsAt = 0) : version_(version), failsAt_(failsAt) {}

  std::optional<data::Rows> run(std::string_view statement) override {
    batches.emplace_back(statement);
    if (batches.size() == failsAt_) throw DataError(DataError::Reason::Statement, 1, "no room");
    data::Rows rows;
    rows.addColumn("Found");
    if (statement.ends_with("as Version")) rows.addInteger(version_);
    if (statement.find("shares its code") != std::string_view::npos) rows.addText("two of a code");
    return rows;
  }
  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  std::int32_t call(const data::Procedure&, std::span<const data::Value>) override { return 0; }
  data::SearchPage search(const data::SearchRequest&) override { return {}; }

  std::vector<std::string> batches;

 private:
  int version_;
  std::size_t failsAt_;
};

std::string install(ObedientServer& server, const LeftOut& leftOut = {}) {
  std::string told;
  installServerSchema(
      server, [&told](std::string_view line) { told.append(line) += '\n'; }, leftOut);
  return told;
}

TEST(ServerVersions, AnOlderDatabaseTakesTheStepsAheadOfTheScripts) {
  ObedientServer older(1);
  const std::string told = install(older);
  EXPECT_TRUE(told.starts_with("two of a code\ndb/sqlserver/steps/002_codes.sql\n")) << told;
  const auto place = [&older](const std::string& text) {
    return std::find_if(older.batches.begin(), older.batches.end(),
                        [&text](const std::string& batch) { return batch.find(text) != std::string::npos; });
  };
  EXPECT_LT(place("alter table dbo.tblAccount add"), place("tblLedgerTreeVersion (Version) values (2)"));
  EXPECT_LT(place("tblLedgerTreeVersion (Version) values (2)"), place("no Persian letters"));
  EXPECT_EQ(older.batches.back(), "commit transaction");

  ObedientServer present(schemaVersion());
  ObedientServer none(0);
  const std::string scripts = install(none);
  EXPECT_EQ(install(present), scripts);
  EXPECT_TRUE(scripts.starts_with("db/sqlserver/000_database.sql\n")) << scripts;
  EXPECT_EQ(install(present, {"033_code_index.sql"}).find("033"), std::string::npos);

  ObedientServer newer(schemaVersion() + 1);
  EXPECT_NE(failureOf([&] { install(newer); }).find("نسخه جديدتري"), std::string::npos);
  EXPECT_EQ(failureOf([&] { install(present, {"033_code_index"}); }), "There is no script 033_code_index.");
}

TEST(ServerVersions, AFailureOfWhateverBatchTakesTheWholeBack) {
  ObedientServer whole(1);
  install(whole);
  for (std::size_t batch = 1; batch <= whole.batches.size(); ++batch) {
    ObedientServer server(1, batch);
    EXPECT_NE(failureOf([&] { install(server); }).find("no room"), std::string::npos);
    EXPECT_EQ(server.batches.size(), batch + 1);
    EXPECT_EQ(server.batches.back(), "if @@trancount > 0 rollback transaction");
  }
}

TEST(ServerVersions, APlanOnlyReads) {
  ObedientServer server(1);
  const ServerPlan plan = planServerSchema(server);
  ASSERT_EQ(plan.steps.size(), static_cast<std::size_t>(schemaVersion() - 1));
  reportStep(server, plan.steps.front(), [](std::string_view line) { EXPECT_EQ(line, "two of a code"); });
  for (const std::string& batch : server.batches)
    EXPECT_FALSE(std::regex_search(batch, std::regex("(create|alter|insert|update|delete) "))) << batch;
}

/// The database of the stories, brought back to the first version and forth.
class OnServer : public ::testing::Test {
 protected:
  OnServer() {
    if (!testing::onServer()) return;
    database.emplace();
    data::odbc::registerOdbc(any, std::chrono::minutes(5), data::odbc::Versions::Any);
    data::odbc::registerOdbc(present);
    faults.putInto(any);
    connection = any.open(testing::testServer());
    shape = all(kShape);
    drop();
    for (const Batch& batch : batchesOf(firstVersion())) connection->run(batch.text);
  }

  static constexpr const char* kShape =
      "select table_name + '.' + column_name, data_type, isnull(character_maximum_length, 0), is_nullable "
      "from"
      " information_schema.columns where table_name <> 'tblLedgerTreeStories' union all select i.name,"
      " object_name(i.object_id), 0, '' from sys.indexes i join sys.objects o on o.object_id = i.object_id "
      "where o.type = 'U'"
      " union all select name, type_desc, 0, '' from sys.objects where type in ('P', 'TR', 'V') order by 1, "
      "2, 3";

  std::string all(const std::string& query) { return testing::allRows(*connection->run(query)); }
  std::string rows() {
    std::string text;
    for (const char* const query :
         {"select ID, ParentID, Code, Title, NoLevel from tblAccount order by ID",
          "select * from tblAccountParent order by 1, 2", "select * from tblAccountRelatedObjects order by 1",
          "select * from tblAccountRelatedClasses", "select * from tblAccountRelatedClassesDetail",
          "select * from tblAccountPeriodAccount order by 1",
          "select DocumentID, AccountID, Debit from tblAccountDocumentDetail order by 2",
          "select * from tblAccountPeriod"})
      text += all(query) + "\n";
    return text;
  }
  void drop() {
    const data::Rows found = *connection->run(
        "select case type when 'V' then 'view ' when 'P' then 'procedure ' else 'table ' end + name from "
        "sys.objects"
        " where type in ('V', 'P', 'U') and schema_name(schema_id) = 'dbo' and name like '[tvs][bwp]%'"
        " and name <> 'tblLedgerTreeStories' order by case name when 'tblAccountDocument' then 2"
        " when 'tblAccount' then 3 else 1 end, type desc");
    for (std::size_t row = 0; row < found.count(); ++row)
      connection->run("drop " + std::string(found.text(row, 0)));
  }

  std::optional<testing::TemporaryDatabase> database;
  testing::Faults faults;
  data::Providers any;
  data::Providers present;
  std::unique_ptr<data::Connection> connection;
  std::string shape;
};

TEST_F(OnServer, TheFirstVersionIsRefusedByTheScreensAndTakenUpWithAllItsRows) {
  if (!testing::onServer()) GTEST_SKIP() << "LEDGERTREE_TEST_CONNECTION names no server";
  const std::string before = rows();
  const std::string old = all(kShape);
  const auto screen = [this] {
    return failureOf([this] { present.open(testing::testServer())->run("select 1"); });
  };
  EXPECT_NE(screen().find("قديمي تري"), std::string::npos);
  EXPECT_NE(failureOf([this] {
              connection->run(batchesOf(embeddedText("db/sqlserver/001_version.sql")).front().text);
            }).find("older"),
            std::string::npos);

  std::vector<std::string> told;
  const auto report = [&told](std::string_view line) { told.emplace_back(line); };
  for (const char* const place : {"alter table dbo.tblAccount", "Version) values (2)",
                                  "create index ixAccountKey", "commit transaction"}) {
    faults.failWhere(place);
    EXPECT_NE(failureOf([&] { installServerSchema(*connection, report); }), "nothing failed");
    faults.heal();
    EXPECT_EQ(all(kShape), old) << place;
    EXPECT_EQ(rows(), before) << place;
  }
  told.clear();
  installServerSchema(*connection, report);
  EXPECT_EQ(all(kShape), shape);
  EXPECT_EQ(rows(), before);
  EXPECT_EQ(told.front(), "account 4 shares its code with another one: 9Ak");
  EXPECT_EQ(screen(), "nothing failed");

  connection->run("insert into tblLedgerTreeVersion (Version) values (1000)");
  EXPECT_NE(screen().find("نسخه جديدتري"), std::string::npos);
  connection->run("delete tblLedgerTreeVersion where Version = 1000");
}

}  // namespace
}  // namespace ledgertree::db
