// Orthographic on the ellipsoid: agreement with PROJ's ortho (ellipsoidal,
// method 9840) on the visible side, the horizon, and the inverse off the
// outline.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kOrtho{ko::proj::orthographic_forward, ko::proj::orthographic_inverse,
                    ko::proj::orthographic_constants};

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ at points of the visible side, inverse within
// 1e-9 degree.
TEST(Orthographic, AgreesWithProj) {
  struct Case {
    double lat0, lon0;
    Spheroid sph;
    const char *ellps;
  } cases[] = {{55, 5, kWgs84, "+ellps=WGS84"},
               {-30, 140, kWgs84, "+ellps=WGS84"},
               {0, 0, kWgs84, "+ellps=WGS84"},
               {90, 0, kWgs84, "+ellps=WGS84"},
               {40, -100, Spheroid{{6371000.0, 0.0}}, "+R=6371000"}};
  for (const auto &c : cases) {
    SCOPED_TRACE(c.lat0);
    ProjOracle oracle("+proj=ortho +lat_0=" + num(c.lat0) + " +lon_0=" + num(c.lon0) + " " + c.ellps);
    ASSERT_TRUE(oracle.ok());
    const Parms p{{slot::kLatCenter, c.lat0 * kDeg}, {slot::kLonCenter, c.lon0 * kDeg}};
    // Points up to 80° of arc from the centre.
    std::vector<double> pts;
    for (double lat = -89.0; lat <= 89.0; lat += 7.0)
      for (double lon = -180.0; lon < 180.0; lon += 9.0) {
        const double cc = std::sin(c.lat0 * kDeg) * std::sin(lat * kDeg) +
                          std::cos(c.lat0 * kDeg) * std::cos(lat * kDeg) * std::cos((lon - c.lon0) * kDeg);
        if (cc < std::cos(80 * kDeg)) continue;
        pts.push_back(lon * kDeg);
        pts.push_back(lat * kDeg);
      }
    check_against(kOrtho, c.sph, p, oracle, pts, 1e-3, 1e-9);
  }
}
#endif

TEST(Orthographic, FarSideAndOffTheOutlineAreRefused) {
  const Parms p{{slot::kLatCenter, dms(55)}, {slot::kLonCenter, dms(5)}};
  int count = -1;
  forward1(kOrtho, kWgs84, p, dms(-175), dms(-55), &count);  // the antipode
  EXPECT_EQ(count, 0);
  forward1(kOrtho, kWgs84, p, dms(5), dms(-40), &count);  // 95° away on the meridian
  EXPECT_EQ(count, 0);
  forward1(kOrtho, kWgs84, p, dms(5), dms(-30), &count);  // 85° away: visible
  EXPECT_EQ(count, 1);
  inverse1(kOrtho, kWgs84, p, 7e6, 0.0, &count);  // beyond the outline
  EXPECT_EQ(count, 0);
  const XY o = forward1(kOrtho, kWgs84, p, dms(5), dms(55));
  EXPECT_NEAR(o.x, 0.0, 1e-9);
  EXPECT_NEAR(o.y, 0.0, 1e-9);
}

}  // namespace
