"""Random keys and clicks on the real window: whatever they hit, the program survives and the chart stays sound.

monkey.py <demo host> <folder>   as day.py; LEDGERTREE_MONKEY_SECONDS sets the duration (an hour in a long run),
LEDGERTREE_MONKEY_SEED the keys and clicks; LEDGERTREE_MONKEY_MEMORY=0 skips the check of memory (under a sanitizer)
"""

import os
import random
import statistics
import subprocess
import sys
import time

from desk import MAIN, PATIENCE, Desk, chart_in

COMMANDS = ["ctrl+n", "ctrl+e", "ctrl+s", "ctrl+d", "ctrl+f", "ctrl+b", "ctrl+z", "ctrl+v", "ctrl+a", "ctrl+c", "F1", "F4",
            "F5", "F6", "F8", "F10", "shift+F10", "Alt_L"]
MOVES = ["Tab", "shift+Tab", "Up", "Down", "Left", "Right", "Home", "End", "Prior", "Next"]
ACTS = ["Return", "Return", "space", "Escape", "Delete", "BackSpace"]
LETTERS = [*"abcdghklmpst", *"0123456789", "period", "slash", "apostrophe", "percent"]
KEYS = [(COMMANDS, 3), (MOVES, 6), (ACTS, 4), (LETTERS, 5)]
SAMPLES = 12  # of the memory, in each of the two periods that are compared


def setting(name, usual):
    return int(os.environ.get(f"LEDGERTREE_MONKEY_{name}", usual))


class Monkey:
    def __init__(self, desk, host, chart, dice, said):
        self.desk, self.dice, self.said = desk, dice, said
        # A file dialog leads out of the folder, where random clicks are dangerous.
        self.command = [host, "--chart", chart, "--no-export"]
        self.schema = [f"{os.path.dirname(host)}/ledgertree-schema", "--check", f"Provider=SQLite;Data Source={chart}"]
        self.starts = self.acts = 0
        self.memory = []

    def start(self):
        self.desk.program = self.desk.start(self.command, stderr=self.said, XDG_RUNTIME_DIR=self.desk.pictures + "/run")
        self.desk.window(MAIN)
        self.starts += 1
        self.memory = []

    def in_order(self):
        """Whether the program still runs; if it was left through its own commands, it exited without an error."""
        status = self.desk.program.poll()
        assert status in (None, 0), f"the program ended with {status}"
        self.said.flush()
        words = open(self.said.name, encoding="utf-8", errors="replace").read()
        assert not words, f"the program said:\n{words}"
        return status is None

    def window(self):
        """Left, top, width and height of the focused window; None if there is none."""
        found = subprocess.run(["xdotool", "getactivewindow", "getwindowgeometry", "--shell"], env=self.desk.environment,
                               capture_output=True, text=True).stdout
        place = dict(line.split("=") for line in found.split() if "=" in line)
        return [int(place[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")] if "HEIGHT" in place else None

    def some(self):
        """A few actions, in a single call of xdotool."""
        place, acts = self.window(), []
        for _ in range(self.dice.randint(5, 25)):
            if place is None or self.dice.random() < 0.75:
                keys, = self.dice.choices([keys for keys, _ in KEYS], [weight for _, weight in KEYS])
                acts += ["key", "--delay", "6", self.dice.choice(keys)]
                continue
            left, top, width, height = place
            acts += ["mousemove", str(left + self.dice.randrange(width)), str(top + self.dice.randrange(height))]
            acts += self.dice.choice([["click", "1"]] * 6 + [["click", "--repeat", "2", "1"], ["click", "3"], ["click", "4"],
                                                            ["click", "5"], ["mousedown", "1"], ["mouseup", "1"]])
            acts += ["sleep", "0.01"]
        self.acts += len(acts) // 3
        subprocess.run(["xdotool", *acts, "mouseup", "1"], env=self.desk.environment, check=True, stdout=subprocess.DEVNULL)

    def weigh(self):
        with open(f"/proc/{self.desk.program.pid}/status", encoding="ascii") as status:
            self.memory += [int(line.split()[1]) // 1024 for line in status if line.startswith("VmRSS")]
        if len(self.memory) < 4 * SAMPLES:
            return
        early, late = (statistics.median(part) for part in
                       (self.memory[SAMPLES:2 * SAMPLES], self.memory[-SAMPLES:]))
        # The guide with its pictures, and each screen when first opened, take some 40 MB once.
        assert late < early * 1.1 + 48, f"memory grows: {early} MB, then {late} MB"

    def run(self, seconds):
        end, next_sample = time.monotonic() + seconds, 0
        while time.monotonic() < end:
            if not self.in_order():
                self.start()
            self.some()
            if time.monotonic() > next_sample and setting("MEMORY", 1) and self.in_order():
                next_sample = time.monotonic() + max(seconds / 200, 0.25)
                self.weigh()

    def leave(self):
        """Leaves whatever is open, without saving."""
        end = time.monotonic() + PATIENCE
        while self.in_order():
            assert time.monotonic() < end, "the program can't be left"
            subprocess.run(["xdotool", "key", "--delay", "60", *["Escape"] * 4, "ctrl+q", "Tab", "space"],
                           env=self.desk.environment, check=True)

    def judge(self):
        found = subprocess.run(self.schema, capture_output=True, text=True)
        assert found.returncode == 0, f"the books aren't true any more:\n{found.stdout}{found.stderr}"


def main(host, folder):
    long_run = os.environ.get("LEDGERTREE_LONG") == "1"
    seed = setting("SEED", random.randrange(10**6) if long_run else 1)
    print(f"seed {seed}", flush=True)
    chart = chart_in(host, folder)
    os.mkdir(f"{folder}/run", 0o700)
    with Desk(os.environ["DISPLAY"] + ".0", folder) as desk, open(f"{folder}/said.txt", "wb") as said:
        monkey = Monkey(desk, host, chart, random.Random(seed), said)
        monkey.start()
        monkey.run(setting("SECONDS", 3600 if long_run else 30))
        desk.picture("monkey", look=False)
        monkey.leave()
        monkey.judge()
        print(f"{monkey.acts} acts, {monkey.starts} starts, memory in MB {monkey.memory[::SAMPLES]}")


if __name__ == "__main__":
    main(*sys.argv[1:])
