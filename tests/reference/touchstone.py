"""Reads exported Touchstone files with scikit-rf: python3 touchstone.py PATH-OF-ladderwise-cli

Lossless designs must come back unitary and reciprocal, at the frequencies and the reference that
were asked for, and between the terminations with the transfer of the program's own sweep. Exit
code 77 without scikit-rf.
"""
import contextlib
import io
import json
import os
import subprocess
import sys
import tempfile

try:
    with contextlib.redirect_stdout(io.StringIO()):  # it says there what it does not find
        import numpy as np
        import skrf
except ImportError:
    sys.exit(77)

DESIGNS = [
    ("r-load=200",),
    ("pass=band-pass", "poles=5", "response=chebyshev", "bw=10"),
    ("pass=high-pass", "response=elliptic-c"),
    ("pass=notch", "bw=30", "sweep=linear"),
    ("pass=direct-coupled", "bw=10", "tank=9", "inverter=line"),
    ("pass=norton", "poles=5"),
]


def renormalised(s, ohms, to):
    """S at the resistances `to` instead of `ohms` (Kurokawa 1965); the distribution's scikit-rf
    does not do this with the distribution's NumPy."""
    gamma, a = np.diag((to - ohms) / (to + ohms)), 2.0 * np.sqrt(to * ohms) / (to + ohms)
    unit = np.eye(2)
    return np.diag(1.0 / a) @ (s - gamma) @ np.linalg.inv(unit - gamma @ s) @ np.diag(a)


def check(program, folder, design, parts, reference):
    file = os.path.join(folder, "filter.s2p")
    command = [program, "--touchstone", file, "--reference", repr(reference), "--json", "-"]
    for setting in design + ("parts=" + parts,):
        command += ["--set", setting]
    run = subprocess.run(command, capture_output=True, text=True, timeout=60, check=True)
    own = json.loads(run.stdout)
    network = skrf.Network(file)
    sweep, s = np.array(own["sweep_hz"]), network.s
    assert np.all(network.f == np.floor(sweep + 0.5)) and np.all(network.z0 == reference)
    assert np.array_equal(s[:, 0, 1], s[:, 1, 0]), "not reciprocal"
    if parts == "ideal":
        power = s @ np.conj(np.swapaxes(s, 1, 2))
        assert np.max(np.abs(power - np.eye(2))) < 1e-10, np.max(np.abs(power - np.eye(2)))
    s = renormalised(s, reference, np.array([own["inputs"]["r-source"], own["r_load"]]))
    transfer = np.array([complex(*pair) for pair in own["transfer"]])
    # Whole hertz are not the sweep's own: half of one at the slope of a narrow filter.
    distance = np.max(np.abs(s[:, 1, 0] - transfer))
    assert distance < 1e-5, distance


def main():
    with tempfile.TemporaryDirectory() as folder:
        for design in DESIGNS:
            for parts in ("ideal", "real"):
                for reference in (50.0, 12.5):
                    try:
                        check(sys.argv[1], folder, design, parts, reference)
                    except AssertionError:
                        print(design, parts, reference)
                        raise


if __name__ == "__main__":
    main()
