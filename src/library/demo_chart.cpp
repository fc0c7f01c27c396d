#include "ledgertree/demo_chart.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <stdexcept>

#include "db/history.h"
#include "db/schema.h"

namespace ledgertree {

void createDemoChart(const std::string& file) {
  if (std::filesystem::exists(file)) throw std::runtime_error(file + " exists already");
  // Under another name until it is complete: a half-made chart is never taken for one.
  const std::string unfinished = file + ".part";
  std::filesystem::remove(unfinished);
  try {
    SQLite::Database database(unfinished, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db::openSchema(database);
    db::createDemoChart(database);
    db::switchHistory(database, true);
  } catch (const std::exception& failure) {
    std::error_code ignored;
    std::filesystem::remove(unfinished, ignored);
    throw std::runtime_error("can't create the demo chart in " + file + ": " + failure.what());
  }
  std::filesystem::rename(unfinished, file);
}

}  // namespace ledgertree
