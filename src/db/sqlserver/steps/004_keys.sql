set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- A table is replicated, and its changes are tracked, by a key. One that somebody gave the table already does.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountRelatedObjects') and is_primary_key = 1)
  alter table dbo.tblAccountRelatedObjects add
    RelationID int identity (1, 1) not null constraint pkRelatedObjects primary key;
GO
