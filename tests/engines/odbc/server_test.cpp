#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "data/catalogue.h"
#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;

constexpr data::Parameter kEchoParameters[] = {{"@Title", data::ParameterType::Text, 20},
                                               {"@Amount", data::ParameterType::Money},
                                               {"@Day", data::ParameterType::DateTime},
                                               {"@Number", data::ParameterType::Int}};
constexpr data::Procedure kEcho{"odbcEcho", kEchoParameters};

/// What only a server can show. Runs if LEDGERTREE_TEST_CONNECTION names a database in an Arabic or Persian
/// collation, and leaves nothing behind in it.
class OdbcServer : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* const text = std::getenv("LEDGERTREE_TEST_CONNECTION");
    if (text == nullptr || *text == '\0') GTEST_SKIP() << "LEDGERTREE_TEST_CONNECTION names no server";
    text_ = text;
    connection_ = std::make_unique<OdbcConnection>(data::ConnectionText(text_));
    clear();
  }
  void TearDown() override {
    if (connection_) clear();
  }
  void clear() {
    for (const char* const name : {"procedure odbcEcho", "view odbcView", "table odbcTable"})
      connection_->run("drop " + std::string(name).insert(std::string(name).find(' '), " if exists"));
  }
  std::optional<data::Rows> run(std::string_view statement) { return connection_->run(statement); }
  Reason reasonOf(const std::function<void()>& act) {
    const data::DataError failure = testing::failureOf(act);
    told_ = failure.what();
    return failure.reason();
  }

  std::string text_;
  std::string told_;
  std::unique_ptr<OdbcConnection> connection_;
};

TEST_F(OdbcServer, KeepsLettersThatItsColumnsHold) {
  run("create table odbcTable(ID int primary key, Title varchar(50), [نامی] nvarchar(50))");
  run("insert odbcTable values(1, 'یکتا ۱۲۳ کك', N'یکتا ۱۲۳')");
  const auto rows = run("select Title, [نامی] from odbcTable where Title = 'یکتا ۱۲۳ کك'");
  ASSERT_EQ(rows->count(), 1U);
  EXPECT_EQ(rows->text(0, 0), "يکتا 123 کك");
  EXPECT_EQ(rows->text(0, 1), "یکتا ۱۲۳");
  EXPECT_EQ(reasonOf([&] { run("insert odbcTable values(2, 'a😀', null)"); }), Reason::Misuse);
  EXPECT_EQ(run("select * from odbcTable where Title like '%😀%'")->count(), 0U);
  EXPECT_EQ(reasonOf([&] { run("insert odbcTable values(1, 'x', null)"); }), Reason::Constraint);
  EXPECT_NE(told_.find("2627"), std::string::npos) << told_;
}

TEST_F(OdbcServer, CallsProceduresWhateverTheySayInBetween) {
  run("create table odbcTable(ID int identity, Title varchar(20), Amount money, Day datetime)");
  run("create trigger odbcTrigger on odbcTable after insert as select 'from a trigger' Noise");
  run("create procedure odbcEcho @Title varchar(20), @Amount money, @Day datetime, @Number int as begin "
      "print 'before' select @Number N insert odbcTable values(@Title, @Amount, @Day) select * from "
      "odbcTable return isnull(@Number, -5) end");
  EXPECT_EQ(run("insert odbcTable values('x', 1, null)"), std::nullopt);
  const data::Value day = data::DateTime{2016, 2, 29, 23, 59, 58};
  const data::Value values[] = {"کی ۱", *data::Money::parse("-922337203685477.5808"), day, 41};
  EXPECT_EQ(connection_->call(kEcho, values), 41);
  const data::Value nothing[] = {data::Null{}, data::Null{}, data::Null{}, data::Null{}};
  EXPECT_EQ(connection_->call(kEcho, nothing), -5);
  const data::Value tooLong[] = {std::string(21, 'x'), data::Money(), day, 1};
  EXPECT_EQ(reasonOf([&] { static_cast<void>(connection_->call(kEcho, tooLong)); }), Reason::TooLong);
  const auto rows = run("select * from odbcTable order by ID");
  ASSERT_EQ(rows->count(), 3U);
  EXPECT_EQ(rows->text(1, 1), "کي 1");
  EXPECT_EQ(rows->value(1, 2), data::Value(*data::Money::parse("-922337203685477.5808")));
  EXPECT_EQ(rows->value(1, 3), day);
  for (const std::size_t column : {1U, 2U, 3U}) EXPECT_TRUE(rows->isNull(2, column));
}

TEST_F(OdbcServer, GivesUpWhatTakesTooLongAndGoesOn) {
  run("create table odbcTable(ID int primary key, Name varchar(50))");
  run("create view odbcView as select a.ID, a.Name from odbcTable a, odbcTable b, odbcTable c");
  std::string statement = "insert odbcTable values(1,'a')";
  for (int id = 2; id <= 150; ++id) statement += ",(" + std::to_string(id) + ",'a')";
  run(statement);
  const auto begun = std::chrono::steady_clock::now();
  data::SearchRequest request;
  request.view = "odbcView";
  request.columns = {"Name"};
  request.text = "a";
  request.cancelled = [&] {
    return std::chrono::steady_clock::now() - begun > std::chrono::milliseconds(200);
  };
  EXPECT_EQ(reasonOf([&] { static_cast<void>(connection_->search(request)); }), Reason::Cancelled);
  EXPECT_EQ(told_, "The search was given up for a newer one.");
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
  EXPECT_EQ(run("select count(*) from odbcTable")->value(0, 0).toText(), "150");

  OdbcConnection hasty(data::ConnectionText(text_), std::chrono::milliseconds(1000));
  EXPECT_EQ(reasonOf([&] {
              hasty.run("select count(*) from odbcView a, odbcTable b where a.Name = b.Name and b.ID <= 20");
            }),
            Reason::TimeOut);
  EXPECT_EQ(hasty.run("select 1")->count(), 1U);
}

}  // namespace
}  // namespace ledgertree::engines::odbc
