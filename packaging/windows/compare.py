"""Compares the console program for Windows with the native one, over random designs.

Run: `python3 compare.py NATIVE COUNT SEED WINDOWS...`, where WINDOWS... is the command that starts
the program for Windows (`wine .../ladderwise-cli.exe`); exit code 1 on a difference.

Held to 1e-12 of themselves: inputs, sweep and part values. Transfer, reflection and pulse are the small
difference of large numbers: 1e-12 absolute, their decibels as amplitudes, phase and group delay on
what that makes of them there; ELLIPTIC_SWEEP at the steep edges of elliptic filters. Figures that are
searched for are held to FIGURE, levels as amplitudes, sensitivities of the largest at their frequency
or to NOISE; the frequency of an extreme, where the curve is flat, to FLAT. At which of several equal
ripples the return loss is worst is not compared. Texts, counts and signs are the same.

A number beyond that is ill-conditioned where the native program itself moves it as far when its
inputs move by their last digits: the top of a flat pass band, a line at its resonance, the edge of
ten traps. Such a number may differ by SAME_ROUNDING times that.
"""
import json
import math
import random
import subprocess
import sys

LIMIT = 1e-12
ELLIPTIC_SWEEP = 1e-10
FIGURE = 1e-8
NULL = 1e-30
ROUNDING = 1e-6         # dB for 1 % of a part
NOISE = 2e-7            # dB of that, where the response is the difference of large numbers
SWEPT = "transfer magnitude_db reflection_db phase_deg group_delay_s".split()
FLAT = 1e-6             # where an extreme lies
LAST_DIGITS = 4e-16     # relative, of an input
SHIFTS = (-3, -2, -1, 1, 2, 3)
SAME_ROUNDING = 10.0
RESPONSES = ("butterworth chebyshev bessel-freq bessel-delay papoulis gauss linear-chebyshev "
             "elliptic-a elliptic-b elliptic-c elliptic-d elliptic-e").split()
PASSES = "low-pass high-pass notch band-pass direct-coupled norton low-pass-prototype".split()


def random_design(rng):
    """Words for --set over every pass type, response and kind of part, within the boxes' bounds."""
    source = 10.0 ** rng.uniform(-1, 4)
    numbers = {"poles": rng.randint(1, 10), "ripple": rng.uniform(0.001, 1.0),
               "f0": 10.0 ** rng.uniform(-3, 5), "bw-percent": rng.uniform(0.5, 199.0),
               "atten": rng.uniform(5, 100), "trap": rng.randint(1, 4), "r-source": source,
               "r-load": source * rng.choice((1.0, 10.0 ** rng.uniform(-1, 1))),
               "ind-q": rng.uniform(5, 300), "ind-c": rng.uniform(0, 2),
               "cap-r": rng.uniform(0, 1), "cap-l": rng.uniform(0, 2),
               "threshold": -rng.uniform(1, 120), "factor": rng.uniform(0.2, 1),
               "a": 10.0 ** rng.uniform(0, 2), "k": rng.uniform(1.001, 10),
               "m": rng.uniform(1.001, 10)}
    choices = {"pass": PASSES, "response": RESPONSES, "form": ("clc", "lcl"),
               "sweep": ("linear", "1-octave", "2-octaves", "3-octaves", "1-decade", "2-decades"),
               "parts": ("ideal", "real", "deembed"), "std": ("off", "on"),
               "cap-tol": "1 2 5 10".split(), "ind-tol": "1 2 5 10".split(),
               "tank": "0 1 5 6 7 8 2 3 4 9".split(), "inverter": ("inductor", "capacitor", "line"),
               "norton-type": ("t-cap", "t-ind", "pi-cap", "pi-ind"), "optimize": ("c", "l"),
               "auto-optimize": ("off", "on")}
    words = [(name, rng.choice(values)) for name, values in choices.items()]
    words += [(name, repr(value)) for name, value in numbers.items()]
    if rng.random() < 0.2:
        words += [("worst-case", "on"), ("runs", "20"), ("seed", str(rng.randint(0, 2 ** 32 - 1)))]
    return words + [("traces", "mag1,mag10,phase,gd,pulse,rl")]


def run(command, words):
    arguments = [part for name, value in words for part in ("--set", "%s=%s" % (name, value))]
    done = subprocess.run(command + arguments + ["--json", "-"], capture_output=True, timeout=120,
                          check=False)
    return done.returncode, done.stdout, done.stderr


def is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def near(a, b, limit):
    return abs(a - b) <= limit


def amplitude(db):
    return 10.0 ** (db / 20.0)


def numbers_in(value, place=""):
    """All numbers of a JSON document by their places, named as Comparison names them."""
    if isinstance(value, dict):
        for name, part in value.items():
            yield from numbers_in(part, place + "." + name if place else name)
    elif isinstance(value, list):
        for i, part in enumerate(value):
            yield from numbers_in(part, "%s[%d]" % (place, i))
    elif is_number(value):
        yield place, value


def beyond_rounding(native, words, found):
    """Those of the differences that inputs off by their last digits do not make natively."""
    if not all(is_number(a) and is_number(b) for _, a, b in found):
        return found
    moved = {place: 0.0 for place, _, _ in found}
    for shift in SHIFTS:
        shifted = [(name, repr(float(value) * (1.0 + shift * LAST_DIGITS)))
                   if name in ("f0", "r-source", "r-load", "bw-percent") else (name, value)
                   for name, value in words]
        again = dict(numbers_in(json.loads(run([native], shifted)[1])))
        for place, ours, _ in found:
            moved[place] = max(moved[place], abs(again.get(place, math.inf) - ours))
    return [(place, a, b) for place, a, b in found
            if not abs(a - b) <= SAME_ROUNDING * moved[place] < math.inf]


class Comparison:
    """What differs in one design, and the largest relative distance of part values so far."""

    def __init__(self):
        self.worst = 0.0

    def differences(self, ours, theirs):
        self.found = []
        self.ours = ours
        elliptic = "elliptic" in ours["inputs"]["response"]
        self.sweep = ELLIPTIC_SWEEP if elliptic else LIMIT
        rows = ours.get("sensitivity") or []
        largest = {}
        for row in rows:
            place, value = row["at_hz"], abs(row["db_per_percent"])
            largest[place] = max(largest.get(place, 0.0), value)
        self.largest = [largest[row["at_hz"]] for row in rows]
        self.holes = self.nulls(ours, theirs)
        for key in ours.keys() | theirs.keys():
            self.value(key, ours.get(key), theirs.get(key))
        return self.found

    @staticmethod
    def nulls(ours, theirs):
        """Points at an exact null, where a value may be 0/0 on one system and next to nothing on the other."""
        def null(transfer):
            return None in transfer or math.hypot(*transfer) < NULL
        pairs = zip(ours.get("transfer") or [], theirs.get("transfer") or [])
        return {i for i, (a, b) in enumerate(pairs)
                if (None in a) != (None in b) and null(a) and null(b)}

    def value(self, place, a, b, index=None):
        if isinstance(a, dict) and isinstance(b, dict) and a.keys() == b.keys():
            for name in a:
                self.value(place + "." + name, a[name], b[name], index)
        elif isinstance(a, list) and isinstance(b, list) and len(a) == len(b):
            for i, (x, y) in enumerate(zip(a, b)):
                self.value("%s[%d]" % (place, i), x, y, i if index is None else index)
        elif index in self.holes and place.split("[")[0] in SWEPT:
            pass
        elif is_number(a) and is_number(b):
            if not self.number(place, a, b, index):
                self.found.append((place, a, b))
        elif a != b:
            self.found.append((place, a, b))

    def number(self, place, a, b, index):
        top, leaf = place.split("[")[0].split(".")[0], place.split(".")[-1].split("[")[0]
        if top in ("transfer", "pulse"):
            return near(a, b, self.sweep)
        if top in ("phase_deg", "group_delay_s"):
            return self.by_transfer(top, a, b, index)
        if top == "sensitivity":
            # Where no part changes the response, what stands there is rounding alone.
            if self.largest[index] < ROUNDING:
                return True
            largest = self.largest[index]
            if leaf == "share":
                return near(a, b, max(FIGURE, 2.0 * NOISE / largest))
            if leaf == "db_per_percent":
                return near(a, b, max(FIGURE * largest, NOISE))
            return near(a, b, FLAT * a if leaf == "at_hz" else FIGURE * abs(a))
        if leaf == "worst_return_loss_hz":
            return True
        if leaf.endswith("_db") or leaf in ("db", "nearest", "chosen", "db_below_peak"):
            if top in ("results", "std"):
                return near(amplitude(-abs(a)), amplitude(-abs(b)), FIGURE)
            return near(amplitude(a), amplitude(b), self.sweep * max(1.0, amplitude(a)))
        if top == "results":
            flat = leaf == "peak_hz" or leaf.endswith("at_hz")
            return near(a, b, (FLAT if flat else FIGURE) * abs(a))
        if a == b:
            return True
        distance = abs(a - b) / max(abs(a), abs(b))
        if top == "elements":
            self.worst = max(self.worst, distance)
        return distance <= LIMIT

    def by_transfer(self, kind, a, b, i):
        """What the limit in the transfer makes of a phase, and between two points of a delay."""
        transfer, grid = self.ours["transfer"], self.ours["sweep_hz"]
        around = range(max(i - 2, 0), min(i + 3, len(grid)))
        levels = [math.hypot(*transfer[j]) for j in around if None not in transfer[j]]
        radians = 4 * self.sweep / max(min(levels, default=0.0), 1e-30)
        if kind == "phase_deg":
            turn = abs(a - b) % 360.0
            return min(turn, 360.0 - turn) <= math.degrees(radians) + LIMIT * 360.0
        step = min(grid[j + 1] - grid[j] for j in around if j + 1 < len(grid))
        return abs(a - b) <= LIMIT * abs(a) + (radians + 1e-14) / (2 * math.pi * step)


def main():
    native, count, seed, windows = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4:]
    rng = random.Random(seed)
    comparison, failures, rounded = Comparison(), 0, 0
    for number in range(count):
        words = random_design(rng)
        ours, theirs = run([native], words), run(windows, words)
        if ours[0] != theirs[0]:
            found = [("exit code", ours[0], theirs[0])]
        elif ours[2] != theirs[2].replace(b"\r\n", b"\n"):
            found = [("remarks", ours[2], theirs[2])]
        else:
            differences = comparison.differences(json.loads(ours[1]), json.loads(theirs[1]))
            found = beyond_rounding(native, words, differences)
            rounded += bool(differences) and not found
        if found:
            failures += 1
            print("design %d (%s):" % (number, " ".join("%s=%s" % pair for pair in words)))
            print("\n".join("    %s: %r, on Windows %r" % one for one in found[:5]),
                  "(%d)" % len(found))
    print("%d designs, seed %d: %d differ, %d in what the last digits of an input decide; "
          "part values by %.1e at most" % (count, seed, failures, rounded, comparison.worst))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
