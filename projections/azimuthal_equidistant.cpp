// Azimuthal Equidistant (43032) on the ellipsoid, in three forms chosen by
// Option (slot 15):
//  0  the exact form: a point's coordinates are the length s and azimuth α
//     of the shortest geodesic from the centre, x = s sin α, y = s cos α;
//     the inverse follows the geodesic of azimuth atan2(x, y) for hypot(x, y)
//     (Snyder 1987, chapter 25, with the geodesic problems solved after
//     Karney 2013, projections/geodesic.cpp).  On a sphere this is the
//     spherical azimuthal equidistant exactly.
//  1  the modified form of IOGP guidance note 7-2, method 9832 (Guam 1963,
//     Yap), a series for distances of a few hundred kilometres;
//  2  the Guam projection, method 9831, its simpler form for Guam itself:
//     x = ν cos φ Δλ,  y = M(φ) − M(φ0) + x² tan φ sqrt(1 − e² sin²φ) / (2a),
//     whose inverse iterates the northing equation for the latitude.
// Parameters: slot 2 λ0, slot 6 φ0, slots 12-14 the orientation.  The
// antipode of the centre (a circle, not a point) has no image; an inverse
// distance beyond half the equator is refused.
#include "geodesy/geodesic.h"
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

enum class Form : int { kExact = 0, kModified = 1, kGuam = 2 };

struct AeqdConstants {
  int form;
  double a, e, e2;
  double lambda0, phi0;
  // Modified form (method 9832).
  double nu0, sin_phi0, cos_phi0, G;
  // Guam projection (method 9831).
  double m0;
  MeridianArc arc;
  PlaneOrientation plane;
  geodesy::Geodesic geodesic;
};

int aeqd_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin, slot::kOption}))
    return -1;
  const double phi0 = parms[slot::kLatOrigin], option = parms[slot::kOption];
  if (!(std::fabs(phi0) <= kHalfPi) || (option != 0.0 && option != 1.0 && option != 2.0)) return -1;
  AeqdConstants k{};
  k.form = static_cast<int>(option);
  k.a = g.a;
  k.e = g.e;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.phi0 = phi0;
  k.sin_phi0 = std::sin(phi0);
  k.cos_phi0 = std::cos(phi0);
  k.nu0 = prime_vertical_radius(g.a, g.e2, phi0);
  k.G = g.e * k.sin_phi0 / std::sqrt(1.0 - g.e2);
  k.arc.init(g.a, g.e2);
  k.m0 = k.arc.distance(phi0);
  if (!k.geodesic.init(g.a, g.e2) || !plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagAzimuthalEquidistant);
}

// ---------------------------------------------------------------------------
// Exact form.

int forward_exact(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    double s = NAN, azi = NAN;
    const bool solved = std::fabs(phi) <= kHalfPi && std::isfinite(dlam) &&
                        k.geodesic.inverse(k.phi0, phi, dlam, s, azi);
    double x = s * std::sin(azi), y = s * std::cos(azi);
    k.plane.to_grid(x, y);
    const bool antipode = phi == -k.phi0 && std::fabs(dlam) == kPi;
    count += store_point(&xy[i], x, y, solved && !antipode);
  }
  return count;
}

int inverse_exact(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double s = std::hypot(x, y);
    double phi = NAN, dlam = NAN;
    const bool ok = s <= kPi * k.a * (1.0 + 1e-12);
    if (ok) k.geodesic.direct(k.phi0, std::atan2(x, y), s, phi, dlam);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

// ---------------------------------------------------------------------------
// Modified form (IOGP 7-2, method 9832).

int forward_modified(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  const double r = std::sqrt(1.0 - k.e2);
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double nu = prime_vertical_radius(k.a, k.e2, phi);
    const double psi = std::atan((1.0 - k.e2) * std::tan(phi) +
                                 k.e2 * k.nu0 * k.sin_phi0 / (nu * std::cos(phi)));
    const double alpha =
        std::atan2(std::sin(dlam), k.cos_phi0 * std::tan(psi) - k.sin_phi0 * std::cos(dlam));
    const double H = k.e * k.cos_phi0 * std::cos(alpha) / r;
    const double sa = std::sin(alpha);
    const double s =
        sa == 0.0 ? std::asin(k.cos_phi0 * std::sin(psi) - k.sin_phi0 * std::cos(psi)) *
                        (std::cos(alpha) < 0.0 ? -1.0 : 1.0)
                  : std::asin(std::sin(dlam) * std::cos(psi) / sa);
    const double s2 = s * s, H2 = H * H, G = k.G;
    const double c = k.nu0 * s *
                     (1.0 - s2 * H2 * (1.0 - H2) / 6.0 + s2 * s / 8.0 * G * H * (1.0 - 2.0 * H2) +
                      s2 * s2 / 120.0 * (H2 * (4.0 - 7.0 * H2) - 3.0 * G * G * (1.0 - 7.0 * H2)) -
                      s2 * s2 * s / 48.0 * G * H);
    double x = c * sa, y = c * std::cos(alpha);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_modified(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  const double r2 = 1.0 - k.e2;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double c = std::hypot(x, y);
    const double alpha = std::atan2(x, y);
    const double ca = std::cos(alpha);
    const double A = -k.e2 * k.cos_phi0 * k.cos_phi0 * ca * ca / r2;
    const double B = 3.0 * k.e2 * (1.0 - A) * k.sin_phi0 * k.cos_phi0 * ca / r2;
    const double D = c / k.nu0;
    const double J = D - A * (1.0 + A) * D * D * D / 6.0 - B * (1.0 + 3.0 * A) * D * D * D * D / 24.0;
    const double K = 1.0 - A * J * J / 2.0 - B * J * J * J / 6.0;
    const double psi = std::asin(k.sin_phi0 * std::cos(J) + k.cos_phi0 * std::sin(J) * ca);
    const double phi = std::atan((1.0 - k.e2 * K * k.sin_phi0 / std::sin(psi)) * std::tan(psi) / r2);
    const double dlam = std::asin(std::sin(alpha) * std::sin(J) / std::cos(psi));
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, true);
  }
  return count;
}

// ---------------------------------------------------------------------------
// Guam projection (IOGP 7-2, method 9831).

int forward_guam(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double s = std::sin(phi);
    const double w = std::sqrt(1.0 - k.e2 * s * s);
    double x = k.a * ko_delta(xy[i] - k.lambda0) * std::cos(phi) / w;
    double y = k.arc.distance(phi) - k.m0 + x * x * std::tan(phi) * w / (2.0 * k.a);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) < kHalfPi);
  }
  return count;
}

// The guidance note iterates the northing equation three times; iterating
// to convergence makes the inverse undo the forward exactly.
int inverse_guam(const AeqdConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    double phi = k.phi0;
    for (int it = 0; it < 8; ++it) {
      const double s = std::sin(phi);
      phi = k.arc.latitude(k.m0 + y - x * x * std::tan(phi) * std::sqrt(1.0 - k.e2 * s * s) / (2.0 * k.a));
    }
    const double s = std::sin(phi);
    const double dlam = x * std::sqrt(1.0 - k.e2 * s * s) / (k.a * std::cos(phi));
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, std::fabs(phi) < kHalfPi);
  }
  return count;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<AeqdConstants>(
      cf, kTagAzimuthalEquidistant, sph, parms, n, coords, ivals, dvals,
      [forward](const AeqdConstants &k, std::span<double> xy) {
        switch (static_cast<Form>(k.form)) {
          case Form::kModified: return forward ? forward_modified(k, xy) : inverse_modified(k, xy);
          case Form::kGuam: return forward ? forward_guam(k, xy) : inverse_guam(k, xy);
          case Form::kExact: break;
        }
        return forward ? forward_exact(k, xy) : inverse_exact(k, xy);
      });
}

}  // namespace

int aeqd_constants(ko_constants *c, const double *sph, const double *parms) {
  return aeqd_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(aeqd, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_azimuthal_equidistant_vector = {
    43032, "Azimuthal_Equidistant", ko::proj::aeqd_forward, ko::proj::aeqd_inverse,
    ko::proj::aeqd_constants, ko::validity<43032>, nullptr, nullptr};
}  // extern "C"

// Azimuthal_Equidistant on an auxiliary sphere (the spherical form); for
// type 3 the latitude of origin is taken to its authalic latitude too.
KO_AUXS_VECTOR(azimuthal_equidistant_auxs, 43132, "Azimuthal_Equidistant_Auxiliary_Sphere",
               ko::proj::aeqd_forward, ko::proj::aeqd_inverse,
               (ko::proj::auxs::constants<ko::proj::aeqd_constants, ko::proj::slot::kLatOrigin>),
               ko::proj::slot::kCentralMeridian, ko::proj::slot::kLatOrigin)
