"""Small faults as a reviewer would seed them: where code can be changed, and into what.

A site is a stretch of a file's code, never of a comment, and for all but `text` never of a string.
"""
import re
from dataclasses import dataclass

PAINTING = {"display", "schematic", "controls", "windows", "app"}
LOGGING = re.compile(r"qWarning|qDebug|qCritical|qFatal|std::cerr|static_assert|#include")
# Names that no user sees: object names, settings' keys, resources, styles.
UNSEEN = re.compile(r"setObjectName|setProperty|property\(|:/|findChild|SIGNAL|SLOT|StyleSheet")
# How a line begins that calls something or gives something an existing name a value.
STATEMENT = re.compile(r"[ \t]+(?!(?:return|throw|break|continue|using|delete|else|case|if|for|while"
                       r"|switch|do)\b)[A-Za-z_][\w:.]*(?:->|\(|\[| [-+*/|&]?= )")
PAINT = re.compile(r"[pP]aint|[.>]draw|[.>]fill|[sS]troke|Draw")
NUMBER = re.compile(r"(?<![\w.])(?:\d+\.\d*(?:[eE][-+]?\d+)?|\d+(?:[eE][-+]?\d+)?)(?![\w.])")
OPERAND = r"[A-Za-z_][\w.]*(?:\[\w+\])?"
SWAP = re.compile(r"(?<=[(=,{] )?(?<![\w\])*/+-] )(?<![\w.\])>])(%s) ([-/]) (%s)(?=[),;])" %
                  (OPERAND, OPERAND))
REPLACED = {
    "arithmetic": [(" + ", " - "), (" - ", " + "), (" * ", " / "), (" / ", " * "),
                   (" += ", " -= "), (" -= ", " += ")],
    "boundary": [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > ")],
    "logic": [(" && ", " || "), (" || ", " && "), (" == ", " != "), (" != ", " == "),
              ("true", "false"), ("false", "true")],
}


@dataclass
class Mutation:
    """Replace source[start:end] of a file by `text`."""
    path: str
    kind: str
    start: int
    end: int
    text: str

    def apply(self, source):
        return source[:self.start] + self.text + source[self.end:]

    def describe(self, source):
        line = source.count("\n", 0, self.start) + 1
        before = " ".join(source[self.start:self.end].split())
        return "%s:%d  %s: %s -> %s" % (self.path, line, self.kind, before or "''",
                                        self.text.strip() or "nothing")


def blanked(source):
    """The source with comments blanked, and with comments, strings and characters blanked; and
    the places of the strings. Lengths and lines stay."""
    token = re.compile(r"//[^\n]*|/\*.*?\*/|R\"\w*\(.*?\)\w*\"|\"(?:\\.|[^\"\\\n])*\"|"
                       r"'(?:\\.|[^'\\\n])+'", re.S)
    code, bare, strings, last = [], [], [], 0
    for found in token.finditer(source):
        text = found.group()
        if text[0] == "'" and source[found.start() - 1:found.start()].isalnum():
            continue  # a digit separator
        between, blank = source[last:found.start()], re.sub(r"[^\n]", " ", text)
        is_comment = text[0] == "/"
        code += [between, blank if is_comment else text]
        bare += [between, blank]
        if text[0] == '"':
            strings.append((found.start(), found.end()))
        last = found.end()
    code.append(source[last:])
    bare.append(source[last:])
    return "".join(code), "".join(bare), strings


def line_at(text, place):
    return text[text.rfind("\n", 0, place) + 1:text.find("\n", place)]


def balanced(text):
    return text.count("(") == text.count(")") and text.count("[") == text.count("]")


def other_number(text):
    """A number near by: a whole one off by one, any other a tenth larger."""
    if text.isdigit():
        return str(int(text) + 1)
    return repr(float(text) * 1.1 if float(text) else 0.1)


def condition_end(bare, start):
    """Where the parenthesis that opens at start closes."""
    depth = 0
    for place in range(start, len(bare)):
        depth += {"(": 1, ")": -1}.get(bare[place], 0)
        if depth == 0:
            return place
    return start


def statements(bare):
    """Where statements begin and end that can be left out: on lines of their own, after another
    statement or a brace (else they may be the rest of a longer one)."""
    before = ";"
    place = 0
    for line in bare.splitlines(keepends=True):
        if STATEMENT.match(line) and before[-1] in ";{}":
            end = bare.find(";", place)
            text = bare[place:end]
            if end > 0 and balanced(text) and not re.search(r"[{}]", text):
                yield place + len(line) - len(line.lstrip()), end + 1
        before = line.strip() or before
        place += len(line)


def mutations_of(path, source):
    """Every mutation of one file, as lists by kind."""
    folder = path.split("/")[0]
    code, bare, strings = blanked(source)
    sites = {kind: [] for kind in ("constant", "statement", "operands", "condition", "paint",
                                   "text", *REPLACED)}

    def add(kind, start, end, text):
        if not LOGGING.search(line_at(code, start)):
            sites[kind].append(Mutation(path, kind, start, end, text))

    for found in NUMBER.finditer(bare):
        add("constant", found.start(), found.end(), other_number(found.group()))
    for start, end in statements(bare):
        paints = folder in PAINTING and PAINT.search(bare, start, end)
        add("paint" if paints else "statement", start, end, ";")
    for found in SWAP.finditer(bare):
        left, sign, right = found.groups()
        if left != right:
            add("operands", found.start(), found.end(), "%s %s %s" % (right, sign, left))
    for found in re.finditer(r"\b(?:if|while) (\()", bare):
        start, end = found.start(1), condition_end(bare, found.start(1))
        add("condition", start + 1, end, "!(" + source[start + 1:end] + ")")
    for kind, pairs in REPLACED.items():
        for before, after in pairs:
            for found in re.finditer(r"(?<!\w)%s(?!\w)" % re.escape(before) if before.isalpha()
                                     else re.escape(before), bare):
                add(kind, found.start(), found.end(), after)
    for start, end in strings:
        line = line_at(code, start)
        if re.search(r"[A-Za-z]", source[start:end]) and not UNSEEN.search(line):
            add("text", start, end, '""')
    return sites


CONTAINER = re.compile(r"(?:(?:public|private|protected|signals|public slots|private slots):\s*)*"
                       r"(?:template\s*<[^{}]*>\s*)?(?:inline\s+)?(?:namespace|class|struct|union"
                       r"|extern)\b[^()=]*$")
BODY = re.compile(r"(?:\)|\}|\b(?:const|noexcept|override|final)|->[^;=]*)$")


def closing(bare, start):
    """Where the brace that opens at start closes."""
    depth = 0
    for place in range(start, len(bare)):
        depth += {"{": 1, "}": -1}.get(bare[place], 0)
        if depth == 0:
            return place
    return len(bare) - 1


def outline(bare):
    """(first, last) of every function's body, braces included, and of every declaration outside
    of one, up to its semicolon."""
    plain = re.sub(r"(?m)^[ \t]*#[^\n]*", lambda found: " " * len(found.group()), bare)
    bodies, declarations, begin, place = [], [], 0, 0
    while place < len(plain):
        letter = plain[place]
        if letter == "{":
            header = plain[begin:place].strip()
            end = closing(plain, place)
            if CONTAINER.match(header):
                begin = place + 1
            elif "(" in header and "=" not in header[header.rfind(")"):] and BODY.search(header):
                bodies.append((place, end))
                begin, place = end + 1, end
            else:
                place = end  # initialisers, enumerators
        elif letter == ";":
            declarations.append((begin, place))
            begin = place + 1
        elif letter == "}":
            begin = place + 1
        place += 1
    return bodies, declarations


def home_of(source, mutant):
    """("body" or "declaration", first, last) of what a mutant stands in, or None where a build can
    hold it only alone."""
    bare = blanked(source)[1]
    bodies, declarations = outline(bare)
    for first, last in bodies:
        if first < mutant.start < last:
            return "body", first, last
    for first, last in declarations:
        before = bare[first:mutant.start]
        given = "=" in before or "{" in before
        if first <= mutant.start < last and given and mutant.kind in ("constant", "text"):
            return None if re.search(r"\b(?:static|enum|using|template)\b", before) else (
                "declaration", first, last)
    return None


def is_switchable(source, mutant):
    return home_of(source, mutant) is not None


def switched_source(source, mutants, header):
    """The source with the mutants {number: mutation}, each behind IsMutant(number), and their
    lines: [(first, last, number)]."""
    homes = {}
    for number, mutant in mutants.items():
        homes.setdefault(home_of(source, mutant), []).append(number)
    text, lines, last = '#include "%s"\n' % header if mutants else "", [], 0

    def add(piece, number=None):
        nonlocal text
        first = text.count("\n") + 1
        text += piece
        if number is not None:
            lines.append((first, text.count("\n") + 1, number))
    for (kind, first, end), numbers in sorted(homes.items(), key=lambda home: home[0][1]):
        add(source[last:first])
        last = end + 1
        if kind == "body":
            add("{\n")
            for number in numbers:
                mutant = mutants[number]
                body = (source[first:mutant.start] + mutant.text + source[mutant.end:end + 1])
                add("if (IsMutant(%d)) %s else\n" % (number, body), number)
            add(source[first:end + 1] + "}")
            continue
        declared, place = "", first
        for number in sorted(numbers, key=lambda one: mutants[one].start):
            mutant = mutants[number]
            declared += "%s(IsMutantAtStart(%d) ? %s : %s)" % (
                source[place:mutant.start], number, mutant.text, source[mutant.start:mutant.end])
            place = mutant.end
        declared += source[place:end + 1]
        start = text.count("\n") + 1
        add(re.sub(r"\bconstexpr const\b|\bconstexpr\b", "const", declared))
        lines += [(start, text.count("\n") + 1, number) for number in numbers]
    add(source[last:])
    return text, lines


def declared_name(text, places, number):
    """Name of the variable whose initial value a mutant is; "" where it is none. `text` is what
    switched_source made, `places` the lines that it told."""
    lines = text.splitlines()
    for first, last, one in places:
        piece = "\n".join(lines[first - 1:last])
        if one == number and "IsMutantAtStart(%d)" % number in piece:
            before = piece[:piece.index("IsMutantAtStart")].rsplit(";", 1)[-1]
            before = re.sub(r"\b(?:namespace|struct|class)\b[^{;]*\{", "", before)
            found = re.findall(r"\w+(?=\s*(?:\[[^\]]*\]\s*)?(?:=|\{))", before)
            return found[0] if found else ""
    return ""
