-- The rules that hold for every program that opens the file: tblAccountParent and NoLevel follow ParentID, no account is
-- below itself, an account with children or documents stays, one that goes takes along what belongs to it alone.
--
-- A parent that has no row counts as none: its children are on level 1 until the row appears. An account's key can
-- change; its children go on pointing at the old one, so that a statement can renumber accounts and parents at once.
--
-- They are made anew in a file of an older version.
--
-- Only built-in functions stand here. No statement in a trigger has a conflict clause, since the clause of the statement
-- that fired it would take its place.

-- Not for reading: an insert here joins an account, with all that is below it, to its parent. It presumes that the
-- ancestors are true within the branch of each child, and nothing about those of the account itself: a REPLACE leaves
-- the ancestors of the account that it put away, a missing parent that appears finds its children there. Whether the
-- account would come below itself is asked of the parents, which are always there.
drop view if exists vwAccountBranch;
create view vwAccountBranch as select ID, ParentID from tblAccount where 0;

-- The way of almost every insert.
drop trigger if exists trAccountLeaf;
create trigger trAccountLeaf instead of insert on vwAccountBranch
when not exists (select 1 from tblAccount where ParentID = new.ID)
begin
  delete from tblAccountParent where ChildID = new.ID;
  insert into tblAccountParent (ID, ChildID)
    select p.ID, new.ID from tblAccountParent p where p.ChildID = new.ParentID
    union all select a.ID, new.ID from tblAccount a where a.ID = new.ParentID;
  update tblAccount
    set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID)
    where ID = new.ID
      and NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID);
end;

drop trigger if exists trAccountBranch;
create trigger trAccountBranch instead of insert on vwAccountBranch
when exists (select 1 from tblAccount where ParentID = new.ID)
begin
  select raise(abort, 'حساب نميتواند زير خودش يا زير يکي از زيرشاخه هاي خودش قرار گيرد. حساب مادر ديگري انتخاب نماييد.')
    where new.ID in (with recursive Above (ID) as (
                       select new.ParentID
                       union select a.ParentID from Above join tblAccount a on a.ID = Above.ID)
                     select ID from Above);

  -- The branch leaves the ancestors that it had.
  delete from tblAccountParent
    where ChildID in (select new.ID
                      union all select c.ID from tblAccount c where c.ParentID = new.ID
                      union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID
                                where c.ParentID = new.ID)
      and ID not in (select new.ID
                     union all select c.ID from tblAccount c where c.ParentID = new.ID
                     union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID
                               where c.ParentID = new.ID);

  insert into tblAccountParent (ID, ChildID)
    select new.ID, b.ID
    from (select c.ID from tblAccount c where c.ParentID = new.ID
          union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID
                    where c.ParentID = new.ID) b
    where not exists (select 1 from tblAccountParent p where p.ID = new.ID and p.ChildID = b.ID);

  insert into tblAccountParent (ID, ChildID)
    select a.ID, b.ID
    from (select p.ID from tblAccountParent p where p.ChildID = new.ParentID
          union all select ID from tblAccount where ID = new.ParentID) a
      cross join (select new.ID as ID
                  union all select p.ChildID from tblAccountParent p where p.ID = new.ID) b;

  update tblAccount
    set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID)
    where ID in (select new.ID union all select p.ChildID from tblAccountParent p where p.ID = new.ID)
      and NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID);
end;

drop trigger if exists trAccountInsert;
create trigger trAccountInsert after insert on tblAccount
begin
  insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID);
end;

drop trigger if exists trAccountMove;
create trigger trAccountMove after update of ParentID on tblAccount
when old.ID = new.ID and old.ParentID is not new.ParentID
begin
  insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID);
end;

drop trigger if exists trAccountRenumber;
create trigger trAccountRenumber after update of ID on tblAccount
when old.ID <> new.ID
begin
  select raise(abort, 'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان تغيير شناسه آن وجود ندارد.')
    where exists (select 1 from tblAccountDocumentDetail where AccountID = old.ID);

  -- The branches of the children become trees of their own.
  delete from tblAccountParent
    where ChildID in (select old.ID union all select p.ChildID from tblAccountParent p where p.ID = old.ID)
      and ID in (select old.ID union all select p.ID from tblAccountParent p where p.ChildID = old.ID);
  update tblAccount
    set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID)
    where ID in (select c.ID from tblAccount c where c.ParentID = old.ID
                 union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID
                           where c.ParentID = old.ID);
  insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID);

  delete from tblAccountPeriodAccount where AccountID = new.ID;
  update tblAccountPeriodAccount set AccountID = new.ID where AccountID = old.ID;
  delete from tblAccountRelatedObjects where AccountID = new.ID;
  update tblAccountRelatedObjects set AccountID = new.ID where AccountID = old.ID;
  delete from tblAccountRelatedClasses where AccountID = new.ID;
  update tblAccountRelatedClasses set AccountID = new.ID where AccountID = old.ID;
  delete from tblAccountRelatedClassesDetail where AccountID = new.ID;
  update tblAccountRelatedClassesDetail set AccountID = new.ID where AccountID = old.ID;
end;

-- Nobody sets a level but the tree.
drop trigger if exists trAccountLevel;
create trigger trAccountLevel after update of NoLevel on tblAccount
when new.NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID)
begin
  update tblAccount
    set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID)
    where ID = new.ID;
end;

drop trigger if exists trAccountDelete;
create trigger trAccountDelete after delete on tblAccount
begin
  select raise(abort, 'اين حساب زيرشاخه دارد. بنابراين امکان حذف آن وجود ندارد.')
    where exists (select 1 from tblAccount where ParentID = old.ID);
  select raise(abort, 'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان حذف آن وجود ندارد.')
    where exists (select 1 from tblAccountDocumentDetail where AccountID = old.ID);
  delete from tblAccountParent where ChildID = old.ID;
  delete from tblAccountPeriodAccount where AccountID = old.ID;
  delete from tblAccountRelatedObjects where AccountID = old.ID;
  delete from tblAccountRelatedClasses where AccountID = old.ID;
  delete from tblAccountRelatedClassesDetail where AccountID = old.ID;
end;

-- None is null, whoever writes: the test for accounts of the same group, class and object would take two -1 for the same.
drop trigger if exists trRelatedObjectsInsert;
create trigger trRelatedObjectsInsert after insert on tblAccountRelatedObjects
when new.AccountGroupID < 1 or new.RelatedClassID < 1 or new.RelatedObjectID = -1
begin
  -- For the trigger below.
  update tblAccountRelatedObjects set AccountGroupID = AccountGroupID where rowid = new.rowid;
end;

drop trigger if exists trRelatedObjectsUpdate;
create trigger trRelatedObjectsUpdate
after update of AccountGroupID, RelatedClassID, RelatedObjectID on tblAccountRelatedObjects
when new.AccountGroupID < 1 or new.RelatedClassID < 1 or new.RelatedObjectID = -1
begin
  update tblAccountRelatedObjects
    set AccountGroupID = case when AccountGroupID > 0 then AccountGroupID end,
        RelatedClassID = case when RelatedClassID > 0 then RelatedClassID end,
        RelatedObjectID = nullif(RelatedObjectID, -1)
    where rowid = new.rowid;
end;

-- What a screen shows of the chart was changed. A level isn't shown, and changes with a parent alone.
drop trigger if exists trNotedAccountInsert;
create trigger trNotedAccountInsert after insert on tblAccount
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedAccountUpdate;
create trigger trNotedAccountUpdate after update on tblAccount
when old.NoLevel = new.NoLevel
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedAccountDelete;
create trigger trNotedAccountDelete after delete on tblAccount
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedPeriodInsert;
create trigger trNotedPeriodInsert after insert on tblAccountPeriodAccount
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedPeriodUpdate;
create trigger trNotedPeriodUpdate after update on tblAccountPeriodAccount
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedPeriodDelete;
create trigger trNotedPeriodDelete after delete on tblAccountPeriodAccount
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedRelationInsert;
create trigger trNotedRelationInsert after insert on tblAccountRelatedObjects
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedRelationUpdate;
create trigger trNotedRelationUpdate after update on tblAccountRelatedObjects
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;

drop trigger if exists trNotedRelationDelete;
create trigger trNotedRelationDelete after delete on tblAccountRelatedObjects
begin
  update tblLedgerTreeChanges set Changes = Changes + 1 where Writer = 0;
end;
