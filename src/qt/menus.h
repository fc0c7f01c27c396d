#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <utility>
#include <vector>

#include "ui/menu.h"

namespace ledgertree::qt {

/// The menus of one form: its menu bar and its context menus. The entries say what is shown, enabled and
/// checked.
class Menus : public QObject {
 public:
  /// Fills the bar with the top-level entries; returns whether there are any.
  bool fill(QMenuBar& bar, const std::vector<ui::MenuEntry*>& entries);
  /// A menu with the entries under `menu`, for the caller to open. It deletes itself when it closes.
  [[nodiscard]] QMenu* makePopUp(const ui::MenuEntry& menu, QWidget& parent);
  /// The entries changed.
  void follow();
  /// The form is being destroyed.
  void detach();

 private:
  void fillMenu(QMenu& menu, const std::vector<ui::MenuEntry*>& entries);
  void bind(QAction& action, ui::MenuEntry& entry);

  std::vector<std::pair<QPointer<QAction>, ui::MenuEntry*>> actions_;
};

}  // namespace ledgertree::qt
