#!/usr/bin/env python3
"""Derives the Fourier series of the auxiliary latitudes in powers of e².

For each of the conformal (chi), authalic (beta) and rectifying (mu)
latitudes it prints the coefficients a_k(e²) of

    aux - phi = sum_{k=1..6} a_k sin(2k phi)      (forward)
    phi - aux = sum_{k=1..6} b_k sin(2k aux)      (inverse, by Lagrange reversion)

as polynomials in t = e² up to t^7, as exact rationals.  The harmonic
sin(14 phi), whose coefficient starts at t^7, is dropped.

Method: every quantity is kept as a polynomial in t, s = sin(phi) and
c = cos(phi), reduced with s² = 1 - c² and truncated after t^7.  A function
that is odd and pi-periodic reduces to s c h(c²) = sin(2 phi)/2 h((1 + cos 2phi)/2),
and the polynomial in cos(2 phi) is split into Chebyshev polynomials of the
second kind, sin(2k phi) = sin(2 phi) U_{k-1}(cos 2phi).

Sources: conformal latitude as the Gudermannian of the isometric latitude,
authalic latitude from q(phi), rectifying latitude from the meridian arc
(Snyder 1987, eqs. 3-1, 3-11, 3-12, 3-20, 3-21); reversion by the
Lagrange-Buermann formula.  Run: python3 scripts/aux_series.py [--cxx]
(--cxx prints the tables as C++ initializers for projections/auxiliary.cpp).
"""
import sympy as sp

ORDER = 7
HARMONICS = 6
t, s, c, x = sp.symbols("t s c x")


def norm(e):
    """Expands, truncates after t^ORDER and reduces s^2 -> 1 - c^2."""
    e = sp.expand(e)
    out = 0
    for (ts, ss), coef in sp.Poly(e, t, s).terms():
        if ts > ORDER:
            continue
        out += coef * t**ts * (1 - c**2) ** (ss // 2) * s ** (ss % 2)
    return sp.expand(out)


def dphi(e):
    return norm(sp.diff(e, s) * c - sp.diff(e, c) * s)


def to_harmonics(f):
    """Coefficients a_1..a_7 (polynomials in t) of an odd pi-periodic f."""
    f = norm(f)
    poly = sp.Poly(f, s)
    assert poly.coeff_monomial(1) == 0, "not odd"
    g = sp.expand(poly.coeff_monomial(s))           # f = s * g(c), g odd in c
    h = sp.expand(sp.cancel(g / c))                 # g = c * h(c^2)
    hx = sp.expand(h.subs(c, sp.sqrt((1 + x) / 2)) / 2)  # P(x), sin2phi * P(cos2phi)
    px = sp.Poly(hx, x)
    deg = px.degree()
    a = [0] * (deg + 1)
    rem = hx
    for k in range(deg, -1, -1):                    # P = sum a_{k+1} U_k(x)
        lead = sp.Poly(rem, x).coeff_monomial(x**k)
        uk = sp.chebyshevu(k, x)
        a[k] = sp.expand(lead / sp.Poly(uk, x).LC())
        rem = sp.expand(rem - a[k] * uk)
    assert rem == 0
    return a


def reverse(F):
    """phi - aux as a function of aux, given aux - phi = F(phi)."""
    G = 0
    power = 1
    for m in range(1, ORDER + 1):
        power = norm(power * F)
        term = power
        for _ in range(m - 1):
            term = dphi(term)
        G += sp.Rational((-1) ** m, sp.factorial(m)) * term
    return norm(G)


def conformal():
    # chi = gd(psi0 - Delta), Delta = e atanh(e sin phi) = sum t^k s^(2k-1)/(2k-1);
    # Taylor about psi0 with d/dpsi = cos(phi) d/dphi and gd' = cos(phi).
    delta = sum(t**k * s ** (2 * k - 1) / sp.Integer(2 * k - 1) for k in range(1, ORDER + 1))
    F = 0
    deriv = c
    power = 1
    for m in range(1, ORDER + 1):
        power = norm(power * (-delta))
        F += power * deriv / sp.factorial(m)
        deriv = norm(c * dphi(deriv))
    return norm(F)


def inv_series(d):
    """1/d for a series d in t with non-zero constant term, truncated."""
    d0 = d.subs(t, 0)
    r = (d - d0) / d0
    out, p = 1, 1
    for _ in range(ORDER):
        p = sp.expand(-p * r)
        p = sum(p.coeff(t, k) * t**k for k in range(ORDER + 1))
        out += p
    return sp.expand(out / d0)


def authalic():
    # sin(beta) = q/qp = s R, R = sum t^k w_k s^2k / sum t^k w_k,
    # w_k = (2k+2)/(2k+1); R - 1 = -c^2 H.
    w = [sp.Rational(2 * k + 2, 2 * k + 1) for k in range(ORDER + 1)]
    D = sum(w[k] * t**k for k in range(ORDER + 1))
    Dinv = inv_series(D)
    H = norm(Dinv * sum(t**k * w[k] * sum(s ** (2 * j) for j in range(k))
                        for k in range(1, ORDER + 1)))
    # asin^(m)(s) = p_m(s) / c^(2m-1): then each Taylor term is
    # (-1)^m s^m c H^m p_m(s) / m!.
    F = 0
    Hm = 1
    for m in range(1, ORDER + 1):
        Hm = norm(Hm * H)
        pm = sp.simplify(sp.diff(1 / sp.sqrt(1 - x**2), x, m - 1) * (1 - x**2) ** sp.Rational(2 * m - 1, 2))
        pm = sp.expand(pm.subs(x, s))
        F += sp.Rational((-1) ** m, sp.factorial(m)) * s**m * c * Hm * pm
    return norm(F)


def rectifying():
    # mu - phi = sum b_k t^k S_k(phi) / sum b_k t^k C_k with
    # int_0^phi sin^2k = C_k phi + S_k(phi), b_k = binom(-3/2, k) (-1)^k.
    ph = sp.symbols("ph")
    num, den = 0, 0
    for k in range(ORDER + 1):
        bk = sp.binomial(sp.Rational(-3, 2), k) * (-1) ** k
        Ck = sp.binomial(2 * k, k) / sp.Integer(4**k)
        Ik = sp.integrate(sp.sin(ph) ** (2 * k), (ph, 0, ph)) if k else ph
        Sk = sp.expand(Ik - Ck * ph).subs({sp.sin(ph): s, sp.cos(ph): c})
        assert not Sk.has(ph)
        num += bk * t**k * Sk
        den += bk * t**k * Ck
    return norm(num * inv_series(sp.expand(den)))


def show(name, a):
    print(f"{name}:")
    for k in range(1, HARMONICS + 1):
        poly = sp.Poly(a[k - 1], t)
        terms = [poly.coeff_monomial(t**j) for j in range(1, ORDER + 1)]
        print(f"  a{k}: " + ", ".join(str(v) for v in terms))
    if len(a) > HARMONICS:
        print(f"  dropped a{HARMONICS + 1}: {a[HARMONICS]}")


def show_cxx(name, a):
    """The table as a C++ initializer: row k-1 holds the t^1..t^7 terms of a_k."""
    print(f"constexpr SeriesTable {name} = {{{{")
    for k in range(1, HARMONICS + 1):
        poly = sp.Poly(a[k - 1], t)
        terms = []
        for j in range(1, ORDER + 1):
            v = sp.Rational(poly.coeff_monomial(t**j))
            terms.append("0" if v == 0 else f"{v.p}.0 / {v.q}")
        print("    {" + ", ".join(terms) + "},")
    print("}};")


if __name__ == "__main__":
    import sys
    cxx = "--cxx" in sys.argv
    for name, fn in (("conformal", conformal), ("authalic", authalic),
                     ("rectifying", rectifying)):
        F = fn()
        for direction, series in (("forward", F), ("inverse", reverse(F))):
            a = to_harmonics(series)
            if cxx:
                show_cxx(f"k{name.capitalize()}{direction.capitalize()}", a)
            else:
                show(f"{name} {direction}", a)
