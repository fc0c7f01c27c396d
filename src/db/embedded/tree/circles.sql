-- Of the wrong accounts those that are below themselves, as a person knows them: whom nobody reaches from above is below
-- itself, or below one that is.
with recursive Reached (ID) as (
  select w.ID from Wrong w join tblAccount a on a.ID = w.ID left join Wrong m on m.ID = a.ParentID where m.ID is null
  union all
  select a.ID from Reached join tblAccount a on a.ParentID = Reached.ID)
select '«' || ifnull(u.Code, '') || '» (' || u.ID || ')'
from tblAccount u
where u.ID in (select ID from Wrong) and u.ID not in (select ID from Reached)
  and u.ID in (with recursive Above (ID) as (
                 select u.ParentID union select a.ParentID from Above join tblAccount a on a.ID = Above.ID)
               select ID from Above)
order by u.ID
limit 20;
