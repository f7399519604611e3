#!/usr/bin/env python3
"""Prints curve_reference.inc: what calibration curves must yield, worked out apart from the library.

exact: in rational numbers. Complete rows by solving the natural spline's equations whole and blends as a
Hermite cubic, so by another way than the library's; rows with missing values by the documented sweep. The
result is rounded once, to the nearest double.
bits: in doubles, in the order of the documented formulas. Doubles are the same everywhere, so the library
must give these very bits.

    python3 make_curve_reference.py >curve_reference.inc
"""
import random
from fractions import Fraction

NONE = 32767.0


def solved_curvature(xs, ys):
    """Second derivatives of the natural cubic spline: Gauss elimination on the whole system."""
    n = len(xs)
    rows = []
    for i in range(n):
        row = [Fraction(0)] * (n + 1)
        if i in (0, n - 1):
            row[i] = Fraction(1)
        else:
            low, high = xs[i] - xs[i - 1], xs[i + 1] - xs[i]
            row[i - 1], row[i], row[i + 1] = low / 6, (low + high) / 3, high / 6
            row[n] = (ys[i + 1] - ys[i]) / high - (ys[i] - ys[i - 1]) / low
        rows.append(row)
    for i in range(n):
        pivot = next(j for j in range(i, n) if rows[j][i] != 0)
        rows[i], rows[pivot] = rows[pivot], rows[i]
        for j in range(n):
            if j != i and rows[j][i] != 0:
                factor = rows[j][i] / rows[i][i]
                rows[j] = [a - factor * b for a, b in zip(rows[j], rows[i])]
    return [rows[i][n] / rows[i][i] for i in range(n)]


def swept_curvature(xs, ys, number):
    """The documented sweep; `number` is Fraction or float."""
    n = len(xs)
    y2 = [number(NONE)] * n
    u = [number(0)] * n
    y2[0] = number(0)
    for i in range(1, n - 1):
        if NONE in (ys[i - 1], ys[i], ys[i + 1]):
            continue
        sig = (xs[i] - xs[i - 1]) / (xs[i + 1] - xs[i - 1])
        p = sig * y2[i - 1] + number(2)
        y2[i] = (sig - number(1)) / p
        d = (ys[i + 1] - ys[i]) / (xs[i + 1] - xs[i]) - (ys[i] - ys[i - 1]) / (xs[i] - xs[i - 1])
        u[i] = (number(6) * d / (xs[i + 1] - xs[i - 1]) - sig * u[i - 1]) / p
    y2[n - 1] = number(0)
    for k in range(n - 2, -1, -1):
        known = ys[k] != NONE and ys[k + 1] != NONE
        y2[k] = y2[k] * y2[k + 1] + u[k] if known else number(0)
    return y2


def interval(xs, x):
    lo = 0
    for k in range(1, len(xs) - 1):
        if xs[k] <= x:
            lo = k
    return lo


def spline(xs, ys, y2, x, number):
    a = interval(xs, x)
    b = a + 1
    if x == xs[b]:
        return ys[b]
    if x == xs[a]:
        return ys[a]
    if number(NONE) in (y2[a], y2[b]):
        return linear(xs, ys, x)
    if ys[a] == NONE:
        return ys[b]
    if ys[b] == NONE:
        return ys[a]
    h = xs[b] - xs[a]
    A = (xs[b] - x) / h
    B = (x - xs[a]) / h
    return A * ys[a] + B * ys[b] + (A * A * A - A) * y2[a] + (B * B * B - B) * y2[b] * h * h / number(6)


def linear(xs, ys, x):
    a = interval(xs, x)
    b = a + 1
    if x == xs[a]:
        return ys[a]
    if x == xs[b]:
        return ys[b]
    if NONE in (ys[a], ys[b]):
        return type(x)(NONE)
    return ys[a] + (ys[b] - ys[a]) * (x - xs[a]) / (xs[b] - xs[a])


def hermite(p0, p1, p2, p3, t):
    """Exact Catmull-Rom by the Hermite basis."""
    m1, m2 = (p2 - p0) / 2, (p3 - p1) / 2
    return ((2 * t**3 - 3 * t**2 + 1) * p1 + (t**3 - 2 * t**2 + t) * m1 + (3 * t**2 - 2 * t**3) * p2
            + (t**3 - t**2) * m2)


def blend(p0, p1, p2, p3, t):
    return p1 + (t / 2.0) * ((p2 - p0) + t * ((2.0 * p0 - 5.0 * p1 + 4.0 * p2 - p3)
                                              + t * (3.0 * (p1 - p2) + p3 - p0)))


def table(rows, row_values, x, r, straight, number):
    """Two inputs, r inside the rows and between two of them, all values there."""
    def row(k):
        xs, ys = rows[k]
        if straight:
            return linear(xs, ys, x)
        y2 = solved_curvature(xs, ys) if number is Fraction else swept_curvature(xs, ys, float)
        return spline(xs, ys, y2, x, number)
    lo = interval(row_values, r)
    if r == row_values[lo]:
        return row(lo)
    if r == row_values[lo + 1]:
        return row(lo + 1)
    y1, y2 = row(lo), row(lo + 1)
    t = (r - row_values[lo]) / (row_values[lo + 1] - row_values[lo])
    if straight:
        return y1 + (y2 - y1) * t
    p0 = row(lo - 1) if lo >= 1 else y1
    p3 = row(lo + 2) if lo + 2 < len(rows) else y2
    return (hermite if number is Fraction else blend)(p0, y1, y2, p3, t)


def places(xs):
    span = xs[-1] - xs[0]
    found = [xs[0] - span / 2, xs[0] - 0.001, xs[-1] + 0.001, xs[-1] + span * 2]
    for low, high in zip(xs, xs[1:]):
        found += [low, low + (high - low) / 3, (low + high) / 2, high - (high - low) / 1000]
    return found + [xs[-1]]


def literal(value):
    return float(value).hex()


def listing(values):
    return '{' + ', '.join(literal(v) for v in values) + '}'


def print_curve(name, xs, ys):
    exact_xs, exact_ys = [Fraction(v) for v in xs], [Fraction(v) for v in ys]
    whole = NONE not in ys
    exact_y2 = solved_curvature(exact_xs, exact_ys) if whole else swept_curvature(exact_xs, exact_ys, Fraction)
    y2 = swept_curvature(xs, ys, float)
    print(f'    {{"{name}",\n     {listing(xs)},\n     {listing(ys)},\n     {{')
    for x in places(xs):
        fx = Fraction(x)
        print('         {' + ', '.join([
            literal(x),
            literal(spline(exact_xs, exact_ys, exact_y2, fx, Fraction)), literal(spline(xs, ys, y2, x, float)),
            literal(linear(exact_xs, exact_ys, fx)), literal(linear(xs, ys, x))]) + '},')
    print('     }},')


def main():
    dice = random.Random(20251121)
    print('// Printed by make_curve_reference.py; not edited by hand.')
    print('inline const std::vector<ReferenceCurve> kReferenceCurves{')
    seven = [0.0, 5.0, 10.0, 15.0, 20.0, 25.0, 30.0]
    speed = [0.0, -0.125, 0.3, 0.75, 0.1, -0.4, 0.2]
    print_curve('two knots', [-3.5, 7.25], [1.5, -2.0])
    print_curve('three knots', [0.0, 1.0, 4.0], [1.0, 3.0, -1.0])
    print_curve('five wind angles', [0.0, 45.0, 90.0, 135.0, 180.0], [1.0, 2.0, 3.0, 4.0, 5.5])
    print_curve('seven speeds', seven, speed)
    print_curve('six pressures', [900.0, 950.0, 1000.0, 1050.0, 1100.0, 1150.0], [0.5, 0.25, -0.5, 1.0, 2.0, 1.5])
    print_curve('uneven', [-10.0, -9.5, -2.0, 0.1, 0.2, 7.0, 100.0, 101.0], [3.0, -1.0, 4.0, 1.0, -5.0, 9.0, 2.0, 6.0])
    xs = [0.0]
    while len(xs) < 40:
        xs.append(xs[-1] + round(dice.uniform(0.5, 9.0), 3))
    print_curve('forty knots', xs, [round(dice.uniform(-20.0, 20.0), 2) for _ in xs])
    for gap in range(7):
        print_curve(f'seven speeds, {gap} missing', seven, [NONE if k == gap else v for k, v in enumerate(speed)])
    for first, second in ((1, 2), (1, 5), (2, 4), (0, 6)):
        print_curve(f'seven speeds, {first} and {second} missing', seven,
                    [NONE if k in (first, second) else v for k, v in enumerate(speed)])
    print('};\n')

    row_values = [4.0, 6.5, 10.0, 16.0, 25.0]
    rows = [([0.0, 45.0, 90.0, 135.0, 180.0], [round(dice.uniform(-4.0, 4.0), 2) for _ in range(5)]) for _ in row_values]
    print('inline const std::vector<double> kTableColumns' + listing(rows[0][0]) + ';')
    print('inline const std::vector<double> kTableRowValues' + listing(row_values) + ';')
    print('inline const std::vector<std::vector<double>> kTableValues{')
    for _, ys in rows:
        print('    ' + listing(ys) + ',')
    print('};\ninline const std::vector<ReferencePoint> kTablePoints{')
    exact_rows = [([Fraction(v) for v in xs], [Fraction(v) for v in ys]) for xs, ys in rows]
    exact_row_values = [Fraction(v) for v in row_values]
    for x in (0.0, 10.0, 67.5, 90.0, 120.25, 180.0, 190.0, -5.0):
        for r in (4.0, 4.5, 6.5, 7.0, 9.999, 10.0, 12.0, 16.0, 20.0, 24.0, 25.0):
            fx, fr = Fraction(x), Fraction(r)
            print('    {' + ', '.join([
                literal(x), literal(r),
                literal(table(exact_rows, exact_row_values, fx, fr, False, Fraction)),
                literal(table(rows, row_values, x, r, False, float)),
                literal(table(exact_rows, exact_row_values, fx, fr, True, Fraction)),
                literal(table(rows, row_values, x, r, True, float))]) + '},')
    print('};')


main()
