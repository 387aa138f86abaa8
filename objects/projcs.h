// Records of the conversion (a projection with its parameters) and of the
// projected coordinate system, for the point conversion loop and the text
// formats that read them directly.  Internal.
#pragma once

#include "objects/geodetic.h"

struct ko_conversion {
  ko_header header;
  ko_projection *projection;              // owned, never null
  ko_parameter *parms[KO_PARM_COUNT];     // owned; slot i holds list index i, or null
};

// States of a projected system's projection constants.
enum ProjcsConstantsState : int32_t {
  kProjConstantsFailed = -1,      // loading failed; not retried until unloaded
  kProjConstantsNotLoaded = 0,
  kProjConstantsLoaded = 1,
  kProjConstantsNotNeeded = 2,    // the projection has no constants function
};

struct ko_projcs {
  ko_header header;
  ko_geogcs *geogcs;             // owned, never null
  ko_conversion *conversion;     // owned, never null
  ko_axis *axes[KO_AXIS_MAX];    // owned; the first `dimension` may be set
  ko_linunit *unit;              // owned; null when the axes carry the units
  ko_metadata **metadata;        // owned null-terminated vector, or null
  ko_remark *remark;             // owned or null
  ko_constants *constants;       // owned projection constants, or null
  int32_t dimension;             // 2 or 3
  int32_t constants_state;       // ProjcsConstantsState
};

namespace ko {

inline ko_conversion *live_conversion(const void *obj) {
  return as<ko_conversion>(obj, KO_TYPE_CONVERSION);
}
inline ko_projcs *live_projcs(const void *obj) { return as<ko_projcs>(obj, KO_TYPE_PROJCS); }

// The comparison of two conversions without their names: equal
// projections (ko_projection_eq) and, slot by slot, parameters that are
// both absent or equal by ko_parameter_eq.
bool conversion_eqnn(const ko_conversion &a, const ko_conversion &b);

}  // namespace ko
