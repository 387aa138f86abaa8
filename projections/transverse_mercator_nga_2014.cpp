// Transverse_Mercator_NGA_2014 (43081): the transverse Mercator as the
// National Geospatial-Intelligence Agency standard NGA.SIG.0012_2.0.0_UTMUPS
// (2014) formulates it for UTM:
//   - the conformal latitude chi of phi in closed form (its sine and cosine
//     from P = exp(e atanh(e sin phi)));
//   - the spherical transverse Mercator (xi', eta') of (chi, lambda);
//   - Krüger's series to sixth order in the third flattening n, forward
//     (alpha) and inverse (beta) (Krüger 1912; Karney 2011, eqs. 35-36);
//   - in the inverse, the geodetic latitude from the conformal one by Newton's
//     method on tan chi = tau sqrt(1 + sigma²) - sigma sqrt(1 + tau²),
//     sigma = sinh(e atanh(e tau / sqrt(1 + tau²))).
// The sixth-order series keeps the projection within about 10 nm of the exact
// mapping inside 3900 km of the central meridian (the order-7 terms left out
// dominate).  On a sphere the spherical formulas of the family are used.
//
// Constants (ivals [2, count]; count = 2 on a sphere, 24 on an ellipsoid):
//   sphere:     [0] a k0, [1] a k0 / 2
//   ellipsoid:  [0] a  [1] e²  [2] e  [3] k0  [4] A, the rectifying radius
//               [5] k0 A  [6] k0 A mu0, the northing of the latitude of origin
//               [7] phi0  [8 .. 13] alpha_1 .. alpha_6  [14 .. 19] beta_1 .. beta_6
//               [20] n  [21 .. 23] zero
#include "projections/tm_family.h"

#include <cmath>
#include <utility>

namespace {

using namespace ko::tm;

constexpr int kCentralMeridian = 2;
constexpr int kScaleFactor = 5;
constexpr int kLatitudeOfOrigin = 6;

constexpr int kOrder = 6;
constexpr int kEllipsoidCount = 24;
constexpr int kAxis = 0, kE2 = 1, kE = 2, kK0 = 3, kRectRadius = 4, kScale = 5, kNorthing0 = 6,
              kPhi0 = 7, kAlpha = 8, kBeta = 14, kN = 20;

// Newton steps for the latitude; three reach full precision from the start
// below for any terrestrial ellipsoid, the fourth is a margin.
constexpr int kNewtonSteps = 4;

bool is_sphere(double e2) { return e2 < ko::kTol; }
int constants_count(double e2) { return is_sphere(e2) ? 2 : kEllipsoidCount; }

int ellipsoid_constants(ko_constants *constants, const double *sph, const double *parms) {
  ko::Owned<double> d(ko::alloc_array<double>(kEllipsoidCount, "tm_nga_2014"));
  if (!d) return -1;
  double *v = d.get();
  const double e2 = sph[1];
  const double n = third_flattening(e2);
  v[kAxis] = sph[0];
  v[kE2] = e2;
  v[kE] = std::sqrt(e2);
  v[kK0] = parms[kScaleFactor];
  v[kRectRadius] = ko_rect_r(sph[0], e2);
  v[kScale] = v[kK0] * v[kRectRadius];
  v[kNorthing0] = v[kScale] * ko_phi_to_mu(e2, parms[kLatitudeOfOrigin]);
  v[kPhi0] = parms[kLatitudeOfOrigin];
  for (int j = 0; j < kOrder; ++j) {
    v[kAlpha + j] = series_term(kAlphaPoly[j], n, kOrder);
    v[kBeta + j] = series_term(kBetaPoly[j], n, kOrder);
  }
  v[kN] = n;
  return store_constants(constants, std::move(d), kEllipsoidCount);
}

int nga_constants(ko_constants *constants, const double *sph, const double *parms) {
  if (!ko_constants_p(constants) || sph == nullptr || parms == nullptr) return -1;
  return is_sphere(sph[1]) ? sphere_constants(constants, sph, parms)
                           : ellipsoid_constants(constants, sph, parms);
}

// sin chi and cos chi of the geodetic latitude (closed form): with
// P = exp(e atanh(e sin phi)), the conformal latitude satisfies
// tan(pi/4 + chi/2) = tan(pi/4 + phi/2) / P.
void conformal_latitude(double e, double phi, double &schi, double &cchi) {
  const double s = std::sin(phi), c = std::cos(phi);
  const double p = std::exp(e * std::atanh(e * s));
  const double plus = (1.0 + s) / p, minus = (1.0 - s) * p;
  schi = (plus - minus) / (plus + minus);
  cchi = 2.0 * c / (plus + minus);
}

// The geodetic latitude whose conformal latitude has tangent taup, by
// Newton's method on tau (Karney 2011, eqs. 7-9, 19-21).
double geodetic_latitude(double e, double e2, double taup) {
  const double one_minus_e2 = 1.0 - e2;
  double tau = taup / one_minus_e2;  // exact at the poles, close elsewhere
  for (int k = 0; k < kNewtonSteps; ++k) {
    const double root = std::hypot(1.0, tau);
    const double sigma = std::sinh(e * std::atanh(e * tau / root));
    const double taui = tau * std::hypot(1.0, sigma) - sigma * root;
    const double slope = one_minus_e2 * std::hypot(1.0, taui) * root / (1.0 + one_minus_e2 * tau * tau);
    const double step = (taup - taui) / slope;
    tau += std::isfinite(step) ? step : 0.0;
  }
  return std::atan(tau);
}

int ellipsoid_forward(const double *parms, int n, double *coords, const double *d) {
  const double lam0 = parms[kCentralMeridian];
  for (int i = 0; i < n; ++i) {
    double *p = coords + 2 * i;
    const double lam = wrap_longitude(p[0] - lam0);
    double schi, cchi;
    conformal_latitude(d[kE], p[1], schi, cchi);
    const double xip = std::atan2(schi, cchi * std::cos(lam));
    const double etap = std::atanh(cchi * std::sin(lam));
    double dxi, deta;
    complex_sine_series<kOrder>(d + kAlpha, std::sin(2.0 * xip), std::cos(2.0 * xip), std::sinh(2.0 * etap),
                                std::cosh(2.0 * etap), dxi, deta);
    p[0] = d[kScale] * (etap + deta);
    p[1] = d[kScale] * (xip + dxi) - d[kNorthing0];
  }
  return n;
}

int ellipsoid_inverse(const double *parms, int n, double *coords, const double *d) {
  const double lam0 = parms[kCentralMeridian];
  for (int i = 0; i < n; ++i) {
    double *p = coords + 2 * i;
    const double xi = (p[1] + d[kNorthing0]) / d[kScale];
    const double eta = p[0] / d[kScale];
    double dxi, deta;
    complex_sine_series<kOrder>(d + kBeta, std::sin(2.0 * xi), std::cos(2.0 * xi), std::sinh(2.0 * eta),
                                std::cosh(2.0 * eta), dxi, deta);
    const double xip = xi - dxi, etap = eta - deta;
    const double sxip = std::sin(xip), cxip = std::cos(xip), shetap = std::sinh(etap);
    // tan chi = sin xi' / sqrt(sinh² eta' + cos² xi')
    const double taup = sxip / std::hypot(shetap, cxip);
    p[1] = geodetic_latitude(d[kE], d[kE2], taup);
    p[0] = wrap_longitude(std::atan2(shetap, cxip) + lam0);
  }
  return n;
}

int nga_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
                const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(nga_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(true, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_forward(parms, n, coords, d) : ellipsoid_forward(parms, n, coords, d);
    });
  });
}

int nga_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *ivals,
                const double *dvals) {
  if (!usable_arguments(sph, parms, n, coords)) return 0;
  return with_constants(nga_constants, sph, parms, ivals, dvals, constants_count, [&](const double *d) {
    return oriented(false, parms, n, coords, [&] {
      return is_sphere(sph[1]) ? sphere_inverse(parms, n, coords, d) : ellipsoid_inverse(parms, n, coords, d);
    });
  });
}

}  // namespace

extern "C" KO_API const ko_projlist_entry ko_prj_transverse_mercator_nga_2014_vector = {
    43081, "Transverse_Mercator_NGA_2014", nga_forward, nga_inverse, nga_constants, check_tm_parameters,
    nullptr, nullptr};
