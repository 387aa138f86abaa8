// Geocentric systems: defaults, the axis checks, equality, deep clones
// and clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

constexpr const char *kSource = "ko_gxyzcs_ext_new_errext";

ko_axis *xyz_axis(const char *name, int direction, int order, int unit_code) {
  ko_unit *u = unit_code != 0 ? ko_unit_new_code(unit_code) : nullptr;
  ko_axis *a = ko_axis_new(name, name, direction, u, order);
  if (a == nullptr) ko_unit_del(u);
  return a;
}

using Axes = std::array<ko_axis *, 3>;

Axes xyz(int unit_code) {
  return {xyz_axis("X", KO_AXIS_OTHER, 1, unit_code), xyz_axis("Y", KO_AXIS_EAST, 2, unit_code),
          xyz_axis("Z", KO_AXIS_NORTH, 3, unit_code)};
}

void del_axes(Axes &axes) {
  for (ko_axis *&a : axes) a = ko_axis_del(a);
}

TEST(Gxyzcs, DefaultsMeridianAndUnit) {
  ko_err err = ko::test::stale_record();
  ko_datum *d = ko::test::wgs84_datum();
  ko_gxyzcs *g = ko_gxyzcs_new_errext("WGS_1984_Geocentric", d, nullptr, nullptr, &err);
  ASSERT_NE(g, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_gxyzcs_type(g), KO_TYPE_GXYZCS);
  EXPECT_EQ(ko_gxyzcs_datum(g), d);
  EXPECT_EQ(name_of(ko_gxyzcs_primem(g)), "Greenwich");
  EXPECT_EQ(ko_primem_longitude(ko_gxyzcs_primem(g)), 0.0);
  EXPECT_EQ(name_of(ko_gxyzcs_unit(g)), "Meter");
  EXPECT_EQ(ko_gxyzcs_axis(g, 0), nullptr);
  ko_gxyzcs_del(g);

  // A prime meridian without unit gets degrees; the axes give their unit up.
  ko_primem *paris = ko_primem_new("Paris", 2.33722917);
  ko_primem_unit_set(paris, nullptr);
  Axes axes = xyz(9002);
  g = ko_gxyzcs_ext_new_errext("NTF_Geocentric_ft", ko::test::wgs84_datum(), paris, nullptr,
                               axes.data(), nullptr, nullptr, &err);
  ASSERT_NE(g, nullptr);
  expect_no_report(err);
  EXPECT_EQ(name_of(ko_primem_unit(paris)), "Degree");
  EXPECT_EQ(name_of(ko_gxyzcs_unit(g)), "Foot");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ko_gxyzcs_axis(g, i), axes[static_cast<std::size_t>(i)]);
    EXPECT_EQ(ko_axis_unit(axes[static_cast<std::size_t>(i)]), nullptr);
  }
  EXPECT_EQ(ko_gxyzcs_axis(g, 3), nullptr);
  ko_gxyzcs_del(g);
}

TEST(Gxyzcs, ArgumentChecks) {
  struct Case {
    const char *label;
    int number;
  } cases[] = {
      {"no datum", 334},        {"primem slot holds a datum", 329},    {"angular unit", 323},
      {"missing Z", 478},       {"a unit for an axis", 485},           {"axes out of order", 482},
      {"axes in degrees", 487}, {"axes in feet, unit in metres", 477}, {"axes disagree", 477}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    std::string label = c.label;
    ko_datum *d = label == "no datum" ? nullptr : ko::test::wgs84_datum();
    ko_datum *other = ko::test::wgs84_datum();
    auto *pm =
        label == "primem slot holds a datum" ? reinterpret_cast<ko_primem *>(other) : nullptr;
    ko_linunit *unit = label == "angular unit"
                           ? reinterpret_cast<ko_linunit *>(ko_angunit_new_code(9102))
                       : label == "axes in feet, unit in metres" ? ko_linunit_new_code(9001)
                                                                 : nullptr;
    Axes axes = xyz(label == "axes in degrees"                ? 9102
                    : label == "axes in feet, unit in metres" ? 9002
                                                              : 0);
    if (label == "missing Z") axes[2] = ko_axis_del(axes[2]);
    if (label == "a unit for an axis") {
      ko_axis_del(axes[1]);
      axes[1] = reinterpret_cast<ko_axis *>(ko_linunit_new_code(9001));
    }
    if (label == "axes out of order") std::swap(axes[0], axes[1]);
    if (label == "axes disagree") {
      ko_axis_unit_set(axes[0], ko_unit_new_code(9001));
      ko_axis_unit_set(axes[2], ko_unit_new_code(9002));
    }
    bool with_axes =
        label != "no datum" && label != "primem slot holds a datum" && label != "angular unit";
    ko_err err{};
    EXPECT_EQ(ko_gxyzcs_ext_new_errext("XYZ", d, pm, unit, with_axes ? axes.data() : nullptr,
                                       nullptr, nullptr, &err),
              nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, "XYZ"});
    for (ko_axis *&a : axes) a = static_cast<ko_axis *>(ko_object_del(a));
    for (void *p : {static_cast<void *>(d), static_cast<void *>(other), static_cast<void *>(unit)})
      ko_object_del(p);
  }
}

TEST(Gxyzcs, EqualityAndClone) {
  auto make = [](const char *name, double meridian, int unit) {
    return ko_gxyzcs_new(name, ko::test::wgs84_datum(), ko_primem_new("Greenwich", meridian),
                         ko_linunit_new_code(unit));
  };
  ko_gxyzcs *a = make("WGS_1984_Geocentric", 0.0, 9001);
  ko_gxyzcs *b = make("wgs 1984 geocentric", 0.0, 9001);
  ko_gxyzcs *c = make("WGS_1984_Geocentric", 2.33722917, 9001);
  ko_gxyzcs *d = make("WGS_1984_Geocentric", 0.0, 9036);
  EXPECT_EQ(ko_gxyzcs_eq(a, b), 1);
  EXPECT_EQ(ko_gxyzcs_eq(a, c), 0) << "prime meridians differ";
  EXPECT_EQ(ko_gxyzcs_eq(a, d), 0) << "units differ";

  Axes axes = xyz(0);
  ko_metadata *md[2] = {ko_metadata_new("World", nullptr, 1262), nullptr};
  ko_gxyzcs *full =
      ko_gxyzcs_ext_new("WGS_1984_Geocentric", ko::test::wgs84_datum(), nullptr, nullptr,
                        axes.data(), ko_metadata_vector_clone(md), ko_remark_new("r"));
  ko_metadata_del(md[0]);
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(ko_gxyzcs_eq(a, full), 1) << "axes, metadata and remark do not count";
  ko_object_code_set(full, 4978, 4978, 0, 0, "EPSG", "");
  ko_gxyzcs *copy = static_cast<ko_gxyzcs *>(ko_object_clone(full));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_gxyzcs_eq(copy, full), 1);
  EXPECT_EQ(ko_gxyzcs_code(copy), 4978);
  EXPECT_NE(ko_gxyzcs_datum(copy), ko_gxyzcs_datum(full));
  EXPECT_EQ(ko_axis_eq(ko_gxyzcs_axis(copy, 2), ko_gxyzcs_axis(full, 2)), 1);
  EXPECT_NE(ko_gxyzcs_axis(copy, 2), ko_gxyzcs_axis(full, 2));
  ko_gxyzcs_del(full);
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_gxyzcs_remark(copy), text), "r");
  ASSERT_NE(ko_gxyzcs_metadata_vector(copy), nullptr);
  EXPECT_EQ(name_of(ko_gxyzcs_metadata_vector(copy)[0]), "World");
  for (ko_gxyzcs *g : {a, b, c, d, copy}) ko_gxyzcs_del(g);
}

TEST(GxyzcsNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *g = static_cast<ko_gxyzcs *>(p);
    EXPECT_EQ(ko_gxyzcs_p(g), 0);
    EXPECT_EQ(ko_gxyzcs_datum(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_primem(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_unit(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_axis(g, 0), nullptr);
    EXPECT_EQ(ko_gxyzcs_metadata_vector(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_remark(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_clone(g), nullptr);
    EXPECT_EQ(ko_gxyzcs_eq(g, g), 0);
    EXPECT_EQ(ko_gxyzcs_del(g), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_GXYZCS), &ko_gxyzcs_objvec);
}

TEST(GxyzcsMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_datum *d = ko::test::wgs84_datum();
              ko_primem *pm = ko_primem_new("Greenwich", 0.0);
              if (pm != nullptr) ko_primem_unit_set(pm, nullptr);
              Axes axes = xyz(9002);
              ko_err err{};
              ko_gxyzcs *g = nullptr;
              if (d != nullptr && pm != nullptr && axes[0] && axes[1] && axes[2])
                g = ko_gxyzcs_ext_new_errext("G", d, pm, nullptr, axes.data(), nullptr, nullptr,
                                             &err);
              if (g == nullptr) {
                if (err.number != 0) {
                  expect_report(err, Report{4, 1, 1, kSource, "G"});
                  EXPECT_EQ(ko_primem_unit(pm), nullptr) << "the caller's meridian is untouched";
                }
                ko_datum_del(d);
                ko_primem_del(pm);
                del_axes(axes);
                return false;
              }
              ko_gxyzcs_del(g);
              return true;
            }),
            8);
  Axes axes = xyz(0);
  ko_gxyzcs *src = ko_gxyzcs_ext_new("G", ko::test::wgs84_datum(), nullptr, nullptr, axes.data(),
                                     nullptr, ko_remark_new("r"));
  ASSERT_NE(src, nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_gxyzcs_clone, ko_gxyzcs_del), 8);
  ko_gxyzcs_del(src);
}

}  // namespace
