// Method vector of Geocentric_Translation (EPSG 9603): the three-parameter
// shift of geocentric coordinates between the two spheroids.
#include "transformations/vectors/slots.h"
#include "transformations/method_parameters.h"

extern "C" constinit const ko_methlist_entry ko_mth_geocentric_translation_vector = {
    .code = KO_METHOD_GEOCENTRIC_TRANSLATION,
    .flags = KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
    .name = "Geocentric_Translation",
    .forward = ko::kernel_slot<ko::geocentric_translation_forward>,
    .inverse = ko::kernel_slot<ko::geocentric_translation_inverse>,
    .constfunc = nullptr,
    .unloadfunc = nullptr,
    .dfltsfunc = ko::defaults_for<ko::ParmSet::kGeocentricTranslation>,
    .validfunc = ko::valid_for<ko::ParmSet::kGeocentricTranslation>,
    .usablefunc = nullptr,
    .filefunc = nullptr,
    .interpfunc = nullptr,
};
