// Creates the chart's tables, views, triggers and procedures in a database of SQL Server or upgrades older
// ones, upgrades a file of the embedded engine to the current schema, fills in the demo chart, checks a
// chart's integrity, or switches its history on and off and prunes it. It needs no display.

#include <chrono>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/connection_text.h"
#include "db/check.h"
#include "db/history.h"
#include "db/schema.h"
#include "db/server_schema.h"
#include "engines/odbc/odbc_engine.h"
#include "ledgertree/version.h"
#include "ledgertree_scripts.h"
#include "text/characters.h"

namespace {

namespace db = ledgertree::db;
namespace data = ledgertree::data;
namespace text = ledgertree::text;

constexpr const char* kUsage =
    "usage: ledgertree-schema --install-schema TEXT [--dry-run] [--without SCRIPT]... [--install-demo]\n"
    "       ledgertree-schema --install-demo TEXT\n"
    "       ledgertree-schema --check TEXT\n"
    "       ledgertree-schema --history on|off TEXT\n"
    "       ledgertree-schema --prune-history DATE TEXT\n"
    "TEXT is the OLE DB connection text of the database; \"-\" reads it from standard input, so that a\n"
    "password doesn't appear in the list of processes. \"Provider=SQLite;Data Source=PATH\" is an existing\n"
    "file.\n"
    "  --dry-run         shows what would be done on a server, without doing it\n"
    "  --without SCRIPT  skips a script, such as 031_tree_index.sql\n"
    "  --check           lists the errors in the accounts, without changing anything\n"
    "  --history         records who changes what, from now on; or stops, and keeps what was recorded\n"
    "  --prune-history   deletes the history before DATE, yyyy-mm-dd, in UTC\n"
    "The exit status is 0 on success, 1 on failure, 2 for invalid arguments, and 3 if a check found "
    "errors.\n";

/// Indexing a large table of the host takes time.
constexpr std::chrono::hours kLongestBatch{2};

/// The exit status of a check that found an error.
constexpr int kUntrue = 3;

struct Options {
  bool schema = false;
  bool dryRun = false;
  bool demo = false;
  bool check = false;
  std::string history;             ///< "on", "off", or empty
  std::optional<std::string> day;  ///< history before this day is deleted
  db::LeftOut without;
  std::optional<std::string> text;
};

/// Nothing for invalid arguments.
std::optional<Options> readOptions(int count, char** arguments) {
  Options options;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    if (argument == "--install-schema") {
      options.schema = true;
    } else if (argument == "--install-demo") {
      options.demo = true;
    } else if (argument == "--check") {
      options.check = true;
    } else if (argument == "--dry-run") {
      options.dryRun = true;
    } else if (argument == "--history" && index + 1 < count) {
      options.history = arguments[++index];
      if (options.history != "on" && options.history != "off") return std::nullopt;
    } else if (argument == "--prune-history" && index + 1 < count) {
      options.day = arguments[++index];
    } else if (argument == "--without" && index + 1 < count) {
      options.without.emplace_back(arguments[++index]);
    } else if (options.text || argument.starts_with("--")) {
      return std::nullopt;
    } else {
      options.text = argument;
    }
  }
  const int acts = (options.schema || options.demo ? 1 : 0) + (options.check ? 1 : 0) +
                   (options.history.empty() ? 0 : 1) + (options.day ? 1 : 0);
  if (!options.text || acts != 1) return std::nullopt;
  if (!options.schema && (options.dryRun || !options.without.empty())) return std::nullopt;
  if (*options.text == "-") std::getline(std::cin, *options.text);
  return options;
}

void print(std::string_view line) { std::cout << line << std::endl; }

void showPlan(data::Connection& connection, const Options& options) {
  const db::ServerPlan plan = db::planServerSchema(connection, options.without);
  if (plan.version == 0) {
    std::cout << "The database has no chart. It would get version " << db::schemaVersion() << ".\n";
  } else {
    std::cout << "The database has version " << plan.version << ", this program " << db::schemaVersion()
              << ".\n";
  }
  for (const db::Step& step : plan.steps) {
    std::cout << "\nupgrade to version " << step.version << ", " << step.script << ":\n\n"
              << db::embeddedText(step.script) << '\n';
    try {
      db::reportStep(connection, step, print);
    } catch (const data::DataError& failure) {
      // It may need what only the previous steps create.
      std::cout << "its report isn't available yet: " << failure.what() << '\n';
    }
  }
  std::cout
      << "\nthen these scripts, which create what is missing and recreate the chart's views, triggers and\n"
         "procedures:\n\n";
  for (const std::string_view script : plan.scripts) print(script);
  if (options.demo) print("\nthen the demo chart, which fails if the tables have rows");
  std::cout << "\nnothing was changed\n";
}

/// The path of the file that a connection text names; nothing for a server.
std::optional<std::string> fileOf(const std::string& text) {
  const data::ConnectionText parts(text);
  if (!text::equalsIgnoringCase(parts.provider(), "SQLite")) return std::nullopt;
  return parts.require("Data Source");
}

void installFile(const std::string& path, const Options& options) {
  if (options.dryRun || !options.without.empty())
    throw std::runtime_error("--dry-run and --without apply only to a server");
  SQLite::Database database = db::openChartFile(path, true);
  if (options.schema)
    for (const std::string& line : db::openSchema(database, {}, db::Mend::Everything)) print(line);
  if (options.demo) {
    db::createDemoChart(database);
    db::switchHistory(database, true);
  }
  print("done");
}

std::unique_ptr<data::Connection> openServer(const std::string& text) {
  data::Providers providers;
  namespace odbc = ledgertree::engines::odbc;
  odbc::registerOdbc(providers, kLongestBatch, odbc::Versions::Any);
  return providers.open(text);
}

/// Of an open file or of a server.
template <typename Database>
void changeHistory(Database& database, const Options& options) {
  if (options.day) {
    const int gone = db::pruneHistory(database, *options.day);
    print(std::to_string(gone) + " operations were deleted");
  } else {
    db::switchHistory(database, options.history == "on");
    print("the history is " + options.history);
  }
}

void changeHistory(const Options& options) {
  if (const auto path = fileOf(*options.text)) {
    SQLite::Database database = db::openChartFile(*path, true);
    changeHistory(database, options);
  } else {
    changeHistory(*openServer(*options.text), options);
  }
}

void installServer(const Options& options) {
  const auto connection = openServer(*options.text);
  if (options.dryRun) return showPlan(*connection, options);
  if (options.schema) db::installServerSchema(*connection, print, options.without);
  if (options.demo) db::installServerDemo(*connection, print);
  print("done");
}

/// Returns whether the chart is sound.
bool check(const std::string& text) {
  std::size_t faults = 0;
  if (const auto path = fileOf(text)) {
    SQLite::Database database = db::openChartFile(*path, false);
    faults = db::checkChart(database, print);
  } else {
    faults = db::checkChart(*openServer(text), print);
  }
  print(faults == 0 ? "no errors found" : "nothing was changed");
  return faults == 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2 && arguments[1] == std::string_view("--version")) {
    std::cout << "ledgertree-schema " LEDGERTREE_VERSION "\n";
    return 0;
  }
  try {
    const std::optional<Options> options = readOptions(count, arguments);
    if (!options) {
      std::cerr << kUsage;
      return 2;
    }
    if (options->check) return check(*options->text) ? 0 : kUntrue;
    if (options->day || !options->history.empty())
      changeHistory(*options);
    else if (const auto path = fileOf(*options->text))
      installFile(*path, *options);
    else
      installServer(*options);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "ledgertree-schema: " << failure.what() << '\n';
    return 1;
  }
}
