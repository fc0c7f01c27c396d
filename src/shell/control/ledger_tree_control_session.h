#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data/packet.h"
#include "ledgertree/chart_events.h"
#include "mainform/form/form_main.h"
#include "shell/shell.h"
#include "ui/desktop.h"

namespace ledgertree {

class LedgerTreeControl;

/// What all controls of a process share: a Shell, and the one FormMain while it is loaded. A test makes its
/// own.
class ControlSession {
 public:
  explicit ControlSession(std::unique_ptr<ui::Desktop> desktop);

  /// The session of the process. Throws std::logic_error before a desktop was installed.
  [[nodiscard]] static ControlSession& process();
  /// Makes the session of the process; a second desktop throws std::logic_error.
  static ControlSession& install(std::unique_ptr<ui::Desktop> desktop);

  /// A control on this session; a host's own are on that of the process.
  [[nodiscard]] LedgerTreeControl makeControl();
  [[nodiscard]] shell::Shell& shell() { return shell_; }
  /// Ahead of each call of the host: throws while the screen waits for the database and lets nothing else
  /// happen.
  void requireAnswered() const;
  /// Ahead of a call that shows the form, with or without another record: asks the person where it would drop
  /// what is being typed, and leaves a form that shows another database. False where the person stays;
  /// nothing has changed then. Throws where the text is no connection text, and where the form is in the
  /// middle of something in the other database.
  [[nodiscard]] bool makeWay(const std::string& connectionText, bool forAnotherRecord);
  /// Behind such a call: a form that never came up is gone.
  void dropUnshown();
  /// The main form, loaded if it isn't. Throws what its load throws, and is not loaded then.
  [[nodiscard]] mainform::FormMain& loadedForm();
  /// What ClearShow asks from the right to see the chart on, as far as it is known ahead of the form's load.
  [[nodiscard]] std::vector<data::Command> questionsOfStart() const;
  /// Null while it isn't loaded.
  [[nodiscard]] mainform::FormMain* form() const { return form_.get(); }
  /// Runs when nothing else does, after the form was left; not where it was loaded anew by then.
  std::function<void()> onLeft;
  /// Told of each event, in their order, when no event procedure of the form runs.
  std::function<void(const ChartEvent&)> onEvent;

 private:
  void formClosed();
  /// When nothing else runs; where an event procedure does, its end comes back to this.
  void tellNews();

  std::unique_ptr<ui::Desktop> desktop_;
  shell::Shell shell_;
  std::unique_ptr<mainform::FormMain> form_;
  /// Whether the form was on the screen since its load; one that a host took off keeps what was typed.
  bool cameUp_ = false;
};

}  // namespace ledgertree
