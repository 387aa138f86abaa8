// Geographic transformations on 1,000,000 points, ko against PROJ in the
// same process: a seven-parameter Position_Vector transformation (EPSG 1314,
// OSGB36 to WGS 84, with heights) and an NTv2 shift (BETA2007.gsb).  PROJ
// runs the minimal pipeline in radians (cart, helmert, inverse cart; or
// hgridshift) through proj_trans_generic, so that neither side pays for
// unit or axis conversions.  After the runs a summary gives ns per point
// for both and PROJ's time over ko's.
#include "transformations/grid_set.h"
#include "transformations/methods.h"

#include "bench/rival.h"

#include <array>
#include <cstdio>
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

// A PROJ operation from a definition, in a context of its own.
struct ProjOperation {
  ko::bench::ProjContextPtr ctx = ko::bench::proj_quiet_context();
  ko::bench::ProjPtr op;
  explicit ProjOperation(const std::string &def) : op(proj_create(ctx.get(), def.c_str())) {}
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
  const std::array<std::vector<double>, 2> input{uk().lonlat, uk().h};
  ko::bench::time_on_copies(state, input, kPoints, [&args](std::array<std::vector<double>, 2> &c) {
    return ko::position_vector_forward(args, kPoints, c[0].data(), c[1].data());
  });
}

void BM_proj_position_vector(benchmark::State &state) {
  const ProjOperation proj(
      "+proj=pipeline +step +proj=cart +ellps=airy "
      "+step +proj=helmert +x=446.448 +y=-125.157 +z=542.06 +rx=0.15 +ry=0.247 +rz=0.842 "
      "+s=-20.489 +convention=position_vector +step +inv +proj=cart +ellps=WGS84");
  if (proj.op == nullptr) {
    state.SkipWithError("PROJ could not build the pipeline");
    return;
  }
  const std::array<std::vector<double>, 3> input{uk().lon, uk().lat, uk().h};
  ko::bench::time_on_copies(state, input, kPoints, [&proj](std::array<std::vector<double>, 3> &c) {
    return ko::bench::proj_run(proj.op.get(), PJ_FWD, c[0], c[1], c[2]);
  });
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
  ko::bench::time_on_copies(state, germany().lonlat, kPoints, [&args](std::vector<double> &coord) {
    return ko::grid_shift_forward(args, kPoints, coord.data(), nullptr);
  });
}

void BM_proj_ntv2(benchmark::State &state) {
  const ProjOperation proj(std::string("+proj=hgridshift +grids=") + kGrid);
  if (proj.op == nullptr) {
    state.SkipWithError("PROJ could not open BETA2007.gsb");
    return;
  }
  const std::array<std::vector<double>, 2> input{germany().lon, germany().lat};
  ko::bench::time_on_copies(state, input, kPoints, [&proj](std::array<std::vector<double>, 2> &c) {
    return ko::bench::proj_run(proj.op.get(), PJ_FWD, c[0], c[1]);
  });
}

BENCHMARK(BM_ko_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_ko_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  ko::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  ko::bench::print_ratio(reporter, "Position_Vector", "BM_ko_position_vector",
                         "BM_proj_position_vector");
  ko::bench::print_ratio(reporter, "NTv2", "BM_ko_ntv2", "BM_proj_ntv2");
  benchmark::Shutdown();
  return 0;
}
