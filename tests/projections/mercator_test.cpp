// Mercator variants A, B, C and the auxiliary-sphere form: IOGP guidance
// note 7-2 worked examples (methods 9804, 9805, 1044, 1026, 1024), agreement with
// PROJ, and the domain edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kMercB{ko::proj::mercator_forward, ko::proj::mercator_inverse,
                    ko::proj::mercator_constants};
const Family kMercA{ko::proj::mercator_a_forward, ko::proj::mercator_a_inverse,
                    ko::proj::mercator_a_constants};
const Family kMercC{ko::proj::mercator_c_forward, ko::proj::mercator_c_inverse,
                    ko::proj::mercator_c_constants};
const Family kMercAux{ko::proj::mercator_auxs_forward, ko::proj::mercator_auxs_inverse,
                      ko::proj::mercator_auxs_constants};

const Spheroid kKrassowsky = spheroid_rf(6378245.0, 298.3);

// Guidance-note examples: eastings/northings printed to 0.01 m, angles to
// 0.001": tolerances of half a printed unit.
std::vector<GuidanceExample> examples() {
  return {
      {"Makassar / NEIEZ (9804)", &kMercA, kBessel,
       Parms{{slot::kCentralMeridian, dms(110)}, {slot::kScaleFactor, 0.997}}, 1.0, 3900000.0,
       900000.0, dms(120), dms(-3), 5009726.58, 569150.82},
      {"Caspian Sea Mercator (9805)", &kMercB, kKrassowsky,
       Parms{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)}}, 1.0, 0.0, 0.0,
       dms(53), dms(53), 165704.29, 5171848.07},
      {"Mercator variant C (1044)", &kMercC, kKrassowsky,
       Parms{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)},
             {slot::kLatOrigin, dms(42)}},
       1.0, 0.0, 0.0, dms(53), dms(53), 165704.29, 1351950.22},
      // Mercator (Spherical): "World Spherical Mercator", a sphere of radius
      // 6371007 m, the 1024 example's point.
      {"World Spherical Mercator (1026)", &kMercA, Spheroid{{6371007.0, 0.0}},
       Parms{{slot::kCentralMeridian, 0.0}}, 1.0, 0.0, 0.0, dms(-100, 20), dms(24, 22, 54.433),
       -11156569.90, 2796869.94},
      {"WGS 84 / Pseudo-Mercator (1024)", &kMercAux, kWgs84,
       Parms{{slot::kAuxSphereType, 0.0}}, 1.0, 0.0, 0.0, dms(-100, 20), dms(24, 22, 54.433),
       -11169055.58, 2800000.00},
  };
}

TEST(Mercator, GuidanceNoteExamplesBothWays) {
  for (const GuidanceExample &ex : examples()) check_guidance_example(ex);
}

TEST(Mercator, PseudoMercatorReverseExampleTenKilometresNorth) {
  // Guidance note 7-2, method 1024: (-11169055.58, 2810000.00) is
  // 24°27'48.889"N, 100°20'00.000"W.
  const XY got = inverse1(kMercAux, kWgs84, Parms{{slot::kAuxSphereType, 0.0}}, -11169055.58,
                          2810000.00);
  EXPECT_NEAR(got.y / kDeg * 3600.0, dms(24, 27, 48.889) / kDeg * 3600.0, 0.0005);
  EXPECT_NEAR(got.x / kDeg * 3600.0, dms(-100, 20) / kDeg * 3600.0, 0.0005);
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse of our own output within 1e-9 degree.
TEST(Mercator, AgreesWithProj) {
  check_proj_cases({
      {"variant A", &kMercA, kBessel,
       Parms{{slot::kCentralMeridian, dms(110)}, {slot::kScaleFactor, 0.997}},
       "+proj=merc +lon_0=110 +k_0=0.997 +ellps=bessel",
       110 - 179, -84, 110 + 179, 84},
      {"variant B", &kMercB, kKrassowsky,
       Parms{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)}},
       "+proj=merc +lon_0=51 +lat_ts=42 +ellps=krass",
       51 - 179, -84, 51 + 179, 84},
      {"variant B, southern parallel", &kMercB, kWgs84,
       Parms{{slot::kCentralMeridian, dms(100)}, {slot::kStdParallel1, dms(-41)}},
       "+proj=merc +lon_0=100 +lat_ts=-41 +ellps=WGS84",
       100 - 179, -84, 100 + 179, 84},
      {"sphere", &kMercA, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kCentralMeridian, dms(-30)}}, "+proj=merc +lon_0=-30 +R=6371000",
       -30 - 179, -84, -30 + 179, 84},
      {"west-orientated variant A", &kMercA, kWgs84,
       Parms{{slot::kCentralMeridian, dms(10)}, {slot::kXScale, -1.0}},
       "+proj=merc +lon_0=10 +ellps=WGS84 +axis=wnu",
       10 - 179, -84, 10 + 179, 84},
      {"auxiliary sphere 0 (EPSG:3857)", &kMercAux, kWgs84, Parms{{slot::kAuxSphereType, 0.0}},
       "+proj=merc +a=6378137 +b=6378137",
       0 - 179, -84, 0 + 179, 84},
      {"auxiliary sphere 1 (radius b)", &kMercAux, kWgs84, Parms{{slot::kAuxSphereType, 1.0}},
       "+proj=merc +R=" + num(6378137.0 * std::sqrt(1.0 - kWgs84.pair[1])),
       0 - 179, -84, 0 + 179, 84},
      // PROJ's +R_A is the authalic radius by its series to e^6: it differs
      // from the closed form by 0.1 ppm, 0.7 mm at the edge of this grid.
      {"auxiliary sphere 2 (authalic radius)", &kMercAux, kWgs84,
       Parms{{slot::kAuxSphereType, 2.0}, {slot::kCentralMeridian, dms(20)}},
       "+proj=merc +ellps=WGS84 +R_A +lon_0=20",
       20 - 179, -84, 20 + 179, 84},
  }, 13, 15);
}

// Variant C is variant B shifted by the northing of the false origin, which
// PROJ computes for us as the variant B image of that latitude.
TEST(Mercator, VariantCIsVariantBLessTheFalseOriginNorthing) {
  ProjOracle oracle("+proj=merc +lon_0=51 +lat_ts=42 +ellps=krass");
  ASSERT_TRUE(oracle.ok());
  const ShiftedOracle shifted{oracle, 0.0, oracle.forward(dms(51), dms(42)).y};
  const Parms p{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)},
                {slot::kLatOrigin, dms(42)}};
  check_against(kMercC, kKrassowsky, p, shifted, grid(46, 36, 56, 48, 9, 9), 1e-3, 1e-9);
}
#endif

// Type 3 maps the authalic latitude, computed here from its closed form in
// long double (Snyder 1987, 3-11 and 3-12), with the spherical Mercator of
// the authalic radius.
TEST(Mercator, AuxiliarySphereType3UsesTheAuthalicLatitude) {
  const long double e2 = kWgs84.pair[1], e = std::sqrt(e2);
  auto q = [&](long double phi) {
    const long double s = std::sin(phi);
    return (1 - e2) * (s / (1 - e2 * s * s) - std::log((1 - e * s) / (1 + e * s)) / (2 * e));
  };
  const long double qp = q(1.5707963267948966192313216916397514L);
  const long double radius = 6378137.0L * std::sqrt(qp / 2);
  const Parms p{{slot::kAuxSphereType, 3.0}, {slot::kCentralMeridian, dms(15)}};
  for (double lat : {-80.0, -45.0, -10.0, 0.0, 12.5, 33.0, 60.0, 84.0}) {
    SCOPED_TRACE(lat);
    const long double beta = std::asin(q(lat * kDeg) / qp);
    const double want_y = static_cast<double>(radius * std::asinh(std::tan(beta)));
    const double want_x = static_cast<double>(radius * (40.0L - 15.0L) * kDeg);
    const XY got = forward1(kMercAux, kWgs84, p, dms(40), lat * kDeg);
    EXPECT_NEAR(got.x, want_x, 1e-6);
    EXPECT_NEAR(got.y, want_y, 1e-6);
    const XY back = inverse1(kMercAux, kWgs84, p, got.x, got.y);
    EXPECT_NEAR(back.y / kDeg, lat, 1e-11);
    EXPECT_NEAR(back.x / kDeg, 40.0, 1e-11);
  }
}

TEST(Mercator, PolesAndNaNAreNotConvertedNorCounted) {
  const Parms p{{slot::kCentralMeridian, dms(0)}};
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Family *f : {&kMercA, &kMercB, &kMercC, &kMercAux}) {
    double pts[] = {0.1, dms(90), 0.1, dms(-90), nan, 0.2, 0.3, nan, 0.3, 0.4};
    EXPECT_EQ(f->forward(kWgs84.sph(), p.data(), 5, pts, nullptr, nullptr), 1);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(pts[i], HUGE_VAL) << i;
    EXPECT_TRUE(std::isfinite(pts[8]));
    double inv[] = {nan, 0.0, 1000.0, 2000.0};
    EXPECT_EQ(f->inverse(kWgs84.sph(), p.data(), 2, inv, nullptr, nullptr), 1);
    EXPECT_EQ(inv[0], HUGE_VAL);
  }
}

TEST(Mercator, NearlySphericalSpheroidIsTheSphere) {
  const Parms p{{slot::kCentralMeridian, dms(5)}};
  const Spheroid tiny{{6371000.0, 1e-16}}, sphere{{6371000.0, 0.0}};
  const XY a = forward1(kMercA, tiny, p, dms(20), dms(50));
  const XY b = forward1(kMercA, sphere, p, dms(20), dms(50));
  EXPECT_EQ(a.x, b.x);
  EXPECT_EQ(a.y, b.y);
  EXPECT_NEAR(b.y, 6371000.0 * std::asinh(std::tan(dms(50))), 1e-6);
}

TEST(Mercator, InvalidParametersFailTheConstants) {
  expect_refused(kMercB, kWgs84, Parms{{slot::kStdParallel1, dms(90)}}, "standard parallel at the pole");
  expect_refused(kMercC, kWgs84, Parms{{slot::kLatOrigin, dms(-90)}}, "false origin at the pole");
  expect_refused(kMercA, kWgs84, Parms{{slot::kScaleFactor, 0.0}}, "zero scale");
  expect_refused(kMercAux, kWgs84, Parms{{slot::kAuxSphereType, 4.0}}, "unknown sphere type");
  expect_refused(kMercAux, kWgs84, Parms{{slot::kAuxSphereType, 0.5}}, "fractional sphere type");
  expect_refused(kMercA, kWgs84, Parms{{slot::kCentralMeridian, HUGE_VAL}}, "infinite meridian");
}

TEST(Mercator, CompareOfAuxiliarySphereForms) {
  const Parms web{{slot::kAuxSphereType, 0.0}};
  Parms moved = web;
  moved[slot::kCentralMeridian] = dms(360);  // the same meridian
  EXPECT_EQ(ko::proj::mercator_auxs_compare(kWgs84.sph(), web.data(), moved.data()), 1);
  Parms authalic = web;
  authalic[slot::kAuxSphereType] = 2.0;
  EXPECT_EQ(ko::proj::mercator_auxs_compare(kWgs84.sph(), web.data(), authalic.data()), 0);
  Parms shifted = web;
  shifted[slot::kFalseNorthing] = 1.0;
  EXPECT_EQ(ko::proj::mercator_auxs_compare(kWgs84.sph(), web.data(), shifted.data()), 0);
  // On a sphere types 0, 1 and 2 have the same radius.
  const Spheroid sphere{{6371000.0, 0.0}};
  EXPECT_EQ(ko::proj::mercator_auxs_compare(sphere.sph(), web.data(), authalic.data()), 1);
}

}  // namespace
