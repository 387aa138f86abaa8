// What the benchmark programs share to measure ko against PROJ in one
// process: owning PROJ handles, proj_trans_generic on the layouts the
// programs use, a timing loop that hands every iteration a fresh copy of
// its input, a console reporter that keeps each run's CPU time per point,
// the PROJ/ko summary line, and a comparison of both libraries' results.
#pragma once

#include <benchmark/benchmark.h>
#include <proj.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace ko::bench {

// ---------------------------------------------------------------------------
// PROJ handles.

struct ProjDelete {
  void operator()(PJ *p) const noexcept { proj_destroy(p); }
  void operator()(PJ_CONTEXT *c) const noexcept { proj_context_destroy(c); }
};
using ProjPtr = std::unique_ptr<PJ, ProjDelete>;
using ProjContextPtr = std::unique_ptr<PJ_CONTEXT, ProjDelete>;

// A context that logs nothing: the programs report failures themselves.
inline ProjContextPtr proj_quiet_context() {
  ProjContextPtr ctx(proj_context_create());
  if (ctx != nullptr) proj_log_level(ctx.get(), PJ_LOG_NONE);
  return ctx;
}

// PROJ's operation from the geographic system of the projected system
// "EPSG:<code>" to that system, with longitude before latitude in degrees
// and easting before northing in metres (normalised for visualisation), as
// ko's point functions take them.  Null when PROJ cannot build it.
inline ProjPtr proj_geographic_to_projected(PJ_CONTEXT *ctx, int code) {
  const std::string id = "EPSG:" + std::to_string(code);
  const ProjPtr projected(proj_create(ctx, id.c_str()));
  const ProjPtr geographic(projected != nullptr ? proj_crs_get_geodetic_crs(ctx, projected.get())
                                                : nullptr);
  const ProjPtr op(
      geographic != nullptr
          ? proj_create_crs_to_crs_from_pj(ctx, geographic.get(), projected.get(), nullptr, nullptr)
          : nullptr);
  return ProjPtr(op != nullptr ? proj_normalize_for_visualization(ctx, op.get()) : nullptr);
}

// proj_trans_generic on interleaved (x, y) pairs, in place.  Returns what
// PROJ returns: the number of points it went through.
inline std::size_t proj_run(PJ *op, PJ_DIRECTION direction, std::span<double> xy) {
  const std::size_t n = xy.size() / 2;
  return proj_trans_generic(op, direction, xy.data(), 2 * sizeof(double), n, xy.data() + 1,
                            2 * sizeof(double), n, nullptr, 0, 0, nullptr, 0, 0);
}

// proj_trans_generic on separate arrays of first and second coordinates
// (in the operation's axis order) and optionally heights, in place.
inline std::size_t proj_run(PJ *op, PJ_DIRECTION direction, std::span<double> first,
                            std::span<double> second, std::span<double> height = {}) {
  return proj_trans_generic(op, direction, first.data(), sizeof(double), first.size(),
                            second.data(), sizeof(double), second.size(),
                            height.empty() ? nullptr : height.data(), sizeof(double), height.size(),
                            nullptr, 0, 0);
}

// ---------------------------------------------------------------------------
// Timing.

// Name of the counter that holds CPU seconds per point (shown as ns).
inline constexpr const char *kPerPoint = "per_point";

// Times `convert` on `points` points, each iteration on a fresh copy of
// `input`.  The copy is made with the timer paused: at a million points the
// pause costs microseconds against conversions of tens of milliseconds,
// while a copy in the timed region (1-2 ns a point) would add the same
// constant to both libraries and flatten their ratio.  `convert` takes the
// copy and returns how many points it converted; any other count than
// `points` (ko's negative failure counts included) ends the run with an
// error, so that a library that stops early is not reported as fast.
template <class Input, class Convert>
void time_on_copies(benchmark::State &state, const Input &input, std::size_t points,
                    Convert convert) {
  Input work = input;
  for (auto _ : state) {
    state.PauseTiming();
    work = input;  // same sizes: assignment reuses the storage
    state.ResumeTiming();
    const auto done = convert(work);
    benchmark::DoNotOptimize(done);
    benchmark::ClobberMemory();
    if (static_cast<std::size_t>(done) != points) {
      state.SkipWithError("not every point was converted");
      break;
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(points));
  state.counters[kPerPoint] = benchmark::Counter(
      static_cast<double>(points),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Registers `run` under `name` in milliseconds, for at least a second of
// CPU time (a few iterations of a million points).
template <class Run>
void register_run(const std::string &name, Run &&run) {
  benchmark::RegisterBenchmark(name.c_str(), std::forward<Run>(run))
      ->Unit(benchmark::kMillisecond)
      ->MinTime(1.0);
}

// ---------------------------------------------------------------------------
// Summary.

// Console output as usual, and for every run (by the name it was
// registered with) its CPU time per iteration and, where the run set it,
// its CPU time per point.  With --benchmark_repetitions the median of the
// repetitions is kept.  Colours only on a terminal, so that output sent to
// a file stays plain text.
class SummaryReporter : public benchmark::ConsoleReporter {
 public:
  SummaryReporter() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_ColorTabular : OO_Tabular) {}

  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.error_occurred || run.iterations == 0) continue;
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      Measured &m = measured_[run.run_name.function_name];
      m.cpu_ns_per_iteration =
          run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
      const auto per_point = run.counters.find(kPerPoint);
      if (per_point != run.counters.end()) m.ns_per_point = per_point->second.value * 1e9;
    }
  }

  // NaN for a run that did not take place (filtered out or failed).
  double ns_per_point(const std::string &name) const { return find(name).ns_per_point; }
  double cpu_ns_per_iteration(const std::string &name) const {
    return find(name).cpu_ns_per_iteration;
  }

 private:
  struct Measured {
    double cpu_ns_per_iteration = std::numeric_limits<double>::quiet_NaN();
    double ns_per_point = std::numeric_limits<double>::quiet_NaN();
  };
  Measured find(const std::string &name) const {
    const auto it = measured_.find(name);
    return it != measured_.end() ? it->second : Measured{};
  }
  std::map<std::string, Measured> measured_;
};

// One summary line: ko's and PROJ's CPU time per point and PROJ's time
// over ko's (how many times PROJ's throughput ko reaches).  Nothing when
// either run did not take place.
inline void print_ratio(const SummaryReporter &r, const std::string &label,
                        const std::string &ko_run, const std::string &proj_run_name) {
  const double ours = r.ns_per_point(ko_run), theirs = r.ns_per_point(proj_run_name);
  if (std::isnan(ours) || std::isnan(theirs)) return;
  std::printf("%-24s ko %7.1f ns/point   PROJ %7.1f ns/point   PROJ/ko %5.2f\n", label.c_str(),
              ours, theirs, theirs / ours);
}

// ---------------------------------------------------------------------------
// Agreement of the two libraries' results.

// Largest distance between corresponding points of two interleaved arrays,
// and how many pairs held a value that is not finite (NaN would otherwise
// slip through a running maximum unseen).
struct Agreement {
  double largest = 0.0;
  std::size_t not_finite = 0;
};

// Planar coordinates in metres.
inline Agreement compare_planar(std::span<const double> a, std::span<const double> b) {
  Agreement g;
  for (std::size_t i = 0; i + 1 < a.size() && i + 1 < b.size(); i += 2) {
    const double d = std::hypot(a[i] - b[i], a[i + 1] - b[i + 1]);
    if (std::isfinite(d))
      g.largest = std::max(g.largest, d);
    else
      ++g.not_finite;
  }
  return g;
}

// Longitude/latitude pairs in degrees; the distance in metres on a sphere
// of the Earth's mean radius, longitudes compared modulo 360 degrees.
inline Agreement compare_geographic(std::span<const double> a, std::span<const double> b) {
  constexpr double kDeg = 0.017453292519943295, kMeanRadius = 6371000.0;
  Agreement g;
  for (std::size_t i = 0; i + 1 < a.size() && i + 1 < b.size(); i += 2) {
    const double east = std::remainder(a[i] - b[i], 360.0) * std::cos(b[i + 1] * kDeg);
    const double d = std::hypot(east, a[i + 1] - b[i + 1]) * kDeg * kMeanRadius;
    if (std::isfinite(d))
      g.largest = std::max(g.largest, d);
    else
      ++g.not_finite;
  }
  return g;
}

// Both libraries evaluate closed formulas or series good to a nanometre or
// so over these areas; a micrometre between them means one is wrong.
inline constexpr double kAgreementMetres = 1e-6;

// Prints how far ko's forward and inverse results lie from PROJ's and
// returns whether both lie within kAgreementMetres with every value finite.
inline bool print_agreement(const std::string &label, const Agreement &forward,
                            const Agreement &inverse) {
  const auto within = [](const Agreement &g) {
    return g.not_finite == 0 && g.largest <= kAgreementMetres;
  };
  const bool ok = within(forward) && within(inverse);
  std::printf("%s: ko - PROJ forward %.2g m, inverse of PROJ's %.2g m", label.c_str(),
              forward.largest, inverse.largest);
  if (forward.not_finite + inverse.not_finite > 0)
    std::printf(", %zu points not finite", forward.not_finite + inverse.not_finite);
  std::printf("%s\n", ok ? "" : "   DISAGREE");
  return ok;
}

}  // namespace ko::bench
