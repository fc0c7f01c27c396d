-- Codes that several accounts have. They stay; the accounts can be changed, and only a new code is refused.
select 'کدهاي زير به بيش از يک حساب داده شده است؛ ی با ي، ک با ك و حرف کوچک با بزرگ در کد يکي شمرده ميشود. کد حسابها را اصلاح نماييد: '
       || group_concat('«' || Code || '»', '، ')
from (select min(Code) as Code from tblAccount where Code is not null
      group by replace(replace(rtrim(Code), 'ی', 'ي'), 'ک', 'ك') collate nocase
      having count(*) > 1 order by 1 limit 20)
having count(*) > 0;
