// Stereographic family: IOGP guidance note 7-2 worked examples (methods
// 9809, 9810, 9829, 9830), agreement with PROJ's sterea and stere, and the domain
// edges (antipode, opposite pole, centre).
#include "projections/families.h"
#include "projections/simd.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kDouble{ko::proj::double_stereographic_forward,
                     ko::proj::double_stereographic_inverse,
                     ko::proj::double_stereographic_constants};
const Family kStereo{ko::proj::stereographic_forward, ko::proj::stereographic_inverse,
                     ko::proj::stereographic_constants};
const Family kPolarA{ko::proj::polar_stereographic_a_forward,
                     ko::proj::polar_stereographic_a_inverse,
                     ko::proj::polar_stereographic_a_constants};
const Family kPolarB{ko::proj::polar_stereographic_b_forward,
                     ko::proj::polar_stereographic_b_inverse,
                     ko::proj::polar_stereographic_b_constants};
const Family kPolarC{ko::proj::polar_stereographic_c_forward,
                     ko::proj::polar_stereographic_c_inverse,
                     ko::proj::polar_stereographic_c_constants};

// The guidance note's Bessel 1841 is given with 1/f = 299.15281.
const Spheroid kBesselPrinted = spheroid_rf(6377397.155, 299.15281);

// Printed to 0.001 m (9809) or 0.01 m; the rounding of the printed grid
// values is at most 0.0002" of arc.
std::vector<GuidanceExample> examples() {
  return {
      {"Amersfoort / RD New (9809)", &kDouble, kBesselPrinted,
       Parms{{slot::kCentralMeridian, dms(5, 23, 15.5)}, {slot::kLatOrigin, dms(52, 9, 22.178)},
             {slot::kScaleFactor, 0.9999079}},
       1.0, 155000.0, 463000.0, dms(6), dms(53), 196105.283, 557057.739, 0.0005},
      {"WGS 84 / UPS North (9810)", &kPolarA, kWgs84,
       Parms{{slot::kCentralMeridian, 0.0}, {slot::kLatOrigin, dms(90)}, {slot::kScaleFactor, 0.994}},
       1.0, 2000000.0, 2000000.0, dms(44), dms(73), 3320416.75, 632668.43},
      {"Petrels 1972 / Terre Adelie (9830)", &kPolarC, kIntl1924,
       Parms{{slot::kCentralMeridian, dms(140)}, {slot::kStdParallel1, dms(-67)}}, 1.0, 300000.0,
       200000.0, dms(140, 4, 17.040), dms(-66, 36, 18.820), 303169.52, 244055.72},
      // The south pole case, the pole taken from the standard parallel's sign.
      {"WGS 84 / Australian Antarctic Polar Stereographic (9829)", &kPolarB, kWgs84,
       Parms{{slot::kCentralMeridian, dms(70)}, {slot::kStdParallel1, dms(-71)}}, 1.0, 6000000.0,
       6000000.0, dms(120), dms(-75), 7255380.79, 7053389.56},
  };
}

TEST(Stereographic, GuidanceNoteExamplesBothWays) {
  for (const GuidanceExample &ex : examples()) check_guidance_example(ex);
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree.
TEST(Stereographic, AgreesWithProj) {
  const ProjCase cases[] = {
      {"double: Netherlands", &kDouble, kBessel,
       Parms{{slot::kCentralMeridian, dms(5, 23, 15.5)}, {slot::kLatOrigin, dms(52, 9, 22.178)},
             {slot::kScaleFactor, 0.9999079}},
       "+proj=sterea +lat_0=" + num(52 + 9 / 60.0 + 22.178 / 3600) +
           " +lon_0=" + num(5 + 23 / 60.0 + 15.5 / 3600) + " +k=0.9999079 +ellps=bessel",
       3.0, 50.5, 7.5, 54.0},
      {"double: Romania Stereo 70", &kDouble, spheroid_rf(6378245.0, 298.3),
       Parms{{slot::kCentralMeridian, dms(25)}, {slot::kLatOrigin, dms(46)},
             {slot::kScaleFactor, 0.99975}},
       "+proj=sterea +lat_0=46 +lon_0=25 +k=0.99975 +ellps=krass", 20.0, 43.5, 30.0, 48.5},
      {"double: southern origin", &kDouble, kGrs80,
       Parms{{slot::kCentralMeridian, dms(147)}, {slot::kLatOrigin, dms(-35)},
             {slot::kScaleFactor, 1.0}},
       "+proj=sterea +lat_0=-35 +lon_0=147 +k=1 +ellps=GRS80", 140.0, -42.0, 154.0, -28.0},
      {"double: sphere", &kDouble, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kCentralMeridian, dms(10)}, {slot::kLatOrigin, dms(60)}},
       "+proj=sterea +lat_0=60 +lon_0=10 +R=6371000", -20.0, 30.0, 40.0, 89.0},
      {"Snyder oblique", &kStereo, kWgs84,
       Parms{{slot::kCentralMeridian, dms(-100)}, {slot::kLatOrigin, dms(40)},
             {slot::kScaleFactor, 0.9999}},
       "+proj=stere +lat_0=40 +lon_0=-100 +k=0.9999 +ellps=WGS84", -130.0, 20.0, -70.0, 60.0},
      {"Snyder equatorial", &kStereo, kWgs84,
       Parms{{slot::kCentralMeridian, dms(20)}, {slot::kLatOrigin, 0.0}},
       "+proj=stere +lat_0=0 +lon_0=20 +ellps=WGS84", -30.0, -50.0, 70.0, 50.0},
      {"Snyder polar south", &kStereo, kWgs84,
       Parms{{slot::kCentralMeridian, dms(0)}, {slot::kLatOrigin, dms(-90)},
             {slot::kScaleFactor, 0.994}},
       "+proj=stere +lat_0=-90 +lon_0=0 +k=0.994 +ellps=WGS84", -180.0, -90.0, 180.0, -60.0},
      {"variant A north", &kPolarA, kWgs84,
       Parms{{slot::kCentralMeridian, dms(-100)}, {slot::kLatOrigin, dms(90)},
             {slot::kScaleFactor, 0.994}},
       "+proj=stere +lat_0=90 +lon_0=-100 +k=0.994 +ellps=WGS84", -180.0, 55.0, 180.0, 90.0},
      {"variant B south", &kPolarB, kWgs84,
       Parms{{slot::kCentralMeridian, dms(70)}, {slot::kStdParallel1, dms(-71)}},
       "+proj=stere +lat_0=-90 +lat_ts=-71 +lon_0=70 +ellps=WGS84", -180.0, -90.0, 180.0, -55.0},
      {"variant B north", &kPolarB, spheroid_ab(6378273.0, 6356889.449),
       Parms{{slot::kCentralMeridian, dms(-45)}, {slot::kStdParallel1, dms(70)}},
       "+proj=stere +lat_0=90 +lat_ts=70 +lon_0=-45 +a=6378273 +b=6356889.449", -180.0, 30.0,
       180.0, 90.0},
  };
  check_proj_cases(cases, 11, 9);
}

// Variant C is variant B with the false origin on the standard parallel:
// PROJ's image of (λ0, φF) is the shift.
TEST(Stereographic, VariantCIsVariantBFromTheStandardParallel) {
  for (double lat_f : {-67.0, 71.0}) {
    SCOPED_TRACE(lat_f);
    const std::string pole = lat_f < 0 ? "-90" : "90";
    ProjOracle oracle("+proj=stere +lat_0=" + pole + " +lat_ts=" + num(lat_f) +
                      " +lon_0=140 +ellps=intl");
    ASSERT_TRUE(oracle.ok());
    const ShiftedOracle shifted{oracle, 0.0, oracle.forward(dms(140), lat_f * kDeg).y};
    const Parms p{{slot::kCentralMeridian, dms(140)}, {slot::kStdParallel1, lat_f * kDeg}};
    const double south = lat_f < 0 ? -89.5 : 50.0, north = lat_f < 0 ? -50.0 : 89.5;
    check_against(kPolarC, kIntl1924, p, shifted, grid(100, south, 180, north, 9, 9), 1e-3, 1e-9);
  }
}
#endif

TEST(Stereographic, AntipodeOfTheCentreIsNotConverted) {
  const Parms p{{slot::kCentralMeridian, dms(10)}, {slot::kLatOrigin, dms(50)}};
  for (const Family *f : {&kDouble, &kStereo}) {
    // On the sphere the antipode is exact; on the ellipsoid the conformal
    // sphere's antipode of the centre is what has no image, so use a sphere.
    const Spheroid sphere{{6371000.0, 0.0}};
    int count = -1;
    const XY out = forward1(*f, sphere, p, dms(-170), dms(-50), &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out.x, HUGE_VAL);
    EXPECT_EQ(out.y, HUGE_VAL);
    // A point 1e-3 degree from it is far but finite and comes back.
    const XY near = forward1(*f, sphere, p, dms(-170), dms(-49.999), &count);
    EXPECT_EQ(count, 1);
    EXPECT_GT(std::hypot(near.x, near.y), 1e9);
    const XY back = inverse1(*f, sphere, p, near.x, near.y);
    EXPECT_NEAR(back.y / kDeg, -49.999, 1e-6);
  }
}

TEST(Stereographic, OppositePoleHasNoImageAndThePoleIsTheCentre) {
  const Parms a{{slot::kLatOrigin, dms(90)}, {slot::kScaleFactor, 0.994}};
  const Parms c{{slot::kStdParallel1, dms(-67)}};
  int count = -1;
  const XY far = forward1(kPolarA, kWgs84, a, 0.3, dms(-90), &count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(far.x, HUGE_VAL);
  // The pole maps to the centre (variant C: ρF north of the false origin on
  // the south pole's meridian), whatever the longitude.
  const XY pole_a = forward1(kPolarA, kWgs84, a, 2.0, dms(90));
  EXPECT_EQ(pole_a.x, 0.0);
  EXPECT_EQ(pole_a.y, 0.0);
  const XY pole_c1 = forward1(kPolarC, kIntl1924, c, 2.0, dms(-90));
  const XY pole_c2 = forward1(kPolarC, kIntl1924, c, -1.0, dms(-90));
  EXPECT_EQ(pole_c1.x, 0.0);
  EXPECT_EQ(pole_c1.y, pole_c2.y);
  const XY back = inverse1(kPolarC, kIntl1924, c, pole_c1.x, pole_c1.y);
  EXPECT_EQ(back.y, dms(-90));
}

TEST(Stereographic, CentreMapsToTheOriginAndBack) {
  const Parms p{{slot::kCentralMeridian, dms(5, 23, 15.5)}, {slot::kLatOrigin, dms(52, 9, 22.178)},
                {slot::kScaleFactor, 0.9999079}};
  for (const Family *f : {&kDouble, &kStereo}) {
    const XY o = forward1(*f, kBessel, p, p.v[slot::kCentralMeridian], p.v[slot::kLatOrigin]);
    EXPECT_NEAR(o.x, 0.0, 1e-9);
    EXPECT_NEAR(o.y, 0.0, 1e-9);
    const XY back = inverse1(*f, kBessel, p, 0.0, 0.0);
    EXPECT_NEAR(back.x, p.v[slot::kCentralMeridian], 1e-15);
    EXPECT_NEAR(back.y, p.v[slot::kLatOrigin], 1e-15);
  }
}

// The poles and points next to them come back to full precision, one point
// at a time and four at a time.  Points 1e-7 degree from a pole used to land
// on it (sech of the isometric latitude taken as sqrt(1 + expm1(-2q))
// rounds to 0), and the inverse lost half the digits there (cos χ taken
// from sin χ).
TEST(Stereographic, PolesRoundTripToFullPrecision) {
  const Parms p{{slot::kCentralMeridian, dms(5, 23, 15.5)}, {slot::kLatOrigin, dms(52, 9, 22.178)},
                {slot::kScaleFactor, 0.9999079}};
  const double lats[] = {90.0, 89.9999999, 89.99, -89.99, -89.9999999};
  for (const bool vector : {false, true}) {
    SCOPED_TRACE(vector ? "four-wide" : "scalar");
    ko::simd::set_vector_kernels(vector);
    for (const Family *f : {&kDouble, &kStereo}) {
      Cached cached(*f, kBessel, p);
      std::vector<double> pts;
      for (double lat : lats) pts.insert(pts.end(), {dms(20), dms(lat)});
      const std::vector<double> start = pts;
      const int n = static_cast<int>(pts.size() / 2);
      ASSERT_EQ(f->forward(kBessel.sph(), p.data(), n, pts.data(), cached.ivals(), cached.dvals()), n);
      ASSERT_EQ(f->inverse(kBessel.sph(), p.data(), n, pts.data(), cached.ivals(), cached.dvals()), n);
      for (int i = 0; i < n; ++i) {
        EXPECT_NEAR(pts[2 * i + 1] / kDeg, start[2 * i + 1] / kDeg, 1e-12) << lats[i];
        // Longitude as the distance it makes on the parallel (degrees of
        // arc): next to a pole the plane's rounding leaves it less defined.
        const double dlon = std::remainder(pts[2 * i] - start[2 * i], 2 * M_PI) / kDeg;
        EXPECT_LE(std::fabs(dlon * std::cos(start[2 * i + 1])), 1e-12) << lats[i];
      }
    }
  }
  ko::simd::set_vector_kernels(true);
}

TEST(Stereographic, NaNInputIsNotCounted) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Parms p{{slot::kLatOrigin, dms(90)}};
  for (const Family *f : {&kDouble, &kStereo, &kPolarA}) {
    double pts[] = {nan, 0.5, 0.1, nan, 0.1, 0.5};
    EXPECT_EQ(f->forward(kWgs84.sph(), p.data(), 3, pts, nullptr, nullptr), 1);
    EXPECT_EQ(pts[0], HUGE_VAL);
    EXPECT_EQ(pts[3], HUGE_VAL);
    double inv[] = {nan, 1.0, 1.0, 2.0};
    EXPECT_EQ(f->inverse(kWgs84.sph(), p.data(), 2, inv, nullptr, nullptr), 1);
    EXPECT_EQ(inv[1], HUGE_VAL);
  }
}

TEST(Stereographic, InvalidParametersFailTheConstants) {
  expect_refused(kPolarA, kWgs84, Parms{{slot::kLatOrigin, dms(80)}}, "variant A origin not at a pole");
  expect_refused(kPolarB, kWgs84, Parms{{slot::kStdParallel1, 0.0}}, "variant B standard parallel on the equator");
  expect_refused(kPolarC, kWgs84, Parms{{slot::kStdParallel1, 2.0}}, "variant C standard parallel beyond the pole");
  expect_refused(kDouble, kWgs84, Parms{{slot::kLatOrigin, 1.6}}, "latitude of origin beyond the pole");
  expect_refused(kStereo, kWgs84, Parms{{slot::kScaleFactor, 0.0}}, "zero scale");
  expect_refused(kDouble, kWgs84, Parms{{slot::kCentralMeridian, std::nan("")}}, "NaN meridian");
}

// The double stereographic at a pole is the limit of the oblique form: a
// latitude of origin 1e-7 degree from the pole gives the same map to 1 mm.
TEST(Stereographic, DoubleStereographicAtThePoleIsTheLimitOfTheOblique) {
  const Parms pole{{slot::kLatOrigin, dms(90)}};
  const Parms near{{slot::kLatOrigin, dms(90 - 1e-7)}};
  for (double lat : {60.0, 75.0, 89.0}) {
    const XY a = forward1(kDouble, kWgs84, pole, dms(30), lat * kDeg);
    const XY b = forward1(kDouble, kWgs84, near, dms(30), lat * kDeg);
    EXPECT_NEAR(a.x, b.x, 1e-3) << lat;
    EXPECT_NEAR(a.y, b.y, 0.02) << lat;  // the origin itself moves 0.011 m
  }
}

}  // namespace
