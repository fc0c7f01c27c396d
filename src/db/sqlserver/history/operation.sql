-- Gives the operation that a change belongs to, and begins it at its first change. A session of the screens says in its
-- context what it does; what another program does is one operation as long as its transaction lasts, which it is known by
-- by a lock that ends with that. The context forgets nothing when a transaction is undone: what it names has to be there.
create procedure dbo.spAccountBeginOperation @OperationID int output
as
begin
  set nocount on;
  declare @Kind int = cast(session_context(N'LedgerTree.Kind') as int);
  declare @Lock nvarchar(255) = N'LedgerTree operation ' + cast(@@spid as nvarchar(11));
  set @OperationID = cast(session_context(N'LedgerTree.OperationID') as int);
  if @Kind is null and applock_mode(N'public', @Lock, N'Transaction') = N'NoLock' set @OperationID = null;
  if not exists (select 1 from dbo.tblAccountOperation where ID = @OperationID)
  begin
    insert into dbo.tblAccountOperation (Moment, UserID, Kind, TakesBack)
    values (sysutcdatetime(), case when @Kind is not null then cast(session_context(N'LedgerTree.UserID') as int) end,
            isnull(@Kind, 0), case when @Kind is not null then cast(session_context(N'LedgerTree.TakesBack') as int) end);
    set @OperationID = scope_identity();
    exec sp_set_session_context N'LedgerTree.OperationID', @OperationID;
    if @Kind is null exec sp_getapplock @Resource = @Lock, @LockMode = 'Exclusive', @LockOwner = 'Transaction';
  end;
end;
