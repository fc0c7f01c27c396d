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

/// Rewrites codes, types and natures of accounts that exist, in bulk and without a way back: each operation
/// asks first. It writes the columns Code, IsPermanent and AccountNatureID of tblAccount, each statement
/// final when it ends, so that what ran ahead of a failure stays. Whether another account has a new code
/// isn't asked: a recoding passes through codes that exist.
///
/// Where answers take long, as over a network, the codes of up to a hundred accounts go in one packet, which
/// stops at its first failure; the bar moves by packets then.
///
/// A recoding that stops half-way tells how far it came, and the form keeps the rows that are left: the same
/// command with the same mother and sample goes on with the first of them. Begun anew it would take the order
/// of the codes that are half new.
///
/// Where the host offers Offer::Preview, two buttons show what a numbering would do, and lead from there to
/// the question and the work. What is written then are the rows that were shown: where the accounts, their
/// codes or the codes that they collide with aren't what they were, nothing is written, and that is told.
///
/// A recoding that would give one account a code of more than 20 characters is refused ahead of the first
/// row.
class frmAutoCodding : public ui::Form {
 public:
  /// Runs on the thread of the screens; `shell` outlives the form.
  explicit frmAutoCodding(shell::Shell& shell);

  ui::Label lbl1;
  shell::AccountPicker klmMotherAcc;
  ui::TextField txtMotherCode;
  ui::Label Label1;
  ui::TextField txtSimpleCode;
  ui::PushButton cmdAutoCodding;
  /// The two hidden, unless the host has previews offered; the second with the hidden commands only.
  ui::PushButton cmdPreview;
  /// Hidden, unless the host has the hidden commands offered.
  ui::PushButton klmFlatButton1;
  ui::PushButton cmdPreviewLevel;
  ui::PushButton cmdAccountType;
  ui::PushButton cmdRemanedType;
  ui::PushButton cmdCancel;
  ui::ProgressBar progressBar;
  ui::Timer Timer1;

 private:
  /// A recoding on its way.
  struct Recoding {
    std::string command;  ///< what was asked for: the rows' statement, the mother's code and the sample
    std::vector<NewCode> codes;
    std::size_t done = 0;
    std::size_t together = 1;  ///< how many codes were written at a time in the end
  };

  void loadControls();
  void listen();
  void enableButtons();
  /// Runs an operation if the person says yes.
  void runConfirmed(std::string_view question, const std::function<void()>& operation);

  /// The children of the mother account, or the top level, from the sample code; nothing where that is none,
  /// which is told.
  [[nodiscard]] std::optional<Numbering> ofChildren();
  /// Shows what a numbering would do, and does it if the person says so; `command` is the button that does it
  /// without a look.
  void lookAhead(const std::function<std::optional<Numbering>()>& wish, const ui::PushButton& command);
  /// Whether the same command stopped half-way before: it goes on then.
  [[nodiscard]] bool goesOn(const Numbering& numbering) const {
    return unfinished_ && unfinished_->command == numbering.command;
  }
  /// What is still to be written.
  [[nodiscard]] std::vector<NewCode> ahead(data::DtEn& gateway, const Numbering& numbering) const;
  /// Writes the codes of one recoding, or none where one of them is too long, or where they aren't those that
  /// the person has `seen`, if any. What the numbering would give isn't asked for where it goes on.
  void recode(const Numbering& numbering, const Outlook* seen);
  void writeCodes(data::DtEn& gateway);
  /// How many accounts behind those that are done may have their new code, since the answer to a packet of
  /// them never came.
  [[nodiscard]] std::size_t inDoubt(const std::exception& failure) const;
  void tellHowFar(const std::exception& failure);
  /// Copies a column of the mother account to all accounts below it.
  void copyToDescendants(std::string_view column);
  void readMotherAgain();

  shell::Shell& shell_;
  bool working_ = false;
  /// The one that stopped half-way.
  std::optional<Recoding> unfinished_;
};

/// Shows the screen until the person leaves.
void showAutoCodding(shell::Shell& shell);

}  // namespace ledgertree::coding
