-- The tables of the chart.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- The accounts, one row each. 040_triggers.sql keeps NoLevel.
if object_id(N'dbo.tblAccount') is null
  create table dbo.tblAccount (
    ID int identity (1, 1) not null constraint pkAccount primary key,
    -- null: an account of the top level
    ParentID int null constraint fkAccountParent references dbo.tblAccount (ID),
    Code varchar(20) null,
    Title varchar(100) null,
    NoLevel int not null constraint dfAccountNoLevel default 1,                -- 1 at the top
    GroupID int null,                                                          -- null: none
    BranchID int null constraint dfAccountBranchID default 0,                  -- 0: none
    PositionID int null constraint dfAccountPositionID default 0,              -- 0: none
    CreateDate datetime not null constraint dfAccountCreateDate default getdate(),
    FarsiCreateDate varchar(10) null,
    Notes varchar(250) null,
    AccountNatureID int null constraint dfAccountAccountNatureID default 0,    -- 0 debit, 1 credit, 2 both
    IsPermanent int null constraint dfAccountIsPermanent default 0,            -- 0 temporary, 1 permanent
    IsClosed int null constraint dfAccountIsClosed default 0,                  -- 0 open, 1 closed
    MaxDebit money null,
    MaxCredit money null,
    -- The code as it is compared, whatever the collation: ی as ي, ک as ك, small letters as capital ones, no blanks at
    -- the end.
    CodeKey as cast(upper(replace(replace(rtrim(cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2),
      nchar(1740), nchar(1610)), nchar(1705), nchar(1603))) as nvarchar(20))
  );
GO

-- Every account with each of its descendants, at any depth, without itself. Only the triggers write here. There is no
-- reference to tblAccount: two cascades between the same tables are refused, so a trigger takes their place.
if object_id(N'dbo.tblAccountParent') is null
  create table dbo.tblAccountParent (
    ID int not null,       -- the ancestor
    ChildID int not null,  -- the descendant
    constraint pkAccountParent primary key (ID, ChildID)
  );
GO

-- The accounts that are shown in a fiscal period.
if object_id(N'dbo.tblAccountPeriodAccount') is null
  create table dbo.tblAccountPeriodAccount (
    AccountID int not null constraint fkPeriodAccountAccount references dbo.tblAccount (ID) on delete cascade,
    PeriodID int not null,
    constraint pkPeriodAccount primary key (PeriodID, AccountID)
  );
GO

-- The group, entity class and entity object of an account; null stands for none. RelationID means nothing to the chart: a
-- table is replicated, and its changes are tracked, by a key.
if object_id(N'dbo.tblAccountRelatedObjects') is null
  create table dbo.tblAccountRelatedObjects (
    AccountID int not null constraint fkRelatedObjectsAccount references dbo.tblAccount (ID) on delete cascade,
    AccountGroupID int null,
    RelatedClassID int null,
    RelatedObjectID int null,
    RelationID int identity (1, 1) not null constraint pkRelatedObjects primary key
  );
GO

-- The entity classes of an account on their levels.
if object_id(N'dbo.tblAccountRelatedClasses') is null
  create table dbo.tblAccountRelatedClasses (
    AccountID int not null constraint fkRelatedClassesAccount references dbo.tblAccount (ID) on delete cascade,
    ClassID int not null,
    Sequence int not null,        -- the level, from 1
    IncludeAllObjects int null,   -- null and 1: all objects of the class; 0: those in tblAccountRelatedClassesDetail
    constraint pkRelatedClasses primary key (AccountID, ClassID, Sequence)
  );
GO

-- The chosen objects of a class of an account.
if object_id(N'dbo.tblAccountRelatedClassesDetail') is null
  create table dbo.tblAccountRelatedClassesDetail (
    AccountID int not null constraint fkRelatedClassesDetailAccount references dbo.tblAccount (ID) on delete cascade,
    ClassID int not null,
    ObjectID int not null,
    constraint pkRelatedClassesDetail primary key (AccountID, ClassID, ObjectID)
  );
GO

-- How often the accounts, their periods or their relations were changed: a screen that rests asks for it, to learn cheaply
-- whether to look again. Each session counts in a row of its own, so that nobody waits for anybody. Only the triggers
-- write here.
if object_id(N'dbo.tblLedgerTreeChanges') is null
  create table dbo.tblLedgerTreeChanges (
    Writer int not null constraint pkLedgerTreeChanges primary key,  -- @@spid
    Changes bigint not null
  );
GO
