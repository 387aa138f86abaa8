// Machinery shared by the projection families: the spheroid pair and the
// parameter slots, a family's constants kept in a ko_constants record, the
// plane orientation step (X_Scale, Y_Scale, XY_Plane_Rotation) and the way a
// point that cannot be converted is marked.
//
// Conventions of every family built on this header:
//  - Constants are a plain record K of the family, computed once by its
//    constants function and stored as the dvals of the ko_constants record;
//    ivals holds {3, number of doubles, family tag}.  A forward or inverse
//    function given null dvals builds a temporary record with the constants
//    function and deletes it before returning.
//  - A point outside the projection's domain (beyond a conic's far pole, the
//    antipode of an azimuthal centre, outside the image of the map, NaN or
//    infinite input) gets HUGE_VAL in both coordinates and is not counted.
#pragma once

#include "foundation/internal.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <type_traits>

namespace ko::proj {

// Slots of the 24-double parameter array (metres, radians, plain factors).
namespace slot {
inline constexpr int kFalseEasting = 0;
inline constexpr int kFalseNorthing = 1;
inline constexpr int kCentralMeridian = 2;  // also Longitude_Of_Origin
inline constexpr int kStdParallel1 = 3;     // also Latitude_Of_1st_Point, Pseudo_Standard_Parallel_1
inline constexpr int kStdParallel2 = 4;     // also Latitude_Of_2nd_Point
inline constexpr int kScaleFactor = 5;
inline constexpr int kLatOrigin = 6;  // also Central_Parallel
inline constexpr int kAzimuth = 7;
inline constexpr int kLon1stPoint = 8;
inline constexpr int kLon2ndPoint = 9;
inline constexpr int kLonCenter = 10;
inline constexpr int kLatCenter = 11;
inline constexpr int kXScale = 12;
inline constexpr int kAuxSphereType = 12;
inline constexpr int kYScale = 13;
inline constexpr int kRotation = 14;  // XY_Plane_Rotation
inline constexpr int kHeight = 14;
inline constexpr int kOption = 15;
}  // namespace slot

// The spheroid pair, checked: a finite positive semi-major axis and
// 0 <= e² < 1.  e² below 2^-48 is taken as exactly 0, a sphere.
struct Ellipsoid {
  double a = 0.0;
  double e2 = 0.0;
  double e = 0.0;
  bool sphere() const { return e2 == 0.0; }
};
bool read_ellipsoid(const double *sph, Ellipsoid &out);

// Reads slot i of a parameter array; false when the array is null or the
// value is not finite.
inline bool finite_slots(const double *parms, std::initializer_list<int> slots) {
  if (parms == nullptr) return false;
  for (int s : slots)
    if (!std::isfinite(parms[s])) return false;
  return true;
}

// The definition shared by the two-parallel conics: the spheroid and finite
// Central_Meridian, Standard_Parallel_1 and _2 and Latitude_Of_Origin, the
// three latitudes read out.  Each conic checks their ranges itself.
struct ConicDefinition {
  Ellipsoid g;
  double phi1 = 0.0, phi2 = 0.0, phi0 = 0.0;
};
inline bool read_conic(const double *sph, const double *parms, ConicDefinition &out) {
  if (!read_ellipsoid(sph, out.g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1, slot::kStdParallel2,
                            slot::kLatOrigin}))
    return false;
  out.phi1 = parms[slot::kStdParallel1];
  out.phi2 = parms[slot::kStdParallel2];
  out.phi0 = parms[slot::kLatOrigin];
  return true;
}

// The plane orientation step applied after a projection's own formulas:
// a turn of the axes by the angle ω followed by scaling,
//   x' = Sx (x cos ω + y sin ω),   y' = Sy (y cos ω − x sin ω).
// With ω the rectified grid angle this is the rectification of the Hotine
// oblique Mercator (IOGP guidance note 7-2, method 9812); Sx = −1 gives a
// west-orientated grid, Sx = Sy = −1 a south-orientated one, and Sx = −1,
// Sy = 1, ω = 90° turns the Krovak (southing, westing) pair into
// (easting, northing).  An absent scale (0 in the array) means 1.
struct PlaneOrientation {
  double fwd[4] = {1.0, 0.0, 0.0, 1.0};  // x' = fwd0 x + fwd1 y, y' = fwd2 x + fwd3 y
  double inv[4] = {1.0, 0.0, 0.0, 1.0};

  void to_grid(double &x, double &y) const {
    const double u = fwd[0] * x + fwd[1] * y;
    y = fwd[2] * x + fwd[3] * y;
    x = u;
  }
  void from_grid(double &x, double &y) const {
    const double u = inv[0] * x + inv[1] * y;
    y = inv[2] * x + inv[3] * y;
    x = u;
  }
  // The same on a whole array of (x, y) pairs, in one loop the compiler
  // vectorises; for families that orient after their kernels.
  void to_grid(std::span<double> xy) const { apply(fwd, xy); }
  void from_grid(std::span<double> xy) const { apply(inv, xy); }

 private:
  static void apply(const double (&m)[4], std::span<double> xy) {
    const double m0 = m[0], m1 = m[1], m2 = m[2], m3 = m[3];
    double *p = xy.data();
    const std::size_t n = xy.size() / 2;
    for (std::size_t i = 0; i < n; ++i) {
      const double x = p[2 * i], y = p[2 * i + 1];
      p[2 * i] = m0 * x + m1 * y;
      p[2 * i + 1] = m2 * x + m3 * y;
    }
  }
};
// False when a scale is not finite or the rotation is not finite.
bool plane_orientation(double x_scale, double y_scale, double rotation, PlaneOrientation &out);
// True when slots 12 to 14 ask for no orientation at all (scales absent or
// 1, no rotation): a test of three numbers, for families whose plain case
// must not pay for the step.
inline bool plain_orientation(const double *parms) {
  const double sx = parms[slot::kXScale], sy = parms[slot::kYScale];
  return (sx == 0.0 || sx == 1.0) && (sy == 0.0 || sy == 1.0) && parms[slot::kRotation] == 0.0;
}
// From slots 12 (X_Scale), 13 (Y_Scale) and 14 (XY_Plane_Rotation).
bool plane_orientation_from_parms(const double *parms, PlaneOrientation &out);

// Marks a point outside the domain: HUGE_VAL in both coordinates.  Returns
// 1 when the point counts.
inline int store_point(double *xy, double x, double y, bool ok) {
  ok = ok && std::isfinite(x) && std::isfinite(y);
  xy[0] = ok ? x : HUGE_VAL;
  xy[1] = ok ? y : HUGE_VAL;
  return ok ? 1 : 0;
}

// ---------------------------------------------------------------------------
// Constants records.

inline constexpr int32_t kIvalsCount = 3;

template <class K>
constexpr int32_t doubles_of() {
  return static_cast<int32_t>((sizeof(K) + sizeof(double) - 1) / sizeof(double));
}

// Stores k as the dvals of the record with ivals {3, doubles, tag}.  Returns
// the number of doubles, or -1 (nothing changed) when an allocation fails.
template <class K>
int store_constants(ko_constants *constants, const K &k, int32_t tag) {
  static_assert(std::is_trivially_copyable_v<K>);
  if (!ko_constants_p(constants)) return -1;
  constexpr int32_t nd = doubles_of<K>();
  Owned<double> dvals(alloc_array<double>(static_cast<std::size_t>(nd), "ko_constants"));
  Owned<int32_t> ivals(alloc_array<int32_t>(kIvalsCount, "ko_constants"));
  if (!dvals || !ivals) return -1;
  std::memcpy(dvals.get(), &k, sizeof(K));
  ivals.get()[0] = kIvalsCount;
  ivals.get()[1] = nd;
  ivals.get()[2] = tag;
  ko_constants_dvals_set(constants, dvals.release());
  ko_constants_ivals_set(constants, ivals.release());
  return nd;
}

// Reads k back; false when the arrays are not this family's.
template <class K>
bool load_constants(const int32_t *ivals, const double *dvals, int32_t tag, K &k) {
  if (ivals == nullptr || dvals == nullptr) return false;
  if (ivals[0] != kIvalsCount || ivals[1] != doubles_of<K>() || ivals[2] != tag) return false;
  std::memcpy(static_cast<void *>(&k), dvals, sizeof(K));
  return true;
}

// Computes a family's constants into k through a temporary record built by
// its constants function; false when the function fails.
template <class K>
bool compute_constants(ko_proj_constfunc constfunc, int32_t tag, const double *sph,
                       const double *parms, K &k) {
  ko_constants *temp = ko_constants_new();
  if (temp == nullptr) return false;
  const bool built = constfunc(temp, sph, parms) >= 0 &&
                     load_constants(ko_constants_ivals(temp), ko_constants_dvals(temp), tag, k);
  ko_constants_del(temp);
  return built;
}

// A compare function's work: 1 when both parameter sets give constants and
// same(a, b) finds them the same map, with the same false origin.
template <class K, class Same>
int compare_maps(ko_proj_constfunc constfunc, int32_t tag, const double *sph, const double *p1,
                 const double *p2, Same &&same) {
  K a, b;
  if (!compute_constants(constfunc, tag, sph, p1, a) || !compute_constants(constfunc, tag, sph, p2, b))
    return 0;
  return same(a, b) && rel_eq(p1[0], p2[0]) && rel_eq(p1[1], p2[1]) ? 1 : 0;
}

// Runs body(k, points) with the family's constants: the cached ones when
// dvals is given, else a temporary record built by constfunc and deleted
// before returning.  Returns body's count, or 0 when there are no usable
// constants or the arguments are invalid.
template <class K, class Body>
int with_constants(ko_proj_constfunc constfunc, int32_t tag, const double *sph,
                   const double *parms, int n, double *coords, const int32_t *ivals,
                   const double *dvals, Body &&body) {
  if (n < 0 || (n > 0 && coords == nullptr)) return 0;
  K k{};
  const bool have = dvals == nullptr ? compute_constants(constfunc, tag, sph, parms, k)
                                     : load_constants(ivals, dvals, tag, k);
  if (!have) return 0;
  return body(k, std::span<double>(coords, static_cast<std::size_t>(n) * 2));
}

// The driver of a family with one forward and one inverse kernel: runs the
// kernel of the direction asked with the family's constants (cached, or
// built by cf for this call).
template <class K, int32_t Tag, int (*Forward)(const K &, std::span<double>),
          int (*Inverse)(const K &, std::span<double>)>
int run_kernels(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
                double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<K>(cf, Tag, sph, parms, n, coords, ivals, dvals,
                           [forward](const K &k, std::span<double> xy) {
                             return forward ? Forward(k, xy) : Inverse(k, xy);
                           });
}

// Defines name_forward and name_inverse, the projection's two point slots,
// as run(name_constants, direction, ...) where run is the family's driver
// int run(ko_proj_constfunc, bool forward, sph, parms, n, coords, ivals, dvals).
#define KO_PROJ_DEFINE_POINT_SLOTS(name, run)                                         \
  int name##_forward(const double *sph, const double *parms, int n, double *coords,   \
                     const int32_t *ivals, const double *dvals) {                     \
    return run(name##_constants, true, sph, parms, n, coords, ivals, dvals);          \
  }                                                                                   \
  int name##_inverse(const double *sph, const double *parms, int n, double *coords,   \
                     const int32_t *ivals, const double *dvals) {                     \
    return run(name##_constants, false, sph, parms, n, coords, ivals, dvals);         \
  }

// Runs body(k, points) with constants computed on the stack by
// compute(sph, parms, k), for the projections that have no constants
// function and compute everything per call.
template <class K, class Body>
int with_direct_constants(bool (*compute)(const double *, const double *, K &), const double *sph,
                          const double *parms, int n, double *coords, Body &&body) {
  if (n < 0 || (n > 0 && coords == nullptr)) return 0;
  K k{};
  if (!compute(sph, parms, k)) return 0;
  return body(k, std::span<double>(coords, static_cast<std::size_t>(n) * 2));
}

// Tags that keep one family's constants from being read by another.
enum FamilyTag : int32_t {
  kTagLambertConic = 0x4c43,
  kTagLambertNearConformal = 0x4c4e,
  kTagMercator = 0x4d45,
  kTagObliqueStereographic = 0x5344,
  kTagStereographic = 0x5354,
  kTagPolarStereographic = 0x5350,
  kTagHotine = 0x484f,
  kTagKrovak = 0x4b52,
  kTagCassini = 0x4341,
  kTagLambertAzimuthal = 0x4c41,
  kTagAlbers = 0x414c,
  kTagAzimuthalEquidistant = 0x4145,
  kTagEquidistantCylindrical = 0x4543,
  kTagCylindricalEqualArea = 0x4345,
  kTagPolyconic = 0x504f,
  kTagBonne = 0x424f,
  kTagNewZealand = 0x4e5a,
  kTagLaborde = 0x4c42,
  kTagColombiaUrban = 0x4947,
  kTagEqualEarth = 0x4545,
  kTagOrthographic = 0x4f52,
};

// ---------------------------------------------------------------------------
// Small pieces of ellipsoid geometry used by several families.

// Isometric latitude ψ = asinh(tan φ) − e atanh(e sin φ) (Snyder 1987, 3-7).
inline double isometric_latitude(double e, double phi) {
  return std::asinh(std::tan(phi)) - e * std::atanh(e * std::sin(phi));
}

// The six power coefficients of P in φ = χ + sin 2χ P(cos 2χ), constant
// term first, held by conformal constants (ko_chi_conformal_constants); null
// when they use the closed form instead (e² of 0.0069 and more, beyond every
// terrestrial spheroid).  All zero on a sphere.
const double *conformal_inverse_series(const double *coef);

// What the vector kernels need to go from the conformal to the geodetic
// latitude: the series when there is one, else the constants of the closed
// form (for one point at a time).
struct Conformal {
  const double *poly;  // conformal_inverse_series(coef), or null
  const double *coef;  // ko_chi_conformal_constants
  double e2;
  explicit Conformal(const double *c, double e2_) : poly(conformal_inverse_series(c)), coef(c), e2(e2_) {}
  bool has_series() const { return poly != nullptr; }
};

// Defines fwd(k, xy) and inv(k, xy), the point kernels of a conformal
// family (constants K with the fields conformal and e2) from its block
// kernels fwd_block and inv_block (templates on a math policy, simd.h) and
// their four-wide loops fwd4 and inv4 (KO_SIMD_FOUR_WIDE): four points at a
// time where the machine can, the inverse only where the conformal series
// is there.  Each returns the points converted.
#define KO_PROJ_CONFORMAL_KERNELS(K, fwd, fwd_block, fwd4, inv, inv_block, inv4)                    \
  int fwd(const K &k, std::span<double> xy) {                                                      \
    const ::ko::proj::Conformal cf(k.conformal, k.e2);                                             \
    const auto one = [](const ::ko::simd::ScalarMath &m, const K &kk, const ::ko::proj::Conformal &c, \
                        double *p) { fwd_block(m, kk, c, p); };                                     \
    return ::ko::simd::run_blocks(fwd4, one, k, cf, true, xy);                                     \
  }                                                                                                \
  int inv(const K &k, std::span<double> xy) {                                                      \
    const ::ko::proj::Conformal cf(k.conformal, k.e2);                                             \
    const auto one = [](const ::ko::simd::ScalarMath &m, const K &kk, const ::ko::proj::Conformal &c, \
                        double *p) { inv_block(m, kk, c, p); };                                     \
    return ::ko::simd::run_blocks(inv4, one, k, cf, cf.has_series(), xy);                          \
  }

// Latitude from the isometric latitude ψ through the conformal latitude
// χ = gd(ψ) = atan(sinh ψ); coef from ko_chi_conformal_constants.
inline double latitude_from_isometric(const double *coef, double e2, double psi) {
  return ko_chi_to_phi_wconst(coef, e2, std::atan(std::sinh(psi)));
}

// q of the authalic latitude (Snyder 1987, 3-12):
// q = (1 − e²) (sin φ / (1 − e² sin²φ) + atanh(e sin φ) / e), 2 sin φ on a sphere.
inline double authalic_q(double e, double e2, double sin_phi) {
  if (e == 0.0) return 2.0 * sin_phi;
  return (1.0 - e2) * (sin_phi / (1.0 - e2 * sin_phi * sin_phi) + std::atanh(e * sin_phi) / e);
}

// Distance along the meridian from the equator, M = R μ, with R the
// rectifying radius and μ the rectifying latitude (ko_phi_to_mu_wconst), and
// the latitude of a meridian distance.
struct MeridianArc {
  double e2 = 0.0;
  double radius = 0.0;  // rectifying radius
  double coef[KO_AUX_NCOEF] = {};

  void init(double a, double e2_) {
    e2 = e2_;
    radius = ko_rect_r(a, e2_);
    ko_mu_rectifying_constants(e2_, coef);
  }
  double distance(double phi) const { return radius * ko_phi_to_mu_wconst(coef, e2, phi); }
  double latitude(double m) const { return ko_mu_to_phi_wconst(coef, e2, m / radius); }
};

// Radius of the parallel divided by a: m = cos φ / sqrt(1 − e² sin² φ).
inline double parallel_radius_ratio(double e2, double phi) {
  const double s = std::sin(phi);
  return std::cos(phi) / std::sqrt(1.0 - e2 * s * s);
}

// Two angles equal within the library tolerance, modulo 2π.
inline bool angle_eq(double a, double b) {
  return std::fabs(ko_delta(a - b)) <= kTol * (1.0 + std::fmax(std::fabs(a), std::fabs(b)));
}

// Equal orientation steps.
inline bool plane_eq(const PlaneOrientation &a, const PlaneOrientation &b) {
  for (int i = 0; i < 4; ++i)
    if (!rel_eq(a.fwd[i], b.fwd[i])) return false;
  return true;
}

// Prime-vertical radius of curvature ν = a / sqrt(1 − e² sin² φ).
inline double prime_vertical_radius(double a, double e2, double phi) {
  const double s = std::sin(phi);
  return a / std::sqrt(1.0 - e2 * s * s);
}

}  // namespace ko::proj
