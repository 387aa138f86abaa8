// New Zealand Map Grid (IOGP guidance note 7-2, method 9811; Reilly, Lands
// and Survey technical circular 1973/32): a conformal projection of the
// International 1924 ellipsoid given by complex polynomials with published
// coefficients,
//   Δψ = Σ A_k Δφ^k  (Δφ = φ − φ0 in units of 10⁵ arc-seconds),
//   ζ = Δψ + i Δλ,  z = Σ B_k ζ^k,  y = a Re z,  x = a Im z;
// the inverse starts from ζ = Σ C_k z^k and Δφ = Σ D_k Δψ^k and refines
// both by Newton's method on the forward polynomials.  No constants function:
// everything is computed per call.
// Parameters: slot 2 λ0, slot 6 φ0 (173°E and 41°S for the grid itself),
// slots 12-14 the orientation.
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

#include <complex>

namespace ko::proj {
namespace {

using Complex = std::complex<double>;

constexpr double kA[10] = {0.6399175073, -0.1358797613, 0.063294409, -0.02526853, 0.0117879,
                           -0.0055161,   0.0026906,     -0.001333,   0.00067,     -0.00034};
const Complex kB[6] = {{0.7557853228, 0.0},   {0.249204646, 0.003371507},
                       {-0.001541739, 0.041058560}, {-0.10162907, 0.01727609},
                       {-0.26623489, -0.36249218},  {-0.6870983, -1.1651967}};
const Complex kC[6] = {{1.3231270439, 0.0},  {-0.577245789, -0.007809598},
                       {0.508307513, -0.112208952}, {-0.15094762, 0.18200602},
                       {1.01418179, 1.64497696},    {1.9660549, 2.5127645}};
constexpr double kD[9] = {1.5627014243, 0.5185406398, -0.03333098, -0.1052906, -0.0368594,
                          0.007317,     0.01220,      0.00394,     -0.0013};

// Radians to units of 10⁵ arc-seconds.
constexpr double kUnit = 180.0 / kPi * 3600.0 * 1e-5;

struct NzmgConstants {
  double a, lambda0, phi0;
  PlaneOrientation plane;
};

bool compute(const double *sph, const double *parms, NzmgConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) || !finite_slots(parms, {slot::kCentralMeridian, slot::kLatOrigin}))
    return false;
  k.a = g.a;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.phi0 = parms[slot::kLatOrigin];
  return plane_orientation_from_parms(parms, k.plane);
}

// Σ c_k t^k, k from 1, by Horner's rule.
template <class T, class C, std::size_t N>
T polynomial(const C (&c)[N], T t) {
  T y = T(c[N - 1]);
  for (std::size_t k = N - 1; k > 0; --k) y = y * t + c[k - 1];
  return y * t;
}

int forward_points(const NzmgConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    const double dpsi = polynomial(kA, (phi - k.phi0) * kUnit);
    const Complex z = polynomial(kB, Complex(dpsi, ko_delta(xy[i] - k.lambda0)));
    double x = k.a * z.imag(), y = k.a * z.real();
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

int inverse_points(const NzmgConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    const Complex z(y / k.a, x / k.a);
    Complex zeta = polynomial(kC, z);
    for (int it = 0; it < 4; ++it) {
      // ζ ← ζ − (f(ζ) − z) / f′(ζ), f = Σ B_k ζ^k.
      Complex f = 0.0, df = 0.0;
      for (int j = 5; j >= 0; --j) {
        df = df * zeta + static_cast<double>(j + 1) * kB[j];
        f = f * zeta + kB[j];
      }
      f *= zeta;
      zeta -= (f - z) / df;
    }
    // Δφ from Δψ: the published inverse series, then Newton on Σ A_k Δφ^k
    // so that the inverse undoes the forward exactly.
    double dphi = polynomial(kD, zeta.real());
    for (int it = 0; it < 2; ++it) {
      double f = 0.0, df = 0.0;
      for (int j = 9; j >= 0; --j) {
        df = df * dphi + static_cast<double>(j + 1) * kA[j];
        f = f * dphi + kA[j];
      }
      dphi -= (f * dphi - zeta.real()) / df;
    }
    const double phi = k.phi0 + dphi / kUnit;
    count += store_point(&xy[i], ko_delta(k.lambda0 + zeta.imag()), phi, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

}  // namespace

int nzmg_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *,
                 const double *) {
  return with_direct_constants<NzmgConstants>(compute, sph, parms, n, coords, forward_points);
}
int nzmg_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *,
                 const double *) {
  return with_direct_constants<NzmgConstants>(compute, sph, parms, n, coords, inverse_points);
}

}  // namespace ko::proj

// The projection vector.
extern "C" {
constinit const ko_projlist_entry ko_prj_new_zealand_map_grid_vector = {
    43040, "New_Zealand_Map_Grid", ko::proj::nzmg_forward, ko::proj::nzmg_inverse, nullptr,
    ko::validity<43040>, nullptr, nullptr};
}  // extern "C"
