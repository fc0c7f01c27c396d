-- Forgets what was changed ahead of a day, and gives how many operations are gone. What is left has to be all that happened
-- from its first change on, so that the changes go in their order and an operation that others came between may lose its
-- beginning. The number of the last operation is kept: somebody may be at it.
set nocount on;
declare @First bigint = (
  select min(x.ID) from (
    select c.ID from dbo.tblAccountChange c with (tablockx, holdlock)
      join dbo.tblAccountOperation o with (tablockx, holdlock) on o.ID = c.OperationID where o.Moment >= '{day}'
    union all
    select c.ID from dbo.tblAccountLinkChange c with (tablockx, holdlock)
      join dbo.tblAccountOperation o on o.ID = c.OperationID where o.Moment >= '{day}') x);
if @First is null set @First = 9223372036854775807;
update dbo.tblAccountOperation set IsCut = 1
where ID in (select OperationID from dbo.tblAccountChange where ID < @First)
  or ID in (select OperationID from dbo.tblAccountLinkChange where ID < @First);
delete from dbo.tblAccountChange where ID < @First;
delete from dbo.tblAccountLinkChange where ID < @First;
declare @Last int = (select max(ID) from dbo.tblAccountOperation);
delete from dbo.tblAccountOperation
where ID < @Last and ID not in (select OperationID from dbo.tblAccountChange)
  and ID not in (select OperationID from dbo.tblAccountLinkChange);
declare @Gone int = @@rowcount;
update dbo.tblAccountMemory set Since = '{day}' where Since < '{day}';
select @Gone as Gone;
