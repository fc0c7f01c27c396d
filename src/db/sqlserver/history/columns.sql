-- The columns that tblAccountChange lacks, or has too short, as an "alter table" says them: they are those of the accounts,
-- whatever a host has made of them.
select case when k.COLUMN_NAME is null then 'add ' else 'alter column ' end + p.Prefix + a.COLUMN_NAME + ' ' + a.DATA_TYPE
    + case when a.CHARACTER_MAXIMUM_LENGTH = -1 then '(max)'
           when a.CHARACTER_MAXIMUM_LENGTH > 0 then '(' + cast(a.CHARACTER_MAXIMUM_LENGTH as varchar(11)) + ')'
           else '' end + ' null' as Change
from INFORMATION_SCHEMA.COLUMNS a
  cross join (select 'Old' as Prefix union all select 'New') p
  left join INFORMATION_SCHEMA.COLUMNS k on k.TABLE_SCHEMA = 'dbo' and k.TABLE_NAME = 'tblAccountChange'
    and k.COLUMN_NAME = p.Prefix + a.COLUMN_NAME
where a.TABLE_SCHEMA = 'dbo' and a.TABLE_NAME = 'tblAccount' and a.COLUMN_NAME in ({names})
  and (k.COLUMN_NAME is null or k.CHARACTER_MAXIMUM_LENGTH > 0
    and (a.CHARACTER_MAXIMUM_LENGTH = -1 or a.CHARACTER_MAXIMUM_LENGTH > k.CHARACTER_MAXIMUM_LENGTH))
