// Geodetic <-> geocentric coordinates and the geocentric point loop that the
// Helmert-family methods share.
//
// Forward: the textbook formulas (IOGP guidance note 7-2, §4.1.1):
//   N = a / sqrt(1 - e² sin²φ)
//   X = (N + h) cosφ cosλ,  Y = (N + h) cosφ sinλ,  Z = (N (1 - e²) + h) sinφ
//
// Inverse: H. Vermeille, "An analytical method to transform geocentric into
// geodetic coordinates", J Geod 85 (2011) 105-117, a closed form that holds
// everywhere, inside the evolute near the centre included.  With
//   p = (X² + Y²)/a²,  q = (1 - e²) Z²/a²,  r = (p + q - e⁴)/6,
// u is the root of u³ - 3 r u² - e⁴pq/2 = 0 that makes the quartic's solution
// real; outside the evolute (8r³ + e⁴pq > 0) by Cardano, written without a
// division by r, inside by the trigonometric form.  Then
//   v = sqrt(u² + e⁴q),  w = e²(u + v - q)/(2v),  k = (u + v)/(sqrt(w² + u + v) + w),
//   D = k sqrt(X² + Y²)/(k + e²),
//   φ = 2 atan2(Z, D + sqrt(D² + Z²)),  h = (k + e² - 1) sqrt(D² + Z²)/k.
// The one set of points it leaves undetermined, the equatorial plane inside
// the evolute (u + v = 0), has two mirror solutions; the northern one is
// taken (see equatorial_inside_evolute).
#include "transformations/methods.h"

#include <cmath>

namespace ko {

namespace {

// A point in the equatorial plane within e²a of the axis: the normals from
// latitude ±φ with a e² cosφ / sqrt(1 - e² sin²φ) = R both pass through it.
// Solving gives tanφ = sqrt((e⁴ - p) / (p (1 - e²))) and the distance
// h = -b sqrt(1 - p/e²); the centre itself (p = 0) lies under the pole.
void equatorial_inside_evolute(double a, double e2, double p, double z, double &lat, double &h) {
  if (e2 <= 0.0) {  // the centre of a sphere
    lat = std::copysign(kHalfPi, z);
    h = -a;
    return;
  }
  const double b = a * std::sqrt(1.0 - e2);
  lat = std::copysign(std::atan2(std::sqrt(std::fmax(e2 * e2 - p, 0.0)),
                                 std::sqrt(p * (1.0 - e2))),
                      z);
  h = -b * std::sqrt(std::fmax(1.0 - p / e2, 0.0));
}

}  // namespace

void geodetic_to_geocentric(double a, double e2, double lon, double lat, double h,
                            double xyz[3]) {
  const double sin_lat = std::sin(lat);
  const double cos_lat = std::cos(lat);
  const double n = a / std::sqrt(1.0 - e2 * sin_lat * sin_lat);
  const double r = (n + h) * cos_lat;
  xyz[0] = r * std::cos(lon);
  xyz[1] = r * std::sin(lon);
  xyz[2] = (n * (1.0 - e2) + h) * sin_lat;
}

void geocentric_to_geodetic(double a, double e2, const double xyz[3], double &lon,
                            double &lat, double &h) {
  const double x = xyz[0], y = xyz[1], z = xyz[2];
  const double e4 = e2 * e2;
  const double rho = std::sqrt(x * x + y * y);
  const double xa = rho / a, za = z / a;
  const double p = xa * xa;
  const double q = (1.0 - e2) * za * za;
  const double r = (p + q - e4) / 6.0;
  const double m = e4 * p * q;
  const double r3 = 8.0 * r * r * r;
  const double evol = r3 + m;
  double u;
  if (evol > 0.0) {
    // Cardano: u = r + c + r²/c with c = cbrt((sqrt(evol) + sqrt(m))²)/2;
    // the second cube root is r²/c, free of the cancellation in
    // sqrt(evol) - sqrt(m).
    const double s = std::sqrt(evol) + std::sqrt(m);
    const double c = 0.5 * std::cbrt(s * s);
    u = r + c + r * r / c;
  } else {
    // Three real roots (r < 0): the trigonometric form of the largest.
    const double psi = (2.0 / 3.0) * std::atan2(std::sqrt(m), std::sqrt(-evol) + std::sqrt(-r3));
    u = -4.0 * r * std::sin(psi) * std::cos(kPi / 6.0 + psi);
  }
  const double v = std::sqrt(u * u + e4 * q);
  const double uv = u + v;
  lon = std::atan2(y, x);
  if (!(uv > 0.0)) {
    equatorial_inside_evolute(a, e2, p, z, lat, h);
    return;
  }
  const double w = e2 * (uv - q) / (2.0 * v);
  const double k = uv / (std::sqrt(w * w + uv) + w);
  const double d = k * rho / (k + e2);
  const double dz = std::sqrt(d * d + z * z);
  lat = 2.0 * std::atan2(z, d + dz);
  h = (k + e2 - 1.0) * dz / k;
}

Affine helmert_affine(const double t[3], double rx, double ry, double rz, double ds,
                      const double pivot[3]) {
  // Position vector rotation (IOGP 7-2 §4.4.3.1), linearised as EPSG defines it:
  //   X' = T + (1 + ds) R (X - P) + P,  R = [1 -rz ry; rz 1 -rx; -ry rx 1]
  const double s = 1.0 + ds;
  Affine f{{s, -rz * s, ry * s, rz * s, s, -rx * s, -ry * s, rx * s, s}, {t[0], t[1], t[2]}};
  if (pivot != nullptr) {
    for (int i = 0; i < 3; ++i) {
      const double *row = f.m + 3 * i;
      f.t[i] += pivot[i] - (row[0] * pivot[0] + row[1] * pivot[1] + row[2] * pivot[2]);
    }
  }
  return f;
}

bool invert_affine(const Affine &f, Affine &inverse) {
  const double *m = f.m;
  // Adjugate over determinant; the matrices here are within 1e-4 of the
  // identity, so this is as accurate as any pivoting scheme.
  const double c00 = m[4] * m[8] - m[5] * m[7];
  const double c01 = m[5] * m[6] - m[3] * m[8];
  const double c02 = m[3] * m[7] - m[4] * m[6];
  const double det = m[0] * c00 + m[1] * c01 + m[2] * c02;
  if (!std::isfinite(det) || det == 0.0) return false;
  const double id = 1.0 / det;
  double *r = inverse.m;
  r[0] = c00 * id;
  r[1] = (m[2] * m[7] - m[1] * m[8]) * id;
  r[2] = (m[1] * m[5] - m[2] * m[4]) * id;
  r[3] = c01 * id;
  r[4] = (m[0] * m[8] - m[2] * m[6]) * id;
  r[5] = (m[2] * m[3] - m[0] * m[5]) * id;
  r[6] = c02 * id;
  r[7] = (m[1] * m[6] - m[0] * m[7]) * id;
  r[8] = (m[0] * m[4] - m[1] * m[3]) * id;
  for (int i = 0; i < 3; ++i)
    inverse.t[i] = -(r[3 * i] * f.t[0] + r[3 * i + 1] * f.t[1] + r[3 * i + 2] * f.t[2]);
  return true;
}

int transform_through_geocentric(const double *sph_in, const double *sph_out, const Affine &f,
                                 int n, double *coord, double *z) {
  if (coord == nullptr || n < 0 || sph_in == nullptr || sph_out == nullptr) return -1;
  const double a1 = sph_in[0], e21 = sph_in[1];
  const double a2 = sph_out[0], e22 = sph_out[1];
  const double *m = f.m;
  int converted = 0;
  for (int i = 0; i < n; ++i) {
    double *c = coord + 2 * i;
    const double h = z != nullptr ? z[i] : 0.0;
    if (!(std::isfinite(c[0]) && std::isfinite(c[1]) && std::isfinite(h))) continue;
    double xyz[3];
    geodetic_to_geocentric(a1, e21, c[0], c[1], h, xyz);
    const double out[3] = {f.t[0] + m[0] * xyz[0] + m[1] * xyz[1] + m[2] * xyz[2],
                           f.t[1] + m[3] * xyz[0] + m[4] * xyz[1] + m[5] * xyz[2],
                           f.t[2] + m[6] * xyz[0] + m[7] * xyz[1] + m[8] * xyz[2]};
    double h2;
    geocentric_to_geodetic(a2, e22, out, c[0], c[1], h2);
    if (z != nullptr) z[i] = h2;
    ++converted;
  }
  return converted;
}

int helmert_transform(const MethodArgs &args, const double t[3], const double rot[3], double ds,
                      const double *pivot, bool pv, bool inverse, int n, double *coord,
                      double *z) {
  if (coord == nullptr || n < 0) return -1;
  // The coordinate frame convention is the position vector one with the
  // rotations negated (IOGP 7-2 §4.4.3.2).
  const double sign = pv ? 1.0 : -1.0;
  const Affine f = helmert_affine(t, sign * rot[0], sign * rot[1], sign * rot[2], ds, pivot);
  if (!inverse) return transform_through_geocentric(args.sph1, args.sph2, f, n, coord, z);
  Affine back;
  if (!invert_affine(f, back)) return 0;
  return transform_through_geocentric(args.sph2, args.sph1, back, n, coord, z);
}

}  // namespace ko
