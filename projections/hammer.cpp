// Hammer (E. Hammer, 1892) and Eckert-Greifendorff (1935) on the sphere of
// radius a: the equatorial Lambert azimuthal equal-area map of a narrowed
// longitude W Δλ, stretched back to the width of the world,
//   x = (M / W) k cos φ sin(W Δλ),  y = (1 / M) k sin φ,
//   k = sqrt(2 / (1 + cos φ cos(W Δλ))),
// equal-area for every W and M (the stretch M/W times 1/M undoes the
// narrowing W).  Hammer is W = 1/2, M = 1 (Snyder and Voxland 1989, "An
// Album of Map Projections"); Eckert-Greifendorff W = 1/4, M = 2.
// The inverse undoes the stretch and the azimuthal map in closed form: with
// X = x W / M, Y = y M and ρ² = X² + Y² ≤ 4, the point on the unit sphere
// is (1 − ρ²/2, X q, Y q), q = sqrt(1 − ρ²/4), whence
// φ = atan2(Y q, hypot(1 − ρ²/2, X q)), W Δλ = atan2(X q, 1 − ρ²/2) —
// well conditioned at the poles, unlike an arcsine.  Points outside the
// outline (ρ > 2, or |Δλ| beyond 180°) are refused.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

struct Narrowing {
  double w, m;
};

constexpr Narrowing kHammer{0.5, 1.0};
constexpr Narrowing kEckertGreifendorff{0.25, 2.0};

template <const Narrowing &N>
bool forward(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double l = N.w * dlam, cphi = std::cos(phi);
  const double k = std::sqrt(2.0 / (1.0 + cphi * std::cos(l)));
  x = N.m / N.w * k * cphi * std::sin(l);
  y = k * std::sin(phi) / N.m;
  return true;
}

template <const Narrowing &N>
bool inverse(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double X = x * N.w / N.m, Y = y * N.m;
  const double rho2 = X * X + Y * Y;
  if (!(rho2 <= 4.0 * world::kOutlineSlack)) return false;
  const double q = std::sqrt(std::fmax(0.0, 1.0 - 0.25 * rho2));
  const double along = 1.0 - 0.5 * rho2;  // towards the centre of the map
  const double equatorial = std::hypot(along, X * q);  // cos φ
  phi = std::atan2(Y * q, equatorial);
  // Within rounding of a pole (1e-15 rad, nanometres) the longitude is
  // noise: the pole's point takes the central meridian.
  dlam = equatorial < 1e-15 ? 0.0 : std::atan2(X * q, along) / N.w;
  return true;
}

}  // namespace
}  // namespace ko::proj

// The projection vectors.
extern "C" {
using ko::proj::world::sphere_forward;
using ko::proj::world::sphere_inverse;
namespace kp = ko::proj;
constinit const ko_projlist_entry ko_prj_hammer_aitoff_vector = {
    43044, "Hammer_Aitoff", sphere_forward<kp::forward<kp::kHammer>>,
    sphere_inverse<kp::inverse<kp::kHammer>>, nullptr, ko::validity<43044>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_eckert_greifendorff_vector = {
    43073, "Eckert_Greifendorff", sphere_forward<kp::forward<kp::kEckertGreifendorff>>,
    sphere_inverse<kp::inverse<kp::kEckertGreifendorff>>, kp::world::sphere_constants,
    ko::validity<43073>, nullptr, nullptr};
}  // extern "C"
