// Method vector of Position_Vector (EPSG 9606): the seven-parameter
// similarity in the position-vector rotation convention, with its
// similarities cached in the constants.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_position_vector_vector = {
    .code = KO_METHOD_POSITION_VECTOR,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Position_Vector",
    .forward = ko::helmert_slot<ko::Rotation::kPositionVector, false, false,
                                ko::position_vector_forward>,
    .inverse = ko::helmert_slot<ko::Rotation::kPositionVector, true, false,
                                ko::position_vector_inverse>,
    .constfunc = ko::helmert_constants,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kSevenParameter>,
    .validfunc = ko::valid_for<ko::ParmSet::kSevenParameter>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
