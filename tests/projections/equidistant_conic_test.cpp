// Equidistant conic on the ellipsoid: agreement with PROJ's eqdc (secant,
// tangent, southern cone, sphere, over the whole world with both poles),
// the outline of the map and the definitions that give no cone.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Ellipsoid.hpp>
#endif

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kEqdc = family_of(ko_prj_equidistant_conic_vector);

Parms conic(double lon0, double phi1, double phi2, double phi0) {
  return Parms{{slot::kCentralMeridian, dms(lon0)},
               {slot::kStdParallel1, dms(phi1)},
               {slot::kStdParallel2, dms(phi2)},
               {slot::kLatOrigin, dms(phi0)}};
}

struct ConicCase {
  const char *name;
  Spheroid spheroid;
  double lon0, phi1, phi2, phi0;
  const char *proj;  // the same for PROJ's eqdc
};

const ConicCase kConics[] = {
    {"USA secant", kClarke1866, -96, 29.5, 45.5, 23,
     "+proj=eqdc +lat_1=29.5 +lat_2=45.5 +lat_0=23 +lon_0=-96 +ellps=clrk66"},
    {"southern cone", kWgs84, 25, -10, -40, -30,
     "+proj=eqdc +lat_1=-10 +lat_2=-40 +lat_0=-30 +lon_0=25 +ellps=WGS84"},
    {"tangent at 40N", kIntl1924, 10, 40, 40, 0, "+proj=eqdc +lat_1=40 +lat_2=40 +lon_0=10 +ellps=intl"},
    {"parallels across the equator", kGrs80, 140, -20, 60, 10,
     "+proj=eqdc +lat_1=-20 +lat_2=60 +lat_0=10 +lon_0=140 +ellps=GRS80"},
    {"sphere", Spheroid{{6371000.0, 0.0}}, 0, 20, 60, 40,
     "+proj=eqdc +lat_1=20 +lat_2=60 +lat_0=40 +R=6371000"},
};

std::vector<double> world(double lon0) { return grid(lon0 - 179.9, -90, lon0 + 179.9, 90, 19, 19); }

#ifdef KO_HAVE_GEOGRAPHICLIB
// Snyder's formulas (chapter 16) with the meridian distance from
// GeographicLib (exact to a few nanometres): an oracle independent of the
// library's meridian arc.
class GeographicLibConic {
 public:
  explicit GeographicLibConic(const ConicCase &c)
      : ell_(c.spheroid.pair[0], 1.0 - std::sqrt(1.0 - c.spheroid.pair[1])), a_(c.spheroid.pair[0]),
        e2_(c.spheroid.pair[1]), lon0_(dms(c.lon0)) {
    const double m1 = m(c.phi1), m2 = m(c.phi2);
    n_ = c.phi1 == c.phi2 ? std::sin(dms(c.phi1)) : a_ * (m1 - m2) / (arc(c.phi2) - arc(c.phi1));
    big_g_ = a_ * m1 / n_ + arc(c.phi1);
    rho0_ = big_g_ - arc(c.phi0);
  }
  XY forward(double lon, double lat) const {
    const double rho = big_g_ - ell_.MeridianDistance(lat / kDeg);
    const double theta = n_ * std::remainder(lon - lon0_, ko::kTwoPi);
    return {rho * std::sin(theta), rho0_ - rho * std::cos(theta)};
  }

 private:
  double arc(double deg) const { return ell_.MeridianDistance(deg); }
  double m(double deg) const {
    const double s = std::sin(dms(deg));
    return std::cos(dms(deg)) / std::sqrt(1.0 - e2_ * s * s);
  }
  GeographicLib::Ellipsoid ell_;
  double a_, e2_, lon0_, n_ = 0.0, big_g_ = 0.0, rho0_ = 0.0;
};

// Forward within 1e-6 m of the GeographicLib-based oracle over the whole
// world, both poles included; inverse of the library's forward within
// 1e-9 degree.
TEST(EquidistantConic, AgreesWithGeographicLibMeridianArcs) {
  for (const ConicCase &c : kConics) {
    SCOPED_TRACE(c.name);
    check_against(kEqdc, c.spheroid, conic(c.lon0, c.phi1, c.phi2, c.phi0), GeographicLibConic(c),
                  world(c.lon0), 1e-6, 1e-9);
  }
}
#endif

#ifdef KO_HAVE_PROJ
// PROJ's eqdc sums a truncated series for the meridian distance (1.3e-6 m
// short of GeographicLib's at the pole of WGS 84), which the cone's
// constants magnify up to 1.7e-5 m at the far pole 22 000 km from the
// apex: agreement within 5e-5 m there, within 1e-6 m on the sphere.
TEST(EquidistantConic, AgreesWithProj) {
  for (const ConicCase &c : kConics) {
    SCOPED_TRACE(c.name);
    ProjOracle oracle(c.proj);
    ASSERT_TRUE(oracle.ok());
    const double tol = c.spheroid.pair[1] == 0.0 ? 1e-6 : 5e-5;
    check_against(kEqdc, c.spheroid, conic(c.lon0, c.phi1, c.phi2, c.phi0), oracle, world(c.lon0),
                  tol, 1e-9);
  }
}
#endif

// Both poles are arcs about the cone's centre; between the near pole's arc
// and the centre, beyond the far pole's arc and in the cone's gap around
// the antimeridian the inverse refuses.
TEST(EquidistantConic, OutlineOfTheMap) {
  const Parms p = conic(0, 30, 60, 45);
  int count = -1;
  const XY near1 = forward1(kEqdc, kWgs84, p, dms(0), dms(90));
  const XY near2 = forward1(kEqdc, kWgs84, p, dms(-170), dms(90));
  EXPECT_GT(std::hypot(near1.x - near2.x, near1.y - near2.y), 1e5) << "the near pole is an arc";
  const XY pole = inverse1(kEqdc, kWgs84, p, near2.x, near2.y, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(pole.y / kDeg, 90.0, 1e-9);
  inverse1(kEqdc, kWgs84, p, 0.0, near1.y + 1000.0, &count);
  EXPECT_EQ(count, 0) << "beyond the near pole's arc";
  const XY far = forward1(kEqdc, kWgs84, p, 0.0, dms(-90));
  inverse1(kEqdc, kWgs84, p, far.x, far.y - 1000.0, &count);
  EXPECT_EQ(count, 0) << "beyond the far pole's arc";
  // Straight above the cone's centre the central meridian's opposite
  // direction lies in the gap between the antimeridian's two edges.
  inverse1(kEqdc, kWgs84, p, 0.0, near1.y + 1e7, &count);
  EXPECT_EQ(count, 0) << "in the cone's gap";
  const XY edge = forward1(kEqdc, kWgs84, p, dms(180), dms(0));
  const XY back = inverse1(kEqdc, kWgs84, p, edge.x, edge.y, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(std::fabs(back.x) / kDeg, 180.0, 1e-9);
  const XY bad = forward1(kEqdc, kWgs84, p, 0.0, NAN, &count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(bad.x, HUGE_VAL);
}

TEST(EquidistantConic, DefinitionsWithoutACone) {
  expect_refused(kEqdc, kWgs84, conic(0, 30, -30, 0), "parallels symmetric about the equator");
  expect_refused(kEqdc, kWgs84, conic(0, 0, 0, 0), "both parallels on the equator");
  expect_refused(kEqdc, kWgs84, conic(0, 95, 30, 0), "a parallel beyond the pole");
  expect_refused(kEqdc, Spheroid{{0.0, 0.0}}, conic(0, 30, 60, 0), "no axis");
}

// The compare function finds the map the same with the parallels swapped.
TEST(EquidistantConic, SwappedParallelsAreTheSameMap) {
  ASSERT_NE(ko_prj_equidistant_conic_vector.compfunc, nullptr);
  const Parms a = conic(0, 30, 60, 45), b = conic(0, 60, 30, 45), c = conic(0, 30, 50, 45);
  EXPECT_EQ(ko_prj_equidistant_conic_vector.compfunc(kWgs84.sph(), a.data(), b.data()), 1);
  EXPECT_EQ(ko_prj_equidistant_conic_vector.compfunc(kWgs84.sph(), a.data(), c.data()), 0);
  // And the swapped definition converts the same.
  const XY pa = forward1(kEqdc, kWgs84, a, dms(40), dms(-20));
  const XY pb = forward1(kEqdc, kWgs84, b, dms(40), dms(-20));
  EXPECT_NEAR(pa.x, pb.x, 1e-6);
  EXPECT_NEAR(pa.y, pb.y, 1e-6);
}

}  // namespace
