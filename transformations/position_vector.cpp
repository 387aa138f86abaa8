// Position_Vector (EPSG 9606, also called Bursa_Wolf): the seven-parameter
// similarity of geocentric coordinates in the position-vector convention,
// X' = T + (1 + dS) R X  (IOGP guidance note 7-2, §4.4.3.1), with
// R = [1 -rz ry; rz 1 -rx; -ry rx 1].  The inverse inverts that matrix
// exactly rather than flipping the parameters' signs, which is only a
// first-order approximation (its error grows with rotation² × radius).
#include "transformations/methods.h"

namespace ko {

namespace {

int seven_parameter(const MethodArgs &args, bool pv, bool inverse, int n, double *coord,
                    double *z) {
  if (args.parms == nullptr) return -1;
  const double *p = args.parms;
  const double t[3] = {p[kSlotTx], p[kSlotTy], p[kSlotTz]};
  const double rot[3] = {p[kSlotRx], p[kSlotRy], p[kSlotRz]};
  return helmert_transform(args, t, rot, p[kSlotScale], nullptr, pv, inverse, n, coord, z);
}

}  // namespace

int position_vector_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return seven_parameter(args, true, false, n, coord, z);
}

int position_vector_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return seven_parameter(args, true, true, n, coord, z);
}

// Coordinate_Frame (EPSG 9607) is the same similarity with the rotations
// negated (IOGP 7-2, §4.4.3.2); it lives here because it owns no mathematics
// of its own.
int coordinate_frame_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return seven_parameter(args, false, false, n, coord, z);
}

int coordinate_frame_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return seven_parameter(args, false, true, n, coord, z);
}

}  // namespace ko
