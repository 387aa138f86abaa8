// The ellipsoidal Gauss-Krüger kernels of gauss_kruger.cpp, as templates on
// a math policy M (value type M::V of M::kWidth doubles), whose functions
// are called on the object `math`.  Included twice by
// that file: once for scalar code and once in a region compiled for AVX2,
// so that each copy is built for its own instruction set.  Uses the layout
// constants and helpers defined there before the inclusion.
// NOLINT(build/header_guard): included on purpose more than once.

// Forward on the ellipsoid, for M::kWidth points.  The conformal latitude
// comes from its series in sin 2j phi (its sine and cosine by the addition
// theorem, the correction being small), the spherical transverse Mercator
// (xi', eta') of it in closed form, the double angles of (xi', eta')
// algebraically, and Krüger's alpha series by complex Clenshaw summation.
// Per point: two sincos, one atan2, one log1p.
template <class M>
KO_TM_INLINE void forward_points(const M &math, const double *d, double lam0, double *p) {
  using V = typename M::V;
  V lon, phi;
  math.load(p, lon, phi);
  const V lam = math.wrap(lon - lam0);
  V sphi, cphi, sinlam, coslam;
  math.sincos(phi, sphi, cphi);
  math.sincos(lam, sinlam, coslam);
  // conformal latitude chi = phi + delta
  const V delta = sine_series<kOrder>(d + kChi, 2.0 * sphi * cphi, (cphi - sphi) * (cphi + sphi));
  V sd, cd;
  small_sincos(delta, sd, cd);
  const V schi = sphi * cd + cphi * sd;
  const V cchi = cphi * cd - sphi * sd;
  // spherical transverse Mercator of (chi, lam): tanh eta' = t
  const V t = cchi * sinlam;
  const V u = cchi * coslam;
  const V r2 = schi * schi + u * u;  // = 1 - t², without cancellation
  const V xip = math.atan2(schi, u);
  const V etap = 0.5 * math.log1p(2.0 * t * (1.0 + t) / r2);
  const V sin2xi = 2.0 * schi * u / r2;
  const V cos2xi = (u - schi) * (u + schi) / r2;
  const V sinh2eta = 2.0 * t / r2;
  const V cosh2eta = (1.0 + t * t) / r2;
  V dxi, deta;
  complex_sine_series<kOrder>(d + kAlpha, sin2xi, cos2xi, sinh2eta, cosh2eta, dxi, deta);
  const double scale = d[kScale];
  math.store(p, scale * (etap + deta), scale * (xip + dxi) - scale * d[kMu0]);
}

// Inverse on the ellipsoid, for M::kWidth points: Krüger's beta series takes
// (xi, eta) to the spherical (xi', eta'); the sines and cosines of xi', eta'
// follow from those of (xi, eta) by the addition theorems (the corrections
// being small); the conformal latitude and the longitude are closed forms of
// them, and the geodetic latitude is the conformal one plus its series in
// sin 2j chi.  Per point: one sincos, one expm1, two atan2, one sqrt.
template <class M>
KO_TM_INLINE void inverse_points(const M &math, const double *d, double lam0, double *p) {
  using V = typename M::V;
  V x, y;
  math.load(p, x, y);
  const V xi = y * d[kInvScale] + d[kMu0];
  const V eta = x * d[kInvScale];
  V sxi, cxi;
  math.sincos(xi, sxi, cxi);
  const V em1 = math.expm1(eta);
  const V ex = em1 + 1.0;
  const V sheta = 0.5 * em1 * (1.0 + 1.0 / ex);  // (e^eta - e^-eta) / 2
  const V cheta = 0.5 * (ex + 1.0 / ex);
  V dxi, deta;
  complex_sine_series<kOrder>(d + kBeta, 2.0 * sxi * cxi, (cxi - sxi) * (cxi + sxi), 2.0 * sheta * cheta,
                              1.0 + 2.0 * sheta * sheta, dxi, deta);
  // xi' = xi - dxi, eta' = eta - deta
  V sdx, cdx, shd, chd;
  small_sincos(dxi, sdx, cdx);
  small_sinhcosh(deta, shd, chd);
  const V sxip = sxi * cdx - cxi * sdx;
  const V cxip = cxi * cdx + sxi * sdx;
  const V shetap = sheta * chd - cheta * shd;
  // conformal latitude: tan chi = sin xi' / sqrt(sinh² eta' + cos² xi')
  const V q = math.sqrt(shetap * shetap + cxip * cxip);
  const V chi = math.atan2(sxip, q);
  const V h2 = sxip * sxip + q * q;  // = cosh² eta'
  const V phi = chi + sine_series<kOrder>(d + kPhi, 2.0 * sxip * q / h2, (q - sxip) * (q + sxip) / h2);
  math.store(p, math.wrap(math.atan2(shetap, cxip) + lam0), phi);
}

