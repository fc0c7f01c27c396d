#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coding/recoding/code_counter.h"
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
  /// Hidden, unless the host has the hidden commands offered.
  ui::PushButton klmFlatButton1;
  ui::PushButton cmdAccountType;
  ui::PushButton cmdRemanedType;
  ui::PushButton cmdCancel;
  ui::ProgressBar progressBar;
  ui::Timer Timer1;

 private:
  struct NewCode {
    std::int32_t account;
    std::string code;
  };
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

  /// Numbers the children of the mother account, or the top level, from the sample code.
  void numberChildren();
  /// Numbers the second level of the chart with one series of six digits.
  void numberSecondLevel();
  /// The codes that the children of the mother will have, in the order of the rows of the statement.
  [[nodiscard]] std::vector<NewCode> children(data::DtEn& gateway, const std::string& statement,
                                              CodeCounter counter);
  [[nodiscard]] std::vector<NewCode> secondLevel(data::DtEn& gateway);
  /// Writes the codes of one recoding, or none where one of them is too long. What `codes` would give isn't
  /// asked for where the same command stopped half-way before.
  void recode(data::DtEn& gateway, std::string command, const std::function<std::vector<NewCode>()>& codes);
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
