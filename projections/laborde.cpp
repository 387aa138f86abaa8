// Laborde oblique Mercator of Madagascar (IOGP guidance note 7-2, method
// 9813): a Gauss conformal sphere of the centre (φc, λc), turned so that its
// equator passes through the centre with azimuth αc, a Mercator of the turned
// sphere, and a complex cubic correction:
//   B = sqrt(1 + e² cos⁴φc / (1 − e²)),  φs = asin(sin φc / B),
//   R = a k0 sqrt(1 − e²) / (1 − e² sin²φc),  C = gd⁻¹(φs) − B ψc,
//   P = gd(C + B ψ),  L = B (λ − λc),
//   (P′, L′) the latitude and longitude of (P, L) on the sphere turned by φs,
//   H = −L′ + i gd⁻¹(P′),  G = (1 − cos 2αc + i sin 2αc) / 12,
//   y + i x = R (H + G H³).
// The inverse solves the cubic by Newton's method and turns back.
// Parameters: slot 5 k0, slot 7 αc, slot 10 λc, slot 11 φc, slots 12-14 the
// orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <complex>

namespace ko::proj {
namespace {

using Complex = std::complex<double>;

struct LabordeConstants {
  double e, e2;
  double lambdac;
  double B, R, C;
  double sin_s, cos_s;  // of φs
  double g_re, g_im;
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
};

int laborde_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kScaleFactor, slot::kAzimuth, slot::kLonCenter, slot::kLatCenter}))
    return -1;
  const double phic = parms[slot::kLatCenter], k0 = parms[slot::kScaleFactor];
  const double alphac = parms[slot::kAzimuth];
  if (!(std::fabs(phic) < kHalfPi) || !(k0 > 0.0)) return -1;
  LabordeConstants k{};
  const double s = std::sin(phic), cc = std::cos(phic);
  k.e = g.e;
  k.e2 = g.e2;
  k.lambdac = parms[slot::kLonCenter];
  k.B = std::sqrt(1.0 + g.e2 * cc * cc * cc * cc / (1.0 - g.e2));
  const double phis = std::asin(s / k.B);
  k.sin_s = std::sin(phis);
  k.cos_s = std::cos(phis);
  k.R = g.a * k0 * std::sqrt(1.0 - g.e2) / (1.0 - g.e2 * s * s);
  k.C = std::asinh(std::tan(phis)) - k.B * isometric_latitude(g.e, phic);
  k.g_re = (1.0 - std::cos(2.0 * alphac)) / 12.0;
  k.g_im = std::sin(2.0 * alphac) / 12.0;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  ko_chi_conformal_constants(g.e2, k.conformal);
  return store_constants(c, k, kTagLaborde);
}

int forward_points(const LabordeConstants &k, std::span<double> xy) {
  int count = 0;
  const Complex G(k.g_re, k.g_im);
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double L = k.B * ko_delta(xy[i] - k.lambdac);
    const double q = k.C + k.B * isometric_latitude(k.e, phi);
    const double sp = std::tanh(q), cp = 1.0 / std::cosh(q);  // P = gd(q)
    const double cl = std::cos(L);
    const double U = cp * cl * k.cos_s + sp * k.sin_s;
    const double V = cp * cl * k.sin_s - sp * k.cos_s;
    const double W = cp * std::sin(L);
    const double Lp = std::atan2(V, U);
    const double Pp_iso = std::atanh(std::fmax(-1.0, std::fmin(1.0, W)));  // gd⁻¹(asin W)
    const Complex H(-Lp, Pp_iso);
    const Complex z = k.R * (H + G * H * H * H);
    double x = z.imag(), y = z.real();
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const LabordeConstants &k, std::span<double> xy) {
  int count = 0;
  const Complex G(k.g_re, k.g_im);
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const Complex z(y / k.R, x / k.R);
    Complex H = z;
    for (int it = 0; it < 8; ++it) H -= (H + G * H * H * H - z) / (1.0 + 3.0 * G * H * H);
    const double Lp = -H.real();
    const double sPp = std::tanh(H.imag()), cPp = 1.0 / std::cosh(H.imag());
    const double U = cPp * std::cos(Lp), V = cPp * std::sin(Lp), W = sPp;
    // Turn back: r = U (cos φs, 0, sin φs) + V (sin φs, 0, −cos φs) + W (0, 1, 0).
    const double rx = U * k.cos_s + V * k.sin_s, rz = U * k.sin_s - V * k.cos_s;
    const double L = std::atan2(W, rx);
    const double q = std::atanh(std::fmax(-1.0, std::fmin(1.0, rz)));  // gd⁻¹(P)
    const double phi = latitude_from_isometric(k.conformal, k.e2, (q - k.C) / k.B);
    count += store_point(&xy[i], ko_delta(k.lambdac + L / k.B), phi, true);
  }
  return count;
}

constexpr auto run = run_kernels<LabordeConstants, kTagLaborde, forward_points, inverse_points>;

}  // namespace

int laborde_constants(ko_constants *c, const double *sph, const double *parms) {
  return laborde_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(laborde, run)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_laborde_vector = {
    43063, "Laborde_Oblique_Mercator", ko::proj::laborde_forward, ko::proj::laborde_inverse,
    ko::proj::laborde_constants, ko::validity<43063>, nullptr, nullptr};
}  // extern "C"
