// Winkel I and Winkel II (O. Winkel, 1914) on the sphere of radius a, each
// the average of the equirectangular map with standard parallel φ1
// (slot 3) and a pseudocylindrical true to scale along the equator
// (Snyder 1993, "Flattening the Earth"):
//   Winkel I, with the sinusoidal:
//     x = Δλ (cos φ1 + cos φ) / 2,  y = φ;
//   Winkel II, with Mollweide's map rescaled to the equator's length
//   (x = Δλ cos θ, y = (π/2) sin θ, 2θ + sin 2θ = π sin φ):
//     x = Δλ (cos φ1 + cos θ) / 2,  y = (φ + (π/2) sin θ) / 2.
// Winkel I's inverse is closed; Winkel II's solves y(φ) by Newton's method,
// dy/dφ = (1 + π² cos φ / (8 cos θ)) / 2 (from dθ/dφ = π cos φ / (4 cos²θ)),
// which tends to 1/2 at the poles, so the solution is well conditioned
// there.  Points beyond the pole lines or the ±180° meridians are refused.
// Parameters: slot 2 λ0, slot 3 φ1, slots 12-14 the orientation.
#include "projections/mollweide_theta.h"
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

// Δλ from x and the sum of the two parallels' scales; on a pole of
// φ1 = ±90° both vanish and only x = 0 is on the map.
inline double longitude_of(double x, double sum) { return x == 0.0 ? 0.0 : 2.0 * x / sum; }

bool wink1_fwd(const SphereMap &k, double dlam, double phi, double &x, double &y) {
  x = 0.5 * dlam * (std::cos(k.phi1) + std::cos(phi));
  y = phi;
  return true;
}
bool wink1_inv(const SphereMap &k, double x, double y, double &dlam, double &phi) {
  phi = y;
  dlam = longitude_of(x, std::cos(k.phi1) + std::cos(std::fmax(-kHalfPi, std::fmin(kHalfPi, y))));
  return true;
}

inline double theta_signed(double phi) {
  return std::copysign(world::mollweide_theta(std::fabs(phi)), phi);
}

bool wink2_fwd(const SphereMap &k, double dlam, double phi, double &x, double &y) {
  const double t = theta_signed(phi);
  x = 0.5 * dlam * (std::cos(k.phi1) + std::cos(t));
  y = 0.5 * (phi + kHalfPi * std::sin(t));
  return true;
}
bool wink2_inv(const SphereMap &k, double x, double y, double &dlam, double &phi) {
  if (!(std::fabs(y) <= kHalfPi * world::kOutlineSlack)) return false;
  const double yc = std::fmax(-kHalfPi, std::fmin(kHalfPi, y));
  double p = yc, t = theta_signed(p);
  for (int it = 0; it < 40; ++it) {
    const double ct = std::cos(t);
    const double slope = 0.5 * (1.0 + (ct > 0.0 ? kPi * kPi * std::cos(p) / (8.0 * ct) : 0.0));
    const double step = (0.5 * (p + kHalfPi * std::sin(t)) - yc) / slope;
    p = std::fmax(-kHalfPi, std::fmin(kHalfPi, p - step));
    t = theta_signed(p);
    if (!(std::fabs(step) > 1e-16)) break;
  }
  phi = p;
  dlam = longitude_of(x, std::cos(k.phi1) + std::cos(t));
  return true;
}

}  // namespace
}  // namespace ko::proj

// The projection vectors (no constants: φ1's cosine is all there is).
KO_WORLD_SPHERE_VECTOR(winkel_i, 43018, "Winkel_I", ko::proj::wink1_fwd, ko::proj::wink1_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(winkel_ii, 43019, "Winkel_II", ko::proj::wink2_fwd, ko::proj::wink2_inv, nullptr)
