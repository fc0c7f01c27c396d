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

TEST_F(OdbcConnectionTest, ALongTextComesWholeAndNoRowIsNoFailure) {
  std::string notes;
  for (int count = 0; count < 5000; ++count) notes += "abc ";
  const std::string made = "select replace(hex(zeroblob(5000)), '00', 'abc ') as Notes";
  const auto rows = connection_.run(made);
  EXPECT_EQ(rows->columns().at(0), "Notes");
  EXPECT_EQ(rows->text(0, 0), notes);
  EXPECT_EQ(connection_.run(made + " where 1 = 0")->count(), 0U);
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
