// The Molodensky shifts shared by the standard and abridged methods, and
// their inversion by fixed-point iteration.  Internal to transformations/.
#pragma once

#include "transformations/methods.h"

namespace ko {

// Δλ, Δφ (radians) and Δh (metres) at one point of the source spheroid.
struct GeoShift {
  double dlon, dlat, dh;
};

// The constants of one Molodensky transformation: the translations, the
// source spheroid (a, e², f) and the differences target minus source.
struct MolodenskyConstants {
  double dx, dy, dz;
  double a, e2, f;
  double da, df;
};

// Builds the constants for the direction GCS 1 -> GCS 2; false when a
// spheroid or the parameters are missing.
bool molodensky_constants(const MethodArgs &args, MolodenskyConstants &k);

using MolodenskyShiftFn = GeoShift (*)(const MolodenskyConstants &k, double lon, double lat,
                                       double h);

// Applies shift at each point (forward), or solves x + shift(x) = target by
// fixed-point iteration until the correction falls below 1e-12 radian and
// 1e-7 metre (inverse).  A point whose iteration does not settle in 20 steps
// is left as it was.
int molodensky_apply(const MethodArgs &args, MolodenskyShiftFn shift, bool inverse, int n,
                     double *coord, double *z);

}  // namespace ko
