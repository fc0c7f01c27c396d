-- LedgerTree on Microsoft SQL Server 2016 and later.
--
-- Run these scripts in the order of their names, in the database that the chart lives in, as a member of db_owner. They
-- are UTF-8; batches end at GO. They can be run again at any time: tables, and what belongs to the host application, are
-- made only where they are missing; the views, triggers and procedures of the chart are made anew.

-- Texts are varchar. A database whose code page has no Persian letters would store question marks.
if cast(N'بدهكار' as varchar(20)) <> N'بدهكار'
  throw 51000, N'The code page of this database has no Persian letters. Use a collation such as Persian_100_CI_AS.', 1;

-- A length counts bytes; in a UTF-8 collation a Persian letter takes two, and a code of 20 letters would be cut.
if collationproperty(cast(databasepropertyex(db_name(), 'Collation') as varchar(128)), 'CodePage') = 65001
  throw 51000, N'This database stores Persian letters as several bytes. Use a collation such as Persian_100_CI_AS.', 1;

-- Codes and titles compare without regard to letter case.
if 'a' <> 'A'
  throw 51000, N'This database tells capital from small letters. Use a collation such as Persian_100_CI_AS.', 1;
GO
