// Auxiliary functions of the projections: longitude wrapping, radii of the
// spheroid, auxiliary latitudes, the arithmetic-geometric mean and tan(π/4 ± φ/2).
#include "foundation/internal.h"
#include "projections/elliptic.h"
#include "projections/family.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numbers>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// ---------------------------------------------------------------------------
// Longitude wrapping
// ---------------------------------------------------------------------------

// fmod keeps the sign of its first argument, so r lies in (-2π, 2π); fold
// the part outside [-π, π] back by one turn.
double fold_turn(double r) {
  if (r > ko::kPi) return r - ko::kTwoPi;
  if (r < -ko::kPi) return r + ko::kTwoPi;
  return r;
}

// ---------------------------------------------------------------------------
// Series of the auxiliary latitudes
//
// aux - phi = sum_{k=1..6} a_k sin(2k phi), each a_k a polynomial in t = e²
// whose terms t^1..t^7 are the row k-1 of a table (the t^k term is the first
// non-zero one).  The rational coefficients are exact; scripts/aux_series.py
// derives them (Snyder 1987 eqs. 3-1, 3-11, 3-12, 3-20, 3-21, expanded in e²,
// reversed by the Lagrange-Buermann formula).  The neglected sin(14 phi) and
// t^8 terms stay below 2e-18 radians for e² under kSeriesLimit.
// ---------------------------------------------------------------------------

using SeriesTable = std::array<std::array<double, 7>, 6>;

constexpr SeriesTable kConformalForward = {{
    {-1.0 / 2, -5.0 / 24, -3.0 / 32, -281.0 / 5760, -7.0 / 240, -23453.0 / 1209600, -15353.0 / 1105920},
    {0, 5.0 / 48, 7.0 / 80, 697.0 / 11520, 93.0 / 2240, 114533.0 / 3870720, 20309.0 / 921600},
    {0, 0, -13.0 / 480, -461.0 / 13440, -1693.0 / 53760, -152953.0 / 5806080, -2504623.0 / 116121600},
    {0, 0, 0, 1237.0 / 161280, 131.0 / 10080, 429799.0 / 29030400, 185783.0 / 12773376},
    {0, 0, 0, 0, -367.0 / 161280, -308531.0 / 63866880, -239351.0 / 36495360},
    {0, 0, 0, 0, 0, 444337.0 / 638668800, 421111.0 / 237219840},
}};
constexpr SeriesTable kConformalInverse = {{
    {1.0 / 2, 5.0 / 24, 1.0 / 12, 13.0 / 360, 3.0 / 160, 1033.0 / 86400, 21443.0 / 2419200},
    {0, 7.0 / 48, 29.0 / 240, 811.0 / 11520, 81.0 / 2240, 445.0 / 24192, 1367.0 / 134400},
    {0, 0, 7.0 / 120, 81.0 / 1120, 3029.0 / 53760, 41261.0 / 1161216, 293723.0 / 14515200},
    {0, 0, 0, 4279.0 / 161280, 883.0 / 20160, 1246019.0 / 29030400, 10395563.0 / 319334400},
    {0, 0, 0, 0, 2087.0 / 161280, 340807.0 / 12773376, 251927.0 / 7983360},
    {0, 0, 0, 0, 0, 150419.0 / 22809600, 33849103.0 / 2075673600},
}};
constexpr SeriesTable kAuthalicForward = {{
    {-1.0 / 3, -31.0 / 180, -59.0 / 560, -42811.0 / 604800, -605399.0 / 11975040, -411035087.0 / 10897286400, -256165279.0 / 8805888000},
    {0, 17.0 / 360, 61.0 / 1260, 76969.0 / 1814400, 215431.0 / 5987520, 490668329.0 / 16144128000, 101180247059.0 / 3923023104000},
    {0, 0, -383.0 / 45360, -3347.0 / 259200, -1751791.0 / 119750400, -14606618083.0 / 980755776000, -113342286697.0 / 7846046208000},
    {0, 0, 0, 6007.0 / 3628800, 201293.0 / 59875200, 507798631.0 / 108972864000, 1083726101.0 / 196151155200},
    {0, 0, 0, 0, -5839.0 / 17107200, -31380263.0 / 36324288000, -1585655363.0 / 1120863744000},
    {0, 0, 0, 0, 0, 285142111.0 / 3923023104000, 864091703.0 / 3923023104000},
}};
constexpr SeriesTable kAuthalicInverse = {{
    {1.0 / 3, 31.0 / 180, 517.0 / 5040, 120389.0 / 1814400, 1362253.0 / 29937600, 593213669.0 / 18162144000, 19097722081.0 / 784604620800},
    {0, 23.0 / 360, 251.0 / 3780, 102287.0 / 1814400, 450739.0 / 9979200, 46473123049.0 / 1307674368000, 109419737419.0 / 3923023104000},
    {0, 0, 761.0 / 45360, 47561.0 / 1814400, 434501.0 / 14968800, 786619901.0 / 28021593600, 99583651487.0 / 3923023104000},
    {0, 0, 0, 6059.0 / 1209600, 625511.0 / 59875200, 4669622081.0 / 326918592000, 15926161249.0 / 980755776000},
    {0, 0, 0, 0, 48017.0 / 29937600, 1367856067.0 / 326918592000, 26719810463.0 / 3923023104000},
    {0, 0, 0, 0, 0, 2105342479.0 / 3923023104000, 6593409167.0 / 3923023104000},
}};
constexpr SeriesTable kRectifyingForward = {{
    {-3.0 / 8, -3.0 / 16, -111.0 / 1024, -141.0 / 2048, -1533.0 / 32768, -2193.0 / 65536, -836103.0 / 33554432},
    {0, 15.0 / 256, 15.0 / 256, 405.0 / 8192, 165.0 / 4096, 274695.0 / 8388608, 225045.0 / 8388608},
    {0, 0, -35.0 / 3072, -35.0 / 2048, -4935.0 / 262144, -29225.0 / 1572864, -586145.0 / 33554432},
    {0, 0, 0, 315.0 / 131072, 315.0 / 65536, 13671.0 / 2097152, 15813.0 / 2097152},
    {0, 0, 0, 0, -693.0 / 1310720, -693.0 / 524288, -71379.0 / 33554432},
    {0, 0, 0, 0, 0, 1001.0 / 8388608, 3003.0 / 8388608},
}};
constexpr SeriesTable kRectifyingInverse = {{
    {3.0 / 8, 3.0 / 16, 213.0 / 2048, 255.0 / 4096, 20861.0 / 524288, 28273.0 / 1048576, 7751585.0 / 402653184},
    {0, 21.0 / 256, 21.0 / 256, 533.0 / 8192, 197.0 / 4096, 584039.0 / 16777216, 422965.0 / 16777216},
    {0, 0, 151.0 / 6144, 151.0 / 4096, 5019.0 / 131072, 26965.0 / 786432, 9570683.0 / 335544320},
    {0, 0, 0, 1097.0 / 131072, 1097.0 / 65536, 225797.0 / 10485760, 238591.0 / 10485760},
    {0, 0, 0, 0, 8011.0 / 2621440, 8011.0 / 1048576, 1180597.0 / 100663296},
    {0, 0, 0, 0, 0, 293393.0 / 251658240, 293393.0 / 83886080},
}};

// Below this e² the series are used; at or above it the closed forms.
constexpr double kSeriesLimit = 0.006884661117170036;
constexpr int kHarmonics = 6;

// Layout of the KO_AUX_NCOEF coefficients made by the _constants functions.
enum CoefSlot : int {
  kForwardPoly = 0,   // 6 power coefficients of P, aux = phi + sin 2phi P(cos 2phi)
  kInversePoly = 6,   // 6 power coefficients of the reverse series
  kCoefE2 = 12,       // e² the coefficients were made for
  kCoefUseSeries = 13,  // 1: series, 0: closed form
  kCoefExtra = 14,    // 2 closed-form constants: e; qp; E(e²) as a double-double
};
static_assert(kCoefExtra + 2 <= KO_AUX_NCOEF);

bool is_sphere(double e2) { return e2 < ko::kTol; }

// The amplitudes a_1..a_6 at t = e², by Horner's rule in t.
std::array<double, kHarmonics> amplitudes(const SeriesTable &table, double t) {
  std::array<double, kHarmonics> a{};
  for (int k = 0; k < kHarmonics; ++k) {
    double sum = 0;
    for (int j = 6; j >= 0; --j) sum = sum * t + table[k][j];
    a[k] = sum * t;
  }
  return a;
}

// sum a_k sin(2k x) = sin 2x P(cos 2x) with sin(2kx) = sin 2x U_{k-1}(cos 2x),
// U the Chebyshev polynomials of the second kind; p receives P's power
// coefficients, constant term first.
void harmonics_to_powers(const std::array<double, kHarmonics> &a, double *p) {
  p[0] = a[0] - a[2] + a[4];
  p[1] = 2 * a[1] - 4 * a[3] + 6 * a[5];
  p[2] = 4 * a[2] - 12 * a[4];
  p[3] = 8 * a[3] - 32 * a[5];
  p[4] = 16 * a[4];
  p[5] = 32 * a[5];
}

double apply_series(const double *p, double x) {
  const double c = std::cos(2 * x);
  const double poly = p[0] + c * (p[1] + c * (p[2] + c * (p[3] + c * (p[4] + c * p[5]))));
  return x + std::sin(2 * x) * poly;
}

// The equator and the poles are fixed points of every auxiliary latitude; a
// latitude within the library tolerance of a pole is taken as the pole.
bool is_fixed_point(double phi) {
  return phi == 0 || ko::rel_eq(std::fabs(phi), ko::kHalfPi);
}

// aux(phi + kπ) = aux(phi) + kπ: the closed forms work on [-π/2, π/2].
template <class F>
double by_half_turns(double angle, F core) {
  if (std::fabs(angle) <= ko::kHalfPi) return core(angle);
  const double k = std::nearbyint(angle / ko::kPi);
  return k * ko::kPi + core(angle - k * ko::kPi);
}

// Newton iterations stop when the step falls below this (relative); the
// quadratic convergence then leaves an error far below one unit.
constexpr double kNewtonTol = 0.1 * 1.4901161193847656e-08;  // 0.1 sqrt(eps)
constexpr int kNewtonMax = 12;

template <class Step>
double newton(double start, Step step) {
  double x = start;
  for (int i = 0; i < kNewtonMax; ++i) {
    const double dx = step(x);
    x += dx;
    if (!(std::fabs(dx) > kNewtonTol * std::fabs(x))) break;
  }
  return x;
}

// atanh(e)/e for e = sqrt(e2), e2 in (0, 1).
double atanh_e_over_e(double e2) {
  const double e = std::sqrt(e2);
  return std::atanh(e) / e;
}

// ---------------------------------------------------------------------------
// Closed forms, for |phi| <= π/2
// ---------------------------------------------------------------------------

// Conformal latitude through tan chi = tau sqrt(1 + sigma²) - sigma sqrt(1 + tau²),
// sigma = sinh(e atanh(e sin phi)) (Karney 2011, "Transverse Mercator with an
// accuracy of a few nanometers", eqs. 7-9): no cancellation anywhere.
double tan_conformal(double e, double tau) {
  const double sigma = std::sinh(e * std::atanh(e * tau / std::hypot(1.0, tau)));
  return tau * std::hypot(1.0, sigma) - sigma * std::hypot(1.0, tau);
}

double chi_closed(double e2, const double *k, double phi) {
  (void)e2;
  return std::atan(tan_conformal(k[0], std::tan(phi)));
}

// Inverse by Newton's method on tau = tan phi (Karney 2011, eqs. 19-21).
double phi_from_chi_closed(double e2, const double *k, double chi) {
  const double e = k[0];
  const double taup = std::tan(chi);
  const double tau = newton(taup / (1 - e2), [&](double t) {
    const double taupa = tan_conformal(e, t);
    return (taup - taupa) * (1 + (1 - e2) * t * t) /
           ((1 - e2) * std::hypot(1.0, t) * std::hypot(1.0, taupa));
  });
  return std::atan(tau);
}

// Authalic latitude: sin beta = q/qp with q = (1 - e²)(s/(1 - e²s²) + atanh(e s)/e)
// (Snyder 1987, eqs. 3-11, 3-12).  beta is taken as atan2(q, sqrt((qp-q)(qp+q)))
// with qp - q summed from positive terms,
//   qp - q = (1-s)(1+e²s)/(1-e²s²) + (1-e²) atanh(e(1-s)/(1-e²s))/e,
// so that neither the equator nor the poles lose digits.
struct Authalic {
  double beta;
  double qp_cos_beta;  // sqrt((qp-q)(qp+q)), for the derivative
};

Authalic authalic_parts(double e2, double qp, double phi) {
  const double s = std::sin(std::fabs(phi)), c = std::cos(phi);
  const double e = std::sqrt(e2);
  const double one_minus_s = c * c / (1 + s);
  const double es2 = 1 - e2 * s * s;
  const double q = (1 - e2) * (s / es2 + std::atanh(e * s) / e);
  const double qp_minus_q = one_minus_s * (1 + e2 * s) / es2 +
                            (1 - e2) * std::atanh(e * one_minus_s / (1 - e2 * s)) / e;
  const double w = std::sqrt(qp_minus_q * (qp + q));
  return {std::copysign(std::atan2(q, w), phi), w};
}

double beta_closed(double e2, const double *k, double phi) {
  return authalic_parts(e2, k[0], phi).beta;
}

// dbeta/dphi = 2 (1 - e²) cos phi / ((1 - e² sin² phi)² qp cos beta).
double phi_from_beta_closed(double e2, const double *k, double beta) {
  const double qp = k[0];
  return newton(beta, [&](double phi) {
    const Authalic a = authalic_parts(e2, qp, phi);
    const double s = std::sin(phi), es2 = 1 - e2 * s * s;
    return (beta - a.beta) * a.qp_cos_beta * es2 * es2 / (2 * (1 - e2) * std::cos(phi));
  });
}

// Rectifying latitude mu = π/2 M(phi)/M(π/2), the meridian arc
// M(phi)/a = (1 - e²) ∫ (1 - e² sin²)^(-3/2)
//          = (1 - e²) (s RF(c², 1 - e²s², 1) + e²/3 s³ RD(c², 1, 1 - e²s²))
// (Carlson 1995; DLMF 19.25.1), a sum of positive terms, and M(π/2)/a = E(e²)
// = k'²/3 (RD(0, k'², 1) + RD(0, 1, k'²)).  Evaluated in extended precision:
// three integrals and a ratio would otherwise spend the last few bits.
using Wide = long double;

Wide quarter_meridian_wide(double e2) {
  const Wide kp2 = 1 - static_cast<Wide>(e2);
  return kp2 / 3 * (ko::rd_extended(0, kp2, 1) + ko::rd_extended(0, 1, kp2));
}

void rectifying_constants(double e2, double *k) {
  const Wide quarter = quarter_meridian_wide(e2);
  k[0] = static_cast<double>(quarter);
  k[1] = static_cast<double>(quarter - k[0]);
}

Wide mu_wide(double e2, const double *k, double phi) {
  const Wide s = std::sin(static_cast<Wide>(phi)), c = std::cos(static_cast<Wide>(phi));
  const Wide d2 = 1 - e2 * s * s;
  const Wide arc = (1 - static_cast<Wide>(e2)) *
                   (s * ko::rf_extended(c * c, d2, 1) +
                    e2 / Wide(3) * s * s * s * ko::rd_extended(c * c, 1, d2));
  return std::numbers::pi_v<Wide> / 2 * arc / (static_cast<Wide>(k[0]) + k[1]);
}

double mu_closed(double e2, const double *k, double phi) {
  return static_cast<double>(mu_wide(e2, k, phi));
}

// dmu/dphi = π/2 (1 - e²) / (E(e²) (1 - e² sin² phi)^(3/2)).
double phi_from_mu_closed(double e2, const double *k, double mu) {
  Wide phi = mu;
  for (int i = 0; i < kNewtonMax; ++i) {
    const double at = static_cast<double>(phi);
    const Wide s = std::sin(phi), d2 = 1 - e2 * s * s;
    const Wide step = (mu - mu_wide(e2, k, at)) * (static_cast<Wide>(k[0]) + k[1]) * d2 *
                      std::sqrt(d2) / (std::numbers::pi_v<Wide> / 2 * (1 - static_cast<Wide>(e2)));
    phi += step;
    if (!(std::fabs(step) > kNewtonTol * std::fabs(phi))) break;
  }
  return static_cast<double>(phi);
}

// ---------------------------------------------------------------------------
// One row per auxiliary latitude: its series, its closed forms and the
// constant the closed forms need.
// ---------------------------------------------------------------------------

struct LatitudeKind {
  const SeriesTable *forward;
  const SeriesTable *inverse;
  void (*closed_constants)(double e2, double *k);  // fills k[0], k[1]
  double (*closed_forward)(double e2, const double *k, double phi);
  double (*closed_inverse)(double e2, const double *k, double aux);
  bool wrap_result;  // the authalic pair wraps its result into [-π, π]
};

void conformal_constants(double e2, double *k) { k[0] = std::sqrt(e2); }
void authalic_constants(double e2, double *k) { k[0] = 1 + (1 - e2) * atanh_e_over_e(e2); }

constexpr LatitudeKind kConformal{&kConformalForward, &kConformalInverse, conformal_constants,
                                  chi_closed, phi_from_chi_closed, false};
constexpr LatitudeKind kAuthalic{&kAuthalicForward, &kAuthalicInverse, authalic_constants,
                                 beta_closed, phi_from_beta_closed, true};
constexpr LatitudeKind kRectifying{&kRectifyingForward, &kRectifyingInverse,
                                   rectifying_constants, mu_closed, phi_from_mu_closed, false};

void make_constants(const LatitudeKind &kind, double e2, double *coef) {
  if (coef == nullptr) return;
  std::fill(coef, coef + KO_AUX_NCOEF, 0.0);
  coef[kCoefE2] = e2;
  if (is_sphere(e2)) {
    coef[kCoefUseSeries] = 1;  // all-zero series: the identity
  } else if (e2 < kSeriesLimit) {
    coef[kCoefUseSeries] = 1;
    harmonics_to_powers(amplitudes(*kind.forward, e2), coef + kForwardPoly);
    harmonics_to_powers(amplitudes(*kind.inverse, e2), coef + kInversePoly);
  } else if (e2 < 1) {
    kind.closed_constants(e2, coef + kCoefExtra);
  } else {
    coef[kCoefExtra] = kNaN;  // not a spheroid: every conversion gives NaN
  }
}

double convert(const LatitudeKind &kind, const double *coef, double e2, double angle,
               bool forward) {
  if (is_sphere(e2) || is_fixed_point(angle)) return angle;
  if (!(e2 < 1)) return kNaN;
  double result;
  if (coef[kCoefUseSeries] != 0) {
    result = apply_series(coef + (forward ? kForwardPoly : kInversePoly), angle);
  } else {
    const double *k = coef + kCoefExtra;
    const auto closed = forward ? kind.closed_forward : kind.closed_inverse;
    result = by_half_turns(angle, [&](double x) { return closed(e2, k, x); });
  }
  return kind.wrap_result ? ko_delta(result) : result;
}

double convert_plain(const LatitudeKind &kind, double e2, double angle, bool forward) {
  if (is_sphere(e2) || is_fixed_point(angle)) return angle;
  double coef[KO_AUX_NCOEF];
  make_constants(kind, e2, coef);
  return convert(kind, coef, e2, angle, forward);
}

double convert_wconst(const LatitudeKind &kind, const double *coef, double e2, double angle,
                      bool forward) {
  if (coef == nullptr) return convert_plain(kind, e2, angle, forward);
  return convert(kind, coef, e2, angle, forward);
}

// ---------------------------------------------------------------------------
// tan(π/4 ± φ/2)
// ---------------------------------------------------------------------------

constexpr double kSnap = 2.220446049250313e-16;
constexpr double kCosHalfPi = 6.123233995736766e-17;  // cos of the double nearest π/2

double snap(double v) {
  if (std::fabs(v) <= kSnap) return 0;
  if (std::fabs(v - 1) <= kSnap) return 1;
  if (std::fabs(v + 1) <= kSnap) return -1;
  return v;
}

// tan(π/4 + φ/2) = (1 + sin φ)/cos φ = cos φ/(1 - sin φ); the form without
// cancellation is taken on each side of the equator.  At a pole, where the
// cosine is zero or negative, flag_north (φ towards +π/2) or flag_south
// (towards -π/2) non-zero puts cos(π/2) = 6.123e-17 in its place, giving a
// large finite value instead of an infinite one (or zero).
double tan_quarter_plus_half(int flag_north, int flag_south, double phi) {
  const double s = snap(std::sin(phi));
  double c = snap(std::cos(phi));
  if (c <= 0) {
    const int flag = s >= 0 ? flag_north : flag_south;
    c = flag != 0 ? kCosHalfPi : 0.0;
  }
  return s >= 0 ? (1 + s) / c : c / (1 - s);
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

// Radius of the sphere with the spheroid's area (Snyder 1987, eq. 3-13):
// a sqrt(qp/2), qp = 1 + (1 - e²) atanh(e)/e.
double ko_auth_r(double a, double e2) {
  if (is_sphere(e2)) return a;
  if (!(e2 < 1)) return kNaN;
  return a * std::sqrt(0.5 * (1 + (1 - e2) * atanh_e_over_e(e2)));
}

// Radius of the sphere with the spheroid's meridian length: a E(e²)/(π/2).
double ko_rect_r(double a, double e2) {
  if (is_sphere(e2)) return a;
  return a * ko_ellint2(e2) / ko::kHalfPi;
}

// Length of the quarter meridian.  Small e²: the series in the third
// flattening n (Bessel 1825; Helmert 1880), π/2 a/(1+n) (1 + n²/4 + n⁴/64 +
// n⁶/256), whose next term 25n⁸/16384 is below 1e-24 here; otherwise a E(e²).
double ko_q90(double a, double e2) {
  if (is_sphere(e2)) return ko::kHalfPi * a;
  if (e2 >= kSeriesLimit) return a * ko_ellint2(e2);
  const double root = 1 + std::sqrt(1 - e2);
  const double n = e2 / (root * root);  // (1 - sqrt(1-e²)) / (1 + sqrt(1-e²))
  const double n2 = n * n;
  return ko::kHalfPi * a / (1 + n) * (1 + n2 * (1.0 / 4 + n2 * (1.0 / 64 + n2 / 256)));
}

void ko_chi_conformal_constants(double e2, double *coef) { make_constants(kConformal, e2, coef); }
void ko_beta_authalic_constants(double e2, double *coef) { make_constants(kAuthalic, e2, coef); }
void ko_mu_rectifying_constants(double e2, double *coef) { make_constants(kRectifying, e2, coef); }

double ko_phi_to_chi(double e2, double phi) { return convert_plain(kConformal, e2, phi, true); }
double ko_chi_to_phi(double e2, double chi) { return convert_plain(kConformal, e2, chi, false); }
double ko_phi_to_beta(double e2, double phi) { return convert_plain(kAuthalic, e2, phi, true); }
double ko_beta_to_phi(double e2, double beta) {
  return convert_plain(kAuthalic, e2, beta, false);
}
double ko_phi_to_mu(double e2, double phi) { return convert_plain(kRectifying, e2, phi, true); }
double ko_mu_to_phi(double e2, double mu) { return convert_plain(kRectifying, e2, mu, false); }

double ko_phi_to_chi_wconst(const double *coef, double e2, double phi) {
  return convert_wconst(kConformal, coef, e2, phi, true);
}
double ko_chi_to_phi_wconst(const double *coef, double e2, double chi) {
  return convert_wconst(kConformal, coef, e2, chi, false);
}
double ko_phi_to_beta_wconst(const double *coef, double e2, double phi) {
  return convert_wconst(kAuthalic, coef, e2, phi, true);
}
double ko_beta_to_phi_wconst(const double *coef, double e2, double beta) {
  return convert_wconst(kAuthalic, coef, e2, beta, false);
}
double ko_phi_to_mu_wconst(const double *coef, double e2, double phi) {
  return convert_wconst(kRectifying, coef, e2, phi, true);
}
double ko_mu_to_phi_wconst(const double *coef, double e2, double mu) {
  return convert_wconst(kRectifying, coef, e2, mu, false);
}

// Arithmetic-geometric mean sequence from a[0], b[0]; stops at the first
// i with |c[i]| < 2^-48.  c[0] is left as it is.  Null arrays compute nothing.
int ko_agm(double *a, double *b, double *c, int n) {
  if (n < 2 || a == nullptr || b == nullptr || c == nullptr) return n < 2 ? n - 1 : -1;
  for (int i = 1; i < n; ++i) {
    a[i] = (a[i - 1] + b[i - 1]) / 2;
    b[i] = std::sqrt(a[i - 1] * b[i - 1]);
    c[i] = (a[i - 1] - b[i - 1]) / 2;
    if (std::fabs(c[i]) < ko::kTol) return i;
  }
  return n - 1;
}

double ko_tan_pid4_plus_phid2(int flag1, int flag2, double phi) {
  return tan_quarter_plus_half(flag1, flag2, phi);
}

// tan(π/4 - φ/2) = tan(π/4 + (-φ)/2): the poles trade places.
double ko_tan_pid4_minus_phid2(int flag1, int flag2, double phi) {
  return tan_quarter_plus_half(flag2, flag1, -phi);
}

}  // extern "C"

namespace ko::proj {

const double *conformal_inverse_series(const double *coef) {
  if (coef == nullptr || coef[kCoefUseSeries] == 0) return nullptr;
  return coef + kInversePoly;
}

}  // namespace ko::proj
