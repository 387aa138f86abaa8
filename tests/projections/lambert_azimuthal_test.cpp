// Lambert Azimuthal Equal Area on the ellipsoid: the IOGP guidance note 7-2
// example (method 9820), agreement with PROJ's laea in every aspect, and the
// antipode and the bounding circle.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kLaea{ko::proj::laea_forward, ko::proj::laea_inverse, ko::proj::laea_constants};
const Parms kEurope{{slot::kLatOrigin, dms(52)}, {slot::kCentralMeridian, dms(10)}};

TEST(LambertAzimuthal, GuidanceNoteExampleBothWays) {
  // ETRS89 / LAEA Europe: 50°N 5°E is E 3962799.45, N 2999718.85.
  int count = 0;
  const XY f = forward1(kLaea, kGrs80, kEurope, dms(5), dms(50), &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(f.x + 4321000.0, 3962799.45, 0.005 + 1e-9);
  EXPECT_NEAR(f.y + 3210000.0, 2999718.85, 0.005 + 1e-9);
  const XY b = inverse1(kLaea, kGrs80, kEurope, 3962799.45 - 4321000.0, 2999718.85 - 3210000.0);
  EXPECT_NEAR(b.x / kDeg * 3600, 5.0 * 3600, 0.0005);
  EXPECT_NEAR(b.y / kDeg * 3600, 50.0 * 3600, 0.0005);
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ, inverse within 1e-9 degree.
TEST(LambertAzimuthal, AgreesWithProj) {
  check_proj_cases({
      {"Europe (EPSG:3035)", &kLaea, kGrs80, kEurope, "+proj=laea +lat_0=52 +lon_0=10 +ellps=GRS80", -30.0,
       27.0, 45.0, 81.0},
      {"equatorial", &kLaea, kWgs84, Parms{{slot::kLatOrigin, 0.0}, {slot::kCentralMeridian, dms(20)}},
       "+proj=laea +lat_0=0 +lon_0=20 +ellps=WGS84", -40.0, -60.0, 80.0, 60.0},
      {"southern oblique", &kLaea, kWgs84, Parms{{slot::kLatOrigin, dms(-40)}, {slot::kCentralMeridian, dms(-60)}},
       "+proj=laea +lat_0=-40 +lon_0=-60 +ellps=WGS84", -100.0, -85.0, -20.0, 10.0},
      {"north polar", &kLaea, kWgs84, Parms{{slot::kLatOrigin, dms(90)}, {slot::kCentralMeridian, dms(0)}},
       "+proj=laea +lat_0=90 +lon_0=0 +ellps=WGS84", -180.0, 0.0, 180.0, 90.0},
      {"south polar", &kLaea, kWgs84, Parms{{slot::kLatOrigin, dms(-90)}, {slot::kCentralMeridian, dms(0)}},
       "+proj=laea +lat_0=-90 +lon_0=0 +ellps=WGS84", -180.0, -90.0, 180.0, 0.0},
      {"sphere", &kLaea, Spheroid{{6371000.0, 0.0}}, Parms{{slot::kLatOrigin, dms(45)}, {slot::kCentralMeridian, dms(-100)}},
       "+proj=laea +lat_0=45 +lon_0=-100 +R=6371000", -170.0, -30.0, -30.0, 89.0},
  }, 11, 9);
}
#endif

TEST(LambertAzimuthal, AntipodeAndOutsideTheCircleAreRefused) {
  const Spheroid sphere{{6371000.0, 0.0}};
  const Parms p{{slot::kLatOrigin, dms(45)}, {slot::kCentralMeridian, dms(10)}};
  int count = -1;
  const XY anti = forward1(kLaea, sphere, p, dms(-170), dms(-45), &count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(anti.x, HUGE_VAL);
  // The whole sphere lies within 2R of the centre.
  const XY near = forward1(kLaea, sphere, p, dms(-170), dms(-44.9), &count);
  EXPECT_EQ(count, 1);
  EXPECT_LT(std::hypot(near.x, near.y), 2.0 * 6371000.0);
  inverse1(kLaea, sphere, p, 2.0 * 6371000.0 * 1.001, 0.0, &count);
  EXPECT_EQ(count, 0);
  // Polar aspect: the opposite pole has no image either.
  const Parms north{{slot::kLatOrigin, dms(90)}};
  forward1(kLaea, kWgs84, north, 0.3, dms(-90), &count);
  EXPECT_EQ(count, 0);
  const XY pole = forward1(kLaea, kWgs84, north, 0.3, dms(90), &count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(pole.x, 0.0);
  EXPECT_EQ(std::fabs(pole.y), 0.0);
}

}  // namespace
