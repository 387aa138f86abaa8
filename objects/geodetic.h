// Records of the geodetic objects (spheroid, prime meridian, datum,
// geographic coordinate system) and of the axis, for the other object types
// and the point functions that read them directly.  Internal.
#pragma once

#include "objects/composite.h"
#include "objects/units.h"

struct ko_spheroid {
  ko_header header;
  double axis;        // semi-major axis in the length of `unit`
  double flattening;  // 0 <= f <= 1
  ko_linunit *unit;   // owned, never null
};

struct ko_primem {
  ko_header header;
  double longitude;  // degrees east of Greenwich
  ko_angunit *unit;  // owned
};

struct ko_datum {
  ko_header header;
  ko_spheroid *spheroid;  // owned, never null
  char anchor[KO_ANCHOR_SIZE];
  char frame_name[KO_NAME_SIZE];  // empty for a static datum
  double epoch;                   // reference epoch of a dynamic datum, else 0.0
};

struct ko_axis {
  ko_header header;
  char abbr[KO_AXIS_ABBR_SIZE];
  int32_t direction;  // KO_AXIS_*
  int32_t order;      // 1-based position in its system
  ko_unit *unit;      // owned, may be null
};

// States of a geographic system's geodesic constants.
enum GeogcsConstantsState : int32_t {
  kConstantsFailed = -1,
  kConstantsNotLoaded = 0,
  kConstantsLoaded = 1,
  kConstantsSphere = 2,
};

struct ko_geogcs {
  ko_header header;
  ko_datum *datum;               // owned, never null
  ko_primem *primem;             // owned, never null
  ko_angunit *unit;              // owned; null when the axes carry the units
  ko_axis *axes[KO_AXIS_MAX];    // owned; the first `dimension` may be set
  ko_metadata **metadata;        // owned null-terminated vector, or null
  ko_remark *remark;             // owned or null
  ko_constants *constants;       // owned geodesic constants, or null
  int32_t dimension;             // 2 or 3
  int32_t constants_state;       // GeogcsConstantsState
};

namespace ko {

// Live records or null.
inline ko_spheroid *live_spheroid(const void *obj) { return as<ko_spheroid>(obj, KO_TYPE_SPHEROID); }
inline ko_primem *live_primem(const void *obj) { return as<ko_primem>(obj, KO_TYPE_PRIMEM); }
inline ko_datum *live_datum(const void *obj) { return as<ko_datum>(obj, KO_TYPE_DATUM); }
inline ko_geogcs *live_geogcs(const void *obj) { return as<ko_geogcs>(obj, KO_TYPE_GEOGCS); }
inline ko_axis *live_axis(const void *obj) { return as<ko_axis>(obj, KO_TYPE_AXIS); }

// Compares two names with ko_strcmp_ci after dropping, on each side, a
// leading prefix matched case-insensitively ("D_" for datums, "GCS_" for
// geographic systems).
bool names_equal_skipping(const char *a, const char *b, const char *prefix);

}  // namespace ko
