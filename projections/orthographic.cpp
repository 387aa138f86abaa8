// Orthographic on the ellipsoid (IOGP guidance note 7-2, method 9840): the
// orthogonal projection of the ellipsoid's surface onto the plane tangent at
// the centre (φ0, λ0),
//   x = ν cos φ sin Δλ,
//   y = ν (sin φ cos φ0 − cos φ sin φ0 cos Δλ) + e² (ν0 sin φ0 − ν sin φ) cos φ0.
// Geometrically (x, y) are the coordinates along east and north of the
// tangent plane of the point P − O (O the centre, in earth-centred
// coordinates); the inverse follows the plane's normal from (x, y) to the
// near side of the ellipsoid, a quadratic, and reads the latitude of the
// surface point in closed form, tan φ = Z / ((1 − e²) p).  The far side,
// where the normal meets the surface a second time nearer the plane, has
// no image; an inverse point off the ellipsoid's outline is refused.
// Parameters: slot 10 λ0 (Longitude_Of_Center), slot 11 φ0
// (Latitude_Of_Center), slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct OrthoConstants {
  double a, e2, b2_a2;  // b² / a² = 1 − e²
  double lambda0, sin0, cos0, nu0;
  double ox, oz;  // the centre O = (ox, 0, oz), earth-centred, with λ0 as x axis
  PlaneOrientation plane;
};

int ortho_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kLonCenter, slot::kLatCenter}))
    return -1;
  const double phi0 = parms[slot::kLatCenter];
  if (!(std::fabs(phi0) <= kHalfPi)) return -1;
  OrthoConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.b2_a2 = 1.0 - g.e2;
  k.lambda0 = parms[slot::kLonCenter];
  k.sin0 = std::sin(phi0);
  k.cos0 = std::cos(phi0);
  k.nu0 = prime_vertical_radius(g.a, g.e2, phi0);
  k.ox = k.nu0 * k.cos0;
  k.oz = k.nu0 * (1.0 - g.e2) * k.sin0;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagOrthographic);
}

// The normal of the plane through (x, y) meets the ellipsoid where
// q2 t² + q1 t + q0 = 0, t the height above the plane.
struct Chord {
  double q2, q1, q0;
};
inline Chord chord(const OrthoConstants &k, double x, double y) {
  // P(t) = O + x east + y north + t up, east = (0,1,0),
  // north = (−sin φ0, 0, cos φ0), up = (cos φ0, 0, sin φ0).
  const double px = k.ox - y * k.sin0, pz = k.oz + y * k.cos0;
  // (Px² + Py²) + Pz² / (1 − e²) = a², Px = px + t cos φ0, Pz = pz + t sin φ0.
  const double w = 1.0 / k.b2_a2;
  return {k.cos0 * k.cos0 + w * k.sin0 * k.sin0, 2.0 * (px * k.cos0 + w * pz * k.sin0),
          px * px + x * x + w * pz * pz - k.a * k.a};
}

int forward_points(const OrthoConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double s = std::sin(phi), c = std::cos(phi), cl = std::cos(dlam);
    const double nu = prime_vertical_radius(k.a, k.e2, phi);
    double x = nu * c * std::sin(dlam);
    double y = nu * (s * k.cos0 - c * k.sin0 * cl) + k.e2 * (k.nu0 * k.sin0 - nu * s) * k.cos0;
    // Height of the point above the plane, against the midpoint of the
    // chord through it: on the near side it is the larger root.
    const double t = nu * c * cl * k.cos0 + nu * (1.0 - k.e2) * s * k.sin0 - (k.ox * k.cos0 + k.oz * k.sin0);
    const Chord q = chord(k, x, y);
    const bool near_side = t >= -q.q1 / (2.0 * q.q2) - 1e-9 * k.a;
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && near_side);
  }
  return count;
}

int inverse_points(const OrthoConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const Chord q = chord(k, x, y);
    const double disc = q.q1 * q.q1 - 4.0 * q.q2 * q.q0;
    const bool ok = disc >= -1e-12 * q.q1 * q.q1;
    const double t = (-q.q1 + std::sqrt(std::fmax(0.0, disc))) / (2.0 * q.q2);
    const double px = k.ox - y * k.sin0 + t * k.cos0, py = x, pz = k.oz + y * k.cos0 + t * k.sin0;
    const double phi = std::atan2(pz, k.b2_a2 * std::hypot(px, py));
    const double dlam = std::atan2(py, px);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

constexpr auto run = run_kernels<OrthoConstants, kTagOrthographic, forward_points, inverse_points>;

}  // namespace

int orthographic_constants(ko_constants *c, const double *sph, const double *parms) {
  return ortho_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(orthographic, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_orthographic_vector = {
    43041, "Orthographic", ko::proj::orthographic_forward, ko::proj::orthographic_inverse,
    ko::proj::orthographic_constants, ko::validity<43041>, nullptr, nullptr};
}  // extern "C"

// Orthographic on an auxiliary sphere; for type 3 the latitude of the
// centre is taken to its authalic latitude too.
KO_AUXS_VECTOR(orthographic_auxs, 43141, "Orthographic_Auxiliary_Sphere",
               ko::proj::orthographic_forward, ko::proj::orthographic_inverse,
               (ko::proj::auxs::constants<ko::proj::orthographic_constants, ko::proj::slot::kLatCenter>),
               ko::proj::slot::kLonCenter, ko::proj::slot::kLatCenter)
