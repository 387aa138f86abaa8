// UTM zone 33N on WGS 84 through the public point functions: ko_geog_to_proj
// and ko_proj_to_geog on 1,000,000 points (degrees in, metres out and back)
// against PROJ's proj_trans_generic ("EPSG:4326" to "EPSG:32633", normalised
// for visualisation) on the same points in the same run.  Also times the
// bare projection kernel on radians, to show what the frame (units, false
// origins, argument checks) adds, and the cost of building a projected
// system from its objects and of loading its constants.
//
// Times are process CPU time (the machine may be shared), the best of
// several repetitions of each measurement.
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

#include "bench/bench_timing.h"
#include "ko.h"
#include "tests/support/projcs_fixtures.h"

namespace {

constexpr int kPoints = 1000000;
constexpr int kRepetitions = 7;
constexpr int kBuilds = 20000;

double best_of(const std::function<void()> &prepare, const std::function<void()> &run) {
  return ko::bench::best_of(kRepetitions, prepare, run);
}

// Longitudes 9..21 E and latitudes 0..84 N, interleaved, in degrees.
std::vector<double> zone_points() {
  std::mt19937_64 rng(32633);
  std::uniform_real_distribution<double> lon(9.0, 21.0), lat(0.0, 84.0);
  std::vector<double> v(2 * static_cast<std::size_t>(kPoints));
  for (std::size_t i = 0; i < v.size(); i += 2) {
    v[i] = lon(rng);
    v[i + 1] = lat(rng);
  }
  return v;
}

PJ *proj_utm33n(PJ_CONTEXT *ctx) {
  PJ *raw = proj_create_crs_to_crs(ctx, "EPSG:4326", "EPSG:32633", nullptr);
  PJ *norm = raw != nullptr ? proj_normalize_for_visualization(ctx, raw) : nullptr;
  proj_destroy(raw);
  return norm;
}

std::size_t proj_run(PJ *pj, PJ_DIRECTION dir, std::vector<double> &v) {
  return proj_trans_generic(pj, dir, v.data(), 2 * sizeof(double), kPoints, v.data() + 1,
                            2 * sizeof(double), kPoints, nullptr, 0, 0, nullptr, 0, 0);
}

double ns_per_point(double seconds) { return seconds * 1e9 / kPoints; }

void report(const char *direction, double frame, double kernel, double proj) {
  std::printf("%-8s ko %6.1f ns/point (kernel alone %6.1f, frame %+5.1f)   PROJ %6.1f ns/point"
              "   PROJ/ko %.2f\n",
              direction, ns_per_point(frame), ns_per_point(kernel),
              ns_per_point(frame - kernel), ns_per_point(proj), proj / frame);
}

double largest_difference(const std::vector<double> &a, const std::vector<double> &b) {
  double worst = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) worst = std::max(worst, std::fabs(a[i] - b[i]));
  return worst;
}

}  // namespace

int main() {
  ko_projcs *utm = ko::test::utm33n();
  PJ_CONTEXT *ctx = proj_context_create();
  PJ *pj = proj_utm33n(ctx);
  if (utm == nullptr || pj == nullptr) {
    std::fprintf(stderr, "cannot build UTM zone 33N\n");
    return 1;
  }
  ko_projcs_load_constants(utm);
  const double sph[2] = {ko::test::kWgs84A, ko::test::kWgs84F * (2 - ko::test::kWgs84F)};
  double parms[KO_PARM_COUNT] = {};
  ko_projcs_parm_array(utm, parms);
  const ko_constants *constants = ko_projcs_constants(utm);
  const ko_projlist_entry &tm = ko_prj_transverse_mercator_vector;

  const std::vector<double> geo = zone_points();
  std::vector<double> geo_rad = geo;
  for (double &v : geo_rad) v *= ko::test::kDegree;
  std::vector<double> xy = geo;
  proj_run(pj, PJ_FWD, xy);
  std::vector<double> xy_origin = xy;  // metres from the projection's origin
  for (std::size_t i = 0; i < xy_origin.size(); i += 2) xy_origin[i] -= parms[0];

  std::vector<double> work;
  auto load = [&work](const std::vector<double> &from) { return [&work, &from] { work = from; }; };
  auto run = [&work](auto f) { return std::function<void()>([&work, f] { f(work); }); };

  double ko_fwd = best_of(load(geo), run([&](std::vector<double> &w) {
                            ko_geog_to_proj(utm, kPoints, w.data());
                          }));
  std::vector<double> ko_xy = work;
  double kernel_fwd = best_of(load(geo_rad), run([&](std::vector<double> &w) {
                                tm.forward(sph, parms, kPoints, w.data(),
                                           ko_constants_ivals(constants),
                                           ko_constants_dvals(constants));
                              }));
  double proj_fwd = best_of(load(geo), run([&](std::vector<double> &w) { proj_run(pj, PJ_FWD, w); }));

  double ko_inv = best_of(load(xy), run([&](std::vector<double> &w) {
                            ko_proj_to_geog(utm, kPoints, w.data());
                          }));
  std::vector<double> ko_geo = work;
  double kernel_inv = best_of(load(xy_origin), run([&](std::vector<double> &w) {
                                tm.inverse(sph, parms, kPoints, w.data(),
                                           ko_constants_ivals(constants),
                                           ko_constants_dvals(constants));
                              }));
  double proj_inv = best_of(load(xy), run([&](std::vector<double> &w) { proj_run(pj, PJ_INV, w); }));

  std::printf("UTM zone 33N, WGS 84, %d points, best of %d (CPU time)\n", kPoints, kRepetitions);
  report("forward", ko_fwd, kernel_fwd, proj_fwd);
  report("inverse", ko_inv, kernel_inv, proj_inv);
  std::printf("largest difference ko - PROJ: forward %.3g m, inverse %.3g degrees\n",
              largest_difference(ko_xy, xy), largest_difference(ko_geo, geo));

  // Building a projected system from its objects (spheroid, datum,
  // geographic system, five parameters, projection, conversion, system),
  // then loading its constants, then the first one-point conversion.
  std::vector<ko_projcs *> built(kBuilds, nullptr);
  auto delete_built = [&] {
    for (ko_projcs *&p : built) p = ko_projcs_del(p);
  };
  double build = best_of(delete_built, [&] {
    for (ko_projcs *&p : built) p = ko::test::utm33n();
  });
  double load_constants = best_of(
      [&] {
        for (ko_projcs *p : built) ko_projcs_unload_constants(p);
      },
      [&] {
        for (ko_projcs *p : built) ko_projcs_load_constants(p);
      });
  double first_point = best_of(
      [&] {
        for (ko_projcs *p : built) ko_projcs_unload_constants(p);
      },
      [&] {
        for (ko_projcs *p : built) {
          double pt[2] = {15.0, 45.0};
          ko_geog_to_proj(p, 1, pt);
        }
      });
  delete_built();
  std::printf("create a projected system: %.2f us; load its constants: %.2f us; "
              "first one-point forward (load included): %.2f us\n",
              build * 1e6 / kBuilds, load_constants * 1e6 / kBuilds,
              first_point * 1e6 / kBuilds);

  proj_destroy(pj);
  proj_context_destroy(ctx);
  ko_projcs_del(utm);
  return 0;
}
