// American polyconic: agreement with PROJ's poly (ellipsoid and sphere, both
// hemispheres, across the equator) and the domain edges.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kPoly{ko::proj::polyconic_forward, ko::proj::polyconic_inverse,
                   ko::proj::polyconic_constants};

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree, over 60° of
// longitude including the equator.
TEST(Polyconic, AgreesWithProj) {
  check_proj_cases({
      {"Brazil, across the equator", &kPoly, kGrs80,
       Parms{{slot::kCentralMeridian, dms(-54)}, {slot::kLatOrigin, 0.0}},
       "+proj=poly +lat_0=0 +lon_0=-54 +ellps=GRS80",
       -54 - 30, -60, -54 + 30, 70},
      {"north, origin at 30°", &kPoly, kClarke1866,
       Parms{{slot::kCentralMeridian, dms(-96)}, {slot::kLatOrigin, dms(30)}},
       "+proj=poly +lat_0=30 +lon_0=-96 +a=6378206.4 +b=6356583.8",
       -96 - 30, -60, -96 + 30, 70},
      {"sphere", &kPoly, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kCentralMeridian, dms(20)}, {slot::kLatOrigin, dms(-20)}},
       "+proj=poly +lat_0=-20 +lon_0=20 +R=6371000",
       20 - 30, -60, 20 + 30, 70},
  }, 9, 14);
}
#endif

TEST(Polyconic, EquatorIsTheLimitOfItsNeighbours) {
  // On the equator x = a Δλ, and latitudes 1e-9° either side agree with it.
  const Parms p{{slot::kCentralMeridian, 0.0}, {slot::kLatOrigin, 0.0}};
  const XY eq = forward1(kPoly, kWgs84, p, dms(25), 0.0);
  EXPECT_NEAR(eq.x, 6378137.0 * dms(25), 1e-6);
  EXPECT_NEAR(eq.y, 0.0, 1e-9);
  for (double d : {1e-9, -1e-9}) {
    const XY near = forward1(kPoly, kWgs84, p, dms(25), d * kDeg);
    EXPECT_NEAR(near.x, eq.x, 1e-3);
    EXPECT_NEAR(near.y, d * kDeg * 6335439.0, 1e-3);  // the meridian radius at the equator
  }
  int count = -1;
  inverse1(kPoly, kWgs84, p, 5e7, 1e6, &count);  // off the map
  EXPECT_EQ(count, 0);
}

}  // namespace
