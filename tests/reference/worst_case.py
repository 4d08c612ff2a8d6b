"""Checks the console program's worst-case runs: which factors are drawn, and how far they spread.

Run: `python3 worst_case.py PATH-OF-ladderwise-cli`; exit code 1 on a fault.

One-pole filters tell their draw: |H|^2 = 1 / (1 + (w R C / 2)^2) is solved for C (or L), whose
factor must be one of the 201 steps of its tolerance at every sweep point. Larger ladders are
compared with the model's own draws by the envelope that a thousand runs reach.
"""
import json
import math
import random
import subprocess
import sys

import ladder
import model

ENVELOPE_POINTS = range(40, 1000, 60)


def run(program, settings):
    command = [program, "--json", "-"]
    for name, text in settings:
        command += ["--set", "%s=%s" % (name, text)]
    done = subprocess.run(command, capture_output=True, text=True, timeout=120, check=False)
    if done.returncode != 0:
        raise RuntimeError("exit code %d: %s" % (done.returncode, done.stderr.strip()))
    return json.loads(done.stdout)


def worst_settings(runs, seed, **names):
    return model_settings(names) + [("worst-case", "on"), ("runs", str(runs)), ("seed", str(seed))]


def model_settings(names):
    return [(name.replace("_", "-").replace("pass-type", "pass"), str(text))
            for name, text in names.items()]


def factor_of(level_db, f, f0):
    """The one-pole low-pass's C or L over its nominal value, from the level at f."""
    return math.sqrt(10.0 ** (-level_db / 10.0) - 1.0) / (f / f0)


def drawn_step(found, out, i, tolerance):
    """The draw of a single run in steps. Nominal ladder and run together make the envelope, so
    one of its two sides is the nominal level and the other the run's."""
    steps = [(factor_of(found[side][i], out["sweep_hz"][i], 200e6) - 1.0) * 1e4 / tolerance
             for side in ("low_db", "high_db")]
    return max(steps, key=abs)


def check_draws(program, form, tolerance, faults):
    """Single runs with many seeds: each factor is a step of the tolerance, all steps alike."""
    tolerances = {"cap_tol" if form == "clc" else "ind_tol": tolerance}
    steps = []
    for seed in range(1, 121):
        out = run(program, worst_settings(1, seed, poles=1, form=form, **tolerances))
        found = out["worst_case"]
        if found["seed"] != seed or found["runs"] != 1:
            faults.append("asked for 1 run with seed %d, got %r" % (seed, found["seed"]))
        step = [drawn_step(found, out, i, tolerance) for i in (512, 700, 900)]
        if max(abs(s - round(step[0])) for s in step) > 1e-6 or abs(step[0]) > 100.5:
            faults.append("%s %d %% seed %d: steps %r" % (form, tolerance, seed, step))
        steps.append(round(step[0]))
    mean = sum(steps) / len(steps)
    deviation = math.sqrt(sum(s * s for s in steps) / len(steps))
    print("  %s %d %%: %d draws, mean %.1f, deviation %.1f (uniform: 0 +- 5.3, 58.0), %d .. %d"
          % (form, tolerance, len(steps), mean, deviation, min(steps), max(steps)))
    if abs(mean) > 21.0 or abs(deviation - 58.0) > 12.0:
        faults.append("%s: the draws are not uniform" % form)


def model_envelope(design, runs, tolerances, rng):
    """Lowest and highest level at the envelope points, by the model's own draws."""
    low = {i: math.inf for i in ENVELOPE_POINTS}
    high = {i: -math.inf for i in ENVELOPE_POINTS}
    models = design.models()
    for _ in range(runs):
        drawn = []
        for element in design.elements:
            values = [v if v >= 0.1 else v * (1.0 + rng.randint(-100, 100) * 0.01 * t)
                      for v, t in zip(element.values(), tolerances * 2)]
            drawn.append(ladder.Element(element.code, *values))
        for i in ENVELOPE_POINTS:
            h, _ = ladder.analyse(drawn, design.grid[i], design.f0, design.r_source,
                                  design.r_load, models)
            level = model.level_db(h)
            low[i], high[i] = min(low[i], level), max(high[i], level)
    return low, high


def check_envelope(program, names, tolerances, faults):
    """A thousand runs reach about as far as the model's thousand, at every point looked at."""
    settings = model_settings(names)
    found = run(program, worst_settings(1000, 7, **names))["worst_case"]
    low, high = model_envelope(model.Design(settings), 1000, tolerances, random.Random(3))
    ratios = []
    for i in ENVELOPE_POINTS:
        own = high[i] - low[i]
        if own > 1e-6:
            ratios.append((found["high_db"][i] - found["low_db"][i]) / own)
    print("  %r: spread over the model's %.2f .. %.2f" % (names, min(ratios), max(ratios)))
    if min(ratios) < 0.6 or max(ratios) > 1.7:
        faults.append("%r: spreads over the model's %.2f .. %.2f"
                      % (names, min(ratios), max(ratios)))


def check_seeds(program, faults):
    """The same seed repeats the runs; another seed, or none, does not."""
    def lows(seed):
        return run(program, worst_settings(20, seed, poles=5))["worst_case"]["low_db"]

    if lows(11) != lows(11):
        faults.append("the same seed gives different runs")
    if lows(11) == lows(12):
        faults.append("two seeds give the same runs")
    free = [run(program, [("worst-case", "on"), ("runs", "5")])["worst_case"] for _ in (0, 1)]
    again = run(program, worst_settings(5, free[0]["seed"]))["worst_case"]
    if again["low_db"] != free[0]["low_db"]:
        faults.append("the seed that a run without one reports does not repeat it")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    program, faults = sys.argv[1], []
    for form, tolerance in (("clc", 5), ("lcl", 10), ("clc", 1), ("lcl", 2)):
        check_draws(program, form, tolerance, faults)
    check_envelope(program, {"poles": 5}, (0.1, 0.05), faults)
    check_envelope(program, {"pass_type": "band-pass", "poles": 4, "sweep": "linear"},
                   (0.1, 0.05), faults)
    check_envelope(program, {"pass_type": "notch", "poles": 3, "parts": "real", "cap_tol": 2,
                             "ind_tol": 5}, (0.05, 0.02), faults)
    check_seeds(program, faults)
    for fault in faults[:40]:
        print("FAULT", fault)
    print("%d faults" % len(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
