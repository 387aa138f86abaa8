// Eckert I to VI on the sphere of radius a: agreement with PROJ's eck1 to
// eck6, and the edges of each map (poles as lines, the antimeridian).
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

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

}  // namespace
