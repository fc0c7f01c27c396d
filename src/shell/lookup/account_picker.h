#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/lookup/lookup_search.h"
#include "shell/shell.h"
#include "ui/lookup_field.h"
#include "ui/timer.h"

namespace ledgertree::shell {

/// Lets a user find one account of the chart by part of its title or code. It shows the title of the selected
/// account; its list shows code and title.
///
/// Based on vwAccountMajor, it works like the selector: an ID's account is read by key, the
/// list is searched as one types, over its own connection that opens on first use. A failure
/// becomes one notice, and the next use reconnects.
class AccountPicker : public ui::LookupField {
 public:
  AccountPicker(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds,
                ui::Frame* frame = nullptr);

  /// The OLE DB connection text. The latest one, set on any picker, applies to all pickers of the process.
  void setPickerConnection(std::string text);
  /// The user's position. It restricts nothing: an account of any position can be picked.
  [[nodiscard]] std::int32_t PickerPosition() const { return position_; }
  void setPickerPosition(std::int32_t position) { position_ = position; }
  /// True closes the picker's connection and keeps it closed; false allows it again.
  [[nodiscard]] bool ClosingFlag() const { return closing_; }
  void setClosingFlag(bool closing);

  /// The ID of the selected account, -1 for none. Setting an ID shows that account; a
  /// missing one of 1 or more is kept anyway, unlisted() and without a code, and any other
  /// without a row empties the picker. An ID that can't be read now is kept without its
  /// texts, and read at the next use. Setting it raises no event.
  [[nodiscard]] std::int32_t AccountID() const { return held().id; }
  void setAccountID(std::int32_t id);
  /// Adds the queries of setting an ID, for announcing them (see data::Ahead).
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) {
    search().addQuestion(id, questions);
  }
  /// The whole code of the selected account; empty for none.
  [[nodiscard]] const std::string& AccountCode() const { return held().code; }
  /// Its title; empty for none.
  [[nodiscard]] const std::string& AccountTitle() const { return held().text; }
  [[nodiscard]] bool IsEmpty() const { return held().id == -1; }
  /// Whether the user can pick.
  [[nodiscard]] bool IsActive() const { return isActive(); }
  void setIsActive(bool active) { setActive(active); }
  /// Empties the picker. A program's call raises no event; the user's Delete key, whether the form handles it
  /// by this call or leaves it to the picker, raises one onAccountChange.
  void ClearAccount() { hold({}); }
  /// Reads the selected account again. Raises no event.
  void ReloadAccounts() { setAccountID(AccountID()); }

  /// The user picked an account, perhaps the same one, or
  /// emptied the picker. Not raised by changes from code.
  ui::Event<> onAccountChange;

 private:
  void wishSearch(const std::string& text) override;
  void wishMore() override;
  void wishStop() override;
  void wishDetail() override;
  [[nodiscard]] ui::LookupRow wishOne(const std::string& text, bool first) override {
    return search().one(text, first);
  }
  void heldByPerson() override { raise(onAccountChange); }
  LookupSearch& search();
  void readAgain();

  Shell& shell_;
  LookupSearch search_;
  ui::Timer rest_;  ///< ticks when no rows have arrived for a moment
  std::int32_t position_ = -1;
  bool closing_ = false;
};

}  // namespace ledgertree::shell
