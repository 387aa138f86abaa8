// Geographic coordinate systems: how the constructor chooses units and
// prime meridian, the axis rules, equality, the lazily loaded geodesic
// constants, the default axes, cloning and deletion.
#include "ko.h"
#include "objects/geodetic.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;
using ko::test::name_of;

constexpr double kWgsA = 6378137.0;
constexpr double kWgsF = 1 / 298.257223563;
constexpr const char *kSource = "ko_geogcs_ext_new_errext";

// Builders that release what they made when a step fails, so that the
// failing-allocator sweeps see only the library's own leaks.
ko_datum *wgs84_datum() {
  ko_spheroid *s = ko_spheroid_new("WGS_1984", kWgsA, kWgsF);
  ko_datum *d = s != nullptr ? ko_datum_new("D_WGS_1984", s) : nullptr;
  if (d == nullptr) ko_spheroid_del(s);
  return d;
}
ko_axis *axis_in(const char *name, int direction, int unit_code, int order) {
  ko_unit *u = ko_unit_new_code(unit_code);
  ko_axis *a = u != nullptr ? ko_axis_new(name, name, direction, u, order) : nullptr;
  if (a == nullptr) ko_unit_del(u);
  return a;
}
ko_datum *sphere_datum() { return ko_datum_new("D_Sphere", ko_spheroid_new("Sphere", 6371000.0, 0.0)); }
ko_angunit *degree() { return ko_angunit_new_code(9102); }
ko_angunit *grad() { return ko_angunit_new_code(9105); }

// A WGS 84 system whose parts are released again when any step fails (for
// the failing-allocator sweeps).
ko_geogcs *wgs84() {
  ko_datum *d = wgs84_datum();
  ko_primem *pm = ko_primem_new("Greenwich", 0.0);
  ko_angunit *unit = degree();
  ko_geogcs *g = (d && pm && unit) ? ko_geogcs_new("GCS_WGS_1984", d, pm, unit) : nullptr;
  if (g == nullptr) {
    ko_datum_del(d);
    ko_primem_del(pm);
    ko_angunit_del(unit);
  }
  return g;
}

using Axes3 = std::array<ko_axis *, 3>;
Axes3 axes3(int vertical_unit) {
  return {ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, ko_unit_new_code(9102), 1),
          ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, ko_unit_new_code(9102), 2),
          ko_axis_new("Ellipsoidal height", "h", KO_AXIS_UP, ko_unit_new_code(vertical_unit), 3)};
}

TEST(GeogcsConstruct, TwoDimensionsWithoutAxes) {
  ko_err err = ko::test::stale_record();
  ko_datum *d = wgs84_datum();
  ko_primem *pm = ko_primem_new("Greenwich", 0.0);
  ko_angunit *unit = degree();
  ko_geogcs *g = ko_geogcs_new_errext("GCS_WGS_1984", d, pm, unit, &err);
  ASSERT_NE(g, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_geogcs_type(g), KO_TYPE_GEOGCS);
  EXPECT_EQ(ko_geogcs_datum(g), d);
  EXPECT_EQ(ko_geogcs_primem(g), pm);
  EXPECT_EQ(ko_geogcs_unit(g), unit);
  EXPECT_EQ(ko_geogcs_dimension(g), 2);
  EXPECT_EQ(ko_geogcs_vert_unit(g), nullptr);
  EXPECT_EQ(ko_geogcs_axis(g, 0), nullptr);
  EXPECT_EQ(ko_geogcs_metadata_vector(g), nullptr);
  EXPECT_EQ(ko_geogcs_remark(g), nullptr);
  EXPECT_EQ(ko_geogcs_constants(g), nullptr);
  ko_geogcs_del(g);
}

TEST(GeogcsConstruct, DefaultsForMissingMeridianAndUnit) {
  ko_geogcs *g = ko_geogcs_new("GCS_X", wgs84_datum(), nullptr, nullptr);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(name_of(ko_geogcs_primem(g)), "Greenwich");
  EXPECT_EQ(ko_primem_longitude(ko_geogcs_primem(g)), 0.0);
  EXPECT_EQ(name_of(ko_primem_unit(ko_geogcs_primem(g))), "Degree");
  EXPECT_EQ(name_of(ko_geogcs_unit(g)), "Degree");
  EXPECT_NE(ko_geogcs_unit(g), ko_primem_unit(ko_geogcs_primem(g)));
  ko_geogcs_del(g);

  // The short constructor gives a meridian without unit a degree...
  ko_primem *paris = ko_primem_new("Paris", 2.33722917);
  ko_primem_unit_set(paris, nullptr);
  g = ko_geogcs_new("GCS_NTF", wgs84_datum(), paris, grad());
  EXPECT_EQ(name_of(ko_primem_unit(paris)), "Degree");
  ko_geogcs_del(g);
  // ...while the extended one gives it a clone of the system's unit.
  paris = ko_primem_new("Paris", 2.33722917);
  ko_primem_unit_set(paris, nullptr);
  ko_angunit *g_unit = grad();
  g = ko_geogcs_ext_new("GCS_NTF", wgs84_datum(), paris, 2, nullptr, g_unit, nullptr, nullptr);
  ASSERT_NE(g, nullptr);
  EXPECT_NE(ko_primem_unit(paris), g_unit);
  EXPECT_EQ(ko_angunit_eq(ko_primem_unit(paris), g_unit), 1);
  ko_geogcs_del(g);
}

TEST(GeogcsConstruct, BadArgumentsAreReported) {
  ko_err err{};
  ko_primem *pm = ko_primem_new("Greenwich", 0.0);
  ko_angunit *unit = degree();
  EXPECT_EQ(ko_geogcs_new_errext("GCS_X", nullptr, pm, unit, &err), nullptr);
  expect_report(err, Report{4, 8, 334, kSource, "GCS_X"});
  ko_datum *d = wgs84_datum();
  EXPECT_EQ(ko_geogcs_ext_new_errext("GCS_X", d, pm, 4, nullptr, unit, nullptr, nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 488, kSource, "GCS_X"});
  EXPECT_EQ(ko_geogcs_new_errext("GCS_X", d, pm, reinterpret_cast<ko_angunit *>(ko_datum_spheroid(d)), &err),
            nullptr);
  expect_report(err, Report{4, 8, 322, kSource, "GCS_X"});
  EXPECT_EQ(ko_geogcs_new_errext("GCS_X", d, reinterpret_cast<ko_primem *>(unit), unit, &err), nullptr);
  expect_report(err, Report{4, 8, 329, kSource, "GCS_X"});
  std::string long_name(85, 'g');
  ko_geogcs *g = ko_geogcs_new_errext(long_name.c_str(), d, pm, unit, &err);
  ASSERT_NE(g, nullptr);
  expect_report(err, Report{2, 8, 354, kSource, long_name.c_str()});
  ko_geogcs_del(g);  // owns d, pm and unit now
}

TEST(GeogcsAxes, TwoAxesHandTheirUnitToTheSystem) {
  ko_axis *axes[2] = {ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, ko_unit_new_code(9105), 1),
                      ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, ko_unit_new_code(9105), 2)};
  ko_geogcs *g = ko_geogcs_ext_new("GCS_X", wgs84_datum(), nullptr, 2, axes, nullptr, nullptr, nullptr);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(ko_geogcs_axis(g, 0), axes[0]);
  EXPECT_EQ(ko_geogcs_axis(g, 1), axes[1]);
  EXPECT_EQ(ko_axis_unit(axes[0]), nullptr);
  EXPECT_EQ(ko_axis_unit(axes[1]), nullptr);
  ASSERT_NE(ko_geogcs_unit(g), nullptr);
  EXPECT_EQ(ko_angunit_code(ko_geogcs_unit(g)), 9105);
  EXPECT_EQ(name_of(ko_primem_unit(ko_geogcs_primem(g))), "Degree") << "a new Greenwich in degrees";
  ko_geogcs_del(g);
}

TEST(GeogcsAxes, ThreeAxesKeepTheirUnits) {
  ko_axis *axes[3] = {ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, ko_unit_new_code(9102), 1),
                      ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, ko_unit_new_code(9102), 2),
                      ko_axis_new("Ellipsoidal height", "h", KO_AXIS_UP, ko_unit_new_code(9002), 3)};
  ko_geogcs *g = ko_geogcs_ext_new("GCS_X", wgs84_datum(), nullptr, 3, axes, nullptr, nullptr, nullptr);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(ko_geogcs_dimension(g), 3);
  EXPECT_EQ(reinterpret_cast<ko_unit *>(ko_geogcs_unit(g)), ko_axis_unit(axes[0]));
  EXPECT_EQ(ko_linunit_code(ko_geogcs_vert_unit(g)), 9002);
  EXPECT_EQ(ko_geogcs_axis(g, 2), axes[2]);
  EXPECT_EQ(ko_geogcs_axis(g, 3), nullptr);
  EXPECT_EQ(ko_geogcs_axis(g, -1), nullptr);
  ko_geogcs_del(g);
}

TEST(GeogcsAxes, RefusedAxesStayWithTheCaller) {
  ko_err err{};
  ko_datum *d = wgs84_datum();
  ko_angunit *unit = degree();
  ko_axis *swapped[2] = {ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, nullptr, 2),
                         ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, nullptr, 1)};
  EXPECT_EQ(ko_geogcs_ext_new_errext("GCS_X", d, nullptr, 2, swapped, unit, nullptr, nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 482, kSource, "GCS_X"});
  ko_axis *grads[2] = {ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, ko_unit_new_code(9105), 1),
                       ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, ko_unit_new_code(9105), 2)};
  EXPECT_EQ(ko_geogcs_ext_new_errext("GCS_X", d, nullptr, 2, grads, unit, nullptr, nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 477, kSource, "GCS_X"});
  EXPECT_NE(ko_axis_unit(grads[0]), nullptr) << "a refused call changes nothing";
  for (ko_axis *a : {swapped[0], swapped[1], grads[0], grads[1]}) ko_axis_del(a);
  ko_datum_del(d);
  ko_angunit_del(unit);
}

TEST(GeogcsAxes, CheckAxesBuildsDefaultsAndMovesTheUnit) {
  ko_geogcs *g = ko_geogcs_new("GCS_X", wgs84_datum(), nullptr, grad());
  ko_angunit *before = ko_angunit_clone(ko_geogcs_unit(g));
  ASSERT_EQ(ko_geogcs_check_axes(g, 0), 1);
  ASSERT_NE(ko_geogcs_axis(g, 0), nullptr);
  EXPECT_EQ(ko_axis_check_order(reinterpret_cast<const ko_geogcs *>(g)->axes, 2, KO_AXIS_KIND_GEOGRAPHIC), 0);
  EXPECT_EQ(reinterpret_cast<const ko_geogcs *>(g)->unit, nullptr);
  EXPECT_EQ(ko_angunit_eq(ko_geogcs_unit(g), before), 1);
  ko_axis *first = ko_geogcs_axis(g, 0);
  EXPECT_EQ(ko_geogcs_check_axes(g, 0), 1);
  EXPECT_EQ(ko_geogcs_axis(g, 0), first) << "a system with axes keeps them";
  ko_angunit_del(before);
  ko_geogcs_del(g);

  ko_geogcs *g3 = ko_geogcs_ext_new("GCS_3D", wgs84_datum(), nullptr, 3, nullptr, degree(), nullptr, nullptr);
  ASSERT_EQ(ko_geogcs_check_axes(g3, 0), 1);
  EXPECT_EQ(name_of(ko_geogcs_vert_unit(g3)), "Meter");
  EXPECT_EQ(name_of(ko_geogcs_axis(g3, 2)), "Ellipsoidal height");
  ko_geogcs_del(g3);
  EXPECT_EQ(ko_geogcs_check_axes(nullptr, 0), 0);
}

TEST(GeogcsEquality, PrefixDatumMeridianUnitsAndDimension) {
  ko_geogcs *a = wgs84();
  struct Case {
    const char *label;
    ko_geogcs *b;
    int equal;
  };
  Axes3 m = axes3(9001), m2 = axes3(9001), ft = axes3(9002);
  ko_geogcs *a3 = ko_geogcs_ext_new("WGS_1984", wgs84_datum(), nullptr, 3, m.data(), nullptr, nullptr, nullptr);
  const Case cases[] = {
      {"without the GCS_ prefix", ko_geogcs_new("WGS_1984", wgs84_datum(), nullptr, degree()), 1},
      {"prefix in lower case", ko_geogcs_new("gcs_wgs_1984", ko_datum_new("WGS_1984", ko_spheroid_new("WGS_1984", kWgsA, kWgsF)), nullptr, degree()), 1},
      {"other name", ko_geogcs_new("GCS_WGS_1972", wgs84_datum(), nullptr, degree()), 0},
      {"other datum", ko_geogcs_new("GCS_WGS_1984", sphere_datum(), nullptr, degree()), 0},
      {"other meridian", ko_geogcs_new("GCS_WGS_1984", wgs84_datum(), ko_primem_new("Greenwich", 1e-9), degree()), 0},
      {"other unit", ko_geogcs_new("GCS_WGS_1984", wgs84_datum(), nullptr, grad()), 0},
      {"other dimension", ko_geogcs_ext_new("GCS_WGS_1984", wgs84_datum(), nullptr, 3, m2.data(), nullptr, nullptr, nullptr), 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ASSERT_NE(c.b, nullptr);
    EXPECT_EQ(ko_geogcs_eq(a, c.b), c.equal);
    EXPECT_EQ(ko_object_eq(c.b, a), c.equal);
  }
  ko_geogcs *a3_feet = ko_geogcs_ext_new("WGS_1984", wgs84_datum(), nullptr, 3, ft.data(), nullptr, nullptr, nullptr);
  EXPECT_EQ(ko_geogcs_eq(cases[6].b, a3), 1);
  EXPECT_EQ(ko_geogcs_eq(a3, a3_feet), 0) << "vertical units differ";
  for (const Case &c : cases) ko_geogcs_del(c.b);
  ko_geogcs_del(a);
  ko_geogcs_del(a3);
  ko_geogcs_del(a3_feet);
}

TEST(GeogcsConstants, LoadedOnceAndUnloaded) {
  ko_geogcs *g = wgs84();
  EXPECT_EQ(ko_geogcs_load_constants(g), 1);
  ko_constants *c = ko_geogcs_constants(g);
  ASSERT_NE(c, nullptr);
  const int32_t *ivals = ko_constants_ivals(c);
  ASSERT_NE(ivals, nullptr);
  EXPECT_EQ(ivals[0], 2);
  EXPECT_EQ(ivals[1], KO_GEODESIC_ORDER);
  int order = 0;
  double *expected = ko_geodesic_constants_array_new(ko_spheroid_esquared(ko_datum_spheroid(ko_geogcs_datum(g))), &order);
  for (int i = 0; i < KO_GEODESIC_NCOEF; ++i) EXPECT_EQ(ko_constants_dvals(c)[i], expected[i]) << i;
  ko_memdealloc(expected);
  EXPECT_EQ(ko_geogcs_load_constants(g), 1);
  EXPECT_EQ(ko_geogcs_constants(g), c) << "loaded once";
  ko_geogcs_unload_constants(g);
  EXPECT_EQ(ko_geogcs_constants(g), nullptr);
  EXPECT_EQ(reinterpret_cast<const ko_geogcs *>(g)->constants_state, 0);
  ko_geogcs_del(g);
}

TEST(GeogcsConstants, SphereNeedsNone) {
  ko_geogcs *g = ko_geogcs_new("GCS_Sphere", sphere_datum(), nullptr, nullptr);
  EXPECT_EQ(ko_geogcs_load_constants(g), 1);
  EXPECT_EQ(ko_geogcs_constants(g), nullptr);
  EXPECT_EQ(reinterpret_cast<const ko_geogcs *>(g)->constants_state, 2);
  ko_geogcs_del(g);
  // Just above the sphere threshold the series are built.
  ko_geogcs *near = ko_geogcs_new("GCS_Near", ko_datum_new("D", ko_spheroid_new("S", 6371000.0, 2e-15)), nullptr, nullptr);
  EXPECT_EQ(ko_geogcs_load_constants(near), 1);
  EXPECT_NE(ko_geogcs_constants(near), nullptr);
  ko_geogcs_del(near);
}

TEST(GeogcsConstants, FailureIsRememberedUntilUnloaded) {
  ASSERT_TRUE(ko::test::installed());
  ko_geogcs *g = wgs84();
  for (long n = 0; n < 3; ++n) {
    ko::test::fail_after(n);
    long before = ko::test::live_allocations();
    EXPECT_EQ(ko_geogcs_load_constants(g), 0);
    ko::test::never_fail();
    EXPECT_EQ(ko::test::live_allocations(), before) << "nothing kept after allocation " << n;
    EXPECT_EQ(reinterpret_cast<const ko_geogcs *>(g)->constants_state, -1);
    EXPECT_EQ(ko_geogcs_load_constants(g), 0) << "not retried";
    ko_geogcs_unload_constants(g);
  }
  EXPECT_EQ(ko_geogcs_load_constants(g), 1);
  ko_geogcs_del(g);  // unloads too
}

TEST(GeogcsClone, DeepCopyOfEverything) {
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1262), nullptr};
  ko_metadata **vec = ko_metadata_vector_clone(md);
  ko_metadata_del(md[0]);
  ko_axis *axes[3] = {ko_axis_new("Longitude", "Lon", KO_AXIS_EAST, ko_unit_new_code(9102), 1),
                      ko_axis_new("Latitude", "Lat", KO_AXIS_NORTH, ko_unit_new_code(9102), 2),
                      ko_axis_new("Ellipsoidal height", "h", KO_AXIS_UP, ko_unit_new_code(9001), 3)};
  ko_geogcs *g = ko_geogcs_ext_new("GCS_WGS_1984_3D", wgs84_datum(), nullptr, 3, axes, degree(), vec,
                                   ko_remark_new("a remark"));
  ASSERT_NE(g, nullptr);
  ko_object_code_set(g, 4979, 4979, 0, 0, "EPSG", "");
  ASSERT_EQ(ko_geogcs_load_constants(g), 1);
  ko_geogcs *c = ko_geogcs_clone(g);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_geogcs_eq(g, c), 1);
  EXPECT_NE(ko_geogcs_datum(c), ko_geogcs_datum(g));
  EXPECT_NE(ko_geogcs_axis(c, 2), ko_geogcs_axis(g, 2));
  EXPECT_EQ(ko_axis_eq(ko_geogcs_axis(c, 2), ko_geogcs_axis(g, 2)), 1);
  ASSERT_NE(ko_geogcs_metadata_vector(c), nullptr);
  EXPECT_NE(ko_geogcs_metadata_vector(c), vec);
  EXPECT_EQ(ko_metadata_eq(ko_geogcs_metadata_vector(c)[0], vec[0]), 1);
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_geogcs_remark(c), text), "a remark");
  EXPECT_EQ(ko_geogcs_code(c), 4979);
  EXPECT_EQ(ko_geogcs_constants(c), nullptr) << "constants are rebuilt on demand";
  ko_geogcs_del(g);
  EXPECT_EQ(name_of(ko_geogcs_datum(c)), "D_WGS_1984");
  ko_geogcs_del(c);
}

TEST(GeogcsNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *g = static_cast<ko_geogcs *>(p);
    EXPECT_EQ(ko_geogcs_p(g), 0);
    EXPECT_EQ(ko_geogcs_datum(g), nullptr);
    EXPECT_EQ(ko_geogcs_primem(g), nullptr);
    EXPECT_EQ(ko_geogcs_unit(g), nullptr);
    EXPECT_EQ(ko_geogcs_vert_unit(g), nullptr);
    EXPECT_EQ(ko_geogcs_dimension(g), 0);
    EXPECT_EQ(ko_geogcs_axis(g, 0), nullptr);
    EXPECT_EQ(ko_geogcs_metadata_vector(g), nullptr);
    EXPECT_EQ(ko_geogcs_remark(g), nullptr);
    EXPECT_EQ(ko_geogcs_constants(g), nullptr);
    EXPECT_EQ(ko_geogcs_load_constants(g), 0);
    ko_geogcs_unload_constants(g);
    EXPECT_EQ(ko_geogcs_check_axes(g, 0), 0);
    EXPECT_EQ(ko_geogcs_clone(g), nullptr);
    EXPECT_EQ(ko_geogcs_eq(g, g), 0);
    EXPECT_EQ(ko_geogcs_del(g), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_GEOGCS), &ko_geogcs_objvec);
}

TEST(GeogcsMemory, ConstructorsClonesAndAxesCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  // Whatever fails, the caller's objects are left to the caller.
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_datum *d = wgs84_datum();
              ko_primem *pm = ko_primem_new("Paris", 2.33722917);
              ko_primem_unit_set(pm, nullptr);
              ko_axis *axes[2] = {axis_in("Longitude", KO_AXIS_EAST, 9105, 1),
                                  axis_in("Latitude", KO_AXIS_NORTH, 9105, 2)};
              ko_err err{};
              ko_geogcs *g = nullptr;
              if (d != nullptr && pm != nullptr && axes[0] != nullptr && axes[1] != nullptr)
                g = ko_geogcs_ext_new_errext("GCS_NTF", d, pm, 2, axes, nullptr, nullptr, nullptr, &err);
              if (g == nullptr) {
                if (err.number != 0) expect_report(err, Report{4, 1, 1, kSource, "GCS_NTF"});
                ko_datum_del(d);
                ko_primem_del(pm);
                ko_axis_del(axes[0]);
                ko_axis_del(axes[1]);
                return false;
              }
              ko_geogcs_del(g);
              return true;
            }),
            8);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_geogcs *g = ko_geogcs_new("GCS_X", nullptr, nullptr, nullptr);
              EXPECT_EQ(g, nullptr);
              ko_datum *d = wgs84_datum();
              if (d == nullptr) return false;
              g = ko_geogcs_new("GCS_X", d, nullptr, nullptr);
              if (g == nullptr) {
                ko_datum_del(d);
                return false;
              }
              ko_geogcs_del(g);
              return true;
            }),
            4);
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1262), nullptr};
  ko_metadata **vec = ko_metadata_vector_clone(md);
  ko_metadata_del(md[0]);
  ko_geogcs *src = ko_geogcs_ext_new("GCS_X", wgs84_datum(), nullptr, 2, nullptr, grad(), vec,
                                     ko_remark_new("remark"));
  ASSERT_EQ(ko_geogcs_check_axes(src, 0), 1);
  EXPECT_GT(ko::test::clone_sweep(src, ko_geogcs_clone, ko_geogcs_del), 10);
  ko_geogcs_del(src);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_geogcs *g = wgs84();
              if (g == nullptr) return false;
              bool ok = ko_geogcs_check_axes(g, 0) == 1;
              if (ok) {
                EXPECT_NE(ko_geogcs_unit(g), nullptr);
              }
              ko_geogcs_del(g);
              return ok;
            }),
            8);
}

}  // namespace
