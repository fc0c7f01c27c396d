-- The views on the host's tables, only where they are missing: a host with periods, groups, branches, cost centres or
-- entities of its own has views of these names on them.
--
-- The selectors: the major view of a pair has ID, Name (the text shown) and, where there is one, Code; the minor view
-- has ID and Name, a second text that tells like ones apart.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO

if object_id(N'dbo.vwTarvoBasePath') is null
  exec (N'create view dbo.vwTarvoBasePath as select BasePath from dbo.tblTarvoBasePath');
GO

-- No column may be called PeriodID here: a statement of the period screen would take it for its own.
if object_id(N'dbo.vwAccountPeriodMajor') is null
  exec (N'create view dbo.vwAccountPeriodMajor as select ID, Name from dbo.tblAccountPeriod');
GO

if object_id(N'dbo.vwAccountPeriodMinor') is null
  exec (N'create view dbo.vwAccountPeriodMinor as select ID, FarsiBeginDate + '' - '' + FarsiEndDate as Name from dbo.tblAccountPeriod');
GO

if object_id(N'dbo.vwAccountBranchMajor') is null
  exec (N'create view dbo.vwAccountBranchMajor as select ID, Code, Name from dbo.tblAccountBranch');
GO

if object_id(N'dbo.vwAccountBranchMinor') is null
  exec (N'create view dbo.vwAccountBranchMinor as select ID, Address as Name from dbo.tblAccountBranch');
GO

if object_id(N'dbo.vwAccountGroup') is null
  exec (N'create view dbo.vwAccountGroup as select ID, Code, Name from dbo.tblAccountGroup');
GO

if object_id(N'dbo.vwAccountGroupMinor') is null
  exec (N'create view dbo.vwAccountGroupMinor as select ID, Description as Name from dbo.tblAccountGroup');
GO

-- The name is the text of a class in every list, code and name, since lists compare it as a whole.
if object_id(N'dbo.vwAccountClass') is null
  exec (N'create view dbo.vwAccountClass as select ID, Code, isnull(Code, '''') + N''_'' + Name as Name from dbo.tblAccountClass');
GO

if object_id(N'dbo.vwAccountClassMinor') is null
  exec (N'create view dbo.vwAccountClassMinor as select ID, Description as Name from dbo.tblAccountClass');
GO

if object_id(N'dbo.vwPosition_Employee_Special3') is null
  exec (N'create view dbo.vwPosition_Employee_Special3 as select ID, Code, Name from dbo.tblAccCostCenter');
GO

if object_id(N'dbo.vwPositionMinor') is null
  exec (N'create view dbo.vwPositionMinor as select ID, Description as Name from dbo.tblAccCostCenter');
GO

-- The objects of the entity classes: ParentID is null at the top of a class's tree.
if object_id(N'dbo.vwEntityPerson') is null
  exec (N'create view dbo.vwEntityPerson as select ID, ParentID, Code, Name from dbo.tblEntityPerson');
GO

if object_id(N'dbo.vwEntityPersonMinor') is null
  exec (N'create view dbo.vwEntityPersonMinor as select ID, Description as Name from dbo.tblEntityPerson');
GO

if object_id(N'dbo.vwEntityProject') is null
  exec (N'create view dbo.vwEntityProject as select ID, ParentID, Code, Name from dbo.tblEntityProject');
GO

if object_id(N'dbo.vwEntityProjectMinor') is null
  exec (N'create view dbo.vwEntityProjectMinor as select ID, Description as Name from dbo.tblEntityProject');
GO

if object_id(N'dbo.vwEntityBank') is null
  exec (N'create view dbo.vwEntityBank as select ID, ParentID, Code, Name from dbo.tblEntityBank');
GO

if object_id(N'dbo.vwEntityBankMinor') is null
  exec (N'create view dbo.vwEntityBankMinor as select ID, Description as Name from dbo.tblEntityBank');
GO
