// Coefficients of the geodesic series of C. F. F. Karney, "Algorithms for
// geodesics", J. Geodesy 87, 43-55 (2013), evaluated for one spheroid.  The
// series themselves (rational polynomials in the third flattening n, one
// per power of eps) are derived by tools/series/geodesic_series.py and
// included from geodesic_series.inc; this file only evaluates them at n.
#include "foundation/internal.h"

#include <array>
#include <cmath>

namespace {

struct SeriesTerm {
  int row;
  int eps_power;
  int n_power;
  long long numerator;
  long long denominator;
};

#include "geodesy/geodesic_series.inc"

static_assert(kSeriesOrder == KO_GEODESIC_ORDER);
static_assert(kSeriesRows == KO_GEODESIC_ROWS);

constexpr int kRowLength = KO_GEODESIC_ORDER + 1;

// Third flattening from e²: n = (1 - sqrt(1 - e²)) / (1 + sqrt(1 - e²)),
// written as e² / (1 + sqrt(1 - e²))² to keep its precision for small e².
double third_flattening(double e2) {
  double root = 1.0 + std::sqrt(1.0 - e2);
  return e2 / (root * root);
}

}  // namespace

extern "C" double *ko_geodesic_constants_array_new(double e2, int *order) {
  if (order != nullptr) *order = 0;
  if (!(e2 >= 0.0 && e2 < 1.0)) return nullptr;
  double *coef = ko::alloc_array<double>(KO_GEODESIC_NCOEF, "geodesic constants");
  if (coef == nullptr) return nullptr;
  double n = third_flattening(e2);
  std::array<double, KO_GEODESIC_ORDER + 1> n_powers{};
  n_powers[0] = 1.0;
  for (std::size_t k = 1; k < n_powers.size(); ++k) n_powers[k] = n_powers[k - 1] * n;
  // Terms of one coefficient come highest power of n first, so the sum
  // adds the smallest contributions first.
  for (const SeriesTerm &t : kSeriesTerms)
    coef[t.row * kRowLength + t.eps_power] += static_cast<double>(t.numerator) /
                                              static_cast<double>(t.denominator) *
                                              n_powers[static_cast<std::size_t>(t.n_power)];
  if (order != nullptr) *order = KO_GEODESIC_ORDER;
  return coef;
}
