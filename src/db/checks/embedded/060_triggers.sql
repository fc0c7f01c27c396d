-- Without them nothing keeps the tree, and no screen notices what others change.
select 'a trigger that is missing' as Fault, null as ID, t.column1 as Code
from (values ('trAccountLeaf'), ('trAccountBranch'), ('trAccountInsert'), ('trAccountMove'),
  ('trAccountRenumber'), ('trAccountLevel'), ('trAccountDelete'), ('trRelatedObjectsInsert'), ('trRelatedObjectsUpdate'),
  ('trNotedAccountInsert'), ('trNotedAccountUpdate'), ('trNotedAccountDelete'), ('trNotedPeriodInsert'),
  ('trNotedPeriodUpdate'), ('trNotedPeriodDelete'), ('trNotedRelationInsert'), ('trNotedRelationUpdate'),
  ('trNotedRelationDelete')) t
where not exists (select 1 from sqlite_schema s where s.type = 'trigger' and s.name = t.column1);
