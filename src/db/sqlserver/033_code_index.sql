-- The test for an existing code, see CodeKey in 010_tables.sql. Not unique: a recoding passes through equal codes, and
-- older databases have them. What 031_tree_index.sql says of an index on a computed column holds here too; without it a
-- save looks at all accounts.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountKey%')
  create index ixAccountKey on dbo.tblAccount (CodeKey);
GO
