// Method vector of Null (109600): two GCSs on the same datum; nothing to do
// beyond the frame's unit and prime-meridian handling.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_null_vector = {
    .code = KO_METHOD_NULL,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_IS_NO_OP,
    .name = "Null",
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
