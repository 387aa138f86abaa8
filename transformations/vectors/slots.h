// Building blocks of the method vectors: adapters from the vector's calling
// convention (a transformation, its parameter values, the caller's extra
// pointer) to the kernels of methods.h, the Helmert family's cached
// similarities, and the slots of the no-op methods.  Internal.
#pragma once

#include "transformations/geogtran.h"
#include "transformations/grid_methods.h"
#include "transformations/method_parameters.h"

namespace ko {

// A forward or inverse slot that runs kernel K with the transformation's
// spheroid pairs, parameter values, extra pointer and loaded grid.
template <MethodKernel K>
int32_t kernel_slot(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                    double *coord, double *z) {
  const MethodCall call(gt, parms, extra);
  return K(call.args(), n, coord, z);
}

// ---------------------------------------------------------------------------
// The Helmert family (Bursa_Wolf, Position_Vector, Coordinate_Frame,
// Molodensky_Badekas, the time-based pair).  Their constants loaders compute
// the similarity of geocentric coordinates once, in both rotation
// conventions and in both directions (the inverse exactly inverted), so
// that a call does only the point loop.  The time-based methods cache the
// similarity at their Reference_Time, which is what a call without an epoch
// applies; a call with an epoch builds its own through the kernel.

enum class Rotation { kPositionVector, kCoordinateFrame };

// Constants loaders: about the geocentric origin, or (Molodensky_Badekas)
// about the rotation origin of slots 7 to 9.  1 loaded; -1 (final) when
// the similarity cannot be inverted; 0 when memory ran out.
int helmert_constants(ko_constants *constants, ko_parameter *const *parms, int flag,
                      const ko_gcs_extent *extent);
int badekas_constants(ko_constants *constants, ko_parameter *const *parms, int flag,
                      const ko_gcs_extent *extent);

// Applies the cached similarity of the given convention when the
// transformation has it loaded (and, for time-based methods, no epoch is
// given); otherwise runs the kernel, which builds the same similarity.
int32_t helmert_apply(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                      double *coord, double *z, Rotation rotation, bool inverse, bool time_based,
                      MethodKernel kernel);

template <Rotation R, bool Inverse, bool TimeBased, MethodKernel K>
int32_t helmert_slot(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                     double *coord, double *z) {
  return helmert_apply(gt, parms, extra, n, coord, z, R, Inverse, TimeBased, K);
}

// ---------------------------------------------------------------------------
// The no-op methods (Longitude_Rotation, Null, Unit_Change): the frame's
// unit and prime-meridian handling does their whole work.
int32_t noop_convert(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                     double *coord, double *z);
int noop_defaults(ko_parameter **parms);
int noop_valid(ko_parameter *const *parms, const char *name, ko_err *err);

// The grid methods interpolate bilinearly.
int bilinear_interpolation(ko_parameter *const *parms);

// ---------------------------------------------------------------------------
// The vectors of each kind of method; every method's file defines its
// exported vector with one of these.

// An equation method without constants.
template <MethodKernel Forward, MethodKernel Inverse, ParmSet S>
constexpr ko_methlist_entry equation_vector(int32_t code, uint32_t flags, const char *name) {
  return {.code = code,
          .flags = flags,
          .name = name,
          .forward = kernel_slot<Forward>,
          .inverse = kernel_slot<Inverse>,
          .constfunc = nullptr,
          .unloadfunc = nullptr,
          .dfltsfunc = defaults_for<S>,
          .validfunc = valid_for<S>,
          .usablefunc = nullptr,
          .filefunc = nullptr,
          .interpfunc = nullptr};
}

// A Helmert-family method: its similarity cached by `constants`.
template <Rotation R, bool TimeBased, MethodKernel Forward, MethodKernel Inverse, ParmSet S>
constexpr ko_methlist_entry helmert_vector(int32_t code, uint32_t flags, const char *name,
                                           ko_mth_constfunc constants) {
  return {.code = code,
          .flags = flags,
          .name = name,
          .forward = helmert_slot<R, false, TimeBased, Forward>,
          .inverse = helmert_slot<R, true, TimeBased, Inverse>,
          .constfunc = constants,
          .unloadfunc = nullptr,
          .dfltsfunc = defaults_for<S>,
          .validfunc = valid_for<S>,
          .usablefunc = nullptr,
          .filefunc = nullptr,
          .interpfunc = nullptr};
}

// A grid method reading files of format F.
template <const GridFormatSpec &F>
constexpr ko_methlist_entry grid_vector(int32_t code, uint32_t flags, const char *name) {
  return {.code = code,
          .flags = flags,
          .name = name,
          .forward = kernel_slot<grid_shift_forward>,
          .inverse = kernel_slot<grid_shift_inverse>,
          .constfunc = grid_load_for<F>,
          .unloadfunc = grid_unload,
          .dfltsfunc = defaults_for<ParmSet::kGrid>,
          .validfunc = valid_for<ParmSet::kGrid>,
          .usablefunc = grid_usable_for<F>,
          .filefunc = grid_filenames_for<F>,
          .interpfunc = bilinear_interpolation};
}

// A no-op method.
constexpr ko_methlist_entry noop_vector(int32_t code, const char *name) {
  return {.code = code,
          .flags = KO_MTH_RTN_ORDINARY | KO_MTH_IS_NO_OP,
          .name = name,
          .forward = noop_convert,
          .inverse = noop_convert,
          .constfunc = nullptr,
          .unloadfunc = nullptr,
          .dfltsfunc = noop_defaults,
          .validfunc = noop_valid,
          .usablefunc = nullptr,
          .filefunc = nullptr,
          .interpfunc = nullptr};
}

}  // namespace ko
