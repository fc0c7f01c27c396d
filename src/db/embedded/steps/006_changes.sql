-- How often the accounts, their periods or their relations were changed: a screen that rests asks for it, to learn cheaply
-- whether to look again. Only the triggers write here.
create table tblLedgerTreeChanges (
  Writer int not null primary key,  -- here always 0: there is one writer at a time
  Changes bigint not null
);
insert into tblLedgerTreeChanges (Writer, Changes) values (0, 0);
