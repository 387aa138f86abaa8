// Hammer (E. Hammer, 1892), Eckert-Greifendorff (1935) and Wagner VII
// (K. Wagner, 1941) on the sphere of radius a: the equatorial Lambert
// azimuthal equal-area map of a narrowed sphere, stretched back to the
// width of the world.  With the longitude narrowed to W Δλ and the latitude
// to ψ = asin(S sin φ),
//   x = Cx k cos ψ sin(W Δλ),  y = Cy k sin ψ,
//   k = sqrt(2 / (1 + cos ψ cos(W Δλ))).
// Hammer is W = 1/2, S = 1, Cx = 2, Cy = 1 (Snyder and Voxland 1989, "An
// Album of Map Projections"); Eckert-Greifendorff W = 1/4, S = 1, Cx = 8,
// Cy = 1/2 (PROJ's hammer with W = 1/4, M = 2: Cx = M/W, Cy = 1/M, equal
// area since Cx Cy W = 1); Wagner VII W = 1/3, S = sin 65°, Cx = 2.66723,
// Cy = 1.24104 (Wagner's constants; Snyder 1993, "Flattening the Earth").
// The inverse undoes the stretch and the azimuthal map in closed form: with
// X = x / Cx, Y = y / Cy and ρ² = X² + Y² ≤ 4, the point on the unit sphere
// is (1 − ρ²/2, X q, Y q), q = sqrt(1 − ρ²/4), whence
// ψ = atan2(Y q, hypot(1 − ρ²/2, X q)), W Δλ = atan2(X q, 1 − ρ²/2) —
// well conditioned at the poles, unlike an arcsine — and sin φ = sin ψ / S
// (taken through 1 − sin φ, below).
// Points outside the outline (ρ > 2, |sin ψ| > S, or |Δλ| beyond 180°) are
// refused.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

struct Narrowing {
  double w, s, cx, cy;
  double psi_pole;  // asin S, ψ of the pole
};

constexpr Narrowing kHammer{0.5, 1.0, 2.0, 1.0, kHalfPi};
constexpr Narrowing kEckertGreifendorff{0.25, 1.0, 8.0, 0.5, kHalfPi};
const Narrowing kWagnerVii{1.0 / 3.0, std::sin(65.0 * kPi / 180.0), 2.66723, 1.24104,
                           65.0 * kPi / 180.0};

// φ of a narrowed ψ, through 1 − sin φ = (sin ψp − sin ψ) / S
// = 2 cos((ψp + ψ)/2) sin((ψp − ψ)/2) / S, which keeps the digits next to
// the pole line where sin φ = sin ψ / S alone would lose half of them.  The
// latitude there moves as the square root of ψ's rounding, so ψ within
// 4e-15 rad of ψp (rounding of the forward) is the pole.
double unnarrowed_latitude(const Narrowing &n, double psi) {
  const double a = std::fabs(psi);
  if (a > n.psi_pole * world::kOutlineSlack) return std::nan("");
  if (a >= n.psi_pole - 4e-15) return std::copysign(kHalfPi, psi);
  const double d = 2.0 * std::cos(0.5 * (n.psi_pole + a)) * std::sin(0.5 * (n.psi_pole - a)) / n.s;
  return std::copysign(kHalfPi - 2.0 * std::asin(std::sqrt(0.5 * d)), psi);
}

template <const Narrowing &N>
bool forward(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double l = N.w * dlam;
  const double spsi = N.s * std::sin(phi);
  // cos ψ = sqrt(1 − sin²ψ), or cos φ itself when nothing is narrowed.
  const double cpsi = N.s == 1.0 ? std::cos(phi) : std::sqrt((1.0 - spsi) * (1.0 + spsi));
  const double k = std::sqrt(2.0 / (1.0 + cpsi * std::cos(l)));
  x = N.cx * k * cpsi * std::sin(l);
  y = N.cy * k * spsi;
  return true;
}

template <const Narrowing &N>
bool inverse(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double X = x / N.cx, Y = y / N.cy;
  const double rho2 = X * X + Y * Y;
  if (!(rho2 <= 4.0 * world::kOutlineSlack)) return false;
  const double q = std::sqrt(std::fmax(0.0, 1.0 - 0.25 * rho2));
  const double along = 1.0 - 0.5 * rho2;  // towards the centre of the map
  const double equatorial = std::hypot(along, X * q);  // cos φ
  const double psi = std::atan2(Y * q, equatorial);
  phi = N.s == 1.0 ? psi : unnarrowed_latitude(N, psi);
  // Within rounding of a pole (1e-15 rad, nanometres) the longitude is
  // noise: the pole's point takes the central meridian.
  dlam = equatorial < 1e-15 ? 0.0 : std::atan2(X * q, along) / N.w;
  return std::isfinite(phi);
}

}  // namespace
}  // namespace ko::proj

// The projection vectors.
KO_WORLD_SPHERE_VECTOR(hammer_aitoff, 43044, "Hammer_Aitoff", ko::proj::forward<ko::proj::kHammer>,
                       ko::proj::inverse<ko::proj::kHammer>, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_greifendorff, 43073, "Eckert_Greifendorff",
                       ko::proj::forward<ko::proj::kEckertGreifendorff>,
                       ko::proj::inverse<ko::proj::kEckertGreifendorff>, ko::proj::world::sphere_constants)
KO_WORLD_SPHERE_VECTOR(wagner_vii, 43076, "Wagner_VII", ko::proj::forward<ko::proj::kWagnerVii>,
                       ko::proj::inverse<ko::proj::kWagnerVii>, ko::proj::world::sphere_constants)

// Hammer_Ellipsoidal: Hammer on the authalic sphere with authalic latitudes.
KO_AUTHALIC_VECTOR(hammer_ellipsoidal, 43071, "Hammer_Ellipsoidal",
                   ko::proj::world::sphere_forward<ko::proj::forward<ko::proj::kHammer>>,
                   ko::proj::world::sphere_inverse<ko::proj::inverse<ko::proj::kHammer>>)
