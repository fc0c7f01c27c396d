#pragma once

#include <string_view>
#include <vector>

namespace ledgertree::db {

/// A step that upgrades a database from one schema version to the next: "steps/002_codes.sql" in its engine's
/// folder leads to version 2. Version 1 had no steps.
struct Step {
  int version = 0;          ///< the version that it leads to
  std::string_view script;  ///< its path
  /// The path of a query of the same name in "steps/reports/", which runs before the step: what the user
  /// should know about rows that the step leaves as they are, one text per row. Empty if there is none.
  std::string_view report;
};

/// The version that this program works with: the last step's.
[[nodiscard]] int schemaVersion();

/// The steps in a folder ("db/embedded/steps/") that a database of this version still needs.
[[nodiscard]] std::vector<Step> stepsBehind(int version, std::string_view folder);

/// Throws data::DataError(Connection) for a database of another version, saying what to do about it.
void requireSchemaVersion(int version);

/// A batch that puts a SQL Server database's version into @Version: 0 if it has
/// no chart. The first version didn't record itself.
inline constexpr std::string_view kFindServerVersion =
    "declare @Version int = case when object_id(N'dbo.tblAccount') is null then 0 else 1 end; "
    "if object_id(N'dbo.tblLedgerTreeVersion') is not null "
    "select @Version = isnull(max(Version), @Version) from dbo.tblLedgerTreeVersion; ";

}  // namespace ledgertree::db
