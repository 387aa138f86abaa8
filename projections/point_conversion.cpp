// Point conversion between a projected system and its geographic system:
// units and false origins at the edges, the projection constants cached in
// the projected system, and one call of the projection's forward or
// inverse function on the whole array.
//
// The per-point passes here are plain loops over the interleaved (x, y)
// pairs with the two lanes' constants in two-element arrays, so that the
// compiler turns each into packed arithmetic; nothing in them allocates,
// looks anything up or asks what kind of projection it serves.
#include "objects/projcs.h"

#include <limits>

namespace {

struct ConstantsDeleter {
  void operator()(ko_constants *c) const { ko_constants_del(c); }
};
using UniqueConstants = std::unique_ptr<ko_constants, ConstantsDeleter>;

// Everything a conversion call needs, read once before the point passes.
struct Frame {
  double angular = ko::kDegree;  // radians per unit of the geographic system
  double linear = 1.0;           // metres per unit of the projected system
  double sph[2] = {1.0, 0.0};    // semi-major axis (m), first eccentricity squared
  double parms[KO_PARM_COUNT] = {};
  const int32_t *ivals = nullptr;
  const double *dvals = nullptr;
};

constexpr int kSlotFalseEasting = 0;
constexpr int kSlotFalseNorthing = 1;

Frame make_frame(ko_projcs &p) {
  Frame f;
  f.angular = ko::unit_factor_or(ko_geogcs_unit(p.geogcs), KO_TYPE_ANGUNIT, ko::kDegree);
  f.linear = ko::unit_factor_or(ko_projcs_unit(&p), KO_TYPE_LINUNIT, 1.0);
  const ko_spheroid *s = ko_datum_spheroid(ko_geogcs_datum(p.geogcs));
  f.sph[0] = ko_spheroid_axis(s);
  f.sph[1] = ko_spheroid_esquared(s);
  ko_projcs_parm_array(&p, f.parms);
  if (ko_projcs_load_constants(&p) != 0 && p.constants != nullptr) {
    f.ivals = ko_constants_ivals(p.constants);
    f.dvals = ko_constants_dvals(p.constants);
  }
  return f;
}

std::size_t values_of(int n) { return 2 * static_cast<std::size_t>(n); }

// Angles from the caller's unit to radians, latitudes clamped to the poles
// (a NaN latitude stays NaN: both comparisons are false).
void angles_to_radians(double *coords, int n, double factor) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const double hi[2] = {kInf, ko::kHalfPi};
  const double lo[2] = {-kInf, -ko::kHalfPi};
  for (std::size_t i = 0; i < values_of(n); i += 2) {
    for (std::size_t k = 0; k < 2; ++k) {
      double v = coords[i + k] * factor;
      v = v > hi[k] ? hi[k] : v;
      coords[i + k] = v < lo[k] ? lo[k] : v;
    }
  }
}

void radians_to_angles(double *coords, int n, double factor) {
  for (std::size_t i = 0; i < values_of(n); ++i) coords[i] /= factor;
}

// Radians back to the caller's unit, longitudes put into the 2π-wide range
// about center (radians).
void radians_to_angles_about(double *coords, int n, double factor, double center) {
  for (std::size_t i = 0; i < values_of(n); i += 2) {
    coords[i] = ko_delta_center(coords[i], center) / factor;
    coords[i + 1] /= factor;
  }
}

// Metres of the projection to the system's unit, false origin added.
void add_false_origin(double *coords, int n, const Frame &f) {
  const double origin[2] = {f.parms[kSlotFalseEasting], f.parms[kSlotFalseNorthing]};
  if (f.linear == 1.0) {
    for (std::size_t i = 0; i < values_of(n); i += 2)
      for (std::size_t k = 0; k < 2; ++k) coords[i + k] += origin[k];
    return;
  }
  for (std::size_t i = 0; i < values_of(n); i += 2)
    for (std::size_t k = 0; k < 2; ++k) coords[i + k] = (coords[i + k] + origin[k]) / f.linear;
}

// The system's unit to metres of the projection, false origin removed.
void remove_false_origin(double *coords, int n, const Frame &f) {
  const double origin[2] = {f.parms[kSlotFalseEasting], f.parms[kSlotFalseNorthing]};
  for (std::size_t i = 0; i < values_of(n); i += 2)
    for (std::size_t k = 0; k < 2; ++k) coords[i + k] = coords[i + k] * f.linear - origin[k];
}

}  // namespace

extern "C" {

// States: 0 not loaded, 1 loaded, 2 the projection needs no constants,
// -1 loading failed (kept until unloaded, so a failing projection is not
// retried on every call).
int ko_projcs_load_constants(ko_projcs *p) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr) return 0;
  switch (pp->constants_state) {
    case kProjConstantsFailed:
      return 0;
    case kProjConstantsLoaded:
    case kProjConstantsNotNeeded:
      return 1;
    default:
      break;
  }
  ko_proj_constfunc constfunc = ko_projection_constfunc(ko_projcs_projection(pp));
  if (constfunc == nullptr) {
    pp->constants_state = kProjConstantsNotNeeded;
    return 1;
  }
  UniqueConstants constants(ko_constants_new());
  if (constants == nullptr) {
    pp->constants_state = kProjConstantsFailed;
    return 0;
  }
  const ko_spheroid *s = ko_datum_spheroid(ko_geogcs_datum(pp->geogcs));
  const double sph[2] = {ko_spheroid_axis(s), ko_spheroid_esquared(s)};
  double parms[KO_PARM_COUNT] = {};
  ko_projcs_parm_array(pp, parms);
  if (constfunc(constants.get(), sph, parms) < 0) {
    pp->constants_state = kProjConstantsFailed;
    return 0;
  }
  pp->constants = constants.release();
  pp->constants_state = kProjConstantsLoaded;
  return 1;
}

void ko_projcs_unload_constants(ko_projcs *p) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr) return;
  pp->constants = ko_constants_del(pp->constants);
  pp->constants_state = kProjConstantsNotLoaded;
}

ko_constants *ko_projcs_constants(const ko_projcs *p) {
  const ko_projcs *pp = ko::live_projcs(p);
  return pp != nullptr ? pp->constants : nullptr;
}

int ko_geog_to_proj(ko_projcs *p, int n, double *coords) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || coords == nullptr || n < 0) return -1;
  ko_proj_fn forward = ko_projection_forward(ko_projcs_projection(pp));
  if (forward == nullptr) return 0;
  const Frame f = make_frame(*pp);
  if (n == 0) return forward(f.sph, f.parms, 0, coords, f.ivals, f.dvals);

  angles_to_radians(coords, n, f.angular);
  int result = forward(f.sph, f.parms, n, coords, f.ivals, f.dvals);
  if (result < 1) {
    radians_to_angles(coords, n, f.angular);
    return result;
  }
  add_false_origin(coords, n, f);
  return result;
}

int ko_proj_to_geog_center(ko_projcs *p, int n, double *coords, double center) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || coords == nullptr || n < 0) return -1;
  ko_proj_fn inverse = ko_projection_inverse(ko_projcs_projection(pp));
  if (inverse == nullptr) return 0;
  const Frame f = make_frame(*pp);
  if (n == 0) return inverse(f.sph, f.parms, 0, coords, f.ivals, f.dvals);

  remove_false_origin(coords, n, f);
  int result = inverse(f.sph, f.parms, n, coords, f.ivals, f.dvals);
  if (result < 1) {
    add_false_origin(coords, n, f);
    return result;
  }
  double c = center * f.angular;
  if (c == 0.0 || std::fabs(c) <= ko::kTol)
    radians_to_angles(coords, n, f.angular);
  else
    radians_to_angles_about(coords, n, f.angular, c);
  return result;
}

int ko_proj_to_geog(ko_projcs *p, int n, double *coords) {
  return ko_proj_to_geog_center(p, n, coords, 0.0);
}

}  // extern "C"
