"""Analysis of a ladder of lumped and line elements, independent of the program's own.

Each element is an immittance at one frequency; the ladder is reduced from the load to the source
by its chain matrices (M. E. Van Valkenburg, "Network Analysis", Prentice-Hall, 1974).
"""
import cmath
import math
from dataclasses import dataclass

UNUSED = 1e50
NAN = complex(math.nan, math.nan)

# Which of the four values each element type uses: "L" inductance, "C" capacitance, "d" line
# length in degrees at F0, "z" line impedance, "-" nothing.
USES = ["L---", "-C--", "LC--", "L---", "-C--", "LC--", "LC--", "LCLC", "LC--", "LCLC",
        "dz--", "dz-C", "L-dz", "dzdz", "dz--", "LCLC", "LCLC", "LCLC", "LCLC", "LCLC",
        "LCLC", "LC-C", "LCL-", "LC-C", "LCL-", "dz--"]


@dataclass
class Element:
    """One ladder slot."""
    code: int
    v1: float = UNUSED
    v2: float = UNUSED
    v3: float = UNUSED
    v4: float = UNUSED

    def values(self):
        return [self.v1, self.v2, self.v3, self.v4]

    def shown(self):
        """The values, None where the type does not use the position."""
        return [v if use != "-" else None for v, use in zip(self.values(), USES[self.code])]


def inv(z):
    """1/z, NaN for an exactly zero z."""
    return 1.0 / z if z != 0 else NAN


def floor_value(value):
    """Values below 1e-18, or no number, are raised to 1e-18."""
    return value if value >= 1e-18 else 1e-18


class IdealParts:
    """Impedances of perfect parts."""

    def ind(self, f, value):
        return complex(0.0, 2.0 * math.pi * f * floor_value(value))

    def cap(self, f, value):
        return complex(0.0, -1.0 / (2.0 * math.pi * f * floor_value(value)))


class RealParts:
    """Lossy parts: an inductor has R = sqrt(F0 f) 2 pi L / Q, so that its Q grows as sqrt(f)."""

    def __init__(self, f0, ind_q, ind_c, cap_r, cap_l):
        self.f0, self.ind_q, self.ind_c, self.cap_r, self.cap_l = f0, ind_q, ind_c, cap_r, cap_l

    def ind_resistance(self, f, value):
        return math.sqrt(self.f0 * f) * 2.0 * math.pi * floor_value(value) / self.ind_q

    def ind(self, f, value):
        branch = complex(self.ind_resistance(f, value), 2.0 * math.pi * f * floor_value(value))
        return branch / (1.0 + branch * complex(0.0, 2.0 * math.pi * f * self.ind_c))

    def cap(self, f, value):
        w = 2.0 * math.pi * f
        return complex(self.cap_r, w * self.cap_l - 1.0 / (w * floor_value(value)))


def shorted(f, f0, length, z0):
    """Impedance of a short-circuited stub, `length` in degrees at F0."""
    return complex(0.0, z0 * math.tan(math.radians(length) * f / f0))


def opened(f, f0, length, z0):
    """Impedance of an open-circuited stub."""
    return complex(0.0, -z0 / math.tan(math.radians(length) * f / f0))


def sections(e, f, f0, parts):
    """The element as a list of ("series", Z), ("shunt", Y) or ("line", length, Z0) sections."""
    def zl(v):
        return parts.ind(f, v)

    def zc(v):
        return parts.cap(f, v)

    def tank(ind, cap):  # impedance of a parallel pair
        return inv(inv(zl(ind)) + inv(zc(cap)))

    def pair(ind, cap):  # impedance of a series pair
        return zl(ind) + zc(cap)

    v1, v2, v3, v4 = e.values()
    code = e.code
    if code == 10:
        return [("line", v1, v2)]
    if code == 15:
        return [("shunt", inv(pair(v1, v2))), ("shunt", inv(pair(v3, v4)))]
    if code == 16:
        return [("series", tank(v1, v2)), ("series", tank(v3, v4))]
    series = {
        0: lambda: zl(v1),
        1: lambda: zc(v2),
        2: lambda: tank(v1, v2),
        8: lambda: pair(v1, v2),
        9: lambda: inv(inv(pair(v1, v2)) + inv(zl(v3)) + inv(zc(v4))),
        17: lambda: inv(inv(zc(v4)) + inv(zl(v3) + tank(v1, v2))),
        18: lambda: inv(inv(zl(v3)) + inv(zc(v2) + tank(v1, v4))),
    }
    if code in series:
        return [("series", series[code]())]
    shunt = {
        3: lambda: inv(zl(v1)),
        4: lambda: inv(zc(v2)),
        5: lambda: inv(pair(v1, v2)),
        6: lambda: inv(zl(v1)) + inv(zc(v2)),
        7: lambda: inv(pair(v1, v2) + tank(v3, v4)),
        11: lambda: inv(shorted(f, f0, v1, v2)) + inv(zc(v4)),
        12: lambda: inv(opened(f, f0, v3, v4)) + inv(zl(v1)),
        13: lambda: inv(shorted(f, f0, v1, v2)) + inv(opened(f, f0, v3, v4)),
        14: lambda: inv(opened(f, f0, v1, v2)),
        19: lambda: inv(zl(v1) + inv(inv(zc(v2)) + inv(pair(v3, v4)))),
        20: lambda: inv(zc(v2) + inv(inv(zl(v1)) + inv(pair(v3, v4)))),
        21: lambda: inv(zc(v2)) + inv(zl(v1) + zc(v4)),
        22: lambda: inv(zl(v1)) + inv(zl(v3) + zc(v2)),
        23: lambda: inv(zc(v4) + tank(v1, v2)),
        24: lambda: inv(zl(v3) + tank(v1, v2)),
        25: lambda: inv(shorted(f, f0, v1, v2)),
    }
    return [("shunt", shunt[code]())]


def analyse(elements, f, f0, rs, rl, parts):
    """Transfer H (|H| = 1 for a lossless match) and input reflection coefficient at f."""
    v, i = complex(rl), complex(1.0)  # voltage and current into the load, for 1 A through it
    for element in reversed(elements):
        for section in reversed(sections(element, f, f0, parts)):
            if section[0] == "series":
                v = v + section[1] * i
            elif section[0] == "shunt":
                i = i + section[1] * v
            else:
                theta = math.radians(section[1]) * f / f0
                c, s, z0 = math.cos(theta), math.sin(theta), section[2]
                v, i = c * v + 1j * z0 * s * i, 1j * s / z0 * v + c * i
    emf = v + rs * i
    if emf == 0 or cmath.isnan(emf):
        return NAN, NAN
    return 2.0 * math.sqrt(rs * rl) / emf, (v - rs * i) / emf
