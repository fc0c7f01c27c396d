#pragma once

#include <initializer_list>

#include "shell/shell.h"
#include "ui/lookup_field.h"

namespace ledgertree::shell {

/// Commands check this before reading selectors and pickers: false if one of them shows typed text that isn't
/// its selected row. Then a notice names the field, which gets the focus.
[[nodiscard]] bool allChosen(Shell& shell, std::initializer_list<ui::LookupField*> fields);

}  // namespace ledgertree::shell
