// Method vector of Unit_Change (109601): GCSs that differ only in their
// angular units, which the frame applies.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_unit_change_vector =
    ko::noop_vector(KO_METHOD_UNIT_CHANGE, "Unit_Change");
