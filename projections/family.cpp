// Shared machinery of the projection families: the spheroid pair check and
// the plane orientation step.
#include "projections/family.h"

namespace ko::proj {

bool read_ellipsoid(const double *sph, Ellipsoid &out) {
  if (sph == nullptr) return false;
  const double a = sph[0];
  const double e2 = sph[1];
  if (!(std::isfinite(a) && a > 0.0) || !(e2 >= 0.0 && e2 < 1.0)) return false;
  out.a = a;
  out.e2 = e2 < kTol ? 0.0 : e2;
  out.e = std::sqrt(out.e2);
  return true;
}

bool plane_orientation(double x_scale, double y_scale, double rotation, PlaneOrientation &out) {
  if (!std::isfinite(x_scale) || !std::isfinite(y_scale) || !std::isfinite(rotation)) return false;
  const double sx = x_scale == 0.0 ? 1.0 : x_scale;
  const double sy = y_scale == 0.0 ? 1.0 : y_scale;
  // Exact values for the quarter turns so that orientation by 90 or 180
  // degrees swaps and negates coordinates without rounding.
  double c = std::cos(rotation);
  double s = std::sin(rotation);
  const double quarters = rotation / kHalfPi;
  if (quarters == std::nearbyint(quarters)) {
    const long q = static_cast<long>(std::fmod(quarters, 4.0) + 4.0) % 4;
    constexpr double kCos[4] = {1.0, 0.0, -1.0, 0.0};
    constexpr double kSin[4] = {0.0, 1.0, 0.0, -1.0};
    c = kCos[q];
    s = kSin[q];
  }
  out.fwd[0] = sx * c;
  out.fwd[1] = sx * s;
  out.fwd[2] = -sy * s;
  out.fwd[3] = sy * c;
  // Inverse: undo the scales, then turn back.
  out.inv[0] = c / sx;
  out.inv[1] = -s / sy;
  out.inv[2] = s / sx;
  out.inv[3] = c / sy;
  return true;
}

bool plane_orientation_from_parms(const double *parms, PlaneOrientation &out) {
  if (parms == nullptr) return false;
  return plane_orientation(parms[slot::kXScale], parms[slot::kYScale], parms[slot::kRotation], out);
}

}  // namespace ko::proj
