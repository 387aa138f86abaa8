// The geodesic series coefficients, checked by using them: distances,
// longitudes, reduced lengths, areas and direct-problem latitudes computed
// with them (Karney 2013, eqs. 7, 8, 15, 20, 38, 58) must agree with
// GeographicLib's geodesic solutions for the same lines.
#include "ko.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Geodesic.hpp>
#endif

namespace {

constexpr int kRow = KO_GEODESIC_ORDER + 1;
constexpr double kDeg = M_PI / 180.0;

// Row indices of the documented layout.
constexpr int kA1 = 0, kC1 = 1, kC1p = 7, kA2 = 13, kC2 = 14, kA3 = 20, kC3 = 21, kC4 = 27;

struct Series {
  double *coef = nullptr;
  explicit Series(double e2) {
    int order = -1;
    coef = ko_geodesic_constants_array_new(e2, &order);
    EXPECT_EQ(order, KO_GEODESIC_ORDER);
  }
  ~Series() { ko_memdealloc(coef); }
  Series(const Series &) = delete;
  Series &operator=(const Series &) = delete;

  // The polynomial of one row at eps.
  double row(int r, double eps) const {
    double sum = 0.0;
    for (int j = KO_GEODESIC_ORDER; j >= 0; --j) sum = sum * eps + coef[r * kRow + j];
    return sum;
  }
  // sum_{l=1..6} C_l sin(2 l sigma) for the rows starting at first.
  double sine_sum(int first, double eps, double sigma) const {
    double sum = 0.0;
    for (int l = 1; l <= KO_GEODESIC_ORDER; ++l) sum += row(first + l - 1, eps) * std::sin(2 * l * sigma);
    return sum;
  }
};

TEST(GeodesicConstants, DomainAndLayout) {
  int order = 99;
  EXPECT_EQ(ko_geodesic_constants_array_new(-0.1, &order), nullptr);
  EXPECT_EQ(order, 0);
  EXPECT_EQ(ko_geodesic_constants_array_new(1.0, &order), nullptr);
  EXPECT_EQ(ko_geodesic_constants_array_new(NAN, &order), nullptr);
  EXPECT_EQ(KO_GEODESIC_NCOEF, 231);
  // On a sphere (n = 0) the series reduce to their eps-only parts: A3 = 1
  // - eps/2 - ..., C4[0] = 2/3, and every n-dependent coefficient vanishes
  // into its pure-number part.
  Series sphere(0.0);
  ASSERT_NE(sphere.coef, nullptr);
  EXPECT_EQ(sphere.coef[kA1 * kRow + 0], 1.0);
  EXPECT_EQ(sphere.coef[kA1 * kRow + 1], 0.0);
  EXPECT_EQ(sphere.coef[kA1 * kRow + 2], 0.25);
  EXPECT_EQ(sphere.coef[kA3 * kRow + 0], 1.0);
  EXPECT_EQ(sphere.coef[kA3 * kRow + 1], -0.5);
  EXPECT_DOUBLE_EQ(sphere.coef[kC4 * kRow + 0], 2.0 / 3.0);
  // Row C3[6] has no terms below total degree 6.
  for (int j = 0; j < kRow; ++j) EXPECT_EQ(sphere.coef[(kC3 + 5) * kRow + j], 0.0);
}

// A1 and A2 against the complete elliptic integral they expand:
// I1(pi/2) = E(-k^2) = A1 pi/2, I2(pi/2) = K(-k^2) = A2 pi/2.
TEST(GeodesicConstants, A1AndA2AreTheCompleteIntegrals) {
  Series s(0.0066943799901413165);
  for (double k2 : {1e-4, 0.003, 0.0067}) {
    double eps = k2 / std::pow(std::sqrt(1 + k2) + 1, 2);
    double a1 = s.row(kA1, eps) / (1 - eps);
    double a2 = s.row(kA2, eps) * (1 - eps);
    // Midpoint quadrature of the periodic integrands is spectrally accurate.
    const int steps = 64;
    double e = 0, k = 0;
    for (int i = 0; i < steps; ++i) {
      double t = (i + 0.5) * (M_PI / 2) / steps;
      double root = std::sqrt(1 + k2 * std::sin(t) * std::sin(t));
      e += root;
      k += 1 / root;
    }
    e /= steps;
    k /= steps;
    EXPECT_NEAR(a1, e, 1e-15) << k2;
    EXPECT_NEAR(a2, k, 1e-15) << k2;
  }
}

#ifdef KO_HAVE_GEOGRAPHICLIB

struct Line {
  double lat1, lat2, lon12;
};

constexpr Line kLines[] = {
    {10, 40, 30}, {-30, 60, 100}, {0.5, -20, 120}, {70, -50, 140},
    {5, 5, 80},   {-89, 45, 10},  {33, 34, 0.5},  {-10, -80, 170},
};

struct Quantities {
  double s12, lon12, m12, S12;
};

// One line solved with the series, given its azimuths at both ends.
Quantities solve(const Series &s, double a, double f, double lat1, double lat2, double azi1,
                 double azi2) {
  double b = a * (1 - f);
  double e2 = f * (2 - f);
  double ep2 = e2 / (1 - e2);
  auto reduced = [f](double lat) { return std::atan((1 - f) * std::tan(lat * kDeg)); };
  double beta1 = reduced(lat1), beta2 = reduced(lat2);
  double alp1 = azi1 * kDeg, alp2 = azi2 * kDeg;
  double salp0 = std::sin(alp1) * std::cos(beta1);
  double calp0 = std::hypot(std::cos(alp1), std::sin(alp1) * std::sin(beta1));
  double sig1 = std::atan2(std::sin(beta1), std::cos(alp1) * std::cos(beta1));
  double sig2 = std::atan2(std::sin(beta2), std::cos(alp2) * std::cos(beta2));
  if (sig2 < sig1) sig2 += 2 * M_PI;  // the line runs forward from sig1
  double k2 = ep2 * calp0 * calp0;
  double eps = k2 / std::pow(std::sqrt(1 + k2) + 1, 2);

  double a1 = s.row(kA1, eps) / (1 - eps);
  double a2 = s.row(kA2, eps) * (1 - eps);
  auto i1 = [&](double sig) { return a1 * (sig + s.sine_sum(kC1, eps, sig)); };
  auto i2 = [&](double sig) { return a2 * (sig + s.sine_sum(kC2, eps, sig)); };
  auto i3 = [&](double sig) { return s.row(kA3, eps) * (sig + s.sine_sum(kC3, eps, sig)); };
  auto i4 = [&](double sig) {
    double sum = 0;
    for (int l = 0; l < KO_GEODESIC_ORDER; ++l) sum += s.row(kC4 + l, eps) * std::cos((2 * l + 1) * sig);
    return sum;
  };
  auto omega = [&](double sig) { return std::atan2(salp0 * std::sin(sig), std::cos(sig)); };
  auto lambda = [&](double sig) { return omega(sig) - f * salp0 * i3(sig); };
  auto root = [&](double sig) { return std::sqrt(1 + k2 * std::sin(sig) * std::sin(sig)); };

  Quantities q{};
  q.s12 = b * (i1(sig2) - i1(sig1));
  double dlam = lambda(sig2) - lambda(sig1);
  q.lon12 = std::remainder(dlam, 2 * M_PI) / kDeg;
  double j12 = (i1(sig2) - i2(sig2)) - (i1(sig1) - i2(sig1));
  q.m12 = b * (root(sig2) * std::cos(sig1) * std::sin(sig2) -
               root(sig1) * std::sin(sig1) * std::cos(sig2) -
               std::cos(sig1) * std::cos(sig2) * j12);
  double e = std::sqrt(e2);
  double c2 = a * a / 2 + b * b / 2 * std::atanh(e) / e;
  q.S12 = c2 * (alp2 - alp1) + e2 * a * a * calp0 * salp0 * (i4(sig2) - i4(sig1));
  return q;
}

class GeodesicAgainstGeographicLib : public ::testing::TestWithParam<double> {};

// Tolerances: the series are truncated at the same order as GeographicLib's
// own, so the two agree to rounding: 10 nm in distance and reduced length
// (a few ulps of 10^7 m), 1e-12 degree in longitude, 1 cm² plus 1e-14 of
// the area.
TEST_P(GeodesicAgainstGeographicLib, InverseQuantities) {
  const double a = 6378137.0;
  const double f = GetParam();
  GeographicLib::Geodesic g(a, f);
  Series s(f * (2 - f));
  ASSERT_NE(s.coef, nullptr);
  for (const Line &line : kLines) {
    SCOPED_TRACE(testing::Message() << line.lat1 << " " << line.lat2 << " " << line.lon12);
    double s12, azi1, azi2, m12, M12, M21, S12;
    g.Inverse(line.lat1, 0.0, line.lat2, line.lon12, s12, azi1, azi2, m12, M12, M21, S12);
    Quantities q = solve(s, a, f, line.lat1, line.lat2, azi1, azi2);
    EXPECT_NEAR(q.s12, s12, 1e-8);
    EXPECT_NEAR(q.lon12, line.lon12, 1e-12);
    EXPECT_NEAR(q.m12, m12, 1e-8);
    EXPECT_NEAR(q.S12, S12, 1e-2 + 1e-14 * std::fabs(S12));
  }
}

// The direct problem through C1': from the distance to the arc length by
// the reverted series, then the latitude at the far end.
TEST_P(GeodesicAgainstGeographicLib, DirectLatitudeThroughRevertedSeries) {
  const double a = 6378137.0;
  const double f = GetParam();
  GeographicLib::Geodesic g(a, f);
  Series s(f * (2 - f));
  double ep2 = f * (2 - f) / ((1 - f) * (1 - f));
  double b = a * (1 - f);
  for (const Line &line : kLines) {
    for (double azi1 : {15.0, 80.0, 135.0}) {
      for (double s12 : {1e5, 4e6, 1.5e7}) {
        double lat2, lon2;
        g.Direct(line.lat1, 0.0, azi1, s12, lat2, lon2);
        double beta1 = std::atan((1 - f) * std::tan(line.lat1 * kDeg));
        double alp1 = azi1 * kDeg;
        double salp0 = std::sin(alp1) * std::cos(beta1);
        double calp0 = std::hypot(std::cos(alp1), std::sin(alp1) * std::sin(beta1));
        double sig1 = std::atan2(std::sin(beta1), std::cos(alp1) * std::cos(beta1));
        double k2 = ep2 * calp0 * calp0;
        double eps = k2 / std::pow(std::sqrt(1 + k2) + 1, 2);
        double a1 = s.row(kA1, eps) / (1 - eps);
        double tau2 = sig1 + s.sine_sum(kC1, eps, sig1) + s12 / (b * a1);
        double sig2 = tau2 + s.sine_sum(kC1p, eps, tau2);
        double beta2 = std::atan2(calp0 * std::sin(sig2),
                                  std::hypot(salp0, calp0 * std::cos(sig2)));
        double lat = std::atan(std::tan(beta2) / (1 - f)) / kDeg;
        EXPECT_NEAR(lat, lat2, 1e-12) << azi1 << " " << s12;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Flattenings, GeodesicAgainstGeographicLib,
                         ::testing::Values(1 / 298.257223563, 1 / 150.0, 1 / 1000.0));

#endif  // KO_HAVE_GEOGRAPHICLIB

TEST(GeodesicConstants, FailedAllocationGivesNull) {
  ko::test::fail_after(0);
  int order = 7;
  double *coef = ko_geodesic_constants_array_new(0.0066943799901413165, &order);
  ko::test::never_fail();
  EXPECT_EQ(coef, nullptr);
  EXPECT_EQ(order, 0);
}

// The committed table is what the derivation script produces.
TEST(GeodesicConstants, TableIsReproducedByTheDerivation) {
  if (std::system("python3 -c 'import sympy' 2>/dev/null") != 0) GTEST_SKIP() << "no sympy";
  std::string out = std::string(KO_BINARY_DIR) + "/geodesic_series_check.inc";
  std::string cmd = std::string("python3 ") + KO_SOURCE_DIR + "/tools/series/geodesic_series.py 6 > " + out;
  ASSERT_EQ(std::system(cmd.c_str()), 0);
  auto slurp = [](const std::string &path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  };
  std::string committed = slurp(std::string(KO_SOURCE_DIR) + "/geodesy/geodesic_series.inc");
  EXPECT_FALSE(committed.empty());
  EXPECT_EQ(slurp(out), committed);
}

}  // namespace
