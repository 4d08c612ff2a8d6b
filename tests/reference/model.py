"""An independent model of the filter calculation, in plain Python.

It is written from the formulas alone and shares no code with the program, so that a number both
agree on has been computed twice. Inputs carry the names of the console program; everything else
is in SI units. Slots and g-values count from 1, sweep points from 0.

Sources: G. L. Matthaei, L. Young, E. M. T. Jones, "Microwave Filters, Impedance-Matching
Networks, and Coupling Structures" (Artech House, 1980), chapter 4, for the g-values and the
frequency transforms; H. Takahasi, "On the ladder-type filter network with Tchebysheff response",
J. Inst. Elec. Commun. Eng. Japan 34 (1951), for unequal terminations.
"""
import math
import os
import re

import ladder

POINTS = 1024
UNUSED = 1e50
ONE_OVER_2PI = 0.15915494309189535
DEFAULTS = {
    "pass": "low-pass", "response": "butterworth", "form": "clc", "poles": "3", "ripple": "0.2",
    "f0": "200", "bw": "40", "r-source": "50", "r-load": "50", "atten": "50", "trap": "1",
    "sweep": "1-decade", "parts": "ideal", "ind-q": "35", "ind-c": ".25", "cap-r": "0.25",
    "cap-l": ".5", "std": "off", "cap-tol": "5", "ind-tol": "10", "threshold": "-20",
}
EQUAL_LOAD = ("bessel-freq", "bessel-delay", "papoulis", "gauss", "linear-chebyshev",
              "coefficients")
STRIDE = {"1": 1, "2": 2, "5": 4, "10": 8}
SPANS = {"1-octave": (0.5, 2.0), "2-octaves": (0.25, 4.0), "3-octaves": (0.125, 8.0),
         "1-decade": (0.1, 10.0), "2-decades": (0.01, 100.0)}
REAL_NUMBER = re.compile(r"[ \t]*[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?[ \t]*")
WHOLE_NUMBER = re.compile(r"[ \t]*[+-]?[0-9]+[ \t]*")


class Reader:
    """Reads texts as bounded boxes do, and remembers the names of those it replaced."""

    def __init__(self, texts):
        self.texts = texts
        self.replaced = []

    def _bound(self, name, value, low, default, high):
        if value is None or math.isnan(value):
            result = default
        else:
            result = min(max(value, low), high)
        if result != value:
            self.replaced.append(name)
        return result

    def real(self, name, low, default, high):
        text = self.texts[name]
        value = float(text) if REAL_NUMBER.fullmatch(text) else None
        return self._bound(name, value, low, default, high)

    def whole(self, name, low, default, high):
        text = self.texts[name]
        value = int(text) if WHOLE_NUMBER.fullmatch(text) else None
        if value is not None and not -2**31 <= value < 2**31:
            value = None
        return self._bound(name, value, low, default, high)


class Design:
    """The whole calculation for one set of texts: inputs, ladder, sweep and derived values."""

    def __init__(self, settings):
        """`settings`: list of (name, text) in the order in which a user would enter them."""
        self._enter(settings)
        self._read()
        self.grid = sweep_grid(self)
        self._prototype()
        self._scale()
        if self.parts == "deembed":
            deembed(self.elements, self.f0, self.ind_c, self.cap_l)
        if self.std:
            snap_all(self.elements, self.ind_stride, self.cap_stride)

    def _enter(self, settings):
        self.texts = dict(DEFAULTS)
        self.percent = False
        for name, text in settings:
            if name == "pass" and text == "low-pass-prototype":
                self.texts.update({"f0": "159.15e-9", "r-source": "1", "r-load": "1",
                                   "parts": "ideal", "std": "off"})
            if name in ("bw", "bw-percent"):
                self.percent = name == "bw-percent"
                name = "bw"
            self.texts[name] = text
        self.is_prototype = self.texts["pass"] == "low-pass-prototype"
        self.pass_type = "low-pass" if self.is_prototype else self.texts["pass"]
        self.response = self.texts["response"]
        self.form_clc = self.texts["form"] == "clc"

    def _read(self):
        box = Reader(self.texts)
        self.poles = box.whole("poles", 1, 3, 10)
        self.ripple = box.real("ripple", 0.001, 0.2, 1.0)
        self.f0 = box.real("f0", 159.15e-9 if self.is_prototype else 0.001, 1.0, 1e5) * 1e6
        if self.percent:
            self.bw = 0.01 * box.real("bw", 0.5, 10.0, 199.0) * self.f0
        else:
            f0_mhz = self.f0 * 1e-6
            self.bw = box.real("bw", 0.005 * f0_mhz, 0.1 * f0_mhz, 1.99 * f0_mhz) * 1e6
        self.r_source = box.real("r-source", 0.001, 50.0, 1e6)
        self.r_load = box.real("r-load", 0.001, 50.0, 1e6)
        if self.response in EQUAL_LOAD:
            self.r_load = self.r_source
        self.replaced = box.replaced
        texts = self.texts
        self.parts = texts["parts"]
        self.ind_q = float(texts["ind-q"])
        self.ind_c = float(texts["ind-c"]) * 1e-12
        self.cap_r = float(texts["cap-r"])
        self.cap_l = float(texts["cap-l"]) * 1e-9
        self.std = texts["std"] == "on"
        self.cap_stride, self.ind_stride = STRIDE[texts["cap-tol"]], STRIDE[texts["ind-tol"]]
        self.threshold = -abs(float(texts["threshold"]))

    def _prototype(self):
        if self.response == "coefficients":  # no file at hand: the program falls back
            self.response = "butterworth"
        if self.response == "butterworth":
            ratio = self.r_source / self.r_load
            self.g, self.form_clc = butterworth(self.poles, ratio, self.form_clc)
        elif self.response == "chebyshev":
            self.form_clc = chebyshev_form(self.r_source, self.r_load, self.form_clc)
            if self.poles % 2 == 0:
                self.r_load = chebyshev_load(self.ripple, self.r_source, self.r_load,
                                             self.form_clc)
            self.g = chebyshev(self.poles, self.ripple, self.r_source, self.r_load, self.form_clc)
        else:
            self.g = tabulated(self.response, self.poles)

    def _scale(self):
        scaler = {"low-pass": low_pass, "high-pass": high_pass, "band-pass": band_pass,
                  "notch": notch}[self.pass_type]
        self.elements = []
        for k, g in enumerate(self.g, start=1):
            shunt = (k % 2 == 1) == self.form_clc
            self.elements.append(scaler(g, shunt, self.r_source, self.f0, self.bw))

    def models(self):
        """The part models of the analysis (ideal, or real for "real" and "deembed")."""
        if self.parts == "ideal":
            return ladder.IdealParts()
        return ladder.RealParts(self.f0, self.ind_q, self.ind_c, self.cap_r, self.cap_l)

    def sweep(self):
        """Transfer and reflection coefficient at every grid point, as two lists."""
        models = self.models()
        pairs = [ladder.analyse(self.elements, f, self.f0, self.r_source, self.r_load, models)
                 for f in self.grid]
        return [p[0] for p in pairs], [p[1] for p in pairs]


# ---- prototypes -------------------------------------------------------------------------------

def butterworth(n, ratio, form_clc):
    """g-values for r = RS/RL and the form that an unequal termination forces."""
    def s(j):
        return math.sin(j * math.pi / (2 * n))

    def spread(j):
        return 1.0 - 2.0 * alpha * math.cos(j * math.pi / (2 * n)) + alpha * alpha

    alpha = (abs(1.0 - ratio) / (1.0 + ratio)) ** (1.0 / n)
    g = [0.0] * (n + 3)
    g[1] = 2.0 * s(1) / (1.0 - alpha)
    for k in range(2, n + 1):
        g[k] = 4.0 * s(2 * k - 3) * s(2 * k - 1) / spread(2 * k - 2) / g[k - 1]
    g[1:n + 1] = reversed(g[1:n + 1])
    if ratio != 1.0:
        form_clc = (n % 2 == 1) == (ratio < 1.0)
    for k in range(1, n + 1):
        capacitor = (k % 2 == 1) == form_clc
        g[k] = g[k] * ratio if capacitor else g[k] / ratio
    return g[1:n + 1], form_clc


def chebyshev_form(r_source, r_load, form_clc):
    if r_load == r_source:
        return form_clc
    return r_load < r_source


def chebyshev_load(ripple, r_source, r_load, form_clc):
    """The load of an even order, moved just inside the realisable ratio where it must be."""
    eps2 = 10.0 ** (0.1 * ripple) - 1.0
    rho = (math.sqrt(eps2 + 1.0) - math.sqrt(eps2)) ** 2
    if form_clc and r_load / r_source >= rho:
        return r_source * rho * 0.9999
    if not form_clc and r_source / r_load >= rho:
        return r_source / rho * 1.000100010001
    return r_load


def chebyshev(n, ripple, r_source, r_load, form_clc):
    """g-values with the 3 dB point at 1 rad/s, for unequal terminations."""
    eps = math.sqrt(10.0 ** (0.1 * ripple) - 1.0)
    t = r_source / r_load if n % 2 == 0 and not form_clc else r_load / r_source
    k_factor = 4.0 * t / (t + 1.0) ** 2 * (eps * eps + 1.0 if n % 2 == 0 else 1.0)
    missing = max(0.0, 1.0 - k_factor)
    gamma = 2.0 * math.sinh(math.asinh(1.0 / eps) / n)
    delta = 2.0 * math.sinh(math.asinh(math.sqrt(missing) / eps) / n)

    def s(j):
        return 2.0 * math.sin(j * math.pi / (2 * n))

    def spread(j):
        return (gamma * gamma - 2.0 * gamma * delta * math.cos(j * math.pi / n) + delta * delta
                + 4.0 * math.sin(j * math.pi / n) ** 2)

    g = [0.0, 2.0 * s(1) / (gamma - delta)]
    for k in range(2, n + 1):
        g.append(4.0 * s(2 * k - 3) * s(2 * k - 1) / spread(k - 1) / g[k - 1])
    to_3db = math.cosh(math.acosh(1.0 / eps) / n)
    return [to_3db * value for value in g[1:]]


TABLES = {"bessel-freq": "besselFreq", "bessel-delay": "besselDelay", "papoulis": "papoulis",
          "gauss": "gaussTo3Db", "linear-chebyshev": "linearChebyshev"}


def tabulated(family, n):
    """The program's own row, which its tests hold to the polynomials of the family."""
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "../../prototypes/Coefficients.cpp"), encoding="utf-8") as file:
        table = file.read().split("CoefficientRows %s = {{" % TABLES[family])[1].split("}};")[0]
    rows = re.findall(r"{([^}]*)}", table)
    # Three poles of Papoulis are the head of the row for four.
    row = rows[3 if family == "papoulis" and n == 3 else n - 1]
    return [float(text) for text in row.split(",")][:n]


# ---- scaling ----------------------------------------------------------------------------------

def low_pass(g, shunt, r, f0, _bw):
    unit = ONE_OVER_2PI / f0
    if shunt:
        return ladder.Element(4, v2=g / r * unit)
    return ladder.Element(0, v1=g * r * unit)


def high_pass(g, shunt, r, f0, _bw):
    unit = ONE_OVER_2PI / f0
    if shunt:
        return ladder.Element(3, v1=r / g * unit)
    return ladder.Element(1, v2=1.0 / g / r * unit)


def band_pass(g, shunt, r, f0, bw):
    w = 2.0 * math.pi * bw
    w0_squared = 4.0 * math.pi ** 2 * (f0 - bw / 2.0) * (f0 + bw / 2.0)
    if shunt:
        return ladder.Element(6, v1=w * r / g / w0_squared, v2=g / w / r)
    return ladder.Element(8, v1=g / w * r, v2=w / r / g / w0_squared)


def notch(g, shunt, r, f0, bw):
    w = 2.0 * math.pi * bw
    w0_squared = 4.0 * math.pi ** 2 * f0 * f0
    if shunt:
        return ladder.Element(5, v1=r / w / g, v2=g * w / r / w0_squared)
    return ladder.Element(2, v1=g * w * r / w0_squared, v2=1.0 / w / r / g)


# ---- parasitics and standard values ------------------------------------------------------------

LINE_TYPES = (10, 13, 14, 25)


def _value_pairs(element):
    """Positions of the (inductance, capacitance) pairs that a step may change."""
    if element.code in LINE_TYPES:
        return []
    pairs = [] if element.code == 11 else [("v1", "v2")]
    return pairs + ([] if element.code == 12 else [("v3", "v4")])


def deembed(elements, f0, ind_c, cap_l):
    """Lowers every L and C so that the part with its parasitic resonates as the ideal one at F0."""
    w0_squared = 39.47841760435743 * f0 * f0
    for element in elements:
        for ind, cap in _value_pairs(element):
            value = getattr(element, ind)
            setattr(element, ind, value / (value * w0_squared * ind_c + 1.0))
            value = getattr(element, cap)
            setattr(element, cap, value / (value * w0_squared * cap_l + 1.0))


E24 = [1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0, 3.3, 3.6, 3.9, 4.3, 4.7, 5.1,
       5.6, 6.2, 6.8, 7.5, 8.2, 9.1]


def standard_table():
    """110 entries: E24 (IEC 60063) with three quarter points in each gap, then 10.0."""
    table = []
    for a, b in zip(E24, E24[1:] + [10.0]):
        table += [a, a + (b - a) / 4.0, a + (b - a) / 2.0, a + 3.0 * (b - a) / 4.0]
    return table + [10.0] * 14


def snap_value(x, stride):
    """The nearest entry of the series with the stride 1, 2, 4 or 8; a tie takes the smaller."""
    if not x > 0.0:
        return x
    m = 1.0
    if x <= 1.0:
        while x < 1.0:
            x, m = 10.0 * x, 0.1 * m
    else:
        while x > 10.0:
            x, m = 0.1 * x, 10.0 * m
    best, winner = 1000.0, None
    for entry in standard_table()[::stride]:
        if abs(x - entry) < best:
            best, winner = abs(x - entry), entry
    return winner * m


def snap_all(elements, ind_stride, cap_stride):
    for element in elements:
        for ind, cap in _value_pairs(element):
            setattr(element, ind, snap_value(getattr(element, ind), ind_stride))
            setattr(element, cap, snap_value(getattr(element, cap), cap_stride))


# ---- sweep and derived quantities --------------------------------------------------------------

def sweep_grid(design):
    """The 1024 frequencies; the last one stops a step short of the upper limit."""
    f0 = design.f0
    if design.texts["sweep"] == "linear":
        if design.pass_type in ("low-pass", "high-pass"):
            low, high = 0.0, 2.0 * f0
        else:
            low, high = f0 - 2.5 * design.bw, f0 + 2.5 * design.bw
            if low <= 0.0:
                low = 1.0
        grid = [low + i * (high - low) / POINTS for i in range(POINTS)]
        grid[0] = max(grid[0], 1.0)
        return grid
    down, up = SPANS[design.texts["sweep"]]
    low, high = down * f0, up * f0
    return [low * math.exp(i * math.log(high / low) / POINTS) for i in range(POINTS)]


def level_db(z):
    """10 log10 |z|^2 with parts clamped to +-1e10; -1000 for zero power; NaN stays NaN."""
    if math.isnan(z.real) or math.isnan(z.imag):
        return math.nan
    re_, im_ = (max(-1e10, min(1e10, part)) for part in (z.real, z.imag))
    power = re_ * re_ + im_ * im_
    return 10.0 * math.log10(power) if power > 0.0 else -1000.0


def phase_rad(z):
    return math.atan2(z.imag, z.real) if z != 0 else 0.0


BLANK = -1.123456e-9


def group_delay(transfer, grid, threshold):
    """Group delay (s) per point; BLANK below the threshold and on small rising phase steps."""
    delay = [BLANK] * len(transfer)
    for i in range(1, len(transfer)):
        if level_db(transfer[i]) < threshold:
            continue
        step = phase_rad(transfer[i]) - phase_rad(transfer[i - 1])
        if 0.0 < step < math.pi / 4.0 or step < -math.pi:
            continue
        while step > 0.0:
            step -= math.pi / 4.0
        delay[i] = -step / (2.0 * math.pi * (grid[i] - grid[i - 1]))
    delay[0] = delay[1]
    return delay


def full_scale_exact(transfer, delay):
    """The full scale of the delay axis before it is rounded to 2 significant digits."""
    levels = [level_db(h) for h in transfer]
    peak = -1e30
    for level in levels:
        if level > peak:
            peak = level
    least, most = 1e30, -1e30
    for i in range(1, len(delay)):
        if levels[i] > peak - 3.0 and delay[i] < least:
            least = delay[i]
        if levels[i] > peak - 20.0 and delay[i] > most:
            most = delay[i]
    scale = 10.0 * least * 0.5
    return 10.0 * most * 0.125 if most > scale else scale


def full_scale(transfer, delay):
    return float("%.1e" % full_scale_exact(transfer, delay))
