// UTM zone 33N on WGS 84 through the public point functions: ko_geog_to_proj
// and ko_proj_to_geog on 1,000,000 points (degrees in, metres out and back)
// against PROJ's proj_trans_generic ("EPSG:4326" to "EPSG:32633", normalised
// for visualisation) on the same points in the same run.  Also times the
// bare projection kernel on radians, to show what the frame (units, false
// origins, argument checks) adds, and the cost of building a projected
// system from its objects, of loading its constants and of the first
// one-point conversion.
//
// CPU time; point inputs are copied afresh, untimed, before each iteration.
// After the runs: ns per point of both libraries and PROJ's time over ko's,
// the kernel's share, the building costs, and how far ko's results lie
// from PROJ's (the program fails when they disagree).
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/rival.h"
#include "ko.h"
#include "tests/support/projcs_fixtures.h"

namespace {

constexpr std::size_t kPoints = 1000000;
constexpr int kBuilds = 20000;  // projected systems per iteration of the building runs
const std::string kZone = "UTM33N";

// Longitudes 9..21 E and latitudes 0..84 N, interleaved, in degrees.
std::vector<double> zone_points() {
  std::mt19937_64 rng(32633);
  std::uniform_real_distribution<double> lon(9.0, 21.0), lat(0.0, 84.0);
  std::vector<double> v(2 * kPoints);
  for (std::size_t i = 0; i < v.size(); i += 2) {
    v[i] = lon(rng);
    v[i + 1] = lat(rng);
  }
  return v;
}

struct KoProjcsDelete {
  void operator()(ko_projcs *p) const noexcept { ko_projcs_del(p); }
};

// The zone in both libraries, its points, and the kernel's arguments.
struct Zone {
  std::unique_ptr<ko_projcs, KoProjcsDelete> ko{ko::test::utm33n()};
  ko::bench::ProjContextPtr ctx = ko::bench::proj_quiet_context();
  ko::bench::ProjPtr proj = ko::bench::proj_geographic_to_projected(ctx.get(), 32633);
  const ko_projlist_entry &kernel = ko_prj_transverse_mercator_vector;
  double sph[2] = {ko::test::kWgs84A, ko::test::kWgs84F * (2 - ko::test::kWgs84F)};
  double parms[KO_PARM_COUNT] = {};
  const ko_constants *constants = nullptr;

  std::vector<double> geographic = zone_points();
  std::vector<double> radians;      // the points in radians, for the kernel
  std::vector<double> projected;    // PROJ's projection of the points
  std::vector<double> from_origin;  // the same less the false easting, for the kernel

  bool ready() const { return ko != nullptr && proj != nullptr && constants != nullptr; }

  Zone() {
    if (ko == nullptr || proj == nullptr || ko_projcs_load_constants(ko.get()) != 1) return;
    ko_projcs_parm_array(ko.get(), parms);
    constants = ko_projcs_constants(ko.get());
    radians = geographic;
    for (double &v : radians) v *= ko::test::kDegree;
    projected = geographic;
    ko::bench::proj_run(proj.get(), PJ_FWD, projected);
    from_origin = projected;
    for (std::size_t i = 0; i < from_origin.size(); i += 2) from_origin[i] -= parms[0];
  }

  int kernel_forward(std::vector<double> &xy) const {
    return kernel.forward(sph, parms, static_cast<int>(kPoints), xy.data(),
                          ko_constants_ivals(constants), ko_constants_dvals(constants));
  }
  int kernel_inverse(std::vector<double> &xy) const {
    return kernel.inverse(sph, parms, static_cast<int>(kPoints), xy.data(),
                          ko_constants_ivals(constants), ko_constants_dvals(constants));
  }
};

// One point benchmark: its library, its input, its conversion.
struct PointRun {
  const char *direction;
  const char *library;
  const std::vector<double> Zone::*input;
  std::size_t (*convert)(const Zone &, std::vector<double> &);
};

std::size_t count(int n) { return n < 0 ? 0 : static_cast<std::size_t>(n); }

constexpr PointRun kPointRuns[] = {
    {"forward", "ko", &Zone::geographic,
     [](const Zone &z, std::vector<double> &xy) {
       return count(ko_geog_to_proj(z.ko.get(), static_cast<int>(kPoints), xy.data()));
     }},
    {"forward", "ko_kernel", &Zone::radians,
     [](const Zone &z, std::vector<double> &xy) { return count(z.kernel_forward(xy)); }},
    {"forward", "PROJ", &Zone::geographic,
     [](const Zone &z, std::vector<double> &xy) {
       return ko::bench::proj_run(z.proj.get(), PJ_FWD, xy);
     }},
    {"inverse", "ko", &Zone::projected,
     [](const Zone &z, std::vector<double> &xy) {
       return count(ko_proj_to_geog(z.ko.get(), static_cast<int>(kPoints), xy.data()));
     }},
    {"inverse", "ko_kernel", &Zone::from_origin,
     [](const Zone &z, std::vector<double> &xy) { return count(z.kernel_inverse(xy)); }},
    {"inverse", "PROJ", &Zone::projected,
     [](const Zone &z, std::vector<double> &xy) {
       return ko::bench::proj_run(z.proj.get(), PJ_INV, xy);
     }},
};

std::string point_run_name(const char *direction, const char *library) {
  return kZone + "/" + direction + "/" + library;
}

// ---------------------------------------------------------------------------
// Building: kBuilds projected systems per iteration, each timed step after
// an untimed one that puts them back where the step starts.
struct Built {
  std::vector<ko_projcs *> systems = std::vector<ko_projcs *>(kBuilds, nullptr);
  ~Built() { clear(); }
  void clear() {
    for (ko_projcs *&p : systems) p = ko_projcs_del(p);
  }
  void unload() {
    for (ko_projcs *p : systems) ko_projcs_unload_constants(p);
  }
  // How many systems the step left as it should; kBuilds when all.
  int create() {
    int made = 0;
    for (ko_projcs *&p : systems) made += (p = ko::test::utm33n()) != nullptr;
    return made;
  }
  int load() {
    int loaded = 0;
    for (ko_projcs *p : systems) loaded += ko_projcs_load_constants(p);
    return loaded;
  }
  int first_point() {
    int converted = 0;
    for (ko_projcs *p : systems) {
      double pt[2] = {15.0, 45.0};
      converted += ko_geog_to_proj(p, 1, pt);
    }
    return converted;
  }
};

struct BuildRun {
  const char *name;
  const char *summary;
  void (*reset)(Built &);
  int (*step)(Built &);
};

constexpr BuildRun kBuildRuns[] = {
    {"create", "create a projected system", [](Built &b) { b.clear(); },
     [](Built &b) { return b.create(); }},
    {"load_constants", "load its constants", [](Built &b) { b.unload(); },
     [](Built &b) { return b.load(); }},
    {"first_point", "first one-point forward (load included)", [](Built &b) { b.unload(); },
     [](Built &b) { return b.first_point(); }},
};

void time_build_step(benchmark::State &state, const BuildRun &run) {
  Built built;
  if (built.create() != kBuilds) {
    state.SkipWithError("cannot build the projected systems");
    return;
  }
  for (auto _ : state) {
    state.PauseTiming();
    run.reset(built);
    state.ResumeTiming();
    const int done = run.step(built);
    if (done != kBuilds) {
      state.SkipWithError("a step failed on some system");
      break;
    }
  }
  state.counters["per_system"] = benchmark::Counter(
      kBuilds, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::string build_run_name(const BuildRun &run) { return kZone + "/" + run.name; }

// ---------------------------------------------------------------------------

void register_benchmarks(const Zone &zone) {
  for (const PointRun &run : kPointRuns)
    ko::bench::register_run(
        point_run_name(run.direction, run.library), [&zone, &run](benchmark::State &state) {
          ko::bench::time_on_copies(state, zone.*run.input, kPoints,
                                    [&](std::vector<double> &xy) { return run.convert(zone, xy); });
        });
  for (const BuildRun &run : kBuildRuns)
    ko::bench::register_run(build_run_name(run),
                            [&run](benchmark::State &state) { time_build_step(state, run); });
}

void print_summary(const ko::bench::SummaryReporter &r) {
  for (const char *direction : {"forward", "inverse"}) {
    const std::string label = kZone + " " + direction;
    ko::bench::print_ratio(r, label, point_run_name(direction, "ko"),
                           point_run_name(direction, "PROJ"));
    const double frame = r.ns_per_point(point_run_name(direction, "ko"));
    const double kernel = r.ns_per_point(point_run_name(direction, "ko_kernel"));
    if (!std::isnan(frame) && !std::isnan(kernel))
      std::printf("%-24s kernel alone %7.1f ns/point, frame %+5.1f ns/point\n", label.c_str(),
                  kernel, frame - kernel);
  }
  for (const BuildRun &run : kBuildRuns) {
    const double ns = r.cpu_ns_per_iteration(build_run_name(run));
    if (!std::isnan(ns)) std::printf("%s: %.2f us\n", run.summary, ns / 1e3 / kBuilds);
  }
}

// How far ko's frame results lie from PROJ's.
bool check_agreement(const Zone &zone) {
  std::vector<double> forward = zone.geographic, inverse = zone.projected;
  const int n = static_cast<int>(kPoints);
  const bool converted = ko_geog_to_proj(zone.ko.get(), n, forward.data()) == n &&
                         ko_proj_to_geog(zone.ko.get(), n, inverse.data()) == n;
  if (!converted) std::printf("%s: ko did not convert every point\n", kZone.c_str());
  return ko::bench::print_agreement(kZone + " WGS 84 (EPSG:32633)",
                                    ko::bench::compare_planar(forward, zone.projected),
                                    ko::bench::compare_geographic(inverse, zone.geographic)) &&
         converted;
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  const Zone zone;
  if (!zone.ready()) {
    std::fprintf(stderr, "cannot build UTM zone 33N\n");
    return 1;
  }
  register_benchmarks(zone);
  ko::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%zu points, CPU time per point\n", kPoints);
  print_summary(reporter);
  const bool ok = check_agreement(zone);
  benchmark::Shutdown();
  return ok ? 0 : 1;
}
