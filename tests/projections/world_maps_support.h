// Checks shared by the tests of the world maps (pseudocylindricals and
// modified azimuthals): agreement with PROJ over the whole world on an
// ellipsoid and on a sphere, and the edges of the map — the poles, the
// antimeridian, points off the outline on the inverse, input that cannot be
// converted.
#pragma once

#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace ko::test {

// One projection against its PROJ counterpart: `proj` is the PROJ
// definition without the central meridian and the figure of the earth.
struct WorldCase {
  const char *name;
  const ko_projlist_entry *vector;
  std::string proj;
  double phi1 = 0.0;  // slot 3 (Standard_Parallel_1), radians
  // The grid's extreme latitude against PROJ: below 90° where PROJ's own
  // iteration stops short of the pole (the pole is then checked on its own).
  double lat_max = 90.0;
};

inline Parms world_parms(const WorldCase &c, double lon0) {
  return Parms{{ko::proj::slot::kCentralMeridian, lon0}, {ko::proj::slot::kStdParallel1, c.phi1}};
}

#ifdef KO_HAVE_PROJ
// Forward within tol_m of PROJ on a 13 × 13 grid over the whole world
// (0.1° inside the antimeridian, both poles), for a central meridian of
// 150°E on WGS 84 (PROJ's spherical forms use the semi-major axis, as the
// library does) and of 30°W on a sphere of 6371 km; inverse of the
// library's own forward back within tol_deg.
inline void check_world_against_proj(const WorldCase &c, double tol_m, double tol_deg) {
  SCOPED_TRACE(c.name);
  const Family f = family_of(*c.vector);
  struct Figure {
    Spheroid sph;
    const char *proj;
    double lon0;
  };
  for (const Figure &fig : {Figure{kWgs84, " +ellps=WGS84", 150.0},
                            Figure{Spheroid{{6371000.0, 0.0}}, " +R=6371000", -30.0}}) {
    const std::string def = "+proj=" + c.proj + " +lon_0=" + num(fig.lon0) + fig.proj;
    SCOPED_TRACE(def);
    ProjOracle oracle(def);
    ASSERT_TRUE(oracle.ok()) << def;
    check_against(f, fig.sph, world_parms(c, fig.lon0 * kDeg), oracle,
                  grid(fig.lon0 - 179.9, -c.lat_max, fig.lon0 + 179.9, c.lat_max, 13, 13), tol_m, tol_deg);
  }
}
#endif

// The edges of the map, with the central meridian at 20°E on WGS 84:
// ±180° from it are the two ends of the equator's line, the inverse of the
// edge itself comes back, points beyond the outline and input that is not a
// point on the earth are refused (HUGE_VAL, not counted).
inline void check_world_edges(const WorldCase &c) {
  SCOPED_TRACE(c.name);
  const Family f = family_of(*c.vector);
  const double lon0 = 20.0 * kDeg;
  const Parms p = world_parms(c, lon0);
  int count = -1;
  // The antimeridian: both sides, mirror images.
  const XY east = forward1(f, kWgs84, p, lon0 + ko::kPi, 40.0 * kDeg, &count);
  EXPECT_EQ(count, 1);
  const XY west = forward1(f, kWgs84, p, lon0 - ko::kPi, 40.0 * kDeg, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(std::fabs(east.x), std::fabs(west.x), 1e-6);
  EXPECT_NEAR(east.y, west.y, 1e-6);
  EXPECT_GT(std::fabs(east.x), 1e6);
  const XY back = inverse1(f, kWgs84, p, std::fabs(east.x), east.y, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(std::fabs(lon_diff_deg(back.x, lon0)), 180.0, 1e-9);
  EXPECT_NEAR(back.y / kDeg, 40.0, 1e-9);
  // The central meridian: x is 0 there and the map is symmetric about it.
  const XY on_cm = forward1(f, kWgs84, p, lon0, -35.0 * kDeg);
  EXPECT_NEAR(on_cm.x, 0.0, 1e-6);
  const XY right = forward1(f, kWgs84, p, lon0 + 1.0, -35.0 * kDeg);
  const XY left = forward1(f, kWgs84, p, lon0 - 1.0, -35.0 * kDeg);
  EXPECT_NEAR(right.x, -left.x, 1e-6);
  EXPECT_GT(right.x, 0.0);
  // The poles are on the map; beyond the north pole's y is not.
  const XY pole = forward1(f, kWgs84, p, lon0, ko::kHalfPi, &count);
  EXPECT_EQ(count, 1);
  EXPECT_GT(pole.y, 1e6);
  const XY pole_back = inverse1(f, kWgs84, p, 0.0, pole.y, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(pole_back.y / kDeg, 90.0, 1e-7);
  // Off the outline: beyond the equator's end, above the pole, past the
  // edge meridian at 60°N.
  const XY edge60 = forward1(f, kWgs84, p, lon0 + ko::kPi, 60.0 * kDeg);
  const XY equator_end = forward1(f, kWgs84, p, lon0 + ko::kPi, 0.0);
  struct Off {
    double x, y;
  };
  for (const Off o : {Off{1.01 * equator_end.x, 0.0},
                      Off{0.0, 1.01 * pole.y}, Off{0.0, -1.01 * pole.y},
                      Off{1.01 * edge60.x, edge60.y}}) {
    const XY r = inverse1(f, kWgs84, p, o.x, o.y, &count);
    EXPECT_EQ(count, 0) << "off the map: " << o.x << ", " << o.y;
    EXPECT_EQ(r.x, HUGE_VAL);
    EXPECT_EQ(r.y, HUGE_VAL);
  }
  // Not points: NaN, infinities, latitudes beyond the poles.
  struct Bad {
    double lon, lat;
  };
  for (const Bad b : {Bad{std::nan(""), 0.1}, Bad{0.1, std::nan("")}, Bad{HUGE_VAL, 0.1},
                      Bad{0.1, 1.6}, Bad{0.1, -1.6}}) {
    const XY r = forward1(f, kWgs84, p, b.lon, b.lat, &count);
    EXPECT_EQ(count, 0) << b.lon << ", " << b.lat;
    EXPECT_EQ(r.x, HUGE_VAL);
  }
  const XY r = inverse1(f, kWgs84, p, std::nan(""), 0.0, &count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(r.y, HUGE_VAL);
  // Null arguments and another family's constants convert nothing.
  double pt[2] = {0.1, 0.2};
  EXPECT_EQ(f.forward(nullptr, p.data(), 1, pt, nullptr, nullptr), 0);
  EXPECT_EQ(f.inverse(kWgs84.sph(), nullptr, 1, pt, nullptr, nullptr), 0);
  EXPECT_EQ(f.forward(kWgs84.sph(), p.data(), 1, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(f.inverse(kWgs84.sph(), p.data(), -1, pt, nullptr, nullptr), 0);
  const Cached other(family_of(ko_prj_bonne_vector), kWgs84, p);
  ASSERT_GE(other.status, 0);
  EXPECT_EQ(f.forward(kWgs84.sph(), p.data(), 1, pt, other.ivals(), other.dvals()), 0);
  EXPECT_EQ(f.inverse(kWgs84.sph(), p.data(), 1, pt, other.ivals(), other.dvals()), 0);
  // A definition without a usable central meridian converts nothing.
  Parms broken = p;
  broken[ko::proj::slot::kCentralMeridian] = std::nan("");
  expect_refused(f, kWgs84, broken, "NaN central meridian");
}

// The root of the increasing f(t) = c on [lo, hi] by bisection in long
// double: an independent solution of a projection's auxiliary-angle
// equation (its precision near a double root is the square root of long
// double's, still a thousand times double's).
template <class F>
long double bisect(F &&f, long double c, long double lo, long double hi) {
  for (int i = 0; i < 200; ++i) {
    const long double mid = (lo + hi) / 2;
    (f(mid) < c ? lo : hi) = mid;
  }
  return (lo + hi) / 2;
}

// Forward then inverse of pts (radians) on WGS 84: every point converted
// both ways and back within tol_deg, longitude compared modulo 360° and not
// at all on the poles when the pole is a point; prints the worst.
inline void check_round_trip(const char *name, const Family &f, const Parms &p,
                             const std::vector<double> &pts, bool pole_is_point, double tol_deg) {
  std::vector<double> xy = pts;
  const int n = static_cast<int>(pts.size() / 2);
  EXPECT_EQ(f.forward(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
  EXPECT_EQ(f.inverse(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
  double worst = 0.0;
  for (int i = 0; i < n; ++i) {
    const bool skip_lon = pole_is_point && std::fabs(pts[2 * i + 1]) == ko::kHalfPi;
    const double dlon = skip_lon ? 0.0 : std::fabs(lon_diff_deg(xy[2 * i], pts[2 * i]));
    worst = std::fmax(worst, std::fmax(dlon, std::fabs(xy[2 * i + 1] - pts[2 * i + 1]) / kDeg));
  }
  EXPECT_LE(worst, tol_deg) << name;
  std::printf("[ measured ] %s: round trip %.3g deg over %d points\n", name, worst, n);
}

// Equal area: the Jacobian of the forward on the unit sphere, by central
// differences, is cos φ on a spread of points (the differencing is good to
// about 1e-9).
inline void check_equal_area(const WorldCase &c) {
  SCOPED_TRACE(c.name);
  const Spheroid unit{{1.0, 0.0}};
  const Family f = family_of(*c.vector);
  const Parms p = world_parms(c, 0.0);
  const double h = 1e-5;
  for (double lat : {-80.0, -30.0, 0.0, 45.0, 85.0})
    for (double lon : {-170.0, -20.0, 0.0, 90.0, 175.0}) {
      const double l = lon * kDeg, b = lat * kDeg;
      const XY e1 = forward1(f, unit, p, l + h, b), w1 = forward1(f, unit, p, l - h, b);
      const XY n1 = forward1(f, unit, p, l, b + h), s1 = forward1(f, unit, p, l, b - h);
      const double jac = ((e1.x - w1.x) * (n1.y - s1.y) - (e1.y - w1.y) * (n1.x - s1.x)) / (4 * h * h);
      EXPECT_NEAR(jac, std::cos(b), 1e-7) << lon << ", " << lat;
    }
}

}  // namespace ko::test
