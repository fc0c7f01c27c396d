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

/// Deletes all accounts below one account, the deepest first; the account itself stays. A document line on
/// one of them stops it all. An account that depends on something else stays, with a notice, and so do those
/// above it. What is deleted ahead of a failure stays deleted.
///
/// Where the host offers Offer::Preview, a button shows what would go and what stands in the way, and leads
/// from there to the question and the work. Where the branch isn't what was shown, nothing is deleted, and
/// that is told.
class frmAccountBatch : public ui::Form {
 public:
  /// Runs on the thread of the screens; `shell` outlives the form.
  explicit frmAccountBatch(shell::Shell& shell);

  ui::Label lblParent;
  shell::AccountPicker sltParent;
  ui::PushButton cmdDelete;
  ui::PushButton cmdCancel;
  /// Hidden, unless the host has previews offered.
  ui::PushButton cmdPreview;
  ui::ProgressBar progressBar;

  /// Whether a deletion was confirmed, whatever it achieved.
  bool ChangedFlag = false;

 private:
  void loadControls();
  /// Whether an account is picked; told where none is.
  [[nodiscard]] bool accountIsPicked();
  /// Runs a command that isn't under way already, where an account is picked.
  void run(const std::function<void()>& command);
  void lookAhead();
  /// Asks, and deletes what is below the account; only what was `seen`, if anything.
  void deleteBelow(const Branch* seen);
  /// The walk through the accounts below, once nothing forbids it.
  void deleteAll(data::DtEn& gateway, const std::string& below);

  shell::Shell& shell_;
  bool working_ = false;
};

/// Shows the screen until the person leaves; true where the tree has to be read anew.
[[nodiscard]] bool showNDelete(shell::Shell& shell);

}  // namespace ledgertree::batch
