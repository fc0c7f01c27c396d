-- What points at nothing.
select 'a relation of an account that is gone' as Fault, r.AccountID as ID, null as Code from tblAccountRelatedObjects r
where not exists (select 1 from tblAccount t where t.ID = r.AccountID)
union all
select 'a class of an account that is gone', r.AccountID, null from tblAccountRelatedClasses r
where not exists (select 1 from tblAccount t where t.ID = r.AccountID)
union all
select 'a chosen object of an account that is gone', r.AccountID, null from tblAccountRelatedClassesDetail r
where not exists (select 1 from tblAccount t where t.ID = r.AccountID)
union all
select 'a period of an account that is gone', r.AccountID, null from tblAccountPeriodAccount r
where not exists (select 1 from tblAccount t where t.ID = r.AccountID)
union all
select 'a line of a document of an account that is gone', r.AccountID, null from tblAccountDocumentDetail r
where not exists (select 1 from tblAccount t where t.ID = r.AccountID)
union all
select 'a relation to a group that has no row', r.AccountID, null from tblAccountRelatedObjects r
where r.AccountGroupID is not null and not exists (select 1 from vwAccountGroup t where t.ID = r.AccountGroupID)
union all
select 'a relation to a class that has no row', r.AccountID, null from tblAccountRelatedObjects r
where r.RelatedClassID is not null and not exists (select 1 from tblAccountClass t where t.ID = r.RelatedClassID)
union all
select 'a class that has no row', r.AccountID, null from tblAccountRelatedClasses r
where not exists (select 1 from tblAccountClass t where t.ID = r.ClassID)
union all
select 'a chosen object of a class that has no row', r.AccountID, null from tblAccountRelatedClassesDetail r
where not exists (select 1 from tblAccountClass t where t.ID = r.ClassID)
union all
select 'a period that has no row', r.AccountID, null from tblAccountPeriodAccount r
where not exists (select 1 from tblAccountPeriod t where t.ID = r.PeriodID)
union all
select 'a line of a document that has no row', r.AccountID, null from tblAccountDocumentDetail r
where not exists (select 1 from tblAccountDocument t where t.ID = r.DocumentID)
union all
select 'a group that has no row', r.ID, null from tblAccount r
where r.GroupID <> 0 and not exists (select 1 from vwAccountGroup t where t.ID = r.GroupID)
union all
select 'a branch that has no row', r.ID, null from tblAccount r
where r.BranchID <> 0 and not exists (select 1 from vwAccountBranchMajor t where t.ID = r.BranchID)
union all
select 'a cost centre that has no row', r.ID, null from tblAccount r
where r.PositionID <> 0 and not exists (select 1 from vwPosition_Employee_Special3 t where t.ID = r.PositionID);
