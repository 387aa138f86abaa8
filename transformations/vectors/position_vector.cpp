// Method vector of Position_Vector (EPSG 9606): the seven-parameter
// similarity in the position-vector rotation convention, with its
// similarities cached in the constants.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_position_vector_vector =
    ko::helmert_vector<ko::Rotation::kPositionVector, false, ko::position_vector_forward,
                       ko::position_vector_inverse, ko::ParmSet::kSevenParameter>(
        KO_METHOD_POSITION_VECTOR, KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE, "Position_Vector",
        ko::helmert_constants);
