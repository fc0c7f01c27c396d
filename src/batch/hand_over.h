#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/shell.h"

namespace ledgertree::batch {

/// Work done by outside components: each is created by its name, given the user and the database, and asked
/// to do its work, which ends before the function returns.
///
/// An unknown component is registered once, from the folder "System" below `basePath` (which ends in a
/// separator), and created again; only if it is still unknown is the user told. All other failures are
/// ignored: a component reports failures of its own work. These functions never throw.

/// Passes the whole chart of vwAccount to SheetKit.SheetWriter as an export statement.
void exportChart(shell::Shell& shell, std::string_view basePath);
/// Passes rows of texts to SheetKit.SheetWriter, the headings first.
void exportRows(shell::Shell& shell, std::string_view basePath,
                const std::vector<std::vector<std::string>>& rows);
/// Opens the cost centres in PactKit.PactEditor.
void editCostCenters(shell::Shell& shell, std::string_view basePath);

}  // namespace ledgertree::batch
