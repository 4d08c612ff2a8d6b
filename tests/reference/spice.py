"""The same ladder as an ngspice netlist: a check by nodal analysis instead of chain matrices.

The netlist is explicit: every parasitic is a component of its own, lines and stubs are T elements.
The inductor's resistance grows with sqrt(f), so each frequency is a single-point AC analysis with
the resistors set by `alter`. Run by hand: `ngspice -b FILE` with the text of netlist().

ngspice finds a DC operating point before any AC analysis, in which loops of ideal inductors and
nodes behind ideal capacitors are singular. Each ideal inductor therefore carries 1e-9 ohm (made of
a current-controlled source: a resistor's huge conductance would cost digits) and each node 1e13
ohm to ground, which moves the response by some 1e-11.
"""
import math
import re
import subprocess
import tempfile

from ladder import floor_value

TINY_R = 1e-9
LEAK_R = 1e13


class Netlist:
    """Collects components and the resistors whose value depends on the frequency."""

    def __init__(self, f0, parasitics=None):
        """`parasitics`: a RealParts, or None for ideal parts."""
        self.f0 = f0
        self.parasitics = parasitics
        self.lines = []
        self.varying = []  # (resistor name, inductance)
        self.nodes = 0
        self.count = 0

    def node(self):
        self.nodes += 1
        return "n%d" % self.nodes

    def _name(self, letter):
        self.count += 1
        return "%s%d" % (letter, self.count)

    def add(self, letter, a, b, value):
        name = self._name(letter)
        self.lines.append("%s %s %s %.17g" % (name, a, b, value))
        return name

    def ind(self, a, b, value):
        value, middle = floor_value(value), self.node()
        self.add("L", a, middle, value)
        if not self.parasitics:
            sense, name = self.node(), self._name("V")
            self.lines.append("%s %s %s DC 0" % (name, middle, sense))
            self.lines.append("%s %s %s %s %g" % (self._name("H"), sense, b, name, TINY_R))
            return
        self.varying.append((self.add("R", middle, b, 1.0), value))
        if self.parasitics.ind_c > 0.0:
            self.add("C", a, b, self.parasitics.ind_c)

    def cap(self, a, b, value):
        value, parts = floor_value(value), self.parasitics
        chain = [("C", value)]
        if parts:
            chain += [(letter, part) for letter, part in
                      (("L", parts.cap_l), ("R", parts.cap_r)) if part > 0.0]
        for index, (letter, part) in enumerate(chain):
            after = b if index == len(chain) - 1 else self.node()
            self.add(letter, a, after, part)
            a = after

    def line(self, a, b, length, z0):
        """A lossless line of `length` degrees at F0; its end b may be "0" for a short."""
        self.lines.append("%s %s 0 %s 0 Z0=%.17g TD=%.17g"
                          % (self._name("T"), a, b, z0, length / 360.0 / self.f0))

    def shorted(self, a, length, z0):
        self.line(a, "0", length, z0)

    def opened(self, a, length, z0):
        self.line(a, self.node(), length, z0)

    def pair(self, a, b, ind, cap):
        middle = self.node()
        self.ind(a, middle, ind)
        self.cap(middle, b, cap)

    def tank(self, a, b, ind, cap):
        self.ind(a, b, ind)
        self.cap(a, b, cap)


def _series(net, e, a):
    """Adds a series-arm element from node a; returns the node behind it, or None."""
    v1, v2, v3, v4 = e.values()
    if e.code not in (0, 1, 2, 8, 9, 10, 16, 17, 18):
        return None
    b, m = net.node(), None
    if e.code in (16, 17, 18):
        m = net.node()
    if e.code == 0:
        net.ind(a, b, v1)
    elif e.code == 1:
        net.cap(a, b, v2)
    elif e.code == 2:
        net.tank(a, b, v1, v2)
    elif e.code == 8:
        net.pair(a, b, v1, v2)
    elif e.code == 9:
        net.pair(a, b, v1, v2)
        net.tank(a, b, v3, v4)
    elif e.code == 10:
        net.line(a, b, v1, v2)
    elif e.code == 16:
        net.tank(a, m, v1, v2)
        net.tank(m, b, v3, v4)
    elif e.code == 17:
        net.cap(a, b, v4)
        net.ind(a, m, v3)
        net.tank(m, b, v1, v2)
    elif e.code == 18:
        net.ind(a, b, v3)
        net.cap(a, m, v2)
        net.tank(m, b, v1, v4)
    return b


def _shunt(net, e, a):
    """Adds a shunt-arm element from node a to ground."""
    v1, v2, v3, v4 = e.values()
    m = net.node() if e.code in (7, 19, 20, 23, 24) else None
    arms = {
        3: lambda: net.ind(a, "0", v1),
        4: lambda: net.cap(a, "0", v2),
        5: lambda: net.pair(a, "0", v1, v2),
        6: lambda: net.tank(a, "0", v1, v2),
        7: lambda: (net.pair(a, m, v1, v2), net.tank(m, "0", v3, v4)),
        11: lambda: (net.shorted(a, v1, v2), net.cap(a, "0", v4)),
        12: lambda: (net.opened(a, v3, v4), net.ind(a, "0", v1)),
        13: lambda: (net.shorted(a, v1, v2), net.opened(a, v3, v4)),
        14: lambda: net.opened(a, v1, v2),
        15: lambda: (net.pair(a, "0", v1, v2), net.pair(a, "0", v3, v4)),
        19: lambda: (net.ind(a, m, v1), net.cap(m, "0", v2), net.pair(m, "0", v3, v4)),
        20: lambda: (net.cap(a, m, v2), net.ind(m, "0", v1), net.pair(m, "0", v3, v4)),
        21: lambda: (net.cap(a, "0", v2), net.pair(a, "0", v1, v4)),
        22: lambda: (net.ind(a, "0", v1), net.pair(a, "0", v3, v2)),
        23: lambda: (net.cap(a, m, v4), net.tank(m, "0", v1, v2)),
        24: lambda: (net.ind(a, m, v3), net.tank(m, "0", v1, v2)),
        25: lambda: net.shorted(a, v1, v2),
    }
    arms[e.code]()


def netlist(elements, freqs, f0, rs, rl, parasitics=None):
    """The whole input file: circuit, and one single-point AC analysis per frequency."""
    net = Netlist(f0, parasitics)
    node = "in"
    for element in elements:
        behind = _series(net, element, node)
        if behind is None:
            _shunt(net, element, node)
        else:
            node = behind
    lines = ["* doubly terminated ladder", "VS emf 0 DC 0 AC 1", "RS emf in %.17g" % rs,
             "RL %s 0 %.17g" % (node, rl)]
    lines += net.lines + [".options rshunt=%g" % LEAK_R, ".control", "set numdgt=16"]
    for f in freqs:
        for name, value in net.varying:
            lines.append("alter %s = %.17g" % (name, parasitics.ind_resistance(f, value)))
        lines += ["ac lin 1 %.17g %.17g" % (f, f), "print v(%s) v(in)" % node]
    return "\n".join(lines + ["quit", ".endc", ".end"]) + "\n"


def simulate(elements, freqs, f0, rs, rl, parasitics=None):
    """(H, Gamma) per frequency. H = 2 sqrt(RS/RL) V(load)/EMF, Gamma = 2 V(in)/EMF - 1."""
    with tempfile.NamedTemporaryFile("w", suffix=".cir") as file:
        file.write(netlist(elements, freqs, f0, rs, rl, parasitics))
        file.flush()
        run = subprocess.run(["ngspice", "-b", file.name], capture_output=True, text=True,
                             timeout=120, check=False)
    volts = [complex(float(a), float(b)) for a, b in
             re.findall(r"^v\([^)]*\) = ([-+0-9.e]+),([-+0-9.e]+)", run.stdout, re.M)]
    if not elements and len(volts) == len(freqs):  # source and load share one node
        volts = [v for v in volts for _ in (0, 1)]
    if len(volts) != 2 * len(freqs):
        raise RuntimeError("ngspice gave %d values:\n%s\n%s" % (len(volts), run.stdout, run.stderr))
    scale = 2.0 * math.sqrt(rs / rl)
    return [(scale * volts[k], 2.0 * volts[k + 1] - 1.0) for k in range(0, len(volts), 2)]
