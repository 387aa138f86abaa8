// Molodensky_Abridged (EPSG 9605): the abridged Molodensky formulas (IOGP
// guidance note 7-2, §4.4.4), which drop the height and the second-order
// spheroid terms of the standard ones:
//   M Δφ = -ΔX sinφ cosλ - ΔY sinφ sinλ + ΔZ cosφ + (a Δf + f Δa) sin 2φ
//   N cosφ Δλ = -ΔX sinλ + ΔY cosλ
//   Δh = ΔX cosφ cosλ + ΔY cosφ sinλ + ΔZ sinφ + (a Δf + f Δa) sin²φ - Δa
// with the radii M, N of the source spheroid.  The inverse iterates them.
#include "transformations/molodensky_shift.h"

#include <cmath>

namespace ko {

namespace {

constexpr double kPoleCos = 1e-12;  // see molodensky.cpp

GeoShift abridged_shift(const MolodenskyConstants &k, double lon, double lat, double) {
  const double sl = std::sin(lat), cl = std::cos(lat);
  const double so = std::sin(lon), co = std::cos(lon);
  const double w2 = 1.0 - k.e2 * sl * sl;
  const double nu = k.a / std::sqrt(w2);
  const double rho = nu * (1.0 - k.e2) / w2;
  const double spheroid = k.a * k.df + k.f * k.da;
  const double dlat =
      (-k.dx * sl * co - k.dy * sl * so + k.dz * cl + spheroid * 2.0 * sl * cl) / rho;
  const double east = -k.dx * so + k.dy * co;
  const double dlon = std::fabs(cl) > kPoleCos ? east / (nu * cl) : 0.0;
  const double dh = k.dx * cl * co + k.dy * cl * so + k.dz * sl + spheroid * sl * sl - k.da;
  return {dlon, dlat, dh};
}

}  // namespace

int molodensky_abridged_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return molodensky_apply(args, abridged_shift, false, n, coord, z);
}

int molodensky_abridged_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return molodensky_apply(args, abridged_shift, true, n, coord, z);
}

}  // namespace ko
