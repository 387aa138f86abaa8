// Defaults and validity checks of the methods' parameters (method vector
// slots 6 and 7).  Internal to transformations/.
//
// Each method reads a fixed set of parameters from fixed slots:
//  - Geocentric_Translation, Molodensky, Molodensky_Abridged: the three
//    translations;
//  - Position_Vector (Bursa_Wolf), Coordinate_Frame: translations,
//    rotations and Scale_Difference;
//  - Molodensky_Badekas: those and the rotation origin;
//  - the time-based Helmert methods: those seven, their seven rates and
//    Reference_Time;
//  - Geographic_2D_Offset: Longitude_Offset and Latitude_Offset;
//  - the grid methods: Dataset_ (its name carrying the file name).
//
// Validity: a missing parameter is error 347 (category 8) with the
// parameter's name as message and the transformation's name as source,
// severity 4 when the method cannot run without it, 2 (warning) when its
// absence means zero (the rates; either offset of Geographic_2D_Offset, both
// together are an error).  A parameter the method does not read is warning
// 348; a Scale_Difference of -1 or less is error 356.  The record keeps the
// most severe report.
#pragma once

#include "transformations/methods.h"

namespace ko {

enum class ParmSet {
  kNone,  // the no-op methods
  kGeocentricTranslation,
  kSevenParameter,
  kMolodenskyBadekas,
  kMolodensky,
  kTimeBased,
  kOffset,
  kGrid,
};

// Fills the method's slots with its parameters at their list defaults (the
// slots are expected empty; anything there is replaced).  Returns the
// number made, or -1 when an allocation failed (nothing is left behind).
int method_defaults(ParmSet set, ko_parameter **parms);
// 1 when the parameters suit the method, else 0 with the reasons in err.
int method_valid(ParmSet set, ko_parameter *const *parms, const char *name, ko_err *err);

// The slot functions per parameter set, ready for the method vectors.
template <ParmSet S>
int defaults_for(ko_parameter **parms) {
  return method_defaults(S, parms);
}
template <ParmSet S>
int valid_for(ko_parameter *const *parms, const char *name, ko_err *err) {
  return method_valid(S, parms, name, err);
}

}  // namespace ko
