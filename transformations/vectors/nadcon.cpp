// Method vector of NADCON (EPSG 9613): latitude and longitude shifts from a
// .las/.los grid pair in the data directory's "nadcon" folder.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_nadcon_vector =
    ko::grid_vector<ko::kNadconFormat>(KO_METHOD_NADCON, KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE,
                                       "NADCON");
