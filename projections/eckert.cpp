// Eckert's six world maps (M. Eckert, 1906) on the sphere of radius a:
// straight parallels, poles as lines half the equator's length, meridians
// straight (I, II), elliptical (III, IV) or sinusoidal (V, VI).  Formulas
// from Snyder 1987, chapter 32 (IV and VI), and
// Snyder and Voxland 1989, "An Album of Map Projections" (I, II, III, V):
//   I    x = 2√(2/3π) Δλ (1 − |φ|/π),          y = 2√(2/3π) φ
//   II   x = 2 Δλ √(4 − 3 sin|φ|) / √(6π),      y = ±√(2π/3) (2 − √(4 − 3 sin|φ|))
//   III  x = 2 Δλ (1 + √(1 − (2φ/π)²)) / √(π(4 + π)),  y = 4φ / √(π(4 + π))
//   IV   θ + sin θ cos θ + 2 sin θ = (2 + π/2) sin φ,
//        x = 2 Δλ (1 + cos θ) / √(π(4 + π)),  y = 2 √(π/(4 + π)) sin θ
//   V    x = Δλ (1 + cos φ) / √(2 + π),         y = 2φ / √(2 + π)
//   VI   θ + sin θ = (1 + π/2) sin φ,
//        x = Δλ (1 + cos θ) / √(2 + π),         y = 2θ / √(2 + π)
// II, IV and VI are equal-area.  IV and VI solve for θ by Newton's method
// (IV in the distance from the pole, below); every inverse is closed.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/mollweide_theta.h"
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

const double kC1 = 2.0 * std::sqrt(2.0 / (3.0 * kPi));  // Eckert I
const double kSqrt6Pi = std::sqrt(6.0 * kPi);           // Eckert II
const double kSqrt2PiOver3 = std::sqrt(2.0 * kPi / 3.0);
const double kSqrtPi4Pi = std::sqrt(kPi * (4.0 + kPi));  // Eckert III, IV
const double kSqrt2Pi = std::sqrt(2.0 + kPi);            // Eckert V, VI
const double kCyIv = 2.0 * std::sqrt(kPi / (4.0 + kPi));
constexpr double kCpIv = 2.0 + kHalfPi;
constexpr double kCpVi = 1.0 + kHalfPi;

// --- Eckert I
bool eck1_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  x = kC1 * dlam * (1.0 - std::fabs(phi) / kPi);
  y = kC1 * phi;
  return true;
}
bool eck1_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  phi = y / kC1;
  dlam = x / (kC1 * (1.0 - std::fabs(phi) / kPi));
  return true;
}

// --- Eckert II
bool eck2_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double t = std::sqrt(4.0 - 3.0 * std::sin(std::fabs(phi)));
  x = 2.0 * dlam * t / kSqrt6Pi;
  y = std::copysign(kSqrt2PiOver3 * (2.0 - t), phi);
  return true;
}
bool eck2_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double t = 2.0 - std::fabs(y) / kSqrt2PiOver3;  // √(4 − 3 sin|φ|), 1 at the pole
  phi = std::copysign(world::asin_edge((4.0 - t * t) / 3.0), y);
  dlam = x * kSqrt6Pi / (2.0 * t);
  return t > 0.0 && std::isfinite(phi);
}

// --- Eckert III
bool eck3_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double q = 2.0 * phi / kPi;
  x = 2.0 * dlam * (1.0 + std::sqrt(std::fmax(0.0, 1.0 - q * q))) / kSqrtPi4Pi;
  y = 4.0 * phi / kSqrtPi4Pi;
  return true;
}
bool eck3_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  phi = y * kSqrtPi4Pi / 4.0;
  const double q = 2.0 * phi / kPi;
  dlam = x * kSqrtPi4Pi / (2.0 * (1.0 + std::sqrt(std::fmax(0.0, 1.0 - q * q))));
  return true;
}

// --- Eckert IV
inline double eck4_f(double t) { return t + std::sin(t) * std::cos(t) + 2.0 * std::sin(t); }
// θ of Eckert IV for |φ|, solved in w = 90° − θ: the equation's derivative
// 2 cos θ (1 + cos θ) vanishes at the pole, so near it θ itself would keep
// only half the digits.  With c = (2 + π/2) sin φ,
//   (2 + π/2) − f(90° − w) = ½ (2w − sin 2w) + 4 sin²(w/2)
//                          = (2 + π/2) · 2 sin²((90° − φ)/2),
// convex and increasing in w, so Newton's method from √r (at or beyond the
// root, as the left side is at least w²) converges from above.
double eck4_w(double abs_phi) {
  const double s = std::sin(0.5 * (kHalfPi - abs_phi));
  const double r = kCpIv * 2.0 * s * s;
  if (r == 0.0) return 0.0;
  const auto g = [](double w) {
    const double h = std::sin(0.5 * w);
    return 0.5 * world::delta_minus_sin(2.0 * w) + 4.0 * h * h;
  };
  const auto dg = [](double w) { return 2.0 * std::sin(w) * (std::sin(w) + 1.0); };
  return world::newton_solve(g, dg, r, std::fmin(kHalfPi, std::sqrt(r)));
}

bool eck4_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double w = eck4_w(std::fabs(phi));
  x = 2.0 * dlam * (1.0 + std::sin(w)) / kSqrtPi4Pi;  // 1 + cos θ
  y = std::copysign(kCyIv * std::cos(w), phi);       // sin θ
  return true;
}
bool eck4_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double t = world::asin_edge(y / kCyIv);
  phi = world::asin_edge(eck4_f(t) / kCpIv);
  dlam = x * kSqrtPi4Pi / (2.0 * (1.0 + std::cos(t)));
  return std::isfinite(phi);
}

// --- Eckert V
bool eck5_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  x = dlam * (1.0 + std::cos(phi)) / kSqrt2Pi;
  y = 2.0 * phi / kSqrt2Pi;
  return true;
}
bool eck5_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  phi = 0.5 * y * kSqrt2Pi;
  dlam = x * kSqrt2Pi / (1.0 + std::cos(phi));
  return true;
}

// --- Eckert VI
bool eck6_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  const double c = kCpVi * std::sin(phi);
  // f'(θ) = 1 + cos θ stays at least 1 on |θ| ≤ 90°.
  const double t = world::newton_solve([](double u) { return u + std::sin(u); },
                                       [](double u) { return 1.0 + std::cos(u); }, c, phi);
  x = dlam * (1.0 + std::cos(t)) / kSqrt2Pi;
  y = 2.0 * t / kSqrt2Pi;
  return true;
}
bool eck6_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double t = 0.5 * y * kSqrt2Pi;
  phi = world::asin_edge((t + std::sin(t)) / kCpVi);
  dlam = x * kSqrt2Pi / (1.0 + std::cos(t));
  return std::isfinite(phi);
}

}  // namespace
}  // namespace ko::proj

// The projection vectors (no constants: everything is a handful of numbers).
KO_WORLD_SPHERE_VECTOR(eckert_i, 43015, "Eckert_I", ko::proj::eck1_fwd, ko::proj::eck1_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_ii, 43014, "Eckert_II", ko::proj::eck2_fwd, ko::proj::eck2_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_iii, 43013, "Eckert_III", ko::proj::eck3_fwd, ko::proj::eck3_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_iv, 43012, "Eckert_IV", ko::proj::eck4_fwd, ko::proj::eck4_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_v, 43011, "Eckert_V", ko::proj::eck5_fwd, ko::proj::eck5_inv, nullptr)
KO_WORLD_SPHERE_VECTOR(eckert_vi, 43010, "Eckert_VI", ko::proj::eck6_fwd, ko::proj::eck6_inv, nullptr)

// Eckert VI and Eckert IV on an auxiliary sphere.
KO_AUXS_VECTOR(eckert_vi_auxs, 43110, "Eckert_VI_Auxiliary_Sphere",
               ko::proj::world::sphere_forward<ko::proj::eck6_fwd>,
               ko::proj::world::sphere_inverse<ko::proj::eck6_inv>, nullptr,
               ko::proj::slot::kCentralMeridian, ko::proj::auxs::kNoLatitude)
KO_AUXS_VECTOR(eckert_iv_auxs, 43112, "Eckert_IV_Auxiliary_Sphere",
               ko::proj::world::sphere_forward<ko::proj::eck4_fwd>,
               ko::proj::world::sphere_inverse<ko::proj::eck4_inv>, nullptr,
               ko::proj::slot::kCentralMeridian, ko::proj::auxs::kNoLatitude)
