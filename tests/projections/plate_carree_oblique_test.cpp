// Plate_Carree_Oblique against PROJ's ob_tran with o_proj=eqc: the rotated
// pole placed 90° from the centre, to the left of the azimuth, and PROJ's
// own longitude of the centre taken out by o_lon_p; the normal aspect against
// eqc; the map's outline refused on the inverse.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kOblique{ko::proj::plate_carree_oblique_forward,
                      ko::proj::plate_carree_oblique_inverse,
                      ko::proj::plate_carree_oblique_constants};

Parms oblique_parms(double lonc, double latc, double azimuth) {
  return Parms{{slot::kLonCenter, dms(lonc)}, {slot::kLatCenter, dms(latc)},
               {slot::kAzimuth, dms(azimuth)}};
}

#ifdef KO_HAVE_PROJ
// The PROJ definition of the same map.  The oblique pole is the point 90°
// from the centre at azimuth α − 90° (spherical trigonometry):
//   sin φp = cos φc sin α,  λp = λc + atan2(−cos α, −sin φc sin α).
// ob_tran puts the rotated pole at longitude lon_0 + 180° with latitude
// o_lat_p and adds o_lon_p to the rotated longitude; o_lon_p is chosen so
// that PROJ's rotated longitude of the centre is 0.
std::string proj_oblique(double lonc, double latc, double az, const std::string &earth) {
  const double pc = latc * kDeg, a = az * kDeg;
  const double lat_p = std::asin(std::cos(pc) * std::sin(a)) / kDeg;
  const double lon_p = lonc + std::atan2(-std::cos(a), -std::sin(pc) * std::sin(a)) / kDeg;
  const std::string base = "+proj=ob_tran +o_proj=eqc +o_lat_p=" + num(lat_p) +
                           " +lon_0=" + num(lon_p + 180.0);
  ProjOracle unshifted(base + " +o_lon_p=0 +R=1");
  const double centre_x = unshifted.forward(lonc * kDeg, latc * kDeg).x / kDeg;
  return base + " +o_lon_p=" + num(-centre_x) + " " + earth;
}

// Forward within 1e-6 m of PROJ over the globe, inverse within 1e-9 degree.
TEST(PlateCarreeOblique, AgreesWithProj) {
  const struct {
    const char *name;
    Spheroid spheroid;
    double lonc, latc, az;
    const char *earth;
  } cases[] = {
      {"oblique, WGS 84 on a", kWgs84, 20, 40, 30, "+ellps=WGS84"},
      {"southern centre, obtuse azimuth", kGrs80, -120, -60, 135, "+ellps=GRS80"},
      {"transverse (azimuth 0)", Spheroid{{6371000.0, 0.0}}, 75, 10, 0, "+R=6371000"},
      {"negative azimuth near the pole", kWgs84, 150, 80, -60, "+ellps=WGS84"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.name);
    ProjOracle oracle(proj_oblique(c.lonc, c.latc, c.az, c.earth));
    ASSERT_TRUE(oracle.ok());
    check_against(kOblique, c.spheroid, oblique_parms(c.lonc, c.latc, c.az), oracle,
                  grid(-179, -89, 179, 89, 12, 12), 1e-6, 1e-9);
  }
}

// Azimuth 90° with the centre on the equator is PROJ's eqc about λc (the
// poles left out: there the oblique pole is the geographic one, a line).
TEST(PlateCarreeOblique, NormalAspectIsThePlateCarree) {
  ProjOracle oracle("+proj=eqc +lon_0=10 +ellps=WGS84");
  ASSERT_TRUE(oracle.ok());
  check_against(kOblique, kWgs84, oblique_parms(10, 0, 90), oracle,
                grid(-169, -89, 189, 89, 12, 13), 1e-6, 1e-9);
}
#endif

TEST(PlateCarreeOblique, CentreIsTheOriginAndTheOutlineIsRefused) {
  const Parms p = oblique_parms(20, 40, 30);
  int count = -1;
  const XY o = forward1(kOblique, kWgs84, p, dms(20), dms(40), &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(o.x, 0.0, 1e-9);
  EXPECT_NEAR(o.y, 0.0, 1e-9);
  const double a = kWgs84.pair[0];
  const struct {
    const char *name;
    double x, y;
  } outside[] = {
      {"beyond the oblique pole", 0.0, 1.6 * a},
      {"below the other pole", 1e6, -1.6 * a},
      {"beyond the cut", 3.2 * a, 0.0},
      {"NaN", NAN, 0.0},
  };
  for (const auto &r : outside) {
    SCOPED_TRACE(r.name);
    const XY q = inverse1(kOblique, kWgs84, p, r.x, r.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(q.x, HUGE_VAL);
    EXPECT_EQ(q.y, HUGE_VAL);
  }
  forward1(kOblique, kWgs84, p, 0.0, dms(91), &count);
  EXPECT_EQ(count, 0);
  expect_refused(kOblique, kWgs84, oblique_parms(0, 95, 0), "centre beyond the pole");
}

}  // namespace
