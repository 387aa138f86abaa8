// Spheroid: semi-major axis and flattening in the length of its own linear
// unit.  The pair handed to projections and methods is (axis in metres, e²).
#include "objects/geodetic.h"

#include <cmath>

namespace {

constexpr const char *kSource = "ko_spheroid_ext_new_errext";

// Errors of a bad value carry "name: value".
void report_value(ko_err *err, int number, const char *name, double value) {
  ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, number, kSource, "%s: %f", name, value);
}

// The first failing check of axis and flattening, as an error number; 0 when
// both are usable.  A NaN fails neither comparison and lands on 358.
int check_shape(double axis, double flattening, double &offending) {
  offending = axis;
  if (axis <= 0.0) return 302;
  if (!std::isfinite(axis)) return 358;
  offending = flattening;
  if (flattening < 0.0 || flattening > 1.0) return 303;
  if (!std::isfinite(flattening)) return 358;
  return 0;
}

double metres_per_unit(const ko_spheroid &s) {
  return ko::unit_factor_or(s.unit, KO_TYPE_LINUNIT, 1.0);
}

}  // namespace

extern "C" {

ko_spheroid *ko_spheroid_ext_new_errext(const char *name, ko_linunit *unit, double axis,
                                        double flattening, ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  double offending = 0.0;
  if (int number = check_shape(axis, flattening, offending); number != 0) {
    report_value(err, number, name, offending);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_LINUNIT) == nullptr) {
    ko::report_bad_argument(err, 323, kSource, name);
    return nullptr;
  }
  ko::Unique<ko_linunit> made_unit;
  if (unit == nullptr) {
    made_unit.reset(ko::new_meter());
    if (made_unit == nullptr) {
      ko::report_no_memory(err, kSource, name);
      return nullptr;
    }
  }
  auto *s = ko::make_object<ko_spheroid>(KO_TYPE_SPHEROID, name);
  if (s == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  s->axis = axis;
  s->flattening = flattening;
  s->unit = unit != nullptr ? unit : made_unit.release();
  return s;
}

ko_spheroid *ko_spheroid_ext_new(const char *name, ko_linunit *unit, double axis,
                                 double flattening) {
  return ko_spheroid_ext_new_errext(name, unit, axis, flattening, nullptr);
}

ko_spheroid *ko_spheroid_new_errext(const char *name, double axis, double flattening,
                                    ko_err *err) {
  return ko_spheroid_ext_new_errext(name, nullptr, axis, flattening, err);
}

ko_spheroid *ko_spheroid_new(const char *name, double axis, double flattening) {
  return ko_spheroid_ext_new_errext(name, nullptr, axis, flattening, nullptr);
}

int ko_spheroid_p(const void *obj) { return ko::live_spheroid(obj) != nullptr; }

ko_spheroid *ko_spheroid_clone(const ko_spheroid *s) {
  const ko_spheroid *src = ko::live_spheroid(s);
  ko::Unique<ko_linunit> unit;
  if (src == nullptr || !ko::clone_part(src->unit, unit, ko_linunit_clone)) return nullptr;
  ko_spheroid *copy = ko_spheroid_ext_new_errext(ko_header_get_name(src), unit.get(), src->axis,
                                                 src->flattening, nullptr);
  if (copy != nullptr) unit.release();
  return ko::with_header_of(copy, src, ko_spheroid_del);
}

ko_spheroid *ko_spheroid_del(ko_spheroid *s) {
  s = ko::live_spheroid(s);
  if (s == nullptr) return nullptr;
  ko_linunit_del(s->unit);
  return ko::release_object(s);
}

// Equal names (ko_strcmp_ci), semi-major axes in metres equal to the
// relative tolerance, and flattenings equal to it too -- or, failing that,
// quarter meridians within a micrometre: two definitions of one spheroid
// often differ only in how the flattening was rounded, which moves the
// quarter meridian by far less than that.
int ko_spheroid_eq(const ko_spheroid *a, const ko_spheroid *b) {
  const ko_spheroid *sa = ko::live_spheroid(a);
  const ko_spheroid *sb = ko::live_spheroid(b);
  if (sa == nullptr || sb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(sa), ko_header_get_name(sb)) != 0) return 0;
  double axis_a = ko_spheroid_axis(sa);
  double axis_b = ko_spheroid_axis(sb);
  if (!ko::rel_eq(axis_a, axis_b)) return 0;
  double fa = sa->flattening;
  double fb = sb->flattening;
  if (ko::rel_eq(fa, fb)) return 1;
  double q_a = ko_q90(axis_a, fa * (2.0 - fa));
  double q_b = ko_q90(axis_b, fb * (2.0 - fb));
  return std::fabs(q_a - q_b) < 1e-6 ? 1 : 0;
}

double ko_spheroid_axis(const ko_spheroid *s) {
  const ko_spheroid *sp = ko::live_spheroid(s);
  return sp != nullptr ? sp->axis * metres_per_unit(*sp) : 1.0;
}

double ko_spheroid_flattening(const ko_spheroid *s) {
  return ko::field_or(s, ko::live_spheroid, &ko_spheroid::flattening, 0.0);
}

double ko_spheroid_esquared(const ko_spheroid *s) {
  const ko_spheroid *sp = ko::live_spheroid(s);
  return sp != nullptr ? sp->flattening * (2.0 - sp->flattening) : 0.0;
}

double ko_spheroid_semiminor_axis(const ko_spheroid *s) {
  const ko_spheroid *sp = ko::live_spheroid(s);
  return sp != nullptr ? sp->axis * (1.0 - sp->flattening) * metres_per_unit(*sp) : 1.0;
}

ko_linunit *ko_spheroid_unit(const ko_spheroid *s) {
  return ko::field_or(s, ko::live_spheroid, &ko_spheroid::unit, nullptr);
}

const ko_objvec ko_spheroid_objvec =
    ko::make_objvec<ko_spheroid, ko_spheroid_clone, ko_spheroid_del, ko_spheroid_eq>(
        KO_TYPE_SPHEROID);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(spheroid, ko_spheroid)
