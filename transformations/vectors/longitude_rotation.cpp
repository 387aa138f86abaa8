// Method vector of Longitude_Rotation (EPSG 9601): GCSs that differ only in
// their prime meridians, which the frame applies.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_longitude_rotation_vector =
    ko::noop_vector(KO_METHOD_LONGITUDE_ROTATION, "Longitude_Rotation");
