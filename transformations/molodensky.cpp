// Molodensky (EPSG 9604): the standard Molodensky formulas, which give the
// change of geographic coordinates caused by a geocentric translation
// together with a change of spheroid directly, without passing through
// geocentric coordinates (IOGP guidance note 7-2, §4.4.4; R. E. Deakin,
// "The standard and abridged Molodensky coordinate transformation
// formulae", 2004):
//   (M + h) Δφ = -ΔX sinφ cosλ - ΔY sinφ sinλ + ΔZ cosφ
//                + Δa N e² sinφ cosφ / a + Δf (M a/b + N b/a) sinφ cosφ
//   (N + h) cosφ Δλ = -ΔX sinλ + ΔY cosλ
//   Δh = ΔX cosφ cosλ + ΔY cosφ sinλ + ΔZ sinφ - Δa a/N + Δf (b/a) N sin²φ
// M and N the meridian and prime-vertical radii of the source spheroid,
// Δa and Δf target minus source.  The inverse iterates the forward formulas
// (molodensky_apply), which the usual sign flip only approximates.
#include "transformations/molodensky_shift.h"

#include <cmath>

namespace ko {

namespace {

// Below this |cos φ| a point is at a pole, where longitude has no meaning
// and the longitude shift is left at zero.
constexpr double kPoleCos = 1e-12;

GeoShift standard_shift(const MolodenskyConstants &k, double lon, double lat, double h) {
  const double sl = std::sin(lat), cl = std::cos(lat);
  const double so = std::sin(lon), co = std::cos(lon);
  const double w2 = 1.0 - k.e2 * sl * sl;
  const double nu = k.a / std::sqrt(w2);          // prime-vertical radius N
  const double rho = nu * (1.0 - k.e2) / w2;      // meridian radius M
  const double b_over_a = 1.0 - k.f;
  const double dlat = (-k.dx * sl * co - k.dy * sl * so + k.dz * cl +
                       k.da * nu * k.e2 * sl * cl / k.a +
                       k.df * (rho / b_over_a + nu * b_over_a) * sl * cl) /
                      (rho + h);
  const double east = -k.dx * so + k.dy * co;
  const double dlon = std::fabs(cl) > kPoleCos ? east / ((nu + h) * cl) : 0.0;
  const double dh = k.dx * cl * co + k.dy * cl * so + k.dz * sl - k.da * k.a / nu +
                    k.df * b_over_a * nu * sl * sl;
  return {dlon, dlat, dh};
}

}  // namespace

bool molodensky_constants(const MethodArgs &args, MolodenskyConstants &k) {
  if (args.parms == nullptr || !spheroid_ok(args.sph1) || !spheroid_ok(args.sph2)) return false;
  const double a1 = args.sph1[0], e21 = args.sph1[1];
  const double a2 = args.sph2[0], e22 = args.sph2[1];
  const double f1 = 1.0 - std::sqrt(1.0 - e21);
  const double f2 = 1.0 - std::sqrt(1.0 - e22);
  k = {args.parms[kSlotTx], args.parms[kSlotTy], args.parms[kSlotTz], a1, e21, f1,
       a2 - a1, f2 - f1};
  return true;
}

int molodensky_apply(const MethodArgs &args, MolodenskyShiftFn shift, bool inverse, int n,
                     double *coord, double *z) {
  if (coord == nullptr || n < 0) return -1;
  MolodenskyConstants k;
  if (!molodensky_constants(args, k)) return -1;
  int converted = 0;
  for (int i = 0; i < n; ++i) {
    double *c = coord + 2 * i;
    const double h = z != nullptr ? z[i] : 0.0;
    if (!(std::isfinite(c[0]) && std::isfinite(c[1]) && std::isfinite(h))) continue;
    double lon = c[0], lat = c[1], hgt = h;
    if (!inverse) {
      const GeoShift d = shift(k, lon, lat, hgt);
      lon += d.dlon;
      lat += d.dlat;
      hgt += d.dh;
    } else {
      // x = target - shift(x): the shift changes by about |shift|/radius per
      // radian, so each step gains five orders of magnitude.
      bool settled = false;
      for (int it = 0; it < 20 && !settled; ++it) {
        const GeoShift d = shift(k, lon, lat, hgt);
        const double nlon = c[0] - d.dlon, nlat = c[1] - d.dlat, nh = h - d.dh;
        settled = std::fabs(nlon - lon) < 1e-12 && std::fabs(nlat - lat) < 1e-12 &&
                  std::fabs(nh - hgt) < 1e-7;
        lon = nlon;
        lat = nlat;
        hgt = nh;
      }
      if (!settled) continue;
    }
    if (!(std::isfinite(lon) && std::isfinite(lat) && std::isfinite(hgt))) continue;
    c[0] = wrap_pi(lon);
    c[1] = lat;
    if (z != nullptr) z[i] = hgt;
    ++converted;
  }
  return converted;
}

int molodensky_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return molodensky_apply(args, standard_shift, false, n, coord, z);
}

int molodensky_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return molodensky_apply(args, standard_shift, true, n, coord, z);
}

}  // namespace ko
