// UTM zone 33N (WGS 84) on 1,000,000 points: Gauss_Kruger forward and
// inverse with cached constants against PROJ's proj_trans_generic on the same
// points, in the same run (CPU time; inputs copied afresh, untimed, before
// each iteration).  Prints ns per point for both and the ratio, then how far
// the two libraries' results lie apart (the program fails when they
// disagree).
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/rival.h"
#include "ko.h"
#include "projections/simd.h"

namespace {

constexpr int kPoints = 1000000;
constexpr double kDeg = 0.017453292519943295;

// Geographic points inside the zone (longitudes 9..21, latitudes 0..84),
// interleaved longitude/latitude in degrees.
const std::vector<double> &geographic_degrees() {
  static const std::vector<double> points = [] {
    std::mt19937_64 rng(33);
    std::uniform_real_distribution<double> lon(9.0, 21.0), lat(0.0, 84.0);
    std::vector<double> v(2 * kPoints);
    for (int i = 0; i < kPoints; ++i) {
      v[2 * i] = lon(rng);
      v[2 * i + 1] = lat(rng);
    }
    return v;
  }();
  return points;
}

// EPSG:32633: central meridian 15 E, scale 0.9996, false easting 500 km.
struct Utm33 {
  double sph[2] = {6378137.0, 0.0066943799901413165};
  double parms[KO_PARM_COUNT] = {};
  ko_constants *constants = ko_constants_new();
  Utm33() {
    parms[0] = 500000.0;
    parms[2] = 15.0 * kDeg;
    parms[5] = 0.9996;
    ko_prj_gauss_kruger_vector.constfunc(constants, sph, parms);
  }
  ~Utm33() { ko_constants_del(constants); }
  // The false easting is applied here as the point loop applies it, so that
  // both sides do the same work.
  int forward(double *xy, int n) const {
    const int done = ko_prj_gauss_kruger_vector.forward(
        sph, parms, n, xy, ko_constants_ivals(constants), ko_constants_dvals(constants));
    for (int i = 0; i < n; ++i) xy[2 * i] += parms[0];
    return done;
  }
  int inverse(double *xy, int n) const {
    for (int i = 0; i < n; ++i) xy[2 * i] -= parms[0];
    return ko_prj_gauss_kruger_vector.inverse(sph, parms, n, xy, ko_constants_ivals(constants),
                                              ko_constants_dvals(constants));
  }
};

const Utm33 &utm33() {
  static const Utm33 u;
  return u;
}

PJ *proj_utm33() {
  static const ko::bench::ProjPtr p =
      ko::bench::proj_geographic_to_projected(PJ_DEFAULT_CTX, 32633);
  return p.get();
}

std::vector<double> radians_of(const std::vector<double> &deg) {
  std::vector<double> r(deg.size());
  for (size_t i = 0; i < deg.size(); ++i) r[i] = deg[i] * kDeg;
  return r;
}

// Projected points of the sample as PROJ computes them.
const std::vector<double> &projected_points() {
  static const std::vector<double> xy = [] {
    std::vector<double> v = geographic_degrees();
    ko::bench::proj_run(proj_utm33(), PJ_FWD, v);
    return v;
  }();
  return xy;
}

void BM_ko_forward(benchmark::State &state) {
  ko::bench::time_on_copies(
      state, radians_of(geographic_degrees()), kPoints,
      [](std::vector<double> &xy) { return utm33().forward(xy.data(), kPoints); });
}

void BM_proj_forward(benchmark::State &state) {
  ko::bench::time_on_copies(state, geographic_degrees(), kPoints, [](std::vector<double> &xy) {
    return ko::bench::proj_run(proj_utm33(), PJ_FWD, xy);
  });
}

void BM_ko_inverse(benchmark::State &state) {
  ko::bench::time_on_copies(state, projected_points(), kPoints, [](std::vector<double> &xy) {
    return utm33().inverse(xy.data(), kPoints);
  });
}

void BM_proj_inverse(benchmark::State &state) {
  ko::bench::time_on_copies(state, projected_points(), kPoints, [](std::vector<double> &xy) {
    return ko::bench::proj_run(proj_utm33(), PJ_INV, xy);
  });
}

// The same without the four-wide kernels (what a machine without AVX2 or
// without SLEEF runs).
void BM_ko_forward_scalar(benchmark::State &state) {
  ko::simd::set_vector_kernels(false);
  BM_ko_forward(state);
  ko::simd::set_vector_kernels(true);
}

void BM_ko_inverse_scalar(benchmark::State &state) {
  ko::simd::set_vector_kernels(false);
  BM_ko_inverse(state);
  ko::simd::set_vector_kernels(true);
}

BENCHMARK(BM_ko_forward)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_proj_forward)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ko_inverse)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_proj_inverse)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ko_forward_scalar)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ko_inverse_scalar)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// Ratios of the four-wide and of the scalar kernels to PROJ.
void print_ratios(const ko::bench::SummaryReporter &r) {
  for (const char *direction : {"forward", "inverse"}) {
    const std::string ours = std::string("BM_ko_") + direction;
    const std::string theirs = std::string("BM_proj_") + direction;
    ko::bench::print_ratio(r, direction, ours, theirs);
    ko::bench::print_ratio(r, direction + std::string(" (scalar)"), ours + "_scalar", theirs);
  }
}

// How far the two libraries' results lie apart on the sample, as a check
// that both compute the same projection.
bool print_agreement() {
  std::vector<double> forward = radians_of(geographic_degrees());
  std::vector<double> inverse = projected_points();
  const bool converted = utm33().forward(forward.data(), kPoints) == kPoints &&
                         utm33().inverse(inverse.data(), kPoints) == kPoints;
  for (double &v : inverse) v /= kDeg;
  if (!converted) std::printf("ko did not convert every point\n");
  return ko::bench::print_agreement("UTM33N Gauss_Kruger",
                                    ko::bench::compare_planar(forward, projected_points()),
                                    ko::bench::compare_geographic(inverse, geographic_degrees())) &&
         converted;
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  ko::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  print_ratios(reporter);
  const bool ok = print_agreement();
  benchmark::Shutdown();
  return ok ? 0 : 1;
}
