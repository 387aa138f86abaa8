// Oblique plate carrée on the sphere of radius a: the equidistant
// cylindrical map of a rotated graticule whose equator passes through the
// centre (λc, φc) with azimuth α there (Snyder 1987, chapter 5, the
// oblique aspect by rotation of the sphere, 5-7 and 5-8).  In the frame of
// unit vectors at the centre,
//   c = the centre,  t = cos α N + sin α E  (the oblique equator's
//   direction, N and E the north and east unit vectors at c),  n = c × t
//   (the oblique pole, to the left of t),
// a point v of the sphere has the oblique longitude and latitude
//   x' = atan2(v·t, v·c),  y' = atan2(v·n, hypot(v·c, v·t)),
// and x = a x', y = a y'.  The centre goes to the origin; α = 90° on the
// equator is the ordinary plate carrée.  The inverse rebuilds
// v = cos y' (cos x' c + sin x' t) + sin y' n and refuses points outside the
// map |x'| ≤ π, |y'| ≤ π/2.
//
// Parameters: slot 10 λc (Longitude_Of_Center), slot 11 φc
// (Latitude_Of_Center), slot 7 α (Azimuth, 0 when absent: the oblique
// equator along the central meridian, the transverse aspect).
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagPlateCarreeOblique = 0x504b;

struct ObliqueConstants {
  double r, lambda0;
  // Rows: c, t, n in the frame turned to λc (x towards λc on the equator,
  // y towards λc + 90°, z the north pole).
  double c[3], t[3], n[3];
};

int oblique_constants_impl(ko_constants *cst, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kLonCenter, slot::kLatCenter, slot::kAzimuth}))
    return -1;
  const double phic = parms[slot::kLatCenter], alpha = parms[slot::kAzimuth];
  if (!(std::fabs(phic) <= kHalfPi)) return -1;
  ObliqueConstants k{};
  k.r = g.a;
  k.lambda0 = parms[slot::kLonCenter];
  const double sp = std::sin(phic), cp = std::cos(phic);
  const double sa = std::sin(alpha), ca = std::cos(alpha);
  const double north[3] = {-sp, 0.0, cp}, east[3] = {0.0, 1.0, 0.0};
  k.c[0] = cp;
  k.c[1] = 0.0;
  k.c[2] = sp;
  for (int i = 0; i < 3; ++i) k.t[i] = ca * north[i] + sa * east[i];
  k.n[0] = k.c[1] * k.t[2] - k.c[2] * k.t[1];
  k.n[1] = k.c[2] * k.t[0] - k.c[0] * k.t[2];
  k.n[2] = k.c[0] * k.t[1] - k.c[1] * k.t[0];
  return store_constants(cst, k, kTagPlateCarreeOblique);
}

inline double dot(const double (&u)[3], double x, double y, double z) {
  return u[0] * x + u[1] * y + u[2] * z;
}

int forward_points(const ObliqueConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double cp = std::cos(phi);
    const double vx = cp * std::cos(dlam), vy = cp * std::sin(dlam), vz = std::sin(phi);
    const double pc = dot(k.c, vx, vy, vz), pt = dot(k.t, vx, vy, vz), pn = dot(k.n, vx, vy, vz);
    const double x = k.r * std::atan2(pt, pc);
    const double y = k.r * std::atan2(pn, std::hypot(pc, pt));
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const ObliqueConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double xp = xy[i] / k.r, yp = xy[i + 1] / k.r;
    const bool inside = std::fabs(xp) <= kPi * (1.0 + 1e-12) && std::fabs(yp) <= kHalfPi * (1.0 + 1e-12);
    const double cy = std::cos(yp), sy = std::sin(yp);
    const double a = cy * std::cos(xp), b = cy * std::sin(xp);
    const double vx = a * k.c[0] + b * k.t[0] + sy * k.n[0];
    const double vy = a * k.c[1] + b * k.t[1] + sy * k.n[1];
    const double vz = a * k.c[2] + b * k.t[2] + sy * k.n[2];
    const double lam = std::atan2(vy, vx), phi = std::atan2(vz, std::hypot(vx, vy));
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam), phi, inside);
  }
  return count;
}

constexpr auto run = run_kernels<ObliqueConstants, kTagPlateCarreeOblique, forward_points, inverse_points>;

}  // namespace

int plate_carree_oblique_constants(ko_constants *c, const double *sph, const double *parms) {
  return oblique_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(plate_carree_oblique, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_plate_carree_oblique_vector = {
    43093, "Plate_Carree_Oblique", ko::proj::plate_carree_oblique_forward,
    ko::proj::plate_carree_oblique_inverse, ko::proj::plate_carree_oblique_constants,
    ko::validity<43093>, nullptr, nullptr};
}  // extern "C"
