// Eckert I to VI on the sphere of radius a: agreement with PROJ's eck1 to
// eck6, and the edges of each map (poles as lines, the antimeridian).
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

using namespace ko::test;

const WorldCase kCases[] = {
    {"Eckert_I", &ko_prj_eckert_i_vector, "eck1"},
    {"Eckert_II", &ko_prj_eckert_ii_vector, "eck2"},
    {"Eckert_III", &ko_prj_eckert_iii_vector, "eck3"},
    {"Eckert_IV", &ko_prj_eckert_iv_vector, "eck4"},
    {"Eckert_V", &ko_prj_eckert_v_vector, "eck5"},
    {"Eckert_VI", &ko_prj_eckert_vi_vector, "eck6"},
};

#ifdef KO_HAVE_PROJ
TEST(Eckert, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

TEST(Eckert, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

// The pole is a line: two longitudes at 90°N land on different points of
// it, at the same y, and come back with their longitudes.
TEST(Eckert, PoleIsALine) {
  for (const WorldCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const Parms p = world_parms(c, 0.0);
    const XY a = forward1(f, kWgs84, p, 100.0 * kDeg, ko::kHalfPi);
    const XY b = forward1(f, kWgs84, p, -60.0 * kDeg, ko::kHalfPi);
    EXPECT_NEAR(a.y, b.y, 1e-6);
    EXPECT_GT(a.x - b.x, 1e6);
    int count = 0;
    const XY back = inverse1(f, kWgs84, p, a.x, a.y, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(back.x / kDeg, 100.0, 1e-7);
    EXPECT_NEAR(back.y / kDeg, 90.0, 1e-7);
  }
}

// Eckert IV near its pole line, where the auxiliary angle's equation has a
// double root: against θ + sin θ cos θ + 2 sin θ = (2 + π/2) sin φ solved by
// bisection in long double, x = 2 a Δλ (1 + cos θ) / sqrt(π(4 + π)),
// y = 2 a sqrt(π/(4 + π)) sin θ, within 1e-6 m down to 0.001° from the pole.
TEST(Eckert, EckertIvNearThePoleMatchesBisection) {
  const Family f = family_of(ko_prj_eckert_iv_vector);
  const Parms p{{ko::proj::slot::kCentralMeridian, 0.0}};
  const long double a = kWgs84.pair[0], pi = std::numbers::pi_v<long double>;
  for (double from_pole : {1.0, 0.1, 0.01, 0.001})
    for (double sign : {1.0, -1.0}) {
      const double phi = sign * (90.0 - from_pole) * kDeg, lon = 170.0 * kDeg;
      const long double t = bisect(
          [](long double u) { return u + std::sin(u) * std::cos(u) + 2 * std::sin(u); },
          (2 + pi / 2) * std::sin(static_cast<long double>(phi)), -pi / 2, pi / 2);
      const XY got = forward1(f, kWgs84, p, lon, phi);
      EXPECT_NEAR(got.x, static_cast<double>(2 * a * lon * (1 + std::cos(t)) / std::sqrt(pi * (4 + pi))), 1e-6)
          << phi / kDeg;
      EXPECT_NEAR(got.y, static_cast<double>(2 * a * std::sqrt(pi / (4 + pi)) * std::sin(t)), 1e-6);
    }
}

}  // namespace
