#pragma once

#include <cstdint>

#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/items.h"
#include "ui/timer.h"

namespace ledgertree::entities {

/// The entity classes of one account on the levels 1 to 3, for installations where an account has several.
///
/// The list is a working copy of the account's rows in tblAccountRelatedClasses: a line is "<level>#<class>",
/// its number the ID of the class. Only cmdOk writes; a list that is left is dropped without a question.
/// Several classes may stand on a level and a class on several levels, but no level above an empty one.
class frmAccountRelClasses : public ui::Form {
 public:
  /// Runs on the thread of the screens; `shell` outlives the form.
  explicit frmAccountRelClasses(shell::Shell& shell);

  /// Reads the classes of an account. Throws data::DataError.
  void open(std::int32_t accountID);
  /// Whether cmdOk has run to its end.
  [[nodiscard]] bool saved() const { return saved_; }

  ui::Label Label1;
  shell::Selector sltAccount;
  ui::Label lbl1;
  shell::Selector mptEntityType;
  ui::DropDownList cmbLevel;
  ui::PushButton cmdAdd;
  ui::PushButton cmdDelete;
  ui::PushButton cmdMoveDown;
  ui::PushButton cmdMoveUp;
  ui::ListBox lstClasses;
  ui::PushButton cmdSelectObjects;
  ui::PushButton cmdOk;
  ui::PushButton cmdCancel;
  ui::Timer Timer1;

 private:
  void bindSelectors();
  void dressControls();
  void listen();
  void enableButtons();

  void fillRelClasses(std::int32_t accountID);
  void add();
  void remove();
  /// Moves the selected line by `step` levels, within 1 and 3.
  void changeLevel(int step);
  void save();
  [[nodiscard]] bool repeatsClass() const;
  [[nodiscard]] bool leavesLevelEmpty() const;
  void writeClasses(std::int32_t accountID);

  shell::Shell& shell_;
  bool saved_ = false;
};

/// Shows the classes of an account until the person leaves; true where they were saved. An account that
/// doesn't exist shows an empty list. Throws data::DataError where the classes can't be read.
bool showRelClasses(shell::Shell& shell, std::int32_t inAccountID);

}  // namespace ledgertree::entities
