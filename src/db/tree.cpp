#include "db/tree.h"

#include <string>

#include "data/data_error.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

std::string script(const std::string& name) {
  return std::string(embeddedText("db/embedded/tree/" + name + ".sql"));
}

void refuseCircles(SQLite::Database& database) {
  std::string accounts;
  for (SQLite::Statement circles(database, script("circles")); circles.executeStep();)
    accounts += (accounts.empty() ? "" : "، ") + circles.getColumn(0).getString();
  if (accounts.empty()) return;
  throw data::DataError(data::DataError::Reason::Connection, 0,
                        "در اين فايل حسابهايي زير خودشان قرار گرفته اند و درخت حسابها شکسته است: " +
                            accounts + ". از مدير پايگاه داده بخواهيد حساب مادر آنها را اصلاح نمايد.");
}

}  // namespace

bool treeLooksTrue(SQLite::Database& database) {
  return database.execAndGet(script("looks_true")).getInt() != 0;
}

int mendTree(SQLite::Database& database) {
  database.exec("drop table if exists temp.Wrong");
  database.exec(script("find"));
  const int wrong = database.execAndGet("select count(*) from Wrong").getInt();
  if (wrong > 0) {
    refuseCircles(database);
    database.exec(script("mend"));
  }
  database.exec("drop table temp.Wrong");
  return wrong;
}

}  // namespace ledgertree::db
