// Radii and auxiliary latitudes against independent computations.
//
// The reference is computed in 80-bit long double by different formulas:
// the conformal latitude as the Gudermannian of the isometric latitude, the
// authalic and rectifying latitudes by Gauss-Legendre quadrature of q'(φ)
// and of the meridian arc M'(φ).  Tolerances are in units in the last place
// (ulp) of the double result; inverse conversions are judged by running the
// reference forward on their result.  GeographicLib's Ellipsoid (which works
// in degrees, so at a looser relative 1e-14) is a second, independent check.
#include "ko.h"

#include "projections/quadrature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Ellipsoid.hpp>
#endif

namespace {

using ld = long double;
constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = kPi / 2;
constexpr double kDeg = kPi / 180;
constexpr double kThreshold = 0.006884661117170036;  // series below, closed forms at/above

const ko::test::GaussLegendre gl;

// Conformal latitude: chi = gd(psi), psi = asinh(tan φ) - e atanh(e sin φ).
ld ref_chi(ld e2, ld phi) {
  ld e = std::sqrt(e2);
  ld psi = std::asinh(std::tan(phi)) - e * std::atanh(e * std::sin(phi));
  return std::atan(std::sinh(psi));
}

// Authalic: sin β = q/qp with q = ∫ 2(1-e²) cos t / (1 - e² sin² t)².
ld ref_beta(ld e2, ld phi) {
  auto dq = [e2](ld t) {
    ld s = std::sin(t), d = 1 - e2 * s * s;
    return 2 * (1 - e2) * std::cos(t) / (d * d);
  };
  ld a = std::fabs(phi);
  ld q = gl.integrate(dq, 0, a);
  ld rest = gl.integrate(dq, a, std::numbers::pi_v<ld> / 2);  // qp - q
  ld beta = std::atan2(q, std::sqrt(rest * (2 * q + rest)));
  return std::copysign(beta, phi);
}

// Rectifying: μ = π/2 M(φ) / M(π/2) with M' = (1-e²)/(1 - e² sin²)^(3/2);
// near the pole from the remaining arc, so that neither end loses digits.
ld ref_mu(ld e2, ld phi) {
  auto dm = [e2](ld t) {
    ld s = std::sin(t), d = 1 - e2 * s * s;
    return (1 - e2) / (d * std::sqrt(d));
  };
  constexpr ld half_pi = std::numbers::pi_v<ld> / 2;
  ld a = std::fabs(phi);
  ld quarter = gl.integrate(dm, 0, half_pi);
  ld mu = a < half_pi / 2 ? half_pi * gl.integrate(dm, 0, a) / quarter
                          : half_pi - half_pi * gl.integrate(dm, a, half_pi) / quarter;
  return std::copysign(mu, phi);
}

double ulps(ld got, ld want) {
  double scale = std::fabs(static_cast<double>(want));
  double ulp = scale == 0 ? std::numeric_limits<double>::denorm_min()
                          : std::nextafter(scale, 10.0) - scale;
  return static_cast<double>(std::fabs(got - want) / ulp);
}

std::vector<double> latitudes() {
  std::vector<double> v;
  for (double d = -90; d <= 90; d += 0.37) v.push_back(d * kDeg);
  for (double tiny : {1e-300, 1e-100, 1e-12, 1e-8, 1e-5, 1e-3, 0.1}) {
    v.push_back(tiny);
    v.push_back(-tiny);
  }
  for (double gap : {1e-12, 1e-9, 1e-6, 1e-3}) {
    v.push_back(kHalfPi - gap);
    v.push_back(gap - kHalfPi);
  }
  v.push_back(kHalfPi);
  v.push_back(-kHalfPi);
  return v;
}

struct Spheroid {
  const char *name;
  double e2;
};
// WGS 84 and a strongly flattened spheroid, and e² on both sides of the
// switch between series and closed forms.
const Spheroid kSpheroids[] = {
    {"WGS 84", 0.0066943799901413165},
    {"f = 1/150", (2 - 1.0 / 150) / 150},
    {"just below the switch", std::nextafter(kThreshold, 0.0)},
    {"at the switch", kThreshold},
    {"e2 = 0.001", 0.001},
};

struct Pair {
  const char *name;
  double (*forward)(double, double);
  double (*inverse)(double, double);
  ld (*reference)(ld, ld);
  void (*constants)(double, double *);
  double (*forward_wconst)(const double *, double, double);
  double (*inverse_wconst)(const double *, double, double);
};
const Pair kPairs[] = {
    {"conformal", ko_phi_to_chi, ko_chi_to_phi, ref_chi, ko_chi_conformal_constants,
     ko_phi_to_chi_wconst, ko_chi_to_phi_wconst},
    {"authalic", ko_phi_to_beta, ko_beta_to_phi, ref_beta, ko_beta_authalic_constants,
     ko_phi_to_beta_wconst, ko_beta_to_phi_wconst},
    {"rectifying", ko_phi_to_mu, ko_mu_to_phi, ref_mu, ko_mu_rectifying_constants,
     ko_phi_to_mu_wconst, ko_mu_to_phi_wconst},
};

// "A few units in the last place".
constexpr double kMaxUlps = 4;

TEST(AuxLatitude, ForwardWithinFewUlpsOfReference) {
  for (const auto &sph : kSpheroids) {
    for (const auto &pair : kPairs) {
      double worst = 0;
      for (double phi : latitudes()) {
        double got = pair.forward(sph.e2, phi);
        double err = ulps(got, pair.reference(sph.e2, phi));
        worst = std::max(worst, err);
        EXPECT_LE(err, kMaxUlps) << pair.name << " " << sph.name << " phi=" << phi;
      }
      RecordProperty(std::string(pair.name) + " " + sph.name, std::to_string(worst));
    }
  }
}

TEST(AuxLatitude, InverseWithinFewUlps) {
  // φ = inverse(aux); the reference forward of φ must give aux back.  The
  // derivative daux/dφ lies within e² of 1, so the error in ulps of aux is
  // the error of φ in ulps.
  for (const auto &sph : kSpheroids) {
    for (const auto &pair : kPairs) {
      for (double aux : latitudes()) {
        double phi = pair.inverse(sph.e2, aux);
        double err = ulps(pair.reference(sph.e2, phi), aux);
        EXPECT_LE(err, kMaxUlps) << pair.name << " " << sph.name << " aux=" << aux;
      }
    }
  }
}

TEST(AuxLatitude, WconstFormsMatchPlainForms) {
  for (const auto &sph : kSpheroids) {
    for (const auto &pair : kPairs) {
      double coef[KO_AUX_NCOEF];
      pair.constants(sph.e2, coef);
      for (double phi : latitudes()) {
        EXPECT_EQ(pair.forward_wconst(coef, sph.e2, phi), pair.forward(sph.e2, phi))
            << pair.name << " " << sph.name;
        EXPECT_EQ(pair.inverse_wconst(coef, sph.e2, phi), pair.inverse(sph.e2, phi))
            << pair.name << " " << sph.name;
      }
      // Null coefficients fall back to computing them.
      EXPECT_EQ(pair.forward_wconst(nullptr, sph.e2, 0.5), pair.forward(sph.e2, 0.5));
    }
  }
}

TEST(AuxLatitude, SphereAndFixedPointsReturnTheLatitude) {
  for (const auto &pair : kPairs) {
    for (double e2 : {0.0, 1e-16, 3.5e-15}) {  // below 2^-48: a sphere
      for (double phi : {0.3, -1.2, 1e-9}) {
        EXPECT_EQ(pair.forward(e2, phi), phi) << pair.name;
        EXPECT_EQ(pair.inverse(e2, phi), phi) << pair.name;
      }
    }
    for (const auto &sph : kSpheroids) {
      for (double phi : {0.0, kHalfPi, -kHalfPi, kHalfPi - 1e-15}) {
        EXPECT_EQ(pair.forward(sph.e2, phi), phi) << pair.name << " " << sph.name;
        EXPECT_EQ(pair.inverse(sph.e2, phi), phi) << pair.name << " " << sph.name;
      }
    }
  }
}

TEST(AuxLatitude, BadSpheroidGivesNan) {
  for (const auto &pair : kPairs) {
    EXPECT_TRUE(std::isnan(pair.forward(1.0, 0.5))) << pair.name;
    EXPECT_TRUE(std::isnan(pair.inverse(1.5, 0.5))) << pair.name;
    EXPECT_TRUE(std::isnan(pair.forward(0.0067, std::nan("")))) << pair.name;
  }
}

TEST(AuxLatitude, AuthalicResultIsWrappedIntoHalfTurn) {
  // The series and the closed forms agree beyond the pole (aux(φ + π) =
  // aux(φ) + π); the authalic pair then wraps into [-π, π].
  for (const auto &sph : kSpheroids) {
    double beta = ko_phi_to_beta(sph.e2, 3.0);
    EXPECT_NEAR(beta, kPi - ko_phi_to_beta(sph.e2, kPi - 3.0), 1e-15) << sph.name;
    double wrapped = ko_phi_to_beta(sph.e2, 4.0);
    EXPECT_NEAR(wrapped, ko_phi_to_beta(sph.e2, 4.0 - 2 * kPi), 1e-15) << sph.name;
    double chi = ko_phi_to_chi(sph.e2, 4.0);  // not wrapped
    EXPECT_NEAR(chi, kPi + ko_phi_to_chi(sph.e2, 4.0 - kPi), 1e-15) << sph.name;
  }
}

TEST(AuxLatitude, PublishedLeadingCoefficients) {
  // Snyder (1987) eq. 3-18: β = φ - (e²/3 + 31e⁴/180 + 59e⁶/560) sin 2φ + ...;
  // the conformal sin 2φ amplitude e²/2 + 5e⁴/24 + ... (eq. 3-19 reversed).
  // At a tiny e² the leading terms dominate: (β - φ)/sin 2φ → -e²/3.
  double e2 = 1e-6, phi = 0.7;
  EXPECT_NEAR((ko_phi_to_beta(e2, phi) - phi) / (e2 * std::sin(2 * phi)), -1.0 / 3, 1e-5);
  EXPECT_NEAR((ko_phi_to_chi(e2, phi) - phi) / (e2 * std::sin(2 * phi)), -0.5, 1e-5);
  EXPECT_NEAR((ko_phi_to_mu(e2, phi) - phi) / (e2 * std::sin(2 * phi)), -3.0 / 8, 1e-5);
}

#ifdef KO_HAVE_GEOGRAPHICLIB
TEST(AuxLatitude, AgreesWithGeographicLibEllipsoid) {
  const double a = 6378137;
  for (double f : {1 / 298.257223563, 1 / 150.0}) {
    GeographicLib::Ellipsoid ell(a, f);
    double e2 = f * (2 - f);
    for (double deg = -89.5; deg <= 89.5; deg += 1.3) {
      double phi = deg * kDeg;
      EXPECT_NEAR(ko_phi_to_chi(e2, phi), ell.ConformalLatitude(deg) * kDeg, 1e-14);
      EXPECT_NEAR(ko_phi_to_beta(e2, phi), ell.AuthalicLatitude(deg) * kDeg, 1e-14);
      EXPECT_NEAR(ko_phi_to_mu(e2, phi), ell.RectifyingLatitude(deg) * kDeg, 1e-14);
      EXPECT_NEAR(ko_chi_to_phi(e2, phi), ell.InverseConformalLatitude(deg) * kDeg, 1e-14);
      EXPECT_NEAR(ko_beta_to_phi(e2, phi), ell.InverseAuthalicLatitude(deg) * kDeg, 1e-14);
      EXPECT_NEAR(ko_mu_to_phi(e2, phi), ell.InverseRectifyingLatitude(deg) * kDeg, 1e-14);
    }
  }
}

TEST(Radii, AgreeWithGeographicLibEllipsoid) {
  const double a = 6378137;
  for (double f : {1 / 298.257223563, 1 / 150.0, 1 / 3000.0}) {
    GeographicLib::Ellipsoid ell(a, f);
    double e2 = f * (2 - f);
    EXPECT_NEAR(ko_q90(a, e2), ell.QuarterMeridian(), 1e-15 * a) << f;
    EXPECT_NEAR(ko_rect_r(a, e2), ell.QuarterMeridian() / kHalfPi, 1e-15 * a) << f;
    EXPECT_NEAR(ko_auth_r(a, e2), std::sqrt(ell.Area() / (4 * kPi)), 1e-15 * a) << f;
  }
}
#endif

TEST(Radii, AgreeWithQuadrature) {
  const double a = 6378137;
  for (const auto &sph : kSpheroids) {
    ld e2 = sph.e2;
    ld quarter = gl.integrate(
        [e2](ld t) {
          ld s = std::sin(t);
          return std::sqrt(1 - e2 * s * s);  // E(m) = ∫ sqrt(1 - m sin²)
        },
        0, std::numbers::pi_v<ld> / 2);
    ld qp = gl.integrate(
        [e2](ld t) {
          ld s = std::sin(t), d = 1 - e2 * s * s;
          return 2 * (1 - e2) * std::cos(t) / (d * d);
        },
        0, std::numbers::pi_v<ld> / 2);
    EXPECT_LE(ulps(ko_q90(a, sph.e2), a * quarter), kMaxUlps) << sph.name;
    EXPECT_LE(ulps(ko_rect_r(a, sph.e2), a * quarter / (std::numbers::pi_v<ld> / 2)), kMaxUlps)
        << sph.name;
    EXPECT_LE(ulps(ko_auth_r(a, sph.e2), a * std::sqrt(qp / 2)), kMaxUlps) << sph.name;
  }
}

TEST(Radii, SphereGivesTheRadius) {
  for (double e2 : {0.0, 1e-16}) {
    EXPECT_EQ(ko_auth_r(6371000, e2), 6371000);
    EXPECT_EQ(ko_rect_r(6371000, e2), 6371000);
    EXPECT_EQ(ko_q90(6371000, e2), kHalfPi * 6371000);
  }
  EXPECT_TRUE(std::isnan(ko_auth_r(1, 1.0)));
  EXPECT_TRUE(std::isnan(ko_rect_r(1, 1.5)));
  EXPECT_TRUE(std::isnan(ko_q90(1, 1.5)));
}

TEST(Agm, SequenceAndStoppingRule) {
  double a[8] = {1}, b[8] = {std::sqrt(0.5)}, c[8] = {0};
  // n = 1: nothing to compute.
  EXPECT_EQ(ko_agm(a, b, c, 1), 0);
  EXPECT_EQ(ko_agm(a, b, c, 0), -1);
  // The mean of 1 and sqrt(1/2) is π / (2 K(1/2)), K(1/2) = Γ(1/4)²/(4 sqrt π).
  int last = ko_agm(a, b, c, 8);
  ASSERT_GT(last, 1);
  ASSERT_LT(last, 7);
  double k_half = std::pow(std::tgamma(0.25), 2) / (4 * std::sqrt(kPi));
  EXPECT_NEAR(a[last], kPi / (2 * k_half), 1e-15);
  EXPECT_LT(std::fabs(c[last]), 3.552713678800501e-15);
  EXPECT_GE(std::fabs(c[last - 1]), 3.552713678800501e-15);
  EXPECT_EQ(a[1], (1 + std::sqrt(0.5)) / 2);
  EXPECT_EQ(b[1], std::sqrt(std::sqrt(0.5)));

  // Equal starting values: c[1] = 0 at once.
  double a2[4] = {2}, b2[4] = {2}, c2[4] = {0};
  EXPECT_EQ(ko_agm(a2, b2, c2, 4), 1);
  EXPECT_EQ(a2[1], 2);
  // Not enough room: the last index.
  double a3[3] = {1}, b3[3] = {1e-6}, c3[3] = {0};
  EXPECT_EQ(ko_agm(a3, b3, c3, 3), 2);
  EXPECT_EQ(ko_agm(nullptr, b3, c3, 3), -1);
}

TEST(TanQuarter, AgreesWithLongDoubleTangent) {
  // Reference: tanl of π/4 ± φ/2 away from the poles; near them the rounding
  // of π/4 + φ/2 itself would dominate, so tan(π/4 + φ/2) = sec φ + tan φ
  // (and its reciprocal) in long double is used there.
  for (double phi : latitudes()) {
    if (std::fabs(phi) == kHalfPi) continue;
    ld lphi = phi, plus, minus;
    if (std::fabs(phi) < 1.5) {
      plus = std::tan(std::numbers::pi_v<ld> / 4 + lphi / 2);
      minus = std::tan(std::numbers::pi_v<ld> / 4 - lphi / 2);
    } else {
      ld sec_plus_tan = (1 + std::sin(std::fabs(lphi))) / std::cos(lphi);
      plus = phi > 0 ? sec_plus_tan : 1 / sec_plus_tan;
      minus = 1 / plus;
    }
    EXPECT_LE(ulps(ko_tan_pid4_plus_phid2(0, 0, phi), plus), kMaxUlps) << phi;
    EXPECT_LE(ulps(ko_tan_pid4_minus_phid2(0, 0, phi), minus), kMaxUlps) << phi;
  }
}

TEST(TanQuarter, PoleFlagsChooseInfiniteOrLargeFinite) {
  const double cos_pole = 6.123233995736766e-17;
  EXPECT_TRUE(std::isinf(ko_tan_pid4_plus_phid2(0, 0, kHalfPi)));
  EXPECT_EQ(ko_tan_pid4_plus_phid2(1, 0, kHalfPi), 2 / cos_pole);
  EXPECT_EQ(ko_tan_pid4_plus_phid2(0, 0, -kHalfPi), 0.0);
  EXPECT_EQ(ko_tan_pid4_plus_phid2(0, 1, -kHalfPi), cos_pole / 2);
  EXPECT_TRUE(std::isinf(ko_tan_pid4_minus_phid2(0, 0, -kHalfPi)));
  EXPECT_EQ(ko_tan_pid4_minus_phid2(0, 1, -kHalfPi), 2 / cos_pole);
  EXPECT_EQ(ko_tan_pid4_minus_phid2(0, 0, kHalfPi), 0.0);
  // Sine and cosine within 2^-52 of 0 or 1 are snapped: the equator is exact.
  EXPECT_EQ(ko_tan_pid4_plus_phid2(0, 0, 1e-17), 1.0);
  EXPECT_EQ(ko_tan_pid4_plus_phid2(0, 0, 0.0), 1.0);
}

}  // namespace
