-- Versions are noted from here on.
if object_id(N'dbo.tblLedgerTreeVersion') is null
  create table dbo.tblLedgerTreeVersion (
    Version int not null constraint pkLedgerTreeVersion primary key,
    Since datetime not null constraint dfLedgerTreeVersionSince default getdate()
  );
GO

-- Codes that differ by the letters for yeh and kaf, by case or by blanks at the end alone are one. 033_code_index.sql
-- makes the index.
if columnproperty(object_id(N'dbo.tblAccount'), N'CodeKey', 'ColumnId') is null
  alter table dbo.tblAccount add
    CodeKey as cast(upper(replace(replace(rtrim(cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2),
      nchar(1740), nchar(1610)), nchar(1705), nchar(1603))) as nvarchar(20));
GO
