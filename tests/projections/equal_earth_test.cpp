// Equal Earth on the ellipsoid: the IOGP guidance note 7-2 example (method
// 1078), agreement with PROJ's eqearth, the authalic sphere, and the edges
// of the map.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kEqualEarth{ko::proj::equal_earth_forward, ko::proj::equal_earth_inverse,
                         ko::proj::equal_earth_constants};

// The worked example of EPSG method 1078 (IOGP guidance note 7-2), WGS 84 /
// Equal Earth Americas (longitude of origin 90°W): the point given in
// radians (0.5944163293, -2.0454693977) is E -2390749.042, N 4242849.758
// (printed to the millimetre), and the reverse gives the radians back.
// The point is printed to 1e-10 rad, which moves E by up to 0.29 mm and N
// by up to 0.33 mm; even so the printed E is 0.03 mm beyond what that and
// the printed millimetre allow (PROJ's eqearth gives the library's value,
// -2390749.04282, to 1e-6 m), so the forward is held to 1 mm.  The printed
// millimetre is worth less than 0.00002" in the reverse.
TEST(EqualEarth, GuidanceNoteExampleBothWays) {
  check_guidance_example({"WGS 84 / Equal Earth Americas (1078)", &kEqualEarth, kWgs84,
                          Parms{{slot::kCentralMeridian, dms(-90)}}, 1.0, 0.0, 0.0, -2.0454693977,
                          0.5944163293, -2390749.042, 4242849.758, 0.001, 0.0001});
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ over the whole world, inverse within 1e-9
// degree.
TEST(EqualEarth, AgreesWithProj) {
  for (const auto &[sph, proj] : {std::pair{kWgs84, "+proj=eqearth +lon_0=150 +ellps=WGS84"},
                                  std::pair{Spheroid{{6371000.0, 0.0}}, "+proj=eqearth +lon_0=150 +R=6371000"}}) {
    SCOPED_TRACE(proj);
    ProjOracle oracle(proj);
    ASSERT_TRUE(oracle.ok());
    const Parms p{{slot::kCentralMeridian, dms(150)}};
    check_against(kEqualEarth, sph, p, oracle, grid(-29.9, -90, 329.9, 90, 13, 13), 1e-3, 1e-9);
  }
}
#endif

TEST(EqualEarth, OutsideTheMapIsRefused) {
  const Parms p{{slot::kCentralMeridian, 0.0}};
  const XY corner = forward1(kEqualEarth, kWgs84, p, dms(180), dms(90));
  int count = -1;
  inverse1(kEqualEarth, kWgs84, p, corner.x, corner.y * 1.001, &count);
  EXPECT_EQ(count, 0);
  inverse1(kEqualEarth, kWgs84, p, 3.0 * corner.x, 0.0, &count);
  EXPECT_EQ(count, 0);
  const XY edge = forward1(kEqualEarth, kWgs84, p, dms(180), dms(45));
  const XY back = inverse1(kEqualEarth, kWgs84, p, edge.x, edge.y, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(back.x / kDeg, 180.0, 1e-9);
}

}  // namespace
