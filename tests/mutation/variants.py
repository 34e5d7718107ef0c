"""Draws single-fault variants of the product's sources.

A variant is one small change in one line: a constant, a comparison, a logical operator, a truth value, a condition, a
call or a lock. Text in comments, string literals, preprocessor lines and static_asserts is left alone.
"""
import random
import re
from dataclasses import asdict, dataclass
from pathlib import Path

ROOMS = ("module", "shell", "namespace", "service", "ovufc")


@dataclass(frozen=True)
class Variant:
    file: str
    line: int  # from 1
    kind: str
    before: str  # the whole line
    after: str

    def as_dict(self):
        return asdict(self)


NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d+)(?:[uU]?[lL]{0,2})(?![\w.'])")
# Around binary operators the formatter puts blanks, around template brackets and references none.
COMPARISON = re.compile(r"(?<= )(==|!=|<=|>=|<|>)(?= )")
TURNED = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">"}
LOGIC = re.compile(r"(?<= )(&&|\|\|)(?= )")
TRUTH = re.compile(r"\b(true|false)\b")
CALL = re.compile(r"^\s+(?:::)?[a-zA-Z_][\w:.\->\[\]]*\(.*\);$")
LOCK = re.compile(r"^\s+const (?:win::)?(?:shared_lock|exclusive_lock|critical_section_lock) \w+\(.*\);$")
LEFT_ALONE = re.compile(r"^\s*(#|static_assert|using |namespace |template)|= default;|= delete;")


def masked(text):
    """The text with comments and literals blanked out; every character keeps its place."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', re.S)
    return pattern.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), text)


def next_number(literal):
    if literal.lower().startswith("0x"):
        return f"0x{int(literal, 16) + 1:X}"
    return str(int(literal) + 1)


def condition_of(line):
    """Start and end of the condition of an if or while that stands whole in the line."""
    found = re.search(r"\b(?:if|while) \(", line)
    if not found:
        return None
    depth = 1
    for place in range(found.end(), len(line)):
        depth += {"(": 1, ")": -1}.get(line[place], 0)
        if depth == 0:
            return None if ";" in line[found.end():place] else (found.end(), place)
    return None


def variants_of_line(line, plain):
    def replaced(span, by):
        return line[:span[0]] + by + line[span[1]:]

    for found in NUMBER.finditer(plain):
        yield "constant", replaced(found.span(1), next_number(found.group(1)))
    for found in COMPARISON.finditer(plain):
        yield "comparison", replaced(found.span(), TURNED[found.group()])
    for found in LOGIC.finditer(plain):
        yield "logic", replaced(found.span(), "||" if found.group() == "&&" else "&&")
    for found in TRUTH.finditer(plain):
        yield "truth", replaced(found.span(), "false" if found.group() == "true" else "true")
    condition = condition_of(plain)
    if condition:
        inner = line[condition[0]:condition[1]]
        yield "condition", replaced(condition, f"({inner}) && false")
        if "while" not in plain:
            yield "condition", replaced(condition, f"({inner}) || true")
    if LOCK.match(line):
        yield "lock", ""
    elif CALL.match(line) and plain.count("(") == plain.count(")"):
        yield "call", ";"


def variants_of_file(root, path):
    text = (root / path).read_text(encoding="utf-8")
    plain_lines = masked(text).split("\n")
    for number, line in enumerate(text.split("\n"), start=1):
        if LEFT_ALONE.search(line):
            continue
        for kind, after in variants_of_line(line, plain_lines[number - 1]):
            yield Variant(path, number, kind, line, after)


def room_of(path):
    return path.split("/", 1)[0]


def draw(root, files, count, seed):
    """`count` variants and as many spares, the rooms by the square root of their size, the kinds of a room evenly."""
    choice = random.Random(seed)
    by_room = {room: {} for room in ROOMS}
    for path in sorted(files):
        for variant in variants_of_file(Path(root), path):
            by_room[room_of(path)].setdefault(variant.kind, []).append(variant)
    weights = {room: sum(map(len, kinds.values())) ** 0.5 for room, kinds in by_room.items()}
    drawn, seen = [], set()
    while len(drawn) < 2 * count and weights:
        room = choice.choices(list(weights), weights=list(weights.values()))[0]
        kinds = by_room[room]
        kind = choice.choice(sorted(kinds))
        variant = kinds[kind].pop(choice.randrange(len(kinds[kind])))
        if not kinds[kind]:
            del kinds[kind]
            if not kinds:
                del weights[room]
        # One line, one kind: two constants of one table row say the same about the tests.
        key = (variant.file, variant.line, variant.kind)
        if key not in seen:
            seen.add(key)
            drawn.append(variant)
    return drawn
