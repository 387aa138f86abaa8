// Four-wide double arithmetic for the projection kernels: SLEEF's 1-ulp AVX2
// functions (sincos, atan2, log, log1p, exp, expm1), loaded at run time from
// libsleef.so.3 when the processor has AVX2 and FMA.  Without them the
// kernels run their scalar form on the C library's functions, so the
// library runs on any x86-64 and needs SLEEF only for speed.
//
// A kernel is written once, as a template on a math policy: ScalarMath (one
// point, V = double) or Avx2Math (four points, V = four doubles).  The
// four-wide loops are compiled for AVX2 inside the region marked below, and
// everything they call is always inlined into them, so that no vector
// argument crosses a call in the generic ABI (which -Wpsabi warns about).
#pragma once

#include "foundation/internal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#define KO_SIMD_INLINE [[gnu::always_inline]] inline

// The four-wide kernels are compiled by GCC on x86-64, whose target pragma
// compiles one region for AVX2 while the rest of the file stays generic.
// Other compilers (clang builds the fuzz targets) get the scalar path only:
// sleef4() returns null there and the four-wide loops are never called.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define KO_SIMD_AVX2 1
#else
#define KO_SIMD_AVX2 0
#endif

namespace ko::simd {

typedef double v4d __attribute__((vector_size(32)));
typedef long long v4l __attribute__((vector_size(32)));

// Layout of SLEEF's Sleef___m256d_2: the sines, then the cosines.
struct v4d_pair {
  v4d sin;
  v4d cos;
};

struct Sleef4 {
  v4d_pair (*sincos)(v4d);
  v4d (*atan2)(v4d, v4d);
  v4d (*log)(v4d);
  v4d (*log1p)(v4d);
  v4d (*exp)(v4d);
  v4d (*expm1)(v4d);
};

// The functions, or null when the processor or the library does not offer
// them (or when vector kernels are switched off).  Loaded once.
const Sleef4 *sleef4();

// Switches the vector kernels off (false) or back on; for tests and
// benchmarks that check both forms.  Not thread-safe: call it before
// converting points.
void set_vector_kernels(bool enabled);

// A longitude wrapped as ko_delta wraps it; the common in-range case needs
// no call.
inline double wrap_longitude(double angle) {
  return (angle >= -kPi && angle <= kPi) ? angle : ko_delta(angle);
}

// One point at a time on the C library.  Masks are bools.
struct ScalarMath {
  using V = double;
  using Mask = bool;
  static constexpr int kWidth = 1;
  static void load(const double *p, V &x, V &y) {
    x = p[0];
    y = p[1];
  }
  static void store(double *p, V x, V y) {
    p[0] = x;
    p[1] = y;
  }
  static void sincos(V a, V &s, V &c) {
    s = std::sin(a);
    c = std::cos(a);
  }
  static V atan2(V y, V x) { return std::atan2(y, x); }
  static V log(V a) { return std::log(a); }
  static V log1p(V a) { return std::log1p(a); }
  static V exp(V a) { return std::exp(a); }
  static V expm1(V a) { return std::expm1(a); }
  static V sqrt(V a) { return std::sqrt(a); }
  static V abs(V a) { return std::fabs(a); }
  static V wrap(V a) { return wrap_longitude(a); }
  static V splat(double a) { return a; }
  static V select(Mask m, V a, V b) { return m ? a : b; }
  static Mask both(Mask a, Mask b) { return a && b; }
  static int count(Mask m) { return m ? 1 : 0; }
};

#if KO_SIMD_AVX2
#pragma GCC push_options
#pragma GCC target("avx2,fma")

// Four points at a time on SLEEF's AVX2 functions; for the functions
// compiled for AVX2, into which everything is inlined.  Masks have all bits
// set in the lanes where a comparison holds.
struct Avx2Math {
  using V = v4d;
  using Mask = v4l;
  static constexpr int kWidth = 4;
  const Sleef4 *fn;
  KO_SIMD_INLINE static void load(const double *p, V &x, V &y) {
    x = V{p[0], p[2], p[4], p[6]};
    y = V{p[1], p[3], p[5], p[7]};
  }
  KO_SIMD_INLINE static void store(double *p, V x, V y) {
    for (int k = 0; k < 4; ++k) {
      p[2 * k] = x[k];
      p[2 * k + 1] = y[k];
    }
  }
  KO_SIMD_INLINE void sincos(V a, V &s, V &c) const {
    const v4d_pair r = fn->sincos(a);
    s = r.sin;
    c = r.cos;
  }
  KO_SIMD_INLINE V atan2(V y, V x) const { return fn->atan2(y, x); }
  KO_SIMD_INLINE V log(V a) const { return fn->log(a); }
  KO_SIMD_INLINE V log1p(V a) const { return fn->log1p(a); }
  KO_SIMD_INLINE V exp(V a) const { return fn->exp(a); }
  KO_SIMD_INLINE V expm1(V a) const { return fn->expm1(a); }
  KO_SIMD_INLINE static V sqrt(V a) { return __builtin_ia32_sqrtpd256(a); }
  KO_SIMD_INLINE static V abs(V a) { return a < 0.0 ? -a : a; }
  // Lanes outside [-pi, pi] (rare) are wrapped one by one.
  KO_SIMD_INLINE static V wrap(V a) {
    const Mask outside = (a < -kPi) | (a > kPi);
    if (outside[0] | outside[1] | outside[2] | outside[3]) {
      for (int k = 0; k < 4; ++k) a[k] = wrap_longitude(a[k]);
    }
    return a;
  }
  KO_SIMD_INLINE static V splat(double a) { return V{a, a, a, a}; }
  KO_SIMD_INLINE static V select(Mask m, V a, V b) { return m ? a : b; }
  KO_SIMD_INLINE static Mask both(Mask a, Mask b) { return a & b; }
  KO_SIMD_INLINE static int count(Mask m) { return static_cast<int>(-(m[0] + m[1] + m[2] + m[3])); }
};

#pragma GCC pop_options
#endif  // KO_SIMD_AVX2

// Runs a four-wide loop over the whole array: loop(fn, n, coords) converts
// the points in groups of four and returns how many it did; the last one to
// three points go through it in a padded block, so that a point's result
// does not depend on its place in the array.
template <class Loop>
void run_four_wide(Loop loop, const Sleef4 *fn, int n, double *coords) {
  const int done = loop(fn, n, coords);
  const int rest = n - done;
  if (rest > 0) {
    double block[8] = {};
    std::copy(coords + 2 * done, coords + 2 * n, block);
    loop(fn, 4, block);
    std::copy(block, block + 2 * rest, coords + 2 * done);
  }
}

// Defines name(fn, k, args, n, coords), the four-wide loop of a block
// kernel kernel(math, k, args, p) that converts the four points at p with
// the constants k and the per-call arguments args; it returns how many
// points it did (a multiple of four).  The loop is compiled for AVX2; the
// kernel is one of the copies simd_kernels.inc compiles so.
#if KO_SIMD_AVX2
#define KO_SIMD_FOUR_WIDE(name, K, Args, kernel)                                         \
  __attribute__((target("avx2,fma"))) int name(const ::ko::simd::Sleef4 *fn, const K &k,  \
                                               const Args &args, int n, double *coords) { \
    const ::ko::simd::Avx2Math math{fn};                                                  \
    int i = 0;                                                                            \
    for (; i + 4 <= n; i += 4) kernel(math, k, args, coords + 2 * i);                     \
    return i;                                                                             \
  }
#else
// Without the AVX2 region the four-wide loop is never reached (sleef4() is
// null); it converts nothing.
#define KO_SIMD_FOUR_WIDE(name, K, Args, kernel) \
  int name(const ::ko::simd::Sleef4 *, const K &, const Args &, int, double *) { return 0; }
#endif

// Points converted by a kernel that marks the others with HUGE_VAL.
inline int converted(std::span<const double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) count += xy[i] != HUGE_VAL ? 1 : 0;
  return count;
}

// Runs a block kernel over all points: four at a time when SLEEF's AVX2
// functions are there and `vector` allows (four: the loop made by
// KO_SIMD_FOUR_WIDE), else one at a time on the C library
// (one(math, k, args, p)).  Returns the points converted.
template <class K, class Args, class One>
int run_blocks(int (*four)(const Sleef4 *, const K &, const Args &, int, double *), One one,
               const K &k, const Args &args, bool vector, std::span<double> xy) {
  const int n = static_cast<int>(xy.size() / 2);
  const Sleef4 *fn = vector ? sleef4() : nullptr;
  if (fn != nullptr) {
    run_four_wide([&](const Sleef4 *f, int m, double *c) { return four(f, k, args, m, c); }, fn, n,
                  xy.data());
  } else {
    const ScalarMath math;
    for (int i = 0; i < n; ++i) one(math, k, args, xy.data() + 2 * i);
  }
  return converted(xy);
}

}  // namespace ko::simd
