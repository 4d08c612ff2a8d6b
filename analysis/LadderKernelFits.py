# Fits the polynomials of LadderKernelMath.inc: interpolation at the Chebyshev nodes, 60 digits.
# Prints each with its largest error relative to the function, in units of 2^-53.
# Needs mpmath; run it by hand, the build does not.
from mpmath import atan, atanh, cos, lu_solve, matrix, mp, mpf, nstr, pi, polyval, sin, sqrt

mp.dps = 60


def fit(name, count, largest, remainder, weight):
    """remainder(z) ~ polynomial of `count` coefficients on 0 .. largest; weight(z) turns its error
    into one of the function, relative to the leading term."""
    nodes = [largest / 2 * (1 + cos(pi * (2 * k + 1) / (2 * count))) for k in range(count)]
    powers = matrix(count, count)
    for i, z in enumerate(nodes):
        for j in range(count):
            powers[i, j] = z ** j
    coefficients = [float(c) for c in lu_solve(powers, matrix([remainder(z) for z in nodes]))]
    rounded = [mpf(c) for c in reversed(coefficients)]
    grid = [largest * k / 2000 for k in range(1, 2001)]
    error = max(abs((polyval(rounded, z) - remainder(z)) * weight(z)) for z in grid)
    print(name, "error", nstr(error * 2 ** 53, 3))
    for c in reversed(coefficients):
        print("  ", repr(c))


def odd_part(function):
    """(function(x) - x) / x^3 as a function of z = x^2."""
    return lambda z: (function(sqrt(z)) - sqrt(z)) / (z * sqrt(z))


# Logarithm: atanh(s), s up to (sqrt(2) - 1) / (sqrt(2) + 1).
fit("log", 7, ((sqrt(2) - 1) / (sqrt(2) + 1)) ** 2, odd_part(atanh), lambda z: z)
# Arc tangent up to tan(pi / 8).
fit("atan", 11, (sqrt(2) - 1) ** 2 * mpf("1.0000001"), odd_part(atan), lambda z: z)
# Sine and cosine up to pi / 4.
fit("sin", 6, (pi / 4) ** 2 * mpf("1.0001"), odd_part(sin), lambda z: z)
fit("cos", 6, (pi / 4) ** 2 * mpf("1.0001"), lambda z: (cos(sqrt(z)) - 1 + z / 2) / z ** 2,
    lambda z: z * z)
