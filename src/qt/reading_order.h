#pragma once

#include <QRect>
#include <cstddef>
#include <vector>

namespace ledgertree::qt {

/// The order in which a right-to-left reader meets rectangles: blocks above one another from top to bottom,
/// blocks side by side from right to left, and the same inside each block. Returns their indices.
[[nodiscard]] std::vector<std::size_t> readingOrder(const std::vector<QRect>& rectangles);

}  // namespace ledgertree::qt
