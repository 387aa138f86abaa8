// The Mollweide group on the sphere of radius a: Mollweide (Snyder 1987,
// chapter 31), Wagner IV and Wagner V.  Each has straight parallels and
// elliptical meridians through an auxiliary angle θ,
//   2θ + sin 2θ = Cp sin φ,  x = Cx Δλ cos θ,  y = Cy sin θ.
// The equal-area members (Mollweide, Wagner IV) bound θ by |θ| ≤ p (p = 90°
// for Mollweide, whose poles are points; 60° for Wagner IV, whose poles are
// lines): equal area needs Cx Cy (2θ + sin 2θ) / 4 = sin φ, so
// Cp = 2p + sin 2p and Cx Cy = 4 / Cp, and the map is twice as wide as it is
// high, Cx π = 2 Cy sin p, which gives Cy = sqrt(2π sin p / Cp) / sin p and
// Cx = 2 Cy sin p / π.  Wagner V (not equal-area) uses Wagner's five-digit
// constants Cx = 0.90977, Cy = 1.65014, Cp = 3.00896, the values of PROJ's
// wag5 (the tests check the two agree).
// The forward solves for θ by Newton's method; Mollweide's equation has a
// double root at the pole, so it is solved there in δ = π − 2θ, with
// δ − sin δ = π (1 − sin φ) = 2π sin²((90° − φ)/2) and δ − sin δ from its
// Taylor series for small δ, which keeps full precision near the poles.
// The inverse is closed: θ = asin(y / Cy), Δλ = x / (Cx cos θ) and φ from
// 1 − sin φ = (Cp − 2θ − sin 2θ) / Cp, the difference written through
// w = 2(p − θ) as w + sin 2p − sin(2p − w), with p the bound of θ (the
// image of the pole, Cp = 2p + sin 2p exactly by definition), so that φ
// keeps its precision next to a pole where sin φ alone would lose half the
// digits.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/projlist.h"
#include "projections/mollweide_theta.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

struct Ellipses {
  double cx, cy, cp;
  double p;     // bound of θ: 2p + sin 2p = Cp
  double y_pole;  // Cy sin p
};

// θ of the other members for |φ|: 2θ + sin 2θ = Cp sin φ, no double root.
inline double theta_of(const Ellipses &e, double abs_phi) {
  const double c = e.cp * std::sin(abs_phi);
  const double u = world::newton_solve([](double t) { return t + std::sin(t); },
                                       [](double t) { return 1.0 + std::cos(t); }, c, 0.5 * c);
  return 0.5 * u;
}

template <const Ellipses &E, bool kMollweide>
bool forward(const SphereMap &, double dlam, double phi, double &x, double &y) {
  double t = E.p;  // at the pole θ is its bound exactly
  if (std::fabs(phi) < kHalfPi)
    t = std::fmin(E.p, kMollweide ? world::mollweide_theta(std::fabs(phi)) : theta_of(E, std::fabs(phi)));
  const double theta = std::copysign(t, phi);
  x = E.cx * dlam * std::cos(theta);
  y = std::fabs(phi) < kHalfPi ? E.cy * std::sin(theta) : std::copysign(E.y_pole, phi);
  return true;
}

template <const Ellipses &E>
bool inverse(const SphereMap &, double x, double y, double &dlam, double &phi) {
  const double ay = std::fabs(y);
  if (!(ay <= E.y_pole * world::kOutlineSlack)) return false;
  // Next to a pole's line φ moves as the square root of y's rounding (a
  // unit in the last place of y is 1e-8 rad of φ there), so y within
  // 1e-15 of the line, the rounding of the scaling by the radius, is the
  // pole.
  const double t = ay >= E.y_pole * (1.0 - 1e-15) ? E.p : std::asin(ay / E.cy);
  const double w = 2.0 * (E.p - t);
  const double d = w + 2.0 * std::cos(2.0 * E.p - 0.5 * w) * std::sin(0.5 * w);
  phi = std::copysign(kHalfPi - 2.0 * std::asin(std::sqrt(std::fmax(0.0, d) / (2.0 * E.cp))), y);
  dlam = x == 0.0 ? 0.0 : x / (E.cx * std::cos(t));
  return true;
}

Ellipses with_bound(double cx, double cy, double cp, double p) {
  return {cx, cy, cp, p, cy * std::sin(p)};
}

// An equal-area member with bound p (see above).
Ellipses equal_area(double p) {
  const double sp = std::sin(p), cp = 2.0 * p + std::sin(2.0 * p);
  const double cy = std::sqrt(2.0 * kPi * sp / cp) / sp;
  return with_bound(2.0 * cy * sp / kPi, cy, cp, p);
}

// Wagner V: the bound from 2p + sin 2p = Cp.
Ellipses wagner_v() {
  constexpr double cp = 3.00896;
  const double u = world::newton_solve([](double v) { return v + std::sin(v); },
                                       [](double v) { return 1.0 + std::cos(v); }, cp, 2.5);
  return with_bound(0.90977, 1.65014, cp, 0.5 * u);
}

const Ellipses kMollweideE = equal_area(kHalfPi);
const Ellipses kWagnerIvE = equal_area(kPi / 3.0);
const Ellipses kWagnerVE = wagner_v();

// Mollweide's slots by name, for its auxiliary-sphere form.
constexpr ko_proj_fn kMollweideForward = world::sphere_forward<forward<kMollweideE, true>>;
constexpr ko_proj_fn kMollweideInverse = world::sphere_inverse<inverse<kMollweideE>>;

}  // namespace
}  // namespace ko::proj

// The projection vectors.
KO_WORLD_SPHERE_VECTOR(mollweide, 43009, "Mollweide", (ko::proj::forward<ko::proj::kMollweideE, true>),
                       ko::proj::inverse<ko::proj::kMollweideE>, ko::proj::world::sphere_constants)
KO_WORLD_SPHERE_VECTOR(wagner_iv, 43074, "Wagner_IV", (ko::proj::forward<ko::proj::kWagnerIvE, false>),
                       ko::proj::inverse<ko::proj::kWagnerIvE>, ko::proj::world::sphere_constants)
KO_WORLD_SPHERE_VECTOR(wagner_v, 43075, "Wagner_V", (ko::proj::forward<ko::proj::kWagnerVE, false>),
                       ko::proj::inverse<ko::proj::kWagnerVE>, nullptr)

// Mollweide on an auxiliary sphere.
KO_AUXS_VECTOR(mollweide_auxs, 43109, "Mollweide_Auxiliary_Sphere", ko::proj::kMollweideForward,
               ko::proj::kMollweideInverse,
               (ko::proj::auxs::constants<ko::proj::world::sphere_constants, ko::proj::auxs::kNoLatitude>),
               ko::proj::slot::kCentralMeridian, ko::proj::auxs::kNoLatitude)
