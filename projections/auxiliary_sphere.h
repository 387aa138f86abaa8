// The auxiliary-sphere forms of spherical projections: the projection of a
// finished family computed on a sphere chosen by Auxiliary_Sphere_Type
// (slot 12), as Mercator_Auxiliary_Sphere does (mercator.cpp):
//   0  radius a, geodetic latitudes used as spherical ones;
//   1  radius b = a sqrt(1 − e²);
//   2  the authalic radius (ko_auth_r);
//   3  the authalic radius, latitudes taken to the authalic latitude β
//      before the forward and back after the inverse (Snyder 1987, 3-11
//      and 3-18, through the series of ko_phi_to_beta_wconst).
// Any other type is refused.  The base family does all the projecting: it
// is given the spheroid pair {R, 0} and a copy of the parameters with slots
// 12-14 cleared (here they hold the sphere type, not a plane orientation)
// and, for type 3, the latitude parameter of the map's centre or standard
// parallel taken to its authalic latitude as well.
//
// The ellipsoidal forms of the spherical equal-area maps (Hammer_Ellipsoidal,
// Quartic_Authalic_Ellipsoidal) are the same step with the type fixed at 3:
// equal area on the ellipsoid, since the authalic latitude and radius carry
// the ellipsoid's areas onto the sphere; their slots 12-14 stay the base's
// plane orientation.
#pragma once

#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj::auxs {

// No latitude parameter to take to the authalic latitude.
inline constexpr int kNoLatitude = -1;
// The sphere type read from slot 12 (Auxiliary_Sphere_Type), and the type
// of the authalic sphere with authalic latitudes.
inline constexpr int kTypeFromSlot = -1;
inline constexpr int kAuthalicSphere = 3;

struct AuxiliarySphere {
  double sph[2] = {0.0, 0.0};  // {R, 0}
  double parms[KO_PARM_COUNT] = {};
  bool authalic = false;  // type 3
  double e2 = 0.0;        // of the ellipsoid, for the authalic latitudes
  double coef[KO_AUX_NCOEF] = {};
};

// The radius of the sphere of an Auxiliary_Sphere_Type: a (0), b (1), the
// authalic radius (2 and 3); false for any other type.
inline bool sphere_radius(double type, const Ellipsoid &g, double &radius) {
  if (type == 0.0) radius = g.a;
  else if (type == 1.0) radius = g.a * std::sqrt(1.0 - g.e2);
  else if (type == 2.0 || type == 3.0) radius = ko_auth_r(g.a, g.e2);
  else return false;
  return radius > 0.0;
}

// The sphere and the base family's parameters; false for a bad spheroid,
// a missing array or a type other than 0 to 3.  fixed_type is the type, or
// kTypeFromSlot to read it from slot 12.
inline bool read_auxiliary_sphere(const double *sph, const double *parms, int lat_slot,
                                  int fixed_type, AuxiliarySphere &out) {
  Ellipsoid g;
  const bool from_slot = fixed_type == kTypeFromSlot;
  if (!read_ellipsoid(sph, g) || parms == nullptr) return false;
  const double type = from_slot ? parms[slot::kAuxSphereType] : static_cast<double>(fixed_type);
  double radius = 0.0;
  if (!sphere_radius(type, g, radius)) return false;
  std::copy_n(parms, KO_PARM_COUNT, out.parms);
  if (from_slot) {
    out.parms[slot::kXScale] = 0.0;
    out.parms[slot::kYScale] = 0.0;
    out.parms[slot::kRotation] = 0.0;
  }
  out.sph[0] = radius;
  out.sph[1] = 0.0;
  out.authalic = type == 3.0;
  out.e2 = g.e2;
  if (out.authalic) {
    ko_beta_authalic_constants(g.e2, out.coef);
    if (lat_slot != kNoLatitude && std::fabs(out.parms[lat_slot]) <= kHalfPi)
      out.parms[lat_slot] = ko_phi_to_beta_wconst(out.coef, g.e2, out.parms[lat_slot]);
  }
  return true;
}

// Geodetic to authalic latitudes in place; a latitude beyond ±90° (or NaN)
// is left for the base family to refuse.
inline void to_authalic(const AuxiliarySphere &s, std::span<double> xy) {
  for (std::size_t i = 1; i < xy.size(); i += 2)
    if (std::fabs(xy[i]) <= kHalfPi) xy[i] = ko_phi_to_beta_wconst(s.coef, s.e2, xy[i]);
}

// Authalic to geodetic latitudes of the points the inverse converted.
inline void from_authalic(const AuxiliarySphere &s, std::span<double> xy) {
  for (std::size_t i = 1; i < xy.size(); i += 2)
    if (xy[i] != HUGE_VAL) xy[i] = ko_beta_to_phi_wconst(s.coef, s.e2, xy[i]);
}

// The forward slot.  Before latitudes are changed in place for type 3 the
// definition must be one the base accepts: it is asked to map the map's own
// centre (slot LonSlot, slot LatSlot or the equator), which every accepted
// definition of these projections can, so that a refused definition leaves
// the points exactly as they were.
template <ko_proj_fn Base, int LonSlot, int LatSlot, int Type = kTypeFromSlot>
int forward(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
            const double *dvals) {
  AuxiliarySphere s;
  if (n < 0 || (n > 0 && coords == nullptr) || !read_auxiliary_sphere(sph, parms, LatSlot, Type, s))
    return 0;
  if (s.authalic && n > 0) {
    double centre[2] = {s.parms[LonSlot], LatSlot == kNoLatitude ? 0.0 : s.parms[LatSlot]};
    if (Base(s.sph, s.parms, 1, centre, ivals, dvals) != 1) return 0;
    to_authalic(s, std::span<double>(coords, static_cast<std::size_t>(n) * 2));
  }
  return Base(s.sph, s.parms, n, coords, ivals, dvals);
}

// The inverse slot.
template <ko_proj_fn Base, int LatSlot, int Type = kTypeFromSlot>
int inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
            const double *dvals) {
  AuxiliarySphere s;
  if (n < 0 || (n > 0 && coords == nullptr) || !read_auxiliary_sphere(sph, parms, LatSlot, Type, s))
    return 0;
  const int count = Base(s.sph, s.parms, n, coords, ivals, dvals);
  // A definition the base refuses leaves the points untouched, and so
  // does this.
  if (s.authalic && count > 0)
    from_authalic(s, std::span<double>(coords, static_cast<std::size_t>(n) * 2));
  return count;
}

// The constants slot, for a base family that caches constants: the base's
// record built on the auxiliary sphere.
template <ko_proj_constfunc Base, int LatSlot, int Type = kTypeFromSlot>
int constants(ko_constants *c, const double *sph, const double *parms) {
  AuxiliarySphere s;
  if (!read_auxiliary_sphere(sph, parms, LatSlot, Type, s)) return -1;
  return Base(c, s.sph, s.parms);
}

}  // namespace ko::proj::auxs

// The vector of an auxiliary-sphere form: code and name, the base family's
// forward and inverse slots, the constants slot (nullptr, or
// ko::proj::auxs::constants over the base's), the parameter slot of the
// centre's longitude and the latitude parameter taken to the authalic
// latitude for type 3 (ko::proj::auxs::kNoLatitude for none).
#define KO_AUXS_VECTOR(id, code, name, base_fwd, base_inv, constfunc, lon_slot, lat_slot)      \
  extern "C" constinit const ko_projlist_entry ko_prj_##id##_vector = {                         \
      code, name, ::ko::proj::auxs::forward<base_fwd, lon_slot, lat_slot>,                      \
      ::ko::proj::auxs::inverse<base_inv, lat_slot>, constfunc, ::ko::validity<code>, nullptr, \
      nullptr};

// The vector of an ellipsoidal equal-area form: the base's spherical map on
// the authalic sphere with authalic latitudes, central meridian in slot 2.
#define KO_AUTHALIC_VECTOR(id, code, name, base_fwd, base_inv)                                 \
  extern "C" constinit const ko_projlist_entry ko_prj_##id##_vector = {                         \
      code, name,                                                                               \
      ::ko::proj::auxs::forward<base_fwd, ::ko::proj::slot::kCentralMeridian,                   \
                                ::ko::proj::auxs::kNoLatitude, ::ko::proj::auxs::kAuthalicSphere>, \
      ::ko::proj::auxs::inverse<base_inv, ::ko::proj::auxs::kNoLatitude,                        \
                                ::ko::proj::auxs::kAuthalicSphere>,                             \
      nullptr, ::ko::validity<code>, nullptr, nullptr};
