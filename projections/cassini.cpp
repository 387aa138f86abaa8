// Cassini-Soldner (IOGP guidance note 7-2, method 9806; Snyder 1987,
// chapter 13) and its hyperbolic form (method 9833, Vanua Levu, Fiji):
//   A = Δλ cos φ, T = tan²φ, C = e² cos²φ / (1 − e²), ν the prime-vertical radius,
//   x = ν (A − T A³/6 − (8 − T + 8C) T A⁵/120),
//   Y = M(φ) − M(φ0) + ν tan φ (A²/2 + (5 − T + 6C) A⁴/24),
//   y = Y, or y = Y − Y³ / (6 ρ ν) in the hyperbolic form (ρ the meridian radius).
// On a sphere the exact spherical formulas replace the series.
// M is the exact meridian distance (rectifying latitude); the guidance note's
// series to e⁶ differs from it by millimetres, which largely cancel in
// M − M0.  The inverse is the guidance note's series from the footpoint
// latitude, refined by two steps of the forward so that it undoes the
// forward to the last digits.
//
// Parameters: slot 2 λ0, slot 6 φ0, slot 5 a scale factor applied to all
// lengths (1 in the EPSG method), slots 12-14 the orientation, slot 15
// Option: 1 for the hyperbolic form.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct CassiniConstants {
  double a, e2, ep2;  // a scaled by k0; e'² = e² / (1 − e²)
  double lambda0;
  double m0;  // M(φ0), scaled
  int hyperbolic;
  PlaneOrientation plane;
  MeridianArc arc;  // of the scaled ellipsoid
};

int cassini_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin, slot::kScaleFactor,
                            slot::kOption}))
    return -1;
  const double k0 = parms[slot::kScaleFactor], option = parms[slot::kOption];
  if (!(k0 > 0.0) || !(std::fabs(parms[slot::kLatOrigin]) <= kHalfPi)) return -1;
  if (option != 0.0 && option != 1.0) return -1;
  CassiniConstants k{};
  k.a = g.a * k0;
  k.e2 = g.e2;
  k.ep2 = g.e2 / (1.0 - g.e2);
  k.lambda0 = parms[slot::kCentralMeridian];
  k.arc.init(k.a, g.e2);
  k.m0 = k.arc.distance(parms[slot::kLatOrigin]);
  k.hyperbolic = option == 1.0 ? 1 : 0;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagCassini);
}

// The forward at one point, before the orientation step: on a sphere the
// exact transverse plate carrée (Snyder 1987, 13-1, 13-2), x = R asin(cos φ
// sin Δλ), y = R (atan2(tan φ, cos Δλ) − φ0); on the ellipsoid the series.
inline void cassini_xy(const CassiniConstants &k, double dlam, double phi, double &x, double &y) {
  if (k.e2 == 0.0) {
    x = k.a * std::asin(std::cos(phi) * std::sin(dlam));
    const double Y = k.a * std::atan2(std::tan(phi), std::cos(dlam)) - k.m0;
    y = k.hyperbolic ? Y - Y * Y * Y / (6.0 * k.a * k.a) : Y;
    return;
  }
  const double s = std::sin(phi), c = std::cos(phi), t = std::tan(phi);
  const double w = 1.0 - k.e2 * s * s;
  const double nu = k.a / std::sqrt(w);
  const double A = dlam * c, A2 = A * A;
  const double T = t * t, C = k.ep2 * c * c;
  x = nu * A * (1.0 - T * A2 / 6.0 - (8.0 - T + 8.0 * C) * T * A2 * A2 / 120.0);
  const double Y =
      k.arc.distance(phi) - k.m0 + nu * t * A2 * (0.5 + (5.0 - T + 6.0 * C) * A2 / 24.0);
  // ρ ν = a² (1 − e²) / w².
  const double rho_nu = k.a * k.a * (1.0 - k.e2) / (w * w);
  y = k.hyperbolic ? Y - Y * Y * Y / (6.0 * rho_nu) : Y;
}

int forward_points(const CassiniConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    double x, y;
    cassini_xy(k, ko_delta(xy[i] - k.lambda0), phi, x, y);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

// Footpoint latitude of a northing: M(φ1) = M0 + Y, with Y from y by a few
// fixed-point steps in the hyperbolic form.
inline double footpoint(const CassiniConstants &k, double y) {
  double Y = y;
  double phi1 = k.arc.latitude(k.m0 + Y);
  for (int it = 0; k.hyperbolic && it < 4; ++it) {
    const double s = std::sin(phi1);
    const double w = 1.0 - k.e2 * s * s;
    Y = y + Y * Y * Y * w * w / (6.0 * k.a * k.a * (1.0 - k.e2));
    phi1 = k.arc.latitude(k.m0 + Y);
  }
  return phi1;
}

// Spherical inverse (Snyder 1987, 13-5, 13-6) with D = Y / R + φ0.
inline void cassini_sphere_inverse(const CassiniConstants &k, double x, double y, double &dlam,
                                   double &phi) {
  double Y = y;
  for (int it = 0; k.hyperbolic && it < 4; ++it) Y = y + Y * Y * Y / (6.0 * k.a * k.a);
  const double D = (Y + k.m0) / k.a, xr = x / k.a;
  phi = std::asin(std::sin(D) * std::cos(xr));
  dlam = std::atan2(std::tan(xr), std::cos(D));
}

int inverse_points(const CassiniConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    if (k.e2 == 0.0) {
      double dlam, phi;
      cassini_sphere_inverse(k, x, y, dlam, phi);
      count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, true);
      continue;
    }
    const double phi1 = footpoint(k, y);
    const double s1 = std::sin(phi1), c1 = std::cos(phi1), t1 = std::tan(phi1);
    const double w1 = 1.0 - k.e2 * s1 * s1;
    const double nu1 = k.a / std::sqrt(w1);
    const double rho1 = nu1 * (1.0 - k.e2) / w1;
    const double T1 = t1 * t1, D = x / nu1, D2 = D * D;
    double phi = phi1 - nu1 * t1 / rho1 * D2 * (0.5 - (1.0 + 3.0 * T1) * D2 / 24.0);
    double dlam = D * (1.0 - T1 * D2 / 3.0 + (1.0 + 3.0 * T1) * T1 * D2 * D2 / 15.0) / c1;
    // Two corrections through the forward: dx ≈ ν cos φ dλ, dy ≈ ρ dφ.
    for (int it = 0; it < 2; ++it) {
      double fx, fy;
      cassini_xy(k, dlam, phi, fx, fy);
      const double s = std::sin(phi);
      const double w = 1.0 - k.e2 * s * s;
      const double nu = k.a / std::sqrt(w);
      phi += (y - fy) / (nu * (1.0 - k.e2) / w);
      dlam += (x - fx) / (nu * std::cos(phi));
    }
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

constexpr auto run = run_kernels<CassiniConstants, kTagCassini, forward_points, inverse_points>;

}  // namespace

int cassini_constants(ko_constants *c, const double *sph, const double *parms) {
  return cassini_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(cassini, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_cassini_vector = {
    43028, "Cassini", ko::proj::cassini_forward, ko::proj::cassini_inverse,
    ko::proj::cassini_constants, ko::validity<43028>, nullptr, nullptr};
}  // extern "C"
