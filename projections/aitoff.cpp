// Aitoff (D. Aitoff, 1889) and Winkel tripel (O. Winkel, 1921) on the
// sphere of radius a (Snyder and Voxland 1989, "An Album of Map
// Projections"; Snyder 1993, "Flattening the Earth").  Aitoff is the
// equatorial azimuthal equidistant map of Δλ/2 stretched twice across:
//   α = angular distance of (Δλ/2, φ) from the map's centre,
//   cos α = cos φ cos(Δλ/2),  D = α / sin α,
//   x = 2 D cos φ sin(Δλ/2),  y = D sin φ;
// Winkel tripel averages Aitoff with the equirectangular map of standard
// parallel φ1 (slot 3):
//   x = (x_Aitoff + Δλ cos φ1) / 2,  y = (y_Aitoff + φ) / 2.
// sin α is taken as hypot(sin φ, cos φ sin(Δλ/2)) and α = atan2(sin α,
// cos α), which keeps full precision near the centre.  Neither map has a
// closed inverse: it is Newton's method in two unknowns with the analytic
// Jacobian, started from (x, y) itself; a point whose solution does not
// reproduce it (off the outline) is refused.
// Parameters: slot 2 λ0, slot 3 φ1 (Winkel tripel), slots 12-14 the
// orientation.
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

// Aitoff's x, y and their partial derivatives in (Δλ, φ).
struct AitoffPoint {
  double x, y;
  double x_lam, x_phi, y_lam, y_phi;
};

AitoffPoint aitoff(double dlam, double phi) {
  const double sl = std::sin(0.5 * dlam), cl = std::cos(0.5 * dlam);
  const double sp = std::sin(phi), cp = std::cos(phi);
  const double c = cp * cl;
  const double s = std::hypot(sp, cp * sl);  // sin α
  const double alpha = std::atan2(s, c);
  // D = α / sin α and dD/d(cos α) = −(sin α − α cos α) / sin³α, from their
  // series (1 + α²/6, −1/3 − 2α²/15) near the centre.
  double d, dc;
  if (alpha < 1e-3) {
    const double a2 = alpha * alpha;
    d = 1.0 + a2 / 6.0;
    dc = -1.0 / 3.0 - 2.0 * a2 / 15.0;
  } else {
    d = alpha / s;
    dc = -(s - alpha * c) / (s * s * s);
  }
  AitoffPoint r;
  r.x = 2.0 * d * cp * sl;
  r.y = d * sp;
  r.x_lam = cp * (d * cl - dc * cp * sl * sl);
  r.x_phi = -2.0 * sl * sp * (dc * cp * cl + d);
  r.y_lam = -0.5 * sp * cp * sl * dc;
  r.y_phi = d * cp - dc * sp * sp * cl;
  return r;
}

// Winkel tripel's weight of the equirectangular part: 0 gives Aitoff.
template <bool kWinkel>
AitoffPoint map_point(const SphereMap &k, double dlam, double phi) {
  AitoffPoint r = aitoff(dlam, phi);
  if constexpr (kWinkel) {
    const double c1 = std::cos(k.phi1);
    r.x = 0.5 * (r.x + dlam * c1);
    r.y = 0.5 * (r.y + phi);
    r.x_lam = 0.5 * (r.x_lam + c1);
    r.x_phi *= 0.5;
    r.y_lam *= 0.5;
    r.y_phi = 0.5 * (r.y_phi + 1.0);
  }
  return r;
}

template <bool kWinkel>
bool forward(const SphereMap &k, double dlam, double phi, double &x, double &y) {
  const AitoffPoint r = map_point<kWinkel>(k, dlam, phi);
  x = r.x;
  y = r.y;
  return true;
}

template <bool kWinkel>
bool inverse(const SphereMap &k, double x, double y, double &dlam, double &phi) {
  double l = std::fmax(-kPi, std::fmin(kPi, x)), p = std::fmax(-kHalfPi, std::fmin(kHalfPi, y));
  AitoffPoint r{};
  for (int it = 0; it < 60; ++it) {
    r = map_point<kWinkel>(k, l, p);
    const double ex = r.x - x, ey = r.y - y;
    const double det = r.x_lam * r.y_phi - r.x_phi * r.y_lam;
    if (det == 0.0 || !std::isfinite(det)) break;
    const double dl = (ex * r.y_phi - ey * r.x_phi) / det;
    const double dp = (ey * r.x_lam - ex * r.y_lam) / det;
    // Keep the iterate on the map: it may step beyond an edge on the way.
    l = std::fmax(-kPi, std::fmin(kPi, l - dl));
    p = std::fmax(-kHalfPi, std::fmin(kHalfPi, p - dp));
    if (std::fabs(dl) < 1e-15 && std::fabs(dp) < 1e-15) break;
  }
  r = map_point<kWinkel>(k, l, p);
  dlam = l;
  phi = p;
  // Off the outline the iterate ends on an edge without reaching (x, y).
  return std::hypot(r.x - x, r.y - y) <= 1e-12;
}

}  // namespace
}  // namespace ko::proj

// The projection vectors.
KO_WORLD_SPHERE_VECTOR(aitoff, 43043, "Aitoff", ko::proj::forward<false>, ko::proj::inverse<false>, nullptr)
KO_WORLD_SPHERE_VECTOR(winkel_tripel, 43042, "Winkel_Tripel", ko::proj::forward<true>,
                       ko::proj::inverse<true>, ko::proj::world::sphere_constants)
