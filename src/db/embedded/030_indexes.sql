-- An index here serves the statements named with it; each costs something at every save, so none is here on suspicion.

-- The children of a tree node in the order of their codes: isnull(ParentID,-1)=… order by Code.
create index ixAccountTree on tblAccount (ifnull(ParentID, -1), Code);
-- The greatest code among siblings, the siblings of a recoding, the children that a deletion looks for.
create index ixAccountParent on tblAccount (ParentID, Code);
-- Which accounts have children, and between which numbers those lie.
create index ixAccountChildren on tblAccount (ParentID);
-- A level in the order of its last six characters, for the code proposal, and any other look at one level.
create index ixAccountLevel on tblAccount (NoLevel, substr(Code, -6) collate nocase);
-- An account of the same title on a level; accounts by title.
create index ixAccountTitle on tblAccount (Title, NoLevel);
-- Accounts by code: the test for an existing code, the export.
create index ixAccountCode on tblAccount (Code, NoLevel);

-- The test for an existing code: codes that differ by the letters for yeh and kaf, by case or by blanks at the end alone
-- are one. Not unique: a recoding passes through equal codes, and older files have them.
create index ixAccountKey
  on tblAccount (replace(replace(rtrim(Code), 'ی', 'ي'), 'ک', 'ك') collate nocase);

-- The ancestors of an account; the primary key gives its descendants.
create index ixAccountParentChild on tblAccountParent (ChildID);

-- The periods of an account; the primary key gives the accounts of a period.
create index ixPeriodAccountAccount on tblAccountPeriodAccount (AccountID);

create index ixRelatedObjectsAccount on tblAccountRelatedObjects (AccountID);
-- Who else holds a group, class and object.
create index ixRelatedObjectsGroup
  on tblAccountRelatedObjects (AccountGroupID, RelatedClassID, RelatedObjectID);

-- The documents of a period.
create index ixDocumentDate on tblAccountDocument (FarsiDocumentDate);
create index ixDocumentDetailDocument on tblAccountDocumentDetail (DocumentID);
-- Whether an account has movement, and in which documents.
create index ixDocumentDetailAccount on tblAccountDocumentDetail (AccountID, DocumentID);

-- The objects below an object, by name.
create index ixEntityPersonParent on tblEntityPerson (ParentID, Name);
create index ixEntityProjectParent on tblEntityProject (ParentID, Name);
create index ixEntityBankParent on tblEntityBank (ParentID, Name);

-- What the planner can't know by itself: a level holds a large part of the chart. Else it would look for a title by
-- reading the whole level.
analyze sqlite_schema;
insert into sqlite_stat1 (tbl, idx, stat) values ('tblAccount', 'ixAccountLevel', '1000000 200000 10');
analyze sqlite_schema;
