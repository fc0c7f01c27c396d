"""A desk with a screen, a keyboard, a mouse and a screen reader, for the real program on a real X server.

The contents of the screen are read over the accessibility bus, as a screen reader does: a control is found by its name
and role, and clicked at the position that it reports. The program receives nothing but keys and clicks.
"""

import os
import shutil
import sqlite3
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

MAIN = "سرفصل حسابها"
PATIENCE = 40  # seconds that a busy machine has for one answer
SHOWING, FOCUSED, FOCUSABLE = Atspi.StateType.SHOWING, Atspi.StateType.FOCUSED, Atspi.StateType.FOCUSABLE
ENABLED, CHECKED, EXPANDED = Atspi.StateType.ENABLED, Atspi.StateType.CHECKED, Atspi.StateType.EXPANDED
LISTS = ("tree", "table", "list", "tree table")
ROWS = ("table cell", "list item", "tree item")
INTERACTIVE = ("push button", "text", "check box", "radio button", "combo box", "menu item", *LISTS)
#: Persian letters by the keys of a Latin keyboard: the focused field converts them.
LETTERS = str.maketrans("ضصثقفغعهخحجچشسیبلاتنمکگظطزرذدپوژ", "qwertyuiop[]asdfghjkl;'zxcvbnm,C")


class Missed(AssertionError):
    pass


def until(what, test):
    """Waits for a condition, and returns its value."""
    end = time.monotonic() + PATIENCE
    while True:
        try:
            if found := test():
                return found
        except GLib.Error:  # a control that was destroyed meanwhile
            pass
        if time.monotonic() > end:
            raise Missed(f"waited {PATIENCE} s for: {what}")
        time.sleep(0.02)


def walk(top, hidden=False):
    """A control and all its descendants; hidden ones only on request."""
    waiting = [top]
    while waiting:
        control = waiting.pop()
        if control is None or not (hidden or has(control, SHOWING)):
            continue
        yield control
        if hidden and control.get_role_name() in LISTS:
            continue
        waiting.extend(control.get_child_at_index(i) for i in reversed(range(control.get_child_count())))


def has(control, state):
    return control.get_state_set().contains(state)


def place(control):
    box = control.get_extents(Atspi.CoordType.SCREEN)
    return box.x, box.y, box.width, box.height


def chart_in(host, folder):
    """Recreates the folder, with the demo chart in it."""
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(f"{folder}/none")  # empty settings
    subprocess.run([host, "--chart", f"{folder}/chart.db", "--pictures", f"{folder}/none"], check=True,
                   stdout=subprocess.DEVNULL, env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
    return f"{folder}/chart.db"


class Desk:
    """One screen of the X server with a window manager, and the program on it."""

    def __init__(self, display, pictures):
        self.environment = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                                LC_ALL="C.UTF-8", HOME=pictures, XDG_CONFIG_HOME=pictures + "/none")
        self.pictures = pictures
        self.manager = self.start(["openbox"])
        self.program = None
        until("the window manager", lambda: subprocess.run(
            ["xdotool", "get_num_desktops"], env=self.environment, capture_output=True).returncode == 0)

    def start(self, command, stderr=None, **environment):
        return subprocess.Popen(command, env={**self.environment, **environment}, stdin=subprocess.DEVNULL, stderr=stderr)

    def run(self, *command):
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True).stdout

    def open(self, host, chart, *options, title=MAIN, **environment):
        self.program = self.start([host, "--chart", chart, *options], **environment)
        self.books = sqlite3.connect(chart, timeout=30)
        return self.window(title)

    def leave(self):
        """The program must have exited by itself, without an error."""
        status = self.program.wait(PATIENCE)
        assert status == 0, f"the program ended with {status}"

    def __enter__(self):
        return self

    def __exit__(self, failure, *_):
        try:
            if failure:
                self.picture("failed", look=False)
        finally:
            for process in (self.program, self.manager):
                if process and process.poll() is None:
                    process.terminate()
                    process.wait()

    # The contents of the screen.

    def windows(self):
        assert self.program.poll() is None, "the program has ended"
        desktop = Atspi.get_desktop(0)
        applications = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
        tops = [a.get_child_at_index(i) for a in applications if a and a.get_process_id() == self.program.pid
                for i in range(a.get_child_count())]
        return [top for top in tops if top and has(top, SHOWING)]

    def window(self, title):
        """Waits for the window with a title to have the focus, and works on it from then on."""
        self.top = until(f"the window {title}", lambda: next((w for w in self.windows() if w.get_name() == title), None))
        assert self.top.get_role_name() in ("frame", "dialog"), f"{title} is called a {self.top.get_role_name()}"
        # A form has all its controls from the start, so one walk finds them; only branches and rows come and go.
        self.controls = [c for c in walk(self.top, hidden=True) if c.get_role_name() not in ROWS]
        self.known = {}
        for control in self.controls:
            self.known.setdefault(control.get_name(), []).append(control)
        self.stops = [control for control in self.controls if has(control, FOCUSABLE)]
        until(f"the focus in {title}", self.focused)
        return self.top

    def gone(self, title, back=MAIN):
        until(f"the end of {title}", lambda: all(w.get_name() != title for w in self.windows()))
        self.window(back)

    def audit(self, title):
        """Every control has a name for those who only hear the screen."""
        dumb = [c for c in self.controls if (c in self.stops or c.get_role_name() in INTERACTIVE) and
                not c.get_name() and has(c, SHOWING)]
        assert not dumb, f"{title}: no name on {[(c.get_role_name(), place(c)) for c in dumb]}"

    def find(self, name, *roles):
        return until(f"{roles} {name}", lambda: next(
            (c for c in self.known.get(name, []) if has(c, SHOWING) and (not roles or c.get_role_name() in roles)), None))

    def focused(self):
        return next((control for control in self.stops if has(control, FOCUSED)), None)

    def shows(self, name, text):
        field = self.find(name, "text")
        until(f"{text!r} in {name}", lambda: Atspi.Text.get_text(field, 0, -1) == text)

    def is_checked(self, name):
        button = self.find(name, "radio button")
        until(f"the mark of {name}", lambda: has(button, CHECKED))

    # User actions.

    def key(self, *chords):
        self.run("xdotool", "key", "--delay", "15", *chords)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "15", text.translate(LETTERS))

    def click_row(self, rows, text):
        self.click_at(until(text, lambda: next((c for c in walk(rows) if c.get_name() == text), None)))

    def click(self, name, *roles):
        control = self.find(name, *roles)
        until(f"{name} in reach", lambda: has(control, ENABLED))
        self.click_at(control)

    def click_at(self, control):
        x, y, width, height = place(control)
        self.run("xdotool", "mousemove", str(x + width // 2), str(y + height // 2), "click", "1")

    def go(self, name):
        """Moves to a control using only the Tab key."""
        for _ in range(60):
            here = until("the focus", self.focused)
            if here.get_name() == name:
                return here
            self.key("Tab")
            until(f"the next control after {here.get_name()}", lambda: self.focused() not in (None, here))
        raise Missed(f"Tab never came to {name}")

    def press(self, name):
        """Presses a button using only the keyboard."""
        button = self.find(name)
        until(f"{name} in reach", lambda: has(button, ENABLED))
        self.go(name)
        self.key("space")

    def pick(self, name, text):
        """Finds a row in a look-up by typing, and picks the first hit."""
        self.go(name)
        self.type(text)
        self.key("Return")

    def choose(self, menu, entry, *keys):
        """Opens a menu with the keyboard, and moves down to an entry. Only the bar reports the entries of a closed menu."""
        entries = self.find(menu, "menu item").get_child_at_index(0)
        names = [e.get_name() for e in map(entries.get_child_at_index, range(entries.get_child_count())) if has(e, ENABLED)]
        before = self.on_top()
        self.key(*keys)
        until(f"the menu {menu}", lambda: self.on_top() > before)
        self.key(*["Down"] * (1 + [name for name in names if name].index(entry) - keys.count("Down")), "Return")

    def on_top(self):
        found = self.run("xdotool", "search", "--onlyvisible", "--pid", str(self.program.pid))
        return len(found.split())

    def answer(self, title, button, picture=None):
        self.window(title)
        if picture:
            self.picture(picture)
        self.press(button)

    # The results.

    def row(self, statement, *values):
        return self.books.execute(statement, values).fetchone()

    def books_say(self, expected, statement, *values):
        until(f"{expected} from {statement} {values}, not {self.row(statement, *values)}",
              lambda: self.row(statement, *values) == expected)

    def picture(self, name, look=True):
        if look:
            self.audit(name)
        time.sleep(0.15)  # the last repaint may be pending
        self.run("import", "-window", "root", "+dither", "-colors", "255", f"{self.pictures}/{name}.png")
