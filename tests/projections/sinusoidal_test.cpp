// Sinusoidal on the ellipsoid: agreement with PROJ's sinu (ellipsoid and
// sphere), and the edges of the map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#endif

namespace {

using namespace ko::test;

const WorldCase kSinusoidal{"Sinusoidal", &ko_prj_sinusoidal_vector, "sinu"};

#ifdef KO_HAVE_PROJ
// PROJ's ellipsoidal sinusoidal takes the meridian distance from a series
// good to a few micrometres; the library's is exact (rectifying latitude),
// so the forward is held to 1e-5 m (the sphere agrees to 1e-8 m).
TEST(Sinusoidal, AgreesWithProj) { check_world_against_proj(kSinusoidal, 1e-5, 1e-9); }
#endif

#ifdef KO_HAVE_GEOGRAPHICLIB
// The northing is the distance along the meridian from the equator: within
// 1e-8 m of GeographicLib's geodesic along the central meridian, from the
// equator to the pole, on WGS 84; that is what settles the micrometres
// between the library and PROJ's series above.
TEST(Sinusoidal, NorthingIsTheMeridianArc) {
  const GeographicLib::Geodesic geod(6378137.0, 1 / 298.257223563);
  const Family f = family_of(ko_prj_sinusoidal_vector);
  const Parms p{{ko::proj::slot::kCentralMeridian, 0.3}};
  for (double lat : {-90.0, -61.5, -12.25, 0.0, 1e-7, 33.3, 72.0, 89.999, 90.0}) {
    double s12 = 0.0;
    geod.Inverse(0.0, 0.3 / kDeg, lat, 0.3 / kDeg, s12);
    const XY got = forward1(f, kWgs84, p, 0.3, lat * kDeg);
    EXPECT_NEAR(got.y, std::copysign(s12, lat), 1e-8) << lat;
  }
}
#endif

TEST(Sinusoidal, EdgesOfTheMap) { check_world_edges(kSinusoidal); }

}  // namespace
