// Lambert Azimuthal Equal Area on the ellipsoid (IOGP guidance note 7-2,
// method 9820; Snyder 1987, chapter 24), through the authalic latitude β:
//   oblique:  B = Rq sqrt(2 / (1 + sin β0 sin β + cos β0 cos β cos Δλ)),
//             x = B D cos β sin Δλ,  y = (B / D) (cos β0 sin β − sin β0 cos β cos Δλ),
//             Rq = a sqrt(qP / 2),  D = a m0 / (Rq cos β0);
//   polar:    ρ = a sqrt(qP ∓ q),  x = ρ sin Δλ,  y = ∓ρ cos Δλ  (north/south).
// The antipode of the centre has no image (it is the whole bounding circle);
// an inverse point outside that circle of radius 2 Rq is refused.
//
// Parameters: slot 2 λ0, slot 6 φ0, slots 12-14 the orientation.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

struct LaeaConstants {
  double a, e2;
  double lambda0;
  double qp, rq, D;
  double sin_b0, cos_b0;
  double pole;  // ±1 for the polar aspects, 0 otherwise
  PlaneOrientation plane;
  double authalic[KO_AUX_NCOEF];
};

int laea_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin}))
    return -1;
  const double phi0 = parms[slot::kLatOrigin];
  if (!(std::fabs(phi0) <= kHalfPi)) return -1;
  LaeaConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  ko_beta_authalic_constants(g.e2, k.authalic);
  k.qp = authalic_q(g.e, g.e2, 1.0);
  k.rq = g.a * std::sqrt(k.qp / 2.0);
  if (std::fabs(phi0) >= kHalfPi - 1e-12) {
    k.pole = phi0 > 0.0 ? 1.0 : -1.0;
  } else {
    const double b0 = ko_phi_to_beta_wconst(k.authalic, g.e2, phi0);
    k.sin_b0 = std::sin(b0);
    k.cos_b0 = std::cos(b0);
    k.D = g.a * parallel_radius_ratio(g.e2, phi0) / (k.rq * k.cos_b0);
  }
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  return store_constants(c, k, kTagLambertAzimuthal);
}

// ---------------------------------------------------------------------------
// Point kernels.

int forward_oblique(const LaeaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double beta = ko_phi_to_beta_wconst(k.authalic, k.e2, phi);
    const double sb = std::sin(beta), cb = std::cos(beta), cl = std::cos(dlam);
    const double denom = 1.0 + k.sin_b0 * sb + k.cos_b0 * cb * cl;
    const double B = k.rq * std::sqrt(2.0 / denom);
    double x = B * k.D * cb * std::sin(dlam);
    double y = B / k.D * (k.cos_b0 * sb - k.sin_b0 * cb * cl);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && denom > 1e-15);
  }
  return count;
}

int forward_polar(const LaeaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double q = k.qp * std::sin(ko_phi_to_beta_wconst(k.authalic, k.e2, phi));
    // At the centre exactly 0 (the authalic latitude of ±90° is ±90°).
    const double rho = k.a * std::sqrt(std::fmax(0.0, k.qp - k.pole * q));
    double x = rho * std::sin(dlam);
    double y = -k.pole * rho * std::cos(dlam);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && k.pole * phi > -kHalfPi);
  }
  return count;
}

int inverse_oblique(const LaeaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double rho = std::hypot(x / k.D, k.D * y);
    const double ratio = rho / (2.0 * k.rq);
    const double C = 2.0 * std::asin(std::fmin(1.0, ratio));
    const double sc = std::sin(C), cc = std::cos(C);
    const double sc_rho = rho > 0.0 ? sc / rho : 1.0 / k.rq;  // sin C / ρ → 1/Rq
    const double sb = std::fmax(-1.0, std::fmin(1.0, cc * k.sin_b0 + k.D * y * sc_rho * k.cos_b0));
    const double lam = std::atan2(x * sc_rho, k.D * k.cos_b0 * cc - k.D * k.D * y * k.sin_b0 * sc_rho);
    const double phi = ko_beta_to_phi_wconst(k.authalic, k.e2, std::asin(sb));
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam), phi, ratio <= 1.0 + 1e-12);
  }
  return count;
}

int inverse_polar(const LaeaConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double rho = std::hypot(x, y);
    const double sb = k.pole * (1.0 - rho * rho / (k.a * k.a * k.qp));
    const double phi =
        ko_beta_to_phi_wconst(k.authalic, k.e2, std::asin(std::fmax(-1.0, std::fmin(1.0, sb))));
    const double lam = std::atan2(x, -k.pole * y);
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam), phi, std::fabs(sb) <= 1.0 + 1e-12);
  }
  return count;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<LaeaConstants>(
      cf, kTagLambertAzimuthal, sph, parms, n, coords, ivals, dvals,
      [forward](const LaeaConstants &k, std::span<double> xy) {
        if (k.pole != 0.0) return forward ? forward_polar(k, xy) : inverse_polar(k, xy);
        return forward ? forward_oblique(k, xy) : inverse_oblique(k, xy);
      });
}

}  // namespace

int laea_constants(ko_constants *c, const double *sph, const double *parms) {
  return laea_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(laea, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_lambert_azimuthal_eqarea_vector = {
    43033, "Lambert_Azimuthal_Equal_Area", ko::proj::laea_forward, ko::proj::laea_inverse,
    ko::proj::laea_constants, ko::validity<43033>, nullptr, nullptr};
}  // extern "C"

// Lambert_Azimuthal_Equal_Area on an auxiliary sphere; for type 3 the
// latitude of origin is taken to its authalic latitude too.
KO_AUXS_VECTOR(lambert_azimuthal_eqarea_auxs, 43133, "Lambert_Azimuthal_Equal_Area_Auxiliary_Sphere",
               ko::proj::laea_forward, ko::proj::laea_inverse,
               (ko::proj::auxs::constants<ko::proj::laea_constants, ko::proj::slot::kLatOrigin>),
               ko::proj::slot::kCentralMeridian, ko::proj::slot::kLatOrigin)
