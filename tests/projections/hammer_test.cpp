// Hammer and Eckert-Greifendorff on the sphere of radius a: agreement with
// PROJ's hammer (W = 1/4, M = 2 for Eckert-Greifendorff), equal area
// checked numerically, and the edges of each map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;

const WorldCase kCases[] = {
    {"Hammer_Aitoff", &ko_prj_hammer_aitoff_vector, "hammer"},
    {"Eckert_Greifendorff", &ko_prj_eckert_greifendorff_vector, "hammer +W=0.25 +M=2"},
};

#ifdef KO_HAVE_PROJ
TEST(Hammer, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

// Equal area: the Jacobian of the forward, by central differences, is
// cos φ (a² per radian²) everywhere on both maps.
TEST(Hammer, IsEqualArea) {
  const Spheroid unit{{1.0, 0.0}};
  for (const WorldCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const Parms p = world_parms(c, 0.0);
    const double h = 1e-5;
    for (double lat : {-80.0, -30.0, 0.0, 45.0, 85.0})
      for (double lon : {-170.0, -20.0, 0.0, 90.0, 175.0}) {
        const double l = lon * kDeg, b = lat * kDeg;
        const XY e1 = forward1(f, unit, p, l + h, b), w1 = forward1(f, unit, p, l - h, b);
        const XY n1 = forward1(f, unit, p, l, b + h), s1 = forward1(f, unit, p, l, b - h);
        const double jac = ((e1.x - w1.x) * (n1.y - s1.y) - (e1.y - w1.y) * (n1.x - s1.x)) / (4 * h * h);
        EXPECT_NEAR(jac, std::cos(b), 1e-7) << lon << ", " << lat;
      }
  }
}

TEST(Hammer, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

}  // namespace
