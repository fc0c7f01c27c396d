#include "shell/account_picker.h"

namespace ledgertree::shell {

AccountPicker::AccountPicker(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds,
                             ui::Frame* frame)
    : ui::LookupField(form, std::move(name), bounds, frame), shell_(shell) {}

void AccountPicker::setPickerConnection(std::string text) { shell_.pickerConnection = std::move(text); }
void AccountPicker::setClosingFlag(bool closing) { closing_ = closing; }

void AccountPicker::setAccountID(std::int32_t id) {
  accountID_ = id < 1 ? -1 : id;
  accountCode_.clear();
  accountTitle_.clear();
  setText({});
}

void AccountPicker::ClearAccount() { setAccountID(-1); }
void AccountPicker::ReloadAccounts() {}

void AccountPicker::wishSearch(const std::string& text) { (void)text; }
void AccountPicker::wishMore() {}

void AccountPicker::wishPick(const ui::LookupRow& row) {
  accountID_ = row.id;
  accountCode_ = row.code;
  accountTitle_ = row.text;
  setText(row.text);
  raise(onAccountChange);
}

void AccountPicker::wishRestore() { setText(accountTitle_); }

void AccountPicker::wishClear() {
  const bool held = !IsEmpty();
  ClearAccount();
  if (held) raise(onAccountChange);
}

}  // namespace ledgertree::shell
