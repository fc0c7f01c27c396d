#include "accounts/relation_cases.h"

#include <string>

#include "data/as_read.h"

namespace ledgertree::accounts {

namespace {

/// Conditions on the account; the first match wins.
enum When { SeveralEntities, NoGroup, NoClass, NoObject, PositionCounts, AllOthers };

/// Queries for an account in the same place: with the same group, and in addition …
enum Test {
  NoTest,
  Bare,           // … no class and no object
  OtherBare,      // as above, but another account
  Entity,         // … the same class and object
  OtherEntity,    // as above, but another account
  OtherPosition,  // as above, another account, and the same position
};

/// Three endings of the notice that names the account holding the place.
enum Message { NoMessage, A, B, C };

enum Write { Nothing, Add, Insert, Delete, DeleteAndInsert };

struct Cell {
  enum Step { NextRow, JustWrite, JustReset, WriteUnlessHit } step;
  Test test = NoTest;
  Message message = NoMessage;
  Write write = Nothing;

  constexpr Cell(Step only) : step(only) {}                     // NOLINT(google-explicit-constructor)
  constexpr Cell(Write only) : step(JustWrite), write(only) {}  // NOLINT(google-explicit-constructor)
  constexpr Cell(Test onHit, Message hit, Write noHit)
      : step(WriteUnlessHit), test(onHit), message(hit), write(noHit) {}
};

struct Row {
  When when;
  Reset reset;
  Cell newAccount;
  Cell guardedEdit;
  Cell plainEdit;
};

constexpr auto NextRow = Cell::NextRow;
constexpr auto JustReset = Cell::JustReset;
constexpr auto NoReset = Reset::None;
constexpr auto ResetGroup = Reset::Group;
constexpr auto ResetEntity = Reset::GroupAndEntity;

// clang-format off
constexpr Row kRows[] = {
    // condition,     a hit resets, a new account,              a guarded edit,           a plain edit
    {SeveralEntities, NoReset,     Nothing,                    Delete,                   Nothing},
    {NoGroup,         NoReset,     NextRow,                    Delete,                   NextRow},
    {NoClass,         ResetGroup,  {Bare, B, Add},             {OtherBare, B, Add},      {OtherBare, B, Add}},
    {NoObject,        ResetEntity, JustReset,                  JustReset,                JustReset},
    {PositionCounts,  ResetEntity, {OtherPosition, A, Insert}, NextRow,                  {OtherPosition, C, DeleteAndInsert}},
    {AllOthers,       ResetEntity, {Entity, A, Add},           {OtherEntity, A, Add},    {OtherEntity, C, Add}},
};
// clang-format on

constexpr std::string_view kHolder = "از آنجايي كه قبلا حساب ";

constexpr std::string_view endingOf(Message message) {
  switch (message) {
    case A:
      return " به اين گروه حساب، نوع موجوديت و موجوديت تخصيص داده شده است، امكان تعريف حساب ديگري با همين "
             "مشخصات وجود ندارد. ";
    case B:
      return " به اين گروه حساب تخصيص داده شده است، امكان تعريف حساب ديگري با همين مشخصات وجود ندارد. ";
    case C:
      return " به اين نوع حساب، نوع موجوديت و موجوديت تخصيص داده شده است، امكان تعريف حساب ديگري با همين "
             "مشخصات وجود ندارد. ";
    case NoMessage:
      break;
  }
  return {};
}

bool holds(When when, const data::Account& account, const data::SystemParameters& settings) {
  switch (when) {
    case SeveralEntities:
      return settings.MultiEntityMode;
    case NoGroup:
      return account.groupID <= 0;
    case NoClass:
      return account.relation->classID <= 0;
    case NoObject:
      return account.relation->objectID == -1;
    case PositionCounts:
      return settings.PositionInEntityTest == 1 && account.positionID != 0;
    case AllOthers:
      break;
  }
  return true;
}

struct Choice {
  Reset reset;
  Cell cell;
};

const Cell& cellOf(const Row& row, SaveWay way) {
  if (way == SaveWay::NewAccount) return row.newAccount;
  return way == SaveWay::GuardedEdit ? row.guardedEdit : row.plainEdit;
}

Choice choose(SaveWay way, const data::Account& account, const data::SystemParameters& settings) {
  for (const Row& row : kRows) {
    const Cell& cell = cellOf(row, way);
    if (cell.step != Cell::NextRow && holds(row.when, account, settings)) return {row.reset, cell};
  }
  return {NoReset, Nothing};  // the last row always matches
}

/// An account and the place that its record gives it.
class Relation {
 public:
  Relation(data::DtEn& gateway, const data::Account& account, data::Account& stored)
      : gateway_(gateway), account_(account), stored_(stored) {}

  /// The account that holds the place, as the notice names it; empty for none.
  [[nodiscard]] std::string holder(Test test) const {
    const data::OpenRows rows(gateway_.rssqlAccountCoddingInfo, statementOf(test));
    if (rows->Eof()) return {};
    return rows->Fields("Code").toText() + "..." + rows->Fields("Title").toText();
  }

  void give(Write write) {
    if (write == Add) {
      compare();
      gateway_.spAccountInsertRelatedObject(account_.id, group(), entityClass(), object());
    }
    if (write == Delete) execute("Delete tblAccountRelatedObjects Where AccountID =" + id());
    if (write == DeleteAndInsert) execute("delete tblAccountRelatedObjects Where AccountID=" + id());
    if (write == Delete || write == DeleteAndInsert) stored_.relation.reset();
    if (write == Insert || write == DeleteAndInsert) {
      execute(
          "INSERT INTO tblAccountRelatedObjects (AccountID,AccountGroupID,RelatedClassID,RelatedObjectID) "
          "VALUES (" +
          id() + "," + text(group()) + "," + text(entityClass()) + "," + text(object()) + ")");
    }
    if (write != Nothing && write != Delete) {
      stored_.relation = account_.relation;
      stored_ = data::asStored(stored_);
    }
  }

  void takeAwayGroup() {
    execute("Update tblAccount Set GroupID = null Where ID =" + id());
    stored_.groupID = -1;
  }

 private:
  static std::string text(std::int32_t number) { return std::to_string(number); }
  [[nodiscard]] std::string id() const { return text(account_.id); }
  [[nodiscard]] std::int32_t group() const { return account_.groupID; }
  [[nodiscard]] std::int32_t entityClass() const { return account_.relation->classID; }
  [[nodiscard]] std::int32_t object() const { return account_.relation->objectID; }
  void compare() { gateway_.cnMainData.handOver({.account = stored_}); }
  void execute(const std::string& statement) {
    compare();
    gateway_.cnMainData.Execute(statement);
  }

  [[nodiscard]] std::string statementOf(Test test) const {
    const std::string sameGroup =
        "Select * From vwAccountRelatedObjects Where AccountGroupID=" + text(group());
    const std::string bare = " And RelatedClassID Is Null And RelatedObjectID Is Null";
    const std::string entity =
        " And RelatedClassID =" + text(entityClass()) + " And RelatedObjectID =" + text(object());
    switch (test) {
      case Bare:
        return sameGroup + bare;
      case OtherBare:
        return sameGroup + " And AccountID <>" + id() + bare;
      case Entity:
        return sameGroup + entity;
      case OtherEntity:
        return sameGroup + entity + " And AccountID <> " + id();
      case OtherPosition:
        return sameGroup + entity + " And AccountID <> " + id() +
               " And PositionID = " + text(account_.positionID);
      case NoTest:
        break;
    }
    return {};
  }

  data::DtEn& gateway_;
  const data::Account& account_;
  data::Account& stored_;
};

}  // namespace

std::string_view lostWithClass(const data::Account& account, SaveWay way,
                               const data::SystemParameters& settings) {
  if (account.relation->classID <= 0) return {};
  const Cell cell = choose(way, account, settings).cell;
  if (cell.step == Cell::JustWrite && cell.write == Delete) return "نوع موجوديت و موجوديت";
  if (cell.step != Cell::JustReset) return {};
  if (way == SaveWay::NewAccount) return "گروه و نوع موجوديت";
  return account.groupID > 0 ? "گروه" : "";
}

RelationOutcome writeRelation(data::DtEn& gateway, const data::Account& account, SaveWay way,
                              const data::SystemParameters& settings, data::Account& stored) {
  Relation relation(gateway, account, stored);
  const auto [reset, cell] = choose(way, account, settings);
  RelationOutcome outcome{.reset = reset, .message = {}};
  if (cell.step != Cell::JustReset) {
    const std::string holder = cell.step == Cell::WriteUnlessHit ? relation.holder(cell.test) : std::string();
    if (holder.empty()) {
      relation.give(cell.write);
      return {};
    }
    outcome.message = std::string(kHolder) + holder + std::string(endingOf(cell.message));
  }
  relation.takeAwayGroup();
  return outcome;
}

}  // namespace ledgertree::accounts
