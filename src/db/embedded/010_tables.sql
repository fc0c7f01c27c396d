-- The tables of the chart.
--
-- A column is declared by the type that its values have for the program: int; money, a whole number of ten-thousandths;
-- datetime, text yyyy-mm-dd hh:mm:ss; varchar(n), n counting characters. Text compares without regard to letter case.

-- The accounts, one row each. A key is never given twice, so that nobody who still remembers a deleted account finds
-- another one under its number. 040_triggers.sql keeps NoLevel.
create table tblAccount (
  ID integer primary key autoincrement check (ID between 1 and 2147483647),
  ParentID int references tblAccount (ID),        -- null: an account of the top level
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Title varchar(100) collate nocase check (length(Title) <= 100),
  NoLevel int not null default 1,                 -- 1 at the top
  GroupID int,                                    -- null: none
  BranchID int default 0,                         -- 0: none
  PositionID int default 0,                       -- 0: none
  CreateDate datetime not null default (datetime('now', 'localtime')),
  FarsiCreateDate varchar(10) check (length(FarsiCreateDate) <= 10),
  Notes varchar(250) collate nocase check (length(Notes) <= 250),
  AccountNatureID int default 0,                  -- 0 debit, 1 credit, 2 both
  IsPermanent int default 0,                      -- 0 temporary, 1 permanent
  IsClosed int default 0,                         -- 0 open, 1 closed
  MaxDebit money check (typeof(MaxDebit) in ('integer', 'null')),
  MaxCredit money check (typeof(MaxCredit) in ('integer', 'null'))
);

-- Every account with each of its descendants, at any depth, without itself. Only the triggers write here.
create table tblAccountParent (
  ID int not null,       -- the ancestor
  ChildID int not null,  -- the descendant
  primary key (ID, ChildID)
) without rowid;

-- The accounts that are shown in a fiscal period.
create table tblAccountPeriodAccount (
  AccountID int not null,
  PeriodID int not null,
  primary key (PeriodID, AccountID)
) without rowid;

-- The group, entity class and entity object of an account; null stands for none.
create table tblAccountRelatedObjects (
  AccountID int not null references tblAccount (ID),
  AccountGroupID int,
  RelatedClassID int,
  RelatedObjectID int
);

-- The entity classes of an account on their levels.
create table tblAccountRelatedClasses (
  AccountID int not null,
  ClassID int not null,
  Sequence int not null,   -- the level, from 1
  IncludeAllObjects int,   -- null and 1: all objects of the class; 0: those in tblAccountRelatedClassesDetail
  primary key (AccountID, ClassID, Sequence)
) without rowid;

-- The chosen objects of a class of an account.
create table tblAccountRelatedClassesDetail (
  AccountID int not null,
  ClassID int not null,
  ObjectID int not null,
  primary key (AccountID, ClassID, ObjectID)
) without rowid;

-- How often the accounts, their periods or their relations were changed: a screen that rests asks for it, to learn cheaply
-- whether to look again. Only the triggers write here.
create table tblLedgerTreeChanges (
  Writer int not null primary key,  -- here always 0: there is one writer at a time
  Changes bigint not null
);
insert into tblLedgerTreeChanges (Writer, Changes) values (0, 0);
