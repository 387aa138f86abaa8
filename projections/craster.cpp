// Craster parabolic (J. E. E. Craster, 1929; Putniņš P4) on the sphere of
// radius a (Snyder and Voxland 1989, "An Album of Map Projections"): an
// equal-area pseudocylindrical with parabolic meridians, the pole a point,
//   x = sqrt(3/π) Δλ (2 cos(2φ/3) − 1),  y = sqrt(3π) sin(φ/3).
// The inverse is closed: φ = 3 asin(y / sqrt(3π)),
// Δλ = x / (sqrt(3/π) (2 cos(2φ/3) − 1)).
// Parameters: slot 2 λ0, slots 12-14 the orientation.
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

const double kCx = std::sqrt(3.0 / kPi);
const double kCy = std::sqrt(3.0 * kPi);
const double kYPole = kCy * 0.5;  // sin 30°

bool craster_fwd(const SphereMap &, double dlam, double phi, double &x, double &y) {
  x = kCx * dlam * (2.0 * std::cos(2.0 * phi / 3.0) - 1.0);
  y = kCy * std::sin(phi / 3.0);
  return true;
}
bool craster_inv(const SphereMap &, double x, double y, double &dlam, double &phi) {
  if (!(std::fabs(y) <= kYPole * world::kOutlineSlack)) return false;
  phi = 3.0 * std::asin(std::fmax(-0.5, std::fmin(0.5, y / kCy)));
  // On the pole's point only x = 0 belongs to the map.
  dlam = x == 0.0 ? 0.0 : x / (kCx * (2.0 * std::cos(2.0 * phi / 3.0) - 1.0));
  return true;
}

}  // namespace
}  // namespace ko::proj

// The projection vector.
KO_WORLD_SPHERE_VECTOR(craster_parabolic, 43046, "Craster_Parabolic", ko::proj::craster_fwd,
                       ko::proj::craster_inv, ko::proj::world::sphere_constants)
