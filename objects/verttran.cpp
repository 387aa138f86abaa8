// Vertical transformation: a method from the vertical method list that
// takes heights from one vertical system to another, with its parameters
// by slot and, for methods that read the horizontal position, the
// horizontal system the positions are given in.
#include "objects/systems.h"

#include <cmath>

namespace {

constexpr const char *kSource = "ko_verttran_ext_new_errext";
constexpr double kUnknownAccuracy = 999.0;

// The systems' kinds against the method's flags ("Invalid coordsys type
// for vtmethod"): true when they suit.
bool systems_suit(uint32_t flags, const ko_vertcs *source, const ko_vertcs *target) {
  const bool source_ellipsoidal = ko_vertcs_is_ellipsoidal(source) != 0;
  const bool target_ellipsoidal = ko_vertcs_is_ellipsoidal(target) != 0;
  if ((flags & KO_VTM_ELLIPSOIDAL_SOURCE) != 0 && !source_ellipsoidal) return false;
  if ((flags & KO_VTM_ELLIPSOIDAL_TARGET) != 0 && !target_ellipsoidal) return false;
  if ((flags & KO_VTM_GRAVITY_TARGET) != 0 && target_ellipsoidal) return false;
  if ((flags & KO_VTM_DEPTH_TARGET) != 0 && ko_vertcs_direction(target) != KO_VERTCS_DEPTH)
    return false;
  if ((flags & KO_VTM_REVERSES) != 0 && ko_vertcs_direction(source) == ko_vertcs_direction(target))
    return false;
  return true;
}

// 0 or the error number of the first argument that does not do.
int argument_problem(void *coordsys, ko_vertcs *vertcs1, ko_vertcs *vertcs2, ko_vtmethod *method,
                     ko_parameter **parms, double accuracy) {
  if (ko::live_vtmethod(method) == nullptr) return 343;
  if (ko::live_vertcs(vertcs1) == nullptr) return 341;
  if (ko::live_vertcs(vertcs2) == nullptr) return 342;
  if (coordsys != nullptr && ko::live_coordsys(coordsys) == nullptr) return 338;
  if (parms == nullptr) return 330;
  if (accuracy < 0.0 || std::isinf(accuracy)) return 352;
  if (!systems_suit(ko_vtmethod_flags(method), vertcs1, vertcs2)) return 115;
  return 0;
}

}  // namespace

extern "C" {

// In order: the name (warning 354); the method (343); vertcs1 (341);
// vertcs2 (342); the horizontal system when given (338); the parameter
// array (330); the accuracy (352); the systems against the method (115);
// the parameters against the method (ko_vtmethod_valid: 347, 348, 351);
// memory (1).  Every report carries the transformation's name.
ko_verttran *ko_verttran_ext_new_errext(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                        ko_vertcs *vertcs2, ko_vtmethod *method,
                                        ko_parameter **parms, ko_metadata **metadata,
                                        ko_remark *remark, ko_err *err, double accuracy) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (int number = argument_problem(coordsys, vertcs1, vertcs2, method, parms, accuracy);
      number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  if (ko::vtmethod_check(parms, name, ko_header_get_code_internal(method), kSource, err) == 0)
    return nullptr;
  auto *vt = ko::make_object<ko_verttran>(KO_TYPE_VERTTRAN, name);
  if (vt == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  vt->coordsys = coordsys;
  vt->vertcs1 = vertcs1;
  vt->vertcs2 = vertcs2;
  vt->method = method;
  for (int i = 0; i < KO_PARM_COUNT; ++i) vt->parms[i] = parms[i];
  vt->metadata = metadata;
  vt->remark = remark;
  vt->accuracy = accuracy;
  return vt;
}

ko_verttran *ko_verttran_ext_new(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                 ko_vertcs *vertcs2, ko_vtmethod *method, ko_parameter **parms,
                                 ko_metadata **metadata, ko_remark *remark, double accuracy) {
  return ko_verttran_ext_new_errext(name, coordsys, vertcs1, vertcs2, method, parms, metadata,
                                    remark, nullptr, accuracy);
}

ko_verttran *ko_verttran_new_errext(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                    ko_vertcs *vertcs2, ko_vtmethod *method, ko_parameter **parms,
                                    ko_err *err) {
  return ko_verttran_ext_new_errext(name, coordsys, vertcs1, vertcs2, method, parms, nullptr,
                                    nullptr, err, kUnknownAccuracy);
}

ko_verttran *ko_verttran_new(const char *name, void *coordsys, ko_vertcs *vertcs1,
                             ko_vertcs *vertcs2, ko_vtmethod *method, ko_parameter **parms) {
  return ko_verttran_ext_new_errext(name, coordsys, vertcs1, vertcs2, method, parms, nullptr,
                                    nullptr, nullptr, kUnknownAccuracy);
}

int ko_verttran_p(const void *obj) { return ko::live_verttran(obj) != nullptr; }

ko_verttran *ko_verttran_clone(const ko_verttran *vt) {
  const ko_verttran *src = ko::live_verttran(vt);
  if (src == nullptr) return nullptr;
  ko::Unique<void> coordsys(ko_object_clone(src->coordsys));
  ko::Unique<ko_vertcs> vertcs1;
  ko::Unique<ko_vertcs> vertcs2;
  ko::Unique<ko_vtmethod> method;
  ko::ParmSlots parms;
  ko::Annotations parts;
  bool ok = (src->coordsys == nullptr || coordsys != nullptr) &&
            ko::clone_part(src->vertcs1, vertcs1, ko_vertcs_clone) &&
            ko::clone_part(src->vertcs2, vertcs2, ko_vertcs_clone) &&
            ko::clone_part(src->method, method, ko_vtmethod_clone) &&
            ko::clone_slots(src->parms, parms) &&
            ko::clone_annotations(src->metadata, src->remark, parts);
  if (!ok) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> slots{};
  for (int i = 0; i < KO_PARM_COUNT; ++i) slots[i] = parms[i].get();
  ko_verttran *copy = ko_verttran_ext_new_errext(
      ko_header_get_name(src), coordsys.get(), vertcs1.get(), vertcs2.get(), method.get(),
      slots.data(), parts.metadata, parts.remark.get(), nullptr, src->accuracy);
  if (copy == nullptr) return nullptr;
  coordsys.release();  // every part now belongs to the copy
  vertcs1.release();
  vertcs2.release();
  method.release();
  ko::release_slots(parms, slots.data());
  parts.take_metadata();
  parts.remark.release();
  ko::copy_field(copy->opversion, src->opversion);
  return ko::with_header_of(copy, src, ko_verttran_del);
}

ko_verttran *ko_verttran_del(ko_verttran *vt) {
  vt = ko::live_verttran(vt);
  if (vt == nullptr) return nullptr;
  ko_object_del(vt->coordsys);
  ko_vertcs_del(vt->vertcs1);
  ko_vertcs_del(vt->vertcs2);
  ko_vtmethod_del(vt->method);
  ko::delete_slots(vt->parms);
  ko_metadata_vector_del(vt->metadata);
  ko_remark_del(vt->remark);
  return ko::release_object(vt);
}

// Names (ko_strcmp_ci), method codes, both vertical systems, the
// horizontal systems when both have one, and every filled parameter slot.
int ko_verttran_eq(const ko_verttran *a, const ko_verttran *b) {
  const ko_verttran *ta = ko::live_verttran(a);
  const ko_verttran *tb = ko::live_verttran(b);
  if (ta == nullptr || tb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(ta), ko_header_get_name(tb)) != 0) return 0;
  if (ko_vtmethod_eq(ta->method, tb->method) == 0) return 0;
  if (ko_vertcs_eq(ta->vertcs1, tb->vertcs1) == 0 || ko_vertcs_eq(ta->vertcs2, tb->vertcs2) == 0)
    return 0;
  if (ta->coordsys != nullptr && tb->coordsys != nullptr &&
      ko_object_eq(ta->coordsys, tb->coordsys) == 0)
    return 0;
  return ko::slots_equal(ta->parms, tb->parms) ? 1 : 0;
}

void *ko_verttran_coordsys(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::coordsys, nullptr);
}

ko_vertcs *ko_verttran_vertcs1(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::vertcs1, nullptr);
}

ko_vertcs *ko_verttran_vertcs2(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::vertcs2, nullptr);
}

ko_vtmethod *ko_verttran_vtmethod(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::method, nullptr);
}

ko_parameter **ko_verttran_parameters_ptr(ko_verttran *vt) {
  ko_verttran *tp = ko::live_verttran(vt);
  return tp != nullptr ? tp->parms : nullptr;
}

void ko_verttran_parameters(const ko_verttran *vt, ko_parameter **out) {
  if (out == nullptr) return;
  const ko_verttran *tp = ko::live_verttran(vt);
  for (int i = 0; i < KO_PARM_COUNT; ++i) out[i] = tp != nullptr ? tp->parms[i] : nullptr;
}

void ko_verttran_parm_array(const ko_verttran *vt, double *out) {
  if (out == nullptr) return;
  const ko_verttran *tp = ko::live_verttran(vt);
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    out[i] = tp != nullptr ? ko_parameter_value_si(tp->parms[i]) : 0.0;
}

double ko_verttran_accuracy(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::accuracy, kUnknownAccuracy);
}

void ko_verttran_set_opversion(ko_verttran *vt, const char *version) {
  if (ko_verttran *tp = ko::live_verttran(vt)) ko::copy_field(tp->opversion, version);
}

char *ko_verttran_get_opversion(const ko_verttran *vt, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (const ko_verttran *tp = ko::live_verttran(vt)) ko_strncpy(buf, tp->opversion, KO_NAME_SIZE);
  return buf;
}

ko_metadata **ko_verttran_metadata_vector(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::metadata, nullptr);
}

ko_remark *ko_verttran_remark(const ko_verttran *vt) {
  return ko::field_or(vt, ko::live_verttran, &ko_verttran::remark, nullptr);
}

constinit const ko_objvec ko_verttran_objvec =
    ko::make_objvec<ko_verttran, ko_verttran_clone, ko_verttran_del, ko_verttran_eq>(
        KO_TYPE_VERTTRAN);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(verttran, ko_verttran)
