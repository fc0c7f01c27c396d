-- The same for the tables of the host. A host whose tables have indexes that begin with these columns can leave the
-- script out. On a table with millions of rows an index takes its time: run the script when nobody works.

-- The documents of a period.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocument') and name like N'ixDocumentDate%')
  create index ixDocumentDate on dbo.tblAccountDocument (FarsiDocumentDate);
GO

-- The lines of a document.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocumentDetail') and name like N'ixDocumentDetailDocument%')
  create index ixDocumentDetailDocument on dbo.tblAccountDocumentDetail (DocumentID);
GO

-- Whether an account has movement, and in which documents.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblAccountDocumentDetail') and name like N'ixDocumentDetailAccount%')
  create index ixDocumentDetailAccount on dbo.tblAccountDocumentDetail (AccountID, DocumentID);
GO

-- The objects below an object, by name.
if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityPerson') and name like N'ixEntityPersonParent%')
  create index ixEntityPersonParent on dbo.tblEntityPerson (ParentID, Name);
GO

if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityProject') and name like N'ixEntityProjectParent%')
  create index ixEntityProjectParent on dbo.tblEntityProject (ParentID, Name);
GO

if not exists (select 1 from sys.indexes where object_id = object_id(N'dbo.tblEntityBank') and name like N'ixEntityBankParent%')
  create index ixEntityBankParent on dbo.tblEntityBank (ParentID, Name);
GO
