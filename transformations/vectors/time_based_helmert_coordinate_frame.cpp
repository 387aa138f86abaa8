// Method vector of Time_Based_Helmert_Coordinate_Frame (109617): the
// fifteen-parameter Helmert transformation in the coordinate-frame
// convention.  The coordinate epoch comes through the extra pointer (one
// double, decimal years); without it the parameters apply at their
// Reference_Time, whose similarity the constants cache.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_time_based_helmert_coordinate_frame_vector =
    ko::helmert_vector<ko::Rotation::kCoordinateFrame, true, ko::time_based_helmert_cf_forward,
                       ko::time_based_helmert_cf_inverse, ko::ParmSet::kTimeBased>(
        KO_METHOD_TIME_BASED_HELMERT_COORDINATE_FRAME, KO_MTH_RTN_TIME_BASED | KO_MTH_HEIGHT_AWARE,
        "Time_Based_Helmert_Coordinate_Frame", ko::helmert_constants);
