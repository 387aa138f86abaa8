// Method vector of Molodensky (EPSG 9604): the standard Molodensky formulas.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_vector =
    ko::equation_vector<ko::molodensky_forward, ko::molodensky_inverse, ko::ParmSet::kMolodensky>(
        KO_METHOD_MOLODENSKY, KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE, "Molodensky");
