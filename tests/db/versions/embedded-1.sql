-- A file of version 1, as that version made it: a piece of the demo chart, and what a host and other programs
-- added. It never changes: every later version takes it up.
pragma application_id = 1281648468;
pragma user_version = 1;
CREATE TABLE tblAccount ( ID integer primary key autoincrement check (ID between 1 and 2147483647), ParentID int references tblAccount (ID), Code varchar(20) collate nocase check (length(Code) <= 20), Title varchar(100) collate nocase check (length(Title) <= 100), NoLevel int not null default 1, GroupID int, BranchID int default 0, PositionID int default 0, CreateDate datetime not null default (datetime('now', 'localtime')), FarsiCreateDate varchar(10) check (length(FarsiCreateDate) <= 10), Notes varchar(250) collate nocase check (length(Notes) <= 250), AccountNatureID int default 0, IsPermanent int default 0, IsClosed int default 0, MaxDebit money check (typeof(MaxDebit) in ('integer', 'null')), MaxCredit money check (typeof(MaxCredit) in ('integer', 'null')) );
CREATE TABLE tblAccountParent ( ID int not null, ChildID int not null, primary key (ID, ChildID) ) without rowid;
CREATE TABLE tblAccountPeriodAccount ( AccountID int not null, PeriodID int not null, primary key (PeriodID, AccountID) ) without rowid;
CREATE TABLE tblAccountRelatedObjects ( AccountID int not null references tblAccount (ID), AccountGroupID int, RelatedClassID int, RelatedObjectID int );
CREATE TABLE tblAccountRelatedClasses ( AccountID int not null, ClassID int not null, Sequence int not null, IncludeAllObjects int, primary key (AccountID, ClassID, Sequence) ) without rowid;
CREATE TABLE tblAccountRelatedClassesDetail ( AccountID int not null, ClassID int not null, ObjectID int not null, primary key (AccountID, ClassID, ObjectID) ) without rowid;
CREATE TABLE tblAccountPeriod ( ID integer primary key check (ID between 1 and 32767), Name varchar(50) collate nocase not null check (length(Name) <= 50), BeginDate datetime not null, EndDate datetime not null, FarsiBeginDate varchar(10) not null check (length(FarsiBeginDate) <= 10), FarsiEndDate varchar(10) not null check (length(FarsiEndDate) <= 10) );
CREATE TABLE tblAccountDocument ( ID integer primary key check (ID between 1 and 2147483647), FarsiDocumentDate varchar(10) not null check (length(FarsiDocumentDate) <= 10), DocumentDate datetime, Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblAccountDocumentDetail ( ID integer primary key check (ID between 1 and 2147483647), DocumentID int not null references tblAccountDocument (ID), AccountID int not null references tblAccount (ID), Debit money not null default 0 check (typeof(Debit) = 'integer'), Credit money not null default 0 check (typeof(Credit) = 'integer'), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblAccountGroup ( ID integer primary key check (ID between 1 and 32767), Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblAccountBranch ( ID integer primary key check (ID between 1 and 32767), Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Address varchar(250) collate nocase check (length(Address) <= 250) );
CREATE TABLE tblAccCostCenter ( ID integer primary key check (ID between 1 and 32767), Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblAccountClass ( ID integer primary key check (ID between 1 and 32767), Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), ViewMajor varchar(100) not null check (length(ViewMajor) <= 100), ViewMinor varchar(100) not null check (length(ViewMinor) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblEntityPerson ( ID integer primary key check (ID between 1 and 2147483647), ParentID int check (ParentID is null), Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblEntityProject ( ID integer primary key check (ID between 1 and 2147483647), ParentID int, Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblEntityBank ( ID integer primary key check (ID between 1 and 2147483647), ParentID int, Code varchar(20) collate nocase check (length(Code) <= 20), Name varchar(100) collate nocase not null check (length(Name) <= 100), Description varchar(250) collate nocase check (length(Description) <= 250) );
CREATE TABLE tblUser ( ID integer primary key check (ID between 1 and 32767), Name varchar(100) collate nocase not null check (length(Name) <= 100), PeriodID int );
CREATE TABLE tblUserPermission ( UserID int not null references tblUser (ID) on delete cascade, FormPermissionID int not null, primary key (UserID, FormPermissionID) ) without rowid;
CREATE TABLE tblTarvoSystemParameters ( ID integer primary key, Value varchar(250) collate nocase );
CREATE TABLE tblTarvoBasePath ( ID integer primary key check (ID = 1), BasePath varchar(250) not null check (BasePath = '' or substr(BasePath, -1) in ('/', '\')) );
CREATE TABLE tblHostNote (AccountID int, Note text);
insert into tblAccount values
(223,null,'4','بدهی‌های غیرجاری',1,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(224,223,'401','پرداختنی‌های بلندمدت',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(225,224,'40101','اسناد پرداختنی بلندمدت',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(226,224,'40102','حساب‌های پرداختنی بلندمدت',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(227,223,'402','تسهیلات مالی بلندمدت',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(228,227,'40201','تسهیلات طرح توسعه',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(229,223,'403','ذخیره مزایای پایان خدمت کارکنان',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(230,229,'40301','ذخیره سنوات کارکنان اداری',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(231,229,'40302','ذخیره سنوات کارکنان تولید',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(232,null,'5','حقوق مالکانه',1,12,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(233,232,'501','سرمایه',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(234,233,'50101','سرمایه ثبت‌شده',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(235,234,'5010101','غلامحسین صادقی',4,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(236,234,'5010102','شرکت سرمایه‌گذاری راه ابریشم',4,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(237,233,'50102','افزایش سرمایه در جریان',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(238,232,'502','اندوخته قانونی',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(239,232,'503','سایر اندوخته‌ها',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(240,239,'50301','اندوخته طرح و توسعه',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(241,239,'50302','اندوخته احتیاطی',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(242,232,'504','مازاد تجدید ارزیابی دارایی‌ها',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,1,1,0,null,null),
(243,232,'505','سود و زیان انباشته',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,2,1,0,null,null),
(244,243,'50501','سود و زیان سال‌های قبل',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,2,1,0,null,null),
(245,243,'50502','سود و زیان سال جاری',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,2,1,0,null,null),
(246,243,'50503','تعدیلات سنواتی',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,2,1,0,null,null),
(247,232,'506','سهام خزانه',2,null,0,0,'2023-03-21 00:00:00','1402/01/01','از پایان سال 1403 بسته شده است.',0,1,1,null,null),
(298,null,'8','هزینه‌ها',1,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(299,298,'801','هزینه‌های حقوق و مزایا',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(300,299,'80101','حقوق پایه',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(301,299,'80102','اضافه‌کاری',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(302,299,'80103','حق مسکن و خواروبار',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(303,299,'80104','حق اولاد',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(304,299,'80105','عیدی و پاداش',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(305,299,'80106','بیمه سهم کارفرما',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(306,299,'80107','مزایای پایان خدمت',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(307,299,'80108','بازخرید مرخصی',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(308,298,'802','هزینه‌های اداری و عمومی',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(309,308,'80201','اجاره محل',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(310,308,'80202','آب، برق و گاز',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(311,308,'80203','تلفن و اینترنت',3,null,0,4,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(312,308,'80204','ملزومات و نوشت‌افزار',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(313,308,'80205','پذیرایی و آبدارخانه',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(314,308,'80206','ایاب‌وذهاب و مأموریت',3,null,0,1,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(315,308,'80207','تعمیر و نگهداری ساختمان',3,null,0,11,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(316,308,'80208','سوخت و نگهداری خودروها',3,null,0,13,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(317,308,'80209','حق‌الزحمه حسابرسی',3,null,0,2,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(318,308,'80210','مشاوره حقوقی و مالی',3,null,0,1,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(319,308,'80211','بیمه دارایی‌ها',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(320,308,'80212','استهلاک دارایی‌های اداری',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(321,308,'80213','آموزش کارکنان',3,null,0,3,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(322,308,'80214','پشتیبانی نرم‌افزار',3,null,0,4,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(323,308,'80215','عوارض شهرداری و نوسازی',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(324,298,'803','هزینه‌های فروش و توزیع',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(325,324,'80301','آگهی و تبلیغات',3,null,0,5,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(326,324,'80302','پورسانت فروش',3,null,0,5,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(327,324,'80303','حمل کالای فروش‌رفته',3,null,0,13,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(328,324,'80304','نمایشگاه‌ها',3,null,0,0,'2023-03-21 00:00:00','1402/01/01','از پایان سال 1403 بسته شده است.',0,0,1,null,null),
(329,324,'80305','تضمین محصولات',3,null,0,7,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(330,324,'80306','مطالبات سوخت‌شده',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(331,298,'804','هزینه‌های مالی',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(332,331,'80401','سود تسهیلات بانکی',3,null,0,2,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(333,331,'80402','کارمزد خدمات بانکی',3,null,0,2,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(334,331,'80403','هزینه صدور ضمانت‌نامه',3,null,0,2,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(335,331,'80404','جرایم دیرکرد',3,null,0,2,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(336,298,'805','سایر هزینه‌ها',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(337,336,'80501','زیان فروش دارایی‌های ثابت',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(338,336,'80502','زیان تسعیر ارز',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(339,336,'80503','کسری انبار',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(340,336,'80504','ضایعات غیرعادی',3,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(341,298,'806','مالیات بر درآمد',2,null,0,0,'2023-03-21 00:00:00','1402/01/01',null,0,0,0,null,null),
(900,232,'حي1','حساب ي',2,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(901,232,'حی1','حساب ی',2,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(902,null,'9Ak','kaf',1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(903,null,'9AK ','KAF',1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(904,null,'9ك','',1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(905,null,'9ک',null,1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(906,null,null,'بی کد',1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null),
(907,999,'907','مادر ندارد',1,null,0,0,'2026-11-23 06:54:04',null,null,0,0,0,null,null);
insert into tblAccountParent values
(223,224),(223,225),(224,225),(223,226),(224,226),(223,227),(223,228),(227,228),(223,229),(223,230),(229,230),(223,231),(229,231),(232,233),(232,234),
(233,234),(232,235),(233,235),(234,235),(232,236),(233,236),(234,236),(232,237),(233,237),(232,238),(232,239),(232,240),(239,240),(232,241),(239,241),
(232,242),(232,243),(232,244),(243,244),(232,245),(243,245),(232,246),(243,246),(232,247),(298,299),(298,300),(299,300),(298,301),(299,301),(298,302),
(299,302),(298,303),(299,303),(298,304),(299,304),(298,305),(299,305),(298,306),(299,306),(298,307),(299,307),(298,308),(298,309),(308,309),(298,310),
(308,310),(298,311),(308,311),(298,312),(308,312),(298,313),(308,313),(298,314),(308,314),(298,315),(308,315),(298,316),(308,316),(298,317),(308,317),
(298,318),(308,318),(298,319),(308,319),(298,320),(308,320),(298,321),(308,321),(298,322),(308,322),(298,323),(308,323),(298,324),(298,325),(324,325),
(298,326),(324,326),(298,327),(324,327),(298,328),(324,328),(298,329),(324,329),(298,330),(324,330),(298,331),(298,332),(331,332),(298,333),(331,333),
(298,334),(331,334),(298,335),(331,335),(298,336),(298,337),(336,337),(298,338),(336,338),(298,339),(336,339),(298,340),(336,340),(298,341),(232,900),
(232,901);
insert into tblAccountPeriodAccount values
(223,1),(223,2),(223,3),(223,4),(224,1),(224,2),(224,3),(224,4),(225,1),(225,2),(225,3),(225,4),(226,1),(226,2),(226,3),(226,4),(227,1),(227,2),
(227,3),(227,4),(228,1),(228,2),(228,3),(228,4),(229,1),(229,2),(229,3),(229,4),(230,1),(230,2),(230,3),(230,4),(231,1),(231,2),(231,3),(231,4),
(232,1),(232,2),(232,3),(232,4),(233,1),(233,2),(233,3),(233,4),(234,1),(234,2),(234,3),(234,4),(235,1),(235,2),(235,3),(235,4),(236,1),(236,2),
(236,3),(236,4),(237,1),(237,2),(237,3),(237,4),(238,1),(238,2),(238,3),(238,4),(239,1),(239,2),(239,3),(239,4),(240,1),(240,2),(240,3),(240,4),
(241,1),(241,2),(241,3),(241,4),(242,1),(242,2),(242,3),(242,4),(243,1),(243,2),(243,3),(243,4),(244,1),(244,2),(244,3),(244,4),(245,1),(245,2),
(245,3),(245,4),(246,1),(246,2),(246,3),(246,4),(247,1),(247,2),(298,1),(298,2),(298,3),(299,1),(299,2),(299,3),(300,1),(300,2),(300,3),(301,1),
(301,2),(301,3),(302,1),(302,2),(302,3),(303,1),(303,2),(303,3),(304,1),(304,2),(304,3),(305,1),(305,2),(305,3),(306,1),(306,2),(306,3),(307,1),
(307,2),(307,3),(308,1),(308,2),(308,3),(309,1),(309,2),(309,3),(310,1),(310,2),(310,3),(311,1),(311,2),(311,3),(312,1),(312,2),(312,3),(313,1),
(313,2),(313,3),(314,1),(314,2),(314,3),(315,1),(315,2),(315,3),(316,1),(316,2),(316,3),(317,1),(317,2),(317,3),(318,1),(318,2),(318,3),(319,1),
(319,2),(319,3),(320,1),(320,2),(320,3),(321,1),(321,2),(321,3),(322,1),(322,2),(322,3),(323,1),(323,2),(323,3),(324,1),(324,2),(324,3),(325,1),
(325,2),(325,3),(326,1),(326,2),(326,3),(327,1),(327,2),(327,3),(328,1),(328,2),(329,1),(329,2),(329,3),(330,1),(330,2),(330,3),(331,1),(331,2),
(331,3),(332,1),(332,2),(332,3),(333,1),(333,2),(333,3),(334,1),(334,2),(334,3),(335,1),(335,2),(335,3),(336,1),(336,2),(336,3),(337,1),(337,2),
(337,3),(338,1),(338,2),(338,3),(339,1),(339,2),(339,3),(340,1),(340,2),(340,3),(341,1),(341,2),(341,3);
insert into tblAccountRelatedObjects values
(232,12,null,null),(900,3,1,5),(901,0,-1,-1),(902,4,null,null);
insert into tblAccountRelatedClasses values
(902,1,1,null),(902,2,2,0);
insert into tblAccountRelatedClassesDetail values
(902,2,7);
insert into tblAccountPeriod values
(1,'سال مالی 1402','2023-03-21 00:00:00','2024-03-19 00:00:00','1402/01/01','1402/12/29'),
(2,'سال مالی 1403','2024-03-20 00:00:00','2025-03-20 00:00:00','1403/01/01','1403/12/30'),
(3,'سال مالی 1404','2025-03-21 00:00:00','2026-03-20 00:00:00','1404/01/01','1404/12/29'),
(4,'سال مالی 1405','2026-03-21 00:00:00','2027-03-20 00:00:00','1405/01/01','1405/12/29');
insert into tblAccountDocument values
(144,'1404/01/19','2025-04-08 00:00:00','قبوض دفتر مرکزی'),(162,'1404/05/06','2025-07-28 00:00:00','قبوض دفتر مرکزی'),
(180,'1404/08/25','2025-11-16 00:00:00','قبوض دفتر مرکزی'),(198,'1404/12/16','2026-03-07 00:00:00','قبوض دفتر مرکزی');
insert into tblAccountDocumentDetail values
(440,144,310,2500000000000,0,'قبوض دفتر مرکزی'),(493,162,310,3100000000000,0,'قبوض دفتر مرکزی'),(546,180,310,3700000000000,0,'قبوض دفتر مرکزی'),
(599,198,310,4300000000000,0,'قبوض دفتر مرکزی');
insert into tblAccountGroup values
(1,'01','صندوق‌ها','وجه نقد نزد شرکت'),(2,'02','بانک‌ها','حساب‌های ریالی و ارزی نزد بانک‌ها'),
(3,'03','تنخواه‌گردان‌ها','وجوه در اختیار تنخواه‌داران'),(4,'04','مشتریان','طلب از خریداران کالا و خدمات'),
(5,'05','اسناد دریافتنی','چک‌ها و سفته‌های دریافتی'),(6,'06','موجودی کالا','مواد، کالای در جریان ساخت و کالای ساخته‌شده'),
(7,'07','دارایی‌های ثابت','دارایی‌های ثابت مشهود و استهلاک آن‌ها'),(8,'08','تأمین‌کنندگان','بدهی به فروشندگان کالا و خدمات'),
(9,'09','اسناد پرداختنی','چک‌ها و سفته‌های پرداختی'),(10,'10','تسهیلات مالی','وام‌ها و تسهیلات دریافتی از بانک‌ها'),
(11,'11','مالیات و عوارض','مالیات بر ارزش افزوده، تکلیفی و عملکرد'),(12,'12','حقوق مالکانه','سرمایه، اندوخته‌ها و سود انباشته'),
(13,'13','فروش','فروش داخلی و صادراتی'),(14,'14','پروژه‌ها','دارایی‌های در جریان تکمیل به تفکیک پروژه');
insert into tblAccountBranch values
(1,'01','دفتر مرکزی','تهران، خیابان مطهری'),(2,'02','کارخانه ساوه','ساوه، شهر صنعتی کاوه'),(3,'03','شعبه اصفهان','اصفهان، خیابان چهارباغ بالا'),
(4,'04','شعبه مشهد','مشهد، بلوار سجاد'),(5,'05','شعبه تبریز','تبریز، خیابان آزادی');
insert into tblAccCostCenter values
(1,'100','مدیریت عامل','مرکز هزینه اداری'),(2,'110','امور مالی','مرکز هزینه اداری'),(3,'120','منابع انسانی','مرکز هزینه اداری'),
(4,'130','فناوری اطلاعات','مرکز هزینه اداری'),(5,'200','فروش داخلی','مرکز درآمد'),(6,'210','صادرات','مرکز درآمد'),
(7,'220','خدمات پس از فروش','مرکز درآمد'),(8,'300','خط برش','مرکز هزینه تولیدی'),(9,'310','خط مونتاژ','مرکز هزینه تولیدی'),
(10,'320','خط رنگ و آبکاری','مرکز هزینه تولیدی'),(11,'400','نگهداری و تعمیرات','مرکز هزینه خدماتی'),(12,'410','کنترل کیفیت','مرکز هزینه خدماتی'),
(13,'420','انبار و حمل‌ونقل','مرکز هزینه خدماتی');
insert into tblAccountClass values
(1,'01','اشخاص','vwEntityPerson','vwEntityPersonMinor','مشتریان، تأمین‌کنندگان، کارکنان و سهامداران'),
(2,'02','پروژه‌ها','vwEntityProject','vwEntityProjectMinor','طرح‌ها و پروژه‌ها تا سطح بسته کاری'),
(3,'03','بانک‌ها','vwEntityBank','vwEntityBankMinor','بانک، شعبه و شماره حساب');
insert into tblEntityPerson values
(1,null,'1001','شرکت پولادگستر آریا','مشتری داخلی'),(2,null,'1002','شرکت سازه‌های فلزی البرز','مشتری داخلی'),
(3,null,'1003','شرکت عمران گستر زاگرس','مشتری داخلی'),(4,null,'1004','شرکت تجهیزات نیرو کویر','مشتری داخلی'),
(5,null,'1005','شرکت آب و خاک سپیدرود','مشتری داخلی'),(6,null,'1006','فروشگاه صنعتی برادران کریمی','مشتری داخلی'),
(7,null,'1007','شرکت ساختمانی بام ایران‌زمین','مشتری داخلی'),(8,null,'1008','تعاونی تولید روستایی مغان','مشتری داخلی'),
(9,null,'1101','شرکت بازرگانی دجله - بغداد','مشتری خارجی'),(10,null,'1102','شرکت بازرگانی آرارات - ایروان','مشتری خارجی'),
(11,null,'1103','شرکت توسعه هرات','مشتری خارجی'),(12,null,'2001','شرکت ورق فولاد سپاهان','تأمین‌کننده داخلی'),
(13,null,'2002','شرکت میلگرد آذرگان','تأمین‌کننده داخلی'),(14,null,'2003','شرکت رنگ و رزین پارسیان','تأمین‌کننده داخلی'),
(15,null,'2004','شرکت پیچ و مهره توس','تأمین‌کننده داخلی'),(16,null,'2005','شرکت کارتن و بسته‌بندی ساوه','تأمین‌کننده داخلی'),
(17,null,'2006','شرکت حمل‌ونقل تیزبار','تأمین‌کننده داخلی'),(18,null,'2101','شرکت ماشین‌سازی شانگهای','تأمین‌کننده خارجی'),
(19,null,'2102','شرکت ابزار دقیق استانبول','تأمین‌کننده خارجی'),(20,null,'2201','پیمانکاری نصب و راه‌اندازی ایمن‌کار','پیمانکار'),
(21,null,'2202','مهندسان مشاور طرح و سازه نوین','پیمانکار'),(22,null,'3001','علیرضا محمدی','تنخواه‌دار دفتر مرکزی'),
(23,null,'3002','مریم حسینی','تنخواه‌دار کارخانه'),(24,null,'3003','حمید رضایی','تنخواه‌دار شعبه اصفهان'),(25,null,'3004','نرگس اکبری','مأمور خرید'),
(26,null,'4001','غلامحسین صادقی','سهامدار'),(27,null,'4002','شرکت سرمایه‌گذاری راه ابریشم','سهامدار');
insert into tblEntityProject values
(1,null,'1','طرح توسعه کارخانه ساوه','طرح سرمایه‌ای'),(2,1,'11','سالن تولید شماره 2','پروژه'),(3,2,'111','عملیات عمرانی سالن','فاز'),
(4,3,'1111','خاک‌برداری و فونداسیون','بسته کاری'),(5,3,'1112','سازه فلزی و سوله','بسته کاری'),(6,5,'11121','ساخت ستون‌ها و خرپاها','فعالیت'),
(7,5,'11122','نصب و پوشش سقف','فعالیت'),(8,3,'1113','کف‌سازی صنعتی','بسته کاری'),(9,2,'112','تأسیسات سالن','فاز'),
(10,9,'1121','برق و روشنایی','بسته کاری'),(11,9,'1122','تهویه و گرمایش','بسته کاری'),(12,9,'1123','اعلام و اطفای حریق','بسته کاری'),
(13,2,'113','ماشین‌آلات سالن','فاز'),(14,13,'1131','دستگاه برش لیزر','بسته کاری'),(15,13,'1132','جرثقیل سقفی 10 تنی','بسته کاری'),
(16,13,'1133','خط رنگ پودری','بسته کاری'),(17,1,'12','نیروگاه خورشیدی 1 مگاواتی','پروژه'),(18,17,'121','مهندسی و مجوزها','فاز'),
(19,17,'122','تأمین پنل و اینورتر','فاز'),(20,17,'123','نصب و اتصال به شبکه','فاز'),(21,null,'2','طرح نوسازی دفتر مرکزی','طرح سرمایه‌ای'),
(22,21,'21','بازسازی ساختمان','پروژه'),(23,22,'211','معماری داخلی','فاز'),(24,22,'212','آسانسور','فاز'),(25,21,'22','شبکه و مرکز داده','پروژه'),
(26,25,'221','کابل‌کشی ساخت‌یافته','فاز'),(27,25,'222','سرورها و ذخیره‌سازی','فاز'),(28,27,'2221','رک و برق اضطراری','بسته کاری'),
(29,27,'2222','پشتیبان‌گیری','بسته کاری'),(30,null,'3','قراردادهای فروش','پروژه‌های مشتریان'),(31,30,'31','مخازن سد سپیدرود','پروژه'),
(32,31,'311','ساخت مخازن','فاز'),(33,31,'312','حمل و نصب','فاز'),(34,30,'32','اسکلت مجتمع تجاری زاگرس','پروژه'),
(35,34,'321','طراحی و نقشه‌های کارگاهی','فاز'),(36,34,'322','ساخت و گالوانیزه','فاز');
insert into tblEntityBank values
(1,null,'1','بانک ملی ایران','بانک'),(2,1,'11','شعبه مرکزی - ملی','شعبه'),(3,2,'111','جاری ملی 0105447812003','حساب جاری'),
(4,2,'112','سپرده ملی 0218874510007','سپرده کوتاه‌مدت'),(5,1,'12','شعبه ساوه - ملی','شعبه'),(6,5,'121','جاری ملی 0109963245001','حساب جاری'),
(7,null,'2','بانک ملت','بانک'),(8,7,'21','شعبه مطهری - ملت','شعبه'),(9,8,'211','جاری ملت 4587210036','حساب جاری'),
(10,8,'212','سپرده ملت 4587210192','سپرده کوتاه‌مدت'),(11,7,'22','شعبه چهارباغ - ملت','شعبه'),(12,11,'221','جاری ملت 5120034418','حساب جاری'),
(13,null,'3','بانک صادرات ایران','بانک'),(14,13,'31','شعبه سجاد - صادرات','شعبه'),(15,14,'311','جاری صادرات 0208841237005','حساب جاری'),
(16,null,'4','بانک تجارت','بانک'),(17,16,'41','شعبه آزادی - تجارت','شعبه'),(18,17,'411','جاری تجارت 178203345','حساب جاری'),
(19,null,'5','بانک پاسارگاد','بانک'),(20,19,'51','شعبه ارزی - پاسارگاد','شعبه'),(21,20,'511','ارزی پاسارگاد - یورو','حساب ارزی'),
(22,20,'512','ارزی پاسارگاد - درهم','حساب ارزی');
insert into tblUser values
(1,'مدیر مالی',3),(2,'کارشناس حسابداری',3),(3,'کاربر انبار',2);
insert into tblUserPermission values
(1,301),(1,30101),(1,30102),(1,30103),(1,30105),(1,30108),(1,30110),(1,30111),(1,30112),(2,301);
insert into tblTarvoSystemParameters values
(210,'0'),(301,'1'),(302,'1'),(307,'0'),(311,'0'),(319,'0');
insert into tblTarvoBasePath values
(1,'/opt/ledgertree/');
insert into tblHostNote values
(900,'it''s; a note -- of the host');
CREATE INDEX ixAccountTree on tblAccount (ifnull(ParentID, -1), Code);
CREATE INDEX ixAccountParent on tblAccount (ParentID, Code);
CREATE INDEX ixAccountLevel on tblAccount (NoLevel, substr(Code, -6) collate nocase);
CREATE INDEX ixAccountTitle on tblAccount (Title, NoLevel);
CREATE INDEX ixAccountCode on tblAccount (Code, NoLevel);
CREATE INDEX ixAccountParentChild on tblAccountParent (ChildID);
CREATE INDEX ixPeriodAccountAccount on tblAccountPeriodAccount (AccountID);
CREATE INDEX ixRelatedObjectsAccount on tblAccountRelatedObjects (AccountID);
CREATE INDEX ixRelatedObjectsGroup on tblAccountRelatedObjects (AccountGroupID, RelatedClassID, RelatedObjectID);
CREATE INDEX ixDocumentDate on tblAccountDocument (FarsiDocumentDate);
CREATE INDEX ixDocumentDetailDocument on tblAccountDocumentDetail (DocumentID);
CREATE INDEX ixDocumentDetailAccount on tblAccountDocumentDetail (AccountID, DocumentID);
CREATE INDEX ixEntityPersonParent on tblEntityPerson (ParentID, Name);
CREATE INDEX ixEntityProjectParent on tblEntityProject (ParentID, Name);
CREATE INDEX ixEntityBankParent on tblEntityBank (ParentID, Name);
CREATE INDEX ixHostNote on tblHostNote (AccountID);
CREATE VIEW vwAccountBranch as select ID, ParentID from tblAccount where 0;
CREATE TRIGGER trAccountLeaf instead of insert on vwAccountBranch when not exists (select 1 from tblAccount where ParentID = new.ID) begin delete from tblAccountParent where ChildID = new.ID; insert into tblAccountParent (ID, ChildID) select p.ID, new.ID from tblAccountParent p where p.ChildID = new.ParentID union all select a.ID, new.ID from tblAccount a where a.ID = new.ParentID; update tblAccount set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID) where ID = new.ID and NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID); end;
CREATE TRIGGER trAccountBranch instead of insert on vwAccountBranch when exists (select 1 from tblAccount where ParentID = new.ID) begin select raise(abort, 'حساب نميتواند زير خودش يا زير يکي از زيرشاخه هاي خودش قرار گيرد. حساب مادر ديگري انتخاب نماييد.') where exists (select 1 from tblAccount where ID in (select p.ID from tblAccountParent p where p.ChildID = new.ParentID union all select new.ParentID) and +ParentID = new.ID); delete from tblAccountParent where ChildID in (select new.ID union all select c.ID from tblAccount c where c.ParentID = new.ID union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID where c.ParentID = new.ID) and ID not in (select new.ID union all select c.ID from tblAccount c where c.ParentID = new.ID union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID where c.ParentID = new.ID); insert into tblAccountParent (ID, ChildID) select new.ID, b.ID from (select c.ID from tblAccount c where c.ParentID = new.ID union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID where c.ParentID = new.ID) b where not exists (select 1 from tblAccountParent p where p.ID = new.ID and p.ChildID = b.ID); insert into tblAccountParent (ID, ChildID) select a.ID, b.ID from (select p.ID from tblAccountParent p where p.ChildID = new.ParentID union all select ID from tblAccount where ID = new.ParentID) a cross join (select new.ID as ID union all select p.ChildID from tblAccountParent p where p.ID = new.ID) b; update tblAccount set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID) where ID in (select new.ID union all select p.ChildID from tblAccountParent p where p.ID = new.ID) and NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID); end;
CREATE TRIGGER trAccountInsert after insert on tblAccount begin insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID); end;
CREATE TRIGGER trAccountMove after update of ParentID on tblAccount when old.ID = new.ID and old.ParentID is not new.ParentID begin insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID); end;
CREATE TRIGGER trAccountRenumber after update of ID on tblAccount when old.ID <> new.ID begin select raise(abort, 'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان تغيير شناسه آن وجود ندارد.') where exists (select 1 from tblAccountDocumentDetail where AccountID = old.ID); delete from tblAccountParent where ChildID in (select old.ID union all select p.ChildID from tblAccountParent p where p.ID = old.ID) and ID in (select old.ID union all select p.ID from tblAccountParent p where p.ChildID = old.ID); update tblAccount set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = tblAccount.ID) where ID in (select c.ID from tblAccount c where c.ParentID = old.ID union all select p.ChildID from tblAccount c join tblAccountParent p on p.ID = c.ID where c.ParentID = old.ID); insert into vwAccountBranch (ID, ParentID) values (new.ID, new.ParentID); delete from tblAccountPeriodAccount where AccountID = new.ID; update tblAccountPeriodAccount set AccountID = new.ID where AccountID = old.ID; delete from tblAccountRelatedObjects where AccountID = new.ID; update tblAccountRelatedObjects set AccountID = new.ID where AccountID = old.ID; delete from tblAccountRelatedClasses where AccountID = new.ID; update tblAccountRelatedClasses set AccountID = new.ID where AccountID = old.ID; delete from tblAccountRelatedClassesDetail where AccountID = new.ID; update tblAccountRelatedClassesDetail set AccountID = new.ID where AccountID = old.ID; end;
CREATE TRIGGER trAccountLevel after update of NoLevel on tblAccount when new.NoLevel is not 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID) begin update tblAccount set NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = new.ID) where ID = new.ID; end;
CREATE TRIGGER trAccountDelete after delete on tblAccount begin select raise(abort, 'اين حساب زيرشاخه دارد. بنابراين امکان حذف آن وجود ندارد.') where exists (select 1 from tblAccount where ParentID = old.ID); select raise(abort, 'براي اين حساب سند حسابداري ثبت شده است. بنابراين امکان حذف آن وجود ندارد.') where exists (select 1 from tblAccountDocumentDetail where AccountID = old.ID); delete from tblAccountParent where ChildID = old.ID; delete from tblAccountPeriodAccount where AccountID = old.ID; delete from tblAccountRelatedObjects where AccountID = old.ID; delete from tblAccountRelatedClasses where AccountID = old.ID; delete from tblAccountRelatedClassesDetail where AccountID = old.ID; end;
CREATE TRIGGER trRelatedObjectsInsert after insert on tblAccountRelatedObjects when new.AccountGroupID < 1 or new.RelatedClassID < 1 or new.RelatedObjectID = -1 begin update tblAccountRelatedObjects set AccountGroupID = case when AccountGroupID > 0 then AccountGroupID end, RelatedClassID = case when RelatedClassID > 0 then RelatedClassID end, RelatedObjectID = nullif(RelatedObjectID, -1) where rowid = new.rowid; end;
CREATE VIEW vwAccount as select a.ID, a.ParentID, a.Code, a.Title, a.NoLevel, a.GroupID, a.BranchID, a.PositionID, a.CreateDate, a.FarsiCreateDate, a.Notes, a.AccountNatureID, a.IsPermanent, a.IsClosed, a.MaxDebit, a.MaxCredit, g.Name as AccGroup, case ifnull(a.AccountNatureID, 0) when 0 then 'بدهكار' when 1 then 'بستانكار' when 2 then 'هردو' end as AccountStatus, case ifnull(a.IsPermanent, 0) when 0 then 'موقت' when 1 then 'دائم' end as AccountType, case ifnull(a.IsClosed, 0) when 0 then 'باز' when 1 then 'بسته' end as RemainedType, c.Name as AccContract from tblAccount a left join tblAccountGroup g on g.ID = a.GroupID left join tblAccCostCenter c on c.ID = a.PositionID;
CREATE VIEW vwAccountRelatedObjects as select r.AccountID, r.AccountGroupID, r.RelatedClassID, r.RelatedObjectID, a.PositionID, a.Code, a.Title from tblAccountRelatedObjects r left join tblAccount a on a.ID = r.AccountID;
CREATE VIEW vwTarvoBasePath as select BasePath from tblTarvoBasePath;
CREATE VIEW vwAccountMajor as select ID, Code, Title as Name from tblAccount;
CREATE VIEW vwAccountMinor as select a.ID, p.Title as Name from tblAccount a left join tblAccount p on p.ID = a.ParentID;
CREATE VIEW vwAccountPeriodMajor as select ID, Name from tblAccountPeriod;
CREATE VIEW vwAccountPeriodMinor as select ID, FarsiBeginDate || ' - ' || FarsiEndDate as Name from tblAccountPeriod;
CREATE VIEW vwAccountBranchMajor as select ID, Code, Name from tblAccountBranch;
CREATE VIEW vwAccountBranchMinor as select ID, Address as Name from tblAccountBranch;
CREATE VIEW vwAccountGroupMinor as select ID, Description as Name from tblAccountGroup;
CREATE VIEW vwAccountClass as select ID, Code, (ifnull(Code, '') || '_' || Name) collate nocase as Name from tblAccountClass;
CREATE VIEW vwAccountClassMinor as select ID, Description as Name from tblAccountClass;
CREATE VIEW vwPosition_Employee_Special3 as select ID, Code, Name from tblAccCostCenter;
CREATE VIEW vwPositionMinor as select ID, Description as Name from tblAccCostCenter;
CREATE VIEW vwEntityPerson as select ID, ParentID, Code, Name from tblEntityPerson;
CREATE VIEW vwEntityPersonMinor as select ID, Description as Name from tblEntityPerson;
CREATE VIEW vwEntityProject as select ID, ParentID, Code, Name from tblEntityProject;
CREATE VIEW vwEntityProjectMinor as select ID, Description as Name from tblEntityProject;
CREATE VIEW vwEntityBank as select ID, ParentID, Code, Name from tblEntityBank;
CREATE VIEW vwEntityBankMinor as select ID, Description as Name from tblEntityBank;
CREATE TRIGGER trHostNote after delete on tblAccount begin delete from tblHostNote where AccountID = old.ID; end;
CREATE VIEW vwAccountGroup as select ID, Code, Name from tblAccountGroup where ID % 2 = 1;
delete from sqlite_sequence;
insert into sqlite_sequence values ('tblAccount', 907);
analyze sqlite_schema;
insert into sqlite_stat1 values ('tblAccount', 'ixAccountLevel', '1000000 200000 10');
