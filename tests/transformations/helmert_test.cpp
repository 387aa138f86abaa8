// The Helmert family (Geocentric_Translation, Position_Vector,
// Coordinate_Frame, Molodensky_Badekas, the time-based fifteen-parameter
// methods) against PROJ running the same EPSG transformations, over each
// transformation's area of use; then forward-inverse round trips.
#include "tests/transformations/oracle.h"

#include <gtest/gtest.h>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geocentric.hpp>
#endif

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <cmath>
#include <string>
#include <vector>

namespace {

using ko::MethodArgs;
using ko::MethodKernel;
using ko::test::kArcsecRad;
using ko::test::kDeg;
using ko::test::Sph;

struct Method {
  MethodKernel forward, inverse;
};
const Method kGT{ko::geocentric_translation_forward, ko::geocentric_translation_inverse};
const Method kPV{ko::position_vector_forward, ko::position_vector_inverse};
const Method kCF{ko::coordinate_frame_forward, ko::coordinate_frame_inverse};
const Method kMB{ko::molodensky_badekas_forward, ko::molodensky_badekas_inverse};
const Method kTPV{ko::time_based_helmert_pv_forward, ko::time_based_helmert_pv_inverse};
const Method kTCF{ko::time_based_helmert_cf_forward, ko::time_based_helmert_cf_inverse};

// The published parameters of an EPSG transformation, in the units EPSG
// gives them (metres, arc-seconds, ppm, per year), put into the 24 slots.
struct Params {
  double tx = 0, ty = 0, tz = 0, rx = 0, ry = 0, rz = 0, ppm = 0;
  double ox = 0, oy = 0, oz = 0;  // rotation origin (Molodensky-Badekas)
  double dtx = 0, dty = 0, dtz = 0, drx = 0, dry = 0, drz = 0, dppm = 0, t0 = 0;
  std::array<double, 24> slots() const {
    std::array<double, 24> p{};
    p[ko::kSlotTx] = tx;
    p[ko::kSlotTy] = ty;
    p[ko::kSlotTz] = tz;
    p[ko::kSlotRx] = rx * kArcsecRad;
    p[ko::kSlotRy] = ry * kArcsecRad;
    p[ko::kSlotRz] = rz * kArcsecRad;
    p[ko::kSlotScale] = ppm * 1e-6;
    if (t0 != 0) {
      p[ko::kSlotTxRate] = dtx;
      p[ko::kSlotTyRate] = dty;
      p[ko::kSlotTzRate] = dtz;
      p[ko::kSlotRxRate] = drx * kArcsecRad;
      p[ko::kSlotRyRate] = dry * kArcsecRad;
      p[ko::kSlotRzRate] = drz * kArcsecRad;
      p[ko::kSlotScaleRate] = dppm * 1e-6;
      p[ko::kSlotRefTime] = t0;
    } else {
      p[ko::kSlotOriginX] = ox;
      p[ko::kSlotOriginY] = oy;
      p[ko::kSlotOriginZ] = oz;
    }
    return p;
  }
};

struct Case {
  const char *code;   // the EPSG transformation PROJ runs
  Method method;
  const Sph *sph1, *sph2;
  Params params;
  double south, west, north, east;  // area of use, degrees
};

const Case kCases[] = {
    {"1188", kGT, &ko::test::kGrs80, &ko::test::kWgs84, {}, 23.81, -172.54, 86.46, -47.74},
    {"1196", kGT, &ko::test::kAiry, &ko::test::kWgs84, {.tx = 371, .ty = -112, .tz = 434},
     49.81, -6.5, 55.85, 1.84},
    {"1195", kGT, &ko::test::kAiry, &ko::test::kWgs84, {.tx = 375, .ty = -111, .tz = 431},
     49.79, -8.82, 60.94, 1.92},
    {"1134", kGT, &ko::test::kIntl, &ko::test::kWgs84, {.tx = -87, .ty = -96, .tz = -120},
     42.33, -4.87, 57.8, 17.17},
    {"1173", kGT, &ko::test::kClarke1866, &ko::test::kWgs84, {.tx = -8, .ty = 160, .tz = 176},
     24.41, -124.79, 49.38, -66.91},
    {"1314", kPV, &ko::test::kAiry, &ko::test::kWgs84,
     {.tx = 446.448, .ty = -125.157, .tz = 542.06, .rx = 0.15, .ry = 0.247, .rz = 0.842,
      .ppm = -20.489},
     49.79, -8.82, 60.94, 1.92},
    {"1309", kCF, &ko::test::kBessel, &ko::test::kGrs80,
     {.tx = 582, .ty = 105, .tz = 414, .rx = -1.04, .ry = -0.35, .rz = 3.08, .ppm = 8.3}, 47.27,
     5.86, 55.09, 13.84},
    {"1066", kMB, &ko::test::kBessel, &ko::test::kGrs80,
     {.tx = 593.032, .ty = 26, .tz = 478.741, .rx = 0.409394387439237, .ry = -0.359705195614311,
      .rz = 1.86849100035057, .ppm = 4.0772, .ox = 3903453.148, .oy = 368135.313,
      .oz = 5012970.306},
     50.75, 3.2, 53.7, 7.22},
};

MethodArgs args_for(const Case &c, const std::array<double, 24> &p, const double *epoch = nullptr) {
  MethodArgs a;
  a.sph1 = c.sph1->v;
  a.sph2 = c.sph2->v;
  a.parms = p.data();
  a.extra = epoch;
  return a;
}

#ifdef KO_HAVE_PROJ
// PROJ's pipeline for an EPSG transformation, with the height carried
// through the geocentric step instead of being restored afterwards.
std::string pipeline_with_heights(const char *code) {
  ko::test::ProjOp op("EPSG", code);
  std::string def = op.proj_string();
  for (const char *drop : {"+step +proj=push +v_3", "+step +proj=pop +v_3"}) {
    const auto at = def.find(drop);
    if (at != std::string::npos) def.erase(at, std::string(drop).size());
  }
  return def;
}

TEST(Helmert, MatchesProjOverTheAreaOfUse) {
  for (const Case &c : kCases) {
    const std::string def = pipeline_with_heights(c.code);
    ko::test::ProjOp proj(def.c_str());
    ASSERT_TRUE(proj.ok()) << c.code << ": " << def;
    const auto p = c.params.slots();
    const auto deg = ko::test::box_points(c.west, c.south, c.east, c.north, 7);
    auto pts = ko::test::to_radians(deg);
    const int n = static_cast<int>(pts.size() / 2);
    std::vector<double> z(n);
    for (int i = 0; i < n; ++i) z[i] = -50.0 + 37.5 * (i % 9);
    std::vector<double> z0(z);
    ASSERT_EQ(c.method.forward(args_for(c, p), n, pts.data(), z.data()), n) << c.code;
    for (int i = 0; i < n; ++i) {
      // EPSG axis order: latitude first, degrees.
      const PJ_COORD r = proj.trans(PJ_FWD, deg[2 * i + 1], deg[2 * i], z0[i]);
      EXPECT_LT(ko::test::horizontal_m(pts[2 * i], pts[2 * i + 1], r.v[1] * kDeg, r.v[0] * kDeg),
                1e-3)
          << c.code << " at " << deg[2 * i] << ", " << deg[2 * i + 1];
      EXPECT_NEAR(z[i], r.v[2], 1e-3) << c.code;
    }
  }
}

TEST(Helmert, InverseIsTheExactInverseOfProjsForward) {
  // PROJ inverts the rotation by transposing it, exact only to first order
  // (1.4 mm off for the 3" rotations of EPSG 1309); so the inverse is judged
  // by PROJ's forward taking its result back to the start.  EPSG 1188 is
  // left out: PROJ runs it as a no-op, ignoring the GRS80/WGS84 difference
  // that the method applies (0.1 mm).
  for (const Case &c : kCases) {
    if (std::string(c.code) == "1188") continue;
    const std::string def = pipeline_with_heights(c.code);
    ko::test::ProjOp proj(def.c_str());
    ASSERT_TRUE(proj.ok()) << c.code;
    const auto p = c.params.slots();
    const auto deg = ko::test::box_points(c.west, c.south, c.east, c.north, 5);
    auto pts = ko::test::to_radians(deg);
    const int n = static_cast<int>(pts.size() / 2);
    std::vector<double> z(n, 100.0);
    ASSERT_EQ(c.method.inverse(args_for(c, p), n, pts.data(), z.data()), n) << c.code;
    for (int i = 0; i < n; ++i) {
      const PJ_COORD r = proj.trans(PJ_FWD, pts[2 * i + 1] / kDeg, pts[2 * i] / kDeg, z[i]);
      EXPECT_LT(ko::test::horizontal_m(deg[2 * i] * kDeg, deg[2 * i + 1] * kDeg, r.v[1] * kDeg,
                                       r.v[0] * kDeg),
                1e-6)
          << c.code;
      EXPECT_NEAR(r.v[2], 100.0, 1e-6) << c.code;
    }
  }
}
#endif

#ifdef KO_HAVE_GEOGRAPHICLIB
// The point loop to the last bits, everywhere: GeographicLib converts to
// geocentric and back, the test applies the affine map in long double.
// Covers the loop's Newton path near the start latitude and its fallback to
// the closed form (far above the surface, near the centre, at the poles).
TEST(Helmert, LoopIsExactToTheLastBits) {
  struct Spheroids {
    const Sph *from, *to;
    double inv_f_from, inv_f_to;
  } pairs[] = {{&ko::test::kAiry, &ko::test::kWgs84, 299.3249646, 298.257223563},
               {&ko::test::kClarke1866, &ko::test::kIntl, 294.978698213898, 297.0}};
  Params big = kCases[5].params;
  big.rx = 20;
  big.ry = -15;
  big.rz = 25;
  big.ppm = 300;
  std::mt19937_64 rng(99);
  std::uniform_real_distribution<double> lon_d(-180, 180), lat_d(-90, 90), h_d(-2000, 9000);
  for (const Spheroids &sp : pairs) {
    const GeographicLib::Geocentric from(sp.from->v[0], 1 / sp.inv_f_from);
    const GeographicLib::Geocentric to(sp.to->v[0], 1 / sp.inv_f_to);
    for (const Params &prm : {kCases[5].params, big}) {
      const auto p = prm.slots();
      const ko::Affine f = ko::helmert_affine(&p[0], p[3], p[4], p[5], p[6], nullptr);
      std::vector<std::array<double, 3>> pts;
      for (int i = 0; i < 3000; ++i) pts.push_back({lon_d(rng), lat_d(rng), h_d(rng)});
      for (double lat : {90.0, -90.0, 89.9999999, 0.0})
        for (double h : {0.0, 3e5, 2.0e7, -6.3e6}) pts.push_back({25.0, lat, h});
      for (const auto &pt : pts) {
        double x, y, z;
        from.Forward(pt[1], pt[0], pt[2], x, y, z);
        const long double xl = x, yl = y, zl = z;
        const double X = static_cast<double>(f.t[0] + f.m[0] * xl + f.m[1] * yl + f.m[2] * zl);
        const double Y = static_cast<double>(f.t[1] + f.m[3] * xl + f.m[4] * yl + f.m[5] * zl);
        const double Z = static_cast<double>(f.t[2] + f.m[6] * xl + f.m[7] * yl + f.m[8] * zl);
        double lat, lon, h;
        to.Reverse(X, Y, Z, lat, lon, h);
        double c[2] = {pt[0] * kDeg, pt[1] * kDeg}, hk = pt[2];
        MethodArgs a;
        a.sph1 = sp.from->v;
        a.sph2 = sp.to->v;
        ASSERT_EQ(ko::transform_through_geocentric(a.sph1, a.sph2, f, 1, c, &hk), 1);
        // A few units in the last place: 3e-15 rad in latitude, 10 nm in
        // the height and along the parallel (the sum of products near
        // 6.4e6 m that gives the height rounds to about 1e-9 m a term).
        const double scale = std::fmax(1.0, std::fabs(pt[2]) / 1e6);
        EXPECT_NEAR(c[1], lat * kDeg, 3e-15 * scale) << pt[0] << " " << pt[1] << " " << pt[2];
        const double rho = std::hypot(X, Y);
        EXPECT_NEAR(std::remainder(c[0] - lon * kDeg, 2 * M_PI) * rho, 0.0, 1e-8 * scale)
            << pt[0] << " " << pt[1] << " " << pt[2];
        EXPECT_NEAR(hk, h, 1e-8 * scale) << pt[0] << " " << pt[1] << " " << pt[2];
      }
    }
  }
}
#endif

// Forward then inverse returns the start: 1e-9 degree, 1e-6 m.  The
// rotations of the last case are large enough (20") that inverting by a
// sign flip would miss by centimetres.
TEST(Helmert, ForwardThenInverseReturnsTheStart) {
  std::vector<Case> cases(std::begin(kCases), std::end(kCases));
  Case big = kCases[5];
  big.params.rx = 20;
  big.params.ry = -15;
  big.params.rz = 25;
  big.params.ppm = 300;
  cases.push_back(big);
  for (const Case &c : cases) {
    const auto p = c.params.slots();
    // The area widened by 5°, short of the poles where longitude is lost.
    const auto deg = ko::test::box_points(c.west - 5, std::fmax(c.south - 5, -89.9), c.east + 5,
                                          std::fmin(c.north + 5, 89.9), 9);
    auto pts = ko::test::to_radians(deg);
    const int n = static_cast<int>(pts.size() / 2);
    std::vector<double> z(n);
    for (int i = 0; i < n; ++i) z[i] = -400.0 + 1000.0 * (i % 7);
    const auto pts0 = pts;
    const auto z0 = z;
    ASSERT_EQ(c.method.forward(args_for(c, p), n, pts.data(), z.data()), n);
    ASSERT_EQ(c.method.inverse(args_for(c, p), n, pts.data(), z.data()), n);
    for (int i = 0; i < 2 * n; ++i) EXPECT_NEAR(pts[i], pts0[i], 1e-9 * kDeg) << c.code;
    for (int i = 0; i < n; ++i) EXPECT_NEAR(z[i], z0[i], 1e-6) << c.code;
  }
}

// ITRF2014 -> ETRF2014 (EPSG 8366, position vector) and ITRF2008 -> GDA94
// (EPSG 6276, coordinate frame) are geocentric transformations; PROJ runs
// them between cart steps on GRS80, the epoch as the fourth coordinate.
struct TimeCase {
  const char *code;
  Method method;
  Params params;
  double south, west, north, east;
};
const TimeCase kTimeCases[] = {
    {"8366", kTPV, {.drx = 8.5e-05, .dry = 0.000531, .drz = -0.00077, .t0 = 1989}, 32.88, -16.1,
     84.73, 40.18},
    {"8069", kTPV,
     {.tx = -0.0254, .ty = 0.0005, .tz = 0.1548, .rx = -0.0001, .rz = -0.00026, .ppm = -0.01129,
      .dtx = -0.0001, .dty = 0.0005, .dtz = 0.0033, .drz = -2e-05, .dppm = -0.00012, .t0 = 2010},
     -80, -180, 80, 180},
    {"6276", kTCF,
     {.tx = -0.08468, .ty = -0.01942, .tz = 0.03201, .rx = -0.0004254, .ry = 0.0022578,
      .rz = 0.0024015, .ppm = 0.00971, .dtx = 0.00142, .dty = 0.00134, .dtz = 0.0009,
      .drx = 0.0015461, .dry = 0.001182, .drz = 0.0011551, .dppm = 0.000109, .t0 = 1994},
     -47.2, 109.23, -8.88, 163.2},
};

#ifdef KO_HAVE_PROJ
TEST(TimeBasedHelmert, MatchesProjAtSeveralEpochs) {
  for (const TimeCase &c : kTimeCases) {
    ko::test::ProjOp helmert("EPSG", c.code);
    ASSERT_TRUE(helmert.ok()) << c.code;
    const std::string def =
        "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
        "+step +proj=cart +ellps=GRS80 +step " +
        helmert.proj_string() +
        " +step +inv +proj=cart +ellps=GRS80 +step +proj=unitconvert +xy_in=rad +xy_out=deg";
    ko::test::ProjOp proj(def.c_str());
    ASSERT_TRUE(proj.ok()) << def;
    const auto p = c.params.slots();
    const Case frame{c.code, c.method, &ko::test::kGrs80, &ko::test::kGrs80, c.params,
                     c.south, c.west, c.north, c.east};
    for (double epoch : {1989.0, 2000.5, 2010.0, 2024.25}) {
      const auto deg = ko::test::box_points(c.west, c.south, c.east, c.north, 5);
      auto pts = ko::test::to_radians(deg);
      const int n = static_cast<int>(pts.size() / 2);
      std::vector<double> z(n, 250.0);
      ASSERT_EQ(c.method.forward(args_for(frame, p, &epoch), n, pts.data(), z.data()), n);
      for (int i = 0; i < n; ++i) {
        const PJ_COORD r = proj.trans(PJ_FWD, deg[2 * i], deg[2 * i + 1], 250.0, epoch);
        EXPECT_LT(ko::test::horizontal_m(pts[2 * i], pts[2 * i + 1], r.v[0] * kDeg, r.v[1] * kDeg),
                  1e-3)
            << c.code << " epoch " << epoch;
        EXPECT_NEAR(z[i], r.v[2], 1e-3) << c.code << " epoch " << epoch;
      }
    }
  }
}
#endif

TEST(TimeBasedHelmert, NullEpochMeansTheReferenceTime) {
  for (const TimeCase &c : kTimeCases) {
    const auto p = c.params.slots();
    const Case frame{c.code, c.method, &ko::test::kGrs80, &ko::test::kGrs80, c.params,
                     c.south, c.west, c.north, c.east};
    double a[2] = {0.3, 0.8}, b[2] = {0.3, 0.8};
    double za = 10, zb = 10;
    const double t0 = c.params.t0;
    ASSERT_EQ(c.method.forward(args_for(frame, p), 1, a, &za), 1);
    ASSERT_EQ(c.method.forward(args_for(frame, p, &t0), 1, b, &zb), 1);
    EXPECT_EQ(a[0], b[0]);
    EXPECT_EQ(a[1], b[1]);
    EXPECT_EQ(za, zb);
    // And an epoch far from it moves the point by the rates.
    const double later = t0 + 30;
    double c2[2] = {0.3, 0.8}, zc = 10;
    ASSERT_EQ(c.method.forward(args_for(frame, p, &later), 1, c2, &zc), 1);
    EXPECT_GT(ko::test::horizontal_m(a[0], a[1], c2[0], c2[1]) + std::fabs(za - zc), 1e-3);
    // Round trip at that epoch.
    ASSERT_EQ(c.method.inverse(args_for(frame, p, &later), 1, c2, &zc), 1);
    EXPECT_NEAR(c2[0], 0.3, 1e-9 * kDeg);
    EXPECT_NEAR(c2[1], 0.8, 1e-9 * kDeg);
    EXPECT_NEAR(zc, 10.0, 1e-6);
  }
}

TEST(Helmert, WithoutHeightsWorksOnTheSpheroid) {
  // Without a height array the points sit on the source spheroid and the
  // output height is dropped: the same horizontal answer as height 0.
  const Case &c = kCases[5];
  const auto p = c.params.slots();
  double a[2] = {-1.5 * kDeg, 53 * kDeg}, b[2] = {a[0], a[1]};
  double zb = 0.0;
  ASSERT_EQ(c.method.forward(args_for(c, p), 1, a, nullptr), 1);
  ASSERT_EQ(c.method.forward(args_for(c, p), 1, b, &zb), 1);
  EXPECT_EQ(a[0], b[0]);
  EXPECT_EQ(a[1], b[1]);
  EXPECT_NE(zb, 0.0);
}

TEST(Helmert, NonFiniteAndInvalidInputs) {
  const Case &c = kCases[5];
  const auto p = c.params.slots();
  const double nan = std::nan(""), inf = INFINITY;
  double pts[] = {nan, 0.9, 0.1, inf, -inf, nan, 0.01, 0.9, 0.02, 0.91};
  double z[] = {0, 0, 0, nan, 5};
  const double before[] = {pts[0], pts[1], pts[2], pts[3], pts[4], pts[5], pts[6], pts[7]};
  for (const Method &m : {kGT, kPV, kCF, kMB, kTPV, kTCF}) {
    double work[10];
    std::copy(std::begin(pts), std::end(pts), work);
    double zw[5];
    std::copy(std::begin(z), std::end(z), zw);
    EXPECT_EQ(m.forward(args_for(c, p), 5, work, zw), 1);
    // The non-finite points, and the one with a NaN height, are untouched.
    for (int i = 0; i < 8; ++i) EXPECT_TRUE(std::memcmp(&work[i], &before[i], sizeof(double)) == 0);
    EXPECT_NE(work[8], pts[8]);
    EXPECT_EQ(m.forward(args_for(c, p), 0, work, zw), 0);
    EXPECT_EQ(m.forward(args_for(c, p), -1, work, zw), -1);
    EXPECT_EQ(m.inverse(args_for(c, p), 3, nullptr, zw), -1);
  }
  // Spheroids that are no spheroids: invalid arguments.
  const double flat[2] = {6378137.0, 1.0}, none[2] = {0.0, 0.0};
  for (const double *bad : {flat, none}) {
    MethodArgs a = args_for(c, p);
    a.sph2 = bad;
    double q[2] = {0.1, 0.2};
    EXPECT_EQ(kPV.forward(a, 1, q, nullptr), -1);
    EXPECT_EQ(kPV.inverse(a, 1, q, nullptr), -1);
    a.sph2 = nullptr;
    EXPECT_EQ(kGT.forward(a, 1, q, nullptr), -1);
  }
  const double bad_epoch = nan;
  double q[2] = {0.1, 0.2};
  EXPECT_EQ(ko::time_based_helmert_pv_forward(args_for(c, p, &bad_epoch), 1, q, nullptr), 0);
  EXPECT_EQ(q[0], 0.1);
}

}  // namespace
