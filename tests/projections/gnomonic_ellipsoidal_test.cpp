// Gnomonic_Ellipsoidal against GeographicLib's Gnomonic (Karney 2013's
// ellipsoidal gnomonic) from several centres, against PROJ's gnom on a
// sphere, and the horizon refused.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/Gnomonic.hpp>
#endif

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kGnomonic{ko::proj::gnomonic_ellipsoidal_forward,
                       ko::proj::gnomonic_ellipsoidal_inverse,
                       ko::proj::gnomonic_ellipsoidal_constants};

Parms centre(double lon_deg, double lat_deg) {
  return Parms{{slot::kLonCenter, dms(lon_deg)}, {slot::kLatCenter, dms(lat_deg)}};
}

#ifdef KO_HAVE_GEOGRAPHICLIB
// GeographicLib's gnomonic as an oracle: radians in, metres out.
struct KarneyGnomonic {
  GeographicLib::Geodesic geod;
  GeographicLib::Gnomonic gnom;
  double lat0, lon0;  // degrees
  KarneyGnomonic(const Spheroid &s, double lon0_deg, double lat0_deg)
      : geod(s.pair[0], 1.0 - std::sqrt(1.0 - s.pair[1])), gnom(geod), lat0(lat0_deg),
        lon0(lon0_deg) {}
  XY forward(double lon, double lat) const {
    double x = 0.0, y = 0.0;
    gnom.Forward(lat0, lon0, lat / kDeg, lon / kDeg, x, y);
    return {x, y};
  }
};

// Forward within 1e-6 m of GeographicLib up to 60° of latitude and
// longitude from the centre; inverse of our own forward within 1e-9 degree.
TEST(GnomonicEllipsoidal, AgreesWithGeographicLib) {
  const struct {
    const char *name;
    Spheroid spheroid;
    double lon0, lat0;
    double west, south, east, north;
  } cases[] = {
      {"equator, WGS 84", kWgs84, 0, 0, -60, -60, 60, 60},
      {"mid-latitude, WGS 84", kWgs84, -77, 39, -127, 0, -27, 80},
      {"across the antimeridian", kGrs80, 170, -30, 120, -75, 220, 15},
      {"north pole", kWgs84, 0, 90, -180, 35, 180, 90},
      {"south pole, Clarke 1866", kClarke1866, 30, -90, -150, -90, 210, -35},
      {"flattening 1/150", spheroid_rf(6378137.0, 150.0), 45, 20, 0, -25, 90, 65},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.name);
    KarneyGnomonic oracle(c.spheroid, c.lon0, c.lat0);
    check_against(kGnomonic, c.spheroid, centre(c.lon0, c.lat0), oracle,
                  grid(c.west, c.south, c.east, c.north, 11, 11), 1e-6, 1e-9);
  }
}

// The inverse against GeographicLib's Reverse on points of the plane.
TEST(GnomonicEllipsoidal, InverseAgreesWithGeographicLib) {
  KarneyGnomonic oracle(kWgs84, 20, 50);
  const Parms p = centre(20, 50);
  for (double x : {-8e6, -1e6, 0.0, 3e5, 5e6})
    for (double y : {-6e6, -2e5, 0.0, 1e6, 9e6}) {
      double lat = 0.0, lon = 0.0;
      oracle.gnom.Reverse(oracle.lat0, oracle.lon0, x, y, lat, lon);
      int count = -1;
      const XY q = inverse1(kGnomonic, kWgs84, p, x, y, &count);
      EXPECT_EQ(count, 1);
      EXPECT_NEAR(lon_diff_deg(q.x, lon * kDeg), 0.0, 1e-9) << x << ", " << y;
      EXPECT_NEAR(q.y / kDeg, lat, 1e-9) << x << ", " << y;
    }
}
#endif

#ifdef KO_HAVE_PROJ
// On a sphere it is the ordinary gnomonic.
TEST(GnomonicEllipsoidal, SphereIsTheSphericalGnomonic) {
  check_proj_cases({
      {"sphere", &kGnomonic, Spheroid{{6371000.0, 0.0}}, centre(-100, 40),
       "+proj=gnom +lon_0=-100 +lat_0=40 +R=6371000", -150, -5, -50, 85},
  }, 11, 11, 1e-6, 1e-9);
}
#endif

TEST(GnomonicEllipsoidal, CentreIsTheOriginAndTheHorizonIsRefused) {
  const Parms p = centre(10, 45);
  int count = -1;
  const XY o = forward1(kGnomonic, kWgs84, p, dms(10), dms(45), &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(o.x, 0.0, 1e-9);
  EXPECT_NEAR(o.y, 0.0, 1e-9);
  const struct {
    const char *name;
    double lon, lat;
  } hidden[] = {
      {"antipode", -170, -45}, {"100° away along the meridian", 10, -55},
      {"far side of the equator", 130, 0}, {"NaN", NAN, 0}, {"latitude beyond 90", 10, 91},
  };
  for (const auto &h : hidden) {
    SCOPED_TRACE(h.name);
    const XY q = forward1(kGnomonic, kWgs84, p, h.lon * kDeg, h.lat * kDeg, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
    EXPECT_EQ(q.y, HUGE_VAL);
  }
  inverse1(kGnomonic, kWgs84, p, NAN, 0.0, &count);
  EXPECT_EQ(count, 0);
  expect_refused(kGnomonic, kWgs84, centre(0, 95), "centre beyond the pole");
}

}  // namespace
