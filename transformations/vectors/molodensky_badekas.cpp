// Method vector of Molodensky_Badekas (EPSG 9636): the seven-parameter
// similarity in the coordinate-frame convention about the rotation origin,
// with its similarities cached in the constants.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_molodensky_badekas_vector = {
    .code = KO_METHOD_MOLODENSKY_BADEKAS,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Molodensky_Badekas",
    .forward = ko::helmert_slot<ko::Rotation::kCoordinateFrame, false, false,
                                ko::molodensky_badekas_forward>,
    .inverse = ko::helmert_slot<ko::Rotation::kCoordinateFrame, true, false,
                                ko::molodensky_badekas_inverse>,
    .constfunc = ko::badekas_constants,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kMolodenskyBadekas>,
    .validfunc = ko::valid_for<ko::ParmSet::kMolodenskyBadekas>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
