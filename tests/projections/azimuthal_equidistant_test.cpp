// Azimuthal equidistant: the exact projection against
// GeographicLib's AzimuthalEquidistant and PROJ's aeqd, the IOGP guidance
// note 7-2 example of the modified form (method 9832), and the domain edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/AzimuthalEquidistant.hpp>
#include <GeographicLib/Geodesic.hpp>
#endif

#include <cmath>
#include <random>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kAeqd{ko::proj::aeqd_forward, ko::proj::aeqd_inverse, ko::proj::aeqd_constants};

// The examples of the two local forms: Guam 1963 / Yap Islands (method
// 9832, Option 1) and Guam 1963 / Guam SPCS (method 9831, Option 2),
// printed to 0.01 m and 0.001".
TEST(AzimuthalEquidistant, GuidanceNoteExamplesOfTheGuamForms) {
  check_guidance_example({"Yap Islands (9832)", &kAeqd, kClarke1866,
                          Parms{{slot::kLatOrigin, dms(9, 32, 48.15)},
                                {slot::kCentralMeridian, dms(138, 10, 7.48)},
                                {slot::kOption, 1.0}},
                          1.0, 40000.0, 60000.0, dms(138, 11, 34.908), dms(9, 35, 47.493),
                          42665.90, 65509.82});
  check_guidance_example({"Guam SPCS (9831)", &kAeqd, kClarke1866,
                          Parms{{slot::kLatOrigin, dms(13, 28, 20.87887)},
                                {slot::kCentralMeridian, dms(144, 44, 55.50254)},
                                {slot::kOption, 2.0}},
                          1.0, 50000.0, 50000.0, dms(144, 38, 7.19265), dms(13, 20, 20.53846),
                          37712.48, 35242.00});
}

#ifdef KO_HAVE_GEOGRAPHICLIB
struct GeographicLibAeqd {
  GeographicLib::Geodesic geod;
  GeographicLib::AzimuthalEquidistant aeqd;
  double lat0, lon0;
  GeographicLibAeqd(double a, double f, double lat0_, double lon0_)
      : geod(a, f), aeqd(geod), lat0(lat0_), lon0(lon0_) {}
  XY forward(double lon, double lat) const {
    double x, y, azi, rk;
    aeqd.Forward(lat0, lon0, lat / kDeg, lon / kDeg, x, y, azi, rk);
    return {x, y};
  }
};

// Forward within 1e-6 m of GeographicLib over the whole hemisphere around
// the centre and beyond (to 150° away), inverse within 1e-9 degree.
TEST(AzimuthalEquidistant, AgreesWithGeographicLib) {
  struct Case {
    double lat0, lon0;
  } cases[] = {{52, 10}, {-35, 147}, {0, -60}, {90, 0}, {-90, 30}};
  for (const auto &c : cases) {
    SCOPED_TRACE(c.lat0);
    const GeographicLibAeqd oracle(6378137.0, 1 / 298.257223563, c.lat0, c.lon0);
    const Parms p{{slot::kLatOrigin, c.lat0 * kDeg}, {slot::kCentralMeridian, c.lon0 * kDeg}};
    std::vector<double> pts;
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> lat(-89.9, 89.9), lon(-180, 180);
    for (int i = 0; i < 400; ++i) {
      const double la = lat(rng), lo = lon(rng);
      double s12;
      oracle.geod.Inverse(c.lat0, c.lon0, la, lo, s12);
      if (s12 > 150 * 111319.5) continue;  // keep away from the antipodal zone
      pts.push_back(lo * kDeg);
      pts.push_back(la * kDeg);
    }
    check_against(kAeqd, kWgs84, p, oracle, pts, 1e-6, 1e-9);
  }
}
#endif

#ifdef KO_HAVE_PROJ
TEST(AzimuthalEquidistant, AgreesWithProj) {
  const Parms exact{{slot::kLatOrigin, dms(40)}, {slot::kCentralMeridian, dms(-100)}};
  ProjOracle aeqd("+proj=aeqd +lat_0=40 +lon_0=-100 +ellps=WGS84");
  ASSERT_TRUE(aeqd.ok());
  check_against(kAeqd, kWgs84, exact, aeqd, grid(-170, -30, -30, 85, 11, 9), 1e-3, 1e-9);
  const Parms sphere_p = exact;
  ProjOracle sphere("+proj=aeqd +lat_0=40 +lon_0=-100 +R=6371000");
  check_against(kAeqd, Spheroid{{6371000.0, 0.0}}, sphere_p, sphere, grid(-170, -30, -30, 85, 11, 9),
                1e-3, 1e-9);
  // PROJ's +guam is method 9831: within 1 mm over Guam, inverse 1e-9°.
  const Parms guam{{slot::kLatOrigin, dms(13, 28, 20.87887)},
                   {slot::kCentralMeridian, dms(144, 44, 55.50254)},
                   {slot::kOption, 2.0}};
  ProjOracle guam_proj("+proj=aeqd +guam +lat_0=" + num(13 + 28 / 60.0 + 20.87887 / 3600) +
                       " +lon_0=" + num(144 + 44 / 60.0 + 55.50254 / 3600) + " +ellps=clrk66");
  ASSERT_TRUE(guam_proj.ok());
  check_against(kAeqd, kClarke1866, guam, guam_proj, grid(144.55, 13.2, 145.0, 13.7, 7, 7), 1e-3, 1e-9);
}
#endif

// The modified form is a local series for the exact azimuthal equidistant
// (PROJ's +guam is the simpler method 9831, so it is no oracle here): within
// 5 mm of the exact (geodesic) form over 50 km of the origin (it drifts to
// 0.1 m at 200 km), and its inverse undoes its forward there to 1e-9 degree.
TEST(AzimuthalEquidistant, ModifiedFormApproximatesTheExactOne) {
  Parms guam{{slot::kLatOrigin, dms(13, 28, 20.87887)},
             {slot::kCentralMeridian, dms(144, 44, 55.50254)},
             {slot::kOption, 1.0}};
  Parms exact = guam;
  exact[slot::kOption] = 0.0;
  struct Exact {
    const Parms &p;
    XY forward(double lon, double lat) const { return forward1(kAeqd, kClarke1866, p, lon, lat); }
  } oracle{exact};
  check_against(kAeqd, kClarke1866, guam, oracle, grid(144.3, 13.05, 145.2, 13.9, 7, 7), 0.005, 1e-9);
}

TEST(AzimuthalEquidistant, AntipodeAndFarPointsAreRefused) {
  const Parms p{{slot::kLatOrigin, dms(30)}, {slot::kCentralMeridian, dms(10)}};
  int count = -1;
  forward1(kAeqd, kWgs84, p, dms(-170), dms(-30), &count);
  EXPECT_EQ(count, 0);
  inverse1(kAeqd, kWgs84, p, 0.0, 3.2 * 6378137.0, &count);
  EXPECT_EQ(count, 0);
  // The centre maps to the origin; the pole in the centre's meridian due
  // north at its meridian distance.
  const XY o = forward1(kAeqd, kWgs84, p, dms(10), dms(30), &count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(o.x, 0.0);
  EXPECT_EQ(o.y, 0.0);
  const XY pole = forward1(kAeqd, kWgs84, p, dms(10), dms(90));
  EXPECT_NEAR(pole.x, 0.0, 1e-9);
  EXPECT_GT(pole.y, 6.6e6);
  Parms bad = p;
  bad[slot::kOption] = 3.0;
  Cached cached(kAeqd, kWgs84, bad);
  EXPECT_LT(cached.status, 0);
}

}  // namespace
