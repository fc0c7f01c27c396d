#include "support/generated_chart.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace ledgertree::bench {
namespace {

constexpr std::size_t kLongestCode = 20;

constexpr const char* kTitles[] = {"صندوق",
                                   "بانک",
                                   "تنخواه‌گردان",
                                   "مشتریان",
                                   "اسناد دریافتنی",
                                   "مواد اولیه",
                                   "کالای ساخته‌شده",
                                   "پیش‌پرداخت",
                                   "ماشین‌آلات",
                                   "ساختمان",
                                   "تأمین‌کنندگان",
                                   "مالیات",
                                   "تسهیلات بانکی",
                                   "فروش داخلی",
                                   "حقوق و دستمزد",
                                   "هزینه حمل"};

/// Drops the tables' indexes and triggers during a bulk load.
class PutAway {
 public:
  explicit PutAway(SQLite::Database& database) : database_(database) {
    std::vector<std::string> drops;
    SQLite::Statement rows(database,
                           "select 'drop ' || type || ' ' || name, sql from sqlite_schema"
                           " where type in ('index', 'trigger') and sql is not null and tbl_name like 'tbl%'"
                           " order by rowid");
    while (rows.executeStep()) {
      drops.push_back(rows.getColumn(0).getString());
      definitions_.push_back(rows.getColumn(1).getString());
    }
    rows.reset();
    // Dropping an index drops its planner statistics, too.
    database.exec("create temp table Statistics as select * from sqlite_stat1");
    for (const std::string& drop : drops) database.exec(drop);
  }
  void bringBack() {
    for (const std::string& definition : definitions_) database_.exec(definition);
    database_.exec(
        "insert into sqlite_stat1 select * from Statistics; drop table Statistics; analyze sqlite_schema");
  }

 private:
  SQLite::Database& database_;
  std::vector<std::string> definitions_;
};

std::string padded(std::int32_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

std::string titleOf(std::int32_t id) {
  std::string title = kTitles[static_cast<std::size_t>(id) % std::size(kTitles)];
  title += ' ';
  title += std::to_string(id);
  return title;
}

void insertAccounts(SQLite::Database& database, const ChartShape& shape) {
  const std::size_t topWidth = std::to_string(shape.topLevel).size();
  const std::size_t width = std::to_string(shape.fanOut).size();
  // Only parents are looked up later.
  const auto parents = static_cast<std::size_t>(shape.firstLeaf());
  std::vector<std::string> codes(parents);
  std::vector<int> levels(parents);
  SQLite::Statement insert(
      database,
      "insert into tblAccount (ID, ParentID, Code, Title, NoLevel, CreateDate, FarsiCreateDate,"
      " AccountNatureID, IsPermanent, IsClosed, MaxDebit, MaxCredit)"
      " values (?, ?, ?, ?, ?, '2023-03-21 00:00:00', '1402/01/01', ?, 1, 0, 0, 0)");
  for (std::int32_t id = 1; id <= shape.accounts; ++id) {
    const std::int32_t parent = shape.parentOf(id);
    const auto above = static_cast<std::size_t>(std::max(parent, 0));
    const std::string code = parent < 0
                                 ? padded(id, topWidth)
                                 : codes[above] + padded((id - shape.topLevel - 1) % shape.fanOut + 1, width);
    const int level = parent < 0 ? 1 : levels[above] + 1;
    if (code.size() > kLongestCode)
      throw std::invalid_argument("the chart is too deep for codes of 20 characters");
    if (static_cast<std::size_t>(id) < parents) {
      codes[static_cast<std::size_t>(id)] = code;
      levels[static_cast<std::size_t>(id)] = level;
    }
    insert.bind(1, id);
    if (parent > 0) insert.bind(2, parent);
    insert.bind(3, code);
    insert.bind(4, titleOf(id));
    insert.bind(5, level);
    insert.bind(6, id % 3);
    insert.exec();
    insert.reset();
    insert.clearBindings();
  }
}

/// The descendants of an account on one level are neighbours, so the pairs come in the order of their key.
void insertAncestors(SQLite::Database& database, const ChartShape& shape) {
  SQLite::Statement insert(database, "insert into tblAccountParent (ID, ChildID) values (?, ?)");
  for (std::int32_t id = 1; id < shape.firstLeaf(); ++id) {
    std::int64_t first = id;
    std::int64_t last = id;
    while (true) {
      first = shape.topLevel + (first - 1) * shape.fanOut + 1;
      last = std::min<std::int64_t>(shape.topLevel + last * shape.fanOut, shape.accounts);
      if (first > last) break;
      for (std::int64_t child = first; child <= last; ++child) {
        insert.bind(1, id);
        insert.bind(2, child);
        insert.exec();
        insert.reset();
      }
    }
  }
}

/// Runs a statement for each N from 1 to `count`; the other numbers are ?2, ?3, …
void repeat(SQLite::Database& database, const std::string& statement, std::int32_t count,
            std::initializer_list<std::int32_t> numbers = {}) {
  SQLite::Statement query(
      database, "with recursive Numbers (N) as (select 1 union all select N + 1 from Numbers where N < ?1) " +
                    statement);
  query.bind(1, count);
  int place = 2;
  for (const std::int32_t number : numbers) query.bind(place++, number);
  if (count > 0) query.exec();
}

void insertPeriods(SQLite::Database& database, const ChartShape& shape) {
  repeat(database,
         "insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate)"
         " select N, 'سال مالی ' || (1401 + N), (2022 + N) || '-03-21 00:00:00', (2023 + N) || '-03-20 "
         "00:00:00',"
         " (1401 + N) || '/01/01', (1401 + N) || '/12/29' from Numbers",
         static_cast<std::int32_t>(shape.periods.size()));
  std::int32_t period = 0;
  for (const std::int32_t members : shape.periods) {
    repeat(database, "insert into tblAccountPeriodAccount (PeriodID, AccountID) select ?2, N from Numbers",
           std::min(members, shape.accounts), {++period});
  }
}

void insertDocuments(SQLite::Database& database, const ChartShape& shape) {
  repeat(database,
         "insert into tblAccountDocument (ID, FarsiDocumentDate) select N,"
         " printf('1402/%02d/%02d', 1 + N % 12, 1 + N / 12 % 29) from Numbers",
         shape.documents);
  const std::int32_t leaves = shape.accounts - shape.firstLeaf() + 1;
  // A prime stride spreads the lines across the chart.
  repeat(database,
         "insert into tblAccountDocumentDetail (ID, DocumentID, AccountID, Debit, Credit)"
         " select N, (N + 1) / 2, ?2 + N * 7919 % ?3, N % 2 * 1000000, (N + 1) % 2 * 1000000 from Numbers",
         2 * shape.documents, {shape.firstLeaf(), leaves});
}

void insertRelations(SQLite::Database& database, const ChartShape& shape) {
  database.exec(
      "insert into tblAccountGroup (ID, Code, Name) values (1, '01', 'مشتریان'), (2, '02', "
      "'بانک‌ها');"
      "insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor)"
      " values (1, '01', 'پروژه‌ها', 'vwEntityProject', 'vwEntityProjectMinor')");
  repeat(database,
         "insert into tblEntityProject (ID, ParentID, Code, Name)"
         " select N, nullif((N - 1) / 10, 0), N, 'پروژه ' || N from Numbers",
         shape.objects);
  repeat(database, "insert into tblAccountRelatedObjects select N, 1, 1, N from Numbers",
         std::min(shape.relations, shape.accounts));
}

void insertUser(SQLite::Database& database) {
  database.exec(
      "insert into tblUser (ID, Name, PeriodID) values (1, 'مدیر مالی', 1);"
      "insert into tblUserPermission (UserID, FormPermissionID) values (1, 301), (1, 30101), (1, 30102), (1, "
      "30103),"
      " (1, 30105), (1, 30108), (1, 30110), (1, 30111), (1, 30112)");
}

}  // namespace

void generateChart(SQLite::Database& database, const ChartShape& shape) {
  if (shape.accounts < 1 || shape.topLevel < 1 || shape.fanOut < 1) {
    throw std::invalid_argument("accounts, top level and fan-out must be positive");
  }
  database.exec(
      "pragma foreign_keys = off; pragma journal_mode = off; pragma synchronous = off; pragma cache_size = "
      "-200000;"
      "pragma temp_store = memory; begin");
  PutAway rules(database);
  insertAccounts(database, shape);
  insertAncestors(database, shape);
  insertPeriods(database, shape);
  insertDocuments(database, shape);
  insertRelations(database, shape);
  insertUser(database);
  rules.bringBack();
  database.exec(
      "commit; pragma journal_mode = wal; pragma synchronous = full; pragma foreign_keys = on;"
      "pragma cache_size = -2000; pragma temp_store = default");
}

}  // namespace ledgertree::bench
