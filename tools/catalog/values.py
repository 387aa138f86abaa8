"""Exact conversion of EPSG parameter values between units.

Values are read as the shortest decimal text that gives back the stored
double (the EPSG decimal as published), converted with rational arithmetic
and rounded once to the nearest double.  Angular units that are rational
multiples of pi convert among themselves without pi; radian-based units
use pi to 50 digits.
"""

from fractions import Fraction

PI = Fraction("3.14159265358979323846264338327950288419716939937510")


class ValueError_(Exception):
    pass


def decimal(value):
    return Fraction(repr(float(value)))


# Angular units: radians = k * pi**p.
ANGLE = {
    9101: (Fraction(1), 0),                   # radian
    9109: (Fraction(1, 10**6), 0),            # microradian
    9102: (Fraction(1, 180), 1),              # degree
    9122: (Fraction(1, 180), 1),              # degree (supplier to define representation)
    9103: (Fraction(1, 10800), 1),            # arc-minute
    9104: (Fraction(1, 648000), 1),           # arc-second
    1031: (Fraction(1, 648000000), 1),        # milliarc-second
    9105: (Fraction(1, 200), 1),              # grad
    9106: (Fraction(1, 200), 1),              # gon
    9112: (Fraction(1, 20000), 1),            # centesimal minute
    9113: (Fraction(1, 2000000), 1),          # centesimal second
    9114: (Fraction(1, 3200), 1),             # mil_6400
}
SEXAGESIMAL_DMS = {9110, 9108}   # sexagesimal DMS, DMS hemisphere (signed)
SEXAGESIMAL_DM = {9111}

# Linear units: metres per unit, exact where the definition is exact.
LENGTH = {
    9001: Fraction(1),
    1025: Fraction(1, 1000),
    1033: Fraction(1, 100),
    9036: Fraction(1000),
    9002: Fraction("0.3048"),
    9003: Fraction(1200, 3937),
    9033: Fraction(79200, 3937),
    9034: Fraction(792, 3937),
    9035: Fraction(6336000, 3937),
    9014: Fraction("1.8288"),
    9030: Fraction(1852),
    9093: Fraction("1609.344"),
    9096: Fraction("0.9144"),
    9097: Fraction("20.1168"),
    9098: Fraction("0.201168"),
    9070: Fraction("0.9144025") / 3,
}

SCALE = {
    9201: Fraction(1),
    9203: Fraction(1),
    9202: Fraction(1, 10**6),
    1028: Fraction(1, 10**9),
}


def sexagesimal_degrees(value, minutes_only=False):
    """Degrees of a packed sexagesimal value: DDD.MMSSsss, or DDD.MMmmm
    when minutes_only."""
    text = repr(abs(float(value)))
    if "e" in text:
        text = format(Fraction(text), ".12f")
    whole, _, frac = text.partition(".")
    frac = frac.ljust(4, "0")
    if minutes_only:
        minutes = Fraction(frac[:2] + "." + (frac[2:] or "0"))
        seconds = Fraction(0)
    else:
        minutes = Fraction(int(frac[:2]))
        seconds = Fraction(frac[2:4] + "." + (frac[4:] or "0"))
    if minutes >= 60 or seconds >= 60:
        raise ValueError_("invalid sexagesimal value %r" % value)
    deg = int(whole) + minutes / 60 + seconds / 3600
    return -deg if float(value) < 0 else deg


def angle_radians(value, unit):
    """The angle as (rational, power of pi) radians."""
    if unit in SEXAGESIMAL_DMS:
        return sexagesimal_degrees(value) / 180, 1
    if unit in SEXAGESIMAL_DM:
        return sexagesimal_degrees(value, minutes_only=True) / 180, 1
    if unit not in ANGLE:
        raise ValueError_("angular unit %d not convertible" % unit)
    k, p = ANGLE[unit]
    return decimal(value) * k, p


def convert_angle(value, unit, target):
    """value in EPSG angular unit `unit` expressed in angular unit `target`."""
    if unit == target or (unit in (9102, 9122) and target in (9102, 9122)):
        return float(value)
    r, p = angle_radians(value, unit)
    kt, pt = ANGLE[target]
    ratio = r / kt
    if p > pt:
        ratio *= PI
    elif p < pt:
        ratio /= PI
    return float(ratio)


def length_factor(unit, factors):
    if unit in LENGTH:
        return LENGTH[unit]
    return Fraction(factors[unit])


def convert_length(value, unit, target, factors):
    """value in length unit `unit` expressed in `target`; factors gives the
    metres per unit of units without an exact definition here."""
    if unit == target:
        return float(value)
    src = length_factor(unit, factors)
    dst = length_factor(target, factors)
    return float(decimal(value) * src / dst)


def convert_scale(value, unit):
    """A scale factor as a plain number."""
    if unit in (9202, 9001) and 0.5 < float(value) < 2.0:
        # A scale factor near 1 labelled parts per million or metre is a
        # plain factor (EPSG data errors in a few systems).
        return float(value)
    if unit not in SCALE:
        raise ValueError_("scale unit %d not convertible" % unit)
    if SCALE[unit] == 1:
        return float(value)
    return float(decimal(value) * SCALE[unit])


def scale_difference_ppm(value, unit):
    """A scale difference in parts per million; returns (value, corrected)."""
    if unit == 9202:
        return float(value), False
    if unit == 1028:
        return float(decimal(value) / 1000), False
    if unit == 9201:
        if abs(float(value)) >= 1e-3:
            # No datum's scale differs from another's by a thousandth: the
            # value is in parts per million although labelled unity.
            return float(value), True
        return float(decimal(value) * 10**6), False
    raise ValueError_("scale-difference unit %d not convertible" % unit)


def convert_angle_to_arcsec(value, unit):
    if unit == 9104:
        return float(value)
    r, p = angle_radians(value, unit)
    arcsec = r * 648000
    if p == 0:
        arcsec /= PI
    return float(arcsec)


RATES = {
    "m/yr": {1027: Fraction(1, 1000), 1034: Fraction(1, 100), 1042: Fraction(1)},
    "arcsec/yr": {1032: Fraction(1, 1000), 1043: Fraction(1)},
    "ppm/yr": {1030: Fraction(1, 1000), 1041: Fraction(1)},
}


def convert_rate(value, unit, kind):
    k = RATES[kind].get(unit)
    if k is None:
        raise ValueError_("rate unit %d not convertible" % unit)
    return float(value) if k == 1 else float(decimal(value) * k)


def convert_translation(value, unit, factors):
    return convert_length(value, unit, 9001, factors)
