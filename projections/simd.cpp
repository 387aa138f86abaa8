// Run-time loading of SLEEF's AVX2 functions for the projection kernels
// (see simd.h).
#include "projections/simd.h"

#include <dlfcn.h>

namespace ko::simd {
namespace {

template <class F>
bool bind(void *library, const char *symbol, F &slot) {
  void *address = dlsym(library, symbol);
  slot = reinterpret_cast<F>(address);
  return address != nullptr;
}

const Sleef4 *load() {
#if !KO_SIMD_AVX2
  return nullptr;  // no four-wide kernels compiled
#else
  static Sleef4 functions;
  __builtin_cpu_init();
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma")) return nullptr;
  void *library = dlopen("libsleef.so.3", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  // The library stays loaded for the life of the process.
  const bool ok = bind(library, "Sleef_sincosd4_u10avx2", functions.sincos) &&
                  bind(library, "Sleef_atan2d4_u10avx2", functions.atan2) &&
                  bind(library, "Sleef_logd4_u10avx2", functions.log) &&
                  bind(library, "Sleef_log1pd4_u10avx2", functions.log1p) &&
                  bind(library, "Sleef_expd4_u10avx2", functions.exp) &&
                  bind(library, "Sleef_expm1d4_u10avx2", functions.expm1);
  return ok ? &functions : nullptr;
#endif
}

bool vector_kernels_enabled = true;

}  // namespace

const Sleef4 *sleef4() {
  static const Sleef4 *const loaded = load();
  return vector_kernels_enabled ? loaded : nullptr;
}

void set_vector_kernels(bool enabled) { vector_kernels_enabled = enabled; }

}  // namespace ko::simd
