-- The demo chart, for a database whose tables are empty. Run these scripts and those beside their folder in one session,
-- in the order of their names. LedgerTree's own installer folds the letters that code page 1256 lacks, the Persian yeh
-- above all; a tool that sends the scripts as they are loses them.
set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;
set numeric_roundabort off;
GO
if exists (select 1 from dbo.tblAccount) or exists (select 1 from dbo.tblAccountPeriod)
  or exists (select 1 from dbo.tblAccountDocument) or exists (select 1 from dbo.tblAccountGroup)
  or exists (select 1 from dbo.tblAccountBranch) or exists (select 1 from dbo.tblAccCostCenter)
  or exists (select 1 from dbo.tblAccountClass) or exists (select 1 from dbo.tblTarvoSystemParameters)
  throw 51010, N'The demo chart needs empty tables, and some have rows.', 1;
GO

create table dbo.DemoChart (Code varchar(20) not null primary key, Title varchar(50), Nature int);
create table dbo.DemoPattern (
  Line int not null primary key, Pattern int, Code varchar(20), Debit int, Credit int, Description varchar(250)
);
create table dbo.DemoPlan (ID int not null primary key, PeriodID int, Day int, Pattern int, Amount bigint);
create table dbo.DemoMoney (Unit int);
insert into dbo.DemoMoney values (1);
GO

set dateformat ymd;
set identity_insert dbo.tblAccount on;
GO
