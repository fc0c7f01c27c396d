#include "accounts/field_rules.h"

#include <utility>

#include "accounts/field_rules_ceiling.h"
#include "data/ahead.h"
#include "mainform/account_record.h"

namespace ledgertree::accounts {

using mainform::FormMode;

namespace {

std::string inheritedStatement(std::int32_t parentID) {
  return "Select Isnull(IsPermanent,0) as IsPermanent, isnull(AccountNatureID,0) as AccountNatureID from "
         "tblAccount Where ID= " +
         std::to_string(parentID);
}

}  // namespace

FieldRules::FieldRules(mainform::MainScreen& screen, shell::Shell& shell)
    : screen_(screen), shell_(shell), proposal_(shell) {
  wireRadios();
  wireSelectors();
  wireKeys();
  wireLayout();
}

void FieldRules::wireSelectors() {
  screen_.sltParent.onAccountChange = [this] { parentRule(); };
  screen_.sltParent.onKeyDown = [this](int keyCode) {
    if (keyCode == ui::kKeyCodeDelete) screen_.sltParent.ClearAccount();
  };
  screen_.sltEntityType.onSelectionChange = [this] { classRule(); };
  screen_.cmdAutoCode.onClick = [this] { proposeCode(); };
}

void FieldRules::wireKeys() {
  screen_.txtCode.onKeyPress = [this](ui::KeyPress& key) {
    if (screen_.settings.CodeIsNumeric == 1) letPass(key, U'.');
  };
  for (ui::TextField* ceiling : {&screen_.txtMaxDebit, &screen_.txtMaxCredit}) {
    ceiling->onKeyPress = [this](ui::KeyPress& key) {
      letPass(key, U'/');
      afterBackspace_ = key.character == ui::kBackspaceCharacter;
    };
    ceiling->onKeyUp = [this, ceiling] { groupDigits(*ceiling); };
  }
}

/// The Persian fields switch the keyboard layout by themselves.
void FieldRules::wireLayout() {
  for (const mainform::TypedField& field : mainform::typedFields())
    shell_.switchLayoutAt(screen_.*field.control);
  for (ui::Control* picker :
       std::initializer_list<ui::Control*>{&screen_.sltAccount, &screen_.sltParent, &screen_.sltGroup})
    shell_.switchLayoutAt(*picker);
}

void FieldRules::letPass(ui::KeyPress& key, char32_t first) {
  const bool passes = key.character >= first && key.character <= U'9';
  if (!passes && key.character != ui::kBackspaceCharacter) key.character = 0;
}

void FieldRules::groupDigits(ui::TextField& ceiling) {
  EditedText edited = formatCeiling(ceiling.text(), ceiling.caret(), std::exchange(afterBackspace_, false));
  if (edited.text == ceiling.text()) return;
  ceiling.setText(std::move(edited.text));
  ceiling.setCaret(edited.caret);
}

void FieldRules::wireRadios() {
  screen_.optDebit.onClick = [this] { screen_.chooseNature(0); };
  screen_.OptCredit.onClick = [this] { screen_.chooseNature(1); };
  screen_.OptDebitAndCredit.onClick = [this] { screen_.chooseNature(2); };
  screen_.OptReg.onClick = [this] { screen_.choosePermanent(0); };
  screen_.OptNotReg.onClick = [this] { screen_.choosePermanent(1); };
  screen_.OptOpen.onClick = [this] { screen_.chooseClosed(0); };
  screen_.OptClose.onClick = [this] { screen_.chooseClosed(1); };
}

void FieldRules::parentRule() {
  if (!screen_.isTyping()) return;
  const std::int32_t parent = screen_.sltParent.AccountID();
  screen_.txtMotherCode.setText(screen_.sltParent.AccountCode());
  const auto gateway = shell_.dtEn();
  const data::Ahead ahead(gateway->cnMainData, {{.statement = inheritedStatement(parent)},
                                                {.statement = mainform::placeStatement(parent)}});
  inherit(parent);
  mainform::readPlaceOfParent(screen_, *gateway);
  proposeCode();
}

void FieldRules::inherit(std::int32_t parentID) {
  const auto gateway = shell_.dtEn();
  const data::OpenRows row(gateway->rssqlBufferQuery, inheritedStatement(parentID));
  if (row->Eof()) return;
  screen_.choosePermanent(row->Fields("IsPermanent").toInt64());
  screen_.chooseNature(row->Fields("AccountNatureID").toInt64());
}

std::string FieldRules::proposedCode(std::int32_t parentID) {
  return proposal_.getNewAccountCode(parentID, {.codingMode = screen_.settings.CodingMode,
                                                .motherCode = screen_.txtMotherCode.text(),
                                                .title = screen_.txtTitle.text()});
}

void FieldRules::proposeCode() {
  const std::uint32_t turn = screen_.RecordTurn;
  std::string code = proposedCode(screen_.sltParent.AccountID());
  // The host may have shown another record during the question about the same title.
  if (screen_.RecordTurn == turn) screen_.txtCode.setText(std::move(code));
}

void FieldRules::classRule() {
  try {
    ruleOfClass(screen_.sltEntityType.SelectedID())();
  } catch (...) {
    screen_.ClassIsGone = false;
    offerNoEntity();
    throw;
  }
}

std::function<void()> FieldRules::ruleOfClass(std::int32_t classID) {
  std::optional<EntityClass> chosen;
  if (classID > 0) chosen = readClass(classID);
  const bool gone = classID > 0 && !chosen;
  return [this, chosen = std::move(chosen), gone] { offerEntitiesOf(chosen, gone); };
}

void FieldRules::offerEntitiesOf(const std::optional<EntityClass>& chosen, bool gone) {
  screen_.ClassIsGone = gone;
  if (!chosen) return offerNoEntity();
  shell::Selector& entity = screen_.sltEntity;
  const std::string before = entity.MajorView();
  if (screen_.isTyping()) entity.setIsActive(true);
  entity.setMajorView(chosen->viewMajor);
  entity.setMinorView(chosen->viewMinor);
  entity.setSelectorTitle(chosen->name);
  if (entity.MajorView() != before) entity.Clear();
}

void FieldRules::offerNoEntity() {
  screen_.sltEntity.Clear();
  screen_.sltEntity.setIsActive(false);
}

std::optional<FieldRules::EntityClass> FieldRules::readClass(std::int32_t classID) {
  const auto gateway = shell_.dtEn();
  gateway->rssqlAccountManager.Source(mainform::classStatement(classID));
  const data::OpenRows row(gateway->rssqlAccountManager);
  if (row->Eof()) return std::nullopt;
  return EntityClass{.viewMajor = row->Fields("ViewMajor").toText(),
                     .viewMinor = row->Fields("ViewMinor").toText(),
                     .name = row->Fields("Name").toText()};
}

}  // namespace ledgertree::accounts
