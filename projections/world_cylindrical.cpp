// Normal-aspect world cylindricals whose northing is a function of the
// latitude alone, x = a cx Δλ, y = a f(φ), computed on the sphere of radius
// a with geodetic latitudes (the projections are defined on the sphere):
//  - Plate_Carree (43001): f(φ) = φ, cx = 1 (Snyder 1987, chapter 12,
//    with φ1 = 0).
//  - Miller_Cylindrical (43003): f(φ) = 5/4 ln tan(π/4 + 2φ/5)
//    = 5/4 asinh(tan(4φ/5)), cx = 1 (Snyder 1987, chapter 11).
//  - Gall_Stereographic (43016): f(φ) = (1 + √2/2) tan(φ/2), cx = √2/2, the
//    cylinder secant at 45° seen from the antipode of each meridian
//    (Snyder 1993, "Flattening the Earth").
//  - Patterson (43079): f(φ) = K1 φ + K2 φ⁵ + K3 φ⁷ + K4 φ⁹, cx = 1
//    (T. Patterson, B. Šavrič, B. Jenny, "Introducing the Patterson
//    Cylindrical Projection", Cartographic Perspectives 78, 2014).
//  - Compact_Miller (43080): f(φ) = K1 φ + K2 φ³ + K3 φ⁵, cx = 1 (B. Jenny,
//    B. Šavrič, T. Patterson, "A compromise aspect-adaptive cylindrical
//    projection for world maps", IJGIS 29, 2015).
// The polynomial forms are inverted by Newton's method.  Behrmann (43017) is
// Lambert's cylindrical equal-area with its standard parallels at ±30°, on
// the ellipsoid: it runs the Cylindrical_Equal_Area kernels.
// Parameters: slot 2 λ0.  None of these projections has a constants
// function: the few constants are computed on each call.  Points beyond the
// map's outline (|Δλ| > π, beyond a pole) are refused by the inverse.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj {
namespace {

enum class Kind : int { kPlateCarree, kMiller, kGall, kPatterson, kCompactMiller };

// Patterson's and the compact Miller's polynomial coefficients.
constexpr double kPat1 = 1.0148, kPat2 = 0.23185, kPat3 = -0.14499, kPat4 = 0.02406;
constexpr double kCom1 = 0.9902, kCom2 = 0.1604, kCom3 = -0.03054;
constexpr double kRootHalf = 0.70710678118654752;  // √2 / 2

// The northing on the unit sphere and its derivative.
template <Kind K>
double northing(double phi) {
  const double p2 = phi * phi;
  if constexpr (K == Kind::kPlateCarree) return phi;
  if constexpr (K == Kind::kMiller) return 1.25 * std::asinh(std::tan(0.8 * phi));
  if constexpr (K == Kind::kGall) return (1.0 + kRootHalf) * std::tan(0.5 * phi);
  if constexpr (K == Kind::kPatterson) return phi * (kPat1 + p2 * p2 * (kPat2 + p2 * (kPat3 + kPat4 * p2)));
  if constexpr (K == Kind::kCompactMiller) return phi * (kCom1 + p2 * (kCom2 + kCom3 * p2));
  return NAN;
}

template <Kind K>
double northing_slope(double phi) {
  const double p2 = phi * phi;
  if constexpr (K == Kind::kPatterson)
    return kPat1 + p2 * p2 * (5.0 * kPat2 + p2 * (7.0 * kPat3 + 9.0 * kPat4 * p2));
  if constexpr (K == Kind::kCompactMiller) return kCom1 + p2 * (3.0 * kCom2 + 5.0 * kCom3 * p2);
  return NAN;
}

// The latitude of a northing y (unit sphere), |y| no more than the pole's.
template <Kind K>
double latitude(double y) {
  if constexpr (K == Kind::kPlateCarree) return y;
  if constexpr (K == Kind::kMiller) return std::atan(std::sinh(0.8 * y)) / 0.8;
  if constexpr (K == Kind::kGall) return 2.0 * std::atan(y / (1.0 + kRootHalf));
  if constexpr (K == Kind::kPatterson || K == Kind::kCompactMiller) {
    double phi = y / northing_slope<K>(0.0);
    for (int it = 0; it < 20; ++it) {
      const double step = (northing<K>(phi) - y) / northing_slope<K>(phi);
      phi -= step;
      if (!(std::fabs(step) > 1e-15)) break;
    }
    return phi;
  }
  return NAN;
}

template <Kind K>
constexpr double easting_factor() {
  return K == Kind::kGall ? kRootHalf : 1.0;
}

struct WorldCylConstants {
  double a;
  double lambda0;
  double x_per_rad;  // a cx
  double y_pole;     // a f(π/2)
};

template <Kind K>
bool compute(const double *sph, const double *parms, WorldCylConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return false;
  k.a = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.x_per_rad = g.a * easting_factor<K>();
  k.y_pole = g.a * northing<K>(kHalfPi);
  return true;
}

template <Kind K>
int forward_points(const WorldCylConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double x = k.x_per_rad * ko_delta(xy[i] - k.lambda0);
    const double y = k.a * northing<K>(phi);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

template <Kind K>
int inverse_points(const WorldCylConstants &k, std::span<double> xy) {
  int count = 0;
  const double y_limit = k.y_pole * (1.0 + 1e-15);
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double dlam = xy[i] / k.x_per_rad, y = xy[i + 1];
    const bool ok = std::fabs(y) <= y_limit && std::fabs(dlam) <= kPi * (1.0 + 1e-15);
    const double phi = latitude<K>(std::clamp(y, -k.y_pole, k.y_pole) / k.a);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), std::clamp(phi, -kHalfPi, kHalfPi), ok);
  }
  return count;
}

template <Kind K, bool Forward>
int convert(const double *sph, const double *parms, int n, double *coords, const int32_t *,
            const double *) {
  return with_direct_constants<WorldCylConstants>(
      compute<K>, sph, parms, n, coords, [](const WorldCylConstants &k, std::span<double> xy) {
        return Forward ? forward_points<K>(k, xy) : inverse_points<K>(k, xy);
      });
}

// Behrmann: the Cylindrical_Equal_Area parameters with φ1 = 30°.
constexpr double kBehrmannParallel = kPi / 6.0;

void behrmann_parms(const double *parms, double (&out)[KO_PARM_COUNT]) {
  std::copy_n(parms, KO_PARM_COUNT, out);
  out[slot::kStdParallel1] = kBehrmannParallel;
}

int behrmann_constants(ko_constants *c, const double *sph, const double *parms) {
  if (parms == nullptr) return -1;
  double p[KO_PARM_COUNT];
  behrmann_parms(parms, p);
  return cea_constants(c, sph, p);
}
int behrmann_forward(const double *sph, const double *parms, int n, double *coords,
                     const int32_t *ivals, const double *dvals) {
  if (parms == nullptr) return 0;
  double p[KO_PARM_COUNT];
  behrmann_parms(parms, p);
  return cea_forward(sph, p, n, coords, ivals, dvals);
}
// The equal-area inverse reads any easting modulo the map's width; a point
// beyond the outline is marked first, so that it is refused.  (The marking
// waits until the definition is known to be usable, and reads plain grid
// eastings: Behrmann takes no plane orientation.)
int behrmann_inverse(const double *sph, const double *parms, int n, double *coords,
                     const int32_t *ivals, const double *dvals) {
  Ellipsoid g;
  if (parms == nullptr || !read_ellipsoid(sph, g) || n < 0 || (n > 0 && coords == nullptr) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin}) ||
      !(std::fabs(parms[slot::kLatOrigin]) <= kHalfPi))
    return 0;
  double p[KO_PARM_COUNT];
  behrmann_parms(parms, p);
  if (plain_orientation(parms)) {
    const double half_width = kPi * g.a * parallel_radius_ratio(g.e2, kBehrmannParallel);
    for (int i = 0; i < n; ++i)
      if (!(std::fabs(coords[2 * i]) <= half_width * (1.0 + 1e-15)))
        store_point(&coords[2 * i], 0.0, 0.0, false);
  }
  return cea_inverse(sph, p, n, coords, ivals, dvals);
}

// Miller's slots by name, for its auxiliary-sphere form.
constexpr ko_proj_fn kMillerForward = convert<Kind::kMiller, true>;
constexpr ko_proj_fn kMillerInverse = convert<Kind::kMiller, false>;

}  // namespace
}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_plate_carree_vector = {
    43001, "Plate_Carree", ko::proj::convert<ko::proj::Kind::kPlateCarree, true>,
    ko::proj::convert<ko::proj::Kind::kPlateCarree, false>, nullptr,
    ko::validity<43001>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_miller_cylindrical_vector = {
    43003, "Miller_Cylindrical", ko::proj::convert<ko::proj::Kind::kMiller, true>,
    ko::proj::convert<ko::proj::Kind::kMiller, false>, nullptr,
    ko::validity<43003>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_gall_stereographic_vector = {
    43016, "Gall_Stereographic", ko::proj::convert<ko::proj::Kind::kGall, true>,
    ko::proj::convert<ko::proj::Kind::kGall, false>, nullptr,
    ko::validity<43016>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_behrmann_vector = {
    43017, "Behrmann", ko::proj::behrmann_forward, ko::proj::behrmann_inverse,
    ko::proj::behrmann_constants, ko::validity<43017>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_patterson_vector = {
    43079, "Patterson", ko::proj::convert<ko::proj::Kind::kPatterson, true>,
    ko::proj::convert<ko::proj::Kind::kPatterson, false>, nullptr,
    ko::validity<43079>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_compact_miller_vector = {
    43080, "Compact_Miller", ko::proj::convert<ko::proj::Kind::kCompactMiller, true>,
    ko::proj::convert<ko::proj::Kind::kCompactMiller, false>,
    nullptr, ko::validity<43080>, nullptr, nullptr};
}  // extern "C"

// Miller_Cylindrical on an auxiliary sphere.
KO_AUXS_VECTOR(miller_cylindrical_auxs, 43103, "Miller_Cylindrical_Auxiliary_Sphere",
               ko::proj::kMillerForward, ko::proj::kMillerInverse, nullptr,
               ko::proj::slot::kCentralMeridian, ko::proj::auxs::kNoLatitude)
