-- The demo chart is told once for both databases, in statements that they share. What they say differently stands here
-- and in 900_end.sql: tables to work with, what a rial is, a date some days later.
create temp table DemoChart (Code text primary key, Title text, Nature int) without rowid;
create temp table DemoPattern (Line int primary key, Pattern int, Code text, Debit int, Credit int, Description text);
create temp table DemoPlan (ID int primary key, PeriodID int, Day int, Pattern int, Amount int);
-- Money is stored in ten-thousandths.
create temp table DemoMoney (Unit int);
insert into DemoMoney values (10000);
