// Transverse_Cylindrical_Equal_Area against PROJ's tcea (on the sphere of
// radius a, as PROJ computes it given an ellipsoid): the whole world, the
// scale factor and latitude of origin, and the strip's edges refused.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kTcea{ko::proj::transverse_cylindrical_eqarea_forward,
                   ko::proj::transverse_cylindrical_eqarea_inverse,
                   ko::proj::transverse_cylindrical_eqarea_constants};

Parms tcea_parms(double lon0_deg, double k0, double lat0_deg) {
  return Parms{{slot::kCentralMeridian, dms(lon0_deg)},
               {slot::kScaleFactor, k0},
               {slot::kLatOrigin, dms(lat0_deg)}};
}

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the whole globe, poles and the
// antimeridian included; inverse within 1e-9 degree.  Twelve meridians
// keep the grid off the transverse poles (90° from the central meridian on
// the equator), where the latitude of the line is undefined.
TEST(TransverseCylindricalEqualArea, AgreesWithProj) {
  check_proj_cases({
      {"WGS 84 taken on radius a", &kTcea, kWgs84, tcea_parms(0, 1, 0),
       "+proj=tcea +lon_0=0 +ellps=WGS84", -180, -90, 180, 90},
      {"scale and latitude of origin", &kTcea, kIntl1924, tcea_parms(100, 0.8, 30),
       "+proj=tcea +lon_0=100 +k_0=0.8 +lat_0=30 +ellps=intl", -80, -90, 280, 90},
      {"sphere", &kTcea, Spheroid{{6371000.0, 0.0}}, tcea_parms(-60, 1.5, -45),
       "+proj=tcea +lon_0=-60 +k_0=1.5 +lat_0=-45 +R=6371000", -240, -90, 120, 90},
  }, 12, 13, 1e-6, 1e-9);
}
#endif

TEST(TransverseCylindricalEqualArea, EqualAreaOnTheSphere) {
  // A small cell's area on the map equals its area on the sphere of
  // radius a, R² cos φ dλ dφ (independent of the formulas' form).
  const Parms p = tcea_parms(0, 0.7, 10);
  const double a = kWgs84.pair[0], d = 1e-4;
  const double cells[][2] = {{20.0, 40.0}, {-130.0, -70.0}, {75.0, 5.0}};
  for (const auto &cell : cells) {
    const double lon = cell[0], lat = cell[1];
    SCOPED_TRACE(lon);
    const XY o = forward1(kTcea, kWgs84, p, lon * kDeg, lat * kDeg);
    const XY e = forward1(kTcea, kWgs84, p, lon * kDeg + d, lat * kDeg);
    const XY n = forward1(kTcea, kWgs84, p, lon * kDeg, lat * kDeg + d);
    const double map_area = std::fabs((e.x - o.x) * (n.y - o.y) - (e.y - o.y) * (n.x - o.x));
    const double sphere_area = a * a * std::cos(lat * kDeg + d / 2) * d * d;
    EXPECT_NEAR(map_area / sphere_area, 1.0, 1e-3);
  }
}

TEST(TransverseCylindricalEqualArea, OutsideTheStripIsRefused) {
  const Parms p = tcea_parms(0, 1, 0);
  const double a = kWgs84.pair[0];
  const struct {
    const char *name;
    double x, y;
  } outside[] = {
      {"east of the strip", 1.001 * a, 0.0},
      {"west of the strip", -1.5 * a, 1e6},
      {"beyond the top", 0.0, 3.15 * a},
      {"beyond the bottom", 0.0, -3.2 * a},
      {"NaN", NAN, 0.0},
  };
  for (const auto &r : outside) {
    SCOPED_TRACE(r.name);
    int count = -1;
    const XY q = inverse1(kTcea, kWgs84, p, r.x, r.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
    EXPECT_EQ(q.y, HUGE_VAL);
  }
  // The transverse pole maps onto the strip's edge x = a / k0.
  int count = -1;
  const XY pole = forward1(kTcea, kWgs84, tcea_parms(0, 0.5, 0), ko::kHalfPi, 0.0, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(pole.x, 2.0 * a, 1e-6);
  forward1(kTcea, kWgs84, p, 0.0, 1.6, &count);  // beyond the pole
  EXPECT_EQ(count, 0);
  expect_refused(kTcea, kWgs84, tcea_parms(0, 0, 0), "zero scale factor");
  expect_refused(kTcea, kWgs84, tcea_parms(0, 1, 95), "latitude of origin beyond the pole");
}

}  // namespace
