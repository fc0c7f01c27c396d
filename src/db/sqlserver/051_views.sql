-- The views of the chart.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- One row an account, with the texts of the export beside it: group, nature, type, status, cost centre. A host's view may
-- give an ID twice; the account stays one.
if object_id(N'dbo.vwAccount') is not null drop view dbo.vwAccount;
GO
create view dbo.vwAccount
as
select a.ID, a.ParentID, a.Code, a.Title, a.NoLevel, a.GroupID, a.BranchID, a.PositionID, a.CreateDate,
       a.FarsiCreateDate, a.Notes, a.AccountNatureID, a.IsPermanent, a.IsClosed, a.MaxDebit, a.MaxCredit,
       g.Name as AccGroup,
       cast(case isnull(a.AccountNatureID, 0) when 0 then N'بدهكار' when 1 then N'بستانكار' when 2 then N'هردو' end
         as nvarchar(20)) as AccountStatus,
       cast(case isnull(a.IsPermanent, 0) when 0 then N'موقت' when 1 then N'دائم' end as nvarchar(20)) as AccountType,
       cast(case isnull(a.IsClosed, 0) when 0 then N'باز' when 1 then N'بسته' end as nvarchar(20)) as RemainedType,
       c.Name as AccContract
from dbo.tblAccount a
  left join (select ID, min(Name) as Name from dbo.vwAccountGroup group by ID) g on g.ID = a.GroupID
  left join (select ID, min(Name) as Name from dbo.vwPosition_Employee_Special3 group by ID) c on c.ID = a.PositionID;
GO

if object_id(N'dbo.vwAccountRelatedObjects') is not null drop view dbo.vwAccountRelatedObjects;
GO
create view dbo.vwAccountRelatedObjects
as
select r.AccountID, r.AccountGroupID, r.RelatedClassID, r.RelatedObjectID, a.PositionID, a.Code, a.Title
from dbo.tblAccountRelatedObjects r
  left join dbo.tblAccount a on a.ID = r.AccountID;
GO

if object_id(N'dbo.vwAccountMajor') is not null drop view dbo.vwAccountMajor;
GO
create view dbo.vwAccountMajor
as
select ID, Code, Title as Name from dbo.tblAccount;
GO

if object_id(N'dbo.vwAccountMinor') is not null drop view dbo.vwAccountMinor;
GO
create view dbo.vwAccountMinor
as
select a.ID, p.Title as Name from dbo.tblAccount a left join dbo.tblAccount p on p.ID = a.ParentID;
GO

-- The changes that are committed: whoever asks waits for no writer, and of a transaction that isn't over sees nothing. It
-- asks again.
if object_id(N'dbo.vwLedgerTreeChanges') is not null drop view dbo.vwLedgerTreeChanges;
GO
create view dbo.vwLedgerTreeChanges as
select Writer, Changes from dbo.tblLedgerTreeChanges with (readpast, readcommittedlock);
GO
