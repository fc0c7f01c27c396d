-- Codes are one as at a save, without regard to yeh and kaf, letter case and blanks at the end.
select 'a code that another account has too' as Fault, ID, Code
from (select ID, Code, count(*) over (partition by CodeKey) as Accounts
      from (select ID, Code, upper(replace(replace(rtrim(cast(Code as nvarchar(50)) collate Latin1_General_100_BIN2),
    nchar(1740), nchar(1610)), nchar(1705), nchar(1603))) as CodeKey
            from dbo.tblAccount where Code is not null) a) b
where Accounts > 1
union all
select 'a code longer than 20 letters', ID, Code from dbo.tblAccount where len(Code) > 20;
