// Transverse_Mercator_Complex (43056), the exact mapping: within 10 nm of the
// 30-digit reference up to 80 degrees from the central meridian, agreement
// with GeographicLib's exact projection over the whole ellipsoid (beyond 90
// degrees of longitude too), and the neighbourhood of the singular point.
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

// Our accuracy bound against the exact mapping, in x and y and on the ground.
constexpr double kOwnTolMetres = 10e-9;
// GeographicLib's exact projection is itself within 9 nm of the true mapping
// (Karney 2011), so agreement with it is tested to 10 + 9 nm.
constexpr double kOracleTolMetres = kOwnTolMetres + 9e-9;

TEST(TmComplexReference, WithinTenNanometresOfExact) {
  for (const char *set : {"strip", "wide"}) {
    ko::tmtest::expect_reference_accuracy(ko_prj_transverse_mercator_complex_vector, set, kOwnTolMetres);
  }
}

#ifdef KO_HAVE_GEOGRAPHICLIB

struct Region {
  const char *label;
  double lat_min, lat_max, dlon_min, dlon_max;
};

// Away from a 1-degree neighbourhood of the singular points (0, ±(1-e) 90);
// the far side keeps 12 degrees away from their reflections at
// ±(180 - (1-e) 90), where the growing scale magnifies both libraries'
// rounding past the bound.
bool near_singular(const Spheroid &s, double lat, double dlon) {
  const double singular = (1.0 - std::sqrt(s.e2())) * 90.0;
  return std::fabs(lat) < 1.0 && std::fabs(std::fabs(dlon) - singular) < 1.0;
}

TEST(TmComplexOracle, AgreesWithGeographicLibOverTheEllipsoid) {
  const Region regions[] = {
      {"to 80 degrees", -89.9, 89.9, -80.0, 80.0},
      {"far side", -89.9, 89.9, 110.0, 179.9},  // reflected through the pole
      {"near the poles", 85.0, 89.999, -179.0, 179.0},
  };
  for (const Spheroid &s : {ko::tmtest::kWgs84, ko::tmtest::kClarke1866}) {
    const double lon0 = -60.0, lat0 = 25.0, k0 = 0.9996;
    TmSetup tm(ko_prj_transverse_mercator_complex_vector, s, lon0, lat0, k0);
    const GeographicLib::TransverseMercatorExact exact(s.a, s.f, k0);
    double x0, y0;
    exact.Forward(lon0, lat0, lon0, x0, y0);
    std::mt19937_64 rng(43056);
    for (const Region &reg : regions) {
      std::uniform_real_distribution<double> lat_dist(reg.lat_min, reg.lat_max), dlon_dist(reg.dlon_min, reg.dlon_max);
      for (int i = 0; i < 1000; ++i) {
        const double lat = lat_dist(rng), dlon = dlon_dist(rng);
        if (near_singular(s, lat, dlon)) continue;
        double x, y;
        exact.Forward(lon0, lat, lon0 + dlon, x, y);
        std::vector<double> xy{(lon0 + dlon) * kDeg, lat * kDeg};
        ASSERT_EQ(tm.forward(xy), 1);
        EXPECT_NEAR(xy[0], x, kOracleTolMetres) << reg.label << " " << lat << " " << dlon;
        EXPECT_NEAR(xy[1], y - y0, kOracleTolMetres) << reg.label << " " << lat << " " << dlon;
        std::vector<double> back{x, y - y0};
        ASSERT_EQ(tm.inverse(back), 1);
        EXPECT_LE(ko::tmtest::ground_error(s.a, back[0], back[1], (lon0 + dlon) * kDeg, lat * kDeg),
                  kOracleTolMetres)
            << reg.label << " " << lat << " " << dlon;
      }
    }
  }
}

// Close to the singular point the Newton solutions start from the cubic
// expansion there; the projection stays continuous and invertible.
TEST(TmComplexOracle, NearTheSingularPoint) {
  const Spheroid s = ko::tmtest::kWgs84;
  const double singular = (1.0 - std::sqrt(s.e2())) * 90.0;
  TmSetup tm(ko_prj_transverse_mercator_complex_vector, s, 0.0, 0.0, 1.0);
  const GeographicLib::TransverseMercatorExact exact(s.a, s.f, 1.0);
  for (double dlat : {-0.5, -0.01, 0.0, 0.001, 0.3}) {
    for (double dlon : {-0.5, -0.01, 0.002, 0.4, 5.0}) {
      if (dlat == 0.0 && std::fabs(dlon) < 0.003) continue;  // the point itself
      const double lat = dlat, lon = singular + dlon;
      double x, y;
      exact.Forward(0.0, lat, lon, x, y);
      std::vector<double> xy{lon * kDeg, lat * kDeg};
      ASSERT_EQ(tm.forward(xy), 1);
      // The scale grows without bound here; a metre-level check shows the
      // right branch was found, and the round trip shows consistency.
      EXPECT_NEAR(xy[0], x, 1e-3 * (1.0 + std::fabs(x) * 1e-6)) << lat << " " << lon;
      EXPECT_NEAR(xy[1], y, 1e-3 * (1.0 + std::fabs(y) * 1e-6)) << lat << " " << lon;
      ASSERT_EQ(tm.inverse(xy), 1);
      EXPECT_NEAR(xy[1] / kDeg, lat, 1e-8) << lat << " " << lon;
      EXPECT_NEAR(xy[0] / kDeg, lon, 1e-8) << lat << " " << lon;
    }
  }
}

#endif  // KO_HAVE_GEOGRAPHICLIB

// The pole maps to the end of the quarter meridian whatever the longitude,
// and x = 0 there.
TEST(TmComplex, PoleIsAPoint) {
  const Spheroid s = ko::tmtest::kWgs84;
  TmSetup tm(ko_prj_transverse_mercator_complex_vector, s, 0.0, 0.0, 1.0);
  // quarter meridian a E(e²), from the complete elliptic integral
  const double quarter = s.a * ko_ellint2(s.e2());
  for (double lon : {-170.0, -45.0, 0.0, 30.0, 120.0}) {
    std::vector<double> xy{lon * kDeg, 90.0 * kDeg};
    ASSERT_EQ(tm.forward(xy), 1);
    EXPECT_NEAR(xy[0], 0.0, 1e-9);
    EXPECT_NEAR(xy[1], quarter, 1e-6);
  }
}

}  // namespace
