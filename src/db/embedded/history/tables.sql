-- The memory of the chart: who changed what, when, and what was there before. It is made when it is switched on. The
-- table of what was changed of tblAccount, and the triggers that write all this, are made from the fields of an account.
--
-- A change is written by the statement that made it, or not at all; one that is undone leaves nothing. Only built-in
-- functions stand here, since any program can open the file.

-- Since when the memory is without a gap, UTC; one row.
create table if not exists tblAccountMemory (
  ID integer primary key,
  Since datetime not null
);

-- The operations. A statement of another program is one of its own, of the kind 0, whose user nobody knows.
create table if not exists tblAccountOperation (
  ID integer primary key,
  Moment datetime not null,         -- of its first change, UTC, to the millisecond
  UserID int,
  Kind int not null,
  TakesBack int,                    -- the operation that this one has taken back
  IsCut int not null default 0      -- 1: of its changes the first ones are gone
);

-- Each row that came into a table of what belongs to an account, or went; one that is changed goes and comes. The
-- numbers of the changes go on through this table and tblAccountChange.
create table if not exists tblAccountLinkChange (
  ID integer primary key,
  OperationID int not null,
  Link int not null,   -- 1 tblAccountPeriodAccount, 2 tblAccountRelatedObjects, 3 tblAccountRelatedClasses, 4 …Detail
  IsNew int not null,  -- 1: the row came, 0: it went
  AccountID int,
  First int,           -- the columns behind AccountID, in their order
  Second int,
  Third int
);
create index if not exists ixAccountLinkChangeOperation on tblAccountLinkChange (OperationID);
create index if not exists ixAccountLinkChangeAccount on tblAccountLinkChange (AccountID);

-- The operation whose statement runs. A connection puts its row here and takes it away within the transaction of the
-- statement, so that nobody else ever sees it. That the table is there says that the memory is on.
create table if not exists tblAccountOperationNow (
  OperationID int,     -- null: nothing was changed yet
  UserID int,
  Kind int not null,
  TakesBack int
);

-- The row that an insert or a change is about to replace, for which no trigger of a deletion may run. Of no meaning
-- between two statements.
create table if not exists tblAccountLinkReplaced (
  Link int,
  Place int,           -- the rowid in a table without a key
  AccountID int,
  First int,
  Second int,
  Third int
);
