#include "accounts/field_rules.h"

namespace ledgertree::accounts {

using mainform::FormMode;

FieldRules::FieldRules(mainform::MainScreen& screen, shell::Shell& shell, coding::CodeProposal& proposal)
    : screen_(screen), shell_(shell), proposal_(proposal) {
  wireRadios();
  screen_.sltEntityType.onSelectionChange = [this] { classRule(); };
}

void FieldRules::wireRadios() {
  screen_.optDebit.onClick = [this] { chooseNature(0); };
  screen_.OptCredit.onClick = [this] { chooseNature(1); };
  screen_.OptDebitAndCredit.onClick = [this] { chooseNature(2); };
  screen_.OptReg.onClick = [this] { choosePermanent(0); };
  screen_.OptNotReg.onClick = [this] { choosePermanent(1); };
  screen_.OptOpen.onClick = [this] { chooseClosed(0); };
  screen_.OptClose.onClick = [this] { chooseClosed(1); };
}

void FieldRules::chooseNature(std::int16_t value) {
  if (value < 0 || value > 2) return;
  ui::RadioButton* const buttons[] = {&screen_.optDebit, &screen_.OptCredit, &screen_.OptDebitAndCredit};
  screen_.NatureValue = value;
  buttons[value]->setValue(true);
}

void FieldRules::choosePermanent(std::int16_t value) {
  if (value < 0 || value > 1) return;
  screen_.PermanentValue = value;
  (value == 0 ? screen_.OptReg : screen_.OptNotReg).setValue(true);
}

void FieldRules::chooseClosed(std::int16_t value) {
  if (value < 0 || value > 1) return;
  screen_.ClosedValue = value;
  (value == 0 ? screen_.OptOpen : screen_.OptClose).setValue(true);
}

void FieldRules::classRule() {
  shell::Selector& entity = screen_.sltEntity;
  const std::string before = entity.MajorView();
  const auto none = [&entity] {
    entity.Clear();
    entity.setIsActive(false);
  };
  std::optional<EntityClass> chosen;
  try {
    if (!screen_.sltEntityType.IsEmpty()) chosen = readClass(screen_.sltEntityType.SelectedID());
  } catch (...) {
    none();
    throw;
  }
  if (!chosen) return none();

  if (screen_.formMode == FormMode::ModeNew || screen_.formMode == FormMode::ModeEdit)
    entity.setIsActive(true);
  entity.setMajorView(chosen->viewMajor);
  entity.setMinorView(chosen->viewMinor);
  entity.setSelectorTitle(chosen->name);
  if (entity.MajorView() != before) entity.Clear();
}

std::optional<FieldRules::EntityClass> FieldRules::readClass(std::int32_t classID) {
  const auto gateway = shell_.dtEn();
  gateway->rssqlAccountManager.Source("Select * from tblAccountClass where ID=" + std::to_string(classID));
  const data::OpenRows row(gateway->rssqlAccountManager);
  if (row->Eof()) return std::nullopt;
  return EntityClass{.viewMajor = row->Fields("ViewMajor").toText(),
                     .viewMinor = row->Fields("ViewMinor").toText(),
                     .name = row->Fields("Name").toText()};
}

}  // namespace ledgertree::accounts
