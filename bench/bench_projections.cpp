// Four catalogue systems through the public point functions, side by side
// with PROJ on the same 1,000,000 points in the same run:
//   EPSG:2154  RGF93 / Lambert-93       Lambert_Conformal_Conic_2SP
//   EPSG:3857  WGS 84 / Pseudo-Mercator Mercator_Auxiliary_Sphere
//   EPSG:28992 Amersfoort / RD New      Double_Stereographic
//   EPSG:3375  GDM2000 / Peninsula RSO  Rectified_Skew_Orthomorphic_Natural_Origin
// Each system is built by the factory and converted with ko_geog_to_proj /
// ko_proj_to_geog; PROJ converts from the system's geographic system to
// "EPSG:<code>" normalised for visualisation with proj_trans_generic.
// Points are spread at random over the system's area of use (degrees); the
// inverse runs on PROJ's projection of them.  One benchmark per system,
// direction and library (CPU time; the input is copied afresh, untimed,
// before each iteration).  After the runs: ns per point of both and PROJ's
// time over ko's per system and direction, then how far the two
// libraries' results lie apart (the program fails when they disagree).
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/rival.h"
#include "ko.h"

namespace {

using ko::bench::ProjPtr;

constexpr std::size_t kPoints = 1000000;

struct System {
  int code;
  const char *label;
};

constexpr System kSystems[] = {
    {2154, "RGF93 / Lambert-93 (Lambert_Conformal_Conic_2SP)"},
    {3857, "WGS 84 / Pseudo-Mercator (Mercator_Auxiliary_Sphere)"},
    {28992, "Amersfoort / RD New (Double_Stereographic)"},
    {3375, "GDM2000 / Peninsula RSO (Hotine)"},
};

struct KoProjcsDelete {
  void operator()(ko_projcs *p) const noexcept { ko_projcs_del(p); }
};

// A system ready to run: both libraries' objects, the geographic points and
// PROJ's projection of them.
struct Prepared {
  const System *system = nullptr;
  std::unique_ptr<ko_projcs, KoProjcsDelete> ko;
  ProjPtr proj;
  std::vector<double> geographic;
  std::vector<double> projected;
  std::string name() const { return "EPSG:" + std::to_string(system->code); }
};

// Random longitude/latitude pairs (degrees) over the area of use.
std::vector<double> points_in_area(int code) {
  const ko_db_areacode_rec *ac =
      ko_db_builtin_areacode_lookup(ko_db_builtin_data_find(KO_TYPE_PROJCS), code);
  const ko_db_extent_rec *e =
      ac != nullptr ? ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, ac->area) : nullptr;
  if (e == nullptr) return {};
  std::mt19937_64 rng(static_cast<uint64_t>(code));
  std::uniform_real_distribution<double> lon(e->west, e->east), lat(e->south, e->north);
  std::vector<double> v(2 * kPoints);
  for (std::size_t i = 0; i < v.size(); i += 2) {
    v[i] = lon(rng);
    v[i + 1] = lat(rng);
  }
  return v;
}

// Null system when either library cannot build it.
Prepared prepare(PJ_CONTEXT *ctx, const System &s) {
  Prepared p;
  p.ko.reset(ko_factory_projcs_from_code(s.code));
  p.proj = ko::bench::proj_geographic_to_projected(ctx, s.code);
  p.geographic = points_in_area(s.code);
  if (p.ko == nullptr || p.proj == nullptr || p.geographic.empty() ||
      ko_projcs_load_constants(p.ko.get()) != 1) {
    std::fprintf(stderr, "EPSG:%d cannot be built\n", s.code);
    return {};
  }
  p.system = &s;
  p.projected = p.geographic;
  ko::bench::proj_run(p.proj.get(), PJ_FWD, p.projected);
  return p;
}

// How far ko's results lie from PROJ's: ko's projection of the points
// against PROJ's, and ko's inverse of PROJ's projection against the points.
bool check_agreement(const Prepared &p) {
  std::vector<double> forward = p.geographic, inverse = p.projected;
  const int n = static_cast<int>(kPoints);
  const bool converted = ko_geog_to_proj(p.ko.get(), n, forward.data()) == n &&
                         ko_proj_to_geog(p.ko.get(), n, inverse.data()) == n;
  if (!converted) std::printf("%s: ko did not convert every point\n", p.name().c_str());
  return ko::bench::print_agreement(p.name() + " " + p.system->label,
                                    ko::bench::compare_planar(forward, p.projected),
                                    ko::bench::compare_geographic(inverse, p.geographic)) &&
         converted;
}

// The two directions: ko's point function, PROJ's direction, and the input.
struct Direction {
  const char *name;
  int (*ko)(ko_projcs *, int, double *);
  PJ_DIRECTION proj;
  std::vector<double> Prepared::*input;
};

constexpr Direction kDirections[] = {
    {"forward", ko_geog_to_proj, PJ_FWD, &Prepared::geographic},
    {"inverse", ko_proj_to_geog, PJ_INV, &Prepared::projected},
};

// The two libraries, each converting a copy of a direction's input in
// place and returning its count of converted points.
struct Library {
  const char *name;
  int64_t (*convert)(const Prepared &, const Direction &, std::vector<double> &);
};

constexpr Library kLibraries[] = {
    {"ko",
     [](const Prepared &p, const Direction &d, std::vector<double> &xy) -> int64_t {
       return d.ko(p.ko.get(), static_cast<int>(kPoints), xy.data());
     }},
    {"PROJ",
     [](const Prepared &p, const Direction &d, std::vector<double> &xy) -> int64_t {
       return static_cast<int64_t>(ko::bench::proj_run(p.proj.get(), d.proj, xy));
     }},
};

std::string run_name(const Prepared &p, const Direction &d, const Library &library) {
  return p.name() + "/" + d.name + "/" + library.name;
}

void register_benchmarks(const Prepared &p) {
  for (const Direction &d : kDirections)
    for (const Library &library : kLibraries)
      ko::bench::register_run(run_name(p, d, library), [&p, &d, &library](benchmark::State &state) {
        ko::bench::time_on_copies(state, p.*d.input, kPoints, [&](std::vector<double> &xy) {
          return library.convert(p, d, xy);
        });
      });
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  const ko::bench::ProjContextPtr ctx = ko::bench::proj_quiet_context();
  std::vector<Prepared> prepared;
  prepared.reserve(std::size(kSystems));
  for (const System &s : kSystems) prepared.push_back(prepare(ctx.get(), s));
  bool ok = true;
  for (const Prepared &p : prepared) {
    ok = ok && p.system != nullptr;
    if (p.system != nullptr) register_benchmarks(p);
  }

  ko::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%zu points per system, CPU time per point\n", kPoints);
  const auto &[ours, theirs] = kLibraries;
  for (const Prepared &p : prepared) {
    if (p.system == nullptr) continue;
    for (const Direction &d : kDirections)
      ko::bench::print_ratio(reporter, p.name() + " " + d.name, run_name(p, d, ours),
                             run_name(p, d, theirs));
  }
  std::printf("\n");
  for (const Prepared &p : prepared) {
    if (p.system == nullptr) continue;
    ok = check_agreement(p) && ok;
  }
  benchmark::Shutdown();
  return ok ? 0 : 1;
}
