update tblAccountDocument
set DocumentDate = (select datetime(p.BeginDate, '+' || d.Day || ' days')
                    from DemoPlan d join tblAccountPeriod p on p.ID = d.PeriodID where d.ID = tblAccountDocument.ID);
drop table DemoChart;
drop table DemoPattern;
drop table DemoPlan;
drop table DemoMoney;
