// The perspective azimuthals: agreement with PROJ's gnom and nsper for
// polar, equatorial and oblique centres (on the sphere of radius a when
// given an ellipsoid, as PROJ computes them), the gnomonic's straight great
// circles, and the horizon and limb.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kGnomonic = family_of(ko_prj_gnomonic_vector);
const Family kNsper = family_of(ko_prj_vertical_near_side_perspective_vector);

Parms centre(double lon, double lat) {
  return Parms{{slot::kLonCenter, dms(lon)}, {slot::kLatCenter, dms(lat)}};
}
Parms seen_from(double lon, double lat, double height) {
  Parms p = centre(lon, lat);
  p[slot::kHeight] = height;
  return p;
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

// Forward within 1e-6 m of PROJ's nsper up to 0.5° inside the horizon (from
// a geostationary height, 1000 km and 300 km), inverse of the library's
// forward within 1e-9 degree.
TEST(VerticalPerspective, AgreesWithProj) {
  struct View {
    double lon, lat, height;
  };
  const Spheroid sphere{{6371000.0, 0.0}};
  for (const View v : {View{-75, 0, 35786000}, View{10, 50, 1e6}, View{140, -35, 3e5},
                       View{0, 90, 2e6}}) {
    for (const auto &[sph, figure] :
         {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
      const std::string def = "+proj=nsper +h=" + num(v.height) + " +lon_0=" + num(v.lon) +
                              " +lat_0=" + num(v.lat) + figure;
      SCOPED_TRACE(def);
      ProjOracle oracle(def);
      ASSERT_TRUE(oracle.ok());
      const double horizon = std::acos(1.0 / (1.0 + v.height / sph.pair[0])) / kDeg;
      std::vector<double> pts = cap(v.lon, v.lat, horizon - 0.5);
      // A view from 300 km sees a cap of 17°: a finer grid within it.
      if (pts.size() < 100) {
        pts.clear();
        const std::vector<double> fine = grid(v.lon - 25, v.lat - 20, v.lon + 25, v.lat + 20, 41, 41);
        for (std::size_t i = 0; i < fine.size(); i += 2)
          if (arc(dms(v.lon), dms(v.lat), fine[i], fine[i + 1]) < dms(horizon - 0.5)) {
            pts.push_back(fine[i]);
            pts.push_back(fine[i + 1]);
          }
      }
      ASSERT_GT(pts.size(), 100u);
      check_against(kNsper, sph, seen_from(v.lon, v.lat, v.height), oracle, pts, 1e-6, 1e-9);
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

// The horizon seen from the view point is the limb circle of radius
// a sqrt((P − 1) / (P + 1)): beyond the horizon nothing has an image, and
// beyond the limb the inverse refuses.
TEST(VerticalPerspective, HorizonAndLimb) {
  const double a = kWgs84.pair[0], h = 35786000.0, p = 1.0 + h / a;
  const Parms parms = seen_from(-75, 0, h);
  const double horizon = std::acos(1.0 / p);
  int count = -1;
  const XY limb = forward1(kNsper, kWgs84, parms, dms(-75) + horizon * (1 - 1e-12), 0.0, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(limb.x, a * std::sqrt((p - 1.0) / (p + 1.0)), 1e-3);
  forward1(kNsper, kWgs84, parms, dms(-75) + horizon + 1e-6, 0.0, &count);
  EXPECT_EQ(count, 0) << "beyond the horizon";
  forward1(kNsper, kWgs84, parms, dms(105), 0.0, &count);
  EXPECT_EQ(count, 0) << "the far side";
  const XY out = inverse1(kNsper, kWgs84, parms, 0.0, limb.x * 1.001, &count);
  EXPECT_EQ(count, 0) << "beyond the limb";
  EXPECT_EQ(out.x, HUGE_VAL);
  const XY back = inverse1(kNsper, kWgs84, parms, 0.0, 0.0, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(back.x / kDeg, -75.0, 1e-12);
  EXPECT_NEAR(back.y / kDeg, 0.0, 1e-12);
  expect_refused(kNsper, kWgs84, seen_from(0, 0, 0.0), "no height");
  expect_refused(kNsper, kWgs84, seen_from(0, 0, -1000.0), "a view point inside the sphere");
  expect_refused(kNsper, kWgs84, seen_from(0, 95, 1e6), "centre beyond the pole");
}

}  // namespace
