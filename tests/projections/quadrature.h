// Long-double Gauss-Legendre quadrature, the independent reference for the
// integrals behind the auxiliary latitudes, radii and elliptic integrals.
#pragma once

#include <cmath>
#include <numbers>

namespace ko::test {

// 20 nodes and weights on [-1, 1], found by Newton's method on the Legendre
// polynomial in long double; composite over equal panels.
class GaussLegendre {
 public:
  static constexpr int kNodes = 20;

  GaussLegendre() {
    for (int i = 0; i < kNodes; ++i) {
      long double z = std::cos(std::numbers::pi_v<long double> * (i + 0.75L) / (kNodes + 0.5L));
      long double dp = 0;
      for (int it = 0; it < 100; ++it) {
        long double p0 = 1, p1 = z;
        for (int k = 2; k <= kNodes; ++k) {
          long double p2 = ((2 * k - 1) * z * p1 - (k - 1) * p0) / k;
          p0 = p1;
          p1 = p2;
        }
        dp = kNodes * (z * p1 - p0) / (z * z - 1);
        long double dz = p1 / dp;
        z -= dz;
        if (std::fabs(dz) < 1e-21L) break;
      }
      x_[i] = z;
      w_[i] = 2 / ((1 - z * z) * dp * dp);
    }
  }

  template <class F>
  long double integrate(F f, long double lo, long double hi, int panels = 8) const {
    long double sum = 0, h = (hi - lo) / panels;
    for (int p = 0; p < panels; ++p) {
      long double mid = lo + (p + 0.5L) * h;
      for (int i = 0; i < kNodes; ++i) sum += w_[i] * f(mid + x_[i] * h / 2);
    }
    return sum * h / 2;
  }

 private:
  long double x_[kNodes], w_[kNodes];
};

}  // namespace ko::test
