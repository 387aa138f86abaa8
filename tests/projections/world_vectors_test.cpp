// The vectors of the stereographic poles, ellipsoidal gnomonic,
// geostationary, transverse cylindrical equal-area, Peirce quincuncial,
// Adams world in a square II and oblique plate carrée, taken from the projection table by code: bad
// arguments convert nothing, NaN and infinite points are not counted, and a
// point of each map goes out and back through cached constants.
#include "ko.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct Row {
  const ko_projlist_entry *vector;
  int32_t code;
  Parms parms;
  double lon, lat;  // degrees, a point of the map
};

const Row kRows[] = {
    {&ko_prj_stereographic_north_pole_vector, 43050,
     Parms{{slot::kCentralMeridian, dms(-45)}, {slot::kStdParallel1, dms(70)}}, 10, 75},
    {&ko_prj_stereographic_south_pole_vector, 43051,
     Parms{{slot::kCentralMeridian, 0.0}, {slot::kStdParallel1, dms(-71)}}, 100, -80},
    {&ko_prj_gnomonic_ellipsoidal_vector, 43065,
     Parms{{slot::kLonCenter, dms(10)}, {slot::kLatCenter, dms(45)}}, 20, 40},
    {&ko_prj_geostationary_satellite_vector, 43084,
     Parms{{slot::kLonCenter, 0.0}, {slot::kHeight, 35785831.0}}, 20, -30},
    {&ko_prj_transverse_cylindrical_eqarea_vector, 43082,
     Parms{{slot::kCentralMeridian, dms(30)}}, 50, 10},
    {&ko_prj_peirce_quincuncial_vector, 43086,
     Parms{{slot::kCentralMeridian, 0.0}, {slot::kLatOrigin, dms(90)}}, -120, -50},
    {&ko_prj_adams_square_ii_vector, 43087, Parms{{slot::kCentralMeridian, dms(-20)}}, 60, -35},
    {&ko_prj_plate_carree_oblique_vector, 43093,
     Parms{{slot::kLonCenter, dms(20)}, {slot::kLatCenter, dms(40)}, {slot::kAzimuth, dms(30)}},
     -60, 10},
};

TEST(WorldVectors, FoundByCodeAndRoundTripThroughCachedConstants) {
  for (const Row &r : kRows) {
    SCOPED_TRACE(r.code);
    EXPECT_EQ(r.vector->code, r.code);
    EXPECT_EQ(ko_projlist_from_code(r.code), r.vector);
    const Family f = family_of(*r.vector);
    Cached cached(f, kWgs84, r.parms);
    ASSERT_GT(cached.status, 0);
    double xy[2] = {r.lon * kDeg, r.lat * kDeg};
    ASSERT_EQ(f.forward(kWgs84.sph(), r.parms.data(), 1, xy, cached.ivals(), cached.dvals()), 1);
    ASSERT_EQ(f.inverse(kWgs84.sph(), r.parms.data(), 1, xy, cached.ivals(), cached.dvals()), 1);
    EXPECT_NEAR(lon_diff_deg(xy[0], r.lon * kDeg), 0.0, 1e-9);
    EXPECT_NEAR(xy[1] / kDeg, r.lat, 1e-9);
  }
}

TEST(WorldVectors, BadArgumentsAndNonFinitePointsAreNotConverted) {
  const double inf = std::numeric_limits<double>::infinity();
  for (const Row &r : kRows) {
    SCOPED_TRACE(r.code);
    const Family f = family_of(*r.vector);
    double xy[2] = {r.lon * kDeg, r.lat * kDeg};
    EXPECT_EQ(f.forward(nullptr, r.parms.data(), 1, xy, nullptr, nullptr), 0);
    EXPECT_EQ(f.forward(kWgs84.sph(), nullptr, 1, xy, nullptr, nullptr), 0);
    EXPECT_EQ(f.forward(kWgs84.sph(), r.parms.data(), 1, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(f.inverse(kWgs84.sph(), r.parms.data(), -1, xy, nullptr, nullptr), 0);
    EXPECT_EQ(xy[0], r.lon * kDeg);
    ko_constants *c = ko_constants_new();
    EXPECT_LT(f.constfunc(c, nullptr, r.parms.data()), 0);
    EXPECT_LT(f.constfunc(nullptr, kWgs84.sph(), r.parms.data()), 0);
    ko_constants_del(c);
    double bad[8] = {NAN, 0.1, 0.1, NAN, inf, 0.1, 0.1, -inf};
    EXPECT_EQ(f.forward(kWgs84.sph(), r.parms.data(), 4, bad, nullptr, nullptr), 0);
    for (double v : bad) EXPECT_EQ(v, HUGE_VAL);
    double bad_xy[4] = {NAN, 0.0, 0.0, inf};
    EXPECT_EQ(f.inverse(kWgs84.sph(), r.parms.data(), 2, bad_xy, nullptr, nullptr), 0);
    for (double v : bad_xy) EXPECT_EQ(v, HUGE_VAL);
  }
}

}  // namespace
