// The world cylindricals (Plate Carrée, Miller, Gall stereographic,
// Behrmann, Patterson, compact Miller): agreement with PROJ over the whole
// world on an ellipsoid (the spherical ones on the sphere of radius a, as
// PROJ computes them) and on a sphere, and the map's outline.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

struct WorldCylCase {
  const char *name;
  const ko_projlist_entry *vector;
  std::string proj;  // PROJ's definition without lon_0 and the figure
};

const WorldCylCase kCases[] = {
    {"Plate_Carree", &ko_prj_plate_carree_vector, "+proj=eqc +lat_ts=0"},
    {"Miller_Cylindrical", &ko_prj_miller_cylindrical_vector, "+proj=mill"},
    {"Gall_Stereographic", &ko_prj_gall_stereographic_vector, "+proj=gall"},
    {"Behrmann", &ko_prj_behrmann_vector, "+proj=cea +lat_ts=30"},
    {"Patterson", &ko_prj_patterson_vector, "+proj=patterson"},
    {"Compact_Miller", &ko_prj_compact_miller_vector, "+proj=comill"},
};

#ifdef KO_HAVE_PROJ
// Forward within 1e-6 m of PROJ over the whole world, poles included, with
// the central meridian at 150°E and at 75°W; inverse of the library's own
// forward back within 1e-9 degree.
TEST(WorldCylindrical, AgreesWithProj) {
  const Spheroid sphere{{6371000.0, 0.0}};
  for (const WorldCylCase &c : kCases) {
    for (double lon0 : {150.0, -75.0}) {
      for (const auto &[sph, figure] :
           {std::pair{kWgs84, " +ellps=WGS84"}, std::pair{sphere, " +R=6371000"}}) {
        const std::string def = c.proj + " +lon_0=" + num(lon0) + figure;
        SCOPED_TRACE(std::string(c.name) + ": " + def);
        ProjOracle oracle(def);
        ASSERT_TRUE(oracle.ok());
        const Parms p{{slot::kCentralMeridian, dms(lon0)}};
        check_against(family_of(*c.vector), sph, p, oracle,
                      grid(lon0 - 179.9, -90, lon0 + 179.9, 90, 19, 19), 1e-6, 1e-9);
      }
    }
  }
}
#endif

// The map's outline: the antimeridian is its edge (±180° from the central
// meridian map to the two ends of the equator), the poles are its top and
// bottom lines, and the inverse refuses points beyond either; input that is
// not a point is refused both ways.
TEST(WorldCylindrical, OutlineAndRefusals) {
  const Parms p{{slot::kCentralMeridian, dms(20)}};
  for (const WorldCylCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const XY east = forward1(f, kWgs84, p, dms(20 + 180), 0.0);
    const XY west = forward1(f, kWgs84, p, dms(20 - 180), 0.0);
    EXPECT_NEAR(std::fabs(east.x), std::fabs(west.x), 1e-6);
    EXPECT_GT(std::fabs(east.x), 1.4e7);  // π a / √2 for Gall, the narrowest
    const XY pole = forward1(f, kWgs84, p, dms(20), dms(90));
    const XY pole2 = forward1(f, kWgs84, p, dms(-100), dms(90));
    EXPECT_NEAR(pole.y, pole2.y, 1e-6);
    EXPECT_GT(pole.y, 0.0);
    int count = -1;
    inverse1(f, kWgs84, p, 0.0, pole.y * 1.001, &count);
    EXPECT_EQ(count, 0) << "beyond the north pole's line";
    inverse1(f, kWgs84, p, 0.0, -pole.y * 1.001, &count);
    EXPECT_EQ(count, 0) << "beyond the south pole's line";
    const XY out = inverse1(f, kWgs84, p, std::fabs(east.x) * 1.01, 0.0, &count);
    EXPECT_EQ(count, 0) << "beyond the antimeridian";
    EXPECT_EQ(out.x, HUGE_VAL);
    const XY edge = inverse1(f, kWgs84, p, std::fabs(east.x), pole.y, &count);
    EXPECT_EQ(count, 1) << "the corner of the map";
    EXPECT_NEAR(std::fabs(lon_diff_deg(edge.x, dms(20))), 180.0, 1e-9);
    EXPECT_NEAR(edge.y / kDeg, 90.0, 1e-9);
    for (const XY bad : {XY{NAN, 0.1}, XY{0.1, HUGE_VAL}, XY{0.1, dms(90.5)}}) {
      const XY r = forward1(f, kWgs84, p, bad.x, bad.y, &count);
      EXPECT_EQ(count, 0);
      EXPECT_EQ(r.y, HUGE_VAL);
    }
    inverse1(f, kWgs84, p, NAN, 0.0, &count);
    EXPECT_EQ(count, 0);
    expect_refused(f, kWgs84, Parms{{slot::kCentralMeridian, NAN}}, "no central meridian");
    expect_refused(f, Spheroid{{-1.0, 0.0}}, p, "a negative axis");
    // A refused definition leaves even a point beyond the outline as it was.
    const XY kept = inverse1(f, kWgs84, Parms{{slot::kCentralMeridian, NAN}}, 1e8, 0.0, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(kept.x, 1e8);
  }
}

}  // namespace
