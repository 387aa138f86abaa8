// Method vector of Geographic_2D_Offset (EPSG 9619): constant latitude and
// longitude offsets; heights pass unchanged.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_geographic_2d_offset_vector = {
    .code = KO_METHOD_GEOGRAPHIC_2D_OFFSET,
    .flags = KO_MTH_RTN_ORDINARY,
    .name = "Geographic_2D_Offset",
    .forward = ko::kernel_slot<ko::geographic_2d_offset_forward>,
    .inverse = ko::kernel_slot<ko::geographic_2d_offset_inverse>,
    .constfunc = nullptr,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kOffset>,
    .validfunc = ko::valid_for<ko::ParmSet::kOffset>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
