#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "shell/lookup/selector.h"
#include "shell/rows_as_read.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/items.h"
#include "ui/timer.h"

namespace ledgertree::entities {

/// The entity classes of one account on levels 1 to 3, for installations in which an account has several.
///
/// The list is a working copy of the account's rows in tblAccountRelatedClasses: a line is "<level>#<class>",
/// its number the ID of the class. Only cmdOk writes; leaving discards the list without asking. A level may
/// have several classes and a class several levels, but no level may be above an empty one.
///
/// A line that was read belongs to a row, and the save moves that row, with its IncludeAllObjects.
class frmAccountRelClasses : public ui::Form {
 public:
  /// Runs on the user-interface thread; `shell` outlives the form.
  explicit frmAccountRelClasses(shell::Shell& shell);

  /// Reads the classes of an account. Throws data::DataError.
  void open(std::int32_t accountID);
  /// Whether cmdOk has completed.
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
  /// Moves the selected line by `step` levels, between 1 and 3.
  void changeLevel(int step);
  void save();
  /// Whether a class is on several levels, in the list or in its rows.
  [[nodiscard]] bool repeatsClass() const;
  [[nodiscard]] bool leavesLevelEmpty() const;

  /// A row of the account in tblAccountRelatedClasses.
  struct Row {
    std::int32_t classID;
    std::string level;
  };
  class Statements;
  [[nodiscard]] static std::string keyOf(const Row& row) {
    return row.level + ":" + std::to_string(row.classID);
  }
  [[nodiscard]] Row shown(std::size_t line) const;
  [[nodiscard]] std::optional<std::string> takeRowThatLeft(std::int32_t classID, const std::string& level);
  /// False if the database failed one of the statements.
  [[nodiscard]] bool writeClasses(std::int32_t accountID);
  /// Visits the stored classes: level, name, ID.
  void readClasses(std::int32_t accountID,
                   const std::function<void(const std::string&, const std::string&, std::int32_t)>& visit);
  [[nodiscard]] shell::RowsAsRead::Rows storedClasses(std::int32_t accountID);
  void tellWhatCameBetween(std::int32_t accountID);
  void deleteRowsThatLeft(Statements& statements, const std::string& account);
  void moveRows(Statements& statements, const std::string& account);
  void assignRow(std::size_t line, const Row& row);
  /// Whether a line belongs to that row.
  [[nodiscard]] bool isTaken(const Row& row) const;

  shell::Shell& shell_;
  shell::RowsAsRead read_;
  /// The level of each line's row; nothing for a line that has none yet.
  std::vector<std::optional<std::string>> rows_;
  /// The rows whose lines were removed from the list.
  std::vector<Row> left_;
  bool saved_ = false;
  bool working_ = false;
};

/// Shows the classes of an account until the user leaves; true if they were saved. An account that doesn't
/// exist shows an empty list. Throws data::DataError if the classes can't be read.
bool showRelClasses(shell::Shell& shell, std::int32_t inAccountID);

}  // namespace ledgertree::entities
