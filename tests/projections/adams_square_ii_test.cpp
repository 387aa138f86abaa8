// Adams_Square_II against PROJ's adams_ws2, the square's corners at the
// complete elliptic integral √2 K(1/√2) a (K = Γ(1/4)² / (4√π)),
// conformality by finite differences, and the outline refused.
#include "projections/families.h"
#include "tests/projections/elliptic_world_support.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kAdams{ko::proj::adams_square_ii_forward, ko::proj::adams_square_ii_inverse,
                    ko::proj::adams_square_ii_constants};

Parms adams_parms(double lon0_deg) { return Parms{{slot::kCentralMeridian, dms(lon0_deg)}}; }

const double kCompleteK = std::tgamma(0.25) * std::tgamma(0.25) / (4.0 * std::sqrt(ko::kPi));

#ifdef KO_HAVE_PROJ
// PROJ's adams_ws2 evaluates its elliptic integral to about 8e-8 of the
// radius: forward within 0.6 m of it on the Earth's radius (the digits
// below are checked against the 30-digit values of the next test); the
// inverse of our forward within 1e-9 degree.
TEST(AdamsSquareII, AgreesWithProj) {
  check_proj_cases({
      {"WGS 84 taken on radius a", &kAdams, kWgs84, adams_parms(0),
       "+proj=adams_ws2 +lon_0=0 +ellps=WGS84", -179, -89, 179, 89},
      {"central meridian 100°E, sphere", &kAdams, Spheroid{{6371000.0, 0.0}}, adams_parms(100),
       "+proj=adams_ws2 +lon_0=100 +R=6371000", -79, -89, 279, 89},
  }, 12, 13, 0.6, 1e-9);
}
#endif

// Forward within 1e-6 m of values computed with mpmath at 30 digits
// (mpmath.elliprf and mpmath.ellipk, the construction of the source file
// evaluated independently), on a sphere of 6371 km, central meridian 100°E.
TEST(AdamsSquareII, AgreesWithThirtyDigitValues) {
  const Spheroid s{{6371000.0, 0.0}};
  const Parms p = adams_parms(100);
  const ReferencePoint rows[] = {
      {-20, 20, -7323068.4917512781, 1583194.1527564243},
      {100, 60, 0.0, 4054032.8196346552},
      {-170, -10, 5279134.6454530666, -663491.73820444576},
      {45, -45, -2959548.0937151722, -2917060.2340574451},
      {-100, -75, 7025772.1030404534, -8247372.9408682773},
      {150, 5, 2824028.3708822063, 292312.56382086711},
  };
  expect_forward_values(kAdams, s, p, rows, 1e-6);
}

// The poles at the top and bottom corners, the centre at the origin, the
// antimeridian's equator point (approached from either side, 1e-12 degree
// away) at the left and right corners.  The map goes as the square root of
// the distance near the cut's corners (1e-12° off gives about 1 m).
TEST(AdamsSquareII, PolesAndCutSitOnTheCorners) {
  const double r = 6371000.0, c = std::sqrt(2.0) * kCompleteK * r;
  const Spheroid s{{r, 0.0}};
  const Parms p = adams_parms(0);
  const struct {
    const char *name;
    double lon, lat, x, y, tol;
  } rows[] = {
      {"centre", 0, 0, 0, 0, 1e-6},
      {"north pole", 30, 90, 0, c, 1e-6},
      {"south pole", -70, -90, 0, -c, 1e-6},
      {"just east of the cut", 180 - 1e-12, 0, c, 0, 5.0},
      {"just west of the cut", -180 + 1e-12, 0, -c, 0, 5.0},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.name);
    int count = -1;
    const XY q = forward1(kAdams, s, p, row.lon * kDeg, row.lat * kDeg, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(q.x, row.x, row.tol);
    EXPECT_NEAR(q.y, row.y, row.tol);
  }
  for (double sign : {1.0, -1.0}) {
    int count = -1;
    const XY b = inverse1(kAdams, s, p, 0.0, sign * c, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(b.y, sign * ko::kHalfPi, 1e-12);
  }
}

TEST(AdamsSquareII, ConformalAndOutlineRefused) {
  const double points[][2] = {{10, 20}, {-30, -45}, {100, 60}, {170, -10}, {-80, -75}};
  expect_conformal(kAdams, adams_parms(0), points);
  const double a = kWgs84.pair[0], c = std::sqrt(2.0) * kCompleteK * a;
  const struct {
    const char *name;
    double x, y;
  } outside[] = {
      {"above the north pole", 0.0, 1.01 * c},
      {"beyond a side", 0.6 * c, -0.6 * c},
      {"NaN", NAN, 0.0},
  };
  for (const auto &r : outside) {
    SCOPED_TRACE(r.name);
    int count = -1;
    const XY q = inverse1(kAdams, kWgs84, adams_parms(0), r.x, r.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
  }
  int count = -1;
  forward1(kAdams, kWgs84, adams_parms(0), 0.0, dms(91), &count);
  EXPECT_EQ(count, 0);
}

}  // namespace
