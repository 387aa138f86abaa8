// Method vector of GEOCON (109614): latitude, longitude and ellipsoidal
// height shifts from NOAA .b grids in the "geocon" folder.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_geocon_vector =
    ko::grid_vector<ko::kGeoconFormat>(
        KO_METHOD_GEOCON, KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE | KO_MTH_HEIGHT_AWARE, "GEOCON");
