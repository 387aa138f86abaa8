#!/usr/bin/env python3
"""Derives the coefficients of Krueger's transverse Mercator series.

Prints, for the orders 1..8, the coefficients of the four trigonometric
series behind projections/tm_family.h as exact rational polynomials in the
third flattening n:

  alpha  mu(chi)  = chi + sum alpha_j sin 2j chi    (Krueger forward)
  beta   chi(mu)  = mu  - sum beta_j  sin 2j mu     (Krueger inverse)
  chi    chi(phi) = phi + sum c_j     sin 2j phi    (conformal latitude)
  phi    phi(chi) = chi + sum d_j     sin 2j chi    (its inverse)

where phi is the geodetic, chi the conformal and mu the rectifying latitude.
The series of the complex mapping (Karney 2011, eqs. 35-36) take their
coefficients from the meridian (eta = 0), where the transverse Mercator
northing is the rectifying latitude and the spherical one the conformal.

Method: for 27 values of n on Chebyshev nodes in [-0.004, 0.004] the
latitude relations are evaluated in closed form at 160 digits (conformal
latitude through the isometric latitude, rectifying latitude through the
incomplete elliptic integral of the second kind), their Fourier sine
coefficients are taken by the midpoint rule over a quarter period (exact for
these odd, pi-periodic functions up to aliasing of order n^48), a degree-26
polynomial in n is fitted through each coefficient, and its low-order terms
are turned back into fractions.  The "err" column is the distance between the
fitted value and the fraction printed; values near 1e-45 confirm the
fractions.  Needs python3-mpmath; runs in about a minute.
"""
from fractions import Fraction

import mpmath as mp

mp.mp.dps = 160
ORDER = 8     # highest harmonic and highest power of n
SAMPLES = 48  # samples per period pi
DEGREE = 26   # degree of the fitted polynomial in n
RADIUS = mp.mpf('0.004')


def latitude_functions(n):
    m = 4 * n / (1 + n) ** 2                 # e^2 in terms of n
    e = mp.sqrt(mp.mpc(m))                   # imaginary for n < 0; e atanh(e s) stays real
    quarter = mp.ellipe(m)

    def conformal(phi):
        psi = mp.asinh(mp.tan(phi)) - e * mp.atanh(e * mp.sin(phi))
        return mp.re(mp.atan(mp.sinh(psi)))

    def rectifying(phi):
        s, c = mp.sin(phi), mp.cos(phi)
        arc = mp.ellipe(phi, m) - m * s * c / mp.sqrt(1 - m * s * s)
        return arc / quarter * mp.pi / 2

    return conformal, rectifying


def inverse(f, y):
    return mp.findroot(lambda x: f(x) - y, y, tol=mp.mpf(10) ** -150)


def sine_coefficients(g):
    xs = [mp.pi * (k + mp.mpf(1) / 2) / SAMPLES for k in range(SAMPLES // 2)]
    vals = [g(x) - x for x in xs]
    return [4 * mp.fsum(v * mp.sin(2 * j * x) for v, x in zip(vals, xs)) / SAMPLES
            for j in range(1, ORDER + 1)]


def all_coefficients(n):
    conformal, rectifying = latitude_functions(n)
    phi_of_chi = lambda c: inverse(conformal, c)
    phi_of_mu = lambda u: inverse(rectifying, u)
    return {
        'alpha': sine_coefficients(lambda x: rectifying(phi_of_chi(x))),
        'beta': [-c for c in sine_coefficients(lambda x: conformal(phi_of_mu(x)))],
        'chi': sine_coefficients(conformal),
        'phi': sine_coefficients(phi_of_chi),
    }


def main():
    nodes = [RADIUS * mp.cos(mp.pi * (2 * i + 1) / (2 * (DEGREE + 1))) for i in range(DEGREE + 1)]
    samples = [all_coefficients(n) for n in nodes]
    vandermonde = mp.matrix([[nd ** k for k in range(DEGREE + 1)] for nd in nodes])
    for key in ['alpha', 'beta', 'chi', 'phi']:
        print('==', key)
        for j in range(ORDER):
            poly = mp.lu_solve(vandermonde, mp.matrix([s[key][j] for s in samples]))
            fractions, worst = [], 0.0
            for k in range(ORDER + 1):
                v = poly[k]
                f = Fraction(0)
                if abs(v) > mp.mpf(10) ** -30:
                    f = Fraction(mp.nstr(v, 60)).limit_denominator(10 ** 16)
                worst = max(worst, float(abs(v - mp.mpf(f.numerator) / f.denominator)))
                fractions.append(str(f))
            print(j + 1, ' '.join(fractions), ' err=%.1e' % worst)


if __name__ == '__main__':
    main()
