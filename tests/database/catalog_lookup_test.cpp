// Lookups of the compiled-in catalogue: the name hash, by code, by name,
// synonyms both ways, code changes, the per-code tables, and the catalogue
// as a read-only database.
#include "database/catalog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

namespace {

const ko_db_builtin_entry *row(uint32_t type) { return ko_db_builtin_data_find(type); }

template <class T>
const T *by_code(uint32_t type, int32_t code) {
  return static_cast<const T *>(ko_db_builtin_data_lookup_code(row(type)->data, code));
}

template <class T>
const T *by_name(uint32_t type, const char *name) {
  return static_cast<const T *>(ko_db_builtin_data_lookup_name(row(type), name));
}

std::string spaced(std::string name) {
  for (char &c : name)
    if (c == '_') c = ' ';
  return name;
}

TEST(NameHash, KnownValueAndTheCharactersItIgnores) {
  EXPECT_EQ(ko_str_hashcode("GCS_WGS_1984"), 0x3EE59C90u);
  const char *same[] = {"gcs_wgs_1984", "GCS WGS 1984", "GCSWGS1984", "(GCS)-WGS/1984\\",
                        " gcs\twgs 1984\n"};
  for (const char *s : same) EXPECT_EQ(ko_str_hashcode(s), 0x3EE59C90u) << s;
  EXPECT_NE(ko_str_hashcode("GCS_WGS_1984."), 0x3EE59C90u);   // '.' counts
  EXPECT_EQ(ko_str_hashcode(nullptr), 0u);
  EXPECT_EQ(ko_str_hashcode(""), 0u);
  EXPECT_EQ(ko_str_hashcode("_ ()"), 0u);
  // One character: its lower-case code; two: first * 65599 + second.
  EXPECT_EQ(ko_str_hashcode("A"), static_cast<uint32_t>('a'));
  EXPECT_EQ(ko_str_hashcode("ab"), 'a' * 65599u + 'b');
}

// Records the catalogue must hold as they are written here.
TEST(CatalogRecords, WellKnownRecords) {
  const auto *gcs = by_code<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, 4326);
  ASSERT_NE(gcs, nullptr);
  EXPECT_STREQ(gcs->name, "GCS_WGS_1984");
  EXPECT_EQ(gcs->datum, 6326);
  EXPECT_EQ(gcs->primem, 8901);
  EXPECT_EQ(gcs->angunit, 9102);
  EXPECT_EQ(gcs->reserved, 0u);

  const auto *datum = by_code<ko_db_datum_rec>(KO_TYPE_DATUM, 6326);
  ASSERT_NE(datum, nullptr);
  EXPECT_STREQ(datum->name, "D_WGS_1984");
  EXPECT_EQ(datum->spheroid, 7030);
  for (char c : datum->anchor) ASSERT_EQ(c, '\0');

  const auto *sph = by_code<ko_db_spheroid_rec>(KO_TYPE_SPHEROID, 7030);
  ASSERT_NE(sph, nullptr);
  EXPECT_STREQ(sph->name, "WGS_1984");
  EXPECT_EQ(sph->linunit, 9001);
  EXPECT_EQ(sph->axis, 6378137.0);
  EXPECT_EQ(sph->flattening, 0.0033528106647474805);

  const auto *pm = by_code<ko_db_primem_rec>(KO_TYPE_PRIMEM, 8901);
  ASSERT_NE(pm, nullptr);
  EXPECT_STREQ(pm->name, "Greenwich");
  EXPECT_EQ(pm->angunit, 9102);
  EXPECT_EQ(pm->longitude, 0.0);

  const auto *deg = by_code<ko_db_angunit_rec>(KO_TYPE_ANGUNIT, 9102);
  ASSERT_NE(deg, nullptr);
  EXPECT_STREQ(deg->name, "Degree");
  EXPECT_EQ(deg->factor, 0.017453292519943295);
  const auto *m = by_code<ko_db_linunit_rec>(KO_TYPE_LINUNIT, 9001);
  ASSERT_NE(m, nullptr);
  EXPECT_STREQ(m->name, "Meter");
  EXPECT_EQ(m->factor, 1.0);
  EXPECT_EQ(m->related, 109404);   // Square_Meter

  const auto *gt = by_code<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN, 1188);
  ASSERT_NE(gt, nullptr);
  EXPECT_STREQ(gt->name, "NAD_1983_To_WGS_1984_1");
  EXPECT_EQ(gt->gcs1, 4269);
  EXPECT_EQ(gt->gcs2, 4326);
  EXPECT_EQ(gt->method, 9603);
  EXPECT_EQ(gt->accuracy, 4.0);
  EXPECT_EQ(gt->parm_count, 3);

  const auto *first = static_cast<const ko_db_projcs_rec *>(row(KO_TYPE_PROJCS)->data->recs);
  EXPECT_STREQ(first->name, "Anguilla_1957_British_West_Indies_Grid");
  EXPECT_EQ(first->code, 2000);
  EXPECT_EQ(first->geogcs, 4600);
  EXPECT_EQ(first->projection, 43006);
  EXPECT_EQ(first->linunit, 9001);
  EXPECT_EQ(first->parm_first, 0);
  EXPECT_EQ(first->parm_count, 5);
  EXPECT_EQ(first[1].parm_first, 5);
}

TEST(LookupByCode, OutsideTheTableAndBetweenCodesFindsNothing) {
  const ko_db_tbl *gcs = row(KO_TYPE_GEOGCS)->data;
  const auto *recs = static_cast<const ko_db_geogcs_rec *>(gcs->recs);
  int32_t first = recs[0].code;
  int32_t last = recs[gcs->count - 1].code;
  EXPECT_NE(ko_db_builtin_data_lookup_code(gcs, first), nullptr);
  EXPECT_NE(ko_db_builtin_data_lookup_code(gcs, last), nullptr);
  for (int32_t code : {first - 1, last + 1, 0, -1, INT32_MIN, INT32_MAX})
    EXPECT_EQ(ko_db_builtin_data_lookup_code(gcs, code), nullptr) << code;
  EXPECT_EQ(ko_db_builtin_data_lookup_code(gcs, 4327 - 1000), nullptr);   // a gap
  EXPECT_EQ(ko_db_builtin_data_lookup_code(nullptr, 4326), nullptr);
  // Every record is found by its own code.
  for (int32_t i = 0; i < gcs->count; ++i)
    ASSERT_EQ(ko_db_builtin_data_lookup_code(gcs, recs[i].code), &recs[i]);
  EXPECT_EQ(ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, 1262)->code, 1262);
  EXPECT_EQ(ko_db_builtin_extent_lookup_code(gcs, 4326), nullptr);   // not an extent table
}

TEST(LookupByName, HashFindsAnyCaseAndSpacing) {
  const char *spellings[] = {"GCS_WGS_1984", "gcs_wgs_1984", "GCS WGS 1984", "gcs wgs1984"};
  for (const char *s : spellings) {
    const auto *r = by_name<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, s);
    ASSERT_NE(r, nullptr) << s;
    EXPECT_EQ(r->code, 4326) << s;
  }
  EXPECT_EQ(by_name<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, "GCS_WGS_1985"), nullptr);
  EXPECT_EQ(by_name<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, ""), nullptr);
  EXPECT_EQ(by_name<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, nullptr), nullptr);
  EXPECT_EQ(ko_db_builtin_data_lookup_name(nullptr, "GCS_WGS_1984"), nullptr);
  EXPECT_EQ(by_name<ko_db_linunit_rec>(KO_TYPE_LINUNIT, "foot us")->code, 9003);
  EXPECT_EQ(by_name<ko_db_method_rec>(KO_TYPE_PROJECTION, "transverse mercator")->code, 43006);
}

// The hash search compares signed differences, which the unsigned order of
// the table does not always agree with; such names are found by the scan
// that compares whole names ignoring case only, so their spelling with
// spaces is not found while their exact spelling is.
TEST(LookupByName, NamesTheSignedSearchMissesAreFoundByTheScan) {
  for (uint32_t type : {KO_TYPE_PROJCS, KO_TYPE_GEOGCS, KO_TYPE_GEOGTRAN}) {
    const ko_db_tbl *tbl = row(type)->data;
    int missed = 0;
    for (int32_t i = 0; i < tbl->count; ++i) {
      const void *rec = static_cast<const unsigned char *>(tbl->recs) + i * tbl->size;
      const char *name;
      std::memcpy(&name, rec, sizeof name);
      ASSERT_EQ(ko_db_builtin_data_lookup_name(row(type), name), rec) << name;
      std::string upper = name;
      for (char &c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      ASSERT_EQ(ko_db_builtin_data_lookup_name(row(type), upper.c_str()), rec) << name;
      if (std::strchr(name, '_') != nullptr &&
          ko_db_builtin_data_lookup_name(row(type), spaced(name).c_str()) == nullptr)
        ++missed;
    }
    if (type == KO_TYPE_PROJCS) {
      EXPECT_GT(missed, 0);
    }
    EXPECT_LT(missed, tbl->count / 20) << type;
  }
}

TEST(Synonyms, EpsgAndWkt1SpellingsMapToLibraryNames) {
  struct Case {
    uint32_t type;
    const char *synonym;
    const char *authority;
    const char *libname;
  } cases[] = {
      {KO_TYPE_GEOGCS, "WGS 84", "EPSG", "GCS_WGS_1984"},
      {KO_TYPE_GEOGCS, "wgs 84", "postgis", "GCS_WGS_1984"},
      {KO_TYPE_GEOGCS, "NAD83", nullptr, "GCS_NAD_1983"},
      {KO_TYPE_DATUM, "World Geodetic System 1984 ensemble", "EPSG", "D_WGS_1984"},
      {KO_TYPE_DATUM, "WGS_1984", "PostGIS", "D_WGS_1984"},
      {KO_TYPE_DATUM, "North_American_Datum_1983", "PostGIS", "D_NAD_1983"},
      {KO_TYPE_DATUM, "European_Datum_1950", "PostGIS", "D_European_1950"},
      {KO_TYPE_SPHEROID, "WGS 84", "EPSG", "WGS_1984"},
      {KO_TYPE_PROJCS, "OSGB36 / British National Grid", "EPSG",
       "OSGB_1936_British_National_Grid"},
      {KO_TYPE_PROJCS, "British National Grid", "EPSG", "OSGB_1936_British_National_Grid"},
      {KO_TYPE_PROJECTION, "Transverse_Mercator", "PostGIS", "Transverse_Mercator"},
      {KO_TYPE_PROJECTION, "Lambert Conic Conformal (2SP)", "EPSG",
       "Lambert_Conformal_Conic_2SP"},
      {KO_TYPE_PROJECTION, "Oblique_Stereographic", "PostGIS", "Double_Stereographic"},
      {KO_TYPE_PROJECTION, "Cassini_Soldner", "PostGIS", "Cassini"},
      {KO_TYPE_PROJECTION, "Albers_Conic_Equal_Area", "PostGIS", "Albers"},
      {KO_TYPE_PROJECTION, "Mercator_1SP", "PostGIS", "Mercator_Variant_A"},
      {KO_TYPE_PARAMETER, "latitude_of_origin", "PostGIS", "Latitude_Of_Origin"},
      {KO_TYPE_PARAMETER, "central_meridian", "PostGIS", "Central_Meridian"},
      {KO_TYPE_PARAMETER, "rectified_grid_angle", "PostGIS", "XY_Plane_Rotation"},
      {KO_TYPE_PARAMETER, "Longitude of natural origin", "EPSG", "Central_Meridian"},
      {KO_TYPE_PARAMETER, "X-axis translation", "EPSG", "X_Axis_Translation"},
      {KO_TYPE_METHOD, "Coordinate Frame rotation (geog2D domain)", "EPSG", "Coordinate_Frame"},
      {KO_TYPE_LINUNIT, "US survey foot", "PostGIS", "Foot_US"},
      {KO_TYPE_LINUNIT, "metre", "EPSG", "Meter"},
      {KO_TYPE_ANGUNIT, "degree", "PostGIS", "Degree"},
      {KO_TYPE_ANGUNIT, "grad", "PostGIS", "Grad"},
      {KO_TYPE_UNIT, "metre", "PostGIS", "Meter"},          // composite: any unit kind
      {KO_TYPE_UNIT, "degree", "", "Degree"},
  };
  for (const Case &c : cases) {
    char out[80] = "x";
    EXPECT_EQ(ko_synonym_lookup_by_syn(c.type, c.synonym, c.authority, out), out);
    EXPECT_STREQ(out, c.libname) << c.synonym;
  }
}

TEST(Synonyms, UnknownSpellingsAndAuthoritiesGiveTheNameBack) {
  char out[80];
  EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, "WGS 84", "Oracle", out), "WGS 84");
  EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, "No such system", nullptr, out),
               "No such system");
  EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_EXTENT, "WGS 84", nullptr, out), "WGS 84");
  EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, nullptr, nullptr, out), "");
  EXPECT_EQ(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, "WGS 84", nullptr, nullptr), nullptr);
  std::string longname(200, 'a');
  EXPECT_EQ(std::strlen(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, longname.c_str(), nullptr, out)),
            79u);
  // The name buffer may be the output buffer.
  std::strcpy(out, "WGS 84");
  EXPECT_STREQ(ko_synonym_lookup_by_syn(KO_TYPE_GEOGCS, out, "EPSG", out), "GCS_WGS_1984");
}

TEST(Synonyms, AnAuthoritysSpellingOfALibraryName) {
  struct Case {
    uint32_t type;
    const char *libname;
    const char *authority;
    const char *spelling;
  } cases[] = {
      {KO_TYPE_GEOGCS, "GCS_WGS_1984", "EPSG", "WGS 84"},
      {KO_TYPE_GEOGCS, "gcs wgs 1984", "PostGIS", "WGS 84"},
      {KO_TYPE_DATUM, "D_WGS_1984", "PostGIS", "WGS_1984"},
      {KO_TYPE_DATUM, "D_WGS_1984", "EPSG", "World Geodetic System 1984 ensemble"},
      {KO_TYPE_PROJCS, "OSGB_1936_British_National_Grid", "EPSG",
       "OSGB36 / British National Grid"},   // the EPSG name, not its alias
      {KO_TYPE_PROJECTION, "Transverse_Mercator", "EPSG", "Transverse Mercator"},
      {KO_TYPE_PROJECTION, "Lambert_Conformal_Conic_1SP", "EPSG",
       "Lambert Conic Conformal (1SP)"},
      {KO_TYPE_PARAMETER, "False_Easting", "PostGIS", "false_easting"},
      {KO_TYPE_PARAMETER, "False_Easting", "EPSG", "False easting"},
      {KO_TYPE_PARAMETER, "Latitude_Of_Origin", "PostGIS", "latitude_of_origin"},
      {KO_TYPE_LINUNIT, "Foot_US", "EPSG", "US survey foot"},
      {KO_TYPE_UNIT, "Degree", "PostGIS", "degree"},
      {KO_TYPE_GEOGCS, "GCS_WGS_1984", "Oracle", "GCS_WGS_1984"},   // none: the name back
      {KO_TYPE_GEOGCS, "Not_A_Name", "EPSG", "Not_A_Name"},
  };
  for (const Case &c : cases) {
    char out[80];
    EXPECT_STREQ(ko_synonym_lookup_by_act(c.type, c.libname, c.authority, out), c.spelling)
        << c.libname << " " << c.authority;
  }
}

TEST(CodeChanges, DeprecatedCodesPointToTheirReplacementsBothWays) {
  const ko_db_builtin_entry *gcs = row(KO_TYPE_GEOGCS);
  const ko_db_pair_rec *cc = ko_db_builtin_codechange_lookup_old(gcs, 4126);
  ASSERT_NE(cc, nullptr);
  EXPECT_EQ(cc->value, 4669);
  EXPECT_EQ(ko_db_builtin_codechange_lookup_new(gcs, 4669), cc);
  EXPECT_NE(ko_db_builtin_deprecated_lookup(gcs, 4126), nullptr);
  EXPECT_EQ(ko_db_builtin_deprecated_lookup(gcs, 4326), nullptr);
  EXPECT_EQ(ko_db_builtin_codechange_lookup_old(gcs, 4326), nullptr);
  EXPECT_EQ(ko_db_builtin_codechange_lookup_new(gcs, 4126), nullptr);
  EXPECT_EQ(ko_db_builtin_codechange_lookup_old(nullptr, 4126), nullptr);
}

TEST(PerCodeTables, DescriptionsConstantsVersionsAreasAxes) {
  const ko_db_builtin_entry *gcs = row(KO_TYPE_GEOGCS);
  EXPECT_STREQ(ko_db_builtin_description_lookup(gcs, 3819)->text, "Hungarian Datum 1909");
  EXPECT_STREQ(ko_db_builtin_defstring_lookup_code(gcs, 4326)->text, "KO_GCS_WGS_1984");
  EXPECT_STREQ(ko_db_builtin_defstring_lookup_code(gcs, 4143)->text, "KO_GCS_ABIDJAN_1987");
  EXPECT_EQ(ko_db_builtin_defstring_lookup_name(gcs, "ko_gcs_wgs_1984")->code, 4326);
  EXPECT_EQ(ko_db_builtin_defstring_lookup_name(gcs, "KO_GCS_NOTHING"), nullptr);
  const ko_db_version_rec *v = ko_db_builtin_version_lookup(gcs, 4326);
  ASSERT_NE(v, nullptr);
  EXPECT_STREQ(v->authority, "EPSG");
  EXPECT_STREQ(v->version, "10.076");
  EXPECT_STREQ(ko_db_builtin_version_lookup(row(KO_TYPE_AREAUNIT), 109404)->authority, "KO");
  const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(gcs, 4326);
  ASSERT_NE(area, nullptr);
  EXPECT_EQ(area->sequence, 0);
  const ko_db_extent_rec *world = ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, area->area);
  ASSERT_NE(world, nullptr);
  EXPECT_EQ(world->west, -180.0);
  EXPECT_EQ(world->north, 90.0);
  EXPECT_STREQ(ko_db_builtin_areainfo_lookup(gcs, area->area)->path, "World/World");
  EXPECT_EQ(ko_db_builtin_axis_lookup(gcs, 4326)->value, 6422);
  EXPECT_EQ(ko_db_builtin_axis_lookup(row(KO_TYPE_PROJCS), 27700)->value, 4400);
  EXPECT_EQ(ko_db_builtin_areacode_lookup(gcs, 1), nullptr);
}

TEST(PerCodeTables, EnsemblesEpochsExceptionsAndTies) {
  const ko_db_builtin_entry *datum = row(KO_TYPE_DATUM);
  const ko_db_ensemble_rec *e = ko_db_builtin_ensemble_lookup(datum, 6326);
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->sequence, 1);
  EXPECT_EQ(e->member, 1166);   // WGS 84 (Transit), the first realisation
  EXPECT_EQ(e->accuracy, 2.0);
  const ko_db_epoch_rec *ep = ko_db_builtin_epoch_lookup(datum, 1165);   // ITRF2014
  ASSERT_NE(ep, nullptr);
  EXPECT_EQ(ep->epoch, 2010.0);
  EXPECT_EQ(ko_db_builtin_epoch_lookup(datum, 6326), nullptr);
  // ITRF2008 to ITRF2014 is defined between geocentric systems; the
  // catalogue holds it between the geographic ones.
  const ko_db_pair_rec *x = ko_db_builtin_exception_lookup(row(KO_TYPE_GEOGTRAN), 7790);
  ASSERT_NE(x, nullptr);
  EXPECT_TRUE(x->value & KO_DB_EXC_SYSTEM_REPLACED);
  const ko_db_gcsvcs_rec *tie = ko_db_builtin_gcsvcs_lookup_by_gcs(row(KO_TYPE_GEOGCS), 4326);
  ASSERT_NE(tie, nullptr);
  EXPECT_EQ(tie->gcs3d, 4979);
  EXPECT_EQ(tie->xyz, 4978);
  EXPECT_EQ(ko_db_builtin_gcsvcs_lookup_by_xyz(row(KO_TYPE_GXYZCS), 4978), tie);
  const ko_db_gcsvcs_rec *twd97 = ko_db_builtin_gcsvcs_lookup_by_gcs(row(KO_TYPE_GEOGCS), 3824);
  ASSERT_NE(twd97, nullptr);
  EXPECT_EQ(twd97->gcs3d, 3823);
  EXPECT_EQ(twd97->xyz, 3822);
  EXPECT_EQ(ko_db_builtin_gcsvcs_lookup_by_vcs(row(KO_TYPE_VERTCS), 0), nullptr);
}

class BuiltinDatabase : public ::testing::Test {
 protected:
  void SetUp() override {
    std::memset(&db_, 0, sizeof db_);
    ASSERT_EQ(ko_db_builtin_vector_tbl.open(&db_, nullptr), 0);
  }
  ko_db db_;
  ko_db_rec rec_;
};

TEST_F(BuiltinDatabase, VectorHoldsTheElevenOperationsInOrder) {
  using Fn = void (*)();
  const Fn expected[] = {
      reinterpret_cast<Fn>(ko_db_builtin_open),   reinterpret_cast<Fn>(ko_db_builtin_close),
      reinterpret_cast<Fn>(ko_db_builtin_create), reinterpret_cast<Fn>(ko_db_builtin_delete),
      reinterpret_cast<Fn>(ko_db_builtin_flush),  reinterpret_cast<Fn>(ko_db_builtin_addrec),
      reinterpret_cast<Fn>(ko_db_builtin_updrec), reinterpret_cast<Fn>(ko_db_builtin_delrec),
      reinterpret_cast<Fn>(ko_db_builtin_count),  reinterpret_cast<Fn>(ko_db_builtin_index),
      reinterpret_cast<Fn>(ko_db_builtin_search)};
  static_assert(sizeof(ko_db_vector) == sizeof expected);
  Fn actual[11];
  std::memcpy(actual, &ko_db_builtin_vector_tbl, sizeof actual);
  for (int i = 0; i < 11; ++i) EXPECT_EQ(actual[i], expected[i]) << i;
}

TEST_F(BuiltinDatabase, WriteOperationsFailWith502) {
  struct Case {
    int result;
    const char *source;
  } cases[] = {
      {ko_db_builtin_create(&db_, "x"), "ko_db_builtin_create"},
      {ko_db_builtin_delete(&db_, "x"), "ko_db_builtin_delete"},
      {ko_db_builtin_flush(&db_), "ko_db_builtin_flush"},
      {ko_db_builtin_addrec(&db_, KO_TYPE_GEOGCS, &rec_), "ko_db_builtin_addrec"},
      {ko_db_builtin_updrec(&db_, KO_TYPE_GEOGCS, &rec_), "ko_db_builtin_updrec"},
      {ko_db_builtin_delrec(&db_, KO_TYPE_GEOGCS, 4326), "ko_db_builtin_delrec"},
  };
  // Each call above left its report; the last is in the slot now.
  EXPECT_EQ(db_.err.number, 502);
  EXPECT_EQ(db_.err.severity, KO_SEV_ERROR);
  EXPECT_EQ(db_.err.category, KO_ERRCAT_DATABASE);
  EXPECT_STREQ(db_.err.message, "Database is read-only");
  for (const Case &c : cases) EXPECT_EQ(c.result, -1) << c.source;
  ko_err_clear(&db_.err);
  EXPECT_EQ(ko_db_builtin_flush(&db_), -1);
  EXPECT_STREQ(db_.err.source, "ko_db_builtin_flush");
  EXPECT_EQ(ko_db_builtin_flush(nullptr), -1);
}

TEST_F(BuiltinDatabase, SearchByKindAndMode) {
  ko_db_key key{4326, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 1);
  EXPECT_STREQ(rec_.name, "GCS_WGS_1984");
  EXPECT_EQ(rec_.codes[0], 6326);
  key = {0, "gcs wgs 1984", nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_NAME,
                                 &rec_), 1);
  EXPECT_EQ(rec_.code, 4326);
  key = {4126, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_CODECHANGE, &key,
                                 KO_DB_MODE_OLD_CODE, &rec_), 1);
  EXPECT_EQ(rec_.codes[0], 4669);
  key = {4669, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_CODECHANGE, &key,
                                 KO_DB_MODE_NEW_CODE, &rec_), 1);
  EXPECT_EQ(rec_.code, 4126);
  key = {0, "WGS 84", "EPSG"};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_SYNONYM, &key,
                                 KO_DB_MODE_SYNONYM, &rec_), 1);
  EXPECT_STREQ(rec_.name, "GCS_WGS_1984");
  EXPECT_STREQ(rec_.text2, "EPSG");
  key = {0, "GCS_WGS_1984", "PostGIS"};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_SYNONYM, &key,
                                 KO_DB_MODE_LIBNAME, &rec_), 1);
  EXPECT_STREQ(rec_.text, "WGS 84");
  key = {3819, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DESCRIPTION, &key,
                                 KO_DB_MODE_CODE, &rec_), 1);
  EXPECT_STREQ(rec_.text, "Hungarian Datum 1909");
  key = {0, "KO_GCS_WGS_1984", nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DEFSTRING, &key,
                                 KO_DB_MODE_NAME, &rec_), 1);
  EXPECT_EQ(rec_.code, 4326);
  key = {4326, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_AREACODE, &key,
                                 KO_DB_MODE_AREA, &rec_), 1);
  EXPECT_GT(rec_.codes[0], 0);
  key = {1262, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_EXTENT, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 1);
  EXPECT_EQ(rec_.values[0], -180.0);
  // A mode the kind does not know, a kind outside the mask, a missing key.
  key = {4326, nullptr, nullptr};
  EXPECT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DESCRIPTION, &key,
                                 KO_DB_MODE_OLD_CODE, &rec_), 0);
  EXPECT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, 99, &rec_), 0);
  db_.table_mask = KO_DB_KIND_SYNONYM;
  EXPECT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 0);
  db_.table_mask = KO_DB_KIND_ALL;
  db_.type_mask = KO_TYPE_PROJCS;
  EXPECT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 0);
  EXPECT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, nullptr, 1, &rec_), 0);
  EXPECT_EQ(ko_db_builtin_search(nullptr, KO_TYPE_GEOGCS, KO_DB_KIND_DATA, &key, 1, &rec_), 0);
}

TEST_F(BuiltinDatabase, RecordCopyPlacesParametersBySlot) {
  ko_db_key key{27700, nullptr, nullptr};
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_PROJCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 1);
  EXPECT_EQ(rec_.codes[0], 4277);
  EXPECT_EQ(rec_.codes[1], 43006);
  EXPECT_EQ(rec_.parm_count, 5);
  EXPECT_EQ(rec_.parm_codes[0], 100001);   // False_Easting
  EXPECT_EQ(rec_.parms[0], 400000.0);
  EXPECT_EQ(rec_.parm_codes[1], 100002);
  EXPECT_EQ(rec_.parms[1], -100000.0);
  EXPECT_EQ(rec_.parm_codes[2], 100010);   // Central_Meridian
  EXPECT_EQ(rec_.parms[2], -2.0);
  EXPECT_EQ(rec_.parm_codes[5], 100003);   // Scale_Factor
  EXPECT_EQ(rec_.parm_codes[6], 100021);   // Latitude_Of_Origin
  EXPECT_EQ(rec_.parms[6], 49.0);
  EXPECT_EQ(rec_.parm_codes[3], 0);

  key.code = 1313;   // NAD27 to NAD83 (4): NTv2
  ASSERT_EQ(ko_db_builtin_search(&db_, KO_TYPE_GEOGTRAN, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE,
                                 &rec_), 1);
  EXPECT_EQ(rec_.codes[2], 9615);
  EXPECT_EQ(rec_.parm_codes[15], 100047);
  EXPECT_STREQ(rec_.dataset, "NTv2_0.gsb");
  EXPECT_EQ(ko_db_builtin_rec_copy(KO_TYPE_GEOGCS, KO_DB_KIND_DATA, nullptr, &rec_), 0);
  EXPECT_EQ(ko_db_builtin_obj_copy(0x40000000u, row(KO_TYPE_GEOGCS)->data->recs, &rec_), 0);
}

TEST_F(BuiltinDatabase, CountAndIndexListEveryRecord) {
  int n = ko_db_builtin_count(&db_, KO_TYPE_PROJECTION);
  EXPECT_EQ(n, 106);
  for (int i = 0; i < n; ++i) {
    ASSERT_EQ(ko_db_builtin_index(&db_, KO_TYPE_PROJECTION, i, &rec_), 1);
    EXPECT_GE(rec_.code, 43001);
    EXPECT_NE(rec_.name[0], '\0');
  }
  EXPECT_EQ(ko_db_builtin_index(&db_, KO_TYPE_PROJECTION, n, &rec_), 0);
  EXPECT_EQ(ko_db_builtin_index(&db_, KO_TYPE_PROJECTION, -1, &rec_), 0);
  EXPECT_EQ(ko_db_builtin_count(&db_, KO_TYPE_METHOD), 18);
  EXPECT_EQ(ko_db_builtin_count(&db_, KO_TYPE_PARAMETER), 54);
  EXPECT_EQ(ko_db_builtin_count(&db_, KO_TYPE_COORDSYS), -1);
  ASSERT_EQ(ko_db_builtin_index(&db_, KO_TYPE_PARAMETER, 2, &rec_), 1);
  EXPECT_STREQ(rec_.name, "Scale_Factor");
  EXPECT_EQ(rec_.codes[0], 5);   // its slot
  ASSERT_EQ(ko_db_builtin_index(&db_, KO_TYPE_LINUNIT, 0, &rec_), 1);
  EXPECT_GT(rec_.values[0], 0.0);
}

TEST(CatalogSource, VersionAndDateOfTheDataset) {
  EXPECT_STREQ(ko_db_builtin_source.authority, "EPSG");
  EXPECT_STREQ(ko_db_builtin_source.version, "v10.076");
  EXPECT_STREQ(ko_db_builtin_source.date, "2022-08-31");
  char buf[128];
  EXPECT_STREQ(ko_db_builtin_version_info(buf, sizeof buf),
               "EPSG Geodetic Parameter Dataset v10.076 (2022-08-31)");
  char small[5];
  EXPECT_STREQ(ko_db_builtin_version_info(small, sizeof small), "EPSG");
  EXPECT_EQ(ko_db_builtin_version_info(nullptr, 10), nullptr);
}

}  // namespace
