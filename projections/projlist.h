// Shared pieces of the projection vectors: the table-driven check of a
// parameter set, the functions of projections whose mathematics is not
// written yet, and the compare and parameter functions of the conics,
// Krovak and Mercator_Auxiliary_Sphere.  Internal.
//
// A projection's validity function is ko::validity<code>: it looks its
// rule list up in kParmRulesByCode at compile time and checks each listed
// slot in order.  A family file that defines its own vector can use it as
// its validfunc.
#pragma once

#include "ko.h"

#include <cstdint>
#include <span>

namespace ko {

// One required parameter: the slot it fills, its parameter-list code (whose
// name the report gives) and the severity of its absence: KO_SEV_WARNING
// when the projection has a sensible default, KO_SEV_ERROR when not.
struct ParmRule {
  int slot;
  int32_t code;
  int severity;
};

// Reports error 347 (category 8, source `name`, message the parameter's
// list name) for every rule whose slot holds no live parameter.  Returns 1
// unless a missing parameter had severity KO_SEV_ERROR.
int check_parameters(std::span<const ParmRule> rules, ko_parameter *const *parms,
                     const char *name, ko_err *err);

// The parameters each projection needs.
inline constexpr ParmRule kFalseEasting{0, 100001, KO_SEV_WARNING};
inline constexpr ParmRule kFalseNorthing{1, 100002, KO_SEV_WARNING};
inline constexpr ParmRule kCentralMeridian{2, 100010, KO_SEV_ERROR};
inline constexpr ParmRule kScaleFactor{5, 100003, KO_SEV_WARNING};
inline constexpr ParmRule kLatitudeOfOrigin{6, 100021, KO_SEV_WARNING};
inline constexpr ParmRule kLatitudeOfOriginRequired{6, 100021, KO_SEV_ERROR};
inline constexpr ParmRule kCentralParallel{6, 100020, KO_SEV_WARNING};
inline constexpr ParmRule kStandardParallel1Required{3, 100025, KO_SEV_ERROR};
inline constexpr ParmRule kStandardParallel1{3, 100025, KO_SEV_WARNING};
inline constexpr ParmRule kStandardParallel2Required{4, 100026, KO_SEV_ERROR};
inline constexpr ParmRule kStandardParallel2{4, 100026, KO_SEV_WARNING};
inline constexpr ParmRule kPseudoStandardParallel1{3, 100027, KO_SEV_WARNING};
inline constexpr ParmRule kAzimuthRequired{7, 100004, KO_SEV_ERROR};
inline constexpr ParmRule kAzimuth{7, 100004, KO_SEV_WARNING};
inline constexpr ParmRule kLatitudeOf1stPoint{3, 100023, KO_SEV_ERROR};
inline constexpr ParmRule kLatitudeOf2ndPoint{4, 100024, KO_SEV_ERROR};
inline constexpr ParmRule kLongitudeOf1stPoint{8, 100013, KO_SEV_ERROR};
inline constexpr ParmRule kLongitudeOf2ndPoint{9, 100014, KO_SEV_ERROR};
inline constexpr ParmRule kLongitudeOfCenter{10, 100012, KO_SEV_ERROR};
inline constexpr ParmRule kLatitudeOfCenter{11, 100022, KO_SEV_ERROR};
inline constexpr ParmRule kHeightRequired{14, 100005, KO_SEV_ERROR};
inline constexpr ParmRule kHeight{14, 100005, KO_SEV_WARNING};
inline constexpr ParmRule kAuxiliarySphereType{12, 100035, KO_SEV_WARNING};
inline constexpr ParmRule kOption{15, 100036, KO_SEV_WARNING};
inline constexpr ParmRule kXScale{12, 100037, KO_SEV_WARNING};
inline constexpr ParmRule kYScale{13, 100038, KO_SEV_WARNING};
inline constexpr ParmRule kXYPlaneRotation{14, 100039, KO_SEV_WARNING};
inline constexpr ParmRule kAspectRatio{5, 100070, KO_SEV_WARNING};
inline constexpr ParmRule kPerspectiveRatio{16, 100071, KO_SEV_WARNING};

inline constexpr ParmRule kWorldMap[] = {kFalseEasting, kFalseNorthing, kCentralMeridian};
inline constexpr ParmRule kWorldMapParallel[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1};
inline constexpr ParmRule kWorldMapOption[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kOption};
inline constexpr ParmRule kCylindricalScaled[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kLatitudeOfOrigin};
inline constexpr ParmRule kMercatorParallel[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1, kLatitudeOfOrigin};
inline constexpr ParmRule kAuxSphereWorld[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kAuxiliarySphereType};
inline constexpr ParmRule kAuxSphereParallel[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1, kAuxiliarySphereType};
inline constexpr ParmRule kConicTwoParallels[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required, kStandardParallel2Required, kLatitudeOfOrigin};
inline constexpr ParmRule kConicLambert[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required, kStandardParallel2, kScaleFactor, kLatitudeOfOrigin};
inline constexpr ParmRule kConicOneParallel[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kLatitudeOfOriginRequired};
inline constexpr ParmRule kConicEquidistant[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required, kStandardParallel2, kLatitudeOfOrigin};
inline constexpr ParmRule kConicNey[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required, kLatitudeOfOrigin};
inline constexpr ParmRule kBonne[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required};
inline constexpr ParmRule kLoximuthal[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kCentralParallel};
inline constexpr ParmRule kMeridianOrigin[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOrigin};
inline constexpr ParmRule kMeridianScaledOrigin[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kLatitudeOfOrigin};
inline constexpr ParmRule kAzimuthalOrigin[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOriginRequired};
inline constexpr ParmRule kAzimuthalScaledOrigin[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kLatitudeOfOriginRequired};
inline constexpr ParmRule kAzimuthalOriginAux[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOriginRequired, kAuxiliarySphereType};
inline constexpr ParmRule kAzimuthalScaledOriginAux[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kLatitudeOfOriginRequired, kAuxiliarySphereType};
inline constexpr ParmRule kAzimuthalCenter[] = {kFalseEasting, kFalseNorthing, kLongitudeOfCenter, kLatitudeOfCenter};
inline constexpr ParmRule kAzimuthalCenterAux[] = {kFalseEasting, kFalseNorthing, kLongitudeOfCenter, kLatitudeOfCenter, kAuxiliarySphereType};
inline constexpr ParmRule kPerspectiveCenter[] = {kFalseEasting, kFalseNorthing, kLongitudeOfCenter, kLatitudeOfCenter, kHeightRequired};
inline constexpr ParmRule kPolarParallel[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1Required};
inline constexpr ParmRule kPolarScaled[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kScaleFactor, kStandardParallel1Required};
inline constexpr ParmRule kTwoPoints[] = {kFalseEasting, kFalseNorthing, kLatitudeOf1stPoint, kLongitudeOf1stPoint, kLatitudeOf2ndPoint, kLongitudeOf2ndPoint};
inline constexpr ParmRule kHotineTwoPoint[] = {kFalseEasting, kFalseNorthing, kScaleFactor, kLatitudeOf1stPoint, kLatitudeOf2ndPoint, kLongitudeOf1stPoint, kLongitudeOf2ndPoint, kLatitudeOfCenter};
inline constexpr ParmRule kHotineAzimuth[] = {kFalseEasting, kFalseNorthing, kScaleFactor, kAzimuthRequired, kLongitudeOfCenter, kLatitudeOfCenter};
inline constexpr ParmRule kRectifiedSkew[] = {kFalseEasting, kFalseNorthing, kScaleFactor, kAzimuthRequired, kLongitudeOfCenter, kLatitudeOfCenter, kXYPlaneRotation};
inline constexpr ParmRule kKrovak[] = {kFalseEasting, kFalseNorthing, kPseudoStandardParallel1, kScaleFactor, kAzimuth, kLongitudeOfCenter, kLatitudeOfCenter, kXScale, kYScale, kXYPlaneRotation};
inline constexpr ParmRule kLocal[] = {kFalseEasting, kFalseNorthing, kScaleFactor, kAzimuth, kLongitudeOfCenter, kLatitudeOfCenter};
inline constexpr ParmRule kGeostationary[] = {kFalseEasting, kFalseNorthing, kLongitudeOfCenter, kHeightRequired, kOption};
inline constexpr ParmRule kPlanoCartesiano[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOriginRequired, kHeight};
inline constexpr ParmRule kNewZealand[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOriginRequired};
inline constexpr ParmRule kPeirce[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOrigin, kOption};
inline constexpr ParmRule kFaces[] = {kFalseEasting, kFalseNorthing, kOption};
inline constexpr ParmRule kBerghaus[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kLatitudeOfOrigin, kXYPlaneRotation};
inline constexpr ParmRule kAspectAdaptive[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kAspectRatio};
inline constexpr ParmRule kPerspectiveCylindrical[] = {kFalseEasting, kFalseNorthing, kCentralMeridian, kStandardParallel1, kPerspectiveRatio};
inline constexpr ParmRule kObliqueCenter[] = {kFalseEasting, kFalseNorthing, kLongitudeOfCenter, kLatitudeOfCenter, kAzimuth};

struct CodeRules {
  int32_t code;
  std::span<const ParmRule> rules;
};

// Every projection of the table but the Transverse Mercator family, whose
// files check their own parameters.
inline constexpr CodeRules kParmRulesByCode[] = {
    {43001, kWorldMap},  // Plate_Carree
    {43002, kWorldMapParallel},  // Equidistant_Cylindrical
    {43003, kWorldMap},  // Miller_Cylindrical
    {43004, kWorldMapParallel},  // Mercator
    {43007, kConicTwoParallels},  // Albers
    {43008, kWorldMap},  // Sinusoidal
    {43009, kWorldMap},  // Mollweide
    {43010, kWorldMap},  // Eckert_VI
    {43011, kWorldMap},  // Eckert_V
    {43012, kWorldMap},  // Eckert_IV
    {43013, kWorldMap},  // Eckert_III
    {43014, kWorldMap},  // Eckert_II
    {43015, kWorldMap},  // Eckert_I
    {43016, kWorldMap},  // Gall_Stereographic
    {43017, kWorldMap},  // Behrmann
    {43018, kWorldMapParallel},  // Winkel_I
    {43019, kWorldMapParallel},  // Winkel_II
    {43020, kConicLambert},  // Lambert_Conformal_Conic
    {43021, kMeridianOrigin},  // Polyconic
    {43022, kWorldMap},  // Quartic_Authalic
    {43023, kLoximuthal},  // Loximuthal
    {43024, kBonne},  // Bonne
    {43025, kHotineTwoPoint},  // Hotine_Oblique_Mercator_Two_Point_Natural_Origin
    {43026, kAzimuthalScaledOrigin},  // Stereographic
    {43027, kConicEquidistant},  // Equidistant_Conic
    {43028, kMeridianScaledOrigin},  // Cassini
    {43029, kWorldMap},  // Van_der_Grinten_I
    {43030, kWorldMap},  // Robinson
    {43031, kTwoPoints},  // Two_Point_Equidistant
    {43032, kAzimuthalOrigin},  // Azimuthal_Equidistant
    {43033, kAzimuthalOrigin},  // Lambert_Azimuthal_Equal_Area
    {43034, kWorldMapParallel},  // Cylindrical_Equal_Area
    {43035, kHotineTwoPoint},  // Hotine_Oblique_Mercator_Two_Point_Center
    {43036, kHotineAzimuth},  // Hotine_Oblique_Mercator_Azimuth_Natural_Origin
    {43037, kHotineAzimuth},  // Hotine_Oblique_Mercator_Azimuth_Center
    {43038, kAzimuthalScaledOrigin},  // Double_Stereographic
    {43039, kKrovak},  // Krovak
    {43040, kNewZealand},  // New_Zealand_Map_Grid
    {43041, kAzimuthalCenter},  // Orthographic
    {43042, kWorldMapParallel},  // Winkel_Tripel
    {43043, kWorldMap},  // Aitoff
    {43044, kWorldMap},  // Hammer_Aitoff
    {43045, kWorldMap},  // Flat_Polar_Quartic
    {43046, kWorldMap},  // Craster_Parabolic
    {43047, kAzimuthalCenter},  // Gnomonic
    {43048, kWorldMap},  // Times
    {43049, kPerspectiveCenter},  // Vertical_Near_Side_Perspective
    {43050, kPolarScaled},  // Stereographic_North_Pole
    {43051, kPolarScaled},  // Stereographic_South_Pole
    {43052, kFaces},  // Fuller
    {43053, kRectifiedSkew},  // Rectified_Skew_Orthomorphic_Natural_Origin
    {43054, kRectifiedSkew},  // Rectified_Skew_Orthomorphic_Center
    {43055, kFaces},  // Cube
    {43057, kWorldMap},  // Robinson_TESSIN
    {43058, kLocal},  // Local
    {43059, kWorldMapOption},  // Goode_Homolosine
    {43060, kBerghaus},  // Berghaus_Star
    {43061, kWorldMapParallel},  // Equidistant_Cylindrical_Ellipsoidal
    {43062, kConicNey},  // Ney_Modified_Conic
    {43063, kHotineAzimuth},  // Laborde_Oblique_Mercator
    {43064, kPlanoCartesiano},  // IGAC_Plano_Cartesiano
    {43065, kAzimuthalCenter},  // Gnomonic_Ellipsoidal
    {43066, kAzimuthalScaledOrigin},  // Polar_Stereographic_Variant_A
    {43067, kPolarParallel},  // Polar_Stereographic_Variant_B
    {43068, kPolarParallel},  // Polar_Stereographic_Variant_C
    {43069, kCylindricalScaled},  // Mercator_Variant_A
    {43070, kMercatorParallel},  // Mercator_Variant_C
    {43071, kWorldMap},  // Hammer_Ellipsoidal
    {43072, kWorldMap},  // Quartic_Authalic_Ellipsoidal
    {43073, kWorldMap},  // Eckert_Greifendorff
    {43074, kWorldMap},  // Wagner_IV
    {43075, kWorldMap},  // Wagner_V
    {43076, kWorldMap},  // Wagner_VII
    {43077, kWorldMap},  // Natural_Earth
    {43078, kWorldMap},  // Natural_Earth_II
    {43079, kWorldMap},  // Patterson
    {43080, kWorldMap},  // Compact_Miller
    {43082, kCylindricalScaled},  // Transverse_Cylindrical_Equal_Area
    {43083, kAspectAdaptive},  // Aspect_Adaptive_Cylindrical
    {43084, kGeostationary},  // Geostationary_Satellite
    {43085, kWorldMap},  // Equal_Earth
    {43086, kPeirce},  // Peirce_Quincuncial
    {43087, kWorldMap},  // Adams_Square_II
    {43088, kWorldMap},  // Tobler_Cylindrical_I
    {43089, kWorldMap},  // Tobler_Cylindrical_II
    {43090, kPerspectiveCylindrical},  // Perspective_Cylindrical
    {43091, kConicOneParallel},  // Lambert_Conformal_Conic_1SP
    {43092, kConicTwoParallels},  // Lambert_Conformal_Conic_2SP
    {43093, kObliqueCenter},  // Plate_Carree_Oblique
    {43102, kAuxSphereParallel},  // Equidistant_Cylindrical_Auxiliary_Sphere
    {43103, kAuxSphereWorld},  // Miller_Cylindrical_Auxiliary_Sphere
    {43104, kAuxSphereParallel},  // Mercator_Auxiliary_Sphere
    {43109, kAuxSphereWorld},  // Mollweide_Auxiliary_Sphere
    {43110, kAuxSphereWorld},  // Eckert_VI_Auxiliary_Sphere
    {43112, kAuxSphereWorld},  // Eckert_IV_Auxiliary_Sphere
    {43126, kAzimuthalScaledOriginAux},  // Stereographic_Auxiliary_Sphere
    {43129, kAuxSphereWorld},  // Van_der_Grinten_I_Auxiliary_Sphere
    {43132, kAzimuthalOriginAux},  // Azimuthal_Equidistant_Auxiliary_Sphere
    {43133, kAzimuthalOriginAux},  // Lambert_Azimuthal_Equal_Area_Auxiliary_Sphere
    {43141, kAzimuthalCenterAux},  // Orthographic_Auxiliary_Sphere
    {43147, kAzimuthalCenterAux},  // Gnomonic_Auxiliary_Sphere
    {43237, kHotineAzimuth},  // Hotine_Oblique_Mercator_Azimuth_Center_Old
};

constexpr std::span<const ParmRule> parm_rules(int32_t code) {
  for (const CodeRules &row : kParmRulesByCode)
    if (row.code == code) return row.rules;
  return {};
}

template <int32_t Code>
int validity(ko_parameter *const *parms, const char *name, ko_err *err) {
  static_assert(!parm_rules(Code).empty(), "no parameter rules for this projection code");
  return check_parameters(parm_rules(Code), parms, name, err);
}

// Forward and inverse of a projection whose mathematics is not written yet:
// they convert nothing and return 0.
int not_implemented(const double *sph, const double *parms, int n, double *coords,
                    const int32_t *ivals, const double *dvals);

// compfunc of the conics: 1 when the two parameter arrays define the same
// projection, the two standard parallels (slots 3 and 4) taken in either
// order; every other slot equal within the library tolerance.
int conic_compare(const double *sph, const double *parms1, const double *parms2);
// compfunc of Mercator_Auxiliary_Sphere: the standard parallel counts by its
// absolute value (±φ1 give the same scale); every other slot equal.
int mercator_auxs_compare(const double *sph, const double *parms1, const double *parms2);

// parmfunc of Lambert_Conformal_Conic and _2SP: a set with a latitude of
// origin but no standard parallel is the one-parallel form, whose standard
// parallel is the latitude of origin (slots 3 and 4 take slot 6).
int lambert_conic_parms(ko_parameter *const *parms, double *parm_array);
// parmfunc of Krovak: the constants of the method where the set leaves them
// out (IOGP guidance note 7-2, method 9819): pseudo standard parallel
// 78°30' N, cone axis azimuth 30°17'17.30311", and unit X/Y scales.
int krovak_parms(ko_parameter *const *parms, double *parm_array);

}  // namespace ko
