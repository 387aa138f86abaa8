// Method vector of NADCON5 (109615): latitude, longitude and ellipsoidal
// height shifts from NOAA .b grids in the "nadcon5" folder.
#include "transformations/vectors/slots.h"
#include "transformations/grid_methods.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_nadcon5_vector = {
    .code = KO_METHOD_NADCON5,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE | KO_MTH_HEIGHT_AWARE,
    .name = "NADCON5",
    .forward = ko::kernel_slot<ko::grid_shift_forward>,
    .inverse = ko::kernel_slot<ko::grid_shift_inverse>,
    .constfunc = ko::grid_load_for<ko::kNadcon5Format>,
    .unloadfunc = ko::grid_unload,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kGrid>,
    .validfunc = ko::valid_for<ko::ParmSet::kGrid>,
    .usablefunc = ko::grid_usable_for<ko::kNadcon5Format>,
    .filefunc = ko::grid_filenames_for<ko::kNadcon5Format>,
    .interpfunc = ko::bilinear_interpolation,
};
