// Method vector of Coordinate_Frame (EPSG 9607).  It owns no mathematics:
// each of its functions calls the same slot of Bursa_Wolf's vector, whose
// functions take the coordinate frame rotation convention for a
// transformation whose method is Coordinate_Frame.
#include "transformations/vectors/slots.h"

namespace {

int32_t forward(const ko_geogtran *gt, const double *parms, void *extra, int32_t n, double *coord,
                double *z) {
  return ko_mth_bursa_wolf_vector.forward(gt, parms, extra, n, coord, z);
}

int32_t inverse(const ko_geogtran *gt, const double *parms, void *extra, int32_t n, double *coord,
                double *z) {
  return ko_mth_bursa_wolf_vector.inverse(gt, parms, extra, n, coord, z);
}

int constants(ko_constants *constants, ko_parameter *const *parms, int flag,
              const ko_gcs_extent *extent) {
  return ko_mth_bursa_wolf_vector.constfunc(constants, parms, flag, extent);
}

int defaults(ko_parameter **parms) { return ko_mth_bursa_wolf_vector.dfltsfunc(parms); }

int valid(ko_parameter *const *parms, const char *name, ko_err *err) {
  return ko_mth_bursa_wolf_vector.validfunc(parms, name, err);
}

}  // namespace

extern "C" constinit const ko_methlist_entry ko_mth_coordinate_frame_vector = {
    .code = KO_METHOD_COORDINATE_FRAME,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Coordinate_Frame",
    .forward = forward,
    .inverse = inverse,
    .constfunc = constants,
    .unloadfunc = nullptr,
    .dfltsfunc = defaults,
    .validfunc = valid,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
