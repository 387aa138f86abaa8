// Molodensky_Badekas (EPSG 9636): the seven-parameter similarity in the
// coordinate-frame convention applied about a rotation origin P,
//   X' = T + (1 + dS) R (X - P) + P   (IOGP guidance note 7-2, §4.4.3.3),
// P in slots 7 to 9.  The inverse is the exact inverse of that affine map.
#include "transformations/methods.h"

namespace ko {

namespace {

int badekas(const MethodArgs &args, bool inverse, int n, double *coord, double *z) {
  if (args.parms == nullptr) return -1;
  const double *p = args.parms;
  const double t[3] = {p[kSlotTx], p[kSlotTy], p[kSlotTz]};
  const double rot[3] = {p[kSlotRx], p[kSlotRy], p[kSlotRz]};
  const double pivot[3] = {p[kSlotOriginX], p[kSlotOriginY], p[kSlotOriginZ]};
  return helmert_transform(args, t, rot, p[kSlotScale], pivot, false, inverse, n, coord, z);
}

}  // namespace

int molodensky_badekas_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return badekas(args, false, n, coord, z);
}

int molodensky_badekas_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return badekas(args, true, n, coord, z);
}

}  // namespace ko
