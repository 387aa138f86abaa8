// IGAC plano cartesiano (Colombia Urban): the IOGP guidance note 7-2 example
// of method 1052, agreement with PROJ's col_urban, and an inverse that
// undoes the forward.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kUrban{ko::proj::igac_forward, ko::proj::igac_inverse, ko::proj::igac_constants};
// MAGNA-SIRGAS / Bogota urban grid.
const Parms kBogota{{slot::kLatOrigin, dms(4, 40, 49.75)},
                    {slot::kCentralMeridian, dms(-74, 8, 47.73)},
                    {slot::kHeight, 2550.0}};

TEST(IgacPlanoCartesiano, GuidanceNoteExampleBothWays) {
  // 4°48'N 74°15'W is E 80859.033, N 122543.174 (printed to 1 mm).
  const XY f = forward1(kUrban, kGrs80, kBogota, dms(-74, 15), dms(4, 48));
  EXPECT_NEAR(f.x + 92334.879, 80859.033, 0.0005 + 1e-9);
  EXPECT_NEAR(f.y + 109320.965, 122543.174, 0.0005 + 1e-9);
  const XY b = inverse1(kUrban, kGrs80, kBogota, 80859.033 - 92334.879, 122543.174 - 109320.965);
  EXPECT_NEAR(b.x / kDeg * 3600, -(74 + 15 / 60.0) * 3600, 0.0005);
  EXPECT_NEAR(b.y / kDeg * 3600, (4 + 48 / 60.0) * 3600, 0.0005);
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ over 60 km around Bogotá, inverse of our own
// forward within 1e-9 degree.
TEST(IgacPlanoCartesiano, AgreesWithProj) {
  ProjOracle oracle("+proj=col_urban +lat_0=" + num(4 + 40 / 60.0 + 49.75 / 3600) +
                    " +lon_0=" + num(-(74 + 8 / 60.0 + 47.73 / 3600)) + " +h_0=2550 +ellps=GRS80");
  ASSERT_TRUE(oracle.ok());
  check_against(kUrban, kGrs80, kBogota, oracle, grid(-74.45, 4.4, -73.85, 4.95, 7, 7), 1e-3, 1e-9);
}
#endif

}  // namespace
