// Two-point equidistant (H. C. Maurer 1919, C. F. Close 1921; Snyder and
// Voxland 1989, "An Album of Map Projections", USGS PP 1453), on the sphere
// of radius a: every point P lies at its true great-circle distances z1, z2
// from the two points A and B, which lie on the x axis at ∓d/2 (d their
// distance), P on the left of the way from A to B above it:
//   x = a (z1² − z2²) / (2d),  y = ± a sqrt(e_d e_1 e_2 (z1 + z2 + d)) / (2d),
// the height of the plane triangle with sides z1, z2, d by Heron's formula
// with e_d = z1 + z2 − d, e_1 = z2 + d − z1, e_2 = z1 + d − z2.  Near the
// great circle through A and B one of these is a small difference of large
// numbers; on the sphere it is then taken from a neighbouring angle of the
// triangle A B P, which keeps y to the last digits.
// The inverse reads z1, z2 from the plane, the same three differences from
// the plane triangle without cancellation, the angle at A by the half-angle
// formula tan²(α/2) = sin(e_1/2) sin(e_d/2) / (sin s sin(e_2/2)), and walks
// z1 from A.  The map's outline is the ellipse z1 + z2 + d = 2π about A and
// B; points beyond it are refused.
// Parameters: slots 3 and 8 φ1, λ1 (the first point), slots 4 and 9 φ2, λ2.
#include "projections/family.h"
#include "projections/projlist.h"

#include <algorithm>

namespace ko::proj {
namespace {

struct Vec {
  double x, y, z;
};
inline Vec operator+(Vec u, Vec v) { return {u.x + v.x, u.y + v.y, u.z + v.z}; }
inline Vec operator*(double s, Vec v) { return {s * v.x, s * v.y, s * v.z}; }
inline double dot(Vec u, Vec v) { return u.x * v.x + u.y * v.y + u.z * v.z; }
inline Vec cross(Vec u, Vec v) {
  return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}
inline double norm(Vec v) { return std::sqrt(dot(v, v)); }
inline Vec unit_vector(double lon, double lat) {
  return {std::cos(lat) * std::cos(lon), std::cos(lat) * std::sin(lon), std::sin(lat)};
}
// Great-circle angle between two unit vectors, exact for small and large.
inline double angle(Vec u, Vec v) { return std::atan2(norm(cross(u, v)), dot(u, v)); }

struct TwoPointConstants {
  double a;
  double d;  // distance of the two points, radians
  Vec A, B;
  Vec normal;   // A × B: the left side of the way from A to B
  Vec toward;   // unit tangent at A towards B
  Vec left;     // A × toward: unit tangent at A to the left
};

bool compute(const double *sph, const double *parms, TwoPointConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kStdParallel1, slot::kLon1stPoint, slot::kStdParallel2,
                            slot::kLon2ndPoint}))
    return false;
  const double phi1 = parms[slot::kStdParallel1], phi2 = parms[slot::kStdParallel2];
  if (!(std::fabs(phi1) <= kHalfPi) || !(std::fabs(phi2) <= kHalfPi)) return false;
  k.a = g.a;
  k.A = unit_vector(parms[slot::kLon1stPoint], phi1);
  k.B = unit_vector(parms[slot::kLon2ndPoint], phi2);
  k.d = angle(k.A, k.B);
  // Coincident or antipodal points fix no map.
  if (!(k.d > 1e-10) || !(k.d < kPi - 1e-10)) return false;
  k.normal = cross(k.A, k.B);
  const Vec t = k.B + (-dot(k.A, k.B)) * k.A;
  k.toward = (1.0 / norm(t)) * t;
  k.left = cross(k.A, k.toward);
  return true;
}

// sin²(θ/2) of the angle θ at the vertex v between the great circles to w1
// and w2: |t1 − t2|² / 4 with the unit tangents t1, t2.  0 when a tangent
// vanishes (then a side through v has length 0).
double sin2_half_angle(Vec v, Vec w1, Vec w2) {
  const Vec t1 = w1 + (-dot(v, w1)) * v, t2 = w2 + (-dot(v, w2)) * v;
  const double n1 = norm(t1), n2 = norm(t2);
  if (!(n1 > 0.0) || !(n2 > 0.0)) return 0.0;
  const Vec diff = (1.0 / n1) * t1 + (-1.0 / n2) * t2;
  return 0.25 * dot(diff, diff);
}

// A side's excess 2 (s − side) of a spherical triangle, s the half sum of
// the sides: the plain difference where it is not small, else from the
// angle θ between this side and another (Snyder 1987, the half-angle
// formulas of spherical trigonometry),
//   sin(s − side) = sin²(θ/2) sin side sin other / sin(s − other),
// taken with whichever of the two neighbouring angles has the larger
// denominator.
struct Excess {
  double plain, sin_side;
  double sin2_u, sin_u, den_u;  // angle, other side and sin(s − other) on one side
  double sin2_v, sin_v, den_v;  // and on the other
};
double side_excess(const Excess &e) {
  if (e.plain >= 0.5) return e.plain;
  const bool use_u = e.den_u >= e.den_v;
  const double num = (use_u ? e.sin2_u * e.sin_u : e.sin2_v * e.sin_v) * e.sin_side;
  const double den = use_u ? e.den_u : e.den_v;
  if (!(den > 0.0)) return std::fmax(0.0, e.plain);
  return 2.0 * std::asin(std::fmin(1.0, num / den));
}

int forward_points(const TwoPointConstants &k, std::span<double> xy) {
  int count = 0;
  const double sin_d = std::sin(k.d);
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double lon = xy[i], lat = xy[i + 1];
    const Vec P = unit_vector(lon, lat);
    const double z1 = angle(k.A, P), z2 = angle(k.B, P);
    const double s = 0.5 * (z1 + z2 + k.d);
    const double sz1 = std::sin(z1), sz2 = std::sin(z2);
    // The plain differences, and the angles at A, B and P.
    const double pd = z1 + z2 - k.d, p1 = z2 + k.d - z1, p2 = z1 + k.d - z2;
    const double hd = std::sin(0.5 * std::fmax(0.0, pd)), h1 = std::sin(0.5 * std::fmax(0.0, p1)),
                 h2 = std::sin(0.5 * std::fmax(0.0, p2));
    const double sa = sin2_half_angle(k.A, k.B, P), sb = sin2_half_angle(k.B, k.A, P),
                 sg = sin2_half_angle(P, k.A, k.B);
    // d lies between the angles at A (with z1) and B (with z2), z1 between
    // A (with d) and P (with z2), z2 between B (with d) and P (with z1).
    const double e_d = side_excess({pd, sin_d, sa, sz1, h1, sb, sz2, h2});
    const double e_1 = side_excess({p1, sz1, sa, sin_d, hd, sg, sz2, h2});
    const double e_2 = side_excess({p2, sz2, sb, sin_d, hd, sg, sz1, h1});
    const double side = dot(k.normal, P) < 0.0 ? -1.0 : 1.0;
    const double x = k.a * (z1 - z2) * (z1 + z2) / (2.0 * k.d);
    const double y = side * k.a * std::sqrt(e_d * e_1 * e_2 * 2.0 * s) / (2.0 * k.d);
    count += store_point(&xy[i], x, y, std::fabs(lat) <= kHalfPi && std::isfinite(lon));
  }
  return count;
}

// z − u for a side z = hypot(u, y) of the plane triangle, without
// cancellation when u > 0.
inline double hyp_minus(double z, double u, double y) { return u > 0.0 ? y * y / (z + u) : z - u; }

int inverse_points(const TwoPointConstants &k, std::span<double> xy) {
  int count = 0;
  const double h = 0.5 * k.d;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double X = xy[i] / k.a, Y = xy[i + 1] / k.a;
    const double z1 = std::hypot(X + h, Y), z2 = std::hypot(X - h, Y);
    const double s = 0.5 * (z1 + z2 + k.d);
    const bool ok = std::isfinite(s) && z1 <= kPi * (1.0 + 1e-15) && z2 <= kPi * (1.0 + 1e-15) &&
                    s <= kPi * (1.0 + 1e-15);
    // The three differences of the plane triangle, each a sum or
    // difference of terms that do not cancel.
    const double p = hyp_minus(z1, X + h, Y);   // z1 − (X + d/2)
    const double m = hyp_minus(z1, -X - h, Y);  // z1 + (X + d/2)
    const double q = hyp_minus(z2, X - h, Y);   // z2 − (X − d/2)
    const double r = hyp_minus(z2, h - X, Y);   // z2 + (X − d/2)
    const double e_d = p + r, e_1 = std::fmax(0.0, q - p), e_2 = std::fmax(0.0, m - r);
    // The angle at A between the ways to B and to P (half-angle formula).
    const double sin_s = std::sin(std::fmin(s, kPi));
    const double alpha = 2.0 * std::atan2(std::sqrt(std::sin(0.5 * e_1) * std::sin(0.5 * e_d)),
                                          std::sqrt(sin_s * std::sin(0.5 * e_2)));
    const double zc = std::fmin(z1, kPi);
    const double side = Y < 0.0 ? -1.0 : 1.0;
    const Vec dir = std::cos(alpha) * k.toward + (side * std::sin(alpha)) * k.left;
    const Vec P = std::cos(zc) * k.A + std::sin(zc) * dir;
    const double lat = std::atan2(P.z, std::hypot(P.x, P.y));
    const double lon = std::atan2(P.y, P.x);
    count += store_point(&xy[i], lon, lat, ok);
  }
  return count;
}

template <bool Forward>
int convert(const double *sph, const double *parms, int n, double *coords, const int32_t *,
            const double *) {
  return with_direct_constants<TwoPointConstants>(
      compute, sph, parms, n, coords, [](const TwoPointConstants &k, std::span<double> xy) {
        return Forward ? forward_points(k, xy) : inverse_points(k, xy);
      });
}

}  // namespace
}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_two_point_equidistant_vector = {
    43031, "Two_Point_Equidistant", ko::proj::convert<true>, ko::proj::convert<false>, nullptr,
    ko::validity<43031>, nullptr, nullptr};
}  // extern "C"
