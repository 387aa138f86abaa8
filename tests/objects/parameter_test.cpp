// The parameter list and the parameter object: lookups by code and by name
// (with EPSG and WKT spellings through the catalogue's synonyms), values
// in and out of their units, equality rules, cloning and reports.
#include "ko.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <set>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;
using ko::test::name_of;

constexpr double kPi = std::numbers::pi;

// ---------------------------------------------------------------------------
// The list

TEST(Parmlist, RowsAreWellFormed) {
  EXPECT_EQ(ko_parmlist_tbl_cnt, 54);
  EXPECT_EQ(ko_parmlist_count(), ko_parmlist_tbl_cnt);
  const ko_parmlist_entry &end = ko_parmlist_tbl[ko_parmlist_tbl_cnt];
  EXPECT_EQ(end.code, 0);
  EXPECT_STREQ(end.name, "None");
  const std::set<uint32_t> categories = {KO_PARM_CAT_PROJECTION, KO_PARM_CAT_VERTCS, KO_PARM_CAT_GEOGTRAN,
                                         KO_PARM_CAT_VERTTRAN, KO_PARM_CAT_TRANSFORM};
  for (int i = 0; i < ko_parmlist_tbl_cnt; ++i) {
    const ko_parmlist_entry &row = ko_parmlist_tbl[i];
    SCOPED_TRACE(row.name);
    if (i > 0) {
      EXPECT_GT(row.code, ko_parmlist_tbl[i - 1].code) << "ascending codes";
    }
    EXPECT_GE(row.index, 0);
    EXPECT_LT(row.index, KO_PARM_COUNT);
    EXPECT_EQ(categories.count(row.category), 1u);
    EXPECT_LE(row.unit_type, KO_PARM_UNIT_SCALE);
    EXPECT_EQ(row.reserved, 0u);
    EXPECT_EQ(ko_parmlist_from_code(row.code), &row);
    EXPECT_EQ(ko_parmlist_from_name(row.name), &row);
    for (int j = 0; j < i; ++j) EXPECT_NE(ko_strcmp_ci(row.name, ko_parmlist_tbl[j].name), 0);
  }
  EXPECT_EQ(KO_PARM_CAT_TRANSFORM, KO_PARM_CAT_GEOGTRAN | KO_PARM_CAT_VERTTRAN);
}

// Slots the projections and transformations rely on, and those that
// several parameters share.
TEST(Parmlist, SharedSlots) {
  struct Share {
    std::initializer_list<int32_t> codes;
    int32_t slot;
  };
  const Share shares[] = {
      {{100001, 100040, 100006, 100060}, 0},  // false easting / X translation / shifts
      {{100010, 100011, 100062}, 2},          // central meridian, longitude of origin
      {{100020, 100021, 100061}, 6},          // central parallel, latitude of origin
      {{100025, 100023, 100027}, 3},          // first standard parallel
      {{100026, 100024}, 4},                  // second standard parallel
      {{100003}, 5},                          // scale factor
      {{100047, 100036}, 15},                 // grid file, option
  };
  for (const Share &share : shares)
    for (int32_t code : share.codes) EXPECT_EQ(ko_parmlist_index_from_code(code), share.slot) << code;
}

TEST(Parmlist, LookupsByCode) {
  EXPECT_EQ(ko_parmlist_from_code(0), nullptr);
  EXPECT_EQ(ko_parmlist_from_code(-100001), nullptr);
  EXPECT_EQ(ko_parmlist_from_code(100008), nullptr);
  EXPECT_EQ(ko_parmlist_index_from_code(100008), -1);
  EXPECT_EQ(ko_parmlist_default_from_code(100008), 0.0);
  EXPECT_EQ(ko_parmlist_unit_type_from_code(100008), 0u);
  EXPECT_EQ(ko_parmlist_default_from_code(100012), -75.0);
  EXPECT_EQ(ko_parmlist_default_from_code(100070), 0.6);
  EXPECT_EQ(ko_parmlist_unit_type_from_code(100004), KO_PARM_UNIT_ANGLE);
  EXPECT_EQ(ko_parmlist_unit_type_from_code(100002), KO_PARM_UNIT_LENGTH);
  EXPECT_EQ(ko_parmlist_unit_type_from_code(100078), KO_PARM_UNIT_SCALE);
}

TEST(Parmlist, LookupsByName) {
  struct Case {
    const char *name;
    int32_t code;  // 0: not found
  };
  const Case cases[] = {
      {"False_Easting", 100001},
      {"False Easting", 100001},
      {"false-easting", 100001},
      {"Latitude of natural origin", 100021},   // EPSG's spelling
      {"latitude_of_origin", 100021},           // WKT1 as other tools write it
      {"Longitude of natural origin", 100010},  // EPSG's spelling
      {"Longitude_Of_Origin", 100011},          // listed names find their own row
      {"Dataset_conus", 100047},
      {"DATASET_ntv2_0.gsb", 100047},
      {"dataset_", 100047},
      {"Dataset", 100047},  // the row's own name: underscores are ignored
      {"Datasets", 0},
      {"Falsch_Easting", 0},
      {"", 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    const ko_parmlist_entry *row = ko_parmlist_from_name(c.name);
    if (c.code == 0) {
      EXPECT_EQ(row, nullptr);
    } else {
      ASSERT_NE(row, nullptr);
      EXPECT_EQ(row->code, c.code);
    }
  }
  EXPECT_EQ(ko_parmlist_from_name(nullptr), nullptr);
}

TEST(Parmlist, ParameterFromCode) {
  ko_err err = ko::test::stale_record();
  ko_parameter *p = ko_parmlist_parameter_from_code(100003, &err);
  ASSERT_NE(p, nullptr);
  expect_no_report(err);
  EXPECT_EQ(name_of(p), "Scale_Factor");
  EXPECT_EQ(ko_parameter_value(p), 1.0);
  EXPECT_EQ(ko_parameter_unit(p), nullptr);
  EXPECT_EQ(ko_parameter_status(p), KO_STATUS_CODE);
  EXPECT_EQ(ko_object_code_internal(p), 100003);
  EXPECT_EQ(ko_parameter_code(p), 100003);
  ko_parameter_del(p);
  p = ko_parmlist_parameter_from_code_value(100010, &err, -123.0);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(ko_parameter_value(p), -123.0);
  ko_parameter_del(p);
  EXPECT_EQ(ko_parmlist_parameter_from_code(12345, &err), nullptr);
  expect_report(err, Report{4, 4, 218, "ko_parmlist_parameter_from_code", "12345"});
  EXPECT_EQ(ko_parmlist_parameter_from_code_value(100010, &err, NAN), nullptr);
  expect_report(err, Report{4, 8, 358, "ko_parameter_new_parmlist",
                            "NaN or Infinity encountered: Central_Meridian: nan"});
}

// ---------------------------------------------------------------------------
// The parameter object

TEST(Parameter, ConstructionAndCodes) {
  ko_err err = ko::test::stale_record();
  ko_parameter *p = ko_parameter_ext_new_errext("Latitude_Of_Origin", ko_unit_new_code(9105), 50.0, &err);
  ASSERT_NE(p, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_parameter_type(p), KO_TYPE_PARAMETER);
  EXPECT_EQ(ko_object_code_internal(p), 100021);
  EXPECT_EQ(ko_object_code_external(p), 100021);
  EXPECT_EQ(ko_parameter_status(p), KO_STATUS_NEW);
  EXPECT_EQ(ko_parameter_dflt_factor(p), 1.0);
  EXPECT_NEAR(ko_parameter_value_si(p), 50.0 * kPi / 200.0, 2e-16);
  EXPECT_EQ(ko_parameter_unit_type(p), KO_PARM_UNIT_ANGLE);
  ko_parameter_del(p);

  // The name is kept as given, the codes come from the list.
  p = ko_parameter_new("latitude_of_origin", 45.0);
  EXPECT_EQ(name_of(p), "latitude_of_origin");
  EXPECT_EQ(ko_object_code_internal(p), 100021);
  ko_parameter_del(p);
  p = ko_parameter_new_errext("Not_A_Parameter", 1.0, &err);
  expect_no_report(err);
  EXPECT_EQ(ko_object_code_internal(p), -1);
  EXPECT_EQ(ko_parameter_unit_type(p), KO_PARM_UNIT_NONE);
  ko_parameter_del(p);
  // No length check here: the header keeps 79 characters, nothing is reported.
  std::string long_name = "Dataset_" + std::string(100, 'x');
  p = ko_parameter_new_errext(long_name.c_str(), 0.0, &err);
  expect_no_report(err);
  EXPECT_EQ(ko_object_code_internal(p), KO_PARM_CODE_DATASET);
  EXPECT_EQ(name_of(p).size(), 79u);
  ko_parameter_del(p);
  p = ko_parameter_new(nullptr, 2.0);
  EXPECT_EQ(name_of(p), "");
  ko_parameter_del(p);
}

TEST(Parameter, BadValueOrUnitIsRefused) {
  ko_err err{};
  EXPECT_EQ(ko_parameter_new_errext("Azimuth", INFINITY, &err), nullptr);
  expect_report(err, Report{4, 8, 358, "ko_parameter_new_parmlist", "NaN or Infinity encountered: Azimuth: inf"});
  ko_areaunit *area = ko_areaunit_new_code(109401);
  EXPECT_EQ(ko_parameter_ext_new_errext("Azimuth", reinterpret_cast<ko_unit *>(area), 1.0, &err), nullptr);
  expect_report(err, Report{4, 8, 324, "ko_parameter_new_parmlist", "Azimuth"});
  ko_areaunit_del(area);
}

// ko_parameter_value reports in the default factor's unit; it returns the
// stored value untouched when the two factors agree.
TEST(Parameter, ValueInTheDefaultFactor) {
  const double arcsec = kPi / 648000.0;
  ko_parameter *rot = ko_parameter_ext_new("X_Axis_Rotation", ko_unit_new_code(9104), 0.35);
  EXPECT_NEAR(ko_parameter_value(rot), 0.35 * arcsec, 1e-20);
  ko_parameter_dflt_factor_set(rot, arcsec);
  EXPECT_EQ(ko_parameter_value(rot), 0.35);
  ko_parameter_dflt_factor_set(rot, kPi / 180.0);
  EXPECT_NEAR(ko_parameter_value(rot), 0.35 / 3600.0, 1e-17);
  ko_parameter_dflt_factor_set(rot, 0.0);
  ko_parameter_dflt_factor_set(rot, NAN);
  EXPECT_EQ(ko_parameter_dflt_factor(rot), kPi / 180.0) << "only a positive finite factor is taken";
  ko_parameter_unit_set(rot, nullptr);
  EXPECT_EQ(ko_parameter_dflt_factor(rot), 1.0);
  EXPECT_EQ(ko_parameter_value(rot), 0.35);
  ko_parameter_del(rot);

  ko_parameter *scale = ko_parameter_ext_new("Scale_Difference", ko_unit_new_code(9202), 2.5);
  ko_parameter_dflt_factor_set(scale, 1e-6);
  EXPECT_EQ(ko_parameter_value(scale), 2.5);
  EXPECT_NEAR(ko_parameter_value_si(scale), 2.5e-6, 1e-21);
  ko_parameter_del(scale);
}

TEST(Parameter, SettingValues) {
  ko_parameter *lat = ko_parameter_new("Latitude_Of_Origin", 0.0);
  EXPECT_EQ(ko_parameter_value_set_si(lat, kPi / 2), 1);
  EXPECT_NEAR(ko_parameter_value(lat), 90.0, 1e-13) << "a unitless angle is stored in degrees";
  EXPECT_EQ(ko_parameter_value_set(lat, 12.5), 1);
  EXPECT_EQ(ko_parameter_value(lat), 12.5);
  EXPECT_EQ(ko_parameter_value_set(lat, NAN), 0);
  EXPECT_EQ(ko_parameter_value_set_si(lat, INFINITY), 0);
  EXPECT_EQ(ko_parameter_value(lat), 12.5);
  ko_parameter_del(lat);

  ko_parameter *fe = ko_parameter_new("False_Easting", 0.0);
  ko_parameter_value_set_si(fe, 500000.0);
  EXPECT_EQ(ko_parameter_value(fe), 500000.0);
  ko_parameter_unit_set(fe, ko_unit_new_code(9003));
  ko_parameter_value_set_si(fe, 500000.0);
  EXPECT_NEAR(ko_parameter_value_si(fe), 500000.0, 1e-9);
  EXPECT_NEAR(ko_parameter_value(fe), 500000.0, 1e-9) << "reported in metres, the default factor";
  ko_parameter_dflt_factor_set(fe, 1200.0 / 3937.0);
  EXPECT_NEAR(ko_parameter_value(fe), 500000.0 * 3937.0 / 1200.0, 1e-8) << "stored in US survey feet";
  ko_datum *not_a_unit = ko_datum_new("D", ko_spheroid_new("S", 1.0, 0.0));
  ko_unit *before = ko_parameter_unit(fe);
  ko_parameter_unit_set(fe, reinterpret_cast<ko_unit *>(not_a_unit));
  EXPECT_EQ(ko_parameter_unit(fe), before) << "a non-unit is refused";
  ko_datum_del(not_a_unit);
  ko_parameter_del(fe);
}

TEST(Parameter, EqualityRules) {
  struct Case {
    const char *label;
    const char *name_a;
    double value_a;
    int unit_a;  // unit code, 0 none
    const char *name_b;
    double value_b;
    int unit_b;
    int equal;
  };
  const Case cases[] = {
      {"same", "False_Easting", 500000.0, 0, "False_Easting", 500000.0, 0, 1},
      {"spellings of one parameter", "False_Easting", 500000.0, 0, "false easting", 500000.0, 0, 1},
      {"synonym spelling", "Latitude_Of_Origin", 49.0, 9102, "Latitude of natural origin", 49.0, 9102, 1},
      {"same value in other units", "False_Easting", 0.3048, 9001, "False_Easting", 1.0, 9002, 1},
      {"values differ", "False_Easting", 500000.0, 0, "False_Easting", 500000.001, 0, 0},
      {"one slot, two parameters", "Central_Meridian", 3.0, 0, "Longitude_Of_Origin", 3.0, 0, 0},
      {"unlisted names with equal values", "Foo", 1.0, 0, "Bar", 1.0, 0, 1},
      {"same grid in two folders", "Dataset_a/b/conus", 0.0, 0, "Dataset_c/conus", 7.0, 0, 1},
      {"grid names ignore case", "Dataset_NTv2_0.gsb", 0.0, 0, "dataset_ntv2_0.GSB", 0.0, 0, 1},
      {"two grids", "Dataset_conus", 0.0, 0, "Dataset_alaska", 0.0, 0, 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ko_parameter *a = ko_parameter_ext_new(c.name_a, c.unit_a ? ko_unit_new_code(c.unit_a) : nullptr, c.value_a);
    ko_parameter *b = ko_parameter_ext_new(c.name_b, c.unit_b ? ko_unit_new_code(c.unit_b) : nullptr, c.value_b);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(ko_parameter_eq(a, b), c.equal);
    EXPECT_EQ(ko_object_eq(b, a), c.equal);
    ko_parameter_del(a);
    ko_parameter_del(b);
  }
}

TEST(Parameter, CloneKeepsUnitFactorAndHeader) {
  ko_parameter *p = ko_parameter_ext_new("Standard_Parallel_1", ko_unit_new_code(9105), 55.0);
  ko_parameter_dflt_factor_set(p, kPi / 200.0);
  ko_object_code_set(p, 100025, 8823, 0, 0, "EPSG", "");
  ko_parameter *c = ko_parameter_clone(p);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_parameter_eq(p, c), 1);
  EXPECT_NE(ko_parameter_unit(c), ko_parameter_unit(p));
  EXPECT_EQ(ko_unit_eq(ko_parameter_unit(c), ko_parameter_unit(p)), 1);
  EXPECT_EQ(ko_parameter_dflt_factor(c), kPi / 200.0);
  EXPECT_EQ(ko_parameter_value(c), 55.0);
  EXPECT_EQ(ko_object_code_external(c), 8823);
  EXPECT_EQ(ko_object_vector(KO_TYPE_PARAMETER), &ko_parameter_objvec);
  ko_parameter_del(p);
  ko_parameter_del(c);
}

TEST(ParameterNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *ptr : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *p = static_cast<ko_parameter *>(ptr);
    EXPECT_EQ(ko_parameter_p(p), 0);
    EXPECT_EQ(ko_parameter_value(p), 0.0);
    EXPECT_EQ(ko_parameter_value_si(p), 0.0);
    EXPECT_EQ(ko_parameter_value_set(p, 1.0), 0);
    EXPECT_EQ(ko_parameter_value_set_si(p, 1.0), 0);
    EXPECT_EQ(ko_parameter_unit(p), nullptr);
    ko_parameter_unit_set(p, nullptr);
    EXPECT_EQ(ko_parameter_dflt_factor(p), 0.0);
    ko_parameter_dflt_factor_set(p, 2.0);
    EXPECT_EQ(ko_parameter_unit_type(p), 0u);
    EXPECT_EQ(ko_parameter_clone(p), nullptr);
    EXPECT_EQ(ko_parameter_eq(p, p), 0);
    EXPECT_EQ(ko_parameter_del(p), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
}

TEST(ParameterMemory, ConstructorsAndClonesCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_parameter *p = ko_parameter_new_errext("False_Northing", 10.0, &err);
              if (p == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_parameter_new_parmlist", "False_Northing"});
                return false;
              }
              ko_parameter_del(p);
              return true;
            }),
            0);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_parameter *p = ko_parmlist_parameter_from_code(100001, nullptr);
              ko_parameter_del(p);
              return p != nullptr;
            }),
            0);
  ko_parameter *src = ko_parameter_ext_new("Azimuth", ko_unit_new_code(9102), 30.0);
  ko_object_code_set(src, 100004, 8813, 0, 0, "EPSG", "");
  ASSERT_NE(ko_parameter_authority(src), nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_parameter_clone, ko_parameter_del), 2);
  ko_parameter_del(src);
}

}  // namespace
