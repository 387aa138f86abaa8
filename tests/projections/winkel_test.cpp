// Winkel I and Winkel II on the sphere of radius a: agreement with PROJ's
// wink1 (φ1 is its lat_ts) and wink2 (φ1 is its lat_1) for several
// standard parallels, and the edges of each map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;

const WorldCase kCases[] = {
    {"Winkel_I at 50.46°", &ko_prj_winkel_i_vector, "wink1 +lat_ts=50.4597762521898",
     50.4597762521898 * kDeg},
    {"Winkel_I at 0", &ko_prj_winkel_i_vector, "wink1 +lat_ts=0", 0.0},
    {"Winkel_I at 20°S", &ko_prj_winkel_i_vector, "wink1 +lat_ts=-20", -20.0 * kDeg},
    {"Winkel_II at 40°", &ko_prj_winkel_ii_vector, "wink2 +lat_1=40", 40.0 * kDeg},
    {"Winkel_II at 0", &ko_prj_winkel_ii_vector, "wink2 +lat_1=0", 0.0},
    {"Winkel_II at 65°S", &ko_prj_winkel_ii_vector, "wink2 +lat_1=-65", -65.0 * kDeg},
};

#ifdef KO_HAVE_PROJ
TEST(Winkel, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

TEST(Winkel, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

// The inverse of the forward on a 5° grid with both poles: back within
// 1e-9 degree, longitude included (the poles are lines on both maps).
TEST(Winkel, InverseRoundTripWithPoles) {
  for (const WorldCase &c : kCases) {
    SCOPED_TRACE(c.name);
    check_round_trip(c.name, family_of(*c.vector), world_parms(c, 0.0),
                     grid(-175, -90, 175, 90, 71, 37), false, 1e-9);
  }
}

}  // namespace
