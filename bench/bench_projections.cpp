// Four catalogue systems through the public point functions, side by side
// with PROJ on the same 1,000,000 points in the same run:
//   EPSG:2154  RGF93 / Lambert-93       Lambert_Conformal_Conic_2SP
//   EPSG:3857  WGS 84 / Pseudo-Mercator Mercator_Auxiliary_Sphere
//   EPSG:28992 Amersfoort / RD New      Double_Stereographic
//   EPSG:3375  GDM2000 / Peninsula RSO  Rectified_Skew_Orthomorphic_Natural_Origin
// Each system is built by the factory; PROJ converts from the system's
// geographic system to "EPSG:<code>" normalised for visualisation with
// proj_trans_generic.  Points are spread at random over the system's area
// of use (degrees).  Prints ns per point of both and PROJ's time over ours,
// forward and inverse, and how far the two libraries' results lie apart.
//
// Times are process CPU time (the machine may be shared), the best of
// several repetitions of each measurement.
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bench/bench_timing.h"
#include "ko.h"

namespace {

constexpr int kPoints = 1000000;
constexpr int kRepetitions = 5;
constexpr double kDeg = 0.017453292519943295;

// Best time in seconds of `run` on a fresh copy of `input` in `work`.
double best_of(const std::vector<double> &input, std::vector<double> &work,
               const std::function<void(std::vector<double> &)> &run) {
  return ko::bench::best_of(kRepetitions, [&] { work = input; }, [&] { run(work); });
}

// Random longitude/latitude pairs (degrees) over the area of use.
std::vector<double> points_in_area(int32_t code) {
  const ko_db_areacode_rec *ac =
      ko_db_builtin_areacode_lookup(ko_db_builtin_data_find(KO_TYPE_PROJCS), code);
  const ko_db_extent_rec *e =
      ac != nullptr ? ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, ac->area) : nullptr;
  if (e == nullptr) return {};
  std::mt19937_64 rng(static_cast<uint64_t>(code));
  std::uniform_real_distribution<double> lon(e->west, e->east), lat(e->south, e->north);
  std::vector<double> v(2 * static_cast<std::size_t>(kPoints));
  for (std::size_t i = 0; i < v.size(); i += 2) {
    v[i] = lon(rng);
    v[i + 1] = lat(rng);
  }
  return v;
}

PJ *proj_operation(PJ_CONTEXT *ctx, int32_t code) {
  const std::string id = "EPSG:" + std::to_string(code);
  PJ *crs = proj_create(ctx, id.c_str());
  PJ *geographic = crs != nullptr ? proj_crs_get_geodetic_crs(ctx, crs) : nullptr;
  PJ *op = geographic != nullptr ? proj_create_crs_to_crs_from_pj(ctx, geographic, crs, nullptr, nullptr)
                                 : nullptr;
  PJ *norm = op != nullptr ? proj_normalize_for_visualization(ctx, op) : nullptr;
  proj_destroy(op);
  proj_destroy(geographic);
  proj_destroy(crs);
  return norm;
}

std::size_t proj_run(PJ *pj, PJ_DIRECTION dir, std::vector<double> &v) {
  return proj_trans_generic(pj, dir, v.data(), 2 * sizeof(double), kPoints, v.data() + 1,
                            2 * sizeof(double), kPoints, nullptr, 0, 0, nullptr, 0, 0);
}

double ns_per_point(double seconds) { return seconds * 1e9 / kPoints; }

// Largest distance between two arrays of points, by the given metric.
double largest(const std::vector<double> &a, const std::vector<double> &b, bool angles) {
  double worst = 0.0;
  for (std::size_t i = 0; i < a.size(); i += 2) {
    double dx = a[i] - b[i], dy = a[i + 1] - b[i + 1];
    if (angles) dx = std::remainder(dx, 360.0) * std::cos(b[i + 1] * kDeg);
    worst = std::max(worst, std::hypot(dx, dy));
  }
  return worst;
}

struct System {
  int32_t code;
  const char *label;
};

bool bench_system(PJ_CONTEXT *ctx, const System &s) {
  ko_projcs *pcs = ko_factory_projcs_from_code(s.code);
  PJ *pj = proj_operation(ctx, s.code);
  const std::vector<double> geo = points_in_area(s.code);
  if (pcs == nullptr || pj == nullptr || geo.empty()) {
    std::fprintf(stderr, "EPSG:%d cannot be built\n", s.code);
    ko_projcs_del(pcs);
    proj_destroy(pj);
    return false;
  }
  ko_projcs_load_constants(pcs);
  std::vector<double> proj_xy = geo;
  proj_run(pj, PJ_FWD, proj_xy);

  std::vector<double> work;
  const double ko_fwd = best_of(geo, work, [&](std::vector<double> &w) { ko_geog_to_proj(pcs, kPoints, w.data()); });
  const std::vector<double> ko_xy = work;
  const double proj_fwd = best_of(geo, work, [&](std::vector<double> &w) { proj_run(pj, PJ_FWD, w); });
  const double ko_inv = best_of(proj_xy, work, [&](std::vector<double> &w) { ko_proj_to_geog(pcs, kPoints, w.data()); });
  const std::vector<double> ko_geo = work;
  const double proj_inv = best_of(proj_xy, work, [&](std::vector<double> &w) { proj_run(pj, PJ_INV, w); });

  std::printf("EPSG:%-5d %-44s forward ko %6.1f ns  PROJ %6.1f ns  PROJ/ko %5.2f | inverse ko %6.1f ns  "
              "PROJ %6.1f ns  PROJ/ko %5.2f | ko - PROJ %.2g m, inverse of PROJ's %.2g m\n",
              s.code, s.label, ns_per_point(ko_fwd), ns_per_point(proj_fwd), proj_fwd / ko_fwd,
              ns_per_point(ko_inv), ns_per_point(proj_inv), proj_inv / ko_inv,
              largest(ko_xy, proj_xy, false), largest(ko_geo, geo, true) * kDeg * 6371000.0);
  ko_projcs_del(pcs);
  proj_destroy(pj);
  return true;
}

}  // namespace

int main() {
  const System systems[] = {
      {2154, "RGF93 / Lambert-93 (Lambert_Conformal_Conic_2SP)"},
      {3857, "WGS 84 / Pseudo-Mercator (Mercator_Auxiliary_Sphere)"},
      {28992, "Amersfoort / RD New (Double_Stereographic)"},
      {3375, "GDM2000 / Peninsula RSO (Hotine)"},
  };
  PJ_CONTEXT *ctx = proj_context_create();
  std::printf("%d points per system, best of %d (CPU time per point)\n", kPoints, kRepetitions);
  bool ok = true;
  for (const System &s : systems) ok = bench_system(ctx, s) && ok;
  proj_context_destroy(ctx);
  return ok ? 0 : 1;
}
