// The point frame: argument checks, the no-op short cut, prime meridians,
// angular and vertical units, latitude clamping, recentring, the Helmert
// family's cached similarities and Coordinate_Frame's delegation, the
// coordinate epoch of the time-based methods, composite transformations,
// and end-to-end conversions against PROJ (EPSG transformations 1188, 1314,
// 1673 and the NTF-RGF93 NTv2 grid) with their round trips.
#include "support/failing_alloc.h"
#include "tests/foundation/report_capture.h"
#include "tests/objects/object_support.h"
#include "tests/transformations/frame_support.h"
#include "tests/transformations/oracle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

using ko::test::GcsSpec;
using ko::test::Obj;
using ko::test::Slots;

constexpr double kDeg = 0.017453292519943295;
constexpr double kGrad = 0.015707963267948967;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

const GcsSpec kDegrees = ko::test::wgs84();
const GcsSpec kGrads{"GCS_WGS_1984_grad", 6378137.0, 298.257223563, 0.0, "Grad", kGrad};
// NTF with the Paris meridian, in grads (EPSG 4807): Clarke 1880 (IGN).
const GcsSpec kNtfParis{"GCS_NTF_Paris", 6378249.2, 293.4660212936269, 2.5969213, "Grad", kGrad};
const GcsSpec kNtf{"GCS_NTF", 6378249.2, 293.4660212936269};
const GcsSpec kRgf93{"GCS_RGF_1993", 6378137.0, 298.257222101};

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

int32_t run(ko_geogtran *gt, std::vector<double> &pts, int direction, double *z = nullptr) {
  return ko_geog_to_geog(gt, static_cast<int32_t>(pts.size() / 2), pts.data(), z, direction);
}

// A transformation whose GCSs differ only in what the frame handles.
ko_geogtran *between(const GcsSpec &g1, const GcsSpec &g2, const char *method = "Null") {
  return ko::test::make_gt("T", g1, g2, method, ko::test::no_parameters());
}

Slots seven_parameters(double rx, double ry, double rz) {
  return ko::test::make_slots({{"X_Axis_Translation", 582.0},
                               {"Y_Axis_Translation", 105.0},
                               {"Z_Axis_Translation", 414.0},
                               {"X_Axis_Rotation", rx},
                               {"Y_Axis_Rotation", ry},
                               {"Z_Axis_Rotation", rz},
                               {"Scale_Difference", 8.3}});
}

ko_geogtran *helmert(const char *method, double rx = -1.04, double ry = -0.35, double rz = 3.08) {
  Slots s = seven_parameters(rx, ry, rz);
  return ko_geogtran_new("DHDN to WGS 84", ko::test::make_gcs({"GCS_DHDN", 6377397.155, 299.1528128}),
                         ko::test::make_gcs(kDegrees), ko_method_new(method), s.data());
}

// ---------------------------------------------------------------------------
// Arguments.

TEST(Frame, RefusesBadArgumentsWithoutTouchingThePoints) {
  Obj<ko_geogtran> gt(helmert("Position_Vector"));
  ko::test::Ghost ghost;
  Obj<ko_parameter> not_a_gt(ko_parameter_new("X_Axis_Translation", 1.0));
  double pts[2] = {10.0, 50.0};
  double z[1] = {100.0};
  EXPECT_EQ(ko_geog_to_geog(gt.get(), 1, pts, z, 2), -1);
  EXPECT_EQ(ko_geog_to_geog(gt.get(), 1, pts, z, -1), -1);
  EXPECT_EQ(ko_geog_to_geog(gt.get(), -1, pts, z, 0), -1);
  EXPECT_EQ(ko_geog_to_geog(gt.get(), 1, nullptr, z, 0), -1);
  EXPECT_EQ(ko_geog_to_geog(nullptr, 1, pts, z, 0), -1);
  EXPECT_EQ(ko_geog_to_geog(static_cast<ko_geogtran *>(ghost.ptr()), 1, pts, z, 0), -1);
  EXPECT_EQ(ko_geog_to_geog(reinterpret_cast<ko_geogtran *>(not_a_gt.get()), 1, pts, z, 0), -1);
  EXPECT_EQ(ko_geog_to_geog_center(gt.get(), 1, pts, z, 2, 180.0), -1);
  EXPECT_EQ(pts[0], 10.0);
  EXPECT_EQ(pts[1], 50.0);
  EXPECT_EQ(z[0], 100.0);
  EXPECT_TRUE(ghost.untouched());
  // Nothing was loaded by a refused call.
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 0);
}

TEST(Frame, NoPointsAsksTheMethodAboutNoPoints) {
  Obj<ko_geogtran> gt(helmert("Position_Vector"));
  double pts[2] = {10.0, 50.0};
  EXPECT_EQ(ko_geog_to_geog(gt.get(), 0, pts, nullptr, 0), 0);
  EXPECT_EQ(pts[0], 10.0);
  // The call loaded the constants first.
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 1);
  // A no-op method answers 0 for no points as well.
  Obj<ko_geogtran> null(between(kDegrees, kGrads, "Null"));
  EXPECT_EQ(ko_geog_to_geog(null.get(), 0, pts, nullptr, 0), 0);
}

// ---------------------------------------------------------------------------
// No-op methods, prime meridians, units.

TEST(Frame, NullBetweenEqualSystemsLeavesEveryBitAlone) {
  Obj<ko_geogtran> gt(between(kDegrees, kDegrees, "Null"));
  std::vector<double> pts = {100.0, 100.0, -0.0, -95.0, 540.0, kNaN, 1e300, -1e-310};
  std::vector<double> z = {12.5, -0.0, kNaN, 7.0};
  const auto pts0 = pts;
  const auto z0 = z;
  for (int direction : {0, 1}) {
    EXPECT_EQ(run(gt.get(), pts, direction, z.data()), 4);
    for (std::size_t i = 0; i < pts.size(); ++i) EXPECT_TRUE(same_bits(pts[i], pts0[i])) << i;
    for (std::size_t i = 0; i < z.size(); ++i) EXPECT_TRUE(same_bits(z[i], z0[i])) << i;
  }
  // The short cut comes before the constants.
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 0);
}

TEST(Frame, PrimeMeridiansShiftLongitudesExactly) {
  // Paris is 2.33722917 degrees east of Greenwich.
  const GcsSpec paris{"GCS_Paris", 6378137.0, 298.257223563, 2.33722917};
  Obj<ko_geogtran> gt(between(paris, kDegrees, "Longitude_Rotation"));
  const double pm = 2.33722917 * kDeg;
  const std::vector<double> lons = {0.0, 2.5, -60.0, 178.5, -179.9, 179.0};
  std::vector<double> pts;
  for (double lon : lons) pts.insert(pts.end(), {lon, 48.8});
  ASSERT_EQ(run(gt.get(), pts, 0), 6);
  for (std::size_t i = 0; i < lons.size(); ++i) {
    // Greenwich longitude, folded into [-180, 180].
    double want = lons[i] * kDeg + pm;
    if (want > M_PI) want -= 2 * M_PI;
    EXPECT_NEAR(pts[2 * i], want / kDeg, 1e-12) << lons[i];
    EXPECT_NEAR(pts[2 * i] - lons[i], lons[i] > 177.0 ? 2.33722917 - 360.0 : 2.33722917, 1e-11);
    EXPECT_NEAR(pts[2 * i + 1], 48.8, 1e-13);
  }
  // And back: the Paris longitudes again.
  ASSERT_EQ(run(gt.get(), pts, 1), 6);
  for (std::size_t i = 0; i < lons.size(); ++i) EXPECT_NEAR(pts[2 * i], lons[i], 1e-12);
}

TEST(Frame, UnitsOfBothSidesAreApplied) {
  // Angular units: grads to degrees.
  Obj<ko_geogtran> gt(between(kGrads, kDegrees, "Unit_Change"));
  std::vector<double> pts = {100.0, 50.0, -250.0, -100.0};
  ASSERT_EQ(run(gt.get(), pts, 0), 2);
  EXPECT_NEAR(pts[0], 90.0, 1e-13);
  EXPECT_NEAR(pts[1], 45.0, 1e-13);
  EXPECT_NEAR(pts[2], 135.0, 1e-13);  // -225 degrees folded
  EXPECT_NEAR(pts[3], -90.0, 1e-13);

  // Vertical units: feet to metres; the latitudes are clamped on the way.
  Obj<ko_geogtran> heights(ko_geogtran_new("T", ko::test::make_gcs3(kDegrees, "Foot", 0.3048),
                                           ko::test::make_gcs3(kDegrees, "Meter", 1.0),
                                           ko_method_new("Null"), Slots{}.data()));
  ASSERT_NE(heights, nullptr);
  std::vector<double> p3 = {10.0, 100.0, 20.0, -30.0};
  std::vector<double> z = {1000.0, -3.0};
  ASSERT_EQ(run(heights.get(), p3, 0, z.data()), 2);
  EXPECT_EQ(z[0], 1000.0 * 0.3048);
  EXPECT_EQ(z[1], -3.0 * 0.3048);
  EXPECT_NEAR(p3[1], 90.0, 1e-12);
  EXPECT_NEAR(p3[3], -30.0, 1e-14);
  ASSERT_EQ(run(heights.get(), p3, 1, z.data()), 2);
  EXPECT_NEAR(z[0], 1000.0, 1e-12);
  EXPECT_NEAR(z[1], -3.0, 1e-15);
}

TEST(Frame, LatitudesBeyondThePolesAreClampedBeforeTheMethod) {
  // An offset of -1 degree of latitude: a latitude of 100 degrees seen by
  // the method as 90 comes out as 89 (unclamped, it would come out as 90).
  Obj<ko_geogtran> gt(ko::test::make_gt("T", kDegrees, kDegrees, "Geographic_2D_Offset",
                                        {{"Latitude_Offset", -3600.0},
                                         {"Longitude_Offset", 0.0}}));
  std::vector<double> pts = {10.0, 100.0, 10.0, -100.0, 10.0, 30.0};
  ASSERT_EQ(run(gt.get(), pts, 0), 3);
  EXPECT_NEAR(pts[1], 89.0, 1e-12);
  EXPECT_NEAR(pts[3], -90.0, 1e-12);  // -91 clamped on the way out
  EXPECT_NEAR(pts[5], 29.0, 1e-12);
}

TEST(Frame, WrappersAndRadiansWithoutUnitConversion) {
  Obj<ko_geogtran> gt(helmert("Position_Vector"));
  const std::vector<double> deg = {7.0, 51.0, 13.4, 52.5};
  auto a = deg, b = deg, c = deg, d = deg;
  EXPECT_EQ(run(gt.get(), a, 0), 2);
  EXPECT_EQ(ko_geog1_to_geog2(gt.get(), 2, b.data(), nullptr), 2);
  EXPECT_EQ(ko_geog_to_geog_ext(gt.get(), nullptr, 2, c.data(), nullptr, 0), 2);
  EXPECT_EQ(a, b);
  EXPECT_EQ(a, c);
  EXPECT_EQ(ko_geog2_to_geog1(gt.get(), 2, d.data(), nullptr), 2);
  auto e = deg;
  EXPECT_EQ(run(gt.get(), e, 1), 2);
  EXPECT_EQ(d, e);
  // Radians in, radians out.
  auto rad = ko::test::to_radians(deg);
  EXPECT_EQ(ko_geog_to_geog_ext_internal(gt.get(), nullptr, 0, 2, rad.data(), nullptr, 0), 2);
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(rad[i] / kDeg, a[i], 1e-13);
}

TEST(Frame, RecentringAboutACentre) {
  Obj<ko_geogtran> same(between(kDegrees, kDegrees));
  std::vector<double> pts = {-170.0, 10.0, 170.0, 20.0, 0.0, 30.0};
  ASSERT_EQ(ko_geog_to_geog_center(same.get(), 3, pts.data(), nullptr, 0, 180.0), 3);
  EXPECT_NEAR(pts[0], 190.0, 1e-12);
  EXPECT_NEAR(pts[2], 170.0, 1e-12);
  EXPECT_NEAR(pts[4], 0.0, 1e-12);  // 180 away: either end of the range
  EXPECT_EQ(pts[1], 10.0);
  // A centre of zero, or within 2^-48 of it, leaves the longitudes.
  std::vector<double> q = {-170.0, 10.0};
  ASSERT_EQ(ko_geog_to_geog_center(same.get(), 1, q.data(), nullptr, 0, 1e-16), 1);
  EXPECT_EQ(q[0], -170.0);

  // The centre is in the output unit: grads for direction 0 here, degrees
  // for direction 1.
  Obj<ko_geogtran> gt(between(kDegrees, kGrads, "Unit_Change"));
  std::vector<double> r = {-170.0, 10.0};
  ASSERT_EQ(ko_geog_to_geog_center(gt.get(), 1, r.data(), nullptr, 0, 200.0), 1);
  EXPECT_NEAR(r[0], -170.0 / 0.9 + 400.0, 1e-11);
  ASSERT_EQ(ko_geog_to_geog_center(gt.get(), 1, r.data(), nullptr, 1, -180.0), 1);
  EXPECT_NEAR(r[0], -170.0, 1e-11);
}

// ---------------------------------------------------------------------------
// The Helmert family.

std::vector<double> sample_radians() {
  return ko::test::to_radians(ko::test::box_points(6.0, 47.0, 15.0, 55.0, 4));
}

// Runs a method slot on the transformation's own value array.
std::vector<double> call_slot(ko_mth_fn fn, ko_geogtran *gt, void *extra = nullptr) {
  double parms[KO_PARM_COUNT];
  ko_geogtran_parm_array(ko_geogtran_parameters_ptr(gt), parms);
  auto pts = sample_radians();
  std::vector<double> z(pts.size() / 2, 250.0);
  const auto n = static_cast<int32_t>(z.size());
  EXPECT_EQ(fn(gt, parms, extra, n, pts.data(), z.data()), n);
  pts.insert(pts.end(), z.begin(), z.end());
  return pts;
}

TEST(Helmert, CachedSimilaritiesGiveTheKernelsResultsBitForBit) {
  const char *methods[] = {"Bursa_Wolf", "Position_Vector", "Coordinate_Frame",
                           "Molodensky_Badekas", "Time_Based_Helmert_Position_Vector",
                           "Time_Based_Helmert_Coordinate_Frame"};
  for (const char *method : methods) {
    SCOPED_TRACE(method);
    Obj<ko_method> m(ko_method_new(method));
    Slots s{};
    ASSERT_GT(ko_method_defaults(m.get(), s.data()), 0);
    // Non-zero values everywhere (rotation origin and rates included).
    for (int i = 0; i < KO_PARM_COUNT; ++i)
      if (s[i] != nullptr) ko_parameter_value_set(s[i], 0.5 + i * 1.25);
    ko_geogtran *raw = ko_geogtran_new("T", ko::test::make_gcs({"A", 6377397.155, 299.1528128}),
                                       ko::test::make_gcs(kDegrees), m.release(), s.data());
    ASSERT_NE(raw, nullptr);
    Obj<ko_geogtran> gt(raw);
    const ko_methlist_entry *e = ko_methlist_from_name(method);
    const auto fwd_kernel = call_slot(e->forward, gt.get());
    const auto inv_kernel = call_slot(e->inverse, gt.get());
    ASSERT_EQ(ko_geogtran_load_constants(gt.get()), 1);
    ASSERT_EQ(ko_geogtran_constants_status(gt.get()), 1);
    const auto fwd_cached = call_slot(e->forward, gt.get());
    const auto inv_cached = call_slot(e->inverse, gt.get());
    for (std::size_t i = 0; i < fwd_kernel.size(); ++i) {
      EXPECT_TRUE(same_bits(fwd_kernel[i], fwd_cached[i])) << i;
      EXPECT_TRUE(same_bits(inv_kernel[i], inv_cached[i])) << i;
    }
  }
}

TEST(Helmert, CoordinateFrameIsBursaWolfWithItsOwnConvention) {
  Obj<ko_geogtran> cf(helmert("Coordinate_Frame"));
  Obj<ko_geogtran> pv(helmert("Position_Vector"));
  Obj<ko_geogtran> pv_negated(helmert("Position_Vector", 1.04, 0.35, -3.08));
  // Coordinate_Frame's slot is Bursa_Wolf's, which takes the coordinate
  // frame convention for a Coordinate_Frame transformation ...
  EXPECT_EQ(call_slot(ko_mth_coordinate_frame_vector.forward, cf.get()),
            call_slot(ko_mth_bursa_wolf_vector.forward, cf.get()));
  EXPECT_EQ(call_slot(ko_mth_coordinate_frame_vector.inverse, cf.get()),
            call_slot(ko_mth_bursa_wolf_vector.inverse, cf.get()));
  // ... which is the position vector one with the rotations negated (IOGP
  // guidance note 7-2, 4.4.3.2), and not the position vector one itself.
  auto a = ko::test::box_points(6.0, 47.0, 15.0, 55.0, 5);
  auto b = a, c = a;
  ASSERT_EQ(run(cf.get(), a, 0), 25);
  ASSERT_EQ(run(pv_negated.get(), b, 0), 25);
  ASSERT_EQ(run(pv.get(), c, 0), 25);
  EXPECT_EQ(a, b);
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::fabs(a[i] - c[i]));
  EXPECT_GT(largest, 1e-5);  // the rotations matter by metres
}

#ifdef KO_HAVE_PROJ
// The fifteen-parameter transformation at a coordinate epoch, against PROJ's
// helmert with rates.
TEST(Helmert, TimeBasedMethodsTakeTheEpochThroughTheExtraPointer) {
  struct Case {
    const char *method;
    const char *convention;
  } cases[] = {{"Time_Based_Helmert_Position_Vector", "position_vector"},
               {"Time_Based_Helmert_Coordinate_Frame", "coordinate_frame"}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.method);
    Obj<ko_geogtran> gt(ko::test::make_gt(
        "T", kRgf93, kRgf93, c.method,
        {{"X_Axis_Translation", 100.0},     {"Y_Axis_Translation", -50.0},
         {"Z_Axis_Translation", 30.0},      {"X_Axis_Rotation", 1.2},
         {"Y_Axis_Rotation", -0.8},         {"Z_Axis_Rotation", 0.5},
         {"Scale_Difference", 3.0},         {"X_Axis_Translation_Rate", 0.5},
         {"Y_Axis_Translation_Rate", -0.3}, {"Z_Axis_Translation_Rate", 0.2},
         {"X_Axis_Rotation_Rate", 0.01},    {"Y_Axis_Rotation_Rate", 0.02},
         {"Z_Axis_Rotation_Rate", -0.03},   {"Scale_Difference_Rate", 0.1},
         {"Reference_Time", 2010.0}}));
    ASSERT_NE(gt, nullptr);
    const std::string def =
        std::string("+proj=pipeline +step +proj=cart +ellps=GRS80 +step +proj=helmert "
                    "+x=100 +y=-50 +z=30 +rx=1.2 +ry=-0.8 +rz=0.5 +s=3 +dx=0.5 +dy=-0.3 "
                    "+dz=0.2 +drx=0.01 +dry=0.02 +drz=-0.03 +ds=0.1 +t_epoch=2010 "
                    "+convention=") +
        c.convention + " +step +inv +proj=cart +ellps=GRS80";
    ko::test::ProjOp proj(def.c_str());
    ASSERT_TRUE(proj.ok());
    const auto deg = ko::test::box_points(-5.0, 42.0, 8.0, 51.0, 4);
    for (double epoch : {2025.5, 2010.0, 1995.25}) {
      auto pts = deg;
      std::vector<double> z(pts.size() / 2, 120.0);
      const auto n = static_cast<int32_t>(z.size());
      ASSERT_EQ(ko_geog_to_geog_ext(gt.get(), &epoch, n, pts.data(), z.data(), 0), n);
      for (int32_t i = 0; i < n; ++i) {
        const PJ_COORD want =
            proj.trans(PJ_FWD, deg[2 * i] * kDeg, deg[2 * i + 1] * kDeg, 120.0, epoch);
        EXPECT_LT(ko::test::horizontal_m(pts[2 * i] * kDeg, pts[2 * i + 1] * kDeg,
                                         want.lpz.lam, want.lpz.phi),
                  1e-3);
        EXPECT_NEAR(z[i], want.lpz.z, 1e-3);
      }
      // Without an epoch the parameters apply at the reference time.
      if (epoch == 2010.0) {
        auto at_ref = deg;
        std::vector<double> z_ref(z.size(), 120.0);
        ASSERT_EQ(ko_geog_to_geog(gt.get(), n, at_ref.data(), z_ref.data(), 0), n);
        for (int32_t i = 0; i < 2 * n; ++i) EXPECT_NEAR(at_ref[i], pts[i], 1e-12);
      }
      ASSERT_EQ(ko_geog_to_geog_ext(gt.get(), &epoch, n, pts.data(), z.data(), 1), n);
      for (int32_t i = 0; i < 2 * n; ++i) EXPECT_NEAR(pts[i], deg[i], 1e-9);
    }
    double nan_epoch = kNaN;
    auto pts = deg;
    EXPECT_EQ(ko_geog_to_geog_ext(gt.get(), &nan_epoch, 2, pts.data(), nullptr, 0), 0);
  }
}
#endif

// ---------------------------------------------------------------------------
// End to end against PROJ.

#ifdef KO_HAVE_PROJ
// The parameters of an EPSG transformation as PROJ reads them from its
// database, as parameter objects in their EPSG units.
Slots slots_from_proj(const char *code) {
  Slots slots{};
  PJ_CONTEXT *ctx = proj_context_create();
  PJ *op = proj_create_from_database(ctx, "EPSG", code, PJ_CATEGORY_COORDINATE_OPERATION, 0,
                                     nullptr);
  EXPECT_NE(op, nullptr) << code;
  const struct {
    const char *epsg;
    const char *name;
  } names[] = {{"8605", "X_Axis_Translation"}, {"8606", "Y_Axis_Translation"},
               {"8607", "Z_Axis_Translation"}, {"8608", "X_Axis_Rotation"},
               {"8609", "Y_Axis_Rotation"},    {"8610", "Z_Axis_Rotation"},
               {"8611", "Scale_Difference"}};
  const int count = op != nullptr ? proj_coordoperation_get_param_count(ctx, op) : 0;
  for (int i = 0; i < count; ++i) {
    const char *name, *auth, *pcode, *text, *unit, *unit_auth, *unit_code, *category;
    double value, factor;
    proj_coordoperation_get_param(ctx, op, i, &name, &auth, &pcode, &value, &text, &factor, &unit,
                                  &unit_auth, &unit_code, &category);
    for (const auto &n : names) {
      if (std::strcmp(n.epsg, pcode) != 0) continue;
      ko_unit *u = nullptr;
      if (std::strcmp(category, "linear") == 0)
        u = reinterpret_cast<ko_unit *>(ko_linunit_new(unit, factor));
      else if (std::strcmp(category, "angular") == 0)
        u = reinterpret_cast<ko_unit *>(ko_angunit_new(unit, factor));
      else
        u = reinterpret_cast<ko_unit *>(ko_scaleunit_new(unit, factor));
      ko_parameter *p = ko_parameter_ext_new(n.name, u, value);
      slots[ko_parmlist_from_name(n.name)->index] = p;
    }
  }
  proj_destroy(op);
  proj_context_destroy(ctx);
  return slots;
}

struct EpsgCase {
  const char *code;
  const char *method;
  GcsSpec from, to;
  double west, south, east, north;  // degrees, inside the area of use
};

TEST(EndToEnd, EpsgTransformationsMatchProjWithinAMillimetre) {
  const EpsgCase cases[] = {
      {"1188", "Geocentric_Translation", {"GCS_North_American_1983", 6378137.0, 298.257222101},
       kDegrees, -125.0, 25.0, -67.0, 49.0},
      {"1314", "Position_Vector", {"GCS_OSGB_1936", 6377563.396, 299.3249646}, kDegrees, -7.5,
       50.0, 1.7, 60.8},
      {"1673", "Coordinate_Frame", {"GCS_Deutsches_Hauptdreiecksnetz", 6377397.155, 299.1528128},
       kDegrees, 6.0, 47.3, 15.0, 55.0},
  };
  for (const EpsgCase &c : cases) {
    SCOPED_TRACE(c.code);
    Slots slots = slots_from_proj(c.code);
    Obj<ko_geogtran> gt(ko_geogtran_new(c.code, ko::test::make_gcs(c.from),
                                        ko::test::make_gcs(c.to), ko_method_new(c.method),
                                        slots.data()));
    ASSERT_NE(gt, nullptr);
    ko::test::ProjOp proj("EPSG", c.code);
    ASSERT_TRUE(proj.ok());
    const auto deg = ko::test::box_points(c.west, c.south, c.east, c.north, 12);
    auto pts = deg;
    const auto n = static_cast<int32_t>(deg.size() / 2);
    ASSERT_EQ(run(gt.get(), pts, 0), n);
    double worst = 0.0;
    for (int32_t i = 0; i < n; ++i) {
      // EPSG axis order in PROJ: latitude first.
      const PJ_COORD want = proj.trans(PJ_FWD, deg[2 * i + 1], deg[2 * i]);
      worst = std::max(worst, ko::test::horizontal_m(pts[2 * i] * kDeg, pts[2 * i + 1] * kDeg,
                                                     want.v[1] * kDeg, want.v[0] * kDeg));
    }
    EXPECT_LT(worst, 1e-3);
    // The reverse direction, as PROJ does it in two dimensions (height 0
    // on both sides).
    auto back_pts = pts;
    ASSERT_EQ(run(gt.get(), back_pts, 1), n);
    for (int32_t i = 0; i < n; ++i) {
      const PJ_COORD want = proj.trans(PJ_INV, pts[2 * i + 1], pts[2 * i]);
      EXPECT_LT(ko::test::horizontal_m(back_pts[2 * i] * kDeg, back_pts[2 * i + 1] * kDeg,
                                       want.v[1] * kDeg, want.v[0] * kDeg),
                1e-3);
    }
    // Forward then inverse with the heights carried along: back to the
    // start.
    auto trip = deg;
    std::vector<double> z(deg.size() / 2, 35.0);
    ASSERT_EQ(run(gt.get(), trip, 0, z.data()), n);
    ASSERT_EQ(run(gt.get(), trip, 1, z.data()), n);
    for (int32_t i = 0; i < 2 * n; ++i) EXPECT_NEAR(trip[i], deg[i], 1e-9);
    for (int32_t i = 0; i < n; ++i) EXPECT_NEAR(z[i], 35.0, 1e-6);
  }
}

// NTF (Paris, grads) to RGF93 by the NTv2 grid: units, the Paris meridian
// and the grid end to end.  PROJ's hgridshift gives the shift in Greenwich
// radians; the grads and the meridian are applied here by their
// definitions.
TEST(EndToEnd, Ntv2FromParisGradsMatchesProjWithinAMillimetre) {
  if (!ko::test::file_exists(ko::test::kNtfGrid)) GTEST_SKIP() << "no " << ko::test::kNtfGrid;
  ko::test::DataDir dir;
  dir.link("ntv2", ko::test::kNtfGrid, "ntf_r93.gsb");
  Obj<ko_geogtran> gt(ko::test::make_gt("NTF (Paris) to RGF93", kNtfParis, kRgf93, "NTv2",
                                        {{"Dataset_ntf_r93.gsb", 0.0}}));
  ASSERT_NE(gt, nullptr);
  const std::string def = std::string("+proj=hgridshift +grids=") + ko::test::kNtfGrid;
  ko::test::ProjOp proj(def.c_str());
  ASSERT_TRUE(proj.ok());
  const double paris = 2.5969213 * M_PI / 200.0;
  std::vector<double> grads;
  for (double lon : {-4.5, -1.0, 2.0, 5.5, 8.0})
    for (double lat : {43.0, 45.5, 47.0, 49.0, 50.8})
      grads.insert(grads.end(), {(lon - 2.33722917) / 0.9, lat / 0.9});
  const std::size_t inside = grads.size() / 2;
  grads.insert(grads.end(), {(-4.0 - 2.33722917) / 0.9, 40.0 / 0.9});  // Spain: off the grid
  auto pts = grads;
  const auto n = static_cast<int32_t>(pts.size() / 2);
  ASSERT_EQ(run(gt.get(), pts, 0), static_cast<int32_t>(inside));
  for (std::size_t i = 0; i < inside; ++i) {
    const PJ_COORD want = proj.trans(PJ_FWD, grads[2 * i] * M_PI / 200.0 + paris,
                                     grads[2 * i + 1] * M_PI / 200.0);
    EXPECT_LT(ko::test::horizontal_m(pts[2 * i] * kDeg, pts[2 * i + 1] * kDeg, want.lp.lam,
                                     want.lp.phi),
              1e-3)
        << i;
  }
  // The point off the grid is not counted and comes back in the output
  // units and meridian from its own value.
  EXPECT_NEAR(pts[2 * inside], -4.0, 1e-12);
  EXPECT_NEAR(pts[2 * inside + 1], 40.0, 1e-12);
  // Round trip.
  ASSERT_EQ(run(gt.get(), pts, 1), static_cast<int32_t>(inside));
  for (int32_t i = 0; i < 2 * n; ++i) EXPECT_NEAR(pts[i] * 0.9, grads[i] * 0.9, 1e-9);
}
#endif

TEST(EndToEnd, AMissingGridConvertsNothing) {
  ko::test::DataDir dir;
  ko::test::ReportCapture capture;
  Obj<ko_geogtran> gt(ko::test::make_gt("NTF to RGF93", kNtf, kRgf93, "NTv2",
                                        {{"Dataset_missing.gsb", 0.0}}));
  std::vector<double> pts = {2.0, 47.0};
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ(run(gt.get(), pts, 0), 0);
    EXPECT_EQ(pts[0], 2.0);
    EXPECT_EQ(pts[1], 47.0);
    EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  }
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(std::string(capture.reports()[0].message),
            "Invalid parameter value argument: NTF to RGF93: cannot read grid " +
                dir.path("ntv2", "missing.gsb"));
}

// ---------------------------------------------------------------------------
// Composite transformations.

// A two-step chain A (degrees) -> B (degrees) -> C (grads): a longitude
// offset of +1 degree, then a change of unit.
ko_gtlist_entry *offset_then_grads() {
  ko_gtlist_entry *entry = ko_gtlist_entry_new(2);
  EXPECT_EQ(ko_gtlist_entry_set_step(entry, 0,
                                     ko::test::make_gt("A to B", kDegrees, kDegrees,
                                                       "Geographic_2D_Offset",
                                                       {{"Longitude_Offset", 3600.0},
                                                        {"Latitude_Offset", 0.0}}),
                                     0),
            1);
  EXPECT_EQ(ko_gtlist_entry_set_step(entry, 1, between(kDegrees, kGrads, "Unit_Change"), 0), 1);
  return entry;
}

TEST(Composite, RunsTheStepsInOrderOrReversed) {
  ko_gtlist_entry *entry = offset_then_grads();
  std::vector<double> pts = {10.0, 45.0};
  ASSERT_EQ(ko_factory_gtlist_geog_to_geog(entry, 1, pts.data(), nullptr, 0), 1);
  EXPECT_NEAR(pts[0], 11.0 / 0.9, 1e-12);
  EXPECT_NEAR(pts[1], 50.0, 1e-12);
  // Reversed: grads to degrees first, then the offset taken off.  (The
  // other order would take 1 grad, not 1 degree, off.)
  std::vector<double> q = {100.0, 50.0};
  ASSERT_EQ(ko_factory_gtlist_geog_to_geog(entry, 1, q.data(), nullptr, 1), 1);
  EXPECT_NEAR(q[0], 89.0, 1e-12);
  EXPECT_NEAR(q[1], 45.0, 1e-12);
  // Without unit conversion the values stay radians throughout.
  std::vector<double> r = {10.0 * kDeg, 45.0 * kDeg};
  ASSERT_EQ(ko_gtlist_geog_to_geog_internal(entry, 0, 1, r.data(), nullptr, 0), 1);
  EXPECT_NEAR(r[0], 11.0 * kDeg, 1e-15);
  ko_gtlist_entry_del(entry);
}

TEST(Composite, ArgumentsAndEmptyChains) {
  ko_gtlist_entry *entry = offset_then_grads();
  double pts[2] = {10.0, 45.0};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(nullptr, 1, pts, nullptr, 0), -1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry, 1, nullptr, nullptr, 0), -1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry, int64_t{1} << 31, pts, nullptr, 0), -1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry, -1, pts, nullptr, 0), -1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry, 1, pts, nullptr, 2), -1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry, 0, pts, nullptr, 0), 0);
  ko_gtlist_entry empty{};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(&empty, 1, pts, nullptr, 0), 0);
  EXPECT_EQ(pts[0], 10.0);
  // A step without a transformation: the frame refuses it.
  ko_gtlist_entry *holes = ko_gtlist_entry_new(1);
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(holes, 1, pts, nullptr, 0), -1);
  ko_gtlist_entry_del(holes);
  ko_gtlist_entry_del(entry);
}

#ifdef KO_HAVE_PROJ
// NTF (degrees) -> RGF93 (degrees) by the grid, then RGF93 in grads.  Run
// backwards, the grid step runs last, so its count is the answer; a point
// off the grid goes through both steps as it stands.
TEST(Composite, ReversedChainReturnsTheFirstStepsCount) {
  if (!ko::test::file_exists(ko::test::kNtfGrid)) GTEST_SKIP() << "no " << ko::test::kNtfGrid;
  ko::test::DataDir dir;
  dir.link("ntv2", ko::test::kNtfGrid, "ntf_r93.gsb");
  ko_gtlist_entry *entry = ko_gtlist_entry_new(2);
  ko_gtlist_entry_set_step(entry, 0,
                           ko::test::make_gt("NTF to RGF93", kNtf, kRgf93, "NTv2",
                                             {{"Dataset_ntf_r93.gsb", 0.0}}),
                           0);
  ko_gtlist_entry_set_step(entry, 1, between(kRgf93, {"RGF93 grads", 6378137.0, 298.257222101,
                                                      0.0, "Grad", kGrad},
                                             "Unit_Change"),
                           0);
  const std::string def = std::string("+proj=hgridshift +grids=") + ko::test::kNtfGrid;
  ko::test::ProjOp proj(def.c_str());
  ASSERT_TRUE(proj.ok());
  const std::vector<double> grads = {2.0 / 0.9, 47.0 / 0.9, 6.0 / 0.9, 44.0 / 0.9,
                                     -20.0 / 0.9, 30.0 / 0.9};
  auto pts = grads;
  ASSERT_EQ(ko_factory_gtlist_geog_to_geog(entry, 3, pts.data(), nullptr, 1), 2);
  for (int i = 0; i < 2; ++i) {
    const PJ_COORD want = proj.trans(PJ_INV, grads[2 * i] * 0.9 * kDeg, grads[2 * i + 1] * 0.9 * kDeg);
    EXPECT_LT(ko::test::horizontal_m(pts[2 * i] * kDeg, pts[2 * i + 1] * kDeg, want.lp.lam,
                                     want.lp.phi),
              1e-3);
  }
  EXPECT_NEAR(pts[4], -20.0, 1e-12);
  EXPECT_NEAR(pts[5], 30.0, 1e-12);
  // Forward, the unit change runs last and counts every point.
  ASSERT_EQ(ko_factory_gtlist_geog_to_geog(entry, 3, pts.data(), nullptr, 0), 3);
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(pts[i], grads[i], 1e-9);
  ko_gtlist_entry_del(entry);
}
#endif

TEST(Composite, ListsOwnTheirEntriesSteps) {
  ko_gtlist_entry *list = ko_gtlist_new(3);
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(ko_gtlist_entry_init(&list[0], 2), 1);
  ASSERT_EQ(ko_gtlist_entry_init(&list[1], 1), 1);
  EXPECT_EQ(ko_gtlist_entry_init(&list[2], 0), 0);
  EXPECT_EQ(list[2].count, 0);
  EXPECT_EQ(list[3].count, 0);
  ko_geogtran *gt = between(kDegrees, kGrads, "Unit_Change");
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[0], 0, gt, 0), 1);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[0], 0, gt, 1), 1);  // the same one again
  EXPECT_EQ(list[0].steps[0].direction, 1);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[0], 1, between(kGrads, kDegrees, "Unit_Change"), 0),
            1);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[1], 0, between(kDegrees, kDegrees), 1), 1);
  // Refused: the object stays the caller's.
  ko_geogtran *spare = between(kDegrees, kDegrees);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[1], 1, spare, 0), 0);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[1], 0, spare, 2), 0);
  EXPECT_EQ(ko_gtlist_entry_set_step(&list[1], 0, nullptr, 0), 0);
  EXPECT_TRUE(ko_geogtran_p(spare));
  ko_geogtran_del(spare);
  // The first step reversed takes 100 grads to 90 degrees; the second
  // reads those as grads: 81 degrees.
  std::vector<double> pts = {100.0, 50.0};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(&list[0], 1, pts.data(), nullptr, 0), 1);
  EXPECT_NEAR(pts[0], 81.0, 1e-12);
  EXPECT_EQ(ko_gtlist_del(list), nullptr);  // the sanitizer build checks what it frees
  EXPECT_EQ(ko_gtlist_del(nullptr), nullptr);
  EXPECT_EQ(ko_gtlist_entry_del(nullptr), nullptr);
  EXPECT_EQ(ko_gtlist_entry_new(0), nullptr);
  EXPECT_EQ(ko_gtlist_new(-1), nullptr);
}

TEST(Composite, ConstructorsLeaveNothingBehindWhenMemoryRunsOut) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_gtlist_entry *e = ko_gtlist_entry_new(3);
              const bool ok = e != nullptr && e->count == 3 && e->steps != nullptr;
              ko_gtlist_entry_del(e);
              return ok;
            }),
            0);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_gtlist_entry *list = ko_gtlist_new(4);
              const bool ok = list != nullptr && ko_gtlist_entry_init(&list[0], 2) == 1;
              ko_gtlist_del(list);
              return ok;
            }),
            0);
}

}  // namespace
