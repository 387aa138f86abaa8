// Natural Earth, Natural Earth II, Times and the loximuthal: agreement with
// PROJ (natearth, natearth2, times, loxim) over the whole world on the
// sphere of radius a and on a sphere, the loximuthal's straight loxodromes
// and the outline of the maps.
#include "tests/projections/projfam_support.h"
#include "tests/projections/quadrature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct PseudoCase {
  const char *name;
  const ko_projlist_entry *vector;
  double phi1;       // the loximuthal's central parallel (degrees)
  std::string proj;  // PROJ's definition without lon_0 and the figure
};

const PseudoCase kCases[] = {
    {"Natural_Earth", &ko_prj_natural_earth_vector, 0, "+proj=natearth"},
    {"Natural_Earth_II", &ko_prj_natural_earth_ii_vector, 0, "+proj=natearth2"},
    {"Times", &ko_prj_times_vector, 0, "+proj=times"},
    {"Loximuthal 40N", &ko_prj_loximuthal_vector, 40, "+proj=loxim +lat_1=40"},
    {"Loximuthal 25S", &ko_prj_loximuthal_vector, -25, "+proj=loxim +lat_1=-25"},
    {"Loximuthal equator", &ko_prj_loximuthal_vector, 0, "+proj=loxim +lat_1=0"},
};

Parms parms_of(const PseudoCase &c, double lon0) {
  return Parms{{slot::kCentralMeridian, dms(lon0)}, {slot::kLatOrigin, dms(c.phi1)}};
}

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the whole world with the central
// meridian at 150°E and 75°W, inverse of the library's forward within
// 1e-9 degree.  The loximuthal's poles are points, which PROJ does not
// map, so its grid stops 0.1° short of them, and its rows keep more than
// 2° from the central parallel, where PROJ's loxim loses digits (the next
// test checks that band).
TEST(WorldPseudocylindrical, AgreesWithProj) {
  const Spheroid sphere{{6371000.0, 0.0}};
  for (const PseudoCase &c : kCases) {
    const bool loxim = c.vector == &ko_prj_loximuthal_vector;
    const double pole = loxim ? 89.9 : 90.0;
    const int rows = loxim ? 17 : 19;
    for (double lon0 : {150.0, -75.0}) {
      for (const auto &[sph, figure] :
           {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
        const std::string def = c.proj + " +lon_0=" + num(lon0) + figure;
        SCOPED_TRACE(std::string(c.name) + ": " + def);
        ProjOracle oracle(def);
        ASSERT_TRUE(oracle.ok());
        check_against(family_of(*c.vector), sph, parms_of(c, lon0), oracle,
                      grid(lon0 - 179.9, -pole, lon0 + 179.9, pole, 19, rows), 1e-6, 1e-9);
      }
    }
  }
}

#endif

// Next to the loximuthal's central parallel the published ratio
// (φ − φ1) / (ψ − ψ1) is 0/0 (PROJ's loxim loses up to 5e-6 m there at
// 0.05° from it); the reference takes ψ − ψ1 = ∫ sec φ dφ by long-double
// Gauss-Legendre quadrature.  Forward within 1e-6 m, round trip within
// 1e-9°, and the limit cos φ1 on the parallel itself.
TEST(WorldPseudocylindrical, LoximuthalNearItsCentralParallel) {
  const GaussLegendre quad;
  const double a = kWgs84.pair[0], phi1 = dms(40);
  const Parms p{{slot::kCentralMeridian, dms(10)}, {slot::kLatOrigin, phi1}};
  const Family f = family_of(ko_prj_loximuthal_vector);
  struct Quadrature {
    const GaussLegendre &quad;
    double a, phi1;
    XY forward(double lon, double lat) const {
      const double dlam = std::remainder(lon - dms(10), ko::kTwoPi);
      if (lat == phi1) return {a * dlam * std::cos(phi1), 0.0};
      const long double dpsi = quad.integrate([](long double t) { return 1.0L / std::cos(t); },
                                              phi1, lat, 4);
      return {static_cast<double>(a * dlam * (lat - phi1) / dpsi), a * (lat - phi1)};
    }
  };
  check_against(f, kWgs84, p, Quadrature{quad, a, phi1},
                grid(10 - 179.9, 40 - 0.05, 10 + 179.9, 40 + 0.05, 9, 5), 1e-6, 1e-9);
  check_against(f, kWgs84, p, Quadrature{quad, a, phi1},
                grid(10 - 179.9, 40 - 1e-7, 10 + 179.9, 40 + 1e-7, 9, 5), 1e-6, 1e-9);
  check_against(f, kWgs84, p, Quadrature{quad, a, phi1},
                grid(10 - 179.9, -60, 10 + 179.9, 80, 9, 8), 1e-6, 1e-9);
}

// On the loximuthal, the loxodrome from the centre to a point is the
// straight line from the origin, its length a |δφ| / |cos α| with the
// azimuth α from tan α = Δλ / (ψ − ψ1) (Mercator's rhumb line on the
// sphere): both are checked independently of the projection's formulas.
TEST(WorldPseudocylindrical, LoximuthalLoxodromesAreTrue) {
  const double a = kWgs84.pair[0];
  const double phi1 = dms(35);
  const Parms p{{slot::kCentralMeridian, 0.0}, {slot::kLatOrigin, phi1}};
  const Family f = family_of(ko_prj_loximuthal_vector);
  for (const XY pt : {XY{dms(60), dms(70)}, XY{dms(-120), dms(-40)}, XY{dms(10), dms(35.5)}}) {
    const XY xy = forward1(f, kWgs84, p, pt.x, pt.y);
    const double dpsi = std::asinh(std::tan(pt.y)) - std::asinh(std::tan(phi1));
    const double azimuth = std::atan2(pt.x, dpsi);
    EXPECT_NEAR(std::atan2(xy.x, xy.y), azimuth, 1e-12);
    EXPECT_NEAR(std::hypot(xy.x, xy.y), a * std::fabs((pt.y - phi1) / std::cos(azimuth)), 1e-6);
  }
}

// The outline: the antimeridian is the edge, the poles' lines (points on
// the loximuthal) bound the map, and the inverse refuses what lies beyond.
TEST(WorldPseudocylindrical, OutlineAndRefusals) {
  for (const PseudoCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const Parms p = parms_of(c, 20);
    int count = -1;
    const XY north = forward1(f, kWgs84, p, dms(20 + 180), dms(90));
    const XY south = forward1(f, kWgs84, p, dms(20 + 180), dms(-90));
    const XY edge = forward1(f, kWgs84, p, dms(20 + 180), dms(30));
    const XY back = inverse1(f, kWgs84, p, edge.x, edge.y, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(std::fabs(lon_diff_deg(back.x, dms(20))), 180.0, 1e-9);
    EXPECT_NEAR(back.y / kDeg, 30.0, 1e-9);
    inverse1(f, kWgs84, p, edge.x * 1.001, edge.y, &count);
    EXPECT_EQ(count, 0) << "beyond the antimeridian";
    inverse1(f, kWgs84, p, 0.0, north.y + 1000.0, &count);
    EXPECT_EQ(count, 0) << "beyond the north pole";
    inverse1(f, kWgs84, p, 0.0, south.y - 1000.0, &count);
    EXPECT_EQ(count, 0) << "beyond the south pole";
    const XY pole = inverse1(f, kWgs84, p, north.x * 0.5, north.y, &count);
    EXPECT_EQ(count, 1) << "on the north pole's line";
    EXPECT_NEAR(pole.y / kDeg, 90.0, 1e-9);
    const XY bad = forward1(f, kWgs84, p, NAN, 0.3, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(bad.y, HUGE_VAL);
    forward1(f, kWgs84, p, 0.3, dms(-90.01), &count);
    EXPECT_EQ(count, 0);
    expect_refused(f, kWgs84, Parms{{slot::kCentralMeridian, NAN}}, "no central meridian");
  }
  expect_refused(family_of(ko_prj_loximuthal_vector), kWgs84,
                 Parms{{slot::kCentralMeridian, 0.0}, {slot::kLatOrigin, dms(90)}},
                 "central parallel on a pole");
}

}  // namespace
