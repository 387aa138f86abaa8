// Bonne (IOGP guidance note 7-2, method 9827; Snyder 1987, chapter 19): an
// equal-area pseudoconic whose parallels are concentric arcs true to scale,
//   ρ = a m1 / sin φ1 + M1 − M,  T = a m Δλ / ρ,
//   x = ρ sin T,  y = a m1 / sin φ1 − ρ cos T,
// m = cos φ / sqrt(1 − e² sin²φ), M the meridian distance.  With the
// standard parallel on the equator it is the sinusoidal (x = a m Δλ, y = M).
// The south-orientated form (method 9828) is X_Scale = Y_Scale = −1.
// Parameters: slot 2 λ0, slot 3 φ1, slots 12-14 the orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct BonneConstants {
  double a, e2;
  double lambda0;
  double r1;  // a m1 / sin φ1, the radius of the standard parallel's arc
  double m1;  // M(φ1)
  double sign;
  int sinusoidal;
  PlaneOrientation plane;
  MeridianArc arc;
};

int bonne_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1}))
    return -1;
  const double phi1 = parms[slot::kStdParallel1];
  if (!(std::fabs(phi1) <= kHalfPi)) return -1;
  BonneConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.arc.init(g.a, g.e2);
  k.sinusoidal = std::fabs(phi1) < 1e-10 ? 1 : 0;
  k.sign = phi1 < 0.0 ? -1.0 : 1.0;
  if (!k.sinusoidal) {
    k.r1 = g.a * parallel_radius_ratio(g.e2, phi1) / std::sin(phi1);
    k.m1 = k.arc.distance(phi1);
  }
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagBonne);
}

int forward_points(const BonneConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double am = k.a * parallel_radius_ratio(k.e2, phi);
    const double M = k.arc.distance(phi);
    double x, y;
    if (k.sinusoidal) {
      x = am * dlam;
      y = M;
    } else {
      const double rho = k.r1 + k.m1 - M;
      // At the pole the arc shrinks to the apex (ρ = 0, a m = 0): T = 0.
      const double T = rho != 0.0 ? am * dlam / rho : 0.0;
      x = rho * std::sin(T);
      y = k.r1 - rho * std::cos(T);
    }
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const BonneConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    double phi, dlam;
    if (k.sinusoidal) {
      phi = k.arc.latitude(y);
      dlam = x / (k.a * parallel_radius_ratio(k.e2, phi));
    } else {
      const double dy = k.r1 - y;
      const double rho = k.sign * std::hypot(x, dy);
      phi = k.arc.latitude(k.r1 + k.m1 - rho);
      const double am = k.a * parallel_radius_ratio(k.e2, phi);
      dlam = am > 0.0 ? rho * std::atan2(k.sign * x, k.sign * dy) / am : 0.0;
    }
    const bool ok = std::fabs(phi) <= kHalfPi && std::fabs(dlam) <= kPi * (1.0 + 1e-12);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<BonneConstants, kTagBonne, forward_points, inverse_points>;

}  // namespace

int bonne_constants(ko_constants *c, const double *sph, const double *parms) {
  return bonne_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(bonne, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_bonne_vector = {
    43024, "Bonne", ko::proj::bonne_forward, ko::proj::bonne_inverse, ko::proj::bonne_constants,
    ko::validity<43024>, nullptr, nullptr};
}  // extern "C"
