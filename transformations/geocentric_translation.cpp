// Geocentric_Translation (EPSG 9603): the three-parameter shift of geocentric
// coordinates, X' = X + T (IOGP guidance note 7-2, §4.4.2), between the two
// spheroids.  Its inverse, X = X' - T, is exact.
#include "transformations/methods.h"

namespace ko {

namespace {

Affine translation(const double *parms, double sign) {
  return Affine{{1, 0, 0, 0, 1, 0, 0, 0, 1},
                {sign * parms[kSlotTx], sign * parms[kSlotTy], sign * parms[kSlotTz]}};
}

}  // namespace

int geocentric_translation_forward(const MethodArgs &args, int n, double *coord, double *z) {
  if (args.parms == nullptr) return -1;
  return transform_through_geocentric(args.sph1, args.sph2, translation(args.parms, 1.0), n,
                                      coord, z);
}

int geocentric_translation_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  if (args.parms == nullptr) return -1;
  return transform_through_geocentric(args.sph2, args.sph1, translation(args.parms, -1.0), n,
                                      coord, z);
}

}  // namespace ko
