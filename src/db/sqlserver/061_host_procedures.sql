-- The two procedures that ask the host about a user, only where they are missing: nothing here replaces the security of
-- a host. These stand-ins read tblUser and tblUserPermission.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- Gives 1 where the user has the right, 0 where not.
if object_id(N'dbo.spTarvoHasPermission') is null
  exec (N'create procedure dbo.spTarvoHasPermission @UserID int, @FormPermissionID int
as
begin
  set nocount on;
  if exists (select 1 from dbo.tblUserPermission where UserID = @UserID and FormPermissionID = @FormPermissionID)
    return 1;
  return 0;
end;');
GO

-- Gives the ID of the period in which the user works; 0 for none.
if object_id(N'dbo.spAccountGetCurrentUserPeriod') is null
  exec (N'create procedure dbo.spAccountGetCurrentUserPeriod @UserID int
as
begin
  set nocount on;
  declare @PeriodID int = (select PeriodID from dbo.tblUser where ID = @UserID);
  return isnull(@PeriodID, 0);
end;');
GO
