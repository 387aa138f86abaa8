// The parameter record, for the objects that hold parameters (projected
// systems, transformations) and read them in bulk.  Internal.
#pragma once

#include "objects/composite.h"
#include "objects/units.h"

struct ko_parameter {
  ko_header header;      // name as given; codes from the parameter list
  double value;          // in the parameter's own unit
  ko_unit *unit;         // owned; null for a plain number
  double dflt_factor;    // unit factor in which ko_parameter_value reports
};

namespace ko {

inline ko_parameter *live_parameter(const void *obj) {
  return as<ko_parameter>(obj, KO_TYPE_PARAMETER);
}

}  // namespace ko
