// The geodesic solver (Karney 2013) against GeographicLib's Geodesic.
#include "geodesy/geodesic.h"

#include <gtest/gtest.h>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#endif

#include <cmath>
#include <random>

namespace {

constexpr double kDeg = 0.017453292519943295;

#ifdef KO_HAVE_GEOGRAPHICLIB
// Distances within 2e-8 m (1e-15 relative), azimuths within 1e-10 degree of
// GeographicLib, for random pairs and for nearly antipodal ones (where
// Newton starts from the astroid); the direct problem within 1e-11 degree.
TEST(Geodesic, DirectAndInverseAgreeWithGeographicLib) {
  for (double rf : {298.257223563, 150.0}) {
    SCOPED_TRACE(rf);
    const double f = 1 / rf;
    const GeographicLib::Geodesic oracle(6378137.0, f);
    ko::geodesy::Geodesic g{};
    ASSERT_TRUE(g.init(6378137.0, f * (2 - f)));
    std::mt19937_64 rng(42);
    std::uniform_real_distribution<double> lat(-90, 90), lon(-180, 180), tiny(-0.01, 0.01);
    for (int i = 0; i < 2000; ++i) {
      const double lat1 = lat(rng);
      double lat2 = lat(rng), lon12 = lon(rng);
      if (i % 4 == 0) {  // nearly antipodal
        lat2 = -lat1 + tiny(rng);
        lon12 = 180 + tiny(rng);
      }
      double s_want, azi1_want, azi2_want;
      oracle.Inverse(lat1, 0, lat2, lon12, s_want, azi1_want, azi2_want);
      double s, azi1;
      ASSERT_TRUE(g.inverse(lat1 * kDeg, lat2 * kDeg, lon12 * kDeg, s, azi1));
      EXPECT_NEAR(s, s_want, 2e-8) << lat1 << " " << lat2 << " " << lon12;
      // Nearly antipodal pairs can have two shortest geodesics of equal
      // length; compare the azimuth only where it is unique.
      if (std::fabs(std::fabs(lon12) - 180) > 0.02 || std::fabs(lat1 + lat2) > 0.02) {
        EXPECT_NEAR(std::remainder(azi1 / kDeg - azi1_want, 360.0), 0.0, 1e-10);
      }
      double lat2b, lon12b;
      g.direct(lat1 * kDeg, azi1_want * kDeg, s_want, lat2b, lon12b);
      double lat2o, lon2o;
      oracle.Direct(lat1, 0, azi1_want, s_want, lat2o, lon2o);
      EXPECT_NEAR(lat2b / kDeg, lat2o, 1e-11);
      EXPECT_NEAR(std::remainder(lon12b / kDeg - lon2o, 360.0), 0.0, 1e-11);
    }
  }
}

// The reduced length m12 and geodesic scale M12 of the direct problem
// against GeographicLib's Direct: m12 within 3e-8 m (a few units in the
// last place of lengths up to 6400 km), M12 within 1e-14,
// along geodesics from short to beyond the conjugate point.
TEST(Geodesic, ReducedLengthAndScaleAgreeWithGeographicLib) {
  for (double rf : {298.257223563, 150.0}) {
    SCOPED_TRACE(rf);
    const double f = 1 / rf;
    const GeographicLib::Geodesic oracle(6378137.0, f);
    ko::geodesy::Geodesic g{};
    ASSERT_TRUE(g.init(6378137.0, f * (2 - f)));
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> lat(-90, 90), azi(-180, 180), dist(1.0, 2.5e7);
    for (int i = 0; i < 1000; ++i) {
      const double lat1 = lat(rng), azi1 = azi(rng), s12 = dist(rng);
      double lat2o, lon2o, azi2o, m12o, M12o, M21o;
      oracle.Direct(lat1, 0, azi1, s12, lat2o, lon2o, azi2o, m12o, M12o, M21o);
      double lat2, lon12, m12, M12;
      g.direct(lat1 * kDeg, azi1 * kDeg, s12, lat2, lon12, m12, M12);
      EXPECT_NEAR(lat2 / kDeg, lat2o, 1e-11);
      EXPECT_NEAR(m12, m12o, 3e-8) << lat1 << " " << azi1 << " " << s12;
      EXPECT_NEAR(M12, M12o, 1e-14) << lat1 << " " << azi1 << " " << s12;
    }
  }
}
#else
TEST(Geodesic, DirectAndInverseAgreeWithGeographicLib) { GTEST_SKIP() << "built without GeographicLib"; }
#endif

}  // namespace
