// Aitoff and Winkel tripel on the sphere of radius a: agreement with PROJ's
// aitoff and wintri (Winkel tripel with Winkel's φ1 = acos(2/π) and with
// φ1 = 0), the iterative inverse back to the start, and the edges of each
// map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;

const double kWinkelPhi1 = std::acos(2.0 / ko::kPi);

const WorldCase kCases[] = {
    {"Aitoff", &ko_prj_aitoff_vector, "aitoff"},
    {"Winkel_Tripel", &ko_prj_winkel_tripel_vector, "wintri +lat_1=" + num(kWinkelPhi1 / kDeg),
     kWinkelPhi1},
    {"Winkel_Tripel at 0", &ko_prj_winkel_tripel_vector, "wintri +lat_1=0", 0.0},
    {"Winkel_Tripel at 30°S", &ko_prj_winkel_tripel_vector, "wintri +lat_1=-30", -30.0 * kDeg},
};

#ifdef KO_HAVE_PROJ
TEST(Aitoff, AgreesWithProj) {
  for (const WorldCase &c : kCases) check_world_against_proj(c, 1e-6, 1e-9);
}
#endif

TEST(Aitoff, EdgesOfTheMaps) {
  for (const WorldCase &c : kCases) check_world_edges(c);
}

// Newton's inverse on a 5° grid with the poles and ±180°: back to the
// start within 1e-9 degree.
TEST(Aitoff, InverseRoundTripDense) {
  for (const WorldCase &c : kCases) {
    SCOPED_TRACE(c.name);
    // Aitoff's pole is a point, Winkel tripel's a line.
    const bool point = c.vector == &ko_prj_aitoff_vector;
    check_round_trip(c.name, family_of(*c.vector), world_parms(c, 0.0),
                     grid(-180, -90, 180, 90, 73, 37), point, 1e-9);
  }
}

}  // namespace
