// Equidistant cylindrical (spherical and ellipsoidal) and cylindrical
// equal-area: the IOGP guidance note 7-2 example of method 1028, GeographicLib's
// meridian distance, PROJ's eqc and cea, and the domain edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Ellipsoid.hpp>
#endif

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

// Equidistant_Cylindrical has no constants function.
const Family kEqc{ko::proj::eqc_forward, ko::proj::eqc_inverse, nullptr};
const Family kEqcE{ko::proj::eqc_ellipsoidal_forward, ko::proj::eqc_ellipsoidal_inverse,
                   ko::proj::eqc_ellipsoidal_constants};
const Family kCea{ko::proj::cea_forward, ko::proj::cea_inverse, ko::proj::cea_constants};

TEST(Cylindrical, GuidanceNoteExampleOfTheEllipsoidalEquidistant) {
  // WGS 84 / World Equidistant Cylindrical: 55°N 10°E is E 1113194.91,
  // N 6097230.31.
  const Parms p{{slot::kCentralMeridian, 0.0}};
  const XY f = forward1(kEqcE, kWgs84, p, dms(10), dms(55));
  EXPECT_NEAR(f.x, 1113194.91, 0.005 + 1e-9);
  EXPECT_NEAR(f.y, 6097230.31, 0.005 + 1e-9);
  const XY b = inverse1(kEqcE, kWgs84, p, 1113194.91, 6097230.31);
  EXPECT_NEAR(b.x / kDeg * 3600, 10.0 * 3600, 0.0005);
  EXPECT_NEAR(b.y / kDeg * 3600, 55.0 * 3600, 0.0005);
}

#ifdef KO_HAVE_GEOGRAPHICLIB
// y is the meridian distance from the latitude of origin (GeographicLib's
// exact value) and x the parallel's radius times Δλ; within 1e-7 m.
TEST(Cylindrical, EllipsoidalEquidistantIsTheMeridianDistance) {
  const GeographicLib::Ellipsoid ell(6378137.0, 1 / 298.257223563);
  const Parms p{{slot::kCentralMeridian, dms(-20)}, {slot::kStdParallel1, dms(30)},
                {slot::kLatOrigin, dms(10)}};
  const double nu1 = 6378137.0 / std::sqrt(1 - kWgs84.pair[1] * std::pow(std::sin(dms(30)), 2));
  for (double lat = -89.5; lat <= 89.5; lat += 11.0) {
    const XY f = forward1(kEqcE, kWgs84, p, dms(15), lat * kDeg);
    EXPECT_NEAR(f.y, ell.MeridianDistance(lat) - ell.MeridianDistance(10.0), 1e-7) << lat;
    EXPECT_NEAR(f.x, nu1 * std::cos(dms(30)) * dms(35), 1e-7);
    const XY b = inverse1(kEqcE, kWgs84, p, f.x, f.y);
    EXPECT_NEAR(b.y / kDeg, lat, 1e-12);
    EXPECT_NEAR(b.x / kDeg, 15.0, 1e-12);
  }
}
#endif

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree.
TEST(Cylindrical, AgreesWithProj) {
  check_proj_cases({
      {"equidistant, sphere of radius a", &kEqc, kWgs84,
       Parms{{slot::kCentralMeridian, dms(30)}, {slot::kStdParallel1, dms(20)}, {slot::kLatOrigin, dms(5)}},
       "+proj=eqc +lon_0=30 +lat_ts=20 +lat_0=5 +a=6378137 +b=6378137",
       30 - 179, -89, 30 + 179, 89},
      {"equal area, ellipsoid", &kCea, kWgs84,
       Parms{{slot::kCentralMeridian, dms(-40)}, {slot::kStdParallel1, dms(30)}},
       "+proj=cea +lon_0=-40 +lat_ts=30 +ellps=WGS84",
       -40 - 179, -89, -40 + 179, 89},
      {"equal area, sphere", &kCea, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kCentralMeridian, 0.0}, {slot::kStdParallel1, dms(45)}},
       "+proj=cea +lat_ts=45 +R=6371000",
       0.0 - 179, -89, 0.0 + 179, 89},
  }, 13, 11);
}
#endif

TEST(Cylindrical, BeyondThePolesAndBadInputAreRefused) {
  const Parms p{{slot::kStdParallel1, dms(30)}};
  for (const Family *f : {&kEqc, &kEqcE, &kCea}) {
    // A northing past the pole's.
    const XY pole = forward1(*f, kWgs84, p, 0.0, dms(90));
    int count = -1;
    inverse1(*f, kWgs84, p, 0.0, pole.y * 1.01, &count);
    EXPECT_EQ(count, 0);
    inverse1(*f, kWgs84, p, 0.0, pole.y, &count);
    EXPECT_EQ(count, 1);
    forward1(*f, kWgs84, p, std::nan(""), 0.3, &count);
    EXPECT_EQ(count, 0);
  }
  // A standard parallel at the pole gives no map.
  const Parms polar{{slot::kStdParallel1, dms(90)}};
  double xy[2] = {0.1, 0.1};
  EXPECT_EQ(kEqc.forward(kWgs84.sph(), polar.data(), 1, xy, nullptr, nullptr), 0);
  Cached cached(kCea, kWgs84, polar);
  EXPECT_LT(cached.status, 0);
}

}  // namespace
