// The conformal Lambert point kernels of lambert_conformal_conic.cpp, as
// templates on a math policy M (simd.h) for M::kWidth points.  Included
// twice by that file, after simd_blocks.h: once for scalar code and once in
// its region compiled for AVX2.
// NOLINT(build/header_guard): included on purpose more than once.

//   ρ = a k0 F exp(−n ψ),  θ = n (λ − λ0),  x = ρ sin θ,  y = ρ0 − ρ cos θ.
// The pole the cone opens towards is the apex, ρ = 0 exactly (the double
// nearest π/2 would leave ρ some centimetres short); the other pole maps to
// infinity.
template <class M>
KO_SIMD_INLINE void forward_block(const M &m, const LccConstants &k, const Conformal &, double *p) {
  using V = typename M::V;
  V lon, phi;
  m.load(p, lon, phi);
  V s, c, sin_t, cos_t;
  m.sincos(phi, s, c);
  m.sincos(k.n * m.wrap(lon - k.lambda0), sin_t, cos_t);
  const V signed_phi = k.sign * phi;
  const V rho = m.select(signed_phi >= kHalfPi, m.splat(0.0), k.aF * m.exp(-k.n * isometric(m, s, c, k.e)));
  V x = rho * sin_t;
  V y = k.rho0 - rho * cos_t;
  turn(k.plane.fwd, x, y);
  store_points(m, p, x, y, m.both(m.abs(phi) <= kHalfPi, signed_phi > -kHalfPi));
}

// Points outside the developed cone's sector are no image of the map.
template <class M>
KO_SIMD_INLINE void inverse_block(const M &m, const LccConstants &k, const Conformal &cf, double *p) {
  using V = typename M::V;
  V x, y;
  m.load(p, x, y);
  turn(k.plane.inv, x, y);
  const V dx = k.sign * x;
  const V dy = k.sign * (k.rho0 - y);
  const V rho = m.sqrt(dx * dx + dy * dy);  // |ρ'|
  const V theta = m.atan2(dx, dy);
  const V phi = latitude_of_isometric(m, cf, m.log(rho / std::fabs(k.aF)) / -k.n);
  const V lam = m.wrap(k.lambda0 + theta / k.n);
  store_points(m, p, lam, phi, m.abs(theta) <= k.theta_max * (1.0 + 1e-12));
}
