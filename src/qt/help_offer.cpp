#include "qt/help_offer.h"

#include <QVariant>

namespace ledgertree::qt {

namespace {

constexpr const char* kMark = "ledgertreeGuideMessage";

}  // namespace

void offerGuide(QWidget& screen, const QString& message) { screen.setProperty(kMark, message); }

std::optional<QString> messageOfOffer(const QObject& object) {
  const QVariant mark = object.property(kMark);
  return mark.isValid() && object.isWidgetType() ? std::optional(mark.toString()) : std::nullopt;
}

}  // namespace ledgertree::qt
