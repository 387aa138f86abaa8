// Method vector of NTv2 (EPSG 9615): latitude and longitude shifts from an
// NTv2 grid file in the data directory's "ntv2" folder, named by the
// Dataset_ parameter.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_ntv2_vector = ko::grid_vector<ko::kNtv2Format>(
    KO_METHOD_NTV2, KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE, "NTv2");
