// Conversions of whole point blocks that both "ko project" and
// "ko transform" make: latitude checks and projection in either direction.
#include "points.h"

#include <cmath>

namespace ko::cli {
namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kDegree = 0.017453292519943295;

// A point already marked goes on as (0, 0), where every projection and
// method works, so that it does not disturb the count of a library call.
void neutralize_failed(PointBlock &block) {
  for (size_t i = 0; i < block.failures.size(); ++i) {
    if (block.failures[i] == Failure::kNone) continue;
    block.xy[2 * i] = 0.0;
    block.xy[2 * i + 1] = 0.0;
  }
}

}  // namespace

double angular_factor(const ko_geogcs *gcs) {
  const double factor = ko_angunit_factor(ko_geogcs_unit(gcs));
  return factor > 0.0 ? factor : kDegree;
}

void reject_beyond_poles(PointBlock &block, double factor) {
  const double limit = kHalfPi / factor;
  for (size_t i = 0; i < block.failures.size(); ++i)
    if (std::fabs(block.xy[2 * i + 1]) > limit) block.failures[i] = Failure::kLatitude;
}

void project_block(ko_projcs *pcs, PointBlock &block, bool inverse) {
  neutralize_failed(block);
  const int n = static_cast<int>(block.failures.size());
  double *xy = block.xy.data();
  const int converted = inverse ? ko_proj_to_geog(pcs, n, xy) : ko_geog_to_proj(pcs, n, xy);
  // A projection marks a point outside its domain with infinite values;
  // a call that converted nothing leaves the points as they were.
  for (int i = 0; i < n; ++i) {
    if (block.failures[i] != Failure::kNone) continue;
    if (converted < 1 || !std::isfinite(xy[2 * i]) || !std::isfinite(xy[2 * i + 1]))
      block.failures[i] = Failure::kProjection;
  }
}

}  // namespace ko::cli
