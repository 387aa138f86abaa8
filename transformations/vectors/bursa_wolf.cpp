// Method vector of Bursa_Wolf (109607): the seven-parameter similarity of
// geocentric coordinates.  Its functions serve Coordinate_Frame too, whose
// vector calls them: the rotation convention follows the method of the
// transformation they are called for, coordinate frame for
// Coordinate_Frame and position vector for everything else.
#include "transformations/vectors/slots.h"

namespace {

bool coordinate_frame(const ko_geogtran *gt) {
  return ko_object_code_internal(ko_geogtran_method(gt)) == KO_METHOD_COORDINATE_FRAME;
}

int32_t bursa_wolf(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                   double *coord, double *z, bool inverse) {
  if (coordinate_frame(gt)) {
    ko::MethodKernel kernel = inverse ? ko::coordinate_frame_inverse : ko::coordinate_frame_forward;
    return ko::helmert_apply(gt, parms, extra, n, coord, z, ko::Rotation::kCoordinateFrame, inverse,
                             false, kernel);
  }
  ko::MethodKernel kernel = inverse ? ko::position_vector_inverse : ko::position_vector_forward;
  return ko::helmert_apply(gt, parms, extra, n, coord, z, ko::Rotation::kPositionVector, inverse,
                           false, kernel);
}

int32_t bursa_wolf_forward(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                           double *coord, double *z) {
  return bursa_wolf(gt, parms, extra, n, coord, z, false);
}

int32_t bursa_wolf_inverse(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                           double *coord, double *z) {
  return bursa_wolf(gt, parms, extra, n, coord, z, true);
}

}  // namespace

extern "C" constinit const ko_methlist_entry ko_mth_bursa_wolf_vector = {
    .code = KO_METHOD_BURSA_WOLF,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Bursa_Wolf",
    .forward = bursa_wolf_forward,
    .inverse = bursa_wolf_inverse,
    .constfunc = ko::helmert_constants,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kSevenParameter>,
    .validfunc = ko::valid_for<ko::ParmSet::kSevenParameter>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
