// Makes the tables, views, triggers and procedures of the chart in a database of SQL Server, and the demo
// chart where it is asked for. It needs no display.

#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "db/server_schema.h"
#include "engines/odbc/odbc_engine.h"

namespace {

constexpr const char* kUsage =
    "usage: ledgertree-schema --install-schema TEXT [--install-demo]\n"
    "       ledgertree-schema --install-demo TEXT\n"
    "TEXT is the OLE DB connection text of the database; \"-\" reads it from the standard input, so that a\n"
    "password stands in no list of processes.\n";

struct Options {
  bool schema = false;
  bool demo = false;
  std::optional<std::string> text;
};

/// Nothing for arguments that make no sense.
std::optional<Options> readOptions(int count, char** arguments) {
  Options options;
  for (int place = 1; place < count; ++place) {
    const std::string_view argument = arguments[place];
    if (argument == "--install-schema") {
      options.schema = true;
    } else if (argument == "--install-demo") {
      options.demo = true;
    } else if (options.text || argument.starts_with("--")) {
      return std::nullopt;
    } else {
      options.text = argument;
    }
  }
  if (!options.text || (!options.schema && !options.demo)) return std::nullopt;
  if (*options.text == "-") std::getline(std::cin, *options.text);
  return options;
}

void install(const Options& options) {
  ledgertree::data::Providers providers;
  ledgertree::engines::odbc::registerOdbc(providers);
  const auto connection = providers.open(*options.text);
  const auto report = [](std::string_view script) { std::cout << script << std::endl; };
  if (options.schema) ledgertree::db::installServerSchema(*connection, report);
  if (options.demo) ledgertree::db::installServerDemo(*connection, report);
  std::cout << "done\n";
}

}  // namespace

int main(int count, char** arguments) {
  try {
    const std::optional<Options> options = readOptions(count, arguments);
    if (!options) {
      std::cerr << kUsage;
      return 2;
    }
    install(*options);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "ledgertree-schema: " << failure.what() << '\n';
    return 1;
  }
}
