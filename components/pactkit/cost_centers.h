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
/// account refers to (tblAccount.PositionID) isn't removed.
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
  /// Reads the list anew; the centre of that ID is selected, if it is there.
  void readAndSelect(std::int32_t id);
  [[nodiscard]] std::int32_t selectedID() const;
  void showSelected();
  /// The fields, if they can be stored for that centre; else the person is told. An empty name means no.
  [[nodiscard]] Typed typedFor(std::int32_t id);
  [[nodiscard]] std::int32_t firstID(const std::string& statement);
  void show(Typed center);
  /// Blanks the fields for a centre that isn't there yet; only the save writes it.
  void startNew();
  void save();
  void remove();
  void exit();
  /// Whether the fields are as they were shown; else the person is asked.
  [[nodiscard]] bool mayDropTyped();

  shell::Shell& shell_;
  /// What stood in the fields before the person wrote into them.
  Typed shown_;
  /// What is typed is a new centre, whatever row is selected.
  bool isNew_ = false;
};

}  // namespace ledgertree::pactkit
