// Records of the method object and the geographic transformation, and what
// the method vectors need of a transformation when they run.  Internal to
// transformations/.
#pragma once

#include "objects/object.h"
#include "transformations/methods.h"

// A method object is its header alone; the internal and external codes hold
// the method's code, through which every slot is looked up again.
struct ko_method {
  ko_header header;
};

// States of a transformation's method constants besides the loader's own
// failure values (which are negative).
enum GeogtranConstantsStatus : int32_t {
  kGtConstantsNoRecord = -1,  // the constants record could not be allocated
  kGtConstantsNotLoaded = 0,
  kGtConstantsLoaded = 1,
  kGtConstantsNotNeeded = 2,
};

struct ko_geogtran {
  ko_header header;
  ko_geogcs *gcs1;                       // owned, never null
  ko_geogcs *gcs2;                       // owned; null: GCS 1 stands for it
  ko_method *method;                     // owned, never null
  ko_parameter *parms[KO_PARM_COUNT];    // owned; null for an empty slot
  ko_metadata **metadata;                // owned null-terminated vector, or null
  ko_remark *remark;                     // owned or null
  char opversion[KO_OPVERSION_SIZE];
  ko_constants *constants;               // owned, null until loaded
  int32_t constants_status;              // GeogtranConstantsStatus or a loader failure
  double accuracy;                       // metres; 999.0 unknown
};

namespace ko {

inline constexpr double kUnknownAccuracy = 999.0;

inline ko_method *live_method(const void *obj) { return as<ko_method>(obj, KO_TYPE_METHOD); }
inline ko_geogtran *live_geogtran(const void *obj) {
  return as<ko_geogtran>(obj, KO_TYPE_GEOGTRAN);
}

// The method vector of a method object, looked up by its code; null for no
// method or an unknown code.
const ko_methlist_entry *method_entry(const void *method);

// ko_method_valid without clearing the record first, for constructors that
// may already hold a warning.
int method_valid(ko_parameter *const *parms, const char *name, int32_t code, ko_err *err);

// The GCS on each side of a transformation; GCS 2 falls back to GCS 1.
inline ko_geogcs *gcs_of_side(const ko_geogtran &gt, int side) {
  return side == 1 && gt.gcs2 != nullptr ? gt.gcs2 : gt.gcs1;
}

// The kernels' arguments for one call of a method function on a
// transformation: the spheroid pairs of both GCSs, the parameter values,
// the caller's extra pointer and the loaded grid, if any.  Not copyable:
// args points into the object.
class MethodCall {
 public:
  MethodCall(const ko_geogtran *gt, const double *parms, const void *extra);
  MethodCall(const MethodCall &) = delete;
  MethodCall &operator=(const MethodCall &) = delete;
  const MethodArgs &args() const { return args_; }

 private:
  double sph1_[2] = {};
  double sph2_[2] = {};
  MethodArgs args_;
};

}  // namespace ko
