#pragma once

#include <functional>
#include <string>

#include "batch/branch.h"
#include "data/dten.h"
#include "shell/lookup/account_picker.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::batch {

/// Deletes all descendants of an account, the deepest first; the account itself stays. A document line on any
/// of them prevents the whole deletion. An account that something else depends on stays, with a notice, and
/// so do its ancestors. What was deleted before a failure stays deleted.
///
/// If the host offers Offer::Preview, a button shows what would be deleted and what prevents it, and
/// continues from there to the confirmation and the work. If the branch has changed since it was shown,
/// nothing is deleted and the user is told.
class frmAccountBatch : public ui::Form {
 public:
  /// Runs on the user-interface thread; `shell` outlives the form.
  explicit frmAccountBatch(shell::Shell& shell);

  ui::Label lblParent;
  shell::AccountPicker sltParent;
  ui::PushButton cmdDelete;
  ui::PushButton cmdCancel;
  /// Hidden unless the host offers previews.
  ui::PushButton cmdPreview;
  ui::ProgressBar progressBar;

  /// Whether a deletion was confirmed, whatever its outcome.
  bool ChangedFlag = false;

 private:
  void loadControls();
  /// Whether an account is picked; if not, the user is told.
  [[nodiscard]] bool accountIsPicked();
  /// Runs a command unless one is running already or no account is picked.
  void run(const std::function<void()>& command);
  void preview();
  /// Asks for confirmation and deletes the descendants; if `seen` is given, only if the branch still equals
  /// it.
  void deleteBelow(const Branch* seen);
  /// Deletes the accounts one by one, once nothing forbids it.
  void deleteAll(data::DtEn& gateway, const std::string& below);

  shell::Shell& shell_;
  bool working_ = false;
};

/// Shows the screen until the user closes it; returns whether the tree must be read again.
[[nodiscard]] bool showNDelete(shell::Shell& shell);

}  // namespace ledgertree::batch
