"""What the scripts of both databases make, and that it is the same: tables, views, triggers, procedures, the demo chart.

    databases.py <folder of the scripts> <what the catalogue says and the embedded procedures did>
"""

import ast
import pathlib
import random
import re
import sqlite3
import sys
import unittest

from server_on_sqlite import Returned, Server, Thrown, words_of

SCRIPTS, RECORD = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).read_text().splitlines()
VERSIONS = pathlib.Path(__file__).parent / "versions"
PROCEDURES = {name: head for name, head in (line[5:].split(" ", 1) for line in RECORD if line.startswith("head "))}
DESCRIPTION = """
    select m.name || '.' || c.name || iif(m.type = 'view', '', ' ' || replace(replace(lower(c.type), ' ', ''), 'integer',
        'int') || iif(c."notnull" or c.pk, ' not null', '') || iif(c.pk, ' key ' || c.pk, '')
        || ifnull(' default ' || trim(replace(c.dflt_value, ' ', ''), '()'), ''))
      from sqlite_schema m, pragma_table_xinfo(m.name) c where m.type in ('table', 'view') and m.name not like 'sqlite%'
    union all select m.name || '.' || f."from" || ' of ' || f."table" || '.' || f."to" || ' ' || f.on_delete
      from sqlite_schema m, pragma_foreign_key_list(m.name) f where m.type = 'table'
    union all select m.tbl_name || ' ' || m.name || ' ' || (select group_concat(ifnull(x.name, '?'))
      from pragma_index_xinfo(m.name) x where x.key) from sqlite_schema m where m.type = 'index' and m.sql > ''"""
#: What the types of a server refuse by themselves.
BY_TYPE = """
    select m.name || ' check' || iif(c.type = 'money', '(typeof(' || c.name || ')' || iif(c."notnull", '=''integer'')',
        'in(''integer'',''null''))'), iif(c.name = 'ID', '(ID between 1 and 2147483647)',
        '(length(' || c.name || ')<=' || replace(substr(c.type, instr(c.type, '(') + 1), ' ', '')))
      from sqlite_schema m, pragma_table_info(m.name) c where m.type = 'table' and (c.type = 'money'
        or c.type like '%varchar%' or c.name = 'ID' and c.pk and m.sql not like '%check( ID%')"""


def rows(db, query):
    return db.execute(query).fetchall()


def named(db, kinds, condition="1"):
    return [name for name, in rows(db, f"select name from sqlite_schema where type in ({kinds}) and {condition}"
                                       " and name not like 'sqlite%' order by name")]


def described(db):
    """Columns, references, indexes and conditions, and which columns compare as people read."""
    lines = {line for line, in rows(db, DESCRIPTION)}
    for table, sql in rows(db, "select name, sql from sqlite_schema where type = 'table'"):
        text = re.sub(r" ?([(),=<>|]+) ?", r"\1", " ".join(words_of(sql)))
        lines |= {f"{table} {check}" for check in re.findall(r"check\((?:[^()]|\([^()]*\))*\)", text)}
        lines |= {f"{table}.{column} as read" for column in re.findall(r"(\w+) n?varchar\(\d+\) ?collate", text)}
    return lines


def definitions(db):
    """What each object was made of; a column that came later stands at another place."""
    return {name: sorted(words_of(sql)) for name, sql in rows(db, "select name, sql from sqlite_schema where sql > ''")}


class Story(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.embedded = sqlite3.connect(":memory:", isolation_level=None)
        self.read(self.embedded, SCRIPTS / "embedded")
        self.embedded.execute("pragma foreign_keys = on")

    @staticmethod
    def read(database, *folders):
        for file in sorted((file for folder in folders for file in folder.glob("*.sql")), key=lambda file: file.name):
            # Money as the server counts it.
            database.executescript(file.read_text().replace("values (10000)", "values (1)"))

    def truth(self, db):
        """Ancestors and levels are those that the parents make; a parent that has no row counts as none."""
        parents = dict(rows(db, "select ID, ParentID from tblAccount"))
        ancestors, levels = set(), []
        for account, parent in parents.items():
            above = []
            while parent in parents:
                above.append((parent, account))
                self.assertLess(len(above), 200, "an account below itself")
                parent = parents[parent]
            ancestors.update(above)
            levels.append((account, len(above) + 1))
        self.assertEqual(set(rows(db, "select ID, ChildID from tblAccountParent")), ancestors)
        self.assertEqual(sorted(rows(db, "select ID, NoLevel from tblAccount")), sorted(levels))

    def one(self, query, database=None):
        """All rows in a line."""
        cells = rows(database or self.embedded, query)
        return ";".join("|".join("null" if cell is None else str(cell) for cell in row) for row in cells)


class BothDatabases(Story):
    def setUp(self):
        super().setUp()
        self.server = Server()
        self.server.install(SCRIPTS / "sqlserver")

    def compare(self, tables):
        for table in tables:
            columns = ", ".join(name for _, name, *_ in rows(self.embedded, f"pragma table_info({table})"))
            here, there = (sorted(rows(database, f"select {columns} from {table}"), key=str)
                           for database in (self.embedded, self.server.db))
            self.assertEqual(there, here, table)

    def write(self, statement):
        """The same on both, with the same refusal."""
        told = []
        for write in (self.embedded.execute, self.server.run):
            try:
                told.append(write(statement) and None)
            except (Thrown, sqlite3.IntegrityError) as failure:
                told.append(failure.args[-1])
        self.assertEqual(*told, statement)
        return told[0]

    def test_tables_views_and_indexes(self):
        here, there = described(self.embedded), described(self.server.db)
        refused = {line for line, in rows(self.server.db, BY_TYPE)}
        periods = ("tblAccountPeriodAccount", "tblAccountRelatedClasses", "tblAccountRelatedClassesDetail",
                   "tblAccountRelatedObjects")
        plain = ("tblAccount.FarsiCreateDate", "tblAccountClass.ViewMajor", "tblAccountClass.ViewMinor",
                 "tblAccountDocument.FarsiDocumentDate", "tblAccountPeriod.FarsiBeginDate",
                 "tblAccountPeriod.FarsiEndDate", "tblTarvoBasePath.BasePath")
        self.assertEqual(there - here, {
            "tblAccount ixAccountLevel NoLevel,Code", "tblAccount ixAccountTree TreeParentID,Code",
            "tblAccountRelatedObjects.RelationID int not null key 1", "tblAccCostCenter.ID int not null key 1 default 0",
            "tblAccount ixAccountKey CodeKey", "tblAccount.TreeParentID int", "tblAccount.CodeKey text",
            "tblLedgerTreeVersion.Version int not null key 1",
            "tblLedgerTreeVersion.Since datetime not null default datetime('now','localtime'", "tblAccountClass.Name nvarchar(100) not null",
            *(f"{table}.AccountID of tblAccount.ID CASCADE" for table in periods), *(f"{name} as read" for name in plain)})
        self.assertEqual(here - there - refused, {
            "tblAccount ixAccountLevel NoLevel,?", "tblAccount ixAccountTree ?,Code", "tblAccount ixAccountKey ?",
            "tblAccCostCenter.ID int not null key 1", "tblAccountClass.Name varchar(100) not null", "tblAccountRelatedObjects.AccountID of tblAccount.ID NO ACTION",
            "tblUserPermission.UserID of tblUser.ID CASCADE", "vwAccountBranch.ID", "vwAccountBranch.ParentID"})
        self.assertEqual(refused - here, {
            "tblAccountParent check(ID between 1 and 2147483647)", "tblTarvoBasePath check(length(BasePath)<=250)",
            "tblTarvoSystemParameters check(ID between 1 and 2147483647)",
            "tblTarvoSystemParameters check(length(Value)<=250)"})
        keys = "select m.name from sqlite_schema m, pragma_table_info(m.name) c where m.type = 'table' and c.type = 'INTEGER'"
        self.assertEqual(sorted(rows(self.server.db, keys)),
                         [("tblAccount",), ("tblAccountDocumentDetail",), ("tblAccountRelatedObjects",)])

    def test_the_same_chart_in_every_table_and_view(self):
        self.read(self.embedded, SCRIPTS / "demo", SCRIPTS / "demo" / "embedded")
        self.server.install(SCRIPTS / "demo", SCRIPTS / "demo" / "sqlserver")
        self.compare(name for name in named(self.embedded, "'table', 'view'") if name != "vwAccountBranch" and not name.endswith("LedgerTreeChanges"))

    def test_parameters(self):
        for name, head in PROCEDURES.items():
            self.assertEqual(re.sub(r" ?([,()]) ?", r"\1", self.server.kept[name][0]), head.replace(", ", ","), name)

    def test_procedures(self):
        ends, told = set(), None
        for kind, line in (line.split(" ", 1) for line in RECORD if not line.startswith("head ")):
            if kind == "run":
                self.server.run(line)
            elif kind == "call":
                name, *values = ast.literal_eval(line)
                try:
                    told = str(self.server.call(name, values))
                except Thrown as failure:
                    told = failure.args[1]
            elif kind == "gave":
                # A missing parent and a code that exists, or a new account below its own number: each engine tells of
                # what it meets first.
                either = line == "0" or name == "spAccountInsertAccount" and "زير خودش" in line
                if not either or len(told) < 3:
                    self.assertEqual(told, line, name)
                    ends.add((name, line if len(line) > 2 or line == "0" else "1"))
            else:
                query, shown = line.split("=", 1)
                self.assertEqual(self.one(query, self.server.db), shown, name)
        self.assertEqual(len(ends), 16, "the ways in which a procedure can end")
        for name in ("InsertAccount", "UpdateAccounts", "InsertRelatedObject", "DeleteAccount"):
            self.assertEqual(self.server.kept["spAccount" + name][1][:9],
                             "begin set nocount on ; set xact_abort on ;".split())
        self.assertGreater(len(self.server.locks), 200)
        self.assertEqual(set(self.server.locks), {
            "@Resource = 'LedgerTree chart' , @LockMode = 'Exclusive' , @LockOwner = 'Transaction'"})
        self.server.locked = True
        with self.assertRaisesRegex(Thrown, "51005, .*حسابها در دست کاربر ديگري است"):
            self.server.call("spAccountInsertAccount", [None] * PROCEDURES["spAccountInsertAccount"].count("@"))

    def test_triggers(self):
        tree = ["tblAccount" + name for name in
                ("", "Parent", "PeriodAccount", "RelatedObjects", "RelatedClasses", "RelatedClassesDetail")]
        chance = random.Random(5)
        self.write("insert into tblAccount (ID, ParentID, CreateDate) values (1, null, ''), (2, 1, ''), (3, 2, '')")
        for _ in range(150):
            one, two, three = (chance.randrange(1, 15) for _ in range(3))
            self.write(chance.choice([
                f"insert into tblAccount (ID, ParentID, NoLevel, CreateDate) values ({one}, {two}, 7, '')",
                f"update tblAccount set ParentID = {one} where ID in ({two}, {three})",
                f"update tblAccount set NoLevel = 9, ParentID = null where ID = {one}",
                f"update tblAccount set NoLevel = 3 where ID < {one}"]))
            self.compare(tree)
        for rest in ("PeriodAccount values (1, 1), (5, 2), (4, 2)", "RelatedClassesDetail values (5, 1, 10)",
                     "RelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)"
                     " values (5, -1, 3, 8), (1, 2, 0, -1), (4, null, 7, 9)",
                     "RelatedClasses (AccountID, ClassID, Sequence) values (5, 1, 1)",
                     "Document (ID, FarsiDocumentDate) values (1, '1404/01/01')",
                     "DocumentDetail (ID, DocumentID, AccountID) values (1, 1, 4)"):
            self.write("insert into tblAccount" + rest)
        self.compare(tree)
        # As where the tables of a host declare no references.
        self.server.db.execute("pragma foreign_keys = off")
        for one in range(1, 15):
            self.write(f"delete from tblAccount where ID = {one}")
            self.compare(tree)

    def test_circles_are_seen_by_the_parents_of_accounts_whose_ancestors_are_missing(self):
        self.write("insert into tblAccount (ID, ParentID, CreateDate) values (1, null, ''), (2, 1, ''), (3, 2, ''),"
                   " (4, null, ''), (5, 4, '')")
        for database in (self.embedded, self.server.db):
            database.execute("delete from tblAccountParent")
        for statement in ("update tblAccount set ParentID = 3 where ID = 1",
                          "update tblAccount set ParentID = case ID when 1 then 5 else 3 end where ID in (1, 4)",
                          "update tblAccount set ParentID = 1 where ID in (4, 1)"):
            self.assertIn("زير خودش", self.write(statement) or "accepted", statement)
        self.compare(["tblAccount"])

    def test_trees_that_no_trigger_saw(self):
        chance, server = random.Random(9), self.server
        self.embedded.execute("pragma foreign_keys = off")
        server.db.execute("pragma foreign_keys = off")
        for name in named(self.embedded, "'trigger'", "tbl_name = 'tblAccount'"):
            self.embedded.execute(f"drop trigger {name}")
        ends = set()
        for _ in range(80):
            accounts = chance.sample(range(1, 60), 20)
            parents = {one: chance.choice([None, 99, *accounts[:place]]) for place, one in enumerate(accounts)}
            if chance.random() < 0.4:
                parents[accounts[chance.randrange(4)]] = chance.choice(accounts)
            wrong = [(one, chance.randrange(60)) for one in chance.sample(range(1, 60), chance.choice([0, 0, 3]))]
            gone = [one for one in accounts if chance.random() < chance.choice([0, 0, 0.2])]
            # A branch that agrees with itself, under an ancestor that it doesn't have; one ancestor instead of another.
            top, swapped = (chance.choice([*accounts, *[None] * 20]) for _ in range(2))
            for db in (self.embedded, server.db):
                db.execute("delete from tblAccountParent")
                db.execute("delete from tblAccount")
                db.executemany("insert into tblAccount (ID, ParentID, NoLevel, CreateDate) values (?, ?, 0, '')", parents.items())
                for one in accounts:
                    above, parent = [], parents[one]
                    while parent in parents and parent not in above:
                        above.append(parent)
                        parent = parents[parent]
                    db.execute("update tblAccount set NoLevel = ? where ID = ?", [len(above) + 1, one])
                    db.executemany("insert into tblAccountParent values (?, ?)", [(a, one) for a in above])
                    if top in (one, *above):
                        db.execute("insert into tblAccountParent values (77, ?)", [one])
                        db.execute("update tblAccount set NoLevel = NoLevel + 1 where ID = ?", [one])
                    if swapped == one and above:
                        db.execute("update tblAccountParent set ID = 78 where ChildID = ? and ID = ?", [one, above[-1]])
                db.executemany("insert or ignore into tblAccountParent values (?, ?)", wrong)
                db.executemany("delete from tblAccountParent where ChildID = ? and ID % 2 = 0", [(one,) for one in gone])
                db.executemany("update tblAccount set NoLevel = 1 where ID = ?", [(one,) for one in gone[:2]])
            below = sorted(one for one in accounts if self.is_below_itself(one, parents))
            kept = "select ID, NoLevel from tblAccount union all select -ID, ChildID from tblAccountParent order by 1, 2"
            before = self.one(kept)
            true = not below and self.is_true()
            found = [self.checked(db, engine) for db, engine in ((self.embedded, "embedded"), (server.db, "sqlserver"))]
            self.assertEqual(*found)
            self.assertEqual(not found[0] - {("a parent that has no row", one) for one in accounts}, true)
            server.told.clear()
            told = self.mended()
            try:
                server.call("spAccountMendTree", [])
            except Returned:
                pass
            except Thrown as failure:
                self.assertEqual([int(one) for one in re.findall(r"\d+", failure.args[1])], below)
                self.assertEqual([int(one) for text, in told for one in re.findall(r"\((\d+)\)", text)], below)
                self.assertEqual((self.one(kept), self.one(kept, server.db)), (before, before))
                ends.add("refused")
                continue
            self.assertEqual((bool(server.told), bool(told), below), (not true, False, []))
            for db in (self.embedded, server.db):
                self.truth(db)
            self.compare(["tblAccount", "tblAccountParent"])
            ends.add("told" if server.told else "true")
        self.assertEqual(ends, {"refused", "told", "true"})

    @staticmethod
    def is_below_itself(account, parents):
        seen, parent = set(), parents[account]
        while parent in parents and parent not in seen:
            seen.add(parent)
            parent = parents[parent]
        return account in seen

    def is_true(self):
        try:
            self.truth(self.embedded)
        except AssertionError:
            return False
        return True

    def mended(self):
        """What the engine does with a file; the accounts that are below themselves."""
        script = {name: (SCRIPTS / "embedded" / "tree" / f"{name}.sql").read_text() for name in ("find", "circles", "mend")}
        self.embedded.executescript(script["find"])
        circles = rows(self.embedded, script["circles"])
        if not circles:
            self.embedded.executescript(script["mend"])
        self.embedded.execute("drop table temp.Wrong")
        return circles

    def checked(self, db, engine):
        """The faults that the questions of a check find in the accounts, but for the triggers that this story dropped."""
        scripts = [*(SCRIPTS / "checks").glob("*.sql"), *(SCRIPTS / "checks" / engine).glob("*codes.sql")]
        found = set()
        for script in scripts:
            self.server.told.clear()
            if db is self.embedded:
                self.server.told += rows(db, script.read_text())
            else:
                self.server.read(script)
            found |= {(fault, account) for fault, account, _ in self.server.told}
        return found

    def test_an_account_is_one_row_whatever_the_views_of_a_host_give(self):
        self.read(self.embedded, SCRIPTS / "demo", SCRIPTS / "demo" / "embedded")
        self.server.install(SCRIPTS / "demo", SCRIPTS / "demo" / "sqlserver")
        for db in (self.embedded, self.server.db):
            for view, table in (("vwAccountGroup", "tblAccountGroup"), ("vwPosition_Employee_Special3", "tblAccCostCenter")):
                db.execute(f"drop view {view}")
                db.execute(f"create view {view} as select ID, Code, Name from {table} union all"
                           f" select ID, Code, Name || ' 2' from {table}")
        self.compare(["vwAccount"])

    def test_keys_of_cost_centres_leave_none_out(self):
        for statement in ("insert into tblAccCostCenter (Name) values ('a'), ('b')",
                          "insert into tblAccCostCenter (ID, Name) values (7, 'c')", "insert into tblAccCostCenter (Name) values ('d')",
                          "delete from tblAccCostCenter where Name > 'b'", "insert into tblAccCostCenter (Code, Name) values ('3', 'e')",
                          "insert into tblAccCostCenter (ID, Name) values (32767, 'f')"):
            self.assertIsNone(self.write(statement), statement)
        self.compare(["tblAccCostCenter"])
        with self.assertRaisesRegex(Thrown, "ckAccCostCenterID"):
            self.server.run("insert into tblAccCostCenter (Name) values ('g')")

    def test_settings_of_the_sessions_that_run_the_scripts(self):
        settings = ("set ansi_nulls, ansi_padding, ansi_warnings, arithabort, concat_null_yields_null, quoted_identifier on;\n"
                    "set numeric_roundabort off;\nGO\n")
        without = [file.name for folder in ("sqlserver", "sqlserver/steps", "demo/sqlserver")
                   for file in (SCRIPTS / folder).glob("*.sql") if settings not in file.read_text()]
        self.assertEqual(sorted(without), ["000_database.sql", "001_version.sql", "002_codes.sql", "003_compare_read.sql",
                                           "005_children.sql", "006_changes.sql", "032_host_indexes.sql",
                                           "070_rights.sql", "900_end.sql"])

    def test_what_the_host_has_stays_and_the_charts_own_is_made_anew(self):
        server, kept = self.server, dict(self.server.kept)
        views = named(server.db, "'view'")
        for view in views:
            server.run(f"drop view {view}; create view {view} as select 7 as Host;")
        for name in kept:
            server.kept[name] = ("", ["host"])
        server.install(SCRIPTS / "sqlserver")
        self.assertEqual(set(views) - set(named(server.db, "'view'", "sql like '%Host'")),
                         {"vwAccount", "vwAccountMajor", "vwAccountMinor", "vwAccountRelatedObjects", "vwLedgerTreeChanges"})
        self.assertEqual({name for name in kept if server.kept[name] != kept[name]},
                         {"LedgerTreeUsers", "spTarvoHasPermission", "spAccountGetCurrentUserPeriod", "trAccCostCenterKey"})
        other = Server()
        for own in ("procedure spTarvoHasPermission", "procedure spAccountGetCurrentUserPeriod", "view vwTarvoBasePath"):
            other.run(f"create {own} as select 7")
        other.install(SCRIPTS / "sqlserver")
        self.assertEqual(set(named(server.db, "'table'")) - set(named(other.db, "'table'")),
                         {"tblTarvoBasePath", "tblUser", "tblUserPermission"})

    def test_what_an_edit_writes_is_compared(self):
        writes, compares = (self.server.kept["spAccount" + name][1] for name in ("UpdateAccounts", "CompareRead"))
        at = writes.index("update") + 3
        for place in range(at, writes.index("where", at)):
            if writes[place] == "=":
                self.assertIn(f"'LedgerTree.{writes[place - 1]}'", compares)

    def test_rights(self):
        needed = [f"select on tblAccount{name}" for name in ("", "Parent", "Period", "Document", "DocumentDetail", "Class")]
        needed += ["select on tblTarvoSystemParameters", "delete on tblAccount",
                   "update on tblAccount ( Code , GroupID , AccountNatureID , IsPermanent , IsClosed )",
                   "select , insert , delete on tblAccountPeriodAccount",
                   "select , insert , delete on tblAccountRelatedObjects",
                   "select , insert , update , delete on tblAccountRelatedClasses",
                   "select , insert , delete on tblAccountRelatedClassesDetail"]
        needed += [f"select on {view}" for view in named(self.server.db, "'view'")]
        needed += [f"execute on {name}" for name in [*PROCEDURES, "spAccountCompareRead"]]
        given = ["select on tblLedgerTreeVersion to public", *(f"{right} to LedgerTreeUsers" for right in needed)]
        self.assertEqual(sorted(self.server.grants), sorted(given))

    def test_the_steps_lead_to_what_the_scripts_make_anew(self):
        stepped = Server()
        stepped.read(VERSIONS / "sqlserver-1.sql")
        self.assertNotEqual(described(stepped.db), described(self.server.db))
        stepped.install(SCRIPTS / "sqlserver" / "steps" / "reports")
        self.assertEqual(len([text for text, in stepped.told if "has an identity" in text]), 1)
        stepped.install(SCRIPTS / "sqlserver" / "steps")
        # What belongs to the host stays as it was.
        stepped.run("drop table tblAccCostCenter")
        stepped.install(SCRIPTS / "sqlserver")
        for made in (described, definitions):
            self.assertEqual(made(stepped.db), made(self.server.db))
        self.assertEqual(stepped.kept, self.server.kept)

    def test_databases_that_are_refused(self):
        for said, other, told in (("<> N'بدهكار'", "= N'بدهكار'", "has no Persian letters"),
                                  ("1256 = 65001", "65001 = 65001", "stores Persian letters as several bytes"),
                                  ("'a' <> 'a'", "'a' <> 'A'", "tells capital from small letters")):
            with self.assertRaisesRegex(Thrown, "51000.*" + told):
                Server({said: other}).install(SCRIPTS / "sqlserver")


class DemoChart(Story):
    """A chart that an accountant could have made."""

    def test_chart(self):
        self.read(self.embedded, SCRIPTS / "demo", SCRIPTS / "demo" / "embedded")
        for query, expected in (
                ("select count(*) >= 300, max(NoLevel), count(distinct Code) - count(*), max(length(Title)) <= 50"
                 " from tblAccount", "1|5|0|1"),
                ("select count(*) from tblAccount a left join tblAccount p on p.ID = a.ParentID"
                 " where a.NoLevel > 1 and substr(a.Code, 1, length(p.Code)) is not p.Code", "0"),
                ("select count(*) from pragma_foreign_key_check", "0"),
                # Each account under its parent, in different periods.
                ("select count(*) from tblAccountPeriodAccount x join tblAccount a on a.ID = x.AccountID"
                 " where a.ParentID is not null and not exists (select 1 from tblAccountPeriodAccount y"
                 " where y.PeriodID = x.PeriodID and y.AccountID = a.ParentID)", "0"),
                ("select count(distinct n) from (select count(*) as n from tblAccountPeriodAccount group by PeriodID)", "4"),
                # Balanced documents on accounts of their period that have no children.
                ("select count(*) >= 190 from tblAccountDocument", "1"),
                ("select count(*) from (select 1 from tblAccountDocumentDetail group by DocumentID"
                 " having sum(Debit) <> sum(Credit))", "0"),
                ("select count(*) from tblAccountDocumentDetail l join tblAccountDocument d on d.ID = l.DocumentID"
                 " where not exists (select 1 from tblAccountPeriod p join tblAccountPeriodAccount x"
                 "  on x.PeriodID = p.ID and x.AccountID = l.AccountID where d.FarsiDocumentDate between p.FarsiBeginDate"
                 "  and p.FarsiEndDate and d.DocumentDate between p.BeginDate and p.EndDate)", "0"),
                ("select count(*) from tblAccountDocumentDetail l join tblAccount a on a.ParentID = l.AccountID", "0"),
                # Every account of an entity has its place for itself; one family is deep.
                ("select count(*) from (select 1 from tblAccountRelatedObjects"
                 " group by AccountGroupID, RelatedClassID, RelatedObjectID having count(*) > 1)", "0"),
                ("select count(*) >= 8 from vwAccountRelatedObjects where RelatedClassID = 3", "1"),
                ("with recursive t (ID, Level) as (select ID, 1 from vwEntityProject where ParentID is null union all"
                 " select v.ID, t.Level + 1 from vwEntityProject v join t on v.ParentID = t.ID) select max(Level) from t", "5"),
                # The texts that the headings of the export mean.
                ("select AccGroup, AccountStatus, AccountType, RemainedType, AccContract from vwAccount"
                 " where Code in ('80302', '601', '50501', '506') order by Code",
                 "null|هردو|دائم|باز|null;null|بدهكار|دائم|بسته|null;فروش|بستانكار|موقت|باز|null;"
                 "null|بدهكار|موقت|باز|فروش داخلی"),
                ("select Name from vwAccountClass where ID = 2", "02_پروژه‌ها")):
            self.assertEqual(self.one(query), expected, query)


class Triggers(Story):
    """A program that isn't ours writes to the embedded tables as it likes."""

    def setUp(self):
        super().setUp()
        self.embedded.executescript("""
            pragma foreign_keys = off;
            insert into tblAccount (ID, ParentID, Code) values (1, null, '1'), (2, 1, '101'), (3, 2, '10101'),
              (4, 3, '1010101'), (5, 1, '102'), (6, null, '2');
            insert into tblAccountPeriodAccount (AccountID, PeriodID) values (2, 1), (4, 1), (4, 2), (6, 1);
            insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (4, 7), (6, 8);
            insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (4, 1, 1), (4, 2, 2), (6, 3, 1);
            insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (4, 1, 10), (6, 3, 11);
            insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01');
            insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 5)""")

    def tree(self):
        return self.one("select ID, ParentID, NoLevel from tblAccount order by ID")

    def ancestors(self, account):
        return self.one(f"select ID from tblAccountParent where ChildID = {account} order by ID")

    def dependants(self):
        return self.one("select 'p', AccountID, PeriodID from tblAccountPeriodAccount union all select 'o', AccountID,"
                        " AccountGroupID from tblAccountRelatedObjects union all select 'c', AccountID, ClassID"
                        " from tblAccountRelatedClasses union all select 'd', AccountID, ObjectID"
                        " from tblAccountRelatedClassesDetail order by 2, 1, 3")

    def everything(self):
        return self.tree(), self.one("select * from tblAccountParent order by 1, 2"), self.dependants()

    def test_refusals(self):
        below, children, documents = "زير خودش", "زيرشاخه دارد", "سند حسابداري"
        for statement, words in (
                ("delete from tblAccount where ID = 3", children),
                ("delete from tblAccount where ID = 5", documents + " ثبت شده است. بنابراين امکان حذف"),
                ("delete from tblAccount where ID in (4, 6, 5)", documents),
                ("update tblAccount set ID = 50 where ID = 5", documents + " ثبت شده است. بنابراين امکان تغيير شناسه"),
                ("update tblAccount set ParentID = 2 where ID = 2", below),
                ("update tblAccount set ParentID = 4 where ID = 2", below),
                ("update or ignore tblAccount set ParentID = 4 where ID in (6, 2)", below),
                ("insert into tblAccount (ID, ParentID) values (9, 9)", below),
                ("replace into tblAccount (ID, ParentID) values (1, 4)", below),
                ("update or replace tblAccount set ID = 1 where ID = 3", below)):
            before = self.everything()
            with self.assertRaisesRegex(sqlite3.IntegrityError, words, msg=statement):
                self.embedded.execute(statement)
            self.assertEqual(self.everything(), before, statement)

    def test_what_follows_a_write(self):
        rest = "p|6|1;o|6|8;c|6|3;d|6|11".split(";")
        others = ";".join(sorted(rest))
        for statements, tree, ancestors, dependants in (
                # A deletion takes along what belongs to the account alone, and its key is never given again.
                ("delete from tblAccount where ID = 4; insert into tblAccount (Code) values ('3')",
                 "1|null|1;2|1|2;3|2|3;5|1|2;6|null|1;7|null|1", {3: "1;2", 4: ""}, "p|2|1;" + others),
                # A replaced account keeps what is below it and what belongs to it.
                ("replace into tblAccount (ID, ParentID, Code, NoLevel) values (2, 6, '201', 40)",
                 "1|null|1;2|6|2;3|2|3;4|3|4;5|1|2;6|null|1", {4: "2;3;6", 5: "1"},
                 "p|2|1;c|4|1;c|4|2;d|4|10;o|4|7;p|4|1;p|4|2;" + others),
                # A parent that appears finds its children.
                ("insert into tblAccount (ID, ParentID, NoLevel) values (21, 20, 2), (22, 21, 3)",
                 "1|null|1;2|1|2;3|2|3;4|3|4;5|1|2;6|null|1;21|20|1;22|21|2", {22: "21"}, None),
                ("insert into tblAccount (ID, ParentID) values (21, 20), (22, 21), (20, 5)",
                 "1|null|1;2|1|2;3|2|3;4|3|4;5|1|2;6|null|1;20|5|3;21|20|4;22|21|5", {22: "1;5;20;21"}, None),
                # A new key takes along what belongs to the account, and leaves the children behind.
                ("insert into tblAccountPeriodAccount values (40, 9); update tblAccount set ID = 40 where ID = 4",
                 "1|null|1;2|1|2;3|2|3;5|1|2;6|null|1;40|3|4", {40: "1;2;3", 4: ""},
                 "p|2|1;" + others + ";c|40|1;c|40|2;d|40|10;o|40|7;p|40|1;p|40|2"),
                ("delete from tblAccountDocumentDetail; update tblAccount set ID = 20 where ID = 2",
                 "1|null|1;3|2|1;4|3|2;5|1|2;6|null|1;20|1|2", {4: "3", 20: "1"}, None),
                ("delete from tblAccountDocumentDetail; update tblAccount set ID = ID + 100, ParentID = ParentID + 100",
                 "101|null|1;102|101|2;103|102|3;104|103|4;105|101|2;106|null|1", {104: "101;102;103"}, None),
                # Nobody sets a level by hand.
                ("update tblAccount set NoLevel = 9 where ID in (1, 4)",
                 "1|null|1;2|1|2;3|2|3;4|3|4;5|1|2;6|null|1", {4: "1;2;3"}, None)):
            self.setUp()
            self.embedded.executescript(statements)
            self.assertEqual(self.tree(), tree, statements)
            self.assertEqual({account: self.ancestors(account) for account in ancestors}, ancestors, statements)
            if dependants:
                self.assertEqual(self.dependants(), dependants, statements)

    def test_no_group_class_and_object_are_null_whoever_writes_them(self):
        self.embedded.execute("insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID,"
                              " RelatedObjectID) values (5, -1, 3, 8), (6, 2, 0, -1), (5, 0, -1, 0)")
        self.assertEqual(self.one("select * from tblAccountRelatedObjects where RelatedObjectID is not AccountGroupID"
                                  " order by AccountID, RelatedClassID"),
                         "4|7|null|null;5|null|null|0;5|null|3|8;6|8|null|null;6|2|null|null")

    def test_any_program_keeps_ancestors_and_levels_true(self):
        for settings, writes in (("foreign_keys = off", 10000), ("foreign_keys = on", 2000), ("recursive_triggers = on", 2001)):
            super().setUp()
            self.embedded.execute("pragma " + settings)
            chance, done = random.Random(writes), 0
            for number in range(writes):
                one, two = chance.randrange(1, 41), chance.randrange(1, 41)
                parent = chance.choice([*range(1, 41), *["null"] * 10])
                conflict = chance.choice(["", "", "or replace", "or ignore", "or abort", "or fail", "or rollback"])
                statement = chance.choice([
                    *[f"insert {conflict} into tblAccount (ID, ParentID) values ({one}, {parent})"] * 4,
                    *[f"update {conflict} tblAccount set ParentID = {parent} where ID in ({one}, {two})"] * 4,
                    *[f"delete from tblAccount where ID in ({one}, {two})"] * 6,
                    *[f"replace into tblAccount (ID, ParentID, NoLevel) values ({one}, {parent}, 7)"] * 2,
                    *[f"update {conflict} tblAccount set ID = {one} where ID = {two}"] * 2,
                    "update tblAccount set ID = ID + 100, ParentID = ParentID + 100",
                    "update tblAccount set ID = ID - 100, ParentID = ParentID - 100 where ID > 100",
                    f"update {conflict} tblAccount set ID = {one}, ParentID = {parent}, NoLevel = 8 where ID = {two}",
                    f"insert {conflict} into tblAccount (ID, ParentID) select ID + 9, ParentID + 5 from tblAccount where ID < 12",
                    f"insert into tblAccount (ID, ParentID) values ({one}, {parent}) on conflict (ID)"
                    " do update set ParentID = excluded.ParentID"])
                try:
                    self.embedded.execute(statement)
                    done += 1
                except sqlite3.DatabaseError:
                    pass  # refused, and then without a trace
                if number % 5 == 0:
                    self.truth(self.embedded)
            self.assertGreater(done, writes / 3)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
