// The oblique stereographic point kernels of stereographic.cpp (methods
// 9809 and Snyder's), as templates on a math policy M (simd.h) for M::kWidth
// points.  Included twice by that file, after simd_blocks.h: once for
// scalar code and once in its region compiled for AVX2.
// NOLINT(build/header_guard): included on purpose more than once.

// The conformal sphere's χ = gd(n ψ + h), Λ = n (λ − λ0), then the
// spherical stereographic of scale S about (χ0, 0):
//   x = S cos χ sin Λ / B,  y = S (sin χ cos χ0 − cos χ sin χ0 cos Λ) / B,
//   B = 1 + sin χ sin χ0 + cos χ cos χ0 cos Λ.
// The antipode of the centre (B = 0) goes to infinity.
template <class M>
KO_SIMD_INLINE void forward_oblique_block(const M &m, const StereoConstants &k, const Conformal &,
                                          double *p) {
  using V = typename M::V;
  V lon, phi;
  m.load(p, lon, phi);
  V s, c, sin_chi, cos_chi, sin_lam, cos_lam;
  m.sincos(phi, s, c);
  tanh_sech(m, k.n * isometric(m, s, c, k.e) + k.h, sin_chi, cos_chi);
  m.sincos(k.n * m.wrap(lon - k.lambda0), sin_lam, cos_lam);
  const V B = 1.0 + sin_chi * k.sin_chi0 + cos_chi * k.cos_chi0 * cos_lam;
  const V scale = k.S / B;
  V x = scale * cos_chi * sin_lam;
  V y = scale * (sin_chi * k.cos_chi0 - cos_chi * k.sin_chi0 * cos_lam);
  turn(k.plane.fwd, x, y);
  store_points(m, p, x, y, m.both(m.abs(phi) <= kHalfPi, B > 1e-15));
}

// The spherical stereographic inverse (Snyder 1987, 20-18, 21-15, 21-16)
// with the angular distance c from the centre given by t = ρ / S = tan(c/2):
// cos c = (1 − t²) / (1 + t²) and sin c / ρ = 2 / (S (1 + t²)), which needs
// no case at the centre; then ψ = (atanh sin χ − h) / n back to φ.
template <class M>
KO_SIMD_INLINE void inverse_oblique_block(const M &m, const StereoConstants &k, const Conformal &cf,
                                          double *p) {
  using V = typename M::V;
  V x, y;
  m.load(p, x, y);
  turn(k.plane.inv, x, y);
  const V t2 = (x * x + y * y) / (k.S * k.S);
  const V cos_c = (1.0 - t2) / (1.0 + t2);
  const V sc_rho = 2.0 / (k.S * (1.0 + t2));  // sin c / ρ
  // The point on the sphere: sin χ, and cos χ times the cosine and sine of
  // its longitude from the centre.  cos χ is taken from the latter two, not
  // from sin χ, so that it keeps full precision next to the poles.
  const V sin_chi = cos_c * k.sin_chi0 + y * sc_rho * k.cos_chi0;
  const V along = k.cos_chi0 * cos_c - y * k.sin_chi0 * sc_rho;
  const V across = x * sc_rho;
  const V lam = m.atan2(across, along);
  const V cos_chi = m.sqrt(along * along + across * across);
  // atanh |sin χ| = log((1 + |sin χ|) / cos χ), signed; ∞ at a pole.
  const V as = m.abs(sin_chi);
  const V at = m.log((1.0 + as) / cos_chi);
  const V psi = (m.select(sin_chi < 0.0, -at, at) - k.h) / k.n;
  const V phi = latitude_of_isometric(m, cf, psi);
  store_points(m, p, m.wrap(k.lambda0 + lam / k.n), phi, phi == phi);
}
