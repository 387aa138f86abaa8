// Mercator on the ellipsoid and the sphere (IOGP guidance note 7-2 methods
// 9804 variant A, 9805 variant B, 1044 variant C; Snyder 1987, chapter 7) and
// on an auxiliary sphere (method 1024, Popular Visualisation Pseudo Mercator,
// and its relatives).
//
//   x = a k0 (λ − λ0),   y = a k0 ψ(φ) − y0,
// ψ the isometric latitude, y0 the northing of the false origin (variant C).
//
// Parameters: slot 2 λ0; slot 5 the scale factor; slot 3 the standard
// parallel φ1 (variants B and C, auxiliary sphere), whose scale m(φ1) then
// multiplies the scale factor; slot 6 the latitude of the false origin
// (variant C only); slots 12-14 the plane orientation (not on the auxiliary
// sphere, whose slot 12 is Auxiliary_Sphere_Type).
//
// Auxiliary_Sphere_Type: 0 a sphere of radius a with geodetic latitudes used
// as spherical ones (EPSG:3857); 1 the radius b; 2 the authalic radius; 3 the
// authalic radius with latitudes taken to the authalic latitude and back.
#include "projections/auxiliary_sphere.h"
#include "projections/families.h"
#include "projections/family.h"
#include "projections/projlist.h"
#include "projections/simd.h"

namespace ko::proj {
namespace {

struct MercatorConstants {
  double e2, e;  // of the surface mapped; 0 on a sphere
  double lambda0;
  double ak0;  // a k0
  double y0;   // northing of the false origin
  double geodetic_e2;
  bool authalic;  // auxiliary sphere type 3
  PlaneOrientation plane;
  double conformal[KO_AUX_NCOEF];
  double authalic_coef[KO_AUX_NCOEF];
};

enum class Variant { kA, kB, kC };

int build(ko_constants *c, const double *sph, const double *parms, Variant v) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1, slot::kScaleFactor,
                            slot::kLatOrigin}))
    return -1;
  const double phi1 = parms[slot::kStdParallel1];
  const double phif = parms[slot::kLatOrigin];
  double k0 = parms[slot::kScaleFactor];
  if (v != Variant::kA) {
    if (!(std::fabs(phi1) < kHalfPi)) return -1;
    k0 *= parallel_radius_ratio(g.e2, phi1);
  }
  if (!(k0 > 0.0) || (v == Variant::kC && !(std::fabs(phif) < kHalfPi))) return -1;
  MercatorConstants k{};
  k.e2 = g.e2;
  k.e = g.e;
  k.geodetic_e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.ak0 = g.a * k0;
  k.y0 = v == Variant::kC ? k.ak0 * isometric_latitude(g.e, phif) : 0.0;
  if (!plane_orientation_from_parms(parms, k.plane)) return -1;
  ko_chi_conformal_constants(g.e2, k.conformal);
  return store_constants(c, k, kTagMercator);
}

int build_auxiliary_sphere(ko_constants *c, const double *sph, const double *parms) {
  Ellipsoid g;
  if (!read_ellipsoid(sph, g) ||
      !finite_slots(parms, {slot::kCentralMeridian, slot::kStdParallel1, slot::kScaleFactor,
                            slot::kAuxSphereType}))
    return -1;
  const double type = parms[slot::kAuxSphereType];
  MercatorConstants k{};
  double radius = 0.0;
  double phi1 = parms[slot::kStdParallel1];
  if (!(std::fabs(phi1) < kHalfPi) || !auxs::sphere_radius(type, g, radius)) return -1;
  if (type == 3.0) {
    k.authalic = true;
    ko_beta_authalic_constants(g.e2, k.authalic_coef);
    phi1 = ko_phi_to_beta_wconst(k.authalic_coef, g.e2, phi1);
  }
  const double k0 = parms[slot::kScaleFactor] * std::cos(phi1);
  if (!(k0 > 0.0)) return -1;
  k.e2 = 0.0;
  k.e = 0.0;
  k.geodetic_e2 = g.e2;
  k.lambda0 = parms[slot::kCentralMeridian];
  k.ak0 = radius * k0;
  ko_chi_conformal_constants(0.0, k.conformal);
  return store_constants(c, k, kTagMercator);
}

// ---------------------------------------------------------------------------
// Point kernels (mercator_kernels.h), four points at a time on SLEEF's AVX2
// functions where the machine has them.

#define KO_SIMD_KERNELS "projections/mercator_kernels.h"
#include "projections/simd_kernels.inc"
KO_SIMD_FOUR_WIDE(forward_avx2, MercatorConstants, Conformal, avx2::forward_block)
KO_SIMD_FOUR_WIDE(inverse_avx2, MercatorConstants, Conformal, avx2::inverse_block)

KO_PROJ_CONFORMAL_KERNELS(MercatorConstants,
                          forward_points, forward_block, forward_avx2,
                          inverse_points, inverse_block, inverse_avx2)

// Auxiliary sphere of type 3: geodetic latitudes to authalic ones first.
int forward_authalic_points(const MercatorConstants &k, std::span<double> xy) {
  for (std::size_t i = 1; i < xy.size(); i += 2)
    if (std::fabs(xy[i]) <= kHalfPi) xy[i] = ko_phi_to_beta_wconst(k.authalic_coef, k.geodetic_e2, xy[i]);
  return forward_points(k, xy);
}

int inverse_authalic_points(const MercatorConstants &k, std::span<double> xy) {
  const int count = inverse_points(k, xy);
  for (std::size_t i = 1; i < xy.size(); i += 2)
    if (xy[i] != HUGE_VAL) xy[i] = ko_beta_to_phi_wconst(k.authalic_coef, k.geodetic_e2, xy[i]);
  return count;
}

int run(ko_proj_constfunc cf, bool forward, const double *sph, const double *parms, int n,
        double *coords, const int32_t *ivals, const double *dvals) {
  return with_constants<MercatorConstants>(
      cf, kTagMercator, sph, parms, n, coords, ivals, dvals,
      [forward](const MercatorConstants &k, std::span<double> xy) {
        if (k.authalic) return forward ? forward_authalic_points(k, xy) : inverse_authalic_points(k, xy);
        return forward ? forward_points(k, xy) : inverse_points(k, xy);
      });
}

}  // namespace

int mercator_constants(ko_constants *c, const double *sph, const double *parms) {
  return build(c, sph, parms, Variant::kB);
}
int mercator_a_constants(ko_constants *c, const double *sph, const double *parms) {
  return build(c, sph, parms, Variant::kA);
}
int mercator_c_constants(ko_constants *c, const double *sph, const double *parms) {
  return build(c, sph, parms, Variant::kC);
}
int mercator_auxs_constants(ko_constants *c, const double *sph, const double *parms) {
  return build_auxiliary_sphere(c, sph, parms);
}

KO_PROJ_DEFINE_POINT_SLOTS(mercator, run)
KO_PROJ_DEFINE_POINT_SLOTS(mercator_a, run)
KO_PROJ_DEFINE_POINT_SLOTS(mercator_c, run)
KO_PROJ_DEFINE_POINT_SLOTS(mercator_auxs, run)

// Two auxiliary-sphere Mercators are the same map when radius, scale,
// central meridian, latitude treatment and false origin agree.
int mercator_auxs_compare(const double *sph, const double *parms1, const double *parms2) {
  return compare_maps<MercatorConstants>(
      mercator_auxs_constants, kTagMercator, sph, parms1, parms2,
      [](const MercatorConstants &a, const MercatorConstants &b) {
        return rel_eq(a.ak0, b.ak0) && angle_eq(a.lambda0, b.lambda0) && a.authalic == b.authalic;
      });
}

}  // namespace ko::proj

// The projection vectors.
extern "C" {
constinit const ko_projlist_entry ko_prj_mercator_vector = {
    43004, "Mercator", ko::proj::mercator_forward, ko::proj::mercator_inverse, ko::proj::mercator_constants,
    ko::validity<43004>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_mercator_variant_a_vector = {
    43069, "Mercator_Variant_A", ko::proj::mercator_a_forward, ko::proj::mercator_a_inverse, ko::proj::mercator_a_constants,
    ko::validity<43069>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_mercator_variant_c_vector = {
    43070, "Mercator_Variant_C", ko::proj::mercator_c_forward, ko::proj::mercator_c_inverse, ko::proj::mercator_c_constants,
    ko::validity<43070>, nullptr, nullptr};
constinit const ko_projlist_entry ko_prj_mercator_auxs_vector = {
    43104, "Mercator_Auxiliary_Sphere", ko::proj::mercator_auxs_forward, ko::proj::mercator_auxs_inverse, ko::proj::mercator_auxs_constants,
    ko::validity<43104>, ko::proj::mercator_auxs_compare, nullptr};
}  // extern "C"
