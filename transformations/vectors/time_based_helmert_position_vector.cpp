// Method vector of Time_Based_Helmert_Position_Vector (109616): the
// fifteen-parameter Helmert transformation in the position-vector
// convention.  The coordinate epoch comes through the extra pointer (one
// double, decimal years); without it the parameters apply at their
// Reference_Time, whose similarity the constants cache.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_time_based_helmert_position_vector_vector =
    ko::helmert_vector<ko::Rotation::kPositionVector, true, ko::time_based_helmert_pv_forward,
                       ko::time_based_helmert_pv_inverse, ko::ParmSet::kTimeBased>(
        KO_METHOD_TIME_BASED_HELMERT_POSITION_VECTOR, KO_MTH_RTN_TIME_BASED | KO_MTH_HEIGHT_AWARE,
        "Time_Based_Helmert_Position_Vector", ko::helmert_constants);
