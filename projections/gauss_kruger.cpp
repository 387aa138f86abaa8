// Gauss_Kruger (43005) and Transverse_Mercator (43006): one implementation.
//
// On an ellipsoid the mapping is Krüger's series in the third flattening n
// to order n^8 (see tm_family.h; C. F. F. Karney, "Transverse Mercator with
// an accuracy of a few nanometers", J. Geodesy 85, 2011).  Truncation errors
// are below 0.1 nm within 3900 km of the central meridian for terrestrial
// ellipsoids; what remains is rounding.  On a sphere (e² below 2^-48) the
// closed spherical formulas are used.
//
// Constants (ivals [2, count]; count = 2 on a sphere, 126 on an ellipsoid):
//   sphere:     [0] a k0, [1] a k0 / 2
//   ellipsoid:  [0] e'² = e² / (1 - e²)
//               [1] mu0, the rectifying latitude of the latitude of origin
//               [2] A, the rectifying radius
//               [3] a   [4] e²   [5] k0
//               [6 .. 13]   alpha_1 .. alpha_8  (Krüger forward series)
//               [14 .. 21]  beta_1 .. beta_8    (Krüger inverse series)
//               [22 .. 29]  c_1 .. c_8, conformal from geodetic latitude:
//                           chi = phi + sum c_j sin 2j phi
//               [30 .. 37]  d_1 .. d_8, geodetic from conformal latitude:
//                           phi = chi + sum d_j sin 2j chi
//               [38] n   [39] k0 A   [40] 1 / (k0 A)   [41] phi0
//               [42 .. 107] zero (reserved)
//               [108 .. 125] rectifying-latitude coefficients
//                           (ko_mu_rectifying_constants)
// The series helpers instantiated on 32-byte vectors are always inlined into
// the functions built for AVX2, so no call with vector arguments crosses the
// ABI that -Wpsabi warns about.
#pragma GCC diagnostic ignored "-Wpsabi"

#include "projections/tm_family.h"
#include "projections/simd.h"

#include <algorithm>
#include <cmath>
#include <utility>


namespace ko::tm {
namespace {

// Slots of the parameter array.
constexpr int kCentralMeridian = 2;
constexpr int kScaleFactor = 5;
constexpr int kLatitudeOfOrigin = 6;

// Layout of the ellipsoidal constants.
constexpr int kEllipsoidCount = 126;
constexpr int kSphereCount = 2;
constexpr int kEp2 = 0, kMu0 = 1, kRectRadius = 2, kAxis = 3, kE2 = 4, kK0 = 5;
constexpr int kAlpha = 6, kBeta = 14, kChi = 22, kPhi = 30;
constexpr int kN = 38, kScale = 39, kInvScale = 40, kPhi0 = 41;
constexpr int kRectCoef = 108;
static_assert(kRectCoef + KO_AUX_NCOEF == kEllipsoidCount);

constexpr int kOrder = kMaxOrder;

// A latitude within 2^-48 (1 + (pi/2 + |phi|)/2) of a pole, or a B within
// 2^-48 (1 + (1 + |B|)/2) of ±1, is moved to these values just short of it.
constexpr double kPoleLatitude = 1.570796326794891;
constexpr double kLimitB = 0.9999999999999964;

bool is_sphere(double e2) { return e2 < kTol; }
int constants_count(double e2) { return is_sphere(e2) ? kSphereCount : kEllipsoidCount; }

double clamp_to(double value, double limit, double bound) {
  const double magnitude = std::fabs(value);
  if (magnitude == limit || std::fabs(magnitude - limit) <= kTol * (1.0 + (limit + magnitude) / 2.0)) {
    return std::copysign(bound, value);
  }
  return value;
}

int ellipsoid_constants(ko_constants *constants, const double *sph, const double *parms) {
  Owned<double> d(alloc_array<double>(kEllipsoidCount, "gauss_kruger"));
  if (!d) return -1;
  double *v = d.get();
  const double a = sph[0];
  const double e2 = sph[1];
  const double k0 = parms[kScaleFactor];
  const double phi0 = parms[kLatitudeOfOrigin];
  const double n = third_flattening(e2);

  ko_mu_rectifying_constants(e2, v + kRectCoef);
  v[kEp2] = e2 / (1.0 - e2);
  v[kMu0] = ko_phi_to_mu_wconst(v + kRectCoef, e2, phi0);
  v[kRectRadius] = ko_rect_r(a, e2);
  v[kAxis] = a;
  v[kE2] = e2;
  v[kK0] = k0;
  for (int j = 0; j < kOrder; ++j) {
    v[kAlpha + j] = series_term(kAlphaPoly[j], n, kOrder);
    v[kBeta + j] = series_term(kBetaPoly[j], n, kOrder);
    v[kChi + j] = series_term(kChiPoly[j], n, kOrder);
    v[kPhi + j] = series_term(kPhiPoly[j], n, kOrder);
  }
  v[kN] = n;
  v[kScale] = k0 * v[kRectRadius];
  v[kInvScale] = 1.0 / v[kScale];
  v[kPhi0] = phi0;
  return store_constants(constants, std::move(d), kEllipsoidCount);
}

using simd::ScalarMath;
using simd::Sleef4;

#include "projections/gauss_kruger_kernels.h"

#if KO_SIMD_AVX2
#pragma GCC push_options
#pragma GCC target("avx2,fma")
using simd::Avx2Math;

namespace avx2 {
#include "projections/gauss_kruger_kernels.h"
}  // namespace avx2

// The four-wide loops, compiled for AVX2; they return how many points they
// did (a multiple of four), the rest is left to the scalar loop.
int forward_avx2(const Sleef4 *fn, const double *d, double lam0, int n, double *coords) {
  const Avx2Math math{fn};
  int i = 0;
  for (; i + 4 <= n; i += 4) avx2::forward_points(math, d, lam0, coords + 2 * i);
  return i;
}

int inverse_avx2(const Sleef4 *fn, const double *d, double lam0, int n, double *coords) {
  const Avx2Math math{fn};
  int i = 0;
  for (; i + 4 <= n; i += 4) avx2::inverse_points(math, d, lam0, coords + 2 * i);
  return i;
}

#pragma GCC pop_options
#else
// Scalar-only builds never reach the four-wide loops (sleef4() is null).
int forward_avx2(const Sleef4 *, const double *, double, int, double *) { return 0; }
int inverse_avx2(const Sleef4 *, const double *, double, int, double *) { return 0; }
#endif  // KO_SIMD_AVX2

// Four points at a time when SLEEF's AVX2 functions are there, else one at
// a time on the C library (point(math, p) converts the point at p).
template <class Point>
int ellipsoid_points(int (*loop)(const Sleef4 *, const double *, double, int, double *), Point point,
                     const double *parms, int n, double *coords, const double *d) {
  const double lam0 = parms[kCentralMeridian];
  if (const Sleef4 *fn = simd::sleef4()) {
    simd::run_four_wide([=](const Sleef4 *f, int m, double *c) { return loop(f, d, lam0, m, c); }, fn, n,
                        coords);
    return n;
  }
  const ScalarMath math;
  for (int i = 0; i < n; ++i) point(math, d, lam0, coords + 2 * i);
  return n;
}

int ellipsoid_forward(const double *parms, int n, double *coords, const double *d) {
  const auto point = [](const ScalarMath &m, const double *dv, double lam0, double *p) {
    forward_points(m, dv, lam0, p);
  };
  return ellipsoid_points(forward_avx2, point, parms, n, coords, d);
}

int ellipsoid_inverse(const double *parms, int n, double *coords, const double *d) {
  const auto point = [](const ScalarMath &m, const double *dv, double lam0, double *p) {
    inverse_points(m, dv, lam0, p);
  };
  return ellipsoid_points(inverse_avx2, point, parms, n, coords, d);
}

}  // namespace

int store_constants(ko_constants *constants, Owned<double> dvals, int count) {
  int32_t *ivals = alloc_array<int32_t>(2, "tm_constants");
  if (ivals == nullptr) return -1;
  ivals[0] = 2;
  ivals[1] = count;
  ko_constants_ivals_set(constants, ivals);
  ko_constants_dvals_set(constants, dvals.release());
  return count;
}

int sphere_constants(ko_constants *constants, const double *sph, const double *parms) {
  Owned<double> d(alloc_array<double>(kSphereCount, "tm_sphere"));
  if (!d) return -1;
  d.get()[0] = sph[0] * parms[kScaleFactor];
  d.get()[1] = d.get()[0] / 2.0;
  return store_constants(constants, std::move(d), kSphereCount);
}

// Spherical forward, as the classical closed form (Snyder 1987, eqs. 8-1, 8-3)
// with the pole and the 90-degree points moved just inside so that every
// point gives finite numbers.
int sphere_forward(const double *parms, int n, double *coords, const double *dvals) {
  const double lam0 = parms[kCentralMeridian];
  const double phi0 = parms[kLatitudeOfOrigin];
  const double ak0 = dvals[0];
  const double half_ak0 = dvals[1];
  for (int i = 0; i < n; ++i) {
    double *p = coords + 2 * i;
    // 0, or NaN when a coordinate is not finite (an infinite latitude would
    // otherwise pass the pole test below)
    const double poison = 0.0 * p[0] * p[1];
    const double lam = ko_delta(p[0] - lam0);
    const double phi = clamp_to(p[1], kHalfPi, kPoleLatitude);
    const double b = clamp_to(std::cos(phi) * std::sin(lam), 1.0, kLimitB);
    p[0] = std::log((1.0 + b) / (1.0 - b)) * half_ak0 + poison;
    p[1] = (std::atan2(std::tan(phi), std::cos(lam)) - phi0) * ak0 + poison;
  }
  return n;
}

// Spherical inverse (Snyder 1987, eqs. 8-6, 8-7), written with atan2 so that
// latitudes near the poles keep their precision.
int sphere_inverse(const double *parms, int n, double *coords, const double *dvals) {
  const double lam0 = parms[kCentralMeridian];
  const double phi0 = parms[kLatitudeOfOrigin];
  const double inv_ak0 = 1.0 / dvals[0];
  for (int i = 0; i < n; ++i) {
    double *p = coords + 2 * i;
    // 0, or NaN when a coordinate is not finite (atan2 would give a finite
    // angle for an infinite easting)
    const double poison = 0.0 * p[0] * p[1];
    const double d = p[1] * inv_ak0 + phi0;
    const double sh = std::sinh(p[0] * inv_ak0);
    const double cd = std::cos(d);
    p[1] = std::atan2(std::sin(d), std::hypot(sh, cd)) + poison;
    p[0] = ko_delta(std::atan2(sh, cd) + lam0) + poison;
  }
  return n;
}

}  // namespace ko::tm

namespace {

using namespace ko::tm;

int gk_constants(ko_constants *constants, const double *sph, const double *parms) {
  if (!ko_constants_p(constants) || sph == nullptr || parms == nullptr) return -1;
  return is_sphere(sph[1]) ? sphere_constants(constants, sph, parms)
                           : ellipsoid_constants(constants, sph, parms);
}

int gk_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
               const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(gk_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(true, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_forward(parms, n, coords, d) : ellipsoid_forward(parms, n, coords, d);
    });
  });
}

int gk_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
               const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(gk_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(false, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_inverse(parms, n, coords, d) : ellipsoid_inverse(parms, n, coords, d);
    });
  });
}

int gk_valid(ko_parameter *const *parms, const char *name, ko_err *err) {
  return check_tm_parameters(parms, name, err);
}

// Transverse_Mercator is Gauss_Kruger under another code: its slots hand on
// to the Gauss_Kruger vector's.
int tm_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
               const double *dvals) {
  return ko_prj_gauss_kruger_vector.forward(sph, parms, n, coords, ivals, dvals);
}
int tm_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
               const double *dvals) {
  return ko_prj_gauss_kruger_vector.inverse(sph, parms, n, coords, ivals, dvals);
}
int tm_constants(ko_constants *constants, const double *sph, const double *parms) {
  return ko_prj_gauss_kruger_vector.constfunc(constants, sph, parms);
}
int tm_valid(ko_parameter *const *parms, const char *name, ko_err *err) {
  return ko_prj_gauss_kruger_vector.validfunc(parms, name, err);
}

}  // namespace

extern "C" KO_API const ko_projlist_entry ko_prj_gauss_kruger_vector = {
    43005, "Gauss_Kruger", gk_forward, gk_inverse, gk_constants, gk_valid, nullptr, nullptr};

extern "C" KO_API const ko_projlist_entry ko_prj_transverse_mercator_vector = {
    43006, "Transverse_Mercator", tm_forward, tm_inverse, tm_constants, tm_valid, nullptr, nullptr};
