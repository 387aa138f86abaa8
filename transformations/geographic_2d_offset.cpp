// Geographic_2D_Offset (EPSG 9619): constant offsets added to latitude
// (slot 11) and longitude (slot 10) (IOGP guidance note 7-2, §4.4.1); the
// inverse subtracts them.  Longitudes are wrapped back into [-pi, pi];
// heights are not touched.
#include "transformations/methods.h"

namespace ko {

namespace {

int offset(const MethodArgs &args, double sign, int n, double *coord) {
  if (args.parms == nullptr || coord == nullptr || n < 0) return -1;
  const double dlon = sign * args.parms[kSlotLonOffset];
  const double dlat = sign * args.parms[kSlotLatOffset];
  int converted = 0;
  for (int i = 0; i < n; ++i) {
    double *c = coord + 2 * i;
    if (!(std::isfinite(c[0]) && std::isfinite(c[1]))) continue;
    c[0] = wrap_pi(c[0] + dlon);
    c[1] += dlat;
    ++converted;
  }
  return converted;
}

}  // namespace

int geographic_2d_offset_forward(const MethodArgs &args, int n, double *coord, double *) {
  return offset(args, 1.0, n, coord);
}

int geographic_2d_offset_inverse(const MethodArgs &args, int n, double *coord, double *) {
  return offset(args, -1.0, n, coord);
}

}  // namespace ko
