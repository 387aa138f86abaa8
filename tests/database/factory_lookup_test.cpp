// The factory's lookups: what each failure reports, code changes,
// deprecated status, names through synonyms and the library's name
// comparison, and memory failures that leave nothing behind.
#include "database/factory.h"
#include "database/factory_support.h"
#include "foundation/report_capture.h"
#include "support/failing_alloc.h"

#include <string>

namespace {

using ko::test::Obj;
using ko::test::proj_db_rows;

void expect_report(const ko_err &err, int number, int category, const char *source,
                   const std::string &message) {
  EXPECT_EQ(err.severity, KO_SEV_ERROR);
  EXPECT_EQ(err.number, number);
  EXPECT_EQ(err.category, category);
  EXPECT_STREQ(err.source, source);
  EXPECT_EQ(std::string(err.message), message);
}

// A code that no catalogue table has, for the types' own numbers.
constexpr int32_t kNowhere = 3;

// The source of a report: the type's own _errext function, or the
// generic one for the composite types that have none.
std::string source_of(const char *prefix, const char *how) {
  return prefix != nullptr ? std::string("ko_factory_") + prefix + "_from_" + how + "_errext"
                           : std::string("ko_factory_object_from_") + how;
}

TEST(FactoryLookup, CodeFailuresReportTheTypesNumber) {
  const struct {
    uint32_t type;
    const char *prefix;  // null: a composite type
    int32_t code;
    int number;
    int category;
  } cases[] = {
      {KO_TYPE_GEOGCS, "geogcs", kNowhere, 203, KO_ERRCAT_OBJECT},
      {KO_TYPE_PROJCS, "projcs", kNowhere, 204, KO_ERRCAT_OBJECT},
      {KO_TYPE_VERTCS, "vertcs", kNowhere, 205, KO_ERRCAT_OBJECT},
      {KO_TYPE_DATUM, "datum", kNowhere, 206, KO_ERRCAT_OBJECT},
      {KO_TYPE_VDATUM, "vdatum", kNowhere, 207, KO_ERRCAT_OBJECT},
      {KO_TYPE_HVDATUM, nullptr, kNowhere, 208, KO_ERRCAT_OBJECT},
      {KO_TYPE_GEOGTRAN, "geogtran", kNowhere, 209, KO_ERRCAT_OBJECT},
      {KO_TYPE_UNIT, "unit", kNowhere, 210, KO_ERRCAT_OBJECT},
      {KO_TYPE_SCALEUNIT, "scaleunit", kNowhere, 210, KO_ERRCAT_OBJECT},
      {KO_TYPE_AREAUNIT, "areaunit", kNowhere, 210, KO_ERRCAT_OBJECT},
      {KO_TYPE_ANGUNIT, "angunit", kNowhere, 211, KO_ERRCAT_OBJECT},
      {KO_TYPE_LINUNIT, "linunit", kNowhere, 212, KO_ERRCAT_OBJECT},
      {KO_TYPE_PRIMEM, "primem", kNowhere, 213, KO_ERRCAT_OBJECT},
      {KO_TYPE_SPHEROID, "spheroid", kNowhere, 214, KO_ERRCAT_OBJECT},
      {KO_TYPE_METHOD, "method", kNowhere, 215, KO_ERRCAT_OBJECT},
      {KO_TYPE_HTMETHOD, "htmethod", kNowhere, 216, KO_ERRCAT_OBJECT},
      {KO_TYPE_PROJECTION, "projection", kNowhere, 217, KO_ERRCAT_OBJECT},
      {KO_TYPE_PARAMETER, "parameter", kNowhere, 218, KO_ERRCAT_OBJECT},
      {KO_TYPE_COORDSYS, nullptr, kNowhere, 219, KO_ERRCAT_OBJECT},
      {KO_TYPE_VTMETHOD, "vtmethod", kNowhere, 222, KO_ERRCAT_OBJECT},
      // Types without a number of their own: outside their codes.
      {KO_TYPE_GXYZCS, "gxyzcs", kNowhere, 201, KO_ERRCAT_OBJECT},
      {KO_TYPE_HVCOORDSYS, "hvcoordsys", 99999999, 201, KO_ERRCAT_OBJECT},
      {KO_TYPE_VERTTRAN, "verttran", kNowhere, 201, KO_ERRCAT_OBJECT},
      {KO_TYPE_TRANSFORM, nullptr, kNowhere, 201, KO_ERRCAT_OBJECT},
      // Codes of other types.
      {KO_TYPE_GEOGCS, "geogcs", 6326, 223, KO_ERRCAT_OBJECT},
      {KO_TYPE_DATUM, "datum", 4326, 223, KO_ERRCAT_OBJECT},
      {KO_TYPE_LINUNIT, "linunit", 9102, 223, KO_ERRCAT_OBJECT},
      {KO_TYPE_UNIT, "unit", 109401, 223, KO_ERRCAT_OBJECT},
      {KO_TYPE_GEOGTRAN, "geogtran", 2154, 223, KO_ERRCAT_OBJECT},
      // Codes that are no codes, and an unknown area.
      {KO_TYPE_PROJCS, "projcs", 0, 505, KO_ERRCAT_DATABASE},
      {KO_TYPE_GEOGCS, "geogcs", -4326, 505, KO_ERRCAT_DATABASE},
      {KO_TYPE_EXTENT, "extent", kNowhere, 131, KO_ERRCAT_OBJECT},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.code);
    SCOPED_TRACE(source_of(c.prefix, "code"));
    ko_err err = ko::test::stale_record();
    EXPECT_EQ(ko_factory_object_from_code(c.type, c.code, &err), nullptr);
    expect_report(err, c.number, c.category, source_of(c.prefix, "code").c_str(),
                  std::to_string(c.code));
  }
  // The per-type functions themselves, plain and with a record.
  ko_err err{};
  EXPECT_EQ(ko_factory_geogcs_from_code_errext(kNowhere, &err), nullptr);
  EXPECT_EQ(err.number, 203);
  EXPECT_EQ(ko_factory_geogcs_from_code(kNowhere), nullptr);
  // A type the factory does not build.
  EXPECT_EQ(ko_factory_object_from_code(KO_TYPE_AUTHORITY, 4326, &err), nullptr);
  expect_report(err, 521, KO_ERRCAT_DATABASE, "ko_factory_object_from_code", "10000");
}

// A code between a type's first and last codes that no table has is 202
// for the types without a number of their own.
TEST(FactoryLookup, UnknownCodeInsideTheRangesIs202) {
  auto known = [](int32_t code) {
    for (const ko_db_builtin_entry *r = ko_db_builtin_registry; r->type != 0; ++r) {
      if (r->type == KO_TYPE_EXTENT || r->data == nullptr) continue;
      if (ko_db_builtin_data_lookup_code(r->data, code) != nullptr ||
          ko_db_builtin_codechange_lookup_old(r, code) != nullptr)
        return true;
    }
    return false;
  };
  const struct {
    uint32_t type;
    const char *prefix;
  } cases[] = {{KO_TYPE_TRANSFORM, nullptr},
               {KO_TYPE_GXYZCS, "gxyzcs"},
               {KO_TYPE_HVCOORDSYS, "hvcoordsys"},
               {KO_TYPE_VERTTRAN, "verttran"}};
  for (const auto &c : cases) {
    int32_t code = ko_factory_code_at(c.type, 0);
    ASSERT_GT(code, 0);
    while (known(code)) ++code;
    ASSERT_LT(code, ko_factory_code_at(c.type, ko_factory_count(c.type) - 1));
    ko_err err{};
    EXPECT_EQ(ko_factory_object_from_code(c.type, code, &err), nullptr);
    expect_report(err, 202, KO_ERRCAT_OBJECT, source_of(c.prefix, "code").c_str(),
                  std::to_string(code));
  }
}

TEST(FactoryLookup, NameFailuresAre132) {
  const struct {
    uint32_t type;
    const char *prefix;
  } cases[] = {{KO_TYPE_GEOGCS, "geogcs"},     {KO_TYPE_PROJCS, "projcs"},
               {KO_TYPE_DATUM, "datum"},       {KO_TYPE_UNIT, "unit"},
               {KO_TYPE_GEOGTRAN, "geogtran"}, {KO_TYPE_VERTTRAN, "verttran"},
               {KO_TYPE_EXTENT, "extent"},     {KO_TYPE_COORDSYS, nullptr}};
  for (const auto &c : cases) {
    for (const char *name : {"No such object anywhere", "", static_cast<const char *>(nullptr)}) {
      SCOPED_TRACE(source_of(c.prefix, "name") + " " + (name != nullptr ? name : "null"));
      ko_err err = ko::test::stale_record();
      EXPECT_EQ(ko_factory_object_from_name(c.type, name, &err), nullptr);
      // An empty message is replaced by the number's text.
      expect_report(err, 132, KO_ERRCAT_OBJECT, source_of(c.prefix, "name").c_str(),
                    name != nullptr && *name != '\0' ? name : "Name not found");
    }
  }
  // A name of another type is not found either.
  ko_err err{};
  EXPECT_EQ(ko_factory_datum_from_name_errext("GCS_WGS_1984", &err), nullptr);
  EXPECT_EQ(err.number, 132);
}

TEST(FactoryLookup, SuccessClearsTheRecordAndReportsGoToTheCallback) {
  ko::test::ReportCapture capture;
  ko_err err = ko::test::stale_record();
  Obj g(ko_factory_geogcs_from_code_errext(4326, &err));
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(err.severity, 0);
  EXPECT_EQ(err.number, 0);
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(ko_factory_spheroid_from_code(kNowhere), nullptr);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].number, 214);
  EXPECT_STREQ(capture.reports()[0].source, "ko_factory_spheroid_from_code_errext");
}

// The deprecated flags' status bits, and do-not-use refused with 509: a
// registry row like the spheroids' whose deprecated table marks 7030.
TEST(FactoryLookup, DeprecatedFlagsGiveStatusBitsAndDoNotUseIsRefused) {
  const struct {
    int32_t flags;
    uint32_t bits;
  } cases[] = {{1, KO_STATUS_DISCONTINUED}, {2, KO_STATUS_DEAD},
               {3, KO_STATUS_DISCONTINUED | KO_STATUS_DEAD}, {4, KO_STATUS_DONOTUSE}};
  const ko_db_builtin_entry *spheroids = ko_db_builtin_data_find(KO_TYPE_SPHEROID);
  const void *wgs84 = ko_db_builtin_data_lookup_code(spheroids->data, 7030);
  ASSERT_NE(wgs84, nullptr);
  for (const auto &c : cases) {
    SCOPED_TRACE(c.flags);
    EXPECT_EQ(ko::factory::deprecated_status(c.flags), c.bits);
    ko_db_pair_rec marked = {7030, c.flags};
    ko_db_tbl deprecated = {&marked, 1, sizeof marked, {nullptr, nullptr}};
    ko_db_builtin_entry row = *spheroids;
    row.deprecated = &deprecated;
    ko_err err{};
    ko::factory::Context ctx{&err, "test"};
    Obj s(ko::factory::build_record(ko::factory::Found{&row, wgs84, 7030}, KO_STATUS_CODE, 7030,
                                    0, ctx));
    if (c.bits & KO_STATUS_DONOTUSE) {
      EXPECT_EQ(s, nullptr);
      expect_report(err, 509, KO_ERRCAT_DATABASE, "test", "7030");
    } else {
      ASSERT_NE(s, nullptr);
      EXPECT_EQ(ko_object_status(s.get()), KO_STATUS_CODE | c.bits);
    }
  }
}

// A record naming a part the catalogue lacks: 131 in category 4.
TEST(FactoryLookup, MissingPartIs131) {
  const ko_db_geogcs_rec broken = {"GCS_Broken", 99999, kNowhere, 8901, 9102, 0};
  ko_err err{};
  ko::factory::Context ctx{&err, "test"};
  ko::factory::Found found{ko_db_builtin_data_find(KO_TYPE_GEOGCS), &broken, 99999};
  EXPECT_EQ(ko::factory::build_record(found, KO_STATUS_CODE, 99999, 0, ctx), nullptr);
  expect_report(err, 131, KO_ERRCAT_DBCONTENT, "test", std::to_string(kNowhere));
}

// Replaced codes build the replacement, which keeps the asked code as its
// original code; EPSG's deprecation table says what replaced what.
TEST(FactoryLookup, CodeChangesFollowTheReplacement) {
  const struct {
    int32_t old_code, new_code;
  } cases[] = {{4126, 4669}, {4327, 4979}};
  for (const auto &c : cases) {
    SCOPED_TRACE(c.old_code);
    Obj g(ko_factory_geogcs_from_code(c.old_code));
    ASSERT_NE(g, nullptr);
    EXPECT_EQ(ko_object_code(g.get()), c.new_code);
    EXPECT_EQ(ko_object_get_orig_code(g.get()), c.old_code);
    EXPECT_EQ(ko_object_status(g.get()), KO_STATUS_CODE | KO_STATUS_CODECHANGE);
    Obj direct(ko_factory_geogcs_from_code(c.new_code));
    EXPECT_EQ(ko_object_eq(g.get(), direct.get()), 1);
    EXPECT_EQ(ko_object_get_orig_code(direct.get()), 0);
  }
  auto rows = proj_db_rows(
      "SELECT replacement_code FROM deprecation WHERE table_name = 'geodetic_crs' AND "
      "deprecated_auth_name = 'EPSG' AND deprecated_code = '4126'");
  if (!rows.empty()) {
    EXPECT_EQ(rows[0][0], "4669");
  }
  // The old record itself is still found by its name, deprecated.
  const char *old_name = ko::catalog::data_record_name(
      ko_db_builtin_data_lookup_code(ko_db_builtin_data_find(KO_TYPE_GEOGCS)->data, 4126));
  Obj old(ko_factory_geogcs_from_name(old_name));
  ASSERT_NE(old, nullptr);
  EXPECT_EQ(ko_object_code(old.get()), 4126);
  EXPECT_EQ(ko_object_status(old.get()), KO_STATUS_STRING | KO_STATUS_DISCONTINUED);
}

// EPSG's deprecated flag, read from proj.db, is the discontinued bit of
// every geographic and projected system found by name.
TEST(FactoryLookup, DeprecatedStatusMatchesEpsg) {
  const struct {
    uint32_t type;
    const char *table;
  } cases[] = {{KO_TYPE_GEOGCS, "geodetic_crs"}, {KO_TYPE_PROJCS, "projected_crs"}};
  for (const auto &c : cases) {
    auto rows = proj_db_rows(std::string("SELECT code, deprecated FROM ") + c.table +
                             " WHERE auth_name = 'EPSG'");
    if (rows.empty()) GTEST_SKIP() << "no proj.db";
    std::map<int32_t, bool> deprecated;
    for (const auto &r : rows) deprecated[std::stoi(r[0])] = r[1] == "1";
    int checked = 0;
    int discontinued = 0;
    ko::test::for_each_record(c.type, [&](const void *rec, int32_t code) {
      auto it = deprecated.find(code);
      if (it == deprecated.end()) return;
      Obj obj(ko_factory_object_from_name(c.type, ko::catalog::data_record_name(rec), nullptr));
      ASSERT_NE(obj, nullptr) << code;
      bool bit = (ko_object_status(obj.get()) & KO_STATUS_DISCONTINUED) != 0;
      EXPECT_EQ(bit, it->second) << code;
      discontinued += bit;
      ++checked;
    });
    EXPECT_GT(checked, 500);
    EXPECT_GT(discontinued, 10);
  }
}

// Other spellings find the catalogue's objects: EPSG names, other
// authorities' synonyms, case, blanks and punctuation, a missing prefix.
TEST(FactoryLookup, NamesThroughSynonymsAndTheLibrarysComparison) {
  const struct {
    uint32_t type;
    const char *name;
    int32_t code;
  } cases[] = {
      {KO_TYPE_GEOGCS, "GCS_WGS_1984", 4326},
      {KO_TYPE_GEOGCS, "gcs wgs 1984", 4326},
      {KO_TYPE_GEOGCS, "WGS 84", 4326},
      {KO_TYPE_GEOGCS, "WGS_1984", 4326},
      {KO_TYPE_DATUM, "WGS_1984", 6326},
      {KO_TYPE_DATUM, "World Geodetic System 1984", 6326},
      {KO_TYPE_DATUM, "D_WGS_1984", 6326},
      {KO_TYPE_LINUNIT, "metre", 9001},
      {KO_TYPE_UNIT, "degree", 9102},
      {KO_TYPE_UNIT, "US survey foot", 9003},
      {KO_TYPE_PROJECTION, "Transverse Mercator", 43006},
      {KO_TYPE_PARAMETER, "false easting", 100001},
      {KO_TYPE_PROJCS, "RGF93 v1 / Lambert-93", 2154},
      {KO_TYPE_PROJCS, "NAD83 / UTM zone 10N", 26910},
      {KO_TYPE_SPHEROID, "GRS 1980", 7019},
      {KO_TYPE_COORDSYS, "WGS 84 / UTM zone 33N", 32633},
      {KO_TYPE_EXTENT, "World", 1262},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.name);
    ko_err err{};
    Obj obj(ko_factory_object_from_name(c.type, c.name, &err));
    ASSERT_NE(obj, nullptr) << err.number;
    EXPECT_EQ(ko_object_code(obj.get()), c.code);
    if (c.type != KO_TYPE_EXTENT) {
      EXPECT_EQ(ko_object_status(obj.get()) & (KO_STATUS_STRING | KO_STATUS_CODE), KO_STATUS_STRING);
    }
  }
}

// Every catalogue synonym of every authority finds the object it names.
TEST(FactoryLookup, EverySynonymFindsItsObject) {
  int checked = 0;
  for (uint32_t type : {KO_TYPE_GEOGCS, KO_TYPE_PROJCS, KO_TYPE_DATUM, KO_TYPE_SPHEROID,
                        KO_TYPE_PRIMEM, KO_TYPE_LINUNIT, KO_TYPE_ANGUNIT, KO_TYPE_PROJECTION,
                        KO_TYPE_PARAMETER, KO_TYPE_METHOD, KO_TYPE_GEOGTRAN}) {
    const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
    for (const ko_db_synonym_rec &syn : ko::catalog::records<ko_db_synonym_rec>(row->synonym())) {
      const void *own = ko_db_builtin_data_lookup_name(row, syn.name);
      ASSERT_NE(own, nullptr) << syn.name;
      // A synonym that is another object's own name names that object.
      const void *direct = ko_db_builtin_data_lookup_name(row, syn.synonym);
      if (direct != nullptr && ko_strcmp_ci(ko::catalog::data_record_name(direct), syn.synonym) == 0)
        continue;
      Obj obj(ko_factory_object_from_name(type, syn.synonym, nullptr));
      ASSERT_NE(obj, nullptr) << syn.synonym;
      EXPECT_EQ(ko_object_code(obj.get()), ko::catalog::data_record_code(own)) << syn.synonym;
      ++checked;
    }
  }
  EXPECT_GT(checked, 10000);
}

// Builds that run out of memory at every step leave nothing behind.
TEST(FactoryLookup, OutOfMemoryLeavesNothingBehind) {
  ASSERT_TRUE(ko::test::installed());
  const struct {
    uint32_t type;
    int32_t code;
  } cases[] = {
      {KO_TYPE_LINUNIT, 9001},    {KO_TYPE_PARAMETER, 100010}, {KO_TYPE_GEOGCS, 4326},
      {KO_TYPE_GEOGCS, 4979},     {KO_TYPE_DATUM, 1165},       {KO_TYPE_PROJCS, 2154},
      {KO_TYPE_PROJCS, 27572},    {KO_TYPE_GEOGTRAN, 1241},    {KO_TYPE_GEOGTRAN, 1188},
      {KO_TYPE_EXTENT, 1262},     {KO_TYPE_VERTCS, 5703},      {KO_TYPE_HVCOORDSYS, 3901},
      {KO_TYPE_GXYZCS, 4978},     {KO_TYPE_VERTTRAN, 3858},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.code);
    // Lazily made state (message language, log settings) first.
    ko_object_del(ko_factory_object_from_code(c.type, c.code, nullptr));
    int last_number = 0;
    long made = ko::test::sweep_failures([&] {
      ko_err err{};
      void *obj = ko_factory_object_from_code(c.type, c.code, &err);
      if (obj == nullptr) last_number = err.number;
      ko_object_del(obj);
      return obj != nullptr;
    });
    EXPECT_GT(made, 1);
    EXPECT_EQ(last_number, 1);
  }
}

}  // namespace
