// Parameter: one named value of a projection or transformation, with its
// unit and the default factor in which it reports its value.
#include "objects/parameter.h"

#include <cmath>

namespace {

constexpr const char *kSource = "ko_parameter_new_parmlist";

// Base units per unit of the parameter's value; 1.0 without a unit.
double unit_factor(const ko_parameter &p) { return ko::unit_factor_or(p.unit, KO_TYPE_UNIT, 1.0); }

// The file part of a grid-file parameter's name: what follows "Dataset_",
// from its last '/' on.
const char *grid_file(const char *name) {
  constexpr std::size_t kPrefix = 8;  // strlen("Dataset_")
  if (std::strlen(name) < kPrefix) return "";
  const char *file = name + kPrefix;
  const char *slash = std::strrchr(file, '/');
  return slash != nullptr ? slash + 1 : file;
}

}  // namespace

extern "C" {

ko_parameter *ko_parameter_new_parmlist(const ko_parmlist_entry *row, const char *name,
                                        ko_unit *unit, double value, ko_err *err) {
  if (name == nullptr) name = "";
  ko_err_clear(err);
  if (!std::isfinite(value)) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 358, kSource, "%s: %f", name, value);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_UNIT) == nullptr) {
    ko::report_bad_argument(err, 324, kSource, name);
    return nullptr;
  }
  auto *p = ko::make_object<ko_parameter>(KO_TYPE_PARAMETER, name);
  if (p == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  int32_t code = row != nullptr ? row->code : -1;
  ko_header_set_code_internal(p, code);
  ko_header_set_code_external(p, code);
  p->value = value;
  p->unit = unit;
  p->dflt_factor = 1.0;
  return p;
}

ko_parameter *ko_parameter_ext_new_errext(const char *name, ko_unit *unit, double value,
                                          ko_err *err) {
  if (name == nullptr) name = "";
  return ko_parameter_new_parmlist(ko_parmlist_from_name(name), name, unit, value, err);
}

ko_parameter *ko_parameter_ext_new(const char *name, ko_unit *unit, double value) {
  return ko_parameter_ext_new_errext(name, unit, value, nullptr);
}

ko_parameter *ko_parameter_new_errext(const char *name, double value, ko_err *err) {
  return ko_parameter_ext_new_errext(name, nullptr, value, err);
}

ko_parameter *ko_parameter_new(const char *name, double value) {
  return ko_parameter_ext_new_errext(name, nullptr, value, nullptr);
}

int ko_parameter_p(const void *obj) { return ko::live_parameter(obj) != nullptr; }

ko_parameter *ko_parameter_clone(const ko_parameter *p) {
  const ko_parameter *src = ko::live_parameter(p);
  ko::Unique<ko_unit> unit;
  if (src == nullptr || !ko::clone_part(src->unit, unit, ko_unit_clone)) return nullptr;
  ko_parameter *copy =
      ko_parameter_new_parmlist(ko_parmlist_from_code(ko_header_get_code_internal(src)),
                                ko_header_get_name(src), unit.get(), src->value, nullptr);
  if (copy == nullptr) return nullptr;
  unit.release();
  copy->dflt_factor = src->dflt_factor;
  return ko::with_header_of(copy, src, ko_parameter_del);
}

ko_parameter *ko_parameter_del(ko_parameter *p) {
  p = ko::live_parameter(p);
  if (p == nullptr) return nullptr;
  ko_unit_del(p->unit);
  return ko::release_object(p);
}

// In order: list codes must match; values in base units must agree to the
// relative tolerance (grid-file parameters skip this); equal names
// (ko_strcmp_ci) then give 1, and so do different names -- the code
// already says which parameter it is -- except for two grid-file
// parameters, which are equal only when they name the same file (the part
// after "Dataset_" and after its last '/', compared ignoring case).
int ko_parameter_eq(const ko_parameter *a, const ko_parameter *b) {
  const ko_parameter *pa = ko::live_parameter(a);
  const ko_parameter *pb = ko::live_parameter(b);
  if (pa == nullptr || pb == nullptr) return 0;
  int32_t code = ko_header_get_code_internal(pa);
  if (code != ko_header_get_code_internal(pb)) return 0;
  bool grid = code == KO_PARM_CODE_DATASET;
  if (!grid && !ko::rel_eq(ko_parameter_value_si(pa), ko_parameter_value_si(pb))) return 0;
  const char *name_a = ko_header_get_name(pa);
  const char *name_b = ko_header_get_name(pb);
  if (ko_strcmp_ci(name_a, name_b) == 0 || !grid) return 1;
  return ko_strcmp_i(grid_file(name_a), grid_file(name_b)) == 0 ? 1 : 0;
}

// The stored value when the unit's factor matches the default factor,
// otherwise converted into the default factor's unit.
double ko_parameter_value(const ko_parameter *p) {
  const ko_parameter *pp = ko::live_parameter(p);
  if (pp == nullptr) return 0.0;
  double factor = unit_factor(*pp);
  if (ko::rel_eq(factor, pp->dflt_factor)) return pp->value;
  return factor * pp->value / pp->dflt_factor;
}

double ko_parameter_value_si(const ko_parameter *p) {
  const ko_parameter *pp = ko::live_parameter(p);
  return pp != nullptr ? pp->value * unit_factor(*pp) : 0.0;
}

int ko_parameter_value_set(ko_parameter *p, double value) {
  ko_parameter *pp = ko::live_parameter(p);
  if (pp == nullptr || !std::isfinite(value)) return 0;
  pp->value = value;
  return 1;
}

// Stores a base-unit value in the parameter's unit; without a unit an
// angular parameter counts in degrees, any other in base units.
int ko_parameter_value_set_si(ko_parameter *p, double value) {
  ko_parameter *pp = ko::live_parameter(p);
  if (pp == nullptr || !std::isfinite(value)) return 0;
  double factor = pp->unit != nullptr ? unit_factor(*pp)
                  : ko_parameter_unit_type(pp) == KO_PARM_UNIT_ANGLE ? ko::kDegreeFactor
                                                                     : 1.0;
  pp->value = value / factor;
  return 1;
}

ko_unit *ko_parameter_unit(const ko_parameter *p) {
  return ko::field_or(p, ko::live_parameter, &ko_parameter::unit, nullptr);
}

// Takes the new unit (a unit or null) and deletes the old one; clearing
// the unit also resets the default factor to 1.
void ko_parameter_unit_set(ko_parameter *p, ko_unit *unit) {
  ko_parameter *pp = ko::live_parameter(p);
  if (pp == nullptr) return;
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_UNIT) == nullptr) return;
  if (pp->unit != unit) ko_unit_del(pp->unit);
  pp->unit = unit;
  if (unit == nullptr) pp->dflt_factor = 1.0;
}

double ko_parameter_dflt_factor(const ko_parameter *p) {
  return ko::field_or(p, ko::live_parameter, &ko_parameter::dflt_factor, 0.0);
}

// Only a positive finite factor is taken: the value is divided by it.
void ko_parameter_dflt_factor_set(ko_parameter *p, double factor) {
  ko_parameter *pp = ko::live_parameter(p);
  if (pp != nullptr && factor > 0.0 && std::isfinite(factor)) pp->dflt_factor = factor;
}

uint32_t ko_parameter_unit_type(const ko_parameter *p) {
  const ko_parameter *pp = ko::live_parameter(p);
  return pp != nullptr ? ko_parmlist_unit_type_from_code(ko_header_get_code_internal(pp))
                       : KO_PARM_UNIT_NONE;
}

const ko_objvec ko_parameter_objvec =
    ko::make_objvec<ko_parameter, ko_parameter_clone, ko_parameter_del, ko_parameter_eq>(
        KO_TYPE_PARAMETER);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(parameter, ko_parameter)
