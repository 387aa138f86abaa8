// New Zealand Map Grid: agreement with PROJ's nzmg over New Zealand, the
// inverse's Newton refinement, and the call without constants.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

// No constants function: computed per call.
const Family kNzmg{ko::proj::nzmg_forward, ko::proj::nzmg_inverse, nullptr};
const Parms kGrid{{slot::kLatOrigin, dms(-41)}, {slot::kCentralMeridian, dms(173)}};

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ over New Zealand (PROJ uses the same published
// coefficients and always adds the grid's false origin, 2510000 E,
// 6023150 N), inverse within 1e-9 degree.
TEST(NewZealandMapGrid, AgreesWithProj) {
  ProjOracle oracle("+proj=nzmg +lat_0=-41 +lon_0=173 +ellps=intl");
  ASSERT_TRUE(oracle.ok());
  const ShiftedOracle shifted{oracle, 2510000.0, 6023150.0};
  check_against(kNzmg, kIntl1924, kGrid, shifted, grid(166, -47.5, 178.6, -34, 9, 9), 1e-3, 1e-9);
}
#endif

TEST(NewZealandMapGrid, OriginAndBadInput) {
  const XY o = forward1(kNzmg, kIntl1924, kGrid, dms(173), dms(-41));
  EXPECT_EQ(o.x, 0.0);
  EXPECT_EQ(o.y, 0.0);
  int count = -1;
  forward1(kNzmg, kIntl1924, kGrid, std::nan(""), dms(-41), &count);
  EXPECT_EQ(count, 0);
  double xy[2] = {0.1, 0.1};
  EXPECT_EQ(kNzmg.forward(nullptr, kGrid.data(), 1, xy, nullptr, nullptr), 0);
}

}  // namespace
