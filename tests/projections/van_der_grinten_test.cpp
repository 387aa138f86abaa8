// Van der Grinten I: agreement with PROJ's vandg over the whole world (on
// the sphere of radius a when given an ellipsoid, as PROJ computes it) and
// the circle that bounds the map.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kVdg = family_of(ko_prj_van_der_grinten_i_vector);

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ, inverse of the library's forward within
// 1e-9 degree; the grid holds the equator, the central meridian and both
// poles.
TEST(VanDerGrinten, AgreesWithProj) {
  const Spheroid sphere{{6371000.0, 0.0}};
  for (double lon0 : {0.0, -60.0, 135.0}) {
    for (const auto &[sph, figure] :
         {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
      const std::string def = "+proj=vandg +lon_0=" + num(lon0) + figure;
      SCOPED_TRACE(def);
      ProjOracle oracle(def);
      ASSERT_TRUE(oracle.ok());
      check_against(kVdg, sph, Parms{{slot::kCentralMeridian, dms(lon0)}}, oracle,
                    grid(lon0 - 179.9, -90, lon0 + 179.9, 90, 19, 19), 1e-6, 1e-9);
    }
  }
}
#endif

// Near the origin the map is the plane tangent there: the scale is 1 along
// the equator and the central meridian, and the map is symmetric about
// both, so x = a Δλ and y = a φ up to terms of the third order, below
// a ε³ for |Δλ|, |φ| <= ε (the closed form, as Snyder prints it, cancels
// there and is off by 2.6e-5 m at 0.001°, and PROJ's vandg gives infinite
// or wrong results inside 0.001°).  The inverse comes back within 1e-9°
// of the start there too.
TEST(VanDerGrinten, NearTheOrigin) {
  const double a = kWgs84.pair[0];
  const Parms p{{slot::kCentralMeridian, dms(40)}};
  for (double eps_deg : {1e-3, 1e-6, 1e-9}) {
    const double eps = dms(eps_deg);
    for (const XY f : {XY{1, 1}, XY{-0.5, 1}, XY{1, -0.25}, XY{0.01, 1}, XY{1, 0.01}, XY{0, 1}, XY{1, 0}}) {
      const double dlam = f.x * eps, phi = f.y * eps;
      int count = -1;
      const XY xy = forward1(kVdg, kWgs84, p, dms(40) + dlam, phi, &count);
      ASSERT_EQ(count, 1);
      EXPECT_NEAR(xy.x, a * dlam, a * eps * eps * eps + 1e-9) << eps_deg << " " << f.x << " " << f.y;
      EXPECT_NEAR(xy.y, a * phi, a * eps * eps * eps + 1e-9) << eps_deg << " " << f.x << " " << f.y;
      const XY back = inverse1(kVdg, kWgs84, p, xy.x, xy.y, &count);
      EXPECT_EQ(count, 1);
      EXPECT_NEAR(lon_diff_deg(back.x, dms(40) + dlam), 0.0, 1e-9);
      EXPECT_NEAR((back.y - phi) / kDeg, 0.0, 1e-9);
    }
  }
}

// The map is the circle of radius π a: the poles at its top and bottom,
// the antimeridian at the ends of the equator; outside it the inverse
// refuses.
TEST(VanDerGrinten, BoundingCircle) {
  const double a = kWgs84.pair[0];
  const Parms p{{slot::kCentralMeridian, dms(-30)}};
  const XY north = forward1(kVdg, kWgs84, p, dms(77), dms(90));
  EXPECT_NEAR(north.x, 0.0, 1e-6);
  EXPECT_NEAR(north.y, ko::kPi * a, 1e-6);
  const XY east = forward1(kVdg, kWgs84, p, dms(150), 0.0);
  EXPECT_NEAR(east.x, ko::kPi * a, 1e-6);
  EXPECT_NEAR(east.y, 0.0, 1e-6);
  const XY on_edge = forward1(kVdg, kWgs84, p, dms(150), dms(40));
  EXPECT_NEAR(std::hypot(on_edge.x, on_edge.y), ko::kPi * a, 1e-6);
  int count = -1;
  const double r = ko::kPi * a * 1.0001;
  for (const XY out : {XY{r, 0.0}, XY{0.0, -r}, XY{r * 0.7072, r * 0.7072}}) {
    const XY b = inverse1(kVdg, kWgs84, p, out.x, out.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(b.x, HUGE_VAL);
  }
  forward1(kVdg, kWgs84, p, dms(10), dms(91), &count);
  EXPECT_EQ(count, 0);
  expect_refused(kVdg, kWgs84, Parms{{slot::kCentralMeridian, HUGE_VAL}}, "no central meridian");
}

}  // namespace
