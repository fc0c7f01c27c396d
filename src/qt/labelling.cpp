#include "qt/labelling.h"

#include <algorithm>
#include <limits>

#include "qt/text.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/lookup_field.h"

namespace ledgertree::qt {

namespace {

constexpr ui::Twips kReach = 1500;  ///< a label further away belongs to something else
constexpr ui::Twips kTouch = 120;
/// Added to the distance of a label above a field, so that one beside the field is always nearer.
constexpr int kAbove = 100'000;

/// The distance of a label from a field that it may belong to; negative if it can't.
int distance(const ui::Bounds& label, const ui::Bounds& field) {
  const bool sameLine = label.top < field.top + std::min(field.height, 2 * label.height) &&
                        label.top + label.height > field.top;
  if (sameLine && label.left >= field.left + field.width - kTouch)
    return std::max(label.left - field.left - field.width, 0);
  const bool sameColumn = label.left < field.left + field.width && label.left + label.width > field.left;
  const int gap = field.top - label.top - label.height;
  if (sameColumn && gap >= -kTouch) return kAbove + std::max(gap, 0);
  return -1;
}

QString withoutColon(const std::string& caption) {
  QString text = toQt(caption).trimmed();
  while (text.endsWith(QLatin1Char(':'))) text.chop(1);
  return text.trimmed();
}

std::string captionOf(const ui::Control& control) {
  if (const auto* button = dynamic_cast<const ui::PushButton*>(&control)) return button->caption();
  if (const auto* radio = dynamic_cast<const ui::RadioButton*>(&control)) return radio->caption();
  if (const auto* box = dynamic_cast<const ui::CheckBox*>(&control)) return box->caption();
  return {};
}

}  // namespace

const ui::Label* labelOf(const ui::Form& form, const ui::Control& control) {
  if (!captionOf(control).empty()) return nullptr;
  const ui::Label* nearest = nullptr;
  int least = std::numeric_limits<int>::max();
  for (const ui::Control* other : form.controls()) {
    const auto* label = dynamic_cast<const ui::Label*>(other);
    if (label == nullptr || label->frame() != control.frame() || label->caption().empty()) continue;
    const int far = distance(label->bounds(), control.bounds());
    if (far < 0 || far % kAbove > kReach || far >= least) continue;
    least = far;
    nearest = label;
  }
  return nearest;
}

QString accessibleNameOf(const ui::Control& control, const ui::Label* label) {
  if (!control.accessibleName().empty()) return toQt(control.accessibleName());
  if (const std::string caption = captionOf(control); !caption.empty()) return toQt(caption);
  if (label != nullptr) return withoutColon(label->caption());
  return toQt(control.hint());
}

bool isCalledBy(const ui::Label& label, const ui::Control& control) {
  return accessibleNameOf(control, &label) == withoutColon(label.caption());
}

QString tooltipOf(const ui::Control& control) {
  QString hint = toQt(control.hint());
  if (const auto* lookup = dynamic_cast<const ui::LookupField*>(&control);
      lookup != nullptr && !lookup->detail().empty())
    hint = hint.isEmpty() ? toQt(lookup->detail()) : toQt(lookup->detail()) + QLatin1String(" - ") + hint;
  const auto* button = dynamic_cast<const ui::PushButton*>(&control);
  const std::string keys = button == nullptr ? std::string() : button->shortcut().text();
  if (keys.empty()) return hint;
  // Keeps the keys left-to-right within the Persian line.
  const QString shortcut = QChar(0x2066) + toQt(keys) + QChar(0x2069);
  return hint.isEmpty() ? shortcut : hint + QLatin1String(" (") + shortcut + QLatin1Char(')');
}

}  // namespace ledgertree::qt
