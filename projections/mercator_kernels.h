// The Mercator point kernels of mercator.cpp, as templates on a math policy
// M (simd.h) for M::kWidth points.  Included twice by that file, after
// simd_blocks.h: once for scalar code and once in its region compiled for
// AVX2.  Latitudes of ±90° have no image.
// NOLINT(build/header_guard): included on purpose more than once.

//   x = a k0 (λ − λ0),  y = a k0 ψ(φ) − y0.
template <class M>
KO_SIMD_INLINE void forward_block(const M &m, const MercatorConstants &k, const Conformal &, double *p) {
  using V = typename M::V;
  V lon, phi;
  m.load(p, lon, phi);
  V s, c;
  m.sincos(phi, s, c);
  V x = k.ak0 * m.wrap(lon - k.lambda0);
  V y = k.ak0 * isometric(m, s, c, k.e) - k.y0;
  turn(k.plane.fwd, x, y);
  store_points(m, p, x, y, m.abs(phi) < kHalfPi);
}

template <class M>
KO_SIMD_INLINE void inverse_block(const M &m, const MercatorConstants &k, const Conformal &cf, double *p) {
  using V = typename M::V;
  V x, y;
  m.load(p, x, y);
  turn(k.plane.inv, x, y);
  const V phi = latitude_of_isometric(m, cf, (y + k.y0) / k.ak0);
  const V lam = m.wrap(k.lambda0 + x / k.ak0);
  store_points(m, p, lam, phi, phi == phi);
}
