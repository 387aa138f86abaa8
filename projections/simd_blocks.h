// Building blocks of the conformal projections' point kernels, as templates
// on a math policy M (simd.h): ScalarMath for one point, Avx2Math for four.
// Included twice by each family file that uses them: once for scalar code
// and once inside its region compiled for AVX2 (in a namespace of its own),
// so that each copy is built for its own instruction set.
// NOLINT(build/header_guard): included on purpose more than once.

// The isometric latitude ψ = atanh(sin φ) − e atanh(e sin φ) (Snyder 1987,
// 3-7) from sin φ and cos φ (|φ| <= π/2), written so that no digits cancel:
// with s = |sin φ|, atanh s = ln((1 + s) / cos φ) = log1p((s + s²/(1 + cos φ))
// / cos φ), and e atanh(e s) = e/2 log1p(2 e s / (1 − e s)); the sign of
// sin φ is put back at the end.
template <class M>
KO_SIMD_INLINE typename M::V isometric(const M &m, typename M::V sin_phi, typename M::V cos_phi,
                                       double e) {
  using V = typename M::V;
  const V s = m.abs(sin_phi);
  const V spherical = m.log1p((s + s * s / (1.0 + cos_phi)) / cos_phi);
  const V es = e * s;
  const V psi = spherical - 0.5 * e * m.log1p(2.0 * es / (1.0 - es));
  return m.select(sin_phi < 0.0, -psi, psi);
}

// tanh q and sech q = 1 / cosh q: with u = e^(−2|q|) − 1 (expm1) and
// w = e^(−|q|), tanh |q| = −u / (2 + u) and sech q = 2 w / (2 + u).  sech is
// taken from w, not from sqrt(1 + u), which rounds to 0 once e^(−2|q|) is
// below half an ulp of 1 (|q| > 19, latitudes within 1e-7 degree of a pole).
// Finite for every q, ±∞ included (tanh ±1, sech 0).
template <class M>
KO_SIMD_INLINE void tanh_sech(const M &m, typename M::V q, typename M::V &th, typename M::V &sech) {
  using V = typename M::V;
  const V a = m.abs(q);
  const V u = m.expm1(-2.0 * a);
  const V d = 2.0 + u;
  const V t = -u / d;
  th = m.select(q < 0.0, -t, t);
  sech = 2.0 * m.exp(-a) / d;
}

// The geodetic latitude of a conformal latitude χ, given also sin χ and
// cos χ: φ = χ + sin 2χ P(cos 2χ), P's six power coefficients from
// conformal_inverse_series (family.h), all zero on a sphere.  Without them
// (a spheroid flattened beyond the series' reach) the closed form of the C
// library's ko_chi_to_phi_wconst, one point at a time (Conformal in
// family.h).

template <class M>
KO_SIMD_INLINE typename M::V geodetic_of_conformal(const Conformal &cf, typename M::V chi,
                                                   typename M::V sin_chi, typename M::V cos_chi) {
  using V = typename M::V;
  if constexpr (M::kWidth == 1) {
    if (cf.poly == nullptr) return ko_chi_to_phi_wconst(cf.coef, cf.e2, chi);
  }
  const V c2 = (cos_chi - sin_chi) * (cos_chi + sin_chi);
  V p = c2 * 0.0 + cf.poly[5];
  for (int j = 4; j >= 0; --j) p = p * c2 + cf.poly[j];
  return chi + 2.0 * sin_chi * cos_chi * p;
}

// The geodetic latitude of an isometric latitude ψ: χ = gd ψ = atan2(tanh ψ,
// sech ψ), then the series above.
template <class M>
KO_SIMD_INLINE typename M::V latitude_of_isometric(const M &m, const Conformal &cf, typename M::V psi) {
  typename M::V th, sech;
  tanh_sech(m, psi, th, sech);
  return geodetic_of_conformal<M>(cf, m.atan2(th, sech), th, sech);
}

// The plane orientation step (PlaneOrientation's fwd or inv matrix).
template <class V>
KO_SIMD_INLINE void turn(const double (&mat)[4], V &x, V &y) {
  const V u = mat[0] * x + mat[1] * y;
  y = mat[2] * x + mat[3] * y;
  x = u;
}

// Stores M::kWidth results; a point that is not ok, or not finite, gets
// HUGE_VAL in both coordinates.
template <class M>
KO_SIMD_INLINE void store_points(const M &m, double *p, typename M::V x, typename M::V y,
                                 typename M::Mask ok) {
  const typename M::Mask good = m.both(ok, m.both((x - x) == 0.0, (y - y) == 0.0));
  m.store(p, m.select(good, x, m.splat(HUGE_VAL)), m.select(good, y, m.splat(HUGE_VAL)));
}
