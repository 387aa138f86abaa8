"""How EPSG methods, parameters and units map onto the library's.

Parameter codes of the library's parameter list are used by name through
the constants below; EPSG codes are written as numbers with their EPSG
names beside them.
"""

# Library parameter codes.
FALSE_EASTING = 100001
FALSE_NORTHING = 100002
SCALE_FACTOR = 100003
AZIMUTH = 100004
HEIGHT = 100005
CENTRAL_MERIDIAN = 100010
LONGITUDE_OF_ORIGIN = 100011
LONGITUDE_OF_CENTER = 100012
LATITUDE_OF_ORIGIN = 100021
LATITUDE_OF_CENTER = 100022
STANDARD_PARALLEL_1 = 100025
STANDARD_PARALLEL_2 = 100026
PSEUDO_STANDARD_PARALLEL_1 = 100027
AUXILIARY_SPHERE_TYPE = 100035
OPTION = 100036
X_SCALE = 100037
Y_SCALE = 100038
XY_PLANE_ROTATION = 100039
X_TRANSLATION, Y_TRANSLATION, Z_TRANSLATION = 100040, 100041, 100042
X_ROTATION, Y_ROTATION, Z_ROTATION = 100043, 100044, 100045
SCALE_DIFFERENCE = 100046
DATASET = 100047
X_PIVOT, Y_PIVOT, Z_PIVOT = 100048, 100049, 100050
LONGITUDE_OFFSET = 100051
LATITUDE_OFFSET = 100052
VERTICAL_OFFSET = 100060
LATITUDE_OF_EVALUATION = 100061
LONGITUDE_OF_EVALUATION = 100062
INCLINATION_NORTH = 100063
INCLINATION_EAST = 100064
X_TRANSLATION_RATE, Y_TRANSLATION_RATE, Z_TRANSLATION_RATE = 100072, 100073, 100074
X_ROTATION_RATE, Y_ROTATION_RATE, Z_ROTATION_RATE = 100075, 100076, 100077
SCALE_DIFFERENCE_RATE = 100078
REFERENCE_TIME = 100079

# EPSG conversion parameters onto library parameters, shared by the
# projection methods; each method below may override entries.
_NATURAL_ORIGIN = {
    8801: LATITUDE_OF_ORIGIN,   # Latitude of natural origin
    8802: CENTRAL_MERIDIAN,     # Longitude of natural origin
    8805: SCALE_FACTOR,         # Scale factor at natural origin
    8806: FALSE_EASTING,        # False easting
    8807: FALSE_NORTHING,       # False northing
}
_FALSE_ORIGIN = {
    8821: LATITUDE_OF_ORIGIN,   # Latitude of false origin
    8822: CENTRAL_MERIDIAN,     # Longitude of false origin
    8823: STANDARD_PARALLEL_1,  # Latitude of 1st standard parallel
    8824: STANDARD_PARALLEL_2,  # Latitude of 2nd standard parallel
    8826: FALSE_EASTING,        # Easting at false origin
    8827: FALSE_NORTHING,       # Northing at false origin
}
_OBLIQUE = {
    8811: LATITUDE_OF_CENTER,   # Latitude of projection centre
    8812: LONGITUDE_OF_CENTER,  # Longitude of projection centre
    8813: AZIMUTH,              # Azimuth of initial line
    8814: XY_PLANE_ROTATION,    # Angle from Rectified to Skew Grid
    8815: SCALE_FACTOR,         # Scale factor on initial line
    8806: FALSE_EASTING,
    8807: FALSE_NORTHING,
    8816: FALSE_EASTING,        # Easting at projection centre
    8817: FALSE_NORTHING,       # Northing at projection centre
}
_KROVAK = {
    8811: LATITUDE_OF_CENTER,          # Latitude of projection centre
    8833: LONGITUDE_OF_CENTER,         # Longitude of origin
    1036: AZIMUTH,                     # Co-latitude of cone axis
    8818: PSEUDO_STANDARD_PARALLEL_1,  # Latitude of pseudo standard parallel
    8819: SCALE_FACTOR,                # Scale factor on pseudo standard parallel
    8806: FALSE_EASTING,
    8807: FALSE_NORTHING,
}
_POLAR_B = {
    8832: STANDARD_PARALLEL_1,  # Latitude of standard parallel
    8833: CENTRAL_MERIDIAN,     # Longitude of origin
    8806: FALSE_EASTING,
    8807: FALSE_NORTHING,
    8826: FALSE_EASTING,
    8827: FALSE_NORTHING,
}
_STANDARD_PARALLEL = {
    8823: STANDARD_PARALLEL_1,
    8802: CENTRAL_MERIDIAN,
    8806: FALSE_EASTING,
    8807: FALSE_NORTHING,
}


def _merge(*maps):
    out = {}
    for m in maps:
        out.update(m)
    return out


class Projection:
    """An EPSG projection method expressed with a library projection:
    its code, the parameter map (EPSG parameter code -> library code), the
    fixed parameters added to every system (library code -> value; angles
    in degrees, converted to the geographic system's unit like the EPSG
    values) and false_origin: the plane directions to which the method's
    formulas add the false easting and the false northing (see
    orientation).  The EPSG method listed first for a projection gives its
    EPSG name."""

    def __init__(self, code, params, fixed=None, false_origin=None):
        self.code = code
        self.params = params
        self.fixed = fixed or {}
        self.false_origin = false_origin or EAST_NORTH


# Plane directions as unit vectors in (east, north).
DIRECTIONS = {"east": (1, 0), "west": (-1, 0), "north": (0, 1), "south": (0, -1)}
EAST_NORTH = ("east", "north")
# The plane coordinates of a library projection, where they are not
# (easting, northing): Krovak writes (southing, westing).
PROJECTION_PLANES = {43039: ("south", "west")}
# Projections whose systems carry X_Scale, Y_Scale and XY_Plane_Rotation
# even when these change nothing.
EXPLICIT_ORIENTATION = {43039}
# EPSG methods whose formulas add the false origin to turned axes.
_WEST_SOUTH = ("west", "south")
_WEST_NORTH = ("west", "north")


def _dot(u, v):
    a, b = DIRECTIONS[u], DIRECTIONS[v]
    return a[0] * b[0] + a[1] * b[1]


def system_axes(axes):
    """The directions a system's coordinates go in, in their order: the
    EPSG axes, except that a north-east pair is written east first (the
    order of the library's point functions, as of PROJ's visualisation
    order) and the polar axes along meridians are the plane's own."""
    if any(a not in DIRECTIONS for a in axes) or set(axes) == set(EAST_NORTH):
        return EAST_NORTH
    if _dot(axes[0], axes[1]) != 0:
        raise ValueError("axes %s are not perpendicular" % (axes,))
    return tuple(axes)


def orientation(projection, axes, false_origin):
    """The plane orientation step that turns a projection's plane
    coordinates into a system's axes, as (X_Scale, Y_Scale,
    XY_Plane_Rotation in degrees), or None when the axes are the plane's;
    and the matrix taking EPSG's (false easting, false northing), added
    along the method's false_origin directions, to the library's, which
    are added after the step.  The step is
        x' = Sx (x cos w + y sin w),  y' = Sy (y cos w - x sin w),
    so a matrix M of the signed permutations is Sx = M00, Sy = M11 without
    a turn and Sx = M01, Sy = -M10 with a quarter turn."""
    target = system_axes(axes)
    plane = PROJECTION_PLANES.get(projection, EAST_NORTH)
    m = [[_dot(t, k) for k in plane] for t in target]
    origin = [[_dot(t, d) for d in false_origin] for t in target]
    if m == [[1, 0], [0, 1]]:
        step = (1.0, 1.0, 0.0) if projection in EXPLICIT_ORIENTATION else None
    elif m[0][1] == 0:
        step = (float(m[0][0]), float(m[1][1]), 0.0)
    else:
        step = (float(m[0][1]), float(-m[1][0]), 90.0)
    return step, origin


# Variants chosen by Option (slot 15), as each projection reads it.
_LCC_NEAR_CONFORMAL = {OPTION: 1.0}
_LCC_BELGIUM = {OPTION: 2.0}
_CASSINI_HYPERBOLIC = {OPTION: 1.0}
_KROVAK_MODIFIED = {OPTION: 1.0}
_AEQD_MODIFIED = {OPTION: 1.0}
_AEQD_GUAM = {OPTION: 2.0}

PROJECTIONS = {
    9807: Projection(43006, _NATURAL_ORIGIN),                      # Transverse Mercator
    1111: Projection(43006, _NATURAL_ORIGIN),                      # Transverse Mercator 3D
    9808: Projection(43006, _NATURAL_ORIGIN, false_origin=_WEST_SOUTH),  # TM (South Orientated)
    9801: Projection(43091, _NATURAL_ORIGIN),                      # LCC (1SP)
    9826: Projection(43091, _NATURAL_ORIGIN, false_origin=_WEST_NORTH),  # LCC (West Orientated)
    9817: Projection(43091, _NATURAL_ORIGIN, _LCC_NEAR_CONFORMAL), # LCC Near-Conformal
    9802: Projection(43092, _FALSE_ORIGIN),                        # LCC (2SP)
    9803: Projection(43092, _FALSE_ORIGIN, _LCC_BELGIUM),          # LCC (2SP Belgium)
    # LCC (2SP Michigan): scaling the ellipsoid by k scales every radius of
    # the cone by k, which is the general conic's scale factor.
    1051: Projection(43020, _merge(_FALSE_ORIGIN, {1038: SCALE_FACTOR})),
    9822: Projection(43007, _FALSE_ORIGIN),                        # Albers Equal Area
    9806: Projection(43028, _NATURAL_ORIGIN),                      # Cassini-Soldner
    9833: Projection(43028, _NATURAL_ORIGIN, _CASSINI_HYPERBOLIC), # Hyperbolic Cassini-Soldner
    9810: Projection(43066, _NATURAL_ORIGIN),                      # Polar Stereographic (A)
    9829: Projection(43067, _POLAR_B),                             # Polar Stereographic (B)
    9830: Projection(43068, _POLAR_B),                             # Polar Stereographic (C)
    9809: Projection(43038, _NATURAL_ORIGIN),                      # Oblique Stereographic
    # Hotine: variant A is the natural-origin form, variant B the centre
    # form; a rectified grid angle other than the azimuth selects the
    # rectified skew orthomorphic projections (see hotine_projection).
    9812: Projection(43036, _OBLIQUE),                             # Hotine (variant A)
    9815: Projection(43037, _OBLIQUE),                             # Hotine (variant B)
    9813: Projection(43063, _OBLIQUE),                             # Laborde Oblique Mercator
    9820: Projection(43033, _NATURAL_ORIGIN),                      # LAEA
    1027: Projection(43033, _NATURAL_ORIGIN),                      # LAEA (Spherical)
    9804: Projection(43069, _NATURAL_ORIGIN),                      # Mercator (variant A)
    9841: Projection(43069, _NATURAL_ORIGIN),                      # Mercator (1SP) (Spherical)
    9805: Projection(43004, _STANDARD_PARALLEL),                   # Mercator (variant B)
    1044: Projection(43070, _merge(_STANDARD_PARALLEL, {8821: LATITUDE_OF_ORIGIN,
                                                        8826: FALSE_EASTING,
                                                        8827: FALSE_NORTHING})),
    # Popular Visualisation Pseudo Mercator: spherical Mercator on the
    # semi-major axis, Auxiliary_Sphere_Type 0.
    1024: Projection(43104, _merge(_NATURAL_ORIGIN, {8801: STANDARD_PARALLEL_1}),
                     {AUXILIARY_SPHERE_TYPE: 0.0}),
    9818: Projection(43021, _NATURAL_ORIGIN),                      # American Polyconic
    9811: Projection(43040, _merge(_NATURAL_ORIGIN, {8802: LONGITUDE_OF_ORIGIN})),  # NZMG
    # Krovak: southing = FN + Xp, westing = FE + Yp; the north-orientated
    # forms negate both (easting = -westing, northing = -southing).
    9819: Projection(43039, _KROVAK, false_origin=_WEST_SOUTH),                    # Krovak
    1041: Projection(43039, _KROVAK, false_origin=_WEST_SOUTH),                    # ... (North Or.)
    1042: Projection(43039, _KROVAK, _KROVAK_MODIFIED, _WEST_SOUTH),               # Modified
    1043: Projection(43039, _KROVAK, _KROVAK_MODIFIED, _WEST_SOUTH),               # ... (North Or.)
    1078: Projection(43085, _NATURAL_ORIGIN),                      # Equal Earth
    9835: Projection(43034, _STANDARD_PARALLEL),                   # Lambert Cylindrical EA
    9834: Projection(43034, _STANDARD_PARALLEL),                   # ... (Spherical)
    9827: Projection(43024, _merge(_NATURAL_ORIGIN, {8801: STANDARD_PARALLEL_1})),  # Bonne
    9828: Projection(43024, _merge(_NATURAL_ORIGIN, {8801: STANDARD_PARALLEL_1}),
                     false_origin=_WEST_SOUTH),                    # Bonne (South Orientated)
    1028: Projection(43061, _merge(_NATURAL_ORIGIN, _STANDARD_PARALLEL)),  # Equidistant Cyl.
    9842: Projection(43061, _merge(_NATURAL_ORIGIN, _STANDARD_PARALLEL,
                                   {8801: STANDARD_PARALLEL_1, 8822: CENTRAL_MERIDIAN})),
    1029: Projection(43002, _merge(_NATURAL_ORIGIN, _STANDARD_PARALLEL)),  # ... (Spherical)
    9823: Projection(43002, _merge(_NATURAL_ORIGIN, {8801: STANDARD_PARALLEL_1})),
    # Colombia Urban: the natural origin, the plane's height as Height.
    1052: Projection(43064, _merge(_NATURAL_ORIGIN, {1039: HEIGHT})),
    # Modified Azimuthal Equidistant (Yap Islands) and the Guam projection,
    # the azimuthal equidistant's two approximate forms.
    9832: Projection(43032, _NATURAL_ORIGIN, _AEQD_MODIFIED),
    9831: Projection(43032, _NATURAL_ORIGIN, _AEQD_GUAM),
}

# EPSG projection methods that the library cannot express, with the reason
# written into the list of objects left out.
UNSUPPORTED_PROJECTIONS = {
    9816: "Tunisia Mining Grid: a grid notation, not a map projection",
    9824: "Transverse Mercator Zoned Grid System: a system of zones, not one projection",
}


def hotine_projection(method, values):
    """Hotine variant A or B with a rectified grid angle other than the
    azimuth becomes the rectified skew orthomorphic projection (43053
    natural origin, 43054 centre) carrying the angle as XY_Plane_Rotation;
    otherwise the angle is the azimuth and is dropped."""
    azimuth = values.get(8813)
    angle = values.get(8814)
    skew = angle is not None and azimuth is not None and angle != azimuth
    if method == 9812:
        return (43053 if skew else 43036), skew
    return (43054 if skew else 43037), skew


# EPSG transformation methods onto the library's methods: library code,
# the convention (see generate.py), and the EPSG method's kind.
# kind: "helmert" (helmert table), "offsets", "rotation" (other table),
# "grid" (grid table).
TRANSFORMATION_METHODS = {
    9603: (9603, "helmert"),      # Geocentric translations (geog2D domain)
    1031: (9603, "helmert"),      # Geocentric translations (geocentric domain)
    1035: (9603, "helmert"),      # Geocentric translations (geog3D domain)
    9606: (9606, "helmert"),      # Position Vector transformation (geog2D domain)
    1033: (9606, "helmert"),      # ... (geocentric domain)
    1037: (9606, "helmert"),      # ... (geog3D domain)
    1065: (9606, "helmert"),      # Time-specific Position Vector transform (geocen)
    9607: (9607, "helmert"),      # Coordinate Frame rotation (geog2D domain)
    1032: (9607, "helmert"),      # ... (geocentric domain)
    1038: (9607, "helmert"),      # ... (geog3D domain)
    1066: (9607, "helmert"),      # Time-specific Coordinate Frame rotation (geocen)
    9636: (9636, "helmert"),      # Molodensky-Badekas (CF geog2D domain)
    1034: (9636, "helmert"),      # ... (CF geocentric domain)
    1039: (9636, "helmert"),      # ... (CF geog3D domain)
    1061: (9636, "helmert"),      # Molodensky-Badekas (PV geocentric domain)
    1062: (9636, "helmert"),      # ... (PV geog3D domain)
    1063: (9636, "helmert"),      # ... (PV geog2D domain)
    1053: (109616, "helmert"),    # Time-dependent Position Vector tfm (geocentric)
    1054: (109616, "helmert"),    # ... (geog3D)
    1055: (109616, "helmert"),    # ... (geog2D)
    1056: (109617, "helmert"),    # Time-dependent Coordinate Frame rotation (geocen)
    1057: (109617, "helmert"),    # ... (geog2D)
    1058: (109617, "helmert"),    # ... (geog3D)
    9604: (9604, "molodensky"),   # Molodensky
    9605: (9605, "molodensky"),   # Abridged Molodensky
    9619: (9619, "offsets"),      # Geographic2D offsets
    9618: (9619, "offsets"),      # Geographic2D with Height Offsets
    9601: (9601, "rotation"),     # Longitude rotation
    9613: (9613, "grid"),         # NADCON
    9615: (9615, "grid"),         # NTv2
    1074: (109615, "grid"),       # NADCON5 (2D)
}

# Methods whose rotations follow the position-vector convention although
# the library method follows the coordinate-frame one: stored negated.
POSITION_VECTOR_AS_FRAME = {1061, 1062, 1063}
TIME_SPECIFIC = {1065, 1066}

UNSUPPORTED_TRANSFORMATIONS = {
    9614: "NTv1 grid files are not read by the library",
    1087: "geocentric translation by grid interpolation is not a library method",
    1070: "point motion by grid is not a library method",
    9624: "affine parametric transformations act on projected coordinates",
}

# EPSG vertical transformation methods onto the library's vertical
# methods (library.VTMETHODS).
VERTICAL_METHODS = {
    9616: 9616,   # Vertical Offset
    1046: 1046,   # Vertical Offset and Slope
    1069: 1069,   # Change of Vertical Unit
    1068: 1068,   # Height Depth Reversal
}
for _m in (1025, 1030, 1045, 1047, 1048, 1050, 1059, 1060, 1072, 1073, 1081, 1082,
           1099, 1106, 9661, 9662, 9663, 9664, 9665,
           1083, 1088, 1089, 1090, 1091, 1092, 1093, 1094, 1095, 1096, 1097, 1098,
           1100, 1103, 1105):
    VERTICAL_METHODS[_m] = 9665   # Geographic3D to GravityRelatedHeight (any grid format)
for _m in (1109, 1110):
    VERTICAL_METHODS[_m] = 1109   # Geographic3D to Depth (Gravsoft)
for _m in (1071, 1080, 1084, 1085, 1101, 1112, 9658):
    VERTICAL_METHODS[_m] = 1084   # Vertical Offset by Grid Interpolation (any format)

# EPSG parameters of transformations onto library parameters.
TRANSFORMATION_PARAMS = {
    8601: LATITUDE_OFFSET,           # Latitude offset
    8602: LONGITUDE_OFFSET,          # Longitude offset
    8603: VERTICAL_OFFSET,           # Vertical Offset
    8617: LATITUDE_OF_EVALUATION,    # Ordinate 1 of evaluation point
    8618: LONGITUDE_OF_EVALUATION,   # Ordinate 2 of evaluation point
    8730: INCLINATION_NORTH,         # Inclination in latitude
    8731: INCLINATION_EAST,          # Inclination in longitude
}

# EPSG names of the Helmert parameters (the helmert table holds values in
# columns, not parameter rows), with the library parameter of each column.
HELMERT_PARAMS = [
    ("tx", 8605, "X-axis translation", X_TRANSLATION),
    ("ty", 8606, "Y-axis translation", Y_TRANSLATION),
    ("tz", 8607, "Z-axis translation", Z_TRANSLATION),
    ("rx", 8608, "X-axis rotation", X_ROTATION),
    ("ry", 8609, "Y-axis rotation", Y_ROTATION),
    ("rz", 8610, "Z-axis rotation", Z_ROTATION),
    ("scale_difference", 8611, "Scale difference", SCALE_DIFFERENCE),
    ("rate_tx", 1040, "Rate of change of X-axis translation", X_TRANSLATION_RATE),
    ("rate_ty", 1041, "Rate of change of Y-axis translation", Y_TRANSLATION_RATE),
    ("rate_tz", 1042, "Rate of change of Z-axis translation", Z_TRANSLATION_RATE),
    ("rate_rx", 1043, "Rate of change of X-axis rotation", X_ROTATION_RATE),
    ("rate_ry", 1044, "Rate of change of Y-axis rotation", Y_ROTATION_RATE),
    ("rate_rz", 1045, "Rate of change of Z-axis rotation", Z_ROTATION_RATE),
    ("rate_scale_difference", 1046, "Rate of change of Scale difference", SCALE_DIFFERENCE_RATE),
    ("epoch", 1047, "Parameter reference epoch", REFERENCE_TIME),
    ("px", 8617, "Ordinate 1 of evaluation point", X_PIVOT),
    ("py", 8618, "Ordinate 2 of evaluation point", Y_PIVOT),
    ("pz", 8667, "Ordinate 3 of evaluation point", Z_PIVOT),
]

# Which value unit each library parameter is stored in, in the
# transformation pools: "m" metres, "arcsec", "ppm", "m/yr", "arcsec/yr",
# "ppm/yr", "yr", "deg" degrees.
TRANSFORMATION_UNITS = {
    X_TRANSLATION: "m", Y_TRANSLATION: "m", Z_TRANSLATION: "m",
    X_ROTATION: "arcsec", Y_ROTATION: "arcsec", Z_ROTATION: "arcsec",
    SCALE_DIFFERENCE: "ppm",
    X_TRANSLATION_RATE: "m/yr", Y_TRANSLATION_RATE: "m/yr", Z_TRANSLATION_RATE: "m/yr",
    X_ROTATION_RATE: "arcsec/yr", Y_ROTATION_RATE: "arcsec/yr", Z_ROTATION_RATE: "arcsec/yr",
    SCALE_DIFFERENCE_RATE: "ppm/yr",
    REFERENCE_TIME: "yr",
    X_PIVOT: "m", Y_PIVOT: "m", Z_PIVOT: "m",
    LATITUDE_OFFSET: "arcsec", LONGITUDE_OFFSET: "arcsec",
    VERTICAL_OFFSET: "m",
    LATITUDE_OF_EVALUATION: "deg", LONGITUDE_OF_EVALUATION: "deg",
    INCLINATION_NORTH: "arcsec", INCLINATION_EAST: "arcsec",
}

# OGC WKT1 spellings of projections as open-source GIS tools write them,
# onto the library's projection codes.
WKT1_PROJECTIONS = [
    ("Transverse_Mercator", 43006),
    ("Transverse_Mercator_South_Orientated", 43006),
    ("Lambert_Conformal_Conic_1SP", 43091),
    ("Lambert_Conformal_Conic_2SP", 43092),
    ("Lambert_Conformal_Conic_2SP_Michigan", 43020),
    ("Mercator_1SP", 43069),
    ("Mercator_2SP", 43004),
    ("Polar_Stereographic", 43066),
    ("Oblique_Stereographic", 43038),
    ("Hotine_Oblique_Mercator", 43036),
    ("Hotine_Oblique_Mercator_Azimuth_Center", 43037),
    ("Rectified_Skew_Orthomorphic", 43053),
    ("Krovak", 43039),
    ("Cassini_Soldner", 43028),
    ("Lambert_Azimuthal_Equal_Area", 43033),
    ("Albers_Conic_Equal_Area", 43007),
    ("Polyconic", 43021),
    ("New_Zealand_Map_Grid", 43040),
    ("Equirectangular", 43002),
    ("Cylindrical_Equal_Area", 43034),
    ("Laborde_Oblique_Mercator", 43063),
    ("Bonne", 43024),
    ("Stereographic", 43026),
    ("Azimuthal_Equidistant", 43032),
    ("Gnomonic", 43047),
    ("Orthographic", 43041),
    ("Robinson", 43030),
    ("Sinusoidal", 43008),
    ("Mollweide", 43009),
    ("Miller_Cylindrical", 43003),
    ("Eckert_IV", 43012),
    ("Eckert_VI", 43010),
    ("Equidistant_Conic", 43027),
    ("VanDerGrinten", 43029),
    ("Gall_Stereographic", 43016),
    ("Two_Point_Equidistant", 43031),
    ("Goode_Homolosine", 43059),
    ("Geostationary_Satellite", 43084),
    ("Equal_Earth", 43085),
]

# OGC WKT1 spellings of parameters, onto library parameter codes.
WKT1_PARAMETERS = [
    ("false_easting", FALSE_EASTING),
    ("false_northing", FALSE_NORTHING),
    ("scale_factor", SCALE_FACTOR),
    ("azimuth", AZIMUTH),
    ("central_meridian", CENTRAL_MERIDIAN),
    ("longitude_of_origin", LONGITUDE_OF_ORIGIN),
    ("longitude_of_center", LONGITUDE_OF_CENTER),
    ("longitude_of_point_1", 100013),
    ("longitude_of_point_2", 100014),
    ("latitude_of_origin", LATITUDE_OF_ORIGIN),
    ("latitude_of_center", LATITUDE_OF_CENTER),
    ("latitude_of_point_1", 100023),
    ("latitude_of_point_2", 100024),
    ("standard_parallel_1", STANDARD_PARALLEL_1),
    ("standard_parallel_2", STANDARD_PARALLEL_2),
    ("pseudo_standard_parallel_1", PSEUDO_STANDARD_PARALLEL_1),
    ("rectified_grid_angle", XY_PLANE_ROTATION),
]


# EPSG texts the catalogue words differently: the dataset abbreviates
# "speculative survey" and names the NTv2 format's defining document, and the
# library's sources keep one word out of their text.  Keyed by EPSG code;
# the meaning is unchanged.
REWORDED_EXTENT_NAMES = {
    2320: "Angola - offshore blocks 7 8 24 + WGC speculative survey",
}
REWORDED_REMARKS = {
    1321: "Mean of 123 Transit passes at station Cabo Ledo NE base in November 1990. Used by Elf for "
          "block 7 up to December 1992 then replaced by Camacupa 1948 to WGS 84 (7). Used by Total in "
          "block 8, ExxonMobil block 24, Western Geophysical for speculative survey data.",
    15895: "May be taken as approximate transformation ED50 to WGS 84 - see code 15907. NOTE: Parameter "
           "file does not conform to the NTv2 format - replaced by ED50 to ETRS89 (12) (code 15932).",
    15907: "Parameter values from ED50 to ETRS89 (11) (code 15895). Assumes ETRS89 and WGS 84 can be "
           "considered the same to within the accuracy of the transformation. NOTE: Parameter file does "
           "not conform to the NTv2 format - replaced by ED50 to WGS 84 (41).",
}
