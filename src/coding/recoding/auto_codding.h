#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coding/recoding/numbering.h"
#include "coding/recoding/outlook.h"
#include "data/dten.h"
#include "shell/lookup/account_picker.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/text_field.h"
#include "ui/timer.h"

namespace ledgertree::coding {

/// Rewrites codes, types and natures of existing accounts in bulk and with no undo of its own: each operation
/// asks for confirmation. Writes the columns Code, IsPermanent and AccountNatureID of tblAccount; each
/// statement commits by itself, so what ran before a failure stays. Codes aren't checked for uniqueness: a
/// recoding passes through codes that exist.
///
/// On a slow connection, such as over a network, the codes of up to a hundred accounts are sent in one batch,
/// which stops at its first failure; the progress bar then advances by batches.
///
/// A recoding that stops half-way reports how far it got, and the form keeps the remaining rows: the same
/// command with the same mother and sample resumes with the first of them. Started from scratch it would use
/// the order of codes that are half new.
///
/// If the host offers Offer::Preview, two buttons show what a numbering would do, and continue from there to
/// the confirmation and the work. Then exactly the rows that were shown are written: if the accounts, their
/// codes or the codes that they collide with have changed since, nothing is written and the user is told.
///
/// A recoding that would give any account a code of more than 20 characters is refused before the first row
/// is written.
class frmAutoCodding : public ui::Form {
 public:
  /// Runs on the user-interface thread; `shell` outlives the form.
  explicit frmAutoCodding(shell::Shell& shell);

  ui::Label lbl1;
  shell::AccountPicker klmMotherAcc;
  ui::TextField txtMotherCode;
  ui::Label Label1;
  ui::TextField txtSimpleCode;
  ui::PushButton cmdAutoCodding;
  /// Both preview buttons are hidden unless the host offers previews; cmdPreviewLevel also needs the hidden
  /// commands.
  ui::PushButton cmdPreview;
  /// Hidden unless the host offers the hidden commands.
  ui::PushButton klmFlatButton1;
  ui::PushButton cmdPreviewLevel;
  ui::PushButton cmdAccountType;
  ui::PushButton cmdRemanedType;
  ui::PushButton cmdCancel;
  ui::ProgressBar progressBar;
  ui::Timer Timer1;

 private:
  /// A recoding in progress.
  struct Recoding {
    /// Identifies the request: the statement for the rows, the mother's code and the sample.
    std::string command;
    std::vector<NewCode> codes;
    std::size_t done = 0;
    std::size_t together = 1;  ///< the current size of a batch
  };

  void loadControls();
  void listen();
  void enableButtons();
  /// Runs an operation if the user confirms.
  void runConfirmed(std::string_view question, const std::function<void()>& operation);

  /// Numbers the children of the mother account, or the top level, from the sample code; nothing if that is
  /// invalid, and the user is told.
  [[nodiscard]] std::optional<Numbering> ofChildren();
  /// Shows what a numbering would do, and does it if the user confirms; `command` is the button that does it
  /// without a preview.
  void preview(const std::function<std::optional<Numbering>()>& wish, const ui::PushButton& command);
  /// Whether the same command stopped half-way before, so that it resumes.
  [[nodiscard]] bool resumes(const Numbering& numbering) const {
    return unfinished_ && unfinished_->command == numbering.command;
  }
  /// The codes that are still to be written.
  [[nodiscard]] std::vector<NewCode> remaining(data::DtEn& gateway, const Numbering& numbering) const;
  /// Writes the codes of one recoding; none if one of them is too long, or if they differ from those in
  /// `seen`, the preview, if any. A resumed recoding doesn't compute its codes again.
  void recode(const Numbering& numbering, const Outlook* seen);
  void writeCodes(data::DtEn& gateway);
  /// How many accounts after the finished ones may have their new code, because the answer to their batch
  /// never arrived.
  [[nodiscard]] std::size_t inDoubt(const std::exception& failure) const;
  void tellHowFar(const std::exception& failure);
  /// Copies a column of the mother account to all its descendants.
  void copyToDescendants(std::string_view column);
  void readMotherAgain();

  shell::Shell& shell_;
  bool working_ = false;
  /// The recoding that stopped half-way.
  std::optional<Recoding> unfinished_;
};

/// Shows the screen until the user closes it.
void showAutoCodding(shell::Shell& shell);

}  // namespace ledgertree::coding
