#include "data/dten.h"

#include <gtest/gtest.h>

#include "data/fake_connection.h"
#include "data/permissions.h"
#include "data/system_parameters.h"
#include "support/failure.h"

namespace ledgertree::data {
namespace {

const std::string kChildren = "Select ID From tblAccount Where ParentID=1";
const std::string kNothing = "Select ID From tblAccount Where ParentID=2";

class DtEnTest : public ::testing::Test {
 protected:
  DtEnTest() {
    database_.answer(kChildren, "ID", {10, Null{}, "a"});
    database_.answer(kNothing, "ID", {});
    dten_.cnMainData.ConnectionString("Provider=Fake");
  }

  /// The message with which `act` is refused as a misuse.
  template <class Act>
  static std::string misuse(Act act) {
    const DataError failure = ledgertree::testing::failureOf(act);
    EXPECT_EQ(failure.reason(), DataError::Reason::Misuse) << failure.what();
    return failure.what();
  }

  void parameter(int id, const std::vector<Value>& values) {
    database_.answer("Select Value From tblTarvoSystemParameters Where ID = " + std::to_string(id), "Value",
                     values);
  }

  void expectAllClosed() {
    for (const RecordHandle* handle : dten_.handles()) EXPECT_EQ(handle->State(), 0) << handle->name();
  }

  FakeDatabase database_;
  Providers providers_ = fakeProviders(database_);
  DtEn dten_{providers_};
};

TEST_F(DtEnTest, AHandleWalksItsRowsAndRefusesWhatItsStateDoesNotAllow) {
  RecordHandle& handle = dten_.rssqlAccounts;
  for (const auto& message :
       {misuse([&] { handle.Close(); }), misuse([&] { handle.MoveFirst(); }),
        misuse([&] { handle.MoveNext(); }), misuse([&] { static_cast<void>(handle.RecordCount()); }),
        misuse([&] { static_cast<void>(handle.Eof()); }),
        misuse([&] { static_cast<void>(handle.Fields("ID")); }),
        misuse([&] { static_cast<void>(handle.Column("ID")); })})
    EXPECT_NE(message.find("rssqlAccounts"), std::string::npos) << "closed: " << message;

  handle.Source(kChildren);
  handle.Open();
  EXPECT_EQ(handle.RecordCount(), 3);
  misuse([&] { handle.Open(kNothing); });
  const Value first = handle.Fields("id");
  const std::string unknown = misuse([&] { static_cast<void>(handle.Fields("Titel")); });
  EXPECT_NE(unknown.find("Titel"), std::string::npos) << unknown;
  EXPECT_NE(unknown.find("ID"), std::string::npos) << unknown;
  handle.MoveNext();
  EXPECT_TRUE(handle.Fields("ID").isNull());
  handle.MoveNext();
  handle.MoveNext();
  EXPECT_TRUE(handle.Eof());
  misuse([&] { handle.MoveNext(); });
  misuse([&] { static_cast<void>(handle.Fields("ID")); });
  misuse([&] { static_cast<void>(handle.Text(handle.Column("ID"))); });
  handle.MoveFirst();
  EXPECT_EQ(handle.Fields("ID"), first);
  handle.Close();
  EXPECT_EQ(first.toInt32(), 10) << "a field outlives its rows";
}

TEST_F(DtEnTest, TheConnectionOpensAtTheFirstCommandAndAnewForANewText) {
  EXPECT_EQ(database_.opened, 0);
  dten_.rssqlAccounts.Open(kChildren);
  dten_.cnMainData.Execute("Delete tblAccount Where ID=7");
  EXPECT_EQ(database_.opened, 1);
  dten_.cnMainData.ConnectionString("Provider=Fake;Data Source=other");
  EXPECT_EQ(dten_.rssqlAccounts.RecordCount(), 3) << "rows that were read stay";
  EXPECT_EQ(database_.opened, 1);
  dten_.cnMainData.Execute("Delete tblAccount Where ID=8");
  EXPECT_EQ(database_.opened, 2);
  dten_.cnMainData.ConnectionString("");
  EXPECT_THROW(dten_.cnMainData.Execute("Delete tblAccount Where ID=9"), DataError);
  EXPECT_EQ(database_.asked.size(), 3U);
}

TEST_F(DtEnTest, AProcedureGetsItsValuesInOrderAndRefusesATextThatIsTooLong) {
  std::vector<Value> got;
  database_.procedure = [&got](const Procedure&, std::span<const Value> values) {
    got.assign(values.begin(), values.end());
    return 41;
  };
  Account account{.code = "0101", .branchID = 3, .positionID = 4};
  for (int letter = 0; letter < 50; ++letter) account.title += "ق";
  EXPECT_EQ(dten_.spAccountInsertAccount(account), 41);
  ASSERT_EQ(got.size(), procedures::spAccountInsertAccount.parameters.size());
  EXPECT_EQ(got[5], Value(-1));
  EXPECT_EQ(got[7], Value("0101"));

  account.title += "ق";
  const DataError tooLong = ledgertree::testing::failureOf([&] { dten_.spAccountInsertAccount(account); });
  EXPECT_EQ(tooLong.reason(), DataError::Reason::TooLong) << "51 letters don't fit";
  EXPECT_NE(std::string(tooLong.what()).find("@Title"), std::string::npos);
  account.title = std::string("a\0b", 3);
  misuse([&] { dten_.spAccountInsertAccount(account); });
}

TEST_F(DtEnTest, ARightIsAskedAnewAndNoAnswerIsNoRight) {
  int answer = 1;
  database_.procedure = [&answer](const Procedure& procedure, std::span<const Value> values) {
    EXPECT_EQ(procedure.name, "spTarvoHasPermission");
    EXPECT_EQ(values[0], Value(7));
    EXPECT_EQ(values[1], Value(30103));
    if (answer == 99) throw DataError(DataError::Reason::TimeOut, 0, "too late");
    return answer;
  };
  EXPECT_TRUE(isPermitted(dten_, 7, Permission::DeleteAccount));
  answer = 0;
  EXPECT_FALSE(isPermitted(dten_, 7, Permission::DeleteAccount));
  answer = -1;
  EXPECT_TRUE(isPermitted(dten_, 7, Permission::DeleteAccount));
  answer = 99;
  EXPECT_THROW(static_cast<void>(isPermitted(dten_, 7, Permission::DeleteAccount)), DataError);
}

TEST_F(DtEnTest, ParametersReadAsNumbersWhateverTheirColumnHoldsAndMissingOnesHaveADefault) {
  const std::string multi = "Select * From tblTarvoSystemParameters Where ID = 311 and Value=1";
  const std::string edit = "Select * From tblTarvoSystemParameters Where ID = 319 and Value=1";
  const std::string path = "Select * From vwTarvoBasePath";
  for (const int id : {301, 210, 307, 302}) parameter(id, {});
  for (const std::string& statement : {multi, edit, path}) database_.answer(statement, "BasePath", {});

  const SystemParameters defaults = readSystemParameters(dten_);
  EXPECT_EQ(defaults.CodeIsNumeric, 0);
  EXPECT_FALSE(defaults.MultiEntityMode);
  EXPECT_FALSE(defaults.EditCodeAllowed);
  EXPECT_TRUE(defaults.ShowCompleteCode);
  EXPECT_EQ(defaults.BasePath, "");
  const std::vector<std::string> order = {"301", "311", "319", "210", "307", "302", "vwTarvoBasePath"};
  ASSERT_EQ(database_.asked.size(), order.size());
  for (std::size_t place = 0; place < order.size(); ++place)
    EXPECT_NE(database_.asked[place].find(order[place]), std::string::npos) << database_.asked[place];

  parameter(301, {" 1.4 digits"});
  parameter(210, {2.5});
  parameter(307, {"per level"});
  parameter(302, {Null{}});
  database_.answer(edit, "ID", {319});
  database_.answer(path, "BasePath", {"C:\\Books\\"});
  const SystemParameters set = readSystemParameters(dten_);
  EXPECT_EQ(set.CodeIsNumeric, 1);
  EXPECT_TRUE(set.EditCodeAllowed);
  EXPECT_EQ(set.PositionInEntityTest, 2);
  EXPECT_EQ(set.CodingMode, 0);
  EXPECT_FALSE(set.ShowCompleteCode);
  EXPECT_EQ(set.BasePath, "C:\\Books\\");

  // A server that can't compare a text with 1 refuses the statement; then the values are read.
  database_.answers.erase(multi);
  database_.answers.erase(edit);
  database_.answer(multi.substr(0, multi.find(" and")), "Value", {"yes"});
  database_.answer(edit.substr(0, edit.find(" and")), "Value", {" 1 "});
  EXPECT_FALSE(readSystemParameters(dten_).MultiEntityMode);
  EXPECT_TRUE(readSystemParameters(dten_).EditCodeAllowed);
  database_.failure = DataError::Reason::Connection;
  const auto read = [&] { return readSystemParameters(dten_); };
  EXPECT_EQ(ledgertree::testing::failureOf(read).reason(), DataError::Reason::Connection);
  database_.failure = DataError::Reason::Statement;

  for (const Value& complete : {Value(1), Value("1"), Value(" 1.0 "), Value(1.0)}) {
    parameter(302, {complete});
    EXPECT_TRUE(readSystemParameters(dten_).ShowCompleteCode) << complete.toText();
  }
  for (const Value& tooLarge : {Value(70'000), Value("1e999"), Value("-32769")}) {
    parameter(307, {tooLarge});
    try {
      static_cast<void>(readSystemParameters(dten_));
      FAIL() << tooLarge.toText() << " fits no 16 bits";
    } catch (const std::range_error& error) {
      EXPECT_NE(std::string(error.what()).find("307"), std::string::npos) << error.what();
    }
  }
  expectAllClosed();
}

}  // namespace
}  // namespace ledgertree::data
