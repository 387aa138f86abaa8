// Molodensky and Molodensky_Abridged: the IOGP worked example, PROJ's
// molodensky operation over Europe, and inverse-by-iteration round trips.
#include "tests/transformations/oracle.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace {

using ko::test::kArcsecRad;
using ko::test::kDeg;

// WGS 84 to ED50 (International 1924): IOGP guidance note 7-2, §4.4.4.1.
std::array<double, 24> iogp_params() {
  std::array<double, 24> p{};
  p[ko::kSlotTx] = 84.87;
  p[ko::kSlotTy] = 96.49;
  p[ko::kSlotTz] = 116.95;
  return p;
}

ko::MethodArgs args(const std::array<double, 24> &p) {
  ko::MethodArgs a;
  a.sph1 = ko::test::kWgs84.v;
  a.sph2 = ko::test::kIntl.v;
  a.parms = p.data();
  return a;
}

double dms(double d, double m, double s) { return (d + m / 60.0 + s / 3600.0) * kDeg; }

TEST(Molodensky, IogpWorkedExample) {
  // 53°48'33.82"N 2°07'46.38"E 73 m on WGS 84 becomes 53°48'36.565"N
  // 2°07'51.477"E 28.02 m on ED50; published to 0.001" and 0.01 m.
  const auto p = iogp_params();
  double c[2] = {dms(2, 7, 46.38), dms(53, 48, 33.82)};
  double z = 73.0;
  ASSERT_EQ(ko::molodensky_forward(args(p), 1, c, &z), 1);
  EXPECT_NEAR(c[1], dms(53, 48, 36.565), 0.0006 * kArcsecRad);
  EXPECT_NEAR(c[0], dms(2, 7, 51.477), 0.0006 * kArcsecRad);
  EXPECT_NEAR(z, 28.02, 0.006);
}

struct Variant {
  const char *name;
  ko::MethodKernel forward, inverse;
  const char *proj_flag;
};
const Variant kVariants[] = {
    {"standard", ko::molodensky_forward, ko::molodensky_inverse, ""},
    {"abridged", ko::molodensky_abridged_forward, ko::molodensky_abridged_inverse, " +abridged"},
};

#ifdef KO_HAVE_PROJ
TEST(Molodensky, MatchesProjOverEurope) {
  const auto p = iogp_params();
  const double da = ko::test::kIntl.v[0] - ko::test::kWgs84.v[0];
  const double df = 1.0 / 297.0 - 1.0 / 298.257223563;
  for (const Variant &v : kVariants) {
    char def[512];
    std::snprintf(def, sizeof def,
                  "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
                  "+step +proj=molodensky +ellps=WGS84 +dx=84.87 +dy=96.49 +dz=116.95 "
                  "+da=%.17g +df=%.17g%s +step +proj=unitconvert +xy_in=rad +xy_out=deg",
                  da, df, v.proj_flag);
    ko::test::ProjOp proj(def);
    ASSERT_TRUE(proj.ok()) << def;
    const auto deg = ko::test::box_points(-16.1, 32.88, 40.18, 84.0, 8);
    auto pts = ko::test::to_radians(deg);
    const int n = static_cast<int>(pts.size() / 2);
    std::vector<double> z(n);
    for (int i = 0; i < n; ++i) z[i] = -30.0 + 400.0 * (i % 5);
    const auto z0 = z;
    ASSERT_EQ(v.forward(args(p), n, pts.data(), z.data()), n);
    for (int i = 0; i < n; ++i) {
      const PJ_COORD r = proj.trans(PJ_FWD, deg[2 * i], deg[2 * i + 1], z0[i]);
      EXPECT_LT(ko::test::horizontal_m(pts[2 * i], pts[2 * i + 1], r.v[0] * kDeg, r.v[1] * kDeg),
                1e-3)
          << v.name << " at " << deg[2 * i] << ", " << deg[2 * i + 1];
      EXPECT_NEAR(z[i], r.v[2], 1e-3) << v.name;
    }
  }
}
#endif

TEST(Molodensky, InverseIteratesBackToTheStart) {
  auto p = iogp_params();
  // Large translations make a sign-flipped inverse miss by decimetres; the
  // iteration must still return within 1e-9 degree and 1e-6 m.
  p[ko::kSlotTx] = -375.0;
  p[ko::kSlotTy] = 111.0;
  p[ko::kSlotTz] = -431.0;
  for (const Variant &v : kVariants) {
    const auto deg = ko::test::box_points(-179.0, -85.0, 179.0, 85.0, 13);
    auto pts = ko::test::to_radians(deg);
    const int n = static_cast<int>(pts.size() / 2);
    std::vector<double> z(n);
    for (int i = 0; i < n; ++i) z[i] = -100.0 + 900.0 * (i % 4);
    const auto pts0 = pts;
    const auto z0 = z;
    ASSERT_EQ(v.forward(args(p), n, pts.data(), z.data()), n) << v.name;
    ASSERT_EQ(v.inverse(args(p), n, pts.data(), z.data()), n) << v.name;
    for (int i = 0; i < n; ++i) {
      EXPECT_NEAR(std::remainder(pts[2 * i] - pts0[2 * i], 2 * M_PI), 0.0, 1e-9 * kDeg) << v.name;
      EXPECT_NEAR(pts[2 * i + 1], pts0[2 * i + 1], 1e-9 * kDeg) << v.name;
      EXPECT_NEAR(z[i], z0[i], 1e-6) << v.name;
    }
  }
}

TEST(Molodensky, HeightsAreOptionalAndNonFinitePointsAreLeftAlone) {
  const auto p = iogp_params();
  for (const Variant &v : kVariants) {
    double a[2] = {0.04, 0.94}, b[2] = {0.04, 0.94};
    double zb = 0.0;
    ASSERT_EQ(v.forward(args(p), 1, a, nullptr), 1);
    ASSERT_EQ(v.forward(args(p), 1, b, &zb), 1);
    EXPECT_EQ(a[0], b[0]);
    EXPECT_EQ(a[1], b[1]);
    double bad[6] = {NAN, 0.9, 0.1, INFINITY, 0.1, 0.9};
    double zbad[3] = {0, 0, NAN};
    EXPECT_EQ(v.forward(args(p), 3, bad, zbad), 0);
    EXPECT_TRUE(std::isnan(bad[0]));
    EXPECT_EQ(bad[2], 0.1);
    EXPECT_EQ(bad[4], 0.1);
    EXPECT_EQ(bad[5], 0.9);
    EXPECT_EQ(v.inverse(args(p), 3, bad, zbad), 0);
    EXPECT_EQ(v.forward(args(p), 1, nullptr, nullptr), -1);
    ko::MethodArgs none = args(p);
    none.sph2 = nullptr;
    EXPECT_EQ(v.forward(none, 1, a, nullptr), -1);
  }
}

TEST(Molodensky, PoleKeepsItsLongitude) {
  // At a pole cos φ vanishes: the longitude shift is left at zero instead
  // of overflowing.
  const auto p = iogp_params();
  for (const Variant &v : kVariants) {
    double c[2] = {0.5, M_PI / 2};
    ASSERT_EQ(v.forward(args(p), 1, c, nullptr), 1);
    EXPECT_EQ(c[0], 0.5);
    EXPECT_TRUE(std::isfinite(c[1]));
  }
}

}  // namespace
