// Geodesic direct and inverse problems after C. F. F. Karney, "Algorithms
// for geodesics", J. Geodesy 87, 43-55 (2013): the geodesic is mapped onto
// an auxiliary sphere (reduced latitude β, arc length σ, longitude ω) and
// the distance and longitude integrals are Fourier series in σ whose
// coefficients are series in eps = (sqrt(1 + k²) − 1) / (sqrt(1 + k²) + 1),
// k = e′ cos α0.  The inverse problem solves for the azimuth α1 by Newton's
// method on the longitude equation, started from the great-circle or, for
// nearly antipodal points, the astroid approximation (ibid., sections 4-5),
// with bisection as the safeguard.
#include "geodesy/geodesic.h"

#include "foundation/internal.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace ko::geodesy {
namespace {

constexpr int kOrder = KO_GEODESIC_ORDER;
constexpr int kRow = KO_GEODESIC_ORDER + 1;
// Rows of the coefficient table.
constexpr int kA1 = 0, kC1 = 1, kC1p = 7, kA2 = 13, kC2 = 14, kA3 = 20, kC3 = 21;

constexpr double kEps = std::numeric_limits<double>::epsilon();
const double kTiny = std::sqrt(std::numeric_limits<double>::min());
const double kTol2 = std::sqrt(kEps);
constexpr double kTol1 = 200 * kEps;
const double kTolb = kEps * kTol2;
const double kXthresh = 1000 * kTol2;
constexpr int kMaxNewton = 20;
constexpr int kMaxIterations = kMaxNewton + 53 + 10;

void normalize(double &s, double &c) {
  const double h = std::hypot(s, c);
  s /= h;
  c /= h;
}

// A row of the table evaluated at eps (Horner).
double row_value(const double *coef, int row, double eps) {
  const double *p = coef + row * kRow;
  double y = p[kOrder];
  for (int j = kOrder - 1; j >= 0; --j) y = y * eps + p[j];
  return y;
}

// Coefficients c[1..kOrder] of a Fourier series whose rows start at `first`.
void series(const double *coef, int first, double eps, double c[kOrder + 1]) {
  c[0] = 0.0;
  for (int l = 1; l <= kOrder; ++l) c[l] = row_value(coef, first + l - 1, eps);
}

// Σ c[l] sin(2 l σ) by Clenshaw summation, from sin σ and cos σ.
double sin_series(double sx, double cx, const double c[kOrder + 1]) {
  const double ar = 2.0 * (cx - sx) * (cx + sx);  // 2 cos 2σ
  double y0 = 0.0, y1 = 0.0;
  for (int l = kOrder; l >= 1; --l) {
    const double y = ar * y0 - y1 + c[l];
    y1 = y0;
    y0 = y;
  }
  return 2.0 * sx * cx * y0;
}

double epsilon_of(double k2) { return k2 / (2.0 * (1.0 + std::sqrt(1.0 + k2)) + k2); }

// The positive root k of k⁴ + 2k³ − (x² + y² − 1)k² − 2y²k − y² = 0
// (Karney 2013, eq. 55).
double astroid(double x, double y) {
  const double p = x * x, q = y * y, r = (p + q - 1.0) / 6.0;
  if (q == 0.0 && r <= 0.0) return 0.0;
  const double S = p * q / 4.0, r2 = r * r, r3 = r * r2;
  const double disc = S * (S + 2.0 * r3);
  double u = r;
  if (disc >= 0.0) {
    double T3 = S + r3;
    T3 += T3 < 0.0 ? -std::sqrt(disc) : std::sqrt(disc);
    const double T = std::cbrt(T3);
    u += T + (T != 0.0 ? r2 / T : 0.0);
  } else {
    const double ang = std::atan2(std::sqrt(-disc), -(S + r3));
    u += 2.0 * r * std::cos(ang / 3.0);
  }
  const double v = std::sqrt(u * u + q);
  const double uv = u < 0.0 ? q / (v - u) : u + v;
  const double w = (uv - q) / (2.0 * v);
  return uv / (std::sqrt(uv + w * w) + w);
}

// Reduced latitude of a geodetic latitude, as (sin β, cos β).
void reduced(double f1, double lat, double &sbet, double &cbet) {
  sbet = f1 * std::sin(lat);
  cbet = std::cos(lat);
  normalize(sbet, cbet);
  cbet = std::max(kTiny, cbet);
}

struct Point {
  double sbet, cbet, dn;
};

// Distance s12 / b and reduced length m12 / b between two points of a
// geodesic on the auxiliary sphere (Karney 2013, eqs. 7, 38); J12, the
// difference of the two integrals, where asked for.
void lengths(const Geodesic &g, double eps, double sig12, double ssig1, double csig1, double dn1,
             double ssig2, double csig2, double dn2, double &s12b, double &m12b,
             double *J12_out = nullptr) {
  double c1[kOrder + 1], c2[kOrder + 1];
  series(g.coef, kC1, eps, c1);
  series(g.coef, kC2, eps, c2);
  const double A1 = row_value(g.coef, kA1, eps) / (1.0 - eps);
  const double A2 = row_value(g.coef, kA2, eps) * (1.0 - eps);
  const double B1 = sin_series(ssig2, csig2, c1) - sin_series(ssig1, csig1, c1);
  const double B2 = sin_series(ssig2, csig2, c2) - sin_series(ssig1, csig1, c2);
  s12b = A1 * (sig12 + B1);
  const double J12 = (A1 - A2) * sig12 + (A1 * B1 - A2 * B2);
  m12b = dn2 * (csig1 * ssig2) - dn1 * (ssig1 * csig2) - csig1 * csig2 * J12;
  if (J12_out != nullptr) *J12_out = J12;
}

struct LambdaResult {
  double v, dv;  // λ12 − target and its derivative with respect to α1
  double salp2, calp2, sig12, ssig1, csig1, ssig2, csig2, eps;
};

// The longitude difference that α1 produces, less the target (Karney 2013,
// section 4).
LambdaResult lambda12(const Geodesic &g, const Point &p1, const Point &p2, double salp1,
                      double calp1, double slam120, double clam120, bool with_derivative) {
  LambdaResult r{};
  if (p1.sbet == 0.0 && calp1 == 0.0) calp1 = -kTiny;  // break the degeneracy of the equator
  const double salp0 = salp1 * p1.cbet;
  const double calp0 = std::hypot(calp1, salp1 * p1.sbet);
  r.ssig1 = p1.sbet;
  const double somg1 = salp0 * p1.sbet;
  r.csig1 = calp1 * p1.cbet;
  const double comg1 = r.csig1;
  normalize(r.ssig1, r.csig1);
  r.salp2 = p2.cbet != p1.cbet ? salp0 / p2.cbet : salp1;
  r.calp2 = p2.cbet != p1.cbet || std::fabs(p2.sbet) != -p1.sbet
                ? std::sqrt((calp1 * p1.cbet) * (calp1 * p1.cbet) +
                            (p1.cbet < -p1.sbet ? (p2.cbet - p1.cbet) * (p1.cbet + p2.cbet)
                                                : (p1.sbet - p2.sbet) * (p1.sbet + p2.sbet))) /
                      p2.cbet
                : std::fabs(calp1);
  r.ssig2 = p2.sbet;
  const double somg2 = salp0 * p2.sbet;
  r.csig2 = r.calp2 * p2.cbet;
  const double comg2 = r.csig2;
  normalize(r.ssig2, r.csig2);
  r.sig12 = std::atan2(std::max(0.0, r.csig1 * r.ssig2 - r.ssig1 * r.csig2),
                       r.csig1 * r.csig2 + r.ssig1 * r.ssig2);
  const double somg12 = std::max(0.0, comg1 * somg2 - somg1 * comg2);
  const double comg12 = comg1 * comg2 + somg1 * somg2;
  const double eta = std::atan2(somg12 * clam120 - comg12 * slam120, comg12 * clam120 + somg12 * slam120);
  r.eps = epsilon_of(calp0 * calp0 * g.ep2);
  double c3[kOrder + 1];
  series(g.coef, kC3, r.eps, c3);
  const double B312 = sin_series(r.ssig2, r.csig2, c3) - sin_series(r.ssig1, r.csig1, c3);
  const double domg12 = -g.f * row_value(g.coef, kA3, r.eps) * salp0 * (r.sig12 + B312);
  r.v = eta + domg12;
  if (with_derivative) {
    if (r.calp2 == 0.0) {
      r.dv = -2.0 * g.f1 * p1.dn / p1.sbet;
    } else {
      double s12b, m12b;
      lengths(g, r.eps, r.sig12, r.ssig1, r.csig1, p1.dn, r.ssig2, r.csig2, p2.dn, s12b, m12b);
      r.dv = m12b * g.f1 / (r.calp2 * p2.cbet);
    }
  }
  return r;
}

// Starting azimuth for Newton's method (Karney 2013, section 5); returns
// σ12 ≥ 0 with the distance already solved for short lines, else −1.
double inverse_start(const Geodesic &g, const Point &p1, const Point &p2, double lam12,
                     double slam12, double clam12, double &salp1, double &calp1, double &salp2,
                     double &calp2, double &dnm) {
  double sig12 = -1.0;
  const double sbet12 = p2.sbet * p1.cbet - p2.cbet * p1.sbet;
  const double cbet12 = p2.cbet * p1.cbet + p2.sbet * p1.sbet;
  const double sbet12a = p2.sbet * p1.cbet + p2.cbet * p1.sbet;
  const bool shortline = cbet12 >= 0.0 && sbet12 < 0.5 && p2.cbet * lam12 < 0.5;
  double somg12, comg12;
  if (shortline) {
    double sbetm2 = (p1.sbet + p2.sbet) * (p1.sbet + p2.sbet);
    sbetm2 /= sbetm2 + (p1.cbet + p2.cbet) * (p1.cbet + p2.cbet);
    dnm = std::sqrt(1.0 + g.ep2 * sbetm2);
    const double omg12 = lam12 / (g.f1 * dnm);
    somg12 = std::sin(omg12);
    comg12 = std::cos(omg12);
  } else {
    somg12 = slam12;
    comg12 = clam12;
  }
  salp1 = p2.cbet * somg12;
  calp1 = comg12 >= 0.0 ? sbet12 + p2.cbet * p1.sbet * somg12 * somg12 / (1.0 + comg12)
                        : sbet12a - p2.cbet * p1.sbet * somg12 * somg12 / (1.0 - comg12);
  const double ssig12 = std::hypot(salp1, calp1);
  const double csig12 = p1.sbet * p2.sbet + p1.cbet * p2.cbet * comg12;
  const double etol2 = 0.1 * kTol2 / std::sqrt(std::max(0.001, std::fabs(g.f)) * std::min(1.0, 1.0 - g.f / 2.0) / 2.0);
  if (shortline && ssig12 < etol2) {
    // The great circle is good enough; its azimuth at the second point.
    salp2 = p1.cbet * somg12;
    calp2 = sbet12 - p1.cbet * p2.sbet *
                         (comg12 >= 0.0 ? somg12 * somg12 / (1.0 + comg12) : 1.0 - comg12);
    normalize(salp2, calp2);
    sig12 = std::atan2(ssig12, csig12);
  } else if (std::fabs(g.n) > 0.1 || csig12 >= 0.0 ||
             ssig12 >= 6.0 * std::fabs(g.n) * kPi * p1.cbet * p1.cbet) {
    // Nothing more: the spherical estimate starts Newton well.
  } else {
    // Nearly antipodal: the astroid approximation (Karney 2013, eq. 55).
    const double lam12x = std::atan2(-slam12, -clam12);
    const double k2 = p1.sbet * p1.sbet * g.ep2;
    const double eps = epsilon_of(k2);
    const double lamscale = g.f * p1.cbet * row_value(g.coef, kA3, eps) * kPi;
    const double betscale = lamscale * p1.cbet;
    const double x = lam12x / lamscale, y = sbet12a / betscale;
    if (y > -kTol1 && x > -1.0 - kXthresh) {
      salp1 = std::min(1.0, -x);
      calp1 = -std::sqrt(1.0 - salp1 * salp1);
    } else {
      const double k = astroid(x, y);
      const double omg12a = lamscale * (-x * k / (1.0 + k));
      somg12 = std::sin(omg12a);
      comg12 = -std::cos(omg12a);
      salp1 = p2.cbet * somg12;
      calp1 = sbet12a - p2.cbet * p1.sbet * somg12 * somg12 / (1.0 - comg12);
    }
  }
  if (salp1 > 0.0) {
    normalize(salp1, calp1);
  } else {
    salp1 = 1.0;
    calp1 = 0.0;
  }
  return sig12;
}

}  // namespace

bool Geodesic::init(double a_, double e2_) {
  if (!(a_ > 0.0) || !std::isfinite(a_) || !(e2_ >= 0.0 && e2_ < 1.0)) return false;
  int order = 0;
  double *c = ko_geodesic_constants_array_new(e2_, &order);
  if (c == nullptr || order != KO_GEODESIC_ORDER) {
    ko_deallocate_rtn(c, 0, nullptr);
    return false;
  }
  std::memcpy(coef, c, sizeof coef);
  ko_deallocate_rtn(c, 0, nullptr);
  a = a_;
  e2 = e2_;
  f1 = std::sqrt(1.0 - e2_);
  f = 1.0 - f1;
  ep2 = e2_ / (1.0 - e2_);
  n = f / (2.0 - f);
  b = a * f1;
  return true;
}

void Geodesic::direct(double lat1, double azi1, double s12, double &lat2, double &lon12) const {
  double m12, M12;
  direct(lat1, azi1, s12, lat2, lon12, m12, M12);
}

void Geodesic::direct(double lat1, double azi1, double s12, double &lat2, double &lon12,
                      double &m12, double &M12) const {
  const double salp1 = std::sin(azi1), calp1 = std::cos(azi1);
  double sbet1, cbet1;
  reduced(f1, lat1, sbet1, cbet1);
  const double salp0 = salp1 * cbet1;
  const double calp0 = std::hypot(calp1, salp1 * sbet1);
  double ssig1 = sbet1, csig1 = sbet1 != 0.0 || calp1 != 0.0 ? cbet1 * calp1 : 1.0;
  const double somg1 = salp0 * sbet1, comg1 = csig1;
  normalize(ssig1, csig1);
  const double eps = epsilon_of(calp0 * calp0 * ep2);
  double c1[kOrder + 1], c1p[kOrder + 1], c3[kOrder + 1];
  series(coef, kC1, eps, c1);
  series(coef, kC1p, eps, c1p);
  series(coef, kC3, eps, c3);
  const double A1 = row_value(coef, kA1, eps) / (1.0 - eps);
  const double B11 = sin_series(ssig1, csig1, c1);
  const double sb = std::sin(B11), cb = std::cos(B11);
  const double stau1 = ssig1 * cb + csig1 * sb, ctau1 = csig1 * cb - ssig1 * sb;
  // σ12 from τ12 = s12 / (b A1) by the reverted series (Karney 2013, eq. 21).
  const double tau12 = s12 / (b * A1);
  const double st = std::sin(tau12), ct = std::cos(tau12);
  const double B12 = -sin_series(stau1 * ct + ctau1 * st, ctau1 * ct - stau1 * st, c1p);
  const double sig12 = tau12 - (B12 - B11);
  const double ssig12 = std::sin(sig12), csig12 = std::cos(sig12);
  const double ssig2 = ssig1 * csig12 + csig1 * ssig12;
  const double csig2 = csig1 * csig12 - ssig1 * ssig12;
  const double sbet2 = calp0 * ssig2;
  double cbet2 = std::hypot(salp0, calp0 * csig2);
  if (cbet2 == 0.0) cbet2 = kTiny;
  const double somg2 = salp0 * ssig2, comg2 = csig2;
  const double omg12 = std::atan2(somg2 * comg1 - comg2 * somg1, comg2 * comg1 + somg2 * somg1);
  const double A3c = -f * salp0 * row_value(coef, kA3, eps);
  lon12 = omg12 + A3c * (sig12 + (sin_series(ssig2, csig2, c3) - sin_series(ssig1, csig1, c3)));
  lat2 = std::atan2(sbet2, f1 * cbet2);
  // Reduced length and geodesic scale (Karney 2013, eqs. 38, 39), with
  // dn = sqrt(1 + k² sin²σ) and k² = ep² cos²α0.
  const double k2 = calp0 * calp0 * ep2;
  const double dn1 = std::sqrt(1.0 + k2 * ssig1 * ssig1), dn2 = std::sqrt(1.0 + k2 * ssig2 * ssig2);
  double s12b, m12b, J12;
  lengths(*this, eps, sig12, ssig1, csig1, dn1, ssig2, csig2, dn2, s12b, m12b, &J12);
  m12 = b * m12b;
  // M12 = cos σ12 + (t sin σ2 − cos σ2 J12) sin σ1 / dn1 with
  // t = k² (sin σ2 − sin σ1)(sin σ2 + sin σ1) / (dn1 + dn2).
  const double t = k2 * (ssig2 - ssig1) * (ssig2 + ssig1) / (dn1 + dn2);
  M12 = csig12 + (t * ssig2 - csig2 * J12) * ssig1 / dn1;
}

bool Geodesic::inverse(double lat1, double lat2, double lon12_in, double &s12, double &azi1) const {
  double lon12 = std::remainder(lon12_in, kTwoPi);
  double lonsign = std::signbit(lon12) ? -1.0 : 1.0;
  lon12 *= lonsign;
  const double lam12 = lon12;
  const double slam12 = lon12 == kPi ? 0.0 : std::sin(lon12), clam12 = std::cos(lon12);
  // Put the point of larger |latitude| first, in the southern hemisphere.
  const double swapp = std::fabs(lat1) < std::fabs(lat2) ? -1.0 : 1.0;
  if (swapp < 0.0) {
    lonsign = -lonsign;
    std::swap(lat1, lat2);
  }
  const double latsign = lat1 < 0.0 ? 1.0 : -1.0;
  lat1 *= latsign;
  lat2 *= latsign;
  Point p1, p2;
  reduced(f1, lat1, p1.sbet, p1.cbet);
  reduced(f1, lat2, p2.sbet, p2.cbet);
  // Keep equal latitudes exactly equal, or exactly opposite.
  if (p1.cbet < -p1.sbet) {
    if (p2.cbet == p1.cbet) p2.sbet = std::copysign(p1.sbet, p2.sbet);
  } else if (std::fabs(p2.sbet) == -p1.sbet) {
    p2.cbet = p1.cbet;
  }
  p1.dn = std::sqrt(1.0 + ep2 * p1.sbet * p1.sbet);
  p2.dn = std::sqrt(1.0 + ep2 * p2.sbet * p2.sbet);

  double salp1 = 0.0, calp1 = 0.0, salp2 = 0.0, calp2 = 0.0, s12x = 0.0;
  bool meridian = lat1 == -kHalfPi || slam12 == 0.0;
  if (meridian) {
    // Along a meridian: α1 = λ12, α2 = 0, eps = n.
    calp1 = clam12;
    salp1 = slam12;
    calp2 = 1.0;
    salp2 = 0.0;
    const double ssig1 = p1.sbet, csig1 = calp1 * p1.cbet;
    const double ssig2 = p2.sbet, csig2 = calp2 * p2.cbet;
    const double sig12 = std::atan2(std::max(0.0, csig1 * ssig2 - ssig1 * csig2),
                                    csig1 * csig2 + ssig1 * ssig2);
    double s12b, m12b;
    lengths(*this, n, sig12, ssig1, csig1, p1.dn, ssig2, csig2, p2.dn, s12b, m12b);
    if (sig12 < 1.0 || m12b >= 0.0) {
      s12x = s12b * b;
    } else {
      meridian = false;  // past the conjugate point: not the shortest
    }
  }
  if (!meridian && p1.sbet == 0.0 && lam12 <= f1 * kPi) {
    // Along the equator.
    calp1 = calp2 = 0.0;
    salp1 = salp2 = 1.0;
    s12x = a * lam12;
  } else if (!meridian) {
    double dnm = 1.0;
    const double sig12 =
        inverse_start(*this, p1, p2, lam12, slam12, clam12, salp1, calp1, salp2, calp2, dnm);
    if (sig12 >= 0.0) {
      s12x = sig12 * b * dnm;
    } else {
      double salp1a = kTiny, calp1a = 1.0, salp1b = kTiny, calp1b = -1.0;
      bool tripn = false, tripb = false;
      LambdaResult r{};
      int it = 0;
      for (; it < kMaxIterations; ++it) {
        r = lambda12(*this, p1, p2, salp1, calp1, slam12, clam12, it < kMaxNewton);
        if (tripb || !(std::fabs(r.v) >= (tripn ? 8.0 : 1.0) * kEps)) break;
        if (r.v > 0.0 && (it > kMaxNewton || calp1 / salp1 > calp1b / salp1b)) {
          salp1b = salp1;
          calp1b = calp1;
        } else if (r.v < 0.0 && (it > kMaxNewton || calp1 / salp1 < calp1a / salp1a)) {
          salp1a = salp1;
          calp1a = calp1;
        }
        if (it < kMaxNewton && r.dv > 0.0) {
          const double dalp1 = -r.v / r.dv;
          if (std::fabs(dalp1) < kPi) {
            const double sd = std::sin(dalp1), cd = std::cos(dalp1);
            const double nsalp1 = salp1 * cd + calp1 * sd;
            if (nsalp1 > 0.0) {
              calp1 = calp1 * cd - salp1 * sd;
              salp1 = nsalp1;
              normalize(salp1, calp1);
              tripn = std::fabs(r.v) <= 16.0 * kEps;
              continue;
            }
          }
        }
        // Newton left the bracket: bisect.
        salp1 = (salp1a + salp1b) / 2.0;
        calp1 = (calp1a + calp1b) / 2.0;
        normalize(salp1, calp1);
        tripn = false;
        tripb = std::fabs(salp1a - salp1) + (calp1a - calp1) < kTolb ||
                std::fabs(salp1 - salp1b) + (calp1 - calp1b) < kTolb;
      }
      if (it >= kMaxIterations) return false;
      double s12b, m12b;
      lengths(*this, r.eps, r.sig12, r.ssig1, r.csig1, p1.dn, r.ssig2, r.csig2, p2.dn, s12b, m12b);
      s12x = s12b * b;
      salp2 = r.salp2;
      calp2 = r.calp2;
    }
  }
  if (swapp < 0.0) {
    std::swap(salp1, salp2);
    std::swap(calp1, calp2);
  }
  salp1 *= swapp * lonsign;
  calp1 *= swapp * latsign;
  s12 = s12x;
  azi1 = std::atan2(salp1, calp1);
  return std::isfinite(s12) && std::isfinite(azi1);
}

}  // namespace ko::geodesy
