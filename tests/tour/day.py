"""An accountant's day on the chart of accounts. The morning needs no mouse; pictures are taken along the way.

day.py <demo host> <folder>   on a display, within a session bus; run.sh gives both.
"""

import os
import sys

import openpyxl

from desk import EXPANDED, MAIN, Desk, chart_in, has, until, walk

PERIODS = "تنظيم دوره هاي زماني و شعب قابل نمايش"
COPY = "کپي کردن سرفصل هاي يک دوره مالي به دوره مالي ديگر"
HIDE = "پنهان کردن يک دوره مالي از همه سرفصلهاي حساب"
RECODE = "اعمال كدينگ خودكار، همسان سازي كدينگ و ماهيت و نوع حساب"
BATCH, CENTRES, CLASSES = "حذف دستهاي حسابها", "مراكز هزينه", "انواع موجوديت مرتبط"
OBJECTS = "موجوديتهاي مرتبط"


def find_accounts(desk):
    desk.picture("start")
    tree = desk.go("درخت حسابها")
    desk.type("بد")  # no field has switched to Persian yet
    desk.shows("کد", "3")
    desk.key("Home", "Down", "Left")
    until("an open branch", lambda: [c for c in walk(tree) if c.get_name().startswith("1 ...") and has(c, EXPANDED)])
    desk.key("Return")
    desk.shows("کد", "1")
    desk.key("ctrl+f")
    desk.type("10104")
    desk.picture("find")
    desk.key("Return")
    desk.shows("کد حساب مادر", "101")
    desk.key("ctrl+f")
    desk.type("ارزی حساب های")  # the title has a joiner, where people type a space
    desk.picture("find-words")
    desk.key("Return")
    desk.shows("کد", "03")


def new_account(desk, parent, title, code):
    desk.key("ctrl+n")
    desk.pick("حساب مادر", parent)
    desk.shows("کد حساب مادر", parent)
    desk.go("عنوان")
    desk.type(title)
    if parent == "101":
        desk.pick("نوع موجوديت", "بانک")
        desk.pick("موجوديت", "شعبه سجاد")
        desk.picture("new")
    desk.key("ctrl+s")
    desk.books_say((title,), "select Title from tblAccount where Code = ?", code)


def keep_accounts(desk):
    new_account(desk, "101", "صندوق شعبه قم", "10106")
    desk.books_say((3, 14), "select RelatedClassID, RelatedObjectID from tblAccountRelatedObjects join tblAccount a "
                   "on a.ID = AccountID where a.Code = '10106'")
    new_account(desk, "10106", "صندوق دلار قم", "1010601")
    new_account(desk, "10106", "صندوق درهم قم", "1010602")

    desk.key("ctrl+e")
    desk.go("سقف بدهکاري")
    desk.type("25000000")
    desk.shows("سقف بدهکاري", "25/000/000")
    desk.go("توضيحات")
    desk.type("با اجازه مدیر شعبه")
    desk.picture("edit")
    desk.key("ctrl+s")
    desk.books_say((250000000000, "با اجازه مدیر شعبه"), "select MaxDebit, Notes from tblAccount where Code = '1010602'")

    desk.key("ctrl+e")  # moves it
    desk.pick("حساب مادر", "10105")
    desk.shows("کد حساب مادر", "10105")
    desk.picture("move")
    desk.key("ctrl+s")
    desk.books_say(("10105", 4), "select p.Code, a.NoLevel from tblAccount a join tblAccount p on p.ID = a.ParentID "
                   "where a.Code = '1010501' and a.Title = 'صندوق درهم قم'")

    desk.key("ctrl+f")  # closes a branch
    desk.type("10106")
    desk.key("Return")
    desk.shows("کد", "06")
    desk.key("ctrl+e")
    desk.go("باز")
    desk.key("Left")
    desk.is_checked("بسته")
    desk.key("ctrl+s")
    desk.books_say((2,), "select count(*) from tblAccount where Code like '10106%' and IsClosed = 1")
    desk.picture("closed")


def keep_what_left_the_lists(desk):
    """The host has removed the branch, the cost centre and the group of the shown account from its lists."""
    stored = "select BranchID, PositionID, GroupID, Notes from tblAccount where Code = '10106'"
    desk.books.execute("update tblAccount set BranchID = 778, PositionID = 777, GroupID = 779 where Code = '10106'")
    desk.books.commit()
    desk.key("ctrl+f")
    desk.type("10106")
    desk.key("Tab")
    desk.shows("کد", "06")
    desk.key("ctrl+e")
    desk.shows("شعبه", "778 (در فهرست نيست)")
    desk.go("توضيحات")
    desk.type("بازبینی شد")
    desk.picture("left-the-lists")
    desk.key("ctrl+s")
    desk.books_say((778, 777, 779, "بازبینی شد"), stored)


def choose_by_tab(desk):
    desk.key("ctrl+n")
    desk.go("حساب مادر")
    desk.type("10106")
    desk.key("Tab")
    desk.shows("حساب مادر", "صندوق شعبه قم")
    desk.shows("کد حساب مادر", "10106")
    desk.go("عنوان")
    desk.type("صندوق یورو قم")
    desk.go("حساب مادر")
    desk.type("صند")
    desk.go("گروه")
    desk.shows("حساب مادر", "صند")
    desk.key("ctrl+s")
    desk.answer("اشکال", "تاييد", picture="not-chosen")
    desk.window(MAIN)
    assert desk.focused().get_name() == "حساب مادر", "the save leads to the field"
    desk.books_say((0,), "select count(*) from tblAccount where Title = 'صندوق یورو قم'")
    desk.type("وق شعبه قم")
    desk.key("Tab", "ctrl+s")
    desk.books_say(("10106",), "select p.Code from tblAccount a join tblAccount p on p.ID = a.ParentID "
                   "where a.Title = 'صندوق یورو قم'")


def keep_periods(desk):
    desk.press("تنظيم سالهاي مالي و شعب")
    desk.window(PERIODS)
    for year in ("1403", "1404"):
        desk.pick("سال مالي", year)
        desk.shows("سال مالي", f"سال مالی {year}")
        desk.key("Return")
        desk.books_say((1,), "select count(*) from tblAccountPeriodAccount p join tblAccount a on a.ID = p.AccountID "
                       "where a.Code = '10106' and p.PeriodID = ?", int(year) - 1401)
    desk.picture("periods-of-an-account")
    desk.key("Escape")
    desk.gone(PERIODS)

    desk.press("کپي درخت به دوره مالي")
    desk.window(COPY)
    desk.pick("از دوره مالي", "1404")
    desk.pick("به دوره مالي", "1405")
    desk.shows("به دوره مالي", "سال مالی 1405")
    desk.picture("copy-a-period")
    desk.key("Return")
    desk.gone(COPY)
    desk.books_say((1,), "select count(distinct n) from (select count(*) n from tblAccountPeriodAccount "
                   "where PeriodID in (3, 4) group by PeriodID)")

    desk.go("نمايش کامل درخت")
    desk.key("Right")
    tree = desk.go("درخت حسابها")
    desk.key("End", "Left")
    until("the accounts of a year", lambda: [c for c in walk(tree) if c.get_name().startswith("1 ...")])
    desk.picture("tree-by-periods")
    desk.go("نمايش دوره هاي مالي")
    desk.key("Right")

    desk.press("پنهان از دوره مالي")
    desk.window(HIDE)
    desk.pick("از دوره مالي", "1405")
    desk.picture("hide-from-a-period")
    desk.press("پنهان کردن همه سرفصلها")
    desk.answer("پرسش", "بلي", picture="question")
    desk.books_say((0,), "select count(*) from tblAccountPeriodAccount where PeriodID = 4")
    desk.gone(HIDE)


def delete_by_keys(desk):
    """An arrow key and a command right after it: the highlighted account is deleted."""
    desk.books.executemany("insert into tblAccount (Code, Title) values (?, ?)", [("01", "یک"), ("02", "دو")])
    desk.books.commit()
    desk.key("F5")
    tree = desk.go("درخت حسابها")
    until("the new accounts", lambda: [c for c in walk(tree) if c.get_name().startswith("02 ...")])
    desk.key("Down")
    desk.shows("کد", "01")
    desk.picture("arrow")
    desk.key("Down", "ctrl+d")
    desk.answer("حذف حساب ", "بلي")
    desk.gone("حذف حساب ")
    desk.books_say(("01",), "select group_concat(Code) from tblAccount where Code in ('01', '02')")


def work_in_bulk(desk, folder):
    desk.choose("ابزار", "همسانسازي كدينگ و ماهيت و نوع حسابها...", "F10")
    desk.window(RECODE)
    desk.pick("حساب مادر", "10106")
    desk.go("نمونه اولين كد فرزند")
    desk.type("11")
    desk.picture("recode")
    desk.press("اعمال کدينگ خودکار حسابداري")
    desk.answer("هشدار", "بلي")
    desk.books_say(("صندوق دلار قم",), "select Title from tblAccount where Code = '1010611'")
    desk.window(RECODE)
    desk.key("Escape")
    desk.gone(RECODE)

    desk.choose("ابزار", "حذف دستهاي حسابها...", "F10")
    desk.window(BATCH)
    desk.pick("حساب مادر", "10106")
    desk.picture("delete-in-batch")
    desk.press("حذف")
    desk.answer("حذف دسته اي", "بلي")
    desk.books_say((1,), "select count(*) from tblAccount where Code like '10106%'")
    desk.window(BATCH)
    desk.key("Escape")
    desk.gone(BATCH)

    desk.choose("ابزار", "انتقال ساختار به اکسل بر اساس كدينگ", "F10")
    file = f"{folder}/chart.xlsx"
    until("the question for a file", lambda: [w for w in desk.windows() if w.get_role_name() in ("file chooser", "dialog")])
    desk.key("ctrl+a")
    desk.type(file)
    desk.picture("export")
    desk.key("Return")
    until("the sheet", lambda: os.path.exists(file))
    desk.answer("اتمام عمليات", "تاييد", picture="exported")
    desk.window(MAIN)
    codes = {row[0] for row in openpyxl.load_workbook(file).active.iter_rows(min_row=2, values_only=True)}
    assert codes == {code for code, in desk.books.execute("select Code from tblAccount")}, "the sheet isn't the chart"


def keep_centres(desk):
    desk.choose("عمليات", "مراكز هزينه...", "Alt_L", "Down")
    desk.window(CENTRES)
    desk.key("ctrl+n")
    desk.type("500")
    desk.go("نام")
    desk.type("شعبه قم")
    desk.key("ctrl+s")
    desk.books_say(("500",), "select Code from tblAccCostCenter where Name = 'شعبه قم'")
    desk.picture("cost-centres")
    desk.key("Escape")
    desk.gone(CENTRES)


def afternoon(desk):
    """Classes and objects, if an account may have several; with the mouse where people would use it."""
    desk.click_row(desk.find("درخت حسابها"), "5 ... حقوق مالکانه")
    desk.shows("کد", "5")
    desk.click("نوع موجوديت", "push button")
    desk.window(CLASSES)
    desk.pick("نوع موجوديت", "پروژه")
    desk.click("اضافه")
    desk.click("ثبت")
    desk.answer("اتمام عمليات", "تاييد")
    desk.window(CLASSES)
    desk.books_say((2, 1), "select ClassID, Sequence from tblAccountRelatedClasses r join tblAccount a on a.ID = AccountID "
                   "where a.Code = '5'")
    desk.picture("classes")
    desk.click("...انتخاب برخي از موجوديتها")
    desk.window(OBJECTS)
    desk.go("نوع موجوديت")
    desk.key("Down")
    desk.press("شامل تمام موجوديتها")
    tree = desk.go("درخت موجوديتها")
    desk.click_row(tree, "قراردادهای فروش")
    desk.key("space", "ctrl+b")
    desk.picture("objects")
    desk.key("ctrl+s")
    desk.answer("اطلاع", "تاييد")
    desk.books_say((30,), "select min(ObjectID) from tblAccountRelatedClassesDetail d join tblAccount a on a.ID = AccountID "
                   "where a.Code = '5'")
    desk.window(OBJECTS)
    desk.key("Escape")
    desk.gone(OBJECTS, CLASSES)
    desk.key("Escape")
    desk.gone(CLASSES)
    desk.click("خروج", "push button")


def main(host, folder):
    chart = chart_in(host, folder)
    with Desk(os.environ["DISPLAY"] + ".0", folder) as desk:
        desk.open(host, chart)
        find_accounts(desk)
        keep_accounts(desk)
        choose_by_tab(desk)
        keep_what_left_the_lists(desk)
        keep_periods(desk)
        delete_by_keys(desk)
        work_in_bulk(desk, folder)
        keep_centres(desk)
        desk.key("ctrl+q")
        desk.leave()

        desk.books.execute("update tblTarvoSystemParameters set Value = '1' where ID = 311")
        desk.books.commit()
        desk.open(host, chart)
        afternoon(desk)
        desk.leave()

        # A user who may not see the chart is told so, and the program ends.
        desk.open(host, chart, "--user", "3", title="خطا")
        desk.press("تاييد")
        desk.leave()


if __name__ == "__main__":
    main(*sys.argv[1:])
