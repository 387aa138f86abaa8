// Lambert Conformal Conic on the ellipsoid and the sphere: the forms with one
// and two standard parallels (IOGP guidance note 7-2 methods 9801, 9802;
// Snyder 1987, chapter 15), the Belgian 1972 form (9803), the Michigan form
// (1051, whose ellipsoid scaling factor is the scale factor here), the
// west-orientated form (9826, X_Scale = -1) and the near-conformal form of the
// Levant (9817, series truncated as the guidance note prints it).
//
// Parameters: slot 2 longitude of origin λ0, slots 3 and 4 the standard
// parallels, slot 5 the scale factor k0, slot 6 the latitude of origin φ0
// (the false origin of the two-parallel form), slots 12-14 the plane
// orientation, slot 15 the variant: 0 conformal, 1 near-conformal (one
// standard parallel, φ0 and k0), 2 Belgium 1972 (the cone angle reduced by
// 29.2985 arc-seconds, which equals moving λ0 east by that angle over n).
//
// Conformal forward:  ρ = a k0 F exp(−n ψ), θ = n (λ − λ0),
//                     x = ρ sin θ, y = ρ0 − ρ cos θ,
// with ψ the isometric latitude and F = m1 exp(n ψ1) / n.  On a sphere
// (e = 0) the same formulas are Snyder's spherical ones.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"
#include "projections/simd.h"

namespace ko::proj {
namespace {

constexpr double kBelgianAlpha = 29.2985 / 3600.0 * kDegree;

enum class LccVariant : int { kConformal = 0, kNearConformal = 1, kBelgium = 2 };

struct LccConstants {
  double a, e2, e;
  double lambda0;
  double n;          // cone constant (sin φ0 for the near-conformal form)
  double sign;       // sign of n
  double aF;         // a k0 F, signed like n
  double rho0;       // radius of the latitude of origin, signed like n
  double theta_max;  // π |n|: half the angle of the developed cone
  // Near-conformal form: meridian-arc series and the cubic term.
  double k0, s0, A, arc[5];
  int variant;
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
};

// Parameters of one Lambert conic, read from a parameter array.
struct LccParms {
  double lambda0, phi1, phi2, k0, phi0;
  LccVariant variant;
};

// Meridian arc of the near-conformal form (IOGP 7-2, method 9817):
// s = A'·φ[degrees] − B' sin 2φ + C' sin 4φ − D' sin 6φ + E' sin 8φ,
// coefficients from the third flattening to its fifth power.
void near_conformal_arc(double a, double e2, double arc[5]) {
  const double f = 1.0 - std::sqrt(1.0 - e2);
  const double n = f / (2.0 - f);
  const double n2 = n * n, n3 = n2 * n, n4 = n3 * n, n5 = n4 * n;
  arc[0] = a * (1.0 - n + 5.0 * (n2 - n3) / 4.0 + 81.0 * (n4 - n5) / 64.0) * kPi / 180.0;
  arc[1] = 3.0 * a * (n - n2 + 7.0 * (n3 - n4) / 8.0 + 55.0 * n5 / 64.0) / 2.0;
  arc[2] = 15.0 * a * (n2 - n3 + 3.0 * (n4 - n5) / 4.0) / 16.0;
  arc[3] = 35.0 * a * (n3 - n4 + 11.0 * n5 / 16.0) / 48.0;
  arc[4] = 315.0 * a * (n4 - n5) / 512.0;
}

inline double near_conformal_s(const double arc[5], double phi) {
  return arc[0] * (phi / kDegree) - arc[1] * std::sin(2.0 * phi) + arc[2] * std::sin(4.0 * phi) -
         arc[3] * std::sin(6.0 * phi) + arc[4] * std::sin(8.0 * phi);
}

// ds/dφ per radian, for the Newton steps of the inverse.
inline double near_conformal_ds(const double arc[5], double phi) {
  return arc[0] / kDegree - 2.0 * arc[1] * std::cos(2.0 * phi) +
         4.0 * arc[2] * std::cos(4.0 * phi) - 6.0 * arc[3] * std::cos(6.0 * phi) +
         8.0 * arc[4] * std::cos(8.0 * phi);
}

bool variant_from(double option, LccVariant &out) {
  if (option == 0.0) out = LccVariant::kConformal;
  else if (option == 1.0) out = LccVariant::kNearConformal;
  else if (option == 2.0) out = LccVariant::kBelgium;
  else return false;
  return true;
}

// Cone constant of two standard parallels (Snyder 15-8):
// n = (ln m1 − ln m2) / (ψ2 − ψ1); the limit sin φ for one parallel.
double cone_constant(const Ellipsoid &g, double phi1, double phi2) {
  if (std::fabs(phi1 - phi2) < 1e-10) return std::sin((phi1 + phi2) / 2.0);
  const double m1 = parallel_radius_ratio(g.e2, phi1);
  const double m2 = parallel_radius_ratio(g.e2, phi2);
  return (std::log(m1) - std::log(m2)) /
         (isometric_latitude(g.e, phi2) - isometric_latitude(g.e, phi1));
}

bool conformal_constants(const Ellipsoid &g, const LccParms &p, LccConstants &k) {
  if (!(std::fabs(p.phi1) < kHalfPi && std::fabs(p.phi2) < kHalfPi)) return false;
  const double n = cone_constant(g, p.phi1, p.phi2);
  if (!(std::fabs(n) > 1e-10)) return false;  // opposite parallels: no cone
  k.n = n;
  k.sign = n > 0.0 ? 1.0 : -1.0;
  // φ0 at the pole the cone opens towards has no image.
  if (!(k.sign * p.phi0 > -kHalfPi)) return false;
  k.aF = g.a * p.k0 * parallel_radius_ratio(g.e2, p.phi1) / n *
         std::exp(n * isometric_latitude(g.e, p.phi1));
  k.rho0 = std::fabs(p.phi0) == kHalfPi && k.sign * p.phi0 > 0.0
               ? 0.0
               : k.aF * std::exp(-n * isometric_latitude(g.e, p.phi0));
  k.theta_max = kPi * std::fabs(n);
  if (p.variant == LccVariant::kBelgium) k.lambda0 += kBelgianAlpha / n;
  return std::isfinite(k.aF) && std::isfinite(k.rho0);
}

// Near-conformal constants (IOGP 7-2, method 9817): n = sin φ0,
// r0 = k0 ν0 / tan φ0, A = 1 / (6 ρ0 ν0).
bool near_conformal_constants(const Ellipsoid &g, const LccParms &p, LccConstants &k) {
  if (!(std::fabs(p.phi0) > 1e-10 && std::fabs(p.phi0) < kHalfPi)) return false;
  const double s = std::sin(p.phi0);
  const double w = 1.0 - g.e2 * s * s;
  const double nu0 = g.a / std::sqrt(w);
  const double rho_m0 = g.a * (1.0 - g.e2) / (w * std::sqrt(w));
  k.n = s;
  k.sign = s > 0.0 ? 1.0 : -1.0;
  k.rho0 = p.k0 * nu0 / std::tan(p.phi0);
  k.A = 1.0 / (6.0 * rho_m0 * nu0);
  near_conformal_arc(g.a, g.e2, k.arc);
  k.s0 = near_conformal_s(k.arc, p.phi0);
  k.theta_max = kPi * std::fabs(s);
  return true;
}

int build_constants(ko_constants *c, const double *sph, const double *parms, const LccParms &p) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g)) return -1;
  if (!std::isfinite(p.lambda0) || !std::isfinite(p.phi0) || !std::isfinite(p.phi1) ||
      !std::isfinite(p.phi2) || !(p.k0 > 0.0) || !std::isfinite(p.k0))
    return -1;
  LccConstants k{};
  k.a = g.a;
  k.e2 = g.e2;
  k.e = g.e;
  k.lambda0 = p.lambda0;
  k.k0 = p.k0;
  k.variant = static_cast<int>(p.variant);
  const bool ok = p.variant == LccVariant::kNearConformal ? near_conformal_constants(g, p, k)
                                                          : conformal_constants(g, p, k);
  if (!ok || !plane_orientation_from_parms(parms, k.plane)) return -1;
  ko_chi_conformal_constants(g.e2, k.conformal);
  return store_constants(c, k, kTagLambertConic);
}

// Reads the two-parallel (or generic) form: parallels in slots 3 and 4.
bool read_2sp(const double *parms, LccParms &p) {
  if (parms == nullptr) return false;
  p = {parms[slot::kCentralMeridian], parms[slot::kStdParallel1], parms[slot::kStdParallel2],
       parms[slot::kScaleFactor], parms[slot::kLatOrigin], LccVariant::kConformal};
  if (!variant_from(parms[slot::kOption], p.variant)) return false;
  // The near-conformal form has one standard parallel, the latitude of origin.
  if (p.variant == LccVariant::kNearConformal) p.phi1 = p.phi2 = p.phi0;
  return true;
}

// Reads the one-parallel form: the standard parallel is the latitude of origin.
bool read_1sp(const double *parms, LccParms &p) {
  if (parms == nullptr) return false;
  p = {parms[slot::kCentralMeridian], parms[slot::kLatOrigin], parms[slot::kLatOrigin],
       parms[slot::kScaleFactor], parms[slot::kLatOrigin], LccVariant::kConformal};
  return variant_from(parms[slot::kOption], p.variant);
}

int constants_with(ko_constants *c, const double *sph, const double *parms,
                   bool (*read)(const double *, LccParms &)) {
  LccParms p;
  if (!read(parms, p)) return -1;
  return build_constants(c, sph, parms, p);
}

// ---------------------------------------------------------------------------
// Point kernels.  The conformal forms (lcc_kernels.h) run four points at a
// time on SLEEF's AVX2 functions where the machine has them.

#define KO_SIMD_KERNELS "projections/lcc_kernels.h"
#include "projections/simd_kernels.inc"
KO_SIMD_FOUR_WIDE(forward_avx2, LccConstants, Conformal, avx2::forward_block)
KO_SIMD_FOUR_WIDE(inverse_avx2, LccConstants, Conformal, avx2::inverse_block)

KO_PROJ_CONFORMAL_KERNELS(LccConstants,
                          forward_conformal, forward_block, forward_avx2,
                          inverse_conformal, inverse_block, inverse_avx2)

int forward_near_conformal(const LccConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double lam = xy[i], phi = xy[i + 1];
    const double m = near_conformal_s(k.arc, phi) - k.s0;
    const double M = k.k0 * (m + k.A * m * m * m);
    const double r = k.rho0 - M;
    const double theta = k.n * ko_delta(lam - k.lambda0);
    double x = r * std::sin(theta);
    double y = M + r * std::sin(theta) * std::tan(theta / 2.0);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

// Inverse of the near-conformal form: Newton on M' = k0 (m + A m³), then on
// the meridian arc s(φ) = m + s0; both converge in a few steps.
int inverse_near_conformal(const LccConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const double theta = std::atan2(k.sign * x, k.sign * (k.rho0 - y));
    const double r = k.sign * std::hypot(x, k.rho0 - y);
    const double Mp = k.rho0 - r;
    double m = Mp / k.k0;
    for (int it = 0; it < 6; ++it)
      m -= (k.k0 * m + k.k0 * k.A * m * m * m - Mp) / (k.k0 + 3.0 * k.k0 * k.A * m * m);
    const double s = m + k.s0;
    double phi = s / k.arc[0] * kDegree;
    for (int it = 0; it < 8; ++it)
      phi += (s - near_conformal_s(k.arc, phi)) / near_conformal_ds(k.arc, phi);
    const double lam = ko_delta(k.lambda0 + theta / k.n);
    const bool ok = std::fabs(phi) <= kHalfPi && std::fabs(theta) <= k.theta_max * (1.0 + 1e-12);
    count += store_point(&xy[i], lam, phi, ok);
  }
  return count;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<LccConstants>(
      cf, kTagLambertConic, sph, parms, n, coords, ivals, dvals,
      [forward](const LccConstants &k, std::span<double> xy) {
        if (k.variant == static_cast<int>(LccVariant::kNearConformal))
          return forward ? forward_near_conformal(k, xy) : inverse_near_conformal(k, xy);
        return forward ? forward_conformal(k, xy) : inverse_conformal(k, xy);
      });
}

// Two parameter sets give the same map when their constants agree and so do
// their false origins.
int compare_with(ko_proj_constfunc cf, const double *sph, const double *p1, const double *p2) {
  return compare_maps<LccConstants>(cf, kTagLambertConic, sph, p1, p2,
                                    [](const LccConstants &a, const LccConstants &b) {
                                      return a.variant == b.variant && rel_eq(a.n, b.n) &&
                                             rel_eq(a.aF, b.aF) && rel_eq(a.rho0, b.rho0) &&
                                             angle_eq(a.lambda0, b.lambda0) && rel_eq(a.k0, b.k0) &&
                                             rel_eq(a.s0, b.s0) && plane_eq(a.plane, b.plane);
                                    });
}

}  // namespace

int lcc_constants(ko_constants *c, const double *sph, const double *parms) {
  return constants_with(c, sph, parms, read_2sp);
}
int lcc_1sp_constants(ko_constants *c, const double *sph, const double *parms) {
  return constants_with(c, sph, parms, read_1sp);
}

KO_PROJ_DEFINE_POINT_SLOTS(lcc, run)
KO_PROJ_DEFINE_POINT_SLOTS(lcc_1sp, run)

int lcc_compare(const double *sph, const double *parms1, const double *parms2) {
  return compare_with(lcc_constants, sph, parms1, parms2);
}
int lcc_1sp_compare(const double *sph, const double *parms1, const double *parms2) {
  return compare_with(lcc_1sp_constants, sph, parms1, parms2);
}

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_lambert_conformal_conic_vector = {
    43020, "Lambert_Conformal_Conic", ko::proj::lcc_forward, ko::proj::lcc_inverse, ko::proj::lcc_constants,
    ko::validity<43020>, ko::proj::lcc_compare, ko::lambert_conic_parms};
constinit const ko_projlist_entry ko_prj_lambert_conformal_conic_1sp_vector = {
    43091, "Lambert_Conformal_Conic_1SP", ko::proj::lcc_1sp_forward, ko::proj::lcc_1sp_inverse, ko::proj::lcc_1sp_constants,
    ko::validity<43091>, ko::proj::lcc_1sp_compare, nullptr};
constinit const ko_projlist_entry ko_prj_lambert_conformal_conic_2sp_vector = {
    43092, "Lambert_Conformal_Conic_2SP", ko::proj::lcc_forward, ko::proj::lcc_inverse, ko::proj::lcc_constants,
    ko::validity<43092>, ko::proj::lcc_compare, ko::lambert_conic_parms};
}  // extern "C"
