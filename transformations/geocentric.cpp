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

namespace {

// Vermeille's solution for a point rho from the axis and z from the
// equatorial plane: his D, the length with tan φ = z / D, and the height.
// False on the equatorial plane inside the evolute, where u + v = 0.
inline bool vermeille(double a, double e2, double rho, double z, double &d, double &h) {
  const double e4 = e2 * e2;
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
  if (!(uv > 0.0)) return false;
  const double w = e2 * (uv - q) / (2.0 * v);
  const double k = uv / (std::sqrt(w * w + uv) + w);
  d = k * rho / (k + e2);
  h = (k + e2 - 1.0) * std::sqrt(d * d + z * z) / k;
  return true;
}

// The angle of the direction (den, num) measured from a nearby reference
// direction, i.e. atan2(num, den) for den > 0: a short series (error below
// 1e-25 of the angle) when the angle is under 1e-3, the library's atan2
// otherwise.  The Helmert loop measures the new longitude and latitude
// from the old ones this way, which keeps two atan2 calls out of it.
inline double angle_from_reference(double num, double den) {
  if (den > 0.0 && std::fabs(num) < 1e-3 * den) {
    const double t = num / den, t2 = t * t;
    return t * (1.0 - t2 * (1.0 / 3.0 - t2 * (1.0 / 5.0 - t2 * (1.0 / 7.0))));
  }
  return std::atan2(num, den);
}

// Newton's method for the latitude of a point (rho from the axis, z from
// the equatorial plane) on a spheroid, started from a latitude lat0 known to
// be close, with its sine and cosine.  The foot of the normal through the
// point satisfies
//   f(φ) = ρ sinφ - z cosφ - a e² sinφ cosφ / W = 0,  W = sqrt(1 - e² sin²φ),
//   f'(φ) = ρ cosφ + z sinφ - a e² ((cos²φ - sin²φ) W² + e² sin²φ cos²φ) / W³.
// Near the surface f''/f' is of order e², so a start 1e-3 away is good to
// 1e-8 after one step and to the last bit after the second; the sine and
// cosine of each new estimate come from those of the start by the angle-sum
// rule with short series for the small correction, so no trigonometric
// function is called.  Then h = ρ cosφ + z sinφ - a W.  False when the
// start is too far or the point too near the centre for this to hold; the
// caller then uses Vermeille's form.
inline bool latitude_near(double a, double e2, double rho, double z, double lat0,
                          double sin0, double cos0, double &lat, double &h) {
  double s = sin0, c = cos0, total = 0.0;
  for (int step = 0; step < 2; ++step) {
    const double w2 = 1.0 - e2 * s * s, w = std::sqrt(w2);
    const double f = rho * s - z * c - a * e2 * s * c / w;
    const double df = rho * c + z * s - a * e2 * ((c * c - s * s) * w2 + e2 * s * s * c * c) / (w2 * w);
    if (!(df > 0.5 * a)) return false;
    const double delta = -f / df;
    if (!(std::fabs(delta) < 1e-3)) return false;
    // sin and cos of delta to 1e-19 for |delta| < 1e-3.
    const double d2 = delta * delta;
    const double sd = delta * (1.0 - d2 * (1.0 / 6.0 - d2 * (1.0 / 120.0)));
    const double cd = 1.0 - d2 * (0.5 - d2 * (1.0 / 24.0 - d2 * (1.0 / 720.0)));
    const double s_new = s * cd + c * sd;
    c = c * cd - s * sd;
    s = s_new;
    total += delta;
  }
  lat = lat0 + total;
  h = rho * c + z * s - a * std::sqrt(1.0 - e2 * s * s);
  return true;
}

}  // namespace

void geocentric_to_geodetic(double a, double e2, const double xyz[3], double &lon,
                            double &lat, double &h) {
  const double x = xyz[0], y = xyz[1], z = xyz[2];
  const double rho = std::sqrt(x * x + y * y);
  lon = std::atan2(y, x);
  double d;
  if (!vermeille(a, e2, rho, z, d, h)) {
    const double xa = rho / a;
    equatorial_inside_evolute(a, e2, xa * xa, z, lat, h);
    return;
  }
  lat = 2.0 * std::atan2(z, d + std::sqrt(d * d + z * z));
}

bool spheroid_ok(const double *sph) {
  return sph != nullptr && sph[0] > 0.0 && std::isfinite(sph[0]) && sph[1] >= 0.0 && sph[1] < 1.0;
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
  if (coord == nullptr || n < 0 || !spheroid_ok(sph_in) || !spheroid_ok(sph_out)) return -1;
  const double a1 = sph_in[0], e21 = sph_in[1];
  const double a2 = sph_out[0], e22 = sph_out[1];
  const double *m = f.m;
  int converted = 0;
  for (int i = 0; i < n; ++i) {
    double *c = coord + 2 * i;
    const double lon = c[0], lat = c[1];
    const double h = z != nullptr ? z[i] : 0.0;
    if (!(std::isfinite(lon) && std::isfinite(lat) && std::isfinite(h))) continue;
    // Geodetic to geocentric on the source spheroid, keeping the sines and
    // cosines to measure the result from.
    const double sin_lat = std::sin(lat), cos_lat = std::cos(lat);
    const double sin_lon = std::sin(lon), cos_lon = std::cos(lon);
    const double nu = a1 / std::sqrt(1.0 - e21 * sin_lat * sin_lat);
    const double r = (nu + h) * cos_lat;
    const double x = r * cos_lon, y = r * sin_lon, zz = (nu * (1.0 - e21) + h) * sin_lat;
    const double out[3] = {f.t[0] + m[0] * x + m[1] * y + m[2] * zz,
                           f.t[1] + m[3] * x + m[4] * y + m[5] * zz,
                           f.t[2] + m[6] * x + m[7] * y + m[8] * zz};
    // Back to geodetic on the target spheroid.  The new latitude is found
    // by Newton's method from the old one, which is within a datum shift of
    // it; far from it (or near the centre) by Vermeille's closed form.
    const double rho = std::sqrt(out[0] * out[0] + out[1] * out[1]);
    double lat2, h2;
    if (!latitude_near(a2, e22, rho, out[2], lat, sin_lat, cos_lat, lat2, h2)) {
      double d;
      if (vermeille(a2, e22, rho, out[2], d, h2)) {
        lat2 = lat + angle_from_reference(out[2] * cos_lat - d * sin_lat,
                                          d * cos_lat + out[2] * sin_lat);
      } else {
        const double xa = rho / a2;
        equatorial_inside_evolute(a2, e22, xa * xa, out[2], lat2, h2);
      }
    }
    const double lon2 = lon + angle_from_reference(out[1] * cos_lon - out[0] * sin_lon,
                                                   out[0] * cos_lon + out[1] * sin_lon);
    c[0] = wrap_pi(lon2);
    c[1] = lat2;
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
