// Checks shared by the tests of the elliptic world maps (Peirce
// quincuncial, Adams world in a square II): forward values against a table
// of high-precision reference values, and conformality by finite
// differences.
#pragma once

#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>

namespace ko::test {

// A point (degrees) and its reference image (metres).
struct ReferencePoint {
  double lon, lat, x, y;
};

inline void expect_forward_values(const Family &f, const Spheroid &s, const Parms &p,
                                  std::span<const ReferencePoint> rows, double tol_m) {
  for (const ReferencePoint &r : rows) {
    SCOPED_TRACE(r.lon);
    const XY q = forward1(f, s, p, r.lon * kDeg, r.lat * kDeg);
    EXPECT_NEAR(q.x, r.x, tol_m);
    EXPECT_NEAR(q.y, r.y, tol_m);
  }
}

// Conformal at each point (degrees): the scales along the meridian (h) and
// the parallel (k) agree and their images cross at right angles, both
// measured by steps of 1e-6 radian on the unit sphere.
inline void expect_conformal(const Family &f, const Parms &p,
                             std::span<const double[2]> points) {
  const Spheroid s{{1.0, 0.0}};
  const double d = 1e-6;
  for (const auto &pt : points) {
    SCOPED_TRACE(pt[0]);
    const double lon = pt[0] * kDeg, lat = pt[1] * kDeg;
    const XY o = forward1(f, s, p, lon, lat);
    const XY e = forward1(f, s, p, lon + d, lat);
    const XY n = forward1(f, s, p, lon, lat + d);
    const double h = std::hypot(n.x - o.x, n.y - o.y) / d;
    const double k = std::hypot(e.x - o.x, e.y - o.y) / (d * std::cos(lat));
    const double cos_angle = ((n.x - o.x) * (e.x - o.x) + (n.y - o.y) * (e.y - o.y)) /
                             (h * d * k * d * std::cos(lat));
    EXPECT_NEAR(h / k, 1.0, 1e-5);
    EXPECT_NEAR(cos_angle, 0.0, 1e-5);
  }
}

}  // namespace ko::test
