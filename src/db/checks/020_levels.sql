select 'a level that isn''t one more than that of the parent' as Fault, a.ID, a.Code
from tblAccount a left join tblAccount m on m.ID = a.ParentID
where a.NoLevel <> coalesce(m.NoLevel, 0) + 1;
