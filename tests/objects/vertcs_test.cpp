// Vertical coordinate systems: datum kinds, the parameter and axis checks,
// the unit chosen, height or depth, equality, deep clones and clean
// failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;
using ko::test::Slots;

constexpr const char *kSource = "ko_vertcs_ext_new_errext";
constexpr double kFootUs = 1200.0 / 3937.0;

ko_axis *vertical_axis(int direction, int unit_code) {
  ko_unit *u = unit_code != 0 ? ko_unit_new_code(unit_code) : nullptr;
  ko_axis *a = ko_axis_new("Gravity-related height", "H", direction, u, 1);
  if (a == nullptr) ko_unit_del(u);
  return a;
}

TEST(Vertcs, GravityRelatedSystemWithParameters) {
  ko_err err = ko::test::stale_record();
  ko_vdatum *d = ko_vdatum_new("NGVD_1929");
  ko_linunit *ft = ko_linunit_new_code(9003);
  Slots slots;
  slots
      .put(ko_parameter_ext_new("Vertical_Shift",
                                reinterpret_cast<ko_unit *>(ko_linunit_new_code(9003)), 2.5))
      .put("Direction", 1.0);
  ko_vertcs *v = ko_vertcs_new_errext("NGVD_1929_Height_ftUS", d, slots.data(), ft, &err);
  ASSERT_NE(v, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_vertcs_type(v), KO_TYPE_VERTCS);
  EXPECT_EQ(ko_vertcs_vdatum(v), d);
  EXPECT_EQ(ko_vertcs_hvdatum(v), d);
  EXPECT_EQ(ko_vertcs_datum(v), nullptr);
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(v), 0);
  EXPECT_EQ(ko_vertcs_unit(v), ft);
  EXPECT_EQ(ko_vertcs_direction(v), KO_VERTCS_HEIGHT);
  EXPECT_DOUBLE_EQ(ko_vertcs_vertical_shift(v), 2.5 * kFootUs);
  ko_parameter *copy[KO_PARM_COUNT];
  ko_vertcs_parameters(v, copy);
  EXPECT_EQ(copy[0], slots.p[0]);
  EXPECT_EQ(copy[1], slots.p[1]);
  EXPECT_EQ(ko_vertcs_parameters_ptr(v)[1], slots.p[1]);
  EXPECT_EQ(ko_vertcs_axis(v), nullptr);
  ko_vertcs_del(v);
}

TEST(Vertcs, EllipsoidalSystemDefaultsToMetresAndHeights) {
  ko_vertcs *v = ko::test::ellipsoidal_system();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(v), 1);
  EXPECT_EQ(ko_vertcs_vdatum(v), nullptr);
  EXPECT_EQ(name_of(ko_vertcs_datum(v)), "D_WGS_1984");
  EXPECT_EQ(name_of(ko_vertcs_unit(v)), "Meter");
  EXPECT_EQ(ko_linunit_factor(ko_vertcs_unit(v)), 1.0);
  EXPECT_EQ(ko_vertcs_direction(v), KO_VERTCS_HEIGHT);
  EXPECT_EQ(ko_vertcs_vertical_shift(v), 0.0);
  ko_vertcs_del(v);
}

// The direction comes from the Direction parameter, else from the axis.
TEST(Vertcs, DepthFromParameterOrAxis) {
  ko_vertcs *by_parm = ko::test::gravity_system("MSL_Depth", "Mean_Sea_Level", -1);
  ASSERT_NE(by_parm, nullptr);
  EXPECT_EQ(ko_vertcs_direction(by_parm), KO_VERTCS_DEPTH);

  ko_axis *down = vertical_axis(KO_AXIS_DOWN, 9002);
  ko_vertcs *by_axis = ko_vertcs_ext_new("MSL_Depth_ft", ko_vdatum_new("Mean_Sea_Level"), nullptr,
                                         nullptr, down, nullptr, ko_remark_new("depths"));
  ASSERT_NE(by_axis, nullptr);
  EXPECT_EQ(ko_vertcs_direction(by_axis), KO_VERTCS_DEPTH);
  EXPECT_EQ(ko_vertcs_axis(by_axis), down);
  EXPECT_EQ(name_of(ko_vertcs_unit(by_axis)), "Foot") << "the system takes the axis's unit";
  EXPECT_EQ(ko_axis_unit(down), nullptr) << "and the axis drops it";
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_vertcs_remark(by_axis), text), "depths");
  ko_vertcs_del(by_parm);
  ko_vertcs_del(by_axis);
}

struct CheckCase {
  const char *label;
  int number;
  const char *message;  // null: the system's name
};

// Each refused argument stays with the caller, untouched.
TEST(Vertcs, ArgumentChecksInOrder) {
  const CheckCase cases[] = {
      {"no datum", 337, nullptr},
      {"a spheroid is no datum", 337, nullptr},
      {"angular unit", 323, nullptr},
      {"axis slot holds a unit", 485, nullptr},
      {"axis pointing east", 486, nullptr},
      {"axis in degrees", 487, nullptr},
      {"axis unit differs from the unit", 477, nullptr},
      {"projection parameter", 348, "Extra parameter: H: False_Easting"},
      {"Vertical_Shift in the Direction slot", 348, "Extra parameter: H: Vertical_Shift"},
      {"Direction of 2", 356, "Invalid parameter value argument: H: Direction"},
      {"Direction disagrees with the axis", 486, nullptr},
  };
  for (const CheckCase &c : cases) {
    SCOPED_TRACE(c.label);
    std::string label = c.label;
    ko_vdatum *vd = ko_vdatum_new("NAVD_1988");
    ko_spheroid *sph = ko_spheroid_new("S", 6378137.0, 0.0);
    void *datum = label == "no datum"                 ? nullptr
                  : label == "a spheroid is no datum" ? static_cast<void *>(sph)
                                                      : vd;
    ko_linunit *unit =
        label == "axis unit differs from the unit" ? ko_linunit_new_code(9001) : nullptr;
    if (label == "angular unit") unit = reinterpret_cast<ko_linunit *>(ko_angunit_new_code(9102));
    ko_axis *axis = nullptr;
    if (label == "axis pointing east") axis = vertical_axis(KO_AXIS_EAST, 0);
    if (label == "axis in degrees") axis = vertical_axis(KO_AXIS_UP, 9102);
    if (label == "axis unit differs from the unit") axis = vertical_axis(KO_AXIS_UP, 9002);
    if (label == "Direction disagrees with the axis") axis = vertical_axis(KO_AXIS_UP, 0);
    if (label == "axis slot holds a unit")
      axis = reinterpret_cast<ko_axis *>(ko_linunit_new_code(9001));
    Slots slots;
    if (label == "projection parameter") slots.put("False_Easting", 100.0);
    if (label == "Vertical_Shift in the Direction slot")
      slots.p[1] = ko_parameter_new("Vertical_Shift", 1.0);
    if (label == "Direction of 2") slots.put("Direction", 2.0);
    if (label == "Direction disagrees with the axis") slots.put("Direction", -1.0);

    ko_err err = ko::test::stale_record();
    EXPECT_EQ(
        ko_vertcs_ext_new_errext("H", datum, slots.data(), unit, axis, nullptr, nullptr, &err),
        nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, c.message != nullptr ? c.message : "H"});
    EXPECT_EQ(ko_vdatum_p(vd), 1);
    if (axis != nullptr && ko_axis_p(axis)) {
      EXPECT_EQ(ko_axis_unit(axis) != nullptr,
                label != "axis pointing east" && label != "Direction disagrees with the axis");
    }
    slots.del();
    for (void *p : {static_cast<void *>(vd), static_cast<void *>(sph), static_cast<void *>(unit),
                    static_cast<void *>(axis)})
      ko_object_del(p);
  }
}

TEST(Vertcs, EqualityRules) {
  auto make = [](const char *name, const char *datum, int direction, double shift, int unit) {
    Slots s;
    s.put("Direction", direction);
    if (shift != 0.0) s.put("Vertical_Shift", shift);
    return ko_vertcs_new(name, ko_vdatum_new(datum), s.data(), ko_linunit_new_code(unit));
  };
  ko_vertcs *base = make("NAVD_1988_Height", "NAVD_1988", 1, 0.0, 9001);
  struct Variant {
    const char *label;
    ko_vertcs *v;
    int equal;
  } variants[] = {
      {"case and underscores", make("navd 1988 height", "navd_1988", 1, 0.0, 9001), 1},
      {"other name", make("NAVD_1988_Depth", "NAVD_1988", 1, 0.0, 9001), 0},
      {"other datum", make("NAVD_1988_Height", "NGVD_1929", 1, 0.0, 9001), 0},
      {"depths", make("NAVD_1988_Height", "NAVD_1988", -1, 0.0, 9001), 0},
      {"feet", make("NAVD_1988_Height", "NAVD_1988", 1, 0.0, 9002), 0},
      {"shifted", make("NAVD_1988_Height", "NAVD_1988", 1, 0.01, 9001), 0},
      {"ellipsoidal", ko_vertcs_new("NAVD_1988_Height", ko::test::wgs84_datum(), nullptr, nullptr),
       0},
  };
  for (const Variant &v : variants) {
    SCOPED_TRACE(v.label);
    ASSERT_NE(v.v, nullptr);
    EXPECT_EQ(ko_vertcs_eq(base, v.v), v.equal);
    EXPECT_EQ(ko_object_eq(v.v, base), v.equal);
    ko_vertcs_del(v.v);
  }
  ko_vertcs_del(base);
}

TEST(Vertcs, CloneIsDeepAndKeepsTheHeader) {
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1323), nullptr};
  Slots s;
  s.put("Vertical_Shift", -0.25).put("Direction", -1.0);
  ko_vertcs *v = ko_vertcs_ext_new("Depth", ko_vdatum_new("LAT"), s.data(),
                                   ko_linunit_new_code(9002), vertical_axis(KO_AXIS_DOWN, 0),
                                   ko_metadata_vector_clone(md), ko_remark_new("a remark"));
  ko_metadata_del(md[0]);
  ASSERT_NE(v, nullptr);
  ko_object_code_set(v, 5600, 5600, 0, 0, "EPSG", "");
  ko_vertcs *c = ko_vertcs_clone(v);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_vertcs_eq(v, c), 1);
  EXPECT_EQ(ko_vertcs_code(c), 5600);
  EXPECT_NE(ko_vertcs_vdatum(c), ko_vertcs_vdatum(v));
  EXPECT_NE(ko_vertcs_parameters_ptr(c)[0], ko_vertcs_parameters_ptr(v)[0]);
  EXPECT_EQ(ko_parameter_eq(ko_vertcs_parameters_ptr(c)[0], ko_vertcs_parameters_ptr(v)[0]), 1);
  EXPECT_EQ(ko_axis_eq(ko_vertcs_axis(c), ko_vertcs_axis(v)), 1);
  EXPECT_NE(ko_vertcs_metadata_vector(c), ko_vertcs_metadata_vector(v));
  ko_vertcs_del(v);
  EXPECT_EQ(ko_vertcs_direction(c), KO_VERTCS_DEPTH);
  EXPECT_DOUBLE_EQ(ko_vertcs_vertical_shift(c), -0.25);
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_vertcs_remark(c), text), "a remark");
  ko_vertcs_del(c);
}

TEST(VertcsNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *v = static_cast<ko_vertcs *>(p);
    ko_parameter *out[KO_PARM_COUNT];
    out[3] = reinterpret_cast<ko_parameter *>(&ghost);
    EXPECT_EQ(ko_vertcs_p(v), 0);
    EXPECT_EQ(ko_vertcs_hvdatum(v), nullptr);
    EXPECT_EQ(ko_vertcs_vdatum(v), nullptr);
    EXPECT_EQ(ko_vertcs_datum(v), nullptr);
    EXPECT_EQ(ko_vertcs_is_ellipsoidal(v), 0);
    EXPECT_EQ(ko_vertcs_unit(v), nullptr);
    EXPECT_EQ(ko_vertcs_axis(v), nullptr);
    EXPECT_EQ(ko_vertcs_parameters_ptr(v), nullptr);
    ko_vertcs_parameters(v, out);
    EXPECT_EQ(out[3], nullptr);
    EXPECT_EQ(ko_vertcs_direction(v), 0);
    EXPECT_EQ(ko_vertcs_vertical_shift(v), 0.0);
    EXPECT_EQ(ko_vertcs_metadata_vector(v), nullptr);
    EXPECT_EQ(ko_vertcs_remark(v), nullptr);
    EXPECT_EQ(ko_vertcs_clone(v), nullptr);
    EXPECT_EQ(ko_vertcs_eq(v, v), 0);
    EXPECT_EQ(ko_vertcs_del(v), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_VERTCS), &ko_vertcs_objvec);
}

TEST(VertcsMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  // The system makes its own unit from the axis's; whatever fails, the
  // caller's objects stay the caller's.
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_vdatum *d = ko_vdatum_new("MSL");
              ko_axis *axis = vertical_axis(KO_AXIS_DOWN, 9002);
              Slots s;
              s.put("Direction", -1.0);
              ko_err err{};
              ko_vertcs *v = nullptr;
              if (d != nullptr && axis != nullptr && s.ok)
                v = ko_vertcs_ext_new_errext("MSL_Depth", d, s.data(), nullptr, axis, nullptr,
                                             nullptr, &err);
              if (v == nullptr) {
                if (err.number != 0) expect_report(err, Report{4, 1, 1, kSource, "MSL_Depth"});
                if (axis != nullptr) {
                  EXPECT_NE(ko_axis_unit(axis), nullptr);
                }
                ko_vdatum_del(d);
                ko_axis_del(axis);
                s.del();
                return false;
              }
              ko_vertcs_del(v);
              return true;
            }),
            4);
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1), nullptr};
  Slots s;
  s.put("Vertical_Shift", 1.0).put("Direction", 1.0);
  ko_vertcs *src = ko_vertcs_ext_new("H", ko::test::wgs84_datum(), s.data(), nullptr,
                                     vertical_axis(KO_AXIS_UP, 0), ko_metadata_vector_clone(md),
                                     ko_remark_new("r"));
  ko_metadata_del(md[0]);
  ASSERT_NE(src, nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_vertcs_clone, ko_vertcs_del), 8);
  ko_vertcs_del(src);
}

}  // namespace
