-- The version of the schema: a row a version that the database has had, the present one last. Whoever adds a step raises
-- the number here.
--
-- These scripts make a database new or anew. One of an older version needs the steps between the two as well, which
-- ledgertree-schema takes ahead of them; it knows the database as its present version by then.
declare @Version int = 6;
if object_id(N'dbo.tblLedgerTreeVersion') is null
begin
  if object_id(N'dbo.tblAccount') is not null
    throw 51007, N'This database has an older version of the schema. Let ledgertree-schema take it up.', 1;
  create table dbo.tblLedgerTreeVersion (
    Version int not null constraint pkLedgerTreeVersion primary key,
    Since datetime not null constraint dfLedgerTreeVersionSince default getdate()
  );
  insert into dbo.tblLedgerTreeVersion (Version) values (@Version);
end;
if (select max(Version) from dbo.tblLedgerTreeVersion) < @Version
  throw 51007, N'This database has an older version of the schema. Let ledgertree-schema take it up.', 1;
if (select max(Version) from dbo.tblLedgerTreeVersion) > @Version
  throw 51008, N'This database has a newer version of the schema than these scripts.', 1;
GO
