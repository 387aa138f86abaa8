"""Turns the built catalogue into the C++ table sources: per type the data
records, name hashes, synonyms, symbolic constants, descriptions,
versions, areas, deprecations, code changes, axes and the rest, in the
record layouts of include/ko.h."""

import collections

import build
import emit
import library
import mapping
import naming

TYPE_CODES = {
    "geogcs": 0x1, "projcs": 0x2, "gxyzcs": 0x4, "vertcs": 0x8, "hvcoordsys": 0x10,
    "datum": 0x20, "vdatum": 0x40, "geogtran": 0x80, "linunit": 0x100, "angunit": 0x200,
    "primem": 0x400, "spheroid": 0x800, "method": 0x1000, "htmethod": 0x2000,
    "projection": 0x4000, "parameter": 0x8000, "verttran": 0x80000, "vtmethod": 0x100000,
    "scaleunit": 0x400000, "extent": 0x2000000, "areaunit": 0x4000000,
}

# Registry order and the kinds of table each type has.
COMMON = ("data", "name", "version", "defstring", "description", "deprecated", "codechange")
KINDS = collections.OrderedDict([
    ("geogcs", COMMON + ("areacode", "areainfo", "gcsvcs", "axis")),
    ("projcs", COMMON + ("areacode", "areainfo", "axis")),
    ("vertcs", COMMON + ("areacode", "areainfo", "gcsvcs", "axis")),
    ("gxyzcs", COMMON + ("areacode", "gcsvcs", "axis")),
    ("hvcoordsys", COMMON + ("areacode",)),
    ("datum", COMMON + ("ensemble", "epoch")),
    ("vdatum", COMMON + ("ensemble", "epoch")),
    ("geogtran", COMMON + ("areacode", "exception")),
    ("verttran", COMMON + ("areacode", "exception")),
    ("angunit", COMMON),
    ("linunit", COMMON),
    ("scaleunit", COMMON),
    ("areaunit", COMMON),
    ("primem", COMMON),
    ("spheroid", COMMON),
    ("htmethod", ("data", "name", "version", "defstring", "description")),
    ("method", ("data", "name", "version", "defstring", "description")),
    ("vtmethod", ("data", "name", "version", "defstring", "description")),
    ("projection", ("data", "name", "version", "defstring", "description")),
    ("parameter", ("data", "name", "version", "defstring", "description")),
    ("extent", ("data",)),
])

# The registry row's fifteen table slots, in order.
REGISTRY_SLOTS = ("deprecated", "codechange", "synonym", "data", "name", "version", "defstring",
                  "areainfo", "areacode", "description", "exception", "gcsvcs", "axis",
                  "ensemble", "epoch")

RECORD_TYPES = {
    "name": "ko_db_name_rec", "version": "ko_db_version_rec", "defstring": "ko_db_text_rec",
    "description": "ko_db_text_rec", "areacode": "ko_db_areacode_rec",
    "areainfo": "ko_db_areainfo_rec", "deprecated": "ko_db_pair_rec",
    "codechange": "ko_db_pair_rec", "axis": "ko_db_pair_rec", "exception": "ko_db_pair_rec",
    "gcsvcs": "ko_db_gcsvcs_rec", "ensemble": "ko_db_ensemble_rec", "epoch": "ko_db_epoch_rec",
    "synonym": "ko_db_synonym_rec",
}
DATA_RECORDS = {
    "geogcs": "ko_db_geogcs_rec", "projcs": "ko_db_projcs_rec", "vertcs": "ko_db_vertcs_rec",
    "gxyzcs": "ko_db_gxyzcs_rec", "hvcoordsys": "ko_db_hvcoordsys_rec",
    "datum": "ko_db_datum_rec", "vdatum": "ko_db_datum_rec", "geogtran": "ko_db_geogtran_rec",
    "verttran": "ko_db_verttran_rec", "angunit": "ko_db_angunit_rec",
    "linunit": "ko_db_linunit_rec", "scaleunit": "ko_db_angunit_rec",
    "areaunit": "ko_db_linunit_rec", "primem": "ko_db_primem_rec",
    "spheroid": "ko_db_spheroid_rec", "htmethod": "ko_db_method_rec",
    "method": "ko_db_method_rec", "vtmethod": "ko_db_method_rec",
    "projection": "ko_db_method_rec", "parameter": "ko_db_method_rec",
    "extent": "ko_db_extent_rec",
}

DEFSTRING_PREFIX = {
    "geogcs": ("KO_GCS_", "GCS_"), "projcs": ("KO_PCS_", None), "vertcs": ("KO_VCS_", None),
    "gxyzcs": ("KO_XYZ_", None), "hvcoordsys": ("KO_HVC_", None), "datum": ("KO_DATUM_", "D_"),
    "vdatum": ("KO_VDATUM_", None), "geogtran": ("KO_GTF_", None), "verttran": ("KO_VTF_", None),
    "angunit": ("KO_ANGUNIT_", None), "linunit": ("KO_LINUNIT_", None),
    "scaleunit": ("KO_SCALEUNIT_", None), "areaunit": ("KO_AREAUNIT_", None),
    "primem": ("KO_PRIMEM_", None), "spheroid": ("KO_SPHEROID_", None),
    "htmethod": ("KO_HTMETHOD_", None), "method": ("KO_METHOD_", None),
    "vtmethod": ("KO_VTMETHOD_", None), "projection": ("KO_PROJECTION_", None),
    "parameter": ("KO_PARM_", None),
}

FILES = collections.OrderedDict([
    ("catalog_units.cpp", ("angunit", "linunit", "scaleunit", "areaunit")),
    ("catalog_geodetic.cpp", ("spheroid", "primem", "datum", "vdatum")),
    ("catalog_geogcs.cpp", ("geogcs", "gxyzcs")),
    ("catalog_vertical.cpp", ("vertcs", "hvcoordsys", "verttran")),
    ("catalog_projcs.cpp", ("projcs",)),
    ("catalog_geogtran.cpp", ("geogtran",)),
    ("catalog_lists.cpp", ("htmethod", "method", "vtmethod", "projection", "parameter")),
    ("catalog_extent.cpp", ("extent",)),
])
# The projected systems' text tables go to a file of their own to keep
# each file quick to compile.
SPLIT_KINDS = {"projcs": ("synonym", "description", "defstring", "version", "areacode", "areainfo")}

DESCRIPTION_LIMIT = 255


class Hex(int):
    pass


def fold(name):
    """A name's bytes with ASCII capitals in lower case: the order of
    ko_strcmp_i."""
    return bytes(b + 32 if 65 <= b <= 90 else b for b in name.encode("utf-8"))


def cut_text(text, limit=DESCRIPTION_LIMIT):
    text = " ".join(text.split())
    if len(text.encode("utf-8")) <= limit:
        return text
    while len(text.encode("utf-8")) > limit - 3:
        text = text[: text.rstrip().rfind(" ")] if " " in text[10:] else text[:-1]
    return text.rstrip(" ,;") + "..."


# The library's method-like lists, each as (code, name) pairs.
LISTS = {
    "htmethod": library.HTMETHODS,
    "method": library.METHODS,
    "vtmethod": library.VTMETHODS,
    "projection": library.PROJECTIONS,
    "parameter": [(c, n) for c, n, _, _ in library.PARAMETERS],
}


def continent(box):
    """A coarse region of an area of use from its bounding box, for the
    browsing paths of the areainfo tables."""
    west, south, east, north = box
    width = east - west if east >= west else east + 360 - west
    if width >= 300 and north - south >= 100:
        return "World"
    if north <= -60:
        return "Antarctica"
    lat = (south + north) / 2
    lon = west + width / 2
    if lon > 180:
        lon -= 360
    if lon < -170 or lon > 165:
        return "Oceania"
    if lon < -25:
        return "North America" if lat > 7.5 or (lat > 5 and lon < -77) else "South America"
    if lon < 60:
        if lat > 35 and not (lon > 35 and lat < 42):
            return "Europe" if lon < 45 or lat > 50 else "Asia"
        if lon > 34 and lat > 12:
            return "Asia"
        return "Africa"
    if lat < -10 or (lon > 130 and lat < 0):
        return "Oceania"
    return "Asia"


def area_path(extent):
    """Region and country of an area of use: "Europe/France".  Areas named
    after the world, the Arctic or Antarctica keep that name as region;
    areas without a bounding box go under "Unknown"."""
    name = extent[0]
    country = name.split(" - ")[0]
    for region in ("World", "Arctic", "Antarctica"):
        if name.startswith(region):
            return "%s/%s" % (region, country)
    if not any(extent[1:5]):
        return "Unknown/%s" % country
    return "%s/%s" % (continent(extent[1:5]), country)


class Renderer:
    def __init__(self, catalog):
        self.c = catalog
        self.version = catalog.version.lstrip("v")
        self.files = collections.OrderedDict()
        self.synonym_index = {}     # type -> symbol of the synonyms' by-name index
        self.data_index = {}        # type -> symbol of the data's by-name index
        self.present = {}           # type -> {kind: symbol}

    def source(self, name):
        if name not in self.files:
            self.files[name] = emit.Source(name, self.c.version, self.c.date)
        return self.files[name]

    # -- records ----------------------------------------------------------
    def objects(self, t):
        if t in LISTS:
            return self.list_objects(t)
        if t == "extent":
            return []
        return [self.c.types.get(t, {})[k] for k in sorted(self.c.types.get(t, {}))]

    def list_objects(self, t):
        """A method-like list as catalogue objects.  Codes below 100000 of
        methods are EPSG's; projection and parameter codes the library's."""
        slots = {c: slot for c, _, slot, _ in library.PARAMETERS}
        out = []
        for code, name in sorted(LISTS[t]):
            o = build.Obj(code, None)
            o.name = name
            o.description = name.replace("_", " ")
            epsg_code = t in ("htmethod", "vtmethod") or (t == "method" and code < 100000)
            o.authority = "EPSG" if epsg_code else build.LIBRARY_AUTHORITY
            o.slot = slots.get(code, 0) if t == "parameter" else 0
            out.append(o)
        return out

    def data_row(self, t, o):
        if t == "geogcs":
            return (o.name, o.code, o.datum, o.primem, o.unit, 0)
        if t == "projcs":
            return (o.name, o.code, o.geogcs, o.projection, o.unit, 0, o.parm_first,
                    len(o.parms), 0)
        if t == "gxyzcs":
            return (o.name, o.code, o.datum, o.primem, o.unit)
        if t == "vertcs":
            return (o.name, o.code, o.vdatum, o.unit, o.direction, 0)
        if t == "hvcoordsys":
            return (o.name, o.code, o.hcs, o.vcs, o.htype)
        if t == "datum":
            return (o.name, o.code, o.spheroid, o.anchor)
        if t == "vdatum":
            return (o.name, o.code, 0, o.anchor)
        if t == "geogtran":
            return (o.name, o.code, o.gcs1, o.gcs2, o.method, 0, 0, float(o.accuracy),
                    o.parm_first, len(o.parms))
        if t == "verttran":
            return (o.name, o.code, o.vcs1, o.vcs2, o.method, 0, 0, float(o.accuracy),
                    o.parm_first, len(o.parms), o.interpolation, 0, 0)
        if t in ("angunit", "scaleunit"):
            return (o.name, o.code, 0, o.display, o.plural, o.abbreviation, float(o.factor))
        if t in ("linunit", "areaunit"):
            return (o.name, o.code, 0, o.display, o.plural, o.abbreviation, float(o.factor),
                    o.related, 0)
        if t == "primem":
            return (o.name, o.code, o.unit, float(o.longitude))
        if t == "spheroid":
            return (o.name, o.code, o.unit, float(o.axis), float(o.flattening))
        return (o.name, o.code, getattr(o, "slot", 0))

    # -- synonyms ---------------------------------------------------------
    def synonym_candidates(self, t, objs):
        """(synonym, library name, authority, rank, preference)."""
        rows = []
        for o in objs:
            pref = (o.deprecated, getattr(o, "dimension", 2), o.code)
            if getattr(o, "epsg_name", None):
                rows.append((o.epsg_name, o.name, "EPSG", 0, pref))
            for alias in getattr(o, "aliases", []):
                rows.append((alias, o.name, "EPSG", 1, pref))
            if getattr(o, "wkt1", None):
                rows.append((o.wkt1, o.name, "PostGIS", 0, pref))
        rows.extend(self.list_synonyms(t))
        return rows

    def list_synonyms(self, t):
        rows = []
        names = {}
        if t == "projection":
            names = dict(library.PROJECTIONS)
            usage = collections.Counter(p.method for p in self.c.types["projcs"].values())
            epsg = self.c.epsg_method_names("conversion_method", mapping.PROJECTIONS)
            best = {}
            for m, proj in mapping.PROJECTIONS.items():
                k = (usage[m], -m)
                if proj.code not in best or k > best[proj.code][0]:
                    best[proj.code] = (k, m)
            for m, proj in sorted(mapping.PROJECTIONS.items()):
                if m not in epsg:
                    continue
                rank = 0 if best[proj.code][1] == m else 1
                rows.append((epsg[m], names[proj.code], "EPSG", rank, (False, 2, m)))
            for i, (spelling, code) in enumerate(mapping.WKT1_PROJECTIONS):
                rows.append((spelling, names[code], "PostGIS", 0 if i == 0 or
                             mapping.WKT1_PROJECTIONS[i - 1][1] != code else 1, (False, 2, i)))
        elif t == "parameter":
            names = {c: n for c, n, _, _ in library.PARAMETERS}
            epsg = self.c.epsg_parameter_names()
            # An EPSG parameter that means different library parameters in
            # different methods is named after the meaning the catalogue's
            # systems use most (methods without systems break ties).
            usage = collections.Counter(p.method for p in self.c.types["projcs"].values())
            votes = collections.Counter()
            for m, proj in mapping.PROJECTIONS.items():
                for e, lib in proj.params.items():
                    votes[(e, lib)] += 1 + 1000 * usage[m]
            chosen = {}
            for (e, lib), n in sorted(votes.items(), key=lambda kv: (-kv[1], kv[0])):
                chosen.setdefault(e, lib)
            for e, lib in mapping.TRANSFORMATION_PARAMS.items():
                chosen.setdefault(e, lib)
            for _, e, name, lib in mapping.HELMERT_PARAMS:
                chosen.setdefault(e, lib)
                epsg.setdefault(e, name)
            primary = {}
            for e in sorted(chosen):
                primary.setdefault(chosen[e], e)
            for e, lib in sorted(chosen.items()):
                if e in epsg:
                    rows.append((epsg[e], names[lib], "EPSG", 0 if primary[lib] == e else 1,
                                 (False, 2, e)))
            for spelling, code in mapping.WKT1_PARAMETERS:
                rows.append((spelling, names[code], "PostGIS", 0, (False, 2, code)))
        elif t in ("method", "vtmethod"):
            table = mapping.TRANSFORMATION_METHODS if t == "method" else mapping.VERTICAL_METHODS
            lst = library.METHODS if t == "method" else library.VTMETHODS
            names = dict(lst)
            epsg = self.c.epsg_method_names("coordinate_operation_method", table)
            for m in sorted(table):
                if m not in epsg:
                    continue
                lib = table[m][0] if t == "method" else table[m]
                rows.append((epsg[m], names[lib], "EPSG", 0 if m == lib else 1, (False, 2, m)))
        elif t == "htmethod":
            epsg = self.c.epsg_method_names("coordinate_operation_method",
                                            {c: c for c, _ in library.HTMETHODS})
            for c, n in library.HTMETHODS:
                if c in epsg:
                    rows.append((epsg[c], n, "EPSG", 0, (False, 2, c)))
        return rows

    def synonyms(self, t, objs):
        best = {}
        for syn, name, auth, rank, pref in self.synonym_candidates(t, objs):
            if syn == name:
                continue
            key = (naming.synonym_key(syn), auth.lower())
            cand = (rank, pref, syn, name, auth)
            if key not in best or cand < best[key]:
                best[key] = cand
        rows = sorted(best.items(), key=lambda kv: (kv[0][0], kv[1][4].encode(), kv[1][2].encode()))
        records = [(v[2], v[3], v[4], 0) for _, v in rows]
        ranks = [v[0] for _, v in rows]
        # The owners' index: (code of the object a synonym names, position)
        # sorted by code, authority, then the primary spelling first.
        code_of = {o.name: o.code for o in objs}
        order = sorted(range(len(records)), key=lambda i: (
            code_of[records[i][1]], records[i][2].lower().encode(), ranks[i],
            naming.synonym_key(records[i][0])))
        return records, [(code_of[records[i][1]], i) for i in order]

    # -- the tables of one type -------------------------------------------
    def kind_rows(self, t, kind, objs):
        if kind == "name":
            rows = sorted((naming.name_hash(o.name), o.code) for o in objs)
            hashes = [h for h, _ in rows]
            if len(set(hashes)) != len(hashes):
                raise SystemExit("duplicate name hash in %s" % t)
            return [(Hex(h), c) for h, c in rows]
        if kind == "version":
            return [(o.code, 0, o.authority,
                     self.version if o.authority == "EPSG" else "1") for o in objs]
        if kind == "defstring":
            prefix, strip = DEFSTRING_PREFIX[t]
            texts = {}
            for o in objs:
                d = naming.defstring(prefix, o.name, strip)
                if d in texts.values():
                    d += "_%d" % o.code
                texts[o.code] = d
            return [(o.code, 0, texts[o.code]) for o in objs]
        if kind == "description":
            return [(o.code, 0, cut_text(o.description or o.name)) for o in objs]
        if kind == "areacode":
            return [(o.code, a, i) for o in objs for i, a in enumerate(o.areas)]
        if kind == "areainfo":
            areas = sorted({a for o in objs for a in o.areas})
            return [(a, 0, area_path(self.c.extents[a]), self.c.extents[a][0]) for a in areas]
        if kind == "deprecated":
            return [(o.code, 1) for o in objs if o.deprecated]
        if kind == "codechange":
            return [(o.code, o.replacement) for o in objs if o.replacement]
        if kind == "axis":
            return [(o.code, o.cs) for o in objs if o.cs]
        if kind == "exception":
            return [(o.code, o.exception) for o in objs if o.exception]
        if kind == "ensemble":
            return [(c, m, s, 0, a) for c, m, s, a in self.c.ensembles.get(t, [])]
        if kind == "epoch":
            return [(c, 0, e) for c, e in self.c.epochs.get(t, [])]
        raise KeyError(kind)

    def render_type(self, t, filename):
        """All tables of one type; the kinds in SPLIT_KINDS go to a second
        file."""
        objs = self.objects(t)
        symbols = self.present.setdefault(t, {})
        if t == "extent":
            self.render_extent(self.source(filename))
            symbols["data"] = "ko_obj_extent_data_tbl"
            return
        for kind in KINDS[t] + ("synonym",):
            fname = filename
            if kind in SPLIT_KINDS.get(t, ()):
                fname = filename.replace(".cpp", "_text.cpp")
            src = self.source(fname)
            if kind == "data":
                self.render_data(src, t, objs)
            elif kind == "synonym":
                self.render_synonyms(src, t, objs)
            elif kind == "gcsvcs":
                self.render_ties(src, t)
            else:
                self.render_kind(src, t, kind, self.kind_rows(t, kind, objs))
            symbols[kind] = ("ko_obj_%s_synonym_tbl_rtn" % t if kind == "synonym"
                             else "ko_obj_%s_%s_tbl" % (t, kind))

    def render_kind(self, src, t, kind, rows, ctype=None):
        symbol = "ko_obj_%s_%s_tbl" % (t, kind)
        array = "k_%s_%s" % (t, kind)
        ctype = ctype or RECORD_TYPES[kind]
        if kind == "name":
            src.array(ctype, array, rows)
            src.short_header(symbol, array, len(rows))
            return
        if rows:
            src.array(ctype, array, rows)
        src.long_header(symbol, ctype, array, len(rows))

    def render_data(self, src, t, objs):
        """Parameter pool, data records, and the positions of the records
        in the order of their names with ASCII letters folded (the
        case-insensitive name search)."""
        if t in ("projcs", "geogtran", "verttran"):
            self.render_pool(src, t, objs)
        self.render_kind(src, t, "data", [self.data_row(t, o) for o in objs], DATA_RECORDS[t])
        order = sorted(range(len(objs)), key=lambda i: fold(objs[i].name))
        index = "%s_data_by_name" % t
        src.text("\nnamespace ko::catalog {\nextern const uint32_t %s[];\n" % index)
        src.numbers("uint32_t", index, order)
        src.text("}  // namespace ko::catalog\n")
        self.data_index[t] = index

    def render_synonyms(self, src, t, objs):
        """Synonym records, their routine, and the index by owner code."""
        symbol = "ko_obj_%s_synonym_tbl" % t
        array = "k_%s_synonym" % t
        records, order = self.synonyms(t, objs)
        if records:
            src.array("ko_db_synonym_rec", array, records)
        src.short_header(symbol, array, len(records))
        src.text("extern \"C\" const ko_db_list *ko_obj_%s_synonym_tbl_rtn(void) "
                 "{ return &%s; }\n" % (t, symbol))
        index = "%s_synonyms_by_owner" % t
        src.text("\nnamespace ko::catalog {\nextern const SynonymOwner %s[];" % index)
        src.array("SynonymOwner", index, order or [(0, 0)], static=False)
        src.text("}  // namespace ko::catalog\n")
        self.synonym_index[t] = index

    def render_ties(self, src, t):
        """One table of 2D/3D/vertical/geocentric ties serves the three
        system types; the geographic file defines it."""
        rows = self.c.gcsvcs
        src.text("\nnamespace ko::catalog {\nextern const ko_db_gcsvcs_rec kGcsVcs[];\n")
        if t == "geogcs":
            src.text("const ko_db_gcsvcs_rec kGcsVcs[] = {\n")
            for r in rows:
                src.text("    {%s},\n" % ", ".join(str(v) for v in r))
            src.text("};\n")
        src.text("}  // namespace ko::catalog\n")
        src.long_header("ko_obj_%s_gcsvcs_tbl" % t, "ko_db_gcsvcs_rec", "ko::catalog::kGcsVcs",
                        len(rows))

    def render_pool(self, src, t, objs):
        rows = []
        texts = []
        for o in objs:
            o.parm_first = len(rows)
            for lib, aux, value in o.parms:
                if lib == mapping.DATASET:
                    aux = len(texts)
                    texts.append(o.texts[0])
                rows.append((lib, aux, float(value)))
        # Declared extern "C" in ko.h.
        src.array("ko_db_parm_rec", "ko_obj_%s_parms" % t, rows, static=False)
        src.text("extern \"C\" const int32_t ko_obj_%s_parms_cnt = %d;\n" % (t, len(rows)))
        if t != "projcs":
            if texts:
                src.text("\nextern \"C\" const char *const ko_obj_%s_parm_texts[] = {\n" % t)
                for x in texts:
                    src.text("    %s,\n" % emit.cstr(x))
                src.text("};\n")
            else:
                src.text("extern \"C\" const char *const ko_obj_%s_parm_texts[] = {nullptr};\n" % t)
            src.text("extern \"C\" const int32_t ko_obj_%s_parm_texts_cnt = %d;\n" % (t, len(texts)))

    def render_extent(self, src):
        rows = [(code, 0, e[0], e[1], e[2], e[3], e[4]) for code, e in sorted(self.c.extents.items())]
        src.array("ko_db_extent_rec", "k_extent_data", rows)
        src.long_header("ko_obj_extent_data_tbl", "ko_db_extent_rec", "k_extent_data", len(rows))

    # -- registry ---------------------------------------------------------
    def render_registry(self):
        src = self.source("catalog_registry.cpp")
        src.text("\nnamespace ko::catalog {\n")
        for t in KINDS:
            if t in self.data_index:
                src.text("extern const SynonymOwner %s[];\n" % self.synonym_index[t])
                src.text("extern const uint32_t %s[];\n" % self.data_index[t])
        src.text("\nextern const TypeIndex kTypeIndex[] = {\n")
        for t in KINDS:
            if t in self.data_index:
                src.text("    {0x%Xu, %s, %s},\n" % (TYPE_CODES[t], self.synonym_index[t],
                                                 self.data_index[t]))
        src.text("    {0u, nullptr, nullptr},\n};\n}  // namespace ko::catalog\n")
        src.text("\nextern \"C\" const ko_db_builtin_entry ko_db_builtin_registry[] = {\n")
        for t in KINDS:
            slots = []
            for slot in REGISTRY_SLOTS:
                sym = self.present.get(t, {}).get(slot)
                if sym is None:
                    slots.append("nullptr")
                elif slot == "synonym":
                    slots.append(sym)
                else:
                    slots.append("&" + sym)
            src.text("    {0x%Xu, %s},\n" % (TYPE_CODES[t], ", ".join(slots)))
        src.text("    {0u, %s},\n};\n" % ", ".join(["nullptr"] * len(REGISTRY_SLOTS)))
        self.render_ranges(src)
        src.text("\nextern \"C\" const ko_db_source ko_db_builtin_source = {%s, %s, %s, %s};\n" % (
            emit.cstr("EPSG"), emit.cstr(self.c.version), emit.cstr(self.c.date),
            emit.cstr("https://epsg.org/terms-of-use.html")))

    def render_ranges(self, src):
        """Code ranges per type: the EPSG code span and, for types with
        library-defined members, the library's own range."""
        for t in ("geogcs", "projcs", "datum", "geogtran", "spheroid", "linunit"):
            objs = self.objects(t)
            epsg = [o.code for o in objs if o.authority == "EPSG"]
            own = [o.code for o in objs if o.authority != "EPSG"]
            rows = [(1024, 32767, "EPSG")] if epsg and max(epsg) <= 32767 else \
                   [(min(epsg), max(epsg), "EPSG")] if epsg else []
            if own:
                rows.append((100000, 199999, "KO"))
            used = len(rows)
            rows.append((0, 0, ""))
            array = "k_%s_ranges" % t
            src.array("ko_db_range_rec", array, rows)
            src.text("extern \"C\" const ko_db_ranges ko_coderanges_tbl_%s = {0x%Xu, %d, %d, %s};\n"
                     % (t, TYPE_CODES[t], used, len(rows), array))

    def render(self):
        for filename, types in FILES.items():
            for t in types:
                self.render_type(t, filename)
        self.render_registry()
        out = collections.OrderedDict()
        for name, s in self.files.items():
            out[name] = s.render()
        return out


def render(catalog):
    return Renderer(catalog).render()


def docs_markdown(catalog):
    """The generated part of docs/catalog.md: counts, the method mappings
    as the generator applies them, and every EPSG object left out."""
    r = Renderer(catalog)
    out = ["### Contents\n", "| type | records | deprecated | synonyms |", "|---|---|---|---|"]
    for t in KINDS:
        if t == "extent":
            out.append("| extent | %d | | |" % len(catalog.extents))
            continue
        objs = r.objects(t)
        records, _ = r.synonyms(t, objs)
        out.append("| %s | %d | %d | %d |" % (t, len(objs), sum(1 for o in objs if o.deprecated),
                                            len(records)))
    projections = dict(library.PROJECTIONS)
    names = {c: n for c, n, _, _ in library.PARAMETERS}
    usage = collections.Counter(p.method for p in catalog.types["projcs"].values())
    epsg = catalog.epsg_method_names("conversion_method", mapping.PROJECTIONS)
    out += ["", "### Projection methods\n",
            "| EPSG method | library projection | fixed parameters | systems |", "|---|---|---|---|"]
    for m, proj in sorted(mapping.PROJECTIONS.items()):
        fixed = ", ".join("%s = %g" % (names[c], v) for c, v in sorted(proj.fixed.items()))
        if proj.false_origin != mapping.EAST_NORTH:
            fixed += "%sfalse origin added along (%s)" % (", " if fixed else "",
                                                         ", ".join(proj.false_origin))
        label = projections[proj.code]
        if m in (9812, 9815):
            alt = 43053 if m == 9812 else 43054
            label += " (%d %s when the grid is skewed)" % (alt, projections[alt])
        out.append("| %d %s | %d %s | %s | %d |" % (m, epsg.get(m, ""), proj.code, label,
                                                     fixed, usage[m]))
    turned = [p for p in sorted(catalog.types["projcs"].values(), key=lambda o: o.code)
              if p.step is not None and p.step != (1.0, 1.0, 0.0)]
    out += ["", "Systems whose axes are not the projection's plane coordinates, with the "
            "orientation written for them (X_Scale, Y_Scale, XY_Plane_Rotation):\n",
            "| EPSG code | name | axes | orientation |", "|---|---|---|---|"]
    for p in turned:
        out.append("| %d | %s | %s | %g, %g, %g |" % (p.code, p.name, ", ".join(p.axes), *p.step))
    methods = dict(library.METHODS)
    tusage = collections.Counter(t_.method for t_ in catalog.types["geogtran"].values())
    epsg = catalog.epsg_method_names("coordinate_operation_method", mapping.TRANSFORMATION_METHODS)
    out += ["", "### Transformation methods\n", "| EPSG method | library method |", "|---|---|"]
    for m, (lib, _) in sorted(mapping.TRANSFORMATION_METHODS.items()):
        out.append("| %d %s | %d %s |" % (m, epsg.get(m, ""), lib, methods[lib]))
    out.append("\nTransformations per library method: %s.\n" % ", ".join(
        "%s %d" % (methods[k], v) for k, v in sorted(tusage.items())))
    vt = dict(library.VTMETHODS)
    epsg = catalog.epsg_method_names("coordinate_operation_method", mapping.VERTICAL_METHODS)
    out += ["### Vertical transformation methods\n", "| EPSG method | library method |", "|---|---|"]
    for m, lib in sorted(mapping.VERTICAL_METHODS.items()):
        out.append("| %d %s | %d %s |" % (m, epsg.get(m, ""), lib, vt[lib]))
    counts = collections.Counter(x[0] for x in catalog.left_out)
    out += ["", "### Objects left out\n",
            "Counts: %s.\n" % ", ".join("%s %d" % kv for kv in sorted(counts.items())),
            "| type | EPSG code | EPSG name | reason |", "|---|---|---|---|"]
    for kind, code, name, reason in sorted(catalog.left_out, key=lambda x: (x[0], x[1])):
        out.append("| %s | %d | %s | %s |" % (kind, code, name.replace("|", "/"), reason))
    return "\n".join(out) + "\n"
