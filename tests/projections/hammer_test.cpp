// Hammer, Eckert-Greifendorff and Wagner VII on the sphere of radius a:
// agreement with PROJ's hammer (W = 1/4, M = 2 for Eckert-Greifendorff) and
// wag7 (forward only in PROJ; the inverse is the round trip), equal area
// checked numerically, and the edges of each map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;

const WorldCase kCases[] = {
    {"Hammer_Aitoff", &ko_prj_hammer_aitoff_vector, "hammer"},
    {"Eckert_Greifendorff", &ko_prj_eckert_greifendorff_vector, "hammer +W=0.25 +M=2"},
    {"Wagner_VII", &ko_prj_wagner_vii_vector, "wag7"},
};

#ifdef KO_HAVE_PROJ
TEST(Hammer, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

// Wagner VII's five-digit constants make it equal-area to 2e-6 only.
TEST(Hammer, IsEqualArea) {
  check_equal_area(kCases[0]);
  check_equal_area(kCases[1]);
}

TEST(Hammer, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

}  // namespace
