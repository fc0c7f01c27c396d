#pragma once

#include <cstdint>

#include "mainform/account_tree.h"
#include "mainform/main_screen.h"

namespace ledgertree::mainform {

/// The one working screen, put together: it decides what happens at its start, when its size changes, and at
/// its end. Its owner makes it, calls load, shows it, and destroys it in onClosed.
class FormMain : public MainScreen {
 public:
  explicit FormMain(shell::Shell& shell);

  /// Reads the settings, binds the selectors, blanks the record and builds the integrated tree. Throws
  /// data::DataError where the database fails; the form is not to be shown then.
  void load();
  /// Shows one account, read-only; a blank record for an ID below 1.
  void View(std::int32_t accountID);

 protected:
  void unload() override;
  void resized() override;

 private:
  void bindSelectors();
  void showEntityFields();

  shell::Shell& shell_;
  AccountTree tree_;
  /// The size at the last change of size that was followed.
  ui::Size baseline_;
};

}  // namespace ledgertree::mainform
