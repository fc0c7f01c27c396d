-- Whether the tree looks true: all triggers that keep it are there, and the newest account was seen by them. A look that
-- costs the same whatever the size of the chart.
select (select count(*) from sqlite_schema
        where type = 'trigger' and name in ('trAccountLeaf', 'trAccountBranch', 'trAccountInsert', 'trAccountMove',
          'trAccountRenumber', 'trAccountLevel', 'trAccountDelete', 'trRelatedObjectsInsert', 'trRelatedObjectsUpdate')
          or type = 'trigger' and name like 'trNoted%') = 18
  and ifnull((select a.NoLevel = 1 + (select count(*) from tblAccountParent p where p.ChildID = a.ID)
                and a.NoLevel = 1 + ifnull((select m.NoLevel from tblAccount m where m.ID = a.ParentID), 0)
              from tblAccount a order by a.ID desc limit 1), 1);
