-- What the screens read under names of their own. Every view finds one ID by key, without a look at other rows.

-- One row an account, with the texts of the export beside it: group, nature, type, status, cost centre.
create view vwAccount as
select a.ID, a.ParentID, a.Code, a.Title, a.NoLevel, a.GroupID, a.BranchID, a.PositionID, a.CreateDate,
       a.FarsiCreateDate, a.Notes, a.AccountNatureID, a.IsPermanent, a.IsClosed, a.MaxDebit, a.MaxCredit,
       g.Name as AccGroup,
       case ifnull(a.AccountNatureID, 0) when 0 then 'بدهكار' when 1 then 'بستانكار' when 2 then 'هردو' end
         as AccountStatus,
       case ifnull(a.IsPermanent, 0) when 0 then 'موقت' when 1 then 'دائم' end as AccountType,
       case ifnull(a.IsClosed, 0) when 0 then 'باز' when 1 then 'بسته' end as RemainedType,
       c.Name as AccContract
from tblAccount a
  left join tblAccountGroup g on g.ID = a.GroupID
  left join tblAccCostCenter c on c.ID = a.PositionID;

create view vwAccountRelatedObjects as
select r.AccountID, r.AccountGroupID, r.RelatedClassID, r.RelatedObjectID, a.PositionID, a.Code, a.Title
from tblAccountRelatedObjects r
  left join tblAccount a on a.ID = r.AccountID;

create view vwTarvoBasePath as select BasePath from tblTarvoBasePath;

-- The selectors: the major view of a pair has ID, Name (the text shown) and, where there is one, Code; the minor view
-- has ID and Name, a second text that tells like ones apart.

create view vwAccountMajor as select ID, Code, Title as Name from tblAccount;
create view vwAccountMinor as
select a.ID, p.Title as Name from tblAccount a left join tblAccount p on p.ID = a.ParentID;

-- No column may be called PeriodID here: a statement of the period screen would take it for its own.
create view vwAccountPeriodMajor as select ID, Name from tblAccountPeriod;
create view vwAccountPeriodMinor as
select ID, FarsiBeginDate || ' - ' || FarsiEndDate as Name from tblAccountPeriod;

create view vwAccountBranchMajor as select ID, Code, Name from tblAccountBranch;
create view vwAccountBranchMinor as select ID, Address as Name from tblAccountBranch;

create view vwAccountGroup as select ID, Code, Name from tblAccountGroup;
create view vwAccountGroupMinor as select ID, Description as Name from tblAccountGroup;

-- The name is the text of a class in every list, code and name, since lists compare it as a whole.
create view vwAccountClass as
select ID, Code, (ifnull(Code, '') || '_' || Name) collate nocase as Name from tblAccountClass;
create view vwAccountClassMinor as select ID, Description as Name from tblAccountClass;

create view vwPosition_Employee_Special3 as select ID, Code, Name from tblAccCostCenter;
create view vwPositionMinor as select ID, Description as Name from tblAccCostCenter;

-- The objects of the entity classes: ParentID is null at the top of a class's tree.
create view vwEntityPerson as select ID, ParentID, Code, Name from tblEntityPerson;
create view vwEntityPersonMinor as select ID, Description as Name from tblEntityPerson;

create view vwEntityProject as select ID, ParentID, Code, Name from tblEntityProject;
create view vwEntityProjectMinor as select ID, Description as Name from tblEntityProject;

create view vwEntityBank as select ID, ParentID, Code, Name from tblEntityBank;
create view vwEntityBankMinor as select ID, Description as Name from tblEntityBank;
