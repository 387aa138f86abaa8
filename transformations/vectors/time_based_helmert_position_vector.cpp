// Method vector of Time_Based_Helmert_Position_Vector (109616): the
// fifteen-parameter Helmert transformation in the position-vector
// convention.  The coordinate epoch comes through the extra pointer (one
// double, decimal years); without it the parameters apply at their
// Reference_Time, whose similarity the constants cache.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_time_based_helmert_position_vector_vector = {
    .code = KO_METHOD_TIME_BASED_HELMERT_POSITION_VECTOR,
    .flags = KO_MTH_RTN_TIME_BASED | KO_MTH_HEIGHT_AWARE,
    .name = "Time_Based_Helmert_Position_Vector",
    .forward = ko::helmert_slot<ko::Rotation::kPositionVector, false, true,
                                ko::time_based_helmert_pv_forward>,
    .inverse = ko::helmert_slot<ko::Rotation::kPositionVector, true, true,
                                ko::time_based_helmert_pv_inverse>,
    .constfunc = ko::helmert_constants,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kTimeBased>,
    .validfunc = ko::valid_for<ko::ParmSet::kTimeBased>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
