#include <gtest/gtest.h>

#include <chrono>

#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "support/tcp_proxy.h"
#include "support/temporary_database.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;
using std::chrono::steady_clock;

using testing::failureOf;

/// The layer on a driver that needs no server: its database is a file. It has no Unicode calls, so that its
/// texts are ASCII; what becomes of letters shows on a server.
class OdbcConnectionTest : public ::testing::Test {
 protected:
  const testing::TemporaryFolder folder_;
  data::ConnectionText text_{"ODBC Driver=SQLite3;Database=" +
                             data::quoteConnectionValue((folder_.path() / "odbc.db").string())};
  OdbcConnection connection_{text_};
};

TEST_F(OdbcConnectionTest, GivesBackWhatWasWritten) {
  EXPECT_EQ(connection_.run("create table t(ID integer, Big bigint, Name varchar(50), Notes text, Share "
                            "double, Amount decimal(19,4), Day datetime)"),
            std::nullopt);
  std::string notes;
  for (int count = 0; count < 5000; ++count) notes += "abc ";
  EXPECT_EQ(
      connection_.run("insert into t values(7, 9000000000000000000, 'one', replace(hex(zeroblob(5000)), "
                      "'00', 'abc '), 0.125, 1500.5, '2016-02-29 13:14:15')"),
      std::nullopt);
  connection_.run("insert into t(ID, Name) values(8, '')");

  const auto rows = connection_.run("select * from t order by ID");
  ASSERT_TRUE(rows && rows->count() == 2);
  EXPECT_EQ(rows->columns().at(2), "Name");
  EXPECT_EQ(rows->value(0, 0), data::Value(7));
  EXPECT_EQ(rows->value(0, 1), data::Value(std::int64_t{9000000000000000000}));
  EXPECT_EQ(rows->value(0, 2), data::Value("one"));
  EXPECT_EQ(rows->text(0, 3), notes);
  EXPECT_EQ(rows->value(0, 4), data::Value(0.125));
  EXPECT_EQ(rows->value(0, 5).toMoney(), *data::Money::parse("1500.5"));
  EXPECT_EQ(rows->value(0, 6), data::Value(data::DateTime{2016, 2, 29, 13, 14, 15}));
  EXPECT_EQ(rows->value(1, 2), data::Value(""));
  for (const std::size_t column : {1U, 3U, 4U, 5U, 6U}) EXPECT_TRUE(rows->isNull(1, column)) << column;
  EXPECT_EQ(connection_.run("select * from t where ID = 0")->count(), 0U);
}

TEST_F(OdbcConnectionTest, WalksWhileOtherStatementsRun) {
  connection_.run("create table t(ID integer)");
  for (int id = 1; id <= 5; ++id) connection_.run("insert into t values(" + std::to_string(id) + ")");
  std::string seen;
  connection_.walk("select ID from t order by ID", [&](const data::Rows& row) {
    seen += row.value(0, 0).toText();
    connection_.run("update t set ID = ID + 10 where ID = " + row.value(0, 0).toText());
    connection_.walk("select count(*) from t where ID > 10", [&](const data::Rows& inner) {
      seen += "(" + inner.value(0, 0).toText() + ")";
      return false;
    });
    return row.value(0, 0) != data::Value(4);
  });
  EXPECT_EQ(seen, "1(1)2(2)3(3)4(4)");
  EXPECT_EQ(connection_.run("select max(ID) from t")->value(0, 0).toText(), "14");
}

TEST_F(OdbcConnectionTest, TellsFailuresAndGoesOn) {
  connection_.run("create table t(ID integer primary key)");
  const data::DataError unknown = failureOf([&] { connection_.run("select Nothing from t"); });
  EXPECT_EQ(unknown.reason(), Reason::Statement);
  EXPECT_EQ(std::string(unknown.what()).find(data::kStatementRefused), 0U);
  EXPECT_NE(std::string(unknown.what()).find("Nothing"), std::string::npos);
  EXPECT_EQ(unknown.statement(), "select Nothing from t");
  EXPECT_EQ(failureOf([&] { connection_.run(std::string("select 1\0", 9)); }).reason(), Reason::Misuse);
  EXPECT_EQ(failureOf([&] { connection_.run("select '\xD9'"); }).reason(), Reason::Misuse);
}

std::string behind(const testing::TcpProxy& proxy) {
  return testing::TcpProxy::through(proxy,
                                    "Initial Catalog=books;User ID=sa;Password=\"very;hid}den\";Connect "
                                    "Timeout=1;ODBC Driver=FreeTDS");
}

TEST(OdbcConnecting, FailsInTimeAndNeverShowsThePassword) {
  testing::TcpProxy deaf("127.0.0.1", 1);
  deaf.set(testing::TcpProxy::Road::Silent);
  const testing::TcpProxy hostile("127.0.0.1", 1);
  for (const std::string& text :
       {behind(deaf), behind(hostile), behind(deaf) + ";Password=p",
        std::string("ODBC Driver=/nowhere/libodbc-none.so;Database=x;UID=sa;PWD=\"very;hid}den\"")}) {
    OdbcConnection connection{data::ConnectionText(text)};
    for (int attempt = 0; attempt < 2; ++attempt) {
      const auto begun = steady_clock::now();
      const data::DataError failure = failureOf([&] { connection.run("select 1"); });
      EXPECT_EQ(failure.reason(), Reason::Connection) << failure.what();
      EXPECT_EQ(std::string(failure.what()).find("hid"), std::string::npos) << failure.what();
      EXPECT_EQ(std::string(failure.what()).find('*'), std::string::npos) << failure.what();
      EXPECT_LT(steady_clock::now() - begun, std::chrono::seconds(60)) << text;
    }
  }
}

}  // namespace
}  // namespace ledgertree::engines::odbc
