// Method vector of NADCON5 (109615): latitude, longitude and ellipsoidal
// height shifts from NOAA .b grids in the "nadcon5" folder.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_nadcon5_vector =
    ko::grid_vector<ko::kNadcon5Format>(
        KO_METHOD_NADCON5, KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE | KO_MTH_HEIGHT_AWARE,
        "NADCON5");
