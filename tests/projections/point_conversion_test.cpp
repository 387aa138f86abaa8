// The projected point conversion: argument checks, the constants cache and
// its states, units and false origins at the edges, latitude clamping, what
// a failed projection call leaves behind, recentred inverse longitudes, and
// end-to-end UTM zone 33N against GeographicLib's exact transverse Mercator
// and against PROJ.
#include "ko.h"
#include "objects/object_support.h"
#include "objects/projcs.h"
#include "support/failing_alloc.h"
#include "support/projcs_fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/TransverseMercatorExact.hpp>
#endif
#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace {

using ko::test::kDegree;
using ko::test::kFootUs;
using ko::test::kGrad;
using ko::test::kWgs84A;
using ko::test::kWgs84F;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNanometre = 1e-9;
constexpr double kMetresPerDegree = 111700.0;  // above the longest degree on WGS 84

// Owner of a projected system for the length of a test.
struct Pcs {
  explicit Pcs(ko_projcs *made) : p(made) {}
  ~Pcs() { ko_projcs_del(p); }
  Pcs(const Pcs &) = delete;
  Pcs &operator=(const Pcs &) = delete;
  ko_projcs *p;
};

// Interleaved (longitude, latitude) pairs in degrees covering UTM zone 33N
// and a little beyond, from the south polar cap to the north.
std::vector<double> zone_points() {
  std::vector<double> pts;
  for (double lat = -80.0; lat <= 84.0; lat += 4.0)
    for (double lon = 8.0; lon <= 22.0; lon += 1.75) {
      pts.push_back(lon);
      pts.push_back(lat);
    }
  // Enough points for several blocks of the point loop, the last one partial.
  std::mt19937_64 rng(33);
  std::uniform_real_distribution<double> lon(9.0, 21.0), lat(-80.0, 84.0);
  for (int i = 0; i < 2200; ++i) {
    pts.push_back(lon(rng));
    pts.push_back(lat(rng));
  }
  return pts;
}

// Distance in metres between two nearby points given in degrees (an upper
// bound: every degree counts as the longest).
double ground_distance(double lon1, double lat1, double lon2, double lat2) {
  double coslat = std::cos(lat2 * kDegree);
  return std::hypot((lat1 - lat2) * kMetresPerDegree, (lon1 - lon2) * kMetresPerDegree * coslat);
}

std::size_t count(const std::vector<double> &pts) { return pts.size() / 2; }
int n_of(const std::vector<double> &pts) { return static_cast<int>(count(pts)); }

// ---------------------------------------------------------------------------
// Arguments and states

TEST(PointConversion, InvalidArgumentsGiveMinusOneAndTouchNothing) {
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  ko::test::Ghost ghost;
  ko_geogcs *geogcs = ko_projcs_geogcs(utm.p);
  std::array<double, 2> pt = {15.0, 45.0};
  struct Case {
    const char *what;
    ko_projcs *p;
    int n;
    double *coords;
  } const cases[] = {
      {"null system", nullptr, 1, pt.data()},
      {"stale system", static_cast<ko_projcs *>(ghost.ptr()), 1, pt.data()},
      {"a geographic system", reinterpret_cast<ko_projcs *>(geogcs), 1, pt.data()},
      {"null array", utm.p, 1, nullptr},
      {"negative count", utm.p, -1, pt.data()},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(ko_geog_to_proj(c.p, c.n, c.coords), -1);
    EXPECT_EQ(ko_proj_to_geog(c.p, c.n, c.coords), -1);
    EXPECT_EQ(ko_proj_to_geog_center(c.p, c.n, c.coords, 180.0), -1);
    EXPECT_EQ(pt[0], 15.0);
    EXPECT_EQ(pt[1], 45.0);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_projcs_load_constants(nullptr), 0);
  EXPECT_EQ(ko_projcs_load_constants(reinterpret_cast<ko_projcs *>(geogcs)), 0);
  ko_projcs_unload_constants(static_cast<ko_projcs *>(ghost.ptr()));
  EXPECT_TRUE(ghost.untouched());
}

TEST(PointConversion, ValidationCallWithNoPoints) {
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  // Whatever the projection says of no points is the answer, and the array
  // is not touched (its NaNs would survive any arithmetic).
  std::array<double, 4> untouched = {kNan, kNan, 1e300, -1e300};
  std::array<double, 4> pts = untouched;
  std::array<double, KO_PARM_COUNT> parms{};
  ko_projcs_parm_array(utm.p, parms.data());
  const double sph[2] = {kWgs84A, kWgs84F * (2 - kWgs84F)};
  int forward = ko_prj_transverse_mercator_vector.forward(sph, parms.data(), 0, pts.data(),
                                                         nullptr, nullptr);
  int inverse = ko_prj_transverse_mercator_vector.inverse(sph, parms.data(), 0, pts.data(),
                                                         nullptr, nullptr);
  EXPECT_EQ(ko_geog_to_proj(utm.p, 0, pts.data()), forward);
  EXPECT_EQ(ko_proj_to_geog(utm.p, 0, pts.data()), inverse);
  EXPECT_EQ(ko_proj_to_geog_center(utm.p, 0, pts.data(), 180.0), inverse);
  EXPECT_EQ(std::memcmp(pts.data(), untouched.data(), sizeof pts), 0);
  // The constants were loaded before the call.
  EXPECT_EQ(utm.p->constants_state, kProjConstantsLoaded);
}

TEST(PointConversion, ConstantsStates) {
  ASSERT_TRUE(ko::test::installed());
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  EXPECT_EQ(utm.p->constants_state, kProjConstantsNotLoaded);

  // A failure is kept: no new attempt (no allocation) until unloaded.
  ko::test::fail_after(0);
  EXPECT_EQ(ko_projcs_load_constants(utm.p), 0);
  ko::test::never_fail();
  EXPECT_EQ(utm.p->constants_state, kProjConstantsFailed);
  long live = ko::test::live_allocations();
  EXPECT_EQ(ko_projcs_load_constants(utm.p), 0);
  EXPECT_EQ(ko::test::live_allocations(), live);
  EXPECT_EQ(ko_projcs_constants(utm.p), nullptr);

  ko_projcs_unload_constants(utm.p);
  EXPECT_EQ(utm.p->constants_state, kProjConstantsNotLoaded);
  EXPECT_EQ(ko_projcs_load_constants(utm.p), 1);
  EXPECT_EQ(utm.p->constants_state, kProjConstantsLoaded);
  ko_constants *c = ko_projcs_constants(utm.p);
  ASSERT_TRUE(ko_constants_p(c));
  EXPECT_NE(ko_constants_dvals(c), nullptr);
  // Loaded once: a second load neither allocates nor replaces.
  live = ko::test::live_allocations();
  EXPECT_EQ(ko_projcs_load_constants(utm.p), 1);
  EXPECT_EQ(ko_projcs_constants(utm.p), c);
  EXPECT_EQ(ko::test::live_allocations(), live);
  ko_projcs_unload_constants(utm.p);
  EXPECT_EQ(ko_projcs_constants(utm.p), nullptr);
  EXPECT_EQ(utm.p->constants_state, kProjConstantsNotLoaded);

  // Plate_Carree computes everything per call: state 2, nothing cached.
  Pcs plate(ko::test::projcs(
      "P", ko::test::wgs84(),
      ko::test::conversion("P", 43001,
                           {{"False_Easting", 0.0}, {"False_Northing", 0.0},
                            {"Central_Meridian", 0.0}})));
  ASSERT_NE(plate.p, nullptr);
  EXPECT_EQ(ko_projcs_load_constants(plate.p), 1);
  EXPECT_EQ(plate.p->constants_state, kProjConstantsNotNeeded);
  EXPECT_EQ(ko_projcs_constants(plate.p), nullptr);
}

// ---------------------------------------------------------------------------
// End to end: UTM zone 33N on WGS 84

#ifdef KO_HAVE_GEOGRAPHICLIB
TEST(PointConversion, Utm33nMatchesExactTransverseMercator) {
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  const GeographicLib::TransverseMercatorExact exact(kWgs84A, kWgs84F, 0.9996);
  std::vector<double> geo = zone_points();
  std::vector<double> xy = geo;
  ASSERT_EQ(ko_geog_to_proj(utm.p, n_of(xy), xy.data()), n_of(xy));
  // GeographicLib's exact mapping is itself off by up to 3.8 nm (forward)
  // and 5.5 nm (inverse) against the 30-digit reference below, so the two
  // libraries are held to 10 nm of each other here, and ko to 5 nm of the
  // reference there.
  for (std::size_t i = 0; i < count(geo); ++i) {
    double x = 0, y = 0;
    exact.Forward(15.0, geo[2 * i + 1], geo[2 * i], x, y);
    EXPECT_LT(std::hypot(xy[2 * i] - (x + 500000.0), xy[2 * i + 1] - y), 10 * kNanometre)
        << geo[2 * i] << " " << geo[2 * i + 1];
  }

  std::vector<double> back = xy;
  ASSERT_EQ(ko_proj_to_geog(utm.p, n_of(back), back.data()), n_of(back));
  for (std::size_t i = 0; i < count(geo); ++i) {
    double lat = 0, lon = 0;
    exact.Reverse(15.0, xy[2 * i] - 500000.0, xy[2 * i + 1], lat, lon);
    EXPECT_LT(ground_distance(back[2 * i], back[2 * i + 1], lon, lat), 10 * kNanometre) << i;
  }
}
#endif

// Rows of the 30-digit exact transverse Mercator reference (mpmath, Lee's
// mapping; scripts/tm_reference.py) for WGS 84 with k0 = 0.9996, within
// 3900 km of the central meridian.
struct ExactPoint {
  double lat, lon, x, y;  // longitude from the central meridian; x without false easting
};

std::vector<ExactPoint> exact_reference() {
  std::vector<ExactPoint> rows;
  std::FILE *f = std::fopen(KO_TEST_DATA_DIR "/tm_exact_reference.csv", "r");
  if (f == nullptr) return rows;
  char set[16];
  double a, invf, k0;
  ExactPoint r{};
  std::fscanf(f, "%*[^\n]\n");
  while (std::fscanf(f, "%15[^,],%lf,%lf,%lf,%lf,%lf,%lf,%lf\n", set, &a, &invf, &k0, &r.lat,
                     &r.lon, &r.x, &r.y) == 8) {
    if (std::string(set) == "strip" && a == kWgs84A && k0 == 0.9996) rows.push_back(r);
  }
  std::fclose(f);
  return rows;
}

TEST(PointConversion, Utm33nMatchesThirtyDigitReference) {
  const std::vector<ExactPoint> rows = exact_reference();
  ASSERT_EQ(rows.size(), 150u);
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  std::vector<double> geo, xy;
  for (const ExactPoint &r : rows) {
    geo.insert(geo.end(), {r.lon + 15.0, r.lat});
    xy.insert(xy.end(), {r.x + 500000.0, r.y});
  }
  std::vector<double> fwd = geo;
  ASSERT_EQ(ko_geog_to_proj(utm.p, n_of(fwd), fwd.data()), n_of(fwd));
  std::vector<double> inv = xy;
  ASSERT_EQ(ko_proj_to_geog(utm.p, n_of(inv), inv.data()), n_of(inv));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_LT(std::hypot(fwd[2 * i] - xy[2 * i], fwd[2 * i + 1] - xy[2 * i + 1]),
              5 * kNanometre)
        << i;
    EXPECT_LT(ground_distance(inv[2 * i], inv[2 * i + 1], geo[2 * i], geo[2 * i + 1]),
              5 * kNanometre)
        << i;
  }
}

#ifdef KO_HAVE_PROJ
TEST(PointConversion, Utm33nMatchesProj) {
  PJ_CONTEXT *ctx = proj_context_create();
  PJ *raw = proj_create_crs_to_crs(ctx, "EPSG:4326", "EPSG:32633", nullptr);
  ASSERT_NE(raw, nullptr);
  PJ *pj = proj_normalize_for_visualization(ctx, raw);
  proj_destroy(raw);
  ASSERT_NE(pj, nullptr);

  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  // PROJ's extended transverse Mercator is a series too; within the zone
  // and a little beyond both agree to nanometres.
  std::vector<double> geo;
  for (double lat = -80.0; lat <= 84.0; lat += 2.0)
    for (double lon = 9.0; lon <= 21.0; lon += 0.75) {
      geo.push_back(lon);
      geo.push_back(lat);
    }
  std::vector<double> ours = geo;
  ASSERT_EQ(ko_geog_to_proj(utm.p, n_of(ours), ours.data()), n_of(ours));
  std::vector<double> theirs = geo;
  proj_trans_generic(pj, PJ_FWD, theirs.data(), 2 * sizeof(double), count(geo),
                     theirs.data() + 1, 2 * sizeof(double), count(geo), nullptr, 0, 0, nullptr,
                     0, 0);
  for (std::size_t i = 0; i < geo.size(); ++i) EXPECT_NEAR(ours[i], theirs[i], 5 * kNanometre) << i;

  std::vector<double> back = ours;
  ASSERT_EQ(ko_proj_to_geog(utm.p, n_of(back), back.data()), n_of(back));
  std::vector<double> their_back = ours;
  proj_trans_generic(pj, PJ_INV, their_back.data(), 2 * sizeof(double), count(geo),
                     their_back.data() + 1, 2 * sizeof(double), count(geo), nullptr, 0, 0,
                     nullptr, 0, 0);
  for (std::size_t i = 0; i < count(geo); ++i) {
    double coslat = std::cos(geo[2 * i + 1] * kDegree);
    EXPECT_NEAR(back[2 * i], their_back[2 * i], 5 * kNanometre / (kMetresPerDegree * coslat));
    EXPECT_NEAR(back[2 * i + 1], their_back[2 * i + 1], 5 * kNanometre / kMetresPerDegree);
  }
  proj_destroy(pj);
  proj_context_destroy(ctx);
}
#endif

// ---------------------------------------------------------------------------
// Units and false origins

TEST(PointConversion, UsSurveyFeetAreTheMetreResultsConverted) {
  // The parameters carry explicit units (500000 m false easting, degrees),
  // so the two systems differ only in their linear unit.
  Pcs metres(ko::test::utm33n(nullptr, nullptr, true));
  Pcs feet(ko::test::utm33n(ko_linunit_new_code(9003), nullptr, true));
  ASSERT_NE(metres.p, nullptr);
  ASSERT_NE(feet.p, nullptr);
  std::vector<double> geo = zone_points();
  std::vector<double> m = geo, ft = geo;
  ASSERT_EQ(ko_geog_to_proj(metres.p, n_of(m), m.data()), n_of(m));
  ASSERT_EQ(ko_geog_to_proj(feet.p, n_of(ft), ft.data()), n_of(ft));
  // The false easting is added in metres, then the sum divided by the
  // foot's factor: the same two operations as converting the metre result.
  for (std::size_t i = 0; i < geo.size(); ++i) EXPECT_EQ(ft[i], m[i] / kFootUs) << i;

  std::vector<double> back_m = m, back_ft = ft;
  ASSERT_EQ(ko_proj_to_geog(metres.p, n_of(back_m), back_m.data()), n_of(back_m));
  ASSERT_EQ(ko_proj_to_geog(feet.p, n_of(back_ft), back_ft.data()), n_of(back_ft));
  for (std::size_t i = 0; i < geo.size(); ++i) EXPECT_NEAR(back_ft[i], back_m[i], 1e-12) << i;

  // Unitless lengths are read in the system's unit: a false easting of
  // 500000 in a foot system is 500000 US survey feet.
  Pcs plain_feet(ko::test::utm33n(ko_linunit_new_code(9003)));
  ASSERT_NE(plain_feet.p, nullptr);
  std::array<double, 2> origin = {15.0, 0.0};
  ASSERT_EQ(ko_geog_to_proj(plain_feet.p, 1, origin.data()), 1);
  EXPECT_NEAR(origin[0], 500000.0, 1e-9);
  EXPECT_NEAR(origin[1], 0.0, 1e-9);
}

TEST(PointConversion, GradsAreTheDegreeResultsConverted) {
  Pcs degrees(ko::test::utm33n(nullptr, nullptr, true));
  Pcs grads(ko::test::utm33n(nullptr, ko_angunit_new_code(9105), true));
  ASSERT_NE(degrees.p, nullptr);
  ASSERT_NE(grads.p, nullptr);
  std::vector<double> geo = zone_points();
  std::vector<double> d = geo, g = geo;
  for (double &v : g) v *= kDegree / kGrad;
  ASSERT_EQ(ko_geog_to_proj(degrees.p, n_of(d), d.data()), n_of(d));
  ASSERT_EQ(ko_geog_to_proj(grads.p, n_of(g), g.data()), n_of(g));
  // One rounding of each input angle in grads moves a point by up to a few
  // nanometres on the ground.
  for (std::size_t i = 0; i < geo.size(); ++i) EXPECT_NEAR(g[i], d[i], 5 * kNanometre) << i;

  ASSERT_EQ(ko_proj_to_geog(grads.p, n_of(g), g.data()), n_of(g));
  for (std::size_t i = 0; i < geo.size(); ++i)
    EXPECT_NEAR(g[i], geo[i] * kDegree / kGrad, 1e-12) << i;
}

TEST(PointConversion, PrimeMeridianIsNotApplied) {
  // Longitudes are taken relative to the system's own prime meridian.
  ko_geogcs *paris = ko_geogcs_new(
      "GCS_Paris",
      ko_datum_new("D_WGS_1984", ko_spheroid_new("WGS_1984", kWgs84A, kWgs84F)),
      ko_primem_new("Paris", 2.33722917), nullptr);
  Pcs on_paris(ko::test::projcs("P", paris, ko::test::utm33n_conversion()));
  Pcs on_greenwich(ko::test::utm33n());
  ASSERT_NE(on_paris.p, nullptr);
  ASSERT_NE(on_greenwich.p, nullptr);
  std::vector<double> a = zone_points(), b = a;
  ASSERT_EQ(ko_geog_to_proj(on_paris.p, n_of(a), a.data()), n_of(a));
  ASSERT_EQ(ko_geog_to_proj(on_greenwich.p, n_of(b), b.data()), n_of(b));
  EXPECT_EQ(a, b);
}

// ---------------------------------------------------------------------------
// Latitude clamping, failed calls, bad values

TEST(PointConversion, LatitudesBeyondThePolesAreClamped) {
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  std::array<double, 8> beyond = {16.0, 100.0, 16.0, -100.0, 16.0, kInf, 16.0, -kInf};
  std::array<double, 8> poles = {16.0, 90.0, 16.0, -90.0, 16.0, 90.0, 16.0, -90.0};
  ASSERT_EQ(ko_geog_to_proj(utm.p, 4, beyond.data()), 4);
  ASSERT_EQ(ko_geog_to_proj(utm.p, 4, poles.data()), 4);
  EXPECT_EQ(beyond, poles);
  EXPECT_TRUE(std::isfinite(beyond[1]));
}

TEST(PointConversion, FailedForwardPutsTheAnglesBackClamped) {
  ASSERT_TRUE(ko::test::installed());
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  // No memory for the constants, neither cached nor temporary: the
  // projection converts nothing.
  std::vector<double> pts = zone_points();
  pts[0] = 15.5;
  pts[1] = 100.0;
  const std::vector<double> given = pts;
  ko::test::fail_after(0);
  EXPECT_EQ(ko_geog_to_proj(utm.p, n_of(pts), pts.data()), 0);
  ko::test::never_fail();
  EXPECT_DOUBLE_EQ(pts[0], 15.5);
  EXPECT_DOUBLE_EQ(pts[1], 90.0);  // clamped, not restored to 100
  for (std::size_t i = 2; i < pts.size(); ++i) EXPECT_DOUBLE_EQ(pts[i], given[i]) << i;
  EXPECT_EQ(utm.p->constants_state, kProjConstantsFailed);

  // Later calls run on temporary constants and give the right answer, in
  // one call: a temporary record made for some points but not for others
  // would leave the array half converted.
  Pcs fresh(ko::test::utm33n());
  std::vector<double> want = pts;
  ASSERT_EQ(ko_geog_to_proj(fresh.p, n_of(want), want.data()), n_of(want));
  ASSERT_EQ(ko_geog_to_proj(utm.p, n_of(pts), pts.data()), n_of(pts));
  EXPECT_EQ(pts, want);
  EXPECT_EQ(ko_projcs_constants(utm.p), nullptr);
  for (long budget : {1L, 2L, 3L}) {
    std::vector<double> again = given;
    ko::test::fail_after(budget);
    int result = ko_geog_to_proj(utm.p, n_of(again), again.data());
    ko::test::never_fail();
    EXPECT_TRUE(result == 0 || result == n_of(again)) << budget;
  }
}

TEST(PointConversion, FailedInverseUndoesTheShift) {
  ASSERT_TRUE(ko::test::installed());
  Pcs feet(ko::test::utm33n(ko_linunit_new_code(9003)));
  ASSERT_NE(feet.p, nullptr);
  std::array<double, 4> pts = {1640416.0, 16404166.0, 1000.25, -328083.3};
  const std::array<double, 4> given = pts;
  ko::test::fail_after(0);
  EXPECT_EQ(ko_proj_to_geog_center(feet.p, 2, pts.data(), 180.0), 0);
  ko::test::never_fail();
  for (std::size_t i = 0; i < pts.size(); ++i)
    EXPECT_NEAR(pts[i], given[i], 4e-16 * std::fabs(given[i]) + 1e-9) << i;
}

TEST(PointConversion, NanAndInfinityComeBackNan) {
  Pcs utm(ko::test::utm33n());
  ASSERT_NE(utm.p, nullptr);
  std::array<double, 10> geo = {kNan, 45.0, 15.0, kNan, kInf, 45.0, -kInf, 10.0, 16.0, 45.0};
  ASSERT_EQ(ko_geog_to_proj(utm.p, 5, geo.data()), 5);
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(std::isnan(geo[2 * i])) << i;
    EXPECT_TRUE(std::isnan(geo[2 * i + 1])) << i;
  }
  EXPECT_TRUE(std::isfinite(geo[8]));  // a good point among bad ones is converted

  std::array<double, 10> xy = {kNan, 5e6, 5e5, kNan, kInf, 5e6, 5e5, -kInf, 5e5, 5e6};
  ASSERT_EQ(ko_proj_to_geog(utm.p, 5, xy.data()), 5);
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(std::isnan(xy[2 * i])) << i;
    EXPECT_TRUE(std::isnan(xy[2 * i + 1])) << i;
  }
  EXPECT_TRUE(std::isfinite(xy[8]));
}

// ---------------------------------------------------------------------------
// Recentred inverse

TEST(PointConversion, InverseLongitudesAboutACentre) {
  // UTM zone 60 (central meridian 177°) spans the antimeridian.
  Pcs z60(ko::test::projcs(
      "UTM_60N", ko::test::wgs84(),
      ko::test::conversion("UTM 60N", 43006,
                           {{"False_Easting", 500000.0},
                            {"False_Northing", 0.0},
                            {"Central_Meridian", 177.0},
                            {"Scale_Factor", 0.9996},
                            {"Latitude_Of_Origin", 0.0}})));
  ASSERT_NE(z60.p, nullptr);
  const std::vector<double> geo = {174.5, 10.0, 179.9, 50.0, -179.9, -50.0, -175.0, 70.0};
  std::vector<double> xy = geo;
  ASSERT_EQ(ko_geog_to_proj(z60.p, n_of(xy), xy.data()), n_of(xy));

  std::vector<double> about180 = xy;
  ASSERT_EQ(ko_proj_to_geog_center(z60.p, n_of(about180), about180.data(), 180.0), n_of(xy));
  for (std::size_t i = 0; i < count(geo); ++i) {
    double lon = about180[2 * i];
    EXPECT_GE(lon, 0.0);
    EXPECT_LE(lon, 360.0);
    EXPECT_NEAR(lon, geo[2 * i] < 0 ? geo[2 * i] + 360.0 : geo[2 * i], 1e-9) << i;
    EXPECT_NEAR(about180[2 * i + 1], geo[2 * i + 1], 1e-9) << i;
  }

  // Centre 0 leaves the projection's own longitudes as they are: the
  // projection's inverse on the shifted metres, divided by the degree.
  std::array<double, KO_PARM_COUNT> parms{};
  ko_projcs_parm_array(z60.p, parms.data());
  const double sph[2] = {kWgs84A, kWgs84F * (2 - kWgs84F)};
  std::vector<double> direct = xy;
  for (std::size_t i = 0; i < direct.size(); i += 2) direct[i] -= 500000.0;
  ASSERT_EQ(ko_prj_transverse_mercator_vector.inverse(sph, parms.data(), n_of(direct),
                                                      direct.data(), nullptr, nullptr),
            n_of(direct));
  for (double &v : direct) v /= kDegree;
  std::vector<double> about0 = xy;
  ASSERT_EQ(ko_proj_to_geog_center(z60.p, n_of(about0), about0.data(), 0.0), n_of(xy));
  EXPECT_EQ(about0, direct);
  std::vector<double> plain = xy;
  ASSERT_EQ(ko_proj_to_geog(z60.p, n_of(plain), plain.data()), n_of(xy));
  EXPECT_EQ(plain, direct);

  // A NaN centre makes every longitude NaN; latitudes survive.
  std::vector<double> nan_centre = xy;
  ASSERT_EQ(ko_proj_to_geog_center(z60.p, n_of(nan_centre), nan_centre.data(), kNan), n_of(xy));
  for (std::size_t i = 0; i < count(geo); ++i) {
    EXPECT_TRUE(std::isnan(nan_centre[2 * i]));
    EXPECT_NEAR(nan_centre[2 * i + 1], geo[2 * i + 1], 1e-9);
  }
}

}  // namespace
