-- The rules that hold for every program that writes: tblAccountParent and NoLevel follow ParentID, no account is below
-- itself, an account with children or documents stays, one that goes takes along what belongs to it alone. Each trigger
-- stands a statement of many rows.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- Until the transaction ends, nobody else inserts or moves accounts, or gives one a code by a procedure. Two moves at
-- once could else put two accounts below each other, and two programs could both find a code free.
if object_id(N'dbo.spAccountHoldChart') is not null drop procedure dbo.spAccountHoldChart;
GO
create procedure dbo.spAccountHoldChart
as
begin
  set nocount on;
  declare @Got int;
  exec @Got = sp_getapplock @Resource = N'LedgerTree chart', @LockMode = 'Exclusive', @LockOwner = 'Transaction';
  if @Got < 0
    throw 51005, N'حسابها در دست کاربر ديگري است. چند لحظه ديگر دوباره تلاش نماييد.', 1;
end;
GO

if object_id(N'dbo.trAccountTree') is not null drop trigger dbo.trAccountTree;
GO
create trigger dbo.trAccountTree on dbo.tblAccount after insert, update
as
begin
  set nocount on;
  if not exists (select 1 from inserted) return;

  -- The accounts that came under another parent, and with them all that is below: by the parents themselves, since who
  -- is below whom isn't known by their ancestors before these are made.
  declare @Branch table (ID int not null primary key, Step int not null, Round int null);
  insert into @Branch (ID, Step)
    select i.ID, 0 from inserted i left join deleted d on d.ID = i.ID
    where d.ID is null or isnull(d.ParentID, -1) <> isnull(i.ParentID, -1);
  if exists (select 1 from @Branch)
  begin
    exec dbo.spAccountHoldChart;
    declare @Step int = 0;
    while exists (select 1 from @Branch where Step = @Step)
    begin
      insert into @Branch (ID, Step)
        select a.ID, @Step + 1 from @Branch b join dbo.tblAccount a on a.ParentID = b.ID
        where b.Step = @Step and a.ID not in (select ID from @Branch);
      set @Step = @Step + 1;
    end;
    delete from dbo.tblAccountParent where ChildID in (select ID from @Branch);

    -- They get their ancestors anew, parents ahead of children: first those whose parent stayed where it was.
    declare @Round int = 1;
    update b set Round = 1
      from @Branch b join dbo.tblAccount a on a.ID = b.ID
      where a.ParentID is null or a.ParentID not in (select ID from @Branch);
    while @@rowcount > 0
    begin
      insert into dbo.tblAccountParent (ID, ChildID)
        select p.ID, a.ID
        from @Branch b join dbo.tblAccount a on a.ID = b.ID join dbo.tblAccountParent p on p.ChildID = a.ParentID
        where b.Round = @Round
        union all
        select m.ID, a.ID
        from @Branch b join dbo.tblAccount a on a.ID = b.ID join dbo.tblAccount m on m.ID = a.ParentID
        where b.Round = @Round;
      set @Round = @Round + 1;
      update b set Round = @Round
        from @Branch b join dbo.tblAccount a on a.ID = b.ID join @Branch m on m.ID = a.ParentID
        where b.Round is null and m.Round = @Round - 1;
    end;

    -- Whoever was not reached from above is below itself.
    if exists (select 1 from @Branch where Round is null)
      throw 51001, N'حساب نميتواند زير خودش يا زير يکي از زيرشاخه هاي خودش قرار گيرد. حساب مادر ديگري انتخاب نماييد.', 1;
  end;

  -- Nobody sets a level but the tree.
  update a set NoLevel = l.NoLevel
    from dbo.tblAccount a
      join (select c.ID, 1 + count(p.ID) as NoLevel
            from (select ID from @Branch
                  union select i.ID from inserted i join deleted d on d.ID = i.ID where d.NoLevel <> i.NoLevel) c
              left join dbo.tblAccountParent p on p.ChildID = c.ID
            group by c.ID) l on l.ID = a.ID
    where a.NoLevel <> l.NoLevel;
end;
GO

-- The declared references refuse a deletion before this trigger is asked, and take along what belongs to the account.
-- What is repeated here holds where the host's tables have no such references; the locks see a line that isn't committed
-- yet, also where reading sees the rows of before (read_committed_snapshot).
if object_id(N'dbo.trAccountDelete') is not null drop trigger dbo.trAccountDelete;
GO
create trigger dbo.trAccountDelete on dbo.tblAccount after delete
as
begin
  set nocount on;
  if exists (select 1 from deleted d join dbo.tblAccount a on a.ParentID = d.ID)
    throw 51002, N'اين حساب زيرشاخه دارد. بنابراين امکان حذف آن وجود ندارد.', 1;
  if exists (select 1 from deleted d join dbo.tblAccountDocumentDetail l with (updlock, holdlock) on l.AccountID = d.ID)
    throw 51003, N'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان حذف آن وجود ندارد.', 1;
  delete from dbo.tblAccountParent where ChildID in (select ID from deleted);
  delete from dbo.tblAccountPeriodAccount where AccountID in (select ID from deleted);
  delete from dbo.tblAccountRelatedObjects where AccountID in (select ID from deleted);
  delete from dbo.tblAccountRelatedClasses where AccountID in (select ID from deleted);
  delete from dbo.tblAccountRelatedClassesDetail where AccountID in (select ID from deleted);
end;
GO

-- None is null, whoever writes: the test for accounts of the same group, class and object would take two -1 for the same.
if object_id(N'dbo.trRelatedObjectsWrite') is not null drop trigger dbo.trRelatedObjectsWrite;
GO
create trigger dbo.trRelatedObjectsWrite on dbo.tblAccountRelatedObjects after insert, update
as
begin
  set nocount on;
  if not exists (select 1 from inserted where AccountGroupID < 1 or RelatedClassID < 1 or RelatedObjectID = -1) return;
  update dbo.tblAccountRelatedObjects
    set AccountGroupID = case when AccountGroupID > 0 then AccountGroupID end,
        RelatedClassID = case when RelatedClassID > 0 then RelatedClassID end,
        RelatedObjectID = nullif(RelatedObjectID, -1)
    where AccountID in (select AccountID from inserted)
      and (AccountGroupID < 1 or RelatedClassID < 1 or RelatedObjectID = -1);
end;
GO

-- What a screen shows of the chart was changed.
if object_id(N'dbo.spLedgerTreeNoteChange') is not null drop procedure dbo.spLedgerTreeNoteChange;
GO
create procedure dbo.spLedgerTreeNoteChange
as
begin
  set nocount on;
  update dbo.tblLedgerTreeChanges set Changes = Changes + 1 where Writer = @@spid;
  if @@rowcount = 0
    insert into dbo.tblLedgerTreeChanges (Writer, Changes) values (@@spid, 1);
end;
GO

if object_id(N'dbo.trNotedAccount') is not null drop trigger dbo.trNotedAccount;
GO
create trigger dbo.trNotedAccount on dbo.tblAccount after insert, update, delete
as
begin
  set nocount on;
  if exists (select 1 from inserted) or exists (select 1 from deleted)
    exec dbo.spLedgerTreeNoteChange;
end;
GO

if object_id(N'dbo.trNotedPeriod') is not null drop trigger dbo.trNotedPeriod;
GO
create trigger dbo.trNotedPeriod on dbo.tblAccountPeriodAccount after insert, update, delete
as
begin
  set nocount on;
  if exists (select 1 from inserted) or exists (select 1 from deleted)
    exec dbo.spLedgerTreeNoteChange;
end;
GO

if object_id(N'dbo.trNotedRelation') is not null drop trigger dbo.trNotedRelation;
GO
create trigger dbo.trNotedRelation on dbo.tblAccountRelatedObjects after insert, update, delete
as
begin
  set nocount on;
  if exists (select 1 from inserted) or exists (select 1 from deleted)
    exec dbo.spLedgerTreeNoteChange;
end;
GO
