// The catalogue against the EPSG dataset as PROJ reads it: parameters of
// projected systems and transformations, ellipsoids, prime meridians and
// datums, compared in SI units; and the WKT1 spellings that PROJ writes,
// mapped back through the catalogue's synonyms.
#include "database/catalog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <map>
#include <regex>
#include <string>
#include <vector>

#if KO_HAVE_PROJ
#include <proj.h>

namespace {

template <class T>
const T *record(uint32_t type, int32_t code) {
  return static_cast<const T *>(
      ko_db_builtin_data_lookup_code(ko_db_builtin_data_find(type)->data, code));
}

double angunit_factor(int32_t code) { return record<ko_db_angunit_rec>(KO_TYPE_ANGUNIT, code)->factor; }
double linunit_factor(int32_t code) { return record<ko_db_linunit_rec>(KO_TYPE_LINUNIT, code)->factor; }

bool close(double a, double b, double rel) {
  return a == b || std::fabs(a - b) <= rel * std::max(std::fabs(a), std::fabs(b)) + 1e-300;
}

struct EpsgParam {
  double si;          // value times PROJ's unit conversion factor
  std::string category;
  std::string text;   // value string (grid files)
};

class Epsg : public ::testing::Test {
 protected:
  void SetUp() override { ctx_ = proj_context_create(); }
  void TearDown() override {
    for (PJ *p : owned_) proj_destroy(p);
    proj_context_destroy(ctx_);
  }
  PJ *own(PJ *p) {
    if (p != nullptr) owned_.push_back(p);
    return p;
  }
  PJ *crs(int code) {
    return own(proj_create_from_database(ctx_, "EPSG", std::to_string(code).c_str(),
                                         PJ_CATEGORY_CRS, 0, nullptr));
  }
  PJ *operation(int code) {
    return own(proj_create_from_database(ctx_, "EPSG", std::to_string(code).c_str(),
                                         PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr));
  }
  // EPSG parameter code -> value in SI units.
  std::map<int, EpsgParam> params(PJ *op) {
    std::map<int, EpsgParam> out;
    int n = proj_coordoperation_get_param_count(ctx_, op);
    for (int i = 0; i < n; ++i) {
      const char *name, *auth, *code, *value_string, *unit, *unit_auth, *unit_code, *category;
      double value, factor;
      proj_coordoperation_get_param(ctx_, op, i, &name, &auth, &code, &value, &value_string,
                                    &factor, &unit, &unit_auth, &unit_code, &category);
      EpsgParam p{value * (factor != 0.0 ? factor : 1.0), category ? category : "",
                  value_string ? value_string : ""};
      out[std::atoi(code)] = p;
    }
    return out;
  }
  int id(PJ *obj) {
    const char *code = proj_get_id_code(obj, 0);
    return code ? std::atoi(code) : 0;
  }

  // Compares every parameter of a projected system with EPSG's.
  void check_projcs(int code) {
    SCOPED_TRACE("projected system " + std::to_string(code));
    const auto *p = record<ko_db_projcs_rec>(KO_TYPE_PROJCS, code);
    ASSERT_NE(p, nullptr);
    PJ *c = crs(code);
    ASSERT_NE(c, nullptr);
    PJ *base = own(proj_crs_get_geodetic_crs(ctx_, c));
    EXPECT_EQ(id(base), p->geogcs);
    std::map<int, EpsgParam> epsg = params(own(proj_crs_get_coordoperation(ctx_, c)));
    const auto *g = record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, p->geogcs);
    double angle = angunit_factor(g->angunit);
    double length = linunit_factor(p->linunit);
    int matched = 0;
    for (int32_t i = p->parm_first; i < p->parm_first + p->parm_count; ++i) {
      const ko_db_parm_rec &parm = ko_obj_projcs_parms[i];
      if (parm.aux == 0) continue;   // an orientation parameter of the library's own
      auto it = epsg.find(parm.aux);
      ASSERT_NE(it, epsg.end()) << "EPSG parameter " << parm.aux;
      double factor = it->second.category == "angular" ? angle
                      : it->second.category == "linear" ? length : 1.0;
      // A false origin turned with the system's axes (a south- or
      // north-orientated Krovak, a Cassini grid in southing and westing)
      // keeps the EPSG code it came from and may change sign.
      const bool turned =
          (parm.code == 100001 || parm.code == 100002) && parm.value * it->second.si < 0.0;
      if (turned) factor = -factor;
      EXPECT_TRUE(close(parm.value * factor, it->second.si, 1e-14))
          << "parameter " << parm.aux << ": " << parm.value * factor << " vs " << it->second.si;
      ++matched;
    }
    // All of EPSG's parameters are held, but for a rectified grid angle
    // equal to the azimuth (the plain Hotine forms drop it).
    std::size_t expected = epsg.size();
    if (epsg.count(8814) && epsg.count(8813) && epsg[8814].si == epsg[8813].si) --expected;
    EXPECT_EQ(static_cast<std::size_t>(matched), expected);
  }

  std::vector<PJ *> owned_;
  PJ_CONTEXT *ctx_ = nullptr;
};

TEST_F(Epsg, ProjectedSystemParametersOfWellKnownSystems) {
  const int codes[] = {
      2000,  27700, 31370, 2154,  3857,  32633, 32760, 3035,  3031,  3395,  5514,  2065,
      21781, 2056,  3375,  28992, 3112,  8857,  2193,  27572, 3083,  2263,  2222,  27200,
      22275, 3067,  3006,  31467, 26917, 3577,  2039,  2100,  5070,  3413,  3976,  6933,
      3410,  2062,  29101, 3078,  26191, 2964,  5018,  5221,  6201,  6244,  8441,  2985,
      8044,  5516,  2218,  31300, 3139,  3993,  3295,  22700, 5515};
  for (int code : codes) {
    if (record<ko_db_projcs_rec>(KO_TYPE_PROJCS, code) == nullptr) continue;   // not a projcs
    check_projcs(code);
  }
}

// A sample across the whole table: every 23rd projected system, its
// parameters and its EPSG name read back through the synonyms.
TEST_F(Epsg, ProjectedSystemParametersAndNamesSample) {
  const ko_db_tbl *tbl = ko_db_builtin_data_find(KO_TYPE_PROJCS)->data;
  const auto *recs = static_cast<const ko_db_projcs_rec *>(tbl->recs);
  for (int32_t i = 0; i < tbl->count; i += 23) {
    check_projcs(recs[i].code);
    const char *epsg_name = proj_get_name(crs(recs[i].code));
    ASSERT_NE(epsg_name, nullptr);
    char out[80];
    ko_synonym_lookup_by_syn(KO_TYPE_PROJCS, epsg_name, "EPSG", out);
    // A deprecated system may share its EPSG name with a live one, which
    // then takes the synonym.
    if (ko_db_builtin_deprecated_lookup(ko_db_builtin_data_find(KO_TYPE_PROJCS), recs[i].code) ==
        nullptr) {
      EXPECT_STREQ(out, recs[i].name) << epsg_name;
    }
  }
}

TEST_F(Epsg, ProjectedSystemProjectionChoices) {
  struct Case {
    int code;
    int projection;
    std::map<int32_t, double> fixed;   // library parameters the catalogue adds
  } cases[] = {
      {27700, 43006, {}},
      {2048, 43006, {{100037, -1.0}, {100038, -1.0}}},        // south-orientated TM
      {31370, 43092, {}},
      {27572, 43091, {}},
      {3857, 43104, {{100035, 0.0}}},
      {21781, 43037, {}},                                     // Hotine B, angle = azimuth
      {3375, 43053, {}},                                      // Hotine A, skewed grid
      // Krovak's (southing, westing) turned to (easting, northing).
      {5514, 43039, {{100037, -1.0}, {100038, 1.0}, {100039, 90.0}}},
      {2065, 43039, {{100037, 1.0}, {100038, 1.0}, {100039, 0.0}}},
      {28992, 43038, {}},
      {3031, 43067, {}},
      {3035, 43033, {}},
      {8857, 43085, {}},
      {6201, 43020, {}},                                      // LCC (2SP Michigan)
      {6244, 43064, {}},                                      // Colombia Urban
      {8044, 43028, {{100037, -1.0}, {100039, 90.0}}},        // Cassini in southing, westing
      {2218, 43091, {{100039, 90.0}}},                        // LCC west: northing, westing
      {3052, 43091, {{100037, -1.0}}},                        // LCC west: westing, northing
      {5516, 43039, {{100036, 1.0}, {100037, -1.0}, {100038, 1.0}, {100039, 90.0}}},
      {31300, 43092, {{100036, 2.0}}},                        // 2SP Belgium
      {22700, 43091, {{100036, 1.0}}},                        // near-conformal
      {3139, 43028, {{100036, 1.0}}},                         // hyperbolic Cassini
      {3295, 43032, {{100036, 1.0}}},                         // modified azimuthal equidistant
      {3993, 43032, {{100036, 2.0}}},                         // Guam
  };
  for (const Case &c : cases) {
    const auto *p = record<ko_db_projcs_rec>(KO_TYPE_PROJCS, c.code);
    ASSERT_NE(p, nullptr) << c.code;
    EXPECT_EQ(p->projection, c.projection) << c.code;
    std::map<int32_t, double> fixed;
    for (int32_t i = p->parm_first; i < p->parm_first + p->parm_count; ++i)
      if (ko_obj_projcs_parms[i].aux == 0) fixed[ko_obj_projcs_parms[i].code] = ko_obj_projcs_parms[i].value;
    EXPECT_EQ(fixed, c.fixed) << c.code;
  }
}

// Datum shifts in SI: translations in metres, rotations in radians, scale
// as a plain difference, rates per year.
TEST_F(Epsg, TransformationParameters) {
  const int codes[] = {1188, 1311, 1241, 1149, 1196, 1314, 1134, 1612, 7790, 1673, 5375,
                       1313, 1312, 1243, 8048, 15851, 1776, 6138, 7666, 9189, 7377,
                       5900, 6276, 6935, 6889, 8546, 1336, 1447, 1066, 1258, 1265};
  for (int code : codes) {
    const auto *t = record<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN, code);
    if (t == nullptr) continue;
    SCOPED_TRACE("transformation " + std::to_string(code));
    PJ *op = operation(code);
    ASSERT_NE(op, nullptr);
    const ko_db_pair_rec *exc =
        ko_db_builtin_exception_lookup(ko_db_builtin_data_find(KO_TYPE_GEOGTRAN), code);
    int flags = exc ? exc->value : 0;
    if ((flags & KO_DB_EXC_SYSTEM_REPLACED) == 0) {
      EXPECT_EQ(id(own(proj_get_source_crs(ctx_, op))), t->gcs1);
      EXPECT_EQ(id(own(proj_get_target_crs(ctx_, op))), t->gcs2);
    }
    double accuracy = proj_coordoperation_get_accuracy(ctx_, op);
    EXPECT_EQ(t->accuracy, accuracy < 0 ? 999.0 : accuracy);
    std::map<int, EpsgParam> epsg = params(op);
    for (int32_t i = t->parm_first; i < t->parm_first + t->parm_count; ++i) {
      const ko_db_parm_rec &p = ko_obj_geogtran_parms[i];
      // The grid file is EPSG's 8656 (NTv2) or 8657 (the first of a pair).
      int epsg_code = p.code != 100047 ? p.aux : epsg.count(8656) ? 8656 : 8657;
      auto it = epsg.find(epsg_code);
      ASSERT_NE(it, epsg.end()) << "parameter " << p.code << " (EPSG " << p.aux << ")";
      if (p.code == 100047) {
        std::string file = ko_obj_geogtran_parm_texts[p.aux];
        EXPECT_EQ(it->second.text.rfind(file, 0), 0u) << file << " vs " << it->second.text;
        continue;
      }
      double si = p.value;
      switch (p.code) {
        case 100043: case 100044: case 100045: case 100051: case 100052:
          si *= 4.84813681109536e-06;   // arc-seconds
          if (flags & KO_DB_EXC_ROTATIONS_NEGATED) si = -si;
          break;
        case 100075: case 100076: case 100077:
          si *= 4.84813681109536e-06 / 31556925.445;   // arc-seconds per year
          break;
        case 100046: si *= 1e-6; break;                  // parts per million
        case 100078: si *= 1e-6 / 31556925.445; break;
        case 100072: case 100073: case 100074: si /= 31556925.445; break;   // metres per year
        default: break;
      }
      if (p.code == 100079) si *= 31556925.445;          // reference epoch: years
      EXPECT_TRUE(close(si, it->second.si, 1e-12))
          << "parameter " << p.code << ": " << si << " vs " << it->second.si;
    }
  }
}

TEST_F(Epsg, EllipsoidsPrimeMeridiansAndDatumsOfGeographicSystems) {
  const ko_db_tbl *tbl = ko_db_builtin_data_find(KO_TYPE_GEOGCS)->data;
  const auto *recs = static_cast<const ko_db_geogcs_rec *>(tbl->recs);
  for (int32_t i = 0; i < tbl->count; i += 7) {
    const ko_db_geogcs_rec &g = recs[i];
    SCOPED_TRACE("geographic system " + std::to_string(g.code));
    PJ *c = crs(g.code);
    ASSERT_NE(c, nullptr);
    PJ *datum = own(proj_crs_get_datum_forced(ctx_, c));
    ASSERT_NE(datum, nullptr);
    EXPECT_EQ(id(datum), g.datum);
    PJ *ell = own(proj_get_ellipsoid(ctx_, c));
    double a, b, inv_f;
    int computed;
    proj_ellipsoid_get_parameters(ctx_, ell, &a, &b, &computed, &inv_f);
    const auto *d = record<ko_db_datum_rec>(KO_TYPE_DATUM, g.datum);
    const auto *s = record<ko_db_spheroid_rec>(KO_TYPE_SPHEROID, d->spheroid);
    EXPECT_EQ(id(ell), s->code);
    EXPECT_TRUE(close(s->axis * linunit_factor(s->linunit), a, 1e-15));
    EXPECT_TRUE(close(s->flattening, inv_f == 0.0 ? 0.0 : 1.0 / inv_f, 1e-12));
    PJ *pm = own(proj_get_prime_meridian(ctx_, c));
    double lon, factor;
    const char *unit;
    proj_prime_meridian_get_parameters(ctx_, pm, &lon, &factor, &unit);
    const auto *p = record<ko_db_primem_rec>(KO_TYPE_PRIMEM, g.primem);
    EXPECT_EQ(id(pm), p->code);
    EXPECT_TRUE(close(p->longitude * angunit_factor(p->angunit), lon * factor, 1e-14))
        << p->longitude << " " << lon;
  }
}

// The names PROJ writes in WKT1 (the open-source GIS spelling) map back to
// the library's names through the catalogue's "PostGIS" synonyms.
TEST_F(Epsg, Wkt1SpellingsMapToLibraryNames) {
  const std::regex datum_re(R"re(DATUM\["([^"]+)")re");
  const std::regex projection_re(R"re(PROJECTION\["([^"]+)")re");
  const std::regex parameter_re(R"re(PARAMETER\["([^"]+)")re");
  const std::regex unit_re(R"re(UNIT\["([^"]+)")re");
  const int codes[] = {27700, 31370, 2154, 3857, 32633, 3035, 3031, 28992, 2263, 3083,
                       26917, 2193, 3067, 31467, 21781, 4326, 4269, 4230, 4807, 4152};
  for (int code : codes) {
    SCOPED_TRACE(code);
    PJ *c = crs(code);
    ASSERT_NE(c, nullptr);
    const char *wkt = proj_as_wkt(ctx_, c, PJ_WKT1_GDAL, nullptr);
    ASSERT_NE(wkt, nullptr);
    std::string text = wkt;
    char out[80];
    const auto *p = record<ko_db_projcs_rec>(KO_TYPE_PROJCS, code);
    int32_t gcs = p ? p->geogcs : code;
    const auto *g = record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, gcs);
    ASSERT_NE(g, nullptr);
    std::smatch m;
    ASSERT_TRUE(std::regex_search(text, m, datum_re));
    EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_DATUM, m[1].str().c_str(), "PostGIS", out),
                 record<ko_db_datum_rec>(KO_TYPE_DATUM, g->datum)->name);
    for (auto it = std::sregex_iterator(text.begin(), text.end(), unit_re);
         it != std::sregex_iterator(); ++it) {
      ko_synonym_lookup_by_syn(KO_TYPE_UNIT, (*it)[1].str().c_str(), "PostGIS", out);
      EXPECT_TRUE(ko_db_builtin_data_lookup_name(ko_db_builtin_data_find(KO_TYPE_LINUNIT), out) ||
                  ko_db_builtin_data_lookup_name(ko_db_builtin_data_find(KO_TYPE_ANGUNIT), out))
          << (*it)[1] << " -> " << out;
    }
    if (p == nullptr) continue;
    // WKT1 has one spelling where the library distinguishes variants:
    // Mercator_1SP (also Pseudo-Mercator) and Polar_Stereographic.
    ASSERT_TRUE(std::regex_search(text, m, projection_re));
    ko_synonym_lookup_by_syn(KO_TYPE_PROJECTION, m[1].str().c_str(), "PostGIS", out);
    const char *ours = record<ko_db_method_rec>(KO_TYPE_PROJECTION, p->projection)->name;
    if (m[1] != "Mercator_1SP" && m[1] != "Polar_Stereographic") {
      EXPECT_STREQ(out, ours);
    }
    // Each parameter name maps to a library parameter; where WKT1 and the
    // library name the parameters alike (Transverse Mercator, Lambert
    // conformal conics, oblique stereographic) the system holds each.
    const bool alike = p->projection == 43006 || p->projection == 43091 ||
                       p->projection == 43092 || p->projection == 43038;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), parameter_re);
         it != std::sregex_iterator(); ++it) {
      ko_synonym_lookup_by_syn(KO_TYPE_PARAMETER, (*it)[1].str().c_str(), "PostGIS", out);
      const auto *parm = static_cast<const ko_db_method_rec *>(
          ko_db_builtin_data_lookup_name(ko_db_builtin_data_find(KO_TYPE_PARAMETER), out));
      ASSERT_NE(parm, nullptr) << (*it)[1];
      if (!alike) continue;
      bool held = false;
      for (int32_t i = p->parm_first; i < p->parm_first + p->parm_count; ++i)
        held |= ko_obj_projcs_parms[i].code == parm->code;
      EXPECT_TRUE(held) << (*it)[1] << " -> " << out;
    }
  }
}

}  // namespace
#endif  // KO_HAVE_PROJ
