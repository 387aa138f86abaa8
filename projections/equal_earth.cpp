// Equal Earth (IOGP guidance note 7-2, method 1078; B. Šavrič, T. Patterson,
// B. Jenny, "The Equal Earth map projection", IJGIS 33, 2019), on the
// ellipsoid through the authalic latitude β and radius Rq:
//   θ = asin(√3/2 sin β),
//   x = Rq 2√3 Δλ cos θ / (3 (9A4 θ⁸ + 7A3 θ⁶ + 3A2 θ² + A1)),
//   y = Rq θ (A4 θ⁸ + A3 θ⁶ + A2 θ² + A1).
// The inverse solves the polynomial for θ by Newton's method.
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr double kA1 = 1.340264, kA2 = -0.081106, kA3 = 0.000893, kA4 = 0.003796;
constexpr double kM = 0.8660254037844386;              // √3 / 2
constexpr double kTwoRoot3Over3 = 1.1547005383792515;  // 2√3 / 3

struct EqualEarthConstants {
  double e2, rq, lambda0;
  double y_max;  // y of the pole
  PlaneOrientation plane;
  double authalic[KO_AUX_NCOEF];
};

inline double poly_y(double t) {  // θ (A4 θ⁸ + A3 θ⁶ + A2 θ² + A1)
  const double t2 = t * t, t6 = t2 * t2 * t2;
  return t * (kA4 * t6 * t2 + kA3 * t6 + kA2 * t2 + kA1);
}
inline double poly_dy(double t) {  // its derivative 9A4 θ⁸ + 7A3 θ⁶ + 3A2 θ² + A1
  const double t2 = t * t, t6 = t2 * t2 * t2;
  return 9.0 * kA4 * t6 * t2 + 7.0 * kA3 * t6 + 3.0 * kA2 * t2 + kA1;
}

int equal_earth_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return -1;
  EqualEarthConstants k{};
  k.e2 = g.e2;
  k.rq = ko_auth_r(g.a, g.e2);
  k.lambda0 = parms[slot::kCentralMeridian];
  k.y_max = k.rq * poly_y(std::asin(kM));
  ko_beta_authalic_constants(g.e2, k.authalic);
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagEqualEarth);
}

int forward_points(const EqualEarthConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double beta = ko_phi_to_beta_wconst(k.authalic, k.e2, phi);
    const double t = std::asin(kM * std::sin(beta));
    double x = k.rq * kTwoRoot3Over3 * ko_delta(xy[i] - k.lambda0) * std::cos(t) / poly_dy(t);
    double y = k.rq * poly_y(t);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const EqualEarthConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const bool inside = std::fabs(y) <= k.y_max * (1.0 + 1e-15);
    const double yr = std::fmax(-k.y_max, std::fmin(k.y_max, y)) / k.rq;
    double t = yr / kA1;
    for (int it = 0; it < 12; ++it) {
      const double step = (poly_y(t) - yr) / poly_dy(t);
      t -= step;
      if (!(std::fabs(step) > 1e-16)) break;
    }
    const double dlam = x * poly_dy(t) / (kTwoRoot3Over3 * k.rq * std::cos(t));
    const double sb = std::fmax(-1.0, std::fmin(1.0, std::sin(t) / kM));
    const double phi = ko_beta_to_phi_wconst(k.authalic, k.e2, std::asin(sb));
    const bool ok = inside && std::fabs(dlam) <= kPi * (1.0 + 1e-12);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<EqualEarthConstants, kTagEqualEarth, forward_points, inverse_points>;

}  // namespace

int equal_earth_constants(ko_constants *c, const double *sph, const double *parms) {
  return equal_earth_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(equal_earth, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_equal_earth_vector = {
    43085, "Equal_Earth", ko::proj::equal_earth_forward, ko::proj::equal_earth_inverse,
    ko::proj::equal_earth_constants, ko::validity<43085>, nullptr, nullptr};
}  // extern "C"
