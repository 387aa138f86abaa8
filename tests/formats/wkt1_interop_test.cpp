// OGC WKT1 as common open-source GIS tools write it (tests/data/wkt1, made
// by PROJ's projinfo from EPSG codes): quoted EPSG names, AXIS, TOWGS84,
// EXTENSION, AUTHORITY on every node, lower-case unit and parameter names,
// VERT_CS, VERT_DATUM and COMPD_CS.
// Read through the "PostGIS" synonyms, each text gives the object that the
// catalogue's record of its code builds (with the constructors, and by the
// factory); projected systems then also project a point as PROJ does.
#include "ko.h"
#include "formats/catalog_objects.h"
#include "formats/wkt_support.h"

#include <gtest/gtest.h>

#if KO_HAVE_PROJ
#include <proj.h>
#endif

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::write_text;

struct Sample {
  int32_t code;
  std::string text;
};

std::vector<Sample> corpus() {
  std::vector<Sample> samples;
  for (const auto &entry : std::filesystem::directory_iterator(KO_TEST_DATA_DIR "/wkt1")) {
    std::string stem = entry.path().stem().string();
    if (entry.path().extension() != ".wkt" || stem.rfind("EPSG_", 0) != 0) continue;
    std::ifstream in(entry.path());
    std::stringstream text;
    text << in.rdbuf();
    samples.push_back({std::stoi(stem.substr(5)), text.str()});
  }
  return samples;
}

// The object the catalogue gives for a code.  A WKT1 PRIMEM is in degrees
// (it carries no unit), so the catalogue's meridian is built in degrees.
Obj catalogue_object(int32_t code) {
  if (void *g = ko::test::geogcs_from_catalog(code, true)) return Obj(g);
  if (void *p = ko::test::projcs_from_catalog(code, true)) return Obj(p);
  if (ko::test::catalog_record<ko_db_vertcs_rec>(KO_TYPE_VERTCS, code) != nullptr)
    return Obj(ko::test::vertcs_from_catalog(code));
  return Obj(ko::test::hvcoordsys_from_catalog(code));
}

// Texts that read, but into another object than the catalogue's record,
// because the two describe the system differently or because the
// catalogue's PostGIS synonyms lack a name of the text.
struct Difference {
  int32_t code;
  const char *why;
};
constexpr Difference kDifferences[] = {
    {3857, "the text's Mercator_1SP on an ellipsoid with a PROJ4 EXTENSION for the sphere; "
           "the catalogue's Mercator_Auxiliary_Sphere"},
    {3395, "the catalogue adds Latitude_Of_Origin 0, which the text does not give"},
    {2056, "the text's rectified_grid_angle makes Rectified_Skew_Orthomorphic_Center; "
           "the catalogue's Hotine_Oblique_Mercator_Azimuth_Center has no XY_Plane_Rotation"},
    {21781, "as 2056"},
    {3078, "the text's rectified_grid_angle; the catalogue has no XY_Plane_Rotation"},
    {2065, "the catalogue adds X_Scale, Y_Scale and XY_Plane_Rotation"},
    {5514, "the catalogue adds X_Scale -1, Y_Scale -1 and XY_Plane_Rotation (east-north axes)"},
    {5773, "no PostGIS synonym for the vertical datum \"EGM96 geoid\" (EPSG's spelling has one)"},
};

const char *difference(int32_t code) {
  for (const Difference &d : kDifferences)
    if (d.code == code) return d.why;
  return nullptr;
}

TEST(Wkt1Interop, CorpusReadsIntoTheCatalogueObjects) {
  auto samples = corpus();
  ASSERT_GE(samples.size(), 40u);
  for (const Sample &s : samples) {
    SCOPED_TRACE("EPSG:" + std::to_string(s.code));
    Obj expected = catalogue_object(s.code);
    ASSERT_NE(expected, nullptr);
    auto r = read_text(s.text, "PostGIS");
    if (r.obj == nullptr) {
      ADD_FAILURE() << r.err.number << " " << r.err.source << " " << r.err.message;
      continue;
    }
    EXPECT_EQ(ko_object_type(r.obj.get()), ko_object_type(expected.get()));
    if (const char *why = difference(s.code)) {
      EXPECT_FALSE(ko_object_eq(r.obj.get(), expected.get())) << "no longer differs: " << why;
      continue;
    }
    EXPECT_LT(r.err.severity, KO_SEV_ERROR) << r.err.number << " " << r.err.message;
    EXPECT_TRUE(ko_object_eq(r.obj.get(), expected.get()))
        << write_text(r.obj.get(), KO_STR_CANONICAL_NAMES) << "\n"
        << write_text(expected.get(), KO_STR_CANONICAL_NAMES);
    // And the factory's object of the code; but the factory keeps the
    // Paris meridian in grads, as the catalogue has it, where the text has
    // degrees, and the meridians' equality weighs the value by its unit.
    Obj factory(ko_factory_object_from_code(ko_object_type(expected.get()), s.code, nullptr));
    ASSERT_NE(factory, nullptr);
    const bool paris_in_grads = s.code == 4807 || s.code == 27572;
    EXPECT_EQ(ko_object_eq(r.obj.get(), factory.get()) != 0, !paris_in_grads);
    // The AUTHORITY of the text is kept with the object.
    const ko_authority *a = ko_object_authority_const(r.obj.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(ko_authority_authcode(a), s.code);
    // Written back with the same synonyms, names read as the text spells them.
    auto again = read_text(write_text(r.obj.get(), KO_STR_AUTH_ALL, "PostGIS"), "PostGIS");
    ASSERT_NE(again.obj, nullptr);
    EXPECT_TRUE(ko_object_eq(again.obj.get(), expected.get()));
  }
}

#if KO_HAVE_PROJ
// Projected systems of the Transverse Mercator family (the projections the
// library converts points with so far).
constexpr int32_t kTransverseMercator[] = {32633, 32617, 32733, 27700, 2193, 3006, 25832, 31468, 2039, 26917};

TEST(Wkt1Interop, ReadSystemsProjectAsProjDoes) {
  PJ_CONTEXT *ctx = proj_context_create();
  for (int32_t code : kTransverseMercator) {
    SCOPED_TRACE("EPSG:" + std::to_string(code));
    std::ifstream in(std::string(KO_TEST_DATA_DIR "/wkt1/EPSG_") + std::to_string(code) + ".wkt");
    std::stringstream text;
    text << in.rdbuf();
    auto r = read_text(text.str(), "PostGIS");
    ASSERT_NE(r.obj, nullptr);
    auto *p = static_cast<ko_projcs *>(r.obj.get());
    // A point near the middle of the system's area.
    const ko_parameter *const *parms = ko_conversion_parameters_ptr(ko_projcs_conversion(p));
    double lon0 = parms[2] != nullptr ? ko_parameter_value(parms[2]) : 0.0;
    double lat0 = parms[6] != nullptr ? ko_parameter_value(parms[6]) : 0.0;
    double lon = lon0 + 1.25;
    double lat = (code == 32733 ? -33.5 : lat0 + (lat0 > 40 ? 3.5 : 45.5));
    double xy[2] = {lon, lat};
    ASSERT_EQ(ko_geog_to_proj(p, 1, xy), 1);

    std::string target = "EPSG:" + std::to_string(code);
    PJ *crs = proj_create(ctx, target.c_str());
    PJ *geog = proj_crs_get_geodetic_crs(ctx, crs);
    PJ *op = proj_create_crs_to_crs_from_pj(ctx, geog, crs, nullptr, nullptr);
    PJ *norm = proj_normalize_for_visualization(ctx, op);
    PJ_COORD c = proj_coord(lon, lat, 0, 0);
    PJ_COORD out = proj_trans(norm, PJ_FWD, c);
    EXPECT_NEAR(xy[0], out.xy.x, 1e-3) << lon << " " << lat;
    EXPECT_NEAR(xy[1], out.xy.y, 1e-3) << lon << " " << lat;
    proj_destroy(norm);
    proj_destroy(op);
    proj_destroy(geog);
    proj_destroy(crs);
  }
  proj_context_destroy(ctx);
}
#endif

}  // namespace
