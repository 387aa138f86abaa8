// Pseudocylindricals whose parallels are straight lines with the meridians
// spaced evenly along each, x = a Δλ l(φ), y = a d(φ), on the sphere of
// radius a with geodetic latitudes (the projections are defined on the
// sphere):
//  - Natural_Earth (43077): l, d polynomials of B. Šavrič, B. Jenny,
//    T. Patterson, D. Petrovič, L. Hurni, "A polynomial equation for the
//    Natural Earth projection", CaGIS 38, 2011.
//  - Natural_Earth_II (43078): B. Šavrič, T. Patterson, B. Jenny, "The
//    Natural Earth II world map projection", International Journal of
//    Cartography 1, 2015.
//  - Times (43048; Snyder 1993, "Flattening the Earth"):
//    d = 1.70711 tan(φ/2), l = 0.74482 − 0.34588 sin²(π/4 tan(φ/2)).
//  - Loximuthal (43023, K. Siemon 1935, W. Tobler 1966; Snyder 1993):
//    d = φ − φ1, l = (φ − φ1) / (ψ(φ) − ψ(φ1)), ψ the isometric latitude of
//    the sphere, l = cos φ1 on the central parallel φ1.  Every loxodrome
//    through the centre (λ0, φ1) is straight and true in length and azimuth.
// The polynomial northings are inverted by Newton's method, the others in
// closed form.  Parameters: slot 2 λ0, slot 6 φ1 (Central_Parallel, the
// loximuthal's only).  Computed per call: there is no constants function.
// The inverse refuses points beyond the poles' lines or the outline.
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj {
namespace {

enum class Kind : int { kNaturalEarth, kNaturalEarth2, kTimes, kLoximuthal };

struct PseudoCylConstants {
  double a;
  double lambda0;
  double phi1;                   // loximuthal's central parallel
  double y_south, y_north;       // d(−π/2), d(π/2) on the unit sphere
};

// Natural Earth: l = A0 + A1 φ² + A2 φ⁴ + A3 φ¹⁰ + A4 φ¹²,
// d = φ (B0 + B1 φ² + B2 φ⁶ + B3 φ⁸ + B4 φ¹⁰).
constexpr double kNeA0 = 0.8707, kNeA1 = -0.131979, kNeA2 = -0.013791, kNeA3 = 0.003971,
                 kNeA4 = -0.001529;
constexpr double kNeB0 = 1.007226, kNeB1 = 0.015085, kNeB2 = -0.044475, kNeB3 = 0.028874,
                 kNeB4 = -0.005916;
// Natural Earth II: l = A0 + A1 φ² + A2 φ¹² + A3 φ¹⁴ + A4 φ¹⁶ + A5 φ¹⁸,
// d = φ (B0 + B1 φ⁸ + B2 φ¹⁰ + B3 φ¹²).
constexpr double kNe2A0 = 0.84719, kNe2A1 = -0.13063, kNe2A2 = -0.04515, kNe2A3 = 0.05494,
                 kNe2A4 = -0.02326, kNe2A5 = 0.00331;
constexpr double kNe2B0 = 1.01183, kNe2B1 = -0.02625, kNe2B2 = 0.01926, kNe2B3 = -0.00396;
// Times.
constexpr double kTimesY = 1.70711, kTimesL0 = 0.74482, kTimesL1 = 0.34588;
constexpr double kQuarterPi = 0.78539816339744831;

// The loximuthal's l: (φ − φ1) / (ψ(φ) − ψ(φ1)).  With ψ = atanh(sin φ),
// ψ(φ) − ψ(φ1) = atanh((sin φ − sin φ1) / (1 − sin φ sin φ1)), and
//   sin φ − sin φ1 = 2 cos m sin(δ/2),  1 − sin φ sin φ1 = cos φ cos φ1 + 2 sin²(δ/2)
// with δ = φ − φ1, m = (φ + φ1) / 2: no cancellation near the central
// parallel, where l tends to cos φ1.  Far from it (|z| > 1/2, where atanh
// would lose digits towards the poles) the two ψ are subtracted directly.
double loxodrome_ratio(double phi, double phi1) {
  const double delta = phi - phi1;
  if (delta == 0.0) return std::cos(phi1);
  const double sh = std::sin(0.5 * delta);
  const double z = 2.0 * std::cos(0.5 * (phi + phi1)) * sh /
                   (std::cos(phi) * std::cos(phi1) + 2.0 * sh * sh);
  if (!(std::fabs(z) < 1.0)) return 0.0;  // a pole: the loxodromes' end
  const double dpsi = std::fabs(z) <= 0.5 ? std::atanh(z)
                                          : std::asinh(std::tan(phi)) - std::asinh(std::tan(phi1));
  return delta / dpsi;
}

template <Kind K>
double width(const PseudoCylConstants &k, double phi) {  // l(φ)
  const double p2 = phi * phi;
  if constexpr (K == Kind::kNaturalEarth) {
    const double p4 = p2 * p2, p10 = p4 * p4 * p2;
    return kNeA0 + kNeA1 * p2 + kNeA2 * p4 + p10 * (kNeA3 + kNeA4 * p2);
  }
  if constexpr (K == Kind::kNaturalEarth2) {
    const double p12 = p2 * p2 * p2 * p2 * p2 * p2;
    return kNe2A0 + kNe2A1 * p2 + p12 * (kNe2A2 + p2 * (kNe2A3 + p2 * (kNe2A4 + kNe2A5 * p2)));
  }
  if constexpr (K == Kind::kTimes) {
    const double s = std::sin(kQuarterPi * std::tan(0.5 * phi));
    return kTimesL0 - kTimesL1 * s * s;
  }
  if constexpr (K == Kind::kLoximuthal) return loxodrome_ratio(phi, k.phi1);
  return NAN;
}

template <Kind K>
double northing(const PseudoCylConstants &k, double phi) {  // d(φ)
  const double p2 = phi * phi;
  if constexpr (K == Kind::kNaturalEarth) {
    const double p6 = p2 * p2 * p2;
    return phi * (kNeB0 + kNeB1 * p2 + p6 * (kNeB2 + p2 * (kNeB3 + kNeB4 * p2)));
  }
  if constexpr (K == Kind::kNaturalEarth2) {
    const double p8 = p2 * p2 * p2 * p2;
    return phi * (kNe2B0 + p8 * (kNe2B1 + p2 * (kNe2B2 + kNe2B3 * p2)));
  }
  if constexpr (K == Kind::kTimes) return kTimesY * std::tan(0.5 * phi);
  if constexpr (K == Kind::kLoximuthal) return phi - k.phi1;
  return NAN;
}

// d'(φ) of the polynomial northings, for Newton's method.
template <Kind K>
double northing_slope(double phi) {
  const double p2 = phi * phi;
  if constexpr (K == Kind::kNaturalEarth) {
    const double p6 = p2 * p2 * p2;
    return kNeB0 + 3.0 * kNeB1 * p2 + p6 * (7.0 * kNeB2 + p2 * (9.0 * kNeB3 + 11.0 * kNeB4 * p2));
  }
  if constexpr (K == Kind::kNaturalEarth2) {
    const double p8 = p2 * p2 * p2 * p2;
    return kNe2B0 + p8 * (9.0 * kNe2B1 + p2 * (11.0 * kNe2B2 + 13.0 * kNe2B3 * p2));
  }
  return NAN;
}

// The latitude of a unit northing y within [d(−π/2), d(π/2)].
template <Kind K>
double latitude(const PseudoCylConstants &k, double y) {
  if constexpr (K == Kind::kTimes) return 2.0 * std::atan(y / kTimesY);
  if constexpr (K == Kind::kLoximuthal) return y + k.phi1;
  if constexpr (K == Kind::kNaturalEarth || K == Kind::kNaturalEarth2) {
    double phi = y / northing_slope<K>(0.0);
    for (int it = 0; it < 30; ++it) {
      const double step = (northing<K>(k, phi) - y) / northing_slope<K>(phi);
      phi -= step;
      if (!(std::fabs(step) > 1e-15)) break;
    }
    return phi;
  }
  return NAN;
}

template <Kind K>
bool compute(const double *sph, const double *parms, PseudoCylConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return false;
  k.a = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  if constexpr (K == Kind::kLoximuthal) {
    if (!finite_slots(parms, {slot::kLatOrigin})) return false;
    k.phi1 = parms[slot::kLatOrigin];
    // On a pole the loxodromes through the centre are the meridians alone.
    if (!(std::fabs(k.phi1) < kHalfPi)) return false;
  }
  k.y_south = northing<K>(k, -kHalfPi);
  k.y_north = northing<K>(k, kHalfPi);
  return true;
}

template <Kind K>
int forward_points(const PseudoCylConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double x = k.a * ko_delta(xy[i] - k.lambda0) * width<K>(k, phi);
    const double y = k.a * northing<K>(k, phi);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

template <Kind K>
int inverse_points(const PseudoCylConstants &k, std::span<double> xy) {
  int count = 0;
  const double slack = 1e-15 * (1.0 + std::fmax(std::fabs(k.y_south), std::fabs(k.y_north)));
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double x = xy[i] / k.a, y = xy[i + 1] / k.a;
    const bool inside = y >= k.y_south - slack && y <= k.y_north + slack;
    const double phi = std::clamp(latitude<K>(k, std::clamp(y, k.y_south, k.y_north)), -kHalfPi, kHalfPi);
    const double l = width<K>(k, phi);
    // Where the parallel shrinks to a point (the loximuthal's poles) only
    // that point is on the map.
    const double dlam = l > 0.0 ? x / l : (std::fabs(x) <= 1e-15 ? 0.0 : HUGE_VAL);
    const bool ok = inside && std::fabs(dlam) <= kPi * (1.0 + 1e-12);
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, ok);
  }
  return count;
}

template <Kind K, bool Forward>
int convert(const double *sph, const double *parms, int n, double *coords, const int32_t *,
            const double *) {
  return with_direct_constants<PseudoCylConstants>(
      compute<K>, sph, parms, n, coords, [](const PseudoCylConstants &k, std::span<double> xy) {
        return Forward ? forward_points<K>(k, xy) : inverse_points<K>(k, xy);
      });
}

}  // namespace
}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_natural_earth_vector = {
    43077, "Natural_Earth", ko::proj::convert<ko::proj::Kind::kNaturalEarth, true>,
    ko::proj::convert<ko::proj::Kind::kNaturalEarth, false>, nullptr, ko::validity<43077>,
    nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_natural_earth_ii_vector = {
    43078, "Natural_Earth_II", ko::proj::convert<ko::proj::Kind::kNaturalEarth2, true>,
    ko::proj::convert<ko::proj::Kind::kNaturalEarth2, false>, nullptr, ko::validity<43078>,
    nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_times_vector = {
    43048, "Times", ko::proj::convert<ko::proj::Kind::kTimes, true>,
    ko::proj::convert<ko::proj::Kind::kTimes, false>, nullptr, ko::validity<43048>, nullptr,
    nullptr};
constinit const ko_projlist_entry ko_prj_loximuthal_vector = {
    43023, "Loximuthal", ko::proj::convert<ko::proj::Kind::kLoximuthal, true>,
    ko::proj::convert<ko::proj::Kind::kLoximuthal, false>, nullptr, ko::validity<43023>, nullptr,
    nullptr};
}  // extern "C"
