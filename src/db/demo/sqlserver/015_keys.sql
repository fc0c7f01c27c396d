-- A session gives keys of its own to one table at a time.
set identity_insert dbo.tblAccCostCenter off;
set identity_insert dbo.tblAccount on;
GO
