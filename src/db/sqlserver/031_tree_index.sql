-- The children of a tree node in the order of their codes. The tree asks for isnull(ParentID, -1) = …, where -1 stands
-- for the top; the optimiser finds that expression in a computed column, and its index with it.
--
-- Whoever writes to a table that has an index on a computed column needs these settings: ansi_nulls, ansi_padding,
-- ansi_warnings, arithabort, concat_null_yields_null and quoted_identifier on, numeric_roundabort off. ODBC, OLE DB and
-- .NET set them so by themselves. What doesn't is an old DB-Library program, sqlcmd without its option -I, and a
-- procedure that was made with quoted_identifier or ansi_nulls off: its writes to tblAccount fail with error 1934. A
-- host that has such writers leaves this script out. Without it the screens show the same, and a level of the tree is
-- found by a look at all accounts.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

if columnproperty(object_id(N'dbo.tblAccount'), N'TreeParentID', 'ColumnId') is null
  alter table dbo.tblAccount add TreeParentID as isnull(ParentID, -1);
GO

if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountTree%')
  create index ixAccountTree on dbo.tblAccount (TreeParentID, Code);
GO
