// Method vector of Molodensky_Badekas (EPSG 9636): the seven-parameter
// similarity in the coordinate-frame convention about the rotation origin,
// with its similarities cached in the constants.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_badekas_vector =
    ko::helmert_vector<ko::Rotation::kCoordinateFrame, false, ko::molodensky_badekas_forward,
                       ko::molodensky_badekas_inverse, ko::ParmSet::kMolodenskyBadekas>(
        KO_METHOD_MOLODENSKY_BADEKAS, KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
        "Molodensky_Badekas", ko::badekas_constants);
