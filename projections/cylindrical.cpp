// Normal-aspect cylindrical projections other than Mercator:
//  - Equidistant_Cylindrical (43002): the spherical formulas on the sphere
//    of radius a with geodetic latitudes (IOGP guidance note 7-2, method
//    1029 with R = a):  x = a cos φ1 Δλ,  y = a (φ − φ0).  No constants
//    function: it is computed per call.
//  - Equidistant_Cylindrical_Ellipsoidal (43061): method 1028,
//    x = ν1 cos φ1 Δλ,  y = M(φ) − M(φ0), M the meridian distance.
//  - Cylindrical_Equal_Area (43034): Lambert's cylindrical equal-area on the
//    ellipsoid (method 9835; Snyder 1987, 10-15, 10-16):
//    k0 = m(φ1),  x = a k0 Δλ,  y = a q / (2 k0).
// Parameters: slot 2 λ0, slot 3 φ1 (standard parallel), slot 6 φ0 (the
// equidistant forms), slots 12-14 the orientation.  Longitudes beyond the
// map's width come back wrapped.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"

namespace ko::proj {
namespace {

enum class Kind : int { kEquidistantSphere, kEquidistantEllipsoid, kEqualArea };

struct CylConstants {
  int kind;
  double a, e, e2;
  double lambda0;
  double xscale;  // x per radian of longitude
  double y0;      // northing of the latitude of origin (equidistant forms)
  double k0;      // equal-area: m(φ1)
  double qp, m_pole;
  PlaneOrientation plane;
  MeridianArc arc;
  double authalic[KO_AUX_NCOEF];
};

bool compute(const double *sph, const double *parms, Kind kind, CylConstants &k) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1, slot::kLatOrigin}))
    return false;
  const double phi1 = parms[slot::kStdParallel1], phi0 = parms[slot::kLatOrigin];
  if (!(std::fabs(phi1) < kHalfPi) || !(std::fabs(phi0) <= kHalfPi)) return false;
  k.kind = static_cast<int>(kind);
  k.a = g.a;
  k.e = g.e;
  k.e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  switch (kind) {
    case Kind::kEquidistantSphere:
      k.xscale = g.a * std::cos(phi1);
      k.y0 = g.a * phi0;
      break;
    case Kind::kEquidistantEllipsoid:
      k.arc.init(g.a, g.e2);
      k.xscale = g.a * parallel_radius_ratio(g.e2, phi1);
      k.y0 = k.arc.distance(phi0);
      k.m_pole = k.arc.distance(kHalfPi);
      break;
    case Kind::kEqualArea:
      k.k0 = parallel_radius_ratio(g.e2, phi1);
      k.xscale = g.a * k.k0;
      k.qp = authalic_q(g.e, g.e2, 1.0);
      ko_beta_authalic_constants(g.e2, k.authalic);
      break;
  }
  return plane_orientation_from_parms(parms, k.plane);
}

bool compute_eqc(const double *sph, const double *parms, CylConstants &k) {
  return compute(sph, parms, Kind::kEquidistantSphere, k);
}

int store(ko_constants *c, const double *sph, const double *parms, Kind kind) {
  CylConstants k{};
  if (!compute(sph, parms, kind, k)) return -1;
  return store_constants(c, k, kTagEquidistantCylindrical);
}

// ---------------------------------------------------------------------------
// Point kernels, one per kind.

template <Kind K>
int forward_points(const CylConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    const double phi = xy[i + 1];
    double x = k.xscale * ko_delta(xy[i] - k.lambda0);
    double y = NAN;
    if constexpr (K == Kind::kEquidistantSphere) y = k.a * phi - k.y0;
    if constexpr (K == Kind::kEquidistantEllipsoid) y = k.arc.distance(phi) - k.y0;
    if constexpr (K == Kind::kEqualArea) y = k.a * authalic_q(k.e, k.e2, std::sin(phi)) / (2.0 * k.k0);
    k.plane.to_grid(x, y);
    count += store_point(&xy[i], x, y, std::fabs(phi) <= kHalfPi);
  }
  return count;
}

template <Kind K>
int inverse_points(const CylConstants &k, std::span<double> xy) {
  int count = 0;
  for (std::size_t i = 0; i < xy.size(); i += 2) {
    double x = xy[i], y = xy[i + 1];
    k.plane.from_grid(x, y);
    double phi = NAN;
    bool ok = true;
    if constexpr (K == Kind::kEquidistantSphere) {
      phi = (y + k.y0) / k.a;
      ok = std::fabs(phi) <= kHalfPi * (1.0 + 1e-15);
    }
    if constexpr (K == Kind::kEquidistantEllipsoid) {
      const double m = y + k.y0;
      ok = std::fabs(m) <= k.m_pole * (1.0 + 1e-15);
      phi = k.arc.latitude(std::fmax(-k.m_pole, std::fmin(k.m_pole, m)));
    }
    if constexpr (K == Kind::kEqualArea) {
      const double sb = 2.0 * k.k0 * y / (k.a * k.qp);
      ok = std::fabs(sb) <= 1.0 + 1e-15;
      phi = ko_beta_to_phi_wconst(k.authalic, k.e2, std::asin(std::fmax(-1.0, std::fmin(1.0, sb))));
    }
    phi = std::fmax(-kHalfPi, std::fmin(kHalfPi, phi));
    count += store_point(&xy[i], ko_delta(k.lambda0 + x / k.xscale), phi, ok);
  }
  return count;
}

int dispatch(const CylConstants &k, bool forward, std::span<double> xy) {
  switch (static_cast<Kind>(k.kind)) {
    case Kind::kEquidistantSphere:
      return forward ? forward_points<Kind::kEquidistantSphere>(k, xy)
                     : inverse_points<Kind::kEquidistantSphere>(k, xy);
    case Kind::kEquidistantEllipsoid:
      return forward ? forward_points<Kind::kEquidistantEllipsoid>(k, xy)
                     : inverse_points<Kind::kEquidistantEllipsoid>(k, xy);
    case Kind::kEqualArea:
      return forward ? forward_points<Kind::kEqualArea>(k, xy)
                     : inverse_points<Kind::kEqualArea>(k, xy);
  }
  return 0;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<CylConstants>(
      cf, kTagEquidistantCylindrical, sph, parms, n, coords, ivals, dvals,
      [forward](const CylConstants &k, std::span<double> xy) { return dispatch(k, forward, xy); });
}

}  // namespace

int eqc_ellipsoidal_constants(ko_constants *c, const double *sph, const double *parms) {
  return store(c, sph, parms, Kind::kEquidistantEllipsoid);
}
int cea_constants(ko_constants *c, const double *sph, const double *parms) {
  return store(c, sph, parms, Kind::kEqualArea);
}
KO_PROJ_DEFINE_POINT_SLOTS(eqc_ellipsoidal, run)
KO_PROJ_DEFINE_POINT_SLOTS(cea, run)

// Equidistant_Cylindrical has no constants function: its few constants are
// computed on each call.
int eqc_forward(const double *sph, const double *parms, int n, double *coords, const int32_t *,
                const double *) {
  return with_direct_constants<CylConstants>(
      compute_eqc, sph, parms, n, coords,
      [](const CylConstants &k, std::span<double> xy) { return dispatch(k, true, xy); });
}
int eqc_inverse(const double *sph, const double *parms, int n, double *coords, const int32_t *,
                const double *) {
  return with_direct_constants<CylConstants>(
      compute_eqc, sph, parms, n, coords,
      [](const CylConstants &k, std::span<double> xy) { return dispatch(k, false, xy); });
}

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_equidistant_cylindrical_vector = {
    43002, "Equidistant_Cylindrical", ko::proj::eqc_forward, ko::proj::eqc_inverse, nullptr,
    ko::validity<43002>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_equidistant_cylindrical_ellipsoidal_vector = {
    43061, "Equidistant_Cylindrical_Ellipsoidal", ko::proj::eqc_ellipsoidal_forward,
    ko::proj::eqc_ellipsoidal_inverse, ko::proj::eqc_ellipsoidal_constants, ko::validity<43061>,
    nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_cylindrical_eqarea_vector = {
    43034, "Cylindrical_Equal_Area", ko::proj::cea_forward, ko::proj::cea_inverse,
    ko::proj::cea_constants, ko::validity<43034>, nullptr, nullptr};
}  // extern "C"

// Equidistant_Cylindrical on an auxiliary sphere; for type 3 the standard
// parallel is taken to its authalic latitude too.
KO_AUXS_VECTOR(equidistant_cylindrical_auxs, 43102, "Equidistant_Cylindrical_Auxiliary_Sphere",
               ko::proj::eqc_forward, ko::proj::eqc_inverse, nullptr,
               ko::proj::slot::kCentralMeridian, ko::proj::slot::kStdParallel1)
