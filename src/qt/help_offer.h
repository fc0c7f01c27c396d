#pragma once

#include <QString>
#include <QWidget>
#include <optional>

namespace ledgertree::qt {

/// Makes F1 in `screen`, or in any widget in it, open the guide at the section of the focused widget; does
/// nothing if the process has no guide (see guide_window.h). A screen that shows a message passes it, so that
/// the guide opens at its line in the list of messages.
///
/// The offer is a dynamic property, not a function call: a plug-in has its own copy of this layer, and its
/// screens still lead to the one guide of the process.
void offerGuide(QWidget& screen, const QString& message = {});

/// The message of a widget that offers the guide, empty for none; nullopt for any other object.
[[nodiscard]] std::optional<QString> messageOfOffer(const QObject& object);

}  // namespace ledgertree::qt
