#pragma once

#include <string_view>
#include <vector>

namespace ledgertree::db {

/// A step that takes a database from one version of the schema to the next: "steps/002_codes.sql" in the
/// folder of its engine reaches version 2. Version 1 had no steps.
struct Step {
  int version = 0;          ///< the version that it reaches
  std::string_view script;  ///< its path
  /// The path of a query of the same name in "steps/reports/", which is asked ahead of the step: what a
  /// person should know of rows that the step leaves as they are, a text a row. Empty where there is none.
  std::string_view report;
};

/// The version that this program works with: what the last step reaches.
[[nodiscard]] int schemaVersion();

/// The steps in a folder ("db/embedded/steps/") that a database of this version hasn't been taken yet.
[[nodiscard]] std::vector<Step> stepsBehind(int version, std::string_view folder);

/// Throws data::DataError(Connection) for a database of another version, and says what to do about it.
void requireSchemaVersion(int version);

/// A batch that puts the version of a database of SQL Server into @Version: 0 where it has no chart. The
/// first version didn't note itself.
inline constexpr std::string_view kFindServerVersion =
    "declare @Version int = case when object_id(N'dbo.tblAccount') is null then 0 else 1 end; "
    "if object_id(N'dbo.tblLedgerTreeVersion') is not null "
    "select @Version = isnull(max(Version), @Version) from dbo.tblLedgerTreeVersion; ";

}  // namespace ledgertree::db
