// The catalogue's tables as data: record sizes, sort orders, unique name
// hashes, and every cross-reference resolving to a record of the right
// table.
#include "database/catalog.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

using ko::catalog::records;

const ko_db_builtin_entry &row(uint32_t type) {
  const ko_db_builtin_entry *r = ko_db_builtin_data_find(type);
  EXPECT_NE(r, nullptr) << type;
  static const ko_db_builtin_entry empty{};
  return r != nullptr ? *r : empty;
}

template <class T>
std::span<const T> data(uint32_t type) {
  return records<T>(row(type).data);
}

bool has_code(uint32_t type, int32_t code) {
  return ko_db_builtin_data_lookup_code(row(type).data, code) != nullptr;
}

struct TypeCase {
  uint32_t type;
  std::size_t record_size;
};

const TypeCase kTypes[] = {
    {KO_TYPE_GEOGCS, 32},     {KO_TYPE_PROJCS, 40},   {KO_TYPE_VERTCS, 32},
    {KO_TYPE_GXYZCS, 24},     {KO_TYPE_HVCOORDSYS, 24}, {KO_TYPE_DATUM, 272},
    {KO_TYPE_VDATUM, 272},    {KO_TYPE_GEOGTRAN, 48}, {KO_TYPE_VERTTRAN, 64},
    {KO_TYPE_ANGUNIT, 48},    {KO_TYPE_LINUNIT, 56},  {KO_TYPE_SCALEUNIT, 48},
    {KO_TYPE_AREAUNIT, 56},   {KO_TYPE_PRIMEM, 24},   {KO_TYPE_SPHEROID, 32},
    {KO_TYPE_HTMETHOD, 16},   {KO_TYPE_METHOD, 16},   {KO_TYPE_VTMETHOD, 16},
    {KO_TYPE_PROJECTION, 16}, {KO_TYPE_PARAMETER, 16}, {KO_TYPE_EXTENT, 48},
};

// Codes of the data records of a type, in table order.
std::vector<int32_t> data_codes(const ko_db_tbl *tbl) {
  std::vector<int32_t> codes;
  const auto *base = static_cast<const unsigned char *>(tbl->recs);
  for (int32_t i = 0; i < tbl->count; ++i) {
    int32_t code;
    std::size_t offset = tbl == &ko_obj_extent_data_tbl ? 0 : kDataCodeOffset;
    std::memcpy(&code, base + static_cast<std::size_t>(i) * tbl->size + offset, sizeof code);
    codes.push_back(code);
  }
  return codes;
}

TEST(CatalogRegistry, EveryTypeHasItsRowWithDataOfTheDeclaredRecordSize) {
  int rows = 0;
  for (const ko_db_builtin_entry *r = ko_db_builtin_registry; r->type != 0; ++r) ++rows;
  EXPECT_EQ(rows, static_cast<int>(std::size(kTypes)));
  for (const TypeCase &c : kTypes) {
    const ko_db_builtin_entry &r = row(c.type);
    EXPECT_EQ(r.type, c.type);
    ASSERT_NE(r.data, nullptr) << c.type;
    EXPECT_EQ(static_cast<std::size_t>(r.data->size), c.record_size) << c.type;
    EXPECT_GT(r.data->count, 0) << c.type;
    EXPECT_EQ(r.data->reserved[0], nullptr);
    EXPECT_EQ(r.data->reserved[1], nullptr);
    if (c.type != KO_TYPE_EXTENT) {
      ASSERT_NE(r.synonym, nullptr) << c.type;
      ASSERT_NE(r.name, nullptr) << c.type;
      EXPECT_EQ(r.name->count, static_cast<uint64_t>(r.data->count)) << c.type;
    }
  }
  EXPECT_EQ(ko_db_builtin_data_find(0), nullptr);
  EXPECT_EQ(ko_db_builtin_data_find(KO_TYPE_COORDSYS), nullptr);   // composite codes have no row
  EXPECT_EQ(ko_db_builtin_data_find(KO_TYPE_AUTHORITY), nullptr);
}

TEST(CatalogTables, DataTablesAreSortedByCodeWithoutRepeats) {
  for (const TypeCase &c : kTypes) {
    std::vector<int32_t> codes = data_codes(row(c.type).data);
    for (std::size_t i = 1; i < codes.size(); ++i)
      ASSERT_LT(codes[i - 1], codes[i]) << "type " << c.type << " at " << i;
  }
}

TEST(CatalogTables, NameTablesAreSortedByUnsignedHashAndMatchTheNames) {
  for (const TypeCase &c : kTypes) {
    if (c.type == KO_TYPE_EXTENT) continue;
    auto names = records<ko_db_name_rec>(row(c.type).name);
    for (std::size_t i = 1; i < names.size(); ++i)
      ASSERT_LT(names[i - 1].hash, names[i].hash) << "type " << c.type << " at " << i;
    // Each hash is the hash of its record's name.
    for (const ko_db_name_rec &n : names) {
      const void *rec = ko_db_builtin_data_lookup_code(row(c.type).data, n.code);
      ASSERT_NE(rec, nullptr) << n.code;
      const char *name;
      std::memcpy(&name, rec, sizeof name);
      ASSERT_EQ(ko_str_hashcode(name), n.hash) << name;
      ASSERT_LT(std::strlen(name), 80u) << name;
    }
  }
}

TEST(CatalogTables, PerCodeTablesAreSortedByCode) {
  for (const TypeCase &c : kTypes) {
    const ko_db_builtin_entry &r = row(c.type);
    auto check_pairs = [&](const ko_db_tbl *t, const char *what) {
      auto recs = records<ko_db_pair_rec>(t);
      for (std::size_t i = 1; i < recs.size(); ++i)
        ASSERT_LT(recs[i - 1].code, recs[i].code) << what << " of type " << c.type;
    };
    check_pairs(r.deprecated, "deprecated");
    check_pairs(r.codechange, "codechange");
    check_pairs(r.axis, "axis");
    check_pairs(r.exception, "exception");
    for (const ko_db_tbl *t : {r.description, r.defstring}) {
      auto recs = records<ko_db_text_rec>(t);
      for (std::size_t i = 1; i < recs.size(); ++i) ASSERT_LT(recs[i - 1].code, recs[i].code);
    }
    auto versions = records<ko_db_version_rec>(r.version);
    for (std::size_t i = 1; i < versions.size(); ++i)
      ASSERT_LT(versions[i - 1].code, versions[i].code);
    auto areas = records<ko_db_areacode_rec>(r.areacode);
    for (std::size_t i = 1; i < areas.size(); ++i) {
      ASSERT_TRUE(areas[i - 1].code < areas[i].code ||
                  (areas[i - 1].code == areas[i].code &&
                   areas[i - 1].sequence < areas[i].sequence));
    }
    auto infos = records<ko_db_areainfo_rec>(r.areainfo);
    for (std::size_t i = 1; i < infos.size(); ++i) ASSERT_LT(infos[i - 1].area, infos[i].area);
  }
}

TEST(CatalogTables, SynonymsAreSortedByNameKeyAndUniquePerAuthority) {
  for (const TypeCase &c : kTypes) {
    if (c.type == KO_TYPE_EXTENT) continue;
    auto syns = records<ko_db_synonym_rec>(row(c.type).synonym());
    std::set<std::pair<std::string, std::string>> seen;
    for (std::size_t i = 0; i < syns.size(); ++i) {
      if (i > 0) {
        ASSERT_LE(ko::catalog::compare_name_keys(syns[i - 1].synonym, syns[i].synonym), 0);
      }
      ASSERT_NE(ko_db_builtin_data_lookup_name(&row(c.type), syns[i].name), nullptr)
          << syns[i].name << " (synonym " << syns[i].synonym << ")";
      std::string key;
      for (const char *p = syns[i].synonym; *p; ++p)
        if (!std::strchr(" \t()-/\\_", *p)) key += static_cast<char>(std::tolower(*p));
      std::string auth = syns[i].authority;
      for (char &ch : auth) ch = static_cast<char>(std::tolower(ch));
      ASSERT_TRUE(seen.insert({key, auth}).second) << syns[i].synonym << " " << auth;
    }
  }
}

// Library names follow one convention: words of letters and digits joined
// by single underscores, within 79 characters; geographic systems begin
// with "GCS_", datums with "D_".
TEST(CatalogTables, NamesFollowTheNamingConvention) {
  const uint32_t types[] = {KO_TYPE_GEOGCS, KO_TYPE_PROJCS, KO_TYPE_VERTCS, KO_TYPE_GXYZCS,
                            KO_TYPE_HVCOORDSYS, KO_TYPE_DATUM, KO_TYPE_VDATUM, KO_TYPE_GEOGTRAN,
                            KO_TYPE_VERTTRAN, KO_TYPE_SPHEROID, KO_TYPE_PRIMEM};
  for (uint32_t type : types) {
    const ko_db_tbl *tbl = row(type).data;
    for (int32_t i = 0; i < tbl->count; ++i) {
      const char *name = ko::catalog::data_record_name(
          static_cast<const unsigned char *>(tbl->recs) + static_cast<std::size_t>(i) * tbl->size);
      std::string n = name;
      ASSERT_FALSE(n.empty());
      ASSERT_LE(n.size(), 79u) << n;
      ASSERT_NE(n.front(), '_') << n;
      ASSERT_NE(n.back(), '_') << n;
      ASSERT_EQ(n.find("__"), std::string::npos) << n;
      for (char c : n) ASSERT_TRUE(std::isalnum(static_cast<unsigned char>(c)) || c == '_') << n;
      const char *prefix = type == KO_TYPE_GEOGCS ? "GCS_" : type == KO_TYPE_DATUM ? "D_" : "";
      ASSERT_EQ(n.rfind(prefix, 0), 0u) << n;
    }
  }
}

TEST(CatalogTables, DefstringsAreUniqueConstantNames) {
  for (const TypeCase &c : kTypes) {
    if (c.type == KO_TYPE_EXTENT) continue;
    std::set<std::string> seen;
    for (const ko_db_text_rec &d : records<ko_db_text_rec>(row(c.type).defstring)) {
      ASSERT_TRUE(seen.insert(d.text).second) << d.text;
      ASSERT_EQ(std::strncmp(d.text, "KO_", 3), 0) << d.text;
      for (const char *p = d.text; *p; ++p)
        ASSERT_TRUE(std::isupper(static_cast<unsigned char>(*p)) ||
                    std::isdigit(static_cast<unsigned char>(*p)) || *p == '_')
            << d.text;
    }
  }
}

TEST(CatalogReferences, GeodeticObjectsReferToCataloguedParts) {
  for (const auto &g : data<ko_db_geogcs_rec>(KO_TYPE_GEOGCS)) {
    EXPECT_TRUE(has_code(KO_TYPE_DATUM, g.datum)) << g.code;
    EXPECT_TRUE(has_code(KO_TYPE_PRIMEM, g.primem)) << g.code;
    EXPECT_TRUE(has_code(KO_TYPE_ANGUNIT, g.angunit)) << g.code;
  }
  for (const auto &g : data<ko_db_gxyzcs_rec>(KO_TYPE_GXYZCS)) {
    EXPECT_TRUE(has_code(KO_TYPE_DATUM, g.datum)) << g.code;
    EXPECT_TRUE(has_code(KO_TYPE_PRIMEM, g.primem)) << g.code;
    EXPECT_TRUE(has_code(KO_TYPE_LINUNIT, g.linunit)) << g.code;
  }
  for (const auto &d : data<ko_db_datum_rec>(KO_TYPE_DATUM))
    EXPECT_TRUE(has_code(KO_TYPE_SPHEROID, d.spheroid)) << d.code;
  for (const auto &s : data<ko_db_spheroid_rec>(KO_TYPE_SPHEROID)) {
    EXPECT_TRUE(has_code(KO_TYPE_LINUNIT, s.linunit)) << s.code;
    EXPECT_GT(s.axis, 0.0);
    EXPECT_GE(s.flattening, 0.0);
    EXPECT_LT(s.flattening, 0.01);
  }
  for (const auto &p : data<ko_db_primem_rec>(KO_TYPE_PRIMEM)) {
    EXPECT_TRUE(has_code(KO_TYPE_ANGUNIT, p.angunit)) << p.code;
    EXPECT_LE(std::fabs(p.longitude), 200.0);
  }
  for (const auto &v : data<ko_db_vertcs_rec>(KO_TYPE_VERTCS)) {
    EXPECT_TRUE(has_code(KO_TYPE_VDATUM, v.vdatum)) << v.code;
    EXPECT_TRUE(has_code(KO_TYPE_LINUNIT, v.linunit)) << v.code;
    EXPECT_TRUE(v.direction == 1 || v.direction == -1);
  }
  for (const auto &h : data<ko_db_hvcoordsys_rec>(KO_TYPE_HVCOORDSYS)) {
    EXPECT_TRUE(has_code(h.hcs_type == KO_TYPE_GEOGCS ? KO_TYPE_GEOGCS : KO_TYPE_PROJCS, h.hcs))
        << h.code;
    EXPECT_TRUE(has_code(KO_TYPE_VERTCS, h.vcs)) << h.code;
  }
}

// Every parameter of a pool run is in the parameter list, no two in one
// run share a slot, and the runs tile the pool.
template <class Rec>
void check_pool(std::span<const Rec> recs, const ko_db_parm_rec *pool, int32_t pool_count) {
  int32_t next = 0;
  for (const Rec &r : recs) {
    ASSERT_EQ(r.parm_first, next) << r.code;
    next += r.parm_count;
    std::set<int> slots;
    for (int32_t i = r.parm_first; i < r.parm_first + r.parm_count; ++i) {
      int slot = ko::catalog::parameter_slot(pool[i].code);
      ASSERT_GE(slot, 0) << r.code << " parameter " << pool[i].code;
      ASSERT_TRUE(slots.insert(slot).second) << r.code << " slot " << slot;
      ASSERT_TRUE(std::isfinite(pool[i].value)) << r.code;
    }
  }
  EXPECT_EQ(next, pool_count);
}

TEST(CatalogReferences, ProjectedSystemsReferToGeographicSystemsProjectionsAndUnits) {
  auto projcs = data<ko_db_projcs_rec>(KO_TYPE_PROJCS);
  for (const auto &p : projcs) {
    EXPECT_TRUE(has_code(KO_TYPE_GEOGCS, p.geogcs)) << p.code;
    EXPECT_TRUE(has_code(KO_TYPE_PROJECTION, p.projection)) << p.code;
    EXPECT_TRUE(has_code(KO_TYPE_LINUNIT, p.linunit)) << p.code;
    EXPECT_GT(p.parm_count, 0) << p.code;
  }
  check_pool(projcs, ko_obj_projcs_parms, ko_obj_projcs_parms_cnt);
}

TEST(CatalogReferences, TransformationsReferToTheirSystemsMethodsAndGridNames) {
  auto geogtran = data<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN);
  for (const auto &t : geogtran) {
    EXPECT_TRUE(has_code(KO_TYPE_GEOGCS, t.gcs1)) << t.code;
    EXPECT_TRUE(has_code(KO_TYPE_GEOGCS, t.gcs2)) << t.code;
    EXPECT_TRUE(has_code(KO_TYPE_METHOD, t.method)) << t.code;
    EXPECT_GE(t.accuracy, 0.0) << t.code;
  }
  check_pool(geogtran, ko_obj_geogtran_parms, ko_obj_geogtran_parms_cnt);
  auto verttran = data<ko_db_verttran_rec>(KO_TYPE_VERTTRAN);
  for (const auto &t : verttran) {
    EXPECT_TRUE(has_code(KO_TYPE_VERTCS, t.vcs1) || has_code(KO_TYPE_GEOGCS, t.vcs1)) << t.code;
    EXPECT_TRUE(has_code(KO_TYPE_VERTCS, t.vcs2)) << t.code;
    EXPECT_TRUE(has_code(KO_TYPE_VTMETHOD, t.method)) << t.code;
  }
  check_pool(verttran, ko_obj_verttran_parms, ko_obj_verttran_parms_cnt);
  for (int32_t i = 0; i < ko_obj_geogtran_parms_cnt; ++i) {
    const ko_db_parm_rec &p = ko_obj_geogtran_parms[i];
    if (p.code != 100047) continue;
    ASSERT_GE(p.aux, 0);
    ASSERT_LT(p.aux, ko_obj_geogtran_parm_texts_cnt);
    EXPECT_GT(std::strlen(ko_obj_geogtran_parm_texts[p.aux]), 3u);
  }
}

TEST(CatalogReferences, HistoryAreasEnsemblesAndTiesResolve) {
  for (const TypeCase &c : kTypes) {
    const ko_db_builtin_entry &r = row(c.type);
    for (const auto &d : records<ko_db_pair_rec>(r.deprecated)) EXPECT_TRUE(has_code(c.type, d.code));
    for (const auto &d : records<ko_db_pair_rec>(r.codechange)) {
      EXPECT_TRUE(has_code(c.type, d.code)) << d.code;
      EXPECT_TRUE(has_code(c.type, d.value)) << d.value;
      EXPECT_NE(ko_db_builtin_deprecated_lookup(&r, d.code), nullptr) << d.code;
    }
    for (const auto &a : records<ko_db_areacode_rec>(r.areacode)) {
      EXPECT_TRUE(has_code(c.type, a.code));
      EXPECT_NE(ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, a.area), nullptr);
      if (r.areainfo != nullptr) {
        EXPECT_NE(ko_db_builtin_areainfo_lookup(&r, a.area), nullptr);
      }
    }
    for (const auto &e : records<ko_db_ensemble_rec>(r.ensemble)) {
      EXPECT_TRUE(has_code(c.type, e.code));
      EXPECT_TRUE(has_code(c.type, e.member)) << e.code << " member " << e.member;
    }
    for (const auto &e : records<ko_db_epoch_rec>(r.epoch)) {
      EXPECT_TRUE(has_code(c.type, e.code));
      EXPECT_GT(e.epoch, 1900.0);
      EXPECT_LT(e.epoch, 2100.0);
    }
  }
  for (const auto &g : records<ko_db_gcsvcs_rec>(&ko_obj_geogcs_gcsvcs_tbl)) {
    EXPECT_TRUE(has_code(KO_TYPE_GEOGCS, g.gcs));
    if (g.gcs3d != 0) {
      EXPECT_TRUE(has_code(KO_TYPE_GEOGCS, g.gcs3d));
    }
    if (g.xyz != 0) {
      EXPECT_TRUE(has_code(KO_TYPE_GXYZCS, g.xyz));
    }
  }
}

TEST(CatalogTables, CodeRangesCoverTheCodesOfTheirTypes) {
  const ko_db_ranges *ranges[] = {&ko_coderanges_tbl_geogcs, &ko_coderanges_tbl_projcs,
                                  &ko_coderanges_tbl_datum,  &ko_coderanges_tbl_geogtran,
                                  &ko_coderanges_tbl_spheroid, &ko_coderanges_tbl_linunit};
  for (const ko_db_ranges *r : ranges) {
    ASSERT_EQ(r->capacity, r->count + 1);
    EXPECT_EQ(r->recs[r->count].low, 0);
    EXPECT_EQ(r->recs[r->count].authority[0], '\0');
    for (int32_t code : data_codes(row(r->type).data)) {
      bool covered = false;
      for (int i = 0; i < r->count; ++i)
        covered |= code >= r->recs[i].low && code <= r->recs[i].high;
      EXPECT_TRUE(covered) << "type " << r->type << " code " << code;
    }
  }
  EXPECT_STREQ(ko_coderanges_tbl_geogcs.recs[0].authority, "EPSG");
}

}  // namespace
