#!/usr/bin/env python3
"""Recomputes every number of the help texts through the console program.

Run: `python3 help_numbers.py PATH-OF-ladderwise-cli FOLDER-OF-THE-HELP-FILES`; exit code 1 where a
number differs, or stands in the help and nothing in `help_checks.py` accounts for it.
"""
import json
import math
import re
import subprocess
import sys
from pathlib import Path

import help_checks
import help_text

# In the key of a block: any digit.
DIGIT = re.escape("\\d")


class Design:
    """What the console program says of one design; asked once, when it is first needed.

    design[slot, k] is the k-th value (from 1) that the ladder's slot uses, SI units; other names
    are those of the JSON's `results`, `inputs` or of the JSON itself.
    """

    def __init__(self, program, words, csv):
        self.command = [program, "--set", "traces=mag10,gd,rl,pulse", "--json", "-"]
        for word in words.split():
            self.command += ["--set", word.replace("{csv}", csv)]
        self.answer = None

    def json(self):
        if self.answer is None:
            run = subprocess.run(self.command, capture_output=True, text=True, timeout=60,
                                 check=False)
            if run.returncode != 0:
                raise RuntimeError("%s: %s" % (" ".join(self.command), run.stderr.strip()))
            self.answer = json.loads(run.stdout)
            self.kinds = [note["kind"] for note in self.answer["notes"]]
        return self.answer

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        answer = self.json()
        plain = name.replace("_", "-")
        for place, key in ((answer["results"] or {}, name), (answer["inputs"], plain),
                           (answer, name)):
            if key in place:
                return place[key]
        raise AttributeError("the JSON has no %s" % name)

    def __getitem__(self, place):
        slot, k = place
        element = self.json()["elements"][slot - 1]
        values = [element["V%d" % row] for row in range(1, 5)]
        return [value for value in values if value is not None][k - 1]

    def at(self, values, f):
        """A list over the sweep at a frequency: the cubic through the four nearest points."""
        grid = self.json()["sweep_hz"]
        first = sum(1 for x in grid if x < f) - 2
        nodes = range(max(0, min(first, len(grid) - 4)), max(0, min(first, len(grid) - 4)) + 4)
        total = 0.0
        for i in nodes:
            weight = math.prod((f - grid[j]) / (grid[i] - grid[j]) for j in nodes if j != i)
            total += weight * values[i]
        return total

    def loss(self, f):
        """Attenuation at f (Hz), dB."""
        pairs = self.json()["transfer"]
        h = complex(*(self.at([pair[part] for pair in pairs], f) for part in (0, 1)))
        return -20.0 * math.log10(abs(h))

    def delay(self, f):
        return self.at(self.json()["group_delay_s"], f)

    def return_loss(self, f):
        return -self.at(self.json()["reflection_db"], f)

    def attenuation(self, where):
        return next(row["db"] for row in self.attenuations
                    if row["at"].replace(" ", "") == where)

    def down_from(self, level):
        """The frequency above which the loss of a low-pass stays above a level (dB)."""
        losses = [-db for db in self.json()["magnitude_db"]]
        grid = self.json()["sweep_hz"]
        last = max(i for i, loss in enumerate(losses) if loss < level)
        low, high = grid[last], grid[last + 1]
        while high - low > 1e-9 * high:
            middle = 0.5 * (low + high)
            low, high = (middle, high) if self.loss(middle) < level else (low, middle)
        return low

    def loss_between(self, low, high):
        """The least attenuation at a point of the sweep from low to high (in F0), dB."""
        points = zip(self.json()["sweep_hz"], self.json()["magnitude_db"])
        return min(-db for f, db in points if low <= f / self.f0 <= high)

    def worst(self, f):
        """Least and largest loss of the runs of a worst case at f."""
        runs = self.json()["worst_case"]
        return [-self.at(runs[name], f) for name in ("high_db", "low_db")]

    def parts(self):
        """How many coils and capacitors the ladder has."""
        return sum(1 for element in self.elements for row in range(1, 5)
                   if element["V%d" % row] is not None)

    def resonance(self, slot, k):
        """Hz, of the k-th pair of coil and capacitor of a slot."""
        return 0.5 / math.pi / math.sqrt(self[slot, 2 * k - 1] * self[slot, 2 * k])

    @property
    def coils(self):
        """Inductors of a Norton ladder that are there, from the source."""
        return [value for value in self.norton["inductors"] if value > 0.0]

    @property
    def capacitors(self):
        return [value for value in self.norton["capacitors"] if value > 0.0]

    def overshoot(self):
        """Of the pulse of a low-pass, % of its height; v is drawn as 0.6 v + 0.2."""
        return (max(self.pulse) - 0.8) / 0.6 * 100.0

    def readout(self, end):
        """The number of a read-out of a direct-coupled design, SI units."""
        return float(self.direct_coupled["readouts"][end].partition("=")[2])

    def has(self, kind):
        self.json()
        return kind in self.kinds


def bounds(program):
    """A function from an input's name to its smallest and largest value, in its box's unit."""
    usage = subprocess.run([program, "--help"], capture_output=True, text=True, timeout=60,
                           check=True).stdout

    def of(name, which):
        line = re.search(r"^  %s +(.*)$" % re.escape(name), usage, re.M).group(1)
        return [float(x) for x in re.search(r"(\S+) to (\S+)", line).groups()][which]
    return of


def value_of(expression, scope):
    try:
        return eval(expression, {"__builtins__": {}}, scope)  # pylint: disable=eval-used
    except Exception as trouble:
        raise RuntimeError("%s: %r" % (expression, trouble)) from trouble


def check_block(where, block, expressions, scope):
    """The faults of a block: numbers that differ, and those that nothing accounts for."""
    found = help_text.numbers(block.text)
    queries = expressions.split()
    if len(found) != len(queries):
        return ["%s: \"%s ...\" has %d numbers (%s), help_checks.py accounts for %d" % (
            where, block.text[:60], len(found), ", ".join(n.text for n in found), len(queries))]
    faults = []
    for number, query in zip(found, queries):
        if query.startswith("="):
            if number.text.replace(" ", "") != query[1:]:
                faults.append("%s: \"%s ...\": %s stands there, exempt is %s" % (
                    where, block.text[:60], number.text, query[1:]))
            continue
        value = value_of(query, scope)
        if not number.shows(value):
            faults.append("%s: \"%s ...\": %s stands there, %s is %s" % (
                where, block.text[:60], number.text, query,
                value if value is None else "%.10g" % (value / number.unit)))
    return faults


def check_page(path, checks, scope):
    blocks, faults, used = help_text.read(path), [], set()
    literature = False
    for block in blocks:
        if block.heading:
            literature = block.text == "Literature"
        if literature or not help_text.numbers(block.text):
            continue
        keys = [key for key in checks
                if re.match(re.escape(key).replace(DIGIT, r"\d"), block.text)]
        used.update(keys)
        if len(keys) != 1:
            faults.append("%s: \"%s ...\": %s entries of help_checks.py begin so; numbers: %s" % (
                path.name, block.text[:60], len(keys),
                ", ".join(n.text for n in help_text.numbers(block.text))))
            continue
        faults += check_block(path.name, block, checks[keys[0]], scope)
    faults += ["%s: nothing begins with \"%s\"" % (path.name, key)
               for key in checks if key not in used]
    return faults


def main():
    program, folder = sys.argv[1], Path(sys.argv[2])
    csv = str(folder.parent / "Coefficients" / "Chebyshev 0.01 dB.csv")
    scope = {name: Design(program, words, csv) for name, words in help_checks.DESIGNS.items()}
    scope.update(bound=bounds(program), abs=abs, min=min, max=max, len=len, pi=math.pi, w=2e6 * math.pi)
    for name, words in help_checks.DERIVED.items():
        scope[name] = lambda words=words: value_of(words, scope)
    faults = []
    pages = sorted(folder.glob("*.rtf"))
    if {page.name for page in pages} != set(help_checks.CHECKS):
        faults.append("pages of help_checks.py and of %s differ" % folder)
    for page in pages:
        faults += check_page(page, help_checks.CHECKS.get(page.name, {}), scope)
    for name, words in help_checks.STATEMENTS.items():
        if not value_of(words, scope):
            faults.append("no longer true: %s" % name)
    print("\n".join(faults) or "every number of the help is the program's")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
