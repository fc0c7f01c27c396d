#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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
///
/// A line that was read stands for its row, and its save moves that row: IncludeAllObjects goes along.
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
  /// Whether a class stands on several levels, in the list or in the rows behind it.
  [[nodiscard]] bool repeatsClass() const;
  [[nodiscard]] bool leavesLevelEmpty() const;

  /// A row of the account in tblAccountRelatedClasses.
  struct Row {
    std::int32_t classID;
    std::string level;
  };
  class Statements;
  [[nodiscard]] Row shown(std::size_t line) const;
  [[nodiscard]] std::optional<std::string> takeRowThatLeft(std::int32_t classID, const std::string& level);
  void writeClasses(std::int32_t accountID);
  void deleteRowsThatLeft(Statements& statements, const std::string& account);
  void moveRows(Statements& statements, const std::string& account);
  void standsFor(std::size_t line, const Row& row);
  /// Whether a line stands for that row.
  [[nodiscard]] bool isTaken(const Row& row) const;

  shell::Shell& shell_;
  /// The level of the row that each line of the list stands for; nothing for a line that has none yet.
  std::vector<std::optional<std::string>> rows_;
  /// The rows whose lines left the list.
  std::vector<Row> left_;
  bool saved_ = false;
  bool working_ = false;
};

/// Shows the classes of an account until the person leaves; true where they were saved. An account that
/// doesn't exist shows an empty list. Throws data::DataError where the classes can't be read.
bool showRelClasses(shell::Shell& shell, std::int32_t inAccountID);

}  // namespace ledgertree::entities
