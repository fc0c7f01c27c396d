-- Without them nothing keeps the tree, and no screen notices what others change.
select 'a trigger that is missing or switched off' as Fault, null as ID, t.Name as Code
from (select N'trAccountTree' as Name union all select N'trAccountDelete' union all select N'trRelatedObjectsWrite'
      union all select N'trNotedAccount' union all select N'trNotedPeriod' union all select N'trNotedRelation') t
where not exists (select 1 from sys.triggers s where s.name = t.Name and s.is_disabled = 0);
