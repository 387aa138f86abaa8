// The whole catalogue through the factory, one test per type: every code
// builds an object of its type whose header, parts and values match its
// record (read directly from the catalogue's tables) and, where proj.db is
// at hand, EPSG's own values; its clone is equal to it; its name finds the
// same record.
#include "database/factory_support.h"

#include <cmath>
#include <set>
#include <string>

namespace {

using ko::test::check_code_and_name;
using ko::test::expect_catalogue_header;
using ko::test::for_each_record;
using ko::test::Obj;
using ko::test::proj_db_rows;
using ko::test::record;

constexpr double kArcsecond = 4.84813681109536e-06;
constexpr double kDegree = 0.017453292519943295;

bool close(double a, double b, double rel) {
  return a == b || std::fabs(a - b) <= rel * std::max(std::fabs(a), std::fabs(b));
}

std::string utf8(const ko_uchar *text) {
  char buf[256] = {};
  if (text != nullptr) ko_str_uni_to_utf8(buf, text, static_cast<int>(sizeof buf));
  return buf;
}

std::string display_name(const void *obj) {
  return utf8(ko_dispname_uname_get(ko_object_dispname(obj)));
}

// A part's own catalogue header: built from its code.
void expect_part(const void *part, uint32_t type, int32_t code) {
  expect_catalogue_header(part, type, code, KO_STATUS_CODE);
}

double angunit_factor(int32_t code) { return record<ko_db_angunit_rec>(KO_TYPE_ANGUNIT, code)->factor; }
double linunit_factor(int32_t code) { return record<ko_db_linunit_rec>(KO_TYPE_LINUNIT, code)->factor; }

// Degrees of an EPSG sexagesimal DMS value (D.MMSSsss, unit 9110).
double sexagesimal_dms(double value) {
  double sign = value < 0 ? -1.0 : 1.0;
  double v = std::fabs(value);
  double d = std::floor(v);
  double mmss = (v - d) * 100.0;
  double m = std::floor(mmss + 1e-9);
  double s = (mmss - m) * 100.0;
  return sign * (d + m / 60.0 + s / 3600.0);
}

// A unit kind's getters, through its own prefix.
struct UnitGetters {
  double (*factor)(const void *);
  ko_uchar *(*display)(const void *, ko_uchar *);
  ko_uchar *(*plural)(const void *, ko_uchar *);
};

#define KO_UNIT_GETTERS(prefix, T)                                                           \
  UnitGetters {                                                                            \
    [](const void *u) { return ko_##prefix##_factor(static_cast<const T *>(u)); },        \
        [](const void *u, ko_uchar *b) { return ko_##prefix##_display_name(static_cast<const T *>(u), b); }, \
        [](const void *u, ko_uchar *b) { return ko_##prefix##_plural(static_cast<const T *>(u), b); }       \
  }

template <class Record>
void check_units(uint32_t type, const UnitGetters &get) {
  int checked = 0;
  for_each_record(type, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const Record *>(rec);
    Obj unit = check_code_and_name(type, code);
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(ko_object_type(unit.get()), type);
    EXPECT_EQ(get.factor(unit.get()), r->factor) << code;
    ko_uchar shown[KO_UNIT_DISPNAME_SIZE];
    ko_uchar plural[KO_UNIT_DISPNAME_SIZE];
    get.display(unit.get(), shown);
    get.plural(unit.get(), plural);
    EXPECT_EQ(utf8(shown), r->display) << code;
    EXPECT_EQ(utf8(plural), r->plural) << code;
    EXPECT_EQ(display_name(unit.get()), r->display) << code;
    ++checked;
  });
  EXPECT_EQ(checked, ko::test::row(type)->data->count);
}

TEST(FactoryCatalog, LinearUnits) {
  check_units<ko_db_linunit_rec>(KO_TYPE_LINUNIT, KO_UNIT_GETTERS(linunit, ko_linunit));
}
TEST(FactoryCatalog, AngularUnits) {
  check_units<ko_db_angunit_rec>(KO_TYPE_ANGUNIT, KO_UNIT_GETTERS(angunit, ko_angunit));
}
TEST(FactoryCatalog, ScaleUnits) {
  check_units<ko_db_angunit_rec>(KO_TYPE_SCALEUNIT, KO_UNIT_GETTERS(scaleunit, ko_scaleunit));
}
TEST(FactoryCatalog, AreaUnits) {
  check_units<ko_db_linunit_rec>(KO_TYPE_AREAUNIT, KO_UNIT_GETTERS(areaunit, ko_areaunit));
}

// The generic unit is whichever linear, angular or scale unit has the code.
TEST(FactoryCatalog, GenericUnitsAreTheirKind) {
  for (uint32_t kind : {KO_TYPE_LINUNIT, KO_TYPE_ANGUNIT, KO_TYPE_SCALEUNIT}) {
    for_each_record(kind, [&](const void *rec, int32_t code) {
      Obj by_code(ko_factory_unit_from_code(code));
      Obj by_name(ko_factory_unit_from_name(ko::catalog::data_record_name(rec)));
      ASSERT_NE(by_code, nullptr) << code;
      ASSERT_NE(by_name, nullptr) << code;
      EXPECT_EQ(ko_object_type(by_code.get()), kind) << code;
      EXPECT_EQ(ko_object_code(by_name.get()), code);
    });
  }
}

TEST(FactoryCatalog, Spheroids) {
  std::map<int32_t, std::pair<double, double>> epsg;  // a (m), f
  for (const auto &r : proj_db_rows(
           "SELECT e.code, e.semi_major_axis * u.conv_factor, e.inv_flattening, "
           "e.semi_minor_axis * u.conv_factor FROM ellipsoid e JOIN unit_of_measure u ON "
           "u.auth_name = e.uom_auth_name AND u.code = e.uom_code WHERE e.auth_name = 'EPSG'")) {
    double a = std::stod(r[1]);
    double f = !r[2].empty() ? (std::stod(r[2]) == 0 ? 0.0 : 1.0 / std::stod(r[2]))
                             : (a - std::stod(r[3])) / a;
    epsg[std::stoi(r[0])] = {a, f};
  }
  int compared = 0;
  for_each_record(KO_TYPE_SPHEROID, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_spheroid_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_SPHEROID, code);
    auto *s = static_cast<ko_spheroid *>(obj.get());
    ASSERT_NE(s, nullptr);
    expect_part(ko_spheroid_unit(s), KO_TYPE_LINUNIT, r->linunit);
    EXPECT_EQ(ko_spheroid_flattening(s), r->flattening) << code;
    EXPECT_TRUE(close(ko_spheroid_axis(s), r->axis * linunit_factor(r->linunit), 1e-15)) << code;
    if (auto it = epsg.find(code); it != epsg.end()) {
      EXPECT_TRUE(close(ko_spheroid_axis(s), it->second.first, 1e-12)) << code;
      EXPECT_TRUE(close(ko_spheroid_flattening(s), it->second.second, 1e-12)) << code;
      ++compared;
    }
  });
  if (ko::test::have_proj_db()) {
    EXPECT_GT(compared, 50);
  }
}

TEST(FactoryCatalog, PrimeMeridians) {
  std::map<int32_t, double> epsg;  // degrees
  for (const auto &r : proj_db_rows(
           "SELECT p.code, p.longitude, p.uom_code, u.conv_factor FROM prime_meridian p JOIN "
           "unit_of_measure u ON u.auth_name = p.uom_auth_name AND u.code = p.uom_code "
           "WHERE p.auth_name = 'EPSG'")) {
    double value = std::stod(r[1]);
    epsg[std::stoi(r[0])] =
        r[2] == "9110" ? sexagesimal_dms(value) : value * std::stod(r[3]) / kDegree;
  }
  int compared = 0;
  for_each_record(KO_TYPE_PRIMEM, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_primem_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_PRIMEM, code);
    auto *p = static_cast<ko_primem *>(obj.get());
    ASSERT_NE(p, nullptr);
    expect_part(ko_primem_unit(p), KO_TYPE_ANGUNIT, r->angunit);
    double degrees = r->longitude * angunit_factor(r->angunit) / kDegree;
    EXPECT_TRUE(close(ko_primem_longitude(p), degrees, 1e-15)) << code;
    if (auto it = epsg.find(code); it != epsg.end()) {
      EXPECT_NEAR(ko_primem_longitude(p), it->second, 1e-9) << code;
      ++compared;
    }
  });
  if (ko::test::have_proj_db()) {
    EXPECT_EQ(compared, ko::test::row(KO_TYPE_PRIMEM)->data->count);
  }
}

TEST(FactoryCatalog, Datums) {
  std::map<int32_t, double> epochs;
  for (const auto &r : proj_db_rows("SELECT code, frame_reference_epoch FROM geodetic_datum "
                                    "WHERE auth_name = 'EPSG' AND frame_reference_epoch IS NOT NULL"))
    epochs[std::stoi(r[0])] = std::stod(r[1]);
  const bool have_epsg = ko::test::have_proj_db();
  int dynamic = 0;
  for_each_record(KO_TYPE_DATUM, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_datum_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_DATUM, code);
    auto *d = static_cast<ko_datum *>(obj.get());
    ASSERT_NE(d, nullptr);
    expect_part(ko_datum_spheroid(d), KO_TYPE_SPHEROID, r->spheroid);
    char frame[KO_NAME_SIZE];
    double epoch = ko_datum_get_dynamic(d, frame);
    const ko_db_epoch_rec *e = ko_db_builtin_epoch_lookup(ko::test::row(KO_TYPE_DATUM), code);
    EXPECT_EQ(ko_datum_is_dynamic(d), e != nullptr ? 1 : 0) << code;
    if (e != nullptr) {
      EXPECT_EQ(epoch, e->epoch) << code;
      EXPECT_STREQ(frame, ko_db_builtin_description_lookup(ko::test::row(KO_TYPE_DATUM), code)->text);
      ++dynamic;
    }
    if (have_epsg) {
      auto it = epochs.find(code);
      EXPECT_EQ(it != epochs.end(), ko_datum_is_dynamic(d) == 1) << code;
      if (it != epochs.end()) {
        EXPECT_DOUBLE_EQ(epoch, it->second) << code;
      }
    }
  });
  EXPECT_GT(dynamic, 10);
}

TEST(FactoryCatalog, GeographicSystems) {
  std::map<int32_t, int> dimension;
  // The dimension of EPSG's coordinate system (8449 is typed 2D but has
  // the 3D system 6423).
  for (const auto &r : proj_db_rows(
           "SELECT g.code, c.dimension FROM geodetic_crs g JOIN coordinate_system c ON "
           "c.auth_name = g.coordinate_system_auth_name AND c.code = g.coordinate_system_code "
           "WHERE g.auth_name = 'EPSG'"))
    dimension[std::stoi(r[0])] = std::stoi(r[1]);
  int three_d = 0;
  for_each_record(KO_TYPE_GEOGCS, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_geogcs_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_GEOGCS, code);
    auto *g = static_cast<ko_geogcs *>(obj.get());
    ASSERT_NE(g, nullptr);
    expect_part(ko_geogcs_datum(g), KO_TYPE_DATUM, r->datum);
    expect_part(ko_geogcs_primem(g), KO_TYPE_PRIMEM, r->primem);
    expect_part(ko_geogcs_unit(g), KO_TYPE_ANGUNIT, r->angunit);
    if (auto it = dimension.find(code); it != dimension.end()) {
      EXPECT_EQ(ko_geogcs_dimension(g), it->second) << code;
    }
    if (ko_geogcs_dimension(g) == 3) {
      expect_part(ko_geogcs_vert_unit(g), KO_TYPE_LINUNIT, 9001);
      ++three_d;
    } else {
      EXPECT_EQ(ko_geogcs_dimension(g), 2);
    }
    ko_metadata **md = ko_geogcs_metadata_vector(g);
    const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(ko::test::row(KO_TYPE_GEOGCS), code);
    if (area == nullptr) {
      EXPECT_EQ(md, nullptr);
    } else {
      ASSERT_NE(md, nullptr);
      EXPECT_EQ(ko_metadata_areacode(md[0]), static_cast<uint32_t>(area->area)) << code;
      const ko_db_extent_rec *box = ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, area->area);
      EXPECT_EQ(ko_metadata_gcs_extent_ptr(md[0])->north, box->north);
      EXPECT_EQ(ko_metadata_gcs_extent_ptr(md[0])->west, box->west);
      EXPECT_EQ(md[1], nullptr);
    }
  });
  EXPECT_GT(three_d, 100);
}

TEST(FactoryCatalog, Projections) {
  for_each_record(KO_TYPE_PROJECTION, [&](const void *, int32_t code) {
    Obj obj = check_code_and_name(KO_TYPE_PROJECTION, code);
    ASSERT_NE(obj, nullptr);
    EXPECT_EQ(display_name(obj.get()),
              ko_db_builtin_description_lookup(ko::test::row(KO_TYPE_PROJECTION), code)->text);
    EXPECT_NE(ko_projection_forward(static_cast<ko_projection *>(obj.get())), nullptr);
  });
}

TEST(FactoryCatalog, Methods) {
  for_each_record(KO_TYPE_METHOD, [&](const void *, int32_t code) {
    Obj obj = check_code_and_name(KO_TYPE_METHOD, code);
    ASSERT_NE(obj, nullptr);
    EXPECT_EQ(display_name(obj.get()),
              ko_db_builtin_description_lookup(ko::test::row(KO_TYPE_METHOD), code)->text);
    EXPECT_NE(ko_method_forward(static_cast<ko_method *>(obj.get())), nullptr);
  });
}

// Alone, a parameter holds the list's default; an angle's is in degrees.
TEST(FactoryCatalog, Parameters) {
  for_each_record(KO_TYPE_PARAMETER, [&](const void *, int32_t code) {
    Obj obj = check_code_and_name(KO_TYPE_PARAMETER, code);
    auto *p = static_cast<ko_parameter *>(obj.get());
    ASSERT_NE(p, nullptr);
    const ko_parmlist_entry *row = ko_parmlist_from_code(code);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(ko_parameter_value(p), row->dflt) << code;
    double si = row->unit_type == KO_PARM_UNIT_ANGLE ? row->dflt * kDegree : row->dflt;
    EXPECT_TRUE(close(ko_parameter_value_si(p), si, 1e-15)) << code;
    if (row->unit_type == KO_PARM_UNIT_ANGLE) expect_part(ko_parameter_unit(p), KO_TYPE_ANGUNIT, 9102);
  });
}

// Each parameter of a record's run, in the slot of its code, against the
// value the record stores and that value in base units (the stored value
// times factor(code)).
template <class Factor>
void expect_pool(ko_parameter *const *slots, const ko_db_parm_rec *pool, int32_t first,
                 int32_t count, const char *const *texts, Factor factor, int32_t code) {
  std::set<int> seen;
  for (int32_t i = first; i < first + count; ++i) {
    const ko_db_parm_rec &rec = pool[i];
    int slot = ko_parmlist_index_from_code(rec.code);
    if (slot < 0) continue;
    EXPECT_TRUE(seen.insert(slot).second) << code << ": slot " << slot << " twice";
    ko_parameter *p = slots[slot];
    ASSERT_NE(p, nullptr) << code << ": slot " << slot;
    EXPECT_EQ(ko_object_code(p), rec.code) << code;
    EXPECT_TRUE(close(ko_parameter_value(p), rec.value, 1e-15)) << code << " " << rec.code;
    EXPECT_TRUE(close(ko_parameter_value_si(p), rec.value * factor(rec.code), 1e-15))
        << code << " " << rec.code;
    if (rec.code == KO_PARM_CODE_DATASET && texts != nullptr) {
      EXPECT_EQ(std::string(ko_header_get_name(p)), std::string("Dataset_") + texts[rec.aux]);
    }
  }
  int filled = 0;
  for (int i = 0; i < KO_PARM_COUNT; ++i) filled += slots[i] != nullptr;
  EXPECT_EQ(filled, static_cast<int>(seen.size())) << code;
}

// Factors of the unit types: angles, lengths and scales as given, plain
// numbers 1.
auto by_unit_type(double angle, double length, double scale) {
  return [=](int32_t parameter) {
    switch (ko_parmlist_unit_type_from_code(parameter)) {
      case KO_PARM_UNIT_ANGLE: return angle;
      case KO_PARM_UNIT_LENGTH: return length;
      case KO_PARM_UNIT_SCALE: return scale;
      default: return 1.0;
    }
  };
}

TEST(FactoryCatalog, ProjectedSystems) {
  for_each_record(KO_TYPE_PROJCS, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_projcs_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_PROJCS, code);
    auto *p = static_cast<ko_projcs *>(obj.get());
    ASSERT_NE(p, nullptr);
    ko_geogcs *g = ko_projcs_geogcs(p);
    expect_part(g, KO_TYPE_GEOGCS, r->geogcs);
    expect_part(ko_projcs_unit(p), KO_TYPE_LINUNIT, r->linunit);
    ko_parameter **slots = ko_conversion_parameters_ptr(ko_projcs_conversion(p));
    ASSERT_NE(slots, nullptr);
    // Hotine_Oblique_Mercator_Azimuth_Center with a plane rotation becomes
    // Rectified_Skew_Orthomorphic_Center.
    int32_t projection = r->projection == 43037 && slots[14] != nullptr ? 43054 : r->projection;
    EXPECT_EQ(ko_object_code(ko_projcs_projection(p)), projection) << code;
    const auto *gcs = record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, r->geogcs);
    expect_pool(slots, ko_obj_projcs_parms, r->parm_first, r->parm_count, nullptr,
                by_unit_type(angunit_factor(gcs->angunit), linunit_factor(r->linunit), 1.0), code);
    ko_metadata **md = ko_projcs_metadata_vector(p);
    const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(ko::test::row(KO_TYPE_PROJCS), code);
    EXPECT_EQ(md != nullptr, area != nullptr) << code;
    if (md != nullptr && area != nullptr) {
      EXPECT_EQ(ko_metadata_areacode(md[0]), static_cast<uint32_t>(area->area));
    }
  });
}

TEST(FactoryCatalog, GeographicTransformations) {
  for_each_record(KO_TYPE_GEOGTRAN, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_geogtran_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_GEOGTRAN, code);
    auto *gt = static_cast<ko_geogtran *>(obj.get());
    ASSERT_NE(gt, nullptr);
    expect_part(ko_geogtran_geogcs1(gt), KO_TYPE_GEOGCS, r->gcs1);
    expect_part(ko_geogtran_geogcs2(gt), KO_TYPE_GEOGCS, r->gcs2);
    expect_part(ko_geogtran_method(gt), KO_TYPE_METHOD, r->method);
    EXPECT_EQ(ko_geogtran_accuracy(gt), r->accuracy);
    ko_parameter *slots[KO_PARM_COUNT];
    ko_geogtran_parameters(gt, slots);
    expect_pool(slots, ko_obj_geogtran_parms, r->parm_first, r->parm_count,
                ko_obj_geogtran_parm_texts, by_unit_type(kArcsecond, 1.0, 1e-6), code);
    char version[KO_OPVERSION_SIZE];
    ko_geogtran_get_opversion(gt, version);
    EXPECT_STREQ(version, ko_db_builtin_version_lookup(ko::test::row(KO_TYPE_GEOGTRAN), code)->version);
    const ko_db_text_rec *remarks = ko_db_builtin_description_lookup(ko::test::row(KO_TYPE_GEOGTRAN), code);
    char remark[768] = {};
    ko_remark_text(ko_geogtran_remark(gt), remark);
    EXPECT_STREQ(remark, remarks != nullptr ? remarks->text : "") << code;
    const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(ko::test::row(KO_TYPE_GEOGTRAN), code);
    EXPECT_EQ(ko_geogtran_metadata(gt) != nullptr, area != nullptr) << code;
    if (area != nullptr) {
      EXPECT_EQ(ko_metadata_areacode(ko_geogtran_metadata(gt)), static_cast<uint32_t>(area->area));
    }
  });
}

TEST(FactoryCatalog, VerticalDatums) {
  for_each_record(KO_TYPE_VDATUM, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_datum_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_VDATUM, code);
    ASSERT_NE(obj, nullptr);
    char anchor[KO_ANCHOR_SIZE];
    EXPECT_STREQ(ko_vdatum_anchor(static_cast<ko_vdatum *>(obj.get()), anchor), r->anchor);
  });
}

TEST(FactoryCatalog, VerticalSystems) {
  std::map<int32_t, std::pair<int, double>> epsg;  // direction, metres per unit
  for (const auto &r : proj_db_rows(
           "SELECT v.code, a.orientation, u.conv_factor FROM vertical_crs v JOIN axis a ON "
           "a.coordinate_system_auth_name = v.coordinate_system_auth_name AND "
           "a.coordinate_system_code = v.coordinate_system_code JOIN unit_of_measure u ON "
           "u.auth_name = a.uom_auth_name AND u.code = a.uom_code WHERE v.auth_name = 'EPSG'"))
    epsg[std::stoi(r[0])] = {r[1] == "down" ? -1 : 1, std::stod(r[2])};
  int depths = 0;
  for_each_record(KO_TYPE_VERTCS, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_vertcs_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_VERTCS, code);
    auto *v = static_cast<ko_vertcs *>(obj.get());
    ASSERT_NE(v, nullptr);
    expect_part(ko_vertcs_vdatum(v), KO_TYPE_VDATUM, r->vdatum);
    expect_part(ko_vertcs_unit(v), KO_TYPE_LINUNIT, r->linunit);
    EXPECT_EQ(ko_vertcs_direction(v), r->direction) << code;
    EXPECT_EQ(ko_vertcs_vertical_shift(v), 0.0);
    depths += ko_vertcs_direction(v) == KO_VERTCS_DEPTH;
    if (auto it = epsg.find(code); it != epsg.end()) {
      EXPECT_EQ(ko_vertcs_direction(v), it->second.first) << code;
      EXPECT_TRUE(close(ko_linunit_factor(ko_vertcs_unit(v)), it->second.second, 1e-12)) << code;
    }
  });
  EXPECT_GT(depths, 5);
}

TEST(FactoryCatalog, GeocentricSystems) {
  for_each_record(KO_TYPE_GXYZCS, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_gxyzcs_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_GXYZCS, code);
    auto *g = static_cast<ko_gxyzcs *>(obj.get());
    ASSERT_NE(g, nullptr);
    expect_part(ko_gxyzcs_datum(g), KO_TYPE_DATUM, r->datum);
    expect_part(ko_gxyzcs_primem(g), KO_TYPE_PRIMEM, r->primem);
    expect_part(ko_gxyzcs_unit(g), KO_TYPE_LINUNIT, r->linunit);
  });
}

TEST(FactoryCatalog, CompoundSystems) {
  for_each_record(KO_TYPE_HVCOORDSYS, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_hvcoordsys_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_HVCOORDSYS, code);
    auto *c = static_cast<ko_hvcoordsys *>(obj.get());
    ASSERT_NE(c, nullptr);
    uint32_t horizontal = static_cast<uint32_t>(r->hcs_type);
    expect_part(ko_hvcoordsys_coordsys(c), horizontal, r->hcs);
    EXPECT_EQ(ko_object_type(ko_hvcoordsys_coordsys(c)), horizontal);
    expect_part(ko_hvcoordsys_vertcs(c), KO_TYPE_VERTCS, r->vcs);
  });
}

TEST(FactoryCatalog, VerticalAndAdjustmentMethods) {
  for (uint32_t type : {KO_TYPE_VTMETHOD, KO_TYPE_HTMETHOD}) {
    for_each_record(type, [&](const void *, int32_t code) {
      Obj obj = check_code_and_name(type, code);
      ASSERT_NE(obj, nullptr);
      EXPECT_EQ(display_name(obj.get()),
                ko_db_builtin_description_lookup(ko::test::row(type), code)->text);
    });
  }
}

// A vertical transformation's end that is no vertical system is a
// geographic 3D system: its ellipsoidal heights, on its datum, in metres.
void expect_vertical_end(ko_vertcs *v, int32_t code) {
  if (ko::test::record<ko_db_vertcs_rec>(KO_TYPE_VERTCS, code) != nullptr) {
    expect_part(v, KO_TYPE_VERTCS, code);
    return;
  }
  const auto *g = ko::test::record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, code);
  ASSERT_NE(g, nullptr) << code;
  expect_part(v, KO_TYPE_GEOGCS, code);
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(v), 1);
  expect_part(ko_vertcs_datum(v), KO_TYPE_DATUM, g->datum);
  EXPECT_EQ(ko_linunit_factor(ko_vertcs_unit(v)), 1.0);
}

TEST(FactoryCatalog, VerticalTransformations) {
  // Stored units of the pool's angles (the others are metres or plain).
  auto factor = [](int32_t parameter) {
    switch (parameter) {
      case 100061:
      case 100062: return kDegree;
      case 100063:
      case 100064: return kArcsecond;
      default: return 1.0;
    }
  };
  for_each_record(KO_TYPE_VERTTRAN, [&](const void *rec, int32_t code) {
    const auto *r = static_cast<const ko_db_verttran_rec *>(rec);
    Obj obj = check_code_and_name(KO_TYPE_VERTTRAN, code);
    auto *vt = static_cast<ko_verttran *>(obj.get());
    ASSERT_NE(vt, nullptr);
    expect_vertical_end(ko_verttran_vertcs1(vt), r->vcs1);
    expect_vertical_end(ko_verttran_vertcs2(vt), r->vcs2);
    expect_part(ko_verttran_vtmethod(vt), KO_TYPE_VTMETHOD, r->method);
    EXPECT_EQ(ko_verttran_accuracy(vt), r->accuracy);
    // The system of a grid's coordinates, when the record names one.
    if (r->interpolation != 0) {
      expect_part(ko_verttran_coordsys(vt), KO_TYPE_GEOGCS, r->interpolation);
    } else {
      EXPECT_EQ(ko_verttran_coordsys(vt), nullptr);
    }
    ko_parameter *slots[KO_PARM_COUNT];
    ko_verttran_parameters(vt, slots);
    expect_pool(slots, ko_obj_verttran_parms, r->parm_first, r->parm_count,
                ko_obj_verttran_parm_texts, factor, code);
    char version[KO_NAME_SIZE];
    EXPECT_STREQ(ko_verttran_get_opversion(vt, version),
                 ko_db_builtin_version_lookup(ko::test::row(KO_TYPE_VERTTRAN), code)->version);
  });
}

}  // namespace
