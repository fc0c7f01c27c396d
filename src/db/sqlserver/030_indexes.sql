-- An index here serves the statements named with it; each costs something at every save, so none is here on suspicion.
-- An index whose name goes on counts as the same: a DBA who wants more columns in one makes it under a longer name.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

-- The greatest code among siblings, the siblings of a recoding, the children that a deletion looks for.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountParent%')
  create index ixAccountParent on dbo.tblAccount (ParentID, Code);
GO

-- A level of the chart, for the code proposal and the recoding.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountLevel%')
  create index ixAccountLevel on dbo.tblAccount (NoLevel, Code);
GO

-- An account of the same title on a level; accounts by title.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountTitle%')
  create index ixAccountTitle on dbo.tblAccount (Title, NoLevel);
GO

-- Accounts by code: the test for an existing code, the export.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccount') and name like N'ixAccountCode%')
  create index ixAccountCode on dbo.tblAccount (Code, NoLevel);
GO

-- The ancestors of an account; the primary key gives its descendants.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountParent') and name like N'ixAccountParentChild%')
  create index ixAccountParentChild on dbo.tblAccountParent (ChildID);
GO

-- The periods of an account; the primary key gives the accounts of a period.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountPeriodAccount') and name like N'ixPeriodAccountAccount%')
  create index ixPeriodAccountAccount on dbo.tblAccountPeriodAccount (AccountID);
GO

-- The relations of an account.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountRelatedObjects') and name like N'ixRelatedObjectsAccount%')
  create index ixRelatedObjectsAccount on dbo.tblAccountRelatedObjects (AccountID);
GO

-- Who else holds a group, class and object.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountRelatedObjects') and name like N'ixRelatedObjectsGroup%')
  create index ixRelatedObjectsGroup on dbo.tblAccountRelatedObjects (AccountGroupID, RelatedClassID, RelatedObjectID);
GO
