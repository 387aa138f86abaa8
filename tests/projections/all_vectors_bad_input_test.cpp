// Every projection vector of the table under hostile definitions and
// points: random parameter arrays (NaN, infinities, huge and tiny values,
// poles, full turns), degenerate spheroids, and points at and beyond every
// edge.  Each call must return, count only points it converted (a counted
// point has finite coordinates; the Transverse Mercator family counts every
// point by definition), and leave ASan and UBSan silent.  The
// constants function's failure is followed, as the point loop does it, by
// a call without constants.
#include "ko.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kPi = 3.141592653589793;

// Values a parameter slot may hold: ordinary ones and the hostile ones.
double parameter_value(std::mt19937_64 &rng) {
  static constexpr double kSpecial[] = {0.0,     1.0,      -1.0,       kPi / 2,  -kPi / 2, kPi,
                                        -kPi,    2 * kPi,  1e-300,     -1e-300,  1e308,    -1e308,
                                        kNan,    kInf,     -kInf,      0.9996,   1e-12,    0.5};
  std::uniform_int_distribution<int> pick(0, 2);
  if (pick(rng) == 0) {
    std::uniform_int_distribution<std::size_t> which(0, std::size(kSpecial) - 1);
    return kSpecial[which(rng)];
  }
  std::uniform_real_distribution<double> angle(-2 * kPi, 2 * kPi);
  return angle(rng);
}

// Points: ordinary ones, the poles, the antimeridian, beyond both, huge
// plane coordinates, NaN and infinities.
double point_value(std::mt19937_64 &rng, bool plane) {
  static constexpr double kSpecial[] = {0.0, kPi / 2, -kPi / 2, kPi, -kPi, 1e-300, 4.0, -7.0,
                                        1e7, -1e7,    1e300,    kNan, kInf, -kInf};
  std::uniform_int_distribution<int> pick(0, 2);
  if (pick(rng) == 0) {
    std::uniform_int_distribution<std::size_t> which(0, std::size(kSpecial) - 1);
    return kSpecial[which(rng)];
  }
  if (plane) return std::uniform_real_distribution<double>(-2e7, 2e7)(rng);
  return std::uniform_real_distribution<double>(-kPi, kPi)(rng);
}

struct ConstantsHolder {
  ko_constants *c = ko_constants_new();
  ~ConstantsHolder() { ko_constants_del(c); }
  ConstantsHolder() = default;
  ConstantsHolder(const ConstantsHolder &) = delete;
  ConstantsHolder &operator=(const ConstantsHolder &) = delete;
};

// The Transverse Mercator family counts every point by definition (a NaN
// point comes out NaN and is counted); the others count only the points
// they converted.
bool counts_every_point(int32_t code) {
  return code == 43005 || code == 43006 || code == 43056 || code == 43081;
}

// One call of fn on the points; checks the count against the output.
void call_and_check(ko_proj_fn fn, const double *sph, const double *parms, std::vector<double> pts,
                    const int32_t *ivals, const double *dvals, bool every, const std::string &what) {
  const int n = static_cast<int>(pts.size() / 2);
  const int converted = fn(sph, parms, n, pts.data(), ivals, dvals);
  ASSERT_GE(converted, -1) << what;
  ASSERT_LE(converted, n) << what;
  if (every) return;
  int finite = 0;
  for (int i = 0; i < n; ++i) finite += std::isfinite(pts[2 * i]) && std::isfinite(pts[2 * i + 1]) ? 1 : 0;
  EXPECT_GE(finite, converted) << what << ": a counted point has no finite coordinates";
}

TEST(AllProjectionVectors, HostileDefinitionsAndPointsAreSurvived) {
  const std::array<std::array<double, 2>, 6> spheroids = {{{6378137.0, 0.0066943799901413165},
                                                           {6371000.0, 0.0},
                                                           {6378137.0, 0.5},
                                                           {1.0, 0.99},
                                                           {0.0, 0.0066943799901413165},
                                                           {kNan, kNan}}};
  std::mt19937_64 rng(20261122);
  int vectors = 0;
  for (int v = 0; v < ko_projlist_tbl_cnt; ++v) {
    const ko_projlist_entry *e = ko_projlist_tbl[v];
    ASSERT_NE(e, nullptr);
    ++vectors;
    for (int round = 0; round < 60; ++round) {
      const auto &sph = spheroids[static_cast<std::size_t>(round) % spheroids.size()];
      double parms[KO_PARM_COUNT];
      for (double &p : parms) p = parameter_value(rng);
      const std::string what = std::string(e->name) + " round " + std::to_string(round);
      ConstantsHolder held;
      const int status = e->constfunc != nullptr ? e->constfunc(held.c, sph.data(), parms) : 0;
      const int32_t *ivals = status >= 0 ? ko_constants_ivals(held.c) : nullptr;
      const double *dvals = status >= 0 ? ko_constants_dvals(held.c) : nullptr;
      std::vector<double> geo, xy;
      for (int i = 0; i < 9; ++i) {
        geo.push_back(point_value(rng, false));
        geo.push_back(point_value(rng, false));
        xy.push_back(point_value(rng, true));
        xy.push_back(point_value(rng, true));
      }
      const bool every = counts_every_point(e->code);
      call_and_check(e->forward, sph.data(), parms, geo, ivals, dvals, every, what + " forward");
      call_and_check(e->inverse, sph.data(), parms, xy, ivals, dvals, every, what + " inverse");
      // Without constants, as after a failed load.
      call_and_check(e->forward, sph.data(), parms, geo, nullptr, nullptr, every,
                     what + " forward, no constants");
      call_and_check(e->inverse, sph.data(), parms, xy, nullptr, nullptr, every,
                     what + " inverse, no constants");
    }
  }
  EXPECT_EQ(vectors, ko_projlist_tbl_cnt);
}

}  // namespace
