-- The scripts of version 1 without their comments. They never change: every later version takes up what they made.
if cast(N'بدهكار' as varchar(20)) <> N'بدهكار'
throw 51000, N'The code page of this database has no Persian letters. Use a collation such as Persian_100_CI_AS.', 1;
if collationproperty(cast(databasepropertyex(db_name(), 'Collation') as varchar(128)), 'CodePage') = 65001
throw 51000, N'This database stores Persian letters as several bytes. Use a collation such as Persian_100_CI_AS.', 1;
if 'a' <> 'A'
throw 51000, N'This database tells capital from small letters. Use a collation such as Persian_100_CI_AS.', 1;
GO
if object_id(N'dbo.tblAccount') is null create table dbo.tblAccount (
ID int identity (1, 1) not null constraint pkAccount primary key,
ParentID int null constraint fkAccountParent references dbo.tblAccount (ID), Code varchar(20) null,
Title varchar(100) null, NoLevel int not null constraint dfAccountNoLevel default 1, GroupID int null,
BranchID int null constraint dfAccountBranchID default 0,
PositionID int null constraint dfAccountPositionID default 0,
CreateDate datetime not null constraint dfAccountCreateDate default getdate(), FarsiCreateDate varchar(10) null,
Notes varchar(250) null, AccountNatureID int null constraint dfAccountAccountNatureID default 0,
IsPermanent int null constraint dfAccountIsPermanent default 0,
IsClosed int null constraint dfAccountIsClosed default 0, MaxDebit money null, MaxCredit money null );
GO
if object_id(N'dbo.tblAccountParent') is null create table dbo.tblAccountParent ( ID int not null,
ChildID int not null, constraint pkAccountParent primary key (ID, ChildID) );
GO
if object_id(N'dbo.tblAccountPeriodAccount') is null create table dbo.tblAccountPeriodAccount (
AccountID int not null constraint fkPeriodAccountAccount references dbo.tblAccount (ID) on delete cascade,
PeriodID int not null, constraint pkPeriodAccount primary key (PeriodID, AccountID) );
GO
if object_id(N'dbo.tblAccountRelatedObjects') is null create table dbo.tblAccountRelatedObjects (
AccountID int not null constraint fkRelatedObjectsAccount references dbo.tblAccount (ID) on delete cascade,
AccountGroupID int null, RelatedClassID int null, RelatedObjectID int null );
GO
if object_id(N'dbo.tblAccountRelatedClasses') is null create table dbo.tblAccountRelatedClasses (
AccountID int not null constraint fkRelatedClassesAccount references dbo.tblAccount (ID) on delete cascade,
ClassID int not null, Sequence int not null, IncludeAllObjects int null,
constraint pkRelatedClasses primary key (AccountID, ClassID, Sequence) );
GO
if object_id(N'dbo.tblAccountRelatedClassesDetail') is null create table dbo.tblAccountRelatedClassesDetail (
AccountID int not null constraint fkRelatedClassesDetailAccount references dbo.tblAccount (ID) on delete cascade,
ClassID int not null, ObjectID int not null,
constraint pkRelatedClassesDetail primary key (AccountID, ClassID, ObjectID) );
GO
if object_id(N'dbo.tblAccountPeriod') is null create table dbo.tblAccountPeriod (
ID int not null constraint pkAccountPeriod primary key constraint ckAccountPeriodID check (ID between 1 and 32767),
Name varchar(50) not null, BeginDate datetime not null, EndDate datetime not null,
FarsiBeginDate varchar(10) not null, FarsiEndDate varchar(10) not null );
GO
if object_id(N'dbo.tblAccountDocument') is null create table dbo.tblAccountDocument (
ID int not null constraint pkAccountDocument primary key, FarsiDocumentDate varchar(10) not null,
DocumentDate datetime null, Description varchar(250) null );
GO
if object_id(N'dbo.tblAccountDocumentDetail') is null create table dbo.tblAccountDocumentDetail (
ID int identity (1, 1) not null constraint pkAccountDocumentDetail primary key,
DocumentID int not null constraint fkDocumentDetailDocument references dbo.tblAccountDocument (ID),
AccountID int not null constraint fkDocumentDetailAccount references dbo.tblAccount (ID),
Debit money not null constraint dfDocumentDetailDebit default 0,
Credit money not null constraint dfDocumentDetailCredit default 0, Description varchar(250) null );
GO
if object_id(N'dbo.tblAccountGroup') is null create table dbo.tblAccountGroup (
ID int not null constraint pkAccountGroup primary key constraint ckAccountGroupID check (ID between 1 and 32767),
Code varchar(20) null, Name varchar(100) not null, Description varchar(250) null );
GO
if object_id(N'dbo.tblAccountBranch') is null create table dbo.tblAccountBranch (
ID int not null constraint pkAccountBranch primary key constraint ckAccountBranchID check (ID between 1 and 32767),
Code varchar(20) null, Name varchar(100) not null, Address varchar(250) null );
GO
if object_id(N'dbo.tblAccCostCenter') is null create table dbo.tblAccCostCenter (
ID int identity (1, 1) not null constraint pkAccCostCenter primary key constraint ckAccCostCenterID check (ID between 1 and 32767),
Code varchar(20) null, Name varchar(100) not null, Description varchar(250) null );
GO
if object_id(N'dbo.tblAccountClass') is null create table dbo.tblAccountClass (
ID int not null constraint pkAccountClass primary key constraint ckAccountClassID check (ID between 1 and 32767),
Code varchar(20) null, Name nvarchar(100) not null, ViewMajor varchar(100) not null, ViewMinor varchar(100) not null,
Description varchar(250) null );
GO
if object_id(N'dbo.tblEntityPerson') is null create table dbo.tblEntityPerson (
ID int not null constraint pkEntityPerson primary key,
ParentID int null constraint ckEntityPersonParentID check (ParentID is null), Code varchar(20) null,
Name varchar(100) not null, Description varchar(250) null );
GO
if object_id(N'dbo.tblEntityProject') is null create table dbo.tblEntityProject (
ID int not null constraint pkEntityProject primary key, ParentID int null, Code varchar(20) null,
Name varchar(100) not null, Description varchar(250) null );
GO
if object_id(N'dbo.tblEntityBank') is null create table dbo.tblEntityBank (
ID int not null constraint pkEntityBank primary key, ParentID int null, Code varchar(20) null,
Name varchar(100) not null, Description varchar(250) null );
GO
if object_id(N'dbo.tblUser') is null and object_id(N'dbo.spAccountGetCurrentUserPeriod') is null
create table dbo.tblUser (
ID int not null constraint pkUser primary key constraint ckUserID check (ID between 1 and 32767),
Name varchar(100) not null, PeriodID int null );
GO
if object_id(N'dbo.tblUserPermission') is null and object_id(N'dbo.spTarvoHasPermission') is null
create table dbo.tblUserPermission ( UserID int not null, FormPermissionID int not null,
constraint pkUserPermission primary key (UserID, FormPermissionID) );
GO
if object_id(N'dbo.tblTarvoSystemParameters') is null create table dbo.tblTarvoSystemParameters (
ID int not null constraint pkTarvoSystemParameters primary key, Value varchar(250) null );
GO
if object_id(N'dbo.tblTarvoBasePath') is null and object_id(N'dbo.vwTarvoBasePath') is null
create table dbo.tblTarvoBasePath (
ID int not null constraint pkTarvoBasePath primary key constraint ckTarvoBasePathID check (ID = 1),
BasePath varchar(250) not null constraint ckTarvoBasePath check (BasePath = '' or right(BasePath, 1) in ('/', '\')) );
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountParent%')
create index ixAccountParent on dbo.tblAccount (ParentID, Code);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountLevel%')
create index ixAccountLevel on dbo.tblAccount (NoLevel, Code);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountTitle%')
create index ixAccountTitle on dbo.tblAccount (Title, NoLevel);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountCode%')
create index ixAccountCode on dbo.tblAccount (Code, NoLevel);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountParent') and name like N'ixAccountParentChild%')
create index ixAccountParentChild on dbo.tblAccountParent (ChildID);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountPeriodAccount') and name like N'ixPeriodAccountAccount%')
create index ixPeriodAccountAccount on dbo.tblAccountPeriodAccount (AccountID);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountRelatedObjects') and name like N'ixRelatedObjectsAccount%')
create index ixRelatedObjectsAccount on dbo.tblAccountRelatedObjects (AccountID);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountRelatedObjects') and name like N'ixRelatedObjectsGroup%')
create index ixRelatedObjectsGroup on dbo.tblAccountRelatedObjects (AccountGroupID, RelatedClassID, RelatedObjectID);
GO
set ansi_nulls on; set ansi_padding on; set ansi_warnings on; set arithabort on; set concat_null_yields_null on;
set quoted_identifier on; set numeric_roundabort off;
GO
if columnproperty(object_id(N'dbo.tblAccount'), N'TreeParentID', 'ColumnId') is null
alter table dbo.tblAccount add TreeParentID as isnull(ParentID, -1);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountTree%')
create index ixAccountTree on dbo.tblAccount (TreeParentID, Code);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocument') and name like N'ixDocumentDate%')
create index ixDocumentDate on dbo.tblAccountDocument (FarsiDocumentDate);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocumentDetail') and name like N'ixDocumentDetailDocument%')
create index ixDocumentDetailDocument on dbo.tblAccountDocumentDetail (DocumentID);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocumentDetail') and name like N'ixDocumentDetailAccount%')
create index ixDocumentDetailAccount on dbo.tblAccountDocumentDetail (AccountID, DocumentID);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityPerson') and name like N'ixEntityPersonParent%')
create index ixEntityPersonParent on dbo.tblEntityPerson (ParentID, Name);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityProject') and name like N'ixEntityProjectParent%')
create index ixEntityProjectParent on dbo.tblEntityProject (ParentID, Name);
GO
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityBank') and name like N'ixEntityBankParent%')
create index ixEntityBankParent on dbo.tblEntityBank (ParentID, Name);
GO
set ansi_nulls on; set quoted_identifier on;
GO
if object_id(N'dbo.spAccountHoldChart') is not null drop procedure dbo.spAccountHoldChart;
GO
create procedure dbo.spAccountHoldChart as begin set nocount on; declare @Got int;
exec @Got = sp_getapplock @Resource = N'LedgerTree chart', @LockMode = 'Exclusive', @LockOwner = 'Transaction';
if @Got < 0 throw 51005, N'حسابها در دست کاربر ديگري است. چند لحظه ديگر دوباره تلاش نماييد.', 1; end;
GO
if object_id(N'dbo.trAccountTree') is not null drop trigger dbo.trAccountTree;
GO
create trigger dbo.trAccountTree on dbo.tblAccount after insert, update as begin set nocount on;
if not exists (select 1 from inserted) return; declare @Branch table (ID int not null primary key, Round int null);
insert into @Branch (ID) select i.ID from inserted i left join deleted d on d.ID = i.ID
where d.ID is null or isnull(d.ParentID, -1) <> isnull(i.ParentID, -1); if exists (select 1 from @Branch) begin
exec dbo.spAccountHoldChart; insert into @Branch (ID)
select distinct p.ChildID from dbo.tblAccountParent p join @Branch b on b.ID = p.ID
where p.ChildID not in (select ID from @Branch);
delete from dbo.tblAccountParent where ChildID in (select ID from @Branch); declare @Round int = 1;
update b set Round = 1 from @Branch b join dbo.tblAccount a on a.ID = b.ID
where a.ParentID is null or a.ParentID not in (select ID from @Branch); while @@rowcount > 0 begin
insert into dbo.tblAccountParent (ID, ChildID) select p.ID, a.ID
from @Branch b join dbo.tblAccount a on a.ID = b.ID join dbo.tblAccountParent p on p.ChildID = a.ParentID
where b.Round = @Round union all select a.ParentID, a.ID from @Branch b join dbo.tblAccount a on a.ID = b.ID
where b.Round = @Round and a.ParentID is not null; set @Round = @Round + 1; update b set Round = @Round
from @Branch b join dbo.tblAccount a on a.ID = b.ID join @Branch m on m.ID = a.ParentID
where b.Round is null and m.Round = @Round - 1; end; if exists (select 1 from @Branch where Round is null)
throw 51001, N'حساب نميتواند زير خودش يا زير يکي از زيرشاخه هاي خودش قرار گيرد. حساب مادر ديگري انتخاب نماييد.', 1;
end; update a set NoLevel = l.NoLevel from dbo.tblAccount a join (select c.ID, 1 + count(p.ID) as NoLevel
from (select ID from @Branch
union select i.ID from inserted i join deleted d on d.ID = i.ID where d.NoLevel <> i.NoLevel) c
left join dbo.tblAccountParent p on p.ChildID = c.ID group by c.ID) l on l.ID = a.ID where a.NoLevel <> l.NoLevel;
end;
GO
if object_id(N'dbo.trAccountDelete') is not null drop trigger dbo.trAccountDelete;
GO
create trigger dbo.trAccountDelete on dbo.tblAccount after delete as begin set nocount on;
if exists (select 1 from deleted d join dbo.tblAccount a on a.ParentID = d.ID)
throw 51002, N'اين حساب زيرشاخه دارد. بنابراين امکان حذف آن وجود ندارد.', 1;
if exists (select 1 from deleted d join dbo.tblAccountDocumentDetail l on l.AccountID = d.ID)
throw 51003, N'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان حذف آن وجود ندارد.', 1;
delete from dbo.tblAccountParent where ChildID in (select ID from deleted);
delete from dbo.tblAccountPeriodAccount where AccountID in (select ID from deleted);
delete from dbo.tblAccountRelatedObjects where AccountID in (select ID from deleted);
delete from dbo.tblAccountRelatedClasses where AccountID in (select ID from deleted);
delete from dbo.tblAccountRelatedClassesDetail where AccountID in (select ID from deleted); end;
GO
if object_id(N'dbo.trRelatedObjectsWrite') is not null drop trigger dbo.trRelatedObjectsWrite;
GO
create trigger dbo.trRelatedObjectsWrite on dbo.tblAccountRelatedObjects after insert, update as begin set nocount on;
if not exists (select 1 from inserted where AccountGroupID < 1 or RelatedClassID < 1 or RelatedObjectID = -1) return;
update dbo.tblAccountRelatedObjects set AccountGroupID = case when AccountGroupID > 0 then AccountGroupID end,
RelatedClassID = case when RelatedClassID > 0 then RelatedClassID end, RelatedObjectID = nullif(RelatedObjectID, -1)
where AccountID in (select AccountID from inserted)
and (AccountGroupID < 1 or RelatedClassID < 1 or RelatedObjectID = -1); end;
GO
set ansi_nulls on; set quoted_identifier on;
GO
if object_id(N'dbo.vwTarvoBasePath') is null
exec (N'create view dbo.vwTarvoBasePath as select BasePath from dbo.tblTarvoBasePath');
GO
if object_id(N'dbo.vwAccountPeriodMajor') is null
exec (N'create view dbo.vwAccountPeriodMajor as select ID, Name from dbo.tblAccountPeriod');
GO
if object_id(N'dbo.vwAccountPeriodMinor') is null
exec (N'create view dbo.vwAccountPeriodMinor as select ID, FarsiBeginDate + '' - '' + FarsiEndDate as Name from dbo.tblAccountPeriod');
GO
if object_id(N'dbo.vwAccountBranchMajor') is null
exec (N'create view dbo.vwAccountBranchMajor as select ID, Code, Name from dbo.tblAccountBranch');
GO
if object_id(N'dbo.vwAccountBranchMinor') is null
exec (N'create view dbo.vwAccountBranchMinor as select ID, Address as Name from dbo.tblAccountBranch');
GO
if object_id(N'dbo.vwAccountGroup') is null
exec (N'create view dbo.vwAccountGroup as select ID, Code, Name from dbo.tblAccountGroup');
GO
if object_id(N'dbo.vwAccountGroupMinor') is null
exec (N'create view dbo.vwAccountGroupMinor as select ID, Description as Name from dbo.tblAccountGroup');
GO
if object_id(N'dbo.vwAccountClass') is null
exec (N'create view dbo.vwAccountClass as select ID, Code, isnull(Code, '''') + N''_'' + Name as Name from dbo.tblAccountClass');
GO
if object_id(N'dbo.vwAccountClassMinor') is null
exec (N'create view dbo.vwAccountClassMinor as select ID, Description as Name from dbo.tblAccountClass');
GO
if object_id(N'dbo.vwPosition_Employee_Special3') is null
exec (N'create view dbo.vwPosition_Employee_Special3 as select ID, Code, Name from dbo.tblAccCostCenter');
GO
if object_id(N'dbo.vwPositionMinor') is null
exec (N'create view dbo.vwPositionMinor as select ID, Description as Name from dbo.tblAccCostCenter');
GO
if object_id(N'dbo.vwEntityPerson') is null
exec (N'create view dbo.vwEntityPerson as select ID, ParentID, Code, Name from dbo.tblEntityPerson');
GO
if object_id(N'dbo.vwEntityPersonMinor') is null
exec (N'create view dbo.vwEntityPersonMinor as select ID, Description as Name from dbo.tblEntityPerson');
GO
if object_id(N'dbo.vwEntityProject') is null
exec (N'create view dbo.vwEntityProject as select ID, ParentID, Code, Name from dbo.tblEntityProject');
GO
if object_id(N'dbo.vwEntityProjectMinor') is null
exec (N'create view dbo.vwEntityProjectMinor as select ID, Description as Name from dbo.tblEntityProject');
GO
if object_id(N'dbo.vwEntityBank') is null
exec (N'create view dbo.vwEntityBank as select ID, ParentID, Code, Name from dbo.tblEntityBank');
GO
if object_id(N'dbo.vwEntityBankMinor') is null
exec (N'create view dbo.vwEntityBankMinor as select ID, Description as Name from dbo.tblEntityBank');
GO
set ansi_nulls on; set quoted_identifier on;
GO
if object_id(N'dbo.vwAccount') is not null drop view dbo.vwAccount;
GO
create view dbo.vwAccount as
select a.ID, a.ParentID, a.Code, a.Title, a.NoLevel, a.GroupID, a.BranchID, a.PositionID, a.CreateDate,
a.FarsiCreateDate, a.Notes, a.AccountNatureID, a.IsPermanent, a.IsClosed, a.MaxDebit, a.MaxCredit, g.Name as AccGroup,
cast(case isnull(a.AccountNatureID, 0) when 0 then N'بدهكار' when 1 then N'بستانكار' when 2 then N'هردو' end
as nvarchar(20)) as AccountStatus,
cast(case isnull(a.IsPermanent, 0) when 0 then N'موقت' when 1 then N'دائم' end as nvarchar(20)) as AccountType,
cast(case isnull(a.IsClosed, 0) when 0 then N'باز' when 1 then N'بسته' end as nvarchar(20)) as RemainedType,
c.Name as AccContract from dbo.tblAccount a left join dbo.vwAccountGroup g on g.ID = a.GroupID
left join dbo.vwPosition_Employee_Special3 c on c.ID = a.PositionID;
GO
if object_id(N'dbo.vwAccountRelatedObjects') is not null drop view dbo.vwAccountRelatedObjects;
GO
create view dbo.vwAccountRelatedObjects as
select r.AccountID, r.AccountGroupID, r.RelatedClassID, r.RelatedObjectID, a.PositionID, a.Code, a.Title
from dbo.tblAccountRelatedObjects r left join dbo.tblAccount a on a.ID = r.AccountID;
GO
if object_id(N'dbo.vwAccountMajor') is not null drop view dbo.vwAccountMajor;
GO
create view dbo.vwAccountMajor as select ID, Code, Title as Name from dbo.tblAccount;
GO
if object_id(N'dbo.vwAccountMinor') is not null drop view dbo.vwAccountMinor;
GO
create view dbo.vwAccountMinor as
select a.ID, p.Title as Name from dbo.tblAccount a left join dbo.tblAccount p on p.ID = a.ParentID;
GO
set ansi_nulls on; set quoted_identifier on;
GO
if object_id(N'dbo.spAccountInsertAccount') is not null drop procedure dbo.spAccountInsertAccount;
GO
create procedure dbo.spAccountInsertAccount
@CreateDate datetime, @FarsiCreateDate varchar(10), @AccountGroupID int, @IsPermanent int, @AccountNatureID int,
@ParentID int, @Title varchar(50), @Code varchar(20), @IsClosed int, @ContractID int, @PositionID int,
@Notes varchar(250), @MaxDebit money, @MaxCredit money as begin set nocount on; set xact_abort on;
declare @ID int = 0; begin transaction; exec dbo.spAccountHoldChart;
if @ParentID > 0 and not exists (select 1 from dbo.tblAccount where ID = @ParentID)
throw 51004, N'حساب مادر ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. حساب مادر ديگري انتخاب نماييد.', 1;
if not exists (select 1 from dbo.tblAccount where Code = @Code) begin
insert into dbo.tblAccount (CreateDate, FarsiCreateDate, GroupID, IsPermanent, AccountNatureID, ParentID, Title, Code,
IsClosed, BranchID, PositionID, Notes, MaxDebit, MaxCredit)
values (isnull(@CreateDate, getdate()), @FarsiCreateDate, case when @AccountGroupID > 0 then @AccountGroupID end,
@IsPermanent, @AccountNatureID, case when @ParentID > 0 then @ParentID end, @Title, @Code,
@IsClosed, @ContractID, @PositionID, @Notes, @MaxDebit, @MaxCredit); set @ID = scope_identity(); end;
commit transaction; return @ID; end;
GO
if object_id(N'dbo.spAccountUpdateAccounts') is not null drop procedure dbo.spAccountUpdateAccounts;
GO
create procedure dbo.spAccountUpdateAccounts
@ID int, @ParentID int, @AccountGroupID int, @IsPermanent int, @AccountNatureID int, @Title varchar(100),
@Code varchar(20), @IsClosed int, @ContractID int, @PositionID int, @Notes varchar(250), @MaxDebit money,
@MaxCredit money as begin set nocount on; set xact_abort on; declare @Done int = 0; begin transaction;
exec dbo.spAccountHoldChart; if not exists (select 1 from dbo.tblAccount where ID = @ID)
throw 51004, N'اين حساب ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. درخت حسابها را دوباره بخوانيد.', 1;
if @ParentID > 0 and not exists (select 1 from dbo.tblAccount where ID = @ParentID)
throw 51004, N'حساب مادر ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. حساب مادر ديگري انتخاب نماييد.', 1;
if not exists (select 1 from dbo.tblAccount where Code = @Code and ID <> @ID) begin update dbo.tblAccount
set ParentID = case when @ParentID > 0 then @ParentID end,
GroupID = case when @AccountGroupID > 0 then @AccountGroupID end,
IsPermanent = @IsPermanent, AccountNatureID = @AccountNatureID, Title = @Title, Code = @Code,
IsClosed = @IsClosed, BranchID = @ContractID, PositionID = @PositionID, Notes = @Notes, MaxDebit = @MaxDebit,
MaxCredit = @MaxCredit where ID = @ID; set @Done = 1; end; commit transaction; return @Done; end;
GO
if object_id(N'dbo.spAccountInsertRelatedObject') is not null drop procedure dbo.spAccountInsertRelatedObject;
GO
create procedure dbo.spAccountInsertRelatedObject
@AccountID int, @AccountGroupID int, @RelatedClassID int, @RelatedObjectID int as begin set nocount on;
set xact_abort on; begin transaction;
if not exists (select 1 from dbo.tblAccount with (updlock, holdlock) where ID = @AccountID)
throw 51004, N'اين حساب ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. درخت حسابها را دوباره بخوانيد.', 1;
delete from dbo.tblAccountRelatedObjects where AccountID = @AccountID;
insert into dbo.tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
values (@AccountID, case when @AccountGroupID > 0 then @AccountGroupID end,
case when @RelatedClassID > 0 then @RelatedClassID end, nullif(@RelatedObjectID, -1)); commit transaction; return 1;
end;
GO
if object_id(N'dbo.spAccountDeleteAccount') is not null drop procedure dbo.spAccountDeleteAccount;
GO
create procedure dbo.spAccountDeleteAccount @ID_1 int as begin set nocount on; set xact_abort on;
declare @Done int = 0; declare @Outer int = @@trancount; begin try begin transaction;
if not exists (select 1 from dbo.tblAccount with (updlock, holdlock) where ParentID = @ID_1)
and not exists (select 1 from dbo.tblAccountDocumentDetail with (updlock, holdlock) where AccountID = @ID_1) begin
delete from dbo.tblAccount where ID = @ID_1; set @Done = 1; end; commit transaction; end try begin catch
if @@trancount > 0 rollback transaction; if error_number() = 547 and @Outer = 0 return 0; throw; end catch;
return @Done; end;
GO
set ansi_nulls on; set quoted_identifier on;
GO
if object_id(N'dbo.spTarvoHasPermission') is null
exec (N'create procedure dbo.spTarvoHasPermission @UserID int, @FormPermissionID int as begin set nocount on;
if exists (select 1 from dbo.tblUserPermission where UserID = @UserID and FormPermissionID = @FormPermissionID)
return 1; return 0; end;');
GO
if object_id(N'dbo.spAccountGetCurrentUserPeriod') is null
exec (N'create procedure dbo.spAccountGetCurrentUserPeriod @UserID int as begin set nocount on;
declare @PeriodID int = (select PeriodID from dbo.tblUser where ID = @UserID); return isnull(@PeriodID, 0); end;');
GO
if database_principal_id(N'LedgerTreeUsers') is null create role LedgerTreeUsers;
GO
grant select on dbo.tblAccount to LedgerTreeUsers; grant select on dbo.tblAccountParent to LedgerTreeUsers;
grant select on dbo.tblAccountPeriod to LedgerTreeUsers; grant select on dbo.tblAccountDocument to LedgerTreeUsers;
grant select on dbo.tblAccountDocumentDetail to LedgerTreeUsers;
grant select on dbo.tblAccountClass to LedgerTreeUsers;
grant select on dbo.tblTarvoSystemParameters to LedgerTreeUsers; grant select on dbo.vwAccount to LedgerTreeUsers;
grant select on dbo.vwAccountRelatedObjects to LedgerTreeUsers;
grant select on dbo.vwTarvoBasePath to LedgerTreeUsers; grant select on dbo.vwAccountMajor to LedgerTreeUsers;
grant select on dbo.vwAccountMinor to LedgerTreeUsers; grant select on dbo.vwAccountPeriodMajor to LedgerTreeUsers;
grant select on dbo.vwAccountPeriodMinor to LedgerTreeUsers;
grant select on dbo.vwAccountBranchMajor to LedgerTreeUsers;
grant select on dbo.vwAccountBranchMinor to LedgerTreeUsers; grant select on dbo.vwAccountGroup to LedgerTreeUsers;
grant select on dbo.vwAccountGroupMinor to LedgerTreeUsers; grant select on dbo.vwAccountClass to LedgerTreeUsers;
grant select on dbo.vwAccountClassMinor to LedgerTreeUsers;
grant select on dbo.vwPosition_Employee_Special3 to LedgerTreeUsers;
grant select on dbo.vwPositionMinor to LedgerTreeUsers; grant select on dbo.vwEntityPerson to LedgerTreeUsers;
grant select on dbo.vwEntityPersonMinor to LedgerTreeUsers; grant select on dbo.vwEntityProject to LedgerTreeUsers;
grant select on dbo.vwEntityProjectMinor to LedgerTreeUsers; grant select on dbo.vwEntityBank to LedgerTreeUsers;
grant select on dbo.vwEntityBankMinor to LedgerTreeUsers;
GO
grant update on dbo.tblAccount (Code, GroupID, AccountNatureID, IsPermanent, IsClosed) to LedgerTreeUsers;
grant delete on dbo.tblAccount to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountPeriodAccount to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountRelatedObjects to LedgerTreeUsers;
grant select, insert, update, delete on dbo.tblAccountRelatedClasses to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountRelatedClassesDetail to LedgerTreeUsers;
GO
grant execute on dbo.spTarvoHasPermission to LedgerTreeUsers;
grant execute on dbo.spAccountGetCurrentUserPeriod to LedgerTreeUsers;
grant execute on dbo.spAccountInsertAccount to LedgerTreeUsers;
grant execute on dbo.spAccountUpdateAccounts to LedgerTreeUsers;
grant execute on dbo.spAccountInsertRelatedObject to LedgerTreeUsers;
grant execute on dbo.spAccountDeleteAccount to LedgerTreeUsers;
GO
insert into dbo.tblAccountPeriod values (1, '1404', '20250321', '20260320', '1404/01/01', '1404/12/29');
insert into dbo.tblAccountDocument values (1, '1404/02/03', '20250423', null);
insert into dbo.tblAccountClass values (1, '01', N'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor', null);
set identity_insert dbo.tblAccount on;
insert into dbo.tblAccount (ID, ParentID, Code, Title) values (1, null, '1', 'دارايي'), (2, 1, '101', 'صندوق'),
(3, 2, '10101', 'تنخواه'), (4, null, '9Ak', 'kaf'), (5, null, '9AK2', 'KAF'), (6, null, '9ك', ''),
(7, null, '9ک', null), (8, null, null, 'بي کد');
set identity_insert dbo.tblAccount off;
update dbo.tblAccount set Code = '9aK ' where ID = 5;
insert into dbo.tblAccountDocumentDetail (DocumentID, AccountID, Debit) values (1, 3, 12.5), (1, 2, 0);
insert into dbo.tblAccountPeriodAccount values (1, 1), (2, 1), (3, 1);
insert into dbo.tblAccountRelatedObjects values (3, 2, 1, 7), (4, 3, null, null);
insert into dbo.tblAccountRelatedClasses values (3, 1, 1, 0);
insert into dbo.tblAccountRelatedClassesDetail values (3, 1, 7);
GO
