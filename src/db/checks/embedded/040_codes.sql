-- Codes are one as at a save, without regard to yeh and kaf, letter case and blanks at the end.
select 'a code that another account has too' as Fault, ID, Code
from tblAccount
where replace(replace(rtrim(Code), 'ی', 'ي'), 'ک', 'ك') collate nocase in (
  select replace(replace(rtrim(Code), 'ی', 'ي'), 'ک', 'ك') collate nocase from tblAccount
  group by 1 having count(*) > 1)
union all
select 'a code longer than 20 letters', ID, Code from tblAccount where length(Code) > 20;
