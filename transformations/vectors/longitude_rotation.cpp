// Method vector of Longitude_Rotation (EPSG 9601): GCSs that differ only in
// their prime meridians, which the frame applies.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_longitude_rotation_vector = {
    .code = KO_METHOD_LONGITUDE_ROTATION,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_IS_NO_OP,
    .name = "Longitude_Rotation",
    .forward = ko::noop_convert,
    .inverse = ko::noop_convert,
    .constfunc = nullptr,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::noop_defaults,
    .validfunc = ko::noop_valid,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
