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

/// Which objects of its entity classes count for an account: all of a class, or those chosen in its tree.
///
/// One class at a time; only cmdOk writes, for the class that is chosen (IncludeAllObjects in
/// tblAccountRelatedClasses, the objects in tblAccountRelatedClassesDetail). Another choice of class drops
/// what wasn't written, without a question. A class that is being read can be given up by Escape: what was
/// read stands there, and isn't saved. A save can't, since it begins with the deletion of all rows.
class frmAccountRelObjects : public ui::Form {
 public:
  /// Runs on the thread of the screens; `shell` outlives the form.
  explicit frmAccountRelObjects(shell::Shell& shell);

  /// Offers the stored classes of an account, none of them chosen. Throws data::DataError.
  void open(std::int32_t accountID);
  /// Whether cmdOk has run to its end.
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
  /// Reads how the chosen class counts and which objects it has.
  void readClass();
  [[nodiscard]] bool includesAllObjects(data::DtEn& gateway) const;
  [[nodiscard]] std::string viewMajor(data::DtEn& gateway) const;
  void enableObjects() { gbObjects.setEnabled(chkAllObjects.value() == 0); }
  void markBranches();
  void unmarkBranches();

  void save();
  /// The stored objects of the chosen class, and whether all of them count.
  [[nodiscard]] shell::RowsAsRead::Rows storedObjects(bool all);
  void tellWhatCameBetween();
  void writeIncludeAllObjects();
  /// Rewrites the rows of the chosen objects; gives how many there are now.
  std::size_t saveRelObjects(std::int32_t accountID, std::int32_t classID);

  shell::Shell& shell_;
  ObjectTree objects_;
  shell::RowsAsRead read_;
  /// The class chosen last, and the view of its objects.
  std::int32_t curClassID_ = -1;
  std::string curViewMajor_;
  bool saved_ = false;
  bool working_ = false;
};

/// Shows the objects of an account's classes until the person leaves; true where something was saved. An
/// account that doesn't exist has no class to choose. Throws data::DataError where the classes can't be read.
bool showRelObjects(shell::Shell& shell, std::int32_t inAccountID);

}  // namespace ledgertree::entities
