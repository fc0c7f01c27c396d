"""The screens on a small display, with large letters, at a high resolution or on a dark desktop.

looks.py <demo host> <folder>   as day.py
"""

import os
import sys

from desk import EXPANDED, Desk, chart_in, has, place, until, walk

COLOURS = {"light": ("250,250,250", "20,20,20"), "dark": ("30,30,34", "235,235,235")}
#: The number of the X server's screen, the desktop's font size and colours, and the scale factor.
LOOKS = {"small": (1, 9, "light", 1), "large-letters": (0, 18, "light", 1), "many-pixels": (2, 9, "light", 2),
         "light": (0, 9, "light", 1), "dark": (0, 9, "dark", 1)}

CANCEL = "انصراف از ثبت تغييرات حساب "


def theme(folder, letters, colours):
    ground, ink = COLOURS[colours]
    parts = "".join(f"[Colors:{part}]\nBackgroundNormal={ground}\nForegroundNormal={ink}\n"
                    for part in ("Window", "View", "Button", "Tooltip", "Complementary"))
    with open(f"{folder}/none/kdeglobals", "w", encoding="utf-8") as file:
        file.write(f"[General]\nfont=Noto Sans,{letters},-1,5,50,0,0,0,0,0\n{parts}[KDE]\nCursorBlinkRate=0\n")


def draw_one_row_picked(desk, look):
    """A row selected by keyboard looks the same after the whole tree is redrawn."""
    tree, pictures = desk.focused(), []

    def keep(way):
        desk.picture(f"{look}-{way}")
        pictures.append(open(f"{desk.pictures}/{look}-{way}.png", "rb").read())

    desk.key("Down")
    desk.shows("کد", "01")
    keep("come-to")
    for key, is_open in (("Left", True), ("Right", False)):
        desk.key(key)
        until("the branch", lambda: is_open == any(
            has(c, EXPANDED) for c in walk(tree) if c.get_name().startswith("101 ...")))
    keep("drawn-anew")
    assert pictures[0] == pictures[1], f"{look}: the tree shows where a person was before"


def look(host, folder, name):
    screen, letters, colours, factor = LOOKS[name]
    theme(folder, letters, colours)
    with Desk(f"{os.environ['DISPLAY']}.{screen}", folder) as desk:
        desk.open(host, f"{folder}/chart.db", QT_QPA_PLATFORMTHEME="kde", XDG_CURRENT_DESKTOP="KDE",
                  KDE_SESSION_VERSION="5", QT_SCALE_FACTOR=str(factor))
        desk.go("درخت حسابها")
        desk.key("Down", "Left", "Return")
        desk.shows("کد", "1")
        draw_one_row_picked(desk, name)
        desk.key("ctrl+e")
        desk.go("بازسازي درخت حساب")
        desk.go("توضيحات")
        left, top, across, down = place(desk.top)
        seen = []
        while (here := until("the focus", desk.focused)) not in seen:  # the focus is never out of sight
            seen.append(here)
            x, y, width, height = place(here)
            assert left <= x and top <= y and x + width <= left + across and y + height <= top + down, \
                f"{name}: {here.get_name()} is off, at {x, y, width, height}"
            desk.key("Tab")
            until("the next control", lambda: desk.focused() not in (None, here))
        assert len(seen) > 20
        desk.picture(f"{name}-record")
        desk.key("Escape")
        desk.answer(CANCEL, "بلي")
        desk.gone(CANCEL)
        desk.choose("ابزار", "همسانسازي كدينگ و ماهيت و نوع حسابها...", "F10")
        desk.window("اعمال كدينگ خودكار، همسان سازي كدينگ و ماهيت و نوع حساب")
        desk.picture(f"{name}-recode")


if __name__ == "__main__":
    chart_in(*sys.argv[1:])
    for name in LOOKS:
        look(*sys.argv[1:], name)
    for screen in ("record", "recode"):
        pictures = [open(f"{sys.argv[2]}/{name}-{screen}.png", "rb").read() for name in ("light", "dark")]
        assert pictures[0] == pictures[1], f"a dark desktop changes the screen {screen}"
