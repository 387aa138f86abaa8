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

// Newton's inverse on a dense grid: back to the start within 1e-9 degree
// everywhere (the poles' longitude aside).
TEST(Aitoff, InverseRoundTripDense) {
  for (const WorldCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const Parms p = world_parms(c, 0.0);
    std::vector<double> pts = grid(-180, -90, 180, 90, 73, 37), xy = pts;
    const int n = static_cast<int>(pts.size() / 2);
    ASSERT_EQ(f.forward(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
    ASSERT_EQ(f.inverse(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
    double worst = 0.0;
    for (int i = 0; i < n; ++i) {
      const bool pole = std::fabs(pts[2 * i + 1]) == ko::kHalfPi;
      const double dlon = pole ? 0.0 : std::fabs(lon_diff_deg(xy[2 * i], pts[2 * i]));
      const double dlat = std::fabs(xy[2 * i + 1] - pts[2 * i + 1]) / kDeg;
      // ±180° are the same meridian on the edge.
      worst = std::fmax(worst, std::fmax(std::fmod(dlon, 360.0), dlat));
    }
    EXPECT_LE(worst, 1e-9);
    std::printf("[ measured ] %s: inverse round trip %.3g deg over %d points\n", c.name, worst, n);
  }
}

}  // namespace
