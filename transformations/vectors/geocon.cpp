// Method vector of GEOCON (109614): latitude, longitude and ellipsoidal
// height shifts from NOAA .b grids in the "geocon" folder.
#include "transformations/vectors/slots.h"
#include "transformations/grid_methods.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_geocon_vector = {
    .code = KO_METHOD_GEOCON,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE | KO_MTH_HEIGHT_AWARE,
    .name = "GEOCON",
    .forward = ko::kernel_slot<ko::grid_shift_forward>,
    .inverse = ko::kernel_slot<ko::grid_shift_inverse>,
    .constfunc = ko::grid_load_for<ko::kGeoconFormat>,
    .unloadfunc = ko::grid_unload,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kGrid>,
    .validfunc = ko::valid_for<ko::ParmSet::kGrid>,
    .usablefunc = ko::grid_usable_for<ko::kGeoconFormat>,
    .filefunc = ko::grid_filenames_for<ko::kGeoconFormat>,
    .interpfunc = ko::bilinear_interpolation,
};
