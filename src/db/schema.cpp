#include "db/schema.h"

#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "db/history.h"
#include "db/scripts.h"
#include "db/tree.h"
#include "db/version.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

/// Marks a file as ours by PRAGMA application_id: "LdgT".
constexpr int kApplicationId = 0x4C646754;

int pragma(SQLite::Database& database, const char* name) {
  return database.execAndGet(std::string("pragma ") + name).getInt();
}

/// Whether there is nothing to do.
bool isPresent(SQLite::Database& database, Mend mend) {
  return mend != Mend::Everything && pragma(database, "user_version") == schemaVersion() &&
         pragma(database, "application_id") == kApplicationId &&
         (mend == Mend::Nothing || treeLooksTrue(database));
}

void runScripts(SQLite::Database& database, const std::vector<std::string_view>& paths) {
  for (const std::string_view path : paths) database.exec(std::string(embeddedText(path)));
}

[[noreturn]] void refuseOthersFile() {
  throw data::DataError(
      data::DataError::Reason::Connection, 0,
      "اين فايل پايگاه داده برنامه ديگري است و حسابها در آن نگهداري نميشود. فايل ديگري انتخاب نماييد.");
}

/// Refuses a file that isn't empty: another program made it.
void requireEmpty(SQLite::Database& database) {
  if (pragma(database, "application_id") == 0 && pragma(database, "user_version") == 0 &&
      database.execAndGet("select count(*) from sqlite_schema").getInt() == 0)
    return;
  refuseOthersFile();
}

bool isChart(SQLite::Database& database) {
  return pragma(database, "application_id") == kApplicationId && pragma(database, "user_version") > 0;
}

/// A step may recreate a table under its old name: this keeps rows that refer to it from
/// being deleted with the old one, and triggers and views that name it from being
/// rewritten. Neither can be set inside a transaction.
class LooseReferences {
 public:
  explicit LooseReferences(SQLite::Database& database)
      : database_(database),
        references_(pragma(database, "foreign_keys")),
        renames_(pragma(database, "legacy_alter_table")) {
    set(0, 1);
  }
  LooseReferences(const LooseReferences&) = delete;
  LooseReferences& operator=(const LooseReferences&) = delete;
  ~LooseReferences() { set(references_, renames_); }

 private:
  void set(int references, int renames) {
    static_cast<void>(database_.tryExec("pragma foreign_keys = " + std::to_string(references) +
                                        "; pragma legacy_alter_table = " + std::to_string(renames)));
  }

  SQLite::Database& database_;
  int references_;
  int renames_;
};

/// Recreates the chart's triggers and views, whatever they were; everything else is changed by the steps.
std::vector<std::string> takeUp(SQLite::Database& database, int version) {
  std::vector<std::string> found;
  for (const Step& step : stepsBehind(version, "db/embedded/steps/")) {
    if (!step.report.empty()) {
      SQLite::Statement report(database, std::string(embeddedText(step.report)));
      while (report.executeStep()) found.push_back(report.getColumn(0).getString());
    }
    database.exec(std::string(embeddedText(step.script)));
  }
  runScripts(database, {"db/embedded/040_triggers.sql", "db/embedded/051_views.sql"});
  if (historyIsOn(database)) remakeHistory(database);
  if (const int mended = mendTree(database); mended > 0)
    found.push_back("شاخه و سطح " + std::to_string(mended) +
                    " حساب در اين فايل درست نبود، زيرا برنامه ديگري آنها را بدون قاعده هاي فايل نوشته بود. "
                    "اکنون بر اساس حساب مادر اصلاح شد.");
  return found;
}

}  // namespace

std::vector<std::string> openSchema(SQLite::Database& database, const std::function<void()>& onTakeUp,
                                    Mend mend) {
  if (isPresent(database, mend)) return {};
  const LooseReferences loose(database);
  // Another program may be doing the same; whichever comes second finds it done.
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  if (isPresent(database, mend)) return {};
  std::vector<std::string> found;
  if (isChart(database)) {
    requireChart(database);
    if (onTakeUp) onTakeUp();
    found = takeUp(database, pragma(database, "user_version"));
  } else {
    requireEmpty(database);
    runScripts(database, scriptsIn("db/embedded/"));
    database.exec("pragma application_id = " + std::to_string(kApplicationId));
  }
  database.exec("pragma user_version = " + std::to_string(schemaVersion()));
  transaction.commit();
  return found;
}

void requireChart(SQLite::Database& database) {
  if (!isChart(database)) refuseOthersFile();
  const int version = pragma(database, "user_version");
  if (version > schemaVersion()) requireSchemaVersion(version);
}

void requirePresentChart(SQLite::Database& database) {
  requireChart(database);
  requireSchemaVersion(pragma(database, "user_version"));
}

SQLite::Database openChartFile(const std::string& path, bool forWriting) {
  constexpr int kWaitForOthers = 30'000;  // milliseconds
  SQLite::Database database(path, forWriting ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY,
                            kWaitForOthers);
  database.exec("pragma trusted_schema = off; pragma cell_size_check = on");
  return database;
}

void createDemoChart(SQLite::Database& database) {
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  if (database.execAndGet("select exists (select 1 from tblAccount)").getInt() != 0) {
    throw data::DataError(data::DataError::Reason::Misuse, 0,
                          "The demo chart needs a database without accounts.");
  }
  runScripts(database, scriptsWithOwn("db/demo/", "embedded"));
  transaction.commit();
}

}  // namespace ledgertree::db
