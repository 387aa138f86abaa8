// The record shared by the five unit types, and the helpers that the other
// object types use to read, build and compare units.  Internal.
#pragma once

#include "objects/object.h"

// One layout for linear, angular, scale, area and generic units.  Only the
// header's type code tells them apart; the public handle types (ko_linunit,
// ko_angunit, ...) stay incomplete and are converted with ko::unit_of.
struct ko_unit {
  ko_header header;
  ko_uchar display_name[KO_UNIT_DISPNAME_SIZE];
  ko_uchar plural[KO_UNIT_DISPNAME_SIZE];
  ko_uchar abbreviation[KO_UNIT_ABBR_SIZE];
  double factor;     // base units (metres, radians, square metres, 1) per unit
  uint32_t refcode;  // 0 at construction
};

namespace ko {

// Every type bit a unit object may carry.
inline constexpr uint32_t kAnyUnitType = KO_TYPE_UNIT | KO_TYPE_AREAUNIT;

// Radians per degree, exactly as the library's tables and texts write it.
inline constexpr double kDegreeFactor = 0.017453292519943295;

// The unit record behind any public unit handle.
inline ko_unit *unit_of(const void *handle) {
  return static_cast<ko_unit *>(const_cast<void *>(handle));
}

// The unit as a live record whose type shares a bit with mask, else null.
inline ko_unit *live_unit(const void *handle, uint32_t mask = kAnyUnitType) {
  return as<ko_unit>(handle, mask);
}

// Factor of a live unit of a kind in mask, or fallback for anything else.
inline double unit_factor_or(const void *handle, uint32_t mask, double fallback) {
  const ko_unit *u = live_unit(handle, mask);
  return u != nullptr ? u->factor : fallback;
}

// Builds a unit of the given type code from a name and factor, with the
// checks and reports of the unit constructors (source names the reporting
// function).  Null on failure.
ko_unit *unit_build(uint32_t type, const char *name, double factor, const char *source,
                    ko_err *err);

// Name and factor equality of two units sharing a type bit in mask.
bool unit_equal(const void *a, const void *b, uint32_t mask);

// The defaults other objects create: "Meter" (1.0) and "Degree".
ko_linunit *new_meter();
ko_angunit *new_degree();

// A deep copy of any unit, keeping its type code; null for no unit.
ko_unit *unit_clone(const void *handle);

}  // namespace ko
