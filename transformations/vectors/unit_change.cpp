// Method vector of Unit_Change (109601): GCSs that differ only in their
// angular units, which the frame applies.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_unit_change_vector = {
    .code = KO_METHOD_UNIT_CHANGE,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_IS_NO_OP,
    .name = "Unit_Change",
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
