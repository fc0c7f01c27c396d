#pragma once

#include <cstdint>
#include <string>

#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/text_field.h"

namespace ledgertree::pactkit {

/// The cost and income centres of tblAccCostCenter: lists, adds, renames and removes them. One that an
/// account refers to (tblAccount.PositionID) can't be removed.
class CostCenters : public ui::Form {
 public:
  /// `shell` outlives the form, and its gateway has a connection.
  explicit CostCenters(shell::Shell& shell);

  /// Reads the centres. Throws data::DataError.
  void open() { readAndSelect(kNone); }

  ui::Grid grid;
  ui::Label lblCode;
  ui::TextField txtCode;
  ui::Label lblName;
  ui::TextField txtName;
  ui::PushButton cmdNew;
  ui::PushButton cmdSave;
  ui::PushButton cmdDelete;
  ui::PushButton cmdExit;

 private:
  static constexpr std::int32_t kNone = -1;
  struct Typed {
    std::string code;
    std::string name;
  };

  void loadControls();
  /// Reads the list again; the centre of that ID is selected, if it is there.
  void readAndSelect(std::int32_t id);
  [[nodiscard]] std::int32_t selectedID() const;
  void showSelected();
  /// The fields, if they can be stored; otherwise tells the user. An empty name: they can't.
  [[nodiscard]] Typed typedFor(std::int32_t id);
  [[nodiscard]] std::int32_t firstID(const std::string& statement);
  void show(Typed center);
  /// Blanks the fields for a new centre; only saving writes it.
  void startNew();
  void save();
  void remove();
  void exit();
  /// Whether the fields are as they were shown; else the user is asked.
  [[nodiscard]] bool mayDropTyped();

  shell::Shell& shell_;
  /// The fields as last shown, before the user edited them.
  Typed shown_;
  /// The fields are for a new centre, whatever row is selected.
  bool isNew_ = false;
};

}  // namespace ledgertree::pactkit
