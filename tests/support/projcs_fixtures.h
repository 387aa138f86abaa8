// Builders of geographic systems, conversions and projected systems for the
// tests, from the public constructors only.  Every builder returns null when
// a constructor fails (the failing-allocator sweeps rely on that) and
// leaves nothing behind then.
#pragma once

#include "ko.h"

#include <array>
#include <initializer_list>

namespace ko::test {

inline constexpr double kWgs84A = 6378137.0;
inline constexpr double kWgs84F = 1 / 298.257223563;
// Metres per US survey foot as the library's unit table holds it (the
// frame is tested here, not the table).
inline const double kFootUs = ko_unit_tbl_from_code(ko_linunit_tbl, 9003)->factor;
inline constexpr double kGrad = 0.015707963267948967;       // radians per grad
inline constexpr double kDegree = 0.017453292519943295;     // radians per degree

// A WGS 84 geographic system in the given angular unit (owned from here
// on; null gives degrees).
inline ko_geogcs *wgs84(ko_angunit *unit = nullptr) {
  ko_spheroid *s = ko_spheroid_new("WGS_1984", kWgs84A, kWgs84F);
  ko_datum *d = s != nullptr ? ko_datum_new("D_WGS_1984", s) : nullptr;
  if (d == nullptr) {
    ko_spheroid_del(s);
    ko_angunit_del(unit);
    return nullptr;
  }
  ko_geogcs *g = ko_geogcs_new("GCS_WGS_1984", d, nullptr, unit);
  if (g == nullptr) {
    ko_datum_del(d);
    ko_angunit_del(unit);
  }
  return g;
}

// One parameter of a conversion: its list name, value and unit (owned from
// here on; null for none).
struct ParmDef {
  const char *name;
  double value;
  ko_unit *unit = nullptr;
};

// A conversion of the projection of `code` whose parameters stand in their
// list slots.  Null when anything fails.
inline ko_conversion *conversion(const char *name, int32_t code,
                                 std::initializer_list<ParmDef> defs, ko_err *err = nullptr) {
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  bool ok = true;
  for (const ParmDef &def : defs) {
    ko_parameter *p = ok ? ko_parameter_ext_new(def.name, def.unit, def.value) : nullptr;
    if (p == nullptr) {
      ko_unit_del(def.unit);
      ok = false;
      continue;
    }
    int slot = ko_parmlist_index_from_code(ko_object_code_internal(p));
    if (slot < 0 || parms[slot] != nullptr) {
      ko_parameter_del(p);
      ok = false;
      continue;
    }
    parms[slot] = p;
  }
  ko_projection *projection = ok ? ko_projlist_projection_from_code(code, nullptr) : nullptr;
  ko_conversion *c =
      projection != nullptr ? ko_conversion_ext_new_errext(name, projection, parms.data(), err)
                            : nullptr;
  if (c == nullptr) {
    ko_projection_del(projection);
    for (ko_parameter *p : parms) ko_parameter_del(p);
  }
  return c;
}

// The parameters of EPSG:32633 (UTM zone 33N) for Transverse_Mercator.
// Without units the angles are read in the geographic system's unit and
// the lengths in the projected system's; explicit_units gives the angular
// parameters degrees and the linear ones metres instead.
inline ko_conversion *utm33n_conversion(bool explicit_units = false) {
  std::array<ko_unit *, 4> u{};
  if (explicit_units) {
    u = {reinterpret_cast<ko_unit *>(ko_linunit_new_code(9001)),
         reinterpret_cast<ko_unit *>(ko_linunit_new_code(9001)),
         reinterpret_cast<ko_unit *>(ko_angunit_new_code(9102)),
         reinterpret_cast<ko_unit *>(ko_angunit_new_code(9102))};
    for (ko_unit *unit : u) {
      if (unit != nullptr) continue;
      for (ko_unit *made : u) ko_unit_del(made);
      return nullptr;
    }
  }
  return conversion("UTM zone 33N", 43006,
                    {{"False_Easting", 500000.0, u[0]},
                     {"False_Northing", 0.0, u[1]},
                     {"Central_Meridian", 15.0, u[2]},
                     {"Scale_Factor", 0.9996},
                     {"Latitude_Of_Origin", 0.0, u[3]}});
}

// A projected system on geogcs with conversion (both owned from here on,
// deleted on failure), in `unit` (owned; null: metres).
inline ko_projcs *projcs(const char *name, ko_geogcs *geogcs, ko_conversion *conv,
                         ko_linunit *unit = nullptr) {
  ko_projcs *p = geogcs != nullptr && conv != nullptr
                     ? ko_projcs_new(name, geogcs, conv, unit)
                     : nullptr;
  if (p == nullptr) {
    ko_geogcs_del(geogcs);
    ko_conversion_del(conv);
    ko_linunit_del(unit);
  }
  return p;
}

// UTM zone 33N on WGS 84, in metres and degrees unless told otherwise.
inline ko_projcs *utm33n(ko_linunit *unit = nullptr, ko_angunit *angular = nullptr,
                         bool explicit_units = false) {
  return projcs("WGS_1984_UTM_Zone_33N", wgs84(angular), utm33n_conversion(explicit_units), unit);
}

}  // namespace ko::test
