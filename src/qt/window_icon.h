#pragma once

#include <QIcon>

namespace ledgertree::qt {

/// What the windows of the product bear in a task bar, where the host has no picture of its own: a small tree
/// of accounts. The icon of the demo host's entry in the menu is the same one.
[[nodiscard]] QIcon windowIcon();

}  // namespace ledgertree::qt
