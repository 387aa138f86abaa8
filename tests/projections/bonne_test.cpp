// Bonne: agreement with PROJ's bonne (ellipsoid, sphere, southern standard
// parallel, south-orientated through the plane orientation), its sinusoidal
// limit, and the domain edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kBonne{ko::proj::bonne_forward, ko::proj::bonne_inverse, ko::proj::bonne_constants};

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree.
TEST(Bonne, AgreesWithProj) {
  check_proj_cases({
      {"Portugal-like, 39.5°N", &kBonne, kIntl1924,
       Parms{{slot::kCentralMeridian, dms(-8)}, {slot::kStdParallel1, dms(39.5)}},
       "+proj=bonne +lat_1=39.5 +lon_0=-8 +ellps=intl",
       -8 - 150, -85, -8 + 150, 85},
      {"southern parallel", &kBonne, kWgs84,
       Parms{{slot::kCentralMeridian, dms(25)}, {slot::kStdParallel1, dms(-30)}},
       "+proj=bonne +lat_1=-30 +lon_0=25 +ellps=WGS84",
       25 - 150, -85, 25 + 150, 85},
      {"south-orientated (9828)", &kBonne, kWgs84,
       Parms{{slot::kCentralMeridian, dms(25)}, {slot::kStdParallel1, dms(-30)},
             {slot::kXScale, -1.0}, {slot::kYScale, -1.0}},
       "+proj=bonne +lat_1=-30 +lon_0=25 +ellps=WGS84 +axis=wsu",
       25 - 150, -85, 25 + 150, 85},
      {"sphere", &kBonne, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kCentralMeridian, 0.0}, {slot::kStdParallel1, dms(45)}},
       "+proj=bonne +lat_1=45 +R=6371000",
       0.0 - 150, -85, 0.0 + 150, 85},
  }, 11, 11);
}

// With the standard parallel on the equator Bonne is the sinusoidal.
TEST(Bonne, EquatorialStandardParallelIsTheSinusoidal) {
  ProjOracle oracle("+proj=sinu +lon_0=10 +ellps=WGS84");
  ASSERT_TRUE(oracle.ok());
  const Parms p{{slot::kCentralMeridian, dms(10)}, {slot::kStdParallel1, 0.0}};
  check_against(kBonne, kWgs84, p, oracle, grid(-160, -85, 180, 85, 11, 11), 1e-3, 1e-9);
}
#endif

TEST(Bonne, PoleIsTheApexAndOutsideIsRefused) {
  const Parms p{{slot::kCentralMeridian, 0.0}, {slot::kStdParallel1, dms(45)}};
  const XY a = forward1(kBonne, kWgs84, p, dms(30), dms(90));
  const XY b = forward1(kBonne, kWgs84, p, dms(-100), dms(90));
  EXPECT_NEAR(a.x, b.x, 1e-6);
  EXPECT_NEAR(a.y, b.y, 1e-6);
  int count = -1;
  inverse1(kBonne, kWgs84, p, 3e7, -1e7, &count);  // beyond the map's edge
  EXPECT_EQ(count, 0);
}

}  // namespace
