// Spheroid, prime meridian and datum: construction and its reports,
// derived values, the equality rules, cloning and deletion.
#include "ko.h"
#include "objects/geodetic.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Ellipsoid.hpp>
#endif

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;
using ko::test::name_of;
using ko::test::with_value;

constexpr double kPi = std::numbers::pi;
constexpr double kWgsA = 6378137.0;
constexpr double kWgsF = 1 / 298.257223563;

// ---------------------------------------------------------------------------
// Spheroid

TEST(Spheroid, DerivedValuesInMetres) {
  ko_err err = ko::test::stale_record();
  ko_spheroid *s = ko_spheroid_new_errext("WGS_1984", kWgsA, kWgsF, &err);
  ASSERT_NE(s, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_spheroid_type(s), KO_TYPE_SPHEROID);
  EXPECT_EQ(ko_spheroid_axis(s), kWgsA);
  EXPECT_EQ(ko_spheroid_flattening(s), kWgsF);
  char unit_name[KO_NAME_SIZE];
  EXPECT_STREQ(ko_linunit_name(ko_spheroid_unit(s), unit_name), "Meter");
  EXPECT_EQ(ko_linunit_factor(ko_spheroid_unit(s)), 1.0);
#ifdef KO_HAVE_GEOGRAPHICLIB
  GeographicLib::Ellipsoid ell(kWgsA, kWgsF);
  EXPECT_NEAR(ko_spheroid_esquared(s), ell.EccentricitySq(), 1e-17);
  EXPECT_NEAR(ko_spheroid_semiminor_axis(s), ell.PolarRadius(), 1e-9);
#endif
  ko_spheroid_del(s);

  // Clarke 1866 in US survey feet: the axis in metres goes through the unit.
  const double feet = 1200.0 / 3937.0;
  ko_linunit *ft = ko_linunit_new("Foot_US", feet);
  ko_spheroid *c = ko_spheroid_ext_new("Clarke_1866", ft, 20925832.16, 1 / 294.9786982);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_spheroid_unit(c), ft);
  EXPECT_NEAR(ko_spheroid_axis(c), 20925832.16 * feet, 1e-9);
  EXPECT_NEAR(ko_spheroid_semiminor_axis(c), 20925832.16 * feet * (1 - 1 / 294.9786982), 1e-9);
  ko_spheroid_del(c);
}

struct ShapeCase {
  const char *label;
  double axis, flattening;
  int number;  // 0: accepted
  double shown;
};

TEST(Spheroid, AxisAndFlatteningChecks) {
  const ShapeCase cases[] = {
      {"flattening exactly 1", kWgsA, 1.0, 0, 0},
      {"sphere", 6371000.0, 0.0, 0, 0},
      {"flattening above 1", kWgsA, 1.0000001, 303, 1.0000001},
      {"negative flattening", kWgsA, -1e-9, 303, -1e-9},
      {"infinite flattening", kWgsA, INFINITY, 303, INFINITY},
      {"NaN flattening", kWgsA, NAN, 358, NAN},
      {"negative axis", -1.0, kWgsF, 302, -1.0},
      {"zero axis", 0.0, kWgsF, 302, 0.0},
      {"NaN axis", NAN, kWgsF, 358, NAN},
      {"infinite axis", INFINITY, kWgsF, 358, INFINITY},
      {"axis checked before flattening", -1.0, 2.0, 302, -1.0},
  };
  const char *texts[] = {"", "", "Semimajor axis argument is <= 0", "Flattening argument is < 0 or > 1"};
  for (const ShapeCase &c : cases) {
    SCOPED_TRACE(c.label);
    ko_err err{};
    ko_spheroid *s = ko_spheroid_new_errext("Test", c.axis, c.flattening, &err);
    if (c.number == 0) {
      ASSERT_NE(s, nullptr);
      expect_no_report(err);
      ko_spheroid_del(s);
      continue;
    }
    EXPECT_EQ(s, nullptr);
    const char *text = c.number == 358 ? "NaN or Infinity encountered" : texts[c.number - 300];
    std::string message = with_value(text, "Test", c.shown);
    expect_report(err, Report{4, 8, c.number, "ko_spheroid_ext_new_errext", message.c_str()});
  }
}

TEST(Spheroid, LongNameWarnsWrongUnitFails) {
  std::string name(90, 's');
  ko_err err{};
  ko_spheroid *s = ko_spheroid_new_errext(name.c_str(), kWgsA, kWgsF, &err);
  ASSERT_NE(s, nullptr);
  expect_report(err, Report{2, 8, 354, "ko_spheroid_ext_new_errext", name.c_str()});
  EXPECT_EQ(name_of(s), name.substr(0, 79));
  ko_spheroid_del(s);
  ko_angunit *degree = ko_angunit_new_code(9102);
  EXPECT_EQ(ko_spheroid_ext_new_errext("X", reinterpret_cast<ko_linunit *>(degree), kWgsA, kWgsF, &err),
            nullptr);
  expect_report(err, Report{4, 8, 323, "ko_spheroid_ext_new_errext", "X"});
  EXPECT_EQ(ko_angunit_p(degree), 1) << "a refused unit stays with the caller";
  ko_angunit_del(degree);
}

// Two spheroids whose flattenings differ beyond the relative tolerance are
// still equal when their quarter meridians differ by less than a
// micrometre.  The quarter meridians are computed here by GeographicLib to
// show which side of the threshold each case lies on.
TEST(Spheroid, EqualityByToleranceAndQuarterMeridian) {
  struct Case {
    const char *label;
    const char *name_b;
    double axis_b, f_b;
    int equal;
  };
  const Case cases[] = {
      {"identical", "WGS_1984", kWgsA, kWgsF, 1},
      {"name differs in case only", "wgs 1984", kWgsA, kWgsF, 1},
      {"flattening within tolerance", "WGS_1984", kWgsA, kWgsF + 2e-15, 1},
      {"flattening beyond tolerance, quarter meridian within 1 um", "WGS_1984", kWgsA,
       kWgsF + 1e-14, 1},
      {"quarter meridian 1e-4 m away", "WGS_1984", kWgsA, kWgsF + 1e-11, 0},
      {"other name", "WGS_1972", kWgsA, kWgsF, 0},
      {"axis beyond tolerance", "WGS_1984", kWgsA + 1e-6, kWgsF, 0},
  };
  ko_spheroid *a = ko_spheroid_new("WGS_1984", kWgsA, kWgsF);
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ko_spheroid *b = ko_spheroid_new(c.name_b, c.axis_b, c.f_b);
#ifdef KO_HAVE_GEOGRAPHICLIB
    if (c.f_b != kWgsF && c.axis_b == kWgsA) {
      double dq = std::fabs(GeographicLib::Ellipsoid(kWgsA, kWgsF).QuarterMeridian() -
                            GeographicLib::Ellipsoid(kWgsA, c.f_b).QuarterMeridian());
      double df = std::fabs(c.f_b - kWgsF);
      bool within_tol = df <= 3.552713678800501e-15 * (1 + kWgsF);
      EXPECT_EQ(within_tol || dq < 1e-6, c.equal == 1) << "dq " << dq;
    }
#endif
    EXPECT_EQ(ko_spheroid_eq(a, b), c.equal);
    EXPECT_EQ(ko_spheroid_eq(b, a), c.equal);
    ko_spheroid_del(b);
  }
  // The axis is compared in metres, whatever unit carries it.
  ko_spheroid *km = ko_spheroid_ext_new("WGS_1984", ko_linunit_new("Kilometer", 1000.0),
                                        kWgsA / 1000.0, kWgsF);
  EXPECT_EQ(ko_spheroid_eq(a, km), 1);
  ko_spheroid_del(km);
  ko_spheroid_del(a);
}

TEST(Spheroid, CloneIsDeepAndKeepsTheHeader) {
  ko_spheroid *s = ko_spheroid_ext_new("Clarke_1866", ko_linunit_new_code(9003), 20925832.16,
                                       1 / 294.9786982);
  ko_object_code_set(s, 7008, 7008, 0, 1, "EPSG", "10.076");
  ko_spheroid *c = ko_spheroid_clone(s);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_spheroid_eq(s, c), 1);
  EXPECT_NE(ko_spheroid_unit(c), ko_spheroid_unit(s));
  EXPECT_EQ(ko_linunit_eq(ko_spheroid_unit(c), ko_spheroid_unit(s)), 1);
  EXPECT_EQ(ko_spheroid_code(c), 7008);
  EXPECT_STREQ(ko_header_get_auth_ver(c), "10.076");
  EXPECT_EQ(ko_spheroid_axis(c), ko_spheroid_axis(s));
  ko_spheroid_del(s);
  EXPECT_EQ(ko_linunit_code(ko_spheroid_unit(c)), 9003);
  ko_spheroid_del(c);
}

// ---------------------------------------------------------------------------
// Prime meridian

TEST(Primem, LongitudeIsStoredInDegrees) {
  ko_err err = ko::test::stale_record();
  ko_primem *paris = ko_primem_ext_new_errext("Paris", ko_angunit_new_code(9105), 2.5969213, &err);
  ASSERT_NE(paris, nullptr);
  expect_no_report(err);
  EXPECT_NEAR(ko_primem_longitude(paris), 2.5969213 * 0.9, 1e-14);
  EXPECT_EQ(ko_angunit_code(ko_primem_unit(paris)), 9105);
  ko_primem_del(paris);
  ko_primem *g = ko_primem_new("Greenwich", 0.0);
  char unit_name[KO_NAME_SIZE];
  EXPECT_STREQ(ko_angunit_name(ko_primem_unit(g), unit_name), "Degree");
  EXPECT_EQ(ko_angunit_factor(ko_primem_unit(g)), kPi / 180.0);
  ko_primem_del(g);
}

TEST(Primem, RangeChecksInDegrees) {
  struct Case {
    const char *label;
    int unit_code;
    double longitude;
    int number;
    double degrees;
  };
  const Case cases[] = {
      {"200 degrees", 9102, 200.0, 301, 200.0},
      {"-180.5 degrees", 9102, -180.5, 301, -180.5},
      {"200 grads are 180 degrees", 9105, 200.0, 0, 180.0},
      {"3.2 radians", 9101, 3.2, 301, 3.2 * 180.0 / kPi},
      {"infinite", 9102, INFINITY, 301, INFINITY},
      {"NaN", 9102, NAN, 358, NAN},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ko_err err{};
    ko_angunit *unit = ko_angunit_new_code(c.unit_code);
    ko_primem *p = ko_primem_ext_new_errext("M", unit, c.longitude, &err);
    if (c.number == 0) {
      ASSERT_NE(p, nullptr);
      EXPECT_NEAR(ko_primem_longitude(p), c.degrees, 1e-12);
      ko_primem_del(p);
      continue;
    }
    EXPECT_EQ(p, nullptr);
    const char *text = c.number == 301 ? "Longitude argument is < -180 or > 180" : "NaN or Infinity encountered";
    char shown[64];
    std::snprintf(shown, sizeof shown, "%f", ko_angunit_factor(unit) / (kPi / 180) * c.longitude);
    std::string message = std::string(text) + ": M: " + shown;
    expect_report(err, Report{4, 8, c.number, "ko_primem_new_errext", message.c_str()});
    ko_angunit_del(unit);
  }
  ko_err err{};
  ko_linunit *metre = ko_linunit_new_code(9001);
  EXPECT_EQ(ko_primem_ext_new_errext("M", reinterpret_cast<ko_angunit *>(metre), 1.0, &err), nullptr);
  expect_report(err, Report{4, 8, 322, "ko_primem_new_errext", "M"});
  ko_linunit_del(metre);
}

// Equality scales the stored degrees by the unit's factor once more, so the
// same meridian held in degrees and in grads compares unequal, while two
// meridians in one unit compare as their longitudes do.
TEST(Primem, EqualityScalesByTheUnitTwice) {
  ko_primem *in_grads = ko_primem_ext_new("Paris", ko_angunit_new_code(9105), 2.5969213);
  ko_primem *in_degrees = ko_primem_new("PARIS", 2.5969213 * 0.9);
  ASSERT_NEAR(ko_primem_longitude(in_grads), ko_primem_longitude(in_degrees), 1e-14);
  EXPECT_EQ(ko_primem_eq(in_grads, in_degrees), 0);
  ko_primem *again = ko_primem_ext_new("paris", ko_angunit_new_code(9105), 2.5969213);
  EXPECT_EQ(ko_primem_eq(in_grads, again), 1);
  ko_primem *other = ko_primem_new("Ferro", 2.5969213 * 0.9);
  EXPECT_EQ(ko_primem_eq(in_degrees, other), 0);
  for (ko_primem *p : {in_grads, in_degrees, again, other}) ko_primem_del(p);
}

// A clone goes through the constructor with the stored degrees and the
// unit, so a non-degree meridian is converted once more.
TEST(Primem, CloneReappliesTheUnitConversion) {
  ko_primem *p = ko_primem_ext_new("M", ko_angunit_new_code(9105), 100.0);  // 90 degrees
  ko_primem *c = ko_primem_clone(p);
  ASSERT_NE(c, nullptr);
  EXPECT_NEAR(ko_primem_longitude(c), ko_primem_longitude(p) * (kPi / 200) / (kPi / 180), 1e-12);
  ko_primem *d = ko_primem_new("D", 12.5);
  ko_primem *dc = ko_primem_clone(d);
  EXPECT_EQ(ko_primem_longitude(dc), 12.5);
  EXPECT_EQ(ko_primem_eq(d, dc), 1);
  // 3 radians are stored as 171.9 degrees, which the clone reads as 171.9
  // radians: out of range, so the clone fails cleanly.
  ko_primem *r = ko_primem_ext_new("R", ko_angunit_new_code(9101), 3.0);  // 171.9 degrees
  EXPECT_EQ(ko_primem_clone(r), nullptr);
  for (ko_primem *x : {p, c, d, dc, r}) ko_primem_del(x);
}

TEST(Primem, UnitSetTakesOwnership) {
  ko_primem *p = ko_primem_new("M", 10.0);
  ko_angunit *grad = ko_angunit_new_code(9105);
  ko_primem_unit_set(p, grad);
  EXPECT_EQ(ko_primem_unit(p), grad);
  ko_linunit *metre = ko_linunit_new_code(9001);
  ko_primem_unit_set(p, reinterpret_cast<ko_angunit *>(metre));
  EXPECT_EQ(ko_primem_unit(p), grad) << "a unit of the wrong kind is refused";
  ko_linunit_del(metre);
  ko_primem_unit_set(p, nullptr);
  EXPECT_EQ(ko_primem_unit(p), nullptr);
  EXPECT_EQ(ko_primem_longitude(p), 10.0);
  ko_primem_del(p);
}

// ---------------------------------------------------------------------------
// Datum

TEST(Datum, ConstructionAndReports) {
  ko_err err = ko::test::stale_record();
  ko_spheroid *s = ko_spheroid_new("WGS_1984", kWgsA, kWgsF);
  ko_datum *d = ko_datum_ext_new_errext("D_WGS_1984", s, "Defined by station coordinates", &err);
  ASSERT_NE(d, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_datum_spheroid(d), s);
  char anchor[KO_ANCHOR_SIZE];
  EXPECT_STREQ(ko_datum_anchor(d, anchor), "Defined by station coordinates");
  EXPECT_EQ(ko_datum_is_dynamic(d), 0);
  ko_datum_del(d);

  EXPECT_EQ(ko_datum_new_errext("D_X", nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 327, "ko_datum_ext_new_errext", "D_X"});
  ko_angunit *unit = ko_angunit_new_code(9102);
  EXPECT_EQ(ko_datum_new_errext("D_X", reinterpret_cast<ko_spheroid *>(unit), &err), nullptr);
  expect_report(err, Report{4, 8, 327, "ko_datum_ext_new_errext", "D_X"});
  ko_angunit_del(unit);

  std::string long_anchor(300, 'a');
  d = ko_datum_ext_new_errext("D_Y", ko_spheroid_new("S", kWgsA, 0.0), long_anchor.c_str(), &err);
  ASSERT_NE(d, nullptr);
  expect_report(err, Report{2, 8, 354, "ko_datum_ext_new_errext", long_anchor.substr(0, 255).c_str()});
  EXPECT_EQ(std::string(ko_datum_anchor(d, anchor)), long_anchor.substr(0, 255));
  ko_datum_del(d);
}

TEST(Datum, DynamicFrame) {
  ko_datum *d = ko_datum_new("ITRF2014", ko_spheroid_new("GRS_1980", kWgsA, 1 / 298.257222101));
  char frame[KO_NAME_SIZE] = "stale";
  EXPECT_EQ(ko_datum_get_dynamic(d, frame), 0.0);
  EXPECT_STREQ(frame, "");
  ko_datum_set_dynamic(d, "ITRF2014", 2010.0);
  EXPECT_EQ(ko_datum_is_dynamic(d), 1);
  EXPECT_EQ(ko_datum_get_dynamic(d, frame), 2010.0);
  EXPECT_STREQ(frame, "ITRF2014");
  EXPECT_EQ(ko_datum_get_dynamic(d, nullptr), 2010.0);
  ko_datum *c = ko_datum_clone(d);
  EXPECT_EQ(ko_datum_get_dynamic(c, frame), 2010.0);
  EXPECT_STREQ(frame, "ITRF2014");
  ko_datum_set_dynamic(d, nullptr, NAN);
  EXPECT_EQ(ko_datum_is_dynamic(d), 1) << "a NaN epoch counts as dynamic";
  EXPECT_STREQ((ko_datum_get_dynamic(d, frame), frame), "");
  ko_datum_set_dynamic(d, "x", -0.0);
  EXPECT_EQ(ko_datum_is_dynamic(d), 0);
  std::string long_frame(100, 'f');
  ko_datum_set_dynamic(d, long_frame.c_str(), 2020.0);
  EXPECT_EQ(std::string((ko_datum_get_dynamic(d, frame), frame)), long_frame.substr(0, 79));
  ko_datum_del(d);
  ko_datum_del(c);
}

TEST(Datum, EqualityDropsTheDPrefix) {
  struct Case {
    const char *a, *b;
    int equal;
  };
  const Case cases[] = {
      {"D_WGS_1984", "WGS_1984", 1}, {"d_wgs_1984", "WGS 1984", 1}, {"D_WGS_1984", "D_WGS_1984", 1},
      {"DWGS_1984", "WGS_1984", 0},  {"D_WGS_1984", "WGS_1972", 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(std::string(c.a) + " / " + c.b);
    ko_datum *a = ko_datum_new(c.a, ko_spheroid_new("WGS_1984", kWgsA, kWgsF));
    ko_datum *b = ko_datum_ext_new(c.b, ko_spheroid_new("WGS_1984", kWgsA, kWgsF), "other anchor");
    EXPECT_EQ(ko_datum_eq(a, b), c.equal);
    EXPECT_EQ(ko_object_eq(b, a), c.equal);
    ko_datum_del(a);
    ko_datum_del(b);
  }
  ko_datum *a = ko_datum_new("D_WGS_1984", ko_spheroid_new("WGS_1984", kWgsA, kWgsF));
  ko_datum *b = ko_datum_new("WGS_1984", ko_spheroid_new("WGS_1984", kWgsA + 1.0, kWgsF));
  EXPECT_EQ(ko_datum_eq(a, b), 0) << "the spheroids decide";
  ko_datum_del(a);
  ko_datum_del(b);
}

// ---------------------------------------------------------------------------
// No object, registry, failed allocations

TEST(GeodeticNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *s = static_cast<ko_spheroid *>(p);
    EXPECT_EQ(ko_spheroid_axis(s), 1.0);
    EXPECT_EQ(ko_spheroid_semiminor_axis(s), 1.0);
    EXPECT_EQ(ko_spheroid_flattening(s), 0.0);
    EXPECT_EQ(ko_spheroid_esquared(s), 0.0);
    EXPECT_EQ(ko_spheroid_unit(s), nullptr);
    EXPECT_EQ(ko_spheroid_clone(s), nullptr);
    EXPECT_EQ(ko_spheroid_del(s), nullptr);
    auto *pm = static_cast<ko_primem *>(p);
    EXPECT_EQ(ko_primem_longitude(pm), 0.0);
    EXPECT_EQ(ko_primem_unit(pm), nullptr);
    ko_primem_unit_set(pm, nullptr);
    EXPECT_EQ(ko_primem_eq(pm, pm), 0);
    EXPECT_EQ(ko_primem_clone(pm), nullptr);
    auto *d = static_cast<ko_datum *>(p);
    char buf[KO_ANCHOR_SIZE] = "x";
    EXPECT_STREQ(ko_datum_anchor(d, buf), "");
    EXPECT_EQ(ko_datum_spheroid(d), nullptr);
    ko_datum_set_dynamic(d, "f", 1.0);
    EXPECT_EQ(ko_datum_get_dynamic(d, buf), 0.0);
    EXPECT_EQ(ko_datum_is_dynamic(d), 0);
    EXPECT_EQ(ko_datum_del(d), nullptr);
    EXPECT_EQ(ko_datum_eq(d, d), 0);
  }
  EXPECT_TRUE(ghost.untouched());
}

TEST(GeodeticRegistry, ObjvecsAreRegistered) {
  EXPECT_EQ(ko_object_vector(KO_TYPE_SPHEROID), &ko_spheroid_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_PRIMEM), &ko_primem_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_DATUM), &ko_datum_objvec);
  ko_datum *d = ko_datum_new("D", ko_spheroid_new("S", kWgsA, kWgsF));
  void *c = ko_object_clone(d);
  EXPECT_EQ(ko_object_eq(d, c), 1);
  EXPECT_EQ(ko_object_del(c), nullptr);
  ko_datum_del(d);
}

TEST(GeodeticMemory, ConstructorsAndClonesCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  // On failure a constructor leaves the caller's sub-objects with the caller.
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_spheroid *s = ko_spheroid_new_errext("WGS_1984", kWgsA, kWgsF, &err);
              if (s == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_spheroid_ext_new_errext", "WGS_1984"});
                return false;
              }
              ko_spheroid_del(s);
              return true;
            }),
            1);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_primem *p = ko_primem_new_errext("Paris", 2.33722917, &err);
              if (p == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_primem_new_errext", "Paris"});
                return false;
              }
              ko_primem_del(p);
              return true;
            }),
            1);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_spheroid *s = ko_spheroid_new("S", kWgsA, kWgsF);
              if (s == nullptr) return false;
              ko_datum *d = ko_datum_ext_new("D", s, "anchor");
              if (d == nullptr) {
                ko_spheroid_del(s);
                return false;
              }
              ko_datum_del(d);
              return true;
            }),
            2);
  ko_datum *src = ko_datum_ext_new("D_X", ko_spheroid_new("S", kWgsA, kWgsF), "anchor");
  ko_datum_set_dynamic(src, "frame", 2015.0);
  ko_object_code_set(src, 6326, 6326, 0, 0, "EPSG", "");
  ASSERT_NE(ko_datum_authority(src), nullptr);
  ko_primem *pm = ko_primem_ext_new("P", ko_angunit_new_code(9105), 2.5969213);
  EXPECT_GT(ko::test::clone_sweep(src, ko_datum_clone, ko_datum_del), 4);
  EXPECT_GT(ko::test::clone_sweep(pm, ko_primem_clone, ko_primem_del), 1);
  ko_spheroid *sph = ko_spheroid_ext_new("S", ko_linunit_new_code(9003), 20925832.16, 0.0034);
  EXPECT_GT(ko::test::clone_sweep(sph, ko_spheroid_clone, ko_spheroid_del), 2);
  ko_spheroid_del(sph);
  ko_datum_del(src);
  ko_primem_del(pm);
}

}  // namespace
