// Adjusted horizontal coordinate system: a geographic or projected system
// whose coordinates are corrected by a plane transformation (similarity
// or affine), given as a method of the adjustment list and an array of its
// values.  ko.h gives the formulas and the order of the values.
#include "objects/systems.h"
#include "objects/units.h"

#include <algorithm>

namespace {

constexpr const char *kSource = "ko_adjhcs_ext_new_errext";
constexpr int32_t kSimilarity = 9621;

// The unit the translations may carry: linear for a projected system,
// angular for a geographic one.
uint32_t translation_unit_type(const void *coordsys) {
  return ko_geogcs_p(coordsys) != 0 ? KO_TYPE_ANGUNIT : KO_TYPE_LINUNIT;
}

// 0 or the error number of the first argument that does not do.
int argument_problem(void *coordsys, ko_htmethod *method, ko_array *values) {
  if (ko::live_coordsys(coordsys) == nullptr) return 338;
  if (ko::live_htmethod(method) == nullptr) return 336;
  if (ko::live_array(values) == nullptr) return 325;
  const ko_htmethlist_entry *entry = ko_htmethod_entry(method);
  if (entry == nullptr || ko_array_num_values(values) != entry->num_values) return 310;
  const ko_unit *unit = ko_array_unit(values);
  if (unit != nullptr && ko::live_unit(unit, translation_unit_type(coordsys)) == nullptr)
    return 477;
  return 0;
}

}  // namespace

extern "C" {

// In order: the name (warning 354); the horizontal system (338); the
// method (336); the array (325); its count against the method (310); its
// unit against the system (477); memory (1).
ko_adjhcs *ko_adjhcs_ext_new_errext(const char *name, void *coordsys, ko_htmethod *method,
                                    ko_array *values, ko_metadata **metadata, ko_remark *remark,
                                    ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (int number = argument_problem(coordsys, method, values); number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  auto *a = ko::make_object<ko_adjhcs>(KO_TYPE_ADJHCS, name);
  if (a == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  a->coordsys = coordsys;
  a->method = method;
  a->values = values;
  a->metadata = metadata;
  a->remark = remark;
  return a;
}

ko_adjhcs *ko_adjhcs_ext_new(const char *name, void *coordsys, ko_htmethod *method,
                             ko_array *values, ko_metadata **metadata, ko_remark *remark) {
  return ko_adjhcs_ext_new_errext(name, coordsys, method, values, metadata, remark, nullptr);
}

ko_adjhcs *ko_adjhcs_new_errext(const char *name, void *coordsys, ko_htmethod *method,
                                ko_array *values, ko_err *err) {
  return ko_adjhcs_ext_new_errext(name, coordsys, method, values, nullptr, nullptr, err);
}

ko_adjhcs *ko_adjhcs_new(const char *name, void *coordsys, ko_htmethod *method, ko_array *values) {
  return ko_adjhcs_ext_new_errext(name, coordsys, method, values, nullptr, nullptr, nullptr);
}

int ko_adjhcs_p(const void *obj) { return ko::live_adjhcs(obj) != nullptr; }

ko_adjhcs *ko_adjhcs_clone(const ko_adjhcs *a) {
  const ko_adjhcs *src = ko::live_adjhcs(a);
  if (src == nullptr) return nullptr;
  ko::Unique<void> coordsys(ko_object_clone(src->coordsys));
  ko::Unique<ko_htmethod> method;
  ko::Unique<ko_array> values;
  ko::Annotations parts;
  if (coordsys == nullptr || !ko::clone_part(src->method, method, ko_htmethod_clone) ||
      !ko::clone_part(src->values, values, ko_array_clone) ||
      !ko::clone_annotations(src->metadata, src->remark, parts))
    return nullptr;
  ko_adjhcs *copy =
      ko_adjhcs_ext_new_errext(ko_header_get_name(src), coordsys.get(), method.get(), values.get(),
                               parts.metadata, parts.remark.get(), nullptr);
  if (copy == nullptr) return nullptr;
  coordsys.release();  // every part now belongs to the copy
  method.release();
  values.release();
  parts.take_metadata();
  parts.remark.release();
  return ko::with_header_of(copy, src, ko_adjhcs_del);
}

ko_adjhcs *ko_adjhcs_del(ko_adjhcs *a) {
  a = ko::live_adjhcs(a);
  if (a == nullptr) return nullptr;
  ko_object_del(a->coordsys);
  ko_htmethod_del(a->method);
  ko_array_del(a->values);
  ko_metadata_vector_del(a->metadata);
  ko_remark_del(a->remark);
  return ko::release_object(a);
}

// Names (ko_strcmp_ci), the horizontal systems, the method codes and the
// arrays' values (their names are not compared).
int ko_adjhcs_eq(const ko_adjhcs *a, const ko_adjhcs *b) {
  const ko_adjhcs *pa = ko::live_adjhcs(a);
  const ko_adjhcs *pb = ko::live_adjhcs(b);
  if (pa == nullptr || pb == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(pa), ko_header_get_name(pb)) == 0 &&
                 ko_object_eq(pa->coordsys, pb->coordsys) != 0 &&
                 ko_htmethod_eq(pa->method, pb->method) != 0 &&
                 ko::arrays_hold_equal_values(pa->values, pb->values)
             ? 1
             : 0;
}

void *ko_adjhcs_coordsys(const ko_adjhcs *a) {
  return ko::field_or(a, ko::live_adjhcs, &ko_adjhcs::coordsys, nullptr);
}

ko_htmethod *ko_adjhcs_htmethod(const ko_adjhcs *a) {
  return ko::field_or(a, ko::live_adjhcs, &ko_adjhcs::method, nullptr);
}

ko_array *ko_adjhcs_array(const ko_adjhcs *a) {
  return ko::field_or(a, ko::live_adjhcs, &ko_adjhcs::values, nullptr);
}

// The affine form x' = A0 + A1 x + A2 y, y' = B0 + B1 x + B2 y.  The
// similarity's values X0 Y0 M cos(t) M sin(t) expand, after IOGP guidance
// note 7-2 (method 9621), to A = (X0, M cos t, M sin t) and
// B = (Y0, -M sin t, M cos t).  Translations are scaled to base units by
// the array's unit.
int ko_adjhcs_affine(const ko_adjhcs *a, double *out) {
  const ko_adjhcs *pa = ko::live_adjhcs(a);
  if (pa == nullptr || out == nullptr) return 0;
  const double *v = pa->values->values;
  const double factor = ko::unit_factor_or(pa->values->unit, ko::kAnyUnitType, 1.0);
  if (ko_header_get_code_internal(pa->method) == kSimilarity) {
    const double c = v[2];
    const double s = v[3];
    const double affine[6] = {v[0] * factor, c, s, v[1] * factor, -s, c};
    std::copy(affine, affine + 6, out);
  } else {
    std::copy(v, v + 6, out);
    out[0] *= factor;
    out[3] *= factor;
  }
  return 1;
}

ko_metadata **ko_adjhcs_metadata_vector(const ko_adjhcs *a) {
  return ko::field_or(a, ko::live_adjhcs, &ko_adjhcs::metadata, nullptr);
}

ko_remark *ko_adjhcs_remark(const ko_adjhcs *a) {
  return ko::field_or(a, ko::live_adjhcs, &ko_adjhcs::remark, nullptr);
}

constinit const ko_objvec ko_adjhcs_objvec =
    ko::make_objvec<ko_adjhcs, ko_adjhcs_clone, ko_adjhcs_del, ko_adjhcs_eq>(KO_TYPE_ADJHCS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(adjhcs, ko_adjhcs)
