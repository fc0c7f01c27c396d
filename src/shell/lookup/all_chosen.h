#pragma once

#include <initializer_list>

#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// What a command asks before it reads selectors and pickers: false where one of them has a text on its line
/// that isn't the row it holds. A notice names the field then, and the focus goes there.
[[nodiscard]] bool allChosen(Shell& shell, std::initializer_list<ui::LookupField*> fields);

}  // namespace ledgertree::shell
