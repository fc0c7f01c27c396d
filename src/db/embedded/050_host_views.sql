-- The views on the host's tables. A host may have others under these names, so that a file of an older version keeps
-- those that it has.

create view vwTarvoBasePath as select BasePath from tblTarvoBasePath;

-- The selectors: the major view of a pair has ID, Name (the text shown) and, where there is one, Code; the minor view
-- has ID and Name, a second text that tells like ones apart.

-- No column may be called PeriodID here: a statement of the period screen would take it for its own.
create view vwAccountPeriodMajor as select ID, Name from tblAccountPeriod;
create view vwAccountPeriodMinor as
select ID, FarsiBeginDate || ' - ' || FarsiEndDate as Name from tblAccountPeriod;

create view vwAccountBranchMajor as select ID, Code, Name from tblAccountBranch;
create view vwAccountBranchMinor as select ID, Address as Name from tblAccountBranch;

create view vwAccountGroup as select ID, Code, Name from tblAccountGroup;
create view vwAccountGroupMinor as select ID, Description as Name from tblAccountGroup;

-- The name is the text of a class in every list, code and name, since lists compare it as a whole.
create view vwAccountClass as
select ID, Code, (ifnull(Code, '') || '_' || Name) collate nocase as Name from tblAccountClass;
create view vwAccountClassMinor as select ID, Description as Name from tblAccountClass;

create view vwPosition_Employee_Special3 as select ID, Code, Name from tblAccCostCenter;
create view vwPositionMinor as select ID, Description as Name from tblAccCostCenter;

-- The objects of the entity classes: ParentID is null at the top of a class's tree.
create view vwEntityPerson as select ID, ParentID, Code, Name from tblEntityPerson;
create view vwEntityPersonMinor as select ID, Description as Name from tblEntityPerson;

create view vwEntityProject as select ID, ParentID, Code, Name from tblEntityProject;
create view vwEntityProjectMinor as select ID, Description as Name from tblEntityProject;

create view vwEntityBank as select ID, ParentID, Code, Name from tblEntityBank;
create view vwEntityBankMinor as select ID, Description as Name from tblEntityBank;
