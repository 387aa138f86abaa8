// Method vector of Geocentric_Translation (EPSG 9603): the three-parameter
// shift of geocentric coordinates between the two spheroids.
#include "transformations/vectors/slots.h"

extern "C" constinit const ko_methlist_entry ko_mth_geocentric_translation_vector =
    ko::equation_vector<ko::geocentric_translation_forward, ko::geocentric_translation_inverse,
                        ko::ParmSet::kGeocentricTranslation>(
        KO_METHOD_GEOCENTRIC_TRANSLATION, KO_MTH_RTN_ORDINARY | KO_MTH_HEIGHT_AWARE,
        "Geocentric_Translation");
