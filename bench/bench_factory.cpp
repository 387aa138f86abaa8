// The factory: a projected system from its code (alone, and with its
// constants loaded and one point converted, which is what a caller who
// names a system by code pays before the first result), systems and
// transformations by code and name, failing lookups beside succeeding ones,
// and the transformation search; PROJ's creation of a comparable
// transformation (EPSG:4326 to EPSG:32633) as the rival.
#include "ko.h"

#include <benchmark/benchmark.h>
#include <proj.h>

namespace {

void BM_Factory_ProjcsFromCode(benchmark::State &state) {
  for (auto _ : state) {
    ko_projcs *p = ko_factory_projcs_from_code(32633);
    benchmark::DoNotOptimize(p);
    ko_projcs_del(p);
  }
}
BENCHMARK(BM_Factory_ProjcsFromCode)->Unit(benchmark::kMicrosecond);

// Build, load the projection constants and convert one point.
void BM_Factory_ProjcsFromCodeToFirstPoint(benchmark::State &state) {
  for (auto _ : state) {
    ko_projcs *p = ko_factory_projcs_from_code(32633);
    double xy[2] = {15.0, 52.0};
    benchmark::DoNotOptimize(ko_geog_to_proj(p, 1, xy));
    benchmark::DoNotOptimize(xy[0]);
    ko_projcs_del(p);
  }
}
BENCHMARK(BM_Factory_ProjcsFromCodeToFirstPoint)->Unit(benchmark::kMicrosecond);

// PROJ: create the transformation from EPSG:4326 to EPSG:32633 and
// convert one point (the context, and so PROJ's database cache, is kept).
void BM_Proj_CrsToCrsToFirstPoint(benchmark::State &state) {
  PJ_CONTEXT *ctx = proj_context_create();
  for (auto _ : state) {
    PJ *op = proj_create_crs_to_crs(ctx, "EPSG:4326", "EPSG:32633", nullptr);
    PJ_COORD c = proj_trans(op, PJ_FWD, proj_coord(52.0, 15.0, 0, 0));
    benchmark::DoNotOptimize(c);
    proj_destroy(op);
  }
  proj_context_destroy(ctx);
}
BENCHMARK(BM_Proj_CrsToCrsToFirstPoint)->Unit(benchmark::kMicrosecond);

// The same with a new context each time, as a program that starts, looks
// one transformation up and converts its points pays it.
void BM_Proj_CrsToCrsToFirstPointNewContext(benchmark::State &state) {
  for (auto _ : state) {
    PJ_CONTEXT *ctx = proj_context_create();
    PJ *op = proj_create_crs_to_crs(ctx, "EPSG:4326", "EPSG:32633", nullptr);
    PJ_COORD c = proj_trans(op, PJ_FWD, proj_coord(52.0, 15.0, 0, 0));
    benchmark::DoNotOptimize(c);
    proj_destroy(op);
    proj_context_destroy(ctx);
  }
}
BENCHMARK(BM_Proj_CrsToCrsToFirstPointNewContext)->Unit(benchmark::kMicrosecond);

void BM_Factory_ProjcsFromName(benchmark::State &state) {
  for (auto _ : state) {
    ko_projcs *p = ko_factory_projcs_from_name("WGS 84 / UTM zone 33N");
    benchmark::DoNotOptimize(p);
    ko_projcs_del(p);
  }
}
BENCHMARK(BM_Factory_ProjcsFromName)->Unit(benchmark::kMicrosecond);

void BM_Factory_GeogcsFromCode(benchmark::State &state) {
  for (auto _ : state) {
    ko_geogcs *g = ko_factory_geogcs_from_code(4326);
    benchmark::DoNotOptimize(g);
    ko_geogcs_del(g);
  }
}
BENCHMARK(BM_Factory_GeogcsFromCode)->Unit(benchmark::kMicrosecond);

void BM_Factory_GeogtranFromCode(benchmark::State &state) {
  for (auto _ : state) {
    ko_geogtran *gt = ko_factory_geogtran_from_code(1188);
    benchmark::DoNotOptimize(gt);
    ko_geogtran_del(gt);
  }
}
BENCHMARK(BM_Factory_GeogtranFromCode)->Unit(benchmark::kMicrosecond);

// A lookup that fails: an unknown code (the record, the other types and
// the report), an unknown name (hash, synonyms of every authority, the
// prefixed name, the report).
void BM_Factory_ProjcsFromUnknownCode(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(ko_factory_projcs_from_code(3));
}
BENCHMARK(BM_Factory_ProjcsFromUnknownCode)->Unit(benchmark::kMicrosecond);

void BM_Factory_ProjcsFromUnknownName(benchmark::State &state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(ko_factory_projcs_from_name("No such projected system"));
}
BENCHMARK(BM_Factory_ProjcsFromUnknownName)->Unit(benchmark::kMicrosecond);

void BM_Factory_GeogcsFromUnknownName(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(ko_factory_geogcs_from_name("No such system"));
}
BENCHMARK(BM_Factory_GeogcsFromUnknownName)->Unit(benchmark::kMicrosecond);

void BM_Factory_Candidates(benchmark::State &state) {
  ko_factory_candidate out[16];
  for (auto _ : state)
    benchmark::DoNotOptimize(ko_factory_geogtran_candidates(4267, 4269, -98.0, 38.5, out, 16));
}
BENCHMARK(BM_Factory_Candidates)->Unit(benchmark::kMicrosecond);

void BM_Factory_ProjcsAtAPoint(benchmark::State &state) {
  int32_t out[256];
  for (auto _ : state)
    benchmark::DoNotOptimize(ko_factory_codes_in_extent(KO_TYPE_PROJCS, 2.35, 48.85, out, 256));
}
BENCHMARK(BM_Factory_ProjcsAtAPoint)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
