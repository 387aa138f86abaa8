// Auxiliary functions of the projections: longitude wrapping, radii of the
// spheroid, auxiliary latitudes, the arithmetic-geometric mean and tan(π/4 ± φ/2).
#include "foundation/internal.h"

namespace {

// fmod keeps the sign of its first argument, so r lies in (-2π, 2π); fold
// the part outside [-π, π] back by one turn.
double fold_turn(double r) {
  if (r > ko::kPi) return r - ko::kTwoPi;
  if (r < -ko::kPi) return r + ko::kTwoPi;
  return r;
}

}  // namespace

extern "C" {

double ko_delta(double angle) {
  if (angle >= -ko::kPi && angle <= ko::kPi) return angle;
  return fold_turn(std::fmod(angle, ko::kTwoPi));
}

double ko_delta_center(double angle, double center) {
  // No short cut for angles already in range: the offset from the centre is
  // always reduced, so that the result is the centre plus a folded offset.
  return fold_turn(std::fmod(angle - center, ko::kTwoPi)) + center;
}

}  // extern "C"
