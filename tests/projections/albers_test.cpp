// Albers equal-area conic: agreement with PROJ's aea (two parallels, one
// parallel, southern cone, sphere), its compare function and the domain
// edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kAlbers{ko::proj::albers_forward, ko::proj::albers_inverse,
                     ko::proj::albers_constants};
const Parms kConus{{slot::kStdParallel1, dms(29.5)}, {slot::kStdParallel2, dms(45.5)},
                   {slot::kLatOrigin, dms(23)}, {slot::kCentralMeridian, dms(-96)}};

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree.
TEST(Albers, AgreesWithProj) {
  check_proj_cases({
      {"CONUS (EPSG:5070)", &kAlbers, kGrs80, kConus,
       "+proj=aea +lat_1=29.5 +lat_2=45.5 +lat_0=23 +lon_0=-96 +ellps=GRS80", -125.0, 24.0, -66.0,
       50.0},
      {"Australia, southern cone", &kAlbers, kGrs80,
       Parms{{slot::kStdParallel1, dms(-18)}, {slot::kStdParallel2, dms(-36)},
             {slot::kLatOrigin, 0.0}, {slot::kCentralMeridian, dms(132)}},
       "+proj=aea +lat_1=-18 +lat_2=-36 +lat_0=0 +lon_0=132 +ellps=GRS80", 112.0, -44.0, 154.0, -9.0},
      {"one standard parallel", &kAlbers, kWgs84,
       Parms{{slot::kStdParallel1, dms(60)}, {slot::kStdParallel2, dms(60)},
             {slot::kLatOrigin, dms(50)}, {slot::kCentralMeridian, dms(100)}},
       "+proj=aea +lat_1=60 +lat_2=60 +lat_0=50 +lon_0=100 +ellps=WGS84", 60.0, 40.0, 140.0, 85.0},
      {"sphere", &kAlbers, Spheroid{{6371000.0, 0.0}}, kConus,
       "+proj=aea +lat_1=29.5 +lat_2=45.5 +lat_0=23 +lon_0=-96 +R=6371000", -125.0, 24.0, -66.0,
       50.0},
  }, 9, 9);
}
#endif

TEST(Albers, CompareSeesTheSameMap) {
  Parms swapped = kConus;
  std::swap(swapped[slot::kStdParallel1], swapped[slot::kStdParallel2]);
  EXPECT_EQ(ko::proj::albers_compare(kGrs80.sph(), kConus.data(), swapped.data()), 1);
  Parms wrapped = kConus;
  wrapped[slot::kCentralMeridian] += ko::kTwoPi;
  EXPECT_EQ(ko::proj::albers_compare(kGrs80.sph(), kConus.data(), wrapped.data()), 1);
  Parms moved = kConus;
  moved[slot::kLatOrigin] = dms(24);
  EXPECT_EQ(ko::proj::albers_compare(kGrs80.sph(), kConus.data(), moved.data()), 0);
  EXPECT_EQ(ko::proj::albers_compare(kGrs80.sph(), kConus.data(), nullptr), 0);
}

TEST(Albers, DomainEdges) {
  // Both poles have images (an arc and the apex side); NaN has none.
  int count = 0;
  forward1(kAlbers, kGrs80, kConus, dms(-96), dms(-90), &count);
  EXPECT_EQ(count, 1);
  forward1(kAlbers, kGrs80, kConus, std::nan(""), dms(40), &count);
  EXPECT_EQ(count, 0);
  // Beyond the north pole's image (the apex side) nothing maps back.
  const XY pole = forward1(kAlbers, kGrs80, kConus, dms(-96), dms(90));
  inverse1(kAlbers, kGrs80, kConus, 0.0, pole.y + 1e6, &count);
  EXPECT_EQ(count, 0);
  // Opposite standard parallels make no cone.
  const Parms flat{{slot::kStdParallel1, dms(30)}, {slot::kStdParallel2, dms(-30)}};
  Cached cached(kAlbers, kGrs80, flat);
  EXPECT_LT(cached.status, 0);
}

}  // namespace
