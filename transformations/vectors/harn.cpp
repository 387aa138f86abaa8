// Method vector of HARN (109613): the high-accuracy reference network grids,
// .las/.los pairs in the NADCON format, from the "nadcon" folder.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_harn_vector =
    ko::grid_vector<ko::kNadconFormat>(KO_METHOD_HARN, KO_MTH_RTN_ORDINARY | KO_MTH_NEEDS_FILE,
                                       "HARN");
