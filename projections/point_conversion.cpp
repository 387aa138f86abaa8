// Point conversion between a projected system and its geographic system:
// units and false origins at the edges, the projection constants cached in
// the projected system, and the projection's forward or inverse function
// for the points in between.
//
// The per-point passes here are plain loops over the interleaved (x, y)
// pairs with the two lanes' constants in two-element arrays, so that the
// compiler turns each into packed arithmetic; nothing in them allocates,
// looks anything up or asks what kind of projection it serves.
//
// Large arrays go through the projection in blocks of kBlockPoints, each
// block taken through the unit pass, the projection and the false-origin
// pass while it is still in the first-level cache: on a million points the
// passes then cost about a nanosecond each instead of a trip to memory.
// Every projection converts point by point, so the blocks give the same
// numbers as one call on the whole array; the counts of the blocks add up
// to what that call would return, and a failure (a count below 1) is
// handled for the whole array exactly as after a single call.  A system
// whose constants failed to load makes one call, since its projection
// builds temporary constants per call and could fail on some calls only.
// The next block is prefetched while the projection works on the current
// one, so the unit pass does not wait on memory either.
#include "objects/composite.h"
#include "objects/projcs.h"

#include <algorithm>
#include <climits>
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
  int block_points = 0;          // points per projection call
};

constexpr int kBlockPoints = 1024;  // 16 KiB of coordinates
constexpr int kSlotFalseEasting = 0;
constexpr int kSlotFalseNorthing = 1;

// The spheroid pair of the system's geographic system: semi-major axis in
// metres and first eccentricity squared.
void spheroid_pair(const ko_projcs &p, double (&sph)[2]) {
  const ko_spheroid *s = ko_datum_spheroid(ko_geogcs_datum(p.geogcs));
  sph[0] = ko_spheroid_axis(s);
  sph[1] = ko_spheroid_esquared(s);
}

Frame make_frame(ko_projcs &p) {
  Frame f;
  f.angular = ko::unit_factor_or(ko_geogcs_unit(p.geogcs), KO_TYPE_ANGUNIT, ko::kDegree);
  f.linear = ko::unit_factor_or(ko_projcs_unit(&p), KO_TYPE_LINUNIT, 1.0);
  spheroid_pair(p, f.sph);
  ko_projcs_parm_array(&p, f.parms);
  if (ko_projcs_load_constants(&p) != 0 && p.constants != nullptr) {
    f.ivals = ko_constants_ivals(p.constants);
    f.dvals = ko_constants_dvals(p.constants);
  }
  // Without its cached constants a projection builds temporary ones on every
  // call, which may fail on one call and not on the next: one call then
  // keeps the outcome the same for every point.
  f.block_points = p.constants_state == kProjConstantsFailed ? INT_MAX : kBlockPoints;
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

// Asks for the next block while the projection works on this one, so that
// the unit pass finds it in the cache instead of waiting on memory.
void prefetch_block(const double *block, int m) {
  constexpr std::size_t kLine = 64 / sizeof(double);
  for (std::size_t i = 0; i < values_of(m); i += kLine) __builtin_prefetch(block + i, 1);
}

// Runs `project` on the points block by block: `before` readies a block,
// `after` finishes it once the projection has converted something.  From
// the first block whose count is below 1 on, blocks are left as the
// projection returned them, because whether they are finished depends on
// the total: at least 1 finishes them all with `after`; below 1 (every
// block failed) `undo` puts every point back into the caller's units.
// The result is the sum of the positive counts (never above n), or the
// lowest count when none was positive.
template <class Before, class After, class Undo>
int project_in_blocks(double *coords, int n, ko_proj_fn project, const Frame &f, Before before,
                      After after, Undo undo) {
  long total = 0;
  int lowest = 0;
  int unfinished_from = n;  // first point of the blocks not yet finished
  for (int start = 0, m = 0; start < n; start += m) {
    m = std::min(f.block_points, n - start);
    double *block = coords + values_of(start);
    before(block, m);
    prefetch_block(coords + values_of(start + m), std::min(f.block_points, n - start - m));
    const int count = project(f.sph, f.parms, m, block, f.ivals, f.dvals);
    if (count > 0) total += count;
    lowest = std::min(lowest, count);
    if (count < 1 && unfinished_from == n) unfinished_from = start;
    if (unfinished_from == n) after(block, m);
  }
  double *rest = coords + values_of(unfinished_from);
  if (total < 1) {
    undo(rest, n - unfinished_from);
    return lowest;
  }
  after(rest, n - unfinished_from);
  return total > n ? n : static_cast<int>(total);
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
  double sph[2];
  spheroid_pair(*pp, sph);
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
  return ko::field_or(p, ko::live_projcs, &ko_projcs::constants, nullptr);
}

int ko_geog_to_proj(ko_projcs *p, int n, double *coords) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || coords == nullptr || n < 0) return -1;
  ko_proj_fn forward = ko_projection_forward(ko_projcs_projection(pp));
  if (forward == nullptr) return 0;
  const Frame f = make_frame(*pp);
  if (n == 0) return forward(f.sph, f.parms, 0, coords, f.ivals, f.dvals);

  return project_in_blocks(
      coords, n, forward, f,
      [&f](double *block, int m) { angles_to_radians(block, m, f.angular); },
      [&f](double *block, int m) { add_false_origin(block, m, f); },
      [&f](double *block, int m) { radians_to_angles(block, m, f.angular); });
}

int ko_proj_to_geog_center(ko_projcs *p, int n, double *coords, double center) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || coords == nullptr || n < 0) return -1;
  ko_proj_fn inverse = ko_projection_inverse(ko_projcs_projection(pp));
  if (inverse == nullptr) return 0;
  const Frame f = make_frame(*pp);
  if (n == 0) return inverse(f.sph, f.parms, 0, coords, f.ivals, f.dvals);

  // A centre within 2^-48 rad of zero leaves the projection's longitudes alone.
  const double c = center * f.angular;
  const bool recentre = !(c == 0.0 || std::fabs(c) <= ko::kTol);
  return project_in_blocks(
      coords, n, inverse, f,
      [&f](double *block, int m) { remove_false_origin(block, m, f); },
      [&f, c, recentre](double *block, int m) {
        if (recentre)
          radians_to_angles_about(block, m, f.angular, c);
        else
          radians_to_angles(block, m, f.angular);
      },
      [&f](double *block, int m) { add_false_origin(block, m, f); });
}

int ko_proj_to_geog(ko_projcs *p, int n, double *coords) {
  return ko_proj_to_geog_center(p, n, coords, 0.0);
}

}  // extern "C"
