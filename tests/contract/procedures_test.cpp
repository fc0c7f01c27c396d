#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "contract/engine.h"
#include "data/as_read.h"
#include "data/quote_text.h"

namespace ledgertree::testing {
namespace {

using data::Account, data::AccountCall, data::DataError, data::Money, data::Value, data::Procedure;
namespace procedures = data::procedures;

std::string repeated(const char* letter, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += letter;
  return text;
}

class Procedures : public Engine {
 protected:
  std::int32_t call(const Procedure& procedure, const std::vector<Value>& values) {
    return connection->call(procedure, values);
  }
  /// What an accountant typed, with a title and a date if it has none.
  static std::vector<Value> typed(Account account, AccountCall as) {
    if (account.title.empty()) account.title = "صندوق";
    account.createDate = {.year = 2025, .month = 3, .day = 21};
    account.farsiCreateDate = "1404/01/01";
    return argumentsOf(account, as);
  }
  std::int32_t insert(const Account& account) {
    return call(procedures::spAccountInsertAccount, typed(account, AccountCall::Insert));
  }
  std::int32_t update(int id, Account account) {
    account.id = id;
    return call(procedures::spAccountUpdateAccounts, typed(account, AccountCall::Update));
  }
  std::string row(int id) {
    return database.rows("select ParentID, Code, Title, NoLevel, GroupID from tblAccount where ID = " +
                         std::to_string(id));
  }
  template <typename Act>
  void expectGone(const Act& act) {
    const DataError gone = failureOf(act);
    EXPECT_EQ(gone.reason(), DataError::Reason::Constraint);
    EXPECT_NE(std::string(gone.what()).find("ديگر وجود ندارد"), std::string::npos) << gone.what();
  }
};

TEST_F(Procedures, ANewAccountIsWrittenAsTyped) {
  const int top = insert({.code = "1", .title = "O'Neil; drop table tblAccount --"});
  EXPECT_EQ(row(top), "null|1|O'Neil; drop table tblAccount --|1|null");
  const int child =
      insert({.parentID = top, .code = "101", .groupID = 3, .maxDebit = Money::fromTenThousandths(15000)});
  EXPECT_EQ(row(child), std::to_string(top) + "|101|صندوق|2|3");
  EXPECT_EQ(database.rows(
                "select CreateDate, FarsiCreateDate, MaxDebit, MaxCredit, Notes from tblAccount where ID = " +
                std::to_string(child)),
            "2025-03-21 00:00:00|1404/01/01|15000|null|");
  EXPECT_EQ(database.rows("select * from tblAccountParent"),
            std::to_string(top) + "|" + std::to_string(child));
  EXPECT_EQ(database.number("select count(*) from tblAccountPeriodAccount"), 0);

  const Account widest{.code = repeated("ش", 20), .title = repeated("ب", 50), .notes = repeated("ن", 250)};
  EXPECT_GT(insert(widest), 0);
  EXPECT_THROW(insert({.code = repeated("ش", 21)}), DataError);
}

TEST_F(Procedures, ACodeExistsInAnyLetterCaseWithEitherYehAndKafAndWithBlanksBehindIt) {
  const int first = insert({.code = "10A"});
  database.execute("insert into tblAccount (Code) values ('20  '), ('حي1'), ('حی2'), ('ک1 '), ('ك2')");
  for (const char* const code : {"10a", "10A ", "20", "حی1", "حي1 ", "حي2", "ك1", "ک2"})
    EXPECT_EQ(insert({.code = code}), 0) << code;
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 6);

  const int second = insert({.code = "10A 1"});
  EXPECT_GT(second, first);
  EXPECT_EQ(update(second, {.code = "10a", .title = "بانک"}), 0);
  EXPECT_EQ(row(second), "null|10A 1|صندوق|1|null");
  EXPECT_NE(update(second, {.code = "10a 1", .title = "بانک"}), 0);
  EXPECT_EQ(row(second), "null|10a 1|بانک|1|null");
}

TEST_F(Procedures, AccountsThatShareACodeFromBeforeKeepItAndNobodyElseGetsIt) {
  database.execute("insert into tblAccount (Code) values ('9ك'), ('9ک'), ('8'), ('8'), ('7x'), (null)");
  const auto changed = [this](int place, const char* code) {
    const auto id = static_cast<int>(database.number("select min(ID) from tblAccount")) + place;
    return update(id, {.code = code, .title = "بانک"}) != 0;
  };
  EXPECT_TRUE(changed(0, "9ك"));
  EXPECT_TRUE(changed(1, "9ک "));
  EXPECT_FALSE(changed(0, "9ک"));
  EXPECT_FALSE(changed(4, "9ک"));
  EXPECT_FALSE(changed(2, "8"));
  EXPECT_FALSE(changed(5, "7X"));
  EXPECT_EQ(insert({.code = "9ك"}), 0);
}

TEST_F(Procedures, AMoveTakesTheBranchAlongAndNeverBelowItself) {
  const int a = insert({.code = "1"});
  const int b = insert({.code = "2"});
  const int c = insert({.parentID = b, .code = "201"});
  EXPECT_NE(update(b, {.parentID = a, .code = "2", .title = repeated("ب", 100), .groupID = 0}), 0);
  EXPECT_EQ(database.number("select NoLevel from tblAccount where ID = " + std::to_string(c)), 3);
  EXPECT_EQ(row(b), std::to_string(a) + "|2|" + repeated("ب", 100) + "|2|null");
  EXPECT_THROW(update(a, {.parentID = c, .code = "1"}), DataError);
  EXPECT_EQ(row(a), "null|1|صندوق|1|null");
  EXPECT_NE(update(b, {.code = "2"}), 0) << "-1 takes it back to the top";
  EXPECT_EQ(row(b), "null|2|صندوق|1|null");
}

TEST_F(Procedures, WhatAnotherProgramDeletedIsTold) {
  const int a = insert({.code = "1"});
  expectGone([&] { insert({.parentID = 99, .code = "9901"}); });
  expectGone([&] { update(a, {.parentID = 99, .code = "1"}); });
  expectGone([&] { update(99, {.code = "2"}); });
  expectGone([&] { call(procedures::spAccountInsertRelatedObject, {99, 1, 1, 1}); });
  EXPECT_EQ(database.rows("select ID from tblAccount"), std::to_string(a));
  EXPECT_GT(insert({.code = "2"}), 0) << "the connection goes on";
}

TEST_F(Procedures, AnAccountEndsWithTheOneRelationGivenAndNoneIsNullWhoeverWritesIt) {
  const int a = insert({.code = "1"});
  const auto relations = [this] {
    return database.rows(
        "select AccountGroupID, RelatedClassID, RelatedObjectID from tblAccountRelatedObjects");
  };
  const std::string account = "(" + std::to_string(a) + ", ";
  const std::string into =
      "insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)"
      " values " +
      account;
  database.execute(into + "5, 6, 7), " + account + "6, 7, 8)");
  EXPECT_EQ(call(procedures::spAccountInsertRelatedObject, {a, 3, 2, 11}), 1);
  EXPECT_EQ(relations(), "3|2|11");
  call(procedures::spAccountInsertRelatedObject, {a, -1, -1, -1});
  EXPECT_EQ(relations(), "null|null|null");

  database.execute("delete from tblAccountRelatedObjects");
  const std::string set = "update tblAccountRelatedObjects set ";
  const std::pair<std::string, const char*> writes[] = {
      {into + "1, 2, -1)", "1|2|null"},
      {set + "RelatedObjectID = 3", "1|2|3"},
      {set + "RelatedObjectID = -1", "1|2|null"},
      {set + "AccountGroupID = -1, RelatedObjectID = 4", "null|2|4"},
      {set + "RelatedClassID = 0", "null|null|4"}};
  for (const auto& [write, expected] : writes) {
    database.execute(write);
    EXPECT_EQ(relations(), expected) << write;
  }
}

TEST_F(Procedures, ADeletionSaysWhetherSomethingDependsOnTheAccount) {
  const int a = insert({.code = "1"});
  const int b = insert({.parentID = a, .code = "101"});
  EXPECT_EQ(call(procedures::spAccountDeleteAccount, {a}), 0);
  database.execute(
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01');"
      "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, " +
      std::to_string(b) + ")");
  EXPECT_EQ(call(procedures::spAccountDeleteAccount, {b}), 0);
  database.execute("delete from tblAccountDocumentDetail");
  EXPECT_NE(call(procedures::spAccountDeleteAccount, {b}), 0);
  EXPECT_NE(call(procedures::spAccountDeleteAccount, {a}), 0);
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 0);
  EXPECT_NE(call(procedures::spAccountDeleteAccount, {a}), 0) << "nothing depends on what is gone";
}

TEST_F(Procedures, RightsAndPeriodsAreThoseOfTheUser) {
  database.fillWithDemoChart();
  const auto allowed = [this](int user, int right) {
    return call(procedures::spTarvoHasPermission, {user, right}) != 0;
  };
  EXPECT_TRUE(allowed(1, 301) && allowed(1, 30101) && allowed(1, 30112) && allowed(2, 301));
  for (const auto& [user, right] : {std::pair(2, 30101), {2, 30102}, {2, 30103}, {3, 301}, {99, 301}})
    EXPECT_FALSE(allowed(user, right)) << user << " " << right;
  EXPECT_EQ(call(procedures::spAccountGetCurrentUserPeriod, {1}), 3);
  EXPECT_EQ(call(procedures::spAccountGetCurrentUserPeriod, {99}), 0);
  if (onServer()) return;  // its columns can't hold such a number
  database.execute("update tblUser set PeriodID = 4294967299 where ID = 1");
  EXPECT_THROW(call(procedures::spAccountGetCurrentUserPeriod, {1}), DataError) << "and no period 3";
}

TEST_F(Procedures, TwoProgramsNeverStoreOneCodeTwice) {
  std::vector<std::thread> programs;
  programs.reserve(2);
  std::atomic<int> stored{0};
  for (int program = 0; program < 2; ++program) {
    programs.emplace_back([this, &stored] {
      const auto own = connect();
      for (int code = 1; code <= 100; ++code) {
        const auto values = typed({.code = std::to_string(code)}, AccountCall::Insert);
        if (own->call(procedures::spAccountInsertAccount, values) > 0) ++stored;
      }
    });
  }
  for (std::thread& program : programs) program.join();
  EXPECT_EQ(stored, 100);
  EXPECT_EQ(database.number("select count(distinct Code) from tblAccount"), 100);
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 100);
}

TEST_F(Procedures, ARefusalLeavesTheTransactionOfItsCallerAsItWas) {
  if (!onServer()) GTEST_SKIP() << "no program of ours opens a transaction on a file";
  const int a = insert({.code = "1"});
  insert({.parentID = a, .code = "101"});
  connection->run("begin transaction");
  const int b = insert({.code = "2"});
  EXPECT_EQ(insert({.code = "2 "}), 0);
  EXPECT_EQ(update(b, {.code = "101"}), 0);
  EXPECT_EQ(call(procedures::spAccountDeleteAccount, {a}), 0);
  connection->run("commit transaction");
  EXPECT_EQ(database.rows("select Code from tblAccount order by Code"), "1\n101\n2");

  connection->run("begin transaction");
  insert({.code = "3"});
  EXPECT_EQ(failureOf([&] { insert({.parentID = 99, .code = "9901"}); }).number(), 51004);
  EXPECT_EQ(number("select @@trancount as cnt"), 0);
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 3) << "an error ends it";
}

/// Another program changes each column that an edit writes, one at a time.
TEST_F(Procedures, AWriteIsRefusedWhereWhatWasReadIsNoLongerSo) {
  const int top = insert({.code = "8"});
  const int mother = insert({.parentID = top, .code = "1"});
  Account read{.parentID = mother,
               .code = "11",
               .title = "بانک ",
               .groupID = 4,
               .notes = "O'N?",
               .maxDebit = Money::fromTenThousandths(15000),
               .relation = data::AccountRelation{3, 8}};
  const int id = read.id = insert(read);
  call(procedures::spAccountInsertRelatedObject, {id, 4, 3, 8});
  const std::string where = " where ID = " + std::to_string(id);
  const std::string related = " where AccountID = " + std::to_string(id);
  const auto save = [&](std::string code = "1", std::optional<int> place = {}) {
    connection->handOver(
        {.account = read, .parentID = mother, .parentCode = std::move(code), .parentsParent = place});
    return update(id, read);
  };
  EXPECT_EQ(save(), 1);
  EXPECT_EQ(save("1", top), 1);
  EXPECT_EQ(failureOf([&] { save("1 ", top); }).number(), data::kParentChanged);
  for (const int place : {-1, id}) {
    const DataError moved = failureOf([&] { save("1 ", place); });
    EXPECT_EQ(moved.number(), data::kParentChanged);
    EXPECT_NE(std::string(moved.what()).find("جابجا"), std::string::npos) << moved.what();
  }
  database.execute("update tblAccount set ParentID = null where ID = " + std::to_string(mother));
  EXPECT_EQ(save("1", 0), 1);
  EXPECT_EQ(failureOf([&] { save("1", top); }).number(), data::kParentChanged);
  const auto refused = [&](const std::string& change, const std::string& back) {
    database.execute(change);
    const std::string before = database.rows("select * from tblAccount");
    const DataError failure = failureOf([&] { save(); });
    EXPECT_EQ(failure.number(), data::kAccountChanged) << change;
    EXPECT_EQ(failure.reason(), DataError::Reason::Constraint);
    EXPECT_EQ(failureOf([&] {
                connection->handOver({.account = read});
                connection->run("Update tblAccount Set GroupID = null Where ID =" + std::to_string(id));
              }).number(),
              data::kAccountChanged);
    EXPECT_EQ(database.rows("select * from tblAccount"), before);
    database.execute(back);
    EXPECT_EQ(save(), 1) << back;
  };
  for (const data::AccountField& field : data::kAccountFields) {
    if (!data::isEdited(field) || field.column == "ParentID") continue;
    const std::string set = "update tblAccount set " + std::string(field.column) + " = ";
    const Value value = valueOf(read, field.member);
    const bool text = field.type() == data::ParameterType::Text;
    const auto* const amount = std::get_if<Money>(&value.variant());
    const std::string now = value.isNull()      ? "null"
                            : amount != nullptr ? database.amount(amount->tenThousandths())
                                                : data::quoteText(value.toText());
    const bool money = field.type() == data::ParameterType::Money;
    refused(set + (text ? "'x'" : money ? database.amount(7) : "7") + where, set + now + where);
    if (text) refused(set + data::quoteText(value.toText() + " ") + where, set + now + where);
  }
  refused("update tblAccount set ParentID = null" + where,
          "update tblAccount set ParentID = " + std::to_string(mother) + where);
  for (const char* column : {"RelatedClassID = ", "RelatedObjectID = "})
    refused("update tblAccountRelatedObjects set " + std::string(column) + "9" + related,
            "update tblAccountRelatedObjects set RelatedClassID = 3, RelatedObjectID = 8" + related);
  refused("delete from tblAccountRelatedObjects" + related,
          "insert into tblAccountRelatedObjects values (" + std::to_string(id) + ", 4, 3, 8)");

  // It counts for one command, and for a new account only the parent does.
  database.execute("update tblAccount set Notes = 'y'" + where);
  EXPECT_EQ(update(id, read), 1);
  connection->handOver({.account = {}, .parentID = mother, .parentCode = "2"});
  EXPECT_EQ(failureOf([&] { insert({.parentID = mother, .code = "12"}); }).number(), data::kParentChanged);
  connection->handOver({.account = read});
  connection->run("Update tblAccount Set GroupID = null Where ID =" + std::to_string(id));
  EXPECT_EQ(row(id), std::to_string(mother) + "|11|بانک |2|null");
}

}  // namespace
}  // namespace ledgertree::testing
