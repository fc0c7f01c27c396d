#pragma once

#include <functional>
#include <memory>

#include "mainform/form/form_main.h"
#include "shell/shell.h"
#include "ui/desktop.h"

namespace ledgertree {

/// What all controls of a process share: a Shell, and the one FormMain while it is loaded. A test makes its
/// own.
class ControlSession {
 public:
  explicit ControlSession(std::unique_ptr<ui::Desktop> desktop);

  /// The session of the process. Throws std::logic_error before a desktop was installed.
  [[nodiscard]] static ControlSession& process();
  /// Makes the session of the process; a second desktop throws std::logic_error.
  static ControlSession& install(std::unique_ptr<ui::Desktop> desktop);

  [[nodiscard]] shell::Shell& shell() { return shell_; }
  /// The main form, loaded if it isn't. Throws what its load throws, and is not loaded then.
  [[nodiscard]] mainform::FormMain& loadedForm();
  /// Null while it isn't loaded.
  [[nodiscard]] mainform::FormMain* form() const { return form_.get(); }
  /// Runs when nothing else does, after the form was left; not where it was loaded anew by then.
  std::function<void()> onLeft;

 private:
  void formClosed();

  std::unique_ptr<ui::Desktop> desktop_;
  shell::Shell shell_;
  std::unique_ptr<mainform::FormMain> form_;
};

}  // namespace ledgertree
