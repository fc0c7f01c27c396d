-- The views of the chart, which are made anew in a file of an older version. Every view finds one ID by key, without a
-- look at other rows.

-- One row an account, with all its columns, and the texts of the export beside them: group, nature, type, status, cost
-- centre.
drop view if exists vwAccount;
create view vwAccount as
select a.*,
       g.Name as AccGroup,
       case ifnull(a.AccountNatureID, 0) when 0 then 'بدهكار' when 1 then 'بستانكار' when 2 then 'هردو' end
         as AccountStatus,
       case ifnull(a.IsPermanent, 0) when 0 then 'موقت' when 1 then 'دائم' end as AccountType,
       case ifnull(a.IsClosed, 0) when 0 then 'باز' when 1 then 'بسته' end as RemainedType,
       c.Name as AccContract
from tblAccount a
  left join tblAccountGroup g on g.ID = a.GroupID
  left join tblAccCostCenter c on c.ID = a.PositionID;

drop view if exists vwAccountRelatedObjects;
create view vwAccountRelatedObjects as
select r.AccountID, r.AccountGroupID, r.RelatedClassID, r.RelatedObjectID, a.PositionID, a.Code, a.Title
from tblAccountRelatedObjects r
  left join tblAccount a on a.ID = r.AccountID;

drop view if exists vwAccountMajor;
create view vwAccountMajor as select ID, Code, Title as Name from tblAccount;
drop view if exists vwAccountMinor;
create view vwAccountMinor as
select a.ID, p.Title as Name from tblAccount a left join tblAccount p on p.ID = a.ParentID;

drop view if exists vwLedgerTreeChanges;
create view vwLedgerTreeChanges as select Writer, Changes from tblLedgerTreeChanges;
