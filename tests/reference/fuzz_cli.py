"""Throws bad texts at every name of the console program and checks its contract.

Run: `python3 fuzz_cli.py PATH-OF-ladderwise-cli [RUNS [SEED]]`; exit code 1 on a fault. Every call
must end within 20 s with exit code 0 (and then valid JSON on standard output, of finite numbers or
null) or 2 (and then a usage error on standard error, allowed only for words outside a list).
"""
import json
import locale
import math
import os
import random
import subprocess
import sys
import tempfile

WORDS = {
    "pass": "low-pass high-pass band-pass notch direct-coupled norton low-pass-prototype",
    "response": "butterworth chebyshev bessel-freq bessel-delay papoulis gauss linear-chebyshev "
                "elliptic-a elliptic-b elliptic-c elliptic-d elliptic-e coefficients",
    "form": "clc lcl", "sweep": "linear 1-octave 2-octaves 3-octaves 1-decade 2-decades",
    "parts": "ideal real deembed", "std": "on off", "cap-tol": "1 2 5 10", "ind-tol": "1 2 5 10",
    "tank": "0 1 2 3 4 5 6 7 8 9", "inverter": "inductor capacitor line",
    "tank-units": "nH uH pF nF ohms", "alternate-match": "on off",
    "worst-case": "on off", "traces": "mag1 mag10 phase gd pulse rl",
}
NUMBERS = ("poles", "ripple", "f0", "bw", "bw-percent", "r-source", "r-load", "atten", "trap",
           "ind-q", "ind-c", "cap-r", "cap-l", "runs", "seed", "threshold", "gd-scale",
           "tlin", "tlsc", "tloc", "factor", "tank-values")
BAD = ["", " ", "abc", "0", "-0", "-1", "1e400", "-1e400", "1e-400", "nan", "inf", "-inf", "0x1F",
       "1,5", "1.5", ",5", "1.2.3", "1e", "e5", "+", "-", ".", "--5", "+-1", "99999999999999999999",
       "2147483648", "-2147483649", "1e308", "4.9e-324", "\u0663", "\uff15", "\u221e", "\u00b5",
       "5 MHz", "1_000", "1'000", "%s%n", "a" * 5000, "9" * 400, "0." + "0" * 400 + "1", "\t7\n",
       "true", "NULL", "5;6", "=", "==3", "\"", "\\", "\U0001f600", "1e5", "1E5", "1d5", "1e+5"]
TIMEOUT = 20


def call(program, arguments, environment=None):
    """Exit code, standard output and standard error; a hang gives the code None."""
    env = dict(os.environ, **(environment or {}))
    try:
        run = subprocess.run([program] + arguments, capture_output=True, timeout=TIMEOUT,
                             env=env, check=False)
    except subprocess.TimeoutExpired:
        return None, b"", b""
    return run.returncode, run.stdout, run.stderr


def check_json(text):
    """What is wrong with the JSON object, or an empty text."""
    def no_constant(name):
        raise ValueError("constant " + name)

    try:
        out = json.loads(text.decode("utf-8"), parse_constant=no_constant)
    except ValueError as error:
        return "JSON: %s" % error
    wanted = ("inputs", "r_load", "form", "elements", "sweep_hz", "transfer", "reflection_db",
              "magnitude_db", "phase_deg", "group_delay_s", "group_delay_full_scale_s", "messages",
              "notes")
    missing = [key for key in wanted if key not in out]
    if missing:
        return "JSON lacks " + ", ".join(missing)
    if len(out["transfer"]) != 1024 or len(out["sweep_hz"]) != 1024:
        return "not 1024 points"
    if any(f is None or not math.isfinite(f) or f <= 0.0 for f in out["sweep_hz"]):
        return "a sweep frequency is no positive number"
    return ""


def one_run(program, settings, may_refuse):
    """Runs one set of texts; returns a fault's description or an empty text."""
    arguments = [part for name, text in settings for part in ("--set", name + "=" + text)]
    code, out, err = call(program, arguments + ["--json", "-"])
    if code is None:
        return "no end within %d s" % TIMEOUT
    if code == 0:
        return check_json(out)
    if code == 2 and may_refuse:
        return "" if err.strip() else "exit 2 without a word on standard error"
    return "exit code %s: %s" % (code, err[-200:].decode("utf-8", "replace"))


def random_text(rng):
    kind = rng.randrange(4)
    if kind == 0:
        return rng.choice(BAD)
    if kind == 1:
        return repr(rng.choice((1, -1)) * 10.0 ** rng.uniform(-320, 308))
    if kind == 2:
        return repr(round(10.0 ** rng.uniform(-3, 4), rng.randrange(6)))
    alphabet = "0123456789.,eE+- xé%\u0660\u20ac"
    return "".join(rng.choice(alphabet) for _ in range(rng.randrange(12)))


def random_settings(rng):
    """A handful of settings; the flag tells whether a word outside its list is among them."""
    settings, refuse = [], False
    for _ in range(rng.randrange(1, 8)):
        if rng.random() < 0.5:
            name = rng.choice(list(WORDS))
            text = rng.choice(WORDS[name].split())
            if rng.random() < 0.06:
                text = random_text(rng)
                refuse = refuse or text not in WORDS[name].split()
        else:
            name, text = rng.choice(NUMBERS), random_text(rng)
            # No bounded box stands behind these two: a word may be refused.
            refuse = refuse or name in ("seed", "gd-scale", "trap")
        settings.append((name, text))
    return settings, refuse


def single_texts(program):
    """Every bad text at every numeric name, alone."""
    faults = []
    for name in NUMBERS:
        for text in BAD:
            fault = one_run(program, [("pass", "band-pass"), (name, text)],
                            name in ("seed", "gd-scale", "trap"))
            if fault:
                faults.append("%s=%.40r: %s" % (name, text, fault))
    return faults


def usage_errors(program):
    """Calls that must be refused (exit 2), and files that cannot be written (exit 1)."""
    faults = []
    refused = [["--set", "pol=3"], ["--set", "poles"], ["--set"], ["--set", "=3"], ["--nonsense"],
               ["--set", "pass=lowpass"], ["--set", "cap-tol=3"], ["--json"], ["--size", "3"],
               ["--size", "axb", "--plot", "x.png"], ["stray"]]
    for arguments in refused:
        code, _, err = call(program, arguments)
        if code != 2 or not err.strip():
            faults.append("%r: exit code %s, wanted 2 and a message" % (arguments, code))
    for name, near in (("pol", "poles"), ("f00", "f0"), ("respnse", "response")):
        _, _, err = call(program, ["--set", name + "=3"])
        if near not in err.decode("utf-8", "replace"):
            faults.append("unknown name %s: the message does not name %s" % (name, near))
    with tempfile.TemporaryDirectory() as folder:
        lost = os.path.join(folder, "none", "out")
        for arguments in (["--json", lost + ".json"], ["--plot", lost + ".png"]):
            code, _, err = call(program, arguments)
            if code != 1 or not err.strip():
                faults.append("%r: exit code %s, wanted 1 and a message" % (arguments, code))
    return faults


def comma_locale(program):
    """With a decimal comma both separators are read, and JSON keeps its point."""
    faults = []
    environment = {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
    for text in ("145,825", "145.825"):
        code, out, _ = call(program, ["--set", "f0=" + text, "--json", "-"], environment)
        if code != 0:
            faults.append("comma locale, f0=%s: exit code %s" % (text, code))
            continue
        f0 = json.loads(out)["inputs"]["f0"]
        if abs(f0 - 145.825e6) > 1e-3:
            faults.append("comma locale, f0=%s reads as %r" % (text, f0))
    return faults


def plot_run(program, settings, ending, size):
    """Draws one set of texts; a fault is anything but a file, or a refusal that leaves none."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "plot" + ending)
        arguments = [part for name, text in settings for part in ("--set", name + "=" + text)]
        code, _, err = call(program, arguments + ["--size", size, "--plot", path])
        written = os.path.exists(path) and os.path.getsize(path) > 0
    if (code == 0 and written) or (code == 2 and not written):
        return ""
    return "plot%s %s: exit code %s, %s: %s" % (ending, size, code, "a file" if written else
                                                "no file", err[-200:].decode("utf-8", "replace"))


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    locale.setlocale(locale.LC_ALL, "C")
    program = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 500
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    faults = usage_errors(program) + comma_locale(program) + single_texts(program)
    for index in range(runs):
        settings, refuse = random_settings(rng)
        settings.insert(0, ("runs", "3"))
        fault = one_run(program, settings, refuse)
        if not fault and index % 5 == 0:
            fault = plot_run(program, settings + [("traces", "mag1,mag10,phase,gd,rl")],
                             rng.choice((".png", ".svg", ".pdf")),
                             rng.choice(("200x200", "640x480", "1280x800", "3000x300")))
        if fault:
            faults.append("%r: %s" % (settings, fault))
    for fault in faults[:60]:
        print("FAULT", fault)
    print("%d single texts, %d random runs, %d faults" % (len(NUMBERS) * len(BAD), runs,
                                                         len(faults)))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
