// The Hotine oblique Mercator point kernels of hotine.cpp, as templates on a
// math policy M (simd.h) for M::kWidth points.  Included twice by that file,
// after simd_blocks.h: once for scalar code and once in its region compiled
// for AVX2.
// NOLINT(build/header_guard): included on purpose more than once.

//   w = ln H + B ψ,  U = tanh w sin γ0 − sin(B Δλ) cos γ0 / cosh w,
//   v = −(A / B) atanh U,
//   u = (A / B) atan2(tanh w cos γ0 + sin(B Δλ) sin γ0 / cosh w, cos(B Δλ) / cosh w) − uc.
// |U| = 1: the two points 90° from the central line, at infinity.
template <class M>
KO_SIMD_INLINE void forward_block(const M &m, const HotineConstants &k, const Conformal &, double *p) {
  using V = typename M::V;
  V lon, phi;
  m.load(p, lon, phi);
  V s, c, th, sech, sin_bl, cos_bl;
  m.sincos(phi, s, c);
  tanh_sech(m, k.lnH + k.B * isometric(m, s, c, k.e), th, sech);
  m.sincos(k.B * m.wrap(lon - k.lambda0), sin_bl, cos_bl);
  const V U = th * k.sin_g0 - sin_bl * k.cos_g0 * sech;
  // atanh U = ½ log1p(2U / (1 − U)).
  V x = -0.5 * k.A_B * m.log1p(2.0 * U / (1.0 - U));
  V y = k.A_B * m.atan2(th * k.cos_g0 + sin_bl * k.sin_g0 * sech, cos_bl * sech) - k.uc;
  turn(k.plane.fwd, x, y);
  store_points(m, p, x, y, m.both(m.abs(phi) <= kHalfPi, m.abs(U) < 1.0));
}

template <class M>
KO_SIMD_INLINE void inverse_block(const M &m, const HotineConstants &k, const Conformal &cf, double *p) {
  using V = typename M::V;
  V x, y;
  m.load(p, x, y);
  turn(k.plane.inv, x, y);
  V th, sech, sin_bu, cos_bu;
  tanh_sech(m, x / -k.A_B, th, sech);
  m.sincos((y + k.uc) / k.A_B, sin_bu, cos_bu);
  const V U = sin_bu * k.cos_g0 * sech + th * k.sin_g0;
  const V psi = (0.5 * m.log1p(2.0 * U / (1.0 - U)) - k.lnH) / k.B;
  const V phi = latitude_of_isometric(m, cf, psi);
  const V lam = k.lambda0 - m.atan2(th * k.cos_g0 - sin_bu * k.sin_g0 * sech, cos_bu * sech) / k.B;
  store_points(m, p, m.wrap(lam), phi, phi == phi);
}
