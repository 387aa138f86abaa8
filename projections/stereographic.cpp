// Stereographic projections on the ellipsoid and the sphere.
//
//  - Double_Stereographic (43038): the oblique stereographic of IOGP guidance
//    note 7-2, method 9809: the ellipsoid is mapped conformally onto a sphere
//    of radius R = sqrt(ρ0 ν0) (Gauss), which is then projected
//    stereographically.
//  - Stereographic (43026): Snyder's ellipsoidal stereographic (Snyder 1987,
//    chapter 21), built on the conformal latitude; polar when the latitude of
//    origin is ±90°.
//  - Polar_Stereographic_Variant_A/B/C (43066/67/68): IOGP 7-2 methods 9810,
//    9829, 9830.
//  - Stereographic_North_Pole / Stereographic_South_Pole (43050/51): the
//    polar form about a fixed pole, true to scale k0 on the standard parallel.
//
// The two oblique forms share one kernel: a conformal sphere latitude
// χ = gd(n ψ + h) and longitude Λ = n (λ − λ0), ψ the isometric latitude,
// followed by the spherical stereographic of scale S about (χ0, 0):
//   x = S cos χ sin Λ / B,  y = S (sin χ cos χ0 − cos χ sin χ0 cos Λ) / B,
//   B = 1 + sin χ sin χ0 + cos χ cos χ0 cos Λ.
// Method 9809 has S = 2 R k0 and n, h from the guidance note (c = e^(2h));
// Snyder's form has n = 1, h = 0, χ0 the conformal latitude of φ0 and
// S = 2 a k0 m0 / cos χ0.
//
// The polar kernel: ρ = K exp(−s ψ) about the pole s = ±1,
//   x = ρ sin(λ − λ0),  y = y0 − s ρ cos(λ − λ0),
// with K from the scale factor (A), the standard parallel (B, C) and y0 the
// distance of variant C's false origin from the pole.
//
// Parameters: slot 2 λ0, slot 5 k0, slot 6 φ0 (43026, 43038, 43066), slot 3
// the standard parallel (43067, 43068, 43050, 43051), slots 12-14 the plane orientation.
// The antipode of the centre and the pole opposite a polar projection's have
// no image.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"
#include "projections/simd.h"

namespace ko::proj {
namespace {

enum class Kind : int { kOblique = 0, kPolar = 1 };

struct StereoConstants {
  int kind;
  double e, e2;
  double lambda0;
  // Oblique kernel.
  double n, h, sin_chi0, cos_chi0, S;
  // Polar kernel.
  double s, K, y0;
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
};

// sqrt((1+e)^(1+e) (1−e)^(1−e)), the polar stereographic's constant.
double polar_root(double e) {
  return std::sqrt(std::pow(1.0 + e, 1.0 + e) * std::pow(1.0 - e, 1.0 - e));
}

bool begin(const double *sph, const double *parms, std::initializer_list<int> slots, Ellipsoid &g,
           StereoConstants &k) {
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, slots) ||
      !finite_slots(parms, {slot::kCentralMeridian}) ||
      !plane_orientation_from_parms(parms, k.plane))
    return false;
  k.e = g.e;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  ko_chi_conformal_constants(g.e2, k.conformal);
  return true;
}

// Polar constants with ρ = K exp(−s ψ).
void set_polar(StereoConstants &k, double s, double K, double y0) {
  k.kind = static_cast<int>(Kind::kPolar);
  k.s = s;
  k.K = K;
  k.y0 = y0;
}

// The conformal sphere of method 9809 (IOGP 7-2):
// n = sqrt(1 + e² cos⁴φ0 / (1 − e²)), R = sqrt(ρ0 ν0), and
// ½ ln c = ln(n + sin φ0) − ln cos φ0 − ½ ln(1 + e² cos²φ0 / (1 − e²)) − n ψ0,
// the guidance note's c rewritten without the cancellation of n − sin φ0.
// At a pole c tends to ((1 + e) / (1 − e))^e.
int double_constants(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  StereoConstants k{};
  if (!begin(sph, parms, {slot::kScaleFactor, slot::kLatOrigin}, g, k)) return -1;
  const double phi0 = parms[slot::kLatOrigin], k0 = parms[slot::kScaleFactor];
  if (!(std::fabs(phi0) <= kHalfPi) || !(k0 > 0.0)) return -1;
  const double s0 = std::sin(phi0), c0 = std::cos(phi0);
  const double w = 1.0 - g.e2 * s0 * s0;
  const double radius = g.a * std::sqrt(1.0 - g.e2) / w;  // sqrt(ρ0 ν0)
  k.kind = static_cast<int>(Kind::kOblique);
  k.n = std::sqrt(1.0 + g.e2 * c0 * c0 * c0 * c0 / (1.0 - g.e2));
  double chi0;
  if (c0 < 1e-9) {
    k.h = std::copysign(g.e * std::atanh(g.e), phi0);
    chi0 = std::copysign(kHalfPi, phi0);
  } else {
    const double psi0 = isometric_latitude(g.e, phi0);
    k.h = std::log(k.n + s0) - std::log(c0) - 0.5 * std::log1p(g.e2 * c0 * c0 / (1.0 - g.e2)) -
          k.n * psi0;
    chi0 = std::atan(std::sinh(k.n * psi0 + k.h));
  }
  k.sin_chi0 = std::sin(chi0);
  k.cos_chi0 = std::cos(chi0);
  k.S = 2.0 * radius * k0;
  return store_constants(c, k, kTagStereographic);
}

// Snyder's ellipsoidal stereographic (Snyder 1987, 21-26 to 21-44).
int stereographic_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  StereoConstants k{};
  if (!begin(sph, parms, {slot::kScaleFactor, slot::kLatOrigin}, g, k)) return -1;
  const double phi0 = parms[slot::kLatOrigin], k0 = parms[slot::kScaleFactor];
  if (!(std::fabs(phi0) <= kHalfPi) || !(k0 > 0.0)) return -1;
  if (std::fabs(phi0) >= kHalfPi - 1e-14) {
    set_polar(k, std::copysign(1.0, phi0), 2.0 * g.a * k0 / polar_root(g.e), 0.0);
  } else {
    const double psi0 = isometric_latitude(g.e, phi0);
    const double chi0 = std::atan(std::sinh(psi0));
    k.kind = static_cast<int>(Kind::kOblique);
    k.n = 1.0;
    k.h = 0.0;
    k.sin_chi0 = std::sin(chi0);
    k.cos_chi0 = std::cos(chi0);
    // 2 a k0 m0 / cos χ0, with 1 / cos χ0 = cosh ψ0.
    k.S = 2.0 * g.a * k0 * parallel_radius_ratio(g.e2, phi0) * std::cosh(psi0);
  }
  return store_constants(c, k, kTagStereographic);
}

// Variant A: the pole from the latitude of origin, which must be ±90°.
int polar_a_constants(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  StereoConstants k{};
  if (!begin(sph, parms, {slot::kScaleFactor, slot::kLatOrigin}, g, k)) return -1;
  const double phi0 = parms[slot::kLatOrigin], k0 = parms[slot::kScaleFactor];
  if (!(std::fabs(std::fabs(phi0) - kHalfPi) < 1e-9) || !(k0 > 0.0)) return -1;
  set_polar(k, std::copysign(1.0, phi0), 2.0 * g.a * k0 / polar_root(g.e), 0.0);
  return store_constants(c, k, kTagStereographic);
}

// Scale k0 on the standard parallel φF about the pole s = ±1:
// K = k0 a mF / tF with tF = exp(−s ψF) (Snyder 1987, 21-33 and 21-34;
// IOGP 7-2 method 9829), the limit 2 a k0 / sqrt((1+e)^(1+e) (1−e)^(1−e))
// when φF is the pole.  Returns ρF = a mF, the standard parallel's radius.
double set_polar_standard_parallel(StereoConstants &k, const Ellipsoid &g, double s, double phif,
                                   double k0) {
  double K;
  double rho_f = 0.0;
  if (std::fabs(phif) >= kHalfPi - 1e-14) {
    K = 2.0 * g.a / polar_root(g.e);
  } else {
    rho_f = g.a * parallel_radius_ratio(g.e2, phif);
    K = rho_f * std::exp(s * isometric_latitude(g.e, phif));
  }
  set_polar(k, s, K * k0, 0.0);
  return rho_f;
}

// Variants B and C: scale 1 on the standard parallel φF, whose sign picks
// the pole.  C puts the false origin on φF: y0 = s ρF = s a mF.
int polar_bc_constants(ko_constants *c, const double *sph, const double *parms, bool variant_c) {
  Ellipsoid g;
  StereoConstants k{};
  if (!begin(sph, parms, {slot::kScaleFactor, slot::kStdParallel1}, g, k)) return -1;
  const double phif = parms[slot::kStdParallel1], k0 = parms[slot::kScaleFactor];
  if (!(phif != 0.0 && std::fabs(phif) <= kHalfPi) || !(k0 > 0.0)) return -1;
  const double s = std::copysign(1.0, phif);
  const double rho_f = set_polar_standard_parallel(k, g, s, phif, k0);
  if (variant_c) k.y0 = s * rho_f * k0;
  return store_constants(c, k, kTagStereographic);
}

// Stereographic_North_Pole and Stereographic_South_Pole: the pole is fixed
// by the projection, the standard parallel's magnitude gives the latitude of
// true scale in that hemisphere (the equator included), and the scale
// factor multiplies the whole map.
int polar_pole_constants(ko_constants *c, const double *sph, const double *parms, double s) {
  Ellipsoid g;
  StereoConstants k{};
  if (!begin(sph, parms, {slot::kScaleFactor, slot::kStdParallel1}, g, k)) return -1;
  const double sp = parms[slot::kStdParallel1], k0 = parms[slot::kScaleFactor];
  if (!(std::fabs(sp) <= kHalfPi) || !(k0 > 0.0)) return -1;
  set_polar_standard_parallel(k, g, s, s * std::fabs(sp), k0);
  return store_constants(c, k, kTagStereographic);
}

// ---------------------------------------------------------------------------
// Point kernels.  The oblique forms (stereographic_kernels.h) run four
// points at a time on SLEEF's AVX2 functions where the machine has them.

#define KO_SIMD_KERNELS "projections/stereographic_kernels.h"
#include "projections/simd_kernels.inc"
KO_SIMD_FOUR_WIDE(forward_oblique_avx2, StereoConstants, Conformal, avx2::forward_oblique_block)
KO_SIMD_FOUR_WIDE(inverse_oblique_avx2, StereoConstants, Conformal, avx2::inverse_oblique_block)

KO_PROJ_CONFORMAL_KERNELS(StereoConstants,
                          forward_oblique, forward_oblique_block, forward_oblique_avx2,
                          inverse_oblique, inverse_oblique_block, inverse_oblique_avx2)

int forward_polar(const StereoConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double lam = ko_delta(xy[i] - k.lambda0);
    // The pole itself is the centre, exactly.
    const double rho =
        k.s * phi >= kHalfPi ? 0.0 : k.K * std::exp(-k.s * isometric_latitude(k.e, phi));
    double x = rho * std::sin(lam);
    double y = k.y0 - k.s * rho * std::cos(lam);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi && k.s * phi > -kHalfPi);
  }
  return count;
}

int inverse_polar(const StereoConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double dy = y - k.y0;
    const double rho = std::hypot(x, dy);
    const double psi = -k.s * std::log(rho / k.K);
    const double phi = latitude_from_isometric(k.conformal, k.e2, psi);
    const double lam = std::atan2(x, -k.s * dy);
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam), phi, true);
  }
  return count;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<StereoConstants>(
      cf, kTagStereographic, sph, parms, n, coords, ivals, dvals,
      [forward](const StereoConstants &k, std::span<double> xy) {
        if (k.kind == static_cast<int>(Kind::kPolar))
          return forward ? forward_polar(k, xy) : inverse_polar(k, xy);
        return forward ? forward_oblique(k, xy) : inverse_oblique(k, xy);
      });
}

}  // namespace

int double_stereographic_constants(ko_constants *c, const double *sph, const double *parms) {
  return double_constants(c, sph, parms);
}
int stereographic_constants(ko_constants *c, const double *sph, const double *parms) {
  return stereographic_constants_impl(c, sph, parms);
}
int polar_stereographic_a_constants(ko_constants *c, const double *sph, const double *parms) {
  return polar_a_constants(c, sph, parms);
}
int polar_stereographic_b_constants(ko_constants *c, const double *sph, const double *parms) {
  return polar_bc_constants(c, sph, parms, false);
}
int polar_stereographic_c_constants(ko_constants *c, const double *sph, const double *parms) {
  return polar_bc_constants(c, sph, parms, true);
}
int stereographic_north_pole_constants(ko_constants *c, const double *sph, const double *parms) {
  return polar_pole_constants(c, sph, parms, 1.0);
}
int stereographic_south_pole_constants(ko_constants *c, const double *sph, const double *parms) {
  return polar_pole_constants(c, sph, parms, -1.0);
}

KO_PROJ_DEFINE_POINT_SLOTS(double_stereographic, run)
KO_PROJ_DEFINE_POINT_SLOTS(stereographic, run)
KO_PROJ_DEFINE_POINT_SLOTS(polar_stereographic_a, run)
KO_PROJ_DEFINE_POINT_SLOTS(polar_stereographic_b, run)
KO_PROJ_DEFINE_POINT_SLOTS(polar_stereographic_c, run)
KO_PROJ_DEFINE_POINT_SLOTS(stereographic_north_pole, run)
KO_PROJ_DEFINE_POINT_SLOTS(stereographic_south_pole, run)

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_double_stereographic_vector = {
    43038, "Double_Stereographic", ko::proj::double_stereographic_forward, ko::proj::double_stereographic_inverse, ko::proj::double_stereographic_constants,
    ko::validity<43038>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_stereographic_vector = {
    43026, "Stereographic", ko::proj::stereographic_forward, ko::proj::stereographic_inverse, ko::proj::stereographic_constants,
    ko::validity<43026>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_polar_stereographic_variant_a_vector = {
    43066, "Polar_Stereographic_Variant_A", ko::proj::polar_stereographic_a_forward, ko::proj::polar_stereographic_a_inverse, ko::proj::polar_stereographic_a_constants,
    ko::validity<43066>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_polar_stereographic_variant_b_vector = {
    43067, "Polar_Stereographic_Variant_B", ko::proj::polar_stereographic_b_forward, ko::proj::polar_stereographic_b_inverse, ko::proj::polar_stereographic_b_constants,
    ko::validity<43067>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_polar_stereographic_variant_c_vector = {
    43068, "Polar_Stereographic_Variant_C", ko::proj::polar_stereographic_c_forward, ko::proj::polar_stereographic_c_inverse, ko::proj::polar_stereographic_c_constants,
    ko::validity<43068>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_stereographic_north_pole_vector = {
    43050, "Stereographic_North_Pole", ko::proj::stereographic_north_pole_forward, ko::proj::stereographic_north_pole_inverse, ko::proj::stereographic_north_pole_constants,
    ko::validity<43050>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_stereographic_south_pole_vector = {
    43051, "Stereographic_South_Pole", ko::proj::stereographic_south_pole_forward, ko::proj::stereographic_south_pole_inverse, ko::proj::stereographic_south_pole_constants,
    ko::validity<43051>, nullptr, nullptr};
}  // extern "C"

// Stereographic on an auxiliary sphere (the spherical branch); for type 3
// the latitude of origin is taken to its authalic latitude too.
KO_AUXS_VECTOR(stereographic_auxs, 43126, "Stereographic_Auxiliary_Sphere",
               ko::proj::stereographic_forward, ko::proj::stereographic_inverse,
               (ko::proj::auxs::constants<ko::proj::stereographic_constants, ko::proj::slot::kLatOrigin>),
               ko::proj::slot::kCentralMeridian, ko::proj::slot::kLatOrigin)
