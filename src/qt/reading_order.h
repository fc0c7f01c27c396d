#pragma once

#include <QRect>
#include <cstddef>
#include <vector>

namespace ledgertree::qt {

/// The order in which a right-to-left reader's eye meets rectangles: blocks that stand above one another from
/// top to bottom, blocks side by side from right to left, and so on inside each block. Gives their places.
[[nodiscard]] std::vector<std::size_t> readingOrder(const std::vector<QRect>& rectangles);

}  // namespace ledgertree::qt
