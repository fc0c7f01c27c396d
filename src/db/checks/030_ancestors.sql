-- Where levels are true, no other fault of the ancestors is left than these.
select 'more or fewer ancestors than the level says' as Fault, a.ID, a.Code
from tblAccount a
where a.NoLevel <> 1 + (select count(*) from tblAccountParent p where p.ChildID = a.ID)
union all
select distinct 'an ancestor that neither is the parent nor one of the parent''s', a.ID, a.Code
from tblAccountParent p join tblAccount a on a.ID = p.ChildID
where p.ID <> coalesce(a.ParentID, -1)
  and not exists (select 1 from tblAccountParent q where q.ID = p.ID and q.ChildID = a.ParentID)
union all
select 'ancestors of an account that is gone', p.ChildID, null
from tblAccountParent p left join tblAccount a on a.ID = p.ChildID
where a.ID is null;
