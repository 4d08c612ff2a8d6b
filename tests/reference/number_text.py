"""Number-to-text rules in a point locale, written independently of the program.

Every function takes a double and returns the text that labels, grids and boxes show.
"""
import math
from decimal import Decimal

PREFIXES = {9: "G", 6: "M", 3: "k", 0: "", -3: "m", -6: "u", -9: "n", -12: "p", -15: "f"}
LOG10_OF_2 = 0.3010299956639812


def clamp(value, low, high):
    return max(low, min(high, value))


def decompose(x):
    """Mantissa and decimal exponent with x = m 10^e, 1 <= |m| < 10; zero gives (0, 0)."""
    if x == 0.0:
        return 0.0, 0
    mantissa, exponent2 = math.frexp(x)  # 0.5 <= |mantissa| < 1
    decimal = exponent2 * LOG10_OF_2
    exponent = math.trunc(decimal)
    mantissa *= 10.0 ** (decimal - exponent)
    while -1.0 < mantissa < 1.0:
        mantissa *= 10.0
        exponent -= 1
    return mantissa, exponent


def round_significant(x, digits):
    """x rounded half away from zero to 1 .. 15 significant digits."""
    digits = clamp(digits, 1, 15)
    mantissa, exponent = decompose(x)
    mantissa *= 10.0 ** (digits - 1)
    mantissa = math.ceil(mantissa - 0.5) if mantissa < 0 else math.floor(mantissa + 0.5)
    return mantissa * 10.0 ** (exponent - (digits - 1))


def fixed(x, digits):
    return "%.*f" % (clamp(digits, 0, 18), x)


def _carry(mantissa, exponent, digits):
    """Moves a mantissa that would print as 10 (or -10) into the next decade."""
    if abs(float("%.*f" % (digits, mantissa))) >= 10.0:
        return mantissa * 0.1, exponent + 1
    return mantissa, exponent


def scientific(x, digits):
    digits = clamp(digits, 0, 15)
    mantissa, exponent = _carry(*decompose(x), digits)
    return "%.*fE%d" % (digits, mantissa, exponent)


def number(x, digits):
    digits = clamp(digits, 0, 18)
    if abs(x) <= 1e-18:
        return "0" if digits == 0 else "0." + "0" * digits
    if abs(x) < 10.0 ** -digits:
        return scientific(x, digits)
    return fixed(x, digits)


def _to_thousands(mantissa, exponent):
    """Lowers the exponent to a multiple of 3; returns mantissa, exponent and the steps taken."""
    steps = 0
    while exponent % 3:
        exponent -= 1
        mantissa *= 10.0
        steps += 1
    return mantissa, exponent, steps


def engineering(x, digits):
    digits = clamp(digits, 0, 15)
    mantissa, exponent, steps = _to_thousands(*_carry(*decompose(x), digits))
    if digits - steps < 0:
        steps = digits
        mantissa = round_significant(mantissa, digits + 1)
    return "%.*fE%d" % (digits - steps, mantissa, exponent)


def with_prefix(x, digits, unit):
    if x > 1e47:
        return "Not Used"
    digits = clamp(digits, 0, 15)
    mantissa, exponent = decompose(round_significant(x, digits + 1))
    mantissa, exponent, steps = _to_thousands(*_carry(mantissa, exponent, digits))
    decimals = max(0, digits - steps)
    prefix = PREFIXES.get(exponent, "E%d" % exponent)
    return "%.*f %s%s" % (decimals, mantissa, prefix, unit)


def plain(x, digits):
    """x at `digits` significant digits as the shortest text without an exponent."""
    text = "%.*e" % (clamp(digits, 1, 15) - 1, round_significant(x, digits))
    text = format(Decimal(text), "f")
    return text.rstrip("0").rstrip(".") if "." in text else text


def nearest_int(x):
    if abs(x) > 2147483647:
        return -2147483647 if x < 0 else 2147483647
    return math.ceil(x - 0.5) if x < 0 else math.floor(x + 0.5)
