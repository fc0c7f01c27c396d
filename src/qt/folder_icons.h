#pragma once

#include <QIcon>

namespace ledgertree::qt {

/// The picture of a tree node by its number: 1 to 3 a red, a yellow and a blue folder, 4 to 6 the same with a
/// small badge in the lower right corner. Drawn, not loaded, so that it is sharp at every size. Null for any
/// other number.
[[nodiscard]] QIcon folderIcon(int image);

}  // namespace ledgertree::qt
