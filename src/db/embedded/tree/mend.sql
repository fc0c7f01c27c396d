-- Makes the ancestors and levels of the wrong accounts anew by their parents.
delete from tblAccountParent where ChildID not in (select ID from tblAccount) or ChildID in (select ID from Wrong);
insert into tblAccountParent (ID, ChildID)
with recursive Above (ID, ChildID) as (
  select m.ID, a.ID from Wrong w join tblAccount a on a.ID = w.ID join tblAccount m on m.ID = a.ParentID
  union all
  select m.ID, Above.ChildID from Above join tblAccount a on a.ID = Above.ID join tblAccount m on m.ID = a.ParentID)
select ID, ChildID from Above;
update tblAccount
  set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID)
  where ID in (select ID from Wrong)
    and NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID);
