// The projection vectors of the written families: each is found by its code,
// its constants function accepts a representative definition, and its
// forward and inverse slots are the pair that belongs to those constants
// (a point goes out and comes back).
#include "ko.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct Row {
  int32_t code;
  Parms parms;
  double lon, lat;  // degrees, inside the area the definition is for
};

TEST(ProjectionFamilyVectors, EachVectorRoundTripsAPointThroughItsOwnConstants) {
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
  const Row rows[] = {
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
  for (const Row &r : rows) {
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

}  // namespace
