// American Polyconic (IOGP guidance note 7-2, method 9818; Snyder 1987,
// chapter 18): every parallel is the developed cone of its own latitude,
//   φ ≠ 0:  L = Δλ sin φ,  x = ν cot φ sin L,  y = M(φ) − M(φ0) + ν cot φ (1 − cos L),
//   φ = 0:  x = a Δλ,  y = −M(φ0).
// The inverse solves Snyder's equations (18-17 to 18-21) by Newton's method
// for φ, then λ = λ0 + asin(x C / a) / sin φ, C = sqrt(1 − e² sin²φ) tan φ.
// Parameters: slot 2 λ0, slot 6 φ0, slots 12-14 the orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct PolyconicConstants {
  double a, e2;
  double lambda0, m0;
  PlaneOrientation plane;
  MeridianArc arc;
};

int poly_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin}))
    return -1;
  if (!(std::fabs(parms[slot::kLatOrigin]) <= kHalfPi)) return -1;
  PolyconicConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.arc.init(g.a, g.e2);
  k.m0 = k.arc.distance(parms[slot::kLatOrigin]);
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagPolyconic);
}

int forward_points(const PolyconicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double s = std::sin(phi);
    const double ncot = prime_vertical_radius(k.a, k.e2, phi) / std::tan(phi);  // ν cot φ
    const double L = dlam * s;
    // On the equator the cone is the cylinder: the limits a Δλ and −M0.
    const bool equator = std::fabs(phi) < 1e-12;
    double x = equator ? k.a * dlam : ncot * std::sin(L);
    double y = k.arc.distance(phi) - k.m0 + (equator ? 0.0 : ncot * (1.0 - std::cos(L)));
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const PolyconicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double A = (k.m0 + y) / k.a;
    double phi = A, dlam = x / k.a;
    bool ok = true;
    if (std::fabs(A) >= 1e-12) {
      const double B = x * x / (k.a * k.a) + A * A;
      // Newton on f(φ) = A (C Ma + 1) − Ma − (Ma² + B) C / 2 with Ma = M / a.
      phi = A;
      for (int it = 0; it < 20; ++it) {
        const double s = std::sin(phi), c = std::cos(phi), s2p = std::sin(2.0 * phi);
        const double w = 1.0 - k.e2 * s * s;
        const double C = std::sqrt(w) * s / c;
        const double Ma = k.arc.distance(phi) / k.a;
        const double Mp = (1.0 - k.e2) / (w * std::sqrt(w));  // dMa/dφ
        const double f = A * (C * Ma + 1.0) - Ma - 0.5 * (Ma * Ma + B) * C;
        const double df = k.e2 * s2p * (Ma * Ma + B - 2.0 * A * Ma) / (4.0 * C) +
                          (A - Ma) * (C * Mp - 2.0 / s2p) - Mp;
        const double step = f / df;
        phi -= step;
        if (!(std::fabs(step) > 1e-15)) break;
      }
      const double s = std::sin(phi);
      const double C = std::sqrt(1.0 - k.e2 * s * s) * std::tan(phi);
      const double arg = x * C / k.a;
      ok = std::fabs(arg) <= 1.0 + 1e-12 && std::fabs(phi) <= kHalfPi;
      dlam = std::asin(std::fmax(-1.0, std::fmin(1.0, arg))) / s;
    }
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<PolyconicConstants, kTagPolyconic, forward_points, inverse_points>;

}  // namespace

int polyconic_constants(ko_constants *c, const double *sph, const double *parms) {
  return poly_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(polyconic, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_polyconic_vector = {
    43021, "Polyconic", ko::proj::polyconic_forward, ko::proj::polyconic_inverse,
    ko::proj::polyconic_constants, ko::validity<43021>, nullptr, nullptr};
}  // extern "C"
