#include "qt/menus.h"

#include "qt/appearance.h"
#include "qt/text.h"

namespace ledgertree::qt {

namespace {

void show(QAction& action, const ui::MenuEntry& entry) {
  action.setVisible(entry.visible());
  if (entry.separator()) return;
  action.setEnabled(entry.enabled());
  action.setCheckable(entry.checked());
  action.setChecked(entry.checked());
}

}  // namespace

bool Menus::fill(QMenuBar& bar, const std::vector<ui::MenuEntry*>& entries) {
  bar.setLayoutDirection(Qt::RightToLeft);
  for (ui::MenuEntry* entry : entries) {
    if (entry->entries().empty()) {
      bind(*bar.addAction(literalCaption(entry->caption())), *entry);
      continue;
    }
    QMenu* menu = bar.addMenu(literalCaption(entry->caption()));
    fillMenu(*menu, entry->entries());
    bind(*menu->menuAction(), *entry);
  }
  return !entries.empty();
}

void Menus::fillMenu(QMenu& menu, const std::vector<ui::MenuEntry*>& entries) {
  menu.setAttribute(Qt::WA_WindowPropagation);
  menu.setLayoutDirection(Qt::RightToLeft);
  for (ui::MenuEntry* entry : entries) {
    if (entry->separator()) {
      bind(*menu.addSeparator(), *entry);
    } else if (entry->entries().empty()) {
      bind(*menu.addAction(literalCaption(entry->caption())), *entry);
    } else {
      QMenu* below = menu.addMenu(literalCaption(entry->caption()));
      fillMenu(*below, entry->entries());
      bind(*below->menuAction(), *entry);
    }
  }
  dress(menu);
}

void Menus::bind(QAction& action, ui::MenuEntry& entry) {
  action.setObjectName(toQt(entry.name()));
  // Only displayed beside the caption. In a host's window the focus decides which keys apply, so the action
  // must not handle them.
  if (!entry.keys().empty()) {
    action.setShortcut(QKeySequence(toQt(entry.keys().text())));
    action.setShortcutContext(Qt::WidgetShortcut);
  }
  show(action, entry);
  actions_.emplace_back(&action, &entry);
  connect(&action, &QAction::triggered, this, [this, &action, &entry] {
    // A checkable action toggles by itself; the entry has the real state.
    if (actions_.empty()) return;
    show(action, entry);
    entry.click();
  });
}

QMenu* Menus::makePopUp(const ui::MenuEntry& menu, QWidget& parent) {
  auto* popUp = new QMenu(&parent);
  popUp->setAttribute(Qt::WA_DeleteOnClose);
  fillMenu(*popUp, menu.entries());
  return popUp;
}

void Menus::follow() {
  std::erase_if(actions_, [](const auto& bound) { return bound.first.isNull(); });
  for (const auto& [action, entry] : actions_) show(*action, *entry);
}

void Menus::detach() { actions_.clear(); }

}  // namespace ledgertree::qt
