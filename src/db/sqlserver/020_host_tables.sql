-- What belongs to the host application: periods, documents, groups, branches, cost centres, entities, users, settings.
-- A table that is there stays as it is. No account refers to them by a declared reference, since a host may empty and
-- fill them as it likes, and 0 means none. The keys of what fits a 16-bit field stay within it.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

if object_id(N'dbo.tblAccountPeriod') is null
  create table dbo.tblAccountPeriod (
    ID int not null constraint pkAccountPeriod primary key
      constraint ckAccountPeriodID check (ID between 1 and 32767),
    Name varchar(50) not null,
    BeginDate datetime not null,
    EndDate datetime not null,
    FarsiBeginDate varchar(10) not null,
    FarsiEndDate varchar(10) not null
  );
GO

if object_id(N'dbo.tblAccountDocument') is null
  create table dbo.tblAccountDocument (
    ID int not null constraint pkAccountDocument primary key,
    FarsiDocumentDate varchar(10) not null,
    DocumentDate datetime null,
    Description varchar(250) null
  );
GO

if object_id(N'dbo.tblAccountDocumentDetail') is null
  create table dbo.tblAccountDocumentDetail (
    ID int identity (1, 1) not null constraint pkAccountDocumentDetail primary key,
    DocumentID int not null constraint fkDocumentDetailDocument references dbo.tblAccountDocument (ID),
    AccountID int not null constraint fkDocumentDetailAccount references dbo.tblAccount (ID),
    Debit money not null constraint dfDocumentDetailDebit default 0,
    Credit money not null constraint dfDocumentDetailCredit default 0,
    Description varchar(250) null
  );
GO

if object_id(N'dbo.tblAccountGroup') is null
  create table dbo.tblAccountGroup (
    ID int not null constraint pkAccountGroup primary key constraint ckAccountGroupID check (ID between 1 and 32767),
    Code varchar(20) null,
    Name varchar(100) not null,
    Description varchar(250) null
  );
GO

if object_id(N'dbo.tblAccountBranch') is null
  create table dbo.tblAccountBranch (
    ID int not null constraint pkAccountBranch primary key constraint ckAccountBranchID check (ID between 1 and 32767),
    Code varchar(20) null,
    Name varchar(100) not null,
    Address varchar(250) null
  );
GO

-- The cost and income centres, which an account names as its position. Their keys end at 32767, and an identity would skip
-- a thousand of them whenever the server is killed: a row that comes without a key gets the one behind the greatest. A
-- host that adds a column names it in the trigger too.
if object_id(N'dbo.tblAccCostCenter') is null
begin
  create table dbo.tblAccCostCenter (
    ID int not null constraint dfAccCostCenterID default 0,
    Code varchar(20) null,
    Name varchar(100) not null,
    Description varchar(250) null,
    constraint pkAccCostCenter primary key (ID),
    constraint ckAccCostCenterID check (ID between 1 and 32767)
  );
  exec (N'create trigger dbo.trAccCostCenterKey on dbo.tblAccCostCenter instead of insert
as
begin
  set nocount on;
  declare @Last int = (select isnull(max(ID), 0) from dbo.tblAccCostCenter with (updlock, holdlock));
  insert into dbo.tblAccCostCenter (ID, Code, Name, Description)
    select case when ID > 0 then ID else @Last + row_number() over (order by ID) end, Code, Name, Description
    from inserted;
end;');
end;
GO

-- The entity classes. A class names two views: ViewMajor lists its objects (ID, ParentID, Name), ViewMinor says more
-- about each (ID, Name). No column may be called ClassID, AccountID or Sequence: statements join this table with
-- tblAccountRelatedClasses and name the columns of both without a prefix.
if object_id(N'dbo.tblAccountClass') is null
  create table dbo.tblAccountClass (
    ID int not null constraint pkAccountClass primary key constraint ckAccountClassID check (ID between 1 and 32767),
    Code varchar(20) null,
    Name nvarchar(100) not null,  -- Unicode, since the screens show it joined to the code, as one text
    ViewMajor varchar(100) not null,
    ViewMinor varchar(100) not null,
    Description varchar(250) null
  );
GO

-- Three families of entities that ship with the tables: persons (flat), projects (a tree of any depth), banks with
-- their branches and accounts. A host adds others with a table, two views and a row of tblAccountClass. ParentID is null
-- at the top.
if object_id(N'dbo.tblEntityPerson') is null
  create table dbo.tblEntityPerson (
    ID int not null constraint pkEntityPerson primary key,
    ParentID int null constraint ckEntityPersonParentID check (ParentID is null),
    Code varchar(20) null,
    Name varchar(100) not null,
    Description varchar(250) null
  );
GO

if object_id(N'dbo.tblEntityProject') is null
  create table dbo.tblEntityProject (
    ID int not null constraint pkEntityProject primary key,
    ParentID int null,
    Code varchar(20) null,
    Name varchar(100) not null,
    Description varchar(250) null
  );
GO

if object_id(N'dbo.tblEntityBank') is null
  create table dbo.tblEntityBank (
    ID int not null constraint pkEntityBank primary key,
    ParentID int null,
    Code varchar(20) null,
    Name varchar(100) not null,
    Description varchar(250) null
  );
GO

-- Users and rights, for a database without a host: only where the procedures that ask for them are missing too.
if object_id(N'dbo.tblUser') is null and object_id(N'dbo.spAccountGetCurrentUserPeriod') is null
  create table dbo.tblUser (
    ID int not null constraint pkUser primary key constraint ckUserID check (ID between 1 and 32767),
    Name varchar(100) not null,
    PeriodID int null  -- the period in which the user works; null: none
  );
GO

-- A row is a right: 301 the chart as a whole, 301 and two digits one operation.
if object_id(N'dbo.tblUserPermission') is null and object_id(N'dbo.spTarvoHasPermission') is null
  create table dbo.tblUserPermission (
    UserID int not null,
    FormPermissionID int not null,
    constraint pkUserPermission primary key (UserID, FormPermissionID)
  );
GO

if object_id(N'dbo.tblTarvoSystemParameters') is null
  create table dbo.tblTarvoSystemParameters (
    ID int not null constraint pkTarvoSystemParameters primary key,
    Value varchar(250) null
  );
GO

-- The installation folder of the host, one row; a closing separator belongs to it. A host with a view of its own needs
-- no such table.
if object_id(N'dbo.tblTarvoBasePath') is null and object_id(N'dbo.vwTarvoBasePath') is null
  create table dbo.tblTarvoBasePath (
    ID int not null constraint pkTarvoBasePath primary key constraint ckTarvoBasePathID check (ID = 1),
    BasePath varchar(250) not null
      constraint ckTarvoBasePath check (BasePath = '' or right(BasePath, 1) in ('/', '\'))
  );
GO
