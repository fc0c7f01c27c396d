-- Ancestors and levels of accounts that the triggers didn't see: those that were there ahead of them, and those that were
-- written while they were off.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- Makes tblAccountParent and NoLevel what the parents say, where they aren't, and gives a row that tells of it; none where
-- all was true. Refuses accounts that are below themselves, with their IDs, and changes nothing then. It can be called at
-- any time.
if object_id(N'dbo.spAccountMendTree') is not null drop procedure dbo.spAccountMendTree;
GO
create procedure dbo.spAccountMendTree
as
begin
  set nocount on;
  set xact_abort on;
  begin transaction;
  exec dbo.spAccountHoldChart;

  -- The accounts whose level isn't one more than their parent's, whose ancestors are more or less than their level says,
  -- or have another one than their parent. All else is true if these are: the top is, and what is below it by what is
  -- above. A parent that has no row counts as none.
  create table #Wrong (ID int not null primary key, Step int not null, Round int null);
  insert into #Wrong (ID, Step)
    select a.ID, 0
    from dbo.tblAccount a left join dbo.tblAccount m on m.ID = a.ParentID
    where a.NoLevel <> isnull(m.NoLevel, 0) + 1
    union
    select a.ID, 0
    from dbo.tblAccount a
      left join (select ChildID, count(*) as Ancestors from dbo.tblAccountParent group by ChildID) p on p.ChildID = a.ID
    where a.NoLevel <> isnull(p.Ancestors, 0) + 1
    union
    select a.ID, 0
    from dbo.tblAccountParent p join dbo.tblAccount a on a.ID = p.ChildID
    where p.ID <> isnull(a.ParentID, -1)
      and not exists (select 1 from dbo.tblAccountParent q where q.ID = p.ID and q.ChildID = a.ParentID);

  -- And all that is below them.
  declare @Step int = 0;
  while exists (select 1 from #Wrong where Step = @Step)
  begin
    insert into #Wrong (ID, Step)
      select a.ID, @Step + 1 from #Wrong w join dbo.tblAccount a on a.ParentID = w.ID
      where w.Step = @Step and a.ID not in (select ID from #Wrong);
    set @Step = @Step + 1;
  end;

  -- Parents come ahead of children: first those whose parent is true.
  declare @Round int = 1;
  update w set Round = 1
    from #Wrong w join dbo.tblAccount a on a.ID = w.ID
    where a.ParentID is null or a.ParentID not in (select ID from #Wrong);
  while @@rowcount > 0
  begin
    set @Round = @Round + 1;
    update w set Round = @Round
      from #Wrong w join dbo.tblAccount a on a.ID = w.ID join #Wrong m on m.ID = a.ParentID
      where w.Round is null and m.Round = @Round - 1;
  end;

  -- Whoever was not reached from above is below itself, or below one that is: these go, from the lowest up.
  if exists (select 1 from #Wrong where Round is null)
  begin
    delete from #Wrong where Round is not null;
    while exists (select 1 from #Wrong
                  where ID not in (select a.ParentID from #Wrong w join dbo.tblAccount a on a.ID = w.ID))
      delete from #Wrong
      where ID not in (select a.ParentID from #Wrong w join dbo.tblAccount a on a.ID = w.ID);
    declare @Told nvarchar(400) = N'These accounts are below themselves:';
    declare @ID int = (select min(ID) from #Wrong);
    while @ID is not null and len(@Told) < 200
    begin
      set @Told = @Told + N' ' + cast(@ID as nvarchar(11));
      set @ID = (select min(ID) from #Wrong where ID > @ID);
    end;
    if @ID is not null set @Told = @Told + N' and others';
    set @Told = @Told + N'. Give one of each circle another ParentID.';
    throw 51009, @Told, 1;
  end;

  delete from dbo.tblAccountParent where ChildID not in (select ID from dbo.tblAccount);
  declare @Gone int = @@rowcount;
  delete from dbo.tblAccountParent where ChildID in (select ID from #Wrong);
  set @Round = 1;
  while exists (select 1 from #Wrong where Round = @Round)
  begin
    insert into dbo.tblAccountParent (ID, ChildID)
      select p.ID, a.ID
      from #Wrong w join dbo.tblAccount a on a.ID = w.ID join dbo.tblAccountParent p on p.ChildID = a.ParentID
      where w.Round = @Round
      union all
      select m.ID, a.ID
      from #Wrong w join dbo.tblAccount a on a.ID = w.ID join dbo.tblAccount m on m.ID = a.ParentID
      where w.Round = @Round;
    set @Round = @Round + 1;
  end;
  update a set NoLevel = l.NoLevel
    from dbo.tblAccount a
      join (select w.ID, 1 + count(p.ID) as NoLevel
            from #Wrong w left join dbo.tblAccountParent p on p.ChildID = w.ID
            group by w.ID) l on l.ID = a.ID
    where a.NoLevel <> l.NoLevel;

  declare @Accounts int = (select count(*) from #Wrong);
  commit transaction;
  if @Accounts + @Gone > 0
    select N'the ancestors and levels of ' + cast(@Accounts as nvarchar(11))
      + N' accounts were made anew by their parents; ' + cast(@Gone as nvarchar(11))
      + N' ancestors of accounts that are gone were taken away' as Done;
end;
GO

exec dbo.spAccountMendTree;
GO
