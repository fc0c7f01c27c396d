-- Undoes all that an operation changed, and gives no row; or changes nothing, and gives a row for each account that stands in
-- the way: AccountID, Reason (a number of data::Obstacle), OperationID (the last one that has changed it since). The session
-- says in its context that it takes this operation back.
--
-- It runs as its owner: whoever may execute it needs no right to insert an account under its old ID.
create procedure dbo.spAccountTakeBack @OperationID int
with execute as owner
as
begin
  set nocount on;
  set xact_abort on;
  if @@trancount > 0 or isnull(cast(session_context(N'LedgerTree.TakesBack') as int), 0) <> @OperationID
    throw 51014, N'An operation is taken back by itself, by a session that says so.', 1;
  create table #Standing (Place int identity (1, 1) not null primary key, AccountID int null, Reason int not null);
  -- The rows of other tables, and how often each came, less how often it went.
  create table #Link (Link int not null, AccountID int not null, First int null, Second int null, Third int null,
                      Times int not null);
  -- The changes of accounts; the last one of each account is its first round.
  create table #Change (ID bigint not null primary key, AccountID int not null, Round int not null);
  create table #Up (AccountID int not null primary key, Above int null);
  -- The accounts as they are, from round to round nearer to what they were.
  select top 0 c.AccountID as AccountID, c.Event as IsThere, {old as now} into #Now from dbo.tblAccountChange c;
  create index ixNow on #Now (AccountID);

  begin transaction;
  exec dbo.spAccountHoldChart;
  if not exists (select 1 from dbo.tblAccountOperation where ID = @OperationID)
    insert into #Standing (AccountID, Reason) values (null, 11);
  if exists (select 1 from dbo.tblAccountOperation where ID = @OperationID and IsCut <> 0)
    insert into #Standing (AccountID, Reason) values (null, 10);
  if not exists (select 1 from #Standing)
  begin
    insert into #Link (Link, AccountID, First, Second, Third, Times)
      select Link, AccountID, First, Second, Third, sum(2 * IsNew - 1) from dbo.tblAccountLinkChange
      where OperationID = @OperationID
      group by Link, AccountID, First, Second, Third having sum(2 * IsNew - 1) <> 0;
    insert into #Change (ID, AccountID, Round)
      select ID, AccountID, row_number() over (partition by AccountID order by ID desc) from dbo.tblAccountChange
      where OperationID = @OperationID;
    insert into #Now (AccountID, IsThere, {names})
      select c.AccountID, case when a.ID is null then 0 else 1 end, {a.names}
      from (select distinct AccountID from #Change) c
        left join dbo.tblAccount a with (updlock, holdlock) on a.ID = c.AccountID;
  end;

  -- Change by change, from the last to the first, each only where the account is as the change left it.
  declare @Round int = 1;
  while exists (select 1 from #Change where Round = @Round)
  begin
    insert into #Standing (AccountID, Reason)
      select n.AccountID, case when c.Event = 3 then 3 when n.IsThere = 0 then 2 else 1 end
      from #Change r join dbo.tblAccountChange c on c.ID = r.ID join #Now n on n.AccountID = r.AccountID
      where r.Round = @Round
        and (c.Event = 3 and n.IsThere = 1
          or c.Event <> 3 and (n.IsThere = 0
            or {not as left}))
      order by c.ID desc;
    update n set IsThere = case when c.Event = 1 then 0 else 1 end,
        {now as old}
      from #Change r join dbo.tblAccountChange c on c.ID = r.ID join #Now n on n.AccountID = r.AccountID
      where r.Round = @Round;
    set @Round = @Round + 1;
  end;

  -- Accounts that go again.
  insert into #Standing (AccountID, Reason)
    select w.AccountID, 7 from #Now w join dbo.tblAccount a on a.ID = w.AccountID
    where w.IsThere = 0
      and (exists (select 1 from #Now n where n.IsThere = 1 and n.ParentID = w.AccountID)
        or exists (select 1 from dbo.tblAccount s
                   where s.ParentID = w.AccountID and s.ID not in (select AccountID from #Now)));
  insert into #Standing (AccountID, Reason)
    select w.AccountID, 6 from #Now w
    where w.IsThere = 0 and exists (
      select 1 from dbo.tblAccountDocumentDetail l with (updlock, holdlock) where l.AccountID = w.AccountID);
  insert into #Standing (AccountID, Reason)
    select w.AccountID, 8 from #Now w
    where w.IsThere = 0
      and ({more relations});

  -- Accounts that come again, or go back to a parent.
  insert into #Standing (AccountID, Reason)
    select n.AccountID, 4 from #Now n left join #Now m on m.AccountID = n.ParentID
      left join dbo.tblAccount a on a.ID = n.ParentID
    where n.IsThere = 1 and n.ParentID is not null
      and (m.IsThere = 0 or m.AccountID is null and a.ID is null);
  insert into #Up (AccountID, Above)
    select n.AccountID, n.ParentID from #Now n where n.IsThere = 1 and n.ParentID is not null;
  -- A circle has one of them in it, which comes upon itself.
  declare @Step int = 0;
  while @Step < 1000 and exists (select 1 from #Up where Above is not null)
    and not exists (select 1 from #Up where Above = AccountID)
  begin
    update u set Above = case when n.AccountID is null then a.ParentID else n.ParentID end
      from #Up u left join #Now n on n.AccountID = u.Above left join dbo.tblAccount a on a.ID = u.Above
      where u.Above is not null;
    set @Step = @Step + 1;
  end;
  insert into #Standing (AccountID, Reason) select AccountID, 12 from #Up where Above = AccountID;

  -- Rows of other tables.
  insert into #Standing (AccountID, Reason)
    select l.AccountID, 2
    from #Link l left join #Now n on n.AccountID = l.AccountID left join dbo.tblAccount a on a.ID = l.AccountID
    where l.Times < 0 and (n.IsThere = 0 or n.AccountID is null and a.ID is null);
{links stand}

  if not exists (select 1 from #Standing)
  begin
{links go}
    if exists (select 1 from #Now n left join dbo.tblAccount a on a.ID = n.AccountID where n.IsThere = 1 and a.ID is null)
    begin
      set identity_insert dbo.tblAccount on;
      insert into dbo.tblAccount ({names})
        select {n.names} from #Now n left join dbo.tblAccount a on a.ID = n.AccountID
        where n.IsThere = 1 and a.ID is null;
      set identity_insert dbo.tblAccount off;
    end;
    update a set {account as now}
      from dbo.tblAccount a join #Now n on n.AccountID = a.ID
      where n.IsThere = 1 and ({account not as now});
    if exists (select 1 from #Now where IsThere = 0)
      delete from dbo.tblAccount where ID in (select AccountID from #Now where IsThere = 0);
    declare @Time int = 1;
    while exists (select 1 from #Link where Times <= -@Time)
    begin
{links come}
      set @Time = @Time + 1;
    end;

    declare @Own int = isnull(cast(session_context(N'LedgerTree.OperationID') as int), 0);
    -- Accounts may share a code from of old; what counts is who got it behind the operation.
    insert into #Standing (AccountID, Reason)
      select distinct c.AccountID, 5
      from dbo.tblAccountChange c join dbo.tblAccount a on a.ID = c.AccountID
        join dbo.tblAccount b on b.CodeKey = a.CodeKey and b.ID <> a.ID
      where c.OperationID = @OperationID and c.Event <> 1 and c.Fields & {code} <> 0 and exists (
        select 1 from dbo.tblAccountChange d
        where d.AccountID = b.ID and d.ID > c.ID and d.Event <> 3 and d.Fields & {code} <> 0
          and d.OperationID <> @OperationID and d.OperationID <> @Own);
    -- An account with documents doesn't get its first children.
    insert into #Standing (AccountID, Reason)
      select distinct a.ParentID, 6
      from dbo.tblAccountChange c join dbo.tblAccount a on a.ID = c.AccountID
      where c.OperationID = @OperationID and c.Event <> 1 and c.Fields & {parent} <> 0
        and exists (select 1 from dbo.tblAccountDocumentDetail l with (updlock, holdlock) where l.AccountID = a.ParentID)
        and not exists (select 1 from dbo.tblAccount s
                        where s.ParentID = a.ParentID and s.ID not in (
                          select b.AccountID from dbo.tblAccountChange b
                          where b.OperationID = @OperationID and b.Event <> 1 and b.Fields & {parent} <> 0));
  end;

  set @Own = isnull(cast(session_context(N'LedgerTree.OperationID') as int), 0);
  select top 100 s.AccountID, s.Reason, (
      select top 1 x.OperationID from (
        select OperationID, ID from dbo.tblAccountChange where AccountID = s.AccountID
        union all select OperationID, ID from dbo.tblAccountLinkChange where AccountID = s.AccountID) x
      where x.OperationID > @OperationID and x.OperationID <> @Own order by x.ID desc) as OperationID
    from (select AccountID, Reason, min(Place) as Place from #Standing group by AccountID, Reason) s
    order by s.Place;
  if exists (select 1 from #Standing)
    rollback transaction;
  else
    commit transaction;
end;
