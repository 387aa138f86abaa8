// Transverse cylindrical equal-area on the sphere (Snyder 1987, chapter 10,
// equations 10-13 to 10-18): the cylindrical equal-area map of the sphere
// turned so that the central meridian plays the equator's part,
//   x = R cos φ sin Δλ / k0,   y = R k0 (atan2(sin φ, cos φ cos Δλ) − φ0),
// and back, with x' = x k0 / R and D = y / (R k0) + φ0,
//   φ = asin(sqrt(1 − x'²) sin D),   Δλ = atan2(x', sqrt(1 − x'²) cos D),
// the latitude taken as atan2(sqrt(1 − x'²) sin D, hypot(x', sqrt(1 − x'²) cos D))
// so that it keeps its digits near the poles, where asin loses half of them.
// There is no EPSG method for it; as a world map it is computed on the
// sphere of radius a, the semi-major axis, whatever the flattening.  The
// map is the strip |x'| ≤ 1, |D| ≤ π; points beyond it are refused.
//
// Parameters: slot 2 λ0, slot 5 k0 (the scale along the central
// meridian), slot 6 φ0 (Latitude_Of_Origin), slots 12-14 the plane
// orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagTransverseCea = 0x5443;

struct TceaConstants {
  double r, lambda0, phi0, k0;
  PlaneOrientation plane;
};

int tcea_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kScaleFactor, slot::kLatOrigin}))
    return -1;
  TceaConstants k{};
  k.r = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.k0 = parms[slot::kScaleFactor];
  k.phi0 = parms[slot::kLatOrigin];
  if (!(k.k0 > 0.0) || !(std::fabs(k.phi0) <= kHalfPi)) return -1;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagTransverseCea);
}

int forward_points(const TceaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double cp = std::cos(phi);
    double x = k.r * cp * std::sin(dlam) / k.k0;
    double y = k.r * k.k0 * (std::atan2(std::sin(phi), cp * std::cos(dlam)) - k.phi0);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const TceaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double xp = x * k.k0 / k.r;
    const double d = y / (k.r * k.k0) + k.phi0;
    const bool inside = std::fabs(xp) <= 1.0 + 1e-12 && std::fabs(d) <= kPi * (1.0 + 1e-12);
    const double xc = std::fmax(-1.0, std::fmin(1.0, xp));
    const double w = std::sqrt((1.0 - xc) * (1.0 + xc));
    const double phi = std::atan2(w * std::sin(d), std::hypot(xc, w * std::cos(d)));
    const double dlam = std::atan2(xc, w * std::cos(d));
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, inside);
  }
  return count;
}

constexpr auto run = run_kernels<TceaConstants, kTagTransverseCea, forward_points, inverse_points>;

}  // namespace

int transverse_cylindrical_eqarea_constants(ko_constants *c, const double *sph,
                                            const double *parms) {
  return tcea_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(transverse_cylindrical_eqarea, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_transverse_cylindrical_eqarea_vector = {
    43082, "Transverse_Cylindrical_Equal_Area", ko::proj::transverse_cylindrical_eqarea_forward,
    ko::proj::transverse_cylindrical_eqarea_inverse, ko::proj::transverse_cylindrical_eqarea_constants,
    ko::validity<43082>, nullptr, nullptr};
}  // extern "C"
