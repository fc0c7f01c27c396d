set identity_insert dbo.tblAccount off;
GO

update d set DocumentDate = dateadd(day, x.Day, p.BeginDate)
from dbo.tblAccountDocument d
  join dbo.DemoPlan x on x.ID = d.ID
  join dbo.tblAccountPeriod p on p.ID = x.PeriodID;

drop table dbo.DemoChart;
drop table dbo.DemoPattern;
drop table dbo.DemoPlan;
drop table dbo.DemoMoney;
GO
