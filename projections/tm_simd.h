// Four-wide double arithmetic for the Transverse Mercator kernels: SLEEF's
// AVX2 functions (1-ulp sin/cos, atan2, log1p, expm1), loaded at run time
// from libsleef.so.3 when the processor has AVX2 and FMA.  Without them the
// kernels run their scalar form on the C library's functions, so the library
// runs on any x86-64 and needs SLEEF only for speed.
#pragma once

namespace ko::tm {

typedef double v4d __attribute__((vector_size(32)));

// Layout of SLEEF's Sleef___m256d_2: the sines, then the cosines.
struct v4d_pair {
  v4d sin;
  v4d cos;
};

struct SleefAvx2 {
  v4d_pair (*sincos)(v4d);
  v4d (*atan2)(v4d, v4d);
  v4d (*log1p)(v4d);
  v4d (*expm1)(v4d);
};

// The functions, or null when the processor or the library does not offer
// them (or when vector kernels are switched off).  Loaded once.
const SleefAvx2 *sleef_avx2();

// Switches the vector kernels off (false) or back on; for tests that check
// both forms.  Not thread-safe: call it before converting points.
void set_vector_kernels(bool enabled);

}  // namespace ko::tm
