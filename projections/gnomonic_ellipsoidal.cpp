// The ellipsoidal gnomonic of C. F. F. Karney, "Algorithms for geodesics",
// J. Geodesy 87, 43-55 (2013), section 8: the point at geodesic distance s
// and azimuth α from the centre is mapped to the radius ρ = m12 / M12 in the
// direction α,
//   x = ρ sin α,   y = ρ cos α,
// m12 the reduced length and M12 the geodesic scale of the geodesic from the
// centre.  Geodesics through the centre are straight lines, and the map is
// the central projection on the sphere.  A point whose M12 ≤ 0 (beyond
// roughly 90° of arc from the centre) has no image.  The inverse finds s on
// the geodesic of azimuth atan2(x, y) by Newton's method on ρ(s) = m12 / M12,
// whose derivative is 1 / M12², from s = a atan(ρ / a).
//
// Parameters: slot 10 λc (Longitude_Of_Center), slot 11 φc
// (Latitude_Of_Center).
#include "geodesy/geodesic.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

constexpr int32_t kTagGnomonicEllipsoidal = 0x4745;
constexpr int kMaxNewton = 30;

struct GnomonicConstants {
  double lambda0, phi0;
  geodesy::Geodesic geod;
};

int gnomonic_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kLonCenter, slot::kLatCenter}))
    return -1;
  GnomonicConstants k{};
  k.lambda0 = parms[slot::kLonCenter];
  k.phi0 = parms[slot::kLatCenter];
  if (!(std::fabs(k.phi0) <= kHalfPi) || !k.geod.init(g.a, g.e2)) return -1;
  return store_constants(c, k, kTagGnomonicEllipsoidal);
}

// Forward of one point; false when it has no image.
bool forward_one(const GnomonicConstants &k, double lam, double phi, double &x, double &y) {
  if (!(std::fabs(phi) <= kHalfPi) || !std::isfinite(lam)) return false;
  double s12, azi;
  if (!k.geod.inverse(k.phi0, phi, lam - k.lambda0, s12, azi)) return false;
  double lat2, lon12, m12, M12;
  k.geod.direct(k.phi0, azi, s12, lat2, lon12, m12, M12);
  if (!(M12 > 0.0)) return false;
  const double rho = m12 / M12;
  x = rho * std::sin(azi);
  y = rho * std::cos(azi);
  return true;
}

// Inverse of one point; false when Newton's method finds no geodesic
// length whose m12 / M12 is ρ.
bool inverse_one(const GnomonicConstants &k, double x, double y, double &lam, double &phi) {
  if (!std::isfinite(x) || !std::isfinite(y)) return false;
  const double a = k.geod.a;
  const double azi = std::atan2(x, y), rho = std::hypot(x, y);
  double s = a * std::atan(rho / a);
  const double tol = a * 1e-15;
  for (int it = 0; it < kMaxNewton; ++it) {
    double lat2, lon12, m12, M12;
    k.geod.direct(k.phi0, azi, s, lat2, lon12, m12, M12);
    if (!(M12 > 0.0)) {
      s *= 0.5;  // overshot the horizon: step back
      continue;
    }
    const double ds = (rho - m12 / M12) * M12 * M12;
    if (std::fabs(ds) <= tol || it == kMaxNewton - 1) {
      if (!(std::fabs(ds) <= tol * 1e3)) return false;
      k.geod.direct(k.phi0, azi, s + ds, lat2, lon12, m12, M12);
      lam = ko_delta(k.lambda0 + lon12);
      phi = lat2;
      return true;
    }
    s += ds;
  }
  return false;
}

// Runs one-point function f over the pairs of xy (geodesic solutions do not
// vectorise); a point f refuses is marked and not counted.
template <bool (*F)(const GnomonicConstants &, double, double, double &, double &)>
int each_point(const GnomonicConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double u = 0.0, v = 0.0;
    const bool ok = F(k, xy[i], xy[i + 1], u, v);
    count += store_point(&xy[i], u, v, ok);
  }
  return count;
}

constexpr auto run = run_kernels<GnomonicConstants, kTagGnomonicEllipsoidal,
                                 each_point<forward_one>, each_point<inverse_one>>;

}  // namespace

int gnomonic_ellipsoidal_constants(ko_constants *c, const double *sph, const double *parms) {
  return gnomonic_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(gnomonic_ellipsoidal, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_gnomonic_ellipsoidal_vector = {
    43065, "Gnomonic_Ellipsoidal", ko::proj::gnomonic_ellipsoidal_forward,
    ko::proj::gnomonic_ellipsoidal_inverse, ko::proj::gnomonic_ellipsoidal_constants,
    ko::validity<43065>, nullptr, nullptr};
}  // extern "C"
