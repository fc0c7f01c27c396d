#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "data/data_error.h"
#include "db/check.h"
#include "db/scripts.h"
#include "db/server_schema.h"
#include "engines/odbc/odbc_engine.h"
#include "ledgertree_scripts.h"
#include "support/failure.h"
#include "support/faulty_connection.h"
#include "support/first_version.h"
#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree::db {
namespace {

using data::DataError;

std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const DataError& failure) {
    return failure.what();
  }
  return "nothing failed";
}

TEST(ServerVersions, BothEnginesAndTheScriptsCountAlike) {
  for (const char* const folder : {"db/embedded/steps/", "db/sqlserver/steps/"}) {
    int version = 1;
    for (const Step& step : stepsBehind(1, folder)) EXPECT_EQ(step.version, ++version) << folder;
    EXPECT_EQ(version, schemaVersion()) << folder;
  }
  const std::string number = "@Version int = " + std::to_string(schemaVersion()) + ";";
  EXPECT_NE(embeddedText("db/sqlserver/001_version.sql").find(number), std::string_view::npos);
}

/// A server that accepts every batch but the n-th; if `cut`, the connection then breaks and all later ones
/// fail too.
class ObedientServer : public data::Connection {
 public:
  explicit ObedientServer(int version, std::size_t failsAt = 0, bool cut = false)
      : version_(version), failsAt_(failsAt), cut_(cut) {}

  std::optional<data::Rows> run(std::string_view statement) override {
    batches.emplace_back(statement);
    const bool behind = cut_ && batches.size() > failsAt_;
    if (batches.size() == failsAt_ || behind)
      throw DataError(DataError::Reason::Busy, 102, behind ? "cut" : "no room", batches.back());
    data::Rows rows;
    rows.addColumn("Found");
    if (statement.ends_with("as Version")) rows.addInteger(version_);
    if (statement.find("shares its code") != std::string_view::npos) rows.addText("two of a code");
    return rows;
  }
  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  std::int32_t call(const data::Procedure&, std::span<const data::Value>) override { return 0; }
  void handOver(const data::AsRead& /*read*/) override {}
  data::SearchPage search(const data::SearchRequest&) override { return {}; }

  std::vector<std::string> batches;

 private:
  int version_;
  std::size_t failsAt_;
  bool cut_;
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
  std::string scripts;
  for (const char* script :
       {"000_database", "001_version", "010_tables", "020_host_tables", "030_indexes", "031_tree_index",
        "032_host_indexes", "033_code_index", "040_triggers", "045_ancestors", "050_host_views", "051_views",
        "060_procedures", "061_host_procedures", "070_rights"})
    scripts += std::string("db/sqlserver/") + script + ".sql\n";
  EXPECT_EQ(install(none), scripts);
  EXPECT_EQ(install(present), scripts);
  EXPECT_EQ(install(present, {"033_code_index.sql"}).find("033"), std::string::npos);

  ObedientServer newer(schemaVersion() + 1);
  EXPECT_NE(failureOf([&] { install(newer); }).find("نسخه جديدتري"), std::string::npos);
  EXPECT_EQ(failureOf([&] { install(present, {"033_code_index"}); }), "There is no script 033_code_index.");
}

TEST(ServerVersions, TheDemoComesInOneTransactionToo) {
  ObedientServer server(0);
  std::string told;
  installServerDemo(server, [&told](std::string_view script) { told.append(script) += ' '; });
  EXPECT_EQ(told,
            "db/demo/sqlserver/000_begin.sql db/demo/010_host.sql "
            "db/demo/020_accounts.sql db/demo/030_use.sql db/demo/sqlserver/900_end.sql ");
  for (const char* words :
       {"begin transaction;", "@Resource = N'LedgerTree schema', @LockMode = 'Exclusive'", "@Got < 0 throw"})
    EXPECT_NE(server.batches.front().find(words), std::string::npos) << words;
  EXPECT_EQ(server.batches.back(), "commit transaction");
}

TEST(ServerVersions, AFailureOfWhateverBatchTakesTheWholeBackAndIsToldWithItsPlace) {
  ObedientServer whole(1);
  install(whole);
  for (std::size_t batch = 1; batch <= whole.batches.size(); ++batch) {
    ObedientServer server(1, batch, batch % 2 == 0);
    const DataError failure = testing::failureOf([&] { return install(server); });
    EXPECT_TRUE(std::string(failure.what()).ends_with("no room")) << failure.what();
    EXPECT_EQ(failure.reason(), DataError::Reason::Busy);
    EXPECT_EQ(failure.number(), 102);
    EXPECT_EQ(failure.statement(), server.batches[batch - 1]);
    if (failure.statement().find("create index ixAccountTitle") != std::string::npos) {
      EXPECT_EQ(std::string(failure.what()), "db/sqlserver/030_indexes.sql, the batch at line 21: no room");
    }
    EXPECT_EQ(server.batches.size(), batch + 1);
    EXPECT_EQ(server.batches.back(), "if @@trancount > 0 rollback transaction");
  }
}

TEST(ServerVersions, APlanOnlyReads) {
  ObedientServer server(1);
  for (const Step& step : planServerSchema(server).steps) reportStep(server, step, [](std::string_view) {});
  EXPECT_EQ(server.batches.size(), 3U);
  for (const std::string& batch : server.batches)
    EXPECT_FALSE(std::regex_search(batch, std::regex("(create|alter|insert|update|delete) "))) << batch;
}

/// The test database, taken back to the first version and up again.
class OnServer : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!testing::onServer()) GTEST_SKIP() << "LEDGERTREE_TEST_CONNECTION names no server";
    database.emplace();
    engines::odbc::registerOdbc(any, std::chrono::minutes(5), engines::odbc::Versions::Any);
    engines::odbc::registerOdbc(present);
    faults.putInto(any);
    connection = any.open(testing::testServer());
    shape = shapeNow();
    // However this test ends, the next one installs the schema again.
    connection->run("delete tblLedgerTreeStories where Kind = 'schema'");
    testing::ServerChart::dropSchema(*connection);
    for (const Batch& batch : batchesOf(testing::keptVersion("sqlserver-1.sql"))) connection->run(batch.text);
  }

  /// The results of the queries in a section of stories.txt.
  std::string all(const std::string& section) {
    std::string found;
    for (const std::string& query : testing::linesOf("db/stories.txt", section))
      found += testing::allRows(*connection->run(query)) + "\n";
    return found;
  }
  std::string rows() { return all("the rows of the server"); }
  std::string shapeNow() { return all("the shape of the server"); }
  [[nodiscard]] std::string screen() const {
    return failureOf([this] { present.open(testing::testServer())->run("select 1"); });
  }

  std::optional<testing::TemporaryDatabase> database;
  testing::Faults faults;
  data::Providers any;
  data::Providers present;
  std::unique_ptr<data::Connection> connection;
  std::string shape;
};

TEST_F(OnServer, TheFirstVersionIsRefusedByTheScreensAndTakenUpWithAllItsRows) {
  const std::string kept = rows();
  const std::string old = shapeNow();
  EXPECT_NE(screen().find("قديمي تري"), std::string::npos);
  const std::string script(embeddedText("db/sqlserver/001_version.sql"));
  EXPECT_NE(failureOf([&] { connection->run(batchesOf(script).front().text); }).find("older"),
            std::string::npos);

  std::string told;
  const auto install = [&] {
    installServerSchema(*connection, [&told](std::string_view line) { told.append(line) += '\n'; });
  };
  for (const char* const place : {"alter table", "Version) values (2)", "index ixAccountKey", "commit"}) {
    faults.failWhere(place);
    EXPECT_NE(failureOf(install), "nothing failed");
    faults.heal();
    EXPECT_EQ(rows() + shapeNow(), kept + old) << place;
  }
  told.clear();
  install();
  EXPECT_EQ(rows() + shapeNow(), kept + shape);
  EXPECT_TRUE(told.starts_with("account 4 shares its code with another one: 9Ak\n")) << told;
  EXPECT_EQ(screen(), "nothing failed");

  // Accounts written before the triggers existed, or while they were off.
  connection->run("delete tblAccountParent");
  EXPECT_NE(
      failureOf([&] { connection->run("update tblAccount set ParentID = 3 where ID = 1"); }).find("زير خودش"),
      std::string::npos);
  const std::string untrue = "more or fewer ancestors than the level says: ";
  told.clear();
  const auto note = [&told](std::string_view line) { told.append(line) += '\n'; };
  EXPECT_GT(checkChart(*connection, note), 0U);
  EXPECT_NE(told.find(untrue), std::string::npos) << told;
  told.clear();
  install();
  EXPECT_NE(told.find("accounts were made anew by their parents"), std::string::npos) << told;
  EXPECT_EQ(rows() + shapeNow(), kept + shape);
  connection->run("drop trigger trAccountTree");
  connection->run("update tblAccount set ParentID = 3 where ID = 1");
  EXPECT_NE(failureOf(install).find("These accounts are below themselves: 1 2 3."), std::string::npos)
      << failureOf(install);
  connection->run("update tblAccount set ParentID = null where ID = 1");
  install();
  told.clear();
  static_cast<void>(checkChart(*connection, note));
  EXPECT_EQ(told.find(untrue), std::string::npos) << told;
  EXPECT_EQ(rows() + shapeNow(), kept + shape);

  connection->run("insert into tblLedgerTreeVersion (Version) values (1000)");
  EXPECT_NE(screen().find("نسخه جديدتري"), std::string::npos);
  connection->run("delete tblLedgerTreeVersion where Version = 1000");
}

}  // namespace
}  // namespace ledgertree::db
