#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/shell.h"

namespace ledgertree::batch {

/// What is handed over to outside components: each is made by its name, told who works and on which
/// database, and asked to do its work, which ends before the operation does.
///
/// A component that isn't known is registered once, from the folder "System" below `basePath` (which ends in
/// a separator), and made once more; only if it is still unknown the person is told. Every other failure
/// passes without a sign: what goes wrong in its work the component tells by itself. Neither throws.

/// Gives the whole chart of vwAccount to SheetKit.SheetWriter as an export statement.
void exportChart(shell::Shell& shell, std::string_view basePath);
/// Gives rows of texts to SheetKit.SheetWriter, the headings first.
void exportRows(shell::Shell& shell, std::string_view basePath,
                const std::vector<std::vector<std::string>>& rows);
/// Opens the cost centres in PactKit.PactEditor.
void editCostCenters(shell::Shell& shell, std::string_view basePath);

}  // namespace ledgertree::batch
