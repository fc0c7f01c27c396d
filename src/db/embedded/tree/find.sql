-- The accounts whose level isn't one more than their parent's, whose ancestors are more or less than their level says, or
-- have another one than their parent; and all that is below them. All else is true if these are: the top is, and what is
-- below it by what is above. A parent that has no row counts as none.
create temp table Wrong (ID integer primary key);
insert into Wrong
with recursive Below (ID) as (
  select a.ID from tblAccount a left join tblAccount m on m.ID = a.ParentID where a.NoLevel is not ifnull(m.NoLevel, 0) + 1
  union
  select a.ID from tblAccount a
  where a.NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = a.ID)
  union
  select a.ID from tblAccountParent p join tblAccount a on a.ID = p.ChildID
  where p.ID is not a.ParentID
    and not exists (select 1 from tblAccountParent q where q.ID = p.ID and q.ChildID = a.ParentID)
  union
  select a.ID from Below join tblAccount a on a.ParentID = Below.ID)
select ID from Below;
