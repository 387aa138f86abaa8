// Objects from the factory at work, against PROJ building the same EPSG
// codes: projected systems of the Transverse Mercator family project the
// centre of their area of use as PROJ does (units, false origins, prime
// meridians, orientation), and Helmert-family transformations move it as
// PROJ does (translations, rotations, scale and their conventions).
#include "database/factory_support.h"

#include <cmath>
#include <string>
#include <vector>

#if KO_HAVE_PROJ
#include <proj.h>

namespace {

using ko::test::Obj;

constexpr double kDegree = 0.017453292519943295;

class FactoryOracle : public ::testing::Test {
 public:
  void SetUp() override {
    ctx_ = proj_context_create();
    proj_log_level(ctx_, PJ_LOG_NONE);
  }
  void TearDown() override {
    for (PJ *p : owned_) proj_destroy(p);
    proj_context_destroy(ctx_);
  }
  PJ *own(PJ *p) {
    if (p != nullptr) owned_.push_back(p);
    return p;
  }
  PJ *from_db(int code, PJ_CATEGORY category) {
    return own(proj_create_from_database(ctx_, "EPSG", std::to_string(code).c_str(), category, 0,
                                         nullptr));
  }
  // PROJ's conversion of a projected system from its own geographic system,
  // longitude first.
  PJ *projection(int code) {
    PJ *crs = from_db(code, PJ_CATEGORY_CRS);
    if (crs == nullptr) return nullptr;
    PJ *base = own(proj_crs_get_geodetic_crs(ctx_, crs));
    PJ *op = own(proj_create_crs_to_crs_from_pj(ctx_, base, crs, nullptr, nullptr));
    return op != nullptr ? own(proj_normalize_for_visualization(ctx_, op)) : nullptr;
  }
  PJ *operation(int code) {
    PJ *op = from_db(code, PJ_CATEGORY_COORDINATE_OPERATION);
    return op != nullptr ? own(proj_normalize_for_visualization(ctx_, op)) : nullptr;
  }


 private:
  PJ_CONTEXT *ctx_ = nullptr;
  std::vector<PJ *> owned_;
};

// Centre of an object's area of use, in degrees.
bool area_centre(ko_metadata *const *md, double &lon, double &lat) {
  if (md == nullptr || md[0] == nullptr) return false;
  const ko_gcs_extent *e = ko_metadata_gcs_extent_ptr(md[0]);
  double east = e->east >= e->west ? e->east : e->east + 360.0;
  lon = std::remainder((e->west + east) / 2.0, 360.0);
  lat = (e->south + e->north) / 2.0;
  return true;
}

// A longitude and latitude in degrees as a geographic system takes them:
// in its angular unit, from its prime meridian.
void to_system_units(const ko_geogcs *g, double &lon, double &lat) {
  double per_degree = kDegree / ko_angunit_factor(ko_geogcs_unit(g));
  lon = std::remainder(lon - ko_primem_longitude(ko_geogcs_primem(g)), 360.0) * per_degree;
  lat *= per_degree;
}

// Codes of a type whose records satisfy keep, every `step`-th of them.
template <class Record, class Keep>
std::vector<int32_t> sample(uint32_t type, int step, Keep keep) {
  std::vector<int32_t> codes;
  int seen = 0;
  ko::test::for_each_record(type, [&](const void *rec, int32_t code) {
    if (keep(*static_cast<const Record *>(rec)) && seen++ % step == 0) codes.push_back(code);
  });
  return codes;
}

// True when a projected system turns its plane coordinates (X_Scale or
// Y_Scale in slots 12 and 13: the South Orientated systems).
bool oriented(const ko_projcs *p) {
  ko_parameter **slots = ko_conversion_parameters_ptr(ko_projcs_conversion(p));
  return slots != nullptr && (slots[12] != nullptr || slots[13] != nullptr);
}

// Projects the centre of each system's area of use with the factory's
// object and with PROJ's conversion of the same code, within tol of the
// system's unit; the number compared.
int project_as_proj(FactoryOracle &t, const std::vector<int32_t> &codes, bool want_oriented,
                    double tol = 1e-5) {
  int compared = 0;
  for (int32_t asked : codes) {
    SCOPED_TRACE(asked);
    Obj obj(ko_factory_projcs_from_code(asked));
    auto *p = static_cast<ko_projcs *>(obj.get());
    EXPECT_NE(p, nullptr);
    if (p == nullptr) continue;
    if (ko_object_code(ko_projcs_projection(p)) != 43006 || oriented(p) != want_oriented) continue;
    double lon, lat;
    if (!area_centre(ko_projcs_metadata_vector(p), lon, lat)) continue;
    to_system_units(ko_projcs_geogcs(p), lon, lat);
    // A replaced code builds its replacement: compare with that.
    PJ *oracle = t.projection(ko_object_code(p));
    if (oracle == nullptr) continue;
    PJ_COORD want = proj_trans(oracle, PJ_FWD, proj_coord(lon, lat, 0, 0));
    double xy[2] = {lon, lat};
    EXPECT_EQ(ko_geog_to_proj(p, 1, xy), 1);
    EXPECT_NEAR(xy[0], want.xy.x, tol) << lon << " " << lat;
    EXPECT_NEAR(xy[1], want.xy.y, tol) << lon << " " << lat;
    ++compared;
  }
  return compared;
}

TEST_F(FactoryOracle, TransverseMercatorSystemsProjectAsProjDoes) {
  std::vector<int32_t> codes = sample<ko_db_projcs_rec>(
      KO_TYPE_PROJCS, 40, [](const ko_db_projcs_rec &r) { return r.projection == 43006; });
  // US survey feet, the British National Grid, a replaced code.
  for (int32_t code : {2236, 27700, 3414, 4879}) codes.push_back(code);
  EXPECT_GT(project_as_proj(*this, codes, false), 90);
}

// South Orientated systems give westing and southing (X_Scale = Y_Scale =
// -1 in the catalogue, applied by the Transverse Mercator family).  1e-4:
// the Namibian systems' Bessel ellipsoid is defined in German legal metres,
// which PROJ's "bess_nam" rounds to the millimetre (3e-5 m here).
TEST_F(FactoryOracle, SouthOrientatedSystemsProjectAsProjDoes) {
  std::vector<int32_t> codes = sample<ko_db_projcs_rec>(
      KO_TYPE_PROJCS, 1, [](const ko_db_projcs_rec &r) { return r.projection == 43006; });
  EXPECT_GT(project_as_proj(*this, codes, true, 1e-4), 20);
}

TEST_F(FactoryOracle, HelmertTransformationsMoveAsProjDoes) {
  const ko_db_builtin_entry *row = ko::test::row(KO_TYPE_GEOGTRAN);
  std::vector<int32_t> codes =
      sample<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN, 8, [&](const ko_db_geogtran_rec &r) {
        bool helmert = r.method == 9603 || r.method == 9606 || r.method == 9607;
        return helmert && ko_db_builtin_exception_lookup(row, r.code) == nullptr;
      });
  int compared = 0;
  for (int32_t code : codes) {
    SCOPED_TRACE(code);
    Obj obj(ko_factory_geogtran_from_code(code));
    auto *gt = static_cast<ko_geogtran *>(obj.get());
    ASSERT_NE(gt, nullptr);
    ko_metadata *md[2] = {ko_geogtran_metadata(gt), nullptr};
    double lon, lat;
    if (!area_centre(md, lon, lat)) continue;
    to_system_units(ko_geogtran_geogcs1(gt), lon, lat);
    PJ *oracle = operation(ko_object_code(gt));
    if (oracle == nullptr) continue;
    PJ_COORD want = proj_trans(oracle, PJ_FWD, proj_coord(lon, lat, 0, HUGE_VAL));
    if (!std::isfinite(want.lp.lam)) continue;
    double ll[2] = {lon, lat};
    ASSERT_EQ(ko_geog_to_geog(gt, 1, ll, nullptr, 0), 1);
    EXPECT_NEAR(ll[0], want.lp.lam, 1e-8);
    EXPECT_NEAR(ll[1], want.lp.phi, 1e-8);
    ++compared;
  }
  EXPECT_GT(compared, 100);
}

}  // namespace

#endif  // KO_HAVE_PROJ
