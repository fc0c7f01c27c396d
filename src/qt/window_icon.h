#pragma once

#include <QIcon>

namespace ledgertree::qt {

/// The icon of the windows in a task bar if the host has none: a small tree of accounts, as in the demo
/// host's menu entry.
[[nodiscard]] QIcon windowIcon();

}  // namespace ledgertree::qt
