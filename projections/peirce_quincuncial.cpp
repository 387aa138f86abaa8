// Peirce quincuncial on the sphere of radius a (C. S. Peirce, "A quincuncial
// projection of the sphere", Am. J. Math. 2, 394-396, 1879; L. P. Lee,
// "Conformal projections based on elliptic functions", Cartographica
// monograph 16, 1976).  With the polar stereographic coordinate
// ζ = tan(c/2) e^(i(λ − λ0 − π/2)), c the distance from the centring pole,
// the hemisphere |ζ| ≤ 1 is mapped conformally onto the square |x|, |y| ≤ K
// (K = K(1/√2) = 1.8540746773013719) by
//   x + i y = 2 W(ζ),   W(ζ) = ∫0^ζ dt / √(1 + t⁴) = ζ RF(1, 1 + iζ², 1 − iζ²),
// RF Carlson's symmetric integral (Carlson 1995, complex arguments); the
// other hemisphere (|ζ| > 1) by Schwarz reflection: the point 1/ζ̄ is mapped
// and mirrored across the edge of the square facing arg ζ.  The world fills
// the square |x| + |y| ≤ 2K, the far pole at its four corners, the centring
// pole at the origin, the meridian λ0 along −y (as PROJ's peirce_q).
//
// The inverse folds a point of the outer triangles back across the inner
// square's edge and inverts w = x + i y = 2W(ζ) with the Jacobi functions of
// modulus 1/√2: since 2W(ζ) = cn⁻¹((1 − ζ²)/(1 + ζ²)), ζ = sn w / (1 + cn w)
// (Abramowitz & Stegun 16.21 for a complex argument, 16.4 for the real
// functions by the arithmetic-geometric mean).
//
// Parameters: slot 2 λ0; slot 6 the centring pole, which must be the north
// pole (90°, or 0 when absent: PROJ's peirce_q has no other aspect); slot 15
// Option 0, the only layout (other values refused).
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>
#include <complex>

namespace ko::proj {
namespace {

using cplx = std::complex<double>;

constexpr int32_t kTagPeirce = 0x5051;
constexpr double kK = 1.8540746773013719;  // K(m = 1/2), the inner square's half side

struct PeirceConstants {
  double r, lambda0;
};

int peirce_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin, slot::kOption}))
    return -1;
  const double lo = parms[slot::kLatOrigin];
  if (parms[slot::kOption] != 0.0) return -1;
  if (!(lo == 0.0 || std::fabs(lo - kHalfPi) < 1e-12)) return -1;
  PeirceConstants k{};
  k.r = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  return store_constants(c, k, kTagPeirce);
}

// Carlson's RF for complex arguments off the negative real axis, by the
// duplication theorem (Carlson 1995, section 2).
cplx carlson_rf(cplx x, cplx y, cplx z) {
  for (int it = 0; it < 60; ++it) {
    const cplx sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const cplx lam = sx * sy + sx * sz + sy * sz;
    x = 0.25 * (x + lam);
    y = 0.25 * (y + lam);
    z = 0.25 * (z + lam);
    const cplx mu = (x + y + z) / 3.0;
    const double spread = std::max({std::abs(x - mu), std::abs(y - mu), std::abs(z - mu)});
    if (spread <= 1e-4 * std::abs(mu)) break;
  }
  const cplx mu = (x + y + z) / 3.0;
  const cplx dx = 1.0 - x / mu, dy = 1.0 - y / mu, dz = 1.0 - z / mu;
  const cplx e2 = dx * dy - dz * dz, e3 = dx * dy * dz;
  // Carlson 1995, eq. 2.2: the series to fifth order.
  return (1.0 - e2 / 10.0 + e3 / 14.0 + e2 * e2 / 24.0 - 3.0 * e2 * e3 / 44.0) / std::sqrt(mu);
}

// The map of the disc |ζ| ≤ 1 onto the inner square, 2W(ζ).
cplx inner(cplx z) {
  const cplx iz2 = cplx(0.0, 1.0) * z * z;
  return 2.0 * z * carlson_rf(1.0, 1.0 + iz2, 1.0 - iz2);
}

// Mirror of w across the inner square's edge facing the quarter q
// (0: +x, 1: +y, 2: −x, 3: −y).
cplx mirror(cplx w, int q) {
  switch (q & 3) {
    case 0: return {2.0 * kK - w.real(), w.imag()};
    case 1: return {w.real(), 2.0 * kK - w.imag()};
    case 2: return {-2.0 * kK - w.real(), w.imag()};
    default: return {w.real(), -2.0 * kK - w.imag()};
  }
}

// sn, cn, dn of a real argument, modulus² m, by the arithmetic-geometric
// mean (Abramowitz & Stegun 16.4); dn as sqrt(1 − m sn²) rather than
// cn / cos(φ1 − φ0), which is 0/0 at the quarter period.
void jacobi_real(double u, double m, double &sn, double &cn, double &dn) {
  double a[16], c[16];
  a[0] = 1.0;
  double b = std::sqrt(1.0 - m);
  c[0] = std::sqrt(m);
  int n = 0;
  while (n < 15 && std::fabs(c[n]) > 1e-17) {
    a[n + 1] = 0.5 * (a[n] + b);
    c[n + 1] = 0.5 * (a[n] - b);
    b = std::sqrt(a[n] * b);
    ++n;
  }
  double phi = std::ldexp(a[n] * u, n);
  for (int j = n; j > 0; --j) phi = 0.5 * (phi + std::asin(c[j] * std::sin(phi) / a[j]));
  sn = std::sin(phi);
  cn = std::cos(phi);
  dn = std::sqrt(1.0 - m * sn * sn);
}

// sn w / (1 + cn w) for w = u + iv and modulus² 1/2 (Abramowitz & Stegun
// 16.21.2 and 16.21.3, the complementary modulus also 1/2).
cplx sn_over_one_plus_cn(cplx w) {
  double s, c, d, s1, c1, d1;
  jacobi_real(w.real(), 0.5, s, c, d);
  jacobi_real(w.imag(), 0.5, s1, c1, d1);
  const double den = c1 * c1 + 0.5 * s * s * s1 * s1;
  const cplx sn(s * d1 / den, c * d * s1 * c1 / den);
  const cplx cn(c * c1 / den, -s * d * s1 * d1 / den);
  return sn / (1.0 + cn);
}

int forward_points(const PeirceConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double rho = std::tan(0.5 * (kHalfPi - phi));
    const double theta = dlam - kHalfPi;
    cplx w;
    if (rho <= 1.0) {
      w = inner(std::polar(rho, theta));
    } else {
      // The far hemisphere: 1/ζ̄ has the same argument and radius 1/ρ.
      const int q = static_cast<int>(std::lround(theta / kHalfPi));
      w = mirror(inner(std::polar(1.0 / rho, theta)), q);
    }
    count += store_point(&xy[i], k.r * w.real(), k.r * w.imag(), std::fabs(phi) <= kHalfPi);
  }
  return count;
}

// The far pole (every corner) folds back to ζ = 0, whose reciprocal is
// infinite: φ = −90°.
int inverse_points(const PeirceConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    cplx w(xy[i] / k.r, xy[i + 1] / k.r);
    const bool inside = std::fabs(w.real()) + std::fabs(w.imag()) <= 2.0 * kK * (1.0 + 1e-12);
    bool far = false;
    int q = 0;
    if (std::fabs(w.real()) > kK || std::fabs(w.imag()) > kK) {
      q = std::fabs(w.real()) >= std::fabs(w.imag()) ? (w.real() > 0.0 ? 0 : 2)
                                                      : (w.imag() > 0.0 ? 1 : 3);
      w = mirror(w, q);
      far = true;
    }
    const cplx z = sn_over_one_plus_cn(w);
    double rho = std::abs(z);
    double theta = std::arg(z);
    if (far) rho = 1.0 / rho;
    const double phi = kHalfPi - 2.0 * std::atan(rho);
    const double dlam = theta + kHalfPi;
    count += store_point(&xy[i], ko_delta(k.lambda0 + dlam), phi, inside && std::isfinite(phi));
  }
  return count;
}


// ---------------------------------------------------------------------------
// Adams world in a square II (O. S. Adams, "Elliptic functions applied to
// conformal world maps", US Coast and Geodetic Survey special publication
// 112, 1925), the same elliptic map of a quarter of the plane.  The sphere
// cut along the antimeridian goes by the equatorial stereographic
// z = (cos φ sin Δλ + i sin φ) / (1 + cos φ cos Δλ) onto the plane less the
// rays iy, |y| ≥ 1; m = (z − i)/(z + i) sends the cut to [0, ∞); the fourth
// root t = e^(−iπ/4) m^(1/4) (arg m in (0, 2π)) fills the sector
// |arg t| < π/4, which 2W carries onto the diamond with vertices 0 (the
// north pole), 2K (the south pole) and K(1 ± i) (the two sides of the cut at
// the equator), folding |t| > 1 as above.  Turned to stand on its poles:
//   x + i y = −i √2 (2W(t) − K),
// the square |x| + |y| ≤ √2 K a with the poles at its top and bottom corners
// and the antimeridian's equator point at its left and right ones.
// Parameters: slot 2 λ0.

struct AdamsConstants {
  double r, lambda0;
};

constexpr int32_t kTagAdams = 0x4132;
constexpr double kRoot2 = 1.4142135623730951;

int adams_constants_impl(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian})) return -1;
  AdamsConstants k{};
  k.r = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  return store_constants(c, k, kTagAdams);
}

// 2W of a point of the sector |arg t| < π/4, either side of the unit circle.
cplx sector_map(cplx t) {
  const double rho = std::abs(t);
  if (rho <= 1.0) return inner(t);
  return mirror(inner(1.0 / std::conj(t)), 0);
}

int adams_forward_points(const AdamsConstants &k, std::span<double> xy) {
  const cplx i1(0.0, 1.0);
  const cplx turn = std::polar(1.0, -0.25 * kPi);
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dlam = ko_delta(xy[i] - k.lambda0);
    const double cp = std::cos(phi);
    // m = (z − i)/(z + i) with z's common denominator D = 1 + cos φ cos Δλ
    // cancelled, so that the antimeridian's equator point (D = 0) is m = 1.
    const double A = cp * std::sin(dlam), B = std::sin(phi), D = 1.0 + cp * std::cos(dlam);
    const cplx m = cplx(A, B - D) / cplx(A, B + D);
    // arg m in (0, 2π); m is a positive real only on the cut, where the
    // side is the sign of Δλ (east: 2π).
    double arg = std::arg(m);
    if (arg < 0.0 || (arg == 0.0 && dlam > 0.0)) arg += kTwoPi;
    const cplx t = turn * std::polar(std::pow(std::abs(m), 0.25), 0.25 * arg);
    // The poles are corners, where the map goes as the fourth root of the
    // distance: the 6e-17 by which ±π/2 in double misses the pole would move
    // the image by 600 m, so the poles are placed on their corners exactly.
    const cplx w2 = phi >= kHalfPi ? cplx(0.0, 0.0)
                    : phi <= -kHalfPi ? cplx(2.0 * kK, 0.0)
                                      : sector_map(t);
    const cplx w = -i1 * kRoot2 * (w2 - kK);
    count += store_point(&xy[i], k.r * w.real(), k.r * w.imag(), std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int adams_inverse_points(const AdamsConstants &k, std::span<double> xy) {
  const cplx i1(0.0, 1.0);
  const cplx turn = std::polar(1.0, 0.25 * kPi);
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const cplx p(xy[i] / k.r, xy[i + 1] / k.r);
    const bool inside = std::fabs(p.real()) + std::fabs(p.imag()) <= kRoot2 * kK * (1.0 + 1e-12);
    cplx w = kK + i1 * p / kRoot2;  // 2W
    const bool far = w.real() > kK;
    if (far) w = mirror(w, 0);
    cplx t = sn_over_one_plus_cn(w);
    if (far) t = 1.0 / std::conj(t);
    const cplx s = turn * t;
    const cplx m = s * s * s * s;
    const cplx z = i1 * (1.0 + m) / (1.0 - m);
    const double r2 = std::norm(z);
    // Inverse of the equatorial stereographic.
    const double cc = (1.0 - r2) / (1.0 + r2), ce = 2.0 * z.real() / (1.0 + r2);
    const double sn = 2.0 * z.imag() / (1.0 + r2);
    const double lam = std::atan2(ce, cc), phi = std::atan2(sn, std::hypot(cc, ce));
    // The south pole (t infinite) and the north pole (t = 0) come out of
    // the limits above as NaN or exactly; the corners are the poles.
    const bool south = far && std::abs(t) > 1e150;
    const double phi_out = south ? -kHalfPi : phi;
    const double lam_out = south ? 0.0 : lam;
    count += store_point(&xy[i], ko_delta(k.lambda0 + lam_out), phi_out, inside);
  }
  return count;
}

constexpr auto run = run_kernels<PeirceConstants, kTagPeirce, forward_points, inverse_points>;
constexpr auto run_adams =
    run_kernels<AdamsConstants, kTagAdams, adams_forward_points, adams_inverse_points>;

}  // namespace

int peirce_quincuncial_constants(ko_constants *c, const double *sph, const double *parms) {
  return peirce_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(peirce_quincuncial, run)
int adams_square_ii_constants(ko_constants *c, const double *sph, const double *parms) {
  return adams_constants_impl(c, sph, parms);
}
KO_PROJ_DEFINE_POINT_SLOTS(adams_square_ii, run_adams)

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_peirce_quincuncial_vector = {
    43086, "Peirce_Quincuncial", ko::proj::peirce_quincuncial_forward,
    ko::proj::peirce_quincuncial_inverse, ko::proj::peirce_quincuncial_constants,
    ko::validity<43086>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_adams_square_ii_vector = {
    43087, "Adams_Square_II", ko::proj::adams_square_ii_forward, ko::proj::adams_square_ii_inverse,
    ko::proj::adams_square_ii_constants, ko::validity<43087>, nullptr, nullptr};
}  // extern "C"
