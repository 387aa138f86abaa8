// Gnomonic: agreement with PROJ's gnom for polar, equatorial and oblique
// centres (on the sphere of radius a when given an ellipsoid, as PROJ
// computes it), straight great circles, and the horizon.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kGnomonic{ko_prj_gnomonic_vector.forward, ko_prj_gnomonic_vector.inverse,
                       ko_prj_gnomonic_vector.constfunc};

Parms centre(double lon, double lat) {
  return Parms{{slot::kLonCenter, dms(lon)}, {slot::kLatCenter, dms(lat)}};
}

// Angular distance (radians) of two points on the sphere.
double arc(double lon1, double lat1, double lon2, double lat2) {
  const double c = std::sin(lat1) * std::sin(lat2) + std::cos(lat1) * std::cos(lat2) * std::cos(lon2 - lon1);
  return std::acos(std::fmax(-1.0, std::fmin(1.0, c)));
}

// A world grid kept to the points within max_deg of the centre.
std::vector<double> cap(double lon_c, double lat_c, double max_deg) {
  const std::vector<double> all = grid(-180, -90, 180, 90, 37, 37);
  std::vector<double> kept;
  for (std::size_t i = 0; i < all.size(); i += 2)
    if (arc(dms(lon_c), dms(lat_c), all[i], all[i + 1]) < dms(max_deg)) {
      kept.push_back(all[i]);
      kept.push_back(all[i + 1]);
    }
  return kept;
}

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ up to 80° from the centre (where the plane
// is 5.7 radii wide), inverse of the library's forward within 1e-9 degree.
TEST(Gnomonic, AgreesWithProj) {
  struct Centre {
    double lon, lat;
  };
  const Spheroid sphere{{6371000.0, 0.0}};
  for (const Centre c : {Centre{0, 90}, Centre{30, -90}, Centre{0, 0}, Centre{-100, 40},
                         Centre{150, -35}, Centre{179, 10}}) {
    for (const auto &[sph, figure] :
         {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
      const std::string def = "+proj=gnom +lon_0=" + num(c.lon) + " +lat_0=" + num(c.lat) + figure;
      SCOPED_TRACE(def);
      ProjOracle oracle(def);
      ASSERT_TRUE(oracle.ok());
      const std::vector<double> pts = cap(c.lon, c.lat, 80.0);
      ASSERT_GT(pts.size(), 100u);
      check_against(kGnomonic, sph, centre(c.lon, c.lat), oracle, pts, 1e-6, 1e-9);
    }
  }
}
#endif

// Three points of one great circle (the meridian-crossing circle through
// two points, its midpoint found by the vector sum) are on one line.
TEST(Gnomonic, GreatCirclesAreStraight) {
  const Parms p = centre(-40, 35);
  const double lon1 = dms(-70), lat1 = dms(20), lon2 = dms(-10), lat2 = dms(60);
  const double v1[3] = {std::cos(lat1) * std::cos(lon1), std::cos(lat1) * std::sin(lon1), std::sin(lat1)};
  const double v2[3] = {std::cos(lat2) * std::cos(lon2), std::cos(lat2) * std::sin(lon2), std::sin(lat2)};
  const double m[3] = {v1[0] + v2[0], v1[1] + v2[1], v1[2] + v2[2]};
  const double latm = std::atan2(m[2], std::hypot(m[0], m[1])), lonm = std::atan2(m[1], m[0]);
  const XY a = forward1(kGnomonic, kWgs84, p, lon1, lat1);
  const XY b = forward1(kGnomonic, kWgs84, p, lon2, lat2);
  const XY mid = forward1(kGnomonic, kWgs84, p, lonm, latm);
  const double cross = (b.x - a.x) * (mid.y - a.y) - (b.y - a.y) * (mid.x - a.x);
  EXPECT_LE(std::fabs(cross) / std::hypot(b.x - a.x, b.y - a.y), 1e-6);
}

// The horizon and beyond have no image; the far plane maps back near the
// horizon; the centre is the origin.
TEST(Gnomonic, Horizon) {
  const Parms p = centre(20, 50);
  int count = -1;
  const XY o = forward1(kGnomonic, kWgs84, p, dms(20), dms(50), &count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(o.x, 0.0);
  EXPECT_EQ(o.y, 0.0);
  const XY back = inverse1(kGnomonic, kWgs84, p, 0.0, 0.0, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(back.x / kDeg, 20.0, 1e-12);
  EXPECT_NEAR(back.y / kDeg, 50.0, 1e-12);
  const XY h = forward1(kGnomonic, kWgs84, p, dms(20), dms(-40), &count);  // on the horizon
  EXPECT_EQ(count, 0);
  EXPECT_EQ(h.x, HUGE_VAL);
  forward1(kGnomonic, kWgs84, p, dms(-160), dms(-50), &count);  // the antipode
  EXPECT_EQ(count, 0);
  forward1(kGnomonic, kWgs84, p, dms(20), dms(-39.9), &count);  // just inside
  EXPECT_EQ(count, 1);
  const XY farpt = inverse1(kGnomonic, kWgs84, p, 0.0, -1e12, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(farpt.y / kDeg, -40.0, 1e-3);
  inverse1(kGnomonic, kWgs84, p, HUGE_VAL, 0.0, &count);
  EXPECT_EQ(count, 0);
  expect_refused(kGnomonic, kWgs84, centre(0, 91), "centre beyond the pole");
  expect_refused(kGnomonic, kWgs84, Parms{{slot::kLatCenter, dms(10)}, {slot::kLonCenter, NAN}},
                 "no centre longitude");
}

}  // namespace
