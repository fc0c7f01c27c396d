#include "db/scripts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/data_error.h"
#include "db/server_schema.h"

namespace ledgertree::db {
namespace {

TEST(Scripts, AreCutWhereALineSaysGoAndNowhereElse) {
  const std::string script =
      "\r\n go \t\r\n"
      "print 'it''s\nGO\n'; select [a]]\nGO\nb], \"\nGO\n\" -- 'GO\n"
      "Go\n"
      "/* /* GO\nGO\n*/ 'GO\nGO\n*/ print 1\n"
      "GOTO here\nGO;\n go\n\nGO\nlast";
  std::string found;
  for (const Batch& batch : batchesOf(script)) {
    found += std::to_string(batch.line) + " " + std::to_string(batch.text.size()) + "|";
  }
  EXPECT_EQ(found, "3 52|11 47|21 4|");
  EXPECT_TRUE(batchesOf("GO\nGO").empty());
}

/// A server that writes down what it is sent, and fails from the statement on that holds some words.
struct Notebook : data::Connection {
  std::optional<data::Rows> run(std::string_view batch) override {
    batches.emplace_back(batch);
    failed = failed || (!failing.empty() && batch.find(failing) != std::string_view::npos);
    if (failed && (failsAgain || !batch.starts_with("if @@")))
      throw data::DataError(data::DataError::Reason::Busy, 102, "no", std::string(batch));
    if (!batch.ends_with("as Version")) return std::nullopt;
    data::Rows none;
    none.addColumn("Version");
    none.addInteger(0);
    return none;
  }
  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  std::int32_t call(const data::Procedure&, std::span<const data::Value>) override { return 0; }
  data::SearchPage search(const data::SearchRequest&) override { return {}; }

  std::vector<std::string> batches;
  std::string failing;
  bool failed = false;
  bool failsAgain = false;
};

TEST(ServerSchema, IsInstalledInOneTransactionOrNotAtAll) {
  std::string told;
  const auto report = [&told](std::string_view script) { told += std::string(script) + " "; };
  Notebook schema;
  installServerSchema(schema, report);
  const std::string folder = "db/sqlserver/";
  std::string expected;
  for (const char* script :
       {"000_database", "001_version", "010_tables", "020_host_tables", "030_indexes", "031_tree_index",
        "032_host_indexes", "033_code_index", "040_triggers", "050_host_views", "051_views", "060_procedures",
        "061_host_procedures", "070_rights"})
    expected += folder + script + ".sql ";
  EXPECT_EQ(told, expected);
  for (const char* words :
       {"begin transaction;", "@Resource = N'LedgerTree schema', @LockMode = 'Exclusive'", "@Got < 0 throw"})
    EXPECT_NE(schema.batches.front().find(words), std::string::npos) << words;
  EXPECT_EQ(schema.batches.back(), "commit transaction");

  Notebook demo;
  told.clear();
  installServerDemo(demo, report);
  EXPECT_EQ(told,
            "db/demo/sqlserver/000_begin.sql db/demo/010_host.sql db/demo/sqlserver/015_keys.sql "
            "db/demo/020_accounts.sql db/demo/030_use.sql db/demo/sqlserver/900_end.sql ");
  EXPECT_EQ(demo.batches.back(), "commit transaction");

  for (const bool again : {false, true}) {
    Notebook half;
    half.failing = "create index ixAccountTitle";
    half.failsAgain = again;
    try {
      installServerSchema(half, report);
      ADD_FAILURE() << "nothing failed";
    } catch (const data::DataError& failure) {
      EXPECT_EQ(std::string(failure.what()), folder + "030_indexes.sql, the batch at line 13: no");
      EXPECT_EQ(failure.reason(), data::DataError::Reason::Busy);
      EXPECT_EQ(failure.number(), 102);
      EXPECT_NE(failure.statement().find(half.failing), std::string::npos);
    }
    EXPECT_EQ(half.batches.back(), "if @@trancount > 0 rollback transaction");
  }
}

}  // namespace
}  // namespace ledgertree::db
