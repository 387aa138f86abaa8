// The function slots of the projection families written on family.h, for the
// projection vectors and for tests that call a family directly.  Every
// forward/inverse has the ko_proj_fn signature, every constants function the
// ko_proj_constfunc one.
#pragma once

#include "ko.h"

namespace ko::proj {

// Lambert Conformal Conic: 43020 (either form),
// 43091 (one standard parallel), 43092 (two standard parallels).
int lcc_forward(const double *sph, const double *parms, int n, double *coords,
                const int32_t *ivals, const double *dvals);
int lcc_inverse(const double *sph, const double *parms, int n, double *coords,
                const int32_t *ivals, const double *dvals);
int lcc_constants(ko_constants *c, const double *sph, const double *parms);
int lcc_1sp_constants(ko_constants *c, const double *sph, const double *parms);
int lcc_1sp_forward(const double *sph, const double *parms, int n, double *coords,
                    const int32_t *ivals, const double *dvals);
int lcc_1sp_inverse(const double *sph, const double *parms, int n, double *coords,
                    const int32_t *ivals, const double *dvals);
int lcc_compare(const double *sph, const double *parms1, const double *parms2);
int lcc_1sp_compare(const double *sph, const double *parms1, const double *parms2);

// Declares the forward, inverse and constants functions of one projection.
#define KO_PROJ_FAMILY_SLOTS(name)                                                     \
  int name##_forward(const double *sph, const double *parms, int n, double *coords,    \
                     const int32_t *ivals, const double *dvals);                       \
  int name##_inverse(const double *sph, const double *parms, int n, double *coords,    \
                     const int32_t *ivals, const double *dvals);                       \
  int name##_constants(ko_constants *c, const double *sph, const double *parms);

// Mercator: 43004 (variant B, standard parallel), 43069 (variant A, scale
// factor), 43070 (variant C, false origin at a latitude), 43104 (auxiliary
// sphere; with compare function).
KO_PROJ_FAMILY_SLOTS(mercator)
KO_PROJ_FAMILY_SLOTS(mercator_a)
KO_PROJ_FAMILY_SLOTS(mercator_c)
KO_PROJ_FAMILY_SLOTS(mercator_auxs)
int mercator_auxs_compare(const double *sph, const double *parms1, const double *parms2);

// Stereographic: 43038 Double_Stereographic (oblique, method 9809),
// 43026 Stereographic (Snyder's; polar at ±90°), 43066/43067/43068 polar
// stereographic variants A, B, C, 43050/43051 north and south pole.
KO_PROJ_FAMILY_SLOTS(double_stereographic)
KO_PROJ_FAMILY_SLOTS(stereographic)
KO_PROJ_FAMILY_SLOTS(polar_stereographic_a)
KO_PROJ_FAMILY_SLOTS(polar_stereographic_b)
KO_PROJ_FAMILY_SLOTS(polar_stereographic_c)
KO_PROJ_FAMILY_SLOTS(stereographic_north_pole)
KO_PROJ_FAMILY_SLOTS(stereographic_south_pole)

// Hotine Oblique Mercator: 43036 azimuth, natural origin; 43037 azimuth,
// centre; 43053/43054 Rectified Skew Orthomorphic, natural origin/centre
// (rectified grid angle from XY_Plane_Rotation); 43025/43035 two points,
// natural origin/centre.
KO_PROJ_FAMILY_SLOTS(hotine_azimuth_natorigin)
KO_PROJ_FAMILY_SLOTS(hotine_azimuth_center)
KO_PROJ_FAMILY_SLOTS(rso_natorigin)
KO_PROJ_FAMILY_SLOTS(rso_center)
KO_PROJ_FAMILY_SLOTS(hotine_two_point_natorigin)
KO_PROJ_FAMILY_SLOTS(hotine_two_point_center)

// Krovak: 43039; modified through Option = 1,
// north-orientated through the plane orientation.
KO_PROJ_FAMILY_SLOTS(krovak)

// Cassini-Soldner: 43028; hyperbolic form through Option = 1.
KO_PROJ_FAMILY_SLOTS(cassini)

// Lambert Azimuthal Equal Area: 43033.
KO_PROJ_FAMILY_SLOTS(laea)

// Albers: 43007, with its compare function.
KO_PROJ_FAMILY_SLOTS(albers)
int albers_compare(const double *sph, const double *parms1, const double *parms2);

// Cylindricals: 43002 Equidistant_Cylindrical (computed per call, without a
// constants function), 43061 its ellipsoidal form, 43034
// Cylindrical_Equal_Area.
int eqc_forward(const double *sph, const double *parms, int n, double *coords,
                const int32_t *ivals, const double *dvals);
int eqc_inverse(const double *sph, const double *parms, int n, double *coords,
                const int32_t *ivals, const double *dvals);
KO_PROJ_FAMILY_SLOTS(eqc_ellipsoidal)
KO_PROJ_FAMILY_SLOTS(cea)

// Azimuthal Equidistant: 43032; exact through geodesics, or the modified
// form of the Guam grids through Option = 1.
KO_PROJ_FAMILY_SLOTS(aeqd)

// Polyconic (43021), Bonne (43024), Equal Earth (43085), Orthographic
// (43041), Laborde (43063), IGAC plano cartesiano (43064).
KO_PROJ_FAMILY_SLOTS(polyconic)
KO_PROJ_FAMILY_SLOTS(bonne)
KO_PROJ_FAMILY_SLOTS(equal_earth)
KO_PROJ_FAMILY_SLOTS(orthographic)
KO_PROJ_FAMILY_SLOTS(laborde)
KO_PROJ_FAMILY_SLOTS(igac)

// New Zealand Map Grid (43040): computed per call, without a constants
// function.
int nzmg_forward(const double *sph, const double *parms, int n, double *coords,
                 const int32_t *ivals, const double *dvals);
int nzmg_inverse(const double *sph, const double *parms, int n, double *coords,
                 const int32_t *ivals, const double *dvals);

// Geostationary_Satellite (43084).
KO_PROJ_FAMILY_SLOTS(geostationary_satellite)

// Transverse_Cylindrical_Equal_Area (43082), on the sphere of radius a.
KO_PROJ_FAMILY_SLOTS(transverse_cylindrical_eqarea)

// Gnomonic_Ellipsoidal (43065), Karney's ellipsoidal gnomonic.
KO_PROJ_FAMILY_SLOTS(gnomonic_ellipsoidal)

// Plate_Carree_Oblique (43093), on the sphere of radius a.
KO_PROJ_FAMILY_SLOTS(plate_carree_oblique)

// Peirce_Quincuncial (43086) and Adams_Square_II (43087), on the sphere of
// radius a.
KO_PROJ_FAMILY_SLOTS(peirce_quincuncial)
KO_PROJ_FAMILY_SLOTS(adams_square_ii)

}  // namespace ko::proj
