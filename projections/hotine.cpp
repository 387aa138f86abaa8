// Hotine Oblique Mercator and Rectified Skew Orthomorphic (IOGP guidance note
// 7-2 methods 9812 "variant A", natural origin, and 9815 "variant B",
// origin at the projection centre; Snyder 1987, chapter 9, for the form
// defined by two points on the central line).
//
// The ellipsoid is mapped conformally onto an "aposphere" (constants A, B,
// H), on which the central line is a great circle; (u, v) are coordinates
// along and across it:
//   w = ln H + B ψ,  U = tanh w sin γ0 − sin(B Δλ) cos γ0 / cosh w,
//   v = −(A / B) atanh U,
//   u = (A / B) atan2(tanh w cos γ0 + sin(B Δλ) sin γ0 / cosh w,
//                     cos(B Δλ) / cosh w) − uc,
// the guidance note's Q = e^w, S = sinh w, T = cosh w divided through by T
// so that the poles (w = ±∞) need no special case.  The rectification
//   E = v cos γc + u sin γc,  N = u cos γc − v sin γc
// is the shared plane orientation step with XY_Plane_Rotation = γc.
//
// Parameters: slot 5 kc, slot 7 the azimuth αc of the central line at the
// centre, slot 10 λc, slot 11 φc; the rectified grid angle γc is slot 14 for
// the Rectified_Skew_Orthomorphic codes and αc for the Hotine codes; the
// two-point forms read slots 3/8 and 4/9 (latitude/longitude of the 1st and
// 2nd points) and take γc = αc.  Slots 12 and 13 scale as elsewhere.  uc is
// 0 for the natural-origin forms and the centre's u for the centre forms.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"
#include "projections/simd.h"

namespace ko::proj {
namespace {

struct HotineConstants {
  double e, e2;
  double A_B;  // A / B
  double B;
  double lnH;
  double sin_g0, cos_g0;
  double lambda0;
  double uc;  // u of the origin: 0 (natural origin) or |uc| sign(φc)
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
};

enum class Origin { kNatural, kCentre };
enum class Rectify { kAzimuth, kRotationSlot };

// The aposphere of a centre latitude (IOGP 7-2, 9812/9815):
// B = sqrt(1 + e² cos⁴φc / (1 − e²)), A = a B kc sqrt(1 − e²) / (1 − e² sin²φc),
// D = B sqrt(1 − e²) / (cos φc sqrt(1 − e² sin²φc)), F = D + sqrt(D² − 1) sign φc.
struct Aposphere {
  double A, B, D2, lnF, psi_c;
};

bool aposphere(const Ellipsoid &g, double phic, double kc, Aposphere &ap) {
  if (!(std::fabs(phic) < kHalfPi) || !(kc > 0.0)) return false;
  const double s = std::sin(phic), c = std::cos(phic);
  const double w = 1.0 - g.e2 * s * s;
  ap.B = std::sqrt(1.0 + g.e2 * c * c * c * c / (1.0 - g.e2));
  ap.A = g.a * ap.B * kc * std::sqrt(1.0 - g.e2) / w;
  const double D = ap.B * std::sqrt(1.0 - g.e2) / (c * std::sqrt(w));
  ap.D2 = std::fmax(D * D, 1.0);
  ap.lnF = std::log(std::sqrt(ap.D2) + std::copysign(std::sqrt(ap.D2 - 1.0), phic));
  ap.psi_c = isometric_latitude(g.e, phic);
  return true;
}

// |uc| sign(φc) = (A / B) atan2(sqrt(D² − 1), cos αc) sign(φc); no offset
// on the equator, where the centre is the natural origin.
double centre_offset(const Aposphere &ap, double phic, double alphac) {
  if (ap.D2 <= 1.0) return 0.0;
  return ap.A / ap.B * std::atan2(std::sqrt(ap.D2 - 1.0), std::cos(alphac)) *
         (phic < 0.0 ? -1.0 : 1.0);
}

bool finish(const Ellipsoid &g, const double *parms, const Aposphere &ap, double gamma_c,
            HotineConstants &k) {
  k.e = g.e;
  k.e2 = g.e2;
  k.B = ap.B;
  k.A_B = ap.A / ap.B;
  ko_chi_conformal_constants(g.e2, k.conformal);
  return plane_orientation(parms[slot::kXScale], parms[slot::kYScale], gamma_c, k.plane) &&
         std::isfinite(k.lambda0) && std::isfinite(k.lnH) && std::isfinite(k.uc);
}

int azimuth_constants(ko_constants *c, const double *sph, const double *parms, Origin origin,
                      Rectify rectify) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kScaleFactor, slot::kAzimuth, slot::kLonCenter, slot::kLatCenter,
                            slot::kRotation, slot::kXScale, slot::kYScale}))
    return -1;
  const double phic = parms[slot::kLatCenter], lamc = parms[slot::kLonCenter];
  const double alphac = parms[slot::kAzimuth];
  Aposphere ap;
  if (!aposphere(g, phic, parms[slot::kScaleFactor], ap)) return -1;
  const double sin_g0 = std::sin(alphac) / std::sqrt(ap.D2);
  if (!(std::fabs(sin_g0) <= 1.0)) return -1;
  HotineConstants k{};
  const double g0 = std::asin(sin_g0);
  k.sin_g0 = sin_g0;
  k.cos_g0 = std::cos(g0);
  k.lnH = ap.lnF - ap.B * ap.psi_c;  // H = F t0^B, t0 = exp(−ψc)
  // λ0 = λc − asin(G tan γ0) / B with G = (F − 1/F) / 2 = ±sqrt(D² − 1).
  // Since sin γ0 = sin αc / D, that angle is atan2(G sin αc, D |cos αc|),
  // which keeps its digits where the asin's argument nears 1: an azimuth of
  // 90° (the Swiss and Hungarian grids) puts it at exactly 1, where asin
  // would lose half the digits (about 9 cm on the ground).
  const double G = std::sinh(ap.lnF);
  const double chi = std::atan2(G * std::sin(alphac), std::sqrt(ap.D2) * std::fabs(std::cos(alphac)));
  k.lambda0 = lamc - chi / ap.B;
  k.uc = origin == Origin::kCentre ? centre_offset(ap, phic, alphac) : 0.0;
  const double gamma_c = rectify == Rectify::kAzimuth ? alphac : parms[slot::kRotation];
  if (!finish(g, parms, ap, gamma_c, k)) return -1;
  return store_constants(c, k, kTagHotine);
}

// The central line through two points (Snyder 1987, 9-25 to 9-34), with
// Snyder's E = H here, H and L his t1^B and t2^B:
//   J = (E² − L H) / (E² + L H),  P = (L − H) / (L + H),
//   λ0 = (λ1 + λ2)/2 − atan(J tan(B (λ1 − λ2)/2) / P) / B,
//   γ0 = atan(sin(B (λ1 − λ0)) / G),  αc = asin(D sin γ0).
int two_point_constants(ko_constants *c, const double *sph, const double *parms, Origin origin) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kScaleFactor, slot::kStdParallel1, slot::kStdParallel2,
                            slot::kLon1stPoint, slot::kLon2ndPoint, slot::kLatCenter,
                            slot::kXScale, slot::kYScale}))
    return -1;
  const double phi1 = parms[slot::kStdParallel1], phi2 = parms[slot::kStdParallel2];
  const double lam1 = parms[slot::kLon1stPoint];
  double lam2 = parms[slot::kLon2ndPoint];
  const double phic = parms[slot::kLatCenter];
  if (!(std::fabs(phi1) < kHalfPi && std::fabs(phi2) < kHalfPi)) return -1;
  if (phi1 == phi2 && ko_delta(lam1 - lam2) == 0.0) return -1;  // one point is no line
  Aposphere ap;
  if (!aposphere(g, phic, parms[slot::kScaleFactor], ap)) return -1;
  if (lam1 - lam2 < -kPi) lam2 -= kTwoPi;
  if (lam1 - lam2 > kPi) lam2 += kTwoPi;
  HotineConstants k{};
  k.lnH = ap.lnF - ap.B * ap.psi_c;  // Snyder's ln E
  const double lnH1 = -ap.B * isometric_latitude(g.e, phi1);
  const double lnL = -ap.B * isometric_latitude(g.e, phi2);
  const double J = std::tanh(k.lnH - (lnL + lnH1) / 2.0);
  const double P = std::tanh((lnL - lnH1) / 2.0);
  k.lambda0 = (lam1 + lam2) / 2.0 - std::atan(J * std::tan(ap.B * (lam1 - lam2) / 2.0) / P) / ap.B;
  const double G = std::sinh(k.lnH - lnH1);  // (F − 1/F) / 2 with F = E / H
  const double g0 = std::atan(std::sin(ap.B * ko_delta(lam1 - k.lambda0)) / G);
  k.sin_g0 = std::sin(g0);
  k.cos_g0 = std::cos(g0);
  const double sin_alpha = std::sqrt(ap.D2) * k.sin_g0;
  if (!(std::fabs(sin_alpha) <= 1.0)) return -1;
  const double alphac = std::asin(sin_alpha);
  k.uc = origin == Origin::kCentre ? centre_offset(ap, phic, alphac) : 0.0;
  if (!finish(g, parms, ap, alphac, k)) return -1;
  return store_constants(c, k, kTagHotine);
}

// ---------------------------------------------------------------------------
// Point kernels.

// ---------------------------------------------------------------------------
// Point kernels (hotine_kernels.h), four points at a time on SLEEF's AVX2
// functions where the machine has them.

#define KO_SIMD_KERNELS "projections/hotine_kernels.h"
#include "projections/simd_kernels.inc"
KO_SIMD_FOUR_WIDE(forward_avx2, HotineConstants, Conformal, avx2::forward_block)
KO_SIMD_FOUR_WIDE(inverse_avx2, HotineConstants, Conformal, avx2::inverse_block)

KO_PROJ_CONFORMAL_KERNELS(HotineConstants,
                          forward_points, forward_block, forward_avx2,
                          inverse_points, inverse_block, inverse_avx2)

constexpr auto run = run_kernels<HotineConstants, kTagHotine, forward_points, inverse_points>;

}  // namespace

int hotine_azimuth_natorigin_constants(ko_constants *c, const double *sph, const double *parms) {
  return azimuth_constants(c, sph, parms, Origin::kNatural, Rectify::kAzimuth);
}
int hotine_azimuth_center_constants(ko_constants *c, const double *sph, const double *parms) {
  return azimuth_constants(c, sph, parms, Origin::kCentre, Rectify::kAzimuth);
}
int rso_natorigin_constants(ko_constants *c, const double *sph, const double *parms) {
  return azimuth_constants(c, sph, parms, Origin::kNatural, Rectify::kRotationSlot);
}
int rso_center_constants(ko_constants *c, const double *sph, const double *parms) {
  return azimuth_constants(c, sph, parms, Origin::kCentre, Rectify::kRotationSlot);
}
int hotine_two_point_natorigin_constants(ko_constants *c, const double *sph, const double *parms) {
  return two_point_constants(c, sph, parms, Origin::kNatural);
}
int hotine_two_point_center_constants(ko_constants *c, const double *sph, const double *parms) {
  return two_point_constants(c, sph, parms, Origin::kCentre);
}

KO_PROJ_DEFINE_POINT_SLOTS(hotine_azimuth_natorigin, run)
KO_PROJ_DEFINE_POINT_SLOTS(hotine_azimuth_center, run)
KO_PROJ_DEFINE_POINT_SLOTS(rso_natorigin, run)
KO_PROJ_DEFINE_POINT_SLOTS(rso_center, run)
KO_PROJ_DEFINE_POINT_SLOTS(hotine_two_point_natorigin, run)
KO_PROJ_DEFINE_POINT_SLOTS(hotine_two_point_center, run)

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_hotine_two_point_natorigin_vector = {
    43025, "Hotine_Oblique_Mercator_Two_Point_Natural_Origin", ko::proj::hotine_two_point_natorigin_forward, ko::proj::hotine_two_point_natorigin_inverse, ko::proj::hotine_two_point_natorigin_constants,
    ko::validity<43025>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_hotine_two_point_center_vector = {
    43035, "Hotine_Oblique_Mercator_Two_Point_Center", ko::proj::hotine_two_point_center_forward, ko::proj::hotine_two_point_center_inverse, ko::proj::hotine_two_point_center_constants,
    ko::validity<43035>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_hotine_azimuth_natorigin_vector = {
    43036, "Hotine_Oblique_Mercator_Azimuth_Natural_Origin", ko::proj::hotine_azimuth_natorigin_forward, ko::proj::hotine_azimuth_natorigin_inverse, ko::proj::hotine_azimuth_natorigin_constants,
    ko::validity<43036>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_hotine_azimuth_center_vector = {
    43037, "Hotine_Oblique_Mercator_Azimuth_Center", ko::proj::hotine_azimuth_center_forward, ko::proj::hotine_azimuth_center_inverse, ko::proj::hotine_azimuth_center_constants,
    ko::validity<43037>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_rso_natorigin_vector = {
    43053, "Rectified_Skew_Orthomorphic_Natural_Origin", ko::proj::rso_natorigin_forward, ko::proj::rso_natorigin_inverse, ko::proj::rso_natorigin_constants,
    ko::validity<43053>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_rso_center_vector = {
    43054, "Rectified_Skew_Orthomorphic_Center", ko::proj::rso_center_forward, ko::proj::rso_center_inverse, ko::proj::rso_center_constants,
    ko::validity<43054>, nullptr, nullptr};
}  // extern "C"
