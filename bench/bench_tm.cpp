// UTM zone 33N (WGS 84) on 1,000,000 points: Gauss_Kruger forward and
// inverse with cached constants against PROJ's proj_trans_generic on the same
// points, in the same run.  Prints ns per point for both and the ratio.
#include <benchmark/benchmark.h>
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

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
    const int done = ko_prj_gauss_kruger_vector.forward(sph, parms, n, xy, ko_constants_ivals(constants),
                                                        ko_constants_dvals(constants));
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
  static PJ *p = [] {
    PJ *raw = proj_create_crs_to_crs(PJ_DEFAULT_CTX, "EPSG:4326", "EPSG:32633", nullptr);
    PJ *norm = proj_normalize_for_visualization(PJ_DEFAULT_CTX, raw);
    proj_destroy(raw);
    return norm;
  }();
  return p;
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
    proj_trans_generic(proj_utm33(), PJ_FWD, v.data(), 2 * sizeof(double), kPoints, v.data() + 1,
                       2 * sizeof(double), kPoints, nullptr, 0, 0, nullptr, 0, 0);
    return v;
  }();
  return xy;
}

void per_point(benchmark::State &state) {
  state.counters["ns_per_point"] = benchmark::Counter(
      static_cast<double>(kPoints), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Times `convert` on a fresh copy of `input` per iteration.
template <class Convert>
void convert_all(benchmark::State &state, const std::vector<double> &input, Convert convert) {
  std::vector<double> work(input.size());
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(input.begin(), input.end(), work.begin());
    state.ResumeTiming();
    benchmark::DoNotOptimize(convert(work.data()));
  }
  per_point(state);
}

size_t proj_convert(PJ_DIRECTION direction, double *xy) {
  return proj_trans_generic(proj_utm33(), direction, xy, 2 * sizeof(double), kPoints, xy + 1, 2 * sizeof(double),
                            kPoints, nullptr, 0, 0, nullptr, 0, 0);
}

void BM_ko_forward(benchmark::State &state) {
  convert_all(state, radians_of(geographic_degrees()), [](double *xy) { return utm33().forward(xy, kPoints); });
}

void BM_proj_forward(benchmark::State &state) {
  convert_all(state, geographic_degrees(), [](double *xy) { return proj_convert(PJ_FWD, xy); });
}

void BM_ko_inverse(benchmark::State &state) {
  convert_all(state, projected_points(), [](double *xy) { return utm33().inverse(xy, kPoints); });
}

void BM_proj_inverse(benchmark::State &state) {
  convert_all(state, projected_points(), [](double *xy) { return proj_convert(PJ_INV, xy); });
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

// Keeps ns per point of each run so that the ratios can be printed at the end.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
      // CPU time: the machine may be shared, and both sides run on one thread
      ns_[run.run_name.function_name] = run.GetAdjustedCPUTime() * 1e6 / kPoints;  // ms -> ns per point
    }
  }
  void print_ratios() const {
    for (const char *dir : {"forward", "inverse", "forward_scalar", "inverse_scalar"}) {
      const auto ko = ns_.find(std::string("BM_ko_") + dir);
      const std::string plain(dir, std::string(dir).find('_') == std::string::npos ? std::string(dir).size() : std::string(dir).find('_'));
      const auto proj = ns_.find("BM_proj_" + plain);
      if (ko == ns_.end() || proj == ns_.end()) continue;
      std::printf("%-15s ko %.1f ns/point, PROJ %.1f ns/point, ko is %.2f times PROJ's throughput\n", dir,
                  ko->second, proj->second, proj->second / ko->second);
    }
  }

 private:
  std::map<std::string, double> ns_;
};

// Largest difference between the two libraries on the sample, as a check
// that both compute the same projection.
void print_agreement() {
  std::vector<double> ko_xy = radians_of(geographic_degrees());
  utm33().forward(ko_xy.data(), kPoints);
  const std::vector<double> &proj_xy = projected_points();
  double worst = 0.0;
  for (size_t i = 0; i < ko_xy.size(); ++i) worst = std::max(worst, std::fabs(ko_xy[i] - proj_xy[i]));
  std::printf("largest forward difference ko - PROJ: %.3g m\n", worst);
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.print_ratios();
  print_agreement();
  benchmark::Shutdown();
  return 0;
}
