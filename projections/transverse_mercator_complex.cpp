// Transverse_Mercator_Complex (43056): the exact transverse Mercator of the
// ellipsoid, after L. P. Lee, "Conformal projections based on elliptic
// functions" (Cartographica monograph 16, 1976), in the formulation of
// C. F. F. Karney, "Transverse Mercator with an accuracy of a few
// nanometers" (J. Geodesy 85, 2011), sections 3-5.
//
// With m = e², m' = 1 - m and w = u + iv, Jacobi's functions sn, cn, dn of u
// taken with parameter m and of v with parameter m', the mapping is the pair
//   zeta(w)  = atanh(sn w) - e atanh(e sn w)     = psi + i lambda
//   sigma(w) = E(w) - m sn w cn w / dn w         = (y + i x) / (a k0)
// (psi the isometric latitude, E Jacobi's epsilon function), with
//   d zeta / dw = m' / (cn w dn w),   d sigma / dw = m' / dn² w.
// Written in real functions of u and v (Lee 1976, eqs. 54.17, 55.4):
//   psi    = atanh(sn u dn v) - e atanh(e sn u / dn v)
//   lambda = atan2(dn u sn v, cn u cn v) - e atan2(e cn u sn v, dn u cn v)
//   xi     = E(u | m)  - m  sn u cn u dn u / d
//   eta    = v - E(v | m') + m' sn v cn v dn v / d,   d = m cn² u + m' cn² v.
// The quadrant 0 <= u <= K, 0 <= v <= K' covers phi >= 0, 0 <= lambda <= 90
// degrees; the other quadrants follow by symmetry, and longitudes beyond 90
// degrees by reflection through the pole (y -> 2 a k0 E(m) - y).  Each
// direction solves the other mapping by Newton's method, starting from the
// spherical projection or, near the singular point phi = 0,
// lambda = (1 - e) 90 degrees (w = iK'), from the cubic expansion there.
//
// Constants (ivals [2, count]; count = 2 on a sphere, 16 on an ellipsoid):
//   sphere:     [0] a k0, [1] a k0 / 2
//   ellipsoid:  [0] a  [1] e²  [2] e  [3] m' = 1 - e²  [4] k0  [5] K(m)  [6] K(m')
//               [7] E(m)  [8] E(m')  [9] a k0  [10] northing of the latitude of
//               origin  [11] phi0  [12 .. 15] zero
#include "projections/elliptic.h"
#include "projections/tm_family.h"

#include <cmath>
#include <complex>
#include <utility>

namespace {

using namespace ko::tm;
// The mapping is evaluated in extended precision: near the singular point
// the projection magnifies the rounding of zeta several times over.
using real = long double;
using cplx = std::complex<real>;

constexpr int kCentralMeridian = 2;
constexpr int kScaleFactor = 5;
constexpr int kLatitudeOfOrigin = 6;

constexpr int kEllipsoidCount = 16;
constexpr int kAxis = 0, kE2 = 1, kE = 2, kM1 = 3, kK0 = 4, kBigK = 5, kBigKp = 6, kBigE = 7, kBigEp = 8,
              kScale = 9, kNorthing0 = 10, kPhi0 = 11;

constexpr int kMaxNewton = 40;
constexpr real kHalfPiL = 1.570796326794896619231321691639751442L;
constexpr real kPiL = 2 * kHalfPiL;
constexpr real kTwoPiL = 4 * kHalfPiL;

bool is_sphere(double e2) { return e2 < ko::kTol; }
int constants_count(double e2) { return is_sphere(e2) ? 2 : kEllipsoidCount; }

// The parameters of one ellipsoid, unpacked from the constants.
struct Exact {
  real m, mc, e, big_k, big_kp, big_e, big_ep;
  explicit Exact(const double *d)
      : m(d[kE2]), mc(d[kM1]), e(d[kE]), big_k(d[kBigK]), big_kp(d[kBigKp]), big_e(d[kBigE]), big_ep(d[kBigEp]) {}
};

// Jacobi's sn, cn, dn of real u for the parameter whose complement is mc
// (parameter 1 - mc), by the descending Landen transformation (Bulirsch,
// "Numerical calculation of elliptic integrals and elliptic functions",
// Numer. Math. 7, 1965), which keeps dn accurate when the parameter is close
// to 1.  0 < mc <= 1.
struct Jacobi {
  real sn, cn, dn;
};

Jacobi jacobi(real u, real mc) {
  constexpr int kLevels = 13;
  real em[kLevels], en[kLevels];
  real a = 1.0L, c = 1.0L, dn = 1.0L;
  int levels = 0;
  for (; levels < kLevels; ++levels) {
    em[levels] = a;
    mc = std::sqrt(mc);
    en[levels] = mc;
    c = 0.5 * (a + mc);
    if (!(std::fabs(a - mc) > 1e-19L * a)) break;  // also stops on NaN
    mc *= a;
    a = c;
  }
  if (levels == kLevels) levels = kLevels - 1;
  const real uc = c * u;
  real sn = std::sin(uc), cn = std::cos(uc);
  if (sn != 0.0L) {
    real ratio = cn / sn;
    c *= ratio;
    for (int k = levels; k >= 0; --k) {
      const real b = em[k];
      ratio *= c;
      c *= dn;
      dn = (en[k] + ratio) / (b + ratio);
      ratio = c / b;
    }
    const real s = std::copysign(1.0L / std::hypot(c, 1.0L), sn);
    sn = s;
    cn = c * s;
  }
  return {sn, cn, dn};
}

// Jacobi's epsilon E(u | m) = integral of dn² from its sn, cn, dn (u in
// [0, K]): sn R_F(cn², dn², 1) - (m/3) sn³ R_D(cn², dn², 1) (Carlson 1995).
// In extended precision, as is sigma below: eta is the difference of
// v - E(v | m') and a quotient, each near 2.5 where the easting is large.
real epsilon(const Jacobi &j, real m) {
  const real c2 = j.cn * j.cn, d2 = j.dn * j.dn;
  return j.sn * (ko::rf_extended(c2, d2, 1.0L) - m / 3.0L * j.sn * j.sn * ko::rd_extended(c2, d2, 1.0L));
}

struct Point {
  Jacobi ju, jv;  // functions of u (parameter m) and of v (parameter m')
};

Point functions_at(const Exact &x, cplx w) { return {jacobi(w.real(), x.mc), jacobi(w.imag(), x.m)}; }

// zeta = psi + i lambda at w, with atanh(t) written as asinh(t / sqrt(1 - t²))
// so that the arguments near 1 keep their precision.
cplx zeta(const Exact &x, const Point &p) {
  const Jacobi &u = p.ju, &v = p.jv;
  const real d1 = std::sqrt(u.cn * u.cn + x.mc * u.sn * u.sn * v.sn * v.sn);
  const real d2 = std::sqrt(x.m * u.cn * u.cn + x.mc * v.cn * v.cn);
  const real psi = std::asinh(u.sn * v.dn / d1) - x.e * std::asinh(x.e * u.sn / d2);
  const real lam = std::atan2(u.dn * v.sn, u.cn * v.cn) - x.e * std::atan2(x.e * u.cn * v.sn, u.dn * v.cn);
  return {psi, lam};
}

// sigma = xi + i eta at w.
cplx sigma(const Exact &x, const Point &p, cplx w) {
  const Jacobi &u = p.ju, &v = p.jv;
  const real d = x.m * u.cn * u.cn + x.mc * v.cn * v.cn;
  const real xi = epsilon(u, x.m) - x.m * u.sn * u.cn * u.dn / d;
  const real eta = w.imag() - epsilon(v, x.mc) + x.mc * v.sn * v.cn * v.dn / d;
  return {xi, eta};
}

// cn w and dn w in complex form (addition theorems with the imaginary
// transformation, Lee 1976, eq. 54.21).
void cn_dn(const Exact &x, const Point &p, cplx &cn, cplx &dn) {
  const Jacobi &u = p.ju, &v = p.jv;
  const real big_d = v.cn * v.cn + x.m * u.sn * u.sn * v.sn * v.sn;
  cn = cplx(u.cn * v.cn, -u.sn * u.dn * v.sn * v.dn) / big_d;
  dn = cplx(u.dn * v.cn * v.dn, -x.m * u.sn * u.cn * v.sn) / big_d;
}

// Keeps a Newton iterate inside the quadrant of w.
cplx clamp_quadrant(const Exact &x, cplx w) {
  return {std::fmin(std::fmax(w.real(), 0.0L), x.big_k), std::fmin(std::fmax(w.imag(), 0.0L), x.big_kp)};
}

// The cube root of z whose argument lies in [-pi/2, -pi/6]: the branch that
// enters the quadrant from the singular point w = iK'.
cplx cube_root_into_quadrant(cplx z) {
  const real r = std::cbrt(std::abs(z));
  real arg = (std::arg(z) + 2.0L * kTwoPiL) / 3.0L;  // arg(z) in [pi/2, 3pi/2] here
  arg = std::remainder(arg, kTwoPiL);
  return std::polar(r, arg);
}

// Newton's method on f(w) = target with df/dw from `slope`; returns true on
// convergence.
template <class F, class Slope>
bool newton(const Exact &x, cplx target, cplx &w, F f, Slope slope) {
  real last = HUGE_VALL;
  for (int k = 0; k < kMaxNewton; ++k) {
    const Point p = functions_at(x, w);
    const cplx step = (f(p, w) - target) / slope(p);
    if (!std::isfinite(step.real()) || !std::isfinite(step.imag())) return false;
    w = clamp_quadrant(x, w - step);
    const real size = std::abs(step);
    if (size <= 1e-18L * (1.0L + std::abs(w))) return true;
    if (k > 8 && size >= last) return size < 1e-14L;  // stalled at rounding level
    last = size;
  }
  return false;
}

// Follows the solution of f(w) = target from a point `from` whose solution
// w is known, through equal steps of the target, each solved by Newton's
// method from the last: for targets that neither start reaches.
template <class F, class Slope>
bool continuation(const Exact &x, cplx from, cplx target, cplx &w, F f, Slope slope) {
  constexpr int kSteps = 16;
  for (int k = 1; k <= kSteps; ++k) {
    if (!newton(x, from + (target - from) * (static_cast<real>(k) / kSteps), w, f, slope)) return false;
  }
  return true;
}

// w for psi + i lambda in the quadrant (lambda <= 90 degrees).
cplx solve_zeta(const Exact &x, real psi, real lam) {
  const cplx target(psi, lam);
  auto f = [&](const Point &p, cplx) { return zeta(x, p); };
  auto slope = [&](const Point &p) {
    cplx cn, dn;
    cn_dn(x, p, cn, dn);
    return x.mc / (cn * dn);
  };
  const cplx singular(0.0L, (1.0L - x.e) * kHalfPiL);
  // Spherical start: the transverse Mercator of the sphere, scaled to K.
  const real xip = std::atan2(std::sinh(psi), std::cos(lam));
  const real etap = std::atanh(std::sin(lam) / std::cosh(psi));
  cplx w(xip * x.big_k / kHalfPiL, std::fmin(etap, x.big_kp));
  if (newton(x, target, w, f, slope)) return w;
  // Near the singular point: zeta - zeta_s = -(m' e / 3) t³, t = w - iK'.
  w = cplx(0.0L, x.big_kp) + cube_root_into_quadrant(-3.0L * (target - singular) / (x.mc * x.e));
  w = clamp_quadrant(x, w);
  if (newton(x, target, w, f, slope)) return w;
  // Beyond the singular longitude near the equator: come down the meridian
  // from latitude 84 degrees (psi = 3), where the spherical start holds.
  const cplx high(std::fmax(psi, 3.0L), lam);
  w = cplx(std::atan2(std::sinh(high.real()), std::cos(lam)) * x.big_k / kHalfPiL,
           std::fmin(std::atanh(std::sin(lam) / std::cosh(high.real())), x.big_kp));
  if (newton(x, high, w, f, slope)) continuation(x, high, target, w, f, slope);
  return w;
}

// w for xi + i eta in the quadrant (xi <= E(m)).
cplx solve_sigma(const Exact &x, real xi, real eta) {
  const cplx target(xi, eta);
  auto f = [&](const Point &p, cplx w) { return sigma(x, p, w); };
  auto slope = [&](const Point &p) {
    cplx cn, dn;
    cn_dn(x, p, cn, dn);
    return x.mc / (dn * dn);
  };
  // Start from the scaling that holds along the central meridian's ends.
  cplx w = clamp_quadrant(x, cplx(xi * x.big_k / x.big_e, eta * x.big_kp / (x.big_kp - x.big_ep + 1.0L)));
  if (newton(x, target, w, f, slope)) return w;
  // Near the image of the singular point: sigma - sigma_s = -(m'/3) t³.
  const cplx singular(0.0L, x.big_kp - x.big_ep);
  w = clamp_quadrant(x, cplx(0.0L, x.big_kp) + cube_root_into_quadrant(-3.0L * (target - singular) / x.mc));
  if (newton(x, target, w, f, slope)) return w;
  // Otherwise come in from the image of the 90-degree meridian (u = K, where
  // xi = E and eta grows from 0 to infinity with v), along the line of
  // constant eta; the point on that line is found by bisection on v.
  real lo = 0.0L, hi = x.big_kp;
  for (int k = 0; k < 80; ++k) {
    const real mid = 0.5L * (lo + hi);
    const cplx probe(x.big_k, mid);
    (sigma(x, functions_at(x, probe), probe).imag() < eta ? lo : hi) = mid;
  }
  w = cplx(x.big_k, 0.5L * (lo + hi));
  continuation(x, cplx(x.big_e, eta), target, w, f, slope);
  return w;
}

int ellipsoid_constants(ko_constants *constants, const double *sph, const double *parms) {
  ko::Owned<double> d(ko::alloc_array<double>(kEllipsoidCount, "tm_complex"));
  if (!d) return -1;
  double *v = d.get();
  const double a = sph[0], e2 = sph[1];
  v[kAxis] = a;
  v[kE2] = e2;
  v[kE] = std::sqrt(e2);
  v[kM1] = 1.0 - e2;
  v[kK0] = parms[kScaleFactor];
  v[kBigK] = ko_ellint1(e2);
  v[kBigKp] = ko_ellint1(1.0 - e2);
  v[kBigE] = ko_ellint2(e2);
  v[kBigEp] = ko_ellint2(1.0 - e2);
  v[kScale] = a * v[kK0];
  // the meridian arc of phi0 is a E(m) mu0 / (pi/2)
  v[kNorthing0] = v[kScale] * v[kBigE] * ko_phi_to_mu(e2, parms[kLatitudeOfOrigin]) / ko::kHalfPi;
  v[kPhi0] = parms[kLatitudeOfOrigin];
  return store_constants(constants, std::move(d), kEllipsoidCount);
}

int complex_constants(ko_constants *constants, const double *sph, const double *parms) {
  if (!ko_constants_p(constants) || sph == nullptr || parms == nullptr) return -1;
  return is_sphere(sph[1]) ? sphere_constants(constants, sph, parms)
                           : ellipsoid_constants(constants, sph, parms);
}

// Isometric latitude of phi: asinh(tan phi) - e atanh(e sin phi).
real isometric(real e, real phi) { return std::asinh(std::tan(phi)) - e * std::atanh(e * std::sin(phi)); }

// Geodetic latitude of the isometric latitude psi, by Newton's method on
// psi(phi) (d psi / d phi = (1 - e²) / ((1 - e² sin² phi) cos phi)).
real geodetic_of_isometric(real e, real psi) {
  const real e2 = e * e;
  real phi = std::atan(std::sinh(psi));  // the conformal latitude as start
  for (int k = 0; k < 8; ++k) {
    const real s = std::sin(phi);
    const real step = (isometric(e, phi) - psi) * (1.0L - e2 * s * s) * std::cos(phi) / (1.0L - e2);
    if (!std::isfinite(step)) break;
    phi -= step;
    if (std::fabs(step) < 1e-20L) break;
  }
  return phi;
}

void forward_point(const Exact &x, const double *d, double lam0, double *p) {
  const double lam_full = wrap_longitude(p[0] - lam0);
  const double phi_full = p[1];
  if (!std::isfinite(lam_full) || !std::isfinite(phi_full)) {
    p[0] = p[1] = std::nan("");
    return;
  }
  const bool back = std::fabs(lam_full) > ko::kHalfPi;
  const real lam = back ? kPiL - std::fabs(lam_full) : std::fabs(lam_full);
  const real phi = std::fabs(phi_full);
  real xi = x.big_e, eta = 0.0L;  // the pole
  if (phi < ko::kHalfPi) {
    const cplx w = solve_zeta(x, isometric(x.e, phi), lam);
    const cplx s = sigma(x, functions_at(x, w), w);
    xi = s.real();
    eta = s.imag();
  }
  if (back) xi = 2.0L * x.big_e - xi;
  const real scale = d[kScale];
  p[0] = static_cast<double>(std::copysign(scale * eta, static_cast<real>(lam_full)));
  p[1] = static_cast<double>(std::copysign(scale * xi, static_cast<real>(phi_full)) - d[kNorthing0]);
}

void inverse_point(const Exact &x, const double *d, double lam0, double *p) {
  const real scale = d[kScale];
  const real eta_full = p[0] / scale;
  const real xi_full = (p[1] + static_cast<real>(d[kNorthing0])) / scale;
  if (!std::isfinite(eta_full) || !std::isfinite(xi_full)) {
    p[0] = p[1] = std::nan("");
    return;
  }
  real xi = std::fabs(xi_full);
  const real eta = std::fabs(eta_full);
  const bool back = xi > x.big_e;
  if (back) xi = 2.0L * x.big_e - xi;
  real phi = kHalfPiL, lam = 0.0L;  // the pole
  if (xi != x.big_e || eta != 0.0L) {
    const cplx w = solve_sigma(x, xi, eta);
    const cplx z = zeta(x, functions_at(x, w));
    phi = geodetic_of_isometric(x.e, z.real());
    lam = z.imag();
  }
  if (back) lam = kPiL - lam;
  p[1] = static_cast<double>(std::copysign(phi, xi_full));
  p[0] = wrap_longitude(static_cast<double>(std::copysign(lam, eta_full) + lam0));
}

int ellipsoid_forward(const double *parms, int n, double *coords, const double *d) {
  const Exact x(d);
  for (int i = 0; i < n; ++i) forward_point(x, d, parms[kCentralMeridian], coords + 2 * i);
  return n;
}

int ellipsoid_inverse(const double *parms, int n, double *coords, const double *d) {
  const Exact x(d);
  for (int i = 0; i < n; ++i) inverse_point(x, d, parms[kCentralMeridian], coords + 2 * i);
  return n;
}

int complex_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
                    const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(complex_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(true, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_forward(parms, n, coords, d) : ellipsoid_forward(parms, n, coords, d);
    });
  });
}

int complex_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
                    const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(complex_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(false, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_inverse(parms, n, coords, d) : ellipsoid_inverse(parms, n, coords, d);
    });
  });
}

}  // namespace

extern "C" KO_API const ko_projlist_entry ko_prj_transverse_mercator_complex_vector = {
    43056, "Transverse_Mercator_Complex", complex_forward, complex_inverse, complex_constants,
    check_tm_parameters, nullptr, nullptr};
