#pragma once

#include <cstdint>
#include <string>

#include "entities/object_tree.h"
#include "shell/lookup/selector.h"
#include "shell/rows_as_read.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/items.h"
#include "ui/tree.h"

namespace ledgertree::entities {

/// Which objects of its entity classes an account includes: all of a class, or those chosen in its tree.
///
/// One class at a time; only cmdOk writes, for the chosen class (IncludeAllObjects in
/// tblAccountRelatedClasses, the objects in tblAccountRelatedClassesDetail). Choosing another class discards
/// without asking what wasn't written. Escape cancels the reading of a class: what was read is shown, but
/// can't be saved. A save can't be cancelled, since it begins by deleting all rows.
class frmAccountRelObjects : public ui::Form {
 public:
  /// Runs on the user-interface thread; `shell` outlives the form.
  explicit frmAccountRelObjects(shell::Shell& shell);

  /// Offers the stored classes of an account, with none chosen. Throws data::DataError.
  void open(std::int32_t accountID);
  /// Whether cmdOk has completed.
  [[nodiscard]] bool saved() const { return saved_; }

  ui::Frame Frame1;
  ui::Label lblAccount;
  shell::Selector sltAccount;
  ui::Label lbl1;
  ui::DropDownList cmbClass;
  ui::CheckBox chkAllObjects;
  ui::Frame gbObjects;
  ui::Label lblHint;
  ui::Tree treeObjects;
  ui::PushButton cmdAllBranches;
  ui::PushButton cmdNotAllBranches;
  ui::PushButton cmdOk;
  ui::PushButton cmdCancel;
  ui::ProgressBar progressBar;

 protected:
  void resized() override;

 private:
  void bindSelector();
  void dressControls();
  void listen();

  void fillClassList(std::int32_t accountID);
  void showNoClass();
  void chooseClass();
  void openNode(ui::NodeId node);
  /// Reads whether the chosen class includes all objects, and which objects it has.
  void readClass();
  [[nodiscard]] bool includesAllObjects(data::DtEn& gateway) const;
  [[nodiscard]] std::string viewMajor(data::DtEn& gateway) const;
  void enableObjects() { gbObjects.setEnabled(chkAllObjects.value() == 0); }
  void markBranches();
  void unmarkBranches();

  void save();
  /// The stored objects of the chosen class, and whether it includes all of them.
  [[nodiscard]] shell::RowsAsRead::Rows storedObjects(bool all);
  void tellWhatCameBetween();
  void writeIncludeAllObjects();
  /// Rewrites the rows of the chosen objects; returns how many there are now.
  std::size_t saveRelObjects(std::int32_t accountID, std::int32_t classID);

  shell::Shell& shell_;
  ObjectTree objects_;
  shell::RowsAsRead read_;
  /// The last chosen class, and the view of its objects.
  std::int32_t curClassID_ = -1;
  std::string curViewMajor_;
  bool saved_ = false;
  bool working_ = false;
};

/// Shows the objects of an account's classes until the user leaves; true if something was saved. An account
/// that doesn't exist has no class to choose. Throws data::DataError if the classes can't be read.
bool showRelObjects(shell::Shell& shell, std::int32_t inAccountID);

}  // namespace ledgertree::entities
