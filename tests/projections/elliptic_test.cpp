// Carlson's symmetric integrals and the complete elliptic integrals against
// GeographicLib's EllipticFunction, published values (Carlson 1995, Table
// of test values) and, for the complete integrals, long-double Gauss-Legendre
// quadrature of their defining integrals.  Required accuracy: 1e-15 relative.
#include "ko.h"

#include "projections/quadrature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/EllipticFunction.hpp>
#endif

namespace {

constexpr double kRel = 1e-15;

#define EXPECT_REL(got, want, rel) EXPECT_NEAR((got), (want), (rel) * std::fabs(want))

TEST(Carlson, PublishedValues) {
  // Carlson (1995), "Numerical computation of real or complex elliptic
  // integrals", test values given to 14 digits.
  EXPECT_REL(ko_rf(1, 2, 0), 1.3110287771461, 1e-13);
  EXPECT_REL(ko_rf(2, 3, 4), 0.58408284167715, 1e-13);
  EXPECT_REL(ko_rc(0, 0.25), std::numbers::pi, 1e-15);
  EXPECT_REL(ko_rc(2.25, 2), std::log(2.0), 1e-15);
  EXPECT_REL(ko_rc(0.25, -2), 0.23104906018665, 1e-13);  // principal value
  EXPECT_REL(ko_rj(0, 1, 2, 3), 0.77688623778582, 1e-13);
  EXPECT_REL(ko_rj(2, 3, 4, 5), 0.14297579667157, 1e-13);
  EXPECT_REL(ko_rd(0, 2, 1), 1.7972103521034, 1e-13);
  EXPECT_REL(ko_rd(2, 3, 4), 0.16510527294261, 1e-13);
}

TEST(Carlson, SymmetryAndSpecialValues) {
  // RF is symmetric in all three, RD in its first two, RJ in its first three.
  EXPECT_REL(ko_rf(0.3, 5, 2), ko_rf(5, 2, 0.3), 4e-16);
  EXPECT_REL(ko_rd(0.3, 5, 2), ko_rd(5, 0.3, 2), 4e-16);
  EXPECT_REL(ko_rj(0.3, 5, 2, 1.5), ko_rj(2, 0.3, 5, 1.5), 4e-16);
  // RF(x,x,x) = x^-1/2, RD(x,x,x) = RJ(x,x,x,x) = x^-3/2, RC(x,y) = RF(x,y,y).
  EXPECT_REL(ko_rf(4, 4, 4), 0.5, 1e-16);
  EXPECT_REL(ko_rd(4, 4, 4), 0.125, 1e-16);
  EXPECT_REL(ko_rj(4, 4, 4, 4), 0.125, 1e-16);
  EXPECT_REL(ko_rc(0.7, 3.1), ko_rf(0.7, 3.1, 3.1), kRel);
  EXPECT_REL(ko_rc(3.1, 0.7), ko_rf(3.1, 0.7, 0.7), kRel);
  EXPECT_REL(ko_rd(0.7, 2.5, 1.9), ko_rj(0.7, 2.5, 1.9, 1.9), kRel);
}

TEST(Carlson, OutsideTheDomain) {
  EXPECT_TRUE(std::isnan(ko_rf(-1, 1, 1)));
  EXPECT_TRUE(std::isinf(ko_rf(0, 0, 1)));
  EXPECT_TRUE(std::isnan(ko_rd(1, 1, -1)));
  EXPECT_TRUE(std::isinf(ko_rd(1, 1, 0)));
  EXPECT_TRUE(std::isinf(ko_rd(0, 0, 1)));
  EXPECT_TRUE(std::isnan(ko_rc(-1, 1)));
  EXPECT_TRUE(std::isinf(ko_rc(1, 0)));
  EXPECT_TRUE(std::isnan(ko_rj(1, 1, 1, -1)));  // principal value not provided
  EXPECT_TRUE(std::isinf(ko_rj(1, 1, 1, 0)));
  EXPECT_TRUE(std::isnan(ko_rf(std::nan(""), 1, 1)));
}

TEST(CompleteIntegrals, DomainEdges) {
  EXPECT_TRUE(std::isinf(ko_ellint1(1)));
  EXPECT_TRUE(std::isnan(ko_ellint1(1.5)));
  EXPECT_EQ(ko_ellint2(1), 1.0);
  EXPECT_TRUE(std::isnan(ko_ellint2(2)));
  EXPECT_TRUE(std::isinf(ko_ellint3(1, 0.5)));
  EXPECT_TRUE(std::isinf(ko_ellint3(0.5, 1)));
  EXPECT_TRUE(std::isnan(ko_ellint3(1.5, 0.5)));
  EXPECT_DOUBLE_EQ(ko_ellint1(0), std::numbers::pi / 2);
  EXPECT_DOUBLE_EQ(ko_ellint2(0), std::numbers::pi / 2);
  EXPECT_DOUBLE_EQ(ko_ellint3(0, 0), std::numbers::pi / 2);
}

// Long-double Gauss-Legendre, 16 panels on [0, π/2].
template <class F>
long double quad_half_pi(F f) {
  static const ko::test::GaussLegendre gl;
  return gl.integrate(f, 0, std::numbers::pi_v<long double> / 2, 16);
}

TEST(CompleteIntegrals, AgreeWithQuadrature) {
  for (double m : {-3.0, -0.5, 0.0, 0.0066943799901413165, 0.0133, 0.3, 0.7, 0.9}) {
    for (double n : {-2.0, -0.3, 0.0, 0.2, 0.6}) {
      auto delta = [m](long double t) {
        long double s = std::sin(t);
        return std::sqrt(1 - m * s * s);
      };
      long double k = quad_half_pi([&](long double t) { return 1 / delta(t); });
      long double e = quad_half_pi(delta);
      long double pi = quad_half_pi([&](long double t) {
        long double s = std::sin(t);
        return 1 / ((1 - n * s * s) * delta(t));
      });
      EXPECT_REL(ko_ellint1(m), static_cast<double>(k), kRel) << m;
      EXPECT_REL(ko_ellint2(m), static_cast<double>(e), kRel) << m;
      EXPECT_REL(ko_ellint3(n, m), static_cast<double>(pi), kRel) << n << " " << m;
    }
  }
}

#ifdef KO_HAVE_GEOGRAPHICLIB
TEST(Carlson, AgreeWithGeographicLib) {
  using GeographicLib::EllipticFunction;
  // Arguments spread over five orders of magnitude.  (Where p is some 1e7
  // times smaller than the largest argument, RJ's duplication loses digits in
  // both implementations: not a corner this library reaches.)
  const double args[] = {0.0, 1e-3, 0.01, 0.3, 1.0, 2.7, 40.0, 100.0};
  for (double x : args)
    for (double y : args)
      for (double z : args) {
        if ((x == 0) + (y == 0) + (z == 0) > 1) continue;
        EXPECT_REL(ko_rf(x, y, z), EllipticFunction::RF(x, y, z), kRel) << x << " " << y << " " << z;
        if (z > 0 && x + y > 0) {
          EXPECT_REL(ko_rd(x, y, z), EllipticFunction::RD(x, y, z), kRel)
              << x << " " << y << " " << z;
        }
        for (double p : {0.02, 1.5, 30.0}) {
          EXPECT_REL(ko_rj(x, y, z, p), EllipticFunction::RJ(x, y, z, p), kRel)
              << x << " " << y << " " << z << " " << p;
        }
      }
  for (double x : args)
    for (double y : {1e-8, 0.5, 1.0, 3.0, 1e5, 1e12}) {
      EXPECT_REL(ko_rc(x, y), EllipticFunction::RC(x, y), kRel) << x << " " << y;
    }
}

TEST(CompleteIntegrals, AgreeWithGeographicLib) {
  for (double m : {-10.0, -0.5, 1e-9, 0.0066943799901413165, 0.0133, 0.5, 0.9, 0.99}) {
    for (double n : {-5.0, -0.4, 0.1, 0.8, 0.999}) {
      GeographicLib::EllipticFunction ell(m, n);
      EXPECT_REL(ko_ellint1(m), ell.K(), kRel) << m;
      EXPECT_REL(ko_ellint2(m), ell.E(), kRel) << m;
      EXPECT_REL(ko_ellint3(n, m), ell.Pi(), kRel) << n << " " << m;
    }
  }
}
#endif

}  // namespace
