// Stereographic_North_Pole and Stereographic_South_Pole against PROJ's
// stere with lat_0 = ±90 and lat_ts: world grids on an ellipsoid and a
// sphere, the standard parallel taken in the pole's hemisphere, the scale
// factor, the central meridian, and the pole opposite refused.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kNorth{ko::proj::stereographic_north_pole_forward,
                    ko::proj::stereographic_north_pole_inverse,
                    ko::proj::stereographic_north_pole_constants};
const Family kSouth{ko::proj::stereographic_south_pole_forward,
                    ko::proj::stereographic_south_pole_inverse,
                    ko::proj::stereographic_south_pole_constants};

Parms pole_parms(double lon0_deg, double sp_deg, double k0 = 1.0) {
  return Parms{{slot::kCentralMeridian, dms(lon0_deg)},
               {slot::kStdParallel1, dms(sp_deg)},
               {slot::kScaleFactor, k0}};
}

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the hemisphere of the pole and most of
// the other one, inverse of our own forward within 1e-9 degree.
TEST(StereographicPole, AgreesWithProj) {
  check_proj_cases({
      {"north, 71°N, WGS 84", &kNorth, kWgs84, pole_parms(-45, 71),
       "+proj=stere +lat_0=90 +lat_ts=71 +lon_0=-45 +ellps=WGS84", -180, -60, 180, 90},
      {"south, 71°S, WGS 84", &kSouth, kWgs84, pole_parms(0, -71),
       "+proj=stere +lat_0=-90 +lat_ts=-71 +lon_0=0 +ellps=WGS84", -180, -90, 180, 60},
      {"south given a northern parallel", &kSouth, kGrs80, pole_parms(70, 60),
       "+proj=stere +lat_0=-90 +lat_ts=-60 +lon_0=70 +ellps=GRS80", -180, -90, 180, 60},
      {"north, parallel on the equator", &kNorth, kIntl1924, pole_parms(10, 0),
       "+proj=stere +lat_0=90 +lat_ts=0 +lon_0=10 +ellps=intl", -180, -60, 180, 90},
      {"north, parallel at the pole", &kNorth, kClarke1866, pole_parms(-100, 90),
       "+proj=stere +lat_0=90 +lat_ts=90 +lon_0=-100 +ellps=clrk66", -180, -60, 180, 90},
      {"south, sphere", &kSouth, Spheroid{{6371000.0, 0.0}}, pole_parms(-30, -50),
       "+proj=stere +lat_0=-90 +lat_ts=-50 +lon_0=-30 +R=6371000", -180, -90, 180, 60},
  }, 13, 13, 1e-6, 1e-9);
}

// PROJ ignores k_0 once lat_ts is below the pole; here the scale factor
// scales the whole map, so the oracle's result is scaled by it.
struct ScaledOracle {
  const ProjOracle &oracle;
  double k;
  XY forward(double lon, double lat) const {
    const XY r = oracle.forward(lon, lat);
    return {k * r.x, k * r.y};
  }
};

TEST(StereographicPole, ScaleFactorScalesTheMap) {
  ProjOracle oracle("+proj=stere +lat_0=90 +lat_ts=70 +lon_0=0 +ellps=WGS84");
  ASSERT_TRUE(oracle.ok());
  check_against(kNorth, kWgs84, pole_parms(0, 70, 0.994), ScaledOracle{oracle, 0.994},
                grid(-180, -30, 180, 90, 9, 9), 1e-6, 1e-9);
}
#endif

// A change of central meridian turns the map about the pole: the point
// keeps its place relative to the new meridian.
TEST(StereographicPole, CentralMeridianTurnsTheMap) {
  const XY a = forward1(kNorth, kWgs84, pole_parms(0, 70), dms(30), dms(60));
  const XY b = forward1(kNorth, kWgs84, pole_parms(25, 70), dms(55), dms(60));
  EXPECT_NEAR(a.x, b.x, 1e-6);
  EXPECT_NEAR(a.y, b.y, 1e-6);
  EXPECT_GT(std::fabs(a.x), 1e5);
}

TEST(StereographicPole, DomainEdges) {
  const struct {
    const char *name;
    const Family *family;
    double lat_deg;
    int want;
  } rows[] = {
      {"north: its pole is the centre", &kNorth, 90, 1},
      {"north: the south pole has no image", &kNorth, -90, 0},
      {"south: the north pole has no image", &kSouth, 90, 0},
      {"south: its pole is the centre", &kSouth, -90, 1},
      {"north: beyond a pole", &kNorth, 91, 0},
      {"south: NaN latitude", &kSouth, NAN, 0},
  };
  for (const auto &r : rows) {
    SCOPED_TRACE(r.name);
    int count = -1;
    const XY p = forward1(*r.family, kWgs84, pole_parms(0, 70), dms(20), r.lat_deg * kDeg, &count);
    EXPECT_EQ(count, r.want);
    if (r.want == 1) {
      EXPECT_NEAR(p.x, 0.0, 1e-9);
      EXPECT_NEAR(p.y, 0.0, 1e-9);
    } else {
      EXPECT_EQ(p.x, HUGE_VAL);
      EXPECT_EQ(p.y, HUGE_VAL);
    }
  }
  expect_refused(kNorth, kWgs84, pole_parms(0, 91), "standard parallel beyond the pole");
  expect_refused(kSouth, kWgs84, pole_parms(0, -70, 0.0), "zero scale factor");
}

}  // namespace
