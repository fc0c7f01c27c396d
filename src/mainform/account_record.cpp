#include "mainform/account_record.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "data/account.h"
#include "data/ahead.h"
#include "data/connection_text.h"
#include "data/numbers.h"
#include "mainform/form_mode.h"

namespace ledgertree::mainform {

namespace {

constexpr std::string_view kElsewhere =
    "حساب روي صفحه از پايگاه داده ديگري است و در پايگاه داده کنوني چيزي تغيير نکرد. انصراف دهيد، درخت حسابها "
    "را بازسازي کنيد و حساب را دوباره انتخاب نماييد.";

std::vector<data::Command> accountQuestions(std::int32_t id) {
  const std::string number = std::to_string(id);
  return {{.statement = "Select * From vwAccount where ID=" + number},
          {.statement = "Select * from tblAccountRelatedObjects where AccountID =" + number}};
}

/// Everything is read before the first field changes, so that a failure never leaves a mixture of two
/// accounts on the screen.
std::optional<data::Account> readAccount(data::DtEn& gateway, std::int32_t id) {
  const std::vector<data::Command> questions = accountQuestions(id);
  const data::Ahead ahead(gateway.cnMainData, questions);
  data::OpenRows row(gateway.rssqlvwAccount, questions[0].statement);
  if (row->Eof()) return std::nullopt;
  data::Account account = data::accountIn(*row);
  row.close();

  const data::OpenRows related(gateway.rssqlvwAccount, questions[1].statement);
  if (!related->Eof()) account.relation = data::relationIn(*related);
  return account;
}

}  // namespace

SplitCode splitCode(std::string_view code, std::string_view parentCode) {
  const auto behind = [code](std::string_view mother) {
    return SplitCode{.mother = std::string(mother), .own = std::string(code.substr(mother.size()))};
  };
  if (code.starts_with(parentCode)) return behind(parentCode);
  try {
    const std::string number = data::Value(data::leadingNumber(parentCode)).toText();
    if (code.starts_with(number)) return behind(number);
  } catch (const std::range_error&) {
    // A parent's code such as "1E999" isn't a number that another code could begin with.
  }
  return behind({});
}

std::string classStatement(std::int32_t classID) {
  return "Select * from tblAccountClass where ID=" + std::to_string(classID);
}

std::string placeStatement(std::int32_t parentID) {
  return "Select isnull(ParentID,-1) as ParentID from tblAccount Where ID= " + std::to_string(parentID);
}

void readPlaceOfParent(MainScreen& screen, data::DtEn& gateway) {
  screen.ParentAsRead.reset();
  const std::int32_t parent = screen.sltParent.AccountID();
  if (parent < 1) return;
  const data::OpenRows row(gateway.rssqlBufferQuery, placeStatement(parent));
  if (!row->Eof()) screen.ParentAsRead = {parent, row->Fields("ParentID").toInt32()};
}

AccountRecord::AccountRecord(MainScreen& screen, shell::Shell& shell, ClassRule classRule)
    : screen_(screen), shell_(shell), classRule_(std::move(classRule)) {
  screen_.sltAccount.onAccountChange = [this] {
    const bool looking = screen_.formMode == FormMode::ModeView || screen_.formMode == FormMode::ModeIdle;
    if (!looking) return;
    try {
      const bool there = loadAccount(screen_.sltAccount.AccountID());
      if (!there && !screen_.sltAccount.IsEmpty()) throw std::runtime_error(data::kAccountIsGone);
    } catch (...) {
      // The previous account stays, with its title: otherwise a command would change it under the other's
      // title.
      screen_.sltAccount.setAccountID(screen_.AccountOnRecord);
      throw;
    }
    tellShown();
  };
}

bool AccountRecord::refusedElsewhere() {
  if (data::sameDatabase(screen_.RecordSource, shell_.dtEn()->cnMainData.ConnectionString())) return false;
  shell_.showErrorNotice(shell::kTitleError, kElsewhere);
  return true;
}

void AccountRecord::showAccount(std::int32_t id) {
  if (id < 1) return goIdle();
  clearAccountFields();
  screen_.formMode = FormMode::ModeView;
  loadInto(id);
  applyFormMode();
  tellShown();
}

void AccountRecord::goIdle() {
  screen_.formMode = FormMode::ModeIdle;
  applyFormMode();
  clearAccountFields();
  tellShown();
}

void AccountRecord::tellShown() {
  // Immediately: until the next tick the commands would work on an account that has left the screen.
  followRecord(screen_);
  if (onShown) onShown(screen_.AccountOnRecord);
}

void AccountRecord::startNewAccount() {
  screen_.formMode = FormMode::ModeNew;
  applyFormMode();
  clearAccountFields();
  screen_.txtID.focus();
}

void AccountRecord::startEditAccount(std::int32_t id) {
  clearAccountFields();
  screen_.formMode = FormMode::ModeEdit;
  loadInto(id);
  applyFormMode();
}

void AccountRecord::loadInto(std::int32_t id) {
  try {
    static_cast<void>(loadAccount(id));
  } catch (...) {
    clearAccountFields();
    screen_.formMode = FormMode::ModeView;
    applyFormMode();
    tellShown();
    throw;
  }
}

void AccountRecord::beginRecord(std::int32_t accountID) {
  screen_.AccountOnRecord = accountID;
  ++screen_.RecordTurn;
  screen_.AsRead.reset();
  screen_.ParentAsRead.reset();
  screen_.ClassIsGone = false;
  screen_.RecordSource = shell_.dtEn()->cnMainData.ConnectionString();
}

void AccountRecord::clearAccountFields() {
  beginRecord(-1);
  for (const TypedField& field : typedFields())
    if (field.isText()) (screen_.*field.control).setText("");
  for (shell::Selector* selector : {&screen_.sltBranch, &screen_.sltPosition, &screen_.sltGroup,
                                    &screen_.sltEntityType, &screen_.sltEntity})
    selector->Clear();
  screen_.datCreate.setToday(shell_.clock);
  screen_.sltParent.setAccountID(-1);
  // The title is shown by the picker, which a blank record clears.
  screen_.sltAccount.setAccountID(-1);
}

std::optional<data::Account> AccountRecord::readAgain(std::int32_t id) {
  const auto gateway = shell_.dtEn();
  return readAccount(*gateway, id);
}

void AccountRecord::goOnWith(const data::Account& typed, const data::Account& stored) {
  const auto showClass = typed.relation ? classRule_(typed.relation->classID) : nullptr;
  clearAccountFields();
  fill(typed, showClass);
  screen_.AsRead = stored;
}

bool AccountRecord::loadAccount(std::int32_t id) {
  const auto account = readAgain(id);
  if (!account) return false;
  std::vector<data::Command> questions;
  addLookUps(*account, questions);
  const auto gateway = shell_.dtEn();
  const data::Ahead ahead(gateway->cnMainData, std::move(questions));
  fill(*account, account->relation ? classRule_(account->relation->classID) : nullptr);
  return true;
}

/// In the order in which the rule of the class and `fill` ask. The entity isn't included: its view is known
/// only once the class is read.
void AccountRecord::addLookUps(const data::Account& account, std::vector<data::Command>& questions) {
  const std::int32_t classID = account.relation ? account.relation->classID : -1;
  if (classID > 0) questions.push_back({.statement = classStatement(classID)});
  screen_.sltAccount.addQuestion(account.id, questions);
  screen_.sltParent.addQuestion(account.parentID, questions);
  if (screen_.isTyping() && account.parentID > 0)
    questions.push_back({.statement = placeStatement(account.parentID)});
  screen_.sltGroup.addQuestion(account.groupID, questions);
  screen_.sltBranch.addQuestion(account.branchID, questions);
  screen_.sltPosition.addQuestion(account.positionID, questions);
  screen_.sltEntityType.addQuestion(classID, questions);
}

std::vector<data::Command> AccountRecord::questionsOf(const data::Account& account) {
  std::vector<data::Command> questions = accountQuestions(account.id);
  addLookUps(account, questions);
  // Most likely the class is the one on the screen.
  if (account.relation) screen_.sltEntity.addQuestion(account.relation->objectID, questions);
  return questions;
}

void AccountRecord::fill(const data::Account& account, const std::function<void()>& showClass) {
  beginRecord(account.id);
  screen_.AsRead = account;
  screen_.txtID.setText(std::to_string(account.id));
  for (const auto& [control, holds] : typedFields())
    (screen_.*control).setText(data::valueOf(account, holds).toText());
  screen_.sltAccount.setAccountID(account.id);
  screen_.sltParent.setAccountID(account.parentID);
  if (screen_.isTyping()) readPlaceOfParent(screen_, *shell_.dtEn());
  screen_.sltGroup.setSelectedID(account.groupID);
  screen_.sltBranch.setSelectedID(account.branchID);
  screen_.sltPosition.setSelectedID(account.positionID);
  // No creation date: an edit never writes it, so today's is shown for the save's check.
  if (account.createDate) {
    screen_.datCreate.setEnglishdate(*account.createDate);
  } else {
    screen_.datCreate.setToday(shell_.clock);
  }
  // The picker has the parent's code by now.
  const SplitCode code = splitCode(account.code, screen_.sltParent.AccountCode());
  screen_.txtMotherCode.setText(code.mother);
  screen_.txtCode.setText(code.own);
  screen_.chooseNature(account.accountNatureID);
  screen_.choosePermanent(account.isPermanent);
  screen_.chooseClosed(account.isClosed);

  if (!account.relation) return;
  screen_.sltEntityType.setSelectedID(account.relation->classID);
  showClass();
  // An object without a class isn't in any list, least of all in the previous account's.
  if (screen_.sltEntityType.IsEmpty()) screen_.sltEntity.setMajorView({});
  if (!screen_.ClassIsGone) screen_.sltEntity.setSelectedID(account.relation->objectID);
}

void AccountRecord::applyFormMode() {
  applyMode(screen_);
  if (screen_.formMode == FormMode::ModeNew) blankForNewAccount();
}

/// Nothing of the last account is kept: its ceilings and its parent's code would get into the new one.
void AccountRecord::blankForNewAccount() {
  for (shell::Selector* selector : {&screen_.sltGroup, &screen_.sltEntityType, &screen_.sltEntity,
                                    &screen_.sltBranch, &screen_.sltPosition})
    selector->Clear();
  screen_.txtMotherCode.setText("");
  for (const TypedField& field : typedFields()) (screen_.*field.control).setText("");
  screen_.datCreate.setToday(shell_.clock);
  screen_.chooseNature(0);
  screen_.choosePermanent(0);
  screen_.chooseClosed(0);
}

}  // namespace ledgertree::mainform
