#include "db/version.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "data/data_error.h"
#include "db/scripts.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

std::string_view nameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

int numberOf(std::string_view path) {
  const std::string_view name = nameOf(path);
  int number = 0;
  std::from_chars(name.data(), name.data() + name.size(), number);
  return number;
}

}  // namespace

int schemaVersion() {
  const std::vector<std::string_view> steps = scriptsIn("db/embedded/steps/");
  return steps.empty() ? 1 : numberOf(steps.back());
}

std::vector<Step> stepsBehind(int version, std::string_view folder) {
  const std::vector<std::string_view> reports = scriptsIn(std::string(folder) + "reports/");
  std::vector<Step> steps;
  for (const std::string_view script : scriptsIn(folder)) {
    Step step{.version = numberOf(script), .script = script, .report = {}};
    if (step.version <= version) continue;
    const auto report = std::find_if(reports.begin(), reports.end(), [script](std::string_view path) {
      return nameOf(path) == nameOf(script);
    });
    if (report != reports.end()) step.report = *report;
    steps.push_back(step);
  }
  return steps;
}

void requireSchemaVersion(int version) {
  if (version == schemaVersion()) return;
  throw data::DataError(
      data::DataError::Reason::Connection, 0,
      version > schemaVersion()
          ? "اين پايگاه داده با نسخه جديدتري از برنامه ساخته شده است. برنامه را به روز نماييد."
          : "اين پايگاه داده با نسخه قديمي تري از برنامه ساخته شده است. از مدير پايگاه داده بخواهيد آن را با "
            "ledgertree-schema به روز نمايد.");
}

}  // namespace ledgertree::db
