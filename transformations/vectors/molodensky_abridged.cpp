// Method vector of Molodensky_Abridged (EPSG 9605): the abridged Molodensky
// formulas.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_abridged_vector =
    ko::equation_vector<ko::molodensky_abridged_forward, ko::molodensky_abridged_inverse,
                        ko::ParmSet::kMolodensky>(KO_METHOD_MOLODENSKY_ABRIDGED,
                                                  KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
                                                  "Molodensky_Abridged");
