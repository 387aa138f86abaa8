// Van der Grinten I (Snyder 1987, chapter 29), on the sphere of radius a:
// the world inside a circle of radius π a, meridians and parallels
// circular arcs.
//   θ = asin |2φ/π|,  A = ½ |π/Δλ − Δλ/π|,  G = cos θ / (sin θ + cos θ − 1),
//   P = G (2 / sin θ − 1),  Q = A² + G,
//   x = ±π a (A (G − P²) + sqrt(A² (G − P²)² − (P² + A²)(G² − P²))) / (P² + A²),
//   y = ±π a (P Q − A sqrt((A² + 1)(P² + A²) − Q²)) / (P² + A²),
// with the equator (x = a Δλ) and the central meridian (y = ±π a tan(θ/2))
// apart; near the origin the numerators are taken in their conjugate
// forms, which do not cancel.  The inverse solves Snyder's cubic in closed
// form, then polishes both angles by Newton's method on the forward.
// Parameters: slot 2 λ0.  Points outside the circle are refused.
#include "projections/auxiliary_sphere.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj {
namespace {

struct VanDerGrintenConstants {
  double a, lambda0;
};

bool compute(const double *sph, const double *parms, VanDerGrintenConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return false;
  k.a = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  return true;
}

// The forward on the sphere of radius 1/π: (x, y) / (π a).
void unit_forward(double dlam, double phi, double &x, double &y) {
  const double ap = std::fabs(phi);
  if (ap < 1e-15) {
    x = dlam / kPi;
    y = 0.0;
    return;
  }
  const double theta = std::asin(std::fmin(1.0, 2.0 * ap / kPi));
  if (std::fabs(dlam) < 1e-15 || ap >= kHalfPi) {
    x = 0.0;
    y = std::copysign(std::tan(0.5 * theta), phi);
    return;
  }
  const double st = std::sin(theta), ct = std::cos(theta);
  const double half = std::sin(0.5 * theta);
  const double A = 0.5 * std::fabs(kPi / dlam - dlam / kPi);
  const double G = ct / (st - 2.0 * half * half);  // sin θ + cos θ − 1 without cancellation
  const double P = G * (2.0 / st - 1.0);
  const double Q = A * A + G;
  const double P2 = P * P, A2 = A * A, pa = P2 + A2;
  const double g = G - P2, h = G * G - P2;  // h <= 0
  // Near the origin g is large and negative and the published numerators
  // cancel almost entirely; their conjugate forms keep every digit:
  //   A g + sqrt(A² g² − pa h) = pa h / (A g − sqrt(A² g² − pa h)),
  //   P Q − A sqrt(S) = pa (A² (2G − 1) + G²) / (P Q + A sqrt(S)),
  // S = (A² + 1) pa − Q².
  const double root_x = std::sqrt(std::fmax(0.0, A2 * g * g - pa * h));
  const double num_x = g < 0.0 ? pa * h / (A * g - root_x) : A * g + root_x;
  const double root_y = std::sqrt(std::fmax(0.0, (A2 + 1.0) * pa - Q * Q));
  const double num_y = 2.0 * G >= 1.0 ? pa * (A2 * (2.0 * G - 1.0) + G * G) / (P * Q + A * root_y)
                                      : P * Q - A * root_y;
  x = std::copysign(num_x / pa, dlam);
  y = std::copysign(num_y / pa, phi);
}

int forward_points(const VanDerGrintenConstants &k, std::span<double> xy) {
  int count = 0;
  const double scale = kPi * k.a;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    double x = 0.0, y = 0.0;
    unit_forward(ko_delta(xy[i] - k.lambda0), phi, x, y);
    count += store_point(&xy[i], scale * x, scale * y, std::fabs(phi) <= kHalfPi && std::isfinite(xy[i]));
  }
  return count;
}

// Snyder's closed-form inverse on the unit circle (chapter 29).
void unit_inverse(double X, double Y, double &dlam, double &phi) {
  const double X2 = X * X, Y2 = Y * Y, r2 = X2 + Y2;
  dlam = X == 0.0 ? 0.0 : kPi * (r2 - 1.0 + std::sqrt(1.0 + 2.0 * (X2 - Y2) + r2 * r2)) / (2.0 * X);
  if (Y == 0.0) {
    phi = 0.0;
    return;
  }
  const double c1 = -std::fabs(Y) * (1.0 + r2);
  const double c2 = c1 - 2.0 * Y2 + X2;
  const double c3 = -2.0 * c1 + 1.0 + 2.0 * Y2 + r2 * r2;
  const double d = Y2 / c3 + (2.0 * c2 * c2 * c2 / (c3 * c3 * c3) - 9.0 * c1 * c2 / (c3 * c3)) / 27.0;
  const double a1 = (c1 - c2 * c2 / (3.0 * c3)) / c3;
  const double m1 = 2.0 * std::sqrt(std::fmax(0.0, -a1 / 3.0));
  const double arg = m1 != 0.0 ? 3.0 * d / (a1 * m1) : 1.0;
  const double t1 = std::acos(std::fmax(-1.0, std::fmin(1.0, arg))) / 3.0;
  phi = std::copysign(kPi * (-m1 * std::cos(t1 + kPi / 3.0) - c2 / (3.0 * c3)), Y);
  phi = std::fmax(-kHalfPi, std::fmin(kHalfPi, phi));
}

// Newton's method on the forward, with a Jacobian by differences: from
// the closed form's start a few steps bring both angles to the last digits
// (the closed form loses digits near the equator and the central meridian).
// A step is kept only when it brings the forward nearer (X, Y).
void polish(double X, double Y, double &dlam, double &phi) {
  constexpr double kStep = 1e-7;
  double fx = 0.0, fy = 0.0;
  unit_forward(dlam, phi, fx, fy);
  double err = std::hypot(fx - X, fy - Y);
  for (int it = 0; it < 4 && err > 0.0; ++it) {
    const double hl = dlam > 0.0 ? -kStep : kStep, hp = phi > 0.0 ? -kStep : kStep;
    double lx = 0.0, ly = 0.0, px = 0.0, py = 0.0;
    unit_forward(dlam + hl, phi, lx, ly);
    unit_forward(dlam, phi + hp, px, py);
    const double j11 = (lx - fx) / hl, j21 = (ly - fy) / hl, j12 = (px - fx) / hp, j22 = (py - fy) / hp;
    const double det = j11 * j22 - j12 * j21;
    if (!(std::fabs(det) > 1e-12)) return;
    const double rx = X - fx, ry = Y - fy;
    const double nl = std::clamp(dlam + (j22 * rx - j12 * ry) / det, -kPi, kPi);
    const double np = std::clamp(phi + (j11 * ry - j21 * rx) / det, -kHalfPi, kHalfPi);
    double nx = 0.0, ny = 0.0;
    unit_forward(nl, np, nx, ny);
    const double nerr = std::hypot(nx - X, ny - Y);
    if (!(nerr < err)) return;
    dlam = nl, phi = np, fx = nx, fy = ny, err = nerr;
  }
}

int inverse_points(const VanDerGrintenConstants &k, std::span<double> xy) {
  int count = 0;
  const double scale = kPi * k.a;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double X = xy[i] / scale, Y = xy[i + 1] / scale;
    const bool ok = X * X + Y * Y <= 1.0 + 1e-14;
    double dlam = 0.0, phi = 0.0;
    if (ok) {
      unit_inverse(X, Y, dlam, phi);
      polish(X, Y, dlam, phi);
    }
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok && std::fabs(dlam) <= kPi * (1.0 + 1e-12));
  }
  return count;
}

template <bool Forward>
int convert(const double *sph, const double *parms, int n, double *coords, const int32_t *,
            const double *) {
  return with_direct_constants<VanDerGrintenConstants>(
      compute, sph, parms, n, coords, [](const VanDerGrintenConstants &k, std::span<double> xy) {
        return Forward ? forward_points(k, xy) : inverse_points(k, xy);
      });
}

}  // namespace
}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_van_der_grinten_i_vector = {
    43029, "Van_der_Grinten_I", ko::proj::convert<true>, ko::proj::convert<false>, nullptr,
    ko::validity<43029>, nullptr, nullptr};
}  // extern "C"

// Van_der_Grinten_I on an auxiliary sphere.
KO_AUXS_VECTOR(van_der_grinten_i_auxs, 43129, "Van_der_Grinten_I_Auxiliary_Sphere",
               ko::proj::convert<true>, ko::proj::convert<false>, nullptr,
               ko::proj::slot::kCentralMeridian, ko::proj::auxs::kNoLatitude)
