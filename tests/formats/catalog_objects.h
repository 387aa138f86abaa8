// Objects built from the compiled-in catalogue's records with the public
// constructors, for the text-format tests: the independent "expected"
// side of the round-trip and interoperability tests.  (The factory that
// will build objects from records for callers does not exist yet; when it
// does, these builders can be checked against it and the round trips run
// over its objects.)
#pragma once

#include "ko.h"

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace ko::test {

template <class Rec>
const Rec *catalog_record(uint32_t type, int32_t code) {
  const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
  if (row == nullptr || row->data == nullptr) return nullptr;
  return static_cast<const Rec *>(ko_db_builtin_data_lookup_code(row->data, code));
}

// Every code of a type's data table, in table order.
inline std::vector<int32_t> catalog_codes(uint32_t type) {
  std::vector<int32_t> codes;
  const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
  if (row == nullptr || row->data == nullptr) return codes;
  const auto *base = static_cast<const unsigned char *>(row->data->recs);
  for (int32_t i = 0; i < row->data->count; ++i) {
    int32_t code;
    // Every data record holds its name pointer first and its code next.
    std::memcpy(&code, base + static_cast<std::size_t>(i) * row->data->size + sizeof(const char *),
                sizeof code);
    codes.push_back(code);
  }
  return codes;
}

inline ko_spheroid *spheroid_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_spheroid_rec>(KO_TYPE_SPHEROID, code);
  if (rec == nullptr) return nullptr;
  return ko_spheroid_ext_new(rec->name, ko_linunit_new_code(rec->linunit), rec->axis, rec->flattening);
}

inline ko_datum *datum_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_datum_rec>(KO_TYPE_DATUM, code);
  if (rec == nullptr) return nullptr;
  ko_spheroid *s = spheroid_from_catalog(rec->spheroid);
  ko_datum *d = ko_datum_new(rec->name, s);
  if (d == nullptr) ko_spheroid_del(s);
  return d;
}

// A WKT1 PRIMEM carries degrees (and a reader without UNIT makes a degree
// meridian); in_degrees builds the catalogue's meridian that way.
inline ko_primem *primem_from_catalog(int32_t code, bool in_degrees = false) {
  auto *rec = catalog_record<ko_db_primem_rec>(KO_TYPE_PRIMEM, code);
  if (rec == nullptr) return nullptr;
  ko_angunit *unit = ko_angunit_new_code(rec->angunit);
  if (!in_degrees) return ko_primem_ext_new(rec->name, unit, rec->longitude);
  double degrees = ko_angunit_factor(unit) / 0.017453292519943295 * rec->longitude;
  ko_angunit_del(unit);
  return ko_primem_ext_new(rec->name, ko_angunit_new_code(9102), degrees);
}

inline ko_geogcs *geogcs_from_catalog(int32_t code, bool primem_in_degrees = false) {
  auto *rec = catalog_record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, code);
  if (rec == nullptr) return nullptr;
  ko_datum *d = datum_from_catalog(rec->datum);
  ko_primem *p = primem_from_catalog(rec->primem, primem_in_degrees);
  ko_angunit *u = ko_angunit_new_code(rec->angunit);
  ko_geogcs *g = ko_geogcs_new(rec->name, d, p, u);
  if (g == nullptr) {
    ko_datum_del(d);
    ko_primem_del(p);
    ko_angunit_del(u);
  }
  return g;
}

// The 24 parameters of a pool run by slot (a code without a slot is
// dropped); Dataset_ parameters take their grid's name from texts.
inline std::array<ko_parameter *, KO_PARM_COUNT> parameters_from_pool(const ko_db_parm_rec *pool,
                                                                     int32_t first, int32_t count,
                                                                     const char *const *texts) {
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  for (int32_t i = first; i < first + count; ++i) {
    const ko_db_parm_rec &rec = pool[i];
    int slot = ko_parmlist_index_from_code(rec.code);
    if (slot < 0 || parms[static_cast<std::size_t>(slot)] != nullptr) continue;
    ko_parameter *p = nullptr;
    if (rec.code == KO_PARM_CODE_DATASET && texts != nullptr)
      p = ko_parameter_new((std::string("Dataset_") + texts[rec.aux]).c_str(), rec.value);
    else
      p = ko_parmlist_parameter_from_code_value(rec.code, nullptr, rec.value);
    parms[static_cast<std::size_t>(slot)] = p;
  }
  return parms;
}

inline void delete_parameters(std::array<ko_parameter *, KO_PARM_COUNT> &parms) {
  for (ko_parameter *&p : parms) p = ko_parameter_del(p);
}

// A projected system: its pool's angles are in the geographic system's
// unit and its lengths in the system's, as the projected system reads
// unitless parameters.
inline ko_projcs *projcs_from_catalog(int32_t code, bool primem_in_degrees = false) {
  auto *rec = catalog_record<ko_db_projcs_rec>(KO_TYPE_PROJCS, code);
  if (rec == nullptr) return nullptr;
  auto parms = parameters_from_pool(ko_obj_projcs_parms, rec->parm_first, rec->parm_count, nullptr);
  ko_projection *prj = ko_projlist_projection_from_code(rec->projection, nullptr);
  ko_conversion *conv = prj != nullptr ? ko_conversion_new(prj, parms.data()) : nullptr;
  if (conv == nullptr) {
    ko_projection_del(prj);
    delete_parameters(parms);
    return nullptr;
  }
  ko_geogcs *g = geogcs_from_catalog(rec->geogcs, primem_in_degrees);
  ko_linunit *u = ko_linunit_new_code(rec->linunit);
  ko_projcs *p = ko_projcs_new(rec->name, g, conv, u);
  if (p == nullptr) {
    ko_geogcs_del(g);
    ko_conversion_del(conv);
    ko_linunit_del(u);
  }
  return p;
}

inline ko_geogtran *geogtran_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_geogtran_rec>(KO_TYPE_GEOGTRAN, code);
  if (rec == nullptr) return nullptr;
  auto parms = parameters_from_pool(ko_obj_geogtran_parms, rec->parm_first, rec->parm_count,
                                    ko_obj_geogtran_parm_texts);
  ko_geogcs *g1 = geogcs_from_catalog(rec->gcs1);
  ko_geogcs *g2 = geogcs_from_catalog(rec->gcs2);
  ko_method *m = ko_methlist_method_from_code(rec->method, nullptr);
  ko_geogtran *gt = ko_geogtran_ext_new(rec->name, g1, g2, m, parms.data(), nullptr, nullptr, rec->accuracy);
  if (gt == nullptr) {
    ko_geogcs_del(g1);
    ko_geogcs_del(g2);
    ko_method_del(m);
    delete_parameters(parms);
  }
  return gt;
}

inline ko_vdatum *vdatum_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_datum_rec>(KO_TYPE_VDATUM, code);
  return rec != nullptr ? ko_vdatum_ext_new(rec->name, rec->anchor, nullptr) : nullptr;
}

// A vertical system: its vertical datum, its direction as the Direction
// parameter, its unit.  A code that is a three-dimensional geographic
// system (as a vertical transformation's source may be) gives the system
// of its ellipsoidal heights: its datum and metres.
inline ko_vertcs *vertcs_from_catalog(int32_t code) {
  ko_parameter *parms[KO_PARM_COUNT] = {};
  if (auto *rec = catalog_record<ko_db_vertcs_rec>(KO_TYPE_VERTCS, code)) {
    ko_vdatum *d = vdatum_from_catalog(rec->vdatum);
    parms[1] = ko_parmlist_parameter_from_code_value(KO_PARM_CODE_DIRECTION, nullptr, rec->direction);
    ko_linunit *u = ko_linunit_new_code(rec->linunit);
    ko_vertcs *v = ko_vertcs_new(rec->name, d, parms, u);
    if (v == nullptr) {
      ko_vdatum_del(d);
      ko_parameter_del(parms[1]);
      ko_linunit_del(u);
    }
    return v;
  }
  auto *rec = catalog_record<ko_db_geogcs_rec>(KO_TYPE_GEOGCS, code);
  ko_datum *d = rec != nullptr ? datum_from_catalog(rec->datum) : nullptr;
  ko_vertcs *v = d != nullptr ? ko_vertcs_new(rec->name, d, nullptr, ko_linunit_new_code(9001)) : nullptr;
  if (v == nullptr) ko_datum_del(d);
  return v;
}

inline ko_gxyzcs *gxyzcs_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_gxyzcs_rec>(KO_TYPE_GXYZCS, code);
  if (rec == nullptr) return nullptr;
  ko_datum *d = datum_from_catalog(rec->datum);
  ko_primem *p = primem_from_catalog(rec->primem);
  ko_linunit *u = ko_linunit_new_code(rec->linunit);
  ko_gxyzcs *g = ko_gxyzcs_new(rec->name, d, p, u);
  if (g == nullptr) {
    ko_datum_del(d);
    ko_primem_del(p);
    ko_linunit_del(u);
  }
  return g;
}

inline ko_hvcoordsys *hvcoordsys_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_hvcoordsys_rec>(KO_TYPE_HVCOORDSYS, code);
  if (rec == nullptr) return nullptr;
  void *h = rec->hcs_type == static_cast<int32_t>(KO_TYPE_PROJCS) ? static_cast<void *>(projcs_from_catalog(rec->hcs))
                                                                  : static_cast<void *>(geogcs_from_catalog(rec->hcs));
  ko_vertcs *v = vertcs_from_catalog(rec->vcs);
  ko_hvcoordsys *c = ko_hvcoordsys_new(rec->name, h, v);
  if (c == nullptr) {
    ko_object_del(h);
    ko_vertcs_del(v);
  }
  return c;
}

inline ko_verttran *verttran_from_catalog(int32_t code) {
  auto *rec = catalog_record<ko_db_verttran_rec>(KO_TYPE_VERTTRAN, code);
  if (rec == nullptr) return nullptr;
  auto parms = parameters_from_pool(ko_obj_verttran_parms, rec->parm_first, rec->parm_count,
                                    ko_obj_verttran_parm_texts);
  ko_vertcs *v1 = vertcs_from_catalog(rec->vcs1);
  ko_vertcs *v2 = vertcs_from_catalog(rec->vcs2);
  ko_vtmethod *m = ko_vtmethlist_vtmethod_from_code(rec->method, nullptr);
  ko_verttran *vt =
      ko_verttran_ext_new(rec->name, nullptr, v1, v2, m, parms.data(), nullptr, nullptr, rec->accuracy);
  if (vt == nullptr) {
    ko_vertcs_del(v1);
    ko_vertcs_del(v2);
    ko_vtmethod_del(m);
    delete_parameters(parms);
  }
  return vt;
}

}  // namespace ko::test
