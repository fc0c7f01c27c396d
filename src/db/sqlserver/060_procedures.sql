-- The procedures of the chart. Each has done all of its work or none. A refusal (the result 0) changes nothing and leaves
-- a transaction of the caller as it was; an error ends that transaction too.
--
-- Those that write an account compare first what was handed over, see spAccountCompareRead. Their results say nothing of it.
--
-- The -1 or 0 of a parent, group or class is stored as null, and the -1 of an object.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- Gives 1 where an account other than @ID has the code, as CodeKey compares codes. Accounts that share one from before
-- that rule keep it, each in its own letters, until somebody gives one of them another: else nothing of them could be
-- changed.
if object_id(N'dbo.spAccountFindCode') is not null drop procedure dbo.spAccountFindCode;
GO
create procedure dbo.spAccountFindCode @Code varchar(20), @ID int
as
begin
  set nocount on;
  declare @Key nvarchar(20) = upper(replace(replace(rtrim(cast(@Code as nvarchar(20)) collate Latin1_General_100_BIN2),
    nchar(1740), nchar(1610)), nchar(1705), nchar(1603)));
  declare @Kept int = 0;
  if exists (select 1 from dbo.tblAccount
             where ID = @ID and cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2 = @Code)
    set @Kept = 1;
  if exists (select 1 from dbo.tblAccount
             where CodeKey = @Key and ID <> @ID
               and (@Kept = 0 or cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2 = @Code))
    return 1;
  return 0;
end;
GO

-- Compares what a screen read of the account and of its parent with what is stored, and fails with 51011 or 51012 where
-- somebody else has changed it. A screen hands it over in the context of its session, under the names of the columns,
-- ahead of the write that it counts for; whoever hands nothing over is compared with nothing. Texts are compared letter by
-- letter, with case and blanks.
if object_id(N'dbo.spAccountCompareRead') is not null drop procedure dbo.spAccountCompareRead;
GO
create procedure dbo.spAccountCompareRead @ID int
as
begin
  set nocount on;
  declare @Read int = cast(session_context(N'LedgerTree.ID') as int);
  if @Read is not null
  begin
    exec sp_set_session_context N'LedgerTree.ID', null;
    if exists (select 1 from dbo.tblAccount with (updlock, holdlock)
               where ID = cast(session_context(N'LedgerTree.Parent') as int)
                 and case when ParentID > 0 then ParentID else 0 end
                   <> case when cast(session_context(N'LedgerTree.ParentsParent') as int) < 1 then 0
                           else cast(session_context(N'LedgerTree.ParentsParent') as int) end)
      throw 51012, N'حساب مادر را پس از آن که خوانده شد کاربر ديگري جابجا کرده است و چيزي ثبت نشد. حساب مادر را دوباره انتخاب نماييد.', 1;
    if exists (select 1 from dbo.tblAccount with (updlock, holdlock)
               where ID = cast(session_context(N'LedgerTree.Parent') as int)
                 and cast(isnull(Code, '') as varbinary(8000))
                   <> cast(cast(session_context(N'LedgerTree.ParentCode') as varchar(8000)) as varbinary(8000)))
      throw 51012, N'کد حساب مادر را پس از آن که خوانده شد کاربر ديگري تغيير داده است و چيزي ثبت نشد. حساب مادر را دوباره انتخاب نماييد.', 1;
    if @Read = @ID and exists (select 1 from dbo.tblAccount where ID = @ID) and (
      not exists (
        select isnull(ParentID, -1), isnull(GroupID, -1), isnull(IsPermanent, -1), isnull(AccountNatureID, -1),
               isnull(IsClosed, -1), isnull(BranchID, -1), isnull(PositionID, -1), MaxDebit, MaxCredit,
               cast(isnull(Code, '') as varbinary(8000)), cast(isnull(Title, '') as varbinary(8000)),
               cast(isnull(Notes, '') as varbinary(8000))
        from dbo.tblAccount with (updlock, holdlock) where ID = @ID
        intersect
        select cast(session_context(N'LedgerTree.ParentID') as int), cast(session_context(N'LedgerTree.GroupID') as int),
               cast(session_context(N'LedgerTree.IsPermanent') as int),
               cast(session_context(N'LedgerTree.AccountNatureID') as int),
               cast(session_context(N'LedgerTree.IsClosed') as int), cast(session_context(N'LedgerTree.BranchID') as int),
               cast(session_context(N'LedgerTree.PositionID') as int),
               cast(session_context(N'LedgerTree.MaxDebit') as money),
               cast(session_context(N'LedgerTree.MaxCredit') as money),
               cast(cast(session_context(N'LedgerTree.Code') as varchar(8000)) as varbinary(8000)),
               cast(cast(session_context(N'LedgerTree.Title') as varchar(8000)) as varbinary(8000)),
               cast(cast(session_context(N'LedgerTree.Notes') as varchar(8000)) as varbinary(8000)))
      or cast(session_context(N'LedgerTree.Related') as int) <> case when exists (
           select 1 from dbo.tblAccountRelatedObjects with (updlock, holdlock) where AccountID = @ID) then 1 else 0 end
      or cast(session_context(N'LedgerTree.Related') as int) = 1 and not exists (
           select 1 from dbo.tblAccountRelatedObjects
           where AccountID = @ID
             and isnull(RelatedClassID, -1) = cast(session_context(N'LedgerTree.RelatedClassID') as int)
             and isnull(RelatedObjectID, -1) = cast(session_context(N'LedgerTree.RelatedObjectID') as int)))
      throw 51011, N'اين حساب را پس از آن که خوانده شد کاربر ديگري تغيير داده است و اين تغيير ثبت نشد. حساب را دوباره بخوانيد.', 1;
  end;
end;
GO

-- Gives the ID of the new account; 0 where the code exists.
if object_id(N'dbo.spAccountInsertAccount') is not null drop procedure dbo.spAccountInsertAccount;
GO
create procedure dbo.spAccountInsertAccount
  @CreateDate datetime, @FarsiCreateDate varchar(10), @AccountGroupID int, @IsPermanent int, @AccountNatureID int,
  @ParentID int, @Title varchar(50), @Code varchar(20), @IsClosed int, @ContractID int, @PositionID int,
  @Notes varchar(250), @MaxDebit money, @MaxCredit money
as
begin
  set nocount on;
  set xact_abort on;
  declare @ID int = 0, @Found int;
  begin transaction;
  exec dbo.spAccountHoldChart;
  exec dbo.spAccountCompareRead 0;
  if @ParentID > 0 and not exists (select 1 from dbo.tblAccount where ID = @ParentID)
    throw 51004, N'حساب مادر ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. حساب مادر ديگري انتخاب نماييد.', 1;
  exec @Found = dbo.spAccountFindCode @Code, 0;
  if @Found = 0
  begin
    insert into dbo.tblAccount (CreateDate, FarsiCreateDate, GroupID, IsPermanent, AccountNatureID, ParentID, Title, Code,
                                IsClosed, BranchID, PositionID, Notes, MaxDebit, MaxCredit)
    values (isnull(@CreateDate, getdate()), @FarsiCreateDate, case when @AccountGroupID > 0 then @AccountGroupID end,
            @IsPermanent, @AccountNatureID, case when @ParentID > 0 then @ParentID end, @Title, @Code,
            @IsClosed, @ContractID, @PositionID, @Notes, @MaxDebit, @MaxCredit);
    set @ID = scope_identity();
  end;
  commit transaction;
  return @ID;
end;
GO

-- Gives 1; 0 where another account has the code.
if object_id(N'dbo.spAccountUpdateAccounts') is not null drop procedure dbo.spAccountUpdateAccounts;
GO
create procedure dbo.spAccountUpdateAccounts
  @ID int, @ParentID int, @AccountGroupID int, @IsPermanent int, @AccountNatureID int, @Title varchar(100),
  @Code varchar(20), @IsClosed int, @ContractID int, @PositionID int, @Notes varchar(250), @MaxDebit money,
  @MaxCredit money
as
begin
  set nocount on;
  set xact_abort on;
  declare @Done int = 0, @Found int;
  begin transaction;
  exec dbo.spAccountHoldChart;
  exec dbo.spAccountCompareRead @ID;
  if not exists (select 1 from dbo.tblAccount where ID = @ID)
    throw 51004, N'اين حساب ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. درخت حسابها را دوباره بخوانيد.', 1;
  if @ParentID > 0 and not exists (select 1 from dbo.tblAccount where ID = @ParentID)
    throw 51004, N'حساب مادر ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. حساب مادر ديگري انتخاب نماييد.', 1;
  exec @Found = dbo.spAccountFindCode @Code, @ID;
  if @Found = 0
  begin
    update dbo.tblAccount
    set ParentID = case when @ParentID > 0 then @ParentID end,
        GroupID = case when @AccountGroupID > 0 then @AccountGroupID end,
        IsPermanent = @IsPermanent, AccountNatureID = @AccountNatureID, Title = @Title, Code = @Code,
        IsClosed = @IsClosed, BranchID = @ContractID, PositionID = @PositionID, Notes = @Notes, MaxDebit = @MaxDebit,
        MaxCredit = @MaxCredit
    where ID = @ID;
    set @Done = 1;
  end;
  commit transaction;
  return @Done;
end;
GO

-- Leaves the account with the one relation given.
if object_id(N'dbo.spAccountInsertRelatedObject') is not null drop procedure dbo.spAccountInsertRelatedObject;
GO
create procedure dbo.spAccountInsertRelatedObject
  @AccountID int, @AccountGroupID int, @RelatedClassID int, @RelatedObjectID int
as
begin
  set nocount on;
  set xact_abort on;
  begin transaction;
  exec dbo.spAccountCompareRead @AccountID;
  if not exists (select 1 from dbo.tblAccount with (updlock, holdlock) where ID = @AccountID)
    throw 51004, N'اين حساب ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. درخت حسابها را دوباره بخوانيد.', 1;
  delete from dbo.tblAccountRelatedObjects where AccountID = @AccountID;
  insert into dbo.tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
  values (@AccountID, case when @AccountGroupID > 0 then @AccountGroupID end,
          case when @RelatedClassID > 0 then @RelatedClassID end, nullif(@RelatedObjectID, -1));
  commit transaction;
  return 1;
end;
GO

-- Gives 1, also for an account that somebody else deleted first; 0 where something depends on the account: a child, a
-- document, or a row of any other table that refers to it.
if object_id(N'dbo.spAccountDeleteAccount') is not null drop procedure dbo.spAccountDeleteAccount;
GO
create procedure dbo.spAccountDeleteAccount @ID_1 int
as
begin
  set nocount on;
  set xact_abort on;
  declare @Done int = 0;
  declare @Outer int = @@trancount;
  begin try
    begin transaction;
    -- The locks keep away what would depend on the account a moment later.
    if not exists (select 1 from dbo.tblAccount with (updlock, holdlock) where ParentID = @ID_1)
      and not exists (select 1 from dbo.tblAccountDocumentDetail with (updlock, holdlock) where AccountID = @ID_1)
    begin
      delete from dbo.tblAccount where ID = @ID_1;
      set @Done = 1;
    end;
    commit transaction;
  end try
  begin catch
    if @@trancount > 0 rollback transaction;
    -- A table of the host refers to the account. A caller whose transaction ended with that has to know.
    if error_number() = 547 and @Outer = 0 return 0;
    throw;
  end catch;
  return @Done;
end;
GO
