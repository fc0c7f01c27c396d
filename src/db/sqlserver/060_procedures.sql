-- The procedures of the chart. Each has done all of its work or none. A refusal (the result 0) changes nothing and leaves
-- a transaction of the caller as it was; an error ends that transaction too.
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
