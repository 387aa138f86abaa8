// Method vector of Molodensky (EPSG 9604): the standard Molodensky formulas.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_vector = {
    .code = KO_METHOD_MOLODENSKY,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Molodensky",
    .forward = ko::kernel_slot<ko::molodensky_forward>,
    .inverse = ko::kernel_slot<ko::molodensky_inverse>,
    .constfunc = nullptr,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kMolodensky>,
    .validfunc = ko::valid_for<ko::ParmSet::kMolodensky>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
