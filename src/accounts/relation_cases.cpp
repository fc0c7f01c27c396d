#include "accounts/relation_cases.h"

#include <string>

namespace ledgertree::accounts {

namespace {

/// What holds of the account on the screen. The first row that holds is its case.
enum When { SeveralEntities, NoGroup, NoClass, NoObject, PositionCounts, AllOthers };

/// The tests for an account that stands in the same place: with the same group, and besides …
enum Test {
  NoTest,
  Bare,           // … no class and no object
  OtherBare,      // the same, and it is another account
  Entity,         // … the same class and object
  OtherEntity,    // the same, and it is another account
  OtherPosition,  // the same, another account, and the same position
};

/// What an account loses that stands in another one's place.
enum Reset { NoReset, ResetGroup, ResetEntity };

/// Three endings of the notice that tells whose place it is.
enum Message { NoMessage, A, B, C };

enum Write { Nothing, Add, Insert, Delete, DeleteAndInsert };

struct Cell {
  enum Kind { NextRow, JustWrite, JustReset, WriteUnlessHit } kind;
  Test test = NoTest;
  Message message = NoMessage;
  Write write = Nothing;

  constexpr Cell(Kind only) : kind(only) {}                     // NOLINT(google-explicit-constructor)
  constexpr Cell(Write only) : kind(JustWrite), write(only) {}  // NOLINT(google-explicit-constructor)
  constexpr Cell(Test onHit, Message hit, Write noHit)
      : kind(WriteUnlessHit), test(onHit), message(hit), write(noHit) {}
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

// clang-format off
constexpr Row kRows[] = {
    // the case,       what a hit resets, a new account,          a guarded edit,          a plain edit
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

bool holds(When when, const mainform::MainScreen& screen) {
  switch (when) {
    case SeveralEntities:
      return screen.settings.MultiEntityMode;
    case NoGroup:
      return screen.GroupValue <= 0;
    case NoClass:
      return screen.EntityTypeValue <= 0;
    case NoObject:
      return screen.sltEntity.IsEmpty();
    case PositionCounts:
      return screen.settings.PositionInEntityTest == 1 && !screen.sltPosition.IsEmpty();
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

Choice choose(SaveWay way, const mainform::MainScreen& screen) {
  for (const Row& row : kRows) {
    const Cell& cell = cellOf(row, way);
    if (cell.kind != Cell::NextRow && holds(row.when, screen)) return {row.reset, cell};
  }
  return {NoReset, Nothing};  // the last row holds always
}

/// One account and the place that its record gives it.
class Relation {
 public:
  Relation(mainform::MainScreen& screen, data::DtEn& gateway, std::int32_t accountID)
      : screen_(screen), gateway_(gateway), accountID_(accountID) {}

  /// Who stands in the place, as the notice names them; empty for nobody.
  [[nodiscard]] std::string holder(Test test) const {
    const data::OpenRows rows(gateway_.rssqlAccountCoddingInfo, statementOf(test));
    if (rows->Eof()) return {};
    return rows->Fields("Code").toText() + "..." + rows->Fields("Title").toText();
  }

  void give(Write write) {
    if (write == Add) {
      gateway_.spAccountInsertRelatedObject(accountID_, group(), entityClass(), object());
    }
    if (write == Delete) execute("Delete tblAccountRelatedObjects Where AccountID =" + id());
    if (write == DeleteAndInsert) execute("delete tblAccountRelatedObjects Where AccountID=" + id());
    if (write == Insert || write == DeleteAndInsert) {
      execute(
          "INSERT INTO tblAccountRelatedObjects (AccountID,AccountGroupID,RelatedClassID,RelatedObjectID) "
          "VALUES (" +
          id() + "," + text(group()) + "," + text(entityClass()) + "," + text(object()) + ")");
    }
  }

  void takeAway(Reset reset) {
    execute("Update tblAccount Set GroupID = null Where ID =" + id());
    screen_.sltGroup.Clear();
    screen_.GroupValue = -1;
    if (reset != ResetEntity) return;
    screen_.sltEntityType.Clear();
    screen_.EntityTypeValue = -1;
    screen_.sltEntity.Clear();
    screen_.sltEntity.setIsActive(false);
  }

 private:
  static std::string text(std::int32_t number) { return std::to_string(number); }
  [[nodiscard]] std::string id() const { return text(accountID_); }
  [[nodiscard]] std::int32_t group() const { return screen_.GroupValue; }
  [[nodiscard]] std::int32_t entityClass() const { return screen_.EntityTypeValue; }
  [[nodiscard]] std::int32_t object() const { return screen_.sltEntity.SelectedID(); }
  void execute(const std::string& statement) { gateway_.cnMainData.Execute(statement); }

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
               " And PositionID = " + text(screen_.sltPosition.SelectedID());
      case NoTest:
        break;
    }
    return {};
  }

  mainform::MainScreen& screen_;
  data::DtEn& gateway_;
  std::int32_t accountID_;
};

}  // namespace

std::string_view lostWithClass(const mainform::MainScreen& screen, SaveWay way) {
  if (!screen.ClassIsGone || screen.EntityTypeValue <= 0) return {};
  const Cell cell = choose(way, screen).cell;
  if (cell.kind == Cell::JustWrite && cell.write == Delete) return "نوع موجوديت و موجوديت";
  if (cell.kind != Cell::JustReset) return {};
  if (way == SaveWay::NewAccount) return "گروه و نوع موجوديت";
  return screen.GroupValue > 0 ? "گروه" : "";
}

void writeRelation(mainform::MainScreen& screen, shell::Shell& shell, data::DtEn& gateway,
                   std::int32_t accountID, SaveWay way) {
  Relation relation(screen, gateway, accountID);
  const auto [reset, cell] = choose(way, screen);
  if (cell.kind == Cell::JustReset) return relation.takeAway(reset);
  if (cell.kind == Cell::JustWrite) return relation.give(cell.write);
  const std::string holder = relation.holder(cell.test);
  if (holder.empty()) return relation.give(cell.write);
  relation.takeAway(reset);
  shell.showErrorNotice(shell::kTitleSaveError,
                        std::string(kHolder) + holder + std::string(endingOf(cell.message)));
}

}  // namespace ledgertree::accounts
