-- What the accounts are for, where they are shown, and the documents of three years. The fourth period is prepared: it has
-- the permanent accounts and no document yet.

-- Persons, projects and bank accounts bear the titles of their accounts.
insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
select a.ID, case substring(a.Code, 1, 3) when '103' then 4 when '301' then 8 when '101' then 3 end, 1, p.ID
from tblAccount a join tblEntityPerson p on p.Name = a.Title
where substring(a.Code, 1, 3) = '103' or substring(a.Code, 1, 3) = '301' or substring(a.Code, 1, 5) = '10104';
insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
select a.ID, 14, 2, j.ID from tblAccount a join tblEntityProject j on j.Name = a.Title
where substring(a.Code, 1, 5) = '20301';
insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
select a.ID, 2, 3, b.ID from tblAccount a join tblEntityBank b on b.Name = a.Title
where substring(b.Code, 3, 1) <> '';
-- One account stands for a whole group.
insert into tblAccountRelatedObjects (AccountID, AccountGroupID)
select a.ID, g.GroupID
from (select '10101' as Code, 1 as GroupID union all select '10302', 5 union all select '105', 6
      union all select '201', 7 union all select '30102', 9 union all select '306', 10
      union all select '304', 11 union all select '5', 12 union all select '601', 13) g
  join tblAccount a on a.Code = g.Code;
update tblAccount
set GroupID = (select r.AccountGroupID from tblAccountRelatedObjects r where r.AccountID = tblAccount.ID);

-- For an installation that gives an account several classes on levels.
insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence)
select a.ID, c.ClassID, c.Sequence
from (select '1030103' as Code, 1 as ClassID, 1 as Sequence union all select '10105', 3, 1
      union all select '10605', 1, 1 union all select '10605', 2, 2
      union all select '20302', 2, 1 union all select '20302', 1, 2 union all select '20302', 3, 3) c
  join tblAccount a on a.Code = c.Code;
-- Cash in transit concerns two banks with all their branches, and one account.
update tblAccountRelatedClasses set IncludeAllObjects = 0
where AccountID = (select ID from tblAccount where Code = '10105');
insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID)
select a.ID, 3, b.ID from tblAccount a, tblEntityBank b where a.Code = '10105' and b.Code in ('1', '2', '411');

insert into tblAccountPeriodAccount (AccountID, PeriodID)
select a.ID, p.ID
from tblAccountPeriod p, tblAccount a
where a.FarsiCreateDate <= p.FarsiEndDate
  and (p.ID < 3 or a.IsClosed = 0)
  and (p.ID < 4 or a.IsPermanent = 1);

-- The documents come from patterns: the lines of one in shares of its amount, each side the same in sum.
insert into DemoPattern (Line, Pattern, Code, Debit, Credit, Description) values
  (1, 0, '101020101', 20, 0, 'سند افتتاحیه'), (2, 0, '101020201', 15, 0, 'سند افتتاحیه'),
  (3, 0, '105010101', 25, 0, 'سند افتتاحیه'), (4, 0, '103010101', 30, 0, 'سند افتتاحیه'),
  (5, 0, '2010202', 60, 0, 'سند افتتاحیه'), (6, 0, '301010101', 0, 40, 'سند افتتاحیه'),
  (7, 0, '40301', 0, 20, 'سند افتتاحیه'), (8, 0, '5010101', 0, 90, 'سند افتتاحیه'),
  (9, 1, '103010101', 110, 0, 'فروش اعتباری مخازن ذخیره'), (10, 1, '6010101', 0, 100, 'فروش اعتباری مخازن ذخیره'),
  (11, 1, '3020401', 0, 10, 'مالیات ارزش افزوده فروش'),
  (12, 2, '105010101', 100, 0, 'خرید ورق سیاه'), (13, 2, '1040301', 10, 0, 'مالیات ارزش افزوده خرید'),
  (14, 2, '301010101', 0, 110, 'خرید ورق سیاه'),
  (15, 3, '101020101', 100, 0, 'وصول از شرکت پولادگستر آریا'),
  (16, 3, '103010101', 0, 100, 'وصول از شرکت پولادگستر آریا'),
  (17, 4, '301010101', 100, 0, 'پرداخت به شرکت ورق فولاد سپاهان'),
  (18, 4, '101020201', 0, 100, 'پرداخت به شرکت ورق فولاد سپاهان'),
  (19, 5, '80101', 60, 0, 'حقوق و دستمزد ماه'), (20, 5, '70301', 80, 0, 'حقوق و دستمزد ماه'),
  (21, 5, '80106', 12, 0, 'بیمه سهم کارفرما'), (22, 5, '70303', 16, 0, 'بیمه سهم کارفرما'),
  (23, 5, '30201', 0, 124, 'خالص حقوق پرداختنی'), (24, 5, '30202', 0, 36, 'حق بیمه پرداختنی'),
  (25, 5, '3020301', 0, 8, 'مالیات حقوق'),
  (26, 6, '70201', 100, 0, 'مصرف ورق در تولید'), (27, 6, '105010101', 0, 100, 'مصرف ورق در تولید'),
  (28, 7, '80202', 40, 0, 'قبوض دفتر مرکزی'), (29, 7, '7040301', 60, 0, 'قبض برق کارخانه'),
  (30, 7, '101020101', 0, 100, 'پرداخت قبوض'),
  (31, 8, '80205', 30, 0, 'صورت تنخواه'), (32, 8, '80204', 30, 0, 'صورت تنخواه'), (33, 8, '80206', 40, 0, 'صورت تنخواه'),
  (34, 8, '1010401', 0, 100, 'صورت تنخواه'),
  (35, 9, '70405', 70, 0, 'استهلاک ماه'), (36, 9, '80212', 30, 0, 'استهلاک ماه'),
  (37, 9, '20203', 0, 70, 'استهلاک ماه'), (38, 9, '20201', 0, 30, 'استهلاک ماه'),
  (39, 10, '103010201', 100, 0, 'صادرات سازه به عراق'), (40, 10, '6010201', 0, 100, 'صادرات سازه به عراق'),
  (41, 11, '1030201', 100, 0, 'دریافت چک از شرکت سازه‌های فلزی البرز'),
  (42, 11, '103010102', 0, 100, 'دریافت چک از شرکت سازه‌های فلزی البرز'),
  (43, 12, '2030101', 100, 0, 'صورت‌وضعیت پیمانکار سالن 2'), (44, 12, '301010301', 0, 85, 'صورت‌وضعیت پیمانکار سالن 2'),
  (45, 12, '3020501', 0, 10, 'سپرده حسن انجام کار'), (46, 12, '3020303', 0, 5, 'مالیات پیمانکار'),
  (47, 13, '1050301', 100, 0, 'تکمیل سفارش تولید'), (48, 13, '1050202', 0, 100, 'تکمیل سفارش تولید'),
  (49, 14, '70101', 100, 0, 'بهای کالای فروش‌رفته'), (50, 14, '1050301', 0, 100, 'بهای کالای فروش‌رفته'),
  (51, 15, '80401', 70, 0, 'قسط تسهیلات'), (52, 15, '80402', 30, 0, 'کارمزد بانک'), (53, 15, '101020201', 0, 100, 'برداشت بانک'),
  (54, 16, '1010401', 100, 0, 'شارژ تنخواه'), (55, 16, '101020101', 0, 100, 'شارژ تنخواه'),
  (56, 17, '103010102', 110, 0, 'فروش سازه پیش‌ساخته'), (57, 17, '6010102', 0, 100, 'فروش سازه پیش‌ساخته'),
  (58, 17, '3020401', 0, 10, 'مالیات ارزش افزوده فروش'),
  (59, 18, '105010201', 100, 0, 'خرید میلگرد'), (60, 18, '1040301', 10, 0, 'مالیات ارزش افزوده خرید'),
  (61, 18, '301010102', 0, 110, 'خرید میلگرد');

-- The first and the last document of a year stand on its first and its last day but one at the most.
with Years (PeriodID, Documents, Earlier) as (select 1, 70, 0 union all select 2, 70, 70 union all select 3, 60, 140),
Numbers (N) as (select 0 union all select N + 1 from Numbers where N < 69)
insert into DemoPlan (ID, PeriodID, Day, Pattern, Amount)
select y.Earlier + n.N + 1, y.PeriodID, n.N * 364 / (y.Documents - 1),
       case n.N when 0 then 0 else 1 + (n.N * 7 + y.PeriodID) % 18 end,
       (1 + (n.N * 37 + y.PeriodID * 11) % 60) * 2500000
from Years y, Numbers n where n.N < y.Documents;
-- Petty cash is small, bills and bank charges are middling, an opening is large.
update DemoPlan set Amount = Amount * case when Pattern in (8, 16) then 1 when Pattern in (7, 15) then 10
                                           when Pattern = 0 then 2000 else 60 end;

-- Of the months of a year, the first six have 31 days. Neither database joins texts as the other does, so the date is
-- put together by replacing.
insert into tblAccountDocument (ID, FarsiDocumentDate, Description)
select d.ID,
       replace(replace(replace('year/m/d', 'year/', substring(p.FarsiBeginDate, 1, 5)),
                       'm', substring(cast(100 + case when d.Day < 186 then d.Day / 31 + 1
                                                      else (d.Day - 186) / 30 + 7 end as varchar(3)), 2, 2)),
               'd', substring(cast(100 + case when d.Day < 186 then d.Day % 31 + 1
                                              else (d.Day - 186) % 30 + 1 end as varchar(3)), 2, 2)),
       l.Description
from DemoPlan d
  join tblAccountPeriod p on p.ID = d.PeriodID
  join DemoPattern l on l.Line = (select min(x.Line) from DemoPattern x where x.Pattern = d.Pattern);

insert into tblAccountDocumentDetail (DocumentID, AccountID, Debit, Credit, Description)
select d.ID, a.ID, d.Amount * l.Debit / 100 * m.Unit, d.Amount * l.Credit / 100 * m.Unit, l.Description
from DemoPlan d
  join DemoPattern l on l.Pattern = d.Pattern
  join tblAccount a on a.Code = l.Code
  cross join DemoMoney m
order by d.ID, l.Line;
