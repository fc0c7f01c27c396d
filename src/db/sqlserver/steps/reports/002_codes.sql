-- The accounts whose code another one has too. They stay as they are; only a new code is refused.
select N'account ' + cast(ID as nvarchar(11)) + N' shares its code with another one: ' + Code
from (select ID, Code, CodeKey, count(*) over (partition by CodeKey) as Accounts
      from (select ID, Code,
                   upper(replace(replace(rtrim(cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2),
                     nchar(1740), nchar(1610)), nchar(1705), nchar(1603))) as CodeKey
            from dbo.tblAccount where Code is not null) a) b
where Accounts > 1
order by CodeKey, ID;
