// Perspective azimuthals of the sphere of radius a onto the plane tangent
// at the centre (φ1, λc), seen from a point on the centre's vertical at P
// radii from the sphere's centre (Snyder 1987, chapters 22 and 23):
//   cos c = sin φ1 sin φ + cos φ1 cos φ cos Δλ,  k' = (P − 1) / (P − cos c),
//   x = a k' cos φ sin Δλ,  y = a k' (cos φ1 sin φ − sin φ1 cos φ cos Δλ).
//  - Gnomonic (43047): P = 0, the view from the centre (k' = 1 / cos c),
//    every great circle a straight line; the hemisphere about the centre
//    (cos c > 1e-10) has an image and the whole plane maps back.
//  - Vertical_Near_Side_Perspective (43049): P = 1 + h / a, h the height
//    of the view point above the surface (slot 14); the cap cos c >= 1/P
//    is seen, inside the limb circle of radius a sqrt((P − 1) / (P + 1)).
// The inverse intersects the ray from the view point through the plane
// point with the sphere (the nearer intersection), in the frame of the
// centre (east, north, up), and turns it back to latitude and longitude.
// Parameters: slot 10 λc (Longitude_Of_Center), slot 11 φ1
// (Latitude_Of_Center).
#include "projections/auxiliary_sphere.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagGnomonic = 0x474e;
constexpr int32_t kTagVerticalPerspective = 0x5650;

// On the gnomonic, points nearer the horizon than this (cos c) are refused:
// their image is beyond 1e10 radii.
constexpr double kMinCosC = 1e-10;

struct PerspectiveConstants {
  double a;
  double lambda_c;
  double sin_phi1, cos_phi1;
  double p;        // distance of the view point from the centre, in radii
  double min_cos;  // cos c of the horizon seen
};

bool centre(const double *sph, const double *parms, PerspectiveConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kLonCenter, slot::kLatCenter}))
    return false;
  const double phi1 = parms[slot::kLatCenter];
  if (!(std::fabs(phi1) <= kHalfPi)) return false;
  k.a = g.a;
  k.lambda_c = parms[slot::kLonCenter];
  k.sin_phi1 = std::sin(phi1);
  k.cos_phi1 = std::cos(phi1);
  return true;
}

int gnomonic_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  PerspectiveConstants k{};
  if (!centre(sph, parms, k)) return -1;
  k.p = 0.0;
  k.min_cos = kMinCosC;
  return store_constants(c, k, kTagGnomonic);
}

int nsper_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  PerspectiveConstants k{};
  if (!centre(sph, parms, k) || !finite_slots(parms, {slot::kHeight})) return -1;
  const double h = parms[slot::kHeight];
  if (!(h > 0.0)) return -1;
  k.p = 1.0 + h / k.a;
  k.min_cos = 1.0 / k.p;
  return store_constants(c, k, kTagVerticalPerspective);
}

int forward_points(const PerspectiveConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1], dlam = xy[i] - k.lambda_c;
    const double sp = std::sin(phi), cp = std::cos(phi), cl = std::cos(dlam);
    const double cos_c = k.sin_phi1 * sp + k.cos_phi1 * cp * cl;
    const double ak = k.a * (k.p - 1.0) / (k.p - cos_c);
    const double x = ak * cp * std::sin(dlam);
    const double y = ak * (k.cos_phi1 * sp - k.sin_phi1 * cp * cl);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && cos_c >= k.min_cos);
  }
  return count;
}

// The point of the sphere seen at the plane point (x, y): the ray from the
// view point V = (0, 0, P) through (X, Y, 1) (unit radius, centre frame)
// is V + s D with D = (X, Y, 1 − P); the nearer root of
// |D|² s² + 2 P (1 − P) s + P² − 1 = 0 is
// s = (P² − 1) / (P (P − 1) + sqrt(P² (P − 1)² − |D|² (P² − 1))),
// and from the centre (P = 0) s = 1 / |D|.  False when the ray misses.
bool seen_point(const PerspectiveConstants &k, double X, double Y, double (&q)[3]) {
  if (k.p == 0.0) {
    const double s = 1.0 / std::sqrt(X * X + Y * Y + 1.0);
    q[0] = s * X, q[1] = s * Y, q[2] = s;
    return true;
  }
  const double pm1 = k.p - 1.0, d2 = X * X + Y * Y + pm1 * pm1;
  const double disc = k.p * k.p * pm1 * pm1 - d2 * (k.p * k.p - 1.0);
  if (!(disc >= -1e-15 * k.p * k.p * pm1 * pm1)) return false;
  const double s = (k.p * k.p - 1.0) / (k.p * pm1 + std::sqrt(std::fmax(0.0, disc)));
  q[0] = s * X, q[1] = s * Y, q[2] = k.p - s * pm1;
  return true;
}

int inverse_points(const PerspectiveConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double q[3] = {0.0, 0.0, 1.0};
    const bool ok = std::isfinite(xy[i]) && std::isfinite(xy[i + 1]) &&
                    seen_point(k, xy[i] / k.a, xy[i + 1] / k.a, q);
    // (east, north, up) of the centre to latitude and longitude.
    const double up = q[2] * k.sin_phi1 + q[1] * k.cos_phi1;
    const double meridian = q[2] * k.cos_phi1 - q[1] * k.sin_phi1;
    const double phi = std::atan2(up, std::hypot(q[0], meridian));
    const double dlam = std::atan2(q[0], meridian);
    count += store_point(&xy[i], ko_delta(k.lambda_c + dlam), phi, ok);
  }
  return count;
}

constexpr auto run_gnomonic =
    run_kernels<PerspectiveConstants, kTagGnomonic, forward_points, inverse_points>;
constexpr auto run_nsper =
    run_kernels<PerspectiveConstants, kTagVerticalPerspective, forward_points, inverse_points>;

int gnomonic_constants(ko_constants *c, const double *sph, const double *parms) {
  return gnomonic_constants_impl(c, sph, parms);
}
int nsper_constants(ko_constants *c, const double *sph, const double *parms) {
  return nsper_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(gnomonic, run_gnomonic)
KO_PROJ_DEFINE_POINT_SLOTS(nsper, run_nsper)

}  // namespace
}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_gnomonic_vector = {
    43047, "Gnomonic", ko::proj::gnomonic_forward, ko::proj::gnomonic_inverse,
    ko::proj::gnomonic_constants, ko::validity<43047>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_vertical_near_side_perspective_vector = {
    43049, "Vertical_Near_Side_Perspective", ko::proj::nsper_forward, ko::proj::nsper_inverse,
    ko::proj::nsper_constants, ko::validity<43049>, nullptr, nullptr};
}  // extern "C"

// Gnomonic on an auxiliary sphere; for type 3 the latitude of the centre
// is taken to its authalic latitude too.
KO_AUXS_VECTOR(gnomonic_auxs, 43147, "Gnomonic_Auxiliary_Sphere",
               ko::proj::gnomonic_forward, ko::proj::gnomonic_inverse,
               (ko::proj::auxs::constants<ko::proj::gnomonic_constants, ko::proj::slot::kLatCenter>),
               ko::proj::slot::kLonCenter, ko::proj::slot::kLatCenter)
