// Vertical coordinate system: heights or depths above a vertical datum, or
// ellipsoidal heights above the spheroid of a horizontal datum, in one
// linear unit, with the vertical system's two parameters (a constant
// shift and the height/depth direction) placed by slot.
#include "objects/systems.h"

namespace {

constexpr const char *kSource = "ko_vertcs_ext_new_errext";

// Slots of the vertical system's parameters in the parameter list.
constexpr int kShiftSlot = 0;
constexpr int kDirectionSlot = 1;

bool is_axis_direction(int direction) {
  return direction == KO_AXIS_UP || direction == KO_AXIS_DOWN;
}

int axis_sign(const ko_axis *axis) {
  return ko_axis_direction(axis) == KO_AXIS_DOWN ? KO_VERTCS_DEPTH : KO_VERTCS_HEIGHT;
}

void report_parameter(ko_err *err, int number, const char *name, const void *parm) {
  ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, number, kSource, "%s: %s", name,
             ko_header_get_name(parm));
}

// The axis: a live axis pointing up or down whose unit, if any, is linear
// and equal to the unit argument.  0 or the error number.
int axis_problem(const ko_axis *axis, const ko_linunit *unit) {
  if (axis == nullptr) return 0;
  if (ko::live_axis(axis) == nullptr) return 485;
  if (!is_axis_direction(ko_axis_direction(axis))) return 486;
  const ko_unit *axis_unit = ko_axis_unit(axis);
  if (axis_unit == nullptr) return 0;
  if (ko::live_unit(axis_unit, KO_TYPE_LINUNIT) == nullptr) return 487;
  if (unit != nullptr && ko_linunit_eq(unit, reinterpret_cast<const ko_linunit *>(axis_unit)) == 0)
    return 477;
  return 0;
}

// Every filled slot holds a vertical-system parameter in its own slot; a
// Direction is exactly 1 or -1 and agrees with the axis.  Reports and
// returns false at the first problem.
bool parameters_fit(ko_parameter *const *parms, const ko_axis *axis, const char *name,
                    ko_err *err) {
  if (parms == nullptr) return true;
  for (int slot = 0; slot < KO_PARM_COUNT; ++slot) {
    const ko_parameter *p = parms[slot];
    if (p == nullptr) continue;
    const ko_parmlist_entry *row = ko::live_parameter(p) != nullptr
                                       ? ko_parmlist_from_code(ko_header_get_code_internal(p))
                                       : nullptr;
    if (row == nullptr || (row->category & KO_PARM_CAT_VERTCS) == 0 || row->index != slot) {
      report_parameter(err, 348, name, p);
      return false;
    }
    if (row->code != KO_PARM_CODE_DIRECTION) continue;
    double direction = ko_parameter_value_si(p);
    if (direction != 1.0 && direction != -1.0) {
      report_parameter(err, 356, name, p);
      return false;
    }
    if (axis != nullptr && static_cast<int>(direction) != axis_sign(axis)) {
      ko::report_bad_argument(err, 486, kSource, name);
      return false;
    }
  }
  return true;
}

// The unit a new system keeps: the argument, else a clone of the axis's
// unit, else a new "Meter"; made tells whether it was created here.
ko_linunit *choose_unit(ko_linunit *given, const ko_axis *axis, bool &made) {
  made = given == nullptr;
  if (given != nullptr) return given;
  if (const ko_unit *axis_unit = ko_axis_unit(axis))
    return reinterpret_cast<ko_linunit *>(ko::unit_clone(axis_unit));
  return ko::new_meter();
}

const ko_parameter *slot_of(const ko_vertcs &v, int slot) { return v.parms[slot]; }

}  // namespace

extern "C" {

// In order: the name (warning 354); the datum (337); the unit (323); the
// axis (485, 486, 487, 477); the parameters (348, 356, 486); memory (1).
// The caller's objects are changed (the axis drops its unit) only once the
// system exists.
ko_vertcs *ko_vertcs_ext_new_errext(const char *name, void *hvdatum, ko_parameter **parms,
                                    ko_linunit *unit, ko_axis *axis, ko_metadata **metadata,
                                    ko_remark *remark, ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (ko::as<void>(hvdatum, KO_TYPE_HVDATUM) == nullptr) {
    ko::report_bad_argument(err, 337, kSource, name);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_LINUNIT) == nullptr) {
    ko::report_bad_argument(err, 323, kSource, name);
    return nullptr;
  }
  if (int number = axis_problem(axis, unit); number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  if (!parameters_fit(parms, axis, name, err)) return nullptr;
  bool made = false;
  ko_linunit *system_unit = choose_unit(unit, axis, made);
  ko::Unique<ko_linunit> made_unit(made ? system_unit : nullptr);
  auto *v = system_unit == nullptr ? nullptr : ko::make_object<ko_vertcs>(KO_TYPE_VERTCS, name);
  if (v == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  made_unit.release();
  v->datum = hvdatum;
  for (int i = 0; parms != nullptr && i < KO_PARM_COUNT; ++i) v->parms[i] = parms[i];
  v->unit = system_unit;
  v->axis = axis;
  if (axis != nullptr) ko_axis_unit_set(axis, nullptr);
  v->metadata = metadata;
  v->remark = remark;
  return v;
}

ko_vertcs *ko_vertcs_ext_new(const char *name, void *hvdatum, ko_parameter **parms,
                             ko_linunit *unit, ko_axis *axis, ko_metadata **metadata,
                             ko_remark *remark) {
  return ko_vertcs_ext_new_errext(name, hvdatum, parms, unit, axis, metadata, remark, nullptr);
}

ko_vertcs *ko_vertcs_new_errext(const char *name, void *hvdatum, ko_parameter **parms,
                                ko_linunit *unit, ko_err *err) {
  return ko_vertcs_ext_new_errext(name, hvdatum, parms, unit, nullptr, nullptr, nullptr, err);
}

ko_vertcs *ko_vertcs_new(const char *name, void *hvdatum, ko_parameter **parms, ko_linunit *unit) {
  return ko_vertcs_ext_new_errext(name, hvdatum, parms, unit, nullptr, nullptr, nullptr, nullptr);
}

int ko_vertcs_p(const void *obj) { return ko::live_vertcs(obj) != nullptr; }

ko_vertcs *ko_vertcs_clone(const ko_vertcs *v) {
  const ko_vertcs *src = ko::live_vertcs(v);
  if (src == nullptr) return nullptr;
  ko::Unique<void> datum(ko_object_clone(src->datum));
  ko::Unique<ko_linunit> unit;
  ko::Unique<ko_axis> axis;
  ko::ParmSlots parms;
  ko::Annotations parts;
  bool ok = datum != nullptr && ko::clone_part(src->unit, unit, ko_linunit_clone) &&
            ko::clone_part(src->axis, axis, ko_axis_clone) && ko::clone_slots(src->parms, parms) &&
            ko::clone_annotations(src->metadata, src->remark, parts);
  if (!ok) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> slots{};
  for (int i = 0; i < KO_PARM_COUNT; ++i) slots[i] = parms[i].get();
  ko_vertcs *copy =
      ko_vertcs_ext_new_errext(ko_header_get_name(src), datum.get(), slots.data(), unit.get(),
                               axis.get(), parts.metadata, parts.remark.get(), nullptr);
  if (copy == nullptr) return nullptr;
  datum.release();  // every part now belongs to the copy
  unit.release();
  axis.release();
  ko::release_slots(parms, slots.data());
  parts.take_metadata();
  parts.remark.release();
  return ko::with_header_of(copy, src, ko_vertcs_del);
}

ko_vertcs *ko_vertcs_del(ko_vertcs *v) {
  v = ko::live_vertcs(v);
  if (v == nullptr) return nullptr;
  ko_object_del(v->datum);
  ko::delete_slots(v->parms);
  ko_linunit_del(v->unit);
  ko_axis_del(v->axis);
  ko_metadata_vector_del(v->metadata);
  ko_remark_del(v->remark);
  return ko::release_object(v);
}

// Names (ko_strcmp_ci), datums of one kind by their own equality, linear
// units, directions and the vertical shifts in metres (relative
// tolerance).  Axis, metadata and remark are not compared.
int ko_vertcs_eq(const ko_vertcs *a, const ko_vertcs *b) {
  const ko_vertcs *va = ko::live_vertcs(a);
  const ko_vertcs *vb = ko::live_vertcs(b);
  if (va == nullptr || vb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(va), ko_header_get_name(vb)) != 0) return 0;
  if (ko_object_eq(va->datum, vb->datum) == 0) return 0;
  if (ko_linunit_eq(va->unit, vb->unit) == 0) return 0;
  if (ko_vertcs_direction(va) != ko_vertcs_direction(vb)) return 0;
  return ko::rel_eq(ko_vertcs_vertical_shift(va), ko_vertcs_vertical_shift(vb)) ? 1 : 0;
}

void *ko_vertcs_hvdatum(const ko_vertcs *v) {
  return ko::field_or(v, ko::live_vertcs, &ko_vertcs::datum, nullptr);
}

ko_vdatum *ko_vertcs_vdatum(const ko_vertcs *v) { return ko::live_vdatum(ko_vertcs_hvdatum(v)); }

ko_datum *ko_vertcs_datum(const ko_vertcs *v) { return ko::live_datum(ko_vertcs_hvdatum(v)); }

int ko_vertcs_is_ellipsoidal(const ko_vertcs *v) { return ko_vertcs_datum(v) != nullptr ? 1 : 0; }

ko_linunit *ko_vertcs_unit(const ko_vertcs *v) {
  return ko::field_or(v, ko::live_vertcs, &ko_vertcs::unit, nullptr);
}

ko_axis *ko_vertcs_axis(const ko_vertcs *v) {
  return ko::field_or(v, ko::live_vertcs, &ko_vertcs::axis, nullptr);
}

ko_parameter **ko_vertcs_parameters_ptr(ko_vertcs *v) {
  ko_vertcs *vp = ko::live_vertcs(v);
  return vp != nullptr ? vp->parms : nullptr;
}

void ko_vertcs_parameters(const ko_vertcs *v, ko_parameter **out) {
  if (out == nullptr) return;
  const ko_vertcs *vp = ko::live_vertcs(v);
  for (int i = 0; i < KO_PARM_COUNT; ++i) out[i] = vp != nullptr ? vp->parms[i] : nullptr;
}

// The Direction parameter decides; without one the axis does (down means
// depths); without either the system holds heights.
int ko_vertcs_direction(const ko_vertcs *v) {
  const ko_vertcs *vp = ko::live_vertcs(v);
  if (vp == nullptr) return 0;
  if (const ko_parameter *direction = slot_of(*vp, kDirectionSlot))
    return ko_parameter_value_si(direction) < 0.0 ? KO_VERTCS_DEPTH : KO_VERTCS_HEIGHT;
  return vp->axis != nullptr ? axis_sign(vp->axis) : KO_VERTCS_HEIGHT;
}

double ko_vertcs_vertical_shift(const ko_vertcs *v) {
  const ko_vertcs *vp = ko::live_vertcs(v);
  return vp != nullptr ? ko_parameter_value_si(slot_of(*vp, kShiftSlot)) : 0.0;
}

ko_metadata **ko_vertcs_metadata_vector(const ko_vertcs *v) {
  return ko::field_or(v, ko::live_vertcs, &ko_vertcs::metadata, nullptr);
}

ko_remark *ko_vertcs_remark(const ko_vertcs *v) {
  return ko::field_or(v, ko::live_vertcs, &ko_vertcs::remark, nullptr);
}

constinit const ko_objvec ko_vertcs_objvec =
    ko::make_objvec<ko_vertcs, ko_vertcs_clone, ko_vertcs_del, ko_vertcs_eq>(KO_TYPE_VERTCS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(vertcs, ko_vertcs)
