// What the dialect means and what it refuses, tested through a connection to a real chart.

#include "engines/sqlite/dialect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "db/schema.h"
#include "engines/sqlite/embedded_connection.h"
#include "support/failure.h"
#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree::engines::sqlite {
namespace {

class Dialect : public ::testing::Test {
 protected:
  Dialect() { db::createDemoChart(database.other()); }

  std::vector<std::int64_t> ids(const std::string& statement) {
    const std::optional<data::Rows> rows = connection.run(statement);
    std::vector<std::int64_t> found;
    for (std::size_t row = 0; row < rows->count(); ++row) found.push_back(rows->value(row, 0).toInt64());
    return found;
  }
  data::Value first(const std::string& statement) { return connection.run(statement)->value(0, 0); }

  /// The error of a statement, which must be refused.
  std::string refusal(const std::string& statement) {
    const data::DataError failure = testing::failureOf([&] { return connection.run(statement); });
    EXPECT_EQ(failure.reason(), data::DataError::Reason::Statement) << statement.substr(0, 200);
    return failure.what();
  }

  testing::TemporaryDatabase database;
  EmbeddedConnection connection{database.file().string()};
};

TEST_F(Dialect, TextComparesWithoutCaseAndBlanksBehindAndNumbersStillAdd) {
  database.execute(
      "update tblAccount set Code = 'aB-7  ', Title = 'D''Arc', NoLevel = NoLevel where ID = 13;"
      "update tblAccount set Title = 'صندوق' where ID = 12;"
      "insert into tblAccountBranch values (9, null, 'Ab', '12');"
      "create view vwHost as select ID, Address, Name || 'c' as Made, ID + 0.5 as More, null as Nil, "
      "9223372036854775807 as Most from tblAccountBranch;"
      "create table tblHost (Amount money, Day datetime, Some); insert into tblHost values (15000, "
      "'2024-01-02', 7), (1.5, 2.5, 2.5), ('x', '1403/01/01', 't'), (null, null, null), (x'41', 8, x'42')");
  connection.run("insert into tblAccountBranch (select 8, null, 'aB', '7')");
  for (const auto& row : testing::tableOf("engines/sqlite/dialect.txt", "answers")) {
    std::string found = testing::allRows(*connection.run(row[0]));
    std::replace(found.begin(), found.end(), '\n', ' ');
    EXPECT_EQ(found, row[1]) << row[0];
  }
}

TEST_F(Dialect, NamesComeAsInADictionaryAndCodesAsTheyAreWritten) {
  std::istringstream names(
      "بانک پاسارگاد/بانک ملی/بانک‌دار/بانکها/پروژه/"
      "چاه/على/علي/علی/كارخانه/کاشی/گذر/يخچال/یزد");
  std::vector<std::int64_t> asInADictionary;
  std::map<std::string, std::int64_t> asWritten;
  for (std::string name; std::getline(names, name, '/');) {
    const auto id = 100 + static_cast<std::int64_t>(3 * asInADictionary.size() % 17);
    asInADictionary.push_back(asWritten[name] = id);
    // Written by a program that knows nothing of dictionaries.
    database.execute("insert into tblAccountBranch (ID, Code, Name) values (" + std::to_string(id) + ", '" +
                     name + "', '" + name + "')");
  }
  database.execute("create view vwHost as select ID, Code, Name || '' as Made from tblAccountBranch");
  const std::string some = " from tblAccountBranch where ID > 99 ";
  for (const std::string& byName :
       {"select ID" + some + "order by Name, ID", "select ID, left(Name,9) as N" + some + "order by N, ID",
        "select ID, Name" + some + "union select ID, Name" + some + "order by Name, ID",
        std::string("select ID from vwHost where ID > 99 order by Made, ID")})
    EXPECT_EQ(ids(byName), asInADictionary) << byName;
  for (const std::string& byCode :
       {"select ID" + some + "order by Code", "select ID" + some + "order by left(Code,20)",
        std::string("select ID from vwHost where ID > 99 order by Code")}) {
    auto expected = asWritten.begin();
    for (const std::int64_t id : ids(byCode)) EXPECT_EQ(id, (expected++)->second) << byCode;
  }
}

TEST_F(Dialect, OneShapeServesAllLiterals) {
  const std::string kept = "O'Brien ]\"; drop table tblAccount -- \\";
  for (int round = 0; round < 3; ++round) {
    for (const int id : {7, 13, -1, 2147483647}) {
      const std::string text = kept + std::to_string(id);
      std::string literal = text;
      literal.insert(1, "'");
      connection.run("Update tblAccount Set Title = '" + literal +
                     "', Notes='' Where ID=" + std::to_string(id));
      const std::string expected = id == 7 || id == 13 ? text : "";
      EXPECT_EQ(database.rows("select Title from tblAccount where ID = " + std::to_string(id)), expected);
      // The literals decide which part of the condition remains.
      const auto found = ids("select ID from tblAccount where (ID=" + std::to_string(id) +
                             " or -1=" + std::to_string(id) + ") and 1.5 < 2 and 1 <= 2");
      EXPECT_EQ(found.size(), id == -1 ? 355U : id < 100 ? 1U : 0U);
      EXPECT_EQ(ids("select top " + std::to_string(round) + " ID from tblAccount").size(),
                static_cast<std::size_t>(round));
      const std::string decimal = std::to_string(round) + ".5";
      EXPECT_EQ(first("select isnull(null, " + decimal + ")").toText(), decimal);
      // Only a number may replace a number, and a refused statement must not be cached.
      const std::string account = "select ID from tblAccount where ID=" + std::to_string(id);
      EXPECT_EQ(ids(account).size(), id == 7 || id == 13 ? 1U : 0U);
      EXPECT_EQ(ids(account + ".5").size(), 0U);
      for (const char* const end : {"x", " #", "00000000000000000000"}) refusal(account + end);
    }
  }
}

/// A condition on an account in both dialects.
struct Condition {
  std::string dialect;
  std::string sqlite;
};

/// Random conditions, combined from those in dialect.txt.
class RandomCondition {
 public:
  explicit RandomCondition(unsigned seed) : random_(seed) {}

  Condition condition(int depth) {
    const int kinds = static_cast<int>(known_.size());
    const int kind = pick(0, depth <= 0 ? kinds - 1 : kinds + 3);
    if (kind < kinds) return withNumber(known_[static_cast<std::size_t>(kind)]);
    Condition whole = condition(depth - 1);
    if (kind == kinds) return {"not (" + whole.dialect + ")", "not (" + whole.sqlite + ")"};
    const std::string sign = pick(0, 1) == 0 ? " and " : " or ";
    for (int more = pick(1, 2); more > 0; --more) {
      const Condition next = condition(depth - 1);
      whole.dialect += sign + next.dialect;
      whole.sqlite += sign + next.sqlite;
    }
    return {"(" + whole.dialect + ")", "(" + whole.sqlite + ")"};
  }

 private:
  Condition withNumber(const std::vector<std::string>& row) {
    const std::string number = std::to_string(pick(std::stoi(row[2]), std::stoi(row[3])));
    Condition one{row[0], row[1]};
    for (std::string* text : {&one.dialect, &one.sqlite}) text->replace(text->find('@'), 1, number);
    return one;
  }
  int pick(int first, int last) { return std::uniform_int_distribution<int>(first, last)(random_); }

  const std::vector<std::vector<std::string>> known_ =
      testing::tableOf("engines/sqlite/dialect.txt", "conditions");
  std::mt19937 random_;
};

TEST_F(Dialect, AnyConditionFindsWhatItFindsInSqlite) {
  RandomCondition random(20261122);
  for (int round = 0; round < 400; ++round) {
    const auto [dialect, sqlite] = random.condition(3);
    const auto found = connection.run("Select ID from tblAccount where " + dialect + " Order by ID");
    ASSERT_EQ(testing::allRows(*found),
              database.rows("select ID from tblAccount where " + sqlite + " order by ID"))
        << dialect;
  }
}

TEST_F(Dialect, RefusesWhatItDoesntKnowAndNamesIt) {
  auto refused = testing::tableOf("engines/sqlite/refused.txt", "statements");
  refused.push_back({"", "ends too early"});
  refused.push_back({"select * from tblAccount where ID=1\x01", "unknown character"});
  refused.push_back({"select * from tblAccount where Title='\xD8'", "UTF-8"});
  for (const auto& row : refused) {
    const std::string message = refusal(row[0]);
    EXPECT_TRUE(message.starts_with(data::kStatementRefused)) << message;
    EXPECT_NE(message.find(row[1]), std::string::npos) << row[0] << "\n  " << message;
  }
  refusal("select * from tblAccount where Title='a" + std::string(1, '\0') + "b'");
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 355);
}

TEST_F(Dialect, HostileSizesAreRefusedInGoodOrder) {
  const auto many = [](std::size_t count, const std::string& text) {
    std::string all;
    for (; count > 0; --count) all += text;
    return all;
  };
  refusal("select " + many(100000, "("));
  refusal("select * from tblAccount where " + many(50000, "not ") + "ID=1");
  refusal("select * from tblAccount where ID=" + many(50000, "- ") + "1");
  refusal("select 1" + many(50000, "+1"));
  refusal("select 1" + many(15000, " union select 1"));
  refusal("select * from tblAccount where " + many(30, "exists(select ID from tblAccount where ") + "ID=1" +
          many(60, ")"));
  refusal("select * from tblAccount where Title='" + std::string(300000, 'x') + "'");
  EXPECT_EQ(ids("select ID from tblAccount where ID=" + many(5000, "+") + "7").size(), 1U);
  EXPECT_EQ(ids("select ID from tblAccount where Title='" + std::string(10000, 'x') + "'").size(), 0U);
  EXPECT_EQ(ids("select ID from tblAccount where ID in (7" + many(9000, ",13") + ")").size(), 2U);
}

}  // namespace
}  // namespace ledgertree::engines::sqlite
