// Builders shared by the tests of vertical, geocentric, compound and
// adjusted systems and vertical transformations.  Each releases what it
// made when a step fails, so that the failing-allocator sweeps see only
// the library's own leaks.
#pragma once

#include "ko.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"

#include <array>

namespace ko::test {

inline ko_datum *wgs84_datum() {
  ko_spheroid *s = ko_spheroid_new("WGS_1984", 6378137.0, 1 / 298.257223563);
  ko_datum *d = s != nullptr ? ko_datum_new("D_WGS_1984", s) : nullptr;
  if (d == nullptr) ko_spheroid_del(s);
  return d;
}

inline ko_geogcs *wgs84_geogcs(const char *name = "GCS_WGS_1984") {
  ko_datum *d = wgs84_datum();
  ko_geogcs *g = d != nullptr ? ko_geogcs_new(name, d, nullptr, nullptr) : nullptr;
  if (g == nullptr) ko_datum_del(d);
  return g;
}

// 24 parameter slots filled by each parameter's list index.
struct Slots {
  std::array<ko_parameter *, KO_PARM_COUNT> p{};
  bool ok = true;  // every parameter was made
  Slots &put(ko_parameter *parm) {
    int32_t slot = ko_parmlist_index_from_code(ko_object_code_internal(parm));
    if (parm == nullptr || slot < 0) {
      ok = false;
      ko_parameter_del(parm);
    } else {
      p[static_cast<std::size_t>(slot)] = parm;
    }
    return *this;
  }
  Slots &put(const char *name, double value) { return put(ko_parameter_new(name, value)); }
  ko_parameter **data() { return p.data(); }
  // Deletes what the slots still hold (after a failed construction).
  void del() {
    for (ko_parameter *&parm : p) parm = ko_parameter_del(parm);
  }
};

// A gravity-related system on its own vertical datum, "Direction" set to
// direction (heights 1, depths -1), "Meter" units.
inline ko_vertcs *gravity_system(const char *name, const char *vdatum, int direction = 1) {
  ko_vdatum *d = ko_vdatum_new(vdatum);
  Slots slots;
  slots.put("Direction", direction);
  ko_vertcs *v = d != nullptr && slots.ok ? ko_vertcs_new(name, d, slots.data(), nullptr) : nullptr;
  if (v == nullptr) {
    ko_vdatum_del(d);
    slots.del();
  }
  return v;
}

// Ellipsoidal heights on the WGS 84 datum.
inline ko_vertcs *ellipsoidal_system(const char *name = "WGS_1984_Ellipsoidal_Height") {
  ko_datum *d = wgs84_datum();
  ko_vertcs *v = d != nullptr ? ko_vertcs_new(name, d, nullptr, nullptr) : nullptr;
  if (v == nullptr) ko_datum_del(d);
  return v;
}

}  // namespace ko::test
