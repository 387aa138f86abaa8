#!/usr/bin/env python3
"""Derives the coefficients of the geodesic series of C. F. F. Karney,
"Algorithms for geodesics", J. Geodesy 87, 43-55 (2013), and writes them as a
C++ table (geodesy/geodesic_series.inc).

The series are derived here from the integrals themselves, with exact
rational arithmetic (sympy), not copied from any table:

  I1(s) = int_0^s sqrt(1 + k^2 sin^2 t) dt        = A1 (s + sum_l C1_l sin 2ls)
  I2(s) = int_0^s 1/sqrt(1 + k^2 sin^2 t) dt      = A2 (s + sum_l C2_l sin 2ls)
  I3(s) = int_0^s (2-f)/(1 + (1-f) sqrt(1 + k^2 sin^2 t)) dt
                                                   = A3 (s + sum_l C3_l sin 2ls)
  I4(s) = -int_{pi/2}^s (t(e'^2) - t(k^2 sin^2 u)) / (e'^2 - k^2 sin^2 u)
                        * sin(u)/2 du             = sum_l C4_l cos (2l+1)s
          with t(x) = x + sqrt(1/x + 1) asinh(sqrt x)
  s = tau + sum_l C1'_l sin 2l tau  reverts  tau = s + sum_l C1_l sin 2ls

in the expansion parameter eps = (sqrt(1+k^2) - 1) / (sqrt(1+k^2) + 1), so that
k^2 = 4 eps / (1-eps)^2, and the third flattening n = f / (2 - f), so that
e'^2 = 4 n / (1-n)^2.  A1, C1, C1', A2 and C2 depend on eps only and are kept
to eps^N; A3, C3 and C4 are kept to total degree N-1 in n and eps (they enter
the longitude and area multiplied by the flattening or e^2, which makes up the
missing order), as in the paper.

Usage: geodesic_series.py [N] > geodesy/geodesic_series.inc
"""
import sys
from fractions import Fraction

import sympy as sp

eps, n = sp.symbols("eps n")


def trunc(expr, deg):
    """Keeps the monomials of total degree <= deg in eps and n."""
    expr = sp.expand(expr)
    if expr == 0:
        return sp.Integer(0)
    poly = sp.Poly(expr, eps, n)
    out = sp.Integer(0)
    for (i, j), c in poly.terms():
        if i + j <= deg:
            out += c * eps**i * n**j
    return out


class Trig:
    """A finite trigonometric series sum_k (c_k cos k s + s_k sin k s) whose
    coefficients are polynomials in eps and n, truncated to total degree deg."""

    def __init__(self, deg, cos=None, sin=None):
        self.deg = deg
        self.cos = dict(cos or {})
        self.sin = dict(sin or {})

    @staticmethod
    def const(deg, value):
        return Trig(deg, {0: sp.sympify(value)})

    def _add_term(self, table, k, value):
        table[k] = trunc(table.get(k, 0) + value, self.deg)

    def __add__(self, other):
        out = Trig(self.deg, self.cos, self.sin)
        for k, v in other.cos.items():
            out._add_term(out.cos, k, v)
        for k, v in other.sin.items():
            out._add_term(out.sin, k, v)
        return out

    def scale(self, factor):
        out = Trig(self.deg)
        for k, v in self.cos.items():
            out._add_term(out.cos, k, factor * v)
        for k, v in self.sin.items():
            out._add_term(out.sin, k, factor * v)
        return out

    def __mul__(self, other):
        out = Trig(self.deg)
        half = sp.Rational(1, 2)
        for a, u in self.cos.items():
            for b, v in other.cos.items():  # cos a cos b
                out._add_term(out.cos, abs(a - b), half * u * v)
                out._add_term(out.cos, a + b, half * u * v)
            for b, v in other.sin.items():  # cos a sin b
                out._add_term(out.sin, a + b, half * u * v)
                d = b - a
                out._add_term(out.sin, abs(d), (half if d > 0 else -half) * u * v)
        for a, u in self.sin.items():
            for b, v in other.cos.items():  # sin a cos b
                out._add_term(out.sin, a + b, half * u * v)
                d = a - b
                out._add_term(out.sin, abs(d), (half if d > 0 else -half) * u * v)
            for b, v in other.sin.items():  # sin a sin b
                out._add_term(out.cos, abs(a - b), half * u * v)
                out._add_term(out.cos, a + b, -half * u * v)
        out.sin.pop(0, None)
        return out

    def derivative(self):
        out = Trig(self.deg)
        for k, v in self.cos.items():
            if k:
                out._add_term(out.sin, k, -k * v)
        for k, v in self.sin.items():
            out._add_term(out.cos, k, k * v)
        return out

    def power(self, m):
        out = Trig.const(self.deg, 1)
        for _ in range(m):
            out = out * self
        return out


def binomial_series(base, exponent, terms):
    """(1 + base)^exponent for a small trigonometric series base."""
    out = Trig.const(base.deg, 0)
    power = Trig.const(base.deg, 1)
    for j in range(terms + 1):
        out = out + power.scale(sp.binomial(exponent, j))
        power = power * base
    return out


def series_div(num, den, deg):
    """num / den as a truncated series (den has constant term 1 + O(eps, n))."""
    inv = sp.Integer(0)
    u = trunc(den - 1, deg)
    term = sp.Integer(1)
    for _ in range(deg + 1):
        inv += term
        term = trunc(-term * u, deg)
    return trunc(num * inv, deg)


def fourier_integral(integrand, deg):
    """(A, [C_1..C_N]) with int integrand = A (s + sum C_l sin 2ls)."""
    a0 = integrand.cos.get(0, sp.Integer(0))
    coeffs = []
    for l in range(1, N + 1):
        al = integrand.cos.get(2 * l, sp.Integer(0))
        coeffs.append(series_div(al / (2 * l), a0, deg))
    return a0, coeffs


N = int(sys.argv[1]) if len(sys.argv) > 1 else 6

# sqrt(1 + eps^2 - 2 eps cos 2s) = (1 - eps) sqrt(1 + k^2 sin^2 s).
w = Trig(N, {0: eps**2, 2: -2 * eps})
root = binomial_series(w, sp.Rational(1, 2), N)
inv_root = binomial_series(w, sp.Rational(-1, 2), N)

# I1: integrand = root / (1 - eps); keep A1 (1 - eps) as the stored factor.
a1_factor, c1 = fourier_integral(root, N)
# I2: integrand = (1 - eps) inv_root; keep A2 / (1 - eps).
a2_factor, c2 = fourier_integral(inv_root, N)

# C1': Lagrange reversion of tau = s + h(s), h = sum C1_l sin 2ls:
#   s = tau + sum_m (-1)^m / m! d^(m-1)/dtau^(m-1) h(tau)^m.
h = Trig(N, sin={2 * l: c1[l - 1] for l in range(1, N + 1)})
rev = Trig(N)
for m in range(1, N + 1):
    term = h.power(m)
    for _ in range(m - 1):
        term = term.derivative()
    rev = rev + term.scale(sp.Rational((-1) ** m, sp.factorial(m)))
c1p = [rev.sin.get(2 * l, sp.Integer(0)) for l in range(1, N + 1)]

# I3 with f = 2n/(1+n):  integrand = 2 (1 - eps) / D,
#   D = (1 + n)(1 - eps) + (1 - n) (1 - eps) sqrt(1 + k^2 sin^2 s).
M = N - 1
root3 = binomial_series(Trig(M, {0: eps**2, 2: -2 * eps}), sp.Rational(1, 2), M)
u = Trig.const(M, (1 + n) * (1 - eps) - 2) + root3.scale(1 - n)  # D = 2 + u
inv_d = Trig.const(M, 0)
term = Trig.const(M, sp.Rational(1, 2))
half_u = u.scale(sp.Rational(-1, 2))
for _ in range(M + 1):
    inv_d = inv_d + term
    term = term * half_u
integrand3 = inv_d.scale(2 * (1 - eps))
a3, c3 = fourier_integral(integrand3, M)

# I4: t(x) = x + sqrt(1 + x) asinh(sqrt x) / sqrt x = sum tau_m x^m, so
# (t(x) - t(y)) / (x - y) = sum_m tau_m sum_{a+b=m-1} x^a y^b with
# x = e'^2 = 4n/(1-n)^2 and y = k^2 sin^2 s = 4 eps/(1-eps)^2 sin^2 s.
x = sp.symbols("x")
asinh_ratio = sum(sp.Rational((-1) ** m * sp.factorial(2 * m),
                              4**m * sp.factorial(m) ** 2 * (2 * m + 1)) * x**m
                  for m in range(M + 2))
t_series = sp.expand(x + sp.series(sp.sqrt(1 + x), x, 0, M + 2).removeO() * asinh_ratio)
tau = [t_series.coeff(x, m) for m in range(M + 2)]
ep2 = trunc(sp.series(4 * n / (1 - n) ** 2, n, 0, M + 1).removeO(), M)
k2 = trunc(sp.series(4 * eps / (1 - eps) ** 2, eps, 0, M + 1).removeO(), M)
sin_s = Trig(M, sin={1: sp.Integer(1)})
sin2 = sin_s * sin_s
g = Trig.const(M, 0)
for m in range(1, M + 2):
    for a in range(m):
        b = m - 1 - a
        coef = trunc(tau[m] * ep2**a * k2**b, M)
        if coef != 0:
            g = g + sin2.power(b).scale(coef)
integrand4 = (g * sin_s).scale(sp.Rational(1, 2))
# -int_{pi/2}^{s} sin(j u) du = cos(j s) / j for odd j.
c4 = [trunc(integrand4.sin.get(2 * l + 1, 0) / (2 * l + 1), M) for l in range(N)]

rows = ([("A1 (1 - eps)", a1_factor)] + [(f"C1[{l}]", c) for l, c in enumerate(c1, 1)]
        + [(f"C1'[{l}]", c) for l, c in enumerate(c1p, 1)]
        + [("A2 / (1 - eps)", a2_factor)] + [(f"C2[{l}]", c) for l, c in enumerate(c2, 1)]
        + [("A3", a3)] + [(f"C3[{l}]", c) for l, c in enumerate(c3, 1)]
        + [(f"C4[{l}]", c) for l, c in enumerate(c4)])

print("// Generated by tools/series/geodesic_series.py; do not edit.")
print(f"// Geodesic series of Karney (2013) to order {N}: one entry per term")
print("// {row, power of eps, power of n, numerator, denominator}; rows as listed.")
print(f"inline constexpr int kSeriesOrder = {N};")
print(f"inline constexpr int kSeriesRows = {len(rows)};")
print("inline constexpr SeriesTerm kSeriesTerms[] = {")
for r, (label, expr) in enumerate(rows):
    expr = sp.expand(expr)
    print(f"    // row {r}: {label}")
    if expr == 0:
        continue
    poly = sp.Poly(expr, eps, n)
    for (i, j), c in sorted(poly.terms(), key=lambda t: (t[0][0], -t[0][1])):
        frac = Fraction(int(sp.numer(c)), int(sp.denom(c)))
        assert abs(frac.numerator) < 2**53 and frac.denominator < 2**53
        print(f"    {{{r}, {i}, {j}, {frac.numerator}, {frac.denominator}}},")
print("};")
