// Geodetic <-> geocentric conversion against GeographicLib's Geocentric
// class, over the whole range of latitudes, near the poles, far above and
// deep below the surface, and inside the evolute near the centre.
#include "tests/transformations/oracle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geocentric.hpp>
#endif

namespace {

using ko::test::kDeg;

struct Ellipsoid {
  const char *name;
  double a, inv_f;
};
const Ellipsoid kEllipsoids[] = {
    {"WGS84", 6378137.0, 298.257223563},
    {"Airy", 6377563.396, 299.3249646},
    {"Clarke1880", 6378249.145, 293.465},
    {"sphere", 6371000.0, 0.0},
};

double e2_of(const Ellipsoid &e) { return ko::test::Sph(e.a, e.inv_f).v[1]; }

#ifdef KO_HAVE_GEOGRAPHICLIB
GeographicLib::Geocentric oracle(const Ellipsoid &e) {
  return GeographicLib::Geocentric(e.a, e.inv_f == 0.0 ? 0.0 : 1.0 / e.inv_f);
}

TEST(Geocentric, ForwardMatchesGeographicLib) {
  const double lats[] = {-90, -89.999999, -45.5, 0, 1e-9, 30, 60.25, 89.9999999, 90};
  const double heights[] = {-6000e3, -1000, 0, 123.456, 35786e3};
  for (const Ellipsoid &e : kEllipsoids) {
    const auto g = oracle(e);
    for (double lat : lats)
      for (double h : heights) {
        const double lon = 17.25 - lat;
        double xyz[3], x, y, z;
        ko::geodetic_to_geocentric(e.a, e2_of(e), lon * kDeg, lat * kDeg, h, xyz);
        g.Forward(lat, lon, h, x, y, z);
        // A few units in the last place of the distance from the centre
        // (the radian input cannot hold 90° exactly, hence not per axis).
        const double tol = 4e-16 * (e.a + std::fabs(h));
        EXPECT_NEAR(xyz[0], x, tol) << e.name << " " << lat << " " << h;
        EXPECT_NEAR(xyz[1], y, tol) << e.name << " " << lat << " " << h;
        EXPECT_NEAR(xyz[2], z, tol) << e.name << " " << lat << " " << h;
      }
  }
}

// The latitude to 2e-15 rad (about 10 nm), the height to 2 nm per 1000 km of
// distance from the centre: the last bits of double precision.
void expect_reverse_matches(const Ellipsoid &e, const double xyz[3]) {
  const auto g = oracle(e);
  double lat, lon, h;
  g.Reverse(xyz[0], xyz[1], xyz[2], lat, lon, h);
  double klon, klat, kh;
  ko::geocentric_to_geodetic(e.a, e2_of(e), xyz, klon, klat, kh);
  const double r = std::sqrt(xyz[0] * xyz[0] + xyz[1] * xyz[1] + xyz[2] * xyz[2]);
  const double scale = std::fmax(1.0, std::fmax(r, std::fabs(h)) / 1e6);
  EXPECT_NEAR(klat, lat * kDeg, 2e-15) << e.name << " " << xyz[0] << " " << xyz[1] << " " << xyz[2];
  EXPECT_NEAR(kh, h, 2e-9 * scale) << e.name << " " << xyz[0] << " " << xyz[1] << " " << xyz[2];
  if (std::hypot(xyz[0], xyz[1]) > 0.0) {
    EXPECT_NEAR(klon, lon * kDeg, 1e-15) << e.name;
  }
}

TEST(Geocentric, ReverseMatchesGeographicLibFromSurfaceToSpace) {
  std::mt19937_64 rng(20240611);
  std::uniform_real_distribution<double> lat_d(-90.0, 90.0), lon_d(-180.0, 180.0);
  std::uniform_real_distribution<double> h_d(-5000.0, 1e7);
  for (const Ellipsoid &e : kEllipsoids) {
    const auto g = oracle(e);
    for (int i = 0; i < 20000; ++i) {
      double xyz[3];
      g.Forward(lat_d(rng), lon_d(rng), h_d(rng), xyz[0], xyz[1], xyz[2]);
      expect_reverse_matches(e, xyz);
    }
  }
}

TEST(Geocentric, ReverseIsExactNearThePolesAndTheEquator) {
  const double lats[] = {90, 89.99999999999, 89.9999, 89.5, -89.99999999, 0.0, 1e-12, -1e-7};
  const double heights[] = {-6300e3, -20000, 0, 8848, 1e7};
  for (const Ellipsoid &e : kEllipsoids) {
    const auto g = oracle(e);
    for (double lat : lats)
      for (double h : heights) {
        double xyz[3];
        g.Forward(lat, 33.0, h, xyz[0], xyz[1], xyz[2]);
        expect_reverse_matches(e, xyz);
      }
  }
}

// Distance in long double between the point and the geocentric image of
// (lon, lat, h): how well a geodetic answer reproduces the point.
long double residual(const Ellipsoid &e, double lon, double lat, double h, const double p[3]) {
  const long double e2 = e2_of(e);
  const long double s = sinl(lat), c = cosl(lat);
  const long double n = e.a / sqrtl(1.0L - e2 * s * s);
  const long double x = (n + h) * c * cosl(lon) - p[0];
  const long double y = (n + h) * c * sinl(lon) - p[1];
  const long double z = (n * (1.0L - e2) + h) * s - p[2];
  return sqrtl(x * x + y * y + z * z);
}

TEST(Geocentric, ReverseInsideTheEvoluteNearTheCentre) {
  // Within e²a (about 43 km for WGS84) of the centre the normals from
  // several surface points meet.  The height (the distance to the nearest
  // surface point) stays well determined; the latitude does not (moving the
  // point by 1 nm turns its normal by ~1e-15 rad), so the answer is judged
  // by how well it reproduces the point, as GeographicLib's is.
  std::mt19937_64 rng(7);
  std::uniform_real_distribution<double> d(-60e3, 60e3);
  const Ellipsoid &e = kEllipsoids[0];
  const auto g = oracle(e);
  for (int i = 0; i < 20000; ++i) {
    const double xyz[3] = {d(rng), d(rng), d(rng) * 1e-3 + (i % 2 ? 1.0 : -1.0) * 1e-2};
    double lat, lon, h, klon, klat, kh;
    g.Reverse(xyz[0], xyz[1], xyz[2], lat, lon, h);
    ko::geocentric_to_geodetic(e.a, e2_of(e), xyz, klon, klat, kh);
    EXPECT_NEAR(kh, h, 1.5e-8) << xyz[0] << " " << xyz[1] << " " << xyz[2];
    EXPECT_NEAR(klat, lat * kDeg, 1e-14);
    const long double ours = residual(e, klon, klat, kh, xyz);
    const long double theirs = residual(e, lon * kDeg, lat * kDeg, h, xyz);
    EXPECT_LE(ours, std::fmax(4e-9, 1.5 * static_cast<double>(theirs)))
        << xyz[0] << " " << xyz[1] << " " << xyz[2];
  }
}
TEST(Geocentric, EquatorialPlaneInsideTheEvoluteTakesTheNorthernFoot) {
  // Two feet are equally near; GeographicLib takes the northern one too.
  const double points[][3] = {{30000, 20000, 0}, {0, 0, 0},        {42000, 0, 0},
                              {1e-300, 0, 1e-300}, {1000, 0, 1e-200}, {0, 0, 1e-300}};
  const Ellipsoid &e = kEllipsoids[0];
  const auto g = oracle(e);
  for (const auto &p : points) {
    double lat, lon, h, klon, klat, kh;
    g.Reverse(p[0], p[1], p[2], lat, lon, h);
    ko::geocentric_to_geodetic(e.a, e2_of(e), p, klon, klat, kh);
    EXPECT_NEAR(klat, lat * kDeg, 1e-15) << p[0] << " " << p[2];
    EXPECT_NEAR(kh, h, 2e-9) << p[0] << " " << p[2];
  }
}
#endif

// Independent of any oracle: the geodetic position found must map back to
// the geocentric point, and its height must be the distance to the surface
// along the normal, wherever the point is (the centre and the equatorial
// plane inside the evolute included).
TEST(Geocentric, ReverseThenForwardReproducesThePoint) {
  const double points[][3] = {
      {0, 0, 0},           {1000, 0, 0},       {0, 0, 1000},      {30000, 20000, 0},
      {42000, 0, -0.0},    {-5000, 100, 1e-9}, {6378137, 0, 0},   {0, 0, 6356752.3142},
      {4e6, -3e6, 2.5e6},  {1e-3, 1e-3, 7e6},  {-2e7, 1e7, -3e7},
  };
  for (const Ellipsoid &e : kEllipsoids) {
    for (const auto &p : points) {
      double lon, lat, h, back[3];
      ko::geocentric_to_geodetic(e.a, e2_of(e), p, lon, lat, h);
      ASSERT_TRUE(std::isfinite(lat) && std::isfinite(h)) << e.name << " " << p[0];
      ko::geodetic_to_geocentric(e.a, e2_of(e), lon, lat, h, back);
      for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(back[k], p[k], 2e-9 * std::fmax(1.0, std::fabs(h) / 1e6) + 1e-9)
            << e.name << " point " << p[0] << "," << p[1] << "," << p[2] << " axis " << k;
    }
  }
}

TEST(Geocentric, CentreAndPolesHaveTheirKnownHeights) {
  for (const Ellipsoid &e : kEllipsoids) {
    const double b = e.a * std::sqrt(1.0 - e2_of(e));
    const double centre[3] = {0, 0, 0}, pole[3] = {0, 0, -b - 250.0};
    double lon, lat, h;
    ko::geocentric_to_geodetic(e.a, e2_of(e), centre, lon, lat, h);
    EXPECT_NEAR(h, -b, 1e-8) << e.name;
    EXPECT_NEAR(std::fabs(lat), M_PI / 2, 1e-15) << e.name;
    ko::geocentric_to_geodetic(e.a, e2_of(e), pole, lon, lat, h);
    EXPECT_NEAR(h, 250.0, 1e-8) << e.name;
    EXPECT_EQ(lat, -M_PI / 2) << e.name;
  }
}

}  // namespace
