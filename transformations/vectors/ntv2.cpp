// Method vector of NTv2 (EPSG 9615): latitude and longitude shifts from an
// NTv2 grid file in the data directory's "ntv2" folder, named by the
// Dataset_ parameter.
#include "transformations/vectors/slots.h"
#include "transformations/grid_methods.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_ntv2_vector = {
    .code = KO_METHOD_NTV2,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE,
    .name = "NTv2",
    .forward = ko::kernel_slot<ko::grid_shift_forward>,
    .inverse = ko::kernel_slot<ko::grid_shift_inverse>,
    .constfunc = ko::grid_load_for<ko::kNtv2Format>,
    .unloadfunc = ko::grid_unload,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kGrid>,
    .validfunc = ko::valid_for<ko::ParmSet::kGrid>,
    .usablefunc = ko::grid_usable_for<ko::kNtv2Format>,
    .filefunc = ko::grid_filenames_for<ko::kNtv2Format>,
    .interpfunc = ko::bilinear_interpolation,
};
