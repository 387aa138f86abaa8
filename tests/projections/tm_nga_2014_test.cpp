// Transverse_Mercator_NGA_2014 (43081).  The standard's own worked examples
// were not available here; the projection is checked against the 30-digit
// exact reference and against GeographicLib's exact projection, within the
// accuracy of its sixth-order series.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "ko.h"
#include "tests/projections/tm_test_support.h"

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/TransverseMercatorExact.hpp>
#endif

namespace {

using ko::tmtest::Spheroid;
using ko::tmtest::TmSetup;

using ko::tmtest::kDeg;

// The sixth-order series truncates at n^7 (about 4e-20 for WGS 84, times the
// growth of the harmonics within 3900 km): 10 nm is the bound we hold it to,
// in x and y and on the ground.
constexpr double kOwnTolMetres = 10e-9;
// GeographicLib's exact projection is itself within 9 nm (Karney 2011).
constexpr double kOracleTolMetres = kOwnTolMetres + 9e-9;

TEST(TmNga2014Reference, WithinTenNanometresOfExact) {
  ko::tmtest::expect_reference_accuracy(ko_prj_transverse_mercator_nga_2014_vector, "strip", kOwnTolMetres);
}

#ifdef KO_HAVE_GEOGRAPHICLIB

// UTM zones on WGS 84 and GRS 80, north and south, thousands of points within
// 3900 km of the central meridian.
TEST(TmNga2014Oracle, UtmZonesAgreeWithGeographicLib) {
  struct Zone {
    Spheroid s;
    double lon0, lat0;
  } const zones[] = {{ko::tmtest::kWgs84, 15.0, 0.0}, {ko::tmtest::kGrs80, -117.0, 0.0},
                     {ko::tmtest::kWgs84, 147.0, -10.0}};
  std::mt19937_64 rng(43081);
  for (const Zone &z : zones) {
    const double k0 = 0.9996;
    TmSetup tm(ko_prj_transverse_mercator_nga_2014_vector, z.s, z.lon0, z.lat0, k0);
    const GeographicLib::TransverseMercatorExact exact(z.s.a, z.s.f, k0);
    double x0, y0;
    exact.Forward(z.lon0, z.lat0, z.lon0, x0, y0);
    std::uniform_real_distribution<double> lat_dist(-84.0, 84.0), dlon_dist(-40.0, 40.0);
    int tested = 0;
    while (tested < 2000) {
      const double lat = lat_dist(rng), lon = z.lon0 + dlon_dist(rng);
      double x, y;
      exact.Forward(z.lon0, lat, lon, x, y);
      if (std::fabs(x) > 3.9e6 * k0) continue;
      ++tested;
      std::vector<double> xy{lon * kDeg, lat * kDeg};
      ASSERT_EQ(tm.forward(xy), 1);
      EXPECT_NEAR(xy[0], x, kOracleTolMetres) << lat << " " << lon;
      EXPECT_NEAR(xy[1], y - y0, kOracleTolMetres) << lat << " " << lon;
      std::vector<double> back{x, y - y0};
      ASSERT_EQ(tm.inverse(back), 1);
      EXPECT_LE(ko::tmtest::ground_error(z.s.a, back[0], back[1], lon * kDeg, lat * kDeg), kOracleTolMetres)
          << lat << " " << lon;
    }
  }
}

#endif  // KO_HAVE_GEOGRAPHICLIB

}  // namespace
