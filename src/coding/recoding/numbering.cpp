#include "coding/recoding/numbering.h"

#include <utility>

#include "data/ahead.h"
#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::coding {

namespace {

constexpr std::string_view kNoWayBackFromCodes =
    "پس از اعمال كدينگ اتوماتيك، امكان بازگشت وجود ندارد. آيا ادامه مي دهيد؟";
constexpr std::string_view kSecondLevel =
    "Select * From tblAccount Where Nolevel=2 Order By Left(Code,6),Code";
/// The first number of the series on the second level, six digits.
constexpr std::string_view kFirstOfSecondLevel = "000001";

NewCode recoded(const data::RecordHandle& account, std::string code) {
  return {.account = account.Fields("ID").toInt32(),
          .old = account.Fields("Code").toText(),
          .title = account.Fields("Title").toText(),
          .code = std::move(code)};
}

/// The condition of one of the statements in this file.
std::string conditionOf(std::string_view statement) {
  constexpr std::string_view kWhere = " Where ";
  const std::size_t begin = statement.find(kWhere) + kWhere.size();
  return std::string(statement.substr(begin, statement.find(" Order By ") - begin));
}

std::vector<NewCode> codesOfChildren(data::DtEn& gateway, const std::string& statement,
                                     const std::string& mother, CodeCounter counter) {
  std::vector<NewCode> accounts;
  const data::OpenRows rows(gateway.rssqlAccounts, statement);
  for (; !rows->Eof(); rows->MoveNext(), counter.raise())
    accounts.push_back(recoded(*rows, mother + counter.number()));
  return accounts;
}

std::string parentStatement(const data::RecordHandle& account) {
  return "Select * From tblAccount Where ID=" +
         std::to_string(data::toNumber(account.Fields("ParentID").toText()).asInt32());
}

std::vector<NewCode> codesOfSecondLevel(data::DtEn& gateway) {
  std::vector<NewCode> accounts;
  auto counter = CodeCounter::startingAt(kFirstOfSecondLevel);
  const data::OpenRows rows(gateway.rssqlAccounts, kSecondLevel);
  std::vector<data::Command> parents;
  for (; !rows->Eof(); rows->MoveNext()) parents.push_back({.statement = parentStatement(*rows)});
  const data::Ahead ahead(gateway.cnMainData, std::move(parents));
  for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
    const data::OpenRows parent(gateway.rssqlAccGroupL, parentStatement(*rows));
    if (parent->Eof()) continue;
    accounts.push_back(recoded(*rows, parent->Fields("Code").toText() + counter->number()));
    counter->raise();
  }
  return accounts;
}

}  // namespace

bool isTooLong(const NewCode& account) { return text::characterCount(account.code) > kLongestCode; }

Numbering numberingOfChildren(std::int32_t mother, const std::string& motherCode, CodeCounter counter) {
  const std::string statement =
      mother == -1 ? std::string("Select * From tblAccount Where ParentID Is Null Order By Code")
                   : "Select * From tblAccount Where ParentID = " + std::to_string(mother) + " Order By Code";
  return {
      .question = kNoWayBack,
      .command = statement + "\n" + motherCode + "\n" + counter.number(),
      .accounts = conditionOf(statement),
      .codes = [=](data::DtEn& gateway) { return codesOfChildren(gateway, statement, motherCode, counter); }};
}

Numbering numberingOfSecondLevel() {
  return {.question = kNoWayBackFromCodes,
          .command = "second level",
          .accounts = conditionOf(kSecondLevel),
          .codes = codesOfSecondLevel,
          .ofMother = true};
}

}  // namespace ledgertree::coding
