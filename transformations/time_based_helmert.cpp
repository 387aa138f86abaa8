// Time_Based_Helmert_Position_Vector (109616) and _Coordinate_Frame (109617):
// the fifteen-parameter Helmert transformation (IOGP guidance note 7-2,
// §4.4.3.4, EPSG methods 1053 and 1056).  Each of the seven parameters moves
// linearly with time,
//   P(t) = P + Ṗ (t - t0),
// t0 the Reference_Time (slot 14) and the rates in slots 7 to 13; the
// similarity at P(t) is then applied as for Position_Vector or
// Coordinate_Frame, and inverted exactly.
//
// The coordinate epoch t comes through the frame's opaque extra pointer:
// null means t = t0 (the rates contribute nothing); otherwise extra points
// to one double, the epoch in decimal years.  A non-finite epoch converts
// nothing.
#include "transformations/methods.h"

namespace ko {

namespace {

int fifteen_parameter(const MethodArgs &args, bool pv, bool inverse, int n, double *coord,
                      double *z) {
  if (args.parms == nullptr || coord == nullptr || n < 0) return -1;
  const double *p = args.parms;
  double dt = 0.0;
  if (args.extra != nullptr) {
    dt = *static_cast<const double *>(args.extra) - p[kSlotRefTime];
    if (!std::isfinite(dt)) return 0;
  }
  const double t[3] = {p[kSlotTx] + p[kSlotTxRate] * dt, p[kSlotTy] + p[kSlotTyRate] * dt,
                       p[kSlotTz] + p[kSlotTzRate] * dt};
  const double rot[3] = {p[kSlotRx] + p[kSlotRxRate] * dt, p[kSlotRy] + p[kSlotRyRate] * dt,
                         p[kSlotRz] + p[kSlotRzRate] * dt};
  const double ds = p[kSlotScale] + p[kSlotScaleRate] * dt;
  return helmert_transform(args, t, rot, ds, nullptr, pv, inverse, n, coord, z);
}

}  // namespace

int time_based_helmert_pv_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return fifteen_parameter(args, true, false, n, coord, z);
}
int time_based_helmert_pv_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return fifteen_parameter(args, true, true, n, coord, z);
}
int time_based_helmert_cf_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return fifteen_parameter(args, false, false, n, coord, z);
}
int time_based_helmert_cf_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return fifteen_parameter(args, false, true, n, coord, z);
}

}  // namespace ko
