"""Writes cases.tsv: the numbers that the program must reproduce, from the independent model.

Run: `python3 make_cases.py` (needs ngspice on the PATH; takes some seconds). It prints how far
model and ngspice are apart and stops if that is more than they should be.
"""
import math
import os
import random

import ladder
import model
import spice

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLES = (190, 533, 733)
SPICE_SAMPLES = (376, 577)
SPICE_LIMIT = 1e-7  # largest accepted distance of model and ngspice, in |H| and |Gamma|
HEADER = """\
# Reference numbers for the calculation, written by make_cases.py. Origin: model.py and ladder.py
# (an independent model in Python); lines "sp" come from ngspice (spice.py).
# Units are SI; level of the reflection in dB; slots from 1, sweep points from 0; "-" = not used.
# filter ID / set NAME TEXT as typed / out R_LOAD FORM REPLACED-BOXES / el SLOT CODE V1 V2 V3 V4 /
#   gd FULL-SCALE / pt INDEX F RE-H IM-H REFLECTION / sp INDEX F RE-H IM-H REFLECTION
# ladder ID F0 RS RL PARTS IND-Q IND-C CAP-R CAP-L, then el, pt and sp as above
"""


def show(value):
    return "-" if value is None else repr(float(value))


def row(*fields):
    return "\t".join(str(field) for field in fields)


# ---- the filter cases --------------------------------------------------------------------------

FAMILIES = ("butterworth", "chebyshev", "bessel-freq", "bessel-delay", "papoulis", "gauss",
            "linear-chebyshev")
PASSES = ("low-pass", "high-pass", "band-pass", "notch")
SWEEPS = ("1-decade", "linear", "1-octave", "2-octaves", "3-octaves", "2-decades")


def settings(**names):
    """Keyword arguments as a list of settings; underscores stand for hyphens."""
    return [(name.replace("_", "-").replace("pass-type", "pass"), str(text))
            for name, text in names.items()]


def family_cases():
    """Every family on every pass type, orders, forms and sweeps taken in turn."""
    cases, turn = [], 0
    for family in FAMILIES:
        for pass_type in PASSES:
            poles = 1 + (turn * 3) % 10
            form = ("clc", "lcl")[turn % 2]
            sweep = SWEEPS[turn % 6]
            cases.append(("%s-%s-%d-%s-%s" % (pass_type, family, poles, form, sweep),
                          settings(pass_type=pass_type, response=family, poles=poles, form=form,
                                   sweep=sweep)))
            turn += 1
    for family in FAMILIES[2:]:
        for poles in (2, 3, 5, 8, 10):
            cases.append(("low-pass-%s-%d" % (family, poles),
                          settings(response=family, poles=poles, sweep=SWEEPS[poles % 6])))
    return cases


def termination_cases():
    """Unequal loads for the two families that allow them, forms asked for against the load."""
    cases = []
    for poles in (1, 2, 3, 4, 7, 10):
        for load, form in ((100, "clc"), (25, "lcl"), (75, "lcl"), (12.5, "clc")):
            if (poles + int(load)) % 2 and poles > 4:
                continue
            for family in ("butterworth", "chebyshev"):
                cases.append(("load-%s-%d-%s-%s" % (family, poles, load, form),
                              settings(response=family, poles=poles, r_load=load, form=form)))
    for poles, ripple, load, form in ((4, 0.2, 50, "clc"), (6, 1, 50, "lcl"), (2, 0.01, 40, "clc"),
                                      (8, 0.5, 60, "clc"), (10, 0.001, 49.9, "lcl")):
        cases.append(("load-moved-%d-%s-%s-%s" % (poles, ripple, load, form),
                      settings(response="chebyshev", poles=poles, ripple=ripple, r_load=load,
                               form=form)))
    cases += [
        ("load-forced-gauss", settings(response="gauss", poles=4, r_source=75, r_load=50)),
        ("coefficients-fall-back", settings(response="coefficients", poles=5, r_load=100)),
        ("source-high", settings(response="chebyshev", poles=5, r_source=1e6, r_load=2e5)),
        ("notch-unequal", settings(pass_type="notch", poles=5, r_source=75, r_load=300)),
        ("band-pass-load-moved", settings(pass_type="band-pass", response="chebyshev", poles=6,
                                          ripple=0.1, r_source=75, r_load=75)),
    ]
    return cases


def prototype_cases():
    cases = []
    for family in FAMILIES:
        cases.append(("prototype-" + family, settings(pass_type="low-pass-prototype",
                                                      response=family, poles=7)))
    cases.append(("prototype-load", settings(pass_type="low-pass-prototype", poles=4, r_load=2,
                                             sweep="2-decades")))
    return cases


def part_cases():
    """Real and de-embedded parts, and standard values at every tolerance."""
    cases = []
    for parts in ("real", "deembed"):
        for index, pass_type in enumerate(PASSES):
            family = FAMILIES[(index * 2) % 7]
            cases.append(("%s-%s-%s" % (parts, pass_type, family),
                          settings(pass_type=pass_type, response=family, poles=3 + index,
                                   parts=parts, sweep=SWEEPS[index])))
            cases.append(("%s-%s-own-model" % (parts, pass_type),
                          settings(pass_type=pass_type, response="chebyshev", poles=5, f0=433.92,
                                   bw_percent=12, parts=parts, ind_q=80, ind_c=0.12, cap_r=0.05,
                                   cap_l=0.3, sweep="2-octaves")))
    cases.append(("real-lossless-but-q", settings(parts="real", ind_c=0, cap_r=0, cap_l=0)))
    for index, tolerance in enumerate((1, 2, 5, 10)):
        for pass_type in PASSES:
            cases.append(("std-%s-%d" % (pass_type, tolerance),
                          settings(pass_type=pass_type, std="on", cap_tol=tolerance,
                                   ind_tol=(10, 5, 2, 1)[index], poles=5, f0=98.765,
                                   bw=7.3, response=FAMILIES[index])))
    cases.append(("std-deembed", settings(pass_type="band-pass", std="on", parts="deembed",
                                          poles=4, f0=146, bw=14.6, sweep="linear")))
    return cases


def frequency_cases():
    """Extremes of F0 and of the bandwidth, and texts in every shape."""
    return [
        ("f0-lowest", settings(f0=".001", poles=4)),
        ("f0-highest", settings(f0="1.0E5", poles=4, pass_type="high-pass")),
        ("values-below-smallest", settings(f0="1E5", r_source="1e6", response="bessel-delay",
                                           poles=10)),
        ("f0-full-precision", settings(f0="145.825", poles=5)),
        ("bw-full-precision", settings(pass_type="band-pass", f0="145.825", bw="2.34567")),
        ("bw-percent", settings(pass_type="band-pass", f0=10.7, bw_percent=1.5, poles=4)),
        ("bw-percent-lowest", settings(pass_type="notch", bw_percent=0.5)),
        ("bw-percent-highest", settings(pass_type="band-pass", bw_percent=199, sweep="linear")),
        ("linear-band-pass-from-1-hz", settings(pass_type="band-pass", bw=90, sweep="linear")),
        ("linear-notch-from-1-hz", settings(pass_type="notch", bw=80, sweep="linear")),
        ("linear-high-pass", settings(pass_type="high-pass", sweep="linear", poles=6)),
        ("threshold-deep", settings(threshold=-60, poles=5)),
        ("threshold-high", settings(threshold=-1, poles=5, response="chebyshev", ripple=0.5)),
    ]


def bad_input_cases():
    """Texts out of bounds, oddly typed or no numbers, box by box."""
    typed = {"poles": ("abc", "11", "3.7", " 5 "), "f0": ("-5", "1e9", "5.", "0x10", "nan", "1,5"),
             "r-source": ("0", "2e6"), "r-load": ("1e7", "?"), "ripple": ("5", "-2", "1e-1"),
             "bw": ("0", "1e5"), "bw-percent": ("0.1", "250", "%")}
    before = {"ripple": [("response", "chebyshev")], "bw": [("pass", "band-pass")],
              "bw-percent": [("pass", "notch")]}
    return [("typed-%s-%d" % (name, k), before.get(name, []) + [(name, text)])
            for name, texts in typed.items() for k, text in enumerate(texts)] + [
                ("bw-clamped-by-f0", settings(pass_type="band-pass", f0=10))]


def wants_spice(name):
    return name.startswith(("real-", "deembed-", "load-chebyshev-4", "load-moved", "band-pass-",
                            "notch-", "high-pass-", "f0-"))


def reflection_db(gamma):
    return model.level_db(gamma)


def points(tag, indices, freqs, results):
    return [row(tag, i, repr(f), repr(h.real), repr(h.imag), repr(reflection_db(g)))
            for i, f, (h, g) in zip(indices, freqs, results)]


def spice_points(name, elements, indices, freqs, f0, rs, rl, models, worst):
    """The ngspice lines of one ladder; `worst` collects the distances from the model."""
    real = models if isinstance(models, ladder.RealParts) else None
    results = spice.simulate(elements, freqs, f0, rs, rl, real)
    for f, (h, g) in zip(freqs, results):
        own = ladder.analyse(elements, f, f0, rs, rl, models)
        worst.append((max(abs(h - own[0]), abs(g - own[1])), name, f))
    return points("sp", indices, freqs, results)


def element_rows(elements):
    return [row("el", k, e.code, *(show(v) for v in e.shown()))
            for k, e in enumerate(elements, start=1)]


def near_rounding_step(exact):
    """True where the last bits decide how the full scale is rounded to two digits."""
    if not math.isfinite(exact) or exact == 0.0:
        return True
    mantissa = abs(exact) / 10.0 ** math.floor(math.log10(abs(exact)))
    return abs(mantissa * 10.0 % 1.0 - 0.5) < 1e-5


def filter_rows(name, typed, worst):
    design = model.Design(typed)
    transfer, gamma = design.sweep()
    delay = model.group_delay(transfer, design.grid, design.threshold)
    lines = [row("filter", name)] + [row("set", *pair) for pair in typed]
    lines.append(row("out", repr(design.r_load), "clc" if design.form_clc else "lcl",
                     ",".join(design.replaced) or "-"))
    lines += element_rows(design.elements)
    if not near_rounding_step(model.full_scale_exact(transfer, delay)):
        lines.append(row("gd", repr(model.full_scale(transfer, delay))))
    lines += points("pt", SAMPLES, [design.grid[i] for i in SAMPLES],
                    [(transfer[i], gamma[i]) for i in SAMPLES])
    if wants_spice(name):
        lines += spice_points(name, design.elements, SPICE_SAMPLES,
                              [design.grid[i] for i in SPICE_SAMPLES], design.f0,
                              design.r_source, design.r_load, design.models(), worst)
    return lines


# ---- single ladders ----------------------------------------------------------------------------

RANGES = {"L": (15e-9, 220e-9), "C": (4e-12, 60e-12), "d": (15.0, 130.0), "z": (20.0, 140.0)}


def ladder_rows(rng, worst):
    """Every element type between two lumped neighbours, with ideal and with real parts."""
    lines, f0 = [], 100e6
    for code, uses in enumerate(ladder.USES):
        for parts in ("ideal", "real"):
            values = [rng.uniform(*RANGES[u]) if u != "-" else ladder.UNUSED for u in uses]
            elements = [ladder.Element(0, v1=rng.uniform(20e-9, 90e-9)),
                        ladder.Element(code, *values),
                        ladder.Element(4, v2=rng.uniform(8e-12, 30e-12))]
            rs, rl = rng.choice((50.0, 75.0)), rng.choice((50.0, 110.0))
            models = ladder.IdealParts()
            arguments = (40.0, 0.3e-12, 0.2, 0.4e-9)
            if parts == "real":
                models = ladder.RealParts(f0, *arguments)
            freqs = [f0 * rng.uniform(0.2, 3.5) for _ in range(3)]
            results = [ladder.analyse(elements, f, f0, rs, rl, models) for f in freqs]
            name = "type-%d-%s" % (code, parts)
            lines.append(row("ladder", name, f0, rs, rl, parts, *(repr(a) for a in arguments)))
            lines += element_rows(elements) + points("pt", range(3), freqs, results)
            lines += spice_points(name, elements, range(1), freqs[:1], f0, rs, rl, models, worst)
    return lines


def all_cases():
    return (family_cases() + termination_cases() + prototype_cases() + part_cases()
            + frequency_cases() + bad_input_cases())


def main():
    rng, worst, lines = random.Random(20), [], []
    cases = all_cases()
    assert len({name for name, _ in cases}) == len(cases), "two cases of one name"
    for name, typed in cases:
        lines += filter_rows(name, typed, worst)
    lines += ladder_rows(rng, worst)
    with open(os.path.join(HERE, "cases.tsv"), "w", encoding="utf-8") as file:
        file.write(HEADER + "\n".join(lines) + "\n")
    worst.sort(reverse=True)
    print("%d filter cases, %d ngspice points" % (len(cases), len(worst)))
    for distance, name, f in worst[:12]:
        print("  |model - ngspice| = %.2e  %s at %.6g Hz" % (distance, name, f))
    assert worst[0][0] < SPICE_LIMIT


if __name__ == "__main__":
    main()
