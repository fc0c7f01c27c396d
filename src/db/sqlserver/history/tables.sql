-- The memory of the chart: who changed what, when, and what was there before. It is made when it is switched on; docs/history.md
-- says what stands in it. What was changed of tblAccount has two columns for each field of an account, Old… and New…,
-- which ledgertree-schema adds, as it makes the triggers that write all this.
if object_id(N'dbo.tblAccountMemory') is null
  create table dbo.tblAccountMemory (
    ID int not null constraint pkAccountMemory primary key,
    Since datetime2(3) not null,  -- since when it is without a gap, UTC
    IsOn int not null
  );
GO

-- The operations. What another program does in a transaction is one, of the kind 0, whose user nobody knows.
if object_id(N'dbo.tblAccountOperation') is null
  create table dbo.tblAccountOperation (
    ID int identity (1, 1) not null constraint pkAccountOperation primary key,
    Moment datetime2(3) not null,  -- of its first change, UTC
    UserID int null,
    Kind int not null,
    TakesBack int null,            -- the operation that this one has taken back
    IsCut int not null constraint dfAccountOperationIsCut default 0  -- 1: of its changes the first ones are gone
  );
GO

-- The numbers of the changes go on through both tables. Whoever changes a row holds it, so that of one row a later change
-- has a greater number; nobody waits for a number.
if object_id(N'dbo.sqAccountChange') is null
  create sequence dbo.sqAccountChange as bigint start with 1 increment by 1;
GO

if object_id(N'dbo.tblAccountChange') is null
begin
  create table dbo.tblAccountChange (
    ID bigint not null constraint pkAccountChange primary key
      constraint dfAccountChangeID default (next value for dbo.sqAccountChange),
    OperationID int not null,
    Event int not null,      -- 1 came, 2 changed, 3 went
    AccountID int not null,
    Fields bigint not null   -- a bit for each column that differs
  );
  create index ixAccountChangeOperation on dbo.tblAccountChange (OperationID);
  create index ixAccountChangeAccount on dbo.tblAccountChange (AccountID);
end;
GO

if object_id(N'dbo.tblAccountLinkChange') is null
begin
  create table dbo.tblAccountLinkChange (
    ID bigint not null constraint pkAccountLinkChange primary key
      constraint dfAccountLinkChangeID default (next value for dbo.sqAccountChange),
    OperationID int not null,
    Link int not null,       -- 1 tblAccountPeriodAccount, 2 tblAccountRelatedObjects, 3 tblAccountRelatedClasses, 4 …Detail
    IsNew int not null,      -- 1: the row came, 0: it went
    AccountID int not null,
    First int null,          -- the columns behind AccountID, in their order
    Second int null,
    Third int null
  );
  create index ixAccountLinkChangeOperation on dbo.tblAccountLinkChange (OperationID);
  create index ixAccountLinkChangeAccount on dbo.tblAccountLinkChange (AccountID);
end;
GO

-- A session asks at its opening whether there is a memory.
grant select on dbo.tblAccountMemory to public;
grant select on dbo.tblAccountOperation to LedgerTreeUsers;
grant select on dbo.tblAccountChange to LedgerTreeUsers;
grant select on dbo.tblAccountLinkChange to LedgerTreeUsers;
GO
