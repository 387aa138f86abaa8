// Building blocks of the method vectors: adapters from the vector's calling
// convention (a transformation, its parameter values, the caller's extra
// pointer) to the kernels of methods.h, the Helmert family's cached
// similarities, and the slots of the no-op methods.  Internal.
#pragma once

#include "transformations/geogtran.h"

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

}  // namespace ko
