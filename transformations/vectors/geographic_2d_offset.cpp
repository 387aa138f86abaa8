// Method vector of Geographic_2D_Offset (EPSG 9619): constant latitude and
// longitude offsets; heights pass unchanged.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_geographic_2d_offset_vector =
    ko::equation_vector<ko::geographic_2d_offset_forward, ko::geographic_2d_offset_inverse,
                        ko::ParmSet::kOffset>(KO_METHOD_GEOGRAPHIC_2D_OFFSET, KO_MTH_RTN_ORDINARY,
                                              "Geographic_2D_Offset");
