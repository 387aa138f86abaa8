// Gnomonic (Snyder 1987, chapter 22), the central projection of the sphere
// of radius a onto the plane tangent at the centre (φ1, λc), every great
// circle a straight line:
//   cos c = sin φ1 sin φ + cos φ1 cos φ cos Δλ,
//   x = a cos φ sin Δλ / cos c,
//   y = a (cos φ1 sin φ − sin φ1 cos φ cos Δλ) / cos c.
// Only the hemisphere about the centre has an image (cos c > 0); the whole
// plane maps back to it:
//   ρ = hypot(x, y),  c = atan(ρ / a),
//   φ = asin(cos c sin φ1 + y sin c cos φ1 / ρ),
//   Δλ = atan2(x sin c, ρ cos φ1 cos c − y sin φ1 sin c).
// Parameters: slot 10 λc (Longitude_Of_Center), slot 11 φ1
// (Latitude_Of_Center).
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagGnomonic = 0x474e;

// Points nearer the horizon than this (cos c) are refused: their image is
// beyond 1e10 radii.
constexpr double kMinCosC = 1e-10;

struct GnomonicConstants {
  double a;
  double lambda_c;
  double sin_phi1, cos_phi1;
};

int gnomonic_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kLonCenter, slot::kLatCenter}))
    return -1;
  const double phi1 = parms[slot::kLatCenter];
  if (!(std::fabs(phi1) <= kHalfPi)) return -1;
  GnomonicConstants k{};
  k.a = g.a;
  k.lambda_c = parms[slot::kLonCenter];
  k.sin_phi1 = std::sin(phi1);
  k.cos_phi1 = std::cos(phi1);
  return store_constants(c, k, kTagGnomonic);
}

int forward_points(const GnomonicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1], dlam = xy[i] - k.lambda_c;
    const double sp = std::sin(phi), cp = std::cos(phi), cl = std::cos(dlam);
    const double cos_c = k.sin_phi1 * sp + k.cos_phi1 * cp * cl;
    const double x = k.a * cp * std::sin(dlam) / cos_c;
    const double y = k.a * (k.cos_phi1 * sp - k.sin_phi1 * cp * cl) / cos_c;
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && cos_c > kMinCosC);
  }
  return count;
}

int inverse_points(const GnomonicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double x = xy[i], y = xy[i + 1];
    const double rho = std::hypot(x, y);
    // c = atan(ρ / a): cos c = a / hypot(a, ρ), sin c = ρ / hypot(a, ρ).
    const double h = std::hypot(k.a, rho);
    const double cos_c = k.a / h, sin_c = rho / h;
    // y sin c / ρ = y / h, also at the centre.
    const double s = cos_c * k.sin_phi1 + y * k.cos_phi1 / h;
    const double phi = std::asin(std::fmax(-1.0, std::fmin(1.0, s)));
    const double dlam = std::atan2(x * sin_c, rho * k.cos_phi1 * cos_c - y * k.sin_phi1 * sin_c);
    count += store_point(&xy[i], ko_delta(k.lambda_c + dlam), phi, std::isfinite(rho));
  }
  return count;
}

constexpr auto run = run_kernels<GnomonicConstants, kTagGnomonic, forward_points, inverse_points>;

int gnomonic_constants(ko_constants *c, const double *sph, const double *parms) {
  return gnomonic_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(gnomonic, run)

}  // namespace
}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_gnomonic_vector = {
    43047, "Gnomonic", ko::proj::gnomonic_forward, ko::proj::gnomonic_inverse,
    ko::proj::gnomonic_constants, ko::validity<43047>, nullptr, nullptr};
}  // extern "C"
