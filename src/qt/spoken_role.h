#pragma once

#include <QAccessible>
#include <QWidget>

namespace ledgertree::qt {

/// What a screen reader calls a widget whose class says too little: a window that is drawn by a plain widget,
/// or a radio button that never turns by itself, which the toolkit takes for a check box. The role may
/// change; it has to be there before anything is told of the widget, its text included.
void setSpokenRole(QWidget& widget, QAccessible::Role role);

}  // namespace ledgertree::qt
