// Sinusoidal (Snyder 1987, chapter 30, in its ellipsoidal form):
// an equal-area pseudocylindrical whose parallels are straight and
// true to scale and whose central meridian is true to scale,
//   x = a m Δλ,  y = M(φ),
// m = cos φ / sqrt(1 − e² sin²φ), M the meridian distance (the exact one,
// through the rectifying latitude).  The inverse reads φ from M and then
// Δλ = x / (a m); points beyond the pole's line or the ±180° meridians are
// refused.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagSinusoidal = 0x5349;

struct SinusoidalConstants {
  double a, e2;
  double lambda0;
  double y_pole;  // M(90°), the quarter meridian
  PlaneOrientation plane;
  MeridianArc arc;
};

int sinusoidal_constants(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return -1;
  SinusoidalConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.arc.init(g.a, g.e2);
  k.y_pole = k.arc.distance(kHalfPi);
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagSinusoidal);
}

int forward_points(const SinusoidalConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    double x = k.a * parallel_radius_ratio(k.e2, phi) * ko_delta(xy[i] - k.lambda0);
    double y = k.arc.distance(phi);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const SinusoidalConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const bool inside = std::fabs(y) <= k.y_pole * (1.0 + 1e-15);
    const double phi = k.arc.latitude(std::fmax(-k.y_pole, std::fmin(k.y_pole, y)));
    const double am = k.a * parallel_radius_ratio(k.e2, phi);
    // On the pole's point (a m = 0) only x = 0 belongs to the map.
    const double dlam = x == 0.0 ? 0.0 : x / am;
    const bool ok = inside && std::fabs(phi) <= kHalfPi && std::fabs(dlam) <= kPi * (1.0 + 1e-12);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<SinusoidalConstants, kTagSinusoidal, forward_points, inverse_points>;

KO_PROJ_DEFINE_POINT_SLOTS(sinusoidal, run)

}  // namespace
}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_sinusoidal_vector = {
    43008, "Sinusoidal", ko::proj::sinusoidal_forward, ko::proj::sinusoidal_inverse,
    ko::proj::sinusoidal_constants, ko::validity<43008>, nullptr, nullptr};
}  // extern "C"
