// The world maps computed on a sphere (the pseudocylindricals and modified
// azimuthals that have no ellipsoidal form): radius R = a, the semi-major
// axis, whatever the flattening; central meridian in slot 2, the plane
// orientation in slots 12-14.  Each projection supplies two functions on
// the unit sphere,
//   bool fwd(const SphereMap &k, double dlam, double phi, double &x, double &y)
//   bool inv(const SphereMap &k, double x, double y, double &dlam, double &phi)
// and this header turns them into the forward, inverse and constants slots
// of its projection vector.  A point the functions refuse, or whose result
// is not finite, is marked HUGE_VAL and not counted; the inverse refuses
// longitudes more than 180° from the central meridian (outside the map).
#pragma once

#include "projections/family.h"

namespace ko::proj::world {

struct SphereMap {
  double r = 0.0;        // radius, a
  double lambda0 = 0.0;  // central meridian
  double phi1 = 0.0;     // slot 3, for the projections that have a standard parallel
  double option = 0.0;   // slot 15, for the projections that have variants
  PlaneOrientation plane;
};

using FwdFn = bool (*)(const SphereMap &, double, double, double &, double &);
using InvFn = bool (*)(const SphereMap &, double, double, double &, double &);

// Tags of the constants records written by sphere_constants.
inline constexpr int32_t kTagWorldSphere = 0x5753;

inline bool read_sphere_map(const double *sph, const double *parms, SphereMap &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1}))
    return false;
  k.r = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.phi1 = parms[slot::kStdParallel1];
  k.option = parms[slot::kOption];
  if (!(std::fabs(k.phi1) <= kHalfPi)) return false;
  return plane_orientation_from_parms(parms, k.plane);
}

template <FwdFn Fwd>
int forward_points(const SphereMap &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    double x = 0.0, y = 0.0;
    const bool ok = std::fabs(phi) <= kHalfPi && std::isfinite(xy[i]) && Fwd(k, dlam, phi, x, y);
    x *= k.r;
    y *= k.r;
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, ok);
  }
  return count;
}

// One part in 10¹² of slack on the outline, for points that are the
// forward image of the edge itself.
inline constexpr double kOutlineSlack = 1.0 + 1e-12;

template <InvFn Inv>
int inverse_points(const SphereMap &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    double dlam = 0.0, phi = 0.0;
    const bool ok = std::isfinite(x) && std::isfinite(y) && Inv(k, x / k.r, y / k.r, dlam, phi) &&
                    std::fabs(phi) <= kHalfPi * kOutlineSlack && std::fabs(dlam) <= kPi * kOutlineSlack;
    // A pole's line read back a rounding beyond ±90° is the pole.
    phi = std::fmax(-kHalfPi, std::fmin(kHalfPi, phi));
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

// The constants function: the SphereMap stored as a ko_constants record.
inline int sphere_constants(ko_constants *c, const double *sph, const double *parms) {
  SphereMap k;
  if (!read_sphere_map(sph, parms, k)) return -1;
  return store_constants(c, k, kTagWorldSphere);
}

// The cached map when dvals holds one, else one read from the parameters.
template <class Body>
int with_sphere_map(const double *sph, const double *parms, int n, double *coords,
                    const int32_t *ivals, const double *dvals, Body &&body) {
  if (n < 0 || (n > 0 && coords == nullptr)) return 0;
  SphereMap k;
  const bool have = dvals == nullptr ? read_sphere_map(sph, parms, k)
                                     : load_constants(ivals, dvals, kTagWorldSphere, k);
  if (!have) return 0;
  return body(k, std::span<double>(coords, static_cast<std::size_t>(n) * 2));
}

template <FwdFn Fwd>
int sphere_forward(const double *sph, const double *parms, int n, double *coords,
                   const int32_t *ivals, const double *dvals) {
  return with_sphere_map(sph, parms, n, coords, ivals, dvals, forward_points<Fwd>);
}

template <InvFn Inv>
int sphere_inverse(const double *sph, const double *parms, int n, double *coords,
                   const int32_t *ivals, const double *dvals) {
  return with_sphere_map(sph, parms, n, coords, ivals, dvals, inverse_points<Inv>);
}

// asin clamped to ±90° for arguments that overshoot ±1 by rounding only;
// NaN (refused) beyond the slack.
inline double asin_edge(double s) {
  if (std::fabs(s) > kOutlineSlack) return std::nan("");
  return std::asin(std::fmax(-1.0, std::fmin(1.0, s)));
}

// Newton's method for θ in f(θ) = c, from the start t, with f' given;
// stops when the step falls below 1e-15 or after 30 steps.
template <class F, class DF>
double newton_solve(F &&f, DF &&df, double c, double t) {
  for (int it = 0; it < 30; ++it) {
    const double d = df(t);
    if (d == 0.0) break;
    const double step = (f(t) - c) / d;
    t -= step;
    if (!(std::fabs(step) > 1e-15)) break;
  }
  return t;
}

}  // namespace ko::proj::world

// Defines the exported vector ko_prj_<id>_vector of a spherical world map
// from its two point functions (template arguments of the drivers above)
// and its constants function (null where none is kept).
#define KO_WORLD_SPHERE_VECTOR(id, code, name, fwd, inv, constfunc)                          \
  extern "C" constinit const ko_projlist_entry ko_prj_##id##_vector = {                      \
      code, name, ::ko::proj::world::sphere_forward<fwd>, ::ko::proj::world::sphere_inverse<inv>, \
      constfunc, ::ko::validity<code>, nullptr, nullptr};
