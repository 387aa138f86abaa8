// Carlson's symmetric elliptic integrals and the complete elliptic integrals
// built on them.
//
// The duplication algorithms and their truncated Taylor series follow
// B. C. Carlson, "Numerical computation of real or complex elliptic
// integrals", Numerical Algorithms 10 (1995) 13-26 (also DLMF §19.36).  Each
// duplication step quarters the spread of the arguments; iteration stops when
// the neglected sixth-order terms fall below kTolerance relative, so the
// series error is far below one unit in the last place.
#include "projections/elliptic.h"

#include "foundation/internal.h"

#include <algorithm>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
// Carlson's r: bound on the relative error of the truncated series.
template <class T>
constexpr T kTolerance = std::numeric_limits<T>::epsilon() / 2;

constexpr int kMaxSteps = 64;  // the spread falls by 4 per step: never reached

template <class T>
T max_abs_dev(T mean, std::initializer_list<T> values) {
  T q = 0;
  for (T v : values) q = std::max(q, std::fabs(mean - v));
  return q;
}

// Carlson (1995) eq. 2.2-2.3: duplication of RF.
template <class T>
T rf_duplication(T x, T y, T z) {
  const T x0 = x, y0 = y;
  const T a0 = (x + y + z) / 3;
  T a = a0;
  T q = std::pow(3 * kTolerance<T>, T(-1) / 6) * max_abs_dev<T>(a0, {x, y, z});
  T scale = 1;  // 4^-m
  for (int m = 0; m < kMaxSteps && q * scale >= std::fabs(a); ++m) {
    const T sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const T lambda = sx * sy + sx * sz + sy * sz;
    a = (a + lambda) / 4;
    x = (x + lambda) / 4;
    y = (y + lambda) / 4;
    z = (z + lambda) / 4;
    scale /= 4;
  }
  // X_m = (A_m - x_m)/A_m = (A_0 - x_0)/(4^m A_m), free of cancellation.
  const T xd = (a0 - x0) * scale / a, yd = (a0 - y0) * scale / a, zd = -(xd + yd);
  const T e2 = xd * yd - zd * zd, e3 = xd * yd * zd;
  return (1 - e2 / 10 + e3 / 14 + e2 * e2 / 24 - 3 * e2 * e3 / 44) / std::sqrt(a);
}

// Carlson (1995) eq. 2.28-2.29: the common series of RD and RJ.
template <class T>
T rd_rj_series(T e2, T e3, T e4, T e5) {
  return 1 - 3 * e2 / 14 + e3 / 6 + 9 * e2 * e2 / 88 - 3 * e4 / 22 - 9 * e2 * e3 / 52 +
         3 * e5 / 26;
}

template <class T>
T rd_duplication(T x, T y, T z) {
  const T x0 = x, y0 = y;
  const T a0 = (x + y + 3 * z) / 5;
  T a = a0;
  T q = std::pow(kTolerance<T> / 4, T(-1) / 6) * max_abs_dev<T>(a0, {x, y, z});
  T scale = 1, sum = 0;
  for (int m = 0; m < kMaxSteps && q * scale >= std::fabs(a); ++m) {
    const T sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const T lambda = sx * sy + sx * sz + sy * sz;
    sum += scale / (sz * (z + lambda));
    a = (a + lambda) / 4;
    x = (x + lambda) / 4;
    y = (y + lambda) / 4;
    z = (z + lambda) / 4;
    scale /= 4;
  }
  const T xd = (a0 - x0) * scale / a, yd = (a0 - y0) * scale / a, zd = -(xd + yd) / 3;
  const T xy = xd * yd, zz = zd * zd;
  const T e2 = xy - 6 * zz, e3 = (3 * xy - 8 * zz) * zd, e4 = 3 * (xy - zz) * zz,
          e5 = xy * zz * zd;
  return scale * std::pow(a, T(-1.5)) * rd_rj_series(e2, e3, e4, e5) + 3 * sum;
}

// RC(1, 1 + e) from e itself: forming 1 + e first would lose the low bits of
// a small e.
double rc_one_plus(double e) {
  if (e > 0) {
    const double r = std::sqrt(e);
    return std::atan(r) / r;
  }
  if (e < 0) return std::asinh(std::sqrt(-e / (1 + e))) / std::sqrt(-e);
  return 1;
}

// Carlson (1995) eqs. 2.36-2.39.  When p is tiny against the largest of
// x, y, z, e_m comes close to -1 and RC(1, 1 + e_m) loses digits (as in every
// implementation of this algorithm); the arguments met in this library
// (complete integrals, spheroids) are far from that corner.
double rj_duplication(double x, double y, double z, double p) {
  const double x0 = x, y0 = y, z0 = z;
  const double a0 = (x + y + z + 2 * p) / 5;
  const double delta = (p - x) * (p - y) * (p - z);
  double a = a0;
  double q = std::pow(kTolerance<double> / 4, -1.0 / 6) * max_abs_dev(a0, {x, y, z, p});
  double scale = 1, sum = 0;
  for (int m = 0; m < kMaxSteps && q * scale >= std::fabs(a); ++m) {
    const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z), sp = std::sqrt(p);
    const double lambda = sx * sy + sx * sz + sy * sz;
    const double d = (sp + sx) * (sp + sy) * (sp + sz);
    sum += scale / d * rc_one_plus(delta * scale * scale * scale / (d * d));
    a = (a + lambda) / 4;
    x = (x + lambda) / 4;
    y = (y + lambda) / 4;
    z = (z + lambda) / 4;
    p = (p + lambda) / 4;
    scale /= 4;
  }
  const double xd = (a0 - x0) * scale / a, yd = (a0 - y0) * scale / a, zd = (a0 - z0) * scale / a;
  const double pd = -(xd + yd + zd) / 2;
  const double xyz = xd * yd * zd, pp = pd * pd;
  const double e2 = xd * yd + xd * zd + yd * zd - 3 * pp;
  const double e3 = xyz + 2 * e2 * pd + 4 * pp * pd;
  const double e4 = (2 * xyz + e2 * pd + 3 * pp * pd) * pd;
  const double e5 = xyz * pp;
  return scale * std::pow(a, -1.5) * rd_rj_series(e2, e3, e4, e5) + 6 * sum;
}

int zero_count(double x, double y, double z) { return (x == 0) + (y == 0) + (z == 0); }

}  // namespace

namespace ko {

// Arguments already checked by the caller: x, y, z finite, >= 0, at most one
// zero (RD: z > 0).
long double rf_extended(long double x, long double y, long double z) {
  return rf_duplication(x, y, z);
}
long double rd_extended(long double x, long double y, long double z) {
  return rd_duplication(x, y, z);
}

}  // namespace ko

extern "C" {

// RF(x, y, z) = 1/2 ∫ dt / sqrt((t+x)(t+y)(t+z)); x, y, z ≥ 0, at most one zero.
double ko_rf(double x, double y, double z) {
  if (!(x >= 0 && y >= 0 && z >= 0)) return kNaN;
  if (zero_count(x, y, z) > 1) return kInf;
  if (std::isinf(x) || std::isinf(y) || std::isinf(z)) return 0;
  return rf_duplication(x, y, z);
}

// RD(x, y, z) = RJ(x, y, z, z); x, y ≥ 0 with at most one zero, z > 0.
double ko_rd(double x, double y, double z) {
  if (!(x >= 0 && y >= 0 && z >= 0)) return kNaN;
  if (z == 0 || x + y == 0) return kInf;
  if (std::isinf(x) || std::isinf(y) || std::isinf(z)) return 0;
  return rd_duplication(x, y, z);
}

// RC(x, y) = RF(x, y, y), in closed form (DLMF 19.2.18-19.2.19) written with
// atan and asinh, which keep full precision for any ratio x/y; y < 0 gives the
// Cauchy principal value (DLMF 19.2.20).
double ko_rc(double x, double y) {
  if (!(x >= 0) || std::isnan(y)) return kNaN;
  if (y == 0) return kInf;
  if (y < 0) return std::sqrt(x / (x - y)) * ko_rc(x - y, -y);
  if (std::isinf(x) || std::isinf(y)) return 0;
  if (x < y) return std::atan(std::sqrt((y - x) / x)) / std::sqrt(y - x);
  if (x > y) return std::asinh(std::sqrt((x - y) / y)) / std::sqrt(x - y);
  return 1 / std::sqrt(y);
}

// RJ(x, y, z, p) = 3/2 ∫ dt / ((t+p) sqrt((t+x)(t+y)(t+z))) for p > 0; the
// principal value for p < 0 is not provided (NaN).
double ko_rj(double x, double y, double z, double p) {
  if (!(x >= 0 && y >= 0 && z >= 0 && p >= 0)) return kNaN;
  if (p == 0 || zero_count(x, y, z) > 1) return kInf;
  if (std::isinf(x) || std::isinf(y) || std::isinf(z) || std::isinf(p)) return 0;
  return rj_duplication(x, y, z, p);
}

// K(m) = RF(0, 1 - m, 1) (DLMF 19.25.1); m < 1, infinite at m = 1.
double ko_ellint1(double m) {
  if (!(m <= 1)) return kNaN;
  return ko_rf(0, 1 - m, 1);
}

// E(m) = RF(0, k'², 1) - m/3 RD(0, k'², 1), k'² = 1 - m (DLMF 19.25.1).  For
// m > 0 the difference cancels (by a factor 3.6 at m = 0.99); the equivalent
// sum of positive terms k'²/3 (RD(0, k'², 1) + RD(0, 1, k'²)) of the same
// equation is used there instead.  E(1) = 1.
double ko_ellint2(double m) {
  if (!(m <= 1)) return kNaN;
  if (m == 1) return 1;
  const double kp2 = 1 - m;
  if (m > 0) return kp2 / 3 * (ko_rd(0, kp2, 1) + ko_rd(0, 1, kp2));
  return ko_rf(0, kp2, 1) - m / 3 * ko_rd(0, kp2, 1);
}

// Π(n|m) = K(m) + n/3 RJ(0, 1 - m, 1, 1 - n) (DLMF 19.25.2) for n < 1, m < 1;
// infinite at n = 1 or m = 1, NaN beyond.
double ko_ellint3(double n, double m) {
  if (!(m <= 1 && n <= 1)) return kNaN;
  if (n == 1 || m == 1) return kInf;
  if (n == 0) return ko_ellint1(m);
  return ko_ellint1(m) + n / 3 * ko_rj(0, 1 - m, 1, 1 - n);
}

}  // extern "C"
