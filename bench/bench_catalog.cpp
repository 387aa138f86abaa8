// Catalogue lookups: by code, by name (through the hash, and through the
// scan that settles the names the hash search misses), by synonym both
// ways, and the search of the read-only database; beside PROJ's lookup of
// an EPSG code in its database as the rival.
#include "ko.h"

#include <benchmark/benchmark.h>
#include <proj.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

const ko_db_builtin_entry *row(uint32_t type) { return ko_db_builtin_data_find(type); }

std::vector<int32_t> projcs_codes() {
  const ko_db_tbl *t = row(KO_TYPE_PROJCS)->data;
  const auto *recs = static_cast<const ko_db_projcs_rec *>(t->recs);
  std::vector<int32_t> codes;
  for (int32_t i = 0; i < t->count; i += 7) codes.push_back(recs[i].code);
  return codes;
}

std::vector<std::string> projcs_names() {
  const ko_db_tbl *t = row(KO_TYPE_PROJCS)->data;
  const auto *recs = static_cast<const ko_db_projcs_rec *>(t->recs);
  std::vector<std::string> names;
  for (int32_t i = 0; i < t->count; i += 7) names.emplace_back(recs[i].name);
  return names;
}

// A projected system's name that the signed hash search misses: its
// spelling with spaces is not found (the scan compares whole names).
std::string name_found_by_scan() {
  const ko_db_tbl *t = row(KO_TYPE_PROJCS)->data;
  const auto *recs = static_cast<const ko_db_projcs_rec *>(t->recs);
  for (int32_t i = t->count - 1; i >= 0; --i) {
    std::string spaced = recs[i].name;
    for (char &c : spaced)
      if (c == '_') c = ' ';
    if (ko_db_builtin_data_lookup_name(row(KO_TYPE_PROJCS), spaced.c_str()) == nullptr)
      return recs[i].name;
  }
  return {};
}

void BM_LookupCode_Geogcs(benchmark::State &state) {
  const ko_db_tbl *data = row(KO_TYPE_GEOGCS)->data;
  for (auto _ : state) benchmark::DoNotOptimize(ko_db_builtin_data_lookup_code(data, 4326));
}
BENCHMARK(BM_LookupCode_Geogcs);

void BM_LookupCode_ProjcsSpread(benchmark::State &state) {
  const ko_db_tbl *data = row(KO_TYPE_PROJCS)->data;
  std::vector<int32_t> codes = projcs_codes();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ko_db_builtin_data_lookup_code(data, codes[i]));
    if (++i == codes.size()) i = 0;
  }
}
BENCHMARK(BM_LookupCode_ProjcsSpread);

void BM_LookupName_ProjcsThroughHash(benchmark::State &state) {
  const ko_db_builtin_entry *r = row(KO_TYPE_PROJCS);
  std::vector<std::string> names = projcs_names();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ko_db_builtin_data_lookup_name(r, names[i].c_str()));
    if (++i == names.size()) i = 0;
  }
}
BENCHMARK(BM_LookupName_ProjcsThroughHash);

void BM_LookupName_GeogcsLowerCase(benchmark::State &state) {
  const ko_db_builtin_entry *r = row(KO_TYPE_GEOGCS);
  for (auto _ : state) benchmark::DoNotOptimize(ko_db_builtin_data_lookup_name(r, "gcs_wgs_1984"));
}
BENCHMARK(BM_LookupName_GeogcsLowerCase);

void BM_LookupName_ProjcsThroughScan(benchmark::State &state) {
  const ko_db_builtin_entry *r = row(KO_TYPE_PROJCS);
  std::string name = name_found_by_scan();
  for (auto _ : state) benchmark::DoNotOptimize(ko_db_builtin_data_lookup_name(r, name.c_str()));
  state.SetLabel(name);
}
BENCHMARK(BM_LookupName_ProjcsThroughScan);

void BM_LookupName_Unknown(benchmark::State &state) {
  const ko_db_builtin_entry *r = row(KO_TYPE_PROJCS);
  for (auto _ : state) benchmark::DoNotOptimize(ko_db_builtin_data_lookup_name(r, "No_Such_System"));
}
BENCHMARK(BM_LookupName_Unknown);

void BM_SynonymBySynonym(benchmark::State &state) {
  char out[80];
  for (auto _ : state)
    benchmark::DoNotOptimize(
        ko_synonym_lookup_by_syn(KO_TYPE_PROJCS, "OSGB36 / British National Grid", "EPSG", out));
}
BENCHMARK(BM_SynonymBySynonym);

void BM_SynonymByLibraryName(benchmark::State &state) {
  char out[80];
  for (auto _ : state)
    benchmark::DoNotOptimize(
        ko_synonym_lookup_by_act(KO_TYPE_PROJCS, "OSGB_1936_British_National_Grid", "PostGIS", out));
}
BENCHMARK(BM_SynonymByLibraryName);

void BM_SearchProjcsWithParameters(benchmark::State &state) {
  ko_db db;
  std::memset(&db, 0, sizeof db);
  ko_db_builtin_open(&db, nullptr);
  ko_db_rec rec;
  ko_db_key key{27700, nullptr, nullptr};
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        ko_db_builtin_search(&db, KO_TYPE_PROJCS, KO_DB_KIND_DATA, &key, KO_DB_MODE_CODE, &rec));
  }
}
BENCHMARK(BM_SearchProjcsWithParameters);

// Rival: PROJ builds a CRS object from its SQLite database.
void BM_Rival_ProjCreateFromDatabase(benchmark::State &state) {
  PJ_CONTEXT *ctx = proj_context_create();
  for (auto _ : state) {
    PJ *crs = proj_create_from_database(ctx, "EPSG", "27700", PJ_CATEGORY_CRS, 0, nullptr);
    benchmark::DoNotOptimize(crs);
    proj_destroy(crs);
  }
  proj_context_destroy(ctx);
}
BENCHMARK(BM_Rival_ProjCreateFromDatabase);

}  // namespace

BENCHMARK_MAIN();
