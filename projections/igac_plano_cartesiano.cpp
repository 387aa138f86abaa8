// IGAC plano cartesiano, the Colombia Urban projection (IOGP guidance note
// 7-2, method 1052): a plane at the height h0 of the city's origin,
//   x = A ν cos φ Δλ,  y = G ρ0 ((φ − φ0) + B Δλ² ν² cos²φ),
//   A = 1 + h0 / ν0,  B = tan φ0 / (2 ρ0 ν0),  G = 1 + h0 / ρM,
// ρM the meridian radius at the mean latitude (φ0 + φ)/2.  The guidance
// note's inverse is an approximation; here its result starts a Newton
// iteration on the forward so that the inverse undoes the forward exactly.
// Parameters: slot 2 λ0, slot 6 φ0, slot 14 h0 (Height).
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct UrbanConstants {
  double a, e2;
  double lambda0, phi0;
  double A, B, h0, rho0, C, D;
};

inline double meridian_radius(double a, double e2, double phi) {
  const double s = std::sin(phi);
  const double w = 1.0 - e2 * s * s;
  return a * (1.0 - e2) / (w * std::sqrt(w));
}

int urban_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin, slot::kHeight}))
    return -1;
  const double phi0 = parms[slot::kLatOrigin];
  if (!(std::fabs(phi0) < kHalfPi)) return -1;
  UrbanConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.phi0 = phi0;
  k.h0 = parms[slot::kHeight];
  const double nu0 = prime_vertical_radius(g.a, g.e2, phi0);
  k.rho0 = meridian_radius(g.a, g.e2, phi0);
  k.A = 1.0 + k.h0 / nu0;
  k.B = std::tan(phi0) / (2.0 * k.rho0 * nu0);
  k.C = 1.0 + k.h0 / g.a;
  k.D = k.rho0 * (1.0 + k.h0 / (g.a * (1.0 - g.e2)));
  return store_constants(c, k, kTagColombiaUrban);
}

inline void urban_xy(const UrbanConstants &k, double dlam, double phi, double &x, double &y) {
  const double nc = prime_vertical_radius(k.a, k.e2, phi) * std::cos(phi);
  const double G = 1.0 + k.h0 / meridian_radius(k.a, k.e2, (k.phi0 + phi) / 2.0);
  x = k.A * nc * dlam;
  y = G * k.rho0 * ((phi - k.phi0) + k.B * dlam * dlam * nc * nc);
}

int forward_points(const UrbanConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    double x, y;
    urban_xy(k, ko_delta(xy[i] - k.lambda0), phi, x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const UrbanConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double x = xy[i], y = xy[i + 1];
    // The guidance note's inverse ...
    double phi = k.phi0 + y / k.D - k.B * (x / k.C) * (x / k.C);
    double dlam = x / (k.C * prime_vertical_radius(k.a, k.e2, phi) * std::cos(phi));
    // ... refined through the forward: dx ≈ A ν cos φ dλ, dy ≈ G ρ0 dφ.
    for (int it = 0; it < 3; ++it) {
      double fx, fy;
      urban_xy(k, dlam, phi, fx, fy);
      phi += (y - fy) / (k.rho0 * (1.0 + k.h0 / k.rho0));
      dlam += (x - fx) / (k.A * prime_vertical_radius(k.a, k.e2, phi) * std::cos(phi));
    }
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

constexpr auto run = run_kernels<UrbanConstants, kTagColombiaUrban, forward_points, inverse_points>;

}  // namespace

int igac_constants(ko_constants *c, const double *sph, const double *parms) {
  return urban_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(igac, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_igac_plano_cartesiano_vector = {
    43064, "IGAC_Plano_Cartesiano", ko::proj::igac_forward, ko::proj::igac_inverse,
    ko::proj::igac_constants, ko::validity<43064>, nullptr, nullptr};
}  // extern "C"
