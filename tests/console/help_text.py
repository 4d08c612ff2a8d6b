"""Rich text of the help to blocks of plain text, and the numbers that stand in a block.

Apart from the program's own reader on purpose: what is read twice alike is there.
"""
import re

# Groups whose text is no part of the page.
HIDDEN = {"fonttbl", "colortbl", "stylesheet", "info", "pntext", "listtext", "fldinst", "*"}
WORD = re.compile(r"\\([a-z]+)(-?\d+)? ?|\\'([0-9a-f]{2})|\\(.)|([{}])|([^\\{}\r\n]+)", re.S)
SIGNS = {"tab": " ", "line": " ", "cell": " | ", "endash": "\u2013", "emdash": "\u2014"}


class Block:
    """A paragraph or the row of a table; heading tells that the paragraph has an outline level."""

    def __init__(self, text, heading, bold):
        self.text = re.sub(r"\s+", " ", text).strip()
        self.heading = heading
        self.bold = bold


def read(path):
    """The blocks of a rich text file in their order."""
    with open(path, encoding="cp1252") as file:
        source = file.read()
    blocks, text, heading, bold = [], "", False, False
    hidden, depth, skip = [], 0, 0
    for found in WORD.finditer(source):
        name, number, byte, sign, brace, plain = found.groups()
        piece = ""
        if brace == "{":
            depth += 1
        elif brace == "}":
            depth -= 1
            while hidden and hidden[-1] > depth:
                hidden.pop()
        elif name in HIDDEN or sign == "*":
            hidden.append(depth)
        elif name in ("par", "row"):
            if text.strip():
                blocks.append(Block(text, heading, bold))
            text = ""
        elif name == "pard":
            heading = False
        elif name == "outlinelevel":
            heading = True
        elif name == "u":
            piece, skip = chr(int(number) % 65536), 1
        elif name in SIGNS:
            piece = SIGNS[name]
        elif byte:
            piece = bytes.fromhex(byte).decode("cp1252")
        elif sign:
            piece = {"~": "\u00a0"}.get(sign, sign if sign in "{}\\" else "")
        elif plain:
            piece, skip = plain[skip:], 0
        if not hidden:
            text += piece
    return blocks


# A number of the text: not one within a name (F1, E12, g1), 100 000 as one, 22p as 22.
NUMBER = re.compile(r"(?<![\w.\u2080-\u2089])-?\d{1,3}(?: \d{3})+(?![\d.])|"
                    r"(?<![\w.\u2080-\u2089])-?\d+(?:\.\d+)?(?:E-?\d+)?")
UNITS = {"pF": 1e-12, "nF": 1e-9, "uF": 1e-6, "nH": 1e-9, "uH": 1e-6, "mH": 1e-3, "Hz": 1.0,
         "kHz": 1e3, "MHz": 1e6, "GHz": 1e9, "ns": 1e-9, "us": 1e-6, "ms": 1e-3}
# The unit may stand after the last of several numbers: "10.45 and 10.95 MHz".
UNIT = re.compile(r"(?:(?:,| and| to| by) -?\d+(?:\.\d+)?)*[ \u00a0](%s)\b" % "|".join(UNITS))


class Number:
    """A number as it stands in the text; unit is what one counts in SI units. A borrowed unit
    stands after a later number, and need not be this one's: "a Q of 80, 0.25 pF"."""

    def __init__(self, text, unit, borrowed):
        self.text = text
        self.unit = unit
        self.borrowed = borrowed
        plain = text.replace(" ", "")
        self.value = float(plain)
        decimals = len(plain.partition("E")[0].partition(".")[2])
        self.half_digit = 0.5 * 10.0 ** -decimals

    def shows(self, value):
        """Whether a value, rounded to the digits that stand there, is this number."""
        if value is None:
            return False
        units = (self.unit, 1.0) if self.borrowed else (self.unit,)
        return any(abs(value / unit - self.value) <= self.half_digit + 1e-9 * abs(value / unit)
                   for unit in units)


def numbers(text):
    """The numbers of a block, from its beginning."""
    found = []
    for match in NUMBER.finditer(text):
        unit = UNIT.match(text, match.end())
        borrowed = unit is not None and re.search(r"\d", unit.group()) is not None
        found.append(Number(match.group(), UNITS[unit.group(1)] if unit else 1.0, borrowed))
    return found
