// Peirce_Quincuncial: against PROJ's peirce_q (which is itself accurate to
// about 2e-8 of the radius), the inner square's corners at the complete
// elliptic integral K(1/√2) = Γ(1/4)² / (4√π), conformality by finite
// differences, round trips over the whole world, and the outline refused.
#include "projections/families.h"
#include "tests/projections/elliptic_world_support.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kPeirce{ko::proj::peirce_quincuncial_forward, ko::proj::peirce_quincuncial_inverse,
                     ko::proj::peirce_quincuncial_constants};

Parms peirce_parms(double lon0_deg) {
  return Parms{{slot::kCentralMeridian, dms(lon0_deg)}, {slot::kLatOrigin, dms(90)}};
}

const double kCompleteK = std::tgamma(0.25) * std::tgamma(0.25) / (4.0 * std::sqrt(ko::kPi));

#ifdef KO_HAVE_PROJ
// PROJ's peirce_q evaluates the elliptic integral to about 8e-8 of the
// radius (its own inner-square corner is off K by 2e-8): forward within
// 0.5 m of it on the Earth's radius; the inverse of our forward within
// 1e-9 degree.  The digits below that are checked against the 30-digit
// values of the next test.
TEST(PeirceQuincuncial, AgreesWithProj) {
  check_proj_cases({
      {"WGS 84 taken on radius a", &kPeirce, kWgs84, peirce_parms(0),
       "+proj=peirce_q +lon_0=0 +ellps=WGS84", -179, -89, 179, 90},
      {"central meridian 30°W, sphere", &kPeirce, Spheroid{{6371000.0, 0.0}}, peirce_parms(-30),
       "+proj=peirce_q +lon_0=-30 +R=6371000", -209, -89, 149, 90},
  }, 12, 13, 0.5, 1e-9);
}
#endif

// Forward within 1e-6 m of values computed with mpmath at 30 digits
// (mpmath.elliprf for W(ζ) = ζ RF(1, 1 + iζ², 1 − iζ²), mpmath.ellipk for the
// fold), on a sphere of 6371 km about the central meridian 30°W.
TEST(PeirceQuincuncial, AgreesWithThirtyDigitValues) {
  const Spheroid s{{6371000.0, 0.0}};
  const Parms p = peirce_parms(-30);
  const ReferencePoint rows[] = {
      {-20, 20, 1404313.8895040002, -8650148.1276636064},
      {100, 60, 2617093.1342088412, 2195212.9252002761},
      {-170, -10, -7030969.4555424836, 14787516.304531026},
      {45, -45, 18530703.561002165, -1351151.6363998932},
      {-100, -75, -22048261.270354117, -573694.67635991394},
      {150, 5, 0.0, 11027035.952090492},
  };
  expect_forward_values(kPeirce, s, p, rows, 1e-6);
}

// The inner corners are the four singular points, where the map behaves as
// a square root: a rounding of 1e-16 in ζ moves the image by about 1e-8 of
// the radius, so they are checked to 0.5 m, the rest to 1e-6 m.
TEST(PeirceQuincuncial, CornersAndPolesSitOnTheSquare) {
  const double r = 6371000.0;
  const Spheroid s{{r, 0.0}};
  const Parms p = peirce_parms(0);
  const struct {
    const char *name;
    double lon, lat, x, y;  // x, y in units of K r
    double tol;
  } rows[] = {
      {"centring pole", 0, 90, 0, 0, 1e-6},
      {"equator on the central meridian", 0, 0, 0, -1, 1e-6},
      {"equator at 90°E", 90, 0, 1, 0, 1e-6},
      {"inner corner at 45°E", 45, 0, 1, -1, 0.5},
      {"inner corner at 135°W", -135, 0, -1, 1, 0.5},
      {"far pole below the central meridian", 0, -90, 0, -2, 1e-6},
      {"far pole at 90°E", 90, -90, 2, 0, 1e-6},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.name);
    int count = -1;
    const XY q = forward1(kPeirce, s, p, row.lon * kDeg, row.lat * kDeg, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(q.x, row.x * kCompleteK * r, row.tol);
    EXPECT_NEAR(q.y, row.y * kCompleteK * r, row.tol);
  }
}

// Conformal: at any point off the four singular corners the scale is the
// same in every direction, k = h and the images of the meridian and
// parallel cross at right angles.
TEST(PeirceQuincuncial, ConformalEverywhere) {
  const double points[][2] = {{10, 20}, {-30, -45}, {100, 60}, {170, -10}, {-80, -75}, {44, 5}};
  expect_conformal(kPeirce, peirce_parms(0), points);
}

TEST(PeirceQuincuncial, WholeWorldRoundTripsAndOutlineIsRefused) {
  const Parms p = peirce_parms(15);
  std::vector<double> pts = grid(-179.5, -89.5, 179.5, 89.5, 37, 19);
  std::vector<double> xy = pts;
  const int n = static_cast<int>(pts.size() / 2);
  ASSERT_EQ(kPeirce.forward(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
  ASSERT_EQ(kPeirce.inverse(kWgs84.sph(), p.data(), n, xy.data(), nullptr, nullptr), n);
  double worst = 0.0;
  for (int i = 0; i < n; ++i) {
    worst = std::fmax(worst, std::fabs(lon_diff_deg(xy[2 * i], pts[2 * i])));
    worst = std::fmax(worst, std::fabs(xy[2 * i + 1] - pts[2 * i + 1]) / kDeg);
  }
  EXPECT_LE(worst, 1e-9);
  std::printf("[ measured ] round trip %.3g deg over %d points\n", worst, n);
  const double a = kWgs84.pair[0], edge = 2.0 * kCompleteK * a;
  const struct {
    const char *name;
    double x, y;
  } outside[] = {
      {"beyond the right corner", 1.01 * edge, 0.0},
      {"beyond a side of the diamond", 0.6 * edge, 0.6 * edge},
      {"NaN", NAN, 0.0},
  };
  for (const auto &r : outside) {
    SCOPED_TRACE(r.name);
    int count = -1;
    const XY q = inverse1(kPeirce, kWgs84, p, r.x, r.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
  }
  Parms south = peirce_parms(0);
  south[slot::kLatOrigin] = -ko::kHalfPi;
  expect_refused(kPeirce, kWgs84, south, "south-centred aspect");
  Parms option = peirce_parms(0);
  option[slot::kOption] = 1.0;
  expect_refused(kPeirce, kWgs84, option, "other layout");
}

}  // namespace
