// Cassini-Soldner and its hyperbolic form: the IOGP guidance note 7-2
// examples (methods 9806 and 9833), agreement with PROJ's cass (and
// cass +hyperbolic), and the scale factor.
#include "projections/families.h"
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kCassini{ko::proj::cassini_forward, ko::proj::cassini_inverse,
                      ko::proj::cassini_constants};

// Clarke 1858 in Clarke's feet (0.3047972654 m) and Clarke's links of the
// Trinidad grid; Clarke 1880 (international foot) and links of Fiji.
const Spheroid kClarke1858 = spheroid_ab(20926348.0 * 0.3047972654, 20855233.0 * 0.3047972654);
constexpr double kClarkeLink = 0.201166195164;
const Spheroid kClarke1880Ft = spheroid_rf(6378306.3696, 293.4663076556349);
constexpr double kLink = 0.201168;

const Parms kTrinidad{{slot::kLatOrigin, dms(10, 26, 30)}, {slot::kCentralMeridian, dms(-61, 20)}};
const Parms kVanuaLevu{{slot::kLatOrigin, dms(-16, 15)},
                       {slot::kCentralMeridian, dms(179, 20)},
                       {slot::kOption, 1.0}};

// Printed to 0.01 link (2 mm); 0.005 link is far below 0.0005" (1.5 cm).
TEST(Cassini, GuidanceNoteExamplesBothWays) {
  check_guidance_example({"Trinidad 1903 / Trinidad Grid (9806)", &kCassini, kClarke1858, kTrinidad,
                          kClarkeLink, 430000.0, 325000.0, dms(-62), dms(10), 66644.94, 82536.22});
  check_guidance_example({"Vanua Levu 1915 / Vanua Levu Grid (9833)", &kCassini, kClarke1880Ft,
                          kVanuaLevu, kLink, 1251331.8, 1662888.5, dms(179, 59, 39.6115),
                          dms(-16, 50, 29.2435), 1601528.90, 1336966.01});
}

#ifdef KO_HAVE_PROJ
// Forward within 1 mm of PROJ over each grid's area (and twice its width),
// inverse within 1e-9 degree.
TEST(Cassini, AgreesWithProj) {
  check_proj_cases({
      {"Trinidad", &kCassini, kClarke1858, kTrinidad,
       "+proj=cass +lat_0=" + num(10 + 26.5 / 60) + " +lon_0=" + num(-61 - 1.0 / 3) +
           " +a=" + num(20926348.0 * 0.3047972654) + " +b=" + num(20855233.0 * 0.3047972654),
       -63.0, 9.5, -59.5, 11.6},
      {"Vanua Levu, hyperbolic", &kCassini, kClarke1880Ft, kVanuaLevu,
       "+proj=cass +hyperbolic +lat_0=-16.25 +lon_0=" + num(179 + 1.0 / 3) +
           " +a=6378306.3696 +rf=293.4663076556349",
       178.3, -17.3, 180.4, -15.6},
      {"Germany, Soldner", &kCassini, kBessel,
       Parms{{slot::kLatOrigin, dms(52, 25, 7.1338)}, {slot::kCentralMeridian, dms(13, 37, 37.9332)}},
       "+proj=cass +lat_0=" + num(52 + 25 / 60.0 + 7.1338 / 3600) +
           " +lon_0=" + num(13 + 37 / 60.0 + 37.9332 / 3600) + " +ellps=bessel",
       11.5, 51.0, 15.5, 54.0},
      {"sphere", &kCassini, Spheroid{{6371000.0, 0.0}},
       Parms{{slot::kLatOrigin, dms(-30)}, {slot::kCentralMeridian, dms(20)}},
       "+proj=cass +lat_0=-30 +lon_0=20 +R=6371000", 17.0, -34.0, 23.0, -26.0},
  }, 9, 9);
}
#endif

// The scale factor (slot 5) scales every length: the same point with
// k0 = 0.9996 lies at 0.9996 times the coordinates of k0 = 1.
TEST(Cassini, ScaleFactorScalesTheGrid) {
  Parms scaled = kTrinidad;
  scaled[slot::kScaleFactor] = 0.9996;
  const XY one = forward1(kCassini, kClarke1858, kTrinidad, dms(-62), dms(11));
  const XY k = forward1(kCassini, kClarke1858, scaled, dms(-62), dms(11));
  EXPECT_NEAR(k.x, 0.9996 * one.x, 1e-8);
  EXPECT_NEAR(k.y, 0.9996 * one.y, 1e-8);
}

TEST(Cassini, BadInputIsNotCounted) {
  double pts[] = {std::numeric_limits<double>::quiet_NaN(), 0.1, 0.1, 2.0, dms(-62), dms(10)};
  EXPECT_EQ(kCassini.forward(kClarke1858.sph(), kTrinidad.data(), 3, pts, nullptr, nullptr), 1);
  EXPECT_EQ(pts[0], HUGE_VAL);
  EXPECT_EQ(pts[2], HUGE_VAL);  // a latitude beyond the pole
  Parms bad = kTrinidad;
  bad[slot::kOption] = 3.0;
  Cached cached(kCassini, kClarke1858, bad);
  EXPECT_LT(cached.status, 0);
}

}  // namespace
