#include "mainform/form_mode.h"

#include <array>
#include <initializer_list>

#include "text/characters.h"

namespace ledgertree::mainform {

namespace {

/// What a mode does to the controls of a row.
enum class Cell {
  No,
  Yes,
  Keep,     ///< unchanged
  OfClass,  ///< yes if an entity class is chosen that has entities to offer
};
using enum Cell;

struct Row {
  void (*apply)(MainScreen& screen, bool on);
  std::array<Cell, 4> byMode;  ///< in the order of FormMode's numbers
};

template <typename Kind>
void enable(bool on, std::initializer_list<Kind*> controls) {
  for (Kind* control : controls) control->setEnabled(on);
}

void tree(MainScreen& s, bool on) { s.treeAccount.setEnabled(on); }

void titleInPicker(MainScreen& s, bool on) { s.sltAccount.setVisible(on); }

void titleInField(MainScreen& s, bool on) { s.txtTitle.setVisible(on); }

void typing(MainScreen& s, bool on) {
  for (const TypedField& field : typedFields()) (s.*field.control).setLocked(!on);
  s.txtMotherCode.setLocked(!on);
}

void picking(MainScreen& s, bool on) {
  s.sltParent.setIsActive(on);
  for (shell::Selector* selector : {&s.sltBranch, &s.sltPosition, &s.sltGroup, &s.sltEntityType})
    selector->setIsActive(on);
}

void pickingEntity(MainScreen& s, bool on) { s.sltEntity.setIsActive(on); }

void dateLocked(MainScreen& s, bool on) { s.datCreate.setLocked(on); }

void radioGroups(MainScreen& s, bool on) {
  enable(on, {&s.FrameRemanedType, &s.FrameAccountType, &s.FrameAccountStatus});
}

void endOfTyping(MainScreen& s, bool on) { enable(on, {&s.cmdSave, &s.cmdCancel, &s.cmdAutoCode}); }

void newAccount(MainScreen& s, bool on) { s.cmdNew.setEnabled(on); }

void shownAccount(MainScreen& s, bool on) { enable(on, {&s.cmdEdit, &s.cmdDelete}); }

void storedAccount(MainScreen& s, bool on) { enable(on, {&s.cmdPeriodBranch, &s.cmdRelClasses}); }

void treeEditor(MainScreen& s, bool on) { s.cmdEditTree.setEnabled(on); }

void menu(MainScreen& s, bool on) {
  enable(on, {&s.mnuFonc1, &s.mnuFonc2, &s.mnuFonc4, &s.mnuView1, &s.mnuView2});
}

// clang-format off
constexpr Row kTable[] = {
    //               View  Edit     New   Idle
    {tree,          {Yes,  No,      No,   Yes}},
    {titleInPicker, {Yes,  No,      No,   Yes}},
    {titleInField,  {No,   Yes,     Yes,  No}},
    {typing,        {No,   Yes,     Yes,  No}},
    {picking,       {No,   Yes,     Yes,  No}},
    {pickingEntity, {No,   OfClass, No,   No}},
    {dateLocked,    {Yes,  Yes,     No,   Yes}},
    {radioGroups,   {No,   Yes,     Yes,  No}},
    {endOfTyping,   {No,   Yes,     Yes,  No}},
    {newAccount,    {Yes,  No,      No,   Yes}},
    {shownAccount,  {Yes,  No,      No,   No}},
    {storedAccount, {Yes,  Yes,     No,   No}},
    {treeEditor,    {Keep, No,      No,   Keep}},
    {menu,          {Yes,  No,      No,   Yes}},
};
// clang-format on

const char* messageOf(FormMode mode) {
  switch (mode) {
    case FormMode::ModeEdit:
      return "اصلاح حساب";
    case FormMode::ModeNew:
      return "حساب جديد";
    case FormMode::ModeView:
    case FormMode::ModeIdle:
      break;
  }
  return "";
}

}  // namespace

void applyMode(MainScreen& screen) {
  for (const Row& row : kTable) {
    const Cell cell = row.byMode[static_cast<std::size_t>(screen.formMode)];
    if (cell == Keep) continue;
    const bool ofClass = !screen.sltEntityType.IsEmpty() && !screen.ClassIsGone;
    row.apply(screen, cell == Yes || (cell == OfClass && ofClass));
  }
  screen.lblMessage.setCaption(messageOf(screen.formMode));
}

void followRecord(MainScreen& screen) {
  if (screen.formMode != FormMode::ModeView) return;
  const bool onScreen =
      !text::trimmed(screen.txtCode.text()).empty() && !text::trimmed(screen.txtTitle.text()).empty();
  if (screen.cmdEdit.enabled() == onScreen) return;
  enable(onScreen, {&screen.cmdEdit, &screen.cmdDelete});
  enable(onScreen, {&screen.mnuFonc2, &screen.mnuFonc4});
}

}  // namespace ledgertree::mainform
