// The projection vectors of the written families: each is found by its code,
// its constants function accepts a representative definition, and its
// forward and inverse slots are the pair that belongs to those constants
// (a point goes out and comes back).
#include "ko.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct Row {
  int32_t code;
  Parms parms;
  double lon, lat;  // degrees, inside the area the definition is for
};

// One representative definition of each written family and a point of the
// area it is for.
std::vector<Row> representative_rows() {
  const Parms conic{{slot::kCentralMeridian, dms(-99)}, {slot::kStdParallel1, dms(28, 23)},
                    {slot::kStdParallel2, dms(30, 17)}, {slot::kLatOrigin, dms(27, 50)}};
  const Parms one{{slot::kCentralMeridian, dms(-77)}, {slot::kLatOrigin, dms(18)}};
  const Parms merc{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)},
                   {slot::kLatOrigin, dms(42)}};
  const Parms stereo{{slot::kCentralMeridian, dms(5)}, {slot::kLatOrigin, dms(52)}};
  const Parms polar{{slot::kCentralMeridian, dms(0)}, {slot::kLatOrigin, dms(90)},
                    {slot::kStdParallel1, dms(71)}};
  const Parms hotine{{slot::kLatCenter, dms(4)}, {slot::kLonCenter, dms(115)},
                     {slot::kAzimuth, dms(53)}, {slot::kRotation, dms(53)},
                     {slot::kScaleFactor, 0.9999}};
  const Parms two{{slot::kStdParallel1, dms(40)}, {slot::kLon1stPoint, dms(-100)},
                  {slot::kStdParallel2, dms(50)}, {slot::kLon2ndPoint, dms(-80)},
                  {slot::kLatCenter, dms(45)}};
  const Parms krovak{{slot::kLatCenter, dms(49.5)}, {slot::kLonCenter, dms(42.5)},
                     {slot::kAzimuth, dms(30.28813975)}, {slot::kStdParallel1, dms(78.5)},
                     {slot::kScaleFactor, 0.9999}};
  const Parms nz{{slot::kCentralMeridian, dms(173)}, {slot::kLatOrigin, dms(-41)}};
  const Parms bonne{{slot::kCentralMeridian, dms(5)}, {slot::kStdParallel1, dms(45)}};
  const Parms ortho{{slot::kLonCenter, dms(5)}, {slot::kLatCenter, dms(52)}};
  return {
      {43020, conic, -96, 28.5},   {43091, one, -76.9, 17.9},   {43092, conic, -96, 28.5},
      {43004, merc, 53, 53},       {43069, merc, 53, 53},       {43070, merc, 53, 53},
      {43104, merc, 53, 53},       {43026, stereo, 6, 53},      {43038, stereo, 6, 53},
      {43066, polar, 44, 73},      {43067, polar, 44, 73},      {43068, polar, 44, 73},
      {43036, hotine, 115.8, 5.4}, {43037, hotine, 115.8, 5.4}, {43053, hotine, 115.8, 5.4},
      {43054, hotine, 115.8, 5.4}, {43025, two, -90, 45},       {43035, two, -90, 45},
      {43039, krovak, 34.5, 50.2},
      {43028, stereo, 6, 53},      {43033, stereo, 6, 53},      {43007, conic, -96, 28.5},
      {43002, merc, 53, 53},       {43061, merc, 53, 53},       {43034, merc, 53, 53},
      {43032, stereo, 6, 53},      {43021, stereo, 6, 53},      {43085, stereo, 6, 53},
      {43064, stereo, 6, 53},      {43040, nz, 174, -40},       {43024, bonne, 6, 53},
      {43041, ortho, 6, 53},       {43063, hotine, 115.8, 5.4},
  };
}

TEST(ProjectionFamilyVectors, EachVectorRoundTripsAPointThroughItsOwnConstants) {
  for (const Row &r : representative_rows()) {
    SCOPED_TRACE(r.code);
    const ko_projlist_entry *v = ko_projlist_from_code(r.code);
    ASSERT_NE(v, nullptr);
    // Equidistant_Cylindrical and New_Zealand_Map_Grid compute their
    // constants on each call.
    EXPECT_EQ(v->constfunc == nullptr, r.code == 43002 || r.code == 43040);
    Cached cached({v->forward, v->inverse, v->constfunc}, kWgs84, r.parms);
    ASSERT_GE(cached.status, 0);
    double xy[2] = {r.lon * kDeg, r.lat * kDeg};
    EXPECT_EQ(v->forward(kWgs84.sph(), r.parms.data(), 1, xy, cached.ivals(), cached.dvals()), 1);
    EXPECT_EQ(v->inverse(kWgs84.sph(), r.parms.data(), 1, xy, cached.ivals(), cached.dvals()), 1);
    EXPECT_NEAR(xy[0] / kDeg, r.lon, 1e-9);
    EXPECT_NEAR(xy[1] / kDeg, r.lat, 1e-9);
  }
}

// Converts one bad point between two good ones, both ways; the bad one is
// not counted and comes out as no finite coordinates.
void expect_only_good_converted(const ko_projlist_entry *v, const Cached &cached, const Parms &parms,
                                double lon, double lat, const double bad[2], bool forward) {
  double pts[6] = {lon * kDeg, lat * kDeg, bad[0], bad[1], lon * kDeg, lat * kDeg};
  if (!forward) {
    ASSERT_EQ(v->forward(kWgs84.sph(), parms.data(), 1, pts, cached.ivals(), cached.dvals()), 1);
    pts[4] = pts[0];
    pts[5] = pts[1];
  }
  const ko_proj_fn f = forward ? v->forward : v->inverse;
  EXPECT_EQ(f(kWgs84.sph(), parms.data(), 3, pts, cached.ivals(), cached.dvals()), 2)
      << (forward ? "forward " : "inverse ") << bad[0] << ", " << bad[1];
  EXPECT_FALSE(std::isfinite(pts[2]) && std::isfinite(pts[3]))
      << (forward ? "forward " : "inverse ") << bad[0] << ", " << bad[1] << " gave " << pts[2] << ", "
      << pts[3];
  EXPECT_TRUE(std::isfinite(pts[0]) && std::isfinite(pts[4]));
}

TEST(ProjectionFamilyVectors, NanAndInfinityAreNotConvertedNorCounted) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const double bad[][2] = {{kNan, 0.5}, {0.5, kNan}, {kNan, kNan}, {kInf, 0.5}, {0.5, -kInf}};
  for (const Row &r : representative_rows()) {
    SCOPED_TRACE(r.code);
    const ko_projlist_entry *v = ko_projlist_from_code(r.code);
    ASSERT_NE(v, nullptr);
    Cached cached({v->forward, v->inverse, v->constfunc}, kWgs84, r.parms);
    ASSERT_GE(cached.status, 0);
    for (const auto &b : bad) {
      expect_only_good_converted(v, cached, r.parms, r.lon, r.lat, b, true);
      // The same non-numbers as plane coordinates.
      const double xy[2] = {std::isfinite(b[0]) ? 1000.0 : b[0], std::isfinite(b[1]) ? 1000.0 : b[1]};
      expect_only_good_converted(v, cached, r.parms, r.lon, r.lat, xy, false);
    }
  }
}

// Points outside a projection's domain: the antipode of an azimuthal
// centre, the pole a conic opens away from, the poles of the cylinder.
// (The oblique stereographic's singular point is the antipode on its
// conformal sphere, not the geodetic antipode, which it maps far away but
// finitely, as PROJ's sterea does.)
TEST(ProjectionFamilyVectors, PointsOutsideTheDomainAreNotConverted) {
  const Parms conic{{slot::kCentralMeridian, dms(-99)}, {slot::kStdParallel1, dms(28, 23)},
                    {slot::kStdParallel2, dms(30, 17)}, {slot::kLatOrigin, dms(27, 50)}};
  const Parms one{{slot::kCentralMeridian, dms(-77)}, {slot::kLatOrigin, dms(18)}};
  const Parms merc{{slot::kCentralMeridian, dms(51)}, {slot::kStdParallel1, dms(42)},
                   {slot::kLatOrigin, dms(42)}};
  const Parms centre{{slot::kCentralMeridian, dms(5)}, {slot::kLatOrigin, dms(52)},
                     {slot::kLonCenter, dms(5)}, {slot::kLatCenter, dms(52)}};
  const Parms polar{{slot::kCentralMeridian, dms(0)}, {slot::kLatOrigin, dms(90)},
                    {slot::kStdParallel1, dms(71)}};
  struct Case {
    int32_t code;
    const Parms &parms;
    double good_lon, good_lat, bad_lon, bad_lat;  // degrees
  } const cases[] = {
      {43020, conic, -96, 28.5, -96, -90},          // Lambert 2SP, the far pole
      {43091, one, -76.9, 17.9, -76.9, -90},        // Lambert 1SP, the far pole
      {43004, merc, 53, 53, 53, 90},                // Mercator, a pole
      {43026, centre, 6, 53, -175, -52},            // stereographic, antipode
      {43041, centre, 6, 53, -175, -52},            // orthographic, far side
      {43041, centre, 6, 53, 5, -40},               // orthographic, beyond the horizon
      {43032, centre, 6, 53, -175, -52},            // azimuthal equidistant, antipode
      {43033, centre, 6, 53, -175, -52},            // Lambert azimuthal, antipode
      {43066, polar, 44, 73, 44, -90},              // polar stereographic, the far pole
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.code);
    const ko_projlist_entry *v = ko_projlist_from_code(c.code);
    ASSERT_NE(v, nullptr);
    Cached cached({v->forward, v->inverse, v->constfunc}, kWgs84, c.parms);
    ASSERT_GE(cached.status, 0);
    const double bad[2] = {c.bad_lon * kDeg, c.bad_lat * kDeg};
    expect_only_good_converted(v, cached, c.parms, c.good_lon, c.good_lat, bad, true);
  }
}

}  // namespace
