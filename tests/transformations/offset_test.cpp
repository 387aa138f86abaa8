// Geographic_2D_Offset against PROJ's geogoffset, with the longitude wrapped
// across the antimeridian, and the inverse.
#include "tests/transformations/oracle.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

using ko::test::kArcsecRad;
using ko::test::kDeg;

ko::MethodArgs args(const std::array<double, 24> &p) {
  ko::MethodArgs a;
  a.parms = p.data();
  return a;
}

#ifdef KO_HAVE_PROJ
TEST(Geographic2dOffset, MatchesProjGeogoffset) {
  // Offsets of a few arc-seconds, the size such transformations have.
  std::array<double, 24> p{};
  p[ko::kSlotLatOffset] = -9.95 * kArcsecRad;
  p[ko::kSlotLonOffset] = 4.47 * kArcsecRad;
  ko::test::ProjOp proj(
      "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
      "+step +proj=geogoffset +dlat=-9.95 +dlon=4.47 "
      "+step +proj=unitconvert +xy_in=rad +xy_out=deg");
  ASSERT_TRUE(proj.ok());
  const auto deg = ko::test::box_points(-179.999, -89.0, 179.999, 89.0, 11);
  auto pts = ko::test::to_radians(deg);
  const int n = static_cast<int>(pts.size() / 2);
  std::vector<double> z(n, 7.0);
  ASSERT_EQ(ko::geographic_2d_offset_forward(args(p), n, pts.data(), z.data()), n);
  for (int i = 0; i < n; ++i) {
    const PJ_COORD r = proj.trans(PJ_FWD, deg[2 * i], deg[2 * i + 1]);
    EXPECT_NEAR(std::remainder(pts[2 * i] - r.v[0] * kDeg, 2 * M_PI), 0.0, 1e-15);
    EXPECT_NEAR(pts[2 * i + 1], r.v[1] * kDeg, 1e-15);
    EXPECT_GE(pts[2 * i], -M_PI);
    EXPECT_LE(pts[2 * i], M_PI);
    EXPECT_EQ(z[i], 7.0);
  }
  ASSERT_EQ(ko::geographic_2d_offset_inverse(args(p), n, pts.data(), nullptr), n);
  for (int i = 0; i < n; ++i) {
    EXPECT_NEAR(std::remainder(pts[2 * i] - deg[2 * i] * kDeg, 2 * M_PI), 0.0, 1e-15);
    EXPECT_NEAR(pts[2 * i + 1], deg[2 * i + 1] * kDeg, 1e-15);
  }
}
#endif

TEST(Geographic2dOffset, NonFinitePointsAndBadArguments) {
  std::array<double, 24> p{};
  p[ko::kSlotLatOffset] = 1e-4;
  std::vector<double> pts{NAN, 0.1, 0.2, INFINITY, 0.3, 0.4};
  EXPECT_EQ(ko::geographic_2d_offset_forward(args(p), 3, pts.data(), nullptr), 1);
  EXPECT_EQ(pts[1], 0.1);
  EXPECT_EQ(pts[2], 0.2);
  EXPECT_EQ(pts[5], 0.4 + 1e-4);
  EXPECT_EQ(ko::geographic_2d_offset_forward(args(p), -2, pts.data(), nullptr), -1);
  EXPECT_EQ(ko::geographic_2d_offset_forward(ko::MethodArgs{}, 1, pts.data(), nullptr), -1);
}

}  // namespace
