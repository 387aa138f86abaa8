// Goode homolosine on the sphere of radius a: the uninterrupted layout
// (Option 0) against PROJ's sinusoidal and Mollweide joined at 40°44'11.8",
// the interrupted layout (Option 1) against PROJ's igh, round trips with the
// poles, the interruptions and the outline refused.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

const Family kGoode = family_of(ko_prj_goode_homolosine_vector);
const double kPhiB = (40.0 + 44.0 / 60.0 + 11.8 / 3600.0) * kDeg;

Parms goode_parms(double lon0, double option) {
  return Parms{{slot::kCentralMeridian, lon0}, {slot::kOption, option}};
}

#ifdef KO_HAVE_PROJ
// PROJ's goode rounds the lowering of the Mollweide part to 0.05280 R (22 m
// on the earth), so the oracle joins PROJ's sinu and moll itself, lowering
// moll by the exact difference of the two maps' y at the boundary as PROJ's
// igh does.  Up to ±80°: PROJ's moll stops short near the poles (see the
// Mollweide tests).
struct JoinedOracle {
  ProjOracle sinu, moll;
  double yc;
  JoinedOracle(const std::string &figure, double lon0_deg)
      : sinu("+proj=sinu +lon_0=" + num(lon0_deg) + figure),
        moll("+proj=moll +lon_0=" + num(lon0_deg) + figure) {
    yc = moll.forward(0.0, kPhiB).y - sinu.forward(0.0, kPhiB).y;
  }
  XY forward(double lon, double lat) const {
    if (std::fabs(lat) <= kPhiB) return sinu.forward(lon, lat);
    const XY m = moll.forward(lon, lat);
    return {m.x, m.y - std::copysign(yc, lat)};
  }
};

TEST(Goode, UninterruptedAgreesWithProjPieces) {
  struct Figure {
    Spheroid sph;
    const char *proj;
    double lon0;
  };
  for (const Figure &fig : {Figure{kWgs84, " +R=6378137", 150.0},
                            Figure{Spheroid{{6371000.0, 0.0}}, " +R=6371000", -30.0}}) {
    SCOPED_TRACE(fig.proj);
    JoinedOracle oracle(fig.proj, fig.lon0);
    ASSERT_TRUE(oracle.sinu.ok() && oracle.moll.ok());
    // Goode's published lowering, 0.0528035 R.
    EXPECT_NEAR(oracle.yc / fig.sph.pair[0], 0.0528035, 5e-8);
    check_against(kGoode, fig.sph, goode_parms(fig.lon0 * kDeg, 0.0), oracle,
                  grid(fig.lon0 - 179.9, -80, fig.lon0 + 179.9, 80, 19, 17), 1e-6, 1e-9);
  }
}

TEST(Goode, InterruptedAgreesWithProjIgh) {
  struct Case {
    Spheroid sph;
    const char *proj;
    double lon0;
  };
  for (const Case &c : {Case{kWgs84, "+proj=igh +R=6378137", 0.0},
                        Case{Spheroid{{6371000.0, 0.0}}, "+proj=igh +R=6371000 +lon_0=30", 30.0}}) {
    SCOPED_TRACE(c.proj);
    ProjOracle oracle(c.proj);
    ASSERT_TRUE(oracle.ok());
    // 10° steps from 175° west of the central meridian, so no point falls
    // on an interruption.
    check_against(kGoode, c.sph, goode_parms(c.lon0 * kDeg, 1.0), oracle,
                  grid(c.lon0 - 175, -80, c.lon0 + 175, 80, 36, 17), 1e-6, 1e-9);
  }
}
#endif

// Both layouts: back to the start within 1e-9 degree on a 5° grid with the
// poles (longitude aside at the uninterrupted map's pole point).
TEST(Goode, InverseRoundTripWithPoles) {
  for (double option : {0.0, 1.0}) {
    SCOPED_TRACE(option);
    // The uninterrupted map's pole is a point; the interrupted one's
    // lobes each have a pole point of their own.
    check_round_trip(option == 0.0 ? "uninterrupted" : "interrupted", kGoode,
                     goode_parms(25.0 * kDeg, option), grid(25 - 177.5, -90, 25 + 177.5, 90, 72, 37),
                     true, 1e-9);
  }
}

TEST(Goode, UninterruptedEdges) {
  // check_world_edges reads its central meridian from slot 2 only; the
  // option slot stays 0, the uninterrupted layout.
  check_world_edges({"Goode_Homolosine", &ko_prj_goode_homolosine_vector, ""});
}

// The interrupted layout: a point between two lobes (midway between the
// edges of the cut) is refused, each edge itself comes back.
TEST(Goode, InterruptionsAreRefused) {
  const Parms p = goode_parms(0.0, 1.0);
  struct Cut {
    double lon, lat;
  };
  for (const Cut c : {Cut{-40, 60}, Cut{-40, 20}, Cut{-100, -60}, Cut{-20, -30}, Cut{80, -70}}) {
    SCOPED_TRACE(c.lon);
    const double e = 1e-9;
    const XY west = forward1(kGoode, kWgs84, p, (c.lon - e) * kDeg, c.lat * kDeg);
    const XY east = forward1(kGoode, kWgs84, p, (c.lon + e) * kDeg, c.lat * kDeg);
    EXPECT_GT(east.x - west.x, 1e5);  // the cut opens
    int count = -1;
    const XY mid = inverse1(kGoode, kWgs84, p, 0.5 * (west.x + east.x), west.y, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(mid.x, HUGE_VAL);
    const XY back = inverse1(kGoode, kWgs84, p, west.x, west.y, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(back.x / kDeg, c.lon, 1e-7);
  }
}

TEST(Goode, OtherOptionsAreRefused) {
  for (double option : {2.0, -1.0, 0.5}) {
    const Parms p = goode_parms(0.0, option);
    Cached cached(kGoode, kWgs84, p);
    EXPECT_LT(cached.status, 0);
    int count = -1;
    forward1(kGoode, kWgs84, p, 0.1, 0.2, &count);
    EXPECT_EQ(count, 0);
  }
}

}  // namespace
