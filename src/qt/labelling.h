#pragma once

#include <QString>

#include "ui/form.h"

namespace ledgertree::ui {
class Label;
}

namespace ledgertree::qt {

/// What helps a person to find their way: names that a screen reader says, tooltips, and shortcuts.

/// The label that stands beside a field (at its right) or else right above it; null where there is none.
[[nodiscard]] const ui::Label* labelOf(const ui::Form& form, const ui::Control& control);
/// The control's own name for it, else its caption, else the label's, else its hint.
[[nodiscard]] QString accessibleNameOf(const ui::Control& control, const ui::Label* label);
/// Whether the name of a control is what its label says.
[[nodiscard]] bool isCalledBy(const ui::Label& label, const ui::Control& control);
/// The hint, with the shortcut behind it; for a look-up, more about the row that it holds.
[[nodiscard]] QString tooltipOf(const ui::Control& control);

}  // namespace ledgertree::qt
