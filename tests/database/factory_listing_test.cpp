// The factory's listings: counts and codes in order, objects whose area of
// use holds a point (against EPSG's usages in proj.db), the ranked
// transformation candidates between two systems and the composite built
// from the best usable one.
#include "database/factory_support.h"
#include "support/failing_alloc.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

namespace {

using ko::test::Obj;
using ko::test::proj_db_rows;

std::vector<int32_t> record_codes(std::initializer_list<uint32_t> types) {
  std::vector<int32_t> codes;
  for (uint32_t t : types) ko::test::for_each_record(t, [&](const void *, int32_t c) { codes.push_back(c); });
  std::sort(codes.begin(), codes.end());
  return codes;
}

std::vector<int32_t> listed(uint32_t type) {
  std::vector<int32_t> codes;
  int n = ko_factory_count(type);
  for (int i = 0; i < n; ++i) codes.push_back(ko_factory_code_at(type, i));
  return codes;
}

TEST(FactoryListing, CountsAndCodesInOrder) {
  const struct {
    uint32_t type;
    std::initializer_list<uint32_t> members;
  } cases[] = {
      {KO_TYPE_GEOGCS, {KO_TYPE_GEOGCS}},
      {KO_TYPE_PROJCS, {KO_TYPE_PROJCS}},
      {KO_TYPE_GEOGTRAN, {KO_TYPE_GEOGTRAN}},
      {KO_TYPE_PARAMETER, {KO_TYPE_PARAMETER}},
      {KO_TYPE_UNIT, {KO_TYPE_LINUNIT, KO_TYPE_ANGUNIT, KO_TYPE_SCALEUNIT}},
      {KO_TYPE_COORDSYS, {KO_TYPE_GEOGCS, KO_TYPE_PROJCS}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.type);
    std::vector<int32_t> want = record_codes(c.members);
    EXPECT_EQ(ko_factory_count(c.type), static_cast<int>(want.size()));
    EXPECT_EQ(listed(c.type), want);
    EXPECT_EQ(ko_factory_code_at(c.type, -1), 0);
    EXPECT_EQ(ko_factory_code_at(c.type, ko_factory_count(c.type)), 0);
  }
  EXPECT_EQ(ko_factory_count(KO_TYPE_EXTENT), ko_obj_extent_data_tbl.count);
  EXPECT_EQ(ko_factory_code_at(KO_TYPE_EXTENT, 0), 1024);
  EXPECT_EQ(ko_factory_count(KO_TYPE_AUTHORITY), -1);
  EXPECT_EQ(ko_factory_code_at(KO_TYPE_AUTHORITY, 0), 0);
}

// EPSG objects of a table whose usage extent holds the point.
std::set<int32_t> epsg_at(const char *table, double lon, double lat) {
  char sql[1024];
  std::snprintf(sql, sizeof sql,
                "SELECT DISTINCT u.object_code FROM usage u JOIN extent e ON e.auth_name = "
                "u.extent_auth_name AND e.code = u.extent_code WHERE u.object_table_name = '%s' "
                "AND u.object_auth_name = 'EPSG' AND e.south_lat <= %.10g AND e.north_lat >= %.10g "
                "AND ((e.west_lon <= e.east_lon AND e.west_lon <= %.10g AND e.east_lon >= %.10g) OR "
                "(e.west_lon > e.east_lon AND (e.west_lon <= %.10g OR e.east_lon >= %.10g)))",
                table, lat, lat, lon, lon, lon, lon);
  std::set<int32_t> codes;
  for (const auto &r : proj_db_rows(sql)) codes.insert(std::stoi(r[0]));
  return codes;
}

// Objects with more than one usage in EPSG (the catalogue keeps the first).
std::set<int32_t> several_usages(const char *table) {
  std::set<int32_t> codes;
  for (const auto &r : proj_db_rows(std::string("SELECT object_code FROM usage WHERE "
                                                "object_table_name = '") +
                                    table + "' AND object_auth_name = 'EPSG' GROUP BY "
                                            "object_code HAVING COUNT(*) > 1"))
    codes.insert(std::stoi(r[0]));
  return codes;
}

std::vector<int32_t> factory_at(uint32_t type, double lon, double lat) {
  int n = ko_factory_codes_in_extent(type, lon, lat, nullptr, 0);
  std::vector<int32_t> codes(static_cast<std::size_t>(std::max(n, 0)));
  EXPECT_EQ(ko_factory_codes_in_extent(type, lon, lat, codes.data(), n), n);
  return codes;
}

TEST(FactoryListing, ObjectsWhoseAreaHoldsAPointMatchEpsg) {
  const struct {
    const char *where;
    uint32_t type;
    const char *table;
    double lon, lat;
    int32_t must;
  } cases[] = {
      {"Paris", KO_TYPE_PROJCS, "projected_crs", 2.35, 48.85, 2154},
      {"Paris", KO_TYPE_GEOGCS, "geodetic_crs", 2.35, 48.85, 4171},
      {"Fiji, across the antimeridian", KO_TYPE_PROJCS, "projected_crs", -179.95, -16.5, 3460},
      {"Kansas", KO_TYPE_GEOGTRAN, "helmert_transformation", -98.0, 38.5, 1188},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.where);
    std::vector<int32_t> found = factory_at(c.type, c.lon, c.lat);
    EXPECT_TRUE(std::is_sorted(found.begin(), found.end()));
    EXPECT_TRUE(std::binary_search(found.begin(), found.end(), c.must));
    // The same point a turn of the earth further east.
    EXPECT_EQ(factory_at(c.type, c.lon + 360.0, c.lat), found);
    std::set<int32_t> epsg = epsg_at(c.table, c.lon, c.lat);
    if (epsg.empty()) continue;  // no proj.db
    std::set<int32_t> several = several_usages(c.table);
    for (int32_t code : found) {
      if (c.type != KO_TYPE_GEOGTRAN) {
        EXPECT_TRUE(epsg.count(code)) << code;
      }
    }
    for (int32_t code : epsg) {
      bool in_catalogue = ko_db_builtin_data_lookup_code(ko::test::row(c.type)->data, code) != nullptr;
      if (in_catalogue && !several.count(code)) {
        EXPECT_TRUE(std::binary_search(found.begin(), found.end(), code)) << code;
      }
    }
  }
}

TEST(FactoryListing, CodesInExtentRefusesBadArguments) {
  int32_t out[4];
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_PROJCS, NAN, 48.0, out, 4), -1);
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.0, INFINITY, out, 4), -1);
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.0, 48.0, out, -1), -1);
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.0, 48.0, nullptr, 4), -1);
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_DATUM, 2.0, 48.0, out, 4), -1);
  // A short array receives the first codes; the count is all of them.
  int all = ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.35, 48.85, nullptr, 0);
  ASSERT_GT(all, 4);
  EXPECT_EQ(ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.35, 48.85, out, 4), all);
  std::vector<int32_t> full = factory_at(KO_TYPE_PROJCS, 2.35, 48.85);
  EXPECT_TRUE(std::equal(out, out + 4, full.begin()));
  // The search flags the areas holding the point in memory of its own.
  ASSERT_TRUE(ko::test::installed());
  ko::test::fail_after(0);
  int starved = ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.35, 48.85, out, 4);
  ko::test::never_fail();
  EXPECT_EQ(starved, -1);
}

// EPSG's live transformations between two systems whose area holds the
// point (or all of them for a non-finite point), as far as the catalogue
// has them.
std::set<int32_t> epsg_between(int gcs1, int gcs2, double lon, double lat) {
  char sql[1024];
  std::snprintf(sql, sizeof sql,
                "SELECT DISTINCT o.code FROM coordinate_operation_view o JOIN usage u ON "
                "u.object_table_name = o.table_name AND u.object_auth_name = o.auth_name AND "
                "u.object_code = o.code JOIN extent e ON e.auth_name = u.extent_auth_name AND "
                "e.code = u.extent_code WHERE o.auth_name = 'EPSG' AND o.deprecated = 0 AND "
                "((o.source_crs_code = '%d' AND o.target_crs_code = '%d') OR "
                "(o.source_crs_code = '%d' AND o.target_crs_code = '%d'))",
                gcs1, gcs2, gcs2, gcs1);
  std::string query = sql;
  if (std::isfinite(lon)) {
    char area[512];
    std::snprintf(area, sizeof area,
                  " AND e.south_lat <= %.10g AND e.north_lat >= %.10g AND ((e.west_lon <= "
                  "e.east_lon AND e.west_lon <= %.10g AND e.east_lon >= %.10g) OR (e.west_lon > "
                  "e.east_lon AND (e.west_lon <= %.10g OR e.east_lon >= %.10g)))",
                  lat, lat, lon, lon, lon, lon);
    query += area;
  }
  std::set<int32_t> codes;
  const ko_db_builtin_entry *row = ko::test::row(KO_TYPE_GEOGTRAN);
  for (const auto &r : proj_db_rows(query)) {
    int32_t code = std::stoi(r[0]);
    if (ko_db_builtin_data_lookup_code(row->data, code) != nullptr) codes.insert(code);
  }
  return codes;
}

std::vector<ko_factory_candidate> candidates(int gcs1, int gcs2, double lon, double lat) {
  int n = ko_factory_geogtran_candidates(gcs1, gcs2, lon, lat, nullptr, 0);
  std::vector<ko_factory_candidate> out(static_cast<std::size_t>(std::max(n, 0)));
  EXPECT_EQ(ko_factory_geogtran_candidates(gcs1, gcs2, lon, lat, out.data(), n), n);
  return out;
}

bool known(double accuracy) { return accuracy > 0 && accuracy < 999.0; }

TEST(FactoryListing, TransformationCandidatesMatchEpsgAndAreRanked) {
  const struct {
    const char *what;
    int gcs1, gcs2;
    double lon, lat;
    int32_t must;
  } cases[] = {
      {"NAD27 to NAD83 in Kansas", 4267, 4269, -98.0, 38.5, 1241},
      {"NAD83 to NAD27 in Kansas", 4269, 4267, -98.0, 38.5, 1241},
      {"ED50 to WGS 84 in Spain", 4230, 4326, -3.7, 40.4, 1133},
      {"NAD27 to WGS 84 anywhere", 4267, 4326, NAN, NAN, 1173},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<ko_factory_candidate> found = candidates(c.gcs1, c.gcs2, c.lon, c.lat);
    std::set<int32_t> codes;
    for (const auto &k : found) {
      codes.insert(k.code);
      const auto *rec = ko::test::record<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN, k.code);
      ASSERT_NE(rec, nullptr);
      EXPECT_EQ(k.accuracy, rec->accuracy);
      EXPECT_EQ(k.direction, rec->gcs1 == c.gcs1 ? 0 : 1) << k.code;
      EXPECT_TRUE((rec->gcs1 == c.gcs1 && rec->gcs2 == c.gcs2) ||
                  (rec->gcs1 == c.gcs2 && rec->gcs2 == c.gcs1))
          << k.code;
      EXPECT_EQ(ko_db_builtin_deprecated_lookup(ko::test::row(KO_TYPE_GEOGTRAN), k.code), nullptr);
    }
    EXPECT_TRUE(codes.count(c.must)) << c.must;
    for (std::size_t i = 1; i < found.size(); ++i) {
      const auto &a = found[i - 1];
      const auto &b = found[i];
      EXPECT_FALSE(!known(a.accuracy) && known(b.accuracy)) << a.code << " before " << b.code;
      if (known(a.accuracy) && known(b.accuracy)) {
        EXPECT_LE(a.accuracy, b.accuracy) << a.code << " before " << b.code;
      }
    }
    std::set<int32_t> epsg = epsg_between(c.gcs1, c.gcs2, c.lon, c.lat);
    if (!epsg.empty()) {
      EXPECT_EQ(codes, epsg);
    }
  }
}

TEST(FactoryListing, CandidateArguments) {
  ko_factory_candidate one[1];
  int all = ko_factory_geogtran_candidates(4267, 4326, NAN, NAN, nullptr, 0);
  ASSERT_GT(all, 10);
  EXPECT_EQ(ko_factory_geogtran_candidates(4267, 4326, NAN, NAN, one, 1), all);
  EXPECT_EQ(one[0].code, candidates(4267, 4326, NAN, NAN)[0].code);
  EXPECT_EQ(ko_factory_geogtran_candidates(4267, 4326, NAN, NAN, one, -1), -1);
  EXPECT_EQ(ko_factory_geogtran_candidates(4267, 4326, NAN, NAN, nullptr, 3), -1);
  EXPECT_EQ(ko_factory_geogtran_candidates(4326, 4326, NAN, NAN, one, 1), 0);
  EXPECT_EQ(ko_factory_geogtran_candidates(3, 4326, NAN, NAN, one, 1), 0);
  // A replaced code stands for its replacement.
  EXPECT_EQ(ko_factory_geogtran_candidates(4126, 4326, NAN, NAN, nullptr, 0),
            ko_factory_geogtran_candidates(4669, 4326, NAN, NAN, nullptr, 0));
}

struct EntryDeleter {
  void operator()(ko_gtlist_entry *e) const { ko_gtlist_entry_del(e); }
};
using Entry = std::unique_ptr<ko_gtlist_entry, EntryDeleter>;

// The first candidate, in rank order, that builds and can be used.
ko_factory_candidate first_usable(int gcs1, int gcs2, double lon, double lat) {
  for (const auto &k : candidates(gcs1, gcs2, lon, lat)) {
    Obj gt(ko_factory_geogtran_from_code(k.code));
    if (gt != nullptr && ko_geogtran_usable(static_cast<ko_geogtran *>(gt.get()))) return k;
  }
  return ko_factory_candidate{0, 0, 0.0};
}

TEST(FactoryListing, BestPathIsTheFirstUsableCandidate) {
  const double lon = -3.7, lat = 40.4;
  ko_factory_candidate want = first_usable(4230, 4326, lon, lat);
  ASSERT_NE(want.code, 0);
  ko_err err{};
  Entry entry(ko_factory_gtlist_best(4230, 4326, lon, lat, &err));
  ASSERT_NE(entry, nullptr) << err.number;
  ASSERT_EQ(entry->count, 1);
  EXPECT_EQ(ko_object_code(entry->steps[0].gt), want.code);
  EXPECT_EQ(entry->steps[0].direction, want.direction);
  EXPECT_EQ(entry->rank, 1);
  EXPECT_EQ(entry->rank_primary, std::llround(want.accuracy * 1000.0));
  EXPECT_EQ(entry->rank_secondary, want.code);
  // Running the composite is running its transformation.
  double a[2] = {lon, lat};
  double b[2] = {lon, lat};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry.get(), 1, a, nullptr, 0), 1);
  EXPECT_EQ(ko_geog_to_geog(entry->steps[0].gt, 1, b, nullptr, want.direction), 1);
  EXPECT_EQ(a[0], b[0]);
  EXPECT_EQ(a[1], b[1]);
  EXPECT_NE(a[0], lon);
}

// ED50 and MGI have no transformation of their own in Austria: two steps
// through WGS 84, each the best usable one.
TEST(FactoryListing, WithoutADirectOneTheBestPathGoesThroughWgs84) {
  const double lon = 14.5, lat = 47.5;
  ASSERT_EQ(ko_factory_geogtran_candidates(4230, 4312, lon, lat, nullptr, 0), 0);
  ko_factory_candidate first = first_usable(4230, 4326, lon, lat);
  ko_factory_candidate second = first_usable(4326, 4312, lon, lat);
  ASSERT_NE(first.code, 0);
  ASSERT_NE(second.code, 0);
  Entry entry(ko_factory_gtlist_best(4230, 4312, lon, lat, nullptr));
  ASSERT_NE(entry, nullptr);
  ASSERT_EQ(entry->count, 2);
  EXPECT_EQ(ko_object_code(entry->steps[0].gt), first.code);
  EXPECT_EQ(entry->steps[0].direction, first.direction);
  EXPECT_EQ(ko_object_code(entry->steps[1].gt), second.code);
  EXPECT_EQ(entry->steps[1].direction, second.direction);
  EXPECT_EQ(entry->rank, 2);
  double a[2] = {lon, lat};
  double b[2] = {lon, lat};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(entry.get(), 1, a, nullptr, 0), 1);
  ko_geog_to_geog(entry->steps[0].gt, 1, b, nullptr, first.direction);
  ko_geog_to_geog(entry->steps[1].gt, 1, b, nullptr, second.direction);
  EXPECT_EQ(a[0], b[0]);
  EXPECT_EQ(a[1], b[1]);
}

TEST(FactoryListing, BestPathOfOneSystemAndFailures) {
  Entry same(ko_factory_gtlist_best(4326, 4326, 0.0, 0.0, nullptr));
  ASSERT_NE(same, nullptr);
  ASSERT_EQ(same->count, 1);
  EXPECT_EQ(ko_object_code(ko_geogtran_method(same->steps[0].gt)), 109600);
  double p[2] = {12.5, 41.9};
  EXPECT_EQ(ko_factory_gtlist_geog_to_geog(same.get(), 1, p, nullptr, 0), 1);
  EXPECT_EQ(p[0], 12.5);
  EXPECT_EQ(p[1], 41.9);

  ko_err err{};
  EXPECT_EQ(ko_factory_gtlist_best(4267, 4230, -98.0, 38.5, &err), nullptr);
  EXPECT_EQ(err.number, 225);
  EXPECT_STREQ(err.message, "No range matches: 4267 to 4230");
  EXPECT_STREQ(err.source, "ko_factory_gtlist_best");
  EXPECT_EQ(ko_factory_gtlist_best(3, 4326, 0.0, 0.0, &err), nullptr);
  EXPECT_EQ(err.number, 203);
  EXPECT_STREQ(err.message, "3");
}

}  // namespace
