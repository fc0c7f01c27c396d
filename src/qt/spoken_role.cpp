#include "qt/spoken_role.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

namespace ledgertree::qt {

namespace {

constexpr const char* kRole = "spokenRole";

/// For a button it also reports the checked state, and lets a screen reader press it.
class Spoken : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  [[nodiscard]] QAccessible::Role role() const override {
    return static_cast<QAccessible::Role>(widget()->property(kRole).toInt());
  }
  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget()); button != nullptr) {
      state.checkable = true;
      state.checked = button->isChecked();
    }
    state.modal = widget()->isModal();
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (qobject_cast<const QAbstractButton*>(widget()) != nullptr && widget()->isEnabled())
      names.prepend(toggleAction());
    return names;
  }
  void doAction(const QString& action) override {
    if (auto* button = qobject_cast<QAbstractButton*>(widget());
        button != nullptr && action == toggleAction())
      return button->click();
    QAccessibleWidget::doAction(action);
  }
};

QAccessibleInterface* speak(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  return widget != nullptr && widget->property(kRole).isValid() ? new Spoken(widget) : nullptr;
}

}  // namespace

void setSpokenRole(QWidget& widget, QAccessible::Role role) {
  QAccessible::installFactory(&speak);  // installed once, however often it is called for
  widget.setProperty(kRole, static_cast<int>(role));
}

}  // namespace ledgertree::qt
