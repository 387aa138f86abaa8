// Albers Equal-Area Conic (IOGP guidance note 7-2, method 9822; Snyder 1987,
// chapter 14), with α = q the authalic function:
//   n = (m1² − m2²) / (α2 − α1)  (sin φ1 for one parallel),  C = m1² + n α1,
//   ρ = a sqrt(C − n α) / n,  θ = n Δλ,  x = ρ sin θ,  y = ρ0 − ρ cos θ,
// ρ0 the ρ of the latitude of origin.  The inverse goes back through the
// authalic latitude: sin β = (C − ρ² n² / a²) / (n qP).
//
// Parameters: slot 2 λ0, slots 3 and 4 the standard parallels, slot 6 φ0,
// slots 12-14 the orientation.  Inverse points whose α lies beyond a pole or
// outside the developed cone's sector are refused.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct AlbersConstants {
  double a, e, e2;
  double lambda0;
  double n, sign, C, rho0, qp, theta_max;
  PlaneOrientation plane;
  double authalic[KO_AUX_NCOEF];
};

int albers_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  ConicDefinition def;
  if (!read_conic(sph, parms, def)) return -1;
  const Ellipsoid &g = def.g;
  const double phi1 = def.phi1, phi2 = def.phi2, phi0 = def.phi0;
  if (!(std::fabs(phi1) < kHalfPi && std::fabs(phi2) < kHalfPi && std::fabs(phi0) <= kHalfPi))
    return -1;
  AlbersConstants k{};
  k.a = g.a;
  k.e = g.e;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  const double m1 = parallel_radius_ratio(g.e2, phi1), m2 = parallel_radius_ratio(g.e2, phi2);
  const double a1 = authalic_q(g.e, g.e2, std::sin(phi1));
  const double a2 = authalic_q(g.e, g.e2, std::sin(phi2));
  k.n = std::fabs(phi1 - phi2) < 1e-10 ? std::sin((phi1 + phi2) / 2.0)
                                        : (m1 * m1 - m2 * m2) / (a2 - a1);
  if (!(std::fabs(k.n) > 1e-10)) return -1;  // opposite parallels: no cone
  k.sign = k.n > 0.0 ? 1.0 : -1.0;
  k.C = m1 * m1 + k.n * a1;
  k.rho0 = g.a * std::sqrt(k.C - k.n * authalic_q(g.e, g.e2, std::sin(phi0))) / k.n;
  k.qp = authalic_q(g.e, g.e2, 1.0);
  k.theta_max = kPi * std::fabs(k.n);
  if (!std::isfinite(k.rho0) || !plane_orientation_from_parms(parms, k.plane)) return -1;
  ko_beta_authalic_constants(g.e2, k.authalic);
  return store_constants(c, k, kTagAlbers);
}

int forward_points(const AlbersConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double theta = k.n * ko_delta(xy[i] - k.lambda0);
    const double alpha = authalic_q(k.e, k.e2, std::sin(phi));
    const double rho = k.a * std::sqrt(k.C - k.n * alpha) / k.n;
    double x = rho * std::sin(theta);
    double y = k.rho0 - rho * std::cos(theta);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const AlbersConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double dx = k.sign * x, dy = k.sign * (k.rho0 - y);
    const double rho = std::hypot(dx, dy);
    const double theta = std::atan2(dx, dy);
    const double rn = rho * k.n / k.a;
    const double sb = (k.C - rn * rn) / (k.n * k.qp);
    const double beta = std::asin(std::fmax(-1.0, std::fmin(1.0, sb)));
    const double phi = ko_beta_to_phi_wconst(k.authalic, k.e2, beta);
    const bool ok = std::fabs(sb) <= 1.0 + 1e-12 && std::fabs(theta) <= k.theta_max * (1.0 + 1e-12);
    count += store_point(&xy[i], ko_delta(k.lambda0 + theta / k.n), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<AlbersConstants, kTagAlbers, forward_points, inverse_points>;

}  // namespace

int albers_constants(ko_constants *c, const double *sph, const double *parms) {
  return albers_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(albers, run)

// Two parameter sets are the same map when the cone, its radius at the
// origin, the meridian, the false origin and the orientation agree (the
// standard parallels may come in either order).
int albers_compare(const double *sph, const double *parms1, const double *parms2) {
  return compare_maps<AlbersConstants>(
      albers_constants, kTagAlbers, sph, parms1, parms2,
      [](const AlbersConstants &a, const AlbersConstants &b) {
        return rel_eq(a.n, b.n) && rel_eq(a.C, b.C) && rel_eq(a.rho0, b.rho0) &&
               angle_eq(a.lambda0, b.lambda0) && plane_eq(a.plane, b.plane);
      });
}

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_albers_vector = {
    43007, "Albers", ko::proj::albers_forward, ko::proj::albers_inverse,
    ko::proj::albers_constants, ko::validity<43007>, ko::proj::albers_compare, nullptr};
}  // extern "C"
