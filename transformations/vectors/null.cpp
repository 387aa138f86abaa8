// Method vector of Null (109600): two GCSs on the same datum; nothing to do
// beyond the frame's unit and prime-meridian handling.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_null_vector =
    ko::noop_vector(KO_METHOD_NULL, "Null");
