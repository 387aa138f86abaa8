// Geographic transformations on 1,000,000 points, ko against PROJ in the
// same process: a seven-parameter Position_Vector transformation (EPSG 1314,
// OSGB36 to WGS 84, with heights) and an NTv2 shift (BETA2007.gsb).  PROJ
// runs the minimal pipeline in radians (cart, helmert, inverse cart; or
// hgridshift) through proj_trans_generic, so that neither side pays for
// unit or axis conversions.  After the runs a summary gives ns per point
// for both and PROJ's time over ko's.
#include "transformations/grid_set.h"
#include "transformations/methods.h"

#include <benchmark/benchmark.h>
#include <proj.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kPoints = 1000000;
constexpr double kDeg = 0.017453292519943295;
constexpr double kArcsec = kDeg / 3600.0;
const char *const kGrid = "/usr/share/proj/BETA2007.gsb";

// Longitudes and latitudes (radians) spread over a box, and heights.
struct Points {
  std::vector<double> lonlat, lon, lat, h;
};

Points make_points(double west, double south, double east, double north) {
  Points p;
  std::mt19937_64 rng(42);
  std::uniform_real_distribution<double> lon(west, east), lat(south, north), h(-50, 1500);
  for (int i = 0; i < kPoints; ++i) {
    const double x = lon(rng) * kDeg, y = lat(rng) * kDeg;
    p.lonlat.push_back(x);
    p.lonlat.push_back(y);
    p.lon.push_back(x);
    p.lat.push_back(y);
    p.h.push_back(h(rng));
  }
  return p;
}

const Points &uk() {
  static const Points p = make_points(-8.0, 50.0, 1.5, 60.0);
  return p;
}
const Points &germany() {
  static const Points p = make_points(6.0, 47.5, 15.0, 55.0);
  return p;
}

struct ProjHandle {
  PJ_CONTEXT *ctx = proj_context_create();
  PJ *op = nullptr;
  explicit ProjHandle(const char *def) {
    const char *paths[] = {"/usr/share/proj"};
    proj_context_set_search_paths(ctx, 1, paths);
    op = proj_create(ctx, def);
  }
  ~ProjHandle() {
    proj_destroy(op);
    proj_context_destroy(ctx);
  }
};

// ---------------------------------------------------------------------------
// Position_Vector, EPSG 1314.
std::array<double, 24> pv_params() {
  std::array<double, 24> p{};
  p[ko::kSlotTx] = 446.448;
  p[ko::kSlotTy] = -125.157;
  p[ko::kSlotTz] = 542.06;
  p[ko::kSlotRx] = 0.15 * kArcsec;
  p[ko::kSlotRy] = 0.247 * kArcsec;
  p[ko::kSlotRz] = 0.842 * kArcsec;
  p[ko::kSlotScale] = -20.489e-6;
  return p;
}

void BM_ko_position_vector(benchmark::State &state) {
  const auto params = pv_params();
  const double airy_f = 1 / 299.3249646, wgs_f = 1 / 298.257223563;
  const double airy[2] = {6377563.396, airy_f * (2 - airy_f)};
  const double wgs84[2] = {6378137.0, wgs_f * (2 - wgs_f)};
  ko::MethodArgs args;
  args.sph1 = airy;
  args.sph2 = wgs84;
  args.parms = params.data();
  std::vector<double> coord, h;
  for (auto _ : state) {
    state.PauseTiming();
    coord = uk().lonlat;
    h = uk().h;
    state.ResumeTiming();
    const int n = ko::position_vector_forward(args, kPoints, coord.data(), h.data());
    if (n != kPoints) state.SkipWithError("not every point converted");
    benchmark::DoNotOptimize(coord.data());
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_proj_position_vector(benchmark::State &state) {
  ProjHandle proj(
      "+proj=pipeline +step +proj=cart +ellps=airy "
      "+step +proj=helmert +x=446.448 +y=-125.157 +z=542.06 +rx=0.15 +ry=0.247 +rz=0.842 "
      "+s=-20.489 +convention=position_vector +step +inv +proj=cart +ellps=WGS84");
  if (proj.op == nullptr) {
    state.SkipWithError("PROJ could not build the pipeline");
    return;
  }
  std::vector<double> x, y, z;
  for (auto _ : state) {
    state.PauseTiming();
    x = uk().lon;
    y = uk().lat;
    z = uk().h;
    state.ResumeTiming();
    const std::size_t n = proj_trans_generic(proj.op, PJ_FWD, x.data(), sizeof(double), kPoints,
                                             y.data(), sizeof(double), kPoints, z.data(),
                                             sizeof(double), kPoints, nullptr, 0, 0);
    if (n != static_cast<std::size_t>(kPoints)) state.SkipWithError("PROJ converted fewer points");
    benchmark::DoNotOptimize(x.data());
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

// ---------------------------------------------------------------------------
// NTv2, BETA2007.gsb.
void BM_ko_ntv2(benchmark::State &state) {
  ko::OwnedGridSet grid(ko::ntv2_read(kGrid, nullptr));
  if (grid == nullptr) {
    state.SkipWithError("cannot read BETA2007.gsb");
    return;
  }
  ko::MethodArgs args;
  args.data = grid.get();
  std::vector<double> coord;
  for (auto _ : state) {
    state.PauseTiming();
    coord = germany().lonlat;
    state.ResumeTiming();
    const int n = ko::grid_shift_forward(args, kPoints, coord.data(), nullptr);
    if (n != kPoints) state.SkipWithError("not every point converted");
    benchmark::DoNotOptimize(coord.data());
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_proj_ntv2(benchmark::State &state) {
  ProjHandle proj((std::string("+proj=hgridshift +grids=") + kGrid).c_str());
  if (proj.op == nullptr) {
    state.SkipWithError("PROJ could not open BETA2007.gsb");
    return;
  }
  std::vector<double> x, y;
  for (auto _ : state) {
    state.PauseTiming();
    x = germany().lon;
    y = germany().lat;
    state.ResumeTiming();
    const std::size_t n = proj_trans_generic(proj.op, PJ_FWD, x.data(), sizeof(double), kPoints,
                                             y.data(), sizeof(double), kPoints, nullptr, 0, 0,
                                             nullptr, 0, 0);
    if (n != static_cast<std::size_t>(kPoints)) state.SkipWithError("PROJ converted fewer points");
    benchmark::DoNotOptimize(x.data());
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

BENCHMARK(BM_ko_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_ko_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Console output as usual, and the CPU time per point of each run kept for
// the summary.
class SummaryReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.error_occurred || run.iterations == 0) continue;
      ns_per_point[run.benchmark_name()] =
          run.GetAdjustedCPUTime() * 1e6 / kPoints;  // the unit is milliseconds
    }
  }
  std::map<std::string, double> ns_per_point;
};

void print_ratio(const SummaryReporter &r, const char *what, const std::string &ours,
                 const std::string &theirs) {
  const auto a = r.ns_per_point.find(ours), b = r.ns_per_point.find(theirs);
  if (a == r.ns_per_point.end() || b == r.ns_per_point.end()) return;
  std::printf("%-16s ko %7.1f ns/point   PROJ %7.1f ns/point   PROJ/ko %.2f\n", what, a->second,
              b->second, b->second / a->second);
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  print_ratio(reporter, "Position_Vector", "BM_ko_position_vector/min_time:2.000",
              "BM_proj_position_vector/min_time:2.000");
  print_ratio(reporter, "NTv2", "BM_ko_ntv2/min_time:2.000", "BM_proj_ntv2/min_time:2.000");
  benchmark::Shutdown();
  return 0;
}
