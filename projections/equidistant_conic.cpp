// Equidistant conic on the ellipsoid (Snyder 1987, chapter 16, with
// the meridian distance M): meridians true to scale, the
// parallels concentric arcs,
//   n = (m1 − m2) / ((M2 − M1) / a)   (n = sin φ1 when φ1 = φ2),
//   G = m1 / n + M1 / a,  ρ = a G − M,  θ = n Δλ,
//   x = ρ sin θ,  y = ρ0 − ρ cos θ,
// m = cos φ / sqrt(1 − e² sin²φ), ρ0 the radius of the latitude of origin.
// Both poles have an image (the far one an arc), so the whole world maps.
// Parameters: slot 2 λ0, slots 3 and 4 the standard parallels φ1, φ2 (the
// parameter array fills an absent φ2 with φ1), slot 6 the latitude of
// origin φ0.  Parallels symmetric about the equator give no cone and are
// refused.
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj {
namespace {

constexpr int32_t kTagEquidistantConic = 0x4544;

struct EquidistantConicConstants {
  double a, e2;
  double lambda0;
  double n;
  double big_g;  // a G, the radius of the equator's arc plus M(0) = 0
  double rho0;
  double m_pole;  // M(π/2)
  MeridianArc arc;
};

int eqdc_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  ConicDefinition def;
  if (!read_conic(sph, parms, def)) return -1;
  const Ellipsoid &g = def.g;
  const double phi1 = def.phi1, phi2 = def.phi2, phi0 = def.phi0;
  if (!(std::fabs(phi1) <= kHalfPi) || !(std::fabs(phi2) <= kHalfPi) || !(std::fabs(phi0) <= kHalfPi))
    return -1;
  if (std::fabs(phi1 + phi2) < 1e-10) return -1;
  EquidistantConicConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.arc.init(g.a, g.e2);
  const double m1 = parallel_radius_ratio(g.e2, phi1), big_m1 = k.arc.distance(phi1);
  if (std::fabs(phi1 - phi2) < 1e-10) {
    k.n = std::sin(phi1);
  } else {
    const double m2 = parallel_radius_ratio(g.e2, phi2), big_m2 = k.arc.distance(phi2);
    k.n = g.a * (m1 - m2) / (big_m2 - big_m1);
  }
  if (!(std::fabs(k.n) > 1e-10)) return -1;
  k.big_g = g.a * m1 / k.n + big_m1;
  k.rho0 = k.big_g - k.arc.distance(phi0);
  k.m_pole = k.arc.distance(kHalfPi);
  return store_constants(c, k, kTagEquidistantConic);
}

int forward_points(const EquidistantConicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double rho = k.big_g - k.arc.distance(phi);
    const double theta = k.n * ko_delta(xy[i] - k.lambda0);
    const double x = rho * std::sin(theta), y = k.rho0 - rho * std::cos(theta);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const EquidistantConicConstants &k, std::span<double> xy) {
  int count = 0;
  const double sign = k.n < 0.0 ? -1.0 : 1.0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double x = sign * xy[i], dy = sign * (k.rho0 - xy[i + 1]);
    const double rho = sign * std::hypot(x, dy);
    const double m = k.big_g - rho;
    const double dlam = std::atan2(x, dy) / k.n;
    const bool ok = std::fabs(m) <= k.m_pole * (1.0 + 1e-15) && std::fabs(dlam) <= kPi * (1.0 + 1e-12);
    const double phi = k.arc.latitude(std::clamp(m, -k.m_pole, k.m_pole));
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run =
    run_kernels<EquidistantConicConstants, kTagEquidistantConic, forward_points, inverse_points>;

int eqdc_constants(ko_constants *c, const double *sph, const double *parms) {
  return eqdc_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(eqdc, run)

}  // namespace
}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_equidistant_conic_vector = {
    43027, "Equidistant_Conic", ko::proj::eqdc_forward, ko::proj::eqdc_inverse,
    ko::proj::eqdc_constants, ko::validity<43027>, ko::conic_compare, nullptr};
}  // extern "C"
