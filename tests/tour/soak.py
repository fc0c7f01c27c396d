"""Hundreds of recodings and batch deletions by keyboard, in a single run of the program.

soak.py <demo host> <folder>   as day.py; LEDGERTREE_SOAK_ROUNDS sets the number of each; the default is 0 except in a long run
"""

import os
import random
import sys

from day import BATCH, RECODE
from desk import EXPANDED, MAIN, Desk, chart_in, has, until, walk

NO_TEST = 77
RECODE_ENTRY, BATCH_ENTRY = "همسانسازي كدينگ و ماهيت و نوع حسابها...", "حذف دستهاي حسابها..."
TREE, QUESTION = "درخت حسابها", "حذف دسته اي"


def rounds():
    long_run = os.environ.get("LEDGERTREE_LONG") == "1"
    return int(os.environ.get("LEDGERTREE_SOAK_ROUNDS", 200 if long_run else 0))


def whole(books):
    """Every row of every table; only the numbers already handed out, which are never reused, may differ."""
    tables = [name for name, in books.execute("select name from sqlite_master where type = 'table'")]
    return {table: sorted(books.execute(f"select * from {table}"), key=repr)
            for table in tables if table != "sqlite_sequence"}


def grow(books, dice, count):
    """Branches added after the demo chart: three levels, with everything that an account can have."""
    def account(parent, code, title):
        one = books.execute("insert into tblAccount (ParentID, Code, Title) values (?, ?, ?)", (parent, code, title))
        books.execute("insert into tblAccountRelatedObjects values (?, 1, 3, 14)", (one.lastrowid,))
        books.execute("insert into tblAccountPeriodAccount values (?, ?)", (one.lastrowid, dice.randint(1, 4)))
        return one.lastrowid

    for number in range(count):
        mother = account(None, f"9{number:04}", f"شاخه {number}")
        for child in dice.sample(range(10, 99), dice.randint(1, 9)):
            code = f"9{number:04}{child}"
            below = account(mother, code, f"زیر {code}")
            for leaf in range(dice.choice((0, 0, 1, 5))):
                account(below, f"{code}{leaf}", f"برگ {code}{leaf}")
    books.commit()


class Round:
    """One branch: the last one in the tree."""

    def __init__(self, desk, dice):
        self.desk, self.dice = desk, dice
        self.mother, self.code, self.title = desk.row(
            "select ID, Code, Title from tblAccount where ParentID is null order by Code desc limit 1")

    def stand(self, below):
        """Selects the branch, or opens it and selects an account in it, which the record then shows."""
        tree = self.desk.go(TREE)
        self.desk.key("End")
        self.desk.shows("کد", self.code)
        if not below:
            return
        self.desk.key("Left")
        until("an open branch",
              lambda: [c for c in walk(tree) if c.get_name().startswith(self.code + " ...") and has(c, EXPANDED)])
        self.desk.key("Down")
        self.desk.shows("کد حساب مادر", self.code)

    def open(self, screen, entry):
        self.desk.choose("ابزار", entry, "F10")
        self.desk.window(screen)
        self.desk.pick("حساب مادر", self.code)
        self.desk.shows("حساب مادر", self.title)

    def leave(self, screen):
        self.desk.window(screen)
        self.desk.key("Escape")
        self.desk.gone(screen)

    def recode(self):
        first = self.dice.randint(10, 90)
        books = "select ID, Code from tblAccount where ParentID = ? order by Code"
        old = self.desk.books.execute(books, (self.mother,)).fetchall()
        new = [(account, f"{self.code}{first + place}") for place, (account, _) in enumerate(old)]
        self.open(RECODE, RECODE_ENTRY)
        self.desk.go("نمونه اولين كد فرزند")
        self.desk.type(str(first))
        self.desk.press("اعمال کدينگ خودکار حسابداري")
        self.desk.answer("هشدار", "بلي")
        until(f"the codes {new}", lambda: self.desk.books.execute(books, (self.mother,)).fetchall() == new)
        self.leave(RECODE)

    def delete(self):
        self.open(BATCH, BATCH_ENTRY)
        if self.dice.random() < 0.2:
            self.be_refused()
        self.desk.press("حذف")
        self.desk.answer(QUESTION, "بلي")
        self.desk.books_say((0,), "select count(*) from tblAccountParent where ID = ?", self.mother)
        self.leave(BATCH)

    def be_refused(self):
        """One of the accounts below is in a document, so none is deleted."""
        books, below = self.desk.books, "select ChildID from tblAccountParent where ID = ? order by ChildID"
        accounts = books.execute(below, (self.mother,)).fetchall()
        row = books.execute("insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, ?)",
                            self.dice.choice(accounts)).lastrowid
        books.commit()
        self.desk.press("حذف")
        self.desk.answer(QUESTION, "بلي")
        self.desk.answer("خطا در حذف", "تاييد")
        self.desk.window(BATCH)
        assert books.execute(below, (self.mother,)).fetchall() == accounts, f"some of {self.code} went"
        books.execute("delete from tblAccountDocumentDetail where ID = ?", (row,))
        books.commit()

    def end(self):
        self.stand(below=False)
        self.desk.key("ctrl+d")
        self.desk.answer("حذف حساب ", "بلي")
        self.desk.gone("حذف حساب ")
        self.desk.books_say((0,), "select count(*) from tblAccount where ID = ?", self.mother)


def main(host, folder):
    count = rounds()
    if count == 0:
        sys.exit(NO_TEST)
    dice = random.Random(count)
    chart = chart_in(host, folder)
    with Desk(os.environ["DISPLAY"] + ".0", folder) as desk:
        desk.open(host, chart)
        before = whole(desk.books)
        grow(desk.books, dice, count)
        desk.key("F5")
        for _ in range(count):
            one = Round(desk, dice)
            one.stand(below=dice.random() < 0.5)
            one.recode()
            one.stand(below=dice.random() < 0.5)
            one.delete()
            one.end()
        desk.key("ctrl+q")
        desk.leave()
        assert whole(desk.books) == before, "more or less went than the branches"
        assert desk.row("pragma integrity_check") == ("ok",)


if __name__ == "__main__":
    main(*sys.argv[1:])
