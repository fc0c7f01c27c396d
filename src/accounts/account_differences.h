#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "accounts/account_texts.h"
#include "accounts/differences.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/text_field.h"

namespace ledgertree::accounts {

/// An account that two users have changed, group by group: what was read, what the other user made of it,
/// what is typed, and what will be saved. A group that only one of them has changed is settled; if both have,
/// the user chooses one version. It writes nothing.
class frmAccountDifferences : public ui::Form {
 public:
  explicit frmAccountDifferences(shell::Shell& shell);

  /// Shows the differences until the user leaves; `written` is a sentence on what the save had written by
  /// then. Returns the account to be saved: `mine` with what is taken over from the other user; nothing if
  /// the user goes back to typing.
  [[nodiscard]] std::optional<data::Account> merge(const data::Account& read, const data::Account& theirs,
                                                   const data::Account& mine, const AccountTexts& texts,
                                                   std::string_view written);

  ui::Label lblTold;
  ui::Grid flxGroups;
  ui::Label lblRead;
  ui::TextField txtRead;
  ui::Label lblTheirs;
  ui::TextField txtTheirs;
  ui::Label lblMine;
  ui::TextField txtMine;
  ui::PushButton cmdTheirs;
  ui::PushButton cmdMine;
  ui::PushButton cmdOk;
  ui::PushButton cmdCancel;

 protected:
  void resized() override;

 private:
  enum class Choice { Open, Theirs, Mine };
  struct Line {
    Difference difference;
    Choice choice;
    std::string name, read, theirs, mine;
  };

  void dressControls();
  void fill(int current);
  void showCurrent();
  void choose(Choice choice);
  void accept();
  [[nodiscard]] static std::string outcomeOf(const Line& line);

  shell::Shell& shell_;
  std::vector<Line> lines_;
  bool accepted_ = false;
};

}  // namespace ledgertree::accounts
