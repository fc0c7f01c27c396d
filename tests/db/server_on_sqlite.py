"""A database that takes the scripts of SQL Server without a server.

What they have in common with SQLite runs there; what only they say (variables, the control of flow, triggers on whole
statements) is carried out here. It knows the words of the scripts and no others: a new one fails as SQLite's error.
"""

import re
import sqlite3

WORD = re.compile(r"--[^\n]*|N?'(?:[^']|'')*'|(?:@{0,2}|#)\w+|<>|<=|>=|\|\||\S")
BEGINS = "begin return throw drop create exec set insert update delete select rollback alter".split()
#: What SQLite has to be told in other words.
OTHERWISE = {
    "collationproperty(cast(databasepropertyex(db_name(), 'Collation') as varchar(128)), 'CodePage')": "1256",
    "'a' <> 'A'": "'a' <> 'a'",
    "TreeParentID as isnull(ParentID, -1)": "TreeParentID int as (ifnull(ParentID, -1))",
    """CodeKey as cast(upper(replace(replace(rtrim(cast(Code as nvarchar(20)) collate Latin1_General_100_BIN2),
      nchar(1740), nchar(1610)), nchar(1705), nchar(1603))) as nvarchar(20))""":
        "CodeKey text as (upper(replace(replace(rtrim(Code), char(1740), char(1610)), char(1705), char(1603))))",
    "Latin1_General_100_BIN2": "binary",
    "nchar(": "char(",
    "right(BasePath, 1)": "substr(BasePath, -1)",
    "dateadd(day, x.Day, p.BeginDate)": "datetime(p.BeginDate, '+' || x.Day || ' days')",
    "sys.indexes": "(select name, tbl_name as object_id, 0 as is_primary_key from sqlite_schema where type = 'index'"
                   " union all select key_of(sql), name, 1 from sqlite_schema where type = 'table' and key_of(sql) > '')",
    "sys.triggers": "temp.triggers",
    "len(": "length(",
    " with (updlock, holdlock)": "",
    " with (readpast, readcommittedlock)": "",
    "@@spid": "0",
    "isnull(": "ifnull(",
    "getdate()": "(datetime('now', 'localtime'))",
    "int identity (1, 1)": "integer",
}


class Thrown(Exception):
    """Its arguments are a number (547 where a reference refuses) and what is said."""


class Returned(Exception):
    pass


def words_of(script):
    return [word.removeprefix("N") if "'" in word else word for word in WORD.findall(script) if word[:2] != "--"]


def find(words, at, *wanted):
    """The first place outside parentheses where one of the words stands."""
    depth = 0
    while at < len(words):
        depth += (words[at] == "(") - (words[at] == ")")
        if depth == 0 and words[at] in wanted:
            break
        at += 1
    return at


class Server:
    def __init__(self, otherwise=None):
        self.db = sqlite3.connect(":memory:", isolation_level=None)
        self.db.execute("pragma foreign_keys = on")
        self.otherwise = {**OTHERWISE, **(otherwise or {})}
        self.kept, self.grants, self.locks = {}, [], []  # procedures, triggers and roles: head and body
        self.transactions = self.identity = self.changed = 0
        self.told = []  # the rows of queries
        self.firing = self.locked = False
        names = "select 1 from sqlite_schema where name = ?"
        for function in ("object_id", "database_principal_id"):
            self.db.create_function(
                function, 1, lambda name: name if name in self.kept or self.db.execute(names, [name]).fetchone() else None)
        self.db.create_function("session_context", 1, lambda name: None)  # nobody hands anything over
        columns = "select cid, type = 'INTEGER' and pk from pragma_table_xinfo(?) where name = ?"
        self.db.create_function(
            "columnproperty", 3, lambda table, name, about:
                (self.db.execute(columns, [table, name]).fetchone() or [None] * 2)[about == "IsIdentity"])
        self.db.create_function("key_of", 1, lambda sql: (re.findall(r"constraint (\w+) primary key", sql) or [""])[0])
        self.db.execute("create temp table triggers (name text collate nocase primary key, parent_id, is_disabled default 0)")

    def install(self, *folders):
        files = [file for folder in folders for file in folder.glob("*.sql")]
        for file in sorted(files, key=lambda file: file.name):
            self.read(file)

    def read(self, script):
        for batch in re.split(r"(?mi)^\s*go\s*$", script.read_text()):
            self.run(batch)

    def run(self, batch):
        batch = batch.replace("dbo.", "")
        for said, other in self.otherwise.items():
            batch = batch.replace(said, other)
        Batch(self, words_of(batch), {})

    def call(self, name, values):
        """Runs a procedure; a failure undoes everything."""
        head, body = self.kept[name]
        try:
            Batch(self, body, dict(zip(re.findall(r"@\w+", head), values)))
        except Returned as result:
            assert self.transactions == 0, "a transaction is left open"
            return result.args[0]
        except Thrown:
            if self.transactions:
                self.run("rollback transaction")
            raise

    def execute(self, sql, variables=None):
        try:
            rows = self.db.execute(sql, variables or {})
            self.changed = max(rows.rowcount, 0)
            return rows.fetchall()
        except sqlite3.IntegrityError as failure:
            raise Thrown(547, str(failure)) from failure


class Batch:
    """Carries out the words of a batch, or of a body."""

    def __init__(self, server, words, variables):
        self.server, self.words, self.variables, self.failure = server, words, variables, None
        at = 0
        while at < len(words):
            at = self.statement(at, True)

    def statement(self, at, live):
        """Gives the place behind a statement, which is carried out only where it is live."""
        first, second = self.words[at], (self.words[at + 1:] + [""])[0]
        if first in ("if", "while"):
            body = find(self.words, at + 1, *BEGINS)
            if first == "if":
                return self.statement(body, live and self.value(at + 1, body))
            while live and self.value(at + 1, body):
                self.statement(body, True)
            return self.statement(body, False)
        if first == "begin" and second == "try":
            handler = self.block(at + 2, False) + 3
            try:
                self.block(at + 2, live)
            except Thrown as failure:
                self.failure = failure
                self.block(handler, True)
            return self.block(handler, False) + 1
        if first == "begin" and second != "transaction":
            return self.block(at + 1, live)
        end = len(self.words) if second in ("procedure", "trigger") and first == "create" else find(self.words, at, ";")
        if live and end > at:
            self.simple(first, second, at, end)
        return end + 1

    def block(self, at, live):
        while self.words[at] != "end":
            at = self.statement(at, live)
        return at + 1

    def simple(self, first, second, at, end):
        server, third = self.server, (self.words[at + 2:] + [""])[0]
        if first == "declare" and third == "table" or first == "create" and third[0] == "#":
            name = second if first == "declare" else third
            server.execute(f'drop table if exists temp."{name}"')
            server.execute(f'create temp table "{name}" {self.sql(at + 3, end)}')
        elif first == "declare":
            self.variables[second] = self.value(self.words.index("=", at) + 1, end) if "=" in self.words[at:end] else None
        elif first == "set":
            if second[0] == "@":
                self.variables[second] = self.value(at + 3, end)
        elif first == "return":
            raise Returned(self.value(at + 1, end))
        elif first == "throw":
            raise self.failure if end == at + 1 else Thrown(int(second), self.value(at + 3, at + 4))
        elif first == "exec" and second == "(":
            server.run(third[1:-1].replace("''", "'"))
        elif first == "exec" and second[0] == "@" and self.words[at + 3] in server.kept:
            head, body = server.kept[self.words[at + 3]]
            values = [self.value(place, place + 1) for place in range(at + 4, end, 2)]
            try:
                Batch(server, body, dict(zip(re.findall(r"@\w+", head), values)))
            except Returned as result:
                self.variables[second] = result.args[0]
        elif first == "exec" and second[0] == "@":  # sp_getapplock
            server.locks.append(" ".join(self.words[at + 4:end]))
            self.variables[second] = -1 if server.locked else 0
        elif first == "exec":
            Batch(server, server.kept[second][1], {})
        elif first == "create" and second in ("procedure", "trigger", "role"):
            body = find(self.words, at, "as")
            server.kept[third] = (" ".join(self.words[at + 3:body]), self.words[body + 1:end])
            if second == "trigger":
                server.execute(f"replace into triggers (name, parent_id) values ('{third}', '{self.words[at + 4]}')")
        elif first == "drop" and third in server.kept:
            del server.kept[third]
            server.execute(f"delete from triggers where name = '{third}'")
        elif first == "alter" and "primary" in self.words[at:end]:
            self.add(third, self.sql(at + 4, end))
        elif first == "grant":
            server.grants.append(" ".join(self.words[at + 1:end]))
        elif first in ("begin", "commit", "rollback"):
            before = server.transactions
            server.transactions = {"begin": before + 1, "commit": before - 1, "rollback": 0}[first]
            if (before == 0) != (server.transactions == 0):
                server.execute(first)
        elif first in ("insert", "update", "delete"):
            self.change(first, at, end)
        else:
            server.told += server.execute(self.sql(at, end), self.used(self.sql(at, end)))

    def add(self, table, column):
        """A column in a table that is made anew with its rows, since SQLite gives no key to one that is there."""
        execute = self.server.execute
        made, = execute(f"select sql from sqlite_schema where name = '{table}'")[0]
        columns = ", ".join(name for name, in execute(f"select name from pragma_table_info('{table}')"))
        indexes = execute(f"select sql from sqlite_schema where tbl_name = '{table}' and type = 'index' and sql > ''")
        execute("pragma legacy_alter_table = on")
        execute(f"alter table {table} rename to Kept")
        execute(self.typed(made[:made.rindex(")")] + ", " + column + " )"))
        execute(f"insert into {table} ({columns}) select {columns} from Kept")
        execute("drop table Kept")
        for index, in indexes:
            execute(index)
        execute("pragma legacy_alter_table = off")

    def change(self, act, at, end):
        """A statement that writes, and the triggers behind it."""
        server, table, sql = self.server, self.words[at + 1 + (act != "update")], self.sql(at, end)
        source = find(self.words, at, "from")
        if act == "update" and source < end:  # "update a set Column = … from Table a join … where …"
            where = min(find(self.words, source, "where"), end)
            rows = f"from {self.sql(source + 1, where)} where {self.sql(where + 1, end) or '1'}"
            key, table = table + ".rowid", self.sql(source + 1, source + 2)
            sql = (f"update {table} set {self.words[at + 3]} = (select {self.sql(at + 5, source)} {rows} and {key} ="
                   f" {table}.rowid) where rowid in (select {key} {rows})")
        heads = [(head, body) for head, body in server.kept.values() if head.startswith(f"on {table} ") and act in head]
        if not heads or server.firing:
            server.execute(sql, self.used(sql))
            return
        server.execute("savepoint work")
        try:
            if any("instead of" in head for head, _ in heads):
                self.note_only(table, sql)
            else:
                self.note(table, sql)
            server.firing = True
            for _, body in heads:
                try:
                    Batch(server, body, {})
                except Returned:
                    pass
            server.execute("release work")
        except Thrown:
            if server.db.in_transaction:
                server.execute("rollback to work")
                server.execute("release work")
            raise
        finally:
            server.firing = False

    def note(self, table, sql):
        """Carries a statement out, and puts its rows into the tables "inserted" and "deleted"."""
        execute = self.server.execute
        for side in ("inserted", "deleted"):
            execute(f"drop table if exists temp.{side}")
            execute(f"create temp table {side} as select * from {table} where 0")
        events = {"after insert": "new", "after update": "new", "before update": "old", "before delete": "old"}
        for event, row in events.items():
            side = "inserted" if row == "new" else "deleted"
            execute(f'create temp trigger "{event}" {event} on {table} begin'
                    f" insert into {side} select * from {table} where rowid = {row}.rowid; end")
        try:
            execute(sql, self.used(sql))
            self.server.identity = execute("select last_insert_rowid()")[0][0]
        finally:
            for event in events:
                execute(f'drop trigger if exists temp."{event}"')

    def note_only(self, table, sql):
        """Puts the rows of an insert into "inserted" and nowhere else."""
        columns = ", ".join(f"{name} default {default}" if default else name for _, name, _, _, default, _ in
                            self.server.execute(f"pragma table_info({table})"))
        self.server.execute("drop table if exists temp.inserted")
        self.server.execute(f"create temp table inserted ({columns})")
        sql = sql.replace(f"insert into {table}", "insert into temp.inserted", 1)
        self.server.execute(sql, self.used(sql))

    def value(self, at, end):
        sql = self.sql(at, end)
        return self.server.execute("select " + sql, self.used(sql))[0][0] if sql else 0

    def used(self, sql):
        return {name[1:]: self.variables[name] for name in re.findall(r"@\w+", sql) if name in self.variables}

    def sql(self, at, end):
        said = []
        for place in range(at, end):
            word = self.words[place]
            if word == "+" and "'" in self.words[place - 1] + self.words[place + 1]:
                word = "||"
            elif word in ("@@rowcount", "@@trancount"):
                word = str(self.server.changed if word == "@@rowcount" else self.server.transactions)
            elif word[0] in "@#" and word not in self.variables:
                word = f'"{word}"'
            said.append(word)
        text = " ".join(said).replace(" . ", ".").replace(" (", "(")
        text = text.replace("scope_identity( )", str(self.server.identity))
        text = text.replace("error_number( )", str(self.failure.args[0] if self.failure else 0))
        return self.typed(text) if text.startswith("create table") else text

    @staticmethod
    def typed(text):
        """Texts compare as people read, and keys are never given twice."""
        text = re.sub(r"(n?varchar\( \d+ \))(?! collate)", r"\1 collate nocase", text)
        return re.sub(r"(integer not null constraint \w+ primary key)(?! auto)", r"\1 autoincrement", text)
