#!/usr/bin/env python3
"""Splines beside exact fractions, and beside the GNU Scientific Library's natural spline before it is cut to whole numbers."""

import ctypes
import ctypes.util
import math
import random
import subprocess
import sys
import unittest
from fractions import Fraction

SUBJECT = ""
GSL = None


def ask(arguments, numbers):
    text = " ".join(float(number).hex() for number in numbers)
    done = subprocess.run([SUBJECT] + [str(word) for word in arguments], input=text, capture_output=True, text=True,
                          timeout=60, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr}")
    return [float(line) for line in done.stdout.split()]


class Exact:
    """The natural spline in fractions: nothing is rounded."""

    def __init__(self, x, y):
        self.x = [Fraction(v) for v in x]
        self.y = [Fraction(v) for v in y]
        n = len(x)
        rows = [[Fraction(0)] * (n + 1) for _ in range(n)]
        rows[0][0] = rows[-1][n - 1] = Fraction(1)
        for i in range(1, n - 1):
            h0, h1 = self.x[i] - self.x[i - 1], self.x[i + 1] - self.x[i]
            rows[i][i - 1], rows[i][i], rows[i][i + 1] = h0, 2 * (h0 + h1), h1
            rows[i][n] = 6 * ((self.y[i + 1] - self.y[i]) / h1 - (self.y[i] - self.y[i - 1]) / h0)
        for i in range(1, n):
            factor = rows[i][i - 1] / rows[i - 1][i - 1]
            rows[i] = [a - factor * b for a, b in zip(rows[i], rows[i - 1])]
        self.m = [Fraction(0)] * n
        for i in reversed(range(n)):
            after = rows[i][i + 1] * self.m[i + 1] if i + 1 < n else 0
            self.m[i] = (rows[i][n] - after) / rows[i][i]

    def at(self, s):
        s = Fraction(s)
        i = 1
        while i + 1 < len(self.x) and s > self.x[i]:
            i += 1
        h, b, a = self.x[i] - self.x[i - 1], self.x[i] - s, s - self.x[i - 1]
        m0, m1 = self.m[i - 1], self.m[i]
        return (m0 * b**3 + m1 * a**3) / (6 * h) + (self.y[i - 1] / h - h * m0 / 6) * b + (self.y[i] / h - h * m1 / 6) * a


def distinct(x, y):
    kept = [i for i in range(len(x)) if i + 1 == len(x) or not -0.0001 < x[i + 1] - x[i] < 0.0001]
    return [x[i] for i in kept], [y[i] for i in kept]


def continued(values):
    values = list(values)
    while len(values) < 4:
        values.append(2 * values[-1] - values[-2])
    return values


class Spline(unittest.TestCase):
    def expect_cut(self, sample, exact, message):
        """Rounding may decide where the exact value is whole, or as good as that."""
        noise = Fraction(1, 10**9) * (1 + abs(exact))
        self.assertIn(sample, (math.trunc(exact), math.trunc(exact - noise), math.trunc(exact + noise)), message)

    def sampled(self, x, y, step, count):
        samples = ask(["step", len(x), count, float(step).hex()], list(x) + list(y))
        s = distinct(x, y)[0][0]  # the first knot that stays
        places = []
        for _ in samples:
            places.append(s)
            s += step
        return places, samples

    def test_integers(self):
        source = random.Random(41)
        for _ in range(40):
            x = [source.randrange(-500, 500)]
            for _ in range(source.randrange(1, 9)):
                x.append(x[-1] + source.randrange(1, 1291))
            y = [source.randrange(-100000, 100000) for _ in x]
            # Outside by less than what cubes of 32 bits hold.
            queries = x + [source.randrange(x[0] - 20, x[-1] + 20) for _ in range(30)]
            queries = [s for s in queries if max(abs(s - v) for v in self.interval(x, s)) <= 1290]
            exact = Exact(x, y)
            for s, sample in zip(queries, ask(["integers", len(x), len(queries)], x + y + queries)):
                self.expect_cut(sample, exact.at(s), (x, y, s))

    @staticmethod
    def interval(x, s):
        i = 1
        while i + 1 < len(x) and s > x[i]:
            i += 1
        return x[i - 1], x[i]

    def test_steps(self):
        source = random.Random(42)
        for _ in range(40):
            x = [source.uniform(-50, 50)]
            for _ in range(source.randrange(1, 10)):
                x.append(x[-1] + source.choice((source.uniform(0.1, 9), 0.00005)))
            y = [source.uniform(-1e4, 1e4) for _ in x]
            step = (x[-1] - x[0] + 1) / 60
            knots, values = distinct(x, y)
            places, samples = self.sampled(x, y, step, 70)  # the last ones behind the last knot
            if len(knots) == 1:
                self.assertEqual(samples, values * 70)
                continue
            exact = Exact(continued(knots), continued(values))
            for s, sample in zip(places, samples):
                value = exact.at(s)
                if abs(value) < 10**7:
                    self.expect_cut(sample, value, (x, y, s))

    def test_curves(self):
        source = random.Random(43)
        for _ in range(30):
            x, y, t = [source.randrange(-99, 99)], [source.randrange(-99, 99)], [0]
            for _ in range(source.randrange(1, 9)):
                dx, dy, length = source.choice(((3, 4, 5), (-5, 12, 13), (8, -15, 17), (-7, -24, 25), (0, 0, 0), (0, 9, 9)))
                x.append(x[-1] + 100 * dx)
                y.append(y[-1] + 100 * dy)
                t.append(t[-1] + 100 * length)
            step = source.uniform(3, 40)
            answer = ask(["curve", len(x), float(step).hex()], x + y)
            count = int(t[-1] / step) + 1
            self.assertEqual(answer[0], count)
            self.assertEqual(len(answer), 1 + 2 * count)
            interval = max(t[-1] / (count - 1), 0.0001) if count > 1 else step
            for values, samples in ((x, answer[1:1 + count]), (y, answer[1 + count:])):
                knots, kept = distinct(t, values)
                if len(knots) == 1:
                    self.assertEqual(samples, [kept[0]] * count)
                    continue
                exact = Exact(continued(knots), continued(kept))
                s = 0.0
                for sample in samples:
                    self.expect_cut(sample, exact.at(s), (x, y, step, s))
                    s += interval

    def test_against_the_scientific_library(self):
        """Values of nine digits, of which the cut takes less than one unit."""
        source = random.Random(44)
        for _ in range(40):
            x = [source.uniform(-50, 50)]
            for _ in range(source.randrange(3, 60)):
                x.append(x[-1] + source.uniform(0.5, 4))
            y = [source.uniform(-2e8, 2e8) for _ in x]
            places, samples = self.sampled(x, y, (x[-1] - x[0]) / 500, 500)
            inside = [(s, sample) for s, sample in zip(places, samples) if s <= x[-1]]
            self.assertGreater(len(inside), 495)
            row = ctypes.c_double * len(x)
            spline = GSL.gsl_spline_alloc(ctypes.c_void_p.in_dll(GSL, "gsl_interp_cspline"), len(x))
            GSL.gsl_spline_init(spline, row(*x), row(*y), len(x))
            for s, sample in inside:
                value = GSL.gsl_spline_eval(spline, s, None)
                self.assertLess(abs(value), 2**31)
                self.assertLess(abs(value - sample), 1 + 1e-3, (x, y, s))
                self.assertLessEqual(abs(sample), abs(value) + 1e-3, "towards zero")
            GSL.gsl_spline_free(spline)


if __name__ == "__main__":
    name = ctypes.util.find_library("gsl")
    if name is None:
        print("skipped: not installed here: libgsl")
        sys.exit(77)
    ctypes.CDLL(ctypes.util.find_library("gslcblas"), mode=ctypes.RTLD_GLOBAL)
    GSL = ctypes.CDLL(name)
    GSL.gsl_spline_alloc.restype = ctypes.c_void_p
    GSL.gsl_spline_alloc.argtypes = [ctypes.c_void_p, ctypes.c_size_t]
    GSL.gsl_spline_init.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t]
    GSL.gsl_spline_eval.restype = ctypes.c_double
    GSL.gsl_spline_eval.argtypes = [ctypes.c_void_p, ctypes.c_double, ctypes.c_void_p]
    GSL.gsl_spline_free.argtypes = [ctypes.c_void_p]
    SUBJECT = sys.argv.pop(1)
    unittest.main()
