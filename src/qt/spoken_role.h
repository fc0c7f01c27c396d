#pragma once

#include <QAccessible>
#include <QWidget>

namespace ledgertree::qt {

/// Sets the role that screen readers announce for a widget whose class says too little: a window drawn by a
/// plain widget, or a radio button that doesn't toggle itself, which the toolkit takes for a check box. The
/// role may change; set it before anything is reported of the widget, its text included.
void setSpokenRole(QWidget& widget, QAccessible::Role role);

}  // namespace ledgertree::qt
