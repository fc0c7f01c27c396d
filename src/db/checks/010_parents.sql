-- Each check gives a row a fault: what is wrong, and the account by ID and code. A view of the host counts as the table.
select 'a parent that has no row' as Fault, a.ID, a.Code
from tblAccount a left join tblAccount m on m.ID = a.ParentID
where a.ParentID is not null and m.ID is null;
