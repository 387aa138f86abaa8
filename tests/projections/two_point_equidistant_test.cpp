// Two-point equidistant: agreement with PROJ's tpeqd over the whole world
// (on the sphere of radius a when given an ellipsoid, as PROJ computes it),
// true distances from both points, the line through the two points and
// the outline.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#endif

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kTpeqd = family_of(ko_prj_two_point_equidistant_vector);

Parms points(double lon1, double lat1, double lon2, double lat2) {
  return Parms{{slot::kStdParallel1, dms(lat1)},
               {slot::kLon1stPoint, dms(lon1)},
               {slot::kStdParallel2, dms(lat2)},
               {slot::kLon2ndPoint, dms(lon2)}};
}

// Great-circle distance on the unit sphere (haversine form).
double distance(double lon1, double lat1, double lon2, double lat2) {
  const double s1 = std::sin(0.5 * (lat2 - lat1)), s2 = std::sin(0.5 * (lon2 - lon1));
  return 2.0 * std::asin(std::sqrt(s1 * s1 + std::cos(lat1) * std::cos(lat2) * s2 * s2));
}

struct PairCase {
  double lon1, lat1, lon2, lat2;
};
const PairCase kPairs[] = {
    {0, 0, 60, 0},            // on the equator
    {-73.8, 40.6, 2.5, 49.0},  // New York to Paris
    {150, -35, -120, 60},      // across the Pacific, 125° apart
    {10, 80, 10, -20},         // along a meridian
};

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the whole world, inverse of the
// library's forward within 1e-9 degree.  PROJ's tpeqd takes the second
// point's longitude as written (150°E to 120°W is then 270° apart, and its
// map is not equidistant: its images of the two points are 18 360 km apart
// instead of 13 334 km), so it is given the difference reduced to ±180°.
// On the great circle through the two points PROJ's y is up to 0.36 m off
// the x axis; the grid's rows miss the equator, that circle for the first
// pair (the next tests check the line).  Near that circle PROJ's y loses
// digits (2.0e-6 m at 99.72°E 36.85°S for New York - Paris, where the
// library agrees with a 40-digit evaluation to 2e-9 m): the forward is held
// to 5e-6 m of PROJ, and to 1e-6 m of GeographicLib's distances below.
TEST(TwoPointEquidistant, AgreesWithProj) {
  const Spheroid sphere{{6371000.0, 0.0}};
  for (const PairCase &c : kPairs) {
    for (const auto &[sph, figure] :
         {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
      const double lon2 = c.lon1 + std::remainder(c.lon2 - c.lon1, 360.0);
      const std::string def = "+proj=tpeqd +lon_1=" + num(c.lon1) + " +lat_1=" + num(c.lat1) +
                              " +lon_2=" + num(lon2) + " +lat_2=" + num(c.lat2) + figure;
      SCOPED_TRACE(def);
      ProjOracle oracle(def);
      ASSERT_TRUE(oracle.ok());
      check_against(kTpeqd, sph, points(c.lon1, c.lat1, c.lon2, c.lat2), oracle,
                    grid(-179.5, -89.5, 179.5, 89.5, 19, 18), 5e-6, 1e-9);
    }
  }
}
#endif

#ifdef KO_HAVE_GEOGRAPHICLIB
// The defining property over the whole world, poles included: the plane
// distances of every point from the images of the two points are its
// great-circle distances from them (GeographicLib's geodesics on the sphere
// of radius a) within 1e-6 m, and it lies on the left of the x axis when it
// lies on the left of the way from the first point to the second (the
// azimuth to it at the first point is less than the one to the second).
TEST(TwoPointEquidistant, TrueDistancesOverTheWorld) {
  const double a = kWgs84.pair[0];
  const GeographicLib::Geodesic sphere(a, 0.0);
  double worst = 0.0;
  for (const PairCase &c : kPairs) {
    SCOPED_TRACE(c.lon1);
    const Parms p = points(c.lon1, c.lat1, c.lon2, c.lat2);
    const XY A = forward1(kTpeqd, kWgs84, p, dms(c.lon1), dms(c.lat1));
    const XY B = forward1(kTpeqd, kWgs84, p, dms(c.lon2), dms(c.lat2));
    double d = 0.0, az_b = 0.0, az_back = 0.0;
    sphere.Inverse(c.lat1, c.lon1, c.lat2, c.lon2, d, az_b, az_back);
    const std::vector<double> pts = grid(-180, -90, 180, 90, 25, 25);
    for (std::size_t i = 0; i < pts.size(); i += 2) {
      const double lon = pts[i] / kDeg, lat = pts[i + 1] / kDeg;
      double z1 = 0.0, z2 = 0.0, az_p = 0.0, az2 = 0.0;
      sphere.Inverse(c.lat1, c.lon1, lat, lon, z1, az_p, az2);
      sphere.Inverse(c.lat2, c.lon2, lat, lon, z2, az2, az2);
      int count = -1;
      const XY pt = forward1(kTpeqd, kWgs84, p, pts[i], pts[i + 1], &count);
      ASSERT_EQ(count, 1);
      const double e1 = std::fabs(std::hypot(pt.x - A.x, pt.y - A.y) - z1);
      const double e2 = std::fabs(std::hypot(pt.x - B.x, pt.y - B.y) - z2);
      worst = std::fmax(worst, std::fmax(e1, e2));
      EXPECT_LE(e1, 1e-6) << lon << " " << lat;
      EXPECT_LE(e2, 1e-6) << lon << " " << lat;
      const double turn = std::sin((az_p - az_b) * kDeg);
      if (std::fabs(turn) > 1e-6 && std::fabs(pt.y) > 1.0) {
        EXPECT_EQ(pt.y > 0.0, turn < 0.0) << lon << " " << lat;
      }
    }
  }
  std::printf("[ measured ] distances within %.3g m\n", worst);
}
#endif

// The plane distances from the images of the two points are the true
// distances, to 1e-6 m, also close to the line through the two points
// (where the height of the triangle is a small difference of large
// numbers) and on it; the round trip holds there within 1e-9°.
TEST(TwoPointEquidistant, TrueDistancesFromBothPoints) {
  const double a = kWgs84.pair[0];
  for (const PairCase &c : kPairs) {
    SCOPED_TRACE(c.lon1);
    const Parms p = points(c.lon1, c.lat1, c.lon2, c.lat2);
    const XY A = forward1(kTpeqd, kWgs84, p, dms(c.lon1), dms(c.lat1));
    const XY B = forward1(kTpeqd, kWgs84, p, dms(c.lon2), dms(c.lat2));
    const double d = distance(dms(c.lon1), dms(c.lat1), dms(c.lon2), dms(c.lat2));
    EXPECT_NEAR(B.x - A.x, a * d, 1e-6);
    EXPECT_NEAR(A.y, 0.0, 1e-6);
    EXPECT_NEAR(B.y, 0.0, 1e-6);
    // Points near the line: the midpoint of A and B moved off it by tiny
    // amounts, and points beyond B.
    const double mlon = dms(0.5 * (c.lon1 + c.lon2)), mlat = dms(0.5 * (c.lat1 + c.lat2));
    for (const XY off : {XY{0, 0}, XY{1e-9, 1e-9}, XY{-1e-7, 3e-7}, XY{1e-4, -1e-4}}) {
      for (const XY base : {XY{mlon, mlat}, XY{dms(c.lon2), dms(c.lat2)}}) {
        const double lon = base.x + off.x, lat = base.y + off.y;
        int count = -1;
        const XY pt = forward1(kTpeqd, kWgs84, p, lon, lat, &count);
        ASSERT_EQ(count, 1);
        const double z1 = distance(dms(c.lon1), dms(c.lat1), lon, lat);
        const double z2 = distance(dms(c.lon2), dms(c.lat2), lon, lat);
        EXPECT_NEAR(std::hypot(pt.x - A.x, pt.y - A.y), a * z1, 1e-6);
        EXPECT_NEAR(std::hypot(pt.x - B.x, pt.y - B.y), a * z2, 1e-6);
        const XY back = inverse1(kTpeqd, kWgs84, p, pt.x, pt.y, &count);
        EXPECT_EQ(count, 1);
        EXPECT_NEAR(lon_diff_deg(back.x, lon), 0.0, 1e-9);
        EXPECT_NEAR((back.y - lat) / kDeg, 0.0, 1e-9);
      }
    }
  }
}

// The outline is the ellipse z1 + z2 = 2π − d about the two points: just
// inside it maps back, beyond it is refused; two points that coincide or
// are antipodal fix no map.
TEST(TwoPointEquidistant, OutlineAndRefusals) {
  const double a = kWgs84.pair[0];
  const Parms p = points(0, 0, 60, 0);
  const double d = dms(60);
  const double semi_major = a * (ko::kPi - 0.5 * d);  // (z1 + z2) / 2 on the x axis
  int count = -1;
  inverse1(kTpeqd, kWgs84, p, semi_major * 0.999, 0.0, &count);
  EXPECT_EQ(count, 1);
  const XY out = inverse1(kTpeqd, kWgs84, p, semi_major * 1.001, 0.0, &count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(out.x, HUGE_VAL);
  const double semi_minor = std::sqrt(semi_major * semi_major - 0.25 * a * a * d * d);
  inverse1(kTpeqd, kWgs84, p, 0.0, semi_minor * 1.001, &count);
  EXPECT_EQ(count, 0);
  inverse1(kTpeqd, kWgs84, p, 0.0, -semi_minor * 0.999, &count);
  EXPECT_EQ(count, 1);
  forward1(kTpeqd, kWgs84, p, 0.1, NAN, &count);
  EXPECT_EQ(count, 0);
  expect_refused(kTpeqd, kWgs84, points(10, 20, 10, 20), "the same point twice");
  expect_refused(kTpeqd, kWgs84, points(10, 20, -170, -20), "antipodal points");
  expect_refused(kTpeqd, kWgs84, points(10, 95, 10, 20), "a latitude beyond the pole");
}

}  // namespace
