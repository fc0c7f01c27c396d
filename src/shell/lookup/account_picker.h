#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/lookup/lookup_search.h"
#include "shell/shell.h"
#include "ui/lookup_field.h"
#include "ui/timer.h"

namespace ledgertree::shell {

/// Lets a person find one account of the chart by a piece of its title or its code. It shows the title of the
/// account it holds; its list shows code and title.
///
/// It stands on vwAccountMajor, and works like the selector: the account of an ID is read by its key, the
/// list is searched as one types, over a connection of its own that opens at its first use. A failure becomes
/// one notice, and the next use connects again.
class AccountPicker : public ui::LookupField {
 public:
  AccountPicker(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds,
                ui::Frame* frame = nullptr);

  /// The OLE DB connection text. The one given last, to whichever picker, serves all pickers of the process.
  void setPickerConnection(std::string text);
  /// The position of the person at work. It restricts nothing: an account of any position can be picked.
  [[nodiscard]] std::int32_t PickerPosition() const { return position_; }
  void setPickerPosition(std::int32_t position) { position_ = position; }
  /// True closes the picker's connection and keeps it closed; False lets it work.
  [[nodiscard]] bool ClosingFlag() const { return closing_; }
  void setClosingFlag(bool closing);

  /// The ID of the account held, -1 for none. Writing an ID shows that account; one of 1 or more that has no
  /// row is held all the same, unlisted() and without a code, and any other without a row empties the picker.
  /// An ID that can't be read now is held without its texts, and read at the next use. Writing raises no
  /// event.
  [[nodiscard]] std::int32_t AccountID() const { return held().id; }
  void setAccountID(std::int32_t id);
  /// Adds what writing an ID will ask, for who asks ahead (see data::Ahead).
  void addQuestion(std::int32_t id, std::vector<data::Command>& questions) {
    search().addQuestion(id, questions);
  }
  /// The whole code of the account held; empty for none.
  [[nodiscard]] const std::string& AccountCode() const { return held().code; }
  /// Its title; empty for none.
  [[nodiscard]] const std::string& AccountTitle() const { return held().text; }
  [[nodiscard]] bool IsEmpty() const { return held().id == -1; }
  /// Whether a person can pick.
  [[nodiscard]] bool IsActive() const { return isActive(); }
  void setIsActive(bool active) { setActive(active); }
  /// Empties the picker. A program's call raises no event; the Delete key of a person, whether the form
  /// answers it by this call or leaves it to the picker, ends in one onAccountChange.
  void ClearAccount() { hold({}); }
  /// Reads the account held again. Raises no event.
  void ReloadAccounts() { setAccountID(AccountID()); }

  /// A person picked an account, the one held included, or emptied the picker. What a program writes doesn't
  /// raise it.
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
  ui::Timer rest_;  ///< ticks when no rows have come for a moment
  std::int32_t position_ = -1;
  bool closing_ = false;
};

}  // namespace ledgertree::shell
