// Internal helpers of the Transverse Mercator family (gauss_kruger.cpp,
// transverse_mercator_complex.cpp, transverse_mercator_nga_2014.cpp).
//
// Krüger's series (Krüger 1912, extended by C. F. F. Karney, "Transverse
// Mercator with an accuracy of a few nanometers", J. Geodesy 85, 2011):
//   forward  xi + i eta   = zeta' + sum alpha_j sin(2j zeta'),  zeta' = xi' + i eta'
//   inverse  xi' + i eta' = zeta  - sum beta_j  sin(2j zeta),   zeta  = xi  + i eta
// where zeta' is the spherical transverse Mercator of the conformal latitude
// and zeta the ellipsoidal one divided by the rectifying radius.  Two real
// series convert between the geodetic latitude phi and the conformal latitude
// chi.  All four sets of coefficients are polynomials in the third flattening
// n = f / (2 - f); the tables hold their rational coefficients to n^8, derived
// at high precision by scripts/tm_series.py (the terms to n^6 agree with
// Karney 2011, eqs. 35-36).
#pragma once

#include "foundation/internal.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <span>

namespace ko::tm {

inline constexpr int kMaxOrder = 8;

// Row j - 1 holds the coefficients of n^0 .. n^8 of the j-th series term.
inline constexpr double kAlphaPoly[kMaxOrder][kMaxOrder + 1] = {
    {0, 1.0 / 2, -2.0 / 3, 5.0 / 16, 41.0 / 180, -127.0 / 288, 7891.0 / 37800, 72161.0 / 387072, -18975107.0 / 50803200},
    {0, 0, 13.0 / 48, -3.0 / 5, 557.0 / 1440, 281.0 / 630, -1983433.0 / 1935360, 13769.0 / 28800, 148003883.0 / 174182400},
    {0, 0, 0, 61.0 / 240, -103.0 / 140, 15061.0 / 26880, 167603.0 / 181440, -67102379.0 / 29030400, 79682431.0 / 79833600},
    {0, 0, 0, 0, 49561.0 / 161280, -179.0 / 168, 6601661.0 / 7257600, 97445.0 / 49896, -40176129013.0 / 7664025600},
    {0, 0, 0, 0, 0, 34729.0 / 80640, -3418889.0 / 1995840, 14644087.0 / 9123840, 2605413599.0 / 622702080},
    {0, 0, 0, 0, 0, 0, 212378941.0 / 319334400, -30705481.0 / 10378368, 175214326799.0 / 58118860800},
    {0, 0, 0, 0, 0, 0, 0, 1522256789.0 / 1383782400, -16759934899.0 / 3113510400},
    {0, 0, 0, 0, 0, 0, 0, 0, 1424729850961.0 / 743921418240},
};
inline constexpr double kBetaPoly[kMaxOrder][kMaxOrder + 1] = {
    {0, 1.0 / 2, -2.0 / 3, 37.0 / 96, -1.0 / 360, -81.0 / 512, 96199.0 / 604800, -5406467.0 / 38707200, 7944359.0 / 67737600},
    {0, 0, 1.0 / 48, 1.0 / 15, -437.0 / 1440, 46.0 / 105, -1118711.0 / 3870720, 51841.0 / 1209600, 24749483.0 / 348364800},
    {0, 0, 0, 17.0 / 480, -37.0 / 840, -209.0 / 4480, 5569.0 / 90720, 9261899.0 / 58060800, -6457463.0 / 17740800},
    {0, 0, 0, 0, 4397.0 / 161280, -11.0 / 504, -830251.0 / 7257600, 466511.0 / 2494800, 324154477.0 / 7664025600},
    {0, 0, 0, 0, 0, 4583.0 / 161280, -108847.0 / 3991680, -8005831.0 / 63866880, 22894433.0 / 124540416},
    {0, 0, 0, 0, 0, 0, 20648693.0 / 638668800, -16363163.0 / 518918400, -2204645983.0 / 12915302400},
    {0, 0, 0, 0, 0, 0, 0, 219941297.0 / 5535129600, -497323811.0 / 12454041600},
    {0, 0, 0, 0, 0, 0, 0, 0, 191773887257.0 / 3719607091200},
};
inline constexpr double kChiPoly[kMaxOrder][kMaxOrder + 1] = {
    {0, -2.0, 2.0 / 3, 4.0 / 3, -82.0 / 45, 32.0 / 45, 4642.0 / 4725, -8384.0 / 4725, 1514.0 / 1323},
    {0, 0, 5.0 / 3, -16.0 / 15, -13.0 / 9, 904.0 / 315, -1522.0 / 945, -2288.0 / 1575, 142607.0 / 42525},
    {0, 0, 0, -26.0 / 15, 34.0 / 21, 8.0 / 5, -12686.0 / 2835, 44644.0 / 14175, 120202.0 / 51975},
    {0, 0, 0, 0, 1237.0 / 630, -12.0 / 5, -24832.0 / 14175, 1077964.0 / 155925, -1097407.0 / 187110},
    {0, 0, 0, 0, 0, -734.0 / 315, 109598.0 / 31185, 1040.0 / 567, -12870194.0 / 1216215},
    {0, 0, 0, 0, 0, 0, 444337.0 / 155925, -941912.0 / 184275, -126463.0 / 72765},
    {0, 0, 0, 0, 0, 0, 0, -2405834.0 / 675675, 3463678.0 / 467775},
    {0, 0, 0, 0, 0, 0, 0, 0, 256663081.0 / 56756700},
};
inline constexpr double kPhiPoly[kMaxOrder][kMaxOrder + 1] = {
    {0, 2.0, -2.0 / 3, -2.0, 116.0 / 45, 26.0 / 45, -2854.0 / 675, 16822.0 / 4725, 189416.0 / 99225},
    {0, 0, 7.0 / 3, -8.0 / 5, -227.0 / 45, 2704.0 / 315, 2323.0 / 945, -31256.0 / 1575, 141514.0 / 8505},
    {0, 0, 0, 56.0 / 15, -136.0 / 35, -1262.0 / 105, 73814.0 / 2835, 98738.0 / 14175, -2363828.0 / 31185},
    {0, 0, 0, 0, 4279.0 / 630, -332.0 / 35, -399572.0 / 14175, 11763988.0 / 155925, 14416399.0 / 935550},
    {0, 0, 0, 0, 0, 4174.0 / 315, -144838.0 / 6237, -2046082.0 / 31185, 258316372.0 / 1216215},
    {0, 0, 0, 0, 0, 0, 601676.0 / 22275, -115444544.0 / 2027025, -2155215124.0 / 14189175},
    {0, 0, 0, 0, 0, 0, 0, 38341552.0 / 675675, -170079376.0 / 1216215},
    {0, 0, 0, 0, 0, 0, 0, 0, 1383243703.0 / 11351340},
};

// The j-th coefficient (1-based row) of a table, truncated after n^order.
inline double series_term(const double (&row)[kMaxOrder + 1], double n, int order) {
  double sum = 0.0;
  for (int k = order; k >= 0; --k) sum = sum * n + row[k];
  return sum;
}

// Third flattening from e², without cancellation: n = e² / (1 + sqrt(1 - e²))².
inline double third_flattening(double e2) {
  const double s = 1.0 + std::sqrt(1.0 - e2);
  return e2 / (s * s);
}

// The series helpers below are templates on the value type T: a double, or
// a vector of doubles (GCC vector extensions) in the four-wide kernels, into
// which they are always inlined.
#define KO_TM_INLINE [[gnu::always_inline]] inline

// sum c[j] sin(2(j+1)x), j < N, by Clenshaw's recurrence from sin 2x, cos 2x.
template <int N, class T>
KO_TM_INLINE T sine_series(const double *c, T sin2x, T cos2x) {
  const T k = 2.0 * cos2x;
  T b1 = k * 0.0, b2 = k * 0.0;
  for (int j = N - 1; j >= 0; --j) {
    const T b0 = k * b1 - b2 + c[j];
    b2 = b1;
    b1 = b0;
  }
  return b1 * sin2x;
}

// sum c[j] sin(2(j+1)(x + iy)), j < N, by Clenshaw's recurrence in complex
// arithmetic written out in reals: the result is (real part, imaginary part).
// Needs sin 2x, cos 2x, sinh 2y, cosh 2y.
template <int N, class T>
KO_TM_INLINE void complex_sine_series(const double *c, T sin2x, T cos2x, T sinh2y, T cosh2y, T &re,
                                      T &im) {
  // 2 cos(2 zeta) = kr + i ki
  const T kr = 2.0 * cos2x * cosh2y;
  const T ki = -2.0 * sin2x * sinh2y;
  T b1r = kr * 0.0, b1i = b1r, b2r = b1r, b2i = b1r;
  for (int j = N - 1; j >= 0; --j) {
    const T b0r = kr * b1r - ki * b1i - b2r + c[j];
    const T b0i = kr * b1i + ki * b1r - b2i;
    b2r = b1r;
    b2i = b1i;
    b1r = b0r;
    b1i = b0i;
  }
  // times sin(2 zeta) = sin2x cosh2y + i cos2x sinh2y
  const T sr = sin2x * cosh2y;
  const T si = cos2x * sinh2y;
  re = b1r * sr - b1i * si;
  im = b1r * si + b1i * sr;
}

// sin and cos of a small angle (|d| < 0.05) by their Taylor series; the
// first omitted terms are below 1e-22.
template <class T>
KO_TM_INLINE void small_sincos(T d, T &s, T &c) {
  const T d2 = d * d;
  s = d * (1.0 - d2 / 6.0 * (1.0 - d2 / 20.0 * (1.0 - d2 / 42.0 * (1.0 - d2 / 72.0))));
  c = 1.0 - d2 / 2.0 * (1.0 - d2 / 12.0 * (1.0 - d2 / 30.0 * (1.0 - d2 / 56.0)));
}

// sinh and cosh of a small argument, by the same series with the signs of
// the even and odd powers of i d.
template <class T>
KO_TM_INLINE void small_sinhcosh(T d, T &sh, T &ch) {
  const T d2 = d * d;
  sh = d * (1.0 + d2 / 6.0 * (1.0 + d2 / 20.0 * (1.0 + d2 / 42.0 * (1.0 + d2 / 72.0))));
  ch = 1.0 + d2 / 2.0 * (1.0 + d2 / 12.0 * (1.0 + d2 / 30.0 * (1.0 + d2 / 56.0)));
}

// Longitude relative to the central meridian, wrapped as ko_delta wraps it;
// the common in-range case needs no call.
inline double wrap_longitude(double angle) {
  return (angle >= -kPi && angle <= kPi) ? angle : ko_delta(angle);
}

// Spherical transverse Mercator, shared by the members of the family.
// dvals: [0] a k0, [1] a k0 / 2.
int sphere_forward(const double *parms, int n, double *coords, const double *dvals);
int sphere_inverse(const double *parms, int n, double *coords, const double *dvals);
// Fills the two spherical constants; returns 2, or -1 when allocation fails.
int sphere_constants(ko_constants *constants, const double *sph, const double *parms);

// The parameter check of every member, in this order: false easting, false
// northing, scale factor and latitude of origin missing are warnings, a
// missing central meridian an error that makes the set invalid (error 347
// each time, naming the parameter).
inline constexpr ParmRule kTmParameterRules[] = {kFalseEasting, kFalseNorthing, kScaleFactor,
                                                 kCentralMeridian, kLatitudeOfOrigin};
inline int check_tm_parameters(ko_parameter *const *parms, const char *name, ko_err *err) {
  return check_parameters(kTmParameterRules, parms, name, err);
}

// Whether a forward or inverse call has points to convert: with no spheroid,
// no parameters, no array or no points there is nothing to do (result 0).
inline bool usable_arguments(const double *sph, const double *parms, int n, const double *coords) {
  return sph != nullptr && parms != nullptr && n > 0 && coords != nullptr;
}

// Runs body(ivals, dvals) with the caller's constants when they hold `count`
// doubles for this spheroid, otherwise with temporary constants made by
// constfunc and deleted afterwards.  Returns 0 when those cannot be made.
template <class Count, class Body>
int with_constants(ko_proj_constfunc constfunc, const double *sph, const double *parms,
                   const int32_t *ivals, const double *dvals, Count expected_count, Body body) {
  const int expected = expected_count(sph[1]);
  if (dvals != nullptr && (ivals == nullptr || ivals[1] == expected)) return body(dvals);
  ko_constants *temporary = ko_constants_new();
  if (temporary == nullptr) return 0;
  int result = 0;
  if (constfunc(temporary, sph, parms) == expected) result = body(ko_constants_dvals(temporary));
  ko_constants_del(temporary);
  return result;
}

// The plane orientation step of the family (X_Scale, Y_Scale and
// XY_Plane_Rotation, slots 12 to 14; ko::proj::PlaneOrientation), as the
// south-orientated Transverse Mercator needs it (EPSG method 9808: X_Scale =
// Y_Scale = -1).  It is decided once per call: the plain case runs the kernel
// as it is, an oriented call turns the whole array in one pass after the
// forward kernel or before the inverse one.  kernel() converts the n points
// and returns its count; 0, with nothing converted, when the orientation
// parameters are not finite.
template <class Kernel>
int oriented(bool forward, const double *parms, int n, double *coords, Kernel kernel) {
  if (proj::plain_orientation(parms)) return kernel();
  proj::PlaneOrientation plane;
  if (!proj::plane_orientation_from_parms(parms, plane)) return 0;
  const std::span<double> xy(coords, static_cast<std::size_t>(n) * 2);
  if (!forward) plane.from_grid(xy);
  const int count = kernel();
  if (forward) plane.to_grid(xy);
  return count;
}

// Stores ivals [2, count] and takes ownership of dvals; -1 (and dvals freed)
// when the integer array cannot be allocated.
int store_constants(ko_constants *constants, Owned<double> dvals, int count);

}  // namespace ko::tm
