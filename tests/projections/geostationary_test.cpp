// Geostationary_Satellite against PROJ's geos: both sweep axes, ellipsoid
// and sphere, the sub-satellite longitude; the far side of the globe and
// points off the disc refused.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kGeos{ko::proj::geostationary_satellite_forward,
                   ko::proj::geostationary_satellite_inverse,
                   ko::proj::geostationary_satellite_constants};

constexpr double kHeight = 35785831.0;

Parms geos_parms(double lon0_deg, double option, double h = kHeight) {
  return Parms{{slot::kLonCenter, dms(lon0_deg)}, {slot::kHeight, h}, {slot::kOption, option}};
}

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the visible disc (60° either way of
// the sub-satellite point), inverse within 1e-9 degree.
TEST(Geostationary, AgreesWithProj) {
  check_proj_cases({
      {"Meteosat, sweep y", &kGeos, kWgs84, geos_parms(0, 0),
       "+proj=geos +h=35785831 +lon_0=0 +sweep=y +ellps=WGS84", -60, -60, 60, 60},
      {"GOES East, sweep x", &kGeos, kGrs80, geos_parms(-75, 1, 35786023.0),
       "+proj=geos +h=35786023 +lon_0=-75 +sweep=x +ellps=GRS80", -135, -60, -15, 60},
      {"across the antimeridian", &kGeos, kWgs84, geos_parms(140.7, 0),
       "+proj=geos +h=35785831 +lon_0=140.7 +ellps=WGS84", 80.7, -60, 200.7, 60},
      {"low orbit, sphere", &kGeos, Spheroid{{6371000.0, 0.0}}, geos_parms(20, 1, 2000000.0),
       "+proj=geos +h=2000000 +lon_0=20 +sweep=x +R=6371000", 0, -20, 40, 20},
  }, 13, 13, 1e-6, 1e-9);
}
#endif

TEST(Geostationary, SubSatellitePointIsTheOriginAndFollowsTheCentre) {
  for (double lon0 : {0.0, -75.0, 140.7}) {
    SCOPED_TRACE(lon0);
    int count = -1;
    const XY p = forward1(kGeos, kWgs84, geos_parms(lon0, 0), dms(lon0), 0.0, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(p.x, 0.0, 1e-9);
    EXPECT_NEAR(p.y, 0.0, 1e-9);
  }
}

TEST(Geostationary, PointsOutOfSightAreRefused) {
  const Parms p = geos_parms(0, 0);
  const struct {
    const char *name;
    double lon, lat;
  } hidden[] = {
      {"far side", 120, 0}, {"antipode", 180, 0}, {"north pole", 0, 90}, {"south pole", 0, -90},
      {"beyond the limb", 85, 0}, {"NaN", NAN, 0}, {"latitude beyond 90", 0, 95},
  };
  for (const auto &r : hidden) {
    SCOPED_TRACE(r.name);
    int count = -1;
    const XY q = forward1(kGeos, kWgs84, p, r.lon * kDeg, r.lat * kDeg, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
    EXPECT_EQ(q.y, HUGE_VAL);
  }
  // The disc's radius is asin(a / (a + h)) ≈ 8.7° of scan angle: 10° misses.
  for (double ang_deg : {10.0, 45.0, 95.0}) {
    SCOPED_TRACE(ang_deg);
    int count = -1;
    const XY q = inverse1(kGeos, kWgs84, p, ang_deg * kDeg * kHeight, 0.0, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
  }
  expect_refused(kGeos, kWgs84, geos_parms(0, 2), "option other than 0 or 1");
  expect_refused(kGeos, kWgs84, geos_parms(0, 0, 0.0), "zero height");
  expect_refused(kGeos, kWgs84, geos_parms(0, 0, -1000.0), "negative height");
}

}  // namespace
