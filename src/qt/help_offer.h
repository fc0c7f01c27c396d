#pragma once

#include <QString>
#include <QWidget>
#include <optional>

namespace ledgertree::qt {

/// F1 in `screen`, or in anything in it, opens the guide at the section of what has the focus; does nothing
/// where the process has no guide (see guide_window.h). A screen that shows a message gives it, so that the
/// guide opens at its line in the list of messages.
///
/// The offer is a mark on the widget and no call: a plug-in brings its own copy of this layer, and its
/// screens lead to the one guide of the process all the same.
void offerGuide(QWidget& screen, const QString& message = {});

/// The message of a widget that offers the guide, empty for none; nothing for any other object.
[[nodiscard]] std::optional<QString> messageOfOffer(const QObject& object);

}  // namespace ledgertree::qt
