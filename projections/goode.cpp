// Goode homolosine (J. P. Goode, 1923; Snyder and Voxland 1989, "An Album
// of Map Projections") on the sphere of radius a: the sinusoidal between
// the parallels of 40°44'11.8", where it and Mollweide have the same scale
// along the parallel, and Mollweide beyond them, lowered by the difference
// of the two maps' y there (0.0528035 R) so the pieces meet:
//   |φ| ≤ φb  x = Δλ cos φ,           y = φ
//   |φ| > φb  x = (2√2/π) Δλ cos θ,   y = √2 sin θ ∓ Yc
// (θ of Mollweide, projections/mollweide_theta.h).  Option (slot 15)
// chooses the layout: 0 the whole world on one central meridian; 1 the
// interrupted form of Goode's world map, each hemisphere cut into lobes
// with their own central meridians (north: 100°W for 180°W–40°W and 30°E
// for 40°W–180°E; south: 160°W, 60°W, 20°E and 140°E for the quarters cut
// at 100°W, 20°W and 80°E), the lobe's central meridian placed at its own
// easting.  Other options are refused.  The inverse tries the lobes of the
// hemisphere and keeps the one whose longitude range holds the result;
// points in the interruptions or off the outline are refused.  Mollweide's
// inverse reads φ through 1 − sin φ = (δ − sin δ)/π, δ = π − 2θ, for full
// precision at the poles.
// Parameters: slot 2 λ0, slot 15 the option, slots 12-14 the orientation.
#include "projections/mollweide_theta.h"
#include "projections/projlist.h"
#include "projections/world_sphere.h"

namespace ko::proj {
namespace {

using world::SphereMap;

constexpr double kDegree = kPi / 180.0;
const double kPhiB = (40.0 + 44.0 / 60.0 + 11.8 / 3600.0) * kDegree;
const double kCx = 2.0 * std::sqrt(2.0) / kPi;
const double kCy = std::sqrt(2.0);
const double kYc = kCy * std::sin(world::mollweide_theta(kPhiB)) - kPhiB;

void homolosine(double dlam, double phi, double &x, double &y) {
  if (std::fabs(phi) <= kPhiB) {
    x = dlam * std::cos(phi);
    y = phi;
    return;
  }
  const double t = std::copysign(world::mollweide_theta(std::fabs(phi)), phi);
  x = kCx * dlam * std::cos(t);
  y = kCy * std::sin(t) - std::copysign(kYc, phi);
}

bool homolosine_inv(double x, double y, double &dlam, double &phi) {
  const double ay = std::fabs(y);
  if (ay <= kPhiB) {
    phi = y;
    dlam = x / std::cos(phi);
    return true;
  }
  const double s = (ay + kYc) / kCy;
  if (!(s <= world::kOutlineSlack)) return false;
  const double t = std::asin(std::fmin(1.0, s));
  const double d = world::delta_minus_sin(kPi - 2.0 * t);  // π (1 − sin φ)
  phi = std::copysign(kHalfPi - 2.0 * std::asin(std::sqrt(d / (2.0 * kPi))), y);
  // On a pole's point (a lobe's, in the interrupted layout, placed at the
  // lobe's easting) x within rounding of it is the point itself.
  dlam = std::fabs(x) <= 1e-15 ? 0.0 : x / (kCx * std::cos(t));
  return true;
}

struct Lobe {
  double west, east, centre;  // degrees from the map's central meridian
};
constexpr Lobe kNorth[] = {{-180, -40, -100}, {-40, 180, 30}};
constexpr Lobe kSouth[] = {{-180, -100, -160}, {-100, -20, -60}, {-20, 80, 20}, {80, 180, 140}};

std::span<const Lobe> lobes_of(bool north) {
  return north ? std::span<const Lobe>(kNorth) : std::span<const Lobe>(kSouth);
}

bool interrupted(const SphereMap &k) { return k.option == 1.0; }

bool goode_fwd(const SphereMap &k, double dlam, double phi, double &x, double &y) {
  if (!interrupted(k)) {
    homolosine(dlam, phi, x, y);
    return k.option == 0.0;
  }
  const double deg = dlam / kDegree;
  for (const Lobe &l : lobes_of(phi >= 0.0)) {
    if (deg < l.west || deg > l.east) continue;
    const double c = l.centre * kDegree;
    homolosine(dlam - c, phi, x, y);
    x += c;
    return true;
  }
  return false;
}

bool goode_inv(const SphereMap &k, double x, double y, double &dlam, double &phi) {
  if (!interrupted(k)) return k.option == 0.0 && homolosine_inv(x, y, dlam, phi);
  constexpr double kEdge = 1e-12;  // radians of slack on a lobe's edge meridians
  for (const Lobe &l : lobes_of(y >= 0.0)) {
    const double c = l.centre * kDegree;
    double dl = 0.0;
    if (!homolosine_inv(x - c, y, dl, phi)) continue;
    if (dl + c < l.west * kDegree - kEdge || dl + c > l.east * kDegree + kEdge) continue;
    dlam = dl + c;
    return true;
  }
  return false;
}

// The option must be one of the two layouts.
int goode_constants(ko_constants *c, const double *sph, const double *parms) {
  if (parms == nullptr || (parms[slot::kOption] != 0.0 && parms[slot::kOption] != 1.0)) return -1;
  return world::sphere_constants(c, sph, parms);
}

}  // namespace
}  // namespace ko::proj

// The projection vector.
KO_WORLD_SPHERE_VECTOR(goode_homolosine, 43059, "Goode_Homolosine", ko::proj::goode_fwd,
                       ko::proj::goode_inv, ko::proj::goode_constants)
