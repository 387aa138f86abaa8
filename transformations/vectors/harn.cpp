// Method vector of HARN (109613): the high-accuracy reference network grids,
// .las/.los pairs in the NADCON format, from the "nadcon" folder.
#include "transformations/vectors/slots.h"
#include "transformations/grid_methods.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_harn_vector = {
    .code = KO_METHOD_HARN,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE,
    .name = "HARN",
    .forward = ko::kernel_slot<ko::grid_shift_forward>,
    .inverse = ko::kernel_slot<ko::grid_shift_inverse>,
    .constfunc = ko::grid_load_for<ko::kNadconFormat>,
    .unloadfunc = ko::grid_unload,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kGrid>,
    .validfunc = ko::valid_for<ko::ParmSet::kGrid>,
    .usablefunc = ko::grid_usable_for<ko::kNadconFormat>,
    .filefunc = ko::grid_filenames_for<ko::kNadconFormat>,
    .interpfunc = ko::bilinear_interpolation,
};
