// The mathematics of the geographic transformation methods: one kernel pair
// (forward: GCS 1 to GCS 2, inverse: GCS 2 to GCS 1) per method, written so
// that the method vectors can wrap them directly.  Not installed.
//
// Conventions shared by every kernel:
//  - coord holds n (longitude, latitude) pairs in radians relative to
//    Greenwich, converted in place; z holds n ellipsoidal heights in metres,
//    or is null (the methods then work at height 0 and write no height).
//  - parms is the 24-slot parameter array in SI units (metres, radians, pure
//    ratios, years), indexed by the parameter list's slot numbers.
//  - A point the method cannot convert (outside every grid, not finite, an
//    iteration that does not settle) is left exactly as it was and is not
//    counted.  The result is the number of points converted, -1 when coord is
//    null or n is negative.
//  - Nothing inside a kernel's point loop allocates, looks anything up or
//    dispatches on a type.
#pragma once

#include "foundation/internal.h"

namespace ko {

// Slots of the 24-value parameter array used by the transformation methods.
enum TransformSlot : int {
  kSlotTx = 0,
  kSlotTy = 1,
  kSlotTz = 2,
  kSlotRx = 3,
  kSlotRy = 4,
  kSlotRz = 5,
  kSlotScale = 6,
  kSlotOriginX = 7,   // Molodensky-Badekas rotation origin ...
  kSlotOriginY = 8,
  kSlotOriginZ = 9,
  kSlotTxRate = 7,    // ... or, for the time-based methods, the rates
  kSlotTyRate = 8,
  kSlotTzRate = 9,
  kSlotRxRate = 10,
  kSlotRyRate = 11,
  kSlotRzRate = 12,
  kSlotScaleRate = 13,
  kSlotRefTime = 14,
  kSlotLonOffset = 10,
  kSlotLatOffset = 11,
  kSlotInterpolation = 12,
  kSlotDataset = 15,
};

// Everything a kernel may need besides the points.
struct MethodArgs {
  const double *sph1 = nullptr;   // spheroid pair (a in metres, e²) of GCS 1
  const double *sph2 = nullptr;   // spheroid pair of GCS 2
  const double *parms = nullptr;  // 24 parameter values in SI units
  const void *extra = nullptr;    // the caller's opaque pointer (see time-based Helmert)
  const void *data = nullptr;     // the loaded grid of a grid method, else null
};

using MethodKernel = int (*)(const MethodArgs &args, int n, double *coord, double *z);

// ---------------------------------------------------------------------------
// Geodetic <-> geocentric on one spheroid (transformations/geocentric.cpp).
// Longitude and latitude in radians, heights and X/Y/Z in metres.  The
// inverse is Vermeille's closed form (J Geod 2011), exact to the last bits
// everywhere, inside the evolute near the centre included.
void geodetic_to_geocentric(double a, double e2, double lon, double lat, double h, double xyz[3]);
void geocentric_to_geodetic(double a, double e2, const double xyz[3], double &lon, double &lat,
                            double &h);

// True for a usable spheroid pair: a > 0 finite, 0 <= e² < 1.
bool spheroid_ok(const double *sph);

// An affine map of geocentric coordinates, X' = t + m X (m row-major).  Every
// Helmert-family method reduces to one; its exact inverse is another.
struct Affine {
  double m[9];
  double t[3];
};
// The seven-parameter similarity in the position-vector sign convention
// (IOGP guidance note 7-2, EPSG 9606): rotations rx, ry, rz in radians, scale
// difference ds as a pure ratio, applied about the origin `pivot` (zero for
// Bursa-Wolf, the rotation origin for Molodensky-Badekas).
Affine helmert_affine(const double t[3], double rx, double ry, double rz, double ds,
                      const double pivot[3]);
// The exact inverse map: X = m⁻¹ (X' - t).  False when m is singular.
bool invert_affine(const Affine &f, Affine &inverse);
// Geographic on sph_in -> geocentric -> affine -> geographic on sph_out.
int transform_through_geocentric(const double *sph_in, const double *sph_out, const Affine &f,
                                 int n, double *coord, double *z);
// The Helmert step by sign convention, position vector (pv true) or
// coordinate frame, with rotation origin `pivot` (may be null): forward or
// exact inverse through transform_through_geocentric.
int helmert_transform(const MethodArgs &args, const double t[3], const double rot[3], double ds,
                      const double *pivot, bool pv, bool inverse, int n, double *coord,
                      double *z);

// ---------------------------------------------------------------------------
// Equation methods, one file each.
int geocentric_translation_forward(const MethodArgs &args, int n, double *coord, double *z);
int geocentric_translation_inverse(const MethodArgs &args, int n, double *coord, double *z);
int position_vector_forward(const MethodArgs &args, int n, double *coord, double *z);
int position_vector_inverse(const MethodArgs &args, int n, double *coord, double *z);
int coordinate_frame_forward(const MethodArgs &args, int n, double *coord, double *z);
int coordinate_frame_inverse(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_badekas_forward(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_badekas_inverse(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_forward(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_inverse(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_abridged_forward(const MethodArgs &args, int n, double *coord, double *z);
int molodensky_abridged_inverse(const MethodArgs &args, int n, double *coord, double *z);
// Time-based Helmert: args.extra is null (the parameters apply at their
// Reference_Time) or points to one double, the coordinate epoch in decimal
// years; each parameter then becomes value + rate × (epoch - Reference_Time).
int time_based_helmert_pv_forward(const MethodArgs &args, int n, double *coord, double *z);
int time_based_helmert_pv_inverse(const MethodArgs &args, int n, double *coord, double *z);
int time_based_helmert_cf_forward(const MethodArgs &args, int n, double *coord, double *z);
int time_based_helmert_cf_inverse(const MethodArgs &args, int n, double *coord, double *z);
int geographic_2d_offset_forward(const MethodArgs &args, int n, double *coord, double *z);
int geographic_2d_offset_inverse(const MethodArgs &args, int n, double *coord, double *z);

// Grid methods (NTv2, NADCON, HARN, NADCON5, GEOCON): args.data is the
// GridSet that the method's loader read (grid_set.h); the formats differ
// only in their files, so they share one kernel pair.
int grid_shift_forward(const MethodArgs &args, int n, double *coord, double *z);
int grid_shift_inverse(const MethodArgs &args, int n, double *coord, double *z);

// Longitude wrapped into [-pi, pi].
inline double wrap_pi(double lon) {
  if (lon >= -kPi && lon <= kPi) return lon;
  double w = std::remainder(lon, kTwoPi);
  return w;
}

}  // namespace ko
