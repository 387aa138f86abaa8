// Method vector of Molodensky_Abridged (EPSG 9605): the abridged Molodensky
// formulas.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_abridged_vector = {
    .code = KO_METHOD_MOLODENSKY_ABRIDGED,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Molodensky_Abridged",
    .forward = ko::kernel_slot<ko::molodensky_abridged_forward>,
    .inverse = ko::kernel_slot<ko::molodensky_abridged_inverse>,
    .constfunc = nullptr,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kMolodensky>,
    .validfunc = ko::valid_for<ko::ParmSet::kMolodensky>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
