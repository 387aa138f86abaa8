// The quartic authalic and the flat-polar quartic on the sphere of radius
// a: agreement with PROJ's qua_aut and mbtfpq, equal area checked
// numerically, and the edges of each map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;

const WorldCase kCases[] = {
    {"Quartic_Authalic", &ko_prj_quartic_authalic_vector, "qua_aut"},
    {"Flat_Polar_Quartic", &ko_prj_flat_polar_quartic_vector, "mbtfpq"},
};

#ifdef KO_HAVE_PROJ
TEST(Quartic, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

TEST(Quartic, IsEqualArea) {
  for (const WorldCase &c : kCases) check_equal_area(c);
}

TEST(Quartic, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

}  // namespace
