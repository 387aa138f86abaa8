// Conversions and projected coordinate systems: construction and its
// reports, the unit rules, the parameter fix, the Hotine special case, the
// parameter array, equality, cloning and clean failure.
#include "ko.h"
#include "objects/object_support.h"
#include "objects/projcs.h"
#include "support/failing_alloc.h"
#include "support/projcs_fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::kDegree;
using ko::test::kFootUs;
using ko::test::kGrad;
using ko::test::Report;

constexpr const char *kPcsSource = "ko_projcs_ext_new_errext";
constexpr const char *kConvSource = "ko_conversion_ext_new_errext";

std::string name_of(const void *obj) {
  char buf[KO_NAME_SIZE];
  return ko_object_name(obj, buf);
}

ko_unit *as_unit(void *u) { return static_cast<ko_unit *>(u); }

ko_linunit *foot_us() { return ko_linunit_new_code(9003); }
ko_linunit *meter() { return ko_linunit_new_code(9001); }

ko_axis *axis(const char *name, int direction, int order, ko_unit *unit) {
  return ko_axis_new(name, "", direction, unit, order);
}

std::array<double, KO_PARM_COUNT> parm_array(const ko_conversion *c) {
  std::array<double, KO_PARM_COUNT> out{};
  EXPECT_EQ(ko_conversion_parm_array(c, out.data()), 1);
  return out;
}

// ---------------------------------------------------------------------------
// Conversion

TEST(Conversion, ConstructionReports) {
  std::array<ko_parameter *, KO_PARM_COUNT> none{};
  struct Case {
    const char *what;
    const char *name;
    bool projection;
    bool array;
    Report want;
  } const cases[] = {
      {"no projection, unnamed", "", false, true,
       {4, 8, 328, kConvSource, "Null or invalid projection object argument"}},
      {"no projection, named", "C", false, true, {4, 8, 328, kConvSource, "C"}},
      {"no array", "", true, false, {4, 8, 330, kConvSource, "Null parameters array argument"}},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    ko_projection *projection =
        c.projection ? ko_projlist_projection_from_code(43006, nullptr) : nullptr;
    ko_err err = ko::test::stale_record();
    EXPECT_EQ(ko_conversion_ext_new_errext(c.name, projection, c.array ? none.data() : nullptr,
                                           &err),
              nullptr);
    expect_report(err, c.want);
    ko_projection_del(projection);
  }
}

TEST(Conversion, ValidityCheckOfTheProjectionDecides) {
  // Albers needs both standard parallels: without the second it is refused
  // with the projection's own report, and the caller keeps everything.
  ko_err err{};
  EXPECT_EQ(ko::test::conversion("A", 43007,
                                 {{"False_Easting", 0.0},
                                  {"False_Northing", 0.0},
                                  {"Central_Meridian", 0.0},
                                  {"Standard_Parallel_1", 30.0},
                                  {"Latitude_Of_Origin", 0.0}},
                                 &err),
            nullptr);
  expect_report(err, Report{4, 8, 347, "A", "Standard_Parallel_2"});

  // A missing false northing is only a warning: the conversion is made.
  ko_conversion *c = ko::test::conversion(
      "A", 43007,
      {{"False_Easting", 0.0},
       {"Central_Meridian", 0.0},
       {"Standard_Parallel_1", 30.0},
       {"Standard_Parallel_2", 60.0},
       {"Latitude_Of_Origin", 0.0}},
      &err);
  ASSERT_NE(c, nullptr);
  expect_report(err, Report{2, 8, 347, "A", "False_Northing"});
  ko_conversion_del(c);
}

TEST(Conversion, LongNameWarnsAndShortFormsTakeTheProjectionName) {
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  parms[2] = ko_parameter_new("Central_Meridian", 15.0);
  std::string long_name(100, 'n');
  ko_err err = ko::test::stale_record();
  ko_conversion *c = ko_conversion_ext_new_errext(
      long_name.c_str(), ko_projlist_projection_from_code(43006, nullptr), parms.data(), &err);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(err.number, 354);
  EXPECT_EQ(err.severity, 2);
  EXPECT_EQ(name_of(c), long_name.substr(0, 79));
  // The conversion took the parameters; the caller's array is its own.
  EXPECT_EQ(ko_conversion_parameters_ptr(c)[2], parms[2]);
  EXPECT_NE(ko_conversion_parameters_ptr(c), parms.data());
  ko_conversion_del(c);

  std::array<ko_parameter *, KO_PARM_COUNT> more{};
  more[2] = ko_parameter_new("Central_Meridian", 15.0);
  c = ko_conversion_new(ko_projlist_projection_from_code(43005, nullptr), more.data());
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(name_of(c), "Gauss_Kruger");
  ko_conversion_del(c);
}

TEST(Conversion, ParameterArrayRules) {
  const double k30 = 30 * std::numbers::pi / 180;
  const double k45 = 45 * std::numbers::pi / 180;
  struct Case {
    const char *what;
    std::initializer_list<ko::test::ParmDef> parms;
    double slot3, slot4, slot5;
  };
  // Angular parameters carry an explicit degree unit, so the conversion
  // alone (no projected system) reads them in radians.
  auto deg = [] { return as_unit(ko_angunit_new_code(9102)); };
  const Case cases[] = {
      {"only the first standard parallel fills both",
       {{"Central_Meridian", 0.0, deg()}, {"Standard_Parallel_1", 30.0, deg()}}, k30, k30, 1.0},
      {"only the second standard parallel fills both",
       {{"Central_Meridian", 0.0, deg()}, {"Standard_Parallel_2", 45.0, deg()}}, k45, k45, 1.0},
      {"both standard parallels stay apart",
       {{"Central_Meridian", 0.0, deg()},
        {"Standard_Parallel_1", 30.0, deg()},
        {"Standard_Parallel_2", 45.0, deg()}},
       k30, k45, 1.0},
      {"a slot mate counts as the parallel",
       {{"Central_Meridian", 0.0, deg()}, {"Latitude_Of_1st_Point", 30.0, deg()}}, k30, k30,
       1.0},
      {"a given scale factor is kept",
       {{"Central_Meridian", 0.0, deg()}, {"Scale_Factor", 0.9996}}, 0.0, 0.0, 0.9996},
      {"a given scale factor of zero is kept",
       {{"Central_Meridian", 0.0, deg()}, {"Scale_Factor", 0.0}}, 0.0, 0.0, 0.0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    // Transverse_Mercator has no parameter function of its own.
    ko_conversion *conv = ko::test::conversion("C", 43006, c.parms);
    ASSERT_NE(conv, nullptr);
    auto out = parm_array(conv);
    EXPECT_EQ(out[3], c.slot3);
    EXPECT_EQ(out[4], c.slot4);
    EXPECT_EQ(out[5], c.slot5);
    for (int i : {0, 1, 6, 7, 14, 23}) EXPECT_EQ(out[i], 0.0) << "slot " << i;
    ko_conversion_del(conv);
  }
}

TEST(Conversion, ParameterFunctionRunsBeforeTheParallelRule) {
  // Krovak's parameter function supplies the pseudo standard parallel
  // 78°30' and the cone azimuth 30°17'17.30311" (IOGP guidance note 7-2,
  // method 9819) when they are absent; the empty slot 4 then copies slot 3.
  auto deg = [] { return as_unit(ko_angunit_new_code(9102)); };
  ko_conversion *c = ko::test::conversion("K", 43039,
                                          {{"False_Easting", 0.0},
                                           {"False_Northing", 0.0},
                                           {"Longitude_Of_Center", 24.833333333, deg()},
                                           {"Latitude_Of_Center", 49.5, deg()}});
  ASSERT_NE(c, nullptr);
  auto out = parm_array(c);
  const double pseudo = 78.5 * std::numbers::pi / 180;
  EXPECT_NEAR(out[3], pseudo, 1e-15);
  EXPECT_EQ(out[4], out[3]);
  EXPECT_NEAR(out[7], (30 + 17.0 / 60 + 17.30311 / 3600) * std::numbers::pi / 180, 1e-15);
  ko_conversion_del(c);
}

TEST(Conversion, MethodSetTakesOnlyAProjection) {
  ko_conversion *c = ko::test::utm33n_conversion();
  ASSERT_NE(c, nullptr);
  ko_projection *tm = ko_conversion_method(c);
  ko_unit *not_a_projection = as_unit(meter());
  ko_conversion_method_set(c, reinterpret_cast<ko_projection *>(not_a_projection));
  ko_conversion_method_set(c, nullptr);
  ko_conversion_method_set(c, tm);  // the one it holds: kept, not deleted
  EXPECT_EQ(ko_conversion_method(c), tm);
  EXPECT_EQ(ko_object_code_internal(tm), 43006);
  ko_unit_del(not_a_projection);
  ko_conversion_del(c);
}

TEST(Conversion, EqualityCloneAndRegistry) {
  ko_conversion *a = ko::test::utm33n_conversion();
  ko_conversion *b = ko_conversion_clone(a);
  ASSERT_NE(b, nullptr);
  EXPECT_NE(ko_conversion_parameters_ptr(a)[2], ko_conversion_parameters_ptr(b)[2]);
  EXPECT_EQ(ko_conversion_eq(a, b), 1);
  EXPECT_EQ(ko_object_vector(KO_TYPE_CONVERSION), &ko_conversion_objvec);
  EXPECT_EQ(ko_object_eq(a, b), 1);

  // Gauss_Kruger and Transverse_Mercator are one projection.
  ko_conversion_method_set(b, ko_projlist_projection_from_code(43005, nullptr));
  EXPECT_EQ(ko_conversion_eq(a, b), 1);

  // A changed value, a missing parameter, another name: not equal.
  ko_parameter_value_set(ko_conversion_parameters_ptr(b)[0], 500001.0);
  EXPECT_EQ(ko_conversion_eq(a, b), 0);
  ko_parameter_value_set(ko_conversion_parameters_ptr(b)[0], 500000.0);
  EXPECT_EQ(ko_conversion_eq(a, b), 1);
  ko_parameter **parms = ko_conversion_parameters_ptr(b);
  parms[1] = ko_parameter_del(parms[1]);
  EXPECT_EQ(ko_conversion_eq(a, b), 0);
  EXPECT_EQ(ko_conversion_eq(b, a), 0);
  ko_conversion_del(b);

  b = static_cast<ko_conversion *>(ko_object_clone(a));
  ko_header_set_name(b, "Other");
  EXPECT_EQ(ko_conversion_eq(a, b), 0);
  EXPECT_EQ(ko_object_del(b), nullptr);
  ko_conversion_del(a);
}

// ---------------------------------------------------------------------------
// Projected system: construction

TEST(Projcs, ConstructionReportsInOrder) {
  struct Case {
    const char *what;
    const char *name;
    bool geogcs, conversion;
    int dimension;
    bool bad_axes;
    bool angular_unit;
    Report want;
  } const cases[] = {
      {"no geographic system", "", false, true, 2, false, false,
       {4, 8, 331, kPcsSource, "Null or invalid geographic CS object argument"}},
      {"no geographic system before no conversion", "P", false, false, 2, false, false,
       {4, 8, 331, kPcsSource, "P"}},
      {"no conversion", "", true, false, 2, false, false,
       {4, 8, 328, kPcsSource, "Null or invalid projection object argument"}},
      {"dimension 3 on a 2D geographic system", "", true, true, 3, false, false,
       {4, 8, 488, kPcsSource, "Invalid dimension"}},
      {"dimension 1", "P", true, true, 1, false, false, {4, 8, 488, kPcsSource, "P"}},
      {"dimension before axes", "P", true, true, 4, true, false, {4, 8, 488, kPcsSource, "P"}},
      {"two east axes", "", true, true, 2, true, false,
       {4, 8, 476, kPcsSource, "Duplicate axis"}},
      {"an angular unit", "", true, true, 2, false, true,
       {4, 8, 323, kPcsSource, "Null or invalid linear unit object argument"}},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    ko_geogcs *g = c.geogcs ? ko::test::wgs84() : nullptr;
    ko_conversion *conv = c.conversion ? ko::test::utm33n_conversion() : nullptr;
    std::array<ko_axis *, 2> axes = {axis("E", KO_AXIS_EAST, 1, nullptr),
                                     axis("E2", KO_AXIS_EAST, 2, nullptr)};
    ko_angunit *unit = c.angular_unit ? ko_angunit_new_code(9102) : nullptr;
    ko_err err = ko::test::stale_record();
    EXPECT_EQ(ko_projcs_ext_new_errext(c.name, g, conv, c.dimension,
                                       c.bad_axes ? axes.data() : nullptr,
                                       reinterpret_cast<ko_linunit *>(unit), nullptr, nullptr,
                                       &err),
              nullptr);
    expect_report(err, c.want);
    // A failed constructor leaves the arguments with the caller, unchanged.
    EXPECT_EQ(ko_geogcs_p(g), c.geogcs ? 1 : 0);
    EXPECT_EQ(ko_conversion_p(conv), c.conversion ? 1 : 0);
    if (conv != nullptr) {
      EXPECT_EQ(ko_parameter_unit(ko_conversion_parameters_ptr(conv)[2]), nullptr);
    }
    ko_geogcs_del(g);
    ko_conversion_del(conv);
    for (ko_axis *a : axes) ko_axis_del(a);
    ko_angunit_del(unit);
  }
}

// A 3D WGS 84 geographic system whose height axis is in `vunit`.
ko_geogcs *wgs84_3d(ko_linunit *vunit) {
  std::array<ko_axis *, 3> axes = {
      axis("Lon", KO_AXIS_EAST, 1, as_unit(ko_angunit_new_code(9102))),
      axis("Lat", KO_AXIS_NORTH, 2, as_unit(ko_angunit_new_code(9102))),
      axis("h", KO_AXIS_UP, 3, as_unit(vunit))};
  return ko_geogcs_ext_new("GCS_WGS_1984_3D",
                           ko_datum_new("D_WGS_1984",
                                        ko_spheroid_new("WGS_1984", ko::test::kWgs84A,
                                                        ko::test::kWgs84F)),
                           nullptr, 3, axes.data(), nullptr, nullptr, nullptr);
}

TEST(Projcs, MismatchedUnits) {
  struct Case {
    const char *what;
    int dimension;
    ko_linunit *(*given)();
    ko_linunit *(*x)();
    ko_linunit *(*h)();
    ko_linunit *(*geog_h)();
  } const cases[] = {
      {"given foot, axis metre", 2, foot_us, meter, nullptr, meter},
      {"given metre, first axis metre, third foot", 3, meter, meter, foot_us, meter},
      {"given metre, third axis foot", 3, meter, nullptr, foot_us, meter},
      {"system in feet, geographic heights in metres", 3, foot_us, nullptr, nullptr, meter},
      {"axes disagree, third axis unlike the geographic heights", 3, nullptr, meter, foot_us,
       meter},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    ko_geogcs *g = wgs84_3d(c.geog_h());
    ASSERT_NE(g, nullptr);
    ko_conversion *conv = ko::test::utm33n_conversion();
    std::array<ko_axis *, 3> axes = {
        axis("X", KO_AXIS_EAST, 1, c.x != nullptr ? as_unit(c.x()) : nullptr),
        axis("Y", KO_AXIS_NORTH, 2, nullptr),
        axis("H", KO_AXIS_UP, 3, c.h != nullptr ? as_unit(c.h()) : nullptr)};
    ko_linunit *given = c.given != nullptr ? c.given() : nullptr;
    ko_err err{};
    EXPECT_EQ(ko_projcs_ext_new_errext("", g, conv, c.dimension, axes.data(), given, nullptr,
                                       nullptr, &err),
              nullptr);
    expect_report(err, Report{4, 8, 477, kPcsSource, "Mismatched units"});
    // The axes keep their units after a failure.
    if (c.x != nullptr) {
      EXPECT_NE(ko_axis_unit(axes[0]), nullptr);
    }
    ko_geogcs_del(g);
    ko_conversion_del(conv);
    for (ko_axis *a : axes) ko_axis_del(a);
    ko_linunit_del(given);
  }
}

TEST(Projcs, UnitField) {
  // No unit, no axes: a new "Meter".
  ko_projcs *p = ko::test::utm33n();
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(name_of(ko_projcs_linunit(p)), "Meter");
  EXPECT_EQ(ko_linunit_factor(ko_projcs_unit(p)), 1.0);
  EXPECT_EQ(ko_projcs_vert_unit(p), nullptr);
  EXPECT_EQ(ko_projcs_dimension(p), 2);
  ko_projcs_del(p);

  // A given unit is kept as it is.
  ko_linunit *foot = foot_us();
  p = ko::test::utm33n(foot);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(ko_projcs_linunit(p), foot);
  EXPECT_EQ(ko_projcs_unit(p), foot);
  ko_projcs_del(p);

  // Axes in feet and no unit: the system keeps a clone of the axes' unit,
  // and the axes lose theirs.
  std::array<ko_axis *, 2> axes = {axis("X", KO_AXIS_EAST, 1, as_unit(foot_us())),
                                    axis("Y", KO_AXIS_NORTH, 2, as_unit(foot_us()))};
  p = ko_projcs_ext_new("P", ko::test::wgs84(), ko::test::utm33n_conversion(), 2, axes.data(),
                        nullptr, nullptr, nullptr);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(ko_axis_unit(axes[0]), nullptr);
  EXPECT_EQ(ko_axis_unit(axes[1]), nullptr);
  EXPECT_EQ(ko_projcs_axis(p, 1), axes[1]);
  EXPECT_EQ(ko_projcs_axis(p, 2), nullptr);
  EXPECT_EQ(ko_linunit_factor(ko_projcs_linunit(p)), kFootUs);
  EXPECT_EQ(ko_projcs_unit(p), ko_projcs_linunit(p));
  ko_projcs_del(p);

  // Three axes, horizontal in feet and height in metres, no unit given: the
  // axes keep their units and the system has no unit field.
  std::array<ko_axis *, 3> axes3 = {axis("X", KO_AXIS_EAST, 1, as_unit(foot_us())),
                                     axis("Y", KO_AXIS_NORTH, 2, as_unit(foot_us())),
                                     axis("H", KO_AXIS_UP, 3, as_unit(meter()))};
  p = ko_projcs_ext_new("P", wgs84_3d(meter()), ko::test::utm33n_conversion(), 3, axes3.data(),
                        nullptr, nullptr, nullptr);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(ko_projcs_linunit(p), nullptr);
  EXPECT_EQ(ko_projcs_unit(p), reinterpret_cast<ko_linunit *>(ko_axis_unit(axes3[0])));
  EXPECT_EQ(ko_linunit_factor(ko_projcs_unit(p)), kFootUs);
  EXPECT_EQ(ko_linunit_factor(ko_projcs_vert_unit(p)), 1.0);
  // The false easting (no unit) is read in the first axis's unit.
  EXPECT_EQ(ko_parameter_value_si(ko_conversion_parameters_ptr(ko_projcs_conversion(p))[0]),
            500000.0 * kFootUs);
  ko_projcs *copy = ko_projcs_clone(p);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_projcs_linunit(copy), nullptr);
  EXPECT_EQ(ko_projcs_eq(p, copy), 1);
  ko_projcs_del(copy);
  ko_projcs_del(p);

  // Three axes without units on a metre height: one "Meter" for all.
  std::array<ko_axis *, 3> plain = {axis("X", KO_AXIS_EAST, 1, nullptr),
                                     axis("Y", KO_AXIS_NORTH, 2, nullptr),
                                     axis("H", KO_AXIS_UP, 3, nullptr)};
  p = ko_projcs_ext_new("P", wgs84_3d(meter()), ko::test::utm33n_conversion(), 3, plain.data(),
                        nullptr, nullptr, nullptr);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(name_of(ko_projcs_vert_unit(p)), "Meter");
  ko_projcs_del(p);
}

TEST(Projcs, ParametersAreFixedToTheSystemsUnits) {
  // Geographic system in grads, projected system in US survey feet: the
  // unitless angles are grads, the unitless lengths feet, the scale factor
  // a ratio, and a parameter with its own unit keeps it.
  ko_conversion *conv = ko::test::conversion(
      "C", 43006,
      {{"False_Easting", 500000.0, as_unit(meter())},
       {"False_Northing", 1000.0},
       {"Central_Meridian", 50.0},
       {"Scale_Factor", 0.9996},
       {"Latitude_Of_Origin", 10.0}});
  ko_projcs *p = ko::test::projcs("P", ko::test::wgs84(ko_angunit_new_code(9105)), conv,
                                  foot_us());
  ASSERT_NE(p, nullptr);
  ko_parameter **parms = ko_conversion_parameters_ptr(conv);
  struct Expect {
    int slot;
    const char *unit;
    double si;
    double value;  // in the system's units
  } const expects[] = {
      {0, "Meter", 500000.0, 500000.0 / kFootUs},
      {1, "Foot_US", 1000.0 * kFootUs, 1000.0},
      {2, "Grad", 50.0 * kGrad, 50.0},
      {5, "Unity", 0.9996, 0.9996},
      {6, "Grad", 10.0 * kGrad, 10.0},
  };
  for (const Expect &e : expects) {
    SCOPED_TRACE(e.slot);
    EXPECT_EQ(name_of(ko_parameter_unit(parms[e.slot])), e.unit);
    EXPECT_EQ(ko_parameter_value_si(parms[e.slot]), e.si);
    EXPECT_NEAR(ko_parameter_value(parms[e.slot]), e.value, 1e-9 * std::fabs(e.value));
  }
  // Running the fix again changes nothing.
  EXPECT_EQ(ko_projcs_parameters_fix(p), 1);
  EXPECT_EQ(name_of(ko_parameter_unit(parms[0])), "Meter");
  EXPECT_EQ(ko_parameter_value_si(parms[2]), 50.0 * kGrad);
  ko_projcs_del(p);
}

TEST(Projcs, HotineAzimuthCenterWithPlaneRotationBecomesRectifiedSkew) {
  for (bool rotation : {true, false}) {
    SCOPED_TRACE(rotation);
    ko_conversion *conv =
        rotation ? ko::test::conversion("H", 43037,
                                        {{"False_Easting", 0.0},
                                         {"False_Northing", 0.0},
                                         {"Scale_Factor", 0.99984},
                                         {"Azimuth", 53.31581},
                                         {"Longitude_Of_Center", 115.0},
                                         {"Latitude_Of_Center", 4.0},
                                         {"XY_Plane_Rotation", 53.13010236111111}})
                 : ko::test::conversion("H", 43037,
                                        {{"False_Easting", 0.0},
                                         {"False_Northing", 0.0},
                                         {"Scale_Factor", 0.99984},
                                         {"Azimuth", 53.31581},
                                         {"Longitude_Of_Center", 115.0},
                                         {"Latitude_Of_Center", 4.0}});
    ko_projcs *p = ko::test::projcs("P", ko::test::wgs84(), conv);
    ASSERT_NE(p, nullptr);
    ko_projection *projection = ko_projcs_projection(p);
    EXPECT_EQ(ko_object_code_internal(projection), rotation ? 43054 : 43037);
    EXPECT_EQ(name_of(projection), rotation ? "Rectified_Skew_Orthomorphic_Center"
                                            : "Hotine_Oblique_Mercator_Azimuth_Center");
    EXPECT_EQ(ko_projcs_special_cases(p), 1);
    EXPECT_EQ(ko_object_code_internal(ko_projcs_projection(p)), rotation ? 43054 : 43037);
    ko_projcs_del(p);
  }
}

// A system with everything a constructor takes: axes, a unit, metadata,
// a remark, codes and an authority.
ko_projcs *dressed_utm33n() {
  std::array<ko_axis *, 2> axes = {axis("E", KO_AXIS_EAST, 1, nullptr),
                                    axis("N", KO_AXIS_NORTH, 2, nullptr)};
  ko_gcs_extent box{9, 0, 21, 84, 0, 0};
  auto **metadata = static_cast<ko_metadata **>(ko_memalloc(2 * sizeof(ko_metadata *)));
  metadata[0] = ko_metadata_new("area", &box, 2862);
  metadata[1] = nullptr;
  ko_projcs *p = ko_projcs_ext_new("WGS_1984_UTM_Zone_33N", ko::test::wgs84(),
                                   ko::test::utm33n_conversion(), 2, axes.data(), foot_us(),
                                   metadata, ko_remark_new("zone 33"));
  ko_object_code_set(p, 32633, 32633, 0, 0, "EPSG", "");
  return p;
}

TEST(Projcs, ParameterArrayAndLongName) {
  ko_projcs *p = ko::test::utm33n();
  ASSERT_NE(p, nullptr);
  std::array<double, KO_PARM_COUNT> out{};
  ASSERT_EQ(ko_projcs_parm_array(p, out.data()), 1);
  EXPECT_EQ(out[0], 500000.0);
  EXPECT_EQ(out[2], 15.0 * kDegree);
  EXPECT_EQ(out[5], 0.9996);
  EXPECT_EQ(ko_projcs_parm_array(p, nullptr), 0);
  ko_projcs_del(p);

  // A name beyond 79 characters is a warning; the system keeps 79.
  std::string long_name(90, 'u');
  ko_err err = ko::test::stale_record();
  p = ko_projcs_new_errext(long_name.c_str(), ko::test::wgs84(), ko::test::utm33n_conversion(),
                           nullptr, &err);
  ASSERT_NE(p, nullptr);
  expect_report(err, Report{2, 8, 354, kPcsSource, long_name.c_str()});
  EXPECT_EQ(name_of(p), long_name.substr(0, 79));
  ko_projcs_del(p);
}

TEST(Projcs, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *p = static_cast<ko_projcs *>(obj);
    auto *c = static_cast<ko_conversion *>(obj);
    std::array<double, KO_PARM_COUNT> out{};
    out[0] = 42.0;
    EXPECT_EQ(ko_projcs_p(p), 0);
    EXPECT_EQ(ko_projcs_geogcs(p), nullptr);
    EXPECT_EQ(ko_projcs_conversion(p), nullptr);
    EXPECT_EQ(ko_projcs_projection(p), nullptr);
    EXPECT_EQ(ko_projcs_linunit(p), nullptr);
    EXPECT_EQ(ko_projcs_unit(p), nullptr);
    EXPECT_EQ(ko_projcs_vert_unit(p), nullptr);
    EXPECT_EQ(ko_projcs_dimension(p), 0);
    EXPECT_EQ(ko_projcs_axis(p, 0), nullptr);
    EXPECT_EQ(ko_projcs_metadata_vector(p), nullptr);
    EXPECT_EQ(ko_projcs_remark(p), nullptr);
    EXPECT_EQ(ko_projcs_constants(p), nullptr);
    EXPECT_EQ(ko_projcs_parm_array(p, out.data()), 0);
    EXPECT_EQ(ko_projcs_parameters_fix(p), 0);
    EXPECT_EQ(ko_projcs_special_cases(p), 0);
    EXPECT_EQ(ko_projcs_eq(p, p), 0);
    EXPECT_EQ(ko_projcs_eqnn(p, p), 0);
    EXPECT_EQ(ko_projcs_clone(p), nullptr);
    EXPECT_EQ(ko_projcs_del(p), nullptr);
    EXPECT_EQ(ko_conversion_p(c), 0);
    EXPECT_EQ(ko_conversion_parm_array(c, out.data()), 0);
    EXPECT_EQ(ko_conversion_method(c), nullptr);
    ko_conversion_method_set(c, nullptr);
    EXPECT_EQ(ko_conversion_parameters_ptr(c), nullptr);
    EXPECT_EQ(ko_conversion_eq(c, c), 0);
    EXPECT_EQ(ko_conversion_clone(c), nullptr);
    EXPECT_EQ(ko_conversion_del(c), nullptr);
    EXPECT_EQ(out[0], 42.0);
  }
  EXPECT_TRUE(ghost.untouched());
}

// ---------------------------------------------------------------------------
// Equality and cloning

TEST(Projcs, EqualityWithAndWithoutNames) {
  ko_projcs *a = ko::test::utm33n();
  ASSERT_NE(a, nullptr);
  ko_projcs *b = ko_projcs_clone(a);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(ko_projcs_eq(a, b), 1);
  EXPECT_EQ(ko_object_eq(a, b), 1);
  EXPECT_EQ(ko_object_vector(KO_TYPE_PROJCS), &ko_projcs_objvec);

  // A projected and a geographic system share no type bit.
  EXPECT_EQ(ko_object_eq(a, ko_projcs_geogcs(a)), 0);

  // Names of the system and of its geographic system do not count for eqnn.
  ko_header_set_name(b, "Other");
  ko_header_set_name(ko_projcs_geogcs(b), "WGS 84");
  EXPECT_EQ(ko_projcs_eq(a, b), 0);
  EXPECT_EQ(ko_projcs_eqnn(a, b), 1);
  ko_projcs_del(b);

  struct Variant {
    const char *what;
    ko_projcs *(*make)();
  } const variants[] = {
      {"feet", [] { return ko::test::utm33n(foot_us()); }},
      {"another false easting",
       [] {
         ko_projcs *p = ko::test::utm33n();
         ko_parameter_value_set(ko_conversion_parameters_ptr(ko_projcs_conversion(p))[0], 1.0);
         return p;
       }},
      {"another datum",
       [] {
         ko_geogcs *g = ko_geogcs_new(
             "GCS_WGS_1984",
             ko_datum_new("D_North_American_1983", ko_spheroid_new("GRS_1980", 6378137.0,
                                                                    1 / 298.257222101)),
             nullptr, nullptr);
         return ko::test::projcs("WGS_1984_UTM_Zone_33N", g, ko::test::utm33n_conversion());
       }},
      {"grads", [] { return ko::test::utm33n(nullptr, ko_angunit_new_code(9105)); }},
  };
  for (const Variant &v : variants) {
    SCOPED_TRACE(v.what);
    ko_projcs *c = v.make();
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(ko_projcs_eqnn(a, c), 0);
    EXPECT_EQ(ko_projcs_eq(a, c), 0);
    ko_projcs_del(c);
  }

  // Gauss_Kruger and Transverse_Mercator give equal systems.
  ko_projcs *gk = ko::test::utm33n();
  ko_conversion_method_set(ko_projcs_conversion(gk),
                           ko_projlist_projection_from_code(43005, nullptr));
  EXPECT_EQ(ko_projcs_eq(a, gk), 1);
  ko_projcs_del(gk);
  ko_projcs_del(a);
}

TEST(Projcs, CloneIsDeepAndKeepsTheHeader) {
  ko_projcs *src = dressed_utm33n();
  ASSERT_NE(src, nullptr);
  ASSERT_NE(ko_projcs_authority(src), nullptr);
  ASSERT_EQ(ko_projcs_load_constants(src), 1);

  ko_projcs *copy = ko_projcs_clone(src);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_projcs_eq(src, copy), 1);
  for (const void *part : {static_cast<const void *>(ko_projcs_geogcs(copy)),
                           static_cast<const void *>(ko_projcs_conversion(copy)),
                           static_cast<const void *>(ko_projcs_axis(copy, 0)),
                           static_cast<const void *>(ko_projcs_remark(copy)),
                           static_cast<const void *>(ko_projcs_metadata_vector(copy)[0])}) {
    EXPECT_TRUE(ko_object_p(part));
  }
  EXPECT_NE(ko_projcs_geogcs(copy), ko_projcs_geogcs(src));
  EXPECT_NE(ko_projcs_conversion(copy), ko_projcs_conversion(src));
  EXPECT_NE(ko_projcs_axis(copy, 0), ko_projcs_axis(src, 0));
  EXPECT_NE(ko_projcs_remark(copy), ko_projcs_remark(src));
  EXPECT_EQ(ko_projcs_code(copy), 32633);
  EXPECT_NE(ko_projcs_authority(copy), nullptr);
  EXPECT_EQ(ko_linunit_factor(ko_projcs_unit(copy)), kFootUs);
  // Constants are not copied: the clone loads its own.
  EXPECT_EQ(ko_projcs_constants(copy), nullptr);
  ko_projcs_del(copy);
  ko_projcs_del(src);
}

// ---------------------------------------------------------------------------
// Memory

TEST(ProjcsMemory, FailedConstructionLeavesTheArgumentsUnchanged) {
  ASSERT_TRUE(ko::test::installed());
  // Only the projected system's own allocations fail here: on each failure
  // the record says error 1 and the caller's conversion is as it was (its
  // parameters still without units, its projection still Hotine).
  for (long n = 0;; ++n) {
    ASSERT_LT(n, 100);
    ko_geogcs *g = ko::test::wgs84();
    ko_conversion *conv = ko::test::conversion("H", 43037,
                                               {{"Azimuth", 53.3},
                                                {"Longitude_Of_Center", 115.0},
                                                {"Latitude_Of_Center", 4.0},
                                                {"False_Easting", 10.0},
                                                {"Scale_Factor", 0.99984},
                                                {"XY_Plane_Rotation", 53.1}});
    std::array<ko_axis *, 2> axes = {axis("E", KO_AXIS_EAST, 1, as_unit(foot_us())),
                                      axis("N", KO_AXIS_NORTH, 2, nullptr)};
    ASSERT_TRUE(g != nullptr && conv != nullptr && axes[0] != nullptr && axes[1] != nullptr);
    long before = ko::test::live_allocations();
    ko_err err{};
    ko::test::fail_after(n);
    ko_projcs *p = ko_projcs_ext_new_errext("P", g, conv, 2, axes.data(), nullptr, nullptr,
                                            nullptr, &err);
    ko::test::never_fail();
    if (p != nullptr) {
      EXPECT_GT(n, 6);  // the unit clone, six parameter units, the projection, the record
      EXPECT_EQ(ko_object_code_internal(ko_projcs_projection(p)), 43054);
      ko_projcs_del(p);
      break;
    }
    EXPECT_EQ(ko::test::live_allocations(), before) << n;
    expect_report(err, Report{4, 1, 1, kPcsSource, "P"});
    EXPECT_EQ(ko_object_code_internal(ko_conversion_method(conv)), 43037);
    for (ko_parameter *parm : std::span(ko_conversion_parameters_ptr(conv), KO_PARM_COUNT))
      if (parm != nullptr) {
        EXPECT_EQ(ko_parameter_unit(parm), nullptr);
      }
    EXPECT_NE(ko_axis_unit(axes[0]), nullptr);
    ko_geogcs_del(g);
    ko_conversion_del(conv);
    for (ko_axis *a : axes) ko_axis_del(a);
  }
}

TEST(ProjcsMemory, ConstructorsAndClonesCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_projcs *p = ko::test::utm33n(foot_us(), ko_angunit_new_code(9105), true);
              ko_projcs_del(p);
              return p != nullptr;
            }),
            10);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              std::array<ko_parameter *, KO_PARM_COUNT> parms{};
              parms[2] = ko_parameter_new("Central_Meridian", 15.0);
              ko_projection *tm = ko_projlist_projection_from_code(43006, nullptr);
              ko_conversion *c = parms[2] != nullptr && tm != nullptr
                                     ? ko_conversion_ext_new_errext("C", tm, parms.data(), &err)
                                     : nullptr;
              if (c == nullptr) {
                if (parms[2] != nullptr && tm != nullptr)
                  expect_report(err, Report{4, 1, 1, kConvSource, "C"});
                ko_parameter_del(parms[2]);
                ko_projection_del(tm);
                return false;
              }
              ko_conversion_del(c);
              return true;
            }),
            2);

  ko_projcs *src = dressed_utm33n();
  ASSERT_NE(src, nullptr);
  ASSERT_NE(ko_projcs_authority(src), nullptr);
  EXPECT_GT(ko::test::sweep_failures([src] {
              ko_projcs *p = ko_projcs_clone(src);
              bool ok = p != nullptr && ko_projcs_eq(p, src) == 1;
              ko_projcs_del(p);
              return ok;
            }),
            20);
  ko_projcs_del(src);
}

}  // namespace
