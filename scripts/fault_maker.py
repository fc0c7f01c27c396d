"""Makes simple faults by rule: for `scripts/faults make`. Each rule looks at the code with its comments, texts,
directives and Windows branches blanked out, and offers exchanges (begin, end, other text, what was changed). What
doesn't compile, or compiles to the same machine code, is dropped."""
import bisect
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import random
import re
import shlex
import sqlite3
import subprocess
import tempfile

LITERALS = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'
                      r'(?<![0-9])\'(?:\\.|[^\'\\\n])*\'', re.S)
KEYWORDS = set("return if for while switch throw delete case using static_assert else do goto co_return assert new "
               "catch sizeof alignof decltype noexcept explicit default typedef template".split())
# Neither a size set aside ahead of time nor a log line nor a programmer's own mistake is anything that a user sees.
SILENT = re.compile(r"reserve|capacity|[bB]uffer|[cC]hunk|shrink|squeeze|assert|\blog|static_cast<void>|logic_error|"
                    r"noexcept|Q_UNUSED|maybe_unused|[tT]ime[oO]ut|chrono|hash|template|operator|std::ignore|lock\(|"
                    r"finalize|SQLFree|dlclose|Margins|Spacing|setFamilies|array<")
SYMMETRIC = re.compile(r"(?i).*(equal|same|min|max|swap|tie|both).*|" + "|".join(KEYWORDS))


class Source:
    """A file and what stands where in it."""

    def __init__(self, name, text):
        self.name, self.text = name, text
        self.texts = []
        self.code = LITERALS.sub(self.blank_literal, text)
        self.blank_directives()
        self.code_lines = sum(1 for line in self.code.splitlines() if re.search(r"\w", line))
        # A header is mostly declarations, which are left alone.
        self.weight = (self.code_lines + 1) / (4 if name.endswith(".h") else 1)
        self.marks, self.contexts = [-1], ["namespace"]
        if not name.endswith(".sql"):
            self.find_contexts()

    def blank_literal(self, match):
        literal = match[0]
        if literal[0] == "/":
            return re.sub(r"[^\n]", " ", literal)
        if literal[0] == '"':
            self.texts.append((match.start() + 1, match.end() - 1))
        return literal[0] + re.sub(r"[^\n]", "_", literal[1:-1]) + literal[-1]

    def blank_directives(self):
        """Directives, and what only Windows compiles."""
        hidden, lines = [], self.code.splitlines(keepends=True)
        for number, line in enumerate(lines):
            word = line.strip()
            if word.startswith("#if"):
                windows = "_WIN32" in word
                hidden.append(windows and not re.match(r"#ifndef|#if !", word))
                hidden[-1] = (hidden[-1], windows)
            elif word.startswith(("#else", "#elif")) and hidden:
                hidden[-1] = (hidden[-1][1] and not hidden[-1][0], hidden[-1][1])
            elif word.startswith("#endif") and hidden:
                hidden.pop()
            if word.startswith("#") or any(state[0] for state in hidden):
                lines[number] = re.sub(r"[^\n]", " ", line)
        self.code = "".join(lines)

    def find_contexts(self):
        stack, begun = ["namespace"], 0
        for match in re.finditer(r"[{};]", self.code):
            head = self.code[begun:match.start()].strip()
            begun = match.end()
            if match[0] == "{":
                stack.append(self.context_of(head, stack[-1]))
            elif match[0] == "}" and len(stack) > 1:
                stack.pop()
            else:
                continue
            self.marks.append(match.start())
            self.contexts.append(stack[-1])

    @staticmethod
    def context_of(head, outer):
        if re.search(r"\bnamespace\b[^;()]*$", head):
            return "namespace"
        if re.search(r"\benum\b[^;()=]*$", head):
            return "enum"
        if re.search(r"\b(class|struct|union)\b[^;()=]*$", head):
            return "type"
        if re.search(r"(\)|\belse|\bdo|\btry|\bconst|\boverride|\bmutable|\])$|->[^;{}]*$", head) or (
                not head and outer == "block") or re.search(r"^(default|case [^?]*):$", head):
            return "block"
        return "block" if re.search(r"\)\s*:\s*\w+[({]", head) else "table"

    def context(self, position):
        return self.contexts[bisect.bisect_right(self.marks, position) - 1]

    def line_around(self, position):
        begin = self.code.rfind("\n", 0, position) + 1
        end = self.code.find("\n", position)
        return self.code[begin:end]


Change = collections.namedtuple("Change", "begin end text seen")


# ---- Rules for C++

def exchange(pattern, others, contexts=("block",), unless=r"^\b$"):
    """A rule: what the pattern's first group finds becomes what `others` says of it."""
    def rule(source):
        for match in re.finditer(pattern, source.code):
            line = source.line_around(match.start(1))
            other = others(match[1]) if callable(others) else others.get(match[1])
            if (other is None or source.context(match.start()) not in contexts or SILENT.search(line)
                    or re.search(unless, line)):
                continue
            seen = f"'{match[1]}' is '{other}'" if other else f"'{match[1]}' is left out"
            yield Change(match.start(1), match.end(1), other, seen)
    return rule


def other_number(digits):
    """So far away that it shows: a width of 91 in place of 90 doesn't."""
    number = int(digits)
    return str(number + 1 if number < 10 else number + max(1, number // 4))


NUMBER = r"(?<![\w.'])(\d{1,5})(?![\w.'])"
# Least or greatest so far, an order by one member and a loop's end: one more or less changes nothing, or reads too far.
SAME_AT_THE_BORDER = r"if \((\S+) [<>]=? (\S+)\) (\1 = \2|\2 = \1)|(\S+) [<>] (\S+) \? (\4 : \5|\5 : \4)|for \(|" \
                     r"return \S+?\b(\w+)(\(\))? [<>] \S+?\b\7"


def negated_conditions(source):
    for match in re.finditer(r"\bif \(", source.code):
        end = closing(source.code, match.end() - 1)
        condition = source.text[match.end():end]
        if end < 0 or "\n" in condition or ";" in condition or re.match(r"(const )?auto\b", condition):
            continue
        if source.context(match.start()) == "block" and not re.search(r"[^=!<>]=[^=]", condition):
            plain = re.fullmatch(r"!([\w.>()-]+)", condition)
            other = plain[1] if plain else f"!({condition})" if re.search(r"\W", condition) else f"!{condition}"
            yield Change(match.end(), end, other, f"the condition is the opposite: {other}")


def exchanged_branches(source):
    for match in re.finditer(r" \? ([^?:;(){},\n]+) : ([^?:;(){},\n]+)(?=[;,)])", source.code):
        first, second = source.text[match.start(1):match.end(1)], source.text[match.start(2):match.end(2)]
        if first != second and source.context(match.start()) in ("block", "table"):
            yield Change(match.start(1), match.end(2), f"{second} : {first}", f"'{first}' and '{second}' have swapped")


def closing(code, opening):
    depth = 0
    for position in range(opening, min(len(code), opening + 600)):
        depth += (code[position] in "([{") - (code[position] in ")]}")
        if depth == 0:
            return position
    return -1


def statements(source):
    """Simple statements in blocks that begin and end with a line, as (begin, end, code in one line, stands alone)."""
    lines, starts = source.code.splitlines(keepends=True), [0]
    for line in lines:
        starts.append(starts[-1] + len(line))
    before = "{"
    for number, line in enumerate(lines):
        if not line.strip():
            continue
        ended, before = before, line.strip()[-1]
        begin = starts[number] + len(line) - len(line.lstrip())
        if ended not in ";{}:)" or source.context(begin) != "block" or SILENT.search(line):
            continue
        for last in range(number, min(number + 4, len(lines))):
            text = source.code[begin:starts[last + 1]].rstrip()
            if text.endswith("{"):
                break
            if text.endswith(";") and text.count("(") == text.count(")") and text.count("{") == text.count("}"):
                yield begin, begin + len(text), " ".join(text.split()), ended != ")"
                break


def left_out(pattern, what):
    def rule(source):
        for begin, end, code, alone in statements(source):
            if re.match(pattern, code) and re.match(r"\w*", code)[0] not in KEYWORDS:
                yield Change(begin, end, "" if alone else ";", f"{what} is left out")
    return rule


def guards_left_out(source):
    for begin, end, code, alone in statements(source):
        if re.match(r"if \([^;]*\) (return|continue|break)\b[^;]*;$", code) and alone:
            yield Change(begin, end, "", "the guard is left out")
        elif re.match(r"(return|continue|break);$", code) and alone:
            yield Change(begin, end, "", f"'{code}' is left out")


def calls_in_braces_left_out(source):
    for match in re.finditer(r"\{ ([\w.>-]+\([^{};\n]*\);) \}", source.code):
        if not SILENT.search(match[1]) and match[1].split("(")[0] not in KEYWORDS:
            yield Change(match.start(1), match.end(1), "", "the call is left out")


def shape(text):
    if re.fullmatch(r"-?\d+", text):
        return "number"
    if re.fullmatch(r'"[^"]*"', text):
        return "text"
    if re.fullmatch(r"[A-Za-z_]\w*(?:(?:\.|->|::)\w+)*", text) and text not in ("true", "false", "nullptr", "this"):
        return "name"
    return "call" if re.fullmatch(r"[A-Za-z_][\w.>:-]*\(\)", text) else ""


def swapped_arguments(source):
    for match in re.finditer(r"(\w+)\(|\{", source.code):
        context = source.context(match.end())
        if context not in ("block", "table") or SYMMETRIC.fullmatch(match[1] or "") or (
                SILENT.search(source.line_around(match.start()))):
            continue
        end, opening = closing(source.code, match.end() - 1), match.end()
        if end < 0 or source.code.count("\n", opening, end) > 2 or ";" in source.code[opening:end]:
            continue
        cuts, depth = [opening], 0
        for position in range(opening, end):
            depth += (source.code[position] in "([{") - (source.code[position] in ")]}")
            if source.code[position] == "," and depth == 0:
                cuts.append(position + 1)
        cuts.append(end + 1)
        parts = [(cuts[i], source.text[cuts[i]:cuts[i + 1] - 1]) for i in range(len(cuts) - 1)]
        shapes = {shape(part.strip()) for begin, part in parts}
        if match[0] == "{" and len(parts) > 2 and len(shapes) == 1 and "number" not in shapes:
            continue  # a set, whose order says nothing
        for (first, one), (second, two) in zip(parts, parts[1:]):
            if one.strip() == two.strip() or shape(one.strip()) != shape(two.strip()) or not shape(one.strip()):
                continue
            first, second = first + len(one) - len(one.lstrip()), second + len(two) - len(two.lstrip())
            one, two = one.strip(), two.strip()
            between = source.text[first + len(one):second]
            yield Change(first, second + len(two), two + between + one, f"'{one}' and '{two}' have swapped")


def other_enumerators(source):
    found = list(re.finditer(r"\b((?:\w+::)*[A-Z]\w*)::([A-Z]\w*)\b(?![\w(<{:])(?! [a-z&*])", source.code))
    of_type = collections.defaultdict(list)
    for match in found:
        if match[2] not in of_type[match[1]]:
            of_type[match[1]].append(match[2])
    for match in found:
        names = of_type[match[1]]
        if len(names) < 2 or match[1] == "Qt" or "case " in source.line_around(match.start()):
            continue
        if source.context(match.start()) in ("block", "table"):
            other = names[(names.index(match[2]) + 1) % len(names)]
            yield Change(match.start(2), match.end(2), other, f"'{match[0]}' is '{match[1]}::{other}'")


def other_texts(source):
    """A Persian text that ends early, and a field's name in the place of another's."""
    names = list(dict.fromkeys(source.text[begin:end] for begin, end in source.texts
                               if re.fullmatch(r"[A-Z][a-z]+\w*", source.text[begin:end])))
    for begin, end in source.texts:
        text = source.text[begin:end]
        if source.code[begin - 1] != '"' or SILENT.search(source.line_around(begin)):
            continue
        if re.search(r"[\u0600-\u06ff]{2}", text):
            words = text.split(" ")
            other = " ".join(words[:-1]).rstrip() if len(words) > 1 and len(words[-1]) > 1 else text.rstrip()[:-1]
            if other.strip():
                yield Change(begin, end, other, "the text ends early")
        elif text in names and len(names) > 1 and f'(*this, "{text}"' not in source.text[begin - 8:end + 1]:
            other = names[(names.index(text) + 1) % len(names)]
            yield Change(begin, end, other, f'"{text}" is "{other}"')


# ---- Rules for SQL, in files and in statements of the code

SQL_RULES = [
    (r"(?<![\w.@'(] )(?<![\w.@'])([@A-Za-z][\w.]+), ([@A-Za-z][\w.]+)(?![\w.(]| [a-z])", r"\2, \1",
     "two columns have swapped"),
    (r"(?i)(?<=\S) (and|or) [@\w.]+ (=|<>|<|>|<=|>=) [@\w.:?]+(?=[\s;)]|$)", "", "a condition is left out"),
    (r"(?<=[\w)]) = (?=[\w@?:(])", " <> ", "'=' is '<>'"),
    (r"(?<=[\w)]) <> (?=[\w@?:'(])", " = ", "'<>' is '='"),
    (r"(?<=[\w)]) > (?=[\w@?:(])", " >= ", "'>' is '>='"),
    (r"(?<=[\w)]) < (?=[\w@?:(])", " <= ", "'<' is '<='"),
    (r"(?i)\bnot exists\b", "exists", "'not exists' is 'exists'"),
    (r"(?i)\bis not null\b", "is null", "'is not null' is 'is null'"),
    (r"(?i)\bis null\b", "is not null", "'is null' is 'is not null'"),
    (r"(?i)\bleft join\b", "join", "'left join' is 'join'"),
    (r"(?i) order by [\w., ]+$", "", "the order is left out"),
    (r"(?i)\b(desc)\b", "asc", "'desc' is 'asc'"),
    (r"(?i) on delete cascade", "", "'on delete cascade' is left out"),
    (r"(?i)\bdistinct ", "", "'distinct' is left out"),
]
SQL_ALONE = re.compile(r"(?i)object_id|^\s*set (nocount|ansi|quoted|xact)|^\s*go\b|\bindex\b|grant|\bdrop\b|"
                       r"primary key|foreign key|references|unique|pragma|throw|commit|rollback")


def sql_changes(text, begin):
    for pattern, other, seen in SQL_RULES:
        for match in re.finditer(pattern, text):
            # Only in a condition is a sign a comparison.
            condition = re.search(r"(?i)\b(where|on|and|or|when|if) [^,]*$", text[:match.start()])
            if re.search("[<>=]", other) and not condition:
                continue
            if match.expand(other) != match[0] and match.expand(other).lower() != match[0].lower():
                yield Change(begin + match.start(), begin + match.end(), match.expand(other), seen)


def sql_in_texts(source):
    for begin, end in source.texts:
        text = source.text[begin:end]
        sql = re.search(r"(?i)\b(select|update|insert into|delete|where|from|order by) ", text)
        if source.code[begin - 1] == '"' and sql and len(text) > 12 and not re.search(r"[\u0600-\u06ff]", text):
            yield from sql_changes(text, begin)


def sql_lines(source):
    begin = 0
    for line in source.text.splitlines(keepends=True):
        code = re.sub(r"'[^']*'|--.*", lambda match: "'" + "_" * (len(match[0]) - 2) + "'" if match[0][0] == "'"
                      else " " * len(match[0]), line.rstrip("\n"))
        if code.strip() and not SQL_ALONE.search(code):
            yield from sql_changes(code, begin)
            whole = code.count("(") == code.count(")")
            first = begin + len(line) - len(line.lstrip())
            if re.match(r"\s*(and|or) .*", code) and whole:
                yield Change(first, begin + len(code.rstrip(" ;")), "", "a condition is left out")
            if re.match(r"\s*\w+ = [^;]*,\s*$", code) and whole:
                yield Change(first, begin + len(code.rstrip()), "", "an assignment is left out")
            for match in re.finditer(NUMBER, code):
                yield Change(begin + match.start(), begin + match.end(), other_number(match[1]),
                             f"'{match[1]}' is '{other_number(match[1])}'")
        begin += len(line)


SELDOM = {"preset": 0.2, "not": 0.5, "call in braces": 0.5}  # would be too many, or mostly noticed
RULES = {
    "comparison": exchange(r" (<=|>=|==|!=|<|>)(?= |\n)",
                           {"<": "<=", "<=": "<", "==": "!=", "!=": "==", ">": ">=", ">=": ">"},
                           unless=SAME_AT_THE_BORDER),
    "and or": exchange(r" (&&|\|\|)(?= |\n)", {"&&": "||", "||": "&&"}, unless="auto&&"),
    "sum": exchange(r"[\w)\]] ([+*-]|\+=|-=) (?=[\w(])", {"+": "-", "-": "+", "*": "/", "+=": "-=", "-=": "+="},
                    ("block", "table"), unless=r'[+] "|" [+]'),
    "condition": negated_conditions,
    "not": exchange(r"(?<=[\s(])(!)(?=[A-Za-z_(])", {"!": ""}),
    "number": exchange(NUMBER, other_number, unless=r"\[\d+\]|<<|>>|<\d+>|\bcase\b|for \(|fontMetrics"),
    "table": exchange(NUMBER, other_number, ("table",), unless=r"\[\d+\]|<<|>>|<\d+>"),
    "constant": exchange(r"\bconstexpr [^=()]*= " + NUMBER, other_number, ("namespace", "type")),
    "truth": exchange(r"\b(true|false)\b", {"true": "false", "false": "true"}, ("block", "table")),
    "preset": exchange(r"= (true|false)\b", {"true": "false", "false": "true"}, ("type",)),
    "call": left_out(r"(?:\w+(?:\([^()]*\))?(?:\.|->|::))*\w+(?:<[\w:, ]*>)?\(.*\);$", "the call"),
    "call in braces": calls_in_braces_left_out,
    "assignment": left_out(r"[\w.>*\[\]()-]+ (=|\+=|-=|\|=|&=) .*;$", "the assignment"),
    "guard": guards_left_out,
    "arguments": swapped_arguments,
    "enumerator": other_enumerators,
    "text": other_texts,
    "branches": exchanged_branches,
    "extreme": exchange(r"(?:(?<=\.)|(?<=->)|\b(?=std))(std::min|std::max|first|second)\b",
                        {"std::min": "std::max", "std::max": "std::min", "first": "second", "second": "first"}),
    "statement": sql_in_texts,
}


# ---- What is worth a try

class Compiler:
    """Drops what doesn't compile, and what compiles to the same code: nobody could notice that."""

    def __init__(self, root):
        self.root, self.commands, self.clean = root, {}, {}
        self.seen = root / "build" / "faults" / "compiled.txt"
        self.known = dict(line.split() for line in self.seen.read_text().splitlines()) if self.seen.is_file() else {}
        builds = (sorted(root.glob(f"build/{place}/compile_commands.json")) for place in ("*", "faults/*/build"))
        for build in [path for paths in builds for path in paths]:
            entries = json.loads(build.read_text())
            home = next((entry["file"].split("/src/ui/")[0] for entry in entries if "/src/ui/" in entry["file"]), None)
            for entry in entries if home else []:
                name = entry["file"][len(home) + 1:]
                if name.startswith(("src/", "components/")) and (root / name).is_file():
                    words = shlex.split(entry["command"].replace(f"{home}/src", f"{root}/src"))
                    words = [word for i, word in enumerate(words) if word not in ("-c", "-o", f"{root}/{name}")
                             and words[i - 1] != "-o" and not word.endswith((f"/{name}", "ccache"))]
                    self.commands.setdefault(name, (words, entry["directory"]))

    def assembly(self, name, text, header=None):
        """What the file compiles to; None where it doesn't."""
        words, directory = self.commands[name]
        with tempfile.TemporaryDirectory() as shadow:
            if header:
                path = pathlib.Path(shadow, header[0].split("/", 1)[1])
                path.parent.mkdir(parents=True)
                path.write_text(header[1])
            done = subprocess.run([*words, "-g0", "-O1", "-w", "-S", "-o", "-", "-x", "c++", "-iquote", shadow, "-"],
                                  cwd=directory, input=text, capture_output=True, text=True)
        return done.stdout if done.returncode == 0 else None

    def worth(self, source, text):
        if source.name.endswith(".sql"):
            return self.runs_in_sqlite(source.name, text)
        if not self.commands:
            return True
        name = source.name if source.name in self.commands else self.user_of(source.name)
        if not name:
            return False
        key = hashlib.sha1("\0".join([name, source.name, source.text, text]).encode()).hexdigest()
        if key not in self.known:
            self.known[key] = "yes" if self.compiles_to_another(name, source, text) else "no"
            self.seen.parent.mkdir(parents=True, exist_ok=True)
            with open(self.seen, "a", encoding="utf-8") as seen:
                seen.write(f"{key} {self.known[key]}\n")
        return self.known[key] == "yes"

    def compiles_to_another(self, name, source, text):
        own = (self.root / name).read_text()
        if name != source.name:
            return self.assembly(name, own, (source.name, text)) is not None
        if name not in self.clean:
            self.clean[name] = hash(self.assembly(name, own))
        compiled = self.assembly(name, text)
        return compiled is not None and hash(compiled) != self.clean[name]

    def user_of(self, header):
        """A file that includes the header: its own one, or any."""
        own = header.removesuffix(".h") + ".cpp"
        if own in self.commands:
            return own
        wanted = f'#include "{header.split("/", 1)[1]}"'
        return next((name for name in sorted(self.commands) if wanted in (self.root / name).read_text()), None)

    def runs_in_sqlite(self, name, text):
        if "/db/embedded/" not in name:
            return True
        base = sqlite3.connect(":memory:")
        try:
            for path in sorted((self.root / name).parent.glob("*.sql")):
                base.executescript(text if path == self.root / name else path.read_text())
        except sqlite3.Error:
            return False
        finally:
            base.close()
        return True


def block_of(source, change, places):
    """The lines that the change touches, with as many around them as make the place the only one."""
    changed = source.text[:change.begin] + change.text + source.text[change.end:]
    lines, others = source.text.splitlines(), changed.splitlines()
    first = source.text.count("\n", 0, change.begin)
    last = source.text.count("\n", 0, change.end)
    grown = len(others) - len(lines)
    for turn in range(8):
        old = [line.strip() for line in lines[first:last + 1]]
        if len(places(source.text, old)) == 1 and old[0]:
            new = [line.strip() for line in others[first:last + 1 + grown]]
            return old, [line for line, was in zip(new, [*old, *new]) if line or was == ""], changed
        first, last = (max(first - 1, 0), last) if turn % 2 == 0 else (first, min(last + 1, len(lines) - 1))
    return None


def pick(sources, count, rng, compiler, places):
    """`count` faults of one folder: files by their lines, then a rule that was seldom used, then one of its places."""
    offers, used, taken = {}, collections.Counter(), set()
    for source in sources:
        rules = {"sql": sql_lines} if source.name.endswith(".sql") else RULES
        offers[source] = {name: changes for name, rule in rules.items() if (changes := list(rule(source)))}
        for changes in offers[source].values():
            rng.shuffle(changes)
    made = []
    while len(made) < count and any(offers.values()):
        files = [source for source in sources if offers[source]]
        source = rng.choices(files, [file.weight for file in files])[0]
        rules = sorted(offers[source])
        rule = rng.choices(rules, [SELDOM.get(name, 1) / (1 + used[name]) ** 2 for name in rules])[0]
        change = offers[source][rule].pop()
        if not offers[source][rule]:
            del offers[source][rule]
        line = source.text.count("\n", 0, change.begin)
        if any((source.name, near) in taken for near in range(line - 3, line + 4)):
            continue
        block = block_of(source, change, places)
        if block and block[0] != block[1] and compiler.worth(source, block[2]):
            taken.add((source.name, line))
            used[rule] += 1
            made.append((source.name, block[0], block[1], change.seen, line))
    return sorted(made, key=lambda fault: (fault[0], fault[4]))


def make(root, seed, count, jobs, places):
    folders = collections.defaultdict(list)
    for top in ("src", "components"):
        for path in sorted((root / top).rglob("*")):
            name = str(path.relative_to(root))
            if path.suffix in (".cpp", ".h", ".sql") and "/demo/" not in name and "index" not in path.stem:
                folders[str(path.parent)].append(Source(name, path.read_text(encoding="utf-8")))
    lines = {folder: sum(source.code_lines for source in sources) for folder, sources in folders.items()}
    shares = {folder: max(1, round(count * of / sum(lines.values()))) for folder, of in lines.items()}
    while (over := sum(shares.values()) - count) != 0:
        widest = max(shares, key=lambda folder: shares[folder])
        shares[widest] -= 1 if over > 0 else -1
    compiler = Compiler(root)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        def of(folder):
            return pick(folders[folder], shares[folder], random.Random(f"{seed}:{folder}"), compiler, places)
        picked = pool.map(of, sorted(folders))
        return [fault[:4] for faults in picked for fault in faults]
