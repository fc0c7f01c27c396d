#pragma once

#include <QString>

#include "ui/form.h"

namespace ledgertree::ui {
class Label;
}

namespace ledgertree::qt {

/// Helps users find their way: names for screen readers, tooltips, and shortcuts.

/// The label beside a field (on its right), or else directly above it; null if there is none.
[[nodiscard]] const ui::Label* labelOf(const ui::Form& form, const ui::Control& control);
/// The control's accessible name, else its caption, else its label's, else its hint.
[[nodiscard]] QString accessibleNameOf(const ui::Control& control, const ui::Label* label);
/// Whether the label's text is the control's accessible name.
[[nodiscard]] bool isCalledBy(const ui::Label& label, const ui::Control& control);
/// The hint, followed by the shortcut; for a look-up, details of the held row.
[[nodiscard]] QString tooltipOf(const ui::Control& control);

}  // namespace ledgertree::qt
