"""Reads the EPSG rows of proj.db and builds the catalogue's objects in the
library's terms: library names, library units and codes, parameters in
the library's parameter list and units."""

import re

import library
import mapping
import naming
import values

EPSG = "EPSG"
LIBRARY_AUTHORITY = "KO"
LIBRARY_VERSION = "1"

# Units in which mapping.Projection gives fixed parameters, by the
# parameter's unit type: angles in degrees, scales as factors.
FIXED_UNITS = {0: None, 1: 9102, 3: 9201}
FALSE_ORIGIN = (mapping.FALSE_EASTING, mapping.FALSE_NORTHING)
ORIENTATION_PARAMETERS = (mapping.X_SCALE, mapping.Y_SCALE, mapping.XY_PLANE_ROTATION)


def library_slot(lib):
    """The parameter array slot of a library parameter."""
    return next(slot for c, _, slot, _ in library.PARAMETERS if c == lib)


def orientation_parameters(projection, step):
    """The library parameters of an orientation step: those that differ
    from no orientation (X_Scale 1, Y_Scale 1, XY_Plane_Rotation 0), or all
    three for the projections that always carry them."""
    neutral = (1.0, 1.0, 0.0)
    return {lib: v for lib, v, n in zip(ORIENTATION_PARAMETERS, step, neutral)
            if v != n or projection in mapping.EXPLICIT_ORIENTATION}


def turned_false_origin(parms, origin):
    """parms with EPSG's false easting and northing taken to the library's
    by the matrix of mapping.orientation (a signed permutation): each
    library value is one EPSG value, perhaps negated, keeping the EPSG
    parameter code it came from."""
    if origin == [[1, 0], [0, 1]]:
        return parms
    given = {lib: (aux, v) for lib, aux, v in parms if lib in FALSE_ORIGIN}
    out = [t for t in parms if t[0] not in FALSE_ORIGIN]
    for row, lib in zip(origin, FALSE_ORIGIN):
        source = FALSE_ORIGIN[0] if row[0] != 0 else FALSE_ORIGIN[1]
        if source in given:
            aux, v = given[source]
            sign = row[0] + row[1]
            out.append((lib, aux, -v if sign < 0 and v != 0.0 else v))
    return out

# EPSG angular units of coordinate systems onto the library's angular units
# (the sexagesimal representations are degrees to the library).
CS_ANGLE_UNITS = {9122: 9102, 9102: 9102, 9108: 9102, 9110: 9102, 9105: 9105, 9101: 9101}

UNIT_ABBREVIATIONS = {
    "Meter": "m", "Kilometer": "km", "Centimeter": "cm", "Millimeter": "mm",
    "Decimeter": "dm", "Micrometer": "um", "Nanometer": "nm", "Foot": "ft",
    "Foot_US": "ftUS", "Inch": "in", "Inch_US": "inUS", "Yard": "yd", "Yard_US": "ydUS",
    "Mile_US": "miUS", "Statute_Mile": "mi", "Nautical_Mile": "nmi", "Chain": "ch",
    "Chain_US": "chUS", "Link": "lk", "Link_US": "lkUS", "Fathom": "fath", "Rod": "rd",
    "Degree": "deg", "Radian": "rad", "Grad": "grad", "Gon": "gon", "Arcminute": "'",
    "Arcsecond": "\"", "Microradian": "urad", "Milliarcsecond": "mas",
    "Unity": "", "Parts_Per_Million": "ppm", "Parts_Per_Billion": "ppb",
    "Square_Meter": "m2", "Square_Kilometer": "km2", "Hectare": "ha", "Are": "a",
    "Acre": "ac", "Square_Foot": "ft2", "Square_Foot_US": "ftUS2",
}
IRREGULAR_PLURALS = {"Foot": "Feet", "Inch": "Inches", "Unity": "Unity"}


def unit_display(name):
    return name.replace("_", " ")


def unit_plural(name):
    words = name.split("_")
    # The measure word is the first (Foot_US) unless the name starts with a
    # qualifier (Square_Foot, Parts_Per_Million): then the last.
    i = 0
    if words[0] in ("Square",) and len(words) > 1:
        i = 1
    if words[0] == "Parts":
        return unit_display(name)
    w = words[i]
    if w in IRREGULAR_PLURALS:
        words[i] = IRREGULAR_PLURALS[w]
    elif w[0].isdigit() or w.endswith("s"):
        pass
    elif w.endswith("y") and w[-2:] != "ay":
        words[i] = w[:-1] + "ies"
    elif w.endswith(("ch", "sh", "x")):
        words[i] = w + "es"
    else:
        words[i] = w + "s"
    return " ".join(words)


class Obj:
    """One catalogue object; attributes are set by the builders."""

    def __init__(self, code, epsg_name, deprecated=False):
        self.code = code
        self.epsg_name = epsg_name
        self.deprecated = bool(deprecated)
        self.name = None            # library name
        self.aliases = []           # EPSG aliases
        self.wkt1 = None            # open-source WKT1 spelling, when not the EPSG name
        self.description = epsg_name
        self.areas = []             # EPSG extent codes
        self.cs = 0                 # EPSG coordinate system code
        self.authority = EPSG
        self.replacement = 0        # replacing code, for deprecated objects
        self.exception = 0          # exception flags (transformations)
        self.parms = []             # [(library code, aux, value)]
        self.texts = []             # texts of text-valued parameters


class Catalog:
    def __init__(self, con):
        self.con = con
        self.types = {}             # type name -> {code: Obj}
        self.left_out = []          # (kind, code, EPSG name, reason)
        self.extents = {}           # code -> (name, west, south, east, north, description)
        self.version = self.metadata("EPSG.VERSION")
        self.date = self.metadata("EPSG.DATE")
        self.linunit_factors = {}
        self.ensembles = {}         # type -> [(code, member, sequence, accuracy)]
        self.epochs = {}            # type -> [(code, epoch)]
        self.gcsvcs = []

    # -- database access ---------------------------------------------------
    def rows(self, sql, *args):
        return self.con.execute(sql, args).fetchall()

    def metadata(self, key):
        assert key.startswith(EPSG + ".")
        return self.rows("SELECT value FROM metadata WHERE key = ?", key)[0][0]

    def omit(self, kind, code, name, reason):
        self.left_out.append((kind, code, name, reason))

    def summary(self):
        return ", ".join("%s %d" % (t, len(objs)) for t, objs in self.types.items())

    # -- the whole build ---------------------------------------------------
    def build(self):
        naming.set_year_words(self.year_words())
        self.build_units()
        self.build_spheroids()
        self.build_primems()
        self.build_geodetic()
        self.build_vertical()
        self.build_projected()
        self.build_compound()
        self.build_geogtran()
        self.build_verttran()
        self.build_extents()
        self.read_aliases()
        self.read_deprecations()
        self.name_objects()

    def year_words(self):
        words = set()
        for table in ("geodetic_crs", "vertical_crs", "geodetic_datum", "vertical_datum"):
            for r in self.rows("SELECT name FROM %s WHERE auth_name = 'EPSG'" % table):
                words |= naming.year_words_in(r["name"])
        return words

    def put(self, type_name, obj):
        self.types.setdefault(type_name, {})[obj.code] = obj
        return obj

    # -- units -------------------------------------------------------------
    def epsg_unit_names(self):
        return {r["code"]: r["name"] for r in self.rows(
            "SELECT code, name FROM unit_of_measure WHERE auth_name = 'EPSG'")}

    def build_units(self):
        epsg_names = self.epsg_unit_names()
        seen = set()
        area_by_name = {n: c for c, n, _ in library.AREAUNITS}
        lin_by_name = {}
        for code, name, factor in library.LINUNITS:
            self.linunit_factors[code] = factor
            if name in seen:
                continue    # a later row of a name repeats an earlier one
            seen.add(name)
            lin_by_name[name] = code
            u = self.put("linunit", self.unit(code, name, factor, epsg_names))
            u.related = area_by_name.get("Square_" + name, 0)
        for code, name, factor in library.AREAUNITS:
            u = self.put("areaunit", self.unit(code, name, factor, epsg_names))
            u.related = lin_by_name.get(name[len("Square_"):], 0)
        for code, name, factor in library.ANGUNITS:
            self.put("angunit", self.unit(code, name, factor, epsg_names))
        # Coordinate systems give degrees as "degree (supplier to define
        # representation)".
        self.types["angunit"][9102].aliases.append(epsg_names[9122])
        for code, name, factor in library.SCALEUNITS:
            self.put("scaleunit", self.unit(code, name, factor, epsg_names))
        self.omit_units()

    def omit_units(self):
        """EPSG units outside the library's unit tables, and why."""
        held = set()
        for t in ("linunit", "angunit", "scaleunit"):
            held |= set(self.types[t])
        for r in self.rows("SELECT code, name, type FROM unit_of_measure WHERE auth_name = 'EPSG' "
                           "ORDER BY code"):
            code, name, kind = r["code"], r["name"], r["type"]
            if code in held:
                continue
            if code in CS_ANGLE_UNITS or code in values.SEXAGESIMAL_DMS | values.SEXAGESIMAL_DM:
                reason = "a notation of degrees: values are converted to Degree"
            elif kind == "time" or "per " in name or name.endswith("per second"):
                reason = "a time or rate unit: transformation rates are stored per year"
            elif code in values.ANGLE or kind == "angle":
                reason = "an angular notation not in the library's unit table"
            else:
                reason = "not in the library's unit tables"
            self.omit("unit", code, name, reason)

    def unit(self, code, name, factor, epsg_names):
        epsg_name = epsg_names.get(code)
        u = Obj(code, epsg_name)
        u.name = name
        u.factor = factor
        u.display = unit_display(name)
        u.plural = unit_plural(name)
        u.abbreviation = UNIT_ABBREVIATIONS.get(name, "")
        u.related = 0
        u.description = u.display
        if epsg_name is None:
            u.authority = LIBRARY_AUTHORITY
        # Open-source WKT1 writers spell units as EPSG does.
        u.wkt1 = epsg_name
        return u

    # -- spheroids and prime meridians -------------------------------------
    def build_spheroids(self):
        for r in self.rows("SELECT code, name, semi_major_axis, uom_code, inv_flattening, "
                           "semi_minor_axis, deprecated FROM ellipsoid WHERE auth_name = 'EPSG'"):
            if r["uom_code"] not in self.types["linunit"]:
                self.omit("spheroid", r["code"], r["name"], "length unit %d not in the library" % r["uom_code"])
                continue
            s = self.put("spheroid", Obj(r["code"], r["name"], r["deprecated"]))
            a = float(r["semi_major_axis"])
            s.unit = r["uom_code"]
            s.axis = a
            if r["inv_flattening"] is not None:
                rf = float(r["inv_flattening"])
                s.flattening = 0.0 if rf == 0.0 else 1.0 / rf
            else:
                b = float(r["semi_minor_axis"])
                s.flattening = (a - b) / a
            s.wkt1 = r["name"]

    def build_primems(self):
        for r in self.rows("SELECT code, name, longitude, uom_code, deprecated FROM prime_meridian "
                           "WHERE auth_name = 'EPSG'"):
            p = self.put("primem", Obj(r["code"], r["name"], r["deprecated"]))
            unit = r["uom_code"]
            if unit in (9102, 9122, 9105):
                p.unit = 9102 if unit == 9122 else unit
                p.longitude = float(r["longitude"])
            else:
                p.unit = 9102
                p.longitude = values.convert_angle(r["longitude"], unit, 9102)
            p.wkt1 = r["name"]

    # -- geodetic datums and systems ---------------------------------------
    def cs_axes(self):
        """EPSG coordinate system -> orientations of its first two axes."""
        out = {}
        for r in self.rows("SELECT coordinate_system_code AS cs, coordinate_system_order AS n, "
                           "orientation FROM axis WHERE auth_name = 'EPSG' "
                           "AND coordinate_system_auth_name = 'EPSG' AND coordinate_system_order <= 2 "
                           "ORDER BY cs, n"):
            out.setdefault(r["cs"], []).append(r["orientation"])
        return {cs: tuple(a) for cs, a in out.items()}

    def cs_units(self):
        """EPSG coordinate system -> (unit of axis 1, dimension, axis 1 orientation)."""
        out = {}
        for r in self.rows("SELECT c.code, c.dimension, a.uom_code, a.orientation "
                           "FROM coordinate_system c JOIN axis a ON a.coordinate_system_auth_name = "
                           "c.auth_name AND a.coordinate_system_code = c.code "
                           "WHERE c.auth_name = 'EPSG' AND a.coordinate_system_order = 1"):
            out[r["code"]] = (r["uom_code"], r["dimension"], r["orientation"])
        return out

    def build_geodetic(self):
        cs = self.cs_units()
        datums = {}
        for r in self.rows("SELECT code, name, ellipsoid_code, prime_meridian_code, "
                           "frame_reference_epoch, ensemble_accuracy, anchor, deprecated "
                           "FROM geodetic_datum WHERE auth_name = 'EPSG' "
                           "AND ellipsoid_auth_name = 'EPSG' AND prime_meridian_auth_name = 'EPSG'"):
            if r["ellipsoid_code"] not in self.types["spheroid"]:
                self.omit("datum", r["code"], r["name"], "spheroid not in the catalogue")
                continue
            d = self.datum_like(r)
            d.spheroid = r["ellipsoid_code"]
            d.primem = r["prime_meridian_code"]
            d.wkt1 = naming.wkt1_datum_name(r["name"])
            datums[d.code] = d
        for code in sorted(datums):
            self.put("datum", datums[code])
        self.datum_tables("datum", "geodetic_datum_ensemble_member", datums)

        for r in self.rows("SELECT code, name, type, coordinate_system_code, datum_code, deprecated "
                           "FROM geodetic_crs WHERE auth_name = 'EPSG' AND datum_auth_name = 'EPSG' "
                           "AND coordinate_system_auth_name = 'EPSG' ORDER BY code"):
            kind = r["type"]
            if r["datum_code"] not in datums:
                self.omit("geogcs", r["code"], r["name"], "datum not in the catalogue")
                continue
            unit, dim, _ = cs[r["coordinate_system_code"]]
            datum = datums[r["datum_code"]]
            if kind in ("geographic 2D", "geographic 3D"):
                if unit not in CS_ANGLE_UNITS:
                    self.omit("geogcs", r["code"], r["name"], "angular unit %d not in the library" % unit)
                    continue
                g = self.put("geogcs", Obj(r["code"], r["name"], r["deprecated"]))
                g.unit = CS_ANGLE_UNITS[unit]
                g.dimension = dim
                g.wkt1 = r["name"]
                g.description = datum.epsg_name
            elif kind == "geocentric":
                g = self.put("gxyzcs", Obj(r["code"], r["name"], r["deprecated"]))
                g.unit = unit
                g.wkt1 = r["name"]
                g.description = datum.epsg_name
            else:
                self.omit("geogcs", r["code"], r["name"], "geodetic system of type '%s'" % kind)
                continue
            g.datum = datum.code
            g.primem = datum.primem
            g.cs = r["coordinate_system_code"]

    def datum_like(self, r):
        """A geodetic or vertical datum's common part."""
        d = Obj(r["code"], r["name"], r["deprecated"])
        d.anchor = r["anchor"] or ""
        d.epoch = r["frame_reference_epoch"]
        d.ensemble_accuracy = r["ensemble_accuracy"]
        return d

    def datum_tables(self, type_name, member_table, datums):
        """Ensemble members and reference epochs of dynamic frames."""
        self.ensembles[type_name] = self.ensemble_rows(member_table, datums)
        self.epochs[type_name] = [(c, float(d.epoch)) for c, d in sorted(datums.items())
                                  if d.epoch is not None]

    def ensemble_rows(self, table, datums):
        out = []
        for r in self.rows("SELECT ensemble_code, member_code, sequence FROM %s "
                           "WHERE ensemble_auth_name = 'EPSG' AND member_auth_name = 'EPSG' "
                           "ORDER BY ensemble_code, sequence" % table):
            d = datums.get(r["ensemble_code"])
            if d is None:
                continue
            out.append((r["ensemble_code"], r["member_code"], r["sequence"],
                        float(d.ensemble_accuracy or 0.0)))
        return out

    def principal(self, candidates):
        """The object that stands for a group: live before deprecated,
        then the lowest code."""
        return min(candidates, key=lambda o: (o.deprecated, o.code)) if candidates else None

    def geographic_for_datum(self):
        """Datum code -> (2D system, 3D system, geocentric system)."""
        by = {}
        for g in self.types["geogcs"].values():
            by.setdefault(g.datum, ([], [], []))[0 if g.dimension == 2 else 1].append(g)
        for g in self.types["gxyzcs"].values():
            by.setdefault(g.datum, ([], [], []))[2].append(g)
        return {d: tuple(self.principal(lst) for lst in groups) for d, groups in by.items()}

    # -- vertical ----------------------------------------------------------
    def build_vertical(self):
        cs = self.cs_units()
        vdatums = {}
        for r in self.rows("SELECT code, name, frame_reference_epoch, ensemble_accuracy, anchor, "
                           "deprecated FROM vertical_datum WHERE auth_name = 'EPSG' ORDER BY code"):
            vdatums[r["code"]] = self.put("vdatum", self.datum_like(r))
        self.datum_tables("vdatum", "vertical_datum_ensemble_member", vdatums)
        for r in self.rows("SELECT code, name, coordinate_system_code, datum_code, deprecated "
                           "FROM vertical_crs WHERE auth_name = 'EPSG' AND datum_auth_name = 'EPSG' "
                           "AND coordinate_system_auth_name = 'EPSG' ORDER BY code"):
            unit, _, orientation = cs[r["coordinate_system_code"]]
            if unit not in self.types["linunit"]:
                self.omit("vertcs", r["code"], r["name"], "length unit %d not in the library" % unit)
                continue
            v = self.put("vertcs", Obj(r["code"], r["name"], r["deprecated"]))
            v.vdatum = r["datum_code"]
            v.unit = unit
            v.direction = -1 if orientation == "down" else 1
            v.cs = r["coordinate_system_code"]
            v.wkt1 = r["name"]

    # -- projected ---------------------------------------------------------
    def conversion_params(self, conv):
        out = []
        for i in range(1, 8):
            code = conv["param%d_code" % i]
            if code is None:
                continue
            assert conv["param%d_auth_name" % i] == EPSG
            out.append((code, conv["param%d_value" % i], conv["param%d_uom_code" % i]))
        return out

    def build_projected(self):
        cs = self.cs_units()
        axes = self.cs_axes()
        param_units = {c: t for c, _, _, t in library.PARAMETERS}
        rows = self.rows(
            "SELECT p.code, p.name, p.coordinate_system_code, p.geodetic_crs_code, p.deprecated, c.* "
            "FROM projected_crs p JOIN conversion_table c ON c.auth_name = p.conversion_auth_name "
            "AND c.code = p.conversion_code WHERE p.auth_name = 'EPSG' AND c.auth_name = 'EPSG' "
            "AND p.geodetic_crs_auth_name = 'EPSG' AND p.coordinate_system_auth_name = 'EPSG' "
            "ORDER BY p.code")
        geogcs = self.types["geogcs"]
        for r in rows:
            code, name = r[0], r[1]
            method = r["method_code"]
            base = geogcs.get(r["geodetic_crs_code"])
            if base is None:
                self.omit("projcs", code, name, "base system %d not a catalogued geographic system"
                          % r["geodetic_crs_code"])
                continue
            if method in mapping.UNSUPPORTED_PROJECTIONS:
                self.omit("projcs", code, name, mapping.UNSUPPORTED_PROJECTIONS[method])
                continue
            if method not in mapping.PROJECTIONS:
                self.omit("projcs", code, name, "projection method %d not mapped" % method)
                continue
            unit = cs[r["coordinate_system_code"]][0]
            if unit not in self.types["linunit"]:
                self.omit("projcs", code, name, "length unit %d not in the library" % unit)
                continue
            proj = mapping.PROJECTIONS[method]
            params = self.conversion_params(r)
            raw = {c: v for c, v, _ in params}
            projection = proj.code
            keep_rotation = False
            if method in (9812, 9815):
                projection, keep_rotation = mapping.hotine_projection(method, raw)
            try:
                parms = []
                for pcode, value, uom in params:
                    lib = proj.params.get(pcode)
                    if lib is None:
                        raise values.ValueError_("EPSG parameter %d has no library parameter" % pcode)
                    if lib == mapping.XY_PLANE_ROTATION and not keep_rotation:
                        continue
                    parms.append((lib, pcode, self.projection_value(
                        value, uom, param_units[lib], base.unit, unit)))
                fixed = dict(proj.fixed)
                step, origin = mapping.orientation(projection, axes[r["coordinate_system_code"]],
                                                   proj.false_origin)
                if step is not None:
                    taken = {library_slot(lib) for lib, _, _ in parms}
                    if taken & {library_slot(lib) for lib in ORIENTATION_PARAMETERS}:
                        raise values.ValueError_("axes %s need the orientation slots, which the "
                                                 "projection uses" % (axes[r["coordinate_system_code"]],))
                    fixed.update(orientation_parameters(projection, step))
                parms = turned_false_origin(parms, origin)
                for lib, value in sorted(fixed.items()):
                    uom = FIXED_UNITS[param_units[lib]]
                    parms.append((lib, 0, self.projection_value(
                        value, uom, param_units[lib], base.unit, unit)))
            except values.ValueError_ as e:
                self.omit("projcs", code, name, str(e))
                continue
            p = self.put("projcs", Obj(code, name, r["deprecated"]))
            p.geogcs = base.code
            p.projection = projection
            p.unit = unit
            p.cs = r["coordinate_system_code"]
            p.parms = sorted(parms, key=lambda t: t[0])
            p.method = method
            p.axes = mapping.system_axes(axes[r["coordinate_system_code"]])
            p.step = step
            p.wkt1 = name

    def projection_value(self, value, uom, unit_type, angle_unit, length_unit):
        """A projection parameter in the library's convention: angles in
        the geographic system's unit, lengths in the projected system's
        unit, scales as factors."""
        if unit_type == 1:
            return values.convert_angle(value, uom, angle_unit)
        if unit_type == 2:
            return values.convert_length(value, uom, length_unit, self.linunit_factors)
        if unit_type == 3:
            return values.convert_scale(value, uom)
        return float(value)

    # -- compound ----------------------------------------------------------
    def build_compound(self):
        for r in self.rows("SELECT code, name, horiz_crs_code, vertical_crs_code, deprecated "
                           "FROM compound_crs WHERE auth_name = 'EPSG' AND horiz_crs_auth_name = 'EPSG' "
                           "AND vertical_crs_auth_name = 'EPSG' ORDER BY code"):
            h = r["horiz_crs_code"]
            htype = 1 if h in self.types["geogcs"] else 2 if h in self.types["projcs"] else 0
            if htype == 0 or r["vertical_crs_code"] not in self.types["vertcs"]:
                self.omit("hvcoordsys", r["code"], r["name"], "a component is not in the catalogue")
                continue
            c = self.put("hvcoordsys", Obj(r["code"], r["name"], r["deprecated"]))
            c.hcs = h
            c.htype = htype
            c.vcs = r["vertical_crs_code"]
            c.wkt1 = r["name"]

    # -- geographic transformations ----------------------------------------
    def geographic_end(self, code, obj_name, kind):
        """A transformation's source or target as a catalogued geographic
        system: geographic systems as they are, geocentric systems replaced
        by the principal geographic system of their datum, compound systems
        by their geographic part."""
        if code in self.types["geogcs"]:
            return code, False
        compound = self.types["hvcoordsys"].get(code)
        if compound is not None and compound.htype == 1:
            return compound.hcs, True
        xyz = self.types["gxyzcs"].get(code)
        if xyz is not None:
            g2, g3, _ = self.by_datum.get(xyz.datum, (None, None, None))
            g = g2 or g3
            if g is not None:
                return g.code, True
        return None, False

    def build_geogtran(self):
        self.by_datum = self.geographic_for_datum()
        found = []
        for r in self.rows("SELECT *, 'helmert' AS kind FROM helmert_transformation_table "
                           "WHERE auth_name = 'EPSG' AND method_auth_name = 'EPSG' "
                           "AND source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG'"):
            found.append(r)
        for r in self.rows("SELECT *, 'grid' AS kind FROM grid_transformation "
                           "WHERE auth_name = 'EPSG' AND method_auth_name = 'EPSG' "
                           "AND source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG'"):
            found.append(r)
        for r in self.rows("SELECT *, 'other' AS kind FROM other_transformation "
                           "WHERE auth_name = 'EPSG' AND method_auth_name = 'EPSG' "
                           "AND source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG'"):
            found.append(r)
        for r in self.rows("SELECT code, name FROM concatenated_operation WHERE auth_name = 'EPSG'"):
            self.omit("geogtran", r["code"], r["name"], "concatenated operation")
        self.vertical_rows = []
        for r in sorted(found, key=lambda r: r["code"]):
            method = r["method_code"]
            if method in mapping.VERTICAL_METHODS:
                self.vertical_rows.append(r)
                continue
            if method not in mapping.TRANSFORMATION_METHODS:
                reason = mapping.UNSUPPORTED_TRANSFORMATIONS.get(
                    method, "transformation method %d not a library method" % method)
                self.omit("geogtran", r["code"], r["name"], reason)
                continue
            src, src_moved = self.geographic_end(r["source_crs_code"], r["name"], "source")
            dst, dst_moved = self.geographic_end(r["target_crs_code"], r["name"], "target")
            if src is None or dst is None:
                self.omit("geogtran", r["code"], r["name"], "source or target not a catalogued geographic system")
                continue
            lib_method, kind = mapping.TRANSFORMATION_METHODS[method]
            t = Obj(r["code"], r["name"], r["deprecated"])
            t.gcs1, t.gcs2, t.method = src, dst, lib_method
            t.accuracy = float(r["accuracy"]) if r["accuracy"] is not None else 999.0
            t.description = mapping.REWORDED_REMARKS.get(r["code"], r["description"] or r["name"])
            t.exception = (1 if src_moved or dst_moved else 0)
            try:
                if kind == "helmert":
                    self.helmert_parms(t, r, method)
                elif kind == "grid":
                    self.grid_parms(t, r)
                else:
                    self.other_parms(t, r, method)
            except values.ValueError_ as e:
                self.omit("geogtran", r["code"], r["name"], str(e))
                continue
            self.put("geogtran", t)

    def helmert_parms(self, t, r, method):
        parms = []
        negate = method in mapping.POSITION_VECTOR_AS_FRAME
        if negate:
            t.exception |= 2
        if method in mapping.TIME_SPECIFIC:
            t.exception |= 16
        units = {
            "tx": r["translation_uom_code"], "rx": r["rotation_uom_code"],
            "scale_difference": r["scale_difference_uom_code"],
            "rate_tx": r["rate_translation_uom_code"], "rate_rx": r["rate_rotation_uom_code"],
            "rate_scale_difference": r["rate_scale_difference_uom_code"],
            "epoch": r["epoch_uom_code"], "px": r["pivot_uom_code"],
        }
        time_dependent = t.method in (109616, 109617)
        for column, epsg_code, _, lib in mapping.HELMERT_PARAMS:
            value = r[column]
            if value is None:
                continue
            if column.startswith("rate") or column == "epoch":
                if not time_dependent:
                    continue
            if column in ("px", "py", "pz") and t.method != 9636:
                continue
            if t.method == 9603 and column[0] in "rs":
                continue
            unit = units.get(column) or units.get(column[:-1] + "x")
            kind = mapping.TRANSFORMATION_UNITS[lib]
            if kind == "m":
                v = values.convert_translation(value, unit, self.linunit_factors)
            elif kind == "arcsec":
                v = values.convert_angle_to_arcsec(value, unit)
                if negate:
                    v = -v
            elif kind == "ppm":
                v, corrected = values.scale_difference_ppm(value, unit)
                if corrected:
                    t.exception |= 8
            elif kind == "yr":
                v = float(value)
            else:
                v = values.convert_rate(value, unit, kind)
                if negate and kind == "arcsec/yr":
                    v = -v
            parms.append((lib, epsg_code, v))
        t.parms = parms

    def grid_parms(self, t, r):
        first = r["grid_name"]
        second = r["grid2_name"]
        if second:
            # Paired files (NADCON .las/.los, NADCON5 lat/lon): the name
            # shared by the two, or the latitude file when they differ more.
            stem1, _, ext1 = first.rpartition(".")
            stem2, _, ext2 = second.rpartition(".")
            name = stem1 if stem1 == stem2 else first
        else:
            name = first
        t.texts = [name]
        t.parms = [(mapping.DATASET, 0, 0.0)]

    def other_parms(self, t, r, method):
        parms = []
        for i in range(1, 8):
            code = r["param%d_code" % i]
            if code is None:
                continue
            lib = mapping.TRANSFORMATION_PARAMS.get(code)
            if lib is None:
                if method == 9618 and code == 8604:      # Geoid undulation
                    t.exception |= 4
                    continue
                if method == 1069 and code == 1051:      # Unit conversion scalar
                    continue    # the systems' own units carry it
                raise values.ValueError_("EPSG parameter %d has no library parameter" % code)
            value, unit = r["param%d_value" % i], r["param%d_uom_code" % i]
            kind = mapping.TRANSFORMATION_UNITS[lib]
            if kind == "arcsec":
                v = values.convert_angle_to_arcsec(value, unit)
            elif kind == "deg":
                v = values.convert_angle(value, unit, 9102)
            else:
                v = values.convert_translation(value, unit, self.linunit_factors)
            parms.append((lib, code, v))
        t.parms = parms

    # -- vertical transformations ------------------------------------------
    def vertical_end(self, code):
        if code in self.types["vertcs"] or code in self.types["geogcs"]:
            return code, False
        c = self.types["hvcoordsys"].get(code)
        if c is not None:
            return c.vcs, True
        return None, False

    def build_verttran(self):
        self.types.setdefault("verttran", {})
        for r in self.vertical_rows:
            src, src_moved = self.vertical_end(r["source_crs_code"])
            dst, dst_moved = self.vertical_end(r["target_crs_code"])
            if src is None or dst is None:
                self.omit("verttran", r["code"], r["name"], "source or target not in the catalogue")
                continue
            t = Obj(r["code"], r["name"], r["deprecated"])
            t.vcs1, t.vcs2 = src, dst
            t.method = mapping.VERTICAL_METHODS[r["method_code"]]
            t.accuracy = float(r["accuracy"]) if r["accuracy"] is not None else 999.0
            t.description = r["description"] or r["name"]
            t.exception = 1 if src_moved or dst_moved else 0
            interp = r["interpolation_crs_code"] if "interpolation_crs_code" in r.keys() else None
            t.interpolation = interp or 0
            try:
                if r["kind"] == "grid":
                    self.grid_parms(t, r)
                else:
                    self.other_parms(t, r, r["method_code"])
            except values.ValueError_ as e:
                self.omit("verttran", r["code"], r["name"], str(e))
                continue
            self.put("verttran", t)

    # -- extents and usages ------------------------------------------------
    def build_extents(self):
        for r in self.rows("SELECT code, name, description, south_lat, north_lat, west_lon, east_lon "
                           "FROM extent WHERE auth_name = 'EPSG' ORDER BY code"):
            box = [r["west_lon"], r["south_lat"], r["east_lon"], r["north_lat"]]
            box = [float(v) if v is not None else 0.0 for v in box]
            self.extents[r["code"]] = (mapping.REWORDED_EXTENT_NAMES.get(r["code"], r["name"]), *box)
        tables = {
            "geodetic_crs": ("geogcs", "gxyzcs"), "projected_crs": ("projcs",),
            "vertical_crs": ("vertcs",), "compound_crs": ("hvcoordsys",),
            "geodetic_datum": ("datum",), "vertical_datum": ("vdatum",),
            "helmert_transformation": ("geogtran",), "grid_transformation": ("geogtran", "verttran"),
            "other_transformation": ("geogtran", "verttran"),
        }
        # Usage rows of EPSG objects carry no identifier of their own (their
        # auth_name is empty); the object and the extent are EPSG's.
        for r in self.rows("SELECT object_table_name, object_code, extent_code FROM usage "
                           "WHERE object_auth_name = 'EPSG' AND extent_auth_name = 'EPSG' "
                           "AND scope_auth_name = 'EPSG' AND (auth_name = 'EPSG' OR auth_name IS NULL) "
                           "ORDER BY object_table_name, object_code, extent_code"):
            for type_name in tables.get(r["object_table_name"], ()):
                obj = self.types.get(type_name, {}).get(r["object_code"])
                if obj is not None and r["extent_code"] in self.extents:
                    obj.areas.append(r["extent_code"])
                    break

    # -- aliases and deprecation -------------------------------------------
    ALIAS_TABLES = {
        "geodetic_crs": ("geogcs", "gxyzcs"), "projected_crs": ("projcs",),
        "vertical_crs": ("vertcs",), "compound_crs": ("hvcoordsys",),
        "geodetic_datum": ("datum",), "vertical_datum": ("vdatum",),
        "ellipsoid": ("spheroid",), "prime_meridian": ("primem",),
        "helmert_transformation": ("geogtran",), "grid_transformation": ("geogtran", "verttran"),
        "other_transformation": ("geogtran", "verttran"),
    }

    def read_aliases(self):
        for r in self.rows("SELECT table_name, code, alt_name FROM alias_name "
                           "WHERE auth_name = 'EPSG' AND source = 'EPSG' "
                           "ORDER BY table_name, code, alt_name"):
            alias = r["alt_name"]
            # Numeric codes of other naming systems and pointers to remarks
            # are not spellings.
            if alias.isdigit() or "alias remarks" in alias:
                continue
            for type_name in self.ALIAS_TABLES.get(r["table_name"], ()):
                obj = self.types.get(type_name, {}).get(r["code"])
                if obj is not None:
                    if alias != obj.epsg_name and alias not in obj.aliases:
                        obj.aliases.append(alias)
                    break

    DEPRECATION_TABLES = {
        "geodetic_crs": ("geogcs", "gxyzcs"), "projected_crs": ("projcs",),
        "vertical_crs": ("vertcs",), "compound_crs": ("hvcoordsys",),
        "helmert_transformation": ("geogtran",), "grid_transformation": ("geogtran", "verttran"),
        "other_transformation": ("geogtran", "verttran"),
    }

    def read_deprecations(self):
        replacements = []
        for r in self.rows("SELECT table_name, deprecated_code AS old, replacement_code AS new "
                           "FROM deprecation WHERE deprecated_auth_name = 'EPSG' "
                           "AND replacement_auth_name = 'EPSG' ORDER BY table_name, old, new"):
            replacements.append((r["table_name"], r["old"], r["new"]))
        for r in self.rows("SELECT superseded_table_name AS t, superseded_code AS old, "
                           "replacement_code AS new FROM supersession "
                           "WHERE superseded_auth_name = 'EPSG' AND replacement_auth_name = 'EPSG' "
                           "ORDER BY t, old, new"):
            replacements.append((r["t"], r["old"], r["new"]))
        for table, old, new in replacements:
            for type_name in self.DEPRECATION_TABLES.get(table, ()):
                objs = self.types.get(type_name, {})
                obj = objs.get(old)
                # Only deprecated objects are redirected: a superseded but
                # valid transformation stays what it is.
                if obj is not None and obj.deprecated and not obj.replacement and new in objs:
                    obj.replacement = new
                    break

    # -- EPSG names of methods and parameters ------------------------------
    def epsg_method_names(self, table, codes):
        """EPSG names of the methods in codes, from the method table and
        from the method names that transformation rows carry."""
        names = {}
        for r in self.rows("SELECT code, name FROM %s WHERE auth_name = 'EPSG'" % table):
            names[r["code"]] = r["name"]
        if table == "coordinate_operation_method":
            for t in ("grid_transformation", "other_transformation"):
                for r in self.rows("SELECT DISTINCT method_code, method_name FROM %s "
                                   "WHERE auth_name = 'EPSG' AND method_auth_name = 'EPSG'" % t):
                    names.setdefault(r["method_code"], r["method_name"])
        return {c: names[c] for c in codes if c in names}

    def epsg_parameter_names(self):
        names = {}
        for r in self.rows("SELECT code, name FROM conversion_param WHERE auth_name = 'EPSG'"):
            names[r["code"]] = r["name"]
        for i in range(1, 8):
            for r in self.rows("SELECT DISTINCT param{0}_code AS code, param{0}_name AS name "
                               "FROM other_transformation WHERE auth_name = 'EPSG' "
                               "AND param{0}_auth_name = 'EPSG'".format(i)):
                names.setdefault(r["code"], r["name"])
        for r in self.rows("SELECT DISTINCT grid_param_code AS code, grid_param_name AS name "
                           "FROM grid_transformation WHERE auth_name = 'EPSG' "
                           "AND grid_param_auth_name = 'EPSG'"):
            names.setdefault(r["code"], r["name"])
        return names

    # -- names -------------------------------------------------------------
    def name_objects(self):
        gcs = self.types["geogcs"]
        for g in gcs.values():
            base = "GCS_" + naming.library_name(g.epsg_name)
            if g.dimension == 3 and "3D" not in base.split("_"):
                base += "_3D"
            g.name = base
        self.unique("geogcs")
        by_datum = self.geographic_for_datum()
        for d in self.types["datum"].values():
            g2 = by_datum.get(d.code, (None,))[0]
            if g2 is not None:
                d.name = "D_" + g2.name[len("GCS_"):]
            else:
                d.name = "D_" + naming.library_name(re.sub(r" ensemble$", "", d.epsg_name))
        self.unique("datum")
        for type_name in ("spheroid", "primem", "gxyzcs", "vertcs", "vdatum", "projcs",
                          "hvcoordsys", "geogtran", "verttran"):
            for o in self.types.get(type_name, {}).values():
                o.name = naming.library_name(o.epsg_name)
            self.unique(type_name)
        self.build_gcsvcs(by_datum)

    def unique(self, type_name):
        """Cuts names to 79 characters and makes them unique under the name
        hash: of objects whose names hash alike, the live one with the
        lowest code keeps its name and every other gets "_<code>"."""
        objs = self.types.get(type_name, {})
        for o in objs.values():
            o.name = naming.cut_name(o.name)
        while True:
            groups = {}
            for o in objs.values():
                groups.setdefault(naming.name_hash(o.name), []).append(o)
            clashes = [g for g in groups.values() if len(g) > 1]
            if not clashes:
                return
            for group in clashes:
                keep = self.principal(group)
                for o in group:
                    if o is not keep:
                        suffix = "_%d" % o.code
                        o.name = naming.cut_name(o.name, 79 - len(suffix)) + suffix

    def build_gcsvcs(self, by_datum):
        rows = []
        for datum, (g2, g3, xyz) in by_datum.items():
            if g2 is None or (g3 is None and xyz is None):
                continue
            rows.append((g2.code, g3.code if g3 else 0, 0, xyz.code if xyz else 0))
        self.gcsvcs = sorted(rows)
