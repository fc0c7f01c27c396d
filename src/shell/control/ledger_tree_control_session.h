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

/// What all controls of a process share: a Shell, and the one
/// FormMain while it is loaded. Tests create their own.
class ControlSession {
 public:
  explicit ControlSession(std::unique_ptr<ui::Desktop> desktop);

  /// The process's session. Throws std::logic_error before a desktop is installed.
  [[nodiscard]] static ControlSession& process();
  /// Creates the process's session; a second desktop throws std::logic_error.
  static ControlSession& install(std::unique_ptr<ui::Desktop> desktop);

  /// Creates a control on this session; a host's own controls use the process's.
  [[nodiscard]] LedgerTreeControl makeControl();
  [[nodiscard]] shell::Shell& shell() { return shell_; }
  /// Called before each call of the host: throws while the screen waits
  /// for the database and everything else is blocked.
  void requireAnswered() const;
  /// Called before showing the form, with or without another record: asks the user if unsaved input
  /// would be lost, and leaves a form that shows another database. False if the user stays; nothing has
  /// changed then. Throws if the text isn't a connection text, and if the form is busy in the other
  /// database.
  [[nodiscard]] bool makeWay(const std::string& connectionText, bool forAnotherRecord);
  /// Called after showing: drops a form that never appeared.
  void dropUnshown();
  /// The main form, loaded if necessary. Throws what loading throws, and stays unloaded then.
  [[nodiscard]] mainform::FormMain& loadedForm();
  /// The queries of ClearShow from the permission check on, as far as they are known before the form's load.
  [[nodiscard]] std::vector<data::Command> questionsOfStart() const;
  /// Null while it isn't loaded.
  [[nodiscard]] mainform::FormMain* form() const { return form_.get(); }
  /// Called when idle, after the form was left, unless it has been loaded again by then.
  std::function<void()> onLeft;
  /// Called for each event, in order, while no event procedure of the form is running.
  std::function<void(const ChartEvent&)> onEvent;

 private:
  void formClosed();
  /// When idle; a running event procedure triggers it again when it ends.
  void tellNews();

  std::unique_ptr<ui::Desktop> desktop_;
  shell::Shell shell_;
  std::unique_ptr<mainform::FormMain> form_;
  /// Whether the form has been shown since its load; one removed by a host keeps what was typed.
  bool cameUp_ = false;
};

}  // namespace ledgertree
