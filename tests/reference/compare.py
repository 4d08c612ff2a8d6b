"""Compares random designs of the console program with the model, at all 1024 sweep points.

Run: `python3 compare.py PATH-OF-ladderwise-cli COUNT SEED`; exit code 1 on a difference.
Tolerances: values 1e-9 relative; transfer and reflection coefficient 1e-9 absolute; derived
quantities recomputed from the program's own transfer.
"""
import json
import math
import random
import subprocess
import sys

import make_cases
import model

NAMES = ["SeriesInd", "SeriesCap", "SeriesLC", "ShuntInd", "ShuntCap", "ShuntLC", "ShuntParLC",
         "ShuntSerParLC", "SeriesSerLC", "SerSerParLC"]
VALUE_LIMIT = 1e-9
TRANSFER_LIMIT = 1e-9
TRACES = "mag1,mag10,phase,gd,rl"


def run_cli(program, settings):
    command = [program]
    for name, text in settings:
        command += ["--set", "%s=%s" % (name, text)]
    command += ["--set", "traces=" + TRACES, "--json", "-"]
    run = subprocess.run(command, capture_output=True, text=True, timeout=60, check=False)
    if run.returncode != 0:
        raise RuntimeError("exit code %d: %s" % (run.returncode, run.stderr.strip()))
    return json.loads(run.stdout)


def random_case(rng, name):
    """A random design within the bounds of every box, with the model's ladder as its rows."""
    settings = [(key, rng.choice(words)) for key, words in (
        ("pass", make_cases.PASSES), ("response", make_cases.FAMILIES), ("form", ("clc", "lcl")),
        ("sweep", make_cases.SWEEPS), ("parts", ("ideal", "ideal", "real", "deembed")),
        ("std", ("off", "off", "on")), ("cap-tol", "1 2 5 10".split()),
        ("ind-tol", "1 2 5 10".split()))]
    source = 10.0 ** rng.uniform(-1, 4)
    numbers = {"poles": rng.randint(1, 10), "ripple": rng.uniform(0.001, 1.0),
               "f0": 10.0 ** rng.uniform(-3, 5), "bw-percent": rng.uniform(0.5, 199.0),
               "r-source": source, "r-load": source * rng.choice((1.0, 10.0 ** rng.uniform(-1, 1))),
               "ind-q": rng.uniform(5, 300), "ind-c": rng.uniform(0, 2),
               "cap-r": rng.uniform(0, 1), "cap-l": rng.uniform(0, 2),
               "threshold": -rng.uniform(1, 120)}
    settings += [(key, repr(value)) for key, value in numbers.items()]
    design = model.Design(settings)
    transfer, _ = design.sweep()
    delay = model.group_delay(transfer, design.grid, design.threshold)
    scale = None
    if not make_cases.near_rounding_step(model.full_scale_exact(transfer, delay)):
        scale = [repr(model.full_scale(transfer, delay))]
    rows = [line.split("\t")[1:] for line in make_cases.element_rows(design.elements)]
    return {"name": name, "set": settings, "model": design, "el": rows, "gd": scale,
            "out": [repr(design.r_load), "clc" if design.form_clc else "lcl",
                    ",".join(design.replaced) or "-"]}


def relative(a, b):
    if a is None or b is None:
        return 0.0 if a is b else math.inf
    return abs(a - b) / abs(b) if b else abs(a)


def number(text):
    return None if text == "-" else float(text)


def amplitude(db):
    return math.nan if db is None else 10.0 ** (db / 20.0)


def to_complex(pair):
    return complex(math.nan if pair[0] is None else pair[0],
                   math.nan if pair[1] is None else pair[1])


class Checker:
    """Collects the differences of one case and the largest distances over all cases."""

    def __init__(self):
        self.failures = []
        self.worst = {}

    def near(self, case, what, distance, limit):
        kind = what.split(" ")[0]
        if distance > self.worst.get(kind, (-1.0, ""))[0]:
            self.worst[kind] = (distance, case)
        if not distance <= limit:
            self.failures.append((case, what, "%.3e" % distance))

    def same(self, case, what, got, wanted):
        if got != wanted:
            self.failures.append((case, what, "got %r, wanted %r" % (got, wanted)))


def check_ladder(check, case, out):
    name = case["name"]
    r_load, form, replaced = case["out"]
    check.near(name, "r_load", relative(out["r_load"], float(r_load)), VALUE_LIMIT)
    check.same(name, "form", out["form"], form)
    check.same(name, "notes present", bool(out["notes"]) or replaced == "-", True)
    check.same(name, "element count", len(out["elements"]), len(case["el"]))
    for got, wanted in zip(out["elements"], case["el"]):
        slot, code = int(wanted[0]), int(wanted[1])
        check.same(name, "slot", (got["slot"], got["code"]), (slot, code))
        check.same(name, "type", got["type"], NAMES[code])
        for key, text in zip(("V1", "V2", "V3", "V4"), wanted[2:]):
            check.near(name, "value %s of slot %d" % (key, slot),
                       relative(got[key], number(text)), VALUE_LIMIT)


def check_sweep(check, case, out):
    """All 1024 points against the model; an ideal resonance on a point is left out."""
    name, design = case["name"], case["model"]
    transfer, gamma = design.sweep()
    check.same(name, "points", len(out["transfer"]), model.POINTS)
    for i, own in enumerate(transfer):
        got = to_complex(out["transfer"][i])
        if math.isnan(own.real) or math.isnan(got.real):
            check.same(name, "blank point %d" % i, abs(design.grid[i] / design.f0 - 1.0) < 1e-9,
                       True)
            continue
        check.near(name, "all-transfer %d" % i, abs(got - own), TRANSFER_LIMIT)
        distance = abs(amplitude(out["reflection_db"][i]) - abs(gamma[i]))
        check.near(name, "all-reflection %d" % i, distance, TRANSFER_LIMIT)


def check_derived(check, case, out):
    """Magnitude, phase and delay, recomputed from the transfer that the program gave."""
    name, design = case["name"], case["model"]
    transfer = [to_complex(pair) for pair in out["transfer"]]
    grid = out["sweep_hz"]
    delay = model.group_delay(transfer, grid, design.threshold)
    for i, h in enumerate(transfer):
        level = model.level_db(h)
        if math.isnan(level):
            continue
        check.near(name, "magnitude %d" % i, abs(out["magnitude_db"][i] - level), 1e-9)
        phase = None if level < design.threshold else math.degrees(model.phase_rad(h))
        near_threshold = abs(level - design.threshold) < 1e-9
        if not near_threshold and (phase is None) != (out["phase_deg"][i] is None):
            check.same(name, "phase blank %d" % i, out["phase_deg"][i], phase)
        elif phase is not None and out["phase_deg"][i] is not None:
            turn = abs(out["phase_deg"][i] - phase)
            check.near(name, "phase %d" % i, min(turn, 360.0 - turn), 1e-9)
        check_delay(check, name, i, out["group_delay_s"][i], delay[i], grid)
    scale = case["gd"]
    if scale:
        got = out["group_delay_full_scale_s"]
        check.near(name, "full-scale", relative(got, float(scale[0])), VALUE_LIMIT)


def check_delay(check, name, i, got, wanted, grid):
    wanted = None if wanted == model.BLANK or math.isnan(wanted) else wanted
    if got is None or wanted is None:
        check.same(name, "delay blank %d" % i, got, wanted)
        return
    step = 1.0 / (2.0 * math.pi * (grid[max(i, 1)] - grid[max(i, 1) - 1]))
    check.near(name, "delay-phase-step %d" % i, abs(got - wanted) / step, 1e-9)


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    check, rng = Checker(), random.Random(int(sys.argv[3]))
    for k in range(int(sys.argv[2])):
        case = random_case(rng, "random-%d" % k)
        try:
            out = run_cli(sys.argv[1], case["set"])
            for step in (check_ladder, check_sweep, check_derived):
                step(check, case, out)
        except (RuntimeError, ValueError, KeyError, TypeError, subprocess.TimeoutExpired) as error:
            check.failures.append((case["name"], type(error).__name__, str(error)))
    for kind, (distance, case) in sorted(check.worst.items()):
        print("  largest %-18s %.2e  (%s)" % (kind, distance, case))
    for failure in check.failures[:40]:
        print("FAIL %s: %s: %s" % failure)
    print("%s designs, %d differences" % (sys.argv[2], len(check.failures)))
    sys.exit(1 if check.failures else 0)


if __name__ == "__main__":
    main()
