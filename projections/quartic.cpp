// The quartic authalic (Adams 1945; Snyder and Voxland 1989, "An Album of
// Map Projections") and its flat-polar form (F. W. McBryde and P. D.
// Thomas, 1949; same source), on the sphere of radius a.  Both are
// equal-area with parallels spaced by the sine of a fraction of the
// auxiliary angle:
//   quartic authalic   x = Δλ cos φ / cos(φ/2),  y = 2 sin(φ/2)
//                      (the pole is a point);
//   flat-polar quartic sin(θ/2) + sin θ = (1 + √2/2) sin φ,
//                      x = Δλ (1 + 2 cos θ / cos(θ/2)) / sqrt(3√2 + 6),
//                      y = 2√3 sin(θ/2) / sqrt(2 + √2)
//                      (the pole is a line, θ = 90°).
// The flat-polar forward solves for θ by Newton's method (the derivative
// cos(θ/2)/2 + cos θ stays above 0.35); its inverse reads φ through
//   1 − sin φ = [sin 45° − sin(θ/2) + 1 − sin θ] / (1 + √2/2)
//             = [2 cos(45° − w/4) sin(w/4) + 2 sin²(w/2)] / (1 + √2/2),
// w = 90° − θ, which keeps full precision next to the pole line where sin φ
// alone would lose half the digits; y within 1e-15 of the line is the pole.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

// --- Quartic authalic
bool quartic_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  x = dlam * std::cos(phi) / std::cos(0.5 * phi);
  y = 2.0 * std::sin(0.5 * phi);
  return true;
}
bool quartic_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  phi = 2.0 * world::asin_edge(0.5 * y);
  dlam = x == 0.0 ? 0.0 : x * std::cos(0.5 * phi) / std::cos(phi);
  return std::isfinite(phi);
}

// --- Flat-polar quartic
const double kFpqC = 1.0 + 0.5 * std::sqrt(2.0);
const double kFpqCx = 1.0 / std::sqrt(3.0 * std::sqrt(2.0) + 6.0);
const double kFpqCy = 2.0 * std::sqrt(3.0) / std::sqrt(2.0 + std::sqrt(2.0));
const double kFpqYPole = kFpqCy * std::sin(0.25 * kPi);

inline double fpq_x_factor(double t) { return 1.0 + 2.0 * std::cos(t) / std::cos(0.5 * t); }

bool fpq_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  double t = kHalfPi;  // at the pole θ is 90° exactly
  if (std::fabs(phi) < kHalfPi)
    t = world::newton_solve([](double u) { return std::sin(0.5 * u) + std::sin(u); },
                            [](double u) { return 0.5 * std::cos(0.5 * u) + std::cos(u); },
                            kFpqC * std::sin(std::fabs(phi)), std::fabs(phi));
  t = std::fmin(t, kHalfPi);
  x = kFpqCx * dlam * fpq_x_factor(t);
  y = std::copysign(std::fabs(phi) < kHalfPi ? kFpqCy * std::sin(0.5 * t) : kFpqYPole, phi);
  return true;
}
bool fpq_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double ay = std::fabs(y);
  if (!(ay <= kFpqYPole * world::kOutlineSlack)) return false;
  const double t = ay >= kFpqYPole * (1.0 - 1e-15) ? kHalfPi : 2.0 * std::asin(ay / kFpqCy);
  const double w = kHalfPi - t;
  const double sw2 = std::sin(0.5 * w);
  const double d = 2.0 * std::cos(0.25 * kPi - 0.25 * w) * std::sin(0.25 * w) + 2.0 * sw2 * sw2;
  phi = std::copysign(kHalfPi - 2.0 * std::asin(std::sqrt(std::fmax(0.0, d) / (2.0 * kFpqC))), y);
  dlam = x / (kFpqCx * fpq_x_factor(t));
  return true;
}

}  // namespace
}  // namespace ko::proj

// The projection vectors.
KO_WORLD_SPHERE_VECTOR(quartic_authalic, 43022, "Quartic_Authalic", ko::proj::quartic_fwd,
                       ko::proj::quartic_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(flat_polar_quartic, 43045, "Flat_Polar_Quartic", ko::proj::fpq_fwd,
                       ko::proj::fpq_inv, ko::proj::world::sphere_constants)

// Quartic_Authalic_Ellipsoidal: the quartic authalic on the authalic sphere
// with authalic latitudes.
KO_AUTHALIC_VECTOR(quartic_authalic_ellipsoidal, 43072, "Quartic_Authalic_Ellipsoidal",
                   ko::proj::world::sphere_forward<ko::proj::quartic_fwd>,
                   ko::proj::world::sphere_inverse<ko::proj::quartic_inv>)
