// Geostationary satellite view: the ellipsoid as seen by a scanning
// radiometer on a satellite in the equatorial plane at height h above the
// equator, over the sub-satellite longitude λ0: the normalized geostationary
// projection of the CGMS LRIT/HRIT global document (CGMS 03, 1999, 4.4),
// derived here in Cartesian form.
//
// In units of a, with the satellite at S = (Rs, 0, 0), Rs = 1 + h/a, in
// the frame turned to λ0, a point of geodetic latitude φ and longitude
// difference Δλ is P = ν (cos φ cos Δλ, cos φ sin Δλ, (1 − e²) sin φ),
// ν = 1 / sqrt(1 − e² sin²φ).  The view direction S → P = (−t, Py, Pz),
// t = Rs − Px, is read as two scan angles, one of them turning the
// instrument about its sweep axis (y: Meteosat, x: GOES):
//   sweep y:  x = h atan(Py / t),  y = h atan(Pz / hypot(t, Py));
//   sweep x:  x = h atan(Py / hypot(t, Pz)),  y = h atan(Pz / t).
// P is visible when the satellite is above its tangent plane:
//   (Rs − Px) Px − Py² − Pz² / (1 − e²) > 0.
// The inverse turns the scan angles back into the direction (−1, dy, dz)
// and intersects the ray S + τ (−1, dy, dz) with X² + Y² + Z² / (1 − e²) = 1,
// the nearer root of  A τ² − 2 Rs τ + Rs² − 1 = 0,  A = 1 + dy² + dz² / (1 − e²);
// a ray that misses the ellipsoid is refused.
//
// Parameters: slot 10 λ0 (Longitude_Of_Center), slot 14 h (Height, metres
// above the equator), slot 15 Option: 0 sweep about y, the default, as
// Meteosat; 1 sweep about x, as GOES; any other value is refused.  The plane
// orientation is not offered: slot 14 holds the height.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagGeostationary = 0x4753;

struct GeosConstants {
  double a, e2;
  double lambda0;
  double h;           // height above the equator, metres
  double rs;          // 1 + h / a, the satellite's distance from the centre in units of a
  double one_m_e2;    // 1 − e²
  int sweep_x;        // 1: sweep about x
};

int geos_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kLonCenter, slot::kHeight, slot::kOption}))
    return -1;
  const double h = parms[slot::kHeight], option = parms[slot::kOption];
  if (!(h > 0.0) || !(option == 0.0 || option == 1.0)) return -1;
  GeosConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kLonCenter];
  k.h = h;
  k.rs = 1.0 + h / g.a;
  k.one_m_e2 = 1.0 - g.e2;
  k.sweep_x = option == 1.0 ? 1 : 0;
  return store_constants(c, k, kTagGeostationary);
}

int forward_points(const GeosConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double sp = std::sin(phi), cp = std::cos(phi);
    const double nu = 1.0 / std::sqrt(1.0 - k.e2 * sp * sp);
    const double px = nu * cp * std::cos(dlam), py = nu * cp * std::sin(dlam);
    const double pz = nu * k.one_m_e2 * sp;
    const double t = k.rs - px;
    const bool visible = t * px - py * py - pz * pz / k.one_m_e2 > 0.0;
    const double x = k.h * (k.sweep_x ? std::atan(py / std::hypot(t, pz)) : std::atan(py / t));
    const double y = k.h * (k.sweep_x ? std::atan(pz / t) : std::atan(pz / std::hypot(t, py)));
    count += store_point(&xy[i], x, y, visible && std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const GeosConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    // The scan angles stay within ±90°, the satellite's half-space.
    const double ax = xy[i] / k.h, ay = xy[i + 1] / k.h;
    const double tx = std::tan(ax), ty = std::tan(ay);
    const double dy = k.sweep_x ? tx * std::hypot(1.0, ty) : tx;
    const double dz = k.sweep_x ? ty : ty * std::hypot(1.0, tx);
    const double A = 1.0 + dy * dy + dz * dz / k.one_m_e2;
    const double disc = k.rs * k.rs - A * (k.rs * k.rs - 1.0);
    // The nearer root, written without cancellation: τ = (Rs² − 1) / (Rs + √disc).
    const double tau = (k.rs * k.rs - 1.0) / (k.rs + std::sqrt(disc));
    const double X = k.rs - tau, Y = tau * dy, Z = tau * dz;
    const double lam = std::atan2(Y, X);
    const double phi = std::atan2(Z, k.one_m_e2 * std::hypot(X, Y));
    const bool hit = disc >= 0.0 && std::fabs(ax) < kHalfPi && std::fabs(ay) < kHalfPi;
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam), phi, hit);
  }
  return count;
}

constexpr auto run = run_kernels<GeosConstants, kTagGeostationary, forward_points, inverse_points>;

}  // namespace

int geostationary_satellite_constants(ko_constants *c, const double *sph, const double *parms) {
  return geos_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(geostationary_satellite, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_geostationary_satellite_vector = {
    43084, "Geostationary_Satellite", ko::proj::geostationary_satellite_forward,
    ko::proj::geostationary_satellite_inverse, ko::proj::geostationary_satellite_constants,
    ko::validity<43084>, nullptr, nullptr};
}  // extern "C"
