// The four-wide kernels (SLEEF's AVX2 functions) and the scalar ones (the C
// library) of the conformal families give the same points, mark the same
// points as having no image, and a point's result does not depend on where
// it sits in the array.  The accuracy of either form against PROJ and the
// guidance note is each family's own test; this one keeps the two forms
// together, whichever the machine runs by default.
#include "projections/families.h"
#include "projections/simd.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct Case {
  const char *name;
  Family family;
  Spheroid spheroid;
  Parms parms;
  double west, south, east, north;  // degrees: the grid of forward points
};

#define KO_FAMILY(name) \
  Family { ko::proj::name##_forward, ko::proj::name##_inverse, ko::proj::name##_constants }

std::vector<Case> cases() {
  return {
      {"Lambert-93", KO_FAMILY(lcc), kGrs80,
       Parms{{slot::kCentralMeridian, dms(3)}, {slot::kStdParallel1, dms(49)},
             {slot::kStdParallel2, dms(44)}, {slot::kLatOrigin, dms(46, 30)}},
       -10.0, 35.0, 15.0, 90.0},
      {"south-orientated Lambert", KO_FAMILY(lcc), kClarke1866,
       Parms{{slot::kCentralMeridian, dms(-99)}, {slot::kStdParallel1, dms(-28)},
             {slot::kStdParallel2, dms(-30)}, {slot::kLatOrigin, dms(-27)}, {slot::kXScale, -1.0},
             {slot::kYScale, -1.0}},
       -120.0, -90.0, -80.0, -10.0},
      {"web Mercator", KO_FAMILY(mercator_auxs), kWgs84, Parms{{slot::kCentralMeridian, 0.0}},
       -180.0, -85.0, 180.0, 85.0},
      {"Mercator variant A", KO_FAMILY(mercator_a), kBessel,
       Parms{{slot::kCentralMeridian, dms(110)}, {slot::kScaleFactor, 0.997}}, 60.0, -80.0, 160.0,
       80.0},
      {"RD New", KO_FAMILY(double_stereographic), kBessel,
       Parms{{slot::kCentralMeridian, dms(5, 23, 15.5)}, {slot::kLatOrigin, dms(52, 9, 22.178)},
             {slot::kScaleFactor, 0.9999079}},
       -30.0, 0.0, 40.0, 90.0},
      {"Snyder's stereographic", KO_FAMILY(stereographic), kIntl1924,
       Parms{{slot::kCentralMeridian, dms(-40)}, {slot::kLatOrigin, dms(-30)}}, -100.0, -90.0, 20.0,
       30.0},
      {"Peninsula RSO", KO_FAMILY(rso_natorigin), kGrs80,
       Parms{{slot::kLatCenter, dms(4)}, {slot::kLonCenter, dms(102, 15)},
             {slot::kAzimuth, dms(323, 1, 32.8674)}, {slot::kRotation, dms(323, 7, 48.3685)},
             {slot::kScaleFactor, 0.99984}},
       90.0, -20.0, 115.0, 25.0},
      {"Hotine centre, due east", KO_FAMILY(hotine_azimuth_center), kBessel,
       Parms{{slot::kLatCenter, dms(46, 57, 8.66)}, {slot::kLonCenter, dms(7, 26, 22.5)},
             {slot::kAzimuth, dms(90)}},
       -20.0, 30.0, 35.0, 70.0},
  };
}

#undef KO_FAMILY

// A grid over the case's box with the awkward points added: the poles, a
// point beyond a pole, NaN, an infinite longitude.
std::vector<double> points(const Case &c) {
  std::vector<double> pts = grid(c.west, c.south, c.east, c.north, 13, 11);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  pts.insert(pts.end(), {0.3, ko::kHalfPi, 0.3, -ko::kHalfPi, 0.3, 1.7, nan, 0.5, 0.5, nan, inf, 0.5});
  return pts;
}

struct Converted {
  std::vector<double> xy;
  int count;
};

Converted convert(const Case &c, bool vector, bool forward, std::vector<double> xy) {
  ko::simd::set_vector_kernels(vector);
  Cached cached(c.family, c.spheroid, c.parms);
  const ko_proj_fn fn = forward ? c.family.forward : c.family.inverse;
  const int n = fn(c.spheroid.sph(), c.parms.data(), static_cast<int>(xy.size() / 2), xy.data(),
                   cached.ivals(), cached.dvals());
  ko::simd::set_vector_kernels(true);
  return {std::move(xy), n};
}

// Both forms agree to 1e-8 m forward and 1e-13 rad inverse (a few units of
// the last place of their 1-ulp functions), point by point, and refuse the
// same points.
TEST(SimdKernels, VectorAndScalarFormsAgree) {
  if (ko::simd::sleef4() == nullptr) GTEST_SKIP() << "no AVX2 or no libsleef.so.3: scalar kernels only";
  for (const Case &c : cases()) {
    SCOPED_TRACE(c.name);
    const std::vector<double> geo = points(c);
    const Converted fv = convert(c, true, true, geo), fs = convert(c, false, true, geo);
    EXPECT_EQ(fv.count, fs.count);
    EXPECT_GT(fv.count, 100);
    for (std::size_t i = 0; i < geo.size(); ++i) {
      if (fs.xy[i] == HUGE_VAL) {
        EXPECT_EQ(fv.xy[i], HUGE_VAL) << i;
        continue;
      }
      EXPECT_NEAR(fv.xy[i], fs.xy[i], 1e-8) << i;
    }
    const Converted iv = convert(c, true, false, fs.xy), is = convert(c, false, false, fs.xy);
    EXPECT_EQ(iv.count, is.count);
    for (std::size_t i = 0; i < geo.size(); i += 2) {
      if (is.xy[i] == HUGE_VAL || std::isnan(is.xy[i])) continue;
      // At a pole every longitude is the same point.
      const bool pole = std::fabs(std::fabs(is.xy[i + 1]) - ko::kHalfPi) <= 1e-9;
      if (!pole) {
        EXPECT_NEAR(iv.xy[i], is.xy[i], 1e-13) << i;
      }
      EXPECT_NEAR(iv.xy[i + 1], is.xy[i + 1], 1e-13) << i;
    }
  }
}

// Each point of an array converts as it does alone: the four-wide loop's
// groups and its padded tail give the same bits.
TEST(SimdKernels, APointConvertsTheSameWhereverItSits) {
  for (const Case &c : cases()) {
    SCOPED_TRACE(c.name);
    std::vector<double> geo = points(c);
    geo.resize(2 * 23);  // 23 points: five groups of four and a tail of three
    const Converted all = convert(c, true, true, geo);
    for (std::size_t i = 0; i < geo.size(); i += 2) {
      const Converted one = convert(c, true, true, {geo[i], geo[i + 1]});
      EXPECT_EQ(one.xy[0], all.xy[i]) << i / 2;
      EXPECT_EQ(one.xy[1], all.xy[i + 1]) << i / 2;
    }
    const Converted back = convert(c, true, false, all.xy);
    for (std::size_t i = 0; i < geo.size(); i += 2) {
      if (all.xy[i] == HUGE_VAL) continue;
      const Converted one = convert(c, true, false, {all.xy[i], all.xy[i + 1]});
      EXPECT_EQ(one.xy[0], back.xy[i]) << i / 2;
      EXPECT_EQ(one.xy[1], back.xy[i + 1]) << i / 2;
    }
  }
}

}  // namespace
