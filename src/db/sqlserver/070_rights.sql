-- The least that a person at the screens needs, as a role. A login becomes a member by
--
--   alter role LedgerTreeUsers add member [the user];
--
-- The views, triggers and procedures reach the tables through their owner, so nobody needs a right on what they write.
if database_principal_id(N'LedgerTreeUsers') is null
  create role LedgerTreeUsers;
GO

-- Everybody may read the version: to whoever can't, the database would look like one of the first version.
grant select on dbo.tblLedgerTreeVersion to public;
GO

-- To read.
grant select on dbo.tblAccount to LedgerTreeUsers;
grant select on dbo.tblAccountParent to LedgerTreeUsers;
grant select on dbo.tblAccountPeriod to LedgerTreeUsers;
grant select on dbo.tblAccountDocument to LedgerTreeUsers;
grant select on dbo.tblAccountDocumentDetail to LedgerTreeUsers;
grant select on dbo.tblAccountClass to LedgerTreeUsers;
grant select on dbo.tblTarvoSystemParameters to LedgerTreeUsers;
grant select on dbo.vwAccount to LedgerTreeUsers;
grant select on dbo.vwAccountRelatedObjects to LedgerTreeUsers;
grant select on dbo.vwTarvoBasePath to LedgerTreeUsers;
grant select on dbo.vwAccountMajor to LedgerTreeUsers;
grant select on dbo.vwAccountMinor to LedgerTreeUsers;
grant select on dbo.vwLedgerTreeChanges to LedgerTreeUsers;
grant select on dbo.vwAccountPeriodMajor to LedgerTreeUsers;
grant select on dbo.vwAccountPeriodMinor to LedgerTreeUsers;
grant select on dbo.vwAccountBranchMajor to LedgerTreeUsers;
grant select on dbo.vwAccountBranchMinor to LedgerTreeUsers;
grant select on dbo.vwAccountGroup to LedgerTreeUsers;
grant select on dbo.vwAccountGroupMinor to LedgerTreeUsers;
grant select on dbo.vwAccountClass to LedgerTreeUsers;
grant select on dbo.vwAccountClassMinor to LedgerTreeUsers;
grant select on dbo.vwPosition_Employee_Special3 to LedgerTreeUsers;
grant select on dbo.vwPositionMinor to LedgerTreeUsers;
-- The views of the entity classes; a host grants the same on those that it adds.
grant select on dbo.vwEntityPerson to LedgerTreeUsers;
grant select on dbo.vwEntityPersonMinor to LedgerTreeUsers;
grant select on dbo.vwEntityProject to LedgerTreeUsers;
grant select on dbo.vwEntityProjectMinor to LedgerTreeUsers;
grant select on dbo.vwEntityBank to LedgerTreeUsers;
grant select on dbo.vwEntityBankMinor to LedgerTreeUsers;
GO

-- To write, beside the procedures: the recoding, the closing of a branch, the deletion of the shown account.
grant update on dbo.tblAccount (Code, GroupID, AccountNatureID, IsPermanent, IsClosed) to LedgerTreeUsers;
grant delete on dbo.tblAccount to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountPeriodAccount to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountRelatedObjects to LedgerTreeUsers;
grant select, insert, update, delete on dbo.tblAccountRelatedClasses to LedgerTreeUsers;
grant select, insert, delete on dbo.tblAccountRelatedClassesDetail to LedgerTreeUsers;
GO

grant execute on dbo.spTarvoHasPermission to LedgerTreeUsers;
grant execute on dbo.spAccountGetCurrentUserPeriod to LedgerTreeUsers;
grant execute on dbo.spAccountInsertAccount to LedgerTreeUsers;
grant execute on dbo.spAccountUpdateAccounts to LedgerTreeUsers;
grant execute on dbo.spAccountInsertRelatedObject to LedgerTreeUsers;
grant execute on dbo.spAccountDeleteAccount to LedgerTreeUsers;
-- In one transaction with the statements that write a relation and take away a group.
grant execute on dbo.spAccountCompareRead to LedgerTreeUsers;
GO
