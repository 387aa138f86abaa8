// What every member of the Transverse Mercator family shares: the vectors'
// identity, the constants contract, temporary constants when none are cached,
// clean failure when memory runs out, harmless arguments, NaN and infinite
// inputs, the spherical case and the parameter check.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "ko.h"
#include "tests/projections/tm_test_support.h"
#include "tests/support/failing_alloc.h"

#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace {

using ko::tmtest::Spheroid;
using ko::tmtest::TmSetup;

using ko::tmtest::kDeg;
constexpr Spheroid kSphere{6371000.0, 0.0};

struct Member {
  const ko_projlist_entry *vec;
  int32_t code;
  const char *name;
};

const Member kMembers[] = {
    {&ko_prj_gauss_kruger_vector, 43005, "Gauss_Kruger"},
    {&ko_prj_transverse_mercator_vector, 43006, "Transverse_Mercator"},
    {&ko_prj_transverse_mercator_complex_vector, 43056, "Transverse_Mercator_Complex"},
    {&ko_prj_transverse_mercator_nga_2014_vector, 43081, "Transverse_Mercator_NGA_2014"},
};

class TmFamily : public ::testing::TestWithParam<Member> {
 protected:
  const ko_projlist_entry &vec = *GetParam().vec;
};

// Some points within the projections' common domain, longitude/latitude in
// radians relative to a central meridian of 9 degrees.
std::vector<double> sample_points() {
  std::vector<double> xy;
  for (double lat : {-70.0, -33.3, 0.0, 12.5, 48.2, 89.0})
    for (double dlon : {-25.0, -3.0, 0.0, 7.5, 30.0}) xy.insert(xy.end(), {(9.0 + dlon) * kDeg, lat * kDeg});
  return xy;
}

TEST_P(TmFamily, VectorIdentity) {
  EXPECT_EQ(vec.code, GetParam().code);
  EXPECT_STREQ(vec.name, GetParam().name);
  EXPECT_NE(vec.forward, nullptr);
  EXPECT_NE(vec.inverse, nullptr);
  EXPECT_NE(vec.constfunc, nullptr);
  EXPECT_NE(vec.validfunc, nullptr);
  EXPECT_EQ(vec.compfunc, nullptr);
  EXPECT_EQ(vec.parmfunc, nullptr);
  EXPECT_EQ(ko_projlist_from_code(GetParam().code), &vec);
}

// ivals [2, count]; on a sphere the two doubles a k0 and a k0 / 2.
TEST_P(TmFamily, SphereConstants) {
  TmSetup tm(vec, kSphere, 9.0, 10.0, 0.9996);
  ASSERT_EQ(tm.count(), 2);
  ASSERT_NE(tm.ivals(), nullptr);
  EXPECT_EQ(tm.ivals()[0], 2);
  EXPECT_EQ(tm.ivals()[1], 2);
  EXPECT_DOUBLE_EQ(tm.dvals()[0], kSphere.a * 0.9996);
  EXPECT_DOUBLE_EQ(tm.dvals()[1], kSphere.a * 0.9996 / 2.0);
}

TEST_P(TmFamily, EllipsoidConstantsCountMatchesIvals) {
  TmSetup tm(vec, ko::tmtest::kWgs84, 9.0, 10.0, 0.9996);
  ASSERT_GT(tm.count(), 2);
  EXPECT_EQ(tm.ivals()[0], 2);
  EXPECT_EQ(tm.ivals()[1], tm.count());
}

// Without cached constants the functions build temporary ones: same results.
TEST_P(TmFamily, TemporaryConstantsGiveTheSameResults) {
  for (const Spheroid &s : {ko::tmtest::kWgs84, kSphere}) {
    TmSetup tm(vec, s, 9.0, 10.0, 0.9996);
    std::vector<double> cached = sample_points(), uncached = cached;
    const int n = static_cast<int>(cached.size() / 2);
    ASSERT_EQ(tm.forward(cached), n);
    ASSERT_EQ(tm.forward_uncached(uncached), n);
    for (size_t i = 0; i < cached.size(); ++i) EXPECT_EQ(cached[i], uncached[i]) << i;
    ASSERT_EQ(tm.inverse(cached), n);
    ASSERT_EQ(tm.inverse_uncached(uncached), n);
    for (size_t i = 0; i < cached.size(); ++i) EXPECT_EQ(cached[i], uncached[i]) << i;
  }
}

// The constants function frees what it allocated when memory runs out, and a
// call without constants then converts nothing.
TEST_P(TmFamily, AllocationFailuresLeakNothing) {
  ASSERT_TRUE(ko::test::installed());
  for (const Spheroid &s : {ko::tmtest::kWgs84, kSphere}) {
    const double sph[2] = {s.a, s.e2()};
    double parms[KO_PARM_COUNT] = {};
    parms[5] = 1.0;
    const long allocations = ko::test::sweep_failures([&] {
      ko_constants *c = ko_constants_new();
      if (c == nullptr) return false;
      const int count = vec.constfunc(c, sph, parms);
      ko_constants_del(c);
      EXPECT_TRUE(count == -1 || count >= 2);
      return count >= 2;
    });
    EXPECT_GE(allocations, 3);  // the record, the integers, the doubles
    const long converted = ko::test::sweep_failures([&] {
      std::vector<double> xy{0.1, 0.2};
      const int n = vec.forward(sph, parms, 1, xy.data(), nullptr, nullptr);
      EXPECT_TRUE(n == 0 || n == 1);
      if (n == 0) {
        EXPECT_EQ(xy[0], 0.1);  // untouched on failure
      }
      return n == 1;
    });
    EXPECT_GE(converted, 3);
  }
}

TEST_P(TmFamily, HarmlessArguments) {
  TmSetup tm(vec, ko::tmtest::kWgs84, 9.0, 0.0, 1.0);
  double xy[2] = {0.1, 0.2};
  EXPECT_EQ(vec.forward(nullptr, tm.parms(), 1, xy, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(vec.forward(tm.sph(), nullptr, 1, xy, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(vec.forward(tm.sph(), tm.parms(), 1, nullptr, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(vec.forward(tm.sph(), tm.parms(), 0, xy, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(vec.forward(tm.sph(), tm.parms(), -3, xy, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(vec.inverse(tm.sph(), tm.parms(), -3, xy, tm.ivals(), tm.dvals()), 0);
  EXPECT_EQ(xy[0], 0.1);
  EXPECT_EQ(xy[1], 0.2);
  // Constants cached for the sphere do not fit an ellipsoid: temporary ones are used.
  TmSetup sphere(vec, kSphere, 9.0, 0.0, 1.0);
  std::vector<double> a{0.3, 0.4}, b = a;
  ASSERT_EQ(vec.forward(tm.sph(), tm.parms(), 1, a.data(), sphere.ivals(), sphere.dvals()), 1);
  ASSERT_EQ(tm.forward(b), 1);
  EXPECT_EQ(a, b);
  // The constants function refuses a dead record and missing arrays.
  EXPECT_EQ(vec.constfunc(nullptr, tm.sph(), tm.parms()), -1);
  ko_constants *c = ko_constants_new();
  EXPECT_EQ(vec.constfunc(c, nullptr, tm.parms()), -1);
  EXPECT_EQ(vec.constfunc(c, tm.sph(), nullptr), -1);
  ko_constants_del(c);
}

// NaN or infinite coordinates come back NaN; the other points are converted
// as usual and every point counts.
TEST_P(TmFamily, NonFiniteInputsGiveNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<double, double>> geographic = {{nan, 0.5}, {0.2, nan}, {inf, 0.5},
                                                             {-inf, 0.5}, {0.2, inf}, {nan, nan}};
  const std::vector<std::pair<double, double>> projected = {{nan, 1e6}, {2e5, nan}, {inf, 1e6},
                                                            {-inf, 1e6}, {2e5, inf}, {2e5, -inf}};
  for (const Spheroid &s : {ko::tmtest::kWgs84, kSphere}) {
    TmSetup tm(vec, s, 9.0, 0.0, 0.9996);
    for (int direction = 0; direction < 2; ++direction) {
      const auto &bad = direction == 0 ? geographic : projected;
      const std::vector<double> good = direction == 0 ? std::vector<double>{0.1, 0.2, 0.15, 0.3, 0.17, 0.4, 0.19, 0.5}
                                                      : std::vector<double>{1e5, 2e6, 2e5, 3e6, 3e5, 4e6, 4e5, 5e6};
      std::vector<double> expected = good;
      ASSERT_EQ(direction == 0 ? tm.forward(expected) : tm.inverse(expected), 4);
      for (const auto &[x, y] : bad) {
        // the bad point third among good ones, in a block long enough for the vector kernel
        std::vector<double> xy(good.begin(), good.begin() + 4);
        xy.insert(xy.end(), {x, y});
        xy.insert(xy.end(), good.begin() + 4, good.end());
        ASSERT_EQ(direction == 0 ? tm.forward(xy) : tm.inverse(xy), 5);
        EXPECT_TRUE(std::isnan(xy[4])) << direction << ": " << x << " " << y;
        EXPECT_TRUE(std::isnan(xy[5])) << direction << ": " << x << " " << y;
        EXPECT_EQ(xy[0], expected[0]);
        EXPECT_EQ(xy[3], expected[3]);
        EXPECT_EQ(xy[9], expected[7]);
      }
    }
  }
}

// On a sphere every member is the same spherical projection.
TEST_P(TmFamily, SphereIsTheSphericalProjection) {
  TmSetup tm(vec, kSphere, 9.0, 20.0, 0.9996);
  TmSetup gk(ko_prj_gauss_kruger_vector, kSphere, 9.0, 20.0, 0.9996);
  std::vector<double> a = sample_points(), b = a;
  ASSERT_EQ(tm.forward(a), static_cast<int>(a.size() / 2));
  ASSERT_EQ(gk.forward(b), static_cast<int>(b.size() / 2));
  EXPECT_EQ(a, b);
}

// Forward then inverse returns the points (latitudes within 1e-9 degree).
TEST_P(TmFamily, RoundTrip) {
  for (const Spheroid &s : {ko::tmtest::kWgs84, ko::tmtest::kBessel1841, kSphere}) {
    TmSetup tm(vec, s, 9.0, -35.0, 0.9996);
    const std::vector<double> start = sample_points();
    std::vector<double> xy = start;
    ASSERT_EQ(tm.forward(xy), static_cast<int>(xy.size() / 2));
    ASSERT_EQ(tm.inverse(xy), static_cast<int>(xy.size() / 2));
    for (size_t i = 0; i < xy.size(); i += 2) {
      EXPECT_NEAR(xy[i + 1] / kDeg, start[i + 1] / kDeg, 1e-9) << i;
      EXPECT_NEAR(std::remainder(xy[i] - start[i], 2 * M_PI) / kDeg, 0.0, 1e-9) << i;
    }
  }
}

// The worked example of EPSG method 9807 in IOGP publication 373-7-2
// (guidance note 7-2), OSGB 1936 / British National Grid, with the
// parameters as the example prints them (Airy 1830 with 1/f = 299.32496,
// k0 = 0.9996013): 50°30'N 0°30'E is E 577274.99, N 69740.50 (0.01 m), and
// the reverse of those gives the point back to the printed 0.001".  The
// printed grid values' rounding is worth less than 0.0002" here.
TEST_P(TmFamily, GuidanceNoteExampleBothWays) {
  constexpr double kFe = 400000.0, kFn = -100000.0;
  constexpr double kE = 577274.99, kN = 69740.50;
  constexpr double kLat = 50.5, kLon = 0.5;  // degrees
  TmSetup tm(vec, Spheroid{6377563.396, 1.0 / 299.32496}, -2.0, 49.0, 0.9996013);
  std::vector<double> xy{kLon * kDeg, kLat * kDeg};
  ASSERT_EQ(tm.forward(xy), 1);
  EXPECT_NEAR(xy[0] + kFe, kE, 0.005 + 1e-9);
  EXPECT_NEAR(xy[1] + kFn, kN, 0.005 + 1e-9);
  xy = {kE - kFe, kN - kFn};
  ASSERT_EQ(tm.inverse(xy), 1);
  EXPECT_NEAR(xy[0] / kDeg * 3600.0, kLon * 3600.0, 0.0005);
  EXPECT_NEAR(xy[1] / kDeg * 3600.0, kLat * 3600.0, 0.0005);
}

// The plane orientation step (X_Scale, Y_Scale and XY_Plane_Rotation in
// slots 12 to 14) turns and scales the plain result,
//   x' = Sx (x cos w + y sin w),  y' = Sy (y cos w - x sin w),
// exactly for the quarter turns; an absent scale (0) is 1; the inverse
// takes the turned coordinates back to the start.
TEST_P(TmFamily, PlaneOrientation) {
  struct Case {
    double sx, sy, w_deg;
  } const cases[] = {
      {-1.0, -1.0, 0.0},  // south-orientated: westing, southing
      {-1.0, 1.0, 90.0},  // southing, westing
      {1.0, 1.0, 90.0},   // northing, westing
      {-1.0, 0.0, 0.0},   // west-orientated, Y_Scale absent
      {2.0, 0.5, 30.0},
  };
  for (const Spheroid &s : {ko::tmtest::kWgs84, kSphere}) {
    TmSetup plain(vec, s, 9.0, 10.0, 0.9996);
    const std::vector<double> start = sample_points();
    std::vector<double> base = start;
    const int n = static_cast<int>(start.size() / 2);
    ASSERT_EQ(plain.forward(base), n);
    for (const Case &c : cases) {
      SCOPED_TRACE(std::to_string(c.sx) + " " + std::to_string(c.sy) + " " + std::to_string(c.w_deg));
      TmSetup tm(vec, s, 9.0, 10.0, 0.9996);
      tm.set_parm(12, c.sx);
      tm.set_parm(13, c.sy);
      tm.set_parm(14, c.w_deg * kDeg);
      const bool quarter = c.w_deg == 0.0 || c.w_deg == 90.0;
      const double cw = c.w_deg == 90.0 ? 0.0 : std::cos(c.w_deg * kDeg);
      const double sw = c.w_deg == 90.0 ? 1.0 : std::sin(c.w_deg * kDeg);
      const double sx = c.sx == 0.0 ? 1.0 : c.sx, sy = c.sy == 0.0 ? 1.0 : c.sy;
      std::vector<double> xy = start;
      ASSERT_EQ(tm.forward(xy), n);
      for (int i = 0; i < n; ++i) {
        const double x = base[2 * i], y = base[2 * i + 1];
        const double want_x = sx * (x * cw + y * sw), want_y = sy * (y * cw - x * sw);
        const double tol = quarter ? 0.0 : 1e-15 * (std::fabs(x) + std::fabs(y));
        EXPECT_NEAR(xy[2 * i], want_x, tol) << i;
        EXPECT_NEAR(xy[2 * i + 1], want_y, tol) << i;
      }
      ASSERT_EQ(tm.inverse(xy), n);
      for (int i = 0; i < n; ++i) {
        EXPECT_NEAR(xy[2 * i + 1] / kDeg, start[2 * i + 1] / kDeg, 1e-9) << i;
        EXPECT_NEAR(std::remainder(xy[2 * i] - start[2 * i], 2 * M_PI) / kDeg, 0.0, 1e-9) << i;
      }
    }
  }
}

// An orientation that is not finite converts nothing and leaves the points.
TEST_P(TmFamily, NonFiniteOrientationConvertsNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int slot : {12, 13, 14}) {
    TmSetup tm(vec, ko::tmtest::kWgs84, 9.0, 0.0, 0.9996);
    tm.set_parm(slot, nan);
    std::vector<double> xy{0.1, 0.2, 0.15, 0.3};
    const std::vector<double> before = xy;
    EXPECT_EQ(tm.forward(xy), 0) << slot;
    EXPECT_EQ(xy, before);
    std::vector<double> en{1e5, 2e6};
    EXPECT_EQ(tm.inverse(en), 0) << slot;
    EXPECT_EQ(en, (std::vector<double>{1e5, 2e6}));
  }
}

#ifdef KO_HAVE_PROJ
// South-orientated (EPSG method 9808, Hartebeesthoek94 / Lo25): westing and
// southing within 1 mm of PROJ's tmerc with the axes west and south.
TEST_P(TmFamily, SouthOrientatedAgreesWithProj) {
  PJ_CONTEXT *ctx = proj_context_create();
  PJ *pj = proj_create(ctx, "+proj=tmerc +lat_0=0 +lon_0=25 +k=1 +x_0=0 +y_0=0 +ellps=WGS84 +axis=wsu");
  ASSERT_NE(pj, nullptr);
  TmSetup tm(vec, ko::tmtest::kWgs84, 25.0, 0.0, 1.0);
  tm.set_parm(12, -1.0);
  tm.set_parm(13, -1.0);
  std::vector<double> xy;
  for (double lat = -35.0; lat <= -22.0; lat += 1.3)
    for (double lon = 23.5; lon <= 26.5; lon += 0.5) xy.insert(xy.end(), {lon * kDeg, lat * kDeg});
  const std::vector<double> start = xy;
  const int n = static_cast<int>(xy.size() / 2);
  ASSERT_EQ(tm.forward(xy), n);
  for (int i = 0; i < n; ++i) {
    const PJ_COORD w = proj_trans(pj, PJ_FWD, proj_coord(start[2 * i], start[2 * i + 1], 0, 0));
    // Westing grows to the west of the meridian, southing to the south.
    EXPECT_EQ(xy[2 * i] > 0.0, start[2 * i] < 25.0 * kDeg) << i;
    EXPECT_GT(xy[2 * i + 1], 0.0) << i;
    EXPECT_NEAR(xy[2 * i], w.xy.x, 1e-3) << i;
    EXPECT_NEAR(xy[2 * i + 1], w.xy.y, 1e-3) << i;
  }
  proj_destroy(pj);
  proj_context_destroy(ctx);
}
#endif

// A longitude given outside [-180, 180] is wrapped about the central meridian.
TEST_P(TmFamily, LongitudesAreWrapped) {
  TmSetup tm(vec, ko::tmtest::kWgs84, 170.0, 0.0, 0.9996);
  std::vector<double> a{-175.0 * kDeg, 0.7, 185.0 * kDeg, 0.7, 545.0 * kDeg, 0.7};
  ASSERT_EQ(tm.forward(a), 3);
  EXPECT_NEAR(a[0], a[2], 1e-6);
  EXPECT_NEAR(a[2], a[4], 1e-6);
  EXPECT_GT(a[0], 0.0);  // 15 degrees east of the central meridian
  ASSERT_EQ(tm.inverse(a), 3);
  EXPECT_NEAR(a[0] / kDeg, -175.0, 1e-9);  // returned within [-180, 180]
}

INSTANTIATE_TEST_SUITE_P(Members, TmFamily, ::testing::ValuesIn(kMembers),
                         [](const auto &suite) { return std::string(suite.param.name); });

// ---------------------------------------------------------------------------
// Parameter check

struct Report {
  int severity, category, number;
  std::string source, message;
};

// Collects the reports that reach the message callback.
class ReportLog {
 public:
  ReportLog() { ko_msg_setrtn(this, 7, 127, &ReportLog::collect); }
  ~ReportLog() { ko_msg_setrtn(nullptr, 0, 0, nullptr); }
  ReportLog(const ReportLog &) = delete;
  ReportLog &operator=(const ReportLog &) = delete;
  std::vector<Report> reports;

 private:
  static void collect(void *self, const ko_err *r) {
    static_cast<ReportLog *>(self)->reports.push_back(
        {r->severity, r->category, r->number, r->source, r->message});
  }
};

// The 24 parameter slots with the listed parameters present.
class ParmSet {
 public:
  explicit ParmSet(std::initializer_list<int32_t> codes) {
    for (int32_t code : codes) {
      const int slot = ko_parmlist_from_code(code)->index;
      slots[slot] = ko_parmlist_parameter_from_code(code, nullptr);
    }
  }
  ~ParmSet() {
    for (ko_parameter *p : slots) ko_parameter_del(p);
  }
  ParmSet(const ParmSet &) = delete;
  ParmSet &operator=(const ParmSet &) = delete;
  ko_parameter *slots[KO_PARM_COUNT] = {};
};

TEST_P(TmFamily, ParameterCheck) {
  struct Case {
    std::initializer_list<int32_t> present;
    int valid;
    std::vector<std::pair<int, std::string>> reports;  // severity, parameter name, in order
  } const cases[] = {
      {{100001, 100002, 100003, 100010, 100021}, 1, {}},
      // Only the central meridian is required.
      {{100010}, 1,
       {{2, "False_Easting"}, {2, "False_Northing"}, {2, "Scale_Factor"}, {2, "Latitude_Of_Origin"}}},
      {{100001, 100002, 100003, 100021}, 0, {{4, "Central_Meridian"}}},
      {{}, 0,
       {{2, "False_Easting"},
        {2, "False_Northing"},
        {2, "Scale_Factor"},
        {4, "Central_Meridian"},
        {2, "Latitude_Of_Origin"}}},
      // Longitude_Of_Origin fills the central meridian's slot.
      {{100001, 100002, 100003, 100011, 100021}, 1, {}},
  };
  for (const Case &c : cases) {
    ParmSet set(c.present);
    ReportLog log;
    ko_err err{};
    ko_err_clear(&err);
    EXPECT_EQ(vec.validfunc(set.slots, "utm test", &err), c.valid);
    ASSERT_EQ(log.reports.size(), c.reports.size());
    int worst = 0;
    for (size_t i = 0; i < c.reports.size(); ++i) {
      const Report &r = log.reports[i];
      EXPECT_EQ(r.number, 347);
      EXPECT_EQ(r.category, KO_ERRCAT_ARGUMENT);
      EXPECT_EQ(r.severity, c.reports[i].first);
      EXPECT_EQ(r.message, c.reports[i].second);
      EXPECT_EQ(r.source, "utm test");
      worst = std::max(worst, c.reports[i].first);
    }
    EXPECT_EQ(err.severity, worst);
    if (worst == KO_SEV_ERROR) {
      EXPECT_STREQ(err.message, "Central_Meridian");
    }
  }
  ko_err err{};
  ko_err_clear(&err);
  EXPECT_EQ(vec.validfunc(nullptr, "utm test", &err), 0);
  EXPECT_EQ(err.number, 330);
}

}  // namespace
