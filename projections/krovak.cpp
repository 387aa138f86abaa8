// Krovak oblique conformal conic (IOGP guidance note 7-2, methods 9819 and,
// through the parameters, 1041, 1042 and 1043).
//
// The ellipsoid is mapped conformally onto a sphere (latitude U, longitude
// V = B (λ0 − λ)), the sphere is turned so that the cone's axis is its pole
// (oblique latitude T and longitude D) and developed on a cone of constant
// n = sin φp:
//   U = gd(ln t0 + B ψ),
//   sin T = cos αc sin U + sin αc cos U cos V,
//   D = atan2(cos U sin V, cos αc cos U cos V − sin αc sin U),
//   r = r0 (tan(π/4 + φp/2) / tan(π/4 + T/2))^n,  θ = n D,
//   Xp = r cos θ (southing), Yp = r sin θ (westing).
// The modified form (1042) subtracts the published correction polynomial
// (dX, dY) of the Czech survey office about (X0, Y0) = (1089000, 654000).
//
// Output: x = southing, y = westing, each before the false origin; the point
// loop adds False_Easting to x and False_Northing to y.  The north-orientated
// forms (1041, 1043: easting = −westing, northing = −southing) are the plane
// orientation X_Scale = −1, Y_Scale = 1, XY_Plane_Rotation = 90°; as in the
// guidance note, they negate the false origin too, so an EPSG false easting
// F enters such a system as −F.
//
// Parameters: slot 3 φp (Pseudo_Standard_Parallel_1), slot 5 kp, slot 7 αc
// (the co-latitude of the cone axis, given as Azimuth), slot 10 λ0, slot 11
// φc, slots 12-14 the orientation, slot 15 Option: 1 for the modified form.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

// Method 1042's correction polynomial, defined as exact.
constexpr double kX0 = 1089000.0, kY0 = 654000.0;
constexpr double kC[10] = {2.946529277E-02, 2.515965696E-02, 1.193845912E-07, -4.668270147E-07,
                           9.233980362E-12, 1.523735715E-12, 1.696780024E-18, 4.408314235E-18,
                           -8.331083518E-24, -3.689471323E-24};

struct KrovakConstants {
  double e, e2;
  double B, ln_t0;
  double lambda0;
  double sin_a, cos_a;  // of αc
  double n, r0;
  double psi_p;  // gd⁻¹(φp) on the sphere
  int modified;
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
};

// (dX, dY) at (Xr, Yr) = (Xp − X0, Yp − Y0).
inline void correction(double xp, double yp, double &dx, double &dy) {
  const double xr = xp - kX0, yr = yp - kY0;
  const double xr2 = xr * xr, yr2 = yr * yr;
  const double quartic = xr2 * xr2 + yr2 * yr2 - 6.0 * xr2 * yr2;
  const double cross = 4.0 * xr * yr * (xr2 - yr2);
  dx = kC[0] + kC[2] * xr - kC[3] * yr - 2.0 * kC[5] * xr * yr + kC[4] * (xr2 - yr2) +
       kC[6] * xr * (xr2 - 3.0 * yr2) - kC[7] * yr * (3.0 * xr2 - yr2) + kC[8] * cross +
       kC[9] * quartic;
  dy = kC[1] + kC[2] * yr + kC[3] * xr + 2.0 * kC[4] * xr * yr + kC[5] * (xr2 - yr2) +
       kC[7] * xr * (xr2 - 3.0 * yr2) + kC[6] * yr * (3.0 * xr2 - yr2) - kC[9] * cross +
       kC[8] * quartic;
}

// Constants (IOGP 7-2): A = a sqrt(1 − e²) / (1 − e² sin²φc),
// B = sqrt(1 + e² cos⁴φc / (1 − e²)), γ0 = asin(sin φc / B),
// ln t0 = gd⁻¹(γ0) − B ψc, n = sin φp, r0 = kp A / tan φp.
int krovak_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kStdParallel1, slot::kScaleFactor, slot::kAzimuth,
                            slot::kLonCenter, slot::kLatCenter, slot::kOption}))
    return -1;
  const double phic = parms[slot::kLatCenter], phip = parms[slot::kStdParallel1];
  const double kp = parms[slot::kScaleFactor], option = parms[slot::kOption];
  if (!(std::fabs(phic) < kHalfPi) || !(phip > 0.0 && phip < kHalfPi) || !(kp > 0.0)) return -1;
  if (option != 0.0 && option != 1.0) return -1;
  KrovakConstants k{};
  const double s = std::sin(phic), cc = std::cos(phic);
  const double A = g.a * std::sqrt(1.0 - g.e2) / (1.0 - g.e2 * s * s);
  k.e = g.e;
  k.e2 = g.e2;
  k.B = std::sqrt(1.0 + g.e2 * cc * cc * cc * cc / (1.0 - g.e2));
  const double gamma0 = std::asin(s / k.B);
  k.ln_t0 = std::asinh(std::tan(gamma0)) - k.B * isometric_latitude(g.e, phic);
  k.lambda0 = parms[slot::kLonCenter];
  k.sin_a = std::sin(parms[slot::kAzimuth]);
  k.cos_a = std::cos(parms[slot::kAzimuth]);
  k.n = std::sin(phip);
  k.r0 = kp * A / std::tan(phip);
  k.psi_p = std::asinh(std::tan(phip));
  k.modified = option == 1.0 ? 1 : 0;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  ko_chi_conformal_constants(g.e2, k.conformal);
  return store_constants(c, k, kTagKrovak);
}

// ---------------------------------------------------------------------------
// Point kernels.

int forward_points(const KrovakConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double V = k.B * ko_delta(k.lambda0 - xy[i]);
    const double q = k.ln_t0 + k.B * isometric_latitude(k.e, phi);
    const double sin_u = std::tanh(q), cos_u = 1.0 / std::cosh(q);  // U = gd(q)
    const double cos_v = std::cos(V);
    const double sin_t = k.cos_a * sin_u + k.sin_a * cos_u * cos_v;
    const double D = std::atan2(cos_u * std::sin(V), k.cos_a * cos_u * cos_v - k.sin_a * sin_u);
    // gd⁻¹(T) = atanh(sin T).
    const double r = k.r0 * std::exp(k.n * (k.psi_p - std::atanh(sin_t)));
    double x = r * std::cos(k.n * D);
    double y = r * std::sin(k.n * D);
    if (k.modified) {
      double dx, dy;
      correction(x, y, dx, dy);
      x -= dx;
      y -= dy;
    }
    k.plane.to_grid(x, y);
    // The cone's pole (T = 90°) is its apex; the opposite point has no image.
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && sin_t > -1.0);
  }
  return count;
}

int inverse_points(const KrovakConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    if (k.modified) {
      // The correction is smooth and tiny (centimetres): a fixed-point
      // iteration Xp = X + dX(Xp) converges to the last bit in three steps.
      const double xs = x, ys = y;
      for (int it = 0; it < 4; ++it) {
        double dx, dy;
        correction(x, y, dx, dy);
        x = xs + dx;
        y = ys + dy;
      }
    }
    const double r = std::hypot(x, y);
    const double D = std::atan2(y, x) / k.n;
    const double t = std::tanh(k.psi_p - std::log(r / k.r0) / k.n);  // sin T
    const double cos_t = std::sqrt(std::fmax(0.0, 1.0 - t * t));
    const double cos_d = std::cos(D);
    const double sin_u = k.cos_a * t - k.sin_a * cos_t * cos_d;
    const double V = std::atan2(cos_t * std::sin(D), k.sin_a * t + k.cos_a * cos_t * cos_d);
    const double psi = (std::atanh(sin_u) - k.ln_t0) / k.B;
    const double phi = latitude_from_isometric(k.conformal, k.e2, psi);
    count += store_point(&xy[i], ko_delta(k.lambda0 - V / k.B), phi, true);
  }
  return count;
}

constexpr auto run = run_kernels<KrovakConstants, kTagKrovak, forward_points, inverse_points>;

}  // namespace

int krovak_constants(ko_constants *c, const double *sph, const double *parms) {
  return krovak_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(krovak, run)

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_krovak_vector = {
    43039, "Krovak", ko::proj::krovak_forward, ko::proj::krovak_inverse, ko::proj::krovak_constants,
    ko::validity<43039>, nullptr, ko::krovak_parms};
}  // extern "C"
