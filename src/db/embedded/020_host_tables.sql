-- What belongs to the host application: periods, documents, groups, branches, cost centres, entities, users, settings.
-- A database of its own has them here; a host fills them. The keys of what fits a 16-bit field stay within it. No
-- account refers to them by a declared reference, since a host may empty and fill them as it likes, and 0 means none.

create table tblAccountPeriod (
  ID integer primary key check (ID between 1 and 32767),
  Name varchar(50) collate nocase not null check (length(Name) <= 50),
  BeginDate datetime not null,
  EndDate datetime not null,
  FarsiBeginDate varchar(10) not null check (length(FarsiBeginDate) <= 10),
  FarsiEndDate varchar(10) not null check (length(FarsiEndDate) <= 10)
);

create table tblAccountDocument (
  ID integer primary key check (ID between 1 and 2147483647),
  FarsiDocumentDate varchar(10) not null check (length(FarsiDocumentDate) <= 10),
  DocumentDate datetime,
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblAccountDocumentDetail (
  ID integer primary key check (ID between 1 and 2147483647),
  DocumentID int not null references tblAccountDocument (ID),
  AccountID int not null references tblAccount (ID),
  Debit money not null default 0 check (typeof(Debit) = 'integer'),
  Credit money not null default 0 check (typeof(Credit) = 'integer'),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblAccountGroup (
  ID integer primary key check (ID between 1 and 32767),
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblAccountBranch (
  ID integer primary key check (ID between 1 and 32767),
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Address varchar(250) collate nocase check (length(Address) <= 250)
);

-- The cost and income centres, which an account names as its position.
create table tblAccCostCenter (
  ID integer primary key check (ID between 1 and 32767),
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

-- The entity classes. A class names two views: ViewMajor lists its objects (ID, ParentID, Name), ViewMinor says more
-- about each (ID, Name). No column may be called ClassID, AccountID or Sequence: statements join this table with
-- tblAccountRelatedClasses and name the columns of both without a prefix.
create table tblAccountClass (
  ID integer primary key check (ID between 1 and 32767),
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  ViewMajor varchar(100) not null check (length(ViewMajor) <= 100),
  ViewMinor varchar(100) not null check (length(ViewMinor) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

-- Three families of entities that ship with the tables: persons (flat), projects (a tree of any depth), banks with
-- their branches and accounts. A host adds others with a table, two views and a row of tblAccountClass. ParentID is null
-- at the top; a flat family has it too, for its index.
create table tblEntityPerson (
  ID integer primary key check (ID between 1 and 2147483647),
  ParentID int check (ParentID is null),
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblEntityProject (
  ID integer primary key check (ID between 1 and 2147483647),
  ParentID int,
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblEntityBank (
  ID integer primary key check (ID between 1 and 2147483647),
  ParentID int,
  Code varchar(20) collate nocase check (length(Code) <= 20),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  Description varchar(250) collate nocase check (length(Description) <= 250)
);

create table tblUser (
  ID integer primary key check (ID between 1 and 32767),
  Name varchar(100) collate nocase not null check (length(Name) <= 100),
  PeriodID int  -- the period in which the user works; null: none
);

-- A row is a right: 301 the chart as a whole, 301 and two digits one operation.
create table tblUserPermission (
  UserID int not null references tblUser (ID) on delete cascade,
  FormPermissionID int not null,
  primary key (UserID, FormPermissionID)
) without rowid;

create table tblTarvoSystemParameters (
  ID integer primary key,
  Value varchar(250) collate nocase
);

-- The installation folder of the host, one row; a closing separator belongs to it.
create table tblTarvoBasePath (
  ID integer primary key check (ID = 1),
  BasePath varchar(250) not null check (BasePath = '' or substr(BasePath, -1) in ('/', '\'))
);
